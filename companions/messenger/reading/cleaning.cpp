#include "companions/messenger/reading/cleaning.h"

#include <algorithm>
#include <utility>

#include "common/text.h"
#include "companions/messenger/reading/characters.h"
#include "companions/messenger/reading/links.h"

namespace messenger_client::reading {

namespace {

using View = std::u16string_view;
using murmelix::LetterCase;
using murmelix::npos;
using murmelix::sameText;

// How often the same is said in a row, be it a letter, a sign, a syllable or a word.
constexpr std::size_t most_alike = 3;
// Letters of a syllable and words of a phrase that are looked for in a row.
constexpr std::size_t longest_syllable = 4, longest_phrase = 8;
// Signs in a row that can be a face; of a longer row so many stay.
constexpr std::size_t most_signs = 8, signs_kept = 3;
// Digits that are a number one can imagine; of a longer one so many are said.
constexpr std::size_t most_digits = 9, digits_kept = 4;
// Letters and digits that are a word; of longer ones (keys, checksums) so many are said.
constexpr std::size_t most_of_word = 40, word_kept = 12;

// Of a link's host: more parts, or longer ones, are told by the last ones, which say whose it is.
constexpr std::size_t most_host_parts = 3, longest_host = 60, longest_host_part = 63;

constexpr View ellipsis = u"…";
constexpr View a_link = u"a link";

bool isLetterOrDigit(char32_t code) {
    return isLetter(code) || isDigit(code);
}

bool isSign(char32_t code) {
    return !isLetterOrDigit(code) && !isBlank(code) && !isMark(code);
}

bool isAsciiWord(char16_t unit) {
    return unit < 0x80 && (isLetterOrDigit(unit) || unit == u'_');
}

bool partsPair(View text, std::size_t at) {
    return at > 0 && at < text.size() && (text[at] & 0xFC00) == 0xDC00 && (text[at - 1] & 0xFC00) == 0xD800;
}

// Units from the start that hold no more than `most`, and no half character.
View firstUnits(View text, std::size_t most) {
    if (text.size() <= most) {
        return text;
    }
    return text.substr(0, partsPair(text, most) ? most - 1 : most);
}

// In order, within the text and apart from one another.
std::vector<Range> sound(std::vector<Range> ranges, View text) {
    std::ranges::sort(ranges, {}, &Range::begin);
    std::vector<Range> kept;
    for (const Range& range : ranges) {
        const bool whole = !partsPair(text, range.begin) && !partsPair(text, range.end);
        const bool apart = kept.empty() || kept.back().end <= range.begin;
        if (range.begin < range.end && range.end <= text.size() && whole && apart) {
            kept.push_back(range);
        }
    }
    return kept;
}

// Pictures of the chat that follow one another: the same one once, and no more than `most`.
std::u16string withFewEmotes(View text, const std::vector<Range>& emotes, std::size_t most) {
    std::u16string result;
    std::size_t at = 0, in_row = 0;
    View last;
    for (const Range& emote : sound(emotes, text)) {
        const View between = text.substr(at, emote.begin - at);
        if (!std::ranges::all_of(between, [](char16_t unit) { return isBlank(unit); })) {
            in_row = 0;
            last = {};
        }
        result.append(between);
        at = emote.end;
        const View name = text.substr(emote.begin, emote.end - emote.begin);
        if (name == last || in_row >= most) {
            continue;
        }
        result.append(name);
        last = name;
        ++in_row;
    }
    result.append(text.substr(at));
    return result;
}

bool isIpNumber(View host) {
    return std::ranges::all_of(host, [](char16_t unit) { return isDigit(unit) || unit == u'.'; });
}

enum class Script { latin, other, none };
Script scriptOf(char32_t code) {
    if (isDigit(code) || code == U'-') {
        return Script::none;
    }
    return code < 0x250 ? Script::latin : Script::other;
}

// A part of a host's name that looks like what it is: of letters that are not mixed with look-alikes of others.
bool isHonestPart(View part) {
    if (part.empty() || part.size() > longest_host_part || sameText(part.substr(0, 4), u"xn--", LetterCase::ignored)) {
        return false;
    }
    Script script = Script::none;
    for (std::size_t at = 0; at < part.size();) {
        const auto [code, units] = characterAt(part, at);
        at += units;
        const bool allowed = isLetterOrDigit(code) || code == U'-' || (code < 0x80 && code == U'_');
        const Script its = scriptOf(code);
        if (!allowed || (its != Script::none && script != Script::none && its != script)) {
            return false;
        }
        script = its == Script::none ? script : its;
    }
    return true;
}

std::u16string withLinks(View text, Links links) {
    if (links == Links::whole) {
        return std::u16string(text);
    }
    std::u16string result;
    std::size_t copied = 0;
    for (const Range& link : linksIn(text)) {
        result.append(text.substr(copied, link.begin - copied));
        if (links == Links::named) {
            result.append(linkName(text.substr(link.begin, link.end - link.begin)));
        }
        copied = link.end;
    }
    return result.append(text.substr(copied));
}

std::u16string withWords(View text, std::span<const WordRule> words) {
    std::u16string result;
    bool word_begins = true;
    for (std::size_t at = 0; at < text.size();) {
        const WordRule* found = nullptr;
        if (word_begins) {
            for (const WordRule& rule : words) {
                const std::size_t end = at + rule.word.size();
                if (!rule.word.empty() && sameText(text.substr(at, rule.word.size()), rule.word, LetterCase::ignored) &&
                    (end >= text.size() || !isLetterOrDigit(characterAt(text, end).code) ||
                     !isLetterOrDigit(characterAt(text, end - 1).code))) {
                    found = &rule;
                    break;
                }
            }
        }
        if (found) {
            result += found->replacement;
            at += found->word.size();
            word_begins = true;
            continue;
        }
        const auto [code, units] = characterAt(text, at);
        word_begins = !isLetterOrDigit(code);
        result.append(text, at, units);
        at += units;
    }
    return result;
}

// Keeps of what repeats with a period of at most `longest` parts the first most_alike times.
template <class Part, class Same>
std::vector<Part> withFewAlike(const std::vector<Part>& parts, std::size_t longest, Same same) {
    std::vector<Part> kept;
    for (std::size_t at = 0; at < parts.size();) {
        std::size_t period = 1, times = 1;
        for (; period <= longest; ++period) {
            times = 1;
            const auto alike = [&](std::size_t from) {
                for (std::size_t i = 0; i < period; ++i) {
                    if (from + i >= parts.size() || !same(parts[at + i], parts[from + i])) {
                        return false;
                    }
                }
                return true;
            };
            while (alike(at + times * period)) {
                ++times;
            }
            if (times > most_alike) {
                break;
            }
        }
        const std::size_t count = period > longest ? 1 : most_alike * period;
        kept.insert(kept.end(), parts.begin() + static_cast<std::ptrdiff_t>(at),
                    parts.begin() + static_cast<std::ptrdiff_t>(at + count));
        at += period > longest ? 1 : times * period;
    }
    return kept;
}

std::u16string withShortRows(View text) {
    std::vector<char32_t> codes;
    codes.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const auto [code, units] = characterAt(text, at);
        codes.push_back(code);
        at += units;
    }
    codes = withFewAlike(codes, longest_syllable, [](char32_t a, char32_t b) {
        const auto lower = [](char32_t code) {
            return code < 0x10000 ? murmelix::toLower(static_cast<char16_t>(code)) : code;
        };
        return !isDigit(a) && !isBlank(a) && lower(a) == lower(b);
    });
    std::u16string result;
    for (std::size_t at = 0; at < codes.size();) {
        std::size_t end = at;
        while (end < codes.size() && isSign(codes[end])) {
            ++end;
        }
        const std::size_t kept = end - at > most_signs ? at + signs_kept : end;
        while (at < kept) {
            append(result, codes[at++]);
        }
        at = end;
        if (at < codes.size()) {
            append(result, codes[at++]);
        }
    }
    return result;
}

std::u16string withShortWords(View text) {
    std::u16string result;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t digits = at;
        while (digits < text.size() && isDigit(text[digits])) {
            ++digits;
        }
        std::size_t end = digits;
        while (end < text.size() && isAsciiWord(text[end])) {
            ++end;
        }
        if (end == at) {
            result.push_back(text[at++]);
            continue;
        }
        if (end - at > most_of_word) {
            result.append(text.substr(at, word_kept)).append(ellipsis);
            at = end;
        } else if (digits - at > most_digits) {
            result.append(text.substr(at, digits_kept)).append(ellipsis);
            at = digits;
        } else {
            // Up to the next number in it.
            const std::size_t first = std::max(digits, at + 1);
            std::size_t number = first;
            while (number < end && !isDigit(text[number])) {
                ++number;
            }
            result.append(text.substr(at, number - at));
            at = number;
        }
    }
    return result;
}

