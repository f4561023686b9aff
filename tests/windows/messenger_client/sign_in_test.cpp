// Signing in by the window, by automation and by command, and what is remembered of it; the main window of who is
// signed in. Keys and menu choices reach the client as the messages that they are.
#include <array>
#include <cstring>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "tests/windows/download/web_server.h"
#include "tests/windows/messenger_client/client_process.h"

namespace messenger_client {

namespace {

using murmelix::com::Error;
using murmelix::com::narrow;
using murmelix::com::Object;
using murmelix::com::Variant;
using murmelix::com::wide;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr wchar_t key_path[] = L"Software\\MessengerClient";

// The controls of the main window; their numbers among those of their class are those in the order of the Tab key.
enum ControlId : int {
    id_none,
    id_contacts,
    id_kind,
    id_signin,
    id_friendly,
    id_status,
    id_network,
    id_nick,
    id_channel,
    id_server,
    id_port,
    id_channels,
    id_password,
    id_plain,
    id_remember,
    id_automatic,
    id_sign_in,
    id_forget,
    id_fault,
    id_progress,
    id_cancel,
    id_name,
    id_my_status,
    id_mail,
    id_rename_field,
};
struct Known {
    ControlId id;
    const wchar_t* kind;
    int number;
};
constexpr Known known_controls[] = {
    {id_contacts, L"ListBox", 0}, {id_kind, L"ComboBox", 0},    {id_signin, L"ComboBox", 1},
    {id_friendly, L"Edit", 1},    {id_status, L"ComboBox", 2},  {id_network, L"ComboBox", 3},
    {id_nick, L"ComboBox", 4},    {id_channel, L"ComboBox", 5}, {id_password, L"Edit", 6},
    {id_plain, L"Button", 3},     {id_server, L"Edit", 2},      {id_port, L"Edit", 3},
    {id_channels, L"Edit", 4},    {id_remember, L"Button", 5},  {id_automatic, L"Button", 6},
    {id_sign_in, L"Button", 7},   {id_forget, L"Button", 8},    {id_fault, L"Static", 15},
    {id_progress, L"Static", 17}, {id_cancel, L"Button", 9},    {id_name, L"Button", 0},
    {id_my_status, L"Button", 1}, {id_mail, L"Button", 2},      {id_rename_field, L"Edit", 0},
};

constexpr std::u16string_view menu_exit = u"fx", menu_rename = u"fn", menu_add = u"ca", menu_new_mail = u"ma",
                              menu_read_mail = u"mr", menu_busy = u"ft\x19\r", menu_second_account = u"fw\x19\r",
                              menu_other_account = u"fwn";

void storeValue(const wchar_t* name, DWORD type, const void* data, std::size_t bytes) {
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, key_path, name, type, data, static_cast<DWORD>(bytes)), ERROR_SUCCESS);
}

void storeText(const wchar_t* name, DWORD type, const std::u16string& text) {
    storeValue(name, type, text.data(), text.size() * sizeof(char16_t));
}

// The lines of the value Accounts.
std::vector<std::string> storedAccounts() {
    std::vector<wchar_t> text(1 << 20);
    auto bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    std::vector<std::string> lines;
    if (RegGetValueW(HKEY_CURRENT_USER, key_path, L"Accounts", RRF_RT_REG_MULTI_SZ, nullptr, text.data(), &bytes) !=
        ERROR_SUCCESS) {
        return lines;
    }
    for (const wchar_t* line = text.data(); *line; line += std::wcslen(line) + 1) {
        lines.push_back(murmelix::toUtf8(narrow(line, std::wcslen(line))));
    }
    return lines;
}

std::u16string account(const std::u16string& signin, const std::u16string& name, const std::u16string& kind = u"-",
                       const std::u16string& status = u"2") {
    return signin + u"\t" + status + u"\t" + kind + u"\t0\t" + name + std::u16string(1, u'\0');
}

