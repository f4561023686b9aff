#include "companions/agent/voice/encoded.h"

#include <algorithm>
#include <array>
#include <utility>

#include "companions/agent/voice/wave.h"

namespace agent::voice {

namespace {

constexpr std::uint32_t most_samples_of_block = 0xFFFF; // as the format counts them
constexpr std::uint32_t gsm_block = 65, gsm_samples = 320;
constexpr std::uint32_t ms_header = 7, ima_header = 4; // bytes of each channel before the samples of a block
constexpr std::uint8_t ima_steps = 89;
// The predictors that every MS-ADPCM sound has, in 1/256 of the last sample and of the one before.
constexpr std::array<std::pair<std::int16_t, std::int16_t>, 7> ms_predictors{
    {{256, 0}, {512, -256}, {0, 0}, {192, 64}, {240, 0}, {460, -208}, {392, -232}}};

std::uint32_t number(std::span<const std::uint8_t> bytes, std::size_t at, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i) {
        value |= static_cast<std::uint32_t>(bytes[at + i]) << (8 * i);
    }
    return value;
}

bool isAdpcm(Encoding encoding) {
    return encoding == Encoding::ms_adpcm || encoding == Encoding::ima_adpcm;
}

// Of each channel in that many bytes of an ADPCM block, the first of which stand in its header; 0 where they are too
// few.
std::uint32_t samplesIn(const EncodedFormat& format, std::size_t size) {
    const bool ms = format.encoding == Encoding::ms_adpcm;
    const std::size_t header = (ms ? ms_header : ima_header) * format.channels;
    if (size < header) {
        return 0;
    }
    // Of two channels of IMA-ADPCM eight samples of the one and eight of the other come in turns.
    const std::size_t group = !ms && format.channels == 2 ? 8 : 1;
    return static_cast<std::uint32_t>((size - header) / group * group * 2 / format.channels + (ms ? 2 : 1));
}

// A converter reads its tables at these places.
bool isSound(const EncodedFormat& format, std::span<const std::uint8_t> block) {
    for (std::uint32_t channel = 0; channel < format.channels; ++channel) {
        if (format.encoding == Encoding::ms_adpcm && block[channel] >= ms_predictors.size()) {
            return false;
        }
        if (format.encoding == Encoding::ima_adpcm && block[channel * ima_header + 2] >= ima_steps) {
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<Encoding> encodingOf(std::uint32_t format_tag) {
    for (const Encoding known :
         {Encoding::ms_adpcm, Encoding::a_law, Encoding::mu_law, Encoding::ima_adpcm, Encoding::gsm}) {
        if (format_tag == static_cast<std::uint32_t>(known)) {
            return known;
        }
    }
    return std::nullopt;
}

std::vector<std::uint8_t> EncodedFormat::description() const {
    std::vector<std::uint8_t> bytes;
    const auto put = [&](std::uint32_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        }
    };
    const bool adpcm = isAdpcm(encoding), law = encoding == Encoding::a_law || encoding == Encoding::mu_law;
    const std::uint32_t ms_extra = 4 + 4 * static_cast<std::uint32_t>(ms_predictors.size());
    put(static_cast<std::uint32_t>(encoding), 2);
    put(channels, 2);
    put(rate, 4);
    put(static_cast<std::uint32_t>(std::uint64_t{rate} * block / samples_per_block), 4);
    put(block, 2);
    put(adpcm ? 4 : law ? 8 : 0, 2);
    put(law ? 0 : encoding == Encoding::ms_adpcm ? ms_extra : 2, 2);
    if (!law) {
        put(samples_per_block, 2);
    }
    if (encoding == Encoding::ms_adpcm) {
        put(static_cast<std::uint32_t>(ms_predictors.size()), 2);
        for (const auto& [last, before] : ms_predictors) {
            put(static_cast<std::uint16_t>(last), 2);
            put(static_cast<std::uint16_t>(before), 2);
        }
    }
    return bytes;
}

std::optional<EncodedFormat> readEncodedFormat(std::span<const std::uint8_t> chunk, std::string& error) {
    const std::optional<Encoding> encoding = chunk.size() < 16 ? std::nullopt : encodingOf(number(chunk, 0, 2));
    if (!encoding) {
        error = "the format of the sound is cut off, or not known";
        return std::nullopt;
    }
    EncodedFormat format{*encoding, number(chunk, 4, 4), number(chunk, 2, 2), number(chunk, 12, 2), 0};
    if (format.channels != 1 && (format.channels != 2 || *encoding == Encoding::gsm)) {
        error = "the sound has a number of channels that its format cannot have";
        return std::nullopt;
    }
    if (format.rate < least_rate || format.rate > most_rate) {
        error = "the sound's rate is not between 4 and 96 kHz";
        return std::nullopt;
    }
    if (*encoding == Encoding::a_law || *encoding == Encoding::mu_law) {
        format.samples_per_block = format.block == format.channels ? 1 : 0;
    } else if (*encoding == Encoding::gsm) {
        format.samples_per_block = format.block == gsm_block ? gsm_samples : 0;
    } else {
        const std::uint32_t group = *encoding == Encoding::ima_adpcm ? ima_header * format.channels : 1;
        const std::uint32_t header = (*encoding == Encoding::ima_adpcm ? ima_header : ms_header) * format.channels;
        format.samples_per_block =
            format.block > header && format.block % group == 0 ? samplesIn(format, format.block) : 0;
    }
    if (format.samples_per_block == 0 || format.samples_per_block > most_samples_of_block) {
        error = "the sound's blocks have a size that its format cannot have";
        return std::nullopt;
    }
    return format;
}

EncodedBlocks readEncodedBlocks(const EncodedFormat& format, std::span<const std::uint8_t> data,
                                std::uint64_t most_samples) {
    EncodedBlocks read;
    const std::uint64_t most_blocks = (most_samples + format.samples_per_block - 1) / format.samples_per_block;
    const auto room = static_cast<std::size_t>(std::min<std::uint64_t>(data.size(), most_blocks * format.block));
    data = data.first(room);
    if (!isAdpcm(format.encoding)) {
        const std::size_t whole = data.size() / format.block;
        read.bytes.assign(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(whole * format.block));
        read.samples = std::min<std::uint64_t>(whole * format.samples_per_block, most_samples);
        return read;
    }
    while (!data.empty()) {
        const std::span<const std::uint8_t> block = data.first(std::min<std::size_t>(data.size(), format.block));
        const std::uint32_t samples = samplesIn(format, block.size());
        if (samples == 0 || !isSound(format, block)) {
            break;
        }
        read.bytes.insert(read.bytes.end(), block.begin(), block.end());
        read.bytes.resize(read.bytes.size() + format.block - block.size());
        read.samples += samples;
        data = data.subspan(block.size());
    }
    read.samples = std::min(read.samples, most_samples);
    return read;
}

} // namespace agent::voice
