#include "tools/acsbuild/manifest.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/text.h"
#include "tools/acsbuild/palette.h"
#include "tools/acsbuild/picture.h"

namespace acsbuild {

namespace {

namespace acs = agent::acs;
using nlohmann::json;

// A value of the manifest that knows where it stands; its readers check type and range.
class Value {
  public:
    Value(const json& value, std::string where) : value_(&value), where_(std::move(where)) {}

    [[noreturn]] void refuse(const std::string& why) const { throw ManifestError(where_ + ": " + why); }

    // An object with no members but these.
    void expectMembers(std::initializer_list<std::string_view> known) const {
        for (const auto& [name, member] : object().items()) {
            if (std::find(known.begin(), known.end(), name) == known.end()) {
                refuse("unknown member \"" + name + "\"");
            }
        }
    }
    bool has(const std::string& name) const { return object().contains(name); }
    Value operator[](const std::string& name) const {
        const auto found = object().find(name);
        if (found == object().end()) {
            refuse("\"" + name + "\" is missing");
        }
        return {*found, where_ + "." + name};
    }
    void eachMember(const std::function<void(const std::string&, const Value&)>& visit) const {
        for (const auto& [name, member] : object().items()) {
            visit(name, Value(member, where_ + "." + name));
        }
    }
    std::vector<Value> items() const {
        if (!value_->is_array()) {
            refuse("must be an array");
        }
        std::vector<Value> result;
        for (std::size_t i = 0; i < value_->size(); ++i) {
            result.emplace_back((*value_)[i], where_ + "[" + std::to_string(i) + "]");
        }
        return result;
    }
    bool isText() const { return value_->is_string(); }
    std::string text() const {
        if (!value_->is_string()) {
            refuse("must be a text");
        }
        return value_->get<std::string>();
    }
    std::u16string text16() const { return murmelix::fromUtf8(text()); }
    bool flag() const {
        if (!value_->is_boolean()) {
            refuse("must be true or false");
        }
        return value_->get<bool>();
    }
    template <class Number>
    Number number(std::int64_t least = std::numeric_limits<Number>::min(),
                  std::int64_t most = std::numeric_limits<Number>::max()) const {
        const bool fits =
            value_->is_number_integer() &&
            (!value_->is_number_unsigned() || value_->get<std::uint64_t>() <= static_cast<std::uint64_t>(most));
        const std::int64_t number = fits ? value_->get<std::int64_t>() : least - 1;
        if (!fits || number < least || number > most) {
            refuse("must be a whole number from " + std::to_string(least) + " to " + std::to_string(most));
        }
        return static_cast<Number>(number);
    }
    // "#RRGGBB" as 0xRRGGBB.
    std::uint32_t colour() const {
        const std::string digits = text();
        if (digits.size() != 7 || digits[0] != '#' ||
            digits.find_first_not_of("0123456789abcdefABCDEF", 1) != std::string::npos) {
            refuse("must be a colour of the form \"#RRGGBB\"");
        }
        return static_cast<std::uint32_t>(std::stoul(digits.substr(1), nullptr, 16));
    }
    // "{01234567-89ab-cdef-0123-456789abcdef}", its first three numbers little-endian in the file.
    acs::Guid guid() const {
        const std::string written = text();
        constexpr std::string_view form = "{00000000-0000-0000-0000-000000000000}";
        std::string digits;
        bool good = written.size() == form.size();
        for (std::size_t i = 0; good && i < form.size(); ++i) {
            if (form[i] != '0') {
                good = written[i] == form[i];
            } else if (std::string_view("0123456789abcdefABCDEF").find(written[i]) != std::string_view::npos) {
                digits += written[i];
            } else {
                good = false;
            }
        }
        if (!good) {
            refuse("must be a GUID of the form \"" + std::string(form) + "\"");
        }
        constexpr std::array<std::size_t, 16> order{3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
        acs::Guid result{};
        for (std::size_t i = 0; i < result.size(); ++i) {
            result[i] = static_cast<std::uint8_t>(std::stoul(digits.substr(order[i] * 2, 2), nullptr, 16));
        }
        return result;
    }

  private:
    const json& object() const {
        if (!value_->is_object()) {
            refuse("must be an object");
        }
        return *value_;
    }

    const json* value_;
    std::string where_;
};

std::uint32_t colourRef(std::uint32_t colour) {
    return (colour & 0xFF) << 16 | (colour & 0xFF00) | colour >> 16;
}

acs::Voice readVoice(const Value& value) {
    value.expectMembers({"engine", "mode", "speed", "pitch", "language", "gender", "age", "dialect", "style"});
    acs::Voice voice;
    if (value.has("engine")) {
        voice.engine = value["engine"].guid();
    }
    if (value.has("mode")) {
        voice.mode = value["mode"].guid();
    }
    if (value.has("speed")) {
        voice.speed = value["speed"].number<std::uint32_t>(1);
    }
    if (value.has("pitch")) {
        voice.pitch = value["pitch"].number<std::uint16_t>(1);
    }
    acs::Voice::Choice choice;
    const std::string gender = value["gender"].text();
    if (gender != "female" && gender != "male") {
        value["gender"].refuse("must be \"female\" or \"male\"");
    }
    choice.gender = gender == "female" ? 1 : 2;
    if (value.has("language")) {
        choice.language_id = value["language"].number<std::uint16_t>();
    }
    if (value.has("age")) {
        choice.age = value["age"].number<std::uint16_t>();
    }
    if (value.has("dialect")) {
        choice.dialect = value["dialect"].text16();
    }
    if (value.has("style")) {
        choice.style = value["style"].text16();
    }
    voice.choice = choice;
    return voice;
}

acs::Balloon readBalloon(const Value& value) {
    value.expectMembers({"lines", "charactersPerLine", "text", "background", "border", "font", "height", "weight",
                         "italic", "strikeOut"});
    acs::Balloon balloon;
    if (value.has("lines")) {
        balloon.lines = value["lines"].number<std::uint8_t>(1);
    }
    if (value.has("charactersPerLine")) {
        balloon.characters_a_line = value["charactersPerLine"].number<std::uint8_t>(8);
    }
    if (value.has("text")) {
        balloon.text_colour = colourRef(value["text"].colour());
    }
    if (value.has("background")) {
        balloon.background_colour = colourRef(value["background"].colour());
    }
    if (value.has("border")) {
        balloon.border_colour = colourRef(value["border"].colour());
    }
    if (value.has("font")) {
        balloon.font_name = value["font"].text16();
    }
    if (value.has("height")) {
        balloon.font_height = value["height"].number<std::int32_t>(-100, 100);
    }
    if (value.has("weight")) {
        balloon.weight = value["weight"].number<std::uint32_t>(100, 1000);
    }
    if (value.has("italic")) {
        balloon.italic = value["italic"].flag();
    }
    if (value.has("strikeOut")) {
        balloon.strike_out = value["strikeOut"].flag();
    }
    return balloon;
}

// The manifest's pictures, and where each went: an index in the character's images, moved by what was cut off.
class Pictures {
  public:
    void read(const Value& value, const std::filesystem::path& directory) {
        value.eachMember([&](const std::string& name, const Value& entry) {
            entry.expectMembers({"file", "crop"});
            const std::string file = entry["file"].text();
            const Picture& whole = load(directory / file, entry);
            Rect part{0, 0, whole.width, whole.height};
            if (entry.has("crop")) {
                part = readPart(entry["crop"], whole);
            }
            Picture picture = cut(whole, part);
            const std::optional<Rect> seen = opaquePart(picture);
            if (!seen) {
                placed_[name] = std::nullopt;
                return;
            }
            placed_[name] =
                Placed{pictures_.size(), static_cast<std::int16_t>(seen->x), static_cast<std::int16_t>(seen->y)};
            pictures_.push_back(cut(picture, *seen));
        });
    }

