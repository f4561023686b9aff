#include "companions/agent/acs/writer.h"

#include "common/text.h"
#include "companions/agent/acs/compression.h"
#include "companions/agent/acs/reader.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace agent::acs {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t header_size = 36;

class Output {
  public:
    void u8(std::uint8_t value) { bytes_.push_back(value); }
    void u16(std::uint16_t value) {
        u8(static_cast<std::uint8_t>(value));
        u8(static_cast<std::uint8_t>(value >> 8U));
    }
    void i16(std::int16_t value) { u16(static_cast<std::uint16_t>(value)); }
    void u32(std::uint32_t value) {
        u16(static_cast<std::uint16_t>(value));
        u16(static_cast<std::uint16_t>(value >> 16U));
    }
    void flag(bool value) { u8(value ? 1 : 0); }
    void raw(std::span<const std::uint8_t> bytes) { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
    void string(std::u16string_view text) {
        u32(count<std::uint32_t>(text.size(), "units in a text"));
        if (text.empty()) {
            return;
        }
        for (const char16_t unit : text) {
            u16(unit);
        }
        u16(0);
    }
    void block(std::span<const std::uint8_t> bytes) {
        u32(count<std::uint32_t>(bytes.size(), "bytes in a block"));
        raw(bytes);
    }
    void locator(const Extent& where) {
        u32(where.offset);
        u32(where.size);
    }

    template <typename Count>
    static Count count(std::size_t number, std::string_view items) {
        if (number > std::numeric_limits<Count>::max()) {
            throw std::invalid_argument("There are too many " + std::string(items) + ": " + std::to_string(number) +
                                        ".");
        }
        return static_cast<Count>(number);
    }

    const Bytes& bytes() const { return bytes_; }
    Bytes take() { return std::move(bytes_); }

  private:
    Bytes bytes_;
};

void putVoice(Output& out, const Voice& voice) {
    out.raw(voice.engine);
    out.raw(voice.mode);
    out.u32(voice.speed);
    out.u16(voice.pitch);
    out.flag(voice.choice.has_value());
    if (voice.choice) {
        out.u16(voice.choice->language_id);
        out.string(voice.choice->dialect);
        out.u16(voice.choice->gender);
        out.u16(voice.choice->age);
        out.string(voice.choice->style);
    }
}

void putBalloon(Output& out, const Balloon& balloon) {
    out.u8(balloon.lines);
    out.u8(balloon.characters_a_line);
    out.u32(balloon.text_colour);
    out.u32(balloon.background_colour);
    out.u32(balloon.border_colour);
    out.string(balloon.font_name);
    out.u32(static_cast<std::uint32_t>(balloon.font_height));
    out.u32(balloon.weight);
    out.flag(balloon.italic);
    out.flag(balloon.strike_out);
}

void putStates(Output& out, const std::vector<State>& states) {
    out.u16(Output::count<std::uint16_t>(states.size(), "states"));
    for (const State& state : states) {
        out.string(state.name);
        out.u16(Output::count<std::uint16_t>(state.animations.size(), "animations of a state"));
        for (const std::u16string& name : state.animations) {
            out.string(name);
        }
    }
}

Bytes names(const Character& character) {
    Output out;
    out.u16(Output::count<std::uint16_t>(character.names.size(), "names"));
    for (const LocalizedName& name : character.names) {
        out.u16(name.language_id);
        out.string(name.name);
        out.string(name.description);
        out.string(name.extra_data);
    }
    return out.take();
}

Bytes information(const Character& character, const Extent& where_names_are) {
    Output out;
    out.u16(character.minor_version);
    out.u16(character.major_version);
    out.locator(where_names_are);
    out.raw(character.guid);
    out.u16(character.width);
    out.u16(character.height);
    out.u8(character.transparent_index);
    out.u32((character.style & ~(style_voice | style_balloon)) | (character.voice ? style_voice : 0) |
            (character.balloon ? style_balloon : 0));
    out.u16(2); // the version of the animation set: 2.0
    out.u16(0);
    if (character.voice) {
        putVoice(out, *character.voice);
    }
    if (character.balloon) {
        putBalloon(out, *character.balloon);
    }
    out.u32(Output::count<std::uint32_t>(character.palette.size(), "colours"));
    for (const Colour& colour : character.palette) {
        out.u8(colour.blue);
        out.u8(colour.green);
        out.u8(colour.red);
        out.u8(0);
    }
    out.flag(character.tray_icon.has_value());
    if (character.tray_icon) {
        out.block(character.tray_icon->colour_image);
        out.block(character.tray_icon->mask_image);
    }
    putStates(out, character.states);
    return out.take();
}

void putMouth(Output& out, const Mouth& mouth) {
    out.u8(static_cast<std::uint8_t>(mouth.shape));
    out.flag(mouth.replaces_top_image);
    out.u16(mouth.image);
    out.u8(0);
    out.flag(!mouth.region.empty());
    out.i16(mouth.x);
    out.i16(mouth.y);
    out.u16(mouth.width);
    out.u16(mouth.height);
    if (!mouth.region.empty()) {
        out.block(mouth.region);
    }
}

void putFrame(Output& out, const Frame& frame) {
    out.u16(Output::count<std::uint16_t>(frame.images.size(), "images in a frame"));
    for (const FrameImage& image : frame.images) {
        out.u32(image.image);
        out.i16(image.x);
        out.i16(image.y);
    }
    out.u16(frame.sound);
    out.u16(frame.duration);
    out.i16(frame.exit_frame);
    out.u8(Output::count<std::uint8_t>(frame.branches.size(), "branches of a frame"));
    for (const Branch& branch : frame.branches) {
        out.u16(branch.target);
        out.u16(branch.probability);
    }
    out.u8(Output::count<std::uint8_t>(frame.mouths.size(), "mouths of a frame"));
    for (const Mouth& mouth : frame.mouths) {
        putMouth(out, mouth);
    }
}

std::u16string upperCase(std::u16string text) {
    std::ranges::transform(text, text.begin(), [](char16_t unit) { return murmelix::toUpper(unit); });
    return text;
}

Bytes animationBytes(const Animation& animation) {
    Output out;
    out.string(upperCase(animation.name));
    out.u8(static_cast<std::uint8_t>(animation.transition));
    out.string(animation.return_animation);
    out.u16(Output::count<std::uint16_t>(animation.frames.size(), "frames of an animation"));
    for (const Frame& frame : animation.frames) {
        putFrame(out, frame);
    }
    return out.take();
}

Bytes imageBytes(const Image& image) {
    Output out;
    if (image.width == 0 || image.height == 0) {
        out.u8(0);
        return out.take();
    }
    const std::size_t size = std::size_t{image.stride()} * image.height;
    if (image.pixels.size() != size) {
        throw std::invalid_argument(
            "An image of " + std::to_string(image.width) + " by " + std::to_string(image.height) + " pixels has " +
            std::to_string(image.pixels.size()) + " bytes instead of " + std::to_string(size) + ".");
    }
    out.u8(1);
    out.u16(image.width);
    out.u16(image.height);
    const Bytes pixels = compress(image.pixels);
    const bool pixels_shrink = pixels.size() < size;
    out.flag(pixels_shrink);
    out.block(pixels_shrink ? pixels : image.pixels);
    const Bytes region = compress(image.region);
    const bool region_shrinks = region.size() < image.region.size();
    out.u32(region_shrinks ? Output::count<std::uint32_t>(region.size(), "bytes in a region") : 0);
    out.u32(Output::count<std::uint32_t>(image.region.size(), "bytes in a region"));
    out.raw(region_shrinks ? region : image.region);
    return out.take();
}

// The file as it grows behind its header.
class File {
  public:
    Extent add(std::span<const std::uint8_t> part) {
        const Extent where{
            Output::count<std::uint32_t>(header_size + behind_header_.bytes().size(), "bytes in the file"),
            Output::count<std::uint32_t>(part.size(), "bytes in a part")};
        behind_header_.raw(part);
        return where;
    }
    Bytes finish(const std::array<Extent, 4>& parts) {
        Output out;
        out.u32(0xABCDABC3);
        for (const Extent& part : parts) {
            out.locator(part);
        }
        out.raw(behind_header_.bytes());
        return out.take();
    }

