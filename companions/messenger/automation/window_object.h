// IMessengerWindow: what the windows have in common, and the main window.
#pragma once

#include "companions/messenger/automation/answering.h"
#include "platform/window.h"

namespace messenger_client {

class WindowObject : public Answering {
  public:
    using Side = std::int32_t murmelix::platform::WindowPlace::*;

    std::int32_t side(Side side);
    void setSide(Side side, std::int32_t pixels);

  protected:
    using Answering::Answering;
    static const murmelix::com::Members<WindowObject>& table();

    virtual std::intptr_t window() = 0;
    virtual void close() = 0;
    virtual void show() = 0;
    virtual bool isClosed() = 0;

  private:
    std::int32_t handle();
    murmelix::platform::WindowPlace place();
};

class MainWindowObject final : public WindowObject {
  public:
    MainWindowObject(Automation& automation, Automation::Key key) : WindowObject(automation, key) {}

  private:
    const murmelix::com::Interface* published() const override { return &type_library::IMessengerWindow; }
    std::span<const murmelix::com::Member> members() const override { return table(); }
    std::intptr_t window() override { return automation().hooks().main_window(); }
    void close() override { murmelix::platform::minimiseWindow(window()); }
    void show() override { automation().hooks().show_main_window(); }
    bool isClosed() override { return !murmelix::platform::isWindowOpen(window()); }
};

} // namespace messenger_client
