// The chat network that the user is signed in to, with imitated servers behind its connections.
#include "companions/messenger/client/live_service.h"

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "companions/messenger/client/account.h"
#include "tests/fakes/connections.h"
#include "tests/fakes/fakes.h"
#include "tests/fakes/ui/windows.h"
#include "tests/fakes/user_store.h"

namespace messenger_client {

namespace {

namespace fakes = murmelix::fakes;
namespace platform = murmelix::platform;
using murmelix::toUtf8;
using testing::HasSubstr;
using testing::IsEmpty;

struct LiveServices : testing::Test {
    Client client;
    std::vector<std::string> faults;
    std::unique_ptr<LiveService> service;

    LiveServices() {
        fakes::userStores() = {};
        fakes::screen() = {};
        fakes::servers() = {};
        service = std::make_unique<LiveService>(
            client, LiveService::Hooks{.delivered = [] { return true; },
                                       .failed = [this](const std::u16string& why) { faults.push_back(toUtf8(why)); },
                                       .tell_user = [](const std::u16string&) {},
                                       .bring_up = [](const Conversation&) {}});
        client.listen([this](const Change& change) { service->changed(change); });
    }
    ~LiveServices() override {
        service.reset();
        fakes::servers() = {};
        fakes::screen() = {};
    }
    void signIn(irc::Dialect dialect = irc::Dialect::irc) {
        service->signIn(
            {.address = {.dialect = dialect, .host = u"irc.example.org", .channels = {u"#room"}}, .nick = u"me"},
            Status::online);
    }
    fakes::ServerSide& server() { return *fakes::servers().connections.back(); }
    void welcome() {
        server().open();
        server().send(":s 001 me :Welcome\r\n:s 422 me :No message\r\n:me!u@h JOIN #room\r\n");
    }
    void runPosted() {
        for (const auto& action : std::exchange(fakes::screen().posted, {})) {
            action();
        }
    }
};

TEST_F(LiveServices, ConnectToTheServerAndEnter) {
    signIn();
    ASSERT_EQ(fakes::servers().connections.size(), 1u);
    EXPECT_EQ(server().target.host, u"irc.example.org");
    EXPECT_EQ(server().target.port, 6697);
    EXPECT_TRUE(server().target.tls);
    welcome();
    EXPECT_THAT(server().received, HasSubstr("NICK me\r\n"));
    EXPECT_TRUE(client.signedIn());
    ASSERT_EQ(client.conversations().size(), 1u);
    EXPECT_EQ(client.conversations().front()->live()->title(), u"#room");
}

TEST_F(LiveServices, ACertificateThatIsNotGoodEndsTheSignIn) {
    signIn();
    server().refuse({platform::ConnectionFault::certificate_out_of_date, u"The certificate is out of date."});
    EXPECT_THAT(faults, testing::ElementsAre(HasSubstr("The certificate is out of date.")));
    EXPECT_FALSE(client.signedIn());
    EXPECT_FALSE(client.signingIn());
    EXPECT_EQ(fakes::servers().connections.size(), 1u) << "it is not tried again";
    runPosted();
    EXPECT_FALSE(service->signedIn());
}

TEST_F(LiveServices, ALostConnectionIsMadeAgainWhenItsTimeHasCome) {
    signIn();
    welcome();
    server().close({platform::ConnectionFault::none, u"irc.example.org has closed the connection."});
    EXPECT_TRUE(client.signedIn());
    EXPECT_EQ(fakes::servers().connections.size(), 1u);
    service->reconnect();
    ASSERT_EQ(fakes::servers().connections.size(), 2u);
    welcome();
    EXPECT_EQ(client.conversations().size(), 1u);
}

TEST_F(LiveServices, SigningOutSaysGoodbye) {
    signIn();
    welcome();
    const auto first = fakes::servers().connections.back();
    client.signOut();
    EXPECT_THAT(first->received, HasSubstr("QUIT"));
    EXPECT_TRUE(first->gone);
    EXPECT_FALSE(service->signedIn());
    EXPECT_THAT(client.conversations(), IsEmpty());
    runPosted();
    signIn();
    welcome();
    EXPECT_TRUE(client.signedIn()) << "and back again";
}

TEST_F(LiveServices, AnotherAccountTakesItsPlace) {
    signIn();
    welcome();
    const auto first = fakes::servers().connections.back();
    client.signIn(u"you@x", u"You");
    EXPECT_TRUE(first->gone);
    EXPECT_FALSE(service->signedIn());
    EXPECT_EQ(client.me()->signin, u"you@x");
    EXPECT_EQ(service->join(u"#other"), u"You are signed in to no chat network.");
}

TEST_F(LiveServices, CancellingGivesTheConnectionUp) {
    signIn();
    client.failSignIn(signin_cancelled);
    EXPECT_TRUE(server().gone);
    EXPECT_FALSE(service->signedIn());
}

TEST_F(LiveServices, ContactsOfANetworkAreTalkedToThere) {
    signIn();
    welcome();
    server().send(":ann!u@h JOIN #room\r\n:ann!u@h PRIVMSG me :psst\r\n");
    ASSERT_EQ(client.conversations().size(), 2u);
    const ContactPtr ann = client.conversations().back()->participants().front();
    EXPECT_EQ(client.openWith(ann), client.conversations().back());
    client.close(ConversationPtr(client.conversations().back()));
    const ConversationPtr again = client.openWith(ann);
    ASSERT_TRUE(again);
    EXPECT_TRUE(again->live());
}

TEST_F(LiveServices, StreamsComeFromAnotherServerWhereTheUserSaysSo) {
    fakes::userStores().values[u"Software\\MessengerClient\\StreamingServer"] = std::u16string(u"irc://127.0.0.1:7000");
    signIn(irc::Dialect::twitch);
    EXPECT_EQ(server().target.host, u"127.0.0.1");
    EXPECT_EQ(server().target.port, 7000);
    EXPECT_FALSE(server().target.tls);
    signIn();
    EXPECT_EQ(server().target.host, u"irc.example.org") << "others do not";
}

TEST_F(LiveServices, RulesOfAConversationAreThereTheNextTime) {
    signIn();
    welcome();
    reading::Rules rules = client.conversations().front()->live()->rules();
    rules.lines_a_minute = 5;
    client.conversations().front()->live()->setRules(rules);
    client.signOut();
    runPosted();
    signIn();
    welcome();
    EXPECT_EQ(client.conversations().front()->live()->rules().lines_a_minute, 5);
}

} // namespace

} // namespace messenger_client
