// Owners of drawing objects, and what all windows of the toolkit draw with.
#pragma once

#include <utility>

#include <windows.h>

#include "ui/types.h"

namespace murmelix::ui::win32 {

template <class Handle, auto destroy>
class Owned {
  public:
    Owned() = default;
    explicit Owned(Handle handle) : handle_(handle) {}
    Owned(Owned&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Owned& operator=(Owned&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Owned() {
        if (handle_) {
            destroy(handle_);
        }
    }
    Handle get() const { return handle_; }
    // To whoever owns it from now on.
    Handle release() { return std::exchange(handle_, nullptr); }
    explicit operator bool() const { return handle_ != nullptr; }

  private:
    Handle handle_ = nullptr;
};

using Font = Owned<HFONT, DeleteObject>;
using Bitmap = Owned<HBITMAP, DeleteObject>;
using Brush = Owned<HBRUSH, DeleteObject>;
using Pen = Owned<HPEN, DeleteObject>;
using Region = Owned<HRGN, DeleteObject>;
using MemoryDc = Owned<HDC, DeleteDC>;
using Icon = Owned<HICON, DestroyIcon>;

// Selects an object for as long as it lives.
class Selected {
  public:
    Selected(HDC dc, HGDIOBJ object) : dc_(dc), before_(SelectObject(dc, object)) {}
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected() { SelectObject(dc_, before_); }

  private:
    HDC dc_;
    HGDIOBJ before_;
};

// The screen's context for as long as it lives.
class ScreenDc {
  public:
    ScreenDc() : dc_(GetDC(nullptr)) {}
    ScreenDc(const ScreenDc&) = delete;
    ScreenDc& operator=(const ScreenDc&) = delete;
    ~ScreenDc() { ReleaseDC(nullptr, dc_); }
    HDC get() const { return dc_; }

  private:
    HDC dc_;
};

// Dots an inch that all windows are drawn for: at first the system's, then those of the screen the main window is on.
int screenDpi();
void setScreenDpi(int dpi);
int scaled(int pixels_at_96);
// A measure of the system (SM_…) at this resolution.
int systemMetric(int index);
// Of the screen a window is on; 0 where the system does not tell.
int dpiOf(HWND window);
COLORREF toColorRef(Colour colour);
// The user has chosen other colours, or may have.
void renewColours();

int lineHeight(HFONT font);

// The system's message font at this resolution; `points` 0 keeps its size.
LOGFONTW messageFont(double points = 0);

struct Fonts {
    Font standard, heading, link;
};
const Fonts& fonts();
// Makes them anew and returns those before, which controls may still use.
Fonts renewFonts();
// Whether the system has another one than they were made from.
bool systemFontChanged();
// Counts how often that was done: a font made for another number is out of date.
unsigned fontsNumber();

// A picture of the resources at its size for this screen; null where there is none of that name.
Icon loadPicture(const Picture& picture, int pixels = 0);
// Of the size and the one bit a pixel that the checks of menus have: the menu draws it in its own colours.
Bitmap menuPicture(const Picture& picture);

} // namespace murmelix::ui::win32
