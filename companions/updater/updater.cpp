// updater.exe ADDRESS: shows which version is installed and where newer ones are published, and opens that page where
// the user wants it. It asks no server by itself.
#include <array>
#include <exception>
#include <memory>
#include <vector>

#include <windows.h>

#include <shellapi.h>

#include "common/com/handles.h"
#include "common/text.h"

namespace {

using murmelix::com::narrow;
using murmelix::com::wide;

constexpr int exit_closed = 0, exit_no_address = 2;

std::u16string firstArgument() {
    int count = 0;
    LPWSTR* arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    std::u16string argument;
    if (arguments && count > 1) {
        argument = narrow(arguments[1], wcslen(arguments[1]));
    }
    LocalFree(arguments);
    return argument;
}

// An address is opened by the shell, which would as well start a program of that name: web addresses alone pass.
bool isWebAddress(const std::u16string& address) {
    return murmelix::find(address, u"http://", 0, murmelix::LetterCase::ignored) == 0 ||
           murmelix::find(address, u"https://", 0, murmelix::LetterCase::ignored) == 0;
}

// Version of Murmelix.exe beside this program, as "1.0.0"; empty where it has none.
std::u16string installedVersion() {
    std::array<wchar_t, 32768> path{};
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    std::u16string program(narrow(path.data(), length));
    program = program.substr(0, program.rfind(u'\\') + 1) + u"Murmelix.exe";
    DWORD ignored = 0;
    std::vector<char> information(GetFileVersionInfoSizeW(wide(program), &ignored));
    void* found = nullptr;
    UINT size = 0;
    if (information.empty() ||
        !GetFileVersionInfoW(wide(program), 0, static_cast<DWORD>(information.size()), information.data()) ||
        !VerQueryValueW(information.data(), L"\\", &found, &size) || size < sizeof(VS_FIXEDFILEINFO)) {
        return {};
    }
    const auto* version = static_cast<const VS_FIXEDFILEINFO*>(found);
    return murmelix::toText(HIWORD(version->dwFileVersionMS)) + u"." +
           murmelix::toText(LOWORD(version->dwFileVersionMS)) + u"." +
           murmelix::toText(HIWORD(version->dwFileVersionLS));
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    try {
        const std::u16string address = firstArgument();
        if (!isWebAddress(address)) {
            MessageBoxW(nullptr, L"The address of the download page is missing: updater.exe http://…",
                        L"Murmelix Updates", MB_OK | MB_ICONERROR);
            return exit_no_address;
        }
        const std::u16string version = installedVersion();
        const std::u16string text =
            (version.empty() ? std::u16string(u"Murmelix is installed.") : u"Murmelix " + version + u" is installed.") +
            u"\r\n\r\nNew versions are published at\r\n" + address +
            u"\r\n\r\nWould you like to see whether there is one?";
        if (MessageBoxW(nullptr, wide(text), L"Murmelix Updates", MB_YESNO | MB_ICONINFORMATION) == IDYES) {
            ShellExecuteW(nullptr, L"open", wide(address), nullptr, nullptr, SW_SHOWNORMAL);
        }
        return exit_closed;
    } catch (const std::exception&) {
        return 1;
    }
}
