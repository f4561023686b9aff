#include "companions/agent/voice/wave.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "companions/agent/voice/encoded.h"

namespace agent::voice {

namespace {

constexpr int most_chunks = 1000; // looked through for the sound; files have a handful
constexpr std::uint32_t format_pcm = 1, format_extensible = 0xFFFE;

std::uint32_t number(std::span<const std::uint8_t> bytes, std::size_t at, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i) {
        value |= static_cast<std::uint32_t>(bytes[at + i]) << (8 * i);
    }
    return value;
}

bool isNamed(std::span<const std::uint8_t> bytes, std::size_t at, const char* name) {
    return std::memcmp(bytes.data() + at, name, 4) == 0;
}

struct Format {
    std::uint32_t rate = 0, channels = 0, bits = 0;
};

std::optional<Format> readFormat(std::span<const std::uint8_t> chunk, std::string& error) {
    if (chunk.size() < 16) {
        error = "the format of the sound is cut off";
        return std::nullopt;
    }
    std::uint32_t kind = number(chunk, 0, 2);
    if (kind == format_extensible && chunk.size() >= 26) {
        kind = number(chunk, 24, 2);
    }
    const Format format{number(chunk, 4, 4), number(chunk, 2, 2), number(chunk, 14, 2)};
    if (kind != format_pcm) {
        error = "the sound is in a format that is not known here";
    } else if (format.channels != 1 && format.channels != 2) {
        error = "the sound has neither one channel nor two";
    } else if (format.bits != 8 && format.bits != 16) {
        error = "the sound has neither 8 nor 16 bits a sample";
    } else if (format.rate < least_rate || format.rate > most_rate) {
        error = "the sound's rate is not between 4 and 96 kHz";
    } else if (number(chunk, 12, 2) != format.channels * format.bits / 8) {
        error = "the sound's block size is not that of its samples";
    } else {
        return format;
    }
    return std::nullopt;
}

std::uint64_t samplesOf(std::uint32_t ms, std::uint32_t rate) {
    return std::uint64_t{ms} * rate / 1000;
}

Wave readSamples(std::span<const std::uint8_t> data, const Format& format, std::uint32_t most_ms) {
    const std::size_t width = format.bits / 8, block = width * format.channels;
    const std::uint64_t most = samplesOf(most_ms, format.rate) * block;
    data = data.first(static_cast<std::size_t>(std::min<std::uint64_t>(data.size(), most)));
    Wave wave{format.rate, {}};
    wave.samples.reserve(data.size() / block);
    for (std::size_t at = 0; at + block <= data.size(); at += block) {
        std::int32_t sum = 0;
        for (std::size_t channel = 0; channel < format.channels; ++channel) {
            const std::uint32_t raw = number(data, at + channel * width, width);
            sum += width == 1 ? (static_cast<std::int32_t>(raw) - 128) * 256 : static_cast<std::int16_t>(raw);
        }
        wave.samples.push_back(static_cast<std::int16_t>(sum / static_cast<std::int32_t>(format.channels)));
    }
    return wave;
}

// At most `most_samples` are the sound's own, the rest fills its last block up.
std::optional<Wave> readEncoded(std::span<const std::uint8_t> data, const EncodedFormat& format,
                                std::uint64_t most_samples, std::string& error) {
    const EncodedBlocks read = readEncodedBlocks(format, data, most_samples);
    if (read.bytes.empty()) {
        return Wave{format.rate, {}};
    }
    Wave wave{format.rate, {}};
    wave.samples.reserve(static_cast<std::size_t>(read.samples));
    const auto keep = [&](std::span<const std::int16_t> samples) {
        for (; samples.size() >= format.channels && wave.samples.size() < read.samples;
             samples = samples.subspan(format.channels)) {
            const int sum = samples[0] + samples[format.channels - 1];
            wave.samples.push_back(static_cast<std::int16_t>(sum / 2));
        }
    };
    if (!decode(format, read.bytes, keep, error)) {
        return std::nullopt;
    }
    return wave;
}

} // namespace

std::uint32_t Wave::milliseconds() const {
    return static_cast<std::uint32_t>(millisecondsOf(samples.size(), rate));
}

