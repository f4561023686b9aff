// The speech languages: internal name to "%" + Windows language identifier.
#pragma once

#include <cstdint>
#include <string>

#include "common/keyed_collection.h"

namespace murmelix {

extern KeyedCollection<std::u16string> LanguageTable;
extern std::int16_t LanguageToSwitch;

void InitLanguageTable();
// "%1031" gives 1031.
std::int16_t LanguageFromKey(const std::u16string& key);

} // namespace murmelix
