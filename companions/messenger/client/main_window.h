// The main window: the own name and status, the contacts; signed out, a place to sign in.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "companions/messenger/client/window.h"

namespace messenger_client {

inline constexpr wchar_t main_class[] = L"MessengerClientMain";

class MainWindow final : public Window {
  public:
    struct Hooks {
        std::function<void(const std::u16string& signin, const std::u16string& friendly, bool remember)> sign_in;
        std::function<LRESULT(std::string_view)> command; // a control command; its Result
        std::function<void()> deliver;                    // asked for by postDeliver
        std::function<void()> tick;                       // the timer set by setTick has run off
        std::function<void()> user_acts;                  // the user did something here
        std::function<void()> quit;
    };

    MainWindow(Client& client, Hooks hooks);
    void changed(const Change& change);
    // What the sign-in place proposes.
    void propose(const std::u16string& signin, const std::u16string& friendly, bool remember);
    void askSignIn();
    void postDeliver();
    // `milliseconds` from now; again for another time.
    void setTick(unsigned milliseconds);

  private:
    LRESULT message(UINT message, WPARAM wparam, LPARAM lparam) override;
    void build();
    void arrange();
    void paint();
    void showContacts();
    void drawContact(const DRAWITEMSTRUCT& item);
    void showState();
    void command(int id, int code);
    void openSelected();
    void chooseStatus();
    void contactMenu(POINT at);
    ContactPtr selected() const;

    Client& client_;
    Hooks hooks_;
    FontOwner font_ = systemFont();
    FontOwner bold_ = systemFont(100, FW_BOLD);
    FontOwner title_ = systemFont(135, FW_BOLD);
    HWND contacts_ = nullptr;
    HWND signin_ = nullptr;
    HWND friendly_ = nullptr;
    HWND remember_ = nullptr;
    HWND sign_in_ = nullptr;
    std::vector<ContactPtr> rows_; // null: the heading of a group
    std::vector<std::u16string> headings_;
};

} // namespace messenger_client