  private:
    Output behind_header_;
};

// A directory of images or sounds.
Bytes directory(const std::vector<Extent>& entries, std::string_view items) {
    Output out;
    out.u32(Output::count<std::uint32_t>(entries.size(), items));
    for (const Extent& entry : entries) {
        out.locator(entry);
        out.u32(0); // the checksum
    }
    return out.take();
}

} // namespace

std::vector<std::uint8_t> write(const Character& character) {
    File file;
    std::array<Extent, 4> parts;
    parts[0] = file.add(information(character, file.add(names(character))));
    Output animation_directory;
    animation_directory.u32(Output::count<std::uint32_t>(character.animations.size(), "animations"));
    for (const Animation& animation : character.animations) {
        animation_directory.string(animation.name);
        animation_directory.locator(file.add(animationBytes(animation)));
    }
    parts[1] = file.add(animation_directory.bytes());
    std::vector<Extent> images;
    for (const Image& image : character.images) {
        images.push_back(file.add(imageBytes(image)));
    }
    parts[2] = file.add(directory(images, "images"));
    std::vector<Extent> sounds;
    for (const Bytes& sound : character.sounds) {
        sounds.push_back(file.add(sound));
    }
    parts[3] = file.add(directory(sounds, "sounds"));
    Bytes bytes = file.finish(parts);
    std::string error;
    if (!CharacterFile::open(bytes, error)) {
        throw std::invalid_argument(error);
    }
    return bytes;
}

} // namespace agent::acs
