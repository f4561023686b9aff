// Encoders for the sound files of tests: the formats that voice/encoded.h reads, each written here by its description.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "companions/agent/voice/encoded.h"

namespace agent::voice {

struct EncodedFile {
    Encoding encoding = Encoding::ms_adpcm;
    std::uint32_t rate = 11025, channels = 1;
    std::uint32_t block = 256;   // bytes; of A-law and mu-law a sample of each channel
    std::uint32_t fact = 0;      // samples told in a "fact" chunk; 0: none
    std::uint32_t predictor = 1; // of MS-ADPCM
};

// A whole .wav file of `samples`, those of two channels in turns; what does not fill the last block is left out. Not
// for GSM, of which `data` is taken as it is.
std::vector<std::uint8_t> encodedFile(const EncodedFile& file, std::span<const std::int16_t> samples);
std::vector<std::uint8_t> encodedFile(const EncodedFile& file, const std::vector<std::uint8_t>& data);

// A tone of 441 Hz, the right channel half as loud.
std::vector<std::int16_t> tone(std::uint32_t rate, std::uint32_t channels, std::uint32_t ms, double loudness = 10'000);

} // namespace agent::voice