std::u16string textOf(HWND window) {
    std::u16string text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, u'\0');
    text.resize(
        static_cast<std::size_t>(SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

// A client, with a registry of its own.
struct Desk : testing::Test {
    std::optional<RunningClient> client;
    Object messenger;
    HWND window = nullptr;

    void SetUp() override { RegDeleteTreeW(HKEY_CURRENT_USER, key_path); }
    void TearDown() override {
        messenger = Object();
        client.reset();
        RegDeleteTreeW(HKEY_CURRENT_USER, key_path);
    }

    void start(const std::u16string& switches) {
        client.emplace(switches);
        messenger = client->automation();
        window = client->mainWindow();
    }
    // Ends the client as its user does; what it has to remember is stored then.
    void leave() {
        messenger = Object();
        choose(menu_exit);
        EXPECT_EQ(client->process().exitStatus(), 0U);
        client.reset();
    }

    HWND of(int id) const {
        for (const Known& known : known_controls) {
            if (known.id == id) {
                return controlOf(window, known.kind, known.number);
            }
        }
        return nullptr;
    }
    std::u16string text(int id) const { return textOf(of(id)); }
    bool visible(int id) const { return IsWindowVisible(of(id)) != FALSE; }
    bool checked(int id) const { return SendMessageW(of(id), BM_GETCHECK, 0, 0) == BST_CHECKED; }
    void fill(int id, const std::u16string& value) { replaceText(of(id), value); }
    void click(int id) { SendMessageW(of(id), BM_CLICK, 0, 0); }
    long status() { return messenger.get(u"MyStatus").toInt32(); }
    bool becomes(long code) {
        return pumpUntil([&] { return status() == code; });
    }

    // Where the keyboard is; id_none where it is in none of the known controls.
    int focus() const {
        const HWND at = focused();
        for (const Known& known : known_controls) {
            const HWND control = of(known.id);
            if (at == control || (control && GetParent(at) == control)) { // the edit of a drop-down
                return known.id;
            }
        }
        return id_none;
    }
    HWND focused() const {
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
        return info.hwndFocus ? info.hwndFocus : window;
    }
    void key(WPARAM code) const {
        PostMessageW(focused(), WM_KEYDOWN, code, 1);
        PostMessageW(focused(), WM_KEYUP, code, 0xC0000001);
    }
    void altKey(char16_t letter) const { PostMessageW(focused(), WM_SYSCHAR, letter, 0x20000001); }
    void type(std::u16string_view letters) const {
        for (const char16_t letter : letters) {
            PostMessageW(focused(), WM_CHAR, letter, 1);
        }
    }
    bool focusComesTo(int id) const {
        return pumpUntil([&] { return focus() == id; });
    }

    void choose(std::u16string_view keys) const { chooseByKeys(window, keys); }
};

using SignInWindow = Desk;
using Remembering = Desk;
using SignInByAutomation = Desk;
using OwnAccount = Desk;

TEST_F(SignInWindow, ShowsWhatItNeeds) {
    start(u"/signedout");
    for (const int id : {id_signin, id_friendly, id_status, id_remember, id_automatic, id_sign_in, id_forget}) {
        EXPECT_TRUE(visible(id)) << id;
    }
    for (const int id : {id_cancel, id_progress, id_contacts, id_name, id_my_status, id_mail, id_rename_field}) {
        EXPECT_FALSE(visible(id)) << id;
    }
    EXPECT_EQ(text(id_sign_in), u"&Sign in");
    EXPECT_EQ(SendMessageW(of(id_status), CB_GETCOUNT, 0, 0), 7);
    EXPECT_FALSE(IsWindowEnabled(of(id_forget))) << "nobody is remembered";
    EXPECT_EQ(text(id_signin), u"you@messenger.example") << "the one for a first look";
    screenshotWhenStill(window, "messenger_sign_in");
}

TEST_F(SignInWindow, TabGoesThroughTheFieldsInOrder) {
    start(u"/signedout");
    client->command("accounts remember you@messenger.example You");
    ASSERT_TRUE(focusComesTo(id_sign_in));
    for (const int next :
         {id_forget, id_kind, id_signin, id_friendly, id_status, id_remember, id_automatic, id_sign_in}) {
        key(VK_TAB);
        EXPECT_TRUE(focusComesTo(next)) << next << ", but it is at " << focus();
    }
}

TEST_F(SignInWindow, HasFieldsForEachKindOfAccount) {
    start(u"/signedout");
    EXPECT_FALSE(visible(id_network) || visible(id_channel));
    altKey(u'k');
    ASSERT_TRUE(focusComesTo(id_kind));
    key(VK_DOWN);
    EXPECT_TRUE(pumpUntil([&] { return visible(id_network) && !visible(id_signin) && !visible(id_channel); }));
    EXPECT_EQ(text(id_server), u"irc.libera.chat");
    EXPECT_FALSE(IsWindowEnabled(of(id_server)));
    screenshotWhenStill(window, "messenger_sign_in_irc");
    altKey(u'w');
    ASSERT_TRUE(focusComesTo(id_network));
    key(VK_END);
    EXPECT_TRUE(pumpUntil([&] { return IsWindowEnabled(of(id_server)) != FALSE; }));
    altKey(u'k');
    ASSERT_TRUE(focusComesTo(id_kind));
    key(VK_END);
    EXPECT_TRUE(pumpUntil([&] { return visible(id_channel) && !visible(id_network); }));
    screenshotWhenStill(window, "messenger_sign_in_streaming");
    altKey(u's');
    EXPECT_TRUE(pumpUntil([&] { return !text(id_fault).empty(); })) << "without a channel there is nothing to read";
    EXPECT_TRUE(focusComesTo(id_channel));
}

TEST_F(Remembering, APasswordOfANetworkCanBeReadByNobody) {
    start(u"/signedout");
    altKey(u'k');
    ASSERT_TRUE(focusComesTo(id_kind));
    key(VK_DOWN);
    ASSERT_TRUE(pumpUntil([&] { return visible(id_network); }));
    altKey(u'w');
    ASSERT_TRUE(focusComesTo(id_network));
    key(VK_END);
    ASSERT_TRUE(pumpUntil([&] { return IsWindowEnabled(of(id_server)) != FALSE; }));
    fill(id_server, u"127.0.0.1");
    fill(id_port, u"1"); // where nobody answers
    fill(id_nick, u"ann");
    fill(id_channels, u"#murmelix");
    fill(id_password, u"correct horse");
    EXPECT_EQ(SendMessageW(of(id_password), EM_GETPASSWORDCHAR, 0, 0), 0x25CF);
    click(id_remember);
    screenshotWhenStill(window, "messenger_sign_in_irc_filled");
    click(id_sign_in);
    EXPECT_TRUE(pumpUntil([&] { return text(id_fault).find(u"Nobody answers") != murmelix::npos; }))
        << murmelix::toUtf8(text(id_fault));
    EXPECT_EQ(text(id_password), u"");
    const std::vector<std::string> lines = storedAccounts();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], "ann@127.0.0.1\t2\t-\t0\tann");
    EXPECT_THAT(lines[1], testing::StartsWith("\t\tnetwork\tircs://127.0.0.1:1/#murmelix\tann\t\t-\t"));
    EXPECT_THAT(lines[1], testing::Not(HasSubstr("correct horse")));
    EXPECT_GT(lines[1].size(), 100U) << "it is kept";
    leave();
    start(u"/signedout");
    EXPECT_TRUE(visible(id_network));
    EXPECT_EQ(text(id_nick), u"ann");
    EXPECT_EQ(text(id_password), u"");
    click(id_sign_in);
    EXPECT_TRUE(pumpUntil([&] { return text(id_fault).find(u"Nobody answers") != murmelix::npos; }))
        << murmelix::toUtf8(text(id_fault));
}

