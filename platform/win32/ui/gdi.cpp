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

Bitmap pictureBitmap(const Picture& picture) {
    const Icon icon = loadPicture(picture);
    if (!icon)
        return {};
    const int size = scaled(picture.size);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size;
    info.bmiHeader.biHeight = -size;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr; // all zero: transparent
    Bitmap bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const MemoryDc dc(CreateCompatibleDC(nullptr));
    if (!bitmap || !dc)
        return {};
    const Selected selected(dc.get(), bitmap.get());
    DrawIconEx(dc.get(), 0, 0, icon.get(), size, size, 0, nullptr, DI_NORMAL);
    GdiFlush();
    return bitmap;
}

} // namespace murmelix::ui::win32
