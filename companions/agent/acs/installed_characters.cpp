#include "companions/agent/acs/installed_characters.h"

#include <algorithm>
#include <string>
#include <system_error>

#include "companions/agent/acs/reader.h"

namespace agent::acs {

namespace fs = std::filesystem;

namespace {

std::shared_ptr<const Character> characterIn(const fs::path& file) {
    std::string why;
    const auto opened = CharacterFile::load(file, why);
    if (!opened) {
        return nullptr;
    }
    auto character = std::make_shared<Character>(opened->character());
    character->animations.clear();
    character->states.clear();
    return character;
}

} // namespace

std::vector<std::shared_ptr<const Character>> InstalledCharacters::all(std::vector<fs::path> files) {
    files.resize(std::min(files.size(), most_installed));
    std::map<fs::path, Read> now;
    std::vector<std::shared_ptr<const Character>> usable;
    for (const fs::path& file : files) {
        std::error_code gone;
        const auto written = fs::last_write_time(file, gone);
        const std::uintmax_t size = gone ? 0 : fs::file_size(file, gone);
        if (gone) {
            continue;
        }
        const auto known = read_.find(file);
        const bool same = known != read_.end() && known->second.written == written && known->second.size == size;
        const Read& read =
            now.emplace(file, Read{written, size, same ? known->second.character : characterIn(file)}).first->second;
        if (read.character) {
            usable.push_back(read.character);
        }
    }
    read_ = std::move(now);
    return usable;
}

} // namespace agent::acs
