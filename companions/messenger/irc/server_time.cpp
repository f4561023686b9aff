#include "companions/messenger/irc/server_time.h"

#include <chrono>

#include "companions/messenger/irc/cutting.h"
#include "companions/messenger/irc/line.h"

namespace messenger_client::irc {

namespace {

// The whole of the text as a number of digits alone.
std::optional<int> number(std::string_view digits) {
    int value = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9') {
            return std::nullopt;
        }
        value = value * 10 + (digit - '0');
    }
    return value;
}

} // namespace

std::optional<long long> parseServerTime(std::string_view text) {
    constexpr std::string_view form = "dddd-dd-ddTdd:dd:dd.dddZ";
    if (text.size() != form.size()) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < form.size(); ++i) {
        if (form[i] != 'd' && text[i] != form[i]) {
            return std::nullopt;
        }
    }
    const auto year = number(text.substr(0, 4)), month = number(text.substr(5, 2)), day = number(text.substr(8, 2));
    const auto hour = number(text.substr(11, 2)), minute = number(text.substr(14, 2)),
               second = number(text.substr(17, 2)), millisecond = number(text.substr(20, 3));
    if (!year || !month || !day || !hour || !minute || !second || !millisecond) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
    // A leap second is the 60th.
    if (!date.ok() || *hour > 23 || *minute > 59 || *second > 60) {
        return std::nullopt;
    }
    const long long days = std::chrono::sys_days(date).time_since_epoch().count();
    return (((days * 24 + *hour) * 60 + *minute) * 60 + *second) * 1000 + *millisecond;
}

std::optional<long long> timeOf(const Message& message) {
    if (message.hasTag("time")) {
        return parseServerTime(message.tag("time"));
    }
    const std::optional<long long> sent = wholeNumber<long long>(message.tag("tmi-sent-ts"));
    return sent && *sent >= 0 ? sent : std::nullopt;
}

} // namespace messenger_client::irc
