// The way of a session: connecting, registering, staying, leaving.
#include "companions/messenger/irc/session.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/messenger_irc/chat.h"

namespace messenger_client::irc {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Registration, OnAServerWithoutCapabilities) {
    Chat chat;
    chat.session.start(chat.now);
    EXPECT_EQ(chat.session.state(), State::connecting);
    EXPECT_EQ(chat.opened, 1);
    EXPECT_THAT(chat.sent(), IsEmpty());
    chat.session.connected(chat.now);
    EXPECT_THAT(chat.sent(), ElementsAre("CAP LS 302", "NICK me", "USER me 0 * me"));
    chat.server(":irc.example.org 421 * CAP :Unknown command");
    chat.server("PING :cookie");
    EXPECT_THAT(chat.sent(), ElementsAre("PONG cookie"));
    EXPECT_EQ(chat.session.state(), State::registering);
    chat.welcome("me", "NETWORK=Example");
    EXPECT_THAT(chat.sent(), ElementsAre("JOIN #room"));
    EXPECT_EQ(chat.session.state(), State::online);
    EXPECT_THAT(chat.told(), ElementsAre("connecting", "registering", "online me Example"));
}

} // namespace

} // namespace messenger_client::irc
