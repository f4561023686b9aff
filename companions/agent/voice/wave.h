// Arithmetic on sounds.
#pragma once

#include "companions/agent/voice/voice.h"

namespace agent::voice {

// What all speech, mixing and recording is in.
inline constexpr std::uint32_t mix_rate = 22050;

// The same sound at another rate: interpolated between samples upwards, averaged over them downwards.
Wave resampled(const Wave& wave, std::uint32_t rate);

// The 44 bytes before `bytes` bytes of mono 16-bit samples in a .wav file.
std::vector<std::uint8_t> waveHeader(std::uint32_t rate, std::uint32_t bytes);
inline constexpr std::uint32_t wave_header_size = 44;
inline constexpr std::uint32_t most_wave_bytes = (0xFFFFFFFFU - (wave_header_size - 8)) & ~1U;

// `a` and `b` heard together.
std::int16_t mixed(std::int16_t a, std::int16_t b);

} // namespace agent::voice
