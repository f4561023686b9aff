// Where one signs in, inside the main window: a form, and what is seen of a sign-in that is under way. Its controls are
// children of the main window, which hands their notices on.
#pragma once

#include <functional>
#include <string>

#include "companions/messenger/chat/sign_in_form.h"
#include "companions/messenger/client/window.h"

namespace messenger_client {

// Ids of the children, from 101 on.
enum : int {
    id_signin = 101,    // ComboBox: the sign-in name; its list are the remembered accounts
    id_friendly = 102,  // Edit
    id_automatic = 103, // Button "Sign me in &automatically"
    id_sign_in = 104,   // Button "&Sign in"
    id_as_status = 106, // ComboBox, a drop-down list
    id_remember = 107,  // Button "&Remember me on this computer"
    id_forget = 108,    // Button "For&get"
    id_cancel = 109,    // Button "Cancel", while signing in
    id_fault = 110,     // Static: why the last sign-in failed
    id_progress = 111,  // Static: what is being done, while signing in
    id_note = 112,      // Static
    id_label = 120,     // Static, three of them
};

class SignInPage {
  public:
    using Request = SignInRequest;
    struct Hooks {
        std::function<void(const Request&)> sign_in;
        std::function<void(const std::u16string& signin)> forget;
        std::function<void()> cancel;
    };
    enum class State { hidden, form, connecting, synchronising };

    SignInPage(HWND parent, HFONT font, const Accounts& accounts, Hooks hooks);

    State state() const { return state_; }
    void show(State state);
    // Fills the form in, where it is not of that account already; an empty sign-in name proposes the account used last.
    void propose(std::u16string_view signin);
    // Empties the form, for somebody else.
    void proposeNobody();
    void accountsChanged();
    // `fault` for people; empty: none.
    void tellFault(std::u16string_view fault);
    void focus();
    void arrange(const RECT& area);
    // What is there beside the controls.
    void paint(HDC dc, const Contact& who);
    // Called many times a second while signing in.
    void turn();
    // False where the notice is none of its own. IDOK and IDCANCEL count while the page is shown.
    bool command(int id, int code);
    // The colour that a Static of the page is written in.
    COLORREF colorOfStatic(HWND control) const;

  private:
    void fillIn(const Request& fields);
    void signIn();
    void nameChanged(const std::u16string& name);
    std::u16string typedName() const;
    HWND of(int id) const { return GetDlgItem(parent_, id); }

    HWND parent_;
    const Accounts& accounts_;
    SignInForm form_{accounts_};
    Hooks hooks_;
    State state_ = State::hidden;
    RECT area_{};
    int step_ = 0;
};

} // namespace messenger_client
