#include "tests/forms/gallery.h"

#include "companions/messenger/client/conversation_window.h"
#include "companions/messenger/client/live_window.h"
#include "companions/messenger/client/main_window.h"
#include "companions/messenger/live/account.h"
#include "tests/fakes/live_hooks.h"

namespace murmelix::test {

using namespace messenger_client;

namespace {

// The place to sign in, with each kind of account, and who is signed in.
void visitMain(const Visit& visit) {
    Client client;
    MainWindow window(client, MainWindow::Hooks{.sign_in = [](const SignInRequest&) {},
                                                .connect = [](const NetworkRequest&) {},
                                                .forget = [](const std::u16string&) {},
                                                .switch_to = [](const std::u16string&) {},
                                                .bring_up = [](const Conversation&) {},
                                                .command = [](std::string_view) { return std::intptr_t{0}; },
                                                .enter = [](const std::u16string&) { return std::u16string(); },
                                                .user_acts = [] {},
                                                .quit = [] {}});
    client.listen([&](const Change& change) { window.changed(change); });
    window.accountsChanged();
    window.propose({});
    window.Show();
    settle();
    visit(window, "client-sign-in-local");
    window.SignIn.KindList.setListIndex(1);
    window.SignIn.PlainCheck.setValue(1);
    window.tellFault(u"The server does not know this password, and closes the connection after a while.");
    settle();
    visit(window, "client-sign-in-network");
    window.SignIn.KindList.setListIndex(2);
    window.tellFault({});
    settle();
    visit(window, "client-sign-in-streaming");
    window.setSigningIn(u"kim@x", u"Kim");
    client.setStage(Stage::connecting);
    settle();
    visit(window, "client-signing-in");
    client.signIn(u"kim@x", u"Kim");
    settle();
    visit(window, "client-nobody-listed");
    client.addContact(u"ann@x", u"Ann", Status::online);
    client.addContact(u"bob@x", u"Bob", Status::offline);
    settle();
    visit(window, "client-contacts");
    window.FileMenuRename.onClick();
    settle();
    visit(window, "client-renaming");
    window.onKey(ui::Key::escape, false);
    window.ContactMenuAdd.onClick();
    settle();
    if (window.AddContact) {
        visit(*window.AddContact, "client-add-contact");
        window.AddContact->Hide();
    }
    window.setLive(true);
    window.ContactMenuEnter.onClick();
    settle();
    if (window.EnterChannel) {
        visit(*window.EnterChannel, "client-enter-channel");
        window.EnterChannel->Hide();
    }
}

void visitConversation(const Visit& visit) {
    Client client;
    client.signIn(u"me@x", u"Mia");
    const ContactPtr ann = client.addContact(u"ann@x", u"Ann"), bob = client.addContact(u"bob@x", u"Bob");
    ConversationWindow window(client, client.open({ann, bob}), {100, 60, 620, 480});
    client.listen([&](const Change& change) { window.changed(change); });
    window.Show();
    settle();
    visit(window, "client-conversation");
}

void visitLive(const Visit& visit) {
    Client client;
    std::unique_ptr<LiveAccount> account;
    std::unique_ptr<LiveWindow> window;
    client.listen([&](const Change& change) {
        if (change.kind == Change::Kind::window_created) {
            window = std::make_unique<LiveWindow>(client, change.conversation,
                                                  LiveWindow::Hooks{.open_link = [](const std::u16string&) {},
                                                                    .keep_log = [](LiveWindow&) {},
                                                                    .reconnect = [] {}},
                                                  ui::Rect{100, 60, 700, 500});
            window->Show();
        }
        if (window) {
            window->changed(change);
        }
        if (change.kind == Change::Kind::window_destroyed) {
            account->closed(change.conversation);
        }
    });
    account = std::make_unique<LiveAccount>(client, roomSettings(), Status::online, quietHooks());
    account->start();
    account->connected();
    for (const char* line :
         {":irc.example.org 001 me :Welcome", ":irc.example.org 005 me NETWORK=Example :are supported",
          ":irc.example.org 422 me :No message", ":me!u@h JOIN #room",
          ":irc.example.org 353 me = #room :me @ann bob +cy", ":irc.example.org 366 me #room :End",
          ":ann!u@h PRIVMSG #room :hello there", ":bob!u@h PRIVMSG #room :see https://example.org/x"}) {
        account->received(std::string(line) + "\r\n");
    }
    for (int i = 0; i < 100 && (window->ShowTimer.Enabled() || window->PeopleTimer.Enabled()); ++i) {
        window->ShowTimer.onTick();
        window->PeopleTimer.onTick();
    }
    settle();
    visit(*window, "client-live");
    window->TalkMenuFind.onClick();
    settle();
    visit(*window, "client-live-finding");
    window->RulesButt.onClick();
    settle();
    for (int page = 0; window->RulesPage && page < 3; ++page) {
        window->RulesPage->Pages.setSelected(page);
        settle();
        visit(*window->RulesPage, "client-reading-" + std::to_string(page + 1));
    }
    window.reset();
}

} // namespace

void visitMessengerClient(const Visit& visit) {
    visitMain(visit);
    visitConversation(visit);
    visitLive(visit);
}

} // namespace murmelix::test
