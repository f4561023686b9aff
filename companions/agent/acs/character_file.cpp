#include "companions/agent/acs/character_file.h"

#include "common/text.h"

#include <algorithm>

namespace agent::acs {
namespace {

template <typename Named>
const Named* findNamed(const std::vector<Named>& list, std::u16string_view name) {
    const auto found = std::find_if(list.begin(), list.end(), [name](const Named& item) {
        return murmelix::sameText(item.name, name, murmelix::LetterCase::ignored);
    });
    return found == list.end() ? nullptr : &*found;
}

constexpr std::uint16_t main_language = 0x3FF; // the bits of a LANGID without those of the region

const LocalizedName* storedFor(const std::vector<LocalizedName>& names, std::uint16_t language_id) {
    const auto found = std::ranges::find(names, language_id, &LocalizedName::language_id);
    return found == names.end() ? nullptr : &*found;
}

} // namespace

const Animation* Character::findAnimation(std::u16string_view name) const {
    return findNamed(animations, name);
}

const State* Character::findState(std::u16string_view name) const {
    return findNamed(states, name);
}

const LocalizedName* Character::nameFor(std::uint16_t language_id) const {
    std::vector<std::uint16_t> wanted{language_id};
    if (voice && voice->choice) {
        wanted.push_back(voice->choice->language_id);
    }
    for (const std::uint16_t language : wanted) {
        for (const std::uint16_t stored : {language, static_cast<std::uint16_t>(language & main_language)}) {
            if (const LocalizedName* found = storedFor(names, stored)) {
                return found;
            }
        }
    }
    return names.empty() ? nullptr : &names.front();
}

} // namespace agent::acs
