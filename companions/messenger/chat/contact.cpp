#include "companions/messenger/chat/contact.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/text.h"

namespace messenger_client {

namespace {

// As long as a mail address can be.
constexpr std::size_t longest_signin = 320;

constexpr std::u16string_view own_place = u"@messenger.example";

constexpr std::array<std::pair<Status, std::u16string_view>, 9> status_names{{
    {Status::offline, u"Offline"},
    {Status::online, u"Online"},
    {Status::invisible, u"Appear offline"},
    {Status::busy, u"Busy"},
    {Status::be_right_back, u"Be right back"},
    {Status::idle, u"Idle"},
    {Status::away, u"Away"},
    {Status::on_the_phone, u"On the phone"},
    {Status::out_to_lunch, u"Out to lunch"},
}};

bool cannotBeTyped(char16_t unit) {
    return unit <= u' ' || unit == 0x7F || unit == u'\\' || (unit >= 0xD800 && unit < 0xE000);
}

} // namespace

std::u16string_view nameOf(Status status) {
    for (const auto& [code, name] : status_names) {
        if (code == status) {
            return name;
        }
    }
    return {};
}

bool isStatus(long code) {
    return !nameOf(static_cast<Status>(code)).empty();
}

bool isChosen(Status status) {
    return std::find(chosen_statuses.begin(), chosen_statuses.end(), status) != chosen_statuses.end();
}

std::u16string oneLine(std::u16string_view text) {
    if (text.size() > longest_name) {
        const bool parts_pair = text[longest_name] >= 0xDC00 && text[longest_name] < 0xE000;
        text = text.substr(0, longest_name - (parts_pair ? 1 : 0));
    }
    std::u16string line(text);
    std::replace_if(
        line.begin(), line.end(), [](char16_t unit) { return unit == u'\r' || unit == u'\n' || unit == u'\0'; }, u' ');
    return line;
}

std::u16string_view shortName(std::u16string_view signin) {
    return signin.substr(0, signin.find(u'@'));
}

std::u16string completedSignin(std::u16string_view typed) {
    if (typed.empty() || typed.find(u'@') != murmelix::npos) {
        return std::u16string(typed);
    }
    std::u16string signin;
    for (std::size_t i = 0; i < typed.size(); ++i) {
        if (typed[i] != u' ') {
            signin += typed[i];
        } else if (i == 0 || typed[i - 1] != u' ') {
            signin += u'.';
        }
    }
    return signin + std::u16string(own_place);
}

std::u16string nameTypedForSignin(std::u16string_view typed) {
    const std::u16string_view name = murmelix::trim(typed);
    const bool is_name = name.find(u' ') != murmelix::npos && name.find(u'@') == murmelix::npos;
    return is_name ? std::u16string(name) : std::u16string();
}

std::u16string_view faultOfSignin(std::u16string_view signin) {
    if (signin.empty()) {
        return u"Please type a sign-in name.";
    }
    if (signin.size() > longest_signin) {
        return u"That is too long for a sign-in name.";
    }
    if (std::any_of(signin.begin(), signin.end(), cannotBeTyped)) {
        return u"A sign-in name has no blanks, and no signs but those that one sees.";
    }
    const std::size_t at = signin.find(u'@');
    if (at == murmelix::npos || at == 0 || at + 1 == signin.size() || signin.find(u'@', at + 1) != murmelix::npos) {
        return u"A sign-in name looks like name@place.";
    }
    return {};
}

} // namespace messenger_client
