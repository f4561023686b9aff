// The server's switches, each user's own: HKEY_CURRENT_USER, Software\Murmelix AgentServer.
#pragma once

namespace agent::settings {

// "SoundEnabled" (a DWORD; on without it).
bool readSoundEnabled();
void writeSoundEnabled(bool enabled);

// "KeepOnScreen" (likewise).
bool readKeepOnScreen();
void writeKeepOnScreen(bool keep);

} // namespace agent::settings
