#include "companions/messenger/chat/switches.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <map>
#include <string_view>
#include <utility>

#include "common/text.h"

namespace messenger_client {

namespace {

// A number of digits only, with sign and fraction where they are allowed; an empty result where it is none.
std::optional<double> number(const std::u16string& text) {
    if (text.empty() || text.size() > 12 || text.find_first_not_of(u"-.0123456789") != murmelix::npos) {
        return std::nullopt;
    }
    const std::string digits = murmelix::toUtf8(text);
    double value = 0;
    const auto [end, fault] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed);
    if (fault != std::errc() || end != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return value;
}

std::optional<EditClass> editClass(std::u16string_view name) {
    static constexpr std::pair<std::u16string_view, EditClass> classes[] = {
        {u"RichEdit20A", EditClass::rich_edit_20a},
        {u"RichEdit20W", EditClass::rich_edit_20w},
        {u"InkEdit", EditClass::ink_edit},
    };
    for (const auto& [class_name, edit_class] : classes) {
        if (murmelix::sameText(name, class_name, murmelix::LetterCase::ignored)) {
            return edit_class;
        }
    }
    return std::nullopt;
}

} // namespace

Switches parseSwitches(const std::vector<std::u16string>& arguments) {
    Switches switches;
    const auto text = [](std::u16string& place) {
        return [&place](const std::u16string& value) {
            place = value;
            return true;
        };
    };
    const auto count = [](std::size_t& place) {
        return [&place](const std::u16string& value) {
            const auto parsed = number(value);
            if (!parsed || *parsed < 1 || *parsed > 1e9) {
                return false;
            }
            place = static_cast<std::size_t>(*parsed);
            return true;
        };
    };
    const auto pixels = [](std::optional<int>& place) {
        return [&place](const std::u16string& value) {
            const auto parsed = number(value);
            if (!parsed || std::abs(*parsed) > 32000) {
                return false;
            }
            place = static_cast<int>(*parsed);
            return true;
        };
    };
    const auto speed = [&switches](const std::u16string& value) {
        const auto parsed = number(value);
        if (!parsed || *parsed < 0) {
            return false;
        }
        switches.replay.speed = *parsed;
        return true;
    };
    const auto connect = [&switches](const std::u16string& value) {
        if (value.find(u':') != std::u16string::npos) {
            auto parsed = irc::parseAddress(value);
            if (const auto* const fault = std::get_if<irc::Fault>(&parsed)) {
                switches.error = *fault;
                return true;
            }
            switches.address = std::get<irc::Address>(std::move(parsed));
            return true;
        }
        switches.hold = murmelix::sameText(value, u"hold", murmelix::LetterCase::ignored);
        const auto parsed = number(value);
        if (switches.hold) {
            return true;
        }
        if (!parsed || *parsed < 0 || *parsed > 60'000) {
            return false;
        }
        switches.connect = static_cast<long>(*parsed);
        return true;
    };
    const auto idle = [&switches](const std::u16string& value) {
        const auto parsed = number(value);
        if (!parsed || *parsed < 0 || *parsed > 10'000) {
            return false;
        }
        switches.idle = *parsed;
        return true;
    };
    const auto edits = [&switches](const std::u16string& value) {
        const std::size_t plus = std::min(value.find(u'+'), value.size());
        const auto history = editClass(std::u16string_view(value).substr(0, plus));
        const auto input = editClass(std::u16string_view(value).substr(std::min(plus + 1, value.size())));
        if (!history || !input || history == EditClass::ink_edit) {
            return false;
        }
        switches.edits = {*history, *input};
        return true;
    };
    const auto command = [&switches](const std::u16string& value) {
        switches.task = Switches::Task::send;
        switches.command = value;
        return true;
    };
    const std::map<std::u16string, std::function<bool(const std::u16string&)>> with_value{
        {u"conversation", text(switches.conversation)},
        {u"participants", count(switches.replay.participants)},
        {u"messages", count(switches.replay.messages)},
        {u"speed", speed},
        {u"log", text(switches.log)},
        {u"signin", text(switches.signin)},
        {u"friendly", text(switches.friendly)},
        {u"connect", connect},
        {u"nick", text(switches.nick)},
        {u"idle", idle},
        {u"left", pixels(switches.left)},
        {u"top", pixels(switches.top)},
        {u"width", pixels(switches.width)},
        {u"height", pixels(switches.height)},
        {u"edits", edits},
        {u"send", command},
    };
    const std::map<std::u16string, std::function<void()>> alone{
        {u"wait", [&] { switches.wait = true; }},
        {u"exit-when-done", [&] { switches.exit_when_done = true; }},
        {u"signedout", [&] { switches.signed_out = true; }},
        {u"embedding", [&] { switches.embedding = true; }},
        {u"orders", [&] { switches.orders = true; }},
        {u"regserver", [&] { switches.task = Switches::Task::register_server; }},
        {u"unregserver", [&] { switches.task = Switches::Task::unregister_server; }},
    };

    for (std::size_t i = 0; i < arguments.size() && switches.error.empty(); ++i) {
        const std::u16string& argument = arguments[i];
        const bool is_switch = argument.starts_with(u'/') || argument.starts_with(u'-');
        const std::u16string name = is_switch ? murmelix::toLower(std::u16string_view(argument).substr(1)) : u"";
        if (const auto found = alone.find(name); found != alone.end()) {
            found->second();
        } else if (const auto valued = with_value.find(name); valued == with_value.end()) {
            switches.error = u"Unknown switch: " + argument;
        } else if (i + 1 == arguments.size()) {
            switches.error = argument + u" needs a value.";
        } else if (!valued->second(arguments[++i])) {
            switches.error = argument + u" cannot be " + arguments[i] + u".";
        }
    }
    return switches;
}

} // namespace messenger_client
