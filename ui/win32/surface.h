#pragma once

#include <map>
#include <tuple>

#include "ui/surface.h"
#include "ui/win32/gdi.h"

namespace murmelix::ui {

struct Surface::Impl {
    HWND window = nullptr; // that shows it; none of a row or button
    int width = 0, height = 0;
    bool drawn_on = false; // else the picture box shows its picture
    double points = 0;
    int percent = 100;
    bool bold = false, underline = false;
    win32::Bitmap bitmap;
    win32::MemoryDc dc{CreateCompatibleDC(nullptr)};
    std::map<std::tuple<double, int, bool, bool>, win32::Font> fonts; // made when they are needed
    unsigned fonts_number = 0;                                        // of the system's fonts that they follow

    HFONT font();
    void show(HWND shown_by); // which gives it its size
    void resize(int new_width, int new_height);
    // `part` of the target, from a place of the surface on.
    void copyTo(HDC target, const RECT& part, int left = 0, int top = 0);
};

} // namespace murmelix::ui
