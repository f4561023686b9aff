// Where one signs in, inside the main window.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "companions/messenger/chat/sign_in_form.h"
#include "ui/button.h"
#include "ui/check_box.h"
#include "ui/combo_box.h"
#include "ui/drop_down_list.h"
#include "ui/frame.h"
#include "ui/label.h"
#include "ui/layout.h"
#include "ui/text_box.h"

namespace messenger_client {

namespace ui = murmelix::ui;

class SignInPage final : public ui::Frame {
  public:
    struct Hooks {
        std::function<void(const SignInRequest&)> sign_in;
        std::function<void(const std::u16string& signin)> forget;
    };

    SignInPage(ui::Control& parent, const Accounts& accounts, Hooks hooks);

    // Fills the form in, where it is not of that account already; an empty sign-in name proposes the account used last.
    void propose(std::u16string_view signin);
    // Empties the form, for somebody else.
    void proposeNobody();
    // Which are remembered.
    void accountsChanged();
    // `fault` for people; empty: none.
    void tellFault(std::u16string_view fault);
    // The keyboard goes to where one goes on: the name, or the button where there is one.
    void focusFirst();
    ui::Layout layout();

    ui::Label NameLbl{*this, u"Sign-in &name"};
    ui::ComboBox NameBox{*this}; // its list are the remembered accounts
    ui::Label DisplayNameLbl{*this, u"Name that others see (&display name)"};
    ui::TextBox DisplayNameTxt{*this, u""};
    ui::Label StatusLbl{*this, u"S&tatus"};
    ui::DropDownList StatusList{*this};
    ui::CheckBox RememberCheck{*this, u"&Remember me on this computer"};
    ui::CheckBox AutomaticCheck{*this, u"Sign me in &automatically"};
    ui::Label FaultLbl{*this, u""}; // why the last sign-in failed
    ui::Button SignInButt{*this, u"&Sign in"};
    ui::Button ForgetButt{*this, u"For&get"};
    ui::Label NoteLbl{*this, u"There is no password: this client talks to programs on this computer alone."};

  private:
    void NameBox_Change();
    void NameBox_Picked();
    void RememberCheck_Click();
    void AutomaticCheck_Click();
    void SignInButt_Click();
    void ForgetButt_Click();
    void fillIn(const SignInRequest& fields);
    void showWhetherKnown();

    const Accounts& accounts_;
    Hooks hooks_;
    SignInForm form_{accounts_};
    bool filling_in_ = false;
};

} // namespace messenger_client
