#include <windows.h>

#include "app/loader.h"
#include "common/com/handles.h"
#include "ui/screen.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    const murmelix::com::Apartment apartment;
    try {
        murmelix::Loader loader;
        loader.Main();
        murmelix::ui::runMessageLoop();
    } catch (const std::exception& error) {
        MessageBoxA(nullptr, error.what(), "Murmelix", MB_OK | MB_ICONERROR);
        return 1;
    }
    return 0;
}
