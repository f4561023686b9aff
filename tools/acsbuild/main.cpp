// acsbuild MANIFEST.json -o OUT.acs: builds a character file from a manifest (see assets/README.md).

#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "companions/agent/acs/writer.h"
#include "tools/acsbuild/manifest.h"

namespace {

std::string readText(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (!stream) {
        throw std::runtime_error("cannot be read");
    }
    return text;
}

// Under another name first, so that a failure leaves no half-written character behind.
void writeFile(const std::filesystem::path& file, const std::vector<std::uint8_t>& bytes) {
    std::filesystem::path unfinished = file;
    unfinished += ".part";
    std::ofstream stream(unfinished, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) {
        throw std::runtime_error(unfinished.string() + " cannot be written");
    }
    std::filesystem::rename(unfinished, file);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4 || std::string_view(argv[2]) != "-o") {
        std::cerr << "usage: acsbuild MANIFEST.json -o OUT.acs\n";
        return 2;
    }
    const std::filesystem::path manifest = argv[1];
    try {
        const agent::acs::Character character = acsbuild::readCharacter(readText(manifest), manifest.parent_path());
        writeFile(argv[3], agent::acs::write(character));
    } catch (const std::exception& error) {
        std::cerr << manifest.string() << ": " << error.what() << '\n';
        return 1;
    }
    return 0;
}
