#include "common/ansi.h"

#include <windows.h>

#include "common/com/handles.h"

namespace murmelix {

std::string toAnsi(std::u16string_view text) {
    if (text.empty()) {
        return {};
    }
    const auto* units = reinterpret_cast<const wchar_t*>(text.data());
    const int length = static_cast<int>(text.size());
    const int bytes = WideCharToMultiByte(CP_ACP, 0, units, length, nullptr, 0, nullptr, nullptr);
    std::string ansi(static_cast<std::size_t>(bytes), '\0');
    WideCharToMultiByte(CP_ACP, 0, units, length, ansi.data(), bytes, nullptr, nullptr);
    return ansi;
}

std::u16string fromAnsi(std::string_view bytes) {
    if (bytes.empty()) {
        return {};
    }
    const int size = static_cast<int>(bytes.size());
    const int units = MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, nullptr, 0);
    std::u16string text(static_cast<std::size_t>(units), u'\0');
    MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, reinterpret_cast<wchar_t*>(text.data()), units);
    return text;
}

} // namespace murmelix
