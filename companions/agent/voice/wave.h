// Arithmetic on sounds.
#pragma once

#include "companions/agent/voice/voice.h"

namespace agent::voice {

// What all speech, mixing and recording is in.
inline constexpr std::uint32_t mix_rate = 22050;

// What a sound file may have, in Hz.
inline constexpr std::uint32_t least_rate = 4000, most_rate = 96000;

// How long so many samples take, in ms. With 64 bits wherever it is built: in 32 the thousandfold of a sound overflows
// after three minutes.
constexpr std::uint64_t millisecondsOf(std::uint64_t samples, std::uint32_t rate) {
    return rate == 0 ? 0 : samples * 1000 / rate;
}
static_assert(millisecondsOf(std::size_t{mix_rate} * 240, mix_rate) == 240'000);

// The same sound at another rate: interpolated between samples upwards, averaged over them downwards.
Wave resampled(Wave wave, std::uint32_t rate);

// The 44 bytes before `bytes` bytes of mono 16-bit samples in a .wav file.
std::vector<std::uint8_t> waveHeader(std::uint32_t rate, std::uint32_t bytes);
inline constexpr std::uint32_t wave_header_size = 44;
inline constexpr std::uint32_t most_wave_bytes = (0xFFFFFFFFU - (wave_header_size - 8)) & ~1U;

// `a` and `b` heard together.
std::int16_t mixed(std::int16_t a, std::int16_t b);

} // namespace agent::voice
