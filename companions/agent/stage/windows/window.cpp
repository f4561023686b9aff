#include "companions/agent/stage/windows/window.h"

#include <system_error>

namespace agent::stage {

void Window::make(const Making& making) {
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    WNDCLASSEXW window_class{};
    window_class.cbSize = sizeof window_class;
    window_class.style = making.class_style;
    window_class.lpfnWndProc = &Window::procedure;
    window_class.hInstance = instance;
    window_class.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(1)); // of the program, where it has one
    window_class.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    window_class.lpszClassName = making.class_name;
    // Made for the first window of its kind; for the others it is there.
    RegisterClassExW(&window_class);
    const HWND made = CreateWindowExW(making.extended_style, making.class_name, making.caption, making.style, 0, 0,
                                      making.width, making.height, making.parent, nullptr, instance, this);
    if (!made) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "CreateWindowEx");
    }
    window_ = WindowHandle(made);
}

LRESULT Window::received(UINT message, WPARAM wparam, LPARAM lparam) {
    return DefWindowProcW(raw_, message, wparam, lparam);
}

LRESULT CALLBACK Window::procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lparam);
        auto* made = static_cast<Window*>(creation->lpCreateParams);
        made->raw_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made));
    }
    auto* self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!self) {
        return DefWindowProcW(window, message, wparam, lparam);
    }
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        return DefWindowProcW(window, message, wparam, lparam);
    }
    try {
        return self->received(message, wparam, lparam);
    } catch (...) {
        // A message that cannot be carried out is as if it had not come; the program goes on.
        return DefWindowProcW(window, message, wparam, lparam);
    }
}

} // namespace agent::stage
