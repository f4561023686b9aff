#include "ui/win32/surface.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "common/com/handles.h"
#include "ui/picture_box.h"

namespace murmelix::ui {

namespace {

// Longer text than a line of the widest screen is not seen.
constexpr std::size_t longest_text = 4096;

RECT rectOf(const Rect& pixels) {
    return {pixels.left, pixels.top, pixels.left + pixels.width, pixels.top + pixels.height};
}

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
        fonts.clear();
        fonts_number = win32::fontsNumber();
    }
    auto& chosen = fonts[{points, percent, bold, underline}];
    if (!chosen) {
        LOGFONTW description = win32::messageFont(points);
        description.lfHeight = MulDiv(description.lfHeight, percent, 100);
        description.lfWeight = bold ? FW_BOLD : FW_NORMAL;
        description.lfUnderline = underline;
        chosen = win32::Font(CreateFontIndirectW(&description));
    }
    return chosen.get();
}

void Surface::Impl::show(HWND shown_by) {
    window = shown_by;
    RECT inner{};
    GetClientRect(window, &inner);
    resize(inner.right, inner.bottom);
}

void Surface::Impl::resize(int new_width, int new_height) {
    if (bitmap && new_width == width && new_height == height) {
        return;
    }
    width = new_width;
    height = new_height;
    win32::Bitmap fresh(
        CreateCompatibleBitmap(win32::ScreenDc().get(), width > 0 ? width : 1, height > 0 ? height : 1));
    SelectObject(dc.get(), fresh.get());
    bitmap = std::move(fresh);
}

void Surface::Impl::copyTo(HDC target, const RECT& part, int left, int top) {
    BitBlt(target, part.left, part.top, part.right - part.left, part.bottom - part.top, dc.get(), left, top, SRCCOPY);
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
}

void Surface::setFontScale(int percent) {
    impl_->percent = percent;
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
    const RECT area = rectOf(pixels);
    const win32::Brush brush(CreateSolidBrush(win32::toColorRef(colour)));
    FillRect(impl_->dc.get(), &area, brush.get());
}

void Surface::FillNotXor(const Rect& pixels, Colour colour) {
    impl_->drawn_on = true;
    HDC dc = impl_->dc.get();
    const win32::Brush brush(CreateSolidBrush(win32::toColorRef(colour)));
    const win32::Selected with_brush(dc, brush.get()), without_pen(dc, GetStockObject(NULL_PEN));
    const int before = SetROP2(dc, R2_NOTXORPEN);
    // Without a pen a rectangle is one pixel smaller each way.
    Rectangle(dc, pixels.left, pixels.top, pixels.left + pixels.width + 1, pixels.top + pixels.height + 1);
    SetROP2(dc, before);
}

void Surface::Print(int x, int y, std::u16string_view text, Colour colour) {
    HDC dc = impl_->dc.get();
    const win32::Selected selected(dc, impl_->font());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, win32::toColorRef(colour));
    const auto length = static_cast<UINT>(std::min(text.size(), longest_text));
    ExtTextOutW(dc, x, y, 0, nullptr, reinterpret_cast<const wchar_t*>(text.data()), length, nullptr);
}

void Surface::PaintPicture(const Picture& picture, int x, int y) {
    const int size = win32::scaled(picture.size);
    if (HICON icon = iconOf(picture, size)) {
        DrawIconEx(impl_->dc.get(), x, y, icon, size, size, 0, nullptr, DI_NORMAL);
    }
}

void Surface::PrintIn(const Rect& pixels, std::u16string_view text, Colour colour, Align align) {
    HDC dc = impl_->dc.get();
    const win32::Selected selected(dc, impl_->font());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, win32::toColorRef(colour));
    RECT area = rectOf(pixels);
    DrawTextW(
        dc, reinterpret_cast<const wchar_t*>(text.data()), static_cast<int>(std::min(text.size(), longest_text)), &area,
        DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX | (align == Align::center ? DT_CENTER : DT_LEFT));
}

void Surface::Gradient(const Rect& pixels, Colour top, Colour bottom) {
    const COLORREF from = win32::toColorRef(top), to = win32::toColorRef(bottom);
    const int rows = std::max(pixels.height, 1);
    for (int row = 0; row < rows; ++row) {
        // What cannot be seen is not drawn: a surface shows a part of a larger band.
        if (pixels.top + row < 0 || pixels.top + row >= impl_->height) {
            continue;
        }
        const auto mix = [&](int a, int b) { return static_cast<unsigned>(a + (b - a) * row / rows); };
        Fill({pixels.left, pixels.top + row, pixels.width, 1},
             rgb(mix(GetRValue(from), GetRValue(to)), mix(GetGValue(from), GetGValue(to)),
                 mix(GetBValue(from), GetBValue(to))));
    }
}

void Surface::Ellipse(const Rect& pixels, Colour inside, Colour edge) {
    impl_->drawn_on = true;
    const win32::Brush brush(CreateSolidBrush(win32::toColorRef(inside)));
    const win32::Pen pen(CreatePen(PS_SOLID, 1, win32::toColorRef(edge)));
    const win32::Selected with_brush(impl_->dc.get(), brush.get()), with_pen(impl_->dc.get(), pen.get());
    ::Ellipse(impl_->dc.get(), pixels.left, pixels.top, pixels.left + pixels.width, pixels.top + pixels.height);
}

void Surface::FrameRect(const Rect& pixels, Colour colour) {
    impl_->drawn_on = true;
    const RECT area = rectOf(pixels);
    const win32::Brush brush(CreateSolidBrush(win32::toColorRef(colour)));
    ::FrameRect(impl_->dc.get(), &area, brush.get());
}

void Surface::Polyline(std::initializer_list<Point> points, Colour colour, int thickness) {
    impl_->drawn_on = true;
    std::vector<POINT> corners;
    for (const Point& point : points) {
        corners.push_back({point.x, point.y});
    }
    const win32::Pen pen(CreatePen(PS_SOLID, std::max(thickness, 1), win32::toColorRef(colour)));
    const win32::Selected with_pen(impl_->dc.get(), pen.get());
    ::Polyline(impl_->dc.get(), corners.data(), static_cast<int>(corners.size()));
}

void Surface::FocusRect(const Rect& pixels) {
    const RECT area = rectOf(pixels);
    SetTextColor(impl_->dc.get(), GetSysColor(COLOR_WINDOWTEXT));
    DrawFocusRect(impl_->dc.get(), &area);
}

void Surface::Refresh() {
    if (impl_->window) {
        InvalidateRect(impl_->window, nullptr, FALSE);
    }
}

void native::attach(Surface& surface, Handle picture_box) {
    surface.impl().show(reinterpret_cast<HWND>(picture_box));
}

} // namespace murmelix::ui
