// The one way windows are made here: a class whose method receives the messages, and no exception leaves it.
#pragma once

#include <string>

#include "companions/agent/stage/windows/handles.h"

namespace agent::stage {

class Window {
  public:
    Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window() = default;

    HWND handle() const { return window_.get(); }

  protected:
    struct Making {
        const wchar_t* class_name;
        DWORD style;
        DWORD extended_style;
        UINT class_style = 0;
        const wchar_t* caption = L"";
        HWND parent = nullptr;
        int width = 0, height = 0;
    };
    // Throws std::system_error where Windows refuses.
    void make(const Making& making);
    // To be called first in the destructor of the class that has received(), so that no message comes after it.
    void destroy() { window_ = {}; }
    virtual LRESULT received(UINT message, WPARAM wparam, LPARAM lparam);

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

    WindowHandle window_;
    HWND raw_ = nullptr; // also while it is being made
};

} // namespace agent::stage
