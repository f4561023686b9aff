#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <vector>

#include "companions/agent/acs/character_file.h"

namespace agent::acs {

// The character files of a directory. Each is read when it is first asked for, and again where it has changed.
class InstalledCharacters {
  public:
    // Files that are looked at, the first by their names: opening more would be noticed.
    static constexpr std::size_t most_installed = 200;

    explicit InstalledCharacters(std::filesystem::path directory) : directory_(std::move(directory)) {}

    // Without animations, pictures and sounds, in the order of the files' names. What is no character file that can be
    // used is left out; so is everything where there is no such directory.
    std::vector<std::shared_ptr<const Character>> all();

  private:
    struct Read {
        std::filesystem::file_time_type written;
        std::uintmax_t size;                        // bytes
        std::shared_ptr<const Character> character; // null: it cannot be used
    };

    std::filesystem::path directory_;
    std::map<std::filesystem::path, Read> read_;
};

} // namespace agent::acs
