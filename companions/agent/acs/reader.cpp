#include "companions/agent/acs/reader.h"

#include "common/text.h"
#include "companions/agent/acs/compression.h"

#include <algorithm>
#include <fstream>
#include <string_view>
#include <system_error>

namespace agent::acs {
namespace {

constexpr std::uint32_t signature = 0xABCDABC3;
constexpr std::uint32_t compound_signature = 0xE011CFD0; // the storage of version 1.5
constexpr std::size_t palette_size = 256;
constexpr std::uintmax_t largest_file = std::uintmax_t{256} << 20;
constexpr std::size_t most_kept_pixels = std::size_t{2} << 20;
constexpr std::size_t most_kept_images = 1024; // each is looked for among the others

// Why a file is refused, as a sentence; thrown within this file only.
struct Refusal {
    std::string sentence;
};

[[noreturn]] void refuse(std::string sentence) {
    throw Refusal{std::move(sentence)};
}

// A name within a sentence, shortened where a damaged one is endless.
std::string inQuotes(std::u16string_view name) {
    return '"' + murmelix::toUtf8(name.substr(0, 64)) + '"';
}

// A number of bytes that may be taken, and the sentence that refuses more.
class Budget {
  public:
    Budget(std::uint64_t bytes, const char* sentence) : left_(bytes), sentence_(sentence) {}
    void take(std::uint64_t bytes) {
        if (bytes > left_) {
            refuse(sentence_);
        }
        left_ -= bytes;
    }

  private:
    std::uint64_t left_;
    const char* sentence_;
};

// Reads one part of the file from its start; `what` names the part at the beginning of a sentence. `readings`, where
// there is one, is charged with every byte.
class Cursor {
  public:
    Cursor(std::span<const std::uint8_t> bytes, std::string what, Budget* readings = nullptr)
        : bytes_(bytes), what_(std::move(what)), readings_(readings) {}

    const std::string& what() const { return what_; }

    std::span<const std::uint8_t> bytes(std::uint64_t count) {
        if (count > bytes_.size()) {
            refuse(what_ + " is cut short.");
        }
        if (readings_ != nullptr) {
            readings_->take(count);
        }
        const auto taken = bytes_.first(static_cast<std::size_t>(count));
        bytes_ = bytes_.subspan(taken.size());
        return taken;
    }
    std::uint8_t u8() { return bytes(1)[0]; }
    std::uint16_t u16() {
        const auto b = bytes(2);
        return static_cast<std::uint16_t>(b[0] | b[1] << 8U);
    }
    std::int16_t i16() { return static_cast<std::int16_t>(u16()); }
    std::uint32_t u32() {
        const std::uint32_t low = u16();
        return low | std::uint32_t{u16()} << 16U;
    }
    Guid guid() {
        Guid result;
        std::ranges::copy(bytes(result.size()), result.begin());
        return result;
    }
    std::u16string string() {
        const std::uint32_t length = u32();
        if (length == 0) {
            return {};
        }
        const auto units = bytes((std::uint64_t{length} + 1) * 2); // a closing 0 follows
        std::u16string text(length, u'\0');
        for (std::size_t i = 0; i < length; ++i) {
            text[i] = static_cast<char16_t>(units[2 * i] | units[2 * i + 1] << 8U);
        }
        return text;
    }
    std::vector<std::uint8_t> block() {
        const auto taken = bytes(u32());
        return {taken.begin(), taken.end()};
    }

    // Checks a count of items of at least `smallest` bytes before room is made for them.
    template <typename Count>
    Count fitting(Count count, std::size_t smallest, std::string_view items) const {
        if (std::uint64_t{count} * smallest > bytes_.size()) {
            refuse(what_ + " announces " + std::to_string(count) + " " + std::string(items) +
                   ", more than its size can hold.");
        }
        return count;
    }

  private:
    std::span<const std::uint8_t> bytes_;
    std::string what_;
    Budget* readings_;
};

struct RawImage {
    std::uint16_t width = 0, height = 0;
    bool compressed = false;
    std::span<const std::uint8_t> pixels;
    bool region_compressed = false;
    std::span<const std::uint8_t> region;
    std::size_t region_size = 0;

