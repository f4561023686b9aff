#include "platform/files.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>

#include <windows.h>

#include "common/com/handles.h"
#include "common/text.h"
#include "platform/win32/system_error.h"

namespace murmelix::platform {

using com::narrow;
using com::wide;

namespace {

struct CloseFile {
    void operator()(HANDLE file) const { CloseHandle(file); }
};
using File = std::unique_ptr<void, CloseFile>; // null: it could not be opened

constexpr std::size_t file_block = 65536; // bytes read at once

File openForReading(const std::u16string& path) {
    HANDLE file = CreateFileW(wide(path), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    return File(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

bool readBlock(const File& file, std::vector<char>& bytes) {
    bytes.resize(file_block);
    DWORD count = 0;
    if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr)) {
        return false;
    }
    bytes.resize(count);
    return true;
}

Refusal refusalUnless(BOOL done) {
    return done ? Refusal() : errorText(GetLastError());
}

} // namespace

std::u16string windowsDirectory() {
    std::array<wchar_t, MAX_PATH> path{};
    const UINT length = GetWindowsDirectoryW(path.data(), static_cast<UINT>(path.size()));
    std::u16string directory(narrow(path.data(), std::min<std::size_t>(length, path.size() - 1)));
    while (directory.ends_with(u'\\')) {
        directory.pop_back();
    }
    return directory;
}

bool fileExists(const std::u16string& path) {
    const DWORD attributes = GetFileAttributesW(wide(path));
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool sameContent(const std::u16string& a, const std::u16string& b) {
    const File first = openForReading(a), second = openForReading(b);
    std::vector<char> from_first, from_second;
    while (first && second && readBlock(first, from_first) && readBlock(second, from_second)) {
        if (from_first != from_second) {
            return false;
        }
        if (from_first.empty()) {
            return true;
        }
    }
    return false;
}

std::optional<std::string> readFile(const std::u16string& path, std::size_t most) {
    const File file = openForReading(path);
    if (!file || GetFileType(file.get()) != FILE_TYPE_DISK) {
        return std::nullopt;
    }
    std::string bytes;
    for (std::vector<char> read; readBlock(file, read);) {
        if (read.empty()) {
            return bytes;
        }
        bytes.append(read.data(), read.size());
        if (bytes.size() > most) {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

std::vector<std::u16string> filesIn(const std::u16string& directory, const std::u16string& ending) {
    std::vector<std::u16string> names;
    WIN32_FIND_DATAW entry{};
    HANDLE search = FindFirstFileW(wide(directory + u"\\*"), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        return names;
    }
    do {
        const std::u16string_view name(narrow(entry.cFileName, wcslen(entry.cFileName)));
        if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && name.size() >= ending.size() &&
            sameText(name.substr(name.size() - ending.size()), ending, LetterCase::ignored)) {
            names.emplace_back(name);
        }
    } while (FindNextFileW(search, &entry));
    FindClose(search);
    std::sort(names.begin(), names.end());
    return names;
}

Refusal makeDirectory(const std::u16string& path) {
    if (CreateDirectoryW(wide(path), nullptr)) {
        return {};
    }
    const DWORD error = GetLastError();
    if (error == ERROR_ALREADY_EXISTS && (GetFileAttributesW(wide(path)) & FILE_ATTRIBUTE_DIRECTORY)) {
        return {};
    }
    const std::size_t above = path.rfind(u'\\');
    if (error != ERROR_PATH_NOT_FOUND || above == npos) {
        return errorText(error);
    }
    if (auto refusal = makeDirectory(path.substr(0, above))) {
        return refusal;
    }
    return refusalUnless(CreateDirectoryW(wide(path), nullptr));
}

Refusal copyFile(const std::u16string& from, const std::u16string& to) {
    return refusalUnless(CopyFileW(wide(from), wide(to), FALSE));
}

Refusal moveFile(const std::u16string& from, const std::u16string& to) {
    return refusalUnless(MoveFileExW(wide(from), wide(to), MOVEFILE_REPLACE_EXISTING));
}

Refusal deleteFile(const std::u16string& path) {
    return refusalUnless(DeleteFileW(wide(path)));
}

bool removeEmptyDirectory(const std::u16string& path) {
    return RemoveDirectoryW(wide(path)) || GetFileAttributesW(wide(path)) == INVALID_FILE_ATTRIBUTES;
}

std::optional<WriteFailure> writeFile(const std::u16string& path, std::string_view bytes) {
    const auto failed = [] {
        const DWORD error = GetLastError();
        return WriteFailure{error, errorText(error)};
    };
    HANDLE opened =
        CreateFileW(wide(path), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        return failed();
    }
    const File file(opened);
    while (!bytes.empty()) {
        DWORD written = 0;
        if (!WriteFile(file.get(), bytes.data(), static_cast<DWORD>(std::min(bytes.size(), file_block)), &written,
                       nullptr)) {
            return failed();
        }
        bytes.remove_prefix(written);
    }
    return {};
}

} // namespace murmelix::platform
