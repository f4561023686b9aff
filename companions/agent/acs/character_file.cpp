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

} // namespace

const Animation* Character::findAnimation(std::u16string_view name) const {
    return findNamed(animations, name);
}

const State* Character::findState(std::u16string_view name) const {
    return findNamed(states, name);
}

} // namespace agent::acs
