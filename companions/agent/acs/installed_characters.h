#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <vector>

#include "companions/agent/acs/character_file.h"

namespace agent::acs {

// The character files that are installed. Each is read when it is first asked for, and again where it has changed.
class InstalledCharacters {
  public:
    // Files that are looked at, the first: opening more would be noticed.
    static constexpr std::size_t most_installed = 200;

    // Those of the files, in their order, without animations, pictures and sounds. What is no character file that can
    // be used is left out.
    std::vector<std::shared_ptr<const Character>> all(std::vector<std::filesystem::path> files);

  private:
    struct Read {
        std::filesystem::file_time_type written;
        std::uintmax_t size;                        // bytes
        std::shared_ptr<const Character> character; // null: it cannot be used
    };

    std::map<std::filesystem::path, Read> read_;
};

} // namespace agent::acs
