#include "ui/win32/surface.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "common/com/handles.h"
#include "ui/native.h"

namespace murmelix::ui {

namespace {

SIZE measure(HDC dc, HFONT font, std::u16string_view text) {
    const win32::Selected selected(dc, font);
    SIZE size{};
    GetTextExtentPoint32W(dc, reinterpret_cast<const wchar_t*>(text.data()), static_cast<int>(text.size()), &size);
    return size;
}

// The rows of a list show the same few pictures again and again: each is loaded once.
HICON iconOf(const Picture& picture, int pixels) {
    static std::map<std::pair<std::u16string, int>, win32::Icon> loaded;
    const auto [icon, is_new] = loaded.try_emplace({picture.name, pixels});
    if (is_new) {
        icon->second = win32::loadPicture(picture, pixels);
    }
    return icon->second.get();
}

} // namespace

HFONT Surface::Impl::font() {
    if (fonts_number != win32::fontsNumber()) {
        for (auto& made : fonts) {
            made = {};
        }
        fonts_number = win32::fontsNumber();
    }
    auto& chosen = fonts[(bold ? 1 : 0) + (underline ? 2 : 0)];
    if (!chosen) {
        LOGFONTW description = win32::messageFont(points);
        description.lfWeight = bold ? FW_BOLD : FW_NORMAL;
        description.lfUnderline = underline;
        chosen = win32::Font(CreateFontIndirectW(&description));
    }
    return chosen.get();
}

void Surface::Impl::resize(HWND shown_by) {
    window = shown_by;
    RECT inner{};
    GetClientRect(window, &inner);
    if (bitmap && inner.right == width && inner.bottom == height) {
        return;
    }
    width = inner.right;
    height = inner.bottom;
    win32::Bitmap fresh(
        CreateCompatibleBitmap(win32::ScreenDc().get(), width > 0 ? width : 1, height > 0 ? height : 1));
    SelectObject(dc.get(), fresh.get());
    bitmap = std::move(fresh);
}

void Surface::Impl::copyTo(HDC target, const RECT& part) {
    BitBlt(target, part.left, part.top, part.right - part.left, part.bottom - part.top, dc.get(), part.left, part.top,
           SRCCOPY);
}

Surface::Surface() : impl_(std::make_unique<Impl>()) {}
Surface::~Surface() = default;

int Surface::Width() const {
    return impl_->width;
}

int Surface::Height() const {
    return impl_->height;
}

void Surface::setFontSize(double points) {
    impl_->points = points;
    for (auto& made : impl_->fonts) {
        made = {};
    }
}

void Surface::setFontBold(bool bold) {
    impl_->bold = bold;
}

void Surface::setFontUnderline(bool underline) {
    impl_->underline = underline;
}

int Surface::TextWidth(std::u16string_view text) const {
    return measure(impl_->dc.get(), impl_->font(), text).cx;
}

int Surface::TextHeight() const {
    return measure(impl_->dc.get(), impl_->font(), u"X").cy;
}

void Surface::Cls(Colour background) {
    Fill({0, 0, impl_->width, impl_->height}, background);
}

void Surface::Fill(const Rect& pixels, Colour colour) {
    impl_->drawn_on = true;
    const RECT area{pixels.left, pixels.top, pixels.left + pixels.width, pixels.top + pixels.height};
    const win32::Brush brush(CreateSolidBrush(win32::toColorRef(colour)));
    FillRect(impl_->dc.get(), &area, brush.get());
}

void Surface::Print(int x, int y, std::u16string_view text, Colour colour) {
    HDC dc = impl_->dc.get();
    const win32::Selected selected(dc, impl_->font());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, win32::toColorRef(colour));
    // Longer text than a line of the widest screen is not seen.
    const auto length = static_cast<UINT>(std::min<std::size_t>(text.size(), 4096));
    ExtTextOutW(dc, x, y, 0, nullptr, reinterpret_cast<const wchar_t*>(text.data()), length, nullptr);
}

void Surface::PaintPicture(const Picture& picture, int x, int y) {
    const int size = win32::scaled(picture.size);
    if (HICON icon = iconOf(picture, size)) {
        DrawIconEx(impl_->dc.get(), x, y, icon, size, size, 0, nullptr, DI_NORMAL);
    }
}

void Surface::Refresh() {
    if (impl_->window) {
        InvalidateRect(impl_->window, nullptr, FALSE);
    }
}

void native::attach(Surface& surface, Handle picture_box) {
    surface.impl().resize(reinterpret_cast<HWND>(picture_box));
}

} // namespace murmelix::ui
