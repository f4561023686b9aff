// The clients of Messenger and Agent against servers in another process, which dies when it is told to.
#include <gmock/gmock.h>

#include "common/com/handles.h"
#include "common/text.h"
#include "platform/win32/agent_client.h"
#include "platform/win32/messenger_client.h"
#include "tests/windows/program/neighbour_server.h"

namespace murmelix::platform {
namespace {

using win32::connectAgent;
using win32::connectMessenger;

class ClientsTest : public testing::Test {
    const com::Apartment apartment_;
    const test::NeighbourRegistration registration_;
};

TEST_F(ClientsTest, MessengerAnswers) {
    const auto messenger = connectMessenger(test::messenger_prog_id, {});
    EXPECT_EQ(messenger->MyStatus(), 34);
    EXPECT_EQ(messenger->MyFriendlyName(), u"Test user");
    EXPECT_EQ(messenger->UnreadEmailCount(0), 7);
    const auto contacts = messenger->MyContacts();
    ASSERT_EQ(contacts->Count(), 1);
    EXPECT_EQ(contacts->Item(0)->FriendlyName(), u"Ann \U0001F600");
    EXPECT_EQ(contacts->Item(0)->SigninName(), u"ann@test");
    EXPECT_THROW(contacts->Item(1), NeighbourError);
}

TEST_F(ClientsTest, FailureCarriesTheServersResultAndWords) {
    const auto messenger = connectMessenger(test::messenger_prog_id, {});
    try {
        messenger->MySigninName();
        FAIL();
    } catch (const NeighbourError& error) {
        EXPECT_EQ(error.result(), static_cast<std::int32_t>(E_FAIL));
        EXPECT_THAT(error.what(), testing::HasSubstr("nobody is signed in"));
    }
    EXPECT_EQ(messenger->MyStatus(), 34) << "and the next call goes on";
}

TEST_F(ClientsTest, MessengerEventsArriveInTheMiddleOfACallInOrder) {
    std::string heard;
    MessengerApi* api = nullptr;
    MessengerEvents events;
    events.OnSignin = [&](std::int32_t result) { heard += "signin" + std::to_string(result) + " "; };
    events.OnSignout = [&] { heard += "signout "; };
    events.OnMyFriendlyNameChange = [&](std::int32_t, const std::u16string& previous) {
        heard += "name:" + toUtf8(previous) + " ";
    };
    events.OnMyStatusChange = [&](std::int32_t, std::int32_t status) {
        EXPECT_TRUE(neighbourCallPending());
        heard += "status" + std::to_string(status) + "/" + std::to_string(api->MyStatus()) + " ";
    };
    events.OnUnreadEmailChange = [&] { heard += "mail "; };
    events.OnIMWindowCreated = [&](std::shared_ptr<MessengerWindow> window) {
        EXPECT_EQ(window->Handle(), 2048);
        EXPECT_EQ(window->Left(), 2049);
        EXPECT_EQ(window->Top(), 2050);
        EXPECT_EQ(window->Width(), 2051);
        EXPECT_EQ(window->Height(), 2052);
        EXPECT_EQ(window->Contacts()->Count(), 1);
        EXPECT_EQ(window->Contacts()->Item(0)->SigninName(), u"ann@test") << "Item is a method there";
        const std::u16string history = window->History();
        EXPECT_EQ(history.size(), 500000u + 1 + 2 + 9 + 2 + 2);
        EXPECT_TRUE(history.ends_with(u"Ann says:\r\nhi"));
        heard += "created ";
        throw NeighbourError(0, "a handler that fails");
    };
    events.OnIMWindowContactAdded = [&](auto contact, auto window) {
        heard += "added:" + toUtf8(contact->SigninName()) + std::to_string(window->Handle()) + " ";
    };
    events.OnIMWindowContactRemoved = [&](auto, auto) { heard += "removed "; };
    events.OnIMWindowDestroyed = [&](auto) { heard += "destroyed "; };
    events.OnAppShutdown = [&] { heard += "shutdown"; };
    const auto messenger = connectMessenger(test::messenger_prog_id, std::move(events));
    api = messenger.get();
    messenger->Signin(0, test::ask_for_events, u"");
    EXPECT_EQ(heard, "signin-5 signout name:before status10/34 mail created added:ann@test2048 removed destroyed "
                     "shutdown");
    EXPECT_FALSE(neighbourCallPending());
}

TEST_F(ClientsTest, MessengerThatDiesInTheMiddleOfACallEndsTheCall) {
    const auto messenger = connectMessenger(test::mortal_messenger_prog_id, {});
    EXPECT_EQ(messenger->MyStatus(), 34);
    EXPECT_THROW(messenger->Signin(0, test::ask_for_death, u""), NeighbourError);
    EXPECT_THROW(messenger->MyStatus(), NeighbourError);
    EXPECT_FALSE(neighbourCallPending());
}

// Serves messages until something has come true.
void serveUntil(const std::function<bool()>& condition) {
    MSG message{};
    while (!condition() && GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
}

TEST_F(ClientsTest, MessengerThatEndsWithoutAWordHasSignedOut) {
    int signouts = 0;
    MessengerEvents events;
    events.OnSignout = [&] { ++signouts; };
    const auto messenger = connectMessenger(test::vanishing_messenger_prog_id, std::move(events));
    EXPECT_THROW(messenger->Signin(0, test::ask_for_death, u""), NeighbourError);
    EXPECT_EQ(signouts, 0) << "not in the middle of a call";
    serveUntil([&] { return signouts > 0; });
    EXPECT_EQ(signouts, 1);
    EXPECT_EQ(messenger->MyStatus(), 34) << "the next use starts another one";
}

TEST_F(ClientsTest, MessengerThatReturnsByItselfIsJoined) {
    int signouts = 0, returns = 0;
    MessengerEvents events;
    events.OnSignout = [&] { ++signouts; };
    events.Returned = [&] { ++returns; };
    const auto messenger = connectMessenger(test::returning_messenger_prog_id, std::move(events));
    EXPECT_THROW(messenger->Signin(0, test::ask_for_death, u""), NeighbourError);
    serveUntil([&] { return signouts > 0; });
    EXPECT_EQ(returns, 0);
    const auto another = connectMessenger(test::returning_messenger_prog_id, {}); // who starts it
    EXPECT_EQ(another->MyStatus(), 34);
    serveUntil([&] { return returns > 0; });
    EXPECT_EQ(returns, 1);
    EXPECT_EQ(messenger->MyStatus(), 34);
}

TEST_F(ClientsTest, AgentThatEndsWithoutAWordHasShutDown) {
    int shutdowns = 0;
    AgentEvents events;
    events.Shutdown = [&] { ++shutdowns; };
    const auto agent = connectAgent(test::vanishing_agent_prog_id, std::move(events));
    EXPECT_THROW(agent->Unload(u"ann@test"), NeighbourError);
    serveUntil([&] { return shutdowns > 0; });
    EXPECT_EQ(shutdowns, 1);
}

TEST_F(ClientsTest, MissingNeighbourFailsEveryCall) {
    const auto messenger = connectMessenger(u"MurmelixTest.Nobody", {});
    EXPECT_THROW(messenger->MyStatus(), NeighbourError);
    const auto agent = connectAgent(u"MurmelixTest.Nobody", {});
    EXPECT_THROW(agent->setRaiseRequestErrors(true), NeighbourError);
    EXPECT_THROW(agent->Character(u"ann@test"), NeighbourError);
}

TEST_F(ClientsTest, AgentAnswers) {
    const auto agent = connectAgent(test::agent_prog_id, {});
    EXPECT_TRUE(agent->AudioOutputEnabled());
    EXPECT_TRUE(agent->Load(u"ann@test", u"C:\\x.acs"));
    EXPECT_THROW(agent->Load(u"bob@test", u"C:\\x.acs"), NeighbourError);
    const auto character = agent->Character(u"ann@test");
    EXPECT_EQ(character->Name(), u"Anna");
    EXPECT_FALSE(character->Visible());
    EXPECT_EQ(character->Left(), -300);
    EXPECT_EQ(character->BalloonStyle(), 0x2001C);
    character->setBalloonStyle(0x2000A);
    EXPECT_EQ(character->BalloonStyle(), 0x2000A);
    EXPECT_TRUE(character->Play(u"Wave"));
    EXPECT_THROW(character->Play(u"Fly"), NeighbourError);
    EXPECT_THROW(character->Stop(u"play"), NeighbourError);
    EXPECT_TRUE(character->Speak(u"words", {}));
    EXPECT_TRUE(character->Speak({}, u"C:\\x.wav"));
    EXPECT_THROW(character->Top(), NeighbourError) << "a member that the server lacks";
}

TEST_F(ClientsTest, AgentEventsArriveInTheMiddleOfACall) {
    std::string heard;
    AgentEvents events;
    events.Command = [&](const std::u16string& name) { heard += "command:" + toUtf8(name) + " "; };
    events.DblClick = [&](const std::u16string& id, std::int16_t button, std::int16_t shift, std::int16_t x,
                          std::int16_t y) {
        heard += "double:" + toUtf8(id) + std::to_string(button) + std::to_string(shift) + std::to_string(x) +
                 std::to_string(y) + " ";
    };
    events.IdleStart = [&](const std::u16string& id) { heard += "idle:" + toUtf8(id) + " "; };
    events.Restart = [&] { heard += "restart "; };
    events.Shutdown = [&] { heard += "shutdown"; };
    const auto agent = connectAgent(test::agent_prog_id, std::move(events));
    agent->setRaiseRequestErrors(true);
    EXPECT_EQ(heard, "command:ann@testQ% double:ann@test1234 idle:ann@test restart shutdown");
}

TEST_F(ClientsTest, AgentThatDiesInTheMiddleOfACallEndsTheCall) {
    const auto agent = connectAgent(test::mortal_agent_prog_id, {});
    const auto character = agent->Character(u"ann@test");
    EXPECT_THROW(agent->Unload(u"ann@test"), NeighbourError);
    EXPECT_THROW(character->Name(), NeighbourError);
    EXPECT_THROW(agent->AudioOutputEnabled(), NeighbourError);
}

} // namespace
} // namespace murmelix::platform
