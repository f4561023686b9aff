// A character described by a manifest: a JSON file that names its pictures (PNG) and sounds (WAVE).
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string_view>

#include "companions/agent/acs/character_file.h"

namespace acsbuild {

// What is wrong with the manifest or a file that it names, and where.
class ManifestError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// File names in the manifest are relative to `directory`.
agent::acs::Character readCharacter(std::string_view manifest, const std::filesystem::path& directory);

} // namespace acsbuild
