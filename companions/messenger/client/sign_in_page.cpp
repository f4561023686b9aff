#include "companions/messenger/client/sign_in_page.h"

#include <algorithm>
#include <initializer_list>
#include <utility>
#include <variant>
#include <vector>

#include "common/text.h"
#include "companions/messenger/client/looks.h"
#include "ui/form.h"
#include "ui/screen.h"

namespace messenger_client {

namespace {

constexpr std::u16string_view kinds[] = {u"On this computer", u"IRC network", u"Streaming chat"};
constexpr std::u16string_view notes[] = {
    u"There is no password: this client talks to programs on this computer alone.",
    u"A password that is remembered can be read by you alone, on this computer.",
    u"A channel's name is enough to read along; nobody sees you then.",
};
constexpr int port_width = 855; // twips: five digits

} // namespace

SignInPage::SignInPage(ui::Control& parent, const Accounts& accounts, Hooks hooks)
    : Frame(parent, u"", Border::none), accounts_(accounts), hooks_(std::move(hooks)) {
    setBackColor(colour::face);
    for (ui::Label* label : {&KindLbl, &NameLbl, &DisplayNameLbl, &StatusLbl, &NetworkLbl, &ServerLbl, &PortLbl,
                             &NickLbl, &ChannelsLbl, &AccountLbl, &PasswordLbl, &ChannelLbl, &WriterLbl, &TokenLbl}) {
        label->setForeColor(colour::soft_text);
        label->setEllipsis(ui::Label::Ellipsis::end);
    }
    setAccessibleName(u"Signing in");
    for (ui::Frame* panel : {&LocalPanel, &IrcPanel, &StreamingPanel}) {
        panel->setAccessibleName(u"Account");
    }
    FaultLbl.setTellsNews();
    NoteLbl.setForeColor(colour::soft_text);
    FaultLbl.setForeColor(colour::fault);
    FaultLbl.setUseMnemonic(false);
    NoteLbl.setUseMnemonic(false);
    for (const std::u16string_view name : kinds) {
        KindList.AddItem(std::u16string(name));
    }
    std::vector<std::u16string> statuses;
    for (const Status status : chosen_statuses) {
        statuses.emplace_back(nameOf(status));
    }
    StatusList.setItems(std::move(statuses));
    StatusList.setListIndex(0);
    for (int network = 0; network < NetworkFields::most_networks; ++network) {
        const std::u16string_view name = nameOfNetwork(network);
        NetworkList.AddItem(name.empty() ? u"Another server" : std::u16string(name));
    }
    PasswordTxt.setMasked();
    TokenTxt.setMasked();
    ForgetButt.setEnabled(false);
    KindList.Click = [this] { KindList_Click(); };
    NameBox.Change = [this] { NameBox_Change(); };
    NameBox.Picked = [this] { NameBox_Picked(); };
    NetworkList.Click = [this] { NetworkList_Click(); };
    NickBox.Picked = [this] { pickNetwork(NickBox); };
    ChannelBox.Picked = [this] { pickNetwork(ChannelBox); };
    for (ui::ComboBox* box : {&NickBox, &ChannelBox}) {
        box->Change = [this] { fieldsChanged(); };
    }
    for (ui::TextBox* box : {&ServerTxt, &PortTxt, &AccountTxt, &PasswordTxt, &WriterTxt, &TokenTxt}) {
        box->Change = [this] { fieldsChanged(); };
    }
    PlainCheck.Click = [this] { PlainCheck_Click(); };
    RememberCheck.Click = [this] { RememberCheck_Click(); };
    AutomaticCheck.Click = [this] { AutomaticCheck_Click(); };
    SignInButt.Click = [this] { SignInButt_Click(); };
    ForgetButt.Click = [this] { ForgetButt_Click(); };
    fillIn(AccountKind::irc, {});
    fillIn(AccountKind::streaming, {});
    setKind(AccountKind::local);
}

namespace {

ui::Layout field(ui::Label& label, ui::Control& control) {
    return ui::rows({ui::item(label), ui::item(control)}).gap(30);
}

} // namespace

ui::Layout SignInPage::local() {
    return ui::rows({field(NameLbl, NameBox), field(DisplayNameLbl, DisplayNameTxt), field(StatusLbl, StatusList)})
        .gap(135);
}

ui::Layout SignInPage::irc() {
    using ui::item;
    return ui::rows({field(NetworkLbl, NetworkList),
                     ui::columns({field(ServerLbl, ServerTxt).growing(), field(PortLbl, PortTxt).least(port_width)})
                         .gap(120),
                     field(NickLbl, NickBox), field(ChannelsLbl, ChannelsTxt),
                     ui::columns({field(AccountLbl, AccountTxt).growing(), field(PasswordLbl, PasswordTxt).growing()})
                         .gap(120),
                     ui::rows({item(PlainCheck), item(PlainPasswordCheck)}).gap(60)})
        .gap(105);
}

ui::Layout SignInPage::streaming() {
    return ui::rows({field(ChannelLbl, ChannelBox), field(WriterLbl, WriterTxt), field(TokenLbl, TokenTxt)}).gap(135);
}

ui::Layout SignInPage::layoutOf(AccountKind of) {
    using ui::item;
    const int line = FaultLbl.sizeFor(u"X").height;
    ui::Layout fields = of == AccountKind::local ? within(LocalPanel, local())
                        : of == AccountKind::irc ? within(IrcPanel, irc())
                                                 : within(StreamingPanel, streaming());
    return ui::rows({field(KindLbl, KindList), std::move(fields),
                     ui::rows({item(RememberCheck), item(AutomaticCheck)}).gap(60),
                     item(FaultLbl).wrapped().least(0, 2 * line),
                     ui::columns({item(SignInButt).least(1440, 390), ui::stretch(), item(ForgetButt).least(1260, 390)}),
                     item(NoteLbl).wrapped(), ui::stretch()})
        .gap(of == AccountKind::irc ? 105 : 135)
        .pad(240, 150, 240, 150);
}

int SignInPage::leastHeight(int width) {
    int height = 0;
    for (const AccountKind each : {AccountKind::local, AccountKind::irc, AccountKind::streaming}) {
        height = std::max(height, layoutOf(each).needed(width).height);
    }
    return height;
}

void SignInPage::focusFirst() {
    switch (kind()) {
    case AccountKind::local:
        return murmelix::trim(NameBox.Text()).empty() ? NameBox.SetFocus() : SignInButt.SetFocus();
    case AccountKind::irc:
        return murmelix::trim(NickBox.Text()).empty() ? NickBox.SetFocus() : SignInButt.SetFocus();
    case AccountKind::streaming:
        return murmelix::trim(ChannelBox.Text()).empty() ? ChannelBox.SetFocus() : SignInButt.SetFocus();
    }
}

void SignInPage::showKind() {
    const AccountKind shown = kind();
    LocalPanel.setVisible(shown == AccountKind::local);
    IrcPanel.setVisible(shown == AccountKind::irc);
    StreamingPanel.setVisible(shown == AccountKind::streaming);
    NoteLbl.setCaption(std::u16string(notes[static_cast<std::size_t>(shown)]));
    showWhetherKnown();
    form().onSize();
}

void SignInPage::setKind(AccountKind to) {
    filling_in_ = true;
    KindList.setListIndex(static_cast<int>(to));
    filling_in_ = false;
    showKind();
}

void SignInPage::KindList_Click() {
    if (filling_in_) {
        return;
    }
    tellFault({});
    // Whether the last account is remembered says nothing of this one.
    RememberCheck.setValue(0);
    AutomaticCheck.setValue(0);
    showKind();
}

void SignInPage::propose(std::u16string_view signin) {
    if (!signin.empty() && murmelix::sameText(signinTyped(), signin, murmelix::LetterCase::ignored)) {
        return; // what was filled in stays
    }
    const Account* last = accounts_.all().empty() ? nullptr : &accounts_.all().front();
    const Account* account = signin.empty() ? last : accounts_.find(signin);
    if (account) {
        fillIn(*account);
    } else if (signin.empty() && kind() == AccountKind::local && murmelix::trim(NameBox.Text()).empty()) {
        fillIn(form_.proposeLast());
    }
}

void SignInPage::proposeNobody() {
    kind() == AccountKind::local ? fillIn(form_.proposeNobody()) : fillIn(kind(), NetworkFields());
}

void SignInPage::fillIn(const Account& account) {
    const AccountKind of = kindOf(account);
    of == AccountKind::local ? fillIn(form_.propose(account)) : fillIn(of, fieldsOf(account));
}

void SignInPage::fillIn(const SignInRequest& fields) {
    setKind(AccountKind::local);
    filling_in_ = true;
    NameBox.setText(fields.signin);
    DisplayNameTxt.setText(fields.friendly);
    const auto status = std::find(chosen_statuses.begin(), chosen_statuses.end(), fields.status);
    StatusList.setListIndex(status == chosen_statuses.end() ? 0 : static_cast<int>(status - chosen_statuses.begin()));
    RememberCheck.setValue(fields.remember ? 1 : 0);
    AutomaticCheck.setValue(fields.automatic ? 1 : 0);
    filling_in_ = false;
    showWhetherKnown();
}

void SignInPage::fillIn(AccountKind of, const NetworkFields& fields) {
    setKind(of);
    filling_in_ = true;
    if (of == AccountKind::irc) {
        NetworkList.setListIndex(fields.network);
        ServerTxt.setText(fields.server);
        PortTxt.setText(fields.port);
        NickBox.setText(fields.nick);
        ChannelsTxt.setText(fields.channels);
        AccountTxt.setText(fields.account);
        PasswordTxt.setText(fields.password);
        PlainCheck.setValue(fields.without_tls ? 1 : 0);
        PlainPasswordCheck.setValue(fields.password_in_the_clear ? 1 : 0);
    } else {
        ChannelBox.setText(fields.channels);
        WriterTxt.setText(fields.nick);
        TokenTxt.setText(fields.password);
    }
    RememberCheck.setValue(fields.remember ? 1 : 0);
    AutomaticCheck.setValue(fields.automatic ? 1 : 0);
    filling_in_ = false;
    NetworkList_Click();
    PlainCheck_Click();
}

NetworkFields SignInPage::networkFields() const {
    NetworkFields fields{.remember = RememberCheck.Value() != 0, .automatic = AutomaticCheck.Value() != 0};
    if (kind() == AccountKind::irc) {
        fields.network = std::max(NetworkList.ListIndex(), 0);
        fields.server = ServerTxt.Text();
        fields.port = PortTxt.Text();
        fields.nick = NickBox.Text();
        fields.channels = ChannelsTxt.Text();
        fields.account = AccountTxt.Text();
        fields.password = PasswordTxt.Text();
        fields.without_tls = PlainCheck.Value() != 0;
        fields.password_in_the_clear = PlainPasswordCheck.Value() != 0;
    } else {
        fields.channels = ChannelBox.Text();
        fields.nick = WriterTxt.Text();
        fields.password = TokenTxt.Text();
    }
    return fields;
}

ui::Control& SignInPage::controlOf(NetworkField field) {
    const bool irc = kind() == AccountKind::irc;
    switch (field) {
    case NetworkField::server:
        return ServerTxt;
    case NetworkField::port:
        return PortTxt;
    case NetworkField::nick:
        return irc ? static_cast<ui::Control&>(NickBox) : WriterTxt;
    case NetworkField::channels:
        return irc ? static_cast<ui::Control&>(ChannelsTxt) : ChannelBox;
    case NetworkField::account:
        return AccountTxt;
    case NetworkField::password:
        break;
    }
    return irc ? PasswordTxt : TokenTxt;
}

std::u16string SignInPage::signinTyped() const {
    return kind() == AccountKind::local ? completedSignin(murmelix::trim(NameBox.Text()))
                                        : signinOf(kind(), networkFields());
}

void SignInPage::accountsChanged() {
    std::vector<std::u16string> remembered[std::size(kinds)];
    for (const Account& account : accounts_.all()) {
        if (account.remembered) {
            remembered[static_cast<std::size_t>(kindOf(account))].push_back(account.signin);
        }
    }
    NameBox.setItems(std::move(remembered[static_cast<std::size_t>(AccountKind::local)]));
    NickBox.setItems(std::move(remembered[static_cast<std::size_t>(AccountKind::irc)]));
    ChannelBox.setItems(std::move(remembered[static_cast<std::size_t>(AccountKind::streaming)]));
    showWhetherKnown();
}

// The networks that are known have a server and a port of their own.
void SignInPage::NetworkList_Click() {
    const bool other = NetworkList.ListIndex() == NetworkFields::other_network;
    for (ui::Control* control : std::initializer_list<ui::Control*>{&ServerLbl, &ServerTxt, &PortLbl, &PortTxt}) {
        control->setEnabled(other);
    }
    if (!filling_in_) {
        filling_in_ = true;
        if (!other) {
            ServerTxt.setText(std::u16string(hostOfNetwork(NetworkList.ListIndex())));
            PortTxt.setText({});
        }
        PortTxt.setText(portFor(PlainCheck.Value() != 0, PortTxt.Text()));
        filling_in_ = false;
    }
    fieldsChanged();
}

void SignInPage::PlainCheck_Click() {
    const bool plain = PlainCheck.Value() != 0;
    PlainPasswordCheck.setEnabled(plain);
    if (!plain) {
        PlainPasswordCheck.setValue(0);
    }
    PortTxt.setText(portFor(plain, PortTxt.Text()));
    fieldsChanged();
}

void SignInPage::fieldsChanged() {
    if (filling_in_) {
        return;
    }
    const bool kept = kind() != AccountKind::local && keptFor(kind(), networkFields(), accounts_) != nullptr;
    PasswordLbl.setCaption(kept ? u"Passwor&d (kept)" : u"Its passwor&d");
    TokenLbl.setCaption(kept ? u"T&oken (kept; another one replaces it)" : u"T&oken of that name");
    showWhetherKnown();
}

// The text is the name of a remembered account now.
void SignInPage::pickNetwork(const ui::ComboBox& box) {
    const Account* account = accounts_.find(box.Text());
    if (account && account->network) {
        fillIn(*account);
    }
}

void SignInPage::tellFault(std::u16string_view fault) {
    if (fault != FaultLbl.Caption()) {
        FaultLbl.setCaption(std::u16string(fault));
        form().onSize(); // it may take more lines
    }
}

void SignInPage::showWhetherKnown() {
    const Account* known = accounts_.find(signinTyped());
    ForgetButt.setEnabled(known && known->remembered);
}

void SignInPage::NameBox_Change() {
    if (filling_in_) {
        return;
    }
    showWhetherKnown();
    if (const auto friendly = form_.friendlyFor(NameBox.Text(), DisplayNameTxt.Text())) {
        DisplayNameTxt.setText(*friendly);
    }
}

void SignInPage::NameBox_Picked() {
    if (const Account* account = accounts_.find(NameBox.Text())) {
        fillIn(form_.propose(*account));
    }
}

// What signs in by itself has to be remembered.
void SignInPage::RememberCheck_Click() {
    if (!filling_in_ && RememberCheck.Value() == 0) {
        AutomaticCheck.setValue(0);
    }
}

void SignInPage::AutomaticCheck_Click() {
    if (!filling_in_ && AutomaticCheck.Value() != 0) {
        RememberCheck.setValue(1);
    }
}

void SignInPage::SignInButt_Click() {
    kind() == AccountKind::local ? signInLocally() : signInToNetwork();
}

void SignInPage::signInToNetwork() {
    const auto wanted = requestOf(kind(), networkFields(), accounts_);
    if (const auto* wrong = std::get_if<FieldFault>(&wanted)) {
        tellFault(wrong->sentence);
        ui::beep();
        ui::Control& place = controlOf(wrong->field);
        return place.Enabled() ? place.SetFocus() : NetworkList.SetFocus();
    }
    tellFault({});
    // It is shown no more once it was used.
    filling_in_ = true;
    PasswordTxt.setText({});
    TokenTxt.setText({});
    filling_in_ = false;
    hooks_.connect(std::get<NetworkRequest>(wanted));
}

void SignInPage::signInLocally() {
    SignInRequest request = form_.completed({NameBox.Text(), DisplayNameTxt.Text(), Status::online,
                                             RememberCheck.Value() != 0, AutomaticCheck.Value() != 0});
    const std::u16string_view fault = faultOfSignin(request.signin);
    tellFault(fault);
    if (!fault.empty()) {
        ui::beep();
        NameBox.SetFocus();
        return;
    }
    if (const int row = StatusList.ListIndex(); row >= 0) {
        request.status = chosen_statuses[static_cast<std::size_t>(row)];
    }
    hooks_.sign_in(request);
}

void SignInPage::ForgetButt_Click() {
    hooks_.forget(signinTyped());
    proposeNobody();
    focusFirst();
}

} // namespace messenger_client
