// Where one signs in, inside the main window.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>

#include "companions/messenger/chat/network_account.h"
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
        std::function<void(const NetworkRequest&)> connect;
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
    // As high as the highest of the kinds.
    int leastHeight(int width);
    ui::Layout layout() { return layoutOf(kind()); }

    ui::Label KindLbl{*this, u"&Kind of account"};
    ui::DropDownList KindList{*this};

    ui::Frame LocalPanel{*this, u"", Border::none};
    ui::Label NameLbl{LocalPanel, u"Sign-in &name"};
    ui::ComboBox NameBox{LocalPanel}; // its list are the remembered accounts
    ui::Label DisplayNameLbl{LocalPanel, u"Name that others see (&display name)"};
    ui::TextBox DisplayNameTxt{LocalPanel, u""};
    ui::Label StatusLbl{LocalPanel, u"S&tatus"};
    ui::DropDownList StatusList{LocalPanel};

    ui::Frame IrcPanel{*this, u"", Border::none};
    ui::Label NetworkLbl{IrcPanel, u"Net&work"};
    ui::DropDownList NetworkList{IrcPanel};
    ui::Label ServerLbl{IrcPanel, u"Ser&ver"};
    ui::TextBox ServerTxt{IrcPanel, u""};
    ui::Label PortLbl{IrcPanel, u"&Port"};
    ui::TextBox PortTxt{IrcPanel, u""};
    ui::Label NickLbl{IrcPanel, u"&Nick: the name that others see"};
    ui::ComboBox NickBox{IrcPanel}; // likewise
    ui::Label ChannelsLbl{IrcPanel, u"&Channels, parted by commas"};
    ui::TextBox ChannelsTxt{IrcPanel, u""};
    ui::Label AccountLbl{IrcPanel, u"Acc&ount, if any"};
    ui::TextBox AccountTxt{IrcPanel, u""};
    ui::Label PasswordLbl{IrcPanel, u""};
    ui::TextBox PasswordTxt{IrcPanel, u""};
    ui::CheckBox PlainCheck{IrcPanel, u"Go on without &encryption (TLS)"};
    ui::CheckBox PlainPasswordCheck{IrcPanel, u"Send the password &unencrypted as well"};

    ui::Frame StreamingPanel{*this, u"", Border::none};
    ui::Label ChannelLbl{StreamingPanel, u"&Channel at Twitch"};
    ui::ComboBox ChannelBox{StreamingPanel}; // likewise
    ui::Label WriterLbl{StreamingPanel, u"Your &name there, to write as well"};
    ui::TextBox WriterTxt{StreamingPanel, u""};
    ui::Label TokenLbl{StreamingPanel, u""};
    ui::TextBox TokenTxt{StreamingPanel, u""};

    ui::CheckBox RememberCheck{*this, u"&Remember me on this computer"};
    ui::CheckBox AutomaticCheck{*this, u"Sign me in &automatically"};
    ui::Label FaultLbl{*this, u""}; // why the last sign-in failed
    ui::Button SignInButt{*this, u"&Sign in"};
    ui::Button ForgetButt{*this, u"For&get"};
    ui::Label NoteLbl{*this, u""};

  private:
    AccountKind kind() const { return static_cast<AccountKind>(std::max(KindList.ListIndex(), 0)); }
    ui::Layout layoutOf(AccountKind kind);
    ui::Layout local();
    ui::Layout irc();
    ui::Layout streaming();
    void showKind();
    void setKind(AccountKind kind);
    void KindList_Click();
    void NetworkList_Click();
    void PlainCheck_Click();
    void fieldsChanged();
    void pickNetwork(const ui::ComboBox& box);
    void fillIn(const Account& account);
    void fillIn(AccountKind kind, const NetworkFields& fields);
    NetworkFields networkFields() const;
    ui::Control& controlOf(NetworkField field);
    // What stands in the fields, as the name of an account.
    std::u16string signinTyped() const;
    void signInLocally();
    void signInToNetwork();
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
