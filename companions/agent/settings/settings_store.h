// The server's settings, each user's own: HKEY_CURRENT_USER, Software\Murmelix AgentServer.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "companions/agent/settings/listener.h"

namespace agent::settings {

// "SoundEnabled" (a DWORD; on without it).
bool readSoundEnabled();
void writeSoundEnabled(bool enabled);

// "Size": how large characters and balloons are, in percent (a DWORD; 100 without it).
inline constexpr int least_size = 75, usual_size = 100, largest_size = 300;
int readSize(); // the nearest to what is kept
void writeSize(int percent);

// Numbers of the listener (DWORDs; the usual one without it, the nearest within the bounds).
inline const std::u16string volume_name = u"Volume", speed_name = u"Speed", longest_name = u"LongestRequest",
                            most_waiting_name = u"MostWaiting", letters_name = u"BalloonText",
                            reading_name = u"BalloonStays";
int readNumber(const std::u16string& name, const Bounds& bounds);
void writeNumber(const std::u16string& name, int number);

// Switches of the listener (DWORDs, as "SoundEnabled").
inline const std::u16string word_by_word_name = u"WordByWord", calm_name = u"LessMotion";
bool readSwitch(const std::u16string& name, bool usual);
void writeSwitch(const std::u16string& name, bool on);

// A key for all programs (a DWORD, see keys.h; 0 without it).
std::uint32_t readKey(const std::u16string& name);
void writeKey(const std::u16string& name, std::uint32_t key);

// "AllSilenced" (a DWORD; off without it).
bool readAllSilenced();
void writeAllSilenced(bool silenced);

// "Silenced": what the silenced characters are known by (a list; what is none, too long or there twice is left out).
std::vector<std::u16string> readSilenced();
void writeSilenced(const std::vector<std::u16string>& characters);

// How the user wants one character to sound: of the key Software\Murmelix AgentServer\Voices\CHARACTER "Voice" (a list
// of one line) and "Language", "Pitch", "Speed" (DWORDs). What is missing, or beyond its bounds, is as the character
// has it.
OwnVoice readOwnVoice(std::u16string_view character);
void writeOwnVoice(std::u16string_view character, const OwnVoice& voice);

// The voice of those who have none of their own, by language: of the key Software\Murmelix AgentServer\DefaultVoices
// the value of the language's number, in decimal (a list of one line). Empty: none is chosen.
std::u16string readDefaultVoice(std::uint16_t language);
// False where it cannot be kept.
bool writeDefaultVoice(std::uint16_t language, const std::u16string& voice);

// "KeepOnScreen" (as "SoundEnabled").
bool readKeepOnScreen();
void writeKeepOnScreen(bool keep);

} // namespace agent::settings
