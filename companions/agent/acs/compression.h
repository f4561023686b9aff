// The byte compression of pixels and regions in a character file: literals and copies of earlier output, as a stream of
// bits (the lowest bit of a byte comes first) between a leading byte 0 and six closing bytes 0xFF.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace agent::acs {

// The fault of a stream that is to give exactly `size` bytes, as the end of a sentence ("copies from before its
// start"); empty when it has none. Nothing is decompressed: every copy's position and length stand in the stream
// itself.
std::string_view streamFault(std::span<const std::uint8_t> stream, std::size_t size);

// Fills `output` exactly; returns the fault as above. After a fault the contents of `output` mean nothing.
std::string_view decompress(std::span<const std::uint8_t> stream, std::span<std::uint8_t> output);

// A stream that decompresses to `bytes`; the time is proportional to their number.
std::vector<std::uint8_t> compress(std::span<const std::uint8_t> bytes);

} // namespace agent::acs
