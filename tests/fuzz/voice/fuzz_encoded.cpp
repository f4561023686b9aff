// Any bytes as the format of an encoded sound, and as its blocks.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "companions/agent/voice/encoded.h"
#include "companions/agent/voice/wave.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace agent::voice;
    constexpr std::uint64_t most_samples = 2000;
    const std::span<const std::uint8_t> bytes(data, size);
    std::string error;
    const auto format = readEncodedFormat(bytes, error);
    require(format.has_value() == error.empty(), "what is refused has a reason");
    if (!format) {
        return 0;
    }
    require(format->rate >= least_rate && format->rate <= most_rate, "the rate is one that can be heard");
    require(format->channels == 1 || format->channels == 2, "it has one channel or two");
    const auto description = format->description();
    require(readEncodedFormat(description, error).has_value(), "its description is a format again");
    const auto sound = bytes.subspan(std::min<std::size_t>(size, 16));
    const EncodedBlocks read = readEncodedBlocks(*format, sound, most_samples);
    require(read.bytes.size() % format->block == 0, "blocks are whole");
    require(read.samples <= most_samples, "a sound ends");
    require(read.samples <= read.bytes.size() / format->block * format->samples_per_block, "blocks hold their samples");
    require(read.bytes.size() < sound.size() + format->block, "no block is added");
    return 0;
}