std::optional<Wave> readWave(std::span<const std::uint8_t> file, std::string& error, std::uint32_t most_ms) {
    if (file.size() < 12 || !isNamed(file, 0, "RIFF") || !isNamed(file, 8, "WAVE")) {
        error = "this is not a wave file";
        return std::nullopt;
    }
    std::optional<Format> format;
    std::optional<EncodedFormat> encoded;
    std::uint64_t own_samples = 0; // of an encoded sound; 0: not told
    std::size_t at = 12;
    for (int chunks = 0; chunks < most_chunks && file.size() - at >= 8; ++chunks) {
        const std::size_t declared = number(file, at + 4, 4), begin = at + 8;
        // A sound that was cut off, or written to a pipe with its length unknown, is heard as far as it goes.
        const std::span<const std::uint8_t> chunk = file.subspan(begin, std::min(declared, file.size() - begin));
        if (isNamed(file, at, "fmt ")) {
            const bool plain = chunk.size() < 2 || !encodingOf(number(chunk, 0, 2));
            format = plain ? readFormat(chunk, error) : std::nullopt;
            encoded = plain ? std::nullopt : readEncodedFormat(chunk, error);
            if (!format && !encoded) {
                return std::nullopt;
            }
        } else if (isNamed(file, at, "fact") && chunk.size() >= 4) {
            own_samples = number(chunk, 0, 4);
        } else if (isNamed(file, at, "data") && encoded) {
            const std::uint64_t most = samplesOf(most_ms, encoded->rate);
            return readEncoded(chunk, *encoded, own_samples == 0 ? most : std::min(most, own_samples), error);
        } else if (isNamed(file, at, "data")) {
            if (!format) {
                error = "the sound comes before its format";
                return std::nullopt;
            }
            return readSamples(chunk, *format, most_ms);
        }
        at = begin + std::min(chunk.size() + (chunk.size() & 1U), file.size() - begin);
    }
    error = "the wave file holds no sound";
    return std::nullopt;
}

std::vector<std::uint8_t> waveHeader(std::uint32_t rate, std::uint32_t bytes) {
    std::vector<std::uint8_t> header;
    header.reserve(wave_header_size);
    const auto name = [&](std::string_view text) {
        for (const char letter : text) {
            header.push_back(static_cast<std::uint8_t>(letter));
        }
    };
    const auto put = [&](std::uint32_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            header.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        }
    };
    name("RIFF");
    put(bytes + wave_header_size - 8, 4);
    name("WAVE");
    name("fmt ");
    put(16, 4);
    put(format_pcm, 2);
    put(1, 2);
    put(rate, 4);
    put(rate * 2, 4);
    put(2, 2);
    put(16, 2);
    name("data");
    put(bytes, 4);
    return header;
}

std::vector<std::uint8_t> writeWave(const Wave& wave) {
    const std::size_t count = std::min<std::size_t>(wave.samples.size(), most_wave_bytes / 2);
    std::vector<std::uint8_t> file = waveHeader(wave.rate, static_cast<std::uint32_t>(count * 2));
    file.reserve(file.size() + count * 2);
    for (std::size_t i = 0; i < count; ++i) {
        const auto sample = static_cast<std::uint16_t>(wave.samples[i]);
        file.push_back(static_cast<std::uint8_t>(sample & 0xFFU));
        file.push_back(static_cast<std::uint8_t>(sample >> 8));
    }
    return file;
}

Wave resampled(Wave wave, std::uint32_t rate) {
    if (wave.rate == rate || wave.samples.empty() || wave.rate == 0 || rate == 0) {
        wave.rate = rate;
        return wave;
    }
    const std::uint64_t from = wave.rate, to = rate, count = wave.samples.size();
    Wave result{rate, {}};
    result.samples.reserve(static_cast<std::size_t>(count * to / from));
    for (std::uint64_t i = 0; i < count * to / from; ++i) {
        const std::uint64_t first = i * from / to;
        if (from > to) {
            const std::uint64_t last = std::max(first + 1, std::min(count, (i + 1) * from / to));
            std::int64_t sum = 0;
            for (std::uint64_t j = first; j < last; ++j) {
                sum += wave.samples[static_cast<std::size_t>(j)];
            }
            result.samples.push_back(static_cast<std::int16_t>(sum / static_cast<std::int64_t>(last - first)));
        } else {
            const std::int64_t a = wave.samples[static_cast<std::size_t>(first)];
            const std::int64_t b = wave.samples[static_cast<std::size_t>(std::min(first + 1, count - 1))];
            const auto part = static_cast<std::int64_t>(i * from % to);
            result.samples.push_back(static_cast<std::int16_t>(a + (b - a) * part / static_cast<std::int64_t>(to)));
        }
    }
    return result;
}

std::int16_t mixed(std::int16_t a, std::int16_t b) {
    return static_cast<std::int16_t>(std::clamp(int{a} + int{b}, -32768, 32767));
}

} // namespace agent::voice
