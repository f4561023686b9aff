#include "companions/updater/updater.h"
#include "ui/program.h"

int murmelix::ui::runProgram(const std::vector<std::u16string>& arguments) {
    return updater::run(arguments);
}
