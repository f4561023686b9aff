// The shell's module variables, read and written directly by every folder of the program.
#pragma once

#include <cstdint>
#include <string>

namespace murmelix {

// What the 16-bit flags of settings and state are where they are set.
inline constexpr std::int16_t on = -1;

extern std::u16string WindowsDir;      // with a trailing "\", or empty
extern std::u16string SettingsKeyPath; // registry subkey of the signed-in user's settings, or empty
extern std::u16string SoundsDir;       // program directory + "\sounds\"
extern std::u16string CharPicsDir;     // program directory + "\CharPics"
extern std::int16_t MainFormLoaded;
extern std::int16_t IsReadingConversation;
extern std::int32_t ReadingWindowHandle; // HWND of the conversation being read, 0 when none
// Readings begun and ended so far. Every call to a neighbour lets another one begin: who made one asks whether it is
// still the same.
extern std::uint32_t ReadingNumber;
extern int SpeechCheckAnswer; // 6 = Yes

} // namespace murmelix
