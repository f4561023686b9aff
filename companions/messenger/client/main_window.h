// The main window: the own name, status and mail, and the contacts; signed out, the place to sign in.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "companions/messenger/chat/client.h"
#include "companions/messenger/client/add_contact.h"
#include "companions/messenger/client/ask_form.h"
#include "companions/messenger/client/contact_list.h"
#include "companions/messenger/client/sign_in_page.h"
#include "companions/messenger/client/signing_in_page.h"
#include "ui/form.h"
#include "ui/layout.h"
#include "ui/picture_box.h"
#include "ui/tray_icon.h"

namespace messenger_client {

inline constexpr char16_t main_class[] = u"MessengerClientMain";

class MainWindow final : public ui::Form {
  public:
    struct Hooks {
        std::function<void(const SignInRequest&)> sign_in;
        std::function<void(const NetworkRequest&)> connect; // to a chat network
        std::function<void(const std::u16string& signin)> forget;
        std::function<void(const std::u16string& signin)> switch_to; // an account; empty: asks for one
        std::function<void(const Conversation&)> bring_up;           // its window
        std::function<std::intptr_t(std::string_view)> command;      // a control command; its Result
        std::function<std::u16string(const std::u16string&)> enter;  // channels; what is wrong, empty: nothing
        std::function<void()> user_acts;                             // the user did something here
        std::function<void()> quit;
    };

    MainWindow(Client& client, Hooks hooks);

    void changed(const Change& change);
    // Who is signing in, while somebody is.
    void setSigningIn(std::u16string_view signin, std::u16string_view friendly);
    void accountsChanged() { SignIn.accountsChanged(); }
    // Why the last sign-in failed, as a sentence for people.
    void tellFault(std::u16string_view why) { SignIn.tellFault(why); }
    // Whether the user is signed in to a chat network, which has channels to be entered.
    void setLive(bool live);
    // What the sign-in place proposes; nothing: the account used last.
    void propose(std::u16string_view signin) { SignIn.propose(signin); }
    // Empties what it proposes, for somebody else.
    void proposeNobody() { SignIn.proposeNobody(); }
    // Shows where one signs in, whatever has become of the window.
    void askSignIn();
    void BringUp();
    // Into the notification area; where there is none, only as small as it gets.
    void PutAway();

    void Form_Load() override { focusHome(); }
    void layOut() override;
    void onClose() override;
    void onSessionEnd() override;

  private:
    bool built_ = false; // before the controls, which can change the form's size

  public:
    ui::PictureBox Band{*this};
    ui::Button NameButt{Band, u""};
    ui::TextBox RenameTxt{Band, u""}; // the own name, while it is changed
    ui::Button StatusButt{Band, u""};
    ui::Button MailButt{Band, u""};
    ContactList Contacts{*this};
    ui::Label EmptyLbl{*this, u"Nobody is in your list yet.\r\nAdd somebody with Ctrl+N."};
    SignInPage SignIn;
    SigningInPage SigningIn{*this};
    ui::TrayIcon Tray{*this};

    ui::Menu FileMenu{*this, u"&File"};
    ui::Menu FileMenuStatus{FileMenu, u"My s&tatus"};
    ui::MenuItem FileMenuRename{FileMenu, u"Change my &name", ui::Key::f2};
    ui::MenuItem FileMenuSep1{FileMenu, u"-"};
    ui::MenuItem FileMenuSignOut{FileMenu, u"&Sign out"};
    ui::Menu FileMenuAccount{FileMenu, u"S&witch account"};
    ui::MenuItem FileMenuSep2{FileMenu, u"-"};
    ui::MenuItem FileMenuHide{FileMenu, u"&Hide this window", {u'H', ui::control_key}};
    ui::MenuItem FileMenuKeepRunning{FileMenu, u"&Closing this window hides it"};
    ui::MenuItem FileMenuSep3{FileMenu, u"-"};
    ui::MenuItem FileMenuExit{FileMenu, u"E&xit", {u'Q', ui::control_key}};

    ui::Menu ContactMenu{*this, u"&Contact"};
    // Its key is the list's: elsewhere it presses buttons.
    ui::MenuItem ContactMenuOpen{ContactMenu, u"Send an instant &message\tEnter"};
    ui::MenuItem ContactMenuAdd{ContactMenu, u"&Add a contact…", {u'N', ui::control_key}};
    ui::MenuItem ContactMenuRemove{ContactMenu, u"&Remove from the list\tDel"};
    ui::MenuItem ContactMenuSep1{ContactMenu, u"-"};
    ui::MenuItem ContactMenuEnter{ContactMenu, u"Enter a &channel…", {u'J', ui::control_key}};

    ui::Menu MailMenu{*this, u"&Mail"};
    ui::Menu HelpMenu{*this, u"&Help"};
    ui::MenuItem HelpMenuAbout{HelpMenu, u"&About"};

    // Shown where they are asked for.
    ui::Menu ContactPopup{*this};
    ui::MenuItem ContactPopupOpen{ContactPopup, u"Send an instant &message"};
    ui::MenuItem ContactPopupRemove{ContactPopup, u"&Remove from the list"};
    ui::Menu StatusPopup{*this};
    ui::Menu MailPopup{*this};
    ui::Menu TrayMenu{*this};
    ui::MenuItem TrayMenuOpen{TrayMenu, u"&Open"};
    ui::Menu TrayMenuStatus{TrayMenu, u"My s&tatus"};
    ui::MenuItem TrayMenuSignOut{TrayMenu, u"&Sign out"};
    ui::MenuItem TrayMenuSep1{TrayMenu, u"-"};
    ui::MenuItem TrayMenuExit{TrayMenu, u"E&xit"};

    std::unique_ptr<AddContactFrm> AddContact; // null until it is needed first
    std::unique_ptr<AskFrm> EnterChannel;      // likewise

  private:
    void connectHandlers();
    void connectMenus();
    void fillStatusMenu(ui::Menu& menu);
    void fillMailMenu(ui::Menu& menu);
    bool Contacts_KeyPress(const ui::Shortcut& key);
    bool RenameTxt_KeyPress(const ui::Shortcut& key);
    void RenameTxt_LostFocus();
    void FileMenu_Popup();
    void FileMenuAccount_Popup();
    void ContactMenuOpen_Click();
    void ContactMenuAdd_Click();
    void ContactMenuRemove_Click();
    void ContactMenuEnter_Click();
    void HelpMenuAbout_Click();
    void TrayMenu_Popup();

    ui::Layout bandLayout();
    void drawBand();
    void drawBandButton(const ui::Button& button, ui::Surface& surface, const ui::Button::Looks& looks) const;
    void showState();
    void showMe();
    void showContacts();
    void showTrayIcon();
    void focusHome();
    void beginRenaming();
    void endRenaming(bool take);
    std::u16string_view add(const std::u16string& signin, const std::u16string& friendly);
    void takeLastPlace();
    void rememberPlace() const;

    Client& client_;
    Hooks hooks_;
    bool renaming_ = false;
    Contact signing_in_;
};

} // namespace messenger_client
