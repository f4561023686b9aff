#include "companions/messenger/irc/features.h"

#include <algorithm>

#include "companions/messenger/irc/cutting.h"

namespace messenger_client::irc {

namespace {

// Below this a line would have no room for a name and a word.
constexpr std::size_t shortest_line = 256;

bool has(std::string_view signs, char sign) {
    return signs.find(sign) != std::string_view::npos;
}

} // namespace

void Features::read(const Message& message) {
    // The first parameter is one's own nick, the last a sentence.
    for (std::size_t i = 1; i + 1 < message.parameters().size(); ++i) {
        std::string_view value = message.parameter(i);
        if (value.size() <= longest_feature) {
            const std::string_view key = take(value, '=');
            readFeature(key, value);
        }
    }
}

void Features::readFeature(std::string_view key, std::string_view value) {
    if (key == "CASEMAPPING") {
        case_mapping_ = value == "rfc1459"          ? CaseMapping::rfc1459
                        : value == "strict-rfc1459" ? CaseMapping::strict_rfc1459
                                                    : CaseMapping::ascii;
    } else if (key == "NETWORK") {
        network_ = value;
    } else if (key == "LINELEN") {
        if (const auto length = wholeNumber<std::size_t>(value)) {
            line_length_ = std::clamp(*length, shortest_line, longest_sent_line);
        }
    } else if (key == "CHANTYPES") {
        channel_signs_ = value;
    } else if (key == "PREFIX") {
        readRanks(value);
    } else if (key == "CHANMODES") {
        always_ = take(value, ',');
        always_ += take(value, ',');
        when_set_ = take(value, ',');
    }
}

void Features::readRanks(std::string_view value) {
    if (value.empty()) {
        rank_modes_.clear();
        rank_signs_.clear();
        return;
    }
    const std::size_t close = value.find(')');
    if (!value.starts_with('(') || close == std::string_view::npos) {
        return;
    }
    const std::string_view modes = value.substr(1, close - 1), signs = value.substr(close + 1);
    if (modes.size() == signs.size() && modes.size() <= most_ranks) {
        rank_modes_ = modes;
        rank_signs_ = signs;
    }
}

bool Features::isChannel(std::string_view target) const {
    return target.size() > 1 && has(channel_signs_, target.front());
}

std::string_view Features::withoutRank(std::string_view target) const {
    const bool ranked = target.size() > 1 && has(rank_signs_, target.front()) && isChannel(target.substr(1));
    return target.substr(ranked ? 1 : 0);
}

bool Features::takesParameter(char mode, bool set) const {
    return has(always_, mode) || (set && has(when_set_, mode));
}

} // namespace messenger_client::irc
