// Who is met in a chat.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace messenger_client::irc {

// UTF-16 units of a nick, an account's name and a name to show: twice what servers allow.
inline constexpr std::size_t longest_person_name = 64;

// One and the same object for as long as the session knows the person, whatever they call themselves meanwhile. The
// session changes it, and tells what has changed. Names hold nothing that cannot be shown.
struct Person {
    std::u16string nick;
    std::u16string user, host;   // empty where they are not known
    std::u16string account;      // on the network's services; empty: none that is known
    std::u16string user_id;      // of the streaming chat: who it is, for good
    std::u16string display_name; // of the streaming chat: the nick as its owner writes it, or in other letters
    bool away = false;
    std::u16string signin; // see signinName
};
using PersonPtr = std::shared_ptr<const Person>;

// By what the person is found again tomorrow, different for each person: the account's name where there is one; else
// "nick@network"; in the streaming chat "user-id@twitch". It may change until the first line of the person is told,
// which tells the account as well; from then on it stays, whatever the person is called. Signs that have a meaning in
// paths, registry keys and addresses stand in it as %XX.
inline const std::u16string& signinName(const Person& person) {
    return person.signin;
}

// The name to show.
inline const std::u16string& shownName(const Person& person) {
    return person.display_name.empty() ? person.nick : person.display_name;
}

} // namespace messenger_client::irc
