#include "companions/messenger/reading/repeats.h"

#include <algorithm>
#include <string>
#include <utility>

#include "common/text.h"
#include "companions/messenger/reading/characters.h"

namespace messenger_client::reading {

namespace {

using View = std::u16string_view;

std::u16string compared(View text) {
    std::u16string result;
    for (std::size_t at = 0; at < text.size() && result.size() < Repeats::most_compared;) {
        const auto [code, units] = characterAt(text, at);
        if (isLetter(code) || isDigit(code)) {
            const char16_t lower = murmelix::toLower(text[at]);
            if (units > 1 || result.empty() || result.back() != lower) {
                result.append(text, at, units);
                result[result.size() - units] = units > 1 ? text[at] : lower;
            }
        }
        at += units;
    }
    return result.empty() ? murmelix::toLower(text.substr(0, Repeats::most_compared)) : result;
}

std::vector<std::uint32_t> groupsOf(View text) {
    std::vector<std::uint32_t> groups;
    groups.reserve(text.size());
    for (std::size_t at = 0; at + 3 <= text.size(); ++at) {
        groups.push_back((text[at] * 0x9E3779B1u) ^ (text[at + 1] * 0x85EBCA6Bu) ^ (text[at + 2] * 0xC2B2AE35u));
    }
    std::sort(groups.begin(), groups.end());
    return groups;
}

// Twice the common ones to all of both are four fifths.
bool alike(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b) {
    const std::size_t all = a.size() + b.size();
    if (10 * std::min(a.size(), b.size()) < 4 * all || all == 0) {
        return false;
    }
    std::size_t common = 0;
    for (auto left = a.begin(), right = b.begin(); left != a.end() && right != b.end();) {
        if (*left == *right) {
            ++common;
            ++left;
            ++right;
        } else if (*left < *right) {
            ++left;
        } else {
            ++right;
        }
    }
    return 10 * common >= 4 * all;
}

} // namespace

std::optional<Unread> Repeats::look(unsigned long long number, std::u16string_view person, std::u16string_view text,
                                    long long now) {
    while (!said_.empty() && now - said_.front().time > longest_remembered) {
        said_.pop_front();
    }
    Said said{number, std::u16string(person), compared(text), {}, now};
    said.groups = groupsOf(said.text);
    const bool short_one = said.text.size() <= short_answer;
    std::size_t answers = 0;
    for (const Said& before : said_) {
        if (before.text == said.text) {
            if (!short_one || before.person == said.person || ++answers >= most_answers) {
                return Unread::repeated;
            }
        } else if (!short_one && alike(before.groups, said.groups)) {
            return Unread::nearly_repeated;
        }
    }
    said_.push_back(std::move(said));
    if (said_.size() > most_remembered) {
        said_.pop_front();
    }
    return std::nullopt;
}

void Repeats::forget(unsigned long long number) {
    std::erase_if(said_, [&](const Said& said) { return said.number == number; });
}

} // namespace messenger_client::reading
