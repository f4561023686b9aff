// Sounds in the formats beside PCM that .wav files of the time are in. The system's converters decode them, in this
// process: what they are given is checked before, so that none of them is trusted with what a file says.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace agent::voice {

// Format tags of a .wav file.
enum class Encoding : std::uint16_t { ms_adpcm = 0x02, a_law = 0x06, mu_law = 0x07, ima_adpcm = 0x11, gsm = 0x31 };

std::optional<Encoding> encodingOf(std::uint32_t format_tag);

struct EncodedFormat {
    Encoding encoding = Encoding::mu_law;
    std::uint32_t rate = 0, channels = 0;
    std::uint32_t block = 0;             // bytes
    std::uint32_t samples_per_block = 0; // of each channel
    // As the converters take it: a WAVEFORMATEX and what belongs behind it.
    std::vector<std::uint8_t> description() const;
};

// Of a "fmt " chunk with the tag of an encoding: rate, channels and block are the chunk's, all else follows from them.
// Nothing, and why, where they cannot be.
std::optional<EncodedFormat> readEncodedFormat(std::span<const std::uint8_t> chunk, std::string& error);

// The blocks of a sound, whole, from the first on, up to `most_samples` (of each channel) or a block that cannot be:
// the last one is filled up where it was cut off. `samples`: how many of each channel they hold.
struct EncodedBlocks {
    std::vector<std::uint8_t> bytes;
    std::uint64_t samples = 0;
};
EncodedBlocks readEncodedBlocks(const EncodedFormat& format, std::span<const std::uint8_t> data,
                                std::uint64_t most_samples);

// Calls `made` with their samples, those of two channels in turns, a part at a time. False, and why, where the system
// has no converter for them.
bool decode(const EncodedFormat& format, std::span<const std::uint8_t> blocks,
            const std::function<void(std::span<const std::int16_t>)>& made, std::string& error);

} // namespace agent::voice
