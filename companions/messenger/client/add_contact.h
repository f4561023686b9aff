// The small window that asks for a new contact: sign-in name and name.
#pragma once

#include <functional>
#include <string>

#include "companions/messenger/client/window.h"

namespace messenger_client {

class AddContactWindow final : public Window {
  public:
    // What keeps the contact from being added, for people; empty where it was.
    using Add = std::function<std::u16string_view(const std::u16string& signin, const std::u16string& friendly)>;

    AddContactWindow(HWND owner, Add add);
    void show();

  private:
    LRESULT message(UINT message, WPARAM wparam, LPARAM lparam) override;
    void arrange();
    void add();
    void close();
    HWND of(int id) const { return GetDlgItem(handle(), id); }

    HWND owner_;
    Add add_;
    FontOwner font_ = systemFont();
};

} // namespace messenger_client