    std::size_t size() const { return ((std::size_t{width} + 3) & ~std::size_t{3}) * height; }
};

RawImage rawImage(Cursor in) {
    RawImage raw;
    if (in.u8() == 0) {
        return raw;
    }
    raw.width = in.u16();
    raw.height = in.u16();
    raw.compressed = in.u8() != 0;
    raw.pixels = in.bytes(in.u32());
    const std::uint32_t region_compressed_size = in.u32();
    raw.region_size = in.u32();
    raw.region_compressed = region_compressed_size != 0;
    raw.region = in.bytes(raw.region_compressed ? region_compressed_size : raw.region_size);
    return raw;
}

std::vector<std::uint8_t> unpacked(bool compressed, std::span<const std::uint8_t> bytes, std::size_t size) {
    if (!compressed) {
        return {bytes.begin(), bytes.end()};
    }
    std::vector<std::uint8_t> result(size);
    decompress(bytes, result);
    return result;
}

// Of an image that was checked.
Image decoded(const RawImage& raw) {
    if (raw.size() == 0) {
        return {};
    }
    return {raw.width, raw.height, unpacked(raw.compressed, raw.pixels, raw.size()),
            unpacked(raw.region_compressed, raw.region, raw.region_size)};
}

class Reader {
  public:
    explicit Reader(std::span<const std::uint8_t> file)
        : file_(file), readings_(std::uint64_t{file.size()} * most_readings,
                                 "The character's parts share their bytes more than 16 times over.") {}

    void read() {
        if (file_.size() >= 4 && Cursor(file_, "").u32() == compound_signature) {
            refuse("The file is a character of version 1.5, stored as a compound file; only version 2 can be read.");
        }
        Cursor header(file_, "The file's header");
        if (header.u32() != signature) {
            refuse("The file is not a character: its signature is wrong.");
        }
        Cursor info = part(header, "The character information");
        Cursor animation_directory = part(header, "The directory of animations");
        Cursor image_directory = part(header, "The directory of images");
        Cursor sound_directory = part(header, "The directory of sounds");
        readInformation(info);
        images = readDirectory(image_directory, "image");
        sounds = readDirectory(sound_directory, "sound");
        checkImages();
        for (std::size_t i = 0; i < sounds.size(); ++i) {
            budget_.take(sizeof character.sounds[0] + sounds[i].size);
        }
        readAnimations(animation_directory);
    }

    Character character;
    std::vector<Extent> images, sounds;

  private:
    Extent extent(Cursor& in, const std::string& what) const {
        Extent result;
        result.offset = in.u32();
        result.size = in.u32();
        if (std::uint64_t{result.offset} + result.size > file_.size()) {
            refuse(what + " lies outside the file.");
        }
        return result;
    }
    Cursor at(const Extent& where, std::string what) {
        return Cursor(file_.subspan(where.offset, where.size), std::move(what), &readings_);
    }
    Cursor part(Cursor& in, const std::string& what) { return at(extent(in, what), what); }

    std::u16string string(Cursor& in) {
        std::u16string text = in.string();
        texts_.take(sizeof text + 2 * text.size());
        return text;
    }
    std::vector<std::uint8_t> block(Cursor& in) {
        std::vector<std::uint8_t> bytes = in.block();
        budget_.take(sizeof bytes + bytes.size());
        return bytes;
    }

    void readInformation(Cursor& in) {
        character.minor_version = in.u16();
        character.major_version = in.u16();
        if (character.major_version != 2) {
            refuse("The character is of version " + std::to_string(character.major_version) + "." +
                   std::to_string(character.minor_version) + "; only version 2 can be read.");
        }
        Cursor names = part(in, "The table of names");
        character.guid = in.guid();
        character.width = in.u16();
        character.height = in.u16();
        if (character.width == 0 || character.height == 0 ||
            std::max(character.width, character.height) > largest_side) {
            refuse("The character is of impossible size: " + std::to_string(character.width) + " by " +
                   std::to_string(character.height) + " pixels.");
        }
        character.transparent_index = in.u8();
        character.style = in.u32();
        in.bytes(4); // the version of the animation set
        if ((character.style & style_voice) != 0) {
            readVoice(in);
        }
        if ((character.style & style_balloon) != 0) {
            readBalloon(in);
        }
        readPalette(in);
        if (in.u8() != 0) {
            TrayIcon icon;
            icon.colour_image = block(in);
            icon.mask_image = block(in);
            character.tray_icon = std::move(icon);
        }
        readStates(in);
        readNames(names);
    }