    // Writes images and palette into the character; equal images become one.
    void write(acs::Character& character, std::uint32_t transparent, std::size_t colours) {
        Palette palette(pictures_, transparent, colours);
        character.palette = palette.colours();
        character.transparent_index = 0;
        std::map<std::pair<std::uint16_t, std::vector<std::uint8_t>>, std::size_t> known;
        std::vector<std::size_t> index_of;
        for (const Picture& picture : pictures_) {
            acs::Image image = palette.image(picture);
            const auto [entry, is_new] = known.try_emplace({image.width, image.pixels}, character.images.size());
            if (is_new) {
                character.images.push_back(std::move(image));
            }
            index_of.push_back(entry->second);
        }
        for (auto& [name, placed] : placed_) {
            if (placed) {
                placed->index = index_of[placed->index];
            }
        }
    }

    struct Placed {
        std::size_t index = 0;
        std::int16_t x = 0, y = 0; // of the kept part in the picture
    };
    // Nothing for a picture without an opaque pixel.
    const std::optional<Placed>& find(const Value& name) const {
        const auto found = placed_.find(name.text());
        if (found == placed_.end()) {
            name.refuse("there is no image \"" + name.text() + "\"");
        }
        return found->second;
    }

  private:
    const Picture& load(const std::filesystem::path& file, const Value& entry) {
        const auto known = files_.find(file.string());
        if (known != files_.end()) {
            return known->second;
        }
        try {
            return files_.emplace(file.string(), readPicture(file)).first->second;
        } catch (const std::runtime_error& error) {
            entry.refuse(error.what());
        }
    }

