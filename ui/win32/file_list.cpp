#include "ui/file_list.h"

#include <algorithm>

#include <windows.h>

#include "common/com/handles.h"

namespace murmelix::ui {

using com::wide;

std::vector<std::u16string> native::files(const std::u16string& directory, const std::u16string& pattern) {
    std::vector<std::u16string> names;
    const bool parted = directory.empty() || directory.ends_with(u'\\');
    WIN32_FIND_DATAW found{};
    HANDLE search = FindFirstFileW(wide(directory + (parted ? u"" : u"\\") + pattern), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return names;
    }
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
            names.emplace_back(reinterpret_cast<const char16_t*>(found.cFileName));
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
    std::sort(names.begin(), names.end(), [](const std::u16string& a, const std::u16string& b) {
        return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, wide(a), -1, wide(b), -1) == CSTR_LESS_THAN;
    });
    return names;
}

} // namespace murmelix::ui
