// Reads version-2 character files. Everything in a file is checked before anything of it is used: what these functions
// give out is consistent (every image, sound and frame that something refers to exists), and a file that is not so, or
// is of another kind, is refused with a sentence that says why. Two references may lead nowhere, as they do no harm:
// the name of a return animation and the animations of a state.
#pragma once

#include "companions/agent/acs/character_file.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace agent::acs {

// What a file may ask for at most, so that none is made to exhaust memory or time. The largest characters seen have
// 200 by 187 pixels, 984 images, 2,170 frames in all, 11 images and 3 branches in one frame, and take 37 MB. (For the
// pixels see also largest_side.)

// Memory of all parts of one character together when all are decompressed.
inline constexpr std::size_t largest_character = std::size_t{128} << 20;
// Memory of its names and texts: they are looked through for every animation that is played.
inline constexpr std::size_t largest_texts = std::size_t{4} << 20;
// How often a byte of the file is read, on average: parts may share their bytes, but the work stays in proportion to
// the file's size.
inline constexpr std::size_t most_readings = 16;
// What is drawn for one frame, a frame being drawn within 10 ms: its images (the mouth one of them), and their pixels
// with the padding of their rows, which is a hundred layers of a usual character.
inline constexpr std::size_t most_frame_images = 256;
inline constexpr std::size_t most_frame_pixels = std::size_t{4} << 20;
// The branches of one animation, all of which are followed to learn whether it ends.
inline constexpr std::size_t most_branches = 65'535;

// Where the bytes of an image or a sound stand in the file.
struct Extent {
    std::uint32_t offset = 0, size = 0;
};

// The whole character, with decompressed images. The palette is filled up to 256 colours with black, so that every
// pixel has one. Without a value when the file is refused; then `error` is the sentence.
std::optional<Character> read(std::span<const std::uint8_t> file, std::string& error);

// A character whose images and sounds stay in the file's bytes, which it owns, and are taken from there one at a time.
// Opening refuses exactly the files that read() refuses. For one thread, but for sound().
class CharacterFile {
  public:
    static std::optional<CharacterFile> open(std::vector<std::uint8_t> bytes, std::string& error);
    static std::optional<CharacterFile> load(const std::filesystem::path& path, std::string& error);

    // All but images and sounds, which are empty here.
    const Character& character() const { return character_; }

    std::size_t imageCount() const { return images_.size(); }
    std::size_t soundCount() const { return sounds_.size(); }

    // `index` is below the count. Images lately asked for are kept (up to 2 MB and 1,024 of them), so that a playing
    // animation does not decompress each one anew; a caller may hold one for as long as it likes.
    std::shared_ptr<const Image> image(std::size_t index) const;
    std::span<const std::uint8_t> sound(std::size_t index) const;

  private:
    CharacterFile() = default;

    std::vector<std::uint8_t> bytes_;
    Character character_;
    std::vector<Extent> images_, sounds_;
    mutable std::vector<std::pair<std::size_t, std::shared_ptr<const Image>>> recent_; // the latest first
};

// The bytes of a file of at most 256 MB.
std::optional<std::vector<std::uint8_t>> readFile(const std::filesystem::path& path, std::string& error);

} // namespace agent::acs
