// Where Windows begins a program with windows.
#include <cwchar>
#include <exception>

#include <windows.h>

#include <shellapi.h>

#include "common/com/handles.h"
#include "common/text.h"
#include "ui/program.h"

namespace {

std::vector<std::u16string> commandLine() {
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::u16string> arguments;
    for (int i = 1; words && i < count; ++i) {
        arguments.emplace_back(murmelix::com::narrow(words[i], std::wcslen(words[i])));
    }
    LocalFree(words);
    return arguments;
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    try {
        return murmelix::ui::runProgram(commandLine());
    } catch (const std::exception& error) {
        std::u16string name = murmelix::ui::programPath();
        name.erase(0, name.find_last_of(u'\\') + 1);
        MessageBoxW(nullptr, murmelix::com::wide(murmelix::fromUtf8(error.what())), murmelix::com::wide(name),
                    MB_OK | MB_ICONERROR | MB_SETFOREGROUND);
        return 1;
    }
}
