// Which character speaks for which contact, per account: one keyed collection mirrored in the registry.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "common/keyed_collection.h"
#include "platform/registry.h"

namespace murmelix {

// Contact's sign-in name to character name + "##" + sign-in name.
extern KeyedCollection<std::u16string> Matchups;

void LoadMatchups();
bool MatchupExists(const std::u16string& contact);
// CollectionError where there is none.
std::u16string GetMatchupCharacter(const std::u16string& contact);
std::u16string GetMatchupCharacterAt(std::int16_t position); // from 1
std::u16string GetMatchupContactAt(std::int16_t position);
// At the end, instead of the one that the contact has. What the registry cannot hold, or could not be loaded again (255
// characters and more), is kept for this run alone.
void AddMatchup(const std::u16string& contact, const std::u16string& character);
void RemoveMatchup(const std::u16string& contact);

// Each character's code in the ANSI code page plus (minus) 10, modulo 256.
std::u16string ScrambleMatchupName(const std::u16string& text);
std::u16string UnscrambleMatchupName(const std::u16string& text);

using RegistryValueList = std::vector<std::pair<std::u16string, std::u16string>>;
// The string values of a key, name and data; ends at the first one longer than 255 characters.
RegistryValueList ReadRegistryValueList(platform::Hive hive, const std::u16string& subkey);
void DeleteRegistryValue(platform::Hive hive, const std::u16string& subkey, const std::u16string& name);

} // namespace murmelix
