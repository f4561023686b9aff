#include "tests/windows/agent/server_process.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "common/text.h"
#include "companions/agent/acs/writer.h"

namespace agent {

using murmelix::com::Object;
using murmelix::com::wide;

namespace {

constexpr DWORD patience = 30000;

acs::Image disc(std::uint16_t width, std::uint16_t height, std::uint8_t colour) {
    acs::Image image;
    image.width = width;
    image.height = height;
    image.pixels.assign(std::size_t{image.stride()} * height, 0);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int dx = 2 * x + 1 - width;
            const int dy = 2 * y + 1 - height;
            const bool inside = dx * dx * height * height + dy * dy * width * width < width * width * height * height;
            image.pixels[static_cast<std::size_t>(y) * image.stride() + static_cast<std::size_t>(x)] =
                inside ? colour : std::uint8_t{0};
        }
    }
    return image;
}

Picture captured(const RECT& area, std::vector<std::uint8_t>* file) {
    Picture picture{area.left, area.top, area.right - area.left, area.bottom - area.top, {}};
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, picture.width, -picture.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, picture.width, picture.height, screen, picture.left, picture.top, SRCCOPY | CAPTUREBLT);
    GdiFlush();
    const auto count = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    const auto* pixels = static_cast<const std::uint32_t*>(bits);
    picture.pixels.assign(pixels, pixels + count);
    for (std::uint32_t& pixel : picture.pixels) {
        pixel &= 0x00FFFFFFU;
    }
    if (file) {
        const DWORD size = static_cast<DWORD>(count * 4);
        BITMAPFILEHEADER head{0x4D42, static_cast<DWORD>(sizeof head + sizeof info.bmiHeader) + size, 0, 0,
                              static_cast<DWORD>(sizeof head + sizeof info.bmiHeader)};
        const auto append = [&](const void* from, std::size_t bytes) {
            const auto* begin = static_cast<const std::uint8_t*>(from);
            file->insert(file->end(), begin, begin + bytes);
        };
        append(&head, sizeof head);
        append(&info.bmiHeader, sizeof info.bmiHeader);
        append(bits, size);
    }
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return picture;
}

} // namespace

bool pumpUntil(const std::function<bool()>& condition) {
    const ULONGLONG end = GetTickCount64() + patience;
    while (!condition()) {
        if (GetTickCount64() > end) {
            return false;
        }
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        if (!condition()) {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        }
    }
    return true;
}

Process::Process(const std::u16string& command_line) {
    std::vector<wchar_t> line(wide(command_line), wide(command_line) + command_line.size() + 1);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION made{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &made)) {
        CloseHandle(made.hThread);
        process_ = made.hProcess;
    }
}

Process::~Process() {
    if (!process_) {
        return;
    }
    if (running()) {
        kill();
    }
    WaitForSingleObject(process_, patience);
    CloseHandle(process_);
}

std::optional<DWORD> Process::exitStatus() const {
    if (!process_ || !pumpUntil([this] { return !running(); })) {
        return std::nullopt;
    }
    DWORD status = 0;
    GetExitCodeProcess(process_, &status);
    return status;
}

std::u16string windowsPath(const std::string& host_path) {
    std::u16string path = u"Z:";
    path += murmelix::fromUtf8(host_path);
    std::replace(path.begin(), path.end(), u'/', u'\\');
    return path;
}

std::u16string serverProgram() {
    std::u16string quoted = u"\"";
    quoted += windowsPath(AGENT_SERVER);
    quoted += u'"';
    return quoted;
}

std::u16string temporaryFile(const std::u16string& name) {
    std::array<wchar_t, MAX_PATH + 1> folder{};
    const DWORD length = GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
    std::u16string path(murmelix::com::narrow(folder.data(), length));
    path += u"agent_server_";
    path += name;
    return path;
}

std::string contents(const std::u16string& file) {
    std::ifstream in(std::filesystem::path(wide(file)), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

void write(const std::u16string& file, const std::vector<std::uint8_t>& bytes) {
    std::ofstream out(std::filesystem::path(wide(file)), std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

RunningServer::RunningServer(const std::u16string& switches)
    : process_(std::make_unique<Process>(serverProgram() + u" " + switches)) {
    EXPECT_TRUE(pumpUntil([] { return FindWindowW(L"AgentServerMessages", L"AgentServer") != nullptr; }))
        << "it did not start";
}

RunningServer::~RunningServer() {
    close();
    EXPECT_EQ(process_->exitStatus(), 0U);
}

void RunningServer::close() {
    if (const HWND window = FindWindowW(L"AgentServerMessages", nullptr)) {
        PostMessageW(window, WM_CLOSE, 0, 0);
    }
}

Object RunningServer::control() const {
    return Object::create(u"Agent.Control.2");
}

acs::Character smallCharacter() {
    acs::Character made;
    made.width = 64;
    made.height = 48;
    made.guid = {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF};
    made.transparent_index = 0;
    made.palette.resize(256);
    made.palette[1] = {0, 0, 255};
    made.palette[2] = {0, 255, 0};
    made.palette[3] = {255, 0, 0};
    made.balloon = acs::Balloon{};
    made.names = {{0x0409, u"Dot", u"A small disc.", u"Extra"}};
    made.images = {disc(64, 48, 1), disc(16, 8, 2), disc(64, 48, 3)};
    const auto add = [&](const char16_t* name, int frames) -> acs::Animation& {
        acs::Animation& animation = made.animations.emplace_back();
        animation.name = name;
        animation.transition = acs::Transition::none;
        animation.frames.resize(static_cast<std::size_t>(frames));
        for (acs::Frame& frame : animation.frames) {
            frame.images = {{0, 0, 0}};
        }
        return animation;
    };
    acs::Frame& rest = add(u"RestPose", 1).frames[0];
    for (std::uint8_t shape = 1; shape <= 6; ++shape) {
        acs::Mouth mouth;
        mouth.shape = static_cast<acs::MouthShape>(shape);
        mouth.image = 1;
        mouth.x = 24;
        mouth.y = 28;
        mouth.width = 16;
        mouth.height = 8;
        rest.mouths.push_back(mouth);
    }
    add(u"Show", 2);
    add(u"Hide", 2);
    add(u"Wave", 3);
    add(u"Blue", 20);
    for (acs::Frame& frame : made.animations.back().frames) {
        frame.images = {{2, 0, 0}};
    }
    add(u"Loop", 1).frames[0].branches = {{0, 100}};
    made.states = {{u"SHOWING", {u"Show"}}, {u"HIDING", {u"Hide"}}, {u"SPEAKING", {u"RestPose"}}};
    return made;
}

std::u16string smallCharacterFile() {
    const std::u16string file = temporaryFile(u"Dot.acs");
    write(file, acs::write(smallCharacter()));
    return file;
}

std::uint32_t Picture::at(int x, int y) const {
    return pixels.at(static_cast<std::size_t>(y - top) * static_cast<std::size_t>(width) +
                     static_cast<std::size_t>(x - left));
}

int Picture::count(std::uint32_t colour) const {
    return static_cast<int>(std::count(pixels.begin(), pixels.end(), colour));
}

Picture desktop(const RECT& area) {
    return captured(area, nullptr);
}

void screenshot(const char* name) {
    std::vector<std::uint8_t> file;
    captured({0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)}, &file);
    const char* wanted = std::getenv("MURMELIX_SCREENS");
    const std::filesystem::path folder(wide(windowsPath(wanted ? wanted : SCREENS_DIR)));
    std::filesystem::create_directories(folder);
    write((folder / (std::string(name) + ".bmp")).u16string(), file);
}

} // namespace agent
