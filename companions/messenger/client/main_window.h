// The main window: the own name, status and mail, and the contacts; signed out, the place to sign in.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "companions/messenger/chat/session.h"
#include "companions/messenger/client/add_contact.h"
#include "companions/messenger/client/sign_in_page.h"
#include "companions/messenger/client/tray_icon.h"
#include "companions/messenger/client/window.h"

namespace messenger_client {

inline constexpr wchar_t main_class[] = L"MessengerClientMain";

class MainWindow final : public Window {
  public:
    using Clock = Session::Clock;

    struct Hooks {
        std::function<void(const SignInPage::Request&)> sign_in;
        std::function<void(const std::u16string& signin)> forget;
        std::function<void(const std::u16string& signin)> switch_to; // an account; empty: asks for one
        std::function<LRESULT(std::string_view)> command;            // a control command; its Result
        std::function<void(Clock)> tick;                             // the timer set by setTick has run off
        std::function<void()> user_acts;                             // the user did something here
        std::function<void()> quit;
    };

    MainWindow(Client& client, Hooks hooks);
    void changed(const Change& change);
    // Who is signing in, while somebody is.
    void setSigningIn(std::u16string_view signin, std::u16string_view friendly);
    void accountsChanged();
    // What the sign-in place proposes; nothing: the account used last.
    void propose(std::u16string_view signin) { page_->propose(signin); }
    // Empties what it proposes, for somebody else.
    void proposeNobody() { page_->proposeNobody(); }
    // Shows where one signs in, whatever has become of the window.
    void askSignIn();
    void show();
    // Into the notification area; where there is none, only as small as it gets.
    void hide();
    // `milliseconds` from now; again for another time.
    void setTick(Clock clock, unsigned milliseconds);
    HACCEL accelerators() const { return accelerators_.get(); }

  private:
    struct DestroyAccelerators {
        void operator()(HACCEL table) const { DestroyAcceleratorTable(table); }
    };

    LRESULT message(UINT message, WPARAM wparam, LPARAM lparam) override;
    void build();
    void arrange();
    void paint();
    void showContacts();
    void drawContact(const DRAWITEMSTRUCT& item);
    void drawBandButton(const DRAWITEMSTRUCT& item);
    void showBand();
    void showState();
    void showTrayIcon();
    void command(int id, int code);
    void enter();
    void openSelected();
    void openMenu(HMENU menu, int below);
    void fillAccountMenu();
    void beginRenaming();
    void endRenaming(bool take);
    void contactMenu(POINT at);
    void trayMenu();
    ContactPtr selected() const;
    HWND of(int id) const { return GetDlgItem(handle(), id); }

    Client& client_;
    Hooks hooks_;
    FontOwner font_ = systemFont();
    FontOwner bold_ = systemFont(100, FW_BOLD);
    FontOwner title_ = systemFont(135, FW_BOLD);
    std::unique_ptr<std::remove_pointer_t<HACCEL>, DestroyAccelerators> accelerators_;
    std::optional<SignInPage> page_; // there once the window is
    TrayIcon tray_;
    std::unique_ptr<AddContactWindow> add_contact_;
    UINT taskbar_made_ = 0;
    bool built_ = false;
    bool renaming_ = false;
    Contact signing_in_;
    std::vector<ContactPtr> rows_; // null: the heading of a group
    std::vector<std::u16string> headings_;
    std::vector<std::u16string> switchable_; // accounts of the menu
};

} // namespace messenger_client
