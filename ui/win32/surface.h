#pragma once

#include "ui/surface.h"
#include "ui/win32/gdi.h"

namespace murmelix::ui {

struct Surface::Impl {
    HWND window = nullptr; // that shows it
    int width = 0, height = 0;
    bool drawn_on = false; // else the picture box shows its picture
    double points = 0;
    bool bold = false, underline = false;
    win32::Bitmap bitmap;
    win32::MemoryDc dc{CreateCompatibleDC(nullptr)};
    win32::Font fonts[4];      // by bold + 2 * underline, made when they are needed
    unsigned fonts_number = 0; // of the system's fonts that they follow

    HFONT font();
    void resize(HWND shown_by);
    void copyTo(HDC target, const RECT& part);
};

} // namespace murmelix::ui