std::u16string withFewWords(View text) {
    std::vector<View> words;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(u' ', at), text.size());
        words.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    const auto same = [](View a, View b) { return sameText(a, b, LetterCase::ignored); };
    std::u16string result;
    for (const View word : withFewAlike(words, longest_phrase, same)) {
        result.append(result.empty() ? u"" : u" ").append(word);
    }
    return result;
}

std::u16string cut(View text, std::size_t longest) {
    std::size_t end = 0, word_end = 0;
    for (std::size_t count = 0; count < longest && end < text.size(); ++count) {
        if (text[end] == u' ') {
            word_end = end;
        }
        const std::size_t next = clusterEnd(text, end);
        if (next > longest_cleaned - ellipsis.size()) {
            break;
        }
        end = next;
    }
    if (end == text.size()) {
        return std::u16string(text);
    }
    if (text[end] != u' ' && word_end > end / 2) {
        end = word_end;
    }
    return std::u16string(murmelix::trim(text.substr(0, end))).append(ellipsis);
}

bool saysSomething(View text) {
    for (std::size_t at = 0; at < text.size();) {
        const auto [code, units] = characterAt(text, at);
        if (isLetterOrDigit(code)) {
            return true;
        }
        at += units;
    }
    return hasEmoticon(text);
}

} // namespace

