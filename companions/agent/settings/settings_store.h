// The server's settings, each user's own: HKEY_CURRENT_USER, Software\Murmelix AgentServer.
#pragma once

namespace agent::settings {

// "SoundEnabled" (a DWORD; on without it).
bool readSoundEnabled();
void writeSoundEnabled(bool enabled);

// "Size": how large characters and balloons are, in percent (a DWORD; 100 without it).
inline constexpr int least_size = 75, usual_size = 100, largest_size = 300;
int readSize(); // the nearest to what is kept
void writeSize(int percent);

// "KeepOnScreen" (as "SoundEnabled").
bool readKeepOnScreen();
void writeKeepOnScreen(bool keep);

} // namespace agent::settings
