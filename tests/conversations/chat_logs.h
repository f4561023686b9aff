// The chat logs that tests and benchmarks read: the busy day of this folder, and in addition those of real rooms where
// they lie beside the repository.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace murmelix::test {

inline std::filesystem::path busyDay() {
    return std::filesystem::path(MURMELIX_SOURCE_DIR) / "tests/conversations/busy-day.txt";
}

inline std::vector<std::filesystem::path> chatLogs() {
    std::vector<std::filesystem::path> files;
    const auto beside = std::filesystem::path(MURMELIX_SOURCE_DIR) / "../shared/chatlogs";
    if (std::filesystem::is_directory(beside)) {
        for (const auto& entry : std::filesystem::directory_iterator(beside)) {
            if (entry.path().extension() == ".txt") {
                files.push_back(entry.path());
            }
        }
    }
    std::sort(files.begin(), files.end());
    files.insert(files.begin(), busyDay());
    return files;
}

// Empty where the file cannot be read.
inline std::string contentsOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

} // namespace murmelix::test
