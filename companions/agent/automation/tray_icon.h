// The server's icon beside the clock: its properties, and its end.
#pragma once

#include <functional>

#include "companions/agent/stage/windows/window.h"

namespace agent::automation {

class TrayIcon final : public stage::Window {
  public:
    TrayIcon(std::function<void()> show_properties, std::function<void()> end);
    ~TrayIcon() override;

  protected:
    LRESULT received(UINT message, WPARAM wparam, LPARAM lparam) override;

  private:
    void add();
    void showMenu();

    std::function<void()> show_properties_, end_;
    UINT taskbar_made_;
};

} // namespace agent::automation