    void readVoice(Cursor& in) {
        Voice voice;
        voice.engine = in.guid();
        voice.mode = in.guid();
        voice.speed = in.u32();
        voice.pitch = in.u16();
        if (in.u8() != 0) {
            Voice::Choice choice;
            choice.language_id = in.u16();
            choice.dialect = string(in);
            choice.gender = in.u16();
            choice.age = in.u16();
            choice.style = string(in);
            voice.choice = std::move(choice);
        }
        character.voice = std::move(voice);
    }

    void readBalloon(Cursor& in) {
        Balloon balloon;
        balloon.lines = in.u8();
        balloon.characters_a_line = in.u8();
        balloon.text_colour = in.u32();
        balloon.background_colour = in.u32();
        balloon.border_colour = in.u32();
        balloon.font_name = string(in);
        balloon.font_height = static_cast<std::int32_t>(in.u32());
        balloon.weight = in.u32();
        balloon.italic = in.u8() != 0;
        balloon.strike_out = in.u8() != 0;
        character.balloon = std::move(balloon);
    }

    void readPalette(Cursor& in) {
        const std::uint32_t count = in.u32();
        if (count > palette_size) {
            refuse("The palette has " + std::to_string(count) + " colours, more than 256.");
        }
        character.palette.resize(palette_size);
        for (std::uint32_t i = 0; i < count; ++i) {
            const auto bytes = in.bytes(4);
            character.palette[i] = {bytes[0], bytes[1], bytes[2]};
        }
    }

    void readStates(Cursor& in) {
        character.states.resize(in.fitting(in.u16(), 6, "states"));
        for (State& state : character.states) {
            state.name = string(in);
            state.animations.resize(in.fitting(in.u16(), 4, "animations of a state"));
            for (std::u16string& name : state.animations) {
                name = string(in);
            }
        }
    }

    void readNames(Cursor& in) {
        character.names.resize(in.fitting(in.u16(), 14, "names"));
        for (LocalizedName& name : character.names) {
            name.language_id = in.u16();
            name.name = string(in);
            name.description = string(in);
            name.extra_data = string(in);
        }
    }

    std::vector<Extent> readDirectory(Cursor& in, const std::string& item) {
        std::vector<Extent> result(in.fitting(in.u32(), 12, item + "s"));
        budget_.take(result.size() * sizeof(Extent));
        for (std::size_t i = 0; i < result.size(); ++i) {
            result[i] = extent(in, (item == "image" ? "Image " : "Sound ") + std::to_string(i));
            in.u32(); // the checksum, of which nothing depends
        }
        return result;
    }

    void checkImages() {
        for (std::size_t i = 0; i < images.size(); ++i) {
            const std::string what = "Image " + std::to_string(i);
            const RawImage raw = rawImage(at(images[i], what));
            if (std::max(raw.width, raw.height) > largest_side) {
                refuse(what + " is of impossible size: " + std::to_string(raw.width) + " by " +
                       std::to_string(raw.height) + " pixels.");
            }
            budget_.take(sizeof(Image) + raw.size() + raw.region_size);
            pixels_.push_back(raw.size());
            checkPacked(what + ": the pixels' data ", raw.compressed, raw.pixels, raw.size());
            checkPacked(what + ": the region's data ", raw.region_compressed, raw.region, raw.region_size);
        }
    }

