// The server's own settings: a window with the pages "Speech", "Output" and "Copyright".
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>

#include "companions/agent/stage/windows/window.h"

namespace agent::automation {

// The switch of the user: HKEY_CURRENT_USER, Software\Murmelix AgentServer, "SoundEnabled" (a DWORD; on without it).
bool readSoundEnabled();
void writeSoundEnabled(bool enabled);

class SettingsWindow final : public stage::Window {
  public:
    struct Facts {
        bool voice = false; // there is one to speak with
        bool sound_enabled = true;
    };
    SettingsWindow(std::function<Facts()> facts, std::function<void(bool)> enable_sound);
    ~SettingsWindow() override;

    // "Speech", "Output" or "Copyright", without letter case; false for another.
    bool setPage(std::u16string_view page);
    std::u16string page() const;
    void setVisible(bool visible);
    bool visible() const;
    RECT frame() const;

  protected:
    LRESULT received(UINT message, WPARAM wparam, LPARAM lparam) override;

  private:
    void build();
    void turn();

    std::function<Facts()> facts_;
    std::function<void(bool)> enable_sound_;
    stage::gdi::Font font_;
    HWND tabs_ = nullptr;
    HWND text_ = nullptr;
    HWND sound_ = nullptr;
    HWND close_ = nullptr;
    int page_ = 0;
};

} // namespace agent::automation