    static Rect readPart(const Value& value, const Picture& whole) {
        const std::vector<Value> numbers = value.items();
        if (numbers.size() != 4) {
            value.refuse("must be [x, y, width, height]");
        }
        const Rect part{numbers[0].number<int>(0), numbers[1].number<int>(0), numbers[2].number<int>(1),
                        numbers[3].number<int>(1)};
        if (part.x > whole.width || part.width > whole.width - part.x || part.y > whole.height ||
            part.height > whole.height - part.y) {
            value.refuse("goes beyond the picture of " + std::to_string(whole.width) + " x " +
                         std::to_string(whole.height));
        }
        return part;
    }

    std::map<std::string, Picture> files_;
    std::map<std::string, std::optional<Placed>> placed_;
    std::vector<Picture> pictures_;
};

std::vector<std::uint8_t> readSound(const std::filesystem::path& file, const Value& value) {
    std::ifstream stream(file, std::ios::binary);
    std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(stream), {}};
    if (!stream) {
        value.refuse(file.string() + ": cannot be read");
    }
    const auto reads = [&](std::size_t at, std::string_view tag) {
        return bytes.size() >= at + tag.size() &&
               std::equal(tag.begin(), tag.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
    };
    if (!reads(0, "RIFF") || !reads(8, "WAVE")) {
        value.refuse(file.string() + ": is not a WAVE file");
    }
    return bytes;
}

std::int16_t offset(const Value& of, const std::string& name, std::int16_t moved) {
    const std::int32_t given = of.has(name) ? of[name].number<std::int16_t>() : 0;
    const std::int32_t sum = given + moved;
    if (sum > std::numeric_limits<std::int16_t>::max()) {
        of[name].refuse("is too far out");
    }
    return static_cast<std::int16_t>(sum);
}

acs::Mouth readMouth(const std::string& shape, const Value& value, const Pictures& pictures,
                     const acs::Character& character) {
    constexpr std::array<std::string_view, 7> shapes{"closed", "wide1", "wide2", "wide3", "wide4", "medium", "narrow"};
    const auto found = std::find(shapes.begin(), shapes.end(), shape);
    if (found == shapes.end()) {
        value.refuse("the mouths are closed, wide1 to wide4, medium and narrow");
    }
    value.expectMembers({"image", "x", "y", "replaces"});
    const std::optional<Pictures::Placed>& placed = pictures.find(value["image"]);
    if (!placed) {
        value["image"].refuse("a mouth must have an opaque pixel");
    }
    if (placed->index > std::numeric_limits<std::uint16_t>::max()) {
        value["image"].refuse("a mouth must be among the first 65536 images");
    }
    acs::Mouth mouth;
    mouth.shape = static_cast<acs::MouthShape>(std::distance(shapes.begin(), found));
    mouth.replaces_top_image = value.has("replaces") && value["replaces"].flag();
    mouth.image = static_cast<std::uint16_t>(placed->index);
    mouth.x = offset(value, "x", placed->x);
    mouth.y = offset(value, "y", placed->y);
    mouth.width = character.images[placed->index].width;
    mouth.height = character.images[placed->index].height;
    return mouth;
}

using Names = std::map<std::string, std::uint16_t>;

acs::Frame readFrame(const Value& value, std::size_t frame_count, const Pictures& pictures, const Names& sounds,
                     const acs::Character& character) {
    value.expectMembers({"images", "sound", "duration", "exit", "branches", "mouths"});
    const auto last = static_cast<std::int64_t>(frame_count) - 1;
    acs::Frame frame;
    frame.duration = value["duration"].number<std::uint16_t>();
    if (value.has("images")) {
        for (const Value& entry : value["images"].items()) {
            entry.expectMembers({"image", "x", "y"});
            if (const std::optional<Pictures::Placed>& placed = pictures.find(entry["image"])) {
                frame.images.push_back({static_cast<std::uint32_t>(placed->index), offset(entry, "x", placed->x),
                                        offset(entry, "y", placed->y)});
            }
        }
    }
    if (value.has("sound")) {
        const auto found = sounds.find(value["sound"].text());
        if (found == sounds.end()) {
            value["sound"].refuse("there is no sound \"" + value["sound"].text() + "\"");
        }
        frame.sound = found->second;
    }
    if (value.has("exit")) {
        const Value exit = value["exit"];
        if (exit.isText() && exit.text() == "end") {
            frame.exit_frame = acs::exit_end;
        } else if (exit.isText()) {
            exit.refuse("must be \"end\" or the number of a frame");
        } else {
            frame.exit_frame = exit.number<std::int16_t>(0, last);
        }
    }
    if (value.has("branches")) {
        int total = 0;
        for (const Value& entry : value["branches"].items()) {
            entry.expectMembers({"to", "percent"});
            frame.branches.push_back(
                {entry["to"].number<std::uint16_t>(0, last), entry["percent"].number<std::uint16_t>(1, 100)});
            total += frame.branches.back().probability;
        }
        if (total > 100) {
            value["branches"].refuse("more than 100 percent together");
        }
    }
    if (value.has("mouths")) {
        value["mouths"].eachMember([&](const std::string& shape, const Value& entry) {
            frame.mouths.push_back(readMouth(shape, entry, pictures, character));
        });
        std::sort(frame.mouths.begin(), frame.mouths.end(),
                  [](const acs::Mouth& a, const acs::Mouth& b) { return a.shape < b.shape; });
    }
    return frame;
}

acs::Animation readAnimation(const Value& value, const Pictures& pictures, const Names& sounds,
                             const acs::Character& character) {
    value.expectMembers({"name", "transition", "return", "frames"});
    acs::Animation animation;
    animation.name = value["name"].text16();
    if (animation.name.empty()) {
        value["name"].refuse("is empty");
    }
    const std::string transition = value["transition"].text();
    if (transition == "returns") {
        animation.transition = acs::Transition::return_animation;
        animation.return_animation = value["return"].text16();
    } else if (transition == "exits" || transition == "none") {
        animation.transition = transition == "exits" ? acs::Transition::exit_branches : acs::Transition::none;
        if (value.has("return")) {
            value["return"].refuse("only an animation that \"returns\" has one");
        }
    } else {
        value["transition"].refuse("must be \"returns\", \"exits\" or \"none\"");
    }
    const std::vector<Value> frames = value["frames"].items();
    if (frames.empty() || frames.size() > static_cast<std::size_t>(std::numeric_limits<std::int16_t>::max())) {
        value["frames"].refuse("there must be from 1 to 32767");
    }
    for (const Value& frame : frames) {
        animation.frames.push_back(readFrame(frame, frames.size(), pictures, sounds, character));
    }
    return animation;
}

void readNames(const Value& value, acs::Character& character) {
    for (const Value& entry : value.items()) {
        entry.expectMembers({"language", "name", "description", "extra"});
        acs::LocalizedName name;
        name.language_id = entry["language"].number<std::uint16_t>();
        name.name = entry["name"].text16();
        if (name.name.empty()) {
            entry["name"].refuse("is empty");
        }
        if (entry.has("description")) {
            name.description = entry["description"].text16();
        }
        if (entry.has("extra")) {
            name.extra_data = entry["extra"].text16();
        }
        character.names.push_back(std::move(name));
    }
    if (character.names.empty()) {
        value.refuse("the character needs a name");
    }
}

void readAnimations(const Value& value, const Pictures& pictures, const Names& sounds, acs::Character& character) {
    for (const Value& entry : value.items()) {
        acs::Animation animation = readAnimation(entry, pictures, sounds, character);
        if (character.findAnimation(animation.name) != nullptr) {
            entry["name"].refuse("there is an animation of that name already");
        }
        character.animations.push_back(std::move(animation));
    }
    for (const Value& entry : value.items()) {
        if (entry.has("return") && character.findAnimation(entry["return"].text16()) == nullptr) {
            entry["return"].refuse("there is no animation \"" + entry["return"].text() + "\"");
        }
    }
}

void readStates(const Value& value, acs::Character& character) {
    value.eachMember([&](const std::string& name, const Value& entry) {
        acs::State state{murmelix::fromUtf8(name), {}};
        for (const Value& animation : entry.items()) {
            if (character.findAnimation(animation.text16()) == nullptr) {
                animation.refuse("there is no animation \"" + animation.text() + "\"");
            }
            state.animations.push_back(animation.text16());
        }
        character.states.push_back(std::move(state));
    });
}

} // namespace

acs::Character readCharacter(std::string_view manifest, const std::filesystem::path& directory) {
    json parsed;
    try {
        parsed = json::parse(manifest);
    } catch (const json::parse_error& error) {
        throw ManifestError(error.what());
    }
    const Value root(parsed, "manifest");
    root.expectMembers({"names", "guid", "width", "height", "transparent", "colours", "voice", "balloon", "states",
                        "images", "sounds", "animations"});
    acs::Character character;
    readNames(root["names"], character);
    character.guid = root["guid"].guid();
    character.width = root["width"].number<std::uint16_t>(1, 1024);
    character.height = root["height"].number<std::uint16_t>(1, 1024);
    if (root.has("voice")) {
        character.voice = readVoice(root["voice"]);
        character.style |= acs::style_voice;
    }
    if (root.has("balloon")) {
        character.balloon = readBalloon(root["balloon"]);
        character.style |= acs::style_balloon;
    }

    Pictures pictures;
    pictures.read(root["images"], directory);
    pictures.write(character, root.has("transparent") ? root["transparent"].colour() : 0xFF00FF,
                   root.has("colours") ? root["colours"].number<std::size_t>(1, Palette::most_colours)
                                       : Palette::most_colours);
    Names sounds;
    if (root.has("sounds")) {
        root["sounds"].eachMember([&](const std::string& name, const Value& file) {
            if (character.sounds.size() >= acs::no_sound) {
                file.refuse("there are too many sounds");
            }
            sounds[name] = static_cast<std::uint16_t>(character.sounds.size());
            character.sounds.push_back(readSound(directory / file.text(), file));
        });
    }
    readAnimations(root["animations"], pictures, sounds, character);
    if (root.has("states")) {
        readStates(root["states"], character);
    }
    return character;
}

} // namespace acsbuild