    static void checkPacked(const std::string& what, bool compressed, std::span<const std::uint8_t> bytes,
                            std::size_t size) {
        if (compressed) {
            const std::string_view fault = streamFault(bytes, size);
            if (!fault.empty()) {
                refuse(what + std::string(fault) + ".");
            }
        } else if (bytes.size() != size) {
            refuse(what + "has " + std::to_string(bytes.size()) + " bytes instead of " + std::to_string(size) + ".");
        }
    }

    void readAnimations(Cursor& directory) {
        character.animations.resize(directory.fitting(directory.u32(), 12, "animations"));
        budget_.take(character.animations.size() * sizeof(Animation));
        for (Animation& animation : character.animations) {
            animation.name = string(directory);
            Cursor in = part(directory, "The animation " + inQuotes(animation.name));
            readAnimation(in, animation);
        }
    }

    void readAnimation(Cursor& in, Animation& animation) {
        in.string(); // the name again, in upper case
        const std::uint8_t transition = in.u8();
        if (transition > static_cast<std::uint8_t>(Transition::none)) {
            refuse(in.what() + " has an unknown way to return: " + std::to_string(transition) + ".");
        }
        animation.transition = static_cast<Transition>(transition);
        animation.return_animation = string(in);
        animation.frames.resize(in.fitting(in.u16(), 10, "frames"));
        budget_.take(animation.frames.size() * sizeof(Frame));
        std::size_t branches = 0;
        for (Frame& frame : animation.frames) {
            readFrame(in, frame, animation.frames.size());
            branches += frame.branches.size();
        }
        if (branches > most_branches) {
            refuse(in.what() + " has " + std::to_string(branches) + " branches, more than 65535.");
        }
    }

    void readFrame(Cursor& in, Frame& frame, std::size_t frame_count) {
        frame.images.resize(in.fitting(in.u16(), 8, "images of a frame"));
        budget_.take(frame.images.size() * sizeof(FrameImage));
        for (FrameImage& image : frame.images) {
            image.image = in.u32();
            image.x = in.i16();
            image.y = in.i16();
            require(in, image.image < images.size(), "image", image.image);
        }
        frame.sound = in.u16();
        require(in, frame.sound == no_sound || frame.sound < sounds.size(), "sound", frame.sound);
        frame.duration = in.u16();
        frame.exit_frame = in.i16();
        require(in, frame.exit_frame >= exit_none && frame.exit_frame < static_cast<std::int32_t>(frame_count), "frame",
                frame.exit_frame);
        frame.branches.resize(in.fitting(in.u8(), 4, "branches"));
        budget_.take(frame.branches.size() * sizeof(Branch));
        for (Branch& branch : frame.branches) {
            branch.target = in.u16();
            branch.probability = in.u16();
            require(in, branch.target < frame_count, "frame", branch.target);
        }
        frame.mouths.resize(in.fitting(in.u8(), 14, "mouths"));
        budget_.take(frame.mouths.size() * sizeof(Mouth));
        for (Mouth& mouth : frame.mouths) {
            readMouth(in, mouth);
        }
        checkDrawing(in, frame);
    }

    void checkDrawing(const Cursor& in, const Frame& frame) const {
        std::uint64_t pixels = 0;
        for (const Mouth& mouth : frame.mouths) {
            pixels = std::max<std::uint64_t>(pixels, pixels_[mouth.image]);
        }
        for (const FrameImage& image : frame.images) {
            pixels += pixels_[image.image];
        }
        if (frame.images.size() >= most_frame_images || pixels > most_frame_pixels) {
            refuse(in.what() + " has a frame of " + std::to_string(frame.images.size()) + " images and " +
                   std::to_string(pixels) + " pixels, too much to draw.");
        }
    }

    void readMouth(Cursor& in, Mouth& mouth) {
        const std::uint8_t shape = in.u8();
        require(in, shape <= static_cast<std::uint8_t>(MouthShape::narrow), "mouth shape", shape);
        mouth.shape = static_cast<MouthShape>(shape);
        mouth.replaces_top_image = in.u8() != 0;
        mouth.image = in.u16();
        require(in, mouth.image < images.size(), "image", mouth.image);
        in.u8(); // of unknown meaning
        const bool has_region = in.u8() != 0;
        mouth.x = in.i16();
        mouth.y = in.i16();
        mouth.width = in.u16();
        mouth.height = in.u16();
        if (has_region) {
            mouth.region = block(in);
        }
    }

