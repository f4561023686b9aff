// What the user types into a conversation: text, or a command behind "/".
#pragma once

#include <string>
#include <string_view>
#include <variant>

namespace messenger_client::irc {

namespace typed {

struct Say {
    std::u16string text;
};
struct Act { // /me
    std::u16string text;
};
struct Message { // /msg
    std::u16string target, text;
};
struct Join { // parted by commas or blanks
    std::u16string channels;
};
struct Part { // an empty channel is that of the conversation
    std::u16string channel, why;
};
struct Nick {
    std::u16string nick;
};
struct Away { // an empty text ends being away
    std::u16string text;
};
struct Query { // a conversation with one person; the text may be empty
    std::u16string nick, text;
};
struct Quote {
    std::u16string line;
};
struct Refused {
    std::u16string why; // a sentence for people
};

} // namespace typed

using Typed = std::variant<typed::Say, typed::Act, typed::Message, typed::Join, typed::Part, typed::Nick, typed::Away,
                           typed::Query, typed::Quote, typed::Refused>;

// A text that begins with "//" is said with one of them. Commands are the same in any letter case.
Typed parseTyped(std::u16string_view text);

} // namespace messenger_client::irc
