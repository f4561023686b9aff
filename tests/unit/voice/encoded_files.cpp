#include "tests/unit/voice/encoded_files.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string_view>

namespace agent::voice {
namespace {

using Bytes = std::vector<std::uint8_t>;

void put(Bytes& bytes, std::int64_t value, int size) {
    for (int i = 0; i < size; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i) & 0xFF));
    }
}

void put(Bytes& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

int clamped(int sample) {
    return std::clamp(sample, -32768, 32767);
}

// A block's samples of one channel.
using Channel = std::vector<int>;

struct MsState {
    int c1, c2, delta, last, before;

    int nibble(int sample) {
        static constexpr std::array<int, 16> adaption{230, 230, 230, 230, 307, 409, 512, 614,
                                                      768, 614, 512, 409, 307, 230, 230, 230};
        const int predicted = (last * c1 + before * c2) / 256;
        const int coded = std::clamp(static_cast<int>(std::lround(double(sample - predicted) / delta)), -8, 7);
        before = last;
        last = clamped(predicted + coded * delta);
        delta = std::max(16, adaption[static_cast<std::size_t>(coded & 15)] * delta / 256);
        return coded & 15;
    }
};

void msBlock(Bytes& bytes, const std::vector<Channel>& channels, std::uint32_t predictor) {
    static constexpr std::array<std::array<int, 2>, 7> coefficients{
        {{256, 0}, {512, -256}, {0, 0}, {192, 64}, {240, 0}, {460, -208}, {392, -232}}};
    std::vector<MsState> states;
    for (const Channel& channel : channels) {
        const auto& [c1, c2] = coefficients.at(std::min<std::size_t>(predictor, 6));
        states.push_back({c1, c2, 300, channel[1], channel[0]});
        put(bytes, predictor, 1);
    }
    for (int MsState::*value : {&MsState::delta, &MsState::last, &MsState::before}) {
        for (const MsState& state : states) {
            put(bytes, state.*value, 2);
        }
    }
    int half = -1;
    for (std::size_t at = 2; at < channels[0].size(); ++at) {
        for (std::size_t channel = 0; channel < channels.size(); ++channel) {
            const int nibble = states[channel].nibble(channels[channel][at]);
            if (half < 0) {
                half = nibble;
            } else {
                put(bytes, half * 16 + nibble, 1);
                half = -1;
            }
        }
    }
}

int imaStep(int index) {
    // Each about a tenth larger than the one before.
    static const std::array<int, 89> steps = [] {
        std::array<int, 89> made{
            7,    8,     9,     10,    11,    12,    13,    14,    16,    17,    19,    21,    23,    25,   28,
            31,   34,    37,    41,    45,    50,    55,    60,    66,    73,    80,    88,    97,    107,  118,
            130,  143,   157,   173,   190,   209,   230,   253,   279,   307,   337,   371,   408,   449,  494,
            544,  598,   658,   724,   796,   876,   963,   1060,  1166,  1282,  1411,  1552,  1707,  1878, 2066,
            2272, 2499,  2749,  3024,  3327,  3660,  4026,  4428,  4871,  5358,  5894,  6484,  7132,  7845, 8630,
            9493, 10442, 11487, 12635, 13899, 15289, 16818, 18500, 20350, 22385, 24623, 27086, 29794, 32767};
        return made;
    }();
    return steps[static_cast<std::size_t>(index)];
}

int imaNibble(int sample, int& last, int& index) {
    static constexpr std::array<int, 8> moves{-1, -1, -1, -1, 2, 4, 6, 8};
    const int step = imaStep(index), difference = sample - last;
    const int size = std::min(7, std::abs(difference) * 4 / step);
    const int change = step / 8 + (size & 1 ? step / 4 : 0) + (size & 2 ? step / 2 : 0) + (size & 4 ? step : 0);
    last = clamped(difference < 0 ? last - change : last + change);
    index = std::clamp(index + moves[static_cast<std::size_t>(size)], 0, 88);
    return difference < 0 ? size + 8 : size;
}

void imaBlock(Bytes& bytes, const std::vector<Channel>& channels) {
    std::vector<std::vector<int>> nibbles;
    for (const Channel& channel : channels) {
        int last = channel[0], index = 40;
        put(bytes, last, 2);
        put(bytes, index, 2);
        std::vector<int>& made = nibbles.emplace_back();
        for (std::size_t at = 1; at < channel.size(); ++at) {
            made.push_back(imaNibble(channel[at], last, index));
        }
    }
    const std::size_t group = channels.size() == 2 ? 8 : nibbles[0].size();
    for (std::size_t at = 0; at < nibbles[0].size(); at += group) {
        for (const auto& of_channel : nibbles) {
            for (std::size_t i = at; i + 1 < at + group; i += 2) {
                put(bytes, of_channel[i] + of_channel[i + 1] * 16, 1);
            }
        }
    }
}

int muLaw(int sample) {
    const int sign = sample < 0 ? 0x80 : 0;
    const int size = std::min(std::abs(sample), 32635) + 0x84;
    int exponent = 7;
    for (int mask = 0x4000; (size & mask) == 0 && exponent > 0; mask >>= 1) {
        --exponent;
    }
    return ~(sign | exponent << 4 | (size >> (exponent + 3) & 0x0F)) & 0xFF;
}

int aLaw(int sample) {
    const int sign = sample >= 0 ? 0x80 : 0;
    const int size = std::min(sample >= 0 ? sample : -sample - 1, 32767) >> 4;
    int coded = size;
    if (size > 15) {
        int exponent = 1;
        for (int rest = size >> 4; rest > 1; rest >>= 1) {
            ++exponent;
        }
        coded = exponent << 4 | (size >> (exponent - 1) & 0x0F);
    }
    return (sign | coded) ^ 0x55;
}

std::uint32_t samplesOfBlock(const EncodedFile& file) {
    switch (file.encoding) {
    case Encoding::ms_adpcm:
        return (file.block - 7 * file.channels) * 2 / file.channels + 2;
    case Encoding::ima_adpcm:
        return (file.block - 4 * file.channels) * 2 / file.channels + 1;
    case Encoding::gsm:
        return 320;
    default:
        return 1;
    }
}

} // namespace

