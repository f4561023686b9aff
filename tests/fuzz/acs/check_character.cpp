#include "tests/fuzz/acs/check_character.h"

#include "companions/agent/acs/reader.h"
#include "companions/agent/acs/writer.h"
#include "tests/fuzz/require.h"

#include <algorithm>

namespace {

using namespace agent::acs;

void checkFrame(const Character& character, const Animation& animation, const Frame& frame) {
    for (const FrameImage& image : frame.images) {
        require(image.image < character.images.size(), "a frame's image exists");
    }
    require(frame.sound == no_sound || frame.sound < character.sounds.size(), "a frame's sound exists");
    require(frame.exit_frame == exit_end || frame.exit_frame == exit_none ||
                (frame.exit_frame >= 0 && static_cast<std::size_t>(frame.exit_frame) < animation.frames.size()),
            "an exit leads to a frame");
    for (const Branch& branch : frame.branches) {
        require(branch.target < animation.frames.size(), "a branch leads to a frame");
    }
    for (const Mouth& mouth : frame.mouths) {
        require(mouth.image < character.images.size(), "a mouth's image exists");
        require(static_cast<unsigned>(mouth.shape) <= 6, "a mouth has a shape");
    }
}

void checkContents(const Character& character) {
    require(character.width > 0 && character.height > 0, "the character has an area");
    require(character.palette.size() == 256, "every pixel has a colour");
    require(character.voice.has_value() == ((character.style & style_voice) != 0), "the style tells of the voice");
    require(character.balloon.has_value() == ((character.style & style_balloon) != 0),
            "the style tells of the balloon");
    for (const Image& image : character.images) {
        require(image.pixels.size() == std::size_t{image.stride()} * image.height, "an image has all of its pixels");
    }
    for (const Animation& animation : character.animations) {
        require(character.findAnimation(animation.name) != nullptr, "an animation is found by its name");
        for (const Frame& frame : animation.frames) {
            checkFrame(character, animation, frame);
        }
    }
}

} // namespace

bool checkCharacter(std::span<const std::uint8_t> file) {
    std::string error;
    std::string error_of_file;
    const auto whole = read(file, error);
    const auto opened = CharacterFile::open({file.begin(), file.end()}, error_of_file);
    require(whole.has_value() == opened.has_value() && error == error_of_file, "both readers come to the same end");
    require(whole.has_value() == error.empty(), "what is refused has a sentence, what is accepted has none");
    if (!whole) {
        require(error.ends_with('.') && error.size() < 500, "the sentence is one");
        return false;
    }
    checkContents(*whole);
    require(opened->imageCount() == whole->images.size() && opened->soundCount() == whole->sounds.size(),
            "both readers count the same");
    for (std::size_t i = 0; i < whole->images.size(); ++i) {
        require(*opened->image(i) == whole->images[i], "both readers decompress the same");
    }
    for (std::size_t i = 0; i < whole->sounds.size(); ++i) {
        require(std::ranges::equal(opened->sound(i), whole->sounds[i]), "both readers give the same sounds");
    }
    require(read(write(*whole), error) == whole, "what was read can be written and read again");
    return true;
}
