#include "companions/messenger/client/main_window.h"

#include <algorithm>
#include <utility>

#include "common/text.h"
#include "companions/messenger/chat/control.h"
#include "companions/messenger/client/account.h"
#include "companions/messenger/client/looks.h"
#include "platform/message_box.h"
#include "ui/screen.h"

namespace messenger_client {

namespace platform = murmelix::platform;

namespace {

constexpr std::size_t most_switchable = 20; // accounts that the menu offers
constexpr long most_mails = 0x7FFFFFFF;     // that automation can tell of
constexpr std::size_t longest_shown = 200;  // units of a name: more does not fit
constexpr std::size_t longest_tip = 60;     // units of a name, in the tray

// Twips.
constexpr int first_width = 4380, first_height = 7050; // of the inside
constexpr int least_width = 3600;
constexpr int band_text_left = 1170;

// At 96 dots an inch.
constexpr int rim = 14, own_picture = 56;
constexpr int title_scale = 135; // percent

const ui::Picture program_picture{u"#1"}; // by its number

std::u16string mailText(long count) {
    if (count < 0) {
        return u"No mailbox";
    }
    if (count == 0) {
        return u"No new mail";
    }
    return murmelix::toText(count) + (count == 1 ? u" new mail" : u" new mails");
}

std::u16string faultText(long result) {
    constexpr std::u16string_view digits = u"0123456789ABCDEF";
    std::u16string code;
    for (int shift = 28; shift >= 0; shift -= 4) {
        code += digits[(static_cast<unsigned long>(result) >> shift) & 15];
    }
    return u"You could not be signed in. Please try again. (" + code + u")";
}

std::u16string shortened(const std::u16string& name) {
    return name.substr(0, longest_shown);
}

} // namespace

MainWindow::MainWindow(Client& client, Hooks hooks)
    : Form(nullptr, u"Messenger", ui::FormStyle::sizable, main_class),
      SignIn(*this, client.accounts(),
             {.sign_in = [this](const auto& request) { hooks_.sign_in(request); },
              .connect = [this](const auto& request) { hooks_.connect(request); },
              .forget = [this](const auto& signin) { hooks_.forget(signin); }}),
      client_(client), hooks_(std::move(hooks)) {
    setIcon(program_picture);
    connectHandlers();
    connectMenus();
    built_ = true;
    const int height = bandLayout().needed(least_width).height + SignIn.leastHeight(least_width);
    setLeastScale(least_width, height);
    setScale(first_width, std::max(first_height, height));
    takeLastPlace();
    showState();
}

void MainWindow::connectHandlers() {
    UserActs = hooks_.user_acts;
    DataReceived = [this](std::uintptr_t kind, std::string_view data) {
        return kind == control_message ? hooks_.command(data) : 0;
    };
    Band.setAccessibleName(u"Who is signed in");
    RenameTxt.setAccessibleName(u"Your name");
    Contacts.setAccessibleName(u"Contacts");
    Band.Resize = [this] { drawBand(); };
    for (ui::Button* button : {&NameButt, &StatusButt, &MailButt}) {
        button->setUseMnemonic(false); // people have all kinds of names
        button->setDraw([this, button](ui::Surface& surface, const ui::Button::Looks& looks) {
            drawBandButton(*button, surface, looks);
        });
    }
    NameButt.setToolTipText(u"Change your name");
    StatusButt.setToolTipText(u"Change your status");
    NameButt.Click = [this] { beginRenaming(); };
    StatusButt.Click = [this] { PopupMenu(StatusPopup, StatusButt); };
    MailButt.Click = [this] { PopupMenu(MailPopup, MailButt); };
    RenameTxt.setVisible(false);
    RenameTxt.KeyPress = [this](const ui::Shortcut& key) { return RenameTxt_KeyPress(key); };
    RenameTxt.LostFocus = [this] { RenameTxt_LostFocus(); };
    Contacts.setBackColor(colour::field);
    Contacts.KeyPress = [this](const ui::Shortcut& key) { return Contacts_KeyPress(key); };
    Contacts.DblClick = [this] { ContactMenuOpen_Click(); };
    Contacts.ContextMenu = [this] {
        if (Contacts.selected()) {
            PopupMenu(ContactPopup);
        }
    };
    EmptyLbl.setCentered();
    EmptyLbl.setUseMnemonic(false);
    EmptyLbl.setForeColor(colour::soft_text);
    SigningIn.CancelButt.Click = [this] { client_.signOut(); };
    Tray.Click = [this] { BringUp(); };
    Tray.DblClick = [this] { BringUp(); };
    Tray.ContextMenu = [this] { PopupMenu(TrayMenu); };
}

void MainWindow::connectMenus() {
    FileMenu.Popup = [this] { FileMenu_Popup(); };
    FileMenuAccount.Popup = [this] { FileMenuAccount_Popup(); };
    FileMenuRename.Click = [this] { beginRenaming(); };
    FileMenuSignOut.Click = [this] { client_.signOut(); };
    FileMenuHide.Click = [this] { PutAway(); };
    FileMenuKeepRunning.Click = [] { keepRunning(!keepsRunning()); };
    FileMenuExit.Click = [this] { hooks_.quit(); };
    ContactMenuOpen.Click = [this] { ContactMenuOpen_Click(); };
    ContactMenuAdd.Click = [this] { ContactMenuAdd_Click(); };
    ContactMenuEnter.Click = [this] { ContactMenuEnter_Click(); };
    ContactMenuEnter.setEnabled(false);
    ContactMenuRemove.Click = [this] { ContactMenuRemove_Click(); };
    HelpMenuAbout.Click = [this] { HelpMenuAbout_Click(); };
    ContactPopupOpen.Click = [this] { ContactMenuOpen_Click(); };
    ContactPopupOpen.setDefault();
    ContactPopupRemove.Click = [this] { ContactMenuRemove_Click(); };
    TrayMenu.Popup = [this] { TrayMenu_Popup(); };
    TrayMenuOpen.Click = [this] { BringUp(); };
    TrayMenuOpen.setDefault();
    TrayMenuSignOut.Click = [this] { client_.signOut(); };
    TrayMenuExit.Click = [this] { hooks_.quit(); };
    for (ui::Menu* menu : {&FileMenuStatus, &StatusPopup, &TrayMenuStatus}) {
        fillStatusMenu(*menu);
    }
    for (ui::Menu* menu : {&MailMenu, &MailPopup}) {
        fillMailMenu(*menu);
    }
}

void MainWindow::fillStatusMenu(ui::Menu& menu) {
    for (const Status status : chosen_statuses) {
        menu.AddItem(std::u16string(nameOf(status)), [this, status] {
            if (client_.signedIn()) {
                client_.setMyStatus(status);
            }
        });
    }
    menu.Popup = [this, &menu] {
        for (std::size_t i = 0; i < chosen_statuses.size(); ++i) {
            menu.items()[i]->setChecked(client_.me() && client_.me()->status == chosen_statuses[i]);
        }
    };
}

void MainWindow::fillMailMenu(ui::Menu& menu) {
    menu.AddItem(u"&A new mail arrives",
                 [this] { client_.setUnread(std::clamp(client_.unread(), 0L, most_mails - 1) + 1); });
    menu.AddItem(u"Mark all as &read", [this] { client_.setUnread(0); });
}

ui::Layout MainWindow::bandLayout() {
    using ui::item;
    ui::Layout name = renaming_ ? ui::rows({ui::stretch(), item(RenameTxt), ui::stretch()}) : item(NameButt);
    const int name_height = std::max(NameButt.neededSize().height, RenameTxt.neededSize().height);
    return ui::rows({std::move(name).least(0, std::max(name_height, 420)), item(StatusButt), item(MailButt)})
        .pad(band_text_left, 150, 120, 60);
}

void MainWindow::layOut() {
    if (!built_) {
        return;
    }
    Contacts.fitRows();
    ui::Layout body = !client_.signedIn() ? client_.signingIn() ? within(SigningIn, SigningIn.layout())
                                                                : within(SignIn, SignIn.layout())
                      : Contacts.empty() ? ui::rows({ui::item(EmptyLbl).wrapped(), ui::stretch()}).pad(210, 360, 210, 0)
                                         : ui::item(Contacts);
    ui::fill(*this, ui::rows({within(Band, bandLayout()), std::move(body).growing()}));
}

void MainWindow::drawBand() {
    ui::Surface& surface = Band.surface();
    const int width = surface.Width(), height = surface.Height();
    surface.Cls(colour::band_bottom);
    messenger_client::drawBand(surface, {0, 0, width, height});
    surface.setFontScale(title_scale);
    if (const ContactPtr& me = client_.me()) {
        const int size = px(own_picture);
        // Somebody's own colour can be that of the band.
        drawAvatar(surface, {px(rim), (height - size) / 2, size, size}, *me, ui::rgb(255, 255, 255));
        surface.setFontScale(100);
        return surface.Refresh();
    }
    const bool signing_in = client_.signingIn();
    const int left = px(rim + 2), room = width - left - px(rim);
    surface.setFontBold(true);
    const int title = surface.TextHeight();
    surface.setFontScale(100);
    const int line = surface.TextHeight(), gap = px(4);
    const int top = (height - title - gap - line) / 2;
    surface.setFontScale(title_scale);
    surface.PrintIn({left, top, room, title}, signing_in ? u"Signing in" : u"Welcome", colour::on_band);
    surface.setFontScale(100);
    surface.setFontBold(false);
    surface.PrintIn({left, top + title + gap, room, line},
                    signing_in ? std::u16string_view(signing_in_.signin) : u"Sign in to meet your contacts.",
                    colour::on_band_soft);
    surface.Refresh();
}

void MainWindow::drawBandButton(const ui::Button& button, ui::Surface& surface, const ui::Button::Looks& looks) const {
    const int width = surface.Width(), height = surface.Height();
    // The band's own colours go on behind the button.
    messenger_client::drawBand(surface, {0, -ui::toPixels(button.Top()), width, ui::toPixels(Band.Height())});
    const bool is_name = &button == &NameButt;
    const ui::Colour ink = is_name ? colour::on_band : colour::on_band_soft;
    int left = px(4);
    if (&button == &MailButt) {
        drawEnvelope(surface, {left, 0, px(16), height}, ink);
        left += px(22);
    }
    const int room = width - left - px(4) - (is_name ? 0 : px(14)); // the arrow's
    surface.setFontBold(is_name);
    surface.setFontScale(is_name ? title_scale : 100);
    surface.PrintIn({left, 0, room, height}, button.Caption(), ink);
    if (!is_name) {
        const int text = std::min(surface.TextWidth(button.Caption()) + px(6), room);
        drawDownArrow(surface, {left + text, height / 2}, ink);
    }
    if (looks.focused) {
        surface.FrameRect({0, 0, width, height}, colour::on_band_soft);
    }
}

void MainWindow::showMe() {
    drawBand();
    const ContactPtr& me = client_.me();
    if (!me) {
        return;
    }
    const std::u16string_view status = nameOf(me->status);
    NameButt.setCaption(shortened(me->friendly));
    StatusButt.setCaption(status.empty() ? u"Unknown" : std::u16string(status));
    MailButt.setCaption(mailText(client_.unread()));
    for (ui::Button* button : {&NameButt, &StatusButt, &MailButt}) {
        button->Redraw();
    }
    setCaption(shortened(me->friendly) + u" - Messenger");
    showTrayIcon();
}

// The list, or what is said in place of it.
void MainWindow::showContacts() {
    const bool in = client_.signedIn();
    const bool list = in && !Contacts.empty(), nobody = in && Contacts.empty();
    if (Contacts.Visible() == list && EmptyLbl.Visible() == nobody) {
        return;
    }
    Contacts.setVisible(list);
    EmptyLbl.setVisible(nobody);
    onSize();
}

void MainWindow::showState() {
    const bool in = client_.signedIn(), signing_in = client_.signingIn();
    endRenaming(false);
    setBackColor(in ? colour::field : colour::face);
    for (ui::Button* button : {&NameButt, &StatusButt, &MailButt}) {
        button->setVisible(in);
    }
    if (signing_in) {
        SigningIn.tell(signing_in_,
                       client_.stage() == Stage::connecting ? u"Connecting …" : u"Fetching your contacts …");
    }
    SignIn.setVisible(!in && !signing_in);
    SigningIn.setVisible(signing_in);
    SigningIn.turn(signing_in);
    DefaultButton = in ? nullptr : signing_in ? &SigningIn.CancelButt : &SignIn.SignInButt;
    CancelButton = signing_in ? &SigningIn.CancelButt : nullptr;
    if (!in) {
        setCaption(signing_in ? u"Signing in - Messenger" : u"Messenger");
        if (AddContact) {
            AddContact->Hide();
        }
    }
    FileMenuSignOut.setEnabled(in || signing_in);
    FileMenuRename.setEnabled(in);
    for (ui::Menu* menu : {&FileMenuStatus, &ContactMenu, &MailMenu}) {
        menu->setEnabled(in);
    }
    Contacts.show(client_.contacts());
    showContacts();
    showMe();
    showTrayIcon();
    onSize();
    focusHome();
}

// What one goes on with in this state gets the keyboard.
void MainWindow::focusHome() {
    if (client_.signingIn()) {
        SigningIn.CancelButt.SetFocus();
    } else if (!client_.signedIn()) {
        SignIn.focusFirst();
    } else if (Contacts.empty()) {
        StatusButt.SetFocus();
    } else {
        Contacts.SetFocus();
    }
}

void MainWindow::showTrayIcon() {
    if (!Tray.Shown()) {
        return;
    }
    const ContactPtr& me = client_.me();
    Tray.Show(program_picture,
              me ? u"Messenger - " + me->friendly.substr(0, longest_tip) + u", " + std::u16string(nameOf(me->status))
                 : u"Messenger - signed out");
}

void MainWindow::changed(const Change& change) {
    switch (change.kind) {
    case Change::Kind::signed_in:
        SignIn.tellFault(change.number < 0 && change.number != signin_cancelled ? faultText(change.number)
                                                                                : std::u16string());
        if (change.number < 0) {
            SignIn.propose(signing_in_.signin);
        }
        showState();
        break;
    case Change::Kind::signed_out:
        SignIn.tellFault({});
        SignIn.propose({});
        showState();
        break;
    case Change::Kind::signing_in:
        showState();
        break;
    case Change::Kind::my_name:
    case Change::Kind::my_status:
    case Change::Kind::unread:
        showMe();
        break;
    case Change::Kind::contact_added:
        Contacts.add(change.contact);
        showContacts();
        break;
    case Change::Kind::contact_removed:
        Contacts.remove(change.contact);
        showContacts();
        break;
    case Change::Kind::contact_renamed:
    case Change::Kind::contact_status:
        Contacts.update(change.contact);
        break;
    case Change::Kind::shutting_down:
        rememberPlace();
        break;
    default:
        break;
    }
}

void MainWindow::setSigningIn(std::u16string_view signin, std::u16string_view friendly) {
    signing_in_ = {std::u16string(signin), std::u16string(friendly.empty() ? shortName(signin) : friendly),
                   Status::unknown};
}

void MainWindow::takeLastPlace() {
    if (const auto last = mainPlace().last()) {
        setPlace(ui::onScreen(*last));
    }
}

void MainWindow::rememberPlace() const {
    if (Visible() && WindowState() == State::normal) {
        mainPlace().keep(Place());
    }
}

void MainWindow::BringUp() {
    Tray.Hide();
    Show();
}

void MainWindow::PutAway() {
    rememberPlace();
    if (Tray.Show(program_picture, u"Messenger")) {
        showTrayIcon();
        Hide();
    } else {
        setWindowState(State::minimized);
    }
}

void MainWindow::askSignIn() {
    BringUp();
    if (!client_.signedIn()) {
        focusHome();
    }
}

void MainWindow::onClose() {
    if (keepsRunning()) {
        PutAway();
    } else {
        hooks_.quit();
    }
}

void MainWindow::onSessionEnd() {
    hooks_.quit();
}

void MainWindow::FileMenu_Popup() {
    FileMenuKeepRunning.setChecked(keepsRunning());
}

void MainWindow::FileMenuAccount_Popup() {
    FileMenuAccount.Clear();
    std::size_t offered = 0;
    for (const Account& account : client_.accounts().all()) {
        if (!account.remembered || offered == most_switchable) {
            continue;
        }
        const std::u16string text = murmelix::replaceAll(account.signin.substr(0, longest_tip), u"&", u"&&");
        ui::MenuItem& item =
            FileMenuAccount.AddItem(text, [this, signin = account.signin] { hooks_.switch_to(signin); });
        item.setChecked(client_.me() && client_.me()->signin == account.signin);
        ++offered;
    }
    if (offered > 0) {
        FileMenuAccount.AddSeparator();
    }
    FileMenuAccount.AddItem(u"A&nother account…", [this] { hooks_.switch_to({}); });
}

void MainWindow::TrayMenu_Popup() {
    TrayMenuStatus.setEnabled(client_.signedIn());
    TrayMenuSignOut.setEnabled(client_.signedIn());
}

bool MainWindow::Contacts_KeyPress(const ui::Shortcut& key) {
    if (key == ui::Key::enter) {
        ContactMenuOpen_Click();
        return true;
    }
    if (key == ui::Key::del) {
        ContactMenuRemove_Click();
        return true;
    }
    return (key == ui::Key::down && Contacts.step(1)) || (key == ui::Key::up && Contacts.step(-1));
}

void MainWindow::ContactMenuOpen_Click() {
    const ContactPtr contact = Contacts.selected();
    if (!contact || !client_.signedIn()) {
        return;
    }
    if (const ConversationPtr conversation = client_.openWith(contact)) {
        hooks_.bring_up(*conversation);
    } else {
        ui::beep();
    }
}

void MainWindow::setLive(bool live) {
    ContactMenuEnter.setEnabled(live);
    EmptyLbl.setCaption(live ? u"Nobody has said a word yet.\r\nEnter a channel with Ctrl+J."
                             : u"Nobody is in your list yet.\r\nAdd somebody with Ctrl+N.");
}

void MainWindow::ContactMenuEnter_Click() {
    if (!EnterChannel) {
        EnterChannel = std::make_unique<AskFrm>(*this, u"Enter a channel", u"&Channel, or several with commas",
                                                u"&Enter", hooks_.enter);
    }
    EnterChannel->Ask(u"");
}

void MainWindow::ContactMenuAdd_Click() {
    if (!AddContact) {
        AddContact = std::make_unique<AddContactFrm>(
            *this,
            [this](const std::u16string& signin, const std::u16string& friendly) { return add(signin, friendly); });
    }
    AddContact->Ask();
}

std::u16string_view MainWindow::add(const std::u16string& signin, const std::u16string& friendly) {
    if (const ContactPtr known = client_.find(signin)) {
        return known == client_.me() ? u"That is your own sign-in name." : u"This contact is in your list already.";
    }
    return client_.addContact(signin, friendly.empty() ? shortName(signin) : std::u16string_view(friendly))
               ? u""
               : u"Your list is full.";
}

void MainWindow::ContactMenuRemove_Click() {
    const ContactPtr contact = Contacts.selected();
    if (!contact) {
        return;
    }
    const int answer = platform::messageBox(u"Remove " + shortened(contact->friendly) + u" from your list?",
                                            platform::mb_yes_no + platform::mb_question, u"Messenger");
    // Much can have happened meanwhile.
    if (answer == platform::answer_yes && client_.find(contact->signin) == contact) {
        client_.removeContact(contact);
    }
}

void MainWindow::HelpMenuAbout_Click() {
    platform::messageBox(
        u"Messenger "
        u"client " MESSENGER_VERSION u"\n\nConversations to watch, type and replay, with the automation interface "
        u"Messenger.UIAutomation.\n\nA part of Murmelix, released under the MIT licence.",
        platform::mb_information, u"About");
}

void MainWindow::beginRenaming() {
    if (!client_.signedIn() || renaming_) {
        return;
    }
    renaming_ = true;
    RenameTxt.setText(client_.me()->friendly);
    RenameTxt.setVisible(true);
    onSize();
    RenameTxt.SetFocus();
    RenameTxt.SelectAll();
    NameButt.setVisible(false);
}

void MainWindow::endRenaming(bool take) {
    // Cleared first: hiding the field takes the keyboard from it, which ends the renaming too.
    if (!std::exchange(renaming_, false)) {
        return;
    }
    NameButt.setVisible(client_.signedIn());
    if (RenameTxt.Focused()) {
        focusHome();
    }
    RenameTxt.setVisible(false);
    onSize();
    const std::u16string name(murmelix::trim(RenameTxt.Text()));
    if (take && !name.empty() && client_.signedIn()) {
        client_.setMyName(name);
    }
}

bool MainWindow::RenameTxt_KeyPress(const ui::Shortcut& key) {
    if (key != ui::Key::enter && key != ui::Key::escape) {
        return false;
    }
    endRenaming(key == ui::Key::enter);
    return true;
}

// Leaving the field takes the name, once the keyboard is where it goes to.
void MainWindow::RenameTxt_LostFocus() {
    if (renaming_) {
        ui::post([this] { endRenaming(true); });
    }
}

} // namespace messenger_client