std::vector<std::uint8_t> encodedFile(const EncodedFile& file, std::span<const std::int16_t> samples) {
    const std::size_t count = samplesOfBlock(file);
    Bytes data;
    for (; samples.size() >= count * file.channels; samples = samples.subspan(count * file.channels)) {
        std::vector<Channel> channels(file.channels);
        for (std::size_t i = 0; i < count * file.channels; ++i) {
            channels[i % file.channels].push_back(samples[i]);
        }
        if (file.encoding == Encoding::ms_adpcm) {
            msBlock(data, channels, file.predictor);
        } else if (file.encoding == Encoding::ima_adpcm) {
            imaBlock(data, channels);
        } else {
            for (const Channel& channel : channels) {
                put(data, file.encoding == Encoding::a_law ? aLaw(channel[0]) : muLaw(channel[0]), 1);
            }
        }
    }
    return encodedFile(file, data);
}

std::vector<std::uint8_t> encodedFile(const EncodedFile& file, const std::vector<std::uint8_t>& data) {
    const EncodedFormat format{file.encoding, file.rate, file.channels, file.block, samplesOfBlock(file)};
    const Bytes description = format.description();
    Bytes chunks;
    put(chunks, "WAVEfmt ");
    put(chunks, static_cast<std::int64_t>(description.size()), 4);
    chunks.insert(chunks.end(), description.begin(), description.end());
    if (file.fact != 0) {
        put(chunks, "fact");
        put(chunks, 4, 4);
        put(chunks, file.fact, 4);
    }
    put(chunks, "data");
    put(chunks, static_cast<std::int64_t>(data.size()), 4);
    chunks.insert(chunks.end(), data.begin(), data.end());
    Bytes whole;
    put(whole, "RIFF");
    put(whole, static_cast<std::int64_t>(chunks.size()), 4);
    whole.insert(whole.end(), chunks.begin(), chunks.end());
    return whole;
}

std::vector<std::int16_t> tone(std::uint32_t rate, std::uint32_t channels, std::uint32_t ms, double loudness) {
    std::vector<std::int16_t> samples;
    for (std::uint32_t i = 0; i < rate * ms / 1000; ++i) {
        const double value = loudness * std::sin(2 * std::numbers::pi * 441 * i / rate);
        for (std::uint32_t channel = 0; channel < channels; ++channel) {
            samples.push_back(static_cast<std::int16_t>(std::lround(channel == 0 ? value : value / 2)));
        }
    }
    return samples;
}

} // namespace agent::voice