    static void require(const Cursor& in, bool exists, std::string_view item, std::int64_t number) {
        if (!exists) {
            refuse(in.what() + " refers to " + std::string(item) + " " + std::to_string(number) +
                   ", which does not exist.");
        }
    }

    std::span<const std::uint8_t> file_;
    Budget readings_;
    Budget budget_{largest_character, "The character takes more than 128 MB of memory."};
    Budget texts_{largest_texts, "The names and texts of the character take more than 4 MB of memory."};
    std::vector<std::size_t> pixels_; // of each image, with the padding of its rows
};

// Runs `action`, turning a refusal into the sentence.
template <typename Action>
bool accepted(std::string& error, Action action) {
    try {
        action();
        return true;
    } catch (const Refusal& refusal) {
        error = refusal.sentence;
        return false;
    }
}

std::span<const std::uint8_t> bytesOf(std::span<const std::uint8_t> file, const Extent& where) {
    return file.subspan(where.offset, where.size);
}

} // namespace

std::optional<Character> read(std::span<const std::uint8_t> file, std::string& error) {
    Reader reader(file);
    if (!accepted(error, [&] { reader.read(); })) {
        return std::nullopt;
    }
    for (const Extent& where : reader.images) {
        reader.character.images.push_back(decoded(rawImage(Cursor(bytesOf(file, where), ""))));
    }
    for (const Extent& where : reader.sounds) {
        const auto bytes = bytesOf(file, where);
        reader.character.sounds.emplace_back(bytes.begin(), bytes.end());
    }
    return std::move(reader.character);
}

std::optional<CharacterFile> CharacterFile::open(std::vector<std::uint8_t> bytes, std::string& error) {
    Reader reader(bytes);
    if (!accepted(error, [&] { reader.read(); })) {
        return std::nullopt;
    }
    CharacterFile file;
    file.character_ = std::move(reader.character);
    file.images_ = std::move(reader.images);
    file.sounds_ = std::move(reader.sounds);
    file.bytes_ = std::move(bytes);
    return file;
}

std::optional<CharacterFile> CharacterFile::load(const std::filesystem::path& path, std::string& error) {
    auto bytes = readFile(path, error);
    return bytes ? open(std::move(*bytes), error) : std::nullopt;
}

std::shared_ptr<const Image> CharacterFile::image(std::size_t index) const {
    const auto found = std::ranges::find(recent_, index, [](const auto& entry) { return entry.first; });
    if (found != recent_.end()) {
        std::rotate(recent_.begin(), found, found + 1);
        return recent_.front().second;
    }
    auto image = std::make_shared<const Image>(decoded(rawImage(Cursor(bytesOf(bytes_, images_[index]), ""))));
    recent_.emplace(recent_.begin(), index, image);
    std::size_t kept = 0, count = 0;
    const auto too_many = std::ranges::find_if(recent_, [&](const auto& entry) {
        kept += sizeof(Image) + entry.second->pixels.size() + entry.second->region.size();
        return kept > most_kept_pixels || ++count > most_kept_images;
    });
    recent_.erase(too_many, recent_.end());
    return image;
}

std::span<const std::uint8_t> CharacterFile::sound(std::size_t index) const {
    return bytesOf(bytes_, sounds_[index]);
}

std::optional<std::vector<std::uint8_t>> readFile(const std::filesystem::path& path, std::string& error) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored)) {
        error = "There is no such file.";
        return std::nullopt;
    }
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = in ? static_cast<std::streamoff>(in.tellg()) : -1;
    if (size < 0) {
        error = "The file cannot be opened.";
        return std::nullopt;
    }
    if (static_cast<std::uintmax_t>(size) > largest_file) {
        error = "The file is larger than 256 MB.";
        return std::nullopt;
    }
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    in.seekg(0);
    if (!bytes.empty() && !in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()))) {
        error = "The file cannot be read.";
        return std::nullopt;
    }
    return bytes;
}

} // namespace agent::acs
