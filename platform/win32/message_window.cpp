#include "platform/win32/message_window.h"

namespace murmelix::platform {

HWND makeMessageWindow(const wchar_t* class_name, WNDPROC procedure, void* owner) {
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = class_name;
    description.lpfnWndProc = procedure;
    RegisterClassExW(&description); // once for all
    const HWND window =
        CreateWindowExW(0, class_name, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, description.hInstance, nullptr);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(owner));
    return window;
}

} // namespace murmelix::platform
