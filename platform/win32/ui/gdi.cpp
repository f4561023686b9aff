#include "platform/win32/ui/gdi.h"

#include <cmath>

#include "common/com/handles.h"

namespace murmelix::ui::win32 {

int screenDpi() {
    static const int dpi = GetDeviceCaps(ScreenDc().get(), LOGPIXELSX);
    return dpi > 0 ? dpi : 96;
}

int scaled(int pixels_at_96) {
    return MulDiv(pixels_at_96, screenDpi(), 96);
}

COLORREF toColorRef(Colour colour) {
    return colour & 0x80000000 ? GetSysColor(static_cast<int>(colour & 0xFF)) : colour;
}

LOGFONTW messageFont(double points) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    LOGFONTW font = metrics.lfMessageFont;
    if (points > 0)
        font.lfHeight = -static_cast<LONG>(std::lround(points * screenDpi() / 72));
    return font;
}

HFONT defaultFont() {
    static const LOGFONTW description = messageFont();
    static const Font font(CreateFontIndirectW(&description));
    return font.get();
}

Icon loadPicture(const Picture& picture, int pixels) {
    if (!picture)
        return {};
    const int size = pixels > 0 ? pixels : scaled(picture.size);
    return Icon(static_cast<HICON>(
        LoadImageW(GetModuleHandleW(nullptr), com::wide(picture.name), IMAGE_ICON, size, size, LR_DEFAULTCOLOR)));
}

Bitmap menuPicture(const Picture& picture) {
    if (!picture)
        return {};
    return Bitmap(static_cast<HBITMAP>(
        LoadImageW(GetModuleHandleW(nullptr), com::wide(picture.name), IMAGE_BITMAP, 0, 0, LR_MONOCHROME)));
}

} // namespace murmelix::ui::win32
