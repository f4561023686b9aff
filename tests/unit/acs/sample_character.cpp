#include "tests/unit/acs/sample_character.h"

#include <string_view>

using namespace agent::acs;

namespace {

std::vector<std::uint8_t> bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

Image image(std::uint16_t width, std::uint16_t height, unsigned step) {
    Image result;
    result.width = width;
    result.height = height;
    for (unsigned i = 0; i < result.stride() * height; ++i) {
        result.pixels.push_back(static_cast<std::uint8_t>(i / step * 37));
    }
    return result;
}

Voice voice() {
    Voice result;
    result.engine.fill(0xE1);
    result.mode.fill(0x3D);
    result.speed = 170;
    result.pitch = 90;
    result.choice = Voice::Choice{0x0407, u"Wien", 2, 30, u"heiter"};
    return result;
}

Animation restPose() {
    Animation result;
    result.name = u"RestPose";
    result.transition = Transition::none;
    Frame frame;
    frame.images = {{0, 0, 0}, {1, -2, 3}};
    for (std::uint8_t shape = 0; shape <= 6; ++shape) {
        Mouth mouth;
        mouth.shape = static_cast<MouthShape>(shape);
        mouth.replaces_top_image = shape % 2 == 1;
        mouth.image = shape % 3;
        mouth.x = static_cast<std::int16_t>(7 - shape);
        mouth.y = -1;
        mouth.width = 5;
        mouth.height = 4;
        if (shape > 4) {
            mouth.region = bytes("a mouth's region");
        }
        frame.mouths.push_back(mouth);
    }
    result.frames = {frame};
    return result;
}

Animation greet() {
    Animation result;
    result.name = u"Greet";
    result.transition = Transition::return_animation;
    result.return_animation = u"GreetReturn";
    result.frames.resize(3);
    result.frames[0].images = {{2, 1, 1}};
    result.frames[0].sound = 1;
    result.frames[0].branches = {{2, 30}, {0, 20}, {1, 50}};
    result.frames[1].duration = 0;
    result.frames[1].exit_frame = 2;
    result.frames[2].images = {{3, 0, 0}};
    result.frames[2].exit_frame = exit_end;
    return result;
}

} // namespace

Character sampleCharacter() {
    Character character;
    character.guid.fill(0x5A);
    character.width = 24;
    character.height = 20;
    character.transparent_index = 10;
    character.style = style_voice | style_balloon | 0x00100000;
    character.voice = voice();
    Balloon balloon;
    balloon.lines = 4;
    balloon.characters_a_line = 32;
    balloon.background_colour = 0x00C0FFFF;
    balloon.font_name = u"Größe";
    balloon.font_height = -13;
    balloon.italic = true;
    character.balloon = balloon;
    for (int i = 0; i < 256; ++i) {
        character.palette.push_back(
            {static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(3 * i), static_cast<std::uint8_t>(255 - i)});
    }
    character.tray_icon = TrayIcon{bytes("colours of the icon"), bytes("mask of the icon")};
    character.states = {{u"SHOWING", {u"RESTPOSE"}}, {u"IDLINGLEVEL1", {u"Greet", u"RestPose"}}, {u"HEARING", {}}};
    character.names = {{0x0409, u"Sample", u"Has everything", u"more||less"}, {0x0411, u"見本", u"", u""}};
    Animation return_animation;
    return_animation.name = u"GreetReturn";
    return_animation.frames.resize(1);
    return_animation.frames[0].images = {{1, 0, -32768}};
    character.animations = {restPose(), greet(), return_animation};
    character.images = {image(24, 20, 50), image(5, 3, 1), image(7, 9, 6), Image{}};
    character.images[0].region = std::vector<std::uint8_t>(64, 3); // becomes smaller when compressed
    character.images[1].region = bytes("region");                  // does not
    character.sounds = {bytes("RIFF....WAVE"), bytes("RIFF....WAVEfmt ")};
    return character;
}
