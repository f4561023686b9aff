#include "companions/agent/stage/windows/canvas.h"

#include <system_error>

namespace agent::stage {

Canvas::Canvas() : context_(CreateCompatibleDC(nullptr)) {
    resize(1, 1);
}

void Canvas::resize(int width, int height) {
    if (size_.cx == width && size_.cy == height) {
        return;
    }
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* pixels = nullptr;
    gdi::Bitmap made(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    if (!context_ || !made) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "CreateDIBSection");
    }
    SelectObject(context_.get(), made.get());
    bitmap_ = std::move(made);
    pixels_ = static_cast<std::uint32_t*>(pixels);
    size_ = {width, height};
}

} // namespace agent::stage