TEST_F(SignInWindow, SignsInToANetworkWithoutEncryptionWhereThatIsTicked) {
    std::string heard;
    {
        murmelix::test::WebServer server([&](const murmelix::test::WebServer::Visitor& visitor) {
            visitor.answer(":irc.test 001 ann :Welcome\r\n:irc.test 376 ann :End\r\n");
            heard = visitor.untilClosed();
        });
        start(u"/signedout");
        altKey(u'k');
        ASSERT_TRUE(focusComesTo(id_kind));
        key(VK_DOWN);
        ASSERT_TRUE(pumpUntil([&] { return visible(id_network); }));
        altKey(u'w');
        ASSERT_TRUE(focusComesTo(id_network));
        key(VK_END);
        ASSERT_TRUE(pumpUntil([&] { return IsWindowEnabled(of(id_server)) != FALSE; }));
        fill(id_server, u"127.0.0.1");
        fill(id_nick, u"ann");
        fill(id_channels, u"#murmelix");
        fill(id_password, u"correct horse");
        click(id_plain);
        fill(id_port, murmelix::toText(server.port()));
        click(id_sign_in);
        EXPECT_TRUE(pumpUntil([&] { return text(id_fault).find(u"Without encryption") != murmelix::npos; }));
        fill(id_password, u"");
        click(id_sign_in);
        EXPECT_TRUE(becomes(2));
        EXPECT_TRUE(storedAccounts().empty()) << "nobody has asked for it";
        leave();
    }
    EXPECT_THAT(heard, HasSubstr("NICK ann\r\n"));
    EXPECT_THAT(heard, HasSubstr("JOIN #murmelix\r\n"));
    EXPECT_THAT(heard, testing::Not(HasSubstr("correct horse")));
}

TEST_F(SignInWindow, LettersLeadToTheirFields) {
    start(u"/signedout");
    const std::vector<std::pair<char16_t, int>> letters{
        {u'k', id_kind}, {u'n', id_signin}, {u'd', id_friendly}, {u't', id_status}};
    for (const auto& [letter, id] : letters) {
        altKey(letter);
        EXPECT_TRUE(focusComesTo(id)) << id;
    }
    altKey(u'a');
    EXPECT_TRUE(pumpUntil([&] { return checked(id_automatic); }));
    EXPECT_TRUE(checked(id_remember)) << "what signs in by itself is remembered";
    altKey(u'r');
    EXPECT_TRUE(pumpUntil([&] { return !checked(id_remember); }));
    EXPECT_FALSE(checked(id_automatic));
    altKey(u's');
    EXPECT_TRUE(becomes(2));
}

