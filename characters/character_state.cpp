#include "characters/character_state.h"

namespace murmelix {

KeyedCollection<std::shared_ptr<platform::AgentCharacter>> LoadedCharacters;
KeyedCollection<std::shared_ptr<platform::AgentRequest>> LastRequests;
KeyedCollection<std::u16string> LoadedCharacterKeys;
CharacterHost characterHost;

std::shared_ptr<platform::AgentCharacter> loadedCharacter(const std::u16string& key) {
    return LoadedCharacters.contains(key) ? LoadedCharacters.Item(key) : nullptr;
}

std::vector<std::shared_ptr<platform::AgentCharacter>> charactersInLoadingOrder() {
    std::vector<std::shared_ptr<platform::AgentCharacter>> characters;
    for (std::size_t i = 1; i <= LoadedCharacterKeys.Count(); ++i) {
        if (auto character = loadedCharacter(LoadedCharacterKeys.Item(i))) {
            characters.push_back(std::move(character));
        }
    }
    return characters;
}

} // namespace murmelix
