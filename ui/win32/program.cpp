#include "ui/program.h"

#include <windows.h>

#include <shellapi.h>

#include "common/com/handles.h"
#include "common/text.h"

namespace murmelix::ui {

std::u16string programPath() {
    constexpr std::size_t longest_path = 32767; // that Windows has
    std::u16string path(longest_path + 1, u'\0');
    const DWORD length =
        GetModuleFileNameW(nullptr, reinterpret_cast<wchar_t*>(path.data()), static_cast<DWORD>(path.size()));
    path.resize(length);
    return path;
}

} // namespace murmelix::ui
