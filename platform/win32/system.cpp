#include "platform/system.h"

#include <array>
#include <cstdlib>

#include <windows.h>

#include <ole2.h>
#include <shellapi.h>

#include "common/address.h"
#include "common/ansi.h"
#include "common/com/handles.h"
#include "common/text.h"
#include "ui/win32/windows.h"

namespace murmelix::platform {

using com::wide;

namespace {

// One for every session: two users of a machine do not meet.
constexpr wchar_t instance_mutex[] = L"Local\\Murmelix.Instance";

// A text value below HKEY_LOCAL_MACHINE\Software\Murmelix that stands for a constant of the build. One that is not of
// its kind, or does not fit, is no value.
std::u16string machineSetting(const wchar_t* name, bool (*is_kind)(std::u16string_view), const char16_t* otherwise) {
    std::array<wchar_t, 512> text{};
    DWORD bytes = sizeof text;
    if (RegGetValueW(HKEY_LOCAL_MACHINE, L"Software\\Murmelix", name, RRF_RT_REG_SZ, nullptr, text.data(), &bytes) !=
        ERROR_SUCCESS) {
        return otherwise;
    }
    const std::u16string value(com::narrow(text.data(), wcslen(text.data())));
    return is_kind(value) ? value : otherwise;
}

DWORD WINAPI endAnyway(void*) {
    constexpr DWORD patience = 2000; // ms
    Sleep(patience);
    TerminateProcess(GetCurrentProcess(), 0);
    return 0;
}

} // namespace

bool isPreviousInstance() {
    static const bool previous = [] {
        CreateMutexW(nullptr, FALSE, instance_mutex); // open until the process ends
        return GetLastError() == ERROR_ALREADY_EXISTS;
    }();
    return previous;
}

std::u16string programDirectory() {
    std::u16string path(32768, u'\0');
    const DWORD length = GetModuleFileNameW(nullptr, reinterpret_cast<wchar_t*>(path.data()), 32768);
    path.resize(length);
    const std::size_t parting = path.rfind(u'\\');
    return parting == npos ? std::u16string() : path.substr(0, parting);
}

std::u16string commandLine() {
    const std::u16string whole(reinterpret_cast<const char16_t*>(GetCommandLineW()));
    const bool quoted = whole.starts_with(u'"');
    const std::size_t behind = quoted ? whole.find(u'"', 1) : whole.find_first_of(u" \t");
    if (behind == npos) {
        return {};
    }
    return std::u16string(trim(std::u16string_view(whole).substr(behind + (quoted ? 1 : 0))));
}

std::uint32_t windowsDirectory(std::size_t buffer_size, std::string& buffer) {
    buffer.assign(buffer_size, ' ');
    return GetWindowsDirectoryA(buffer.data(), static_cast<UINT>(buffer_size));
}

void shellExecute(const std::u16string& verb, const std::u16string& file, const std::u16string& parameters,
                  const std::u16string& directory) {
    const std::string ansi_verb = toAnsi(verb), ansi_file = toAnsi(file), ansi_parameters = toAnsi(parameters),
                      ansi_directory = toAnsi(directory);
    const auto orNull = [](const std::string& text) { return text.empty() ? nullptr : text.c_str(); };
    ShellExecuteA(ui::win32::mainWindow(), orNull(ansi_verb), ansi_file.c_str(), orNull(ansi_parameters),
                  orNull(ansi_directory), SW_SHOWNORMAL);
}

bool directoryExists(const std::u16string& path) {
    const DWORD attributes = GetFileAttributesW(wide(path));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

std::vector<std::u16string> subdirectories(const std::u16string& path) {
    std::vector<std::u16string> names;
    WIN32_FIND_DATAW found{};
    HANDLE search = FindFirstFileW(wide(path + (path.ends_with(u'\\') ? u"*" : u"\\*")), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return names;
    }
    do {
        const std::u16string name(reinterpret_cast<const char16_t*>(found.cFileName));
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && name != u"." && name != u"..") {
            names.push_back(name);
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
    return names;
}

ProgramVersion programVersion() {
    return {MURMELIX_VERSION};
}

std::optional<ProgramVersion> versionOf(const std::u16string& path) {
    DWORD ignored = 0;
    std::vector<char> information(GetFileVersionInfoSizeW(wide(path), &ignored));
    void* found = nullptr;
    UINT size = 0;
    if (information.empty() ||
        !GetFileVersionInfoW(wide(path), 0, static_cast<DWORD>(information.size()), information.data()) ||
        !VerQueryValueW(information.data(), L"\\", &found, &size) || size < sizeof(VS_FIXEDFILEINFO)) {
        return {};
    }
    const auto* version = static_cast<const VS_FIXEDFILEINFO*>(found);
    return ProgramVersion{HIWORD(version->dwFileVersionMS), LOWORD(version->dwFileVersionMS),
                          HIWORD(version->dwFileVersionLS)};
}

void endProcess() {
    // The neighbours are told that their objects are no longer needed. One that hangs keeps nobody here.
    HANDLE last_resort = CreateThread(nullptr, 0, endAnyway, nullptr, 0, nullptr);
    if (last_resort) {
        CloseHandle(last_resort);
        OleUninitialize();
        // Parts of the system enter the apartment, too: only its last user's leaving gives the objects back.
        APTTYPE type{};
        APTTYPEQUALIFIER qualifier{};
        for (int users = 0; users < 16 && SUCCEEDED(CoGetApartmentType(&type, &qualifier)); ++users) {
            CoUninitialize();
        }
    }
    // Ending in the usual way, the system ends the other threads wherever they are, and then waits for what they held.
    TerminateProcess(GetCurrentProcess(), 0);
    std::abort(); // not reached
}

std::u16string siteHost() {
    return machineSetting(L"SiteHost", isHost, MURMELIX_SITE_HOST);
}

std::u16string supportAddress() {
    return machineSetting(L"SupportAddress", isMailAddress, MURMELIX_SUPPORT_ADDRESS);
}

} // namespace murmelix::platform
