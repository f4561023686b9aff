// Any bytes as a compressed stream, and any bytes compressed.
#include "companions/agent/acs/compression.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace agent::acs;
    const std::span<const std::uint8_t> bytes(data, size);
    const std::vector<std::uint8_t> stream = compress(bytes);
    std::vector<std::uint8_t> output(size);
    bool holds = decompress(stream, output).empty() && std::vector<std::uint8_t>(bytes.begin(), bytes.end()) == output;
    if (size >= 2) {
        output.resize(std::size_t{data[0]} * data[1]);
        const auto rest = bytes.subspan(2);
        holds = holds && decompress(rest, output) == streamFault(rest, output.size());
    }
    if (!holds) {
        std::fprintf(stderr, "The compression breaks its promise.\n");
        std::abort();
    }
    return 0;
}
