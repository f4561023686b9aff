#include "tests/windows/support/picture.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "common/com/handles.h"
#include "tests/windows/support/process.h"

namespace murmelix::test {

std::uint32_t Picture::at(int x, int y) const {
    return pixels.at(static_cast<std::size_t>(y - top) * static_cast<std::size_t>(width) +
                     static_cast<std::size_t>(x - left));
}

int Picture::count(std::uint32_t colour) const {
    return static_cast<int>(std::count(pixels.begin(), pixels.end(), colour));
}

namespace {

BITMAPINFOHEADER headerOf(const Picture& picture) {
    return {sizeof(BITMAPINFOHEADER), picture.width, -picture.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
}

} // namespace

Picture desktop(const RECT& area) {
    Picture picture{area.left, area.top, area.right - area.left, area.bottom - area.top, {}};
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    BITMAPINFO info{};
    info.bmiHeader = headerOf(picture);
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, picture.width, picture.height, screen, picture.left, picture.top, SRCCOPY | CAPTUREBLT);
    GdiFlush();
    const auto* pixels = static_cast<const std::uint32_t*>(bits);
    picture.pixels.assign(pixels,
                          pixels + static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height));
    for (std::uint32_t& pixel : picture.pixels) {
        pixel &= 0x00FFFFFFU;
    }
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return picture;
}

void savePicture(const Picture& picture, const char* name) {
    const BITMAPINFOHEADER info = headerOf(picture);
    const auto size = static_cast<DWORD>(picture.pixels.size() * sizeof(std::uint32_t));
    constexpr auto head_size = static_cast<DWORD>(sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER));
    const BITMAPFILEHEADER head{0x4D42, head_size + size, 0, 0, head_size};
    const char* wanted = std::getenv("MURMELIX_SCREENS");
    const std::filesystem::path folder(com::wide(windowsPath(wanted ? wanted : SCREENS_DIR)));
    std::filesystem::create_directories(folder);
    std::ofstream file(folder / (std::string(name) + ".bmp"), std::ios::binary);
    file.write(reinterpret_cast<const char*>(&head), sizeof head);
    file.write(reinterpret_cast<const char*>(&info), sizeof info);
    file.write(reinterpret_cast<const char*>(picture.pixels.data()), static_cast<std::streamsize>(size));
}

void screenshot(const char* name) {
    savePicture(desktop({0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)}), name);
}

void screenshot(HWND window, const char* name) {
    RECT area{};
    GetWindowRect(window, &area);
    savePicture(desktop(area), name);
}

} // namespace murmelix::test
