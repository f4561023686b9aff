// Base of the client's windows, and what they share in looks: sizes scaled to the screen, the system's font, avatars.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include <windows.h>

#include "companions/messenger/chat/client.h"
#include "companions/messenger/client/looks.h"

namespace messenger_client {

struct DeleteObjectOf {
    void operator()(void* object) const { DeleteObject(object); }
};
template <class Handle>
using GdiOwner = std::unique_ptr<std::remove_pointer_t<Handle>, DeleteObjectOf>;
using FontOwner = GdiOwner<HFONT>;

// The system's message font, `height` in percent of its own.
FontOwner systemFont(int height = 100, int weight = FW_NORMAL);

std::u16string windowText(HWND window);
void setWindowText(HWND window, std::u16string_view text);
// A visible child at no place yet.
HWND makeChild(HWND parent, const wchar_t* class_name, const wchar_t* text, DWORD style, int id, DWORD extended = 0);
RECT placeIn(HWND parent, HWND child);

namespace color {
constexpr COLORREF band_top = RGB(58, 124, 191);
constexpr COLORREF band_bottom = RGB(94, 160, 219);
constexpr COLORREF on_band = RGB(255, 255, 255);
constexpr COLORREF on_band_soft = RGB(224, 238, 250);
constexpr COLORREF face = RGB(243, 247, 251);
constexpr COLORREF field = RGB(255, 255, 255);
constexpr COLORREF line = RGB(198, 212, 226);
constexpr COLORREF text = RGB(32, 40, 48);
constexpr COLORREF soft_text = RGB(96, 110, 124);
constexpr COLORREF chosen = RGB(213, 230, 246);
constexpr COLORREF fault = RGB(176, 42, 32);
} // namespace color

COLORREF colorOf(Status status);
void fill(HDC dc, const RECT& area, COLORREF color);
// `part` of `whole` on the way from one colour to the other.
COLORREF mixed(COLORREF from, COLORREF to, int part, int whole);
void fillBand(HDC dc, const RECT& area);
void drawText(HDC dc, HFONT font, COLORREF color, std::u16string_view text, RECT area, UINT format);
int textWidth(HDC dc, HFONT font, std::u16string_view text);
// The sign of a menu that opens downwards, its middle at the left.
void drawDownArrow(HDC dc, POINT at, COLORREF color);
void drawDisc(HDC dc, int x, int y, int radius, COLORREF color);
// An envelope as high as 3/4 of its width, which is that of `area`.
void drawEnvelope(HDC dc, const RECT& area, COLORREF color);
// A disc with the first letter of the name, in a colour of its own, and a small disc for the status, if it is known.
void drawAvatar(HDC dc, HFONT font, const RECT& area, const Contact& contact);
// The program's icon, `size` pixels wide; owned by the process.
HICON clientIcon(int size);

// Painting a window in one go, without flicker: everything is drawn into a picture first.
class Painting {
  public:
    explicit Painting(HWND window);
    ~Painting();
    Painting(const Painting&) = delete;
    Painting& operator=(const Painting&) = delete;
    HDC dc() const { return memory_; }
    const RECT& area() const { return area_; } // the client area

  private:
    HWND window_;
    PAINTSTRUCT paint_{};
    RECT area_{};
    HDC screen_ = nullptr;
    HDC memory_ = nullptr;
    GdiOwner<HBITMAP> picture_;
    HGDIOBJ before_ = nullptr;
};

// A window whose messages come to `message`. Exceptions end in here.
class Window {
  public:
    Window() = default;
    virtual ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    HWND handle() const { return handle_; }

  protected:
    void create(const wchar_t* class_name, const wchar_t* title, DWORD style, DWORD extended, const RECT& place,
                HWND owner = nullptr);
    HWND child(const wchar_t* class_name, const wchar_t* text, DWORD style, int id, DWORD extended = 0) {
        return makeChild(handle_, class_name, text, style, id, extended);
    }
    virtual LRESULT message(UINT message, WPARAM wparam, LPARAM lparam) = 0;
    // As a dialogue box does it, where it is about the keyboard.
    LRESULT defaultMessage(UINT message, WPARAM wparam, LPARAM lparam);

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
    HWND handle_ = nullptr;
    HWND had_focus_ = nullptr; // the child that had the keyboard when the window was left
};

} // namespace messenger_client
