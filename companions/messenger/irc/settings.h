// How somebody signs in to a chat.
#pragma once

#include <string>

#include "companions/messenger/irc/address.h"

namespace messenger_client::irc {

struct Settings {
    Address address = {};
    std::u16string nick = {};    // of the streaming chat the account's name; without a token it is not needed
    std::u16string account = {}; // by SASL, where there is a password; empty: that of the nick
    std::u16string password =
        {}; // the account's, empty: none; of the streaming chat its token, with or without "oauth:"
    std::u16string server_password = {}; // some servers have one for everybody
    // Passwords go over a connection without TLS; else they stay here, and the user is told.
    bool password_in_the_clear = false;
    std::u16string real_name = {}; // others can see it; empty: the nick
    std::u16string program = {};   // the answer to who asks for the program and its version; empty: none
};

} // namespace messenger_client::irc
