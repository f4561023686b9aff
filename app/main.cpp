#include "app/loader.h"
#include "common/com/handles.h"
#include "ui/program.h"
#include "ui/screen.h"

int murmelix::ui::runProgram(const std::vector<std::u16string>&) {
    const com::Apartment apartment;
    Loader loader;
    loader.Main();
    return runMessageLoop();
}