TEST_F(SignInWindow, TheKeyboardComesBackToWhereItWas) {
    start(u"/signedout");
    altKey(u'd');
    ASSERT_TRUE(focusComesTo(id_friendly));
    SendMessageW(window, WM_ACTIVATE, WA_INACTIVE, 0);
    SendMessageW(window, WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_TRUE(focusComesTo(id_friendly));
    // What had it is gone meanwhile.
    SendMessageW(window, WM_ACTIVATE, WA_INACTIVE, 0);
    client->command("add ann@x Ann");
    client->command("signin kim@x");
    SendMessageW(window, WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_TRUE(focusComesTo(id_contacts)) << focus();
}

TEST_F(SignInWindow, ANameIsTypedAndEnterSignsIn) {
    start(u"/signedout");
    fill(id_signin, u"");
    fill(id_friendly, u"");
    altKey(u'n');
    ASSERT_TRUE(focusComesTo(id_signin));
    type(u"kim@place.example");
    ASSERT_TRUE(pumpUntil([&] { return text(id_signin) == u"kim@place.example"; }));
    key(VK_TAB);
    ASSERT_TRUE(focusComesTo(id_friendly));
    type(u"Kim :)");
    ASSERT_TRUE(pumpUntil([&] { return text(id_friendly) == u"Kim :)"; }));
    key(VK_RETURN);
    ASSERT_TRUE(becomes(2));
    EXPECT_EQ(messenger.get(u"MySigninName").toText(), u"kim@place.example");
    EXPECT_EQ(messenger.get(u"MyFriendlyName").toText(), u"Kim :)");
    EXPECT_EQ(text(id_name), u"Kim :)");
    EXPECT_TRUE(visible(id_contacts));
    EXPECT_FALSE(visible(id_signin));
    EXPECT_TRUE(focusComesTo(id_contacts));
    EXPECT_GT(messenger.object(u"MyContacts").get(u"Count").toInt32(), 0) << "a new account has somebody to meet";
    EXPECT_TRUE(storedAccounts().empty()) << "nobody asked to be remembered";
}

TEST_F(SignInWindow, AnyNameWillDoAndGetsAPlace) {
    start(u"/signedout");
    altKey(u'n');
    ASSERT_TRUE(focusComesTo(id_signin));
    type(u"kim");
    ASSERT_TRUE(pumpUntil([&] { return text(id_signin) == u"kim"; })) << murmelix::toUtf8(text(id_signin));
    EXPECT_EQ(text(id_friendly), u"") << "the name that the form proposed is another's";
    click(id_sign_in);
    ASSERT_TRUE(becomes(2));
    EXPECT_EQ(messenger.get(u"MySigninName").toText(), u"kim@messenger.example");
    EXPECT_EQ(messenger.get(u"MyFriendlyName").toText(), u"kim");
}

TEST_F(SignInWindow, TheChosenStatusIsTheOneToSignInWith) {
    start(u"/signedout");
    altKey(u't');
    ASSERT_TRUE(focusComesTo(id_status));
    for (int i = 0; i < 3; ++i) {
        key(VK_DOWN);
    }
    ASSERT_TRUE(pumpUntil([&] { return SendMessageW(of(id_status), CB_GETCURSEL, 0, 0) == 3; }));
    click(id_sign_in);
    EXPECT_TRUE(becomes(34));
    EXPECT_EQ(text(id_my_status), u"Away");
}

TEST_F(SignInWindow, WhatIsNoSignInNameIsSaidAndNobodyIsSignedIn) {
    start(u"/signedout");
    Heard heard(messenger);
    fill(id_signin, u"a b@x");
    click(id_sign_in);
    EXPECT_TRUE(pumpUntil([&] { return !text(id_fault).empty(); }));
    EXPECT_EQ(status(), 1);
    EXPECT_EQ(focus(), id_signin);
    screenshotWhenStill(window, "messenger_sign_in_fault");
    EXPECT_TRUE(heard.lines.empty());
}

TEST_F(SignInWindow, FriendlyNamesOfAnyKindAreTaken) {
    start(u"/signedout");
    for (const std::u16string& name : {std::u16string(10'000, u'n'), std::u16string(u":) (k) :D"),
                                       std::u16string(u"one\r\ntwo"), std::u16string(u"\u202E(\u05D0 [x")}) {
        fill(id_signin, u"kim@x");
        fill(id_friendly, name);
        const std::u16string filled = text(id_friendly);
        click(id_sign_in);
        ASSERT_TRUE(becomes(2));
        EXPECT_EQ(messenger.get(u"MyFriendlyName").toText(), filled == u"one\r\ntwo" ? u"one  two" : filled);
        RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        client->command("signout");
        ASSERT_TRUE(becomes(1));
        EXPECT_EQ(text(id_signin), u"kim@x") << "the one who was here is proposed";
    }
    EXPECT_TRUE(client->process().running());
}

TEST_F(SignInWindow, TellsHowFarItIsAndCanBeCancelled) {
    start(u"/signedout /connect hold");
    Heard heard(messenger);
    click(id_sign_in);
    ASSERT_TRUE(becomes(0x200));
    EXPECT_EQ(text(id_progress), u"Connecting …");
    EXPECT_TRUE(visible(id_cancel));
    EXPECT_FALSE(visible(id_sign_in));
    EXPECT_TRUE(focusComesTo(id_cancel));
    screenshotWhenAgain(window, "messenger_connecting");
    client->command("signing next");
    ASSERT_TRUE(becomes(0x300));
    EXPECT_EQ(text(id_progress), u"Fetching your contacts …");
    key(VK_ESCAPE);
    ASSERT_TRUE(becomes(1));
    EXPECT_TRUE(visible(id_sign_in));
    EXPECT_EQ(text(id_fault), u"") << "who cancels knows why";
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1024 -2147023673"); }));

    click(id_sign_in);
    ASSERT_TRUE(becomes(0x200));
    click(id_cancel);
    ASSERT_TRUE(becomes(1));
    EXPECT_EQ(text(id_signin), u"you@messenger.example");
    EXPECT_TRUE(pumpUntil([&] { return heard.lines.size() == 2; }));
}

TEST_F(SignInWindow, EndsByTheClock) {
    start(u"/signedout /connect 40");
    Heard heard(messenger);
    click(id_sign_in);
    EXPECT_TRUE(becomes(2));
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1031 0 2"); }));
    EXPECT_THAT(heard.lines, ElementsAre("1024 0", "1031 0 2"));
}

TEST_F(SignInWindow, AFailureIsToldAndCanBeTriedAgain) {
    start(u"/signedout /connect hold");
    Heard heard(messenger);
    fill(id_friendly, u"Somebody else");
    click(id_sign_in);
    ASSERT_TRUE(becomes(0x200));
    EXPECT_EQ(client->command("signing fail 80004005"), 1);
    EXPECT_EQ(status(), 1);
    EXPECT_THAT(murmelix::toUtf8(text(id_fault)), HasSubstr("80004005"));
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1024 -2147467259"); }));
    EXPECT_EQ(text(id_friendly), u"Somebody else") << "what was typed stays";
    screenshotWhenStill(window, "messenger_sign_in_failed");
    click(id_sign_in);
    ASSERT_TRUE(becomes(0x200));
    EXPECT_EQ(client->command("signing finish"), 1);
    EXPECT_EQ(status(), 2);
    client->command("signout");
    EXPECT_EQ(text(id_fault), u"");
}

TEST_F(Remembering, AnAccountAndItsNameStatusContactsAndMail) {
    start(u"/signedout");
    fill(id_signin, u"kim@x");
    fill(id_friendly, u"Kim");
    click(id_remember);
    click(id_sign_in);
    ASSERT_TRUE(becomes(2));
    EXPECT_THAT(storedAccounts(), Contains("kim@x\t2\t-\t0\tKim"));
    client->command("add cy@x Cy\\tC");
    client->command("rename me Kimberley");
    client->command("status me 10");
    client->command("unread 4");
    leave();
    EXPECT_THAT(storedAccounts(), Contains("kim@x\t10\t-\t4\tKimberley"));

    start(u"");
    EXPECT_EQ(status(), 1) << "it is remembered, and does not sign in by itself";
    EXPECT_EQ(text(id_signin), u"kim@x");
    EXPECT_EQ(text(id_friendly), u"Kimberley");
    EXPECT_EQ(SendMessageW(of(id_status), CB_GETCURSEL, 0, 0), 1);
    EXPECT_TRUE(checked(id_remember));
    click(id_sign_in);
    ASSERT_TRUE(becomes(10));
    EXPECT_EQ(messenger.object(u"GetContact", {Variant(u"cy@x"), Variant(u"")}).get(u"FriendlyName").toText(),
              u"Cy\tC");
    EXPECT_EQ(messenger.get(u"UnreadEmailCount", {Variant(std::int32_t{0})}).toInt32(), 4);
    EXPECT_EQ(text(id_mail), u"4 new mails");
}

TEST_F(Remembering, OneAccountSignsInByItself) {
    start(u"/signedout");
    fill(id_signin, u"kim@x");
    click(id_automatic);
    click(id_sign_in);
    ASSERT_TRUE(becomes(2));
    leave();
    start(u"");
    ASSERT_TRUE(becomes(2));
    EXPECT_EQ(messenger.get(u"MySigninName").toText(), u"kim@x");
    messenger.call(u"Signout");
    messenger.call(u"AutoSignin");
    EXPECT_EQ(messenger.get(u"MySigninName").toText(), u"kim@x");
    messenger.call(u"Signout");
    ASSERT_TRUE(becomes(1));
    click(id_automatic);
    click(id_sign_in);
    ASSERT_TRUE(becomes(2));
    leave();
    start(u"");
    EXPECT_EQ(status(), 1);
}

TEST_F(Remembering, TheDropDownFillsTheFieldsIn) {
    storeText(L"Accounts", REG_MULTI_SZ,
              account(u"ann@x", u"Ann") + account(u"bob@x", u"Bob :)", u"-", u"50") + account(u"cy@x", u"Cy") + u'\0');
    start(u"");
    ASSERT_EQ(SendMessageW(of(id_signin), CB_GETCOUNT, 0, 0), 3);
    EXPECT_EQ(text(id_friendly), u"Ann");
    altKey(u'n');
    ASSERT_TRUE(focusComesTo(id_signin));
    SendMessageW(of(id_signin), CB_SETCURSEL, 0, 0);
    key(VK_DOWN);
    ASSERT_TRUE(pumpUntil([&] { return text(id_signin) == u"bob@x"; }));
    EXPECT_TRUE(pumpUntil([&] { return text(id_friendly) == u"Bob :)"; }));
    EXPECT_EQ(SendMessageW(of(id_status), CB_GETCURSEL, 0, 0), 4);
    SendMessageW(of(id_signin), CB_SHOWDROPDOWN, TRUE, 0);
    screenshotWhenStill(window, "messenger_sign_in_accounts");
    SendMessageW(of(id_signin), CB_SHOWDROPDOWN, FALSE, 0);
    click(id_sign_in);
    ASSERT_TRUE(becomes(50));
    EXPECT_EQ(messenger.get(u"MySigninName").toText(), u"bob@x");
}

TEST_F(Remembering, AnAccountIsForgotten) {
    storeText(L"Accounts", REG_MULTI_SZ, account(u"ann@x", u"Ann") + account(u"bob@x", u"Bob") + u'\0');
    start(u"");
    ASSERT_TRUE(IsWindowEnabled(of(id_forget)));
    altKey(u'g');
    ASSERT_TRUE(pumpUntil([&] { return text(id_signin).empty(); }));
    EXPECT_EQ(SendMessageW(of(id_signin), CB_GETCOUNT, 0, 0), 1);
    EXPECT_FALSE(IsWindowEnabled(of(id_forget)));
    EXPECT_THAT(storedAccounts(), ElementsAre("bob@x\t2\t-\t0\tBob"));
    EXPECT_EQ(client->command("accounts has ann@x"), 4);
    EXPECT_EQ(client->command("accounts forget bob@x"), 1);
    EXPECT_TRUE(storedAccounts().empty());
}

TEST_F(Remembering, TheAccountOfAnOlderClientIsTakenOver) {
    storeText(L"SigninName", REG_SZ, std::u16string(u"old@x\0", 6));
    storeText(L"FriendlyName", REG_SZ, std::u16string(u"Old :)\0", 7));
    start(u"");
    ASSERT_TRUE(becomes(2));
    EXPECT_EQ(messenger.get(u"MySigninName").toText(), u"old@x");
    EXPECT_EQ(messenger.get(u"MyFriendlyName").toText(), u"Old :)");
    leave();
    EXPECT_THAT(storedAccounts(), Contains("old@x\t2\tautomatic\t0\tOld :)"));
    DWORD bytes = 0;
    EXPECT_NE(RegGetValueW(HKEY_CURRENT_USER, key_path, L"SigninName", RRF_RT_ANY, nullptr, nullptr, &bytes),
              ERROR_SUCCESS);
}

TEST_F(Remembering, NonsenseInTheRegistryIsHarmless) {
    const DWORD number = 7;
    const std::u16string unended = u"ann@x\t2\t-\t0\tAnn";
    const std::vector<std::function<void()>> nonsense{
        [&] { storeValue(L"Accounts", REG_DWORD, &number, sizeof number); },
        [&] { storeText(L"Accounts", REG_SZ, unended); },
        [&] { storeValue(L"Accounts", REG_MULTI_SZ, nullptr, 0); },
        [&] { storeValue(L"Accounts", REG_MULTI_SZ, "\t\0\t\0\n\0x", 7); },
        [&] { storeText(L"Accounts", REG_MULTI_SZ, std::u16string(u"\0\0\0x\0\t\t\t\0", 10)); },
        [&] { storeText(L"Accounts", REG_MULTI_SZ, std::u16string(100'000, u'\t')); },
        [&] { storeText(L"Accounts", REG_MULTI_SZ, std::u16string(100'000, u'x')); },
        [&] { storeValue(L"KeepRunning", REG_SZ, L"yes", 8); },
        [&] { storeValue(L"SigninName", REG_BINARY, "\xFF\xFE\xFD", 3); },
    };
    for (std::size_t i = 0; i < nonsense.size(); ++i) {
        RegDeleteTreeW(HKEY_CURRENT_USER, key_path);
        nonsense[i]();
        start(u"");
        EXPECT_TRUE(becomes(2)) << i;
        EXPECT_EQ(messenger.get(u"MySigninName").toText(), u"you@messenger.example") << i << ": nobody is remembered";
        messenger = Object();
        client.reset();
    }
    // The last line may lack its NUL; it counts all the same, as RegGetValue would have it.
    storeText(L"Accounts", REG_MULTI_SZ, unended);
    start(u"");
    EXPECT_EQ(text(id_signin), u"ann@x");
}

TEST_F(Remembering, FiveHundredAccounts) {
    std::u16string all;
    for (int i = 0; i < 500; ++i) {
        all += account(u"account" + murmelix::toText(i) + u"@x", u"Number " + murmelix::toText(i));
    }
    storeText(L"Accounts", REG_MULTI_SZ, all + u'\0');
    start(u"");
    EXPECT_EQ(SendMessageW(of(id_signin), CB_GETCOUNT, 0, 0), 500);
    client->command("connect account499@x");
    EXPECT_EQ(messenger.get(u"MyFriendlyName").toText(), u"Number 499");
    leave();
    const std::vector<std::string> lines = storedAccounts();
    ASSERT_EQ(lines.size(), 500U);
    EXPECT_EQ(lines.front(), "account499@x\t2\t-\t0\tNumber 499");
}

TEST_F(SignInByAutomation, BringsTheWindowUp) {
    start(u"/signedout");
    const auto signIn = [&] { messenger.call(u"Signin", {Variant(std::int32_t{0}), Variant(u""), Variant(u"")}); };
    signIn();
    EXPECT_TRUE(IsWindowVisible(window));
    client->command("window minimise");
    ASSERT_TRUE(pumpUntil([&] { return IsIconic(window) != FALSE; }));
    Object main = messenger.object(u"Window");
    EXPECT_TRUE(main.get(u"IsClosed").toBool());
    signIn();
    EXPECT_TRUE(pumpUntil([&] { return !IsIconic(window) && IsWindowVisible(window); }));
    EXPECT_FALSE(main.get(u"IsClosed").toBool());
    client->command("window hide");
    ASSERT_TRUE(pumpUntil([&] { return !IsWindowVisible(window); }));
    EXPECT_TRUE(main.get(u"IsClosed").toBool());
    signIn();
    EXPECT_TRUE(pumpUntil([&] { return IsWindowVisible(window) && !IsIconic(window); }));
    EXPECT_TRUE(focusComesTo(id_sign_in)) << focus();
    key(VK_RETURN);
    EXPECT_TRUE(becomes(2));
}

TEST_F(SignInByAutomation, ANameSignsInAndThePasswordGoesNowhere) {
    start(u"/signedout /connect hold");
    Heard heard(messenger);
    messenger.call(u"Signin", {Variant(std::int32_t{0}), Variant(u"kim@x"), Variant(u"secret")});
    EXPECT_EQ(status(), 0x200);
    EXPECT_THROW(messenger.get(u"MySigninName"), Error) << "nobody is signed in yet";
    client->command("signing next");
    EXPECT_EQ(status(), 0x300);
    client->command("signing next");
    EXPECT_EQ(status(), 2);
    EXPECT_EQ(messenger.get(u"MySigninName").toText(), u"kim@x");
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1031 0 2"); }));
    EXPECT_THAT(heard.lines, ElementsAre("1024 0", "1031 0 2")) << "the stages are for who asks";
    messenger.call(u"Signout");
    messenger.call(u"Signin", {Variant(std::int32_t{0}), Variant(u"kim@x"), Variant(u"secret")});
    messenger.call(u"Signout");
    EXPECT_EQ(status(), 1);
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1024 -2147023673"); })) << "signing out gives it up";
    leave();
    for (const std::string& line : storedAccounts()) {
        EXPECT_EQ(line.find("secret"), std::string::npos);
    }
}

TEST_F(SignInByAutomation, NamesOfAnyKindAreHarmless) {
    start(u"/signedout");
    for (const std::u16string& name : {std::u16string(10'000, u'x'), std::u16string(u"a\0b@x\r\n", 7),
                                       std::u16string(u":) (k)"), std::u16string(u"\xD800@\xDC00")}) {
        messenger.call(u"Signin", {Variant(std::int32_t{0}), Variant(name), Variant(u"")});
        EXPECT_EQ(status(), 2);
        EXPECT_EQ(messenger.get(u"MySigninName").toText().find_first_of(std::u16string_view(u"\0\r\n", 3)),
                  murmelix::npos);
        EXPECT_EQ(messenger.get(u"MySigninName").toText().size(), name.size());
    }
    messenger.call(u"Signout");
    EXPECT_EQ(status(), 1);
}

TEST_F(OwnAccount, SwitchingClosesTheConversationsAndEachKeepsItsOwn) {
    storeText(L"Accounts", REG_MULTI_SZ,
              account(u"ann@x", u"Ann") + u"\tcy@x\t2\t-\tCy" + u'\0' + account(u"bob@x", u"Bob & Co", u"-", u"66") +
                  u"\tdi@x\t2\t-\tDi" + u'\0' + u'\0');
    start(u"");
    click(id_sign_in);
    ASSERT_TRUE(becomes(2));
    client->command("open cy@x");
    client->command("open cy@x");
    Heard heard(messenger);
    choose(menu_second_account);
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1031 0 66"); }));
    EXPECT_THAT(heard.lines,
                ElementsAre("1041 window", "1041 window", "1042 window", "1042 window", "1025", "1024 0", "1031 0 66"));
    EXPECT_EQ(messenger.get(u"MyFriendlyName").toText(), u"Bob & Co");
    EXPECT_EQ(messenger.object(u"MyContacts").get(u"Count").toInt32(), 1);
    EXPECT_EQ(client->conversationWindow(), nullptr);
    choose(menu_other_account);
    EXPECT_TRUE(becomes(1));
    EXPECT_TRUE(visible(id_sign_in));
    EXPECT_EQ(text(id_signin), u"") << "somebody else will sign in";
    EXPECT_EQ(text(id_friendly), u"");
}

TEST_F(OwnAccount, AStatusOfTheMenuIsTaken) {
    start(u"/signin kim@x");
    Heard heard(messenger);
    choose(menu_busy);
    ASSERT_TRUE(becomes(10));
    EXPECT_EQ(text(id_my_status), u"Busy");
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1031 0 10"); }));
    messenger.put(u"MyStatus", Variant(std::int32_t{18}));
    EXPECT_EQ(text(id_my_status), u"Idle");
}

TEST_F(OwnAccount, BecomesIdleWhenNothingIsTouchedAndOnlineAgain) {
    start(u"/signin kim@x /idle 10");
    Heard heard(messenger);
    EXPECT_EQ(client->command("untouched 599"), 1);
    EXPECT_EQ(status(), 2);
    EXPECT_EQ(client->command("untouched 600"), 1);
    EXPECT_EQ(status(), 18);
    EXPECT_EQ(client->command("untouched 0"), 1);
    EXPECT_EQ(status(), 2);
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1031 0 2"); }));
    EXPECT_THAT(heard.lines, ElementsAre("1031 0 18", "1031 0 2"));
    client->command("status me 10");
    EXPECT_EQ(client->command("untouched 6000"), 1);
    EXPECT_EQ(status(), 10);
}

TEST_F(OwnAccount, ChangesItsNameInTheWindow) {
    start(u"/signin kim@x /friendly Kim");
    Heard heard(messenger);
    ASSERT_TRUE(pumpUntil([&] { return focus() != 0; }));
    key(VK_F2);
    ASSERT_TRUE(focusComesTo(id_rename_field));
    EXPECT_EQ(text(id_rename_field), u"Kim");
    fill(id_rename_field, u"  Kimberley (here) ");
    screenshotWhenStill(window, "messenger_rename");
    key(VK_RETURN);
    ASSERT_TRUE(pumpUntil([&] { return heard.has("1029 0 Kim"); }));
    EXPECT_EQ(messenger.get(u"MyFriendlyName").toText(), u"Kimberley (here)");
    EXPECT_EQ(text(id_name), u"Kimberley (here)");
    EXPECT_FALSE(visible(id_rename_field));
    EXPECT_EQ(textOf(window), u"Kimberley (here) - Messenger");

    choose(menu_rename);
    ASSERT_TRUE(focusComesTo(id_rename_field));
    fill(id_rename_field, u"never");
    key(VK_ESCAPE);
    ASSERT_TRUE(pumpUntil([&] { return !visible(id_rename_field); }));
    EXPECT_EQ(messenger.get(u"MyFriendlyName").toText(), u"Kimberley (here)");

    click(id_name);
    ASSERT_TRUE(focusComesTo(id_rename_field));
    fill(id_rename_field, std::u16string(10'000, u'k'));
    key(VK_TAB); // leaving the field takes the name
    ASSERT_TRUE(pumpUntil([&] { return !visible(id_rename_field); }));
    EXPECT_EQ(messenger.get(u"MyFriendlyName").toText().size(), 10'000U);
    EXPECT_EQ(text(id_name).size(), 200U) << "as much as can be seen";
    fill(id_rename_field, u" ");
    EXPECT_EQ(messenger.get(u"MyFriendlyName").toText().size(), 10'000U);
}

TEST_F(OwnAccount, MailIsCountedInTheWindow) {
    start(u"/signin kim@x");
    Heard heard(messenger);
    EXPECT_EQ(text(id_mail), u"No new mail");
    choose(menu_new_mail);
    ASSERT_TRUE(pumpUntil([&] { return heard.has("1039 0 1 True"); }));
    EXPECT_EQ(text(id_mail), u"1 new mail");
    choose(menu_new_mail);
    ASSERT_TRUE(pumpUntil([&] { return heard.has("1039 0 2 True"); }));
    EXPECT_EQ(text(id_mail), u"2 new mails");
    choose(menu_read_mail);
    ASSERT_TRUE(pumpUntil([&] { return heard.has("1039 0 0 True"); }));
    EXPECT_EQ(text(id_mail), u"No new mail");
    client->command("unread -1");
    EXPECT_EQ(text(id_mail), u"No mailbox");
    client->command("unread 2147483647");
    EXPECT_EQ(text(id_mail), u"2147483647 new mails");
    choose(menu_new_mail);
    EXPECT_TRUE(pumpUntil([&] { return heard.lines.size() == 6; }));
    EXPECT_EQ(messenger.get(u"UnreadEmailCount", {Variant(std::int32_t{0})}).toInt32(), 2147483647);
}

TEST_F(OwnAccount, AContactIsAddedByTheKeyboard) {
    start(u"/signin kim@x");
    Heard heard(messenger);
    choose(menu_add);
    HWND dialog = nullptr;
    ASSERT_TRUE(pumpUntil([&] {
        dialog = FindWindowW(L"MessengerClientAddContact", nullptr);
        return dialog && IsWindowVisible(dialog);
    }));
    const HWND name = controlOf(dialog, L"Edit", 0);
    const HWND friendly = controlOf(dialog, L"Edit", 1);
    const HWND fault = controlOf(dialog, L"Static", 2);
    const auto setText = [](HWND field, const wchar_t* value) {
        SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(value));
    };
    setText(name, L"no body@x");
    SendMessageW(controlOf(dialog, L"Button", 0), BM_CLICK, 0, 0);
    EXPECT_NE(textOf(fault), u"");
    screenshotWhenStill(dialog, "messenger_add_contact");
    setText(name, L"kim@x");
    PostMessageW(name, WM_KEYDOWN, VK_RETURN, 1);
    EXPECT_TRUE(pumpUntil([&] { return textOf(fault) == u"That is your own sign-in name."; }));
    setText(name, L" zoe ");
    setText(friendly, L"Zoe");
    PostMessageW(friendly, WM_KEYDOWN, VK_RETURN, 1);
    ASSERT_TRUE(pumpUntil([&] { return heard.has("1026 0 zoe@messenger.example"); }));
    EXPECT_TRUE(pumpUntil([&] { return !IsWindowVisible(dialog); }));
    Object zoe = messenger.object(u"GetContact", {Variant(u"zoe@messenger.example"), Variant(u"")});
    EXPECT_EQ(zoe.get(u"FriendlyName").toText(), u"Zoe");
    choose(menu_add);
    ASSERT_TRUE(pumpUntil([&] { return IsWindowVisible(dialog) != FALSE; }));
    EXPECT_EQ(textOf(name), u"");
    PostMessageW(name, WM_KEYDOWN, VK_ESCAPE, 1);
    EXPECT_TRUE(pumpUntil([&] { return !IsWindowVisible(dialog); }));
}

TEST_F(OwnAccount, ExitTellsItsListenersAndClosingMayHideOnly) {
    start(u"/signin kim@x");
    Heard heard(messenger);
    PostMessageW(window, WM_CLOSE, 0, 0);
    ASSERT_TRUE(pumpUntil([&] { return !IsWindowVisible(window); }));
    EXPECT_EQ(status(), 2) << "signed in as before";
    EXPECT_EQ(Process(clientProgram()).exitStatus(), 23U) << "a second start only shows it";
    EXPECT_TRUE(pumpUntil([&] { return IsWindowVisible(window) != FALSE; }));
    PostMessageW(window, WM_CLOSE, 0, 0);
    ASSERT_TRUE(pumpUntil([&] { return !IsWindowVisible(window); }));
    EXPECT_TRUE(heard.lines.empty());
    client->command("window show");
    choose(menu_exit);
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1032"); }));
    EXPECT_EQ(client->process().exitStatus(), 0U);
}

TEST_F(OwnAccount, SignsInAndOutTwentyTimesWhileMessagesArrive) {
    start(u"/signin kim@x");
    Heard heard(messenger);
    for (int i = 0; i < 20; ++i) {
        client->command(i % 2 ? "signin kim@x" : "connect ann@x Ann");
        if (i % 5 == 0) { // without a window manager Wine waits two seconds for a window to be gone
            client->command("open eve@x Eve");
            client->command("say eve@x one");
            client->command("say me two");
        }
        client->command("signout");
    }
    ASSERT_TRUE(pumpUntil([&] { return std::count(heard.lines.begin(), heard.lines.end(), "1025") == 21; }));
    EXPECT_EQ(std::count(heard.lines.begin(), heard.lines.end(), "1024 0"), 20);
    EXPECT_EQ(std::count(heard.lines.begin(), heard.lines.end(), "1042 window"), 4);
    EXPECT_EQ(client->conversationWindow(), nullptr);
}

TEST_F(OwnAccount, HasSeveralConversationsWithSeveralPeople) {
    start(u"/signin kim@x");
    for (const char* line : {"open ann@x Ann", "open bob@x Bob", "open cy@x Cy"}) {
        EXPECT_EQ(client->command(line), 1);
    }
    Heard heard(messenger);
    ASSERT_TRUE(pumpUntil([&] { return heard.windows.size() == 3; }));
    // The guests of the menu are those of the list who are not there yet: Ann and Bob.
    const HWND last = reinterpret_cast<HWND>(static_cast<std::intptr_t>(heard.windows[2].get(u"HWND").toInt32()));
    const HWND invite = FindWindowExW(last, nullptr, L"Button", L"&Invite");
    ASSERT_TRUE(invite);
    PostMessageW(invite, BM_CLICK, 0, 0);
    ASSERT_TRUE(pumpUntil([&] { return FindWindowW(L"#32768", nullptr) != nullptr; })) << "the menu";
    for (const WPARAM code : {VK_DOWN, VK_DOWN, VK_RETURN}) {
        PostMessageW(last, WM_KEYDOWN, code, 1);
    }
    ASSERT_TRUE(pumpUntil([&] { return heard.has("1043 bob@x window"); }));
    EXPECT_EQ(heard.windows[2].object(u"Contacts").get(u"Count").toInt32(), 2);
    EXPECT_EQ(heard.windows[0].object(u"Contacts").get(u"Count").toInt32(), 1);
    client->command("part cy@x");
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1044 cy@x window"); }));
    PostMessageW(last, WM_CLOSE, 0, 0);
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1042 window"); }));
    EXPECT_FALSE(heard.windows[0].get(u"IsClosed").toBool());
    EXPECT_FALSE(heard.windows[1].get(u"IsClosed").toBool());
    client->command("unread 3");
    client->command("status me 10");
    screenshotWhenStill(window, "messenger_main_busy");
}

} // namespace

} // namespace messenger_client