std::u16string linkName(std::u16string_view link) {
    const std::size_t scheme = link.find(u"://");
    View host = scheme == npos ? link : link.substr(scheme + 3);
    // A "\" is taken for a "/" by what follows links; what stands before an "@" is no host.
    host = host.substr(0, host.find_first_of(u"/\\?#"));
    host.remove_prefix(std::min(host.rfind(u'@') + 1, host.size()));
    host = host.substr(0, host.find(u':'));
    while (host.ends_with(u'.')) {
        host.remove_suffix(1);
    }
    if (sameText(host.substr(0, 4), u"www.", LetterCase::ignored)) {
        host.remove_prefix(4);
    }
    std::vector<View> parts;
    for (std::size_t at = 0; at <= host.size();) {
        const std::size_t end = std::min(host.find(u'.', at), host.size());
        parts.push_back(host.substr(at, end - at));
        at = end + 1;
    }
    if (parts.size() < 2 || !std::ranges::all_of(parts, isHonestPart)) {
        return std::u16string(a_link);
    }
    std::size_t first = parts.size() > most_host_parts && !isIpNumber(host) ? parts.size() - most_host_parts : 0;
    View told = host.substr(static_cast<std::size_t>(parts[first].data() - host.data()));
    while (told.size() > longest_host && first + 2 < parts.size()) {
        told = host.substr(static_cast<std::size_t>(parts[++first].data() - host.data()));
    }
    return told.size() > longest_host ? std::u16string(a_link)
                                      : std::u16string(a_link) + u" to " + murmelix::toLower(told);
}

std::u16string cleaned(std::u16string_view text, const std::vector<Range>& emotes, const Cleaning& cleaning) {
    std::u16string line =
        tidied(withFewEmotes(firstUnits(text, longest_looked_at), emotes, cleaning.emoji.most_in_row));
    line = withLinks(line, cleaning.links);
    line = withWords(line, cleaning.words);
    line = tidied(withoutEmoji(line, cleaning.emoji));
    if (cleaning.shorten) {
        line = withFewWords(withShortWords(withShortRows(line)));
    }
    // What a voice takes for the beginning of a command to it.
    std::ranges::replace(line, u'\\', u'/');
    line = cut(line, cleaning.longest);
    return saysSomething(line) ? line : std::u16string();
}

} // namespace messenger_client::reading
