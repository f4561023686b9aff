#include "tests/windows/agent/server_process.h"

#include <gtest/gtest.h>

#include "companions/agent/acs/writer.h"

namespace agent {

using murmelix::com::Object;

namespace {

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

} // namespace

std::u16string serverProgram() {
    return murmelix::test::programCommand(AGENT_SERVER);
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

} // namespace agent
