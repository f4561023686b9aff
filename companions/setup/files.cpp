#include "companions/setup/files.h"

#include <algorithm>
#include <array>
#include <memory>

#include "common/com/handles.h"
#include "common/text.h"

namespace setup {

using murmelix::com::narrow;
using murmelix::com::wide;

namespace {

struct HandleCloser {
    void operator()(HANDLE handle) const {
        if (handle != INVALID_HANDLE_VALUE) {
            CloseHandle(handle);
        }
    }
};
using Handle = std::unique_ptr<void, HandleCloser>;

struct KeyCloser {
    void operator()(HKEY key) const { RegCloseKey(key); }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

Key openKey(HKEY root, const std::u16string& path, REGSAM access) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, wide(path), 0, access, &key) != ERROR_SUCCESS) {
        return nullptr;
    }
    return Key(key);
}

Handle openForReading(const std::u16string& path) {
    return Handle(CreateFileW(wide(path), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
}

std::u16string text(const wchar_t* characters) {
    return std::u16string(narrow(characters, wcslen(characters)));
}

Result failure(const std::u16string& what, DWORD error) {
    return {Outcome::failed, what + u": " + errorText(error)};
}

} // namespace

std::u16string programDirectory() {
    std::vector<wchar_t> path(MAX_PATH);
    DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    while (length == path.size()) {
        path.resize(path.size() * 2);
        length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    }
    const std::u16string program(narrow(path.data(), length));
    return program.substr(0, program.rfind(u'\\'));
}

std::u16string windowsDirectory() {
    std::array<wchar_t, MAX_PATH> path{};
    const UINT length = GetWindowsDirectoryW(path.data(), static_cast<UINT>(path.size()));
    std::u16string directory(narrow(path.data(), std::min<std::size_t>(length, path.size())));
    while (!directory.empty() && directory.back() == u'\\') {
        directory.pop_back();
    }
    return directory;
}

std::u16string fileName(const std::u16string& path) {
    return path.substr(path.rfind(u'\\') + 1);
}

std::optional<std::u16string> registryText(HKEY root, const std::u16string& key, const wchar_t* value, REGSAM view) {
    const Key opened = openKey(root, key, KEY_QUERY_VALUE | view);
    DWORD bytes = 0;
    if (!opened ||
        RegGetValueW(opened.get(), nullptr, value, RRF_RT_REG_SZ, nullptr, nullptr, &bytes) != ERROR_SUCCESS) {
        return {};
    }
    std::vector<wchar_t> characters(bytes / sizeof(wchar_t) + 1);
    if (RegGetValueW(opened.get(), nullptr, value, RRF_RT_REG_SZ, nullptr, characters.data(), &bytes) !=
        ERROR_SUCCESS) {
        return {};
    }
    return text(characters.data());
}

bool fileExists(const std::u16string& path) {
    const DWORD attributes = GetFileAttributesW(wide(path));
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool sameContent(const std::u16string& a, const std::u16string& b) {
    const Handle first = openForReading(a), second = openForReading(b);
    if (first.get() == INVALID_HANDLE_VALUE || second.get() == INVALID_HANDLE_VALUE) {
        return false;
    }
    std::vector<char> from_first(65536), from_second(65536);
    while (true) {
        DWORD read_first = 0, read_second = 0;
        if (!ReadFile(first.get(), from_first.data(), static_cast<DWORD>(from_first.size()), &read_first, nullptr) ||
            !ReadFile(second.get(), from_second.data(), static_cast<DWORD>(from_second.size()), &read_second,
                      nullptr)) {
            return false;
        }
        if (read_first != read_second ||
            !std::equal(from_first.begin(), from_first.begin() + read_first, from_second.begin())) {
            return false;
        }
        if (read_first == 0) {
            return true;
        }
    }
}

std::vector<std::u16string> filesIn(const std::u16string& directory, const std::u16string& pattern) {
    std::vector<std::u16string> names;
    WIN32_FIND_DATAW entry{};
    const HANDLE search = FindFirstFileW(wide(directory + u"\\" + pattern), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        return names;
    }
    do {
        if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
            names.push_back(text(entry.cFileName));
        }
    } while (FindNextFileW(search, &entry));
    FindClose(search);
    std::sort(names.begin(), names.end());
    return names;
}

bool makeDirectory(const std::u16string& directory) {
    if (CreateDirectoryW(wide(directory), nullptr)) {
        return true;
    }
    if (GetLastError() == ERROR_ALREADY_EXISTS) {
        if (GetFileAttributesW(wide(directory)) & FILE_ATTRIBUTE_DIRECTORY) {
            return true;
        }
        SetLastError(ERROR_ALREADY_EXISTS);
        return false;
    }
    const std::size_t above = directory.rfind(u'\\');
    if (GetLastError() != ERROR_PATH_NOT_FOUND || above == std::u16string::npos) {
        return false;
    }
    return makeDirectory(directory.substr(0, above)) && CreateDirectoryW(wide(directory), nullptr);
}

Result installFile(const std::u16string& from, const std::u16string& to, Existing other_content) {
    if (fileExists(to)) {
        if (sameContent(from, to)) {
            return {Outcome::done, to + u" is there already."};
        }
        if (other_content == Existing::kept) {
            return {Outcome::kept, to + u" is another file of this name and is left as it is."};
        }
    }
    if (!makeDirectory(to.substr(0, to.rfind(u'\\')))) {
        return failure(to.substr(0, to.rfind(u'\\')) + u" cannot be made", GetLastError());
    }
    const std::u16string half_done = to + u".new";
    if (!CopyFileW(wide(from), wide(half_done), FALSE)) {
        return failure(from + u" cannot be copied to " + half_done, GetLastError());
    }
    if (!MoveFileExW(wide(half_done), wide(to), MOVEFILE_REPLACE_EXISTING)) {
        const DWORD error = GetLastError();
        DeleteFileW(wide(half_done));
        return failure(to + u" cannot be written", error);
    }
    return {Outcome::done, to + u" is installed."};
}

Result removeFile(const std::u16string& path, const std::u16string& original) {
    if (!fileExists(path)) {
        return {Outcome::done, path + u" is not there."};
    }
    if (!sameContent(path, original)) {
        return {Outcome::kept, path + u" is another file of this name and is left as it is."};
    }
    if (!DeleteFileW(wide(path))) {
        return failure(path + u" cannot be removed", GetLastError());
    }
    return {Outcome::done, path + u" is removed."};
}

std::optional<DWORD> runAndWait(const std::u16string& program, const std::u16string& arguments, DWORD milliseconds) {
    const std::u16string command = u"\"" + program + u"\" " + arguments;
    std::vector<wchar_t> buffer(wide(command), wide(command) + command.size() + 1);
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(wide(program), buffer.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process)) {
        return {};
    }
    const Handle thread(process.hThread), running(process.hProcess);
    const ULONGLONG deadline = GetTickCount64() + milliseconds;
    while (true) {
        const ULONGLONG now = GetTickCount64();
        HANDLE handle = running.get();
        const DWORD woken = MsgWaitForMultipleObjects(
            1, &handle, FALSE, now < deadline ? static_cast<DWORD>(deadline - now) : 0, QS_ALLINPUT);
        if (woken == WAIT_OBJECT_0) {
            DWORD status = 0;
            return GetExitCodeProcess(running.get(), &status) ? std::optional(status) : std::nullopt;
        }
        if (woken != WAIT_OBJECT_0 + 1 || now >= deadline) {
            TerminateProcess(running.get(), 1);
            SetLastError(ERROR_TIMEOUT);
            return {};
        }
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

std::u16string errorText(DWORD error) {
    std::array<wchar_t, 512> buffer{};
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                                  buffer.data(), static_cast<DWORD>(buffer.size()), nullptr);
    while (length > 0 && (buffer[length - 1] == L'\n' || buffer[length - 1] == L'\r' || buffer[length - 1] == L' ')) {
        --length;
    }
    return (length > 0 ? std::u16string(narrow(buffer.data(), length)) : u"error") + u" (" + murmelix::toText(error) +
           u")";
}

} // namespace setup
