#include "ui/win32/gdi.h"

#include <algorithm>
#include <cmath>
#include <cwchar>

#include "common/com/handles.h"

namespace murmelix::ui::win32 {

namespace {

// A function that only newer versions of the system have.
template <class Function>
Function newer(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleW(L"user32"), name)));
}

// Of the system's fonts and measures, as it tells them to a program that asks for no other.
int systemDpi() {
    static const int dpi = GetDeviceCaps(ScreenDc().get(), LOGPIXELSX);
    return dpi > 0 ? dpi : 96;
}

int& dpiInUse() {
    static int dpi = systemDpi();
    return dpi;
}

unsigned fonts_number = 0;
LOGFONTW made_from{};

Fonts makeFonts() {
    made_from = messageFont();
    LOGFONTW standard = made_from, heading = standard, link = standard;
    heading.lfWeight = FW_BOLD;
    heading.lfHeight = MulDiv(heading.lfHeight, 5, 4);
    link.lfUnderline = TRUE;
    return {Font(CreateFontIndirectW(&standard)), Font(CreateFontIndirectW(&heading)),
            Font(CreateFontIndirectW(&link))};
}

Fonts& fontsInUse() {
    static Fonts in_use = makeFonts();
    return in_use;
}

} // namespace

int screenDpi() {
    return dpiInUse();
}

void setScreenDpi(int dpi) {
    constexpr int least = 48, most = 960; // what lies beyond is a mistake
    dpiInUse() = std::clamp(dpi, least, most);
}

int scaled(int pixels_at_96) {
    return MulDiv(pixels_at_96, screenDpi(), 96);
}

int systemMetric(int index) {
    static const auto for_dpi = newer<int(WINAPI*)(int, UINT)>("GetSystemMetricsForDpi");
    if (for_dpi) {
        return for_dpi(index, static_cast<UINT>(screenDpi()));
    }
    return MulDiv(GetSystemMetrics(index), screenDpi(), systemDpi());
}

int dpiOf(HWND window) {
    static const auto dpi_for_window = newer<UINT(WINAPI*)(HWND)>("GetDpiForWindow");
    return dpi_for_window ? static_cast<int>(dpi_for_window(window)) : 0;
}

namespace {

// High contrast, or windows whose ground is not light.
bool userHasColours() {
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    if (SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) &&
        (contrast.dwFlags & HCF_HIGHCONTRASTON)) {
        return true;
    }
    constexpr int light = 200; // the least of a colour's three parts
    const COLORREF ground = GetSysColor(COLOR_WINDOW);
    return std::min({GetRValue(ground), GetGValue(ground), GetBValue(ground)}) < light;
}

bool& usersColours() {
    static bool are_there = userHasColours();
    return are_there;
}

} // namespace

COLORREF toColorRef(Colour colour) {
    if (colour & 0x80000000) {
        return GetSysColor(static_cast<int>(colour & 0xFF));
    }
    if (colour & 0x40000000) {
        return usersColours() ? GetSysColor(static_cast<int>(colour >> 24 & 0x1F)) : colour & 0x00FFFFFF;
    }
    return colour;
}

void renewColours() {
    usersColours() = userHasColours();
}

int lineHeight(HFONT font) {
    const ScreenDc dc;
    const Selected selected(dc.get(), font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc.get(), &metrics);
    return static_cast<int>(metrics.tmHeight);
}

LOGFONTW messageFont(double points) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    LOGFONTW font = metrics.lfMessageFont;
    font.lfHeight = MulDiv(font.lfHeight, screenDpi(), systemDpi());
    if (points > 0) {
        font.lfHeight = -static_cast<LONG>(std::lround(points * screenDpi() / 72));
    }
    return font;
}

const Fonts& fonts() {
    return fontsInUse();
}

Fonts renewFonts() {
    ++fonts_number;
    return std::exchange(fontsInUse(), makeFonts());
}

bool systemFontChanged() {
    const LOGFONTW now = messageFont();
    return now.lfHeight != made_from.lfHeight || now.lfWeight != made_from.lfWeight ||
           std::wcscmp(now.lfFaceName, made_from.lfFaceName) != 0;
}

unsigned fontsNumber() {
    return fonts_number;
}

Icon loadPicture(const Picture& picture, int pixels) {
    if (!picture) {
        return {};
    }
    const int size = pixels > 0 ? pixels : scaled(picture.size);
    return Icon(static_cast<HICON>(
        LoadImageW(GetModuleHandleW(nullptr), com::wide(picture.name), IMAGE_ICON, size, size, LR_DEFAULTCOLOR)));
}

Bitmap menuPicture(const Picture& picture) {
    const int width = systemMetric(SM_CXMENUCHECK), height = systemMetric(SM_CYMENUCHECK);
    const Icon icon = loadPicture(picture, std::min(width, height));
    if (!icon) {
        return {};
    }
    // The icon in black on white; what is dark enough of it becomes a dot.
    const int size = std::min(width, height);
    const MemoryDc dc(CreateCompatibleDC(nullptr));
    BITMAPINFO colours{};
    colours.bmiHeader = {sizeof colours.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const Bitmap drawn(CreateDIBSection(dc.get(), &colours, DIB_RGB_COLORS, &bits, nullptr, 0));
    Bitmap dots(CreateBitmap(width, height, 1, 1, nullptr));
    if (!drawn || !dots) {
        return {};
    }
    {
        const Selected selected(dc.get(), drawn.get());
        PatBlt(dc.get(), 0, 0, width, height, WHITENESS);
        DrawIconEx(dc.get(), (width - size) / 2, (height - size) / 2, icon.get(), size, size, 0, nullptr, DI_NORMAL);
        GdiFlush();
        auto* pixels = static_cast<COLORREF*>(bits);
        const auto dark = [](COLORREF pixel) { return GetRValue(pixel) + GetGValue(pixel) + GetBValue(pixel) < 384; };
        std::transform(pixels, pixels + width * height, pixels,
                       [&](COLORREF pixel) { return dark(pixel) ? COLORREF{0} : COLORREF{0xFFFFFF}; });
        const MemoryDc target(CreateCompatibleDC(nullptr));
        const Selected result(target.get(), dots.get());
        BitBlt(target.get(), 0, 0, width, height, dc.get(), 0, 0, SRCCOPY);
    }
    return dots;
}

} // namespace murmelix::ui::win32
