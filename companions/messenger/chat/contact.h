// Who can be met: statuses and contacts.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>

namespace messenger_client {

// The codes of the automation interface.
enum class Status : long {
    unknown = 0,
    offline = 1,
    online = 2,
    invisible = 6,
    busy = 10,
    be_right_back = 14,
    idle = 18,
    away = 34,
    on_the_phone = 50,
    out_to_lunch = 66,
};

// Text for people; empty for a code that no one can have.
std::u16string_view nameOf(Status status);
bool isStatus(long code);
// What one chooses oneself: idle comes by itself, offline is signing out.
inline constexpr std::array chosen_statuses{Status::online,   Status::busy,         Status::be_right_back,
                                            Status::away,     Status::on_the_phone, Status::out_to_lunch,
                                            Status::invisible};
bool isChosen(Status status);

struct Contact {
    std::u16string signin;
    std::u16string friendly;
    Status status = Status::offline;
    bool blocked = false;
};
using ContactPtr = std::shared_ptr<Contact>;

// UTF-16 units of a name: far more than any window shows, and few enough that names of megabytes cost nobody anything.
inline constexpr std::size_t longest_name = 16'384;
// Contacts of one account: ten times what anybody was seen with. More are refused, so that a program that adds them
// without end fills neither the memory nor the store.
inline constexpr std::size_t most_contacts = 10'000;

// A name on one line: line ends and NULs as blanks, and no more than longest_name of it.
std::u16string oneLine(std::u16string_view text);
// The name of somebody who has told none: the sign-in name before its "@".
std::u16string_view shortName(std::u16string_view signin);

// A sign-in name as one types it. Where it has no place it is somebody's name: it gets the client's own place, and dots
// for its blanks.
std::u16string completedSignin(std::u16string_view typed);
// The name for people of who types a name with blanks for a sign-in name; empty where nobody does.
std::u16string nameTypedForSignin(std::u16string_view typed);
// What keeps a text from being a sign-in name that one can type, for people; empty where nothing does.
std::u16string_view faultOfSignin(std::u16string_view signin);

} // namespace messenger_client
