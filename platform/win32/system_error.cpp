#include "platform/win32/system_error.h"

#include <array>

#include <windows.h>

#include "common/com/handles.h"
#include "common/text.h"

namespace murmelix::platform {

std::u16string errorText(unsigned long error) {
    std::array<wchar_t, 512> buffer{};
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                                  buffer.data(), static_cast<DWORD>(buffer.size()), nullptr);
    while (length > 0 && (buffer[length - 1] == L'\n' || buffer[length - 1] == L'\r' || buffer[length - 1] == L' ')) {
        --length;
    }
    std::u16string text(length > 0 ? com::narrow(buffer.data(), length) : u"error");
    return text.append(u" (").append(toText(error)).append(u")");
}

} // namespace murmelix::platform
