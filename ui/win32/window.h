// What carries a control out: a window of the system, with what is told to it and how it looks.
#pragma once

#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include <windows.h>

#include "ui/control.h"
#include "ui/native.h"
#include "ui/win32/accessible.h"
#include "ui/win32/gdi.h"

namespace murmelix::ui::win32 {

inline HWND windowOf(native::Handle handle) {
    return reinterpret_cast<HWND>(handle);
}
inline native::Handle handleOf(HWND hwnd) {
    return reinterpret_cast<native::Handle>(hwnd);
}

class ControlWindow {
  public:
    struct Making {
        const wchar_t* window_class; // of the system, or the toolkit's own `child_class`
        DWORD style = 0;
        DWORD extended_style = 0;
    };
    ControlWindow(Control& control, const Making& making, HWND parent, const std::u16string& caption);
    ControlWindow(const ControlWindow&) = delete;
    ControlWindow& operator=(const ControlWindow&) = delete;
    virtual ~ControlWindow();

    HWND hwnd() const { return hwnd_; }
    Control& control() const { return control_; }

    // A WM_COMMAND, WM_NOTIFY, WM_VSCROLL or WM_DRAWITEM that its parent hears of it.
    virtual void onCommand(UINT) {}
    virtual void onNotify(const NMHDR&) {}
    virtual void onScroll(UINT) {}
    virtual void onDraw(const DRAWITEMSTRUCT&) {}
    // A message to a window of the toolkit's own class; nothing where the system's way is right.
    virtual std::optional<LRESULT> onMessage(UINT, WPARAM, LPARAM) { return std::nullopt; }
    // To a WM_GETOBJECT, of a field of the system's in it where one is named; 0: as the system does.
    LRESULT answerToReader(WPARAM wparam, LPARAM lparam, HWND field = nullptr);
    // A message to a window of a class of the system's; here the system has its way.
    virtual LRESULT onSystemMessage(UINT message, WPARAM wparam, LPARAM lparam);
    // The same for the field that it answers for.
    LRESULT onFieldMessage(UINT message, WPARAM wparam, LPARAM lparam);
    // What it has beside its caption; pixels.
    virtual Size room() const { return {}; }
    virtual HFONT font() const { return fonts().standard.get(); }
    // Whether the system's control has a use of its own for a key that nobody else wants yet.
    virtual bool keeps(const Shortcut&) const { return false; }
    // Takes its place. Nothing of its old looks is kept, for what was in front of it there would come along.
    virtual void move(const Rect& pixels);
    // Its height, where another one is wanted.
    virtual int heightFor(int wanted) const { return wanted; }
    // A menu of what is at a place of the screen is asked for by the mouse.
    virtual void onMenuAsked(POINT) {}
    // The place below which a menu opens that the keyboard asks for; pixels, in the window.
    virtual POINT menuPlace() const;
    virtual void setCaption(const std::u16string& caption);
    virtual void setUseMnemonic() { InvalidateRect(hwnd_, nullptr, TRUE); }
    // It has another font, other colours or another resolution.
    virtual void restyle();

  protected:
    // A field of the system's that is a part of its control answers as the control does.
    void answerFor(HWND field);
    // A window made otherwise: a form's.
    ControlWindow(Control& control, HWND hwnd);

  private:
    Control& control_;
    HWND hwnd_;
    HWND field_ = nullptr;
    WNDPROC system_ = nullptr; // what the system's class does with a message
    WNDPROC field_system_ = nullptr;
    std::shared_ptr<AccessibleSource> source_; // made when it is asked for
    std::shared_ptr<AccessibleSource> field_source_;
};

inline constexpr wchar_t child_class[] = L"MurmelixControl";

// Those there are, by their windows; null where the toolkit has not made it.
ControlWindow* find(HWND hwnd);
template <class T>
T* find(HWND hwnd) {
    return dynamic_cast<T*>(find(hwnd));
}
ControlWindow& at(native::Handle control);
template <class T>
T& at(native::Handle control) {
    return dynamic_cast<T&>(at(control));
}

// Keeps it until native::destroy.
native::Handle keep(std::unique_ptr<ControlWindow> window);
template <class T>
native::Handle make(Control& control, native::Handle parent, const std::u16string& caption) {
    return keep(std::make_unique<T>(control, windowOf(parent), caption));
}

// No exception of a handler gets into the window system.
template <class Handler>
void guarded(Handler&& handler) {
    try {
        std::forward<Handler>(handler)();
    } catch (...) {
    }
}

// The ShiftKeys held now.
int shiftState();
Shortcut keyOf(WPARAM code, int shift);

// What children tell their parent; any window that has children hands it on.
std::optional<LRESULT> onChildMessage(UINT message, WPARAM wparam, LPARAM lparam);

// A click is a button that goes down and up again in one place; tells whether the message was part of one.
class Clicks {
  public:
    bool take(Control& control, HWND hwnd, UINT message, LPARAM lparam);

  private:
    bool pressed_ = false;
};

// DrawText's flags for the accelerators of a caption.
inline UINT prefixes(const Control& control) {
    return control.UseMnemonic() ? 0 : DT_NOPREFIX;
}

class Painting {
  public:
    explicit Painting(HWND hwnd) : hwnd_(hwnd), dc_(BeginPaint(hwnd, &what_)) {}
    Painting(const Painting&) = delete;
    Painting& operator=(const Painting&) = delete;
    ~Painting() { EndPaint(hwnd_, &what_); }
    HDC dc() const { return dc_; }
    const RECT& part() const { return what_.rcPaint; }

  private:
    HWND hwnd_;
    PAINTSTRUCT what_{};
    HDC dc_;
};

RECT clientArea(HWND hwnd);
std::u16string textOf(HWND hwnd);

} // namespace murmelix::ui::win32
