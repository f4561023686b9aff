// acsinfo FILE… [--images]: tells what is in character files, one JSON object a file, each on a line of its own.
//
//   "file"         the path as given
//   "version"      "2.1"
//   "width", "height"  of the character, in pixels
//   "transparent"  index of the transparent colour
//   "style"        the style flags, as a number
//   "names"        language id (decimal, as text) → name
//   "states"       name → array of the names of its animations
//   "animations"   name → number of frames, in the file's order
//   "image_count", "sound_count"
//   "images"       with --images: an array, by index, of {"width", "height", "crc32"}. The CRC-32 (eight lower-case
//                  hexadecimal digits) is that of the decompressed pixels as they are stored: palette indices, rows
//                  padded to four bytes, bottom row first. An empty image has width and height 0 and no bytes.
//
// A file that is refused gives {"file", "error"}. The exit status is 0, 1 when a file was refused, 2 for a wrong use.
#include "common/text.h"
#include "companions/agent/acs/reader.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Json = nlohmann::ordered_json;
using murmelix::toUtf8;

constexpr const char* usage = "Usage: acsinfo FILE... [--images]\n"
                              "\n"
                              "Prints one JSON object a character file, each on a line of its own:\n"
                              "  file, version, width, height, transparent (palette index), style (flags),\n"
                              "  names {language id: name}, states {name: [animation...]},\n"
                              "  animations {name: frame count}, image_count, sound_count\n"
                              "  --images adds images [{width, height, crc32}...]: the CRC-32 of the pixels as\n"
                              "  stored (palette indices, rows padded to four bytes, bottom row first)\n"
                              "A refused file gives {file, error}; the exit status is then 1.\n";

std::string crc32(const std::vector<std::uint8_t>& bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const std::uint8_t byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
        }
    }
    std::array<char, 9> text{};
    std::snprintf(text.data(), text.size(), "%08x", static_cast<unsigned>(~crc));
    return text.data();
}

Json describe(const agent::acs::CharacterFile& file, bool with_images) {
    const agent::acs::Character& character = file.character();
    Json out;
    out["version"] = std::to_string(character.major_version) + "." + std::to_string(character.minor_version);
    out["width"] = character.width;
    out["height"] = character.height;
    out["transparent"] = character.transparent_index;
    out["style"] = character.style;
    out["names"] = Json::object();
    for (const auto& name : character.names) {
        out["names"][std::to_string(name.language_id)] = toUtf8(name.name);
    }
    out["states"] = Json::object();
    for (const auto& state : character.states) {
        Json animations = Json::array();
        for (const std::u16string& animation : state.animations) {
            animations.push_back(toUtf8(animation));
        }
        out["states"][toUtf8(state.name)] = std::move(animations);
    }
    out["animations"] = Json::object();
    for (const auto& animation : character.animations) {
        out["animations"][toUtf8(animation.name)] = animation.frames.size();
    }
    out["image_count"] = file.imageCount();
    out["sound_count"] = file.soundCount();
    if (with_images) {
        out["images"] = Json::array();
        for (std::size_t i = 0; i < file.imageCount(); ++i) {
            const auto image = file.image(i);
            out["images"].push_back(
                {{"width", image->width}, {"height", image->height}, {"crc32", crc32(image->pixels)}});
        }
    }
    return out;
}

} // namespace

int main(int argument_count, char** arguments) {
    std::vector<std::string> paths;
    bool with_images = false;
    for (int i = 1; i < argument_count; ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--help") {
            std::cout << usage;
            return 0;
        }
        if (argument == "--images") {
            with_images = true;
        } else if (argument.starts_with("--")) {
            std::cerr << "Unknown option " << argument << "\n" << usage;
            return 2;
        } else {
            paths.emplace_back(argument);
        }
    }
    if (paths.empty()) {
        std::cerr << usage;
        return 2;
    }
    int status = 0;
    for (const std::string& path : paths) {
        Json line;
        line["file"] = path;
        std::string error;
        if (const auto file = agent::acs::CharacterFile::load(path, error)) {
            line.update(describe(*file, with_images));
        } else {
            line["error"] = error;
            status = 1;
        }
        std::cout << line.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
    }
    std::cout.flush();
    return std::cout ? status : 1;
}
