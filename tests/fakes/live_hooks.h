// What a live account is given where nothing of it matters; each test sets what it looks at.
#pragma once

#include "companions/messenger/live/account.h"

namespace messenger_client {

// No server, no user, no day that changes.
inline LiveAccount::Hooks quietHooks() {
    return {.open = [](const irc::Address&) {},
            .send = [](std::string_view) {},
            .close = [] {},
            .milliseconds = [] { return 1'000'000LL; },
            .today = [] { return 1'764'000'000'000LL; },
            .random = [] { return 0U; },
            .set_timer = [](unsigned) {},
            .delivered = [] { return true; },
            .failed = [](const std::u16string&) {},
            .tell_user = [](const std::u16string&) {},
            .bring_up = [](const Conversation&) {},
            .characters = [] { return 9; },
            .rules_of = [](const std::u16string&) { return reading::Rules{}; },
            .keep_rules = [](const std::u16string&, const reading::Rules&) {}};
}

// One server, and on it the channel #room, for the nick "me".
inline irc::Settings roomSettings() {
    return {.address = {.host = u"irc.example.org", .channels = {u"#room"}}, .nick = u"me"};
}

} // namespace messenger_client
