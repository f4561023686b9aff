// The settings of the signed-in Messenger account: thirteen values in memory, mirrored in the registry.
#pragma once

#include <cstdint>
#include <string>

#include "platform/messenger_api.h"
#include "platform/registry.h"

namespace murmelix {

// A flag is true when it is not zero.
extern std::int16_t AutoHideIdleChar, AutoAttachChar, AutoMinimize, AutoUpdate, AutoIgnoreChars, AutoCorrectText,
    AutoHideBalloon, PlayReadEmoticon, ShowMinimizeFrm, ShowTipFrm, ShowEmotTipFrm;
extern std::u16string IgnoredChars, CurrentSoundScheme;

// The value's text up to its first NUL (a binary value: its first 16-bit element as a number); empty when the key or
// value is missing or unreadable.
std::u16string ReadRegistryValue(platform::Hive hive, const std::u16string& subkey, const std::u16string& name);

// One string value, its data without a terminating NUL. Nothing is written below an empty subkey.
void WriteRegistryValue(platform::Hive hive, const std::u16string& subkey, const std::u16string& name,
                        const std::u16string& text);

// Reads all thirteen in the table's order; an empty one is written with its default and takes it. A number beyond
// sixteen bits becomes the nearest one there is, so that it stays true.
void LoadSettings();

// Value for SettingsKeyPath: that of the signed-in user, empty while the client is offline, on its way or gone. The
// status is read five times, once for each status that counts as signed out.
std::u16string SettingsKeyPathFor(platform::MessengerApi& messenger);

} // namespace murmelix
