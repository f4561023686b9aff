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

// The largest raster and character area, and the most memory that the parts of one character may take together when all
// are decompressed; well above any drawn character (37 MB), and a bound for a file made to exhaust memory.
inline constexpr std::size_t largest_raster = std::size_t{16} << 20;
inline constexpr std::size_t largest_character = std::size_t{128} << 20;

// Where the bytes of an image or a sound stand in the file.
struct Extent {
    std::uint32_t offset = 0, size = 0;
};

// The whole character, with decompressed images. The palette is filled up to 256 colours with black, so that every
// pixel has one. Without a value when the file is refused; then `error` is the sentence.
std::optional<Character> read(std::span<const std::uint8_t> file, std::string& error);

// A character whose images and sounds stay in the file's bytes, which it owns, and are taken from there one at a time.
// Opening refuses exactly the files that read() refuses. For one thread.
class CharacterFile {
  public:
    static std::optional<CharacterFile> open(std::vector<std::uint8_t> bytes, std::string& error);
    static std::optional<CharacterFile> load(const std::filesystem::path& path, std::string& error);

    // All but images and sounds, which are empty here.
    const Character& character() const { return character_; }

    std::size_t imageCount() const { return images_.size(); }
    std::size_t soundCount() const { return sounds_.size(); }

    // `index` is below the count. Images lately asked for are kept (up to 2 MB), so that a playing animation does not
    // decompress each one anew; a caller may hold one for as long as it likes.
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
