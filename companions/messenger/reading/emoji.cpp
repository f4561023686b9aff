#include "companions/messenger/reading/emoji.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "common/text.h"
#include "companions/messenger/reading/characters.h"
#include "companions/messenger/reading/emoji_table.h"

namespace messenger_client::reading {

namespace {

using View = std::u16string_view;
using murmelix::npos;

constexpr char32_t text_selector = 0xFE0E, emoji_selector = 0xFE0F, keycap = 0x20E3;
constexpr char32_t first_tag = 0xE0020, last_tag = 0xE007F;
constexpr char32_t person = 0x1F9D1, man = 0x1F468, woman = 0x1F469;
constexpr char32_t male = 0x2642, female = 0x2640, to_the_right = 0x27A1;
constexpr char32_t black_flag = 0x1F3F4;

// Joined ones and tags of one emoji: no real one has as many, and what goes on is another.
constexpr std::size_t most_parts = 10, most_tags = 32;

bool isTone(char32_t code) {
    return code >= 0x1F3FB && code <= 0x1F3FF;
}

bool isSelector(char32_t code) {
    return code == text_selector || code == emoji_selector;
}

// Where Unicode keeps nothing but emoji: also those that are newer than the tables.
bool isInEmojiBlock(char32_t code) {
    return (code >= 0x1F300 && code <= 0x1F64F) || (code >= 0x1F680 && code <= 0x1F6FF) ||
           (code >= 0x1F7E0 && code <= 0x1F7EB) || (code >= 0x1F90C && code <= 0x1F9FF) ||
           (code >= 0x1FA70 && code <= 0x1FAFF);
}

// Members of families.
bool isKin(char32_t code) {
    return code == person || (code >= 0x1F466 && code <= 0x1F469) || (code >= 0x1F9D2 && code <= 0x1F9D3) ||
           code == 0x1F476;
}

class Table {
  public:
    Table() {
        for (const ActedEmoji& acted : actedEmoji()) {
            forEach(acted.emoji, u' ', [&](View emoji) { rows_[plain(emoji)] = {acted.emoticon, {}}; });
        }
        for (const View list : namedEmoji()) {
            forEach(list, u',', [&](View entry) {
                entry = murmelix::trim(entry);
                const std::size_t end = std::min(entry.find(u' '), entry.size());
                rows_.try_emplace(plain(entry.substr(0, end)), Row{{}, murmelix::trim(entry.substr(end))});
            });
        }
        forEach(countries(), u',', [&](View entry) {
            entry = murmelix::trim(entry);
            countries_.emplace(entry.substr(0, 2), entry.substr(3));
        });
        for (const auto& [emoji, row] : rows_) {
            firsts_.insert(characterAt(emoji, 0).code);
        }
    }

    struct Row {
        View emoticon, name;
    };
    const Row* find(const std::u16string& emoji) const {
        const auto found = rows_.find(emoji);
        return found == rows_.end() ? nullptr : &found->second;
    }
    bool begins(char32_t code) const { return firsts_.contains(code); }
    View country(const std::u16string& code) const {
        const auto found = countries_.find(code);
        return found == countries_.end() ? View() : found->second;
    }

    // Without selectors and tones.
    static std::u16string plain(View emoji) {
        std::u16string text;
        for (std::size_t at = 0; at < emoji.size();) {
            const auto [code, units] = characterAt(emoji, at);
            if (!isSelector(code) && !isTone(code)) {
                append(text, code);
            }
            at += units;
        }
        return text;
    }

  private:
    template <class Each>
    static void forEach(View list, char16_t separator, Each each) {
        for (std::size_t at = 0; at < list.size();) {
            const std::size_t end = std::min(list.find(separator, at), list.size());
            if (const View entry = list.substr(at, end - at); !entry.empty()) {
                each(entry);
            }
            at = end + 1;
        }
    }

    std::unordered_map<std::u16string, Row> rows_;
    std::unordered_map<View, View> countries_;
    std::unordered_set<char32_t> firsts_;
};

const Table& table() {
    static const Table the_table;
    return the_table;
}

char32_t codeAt(View text, std::size_t at) {
    return at < text.size() ? characterAt(text, at).code : 0;
}

// Signs of plain text as well: pictures where a selector says so alone.
bool isTextAtFirst(char32_t code) {
    return code < 0x2318 || (code >= 0x2460 && code < 0x25FD) || (code >= 0x3000 && code < 0x3300);
}

bool beginsEmoji(char32_t code) {
    return code >= 0x203C && (table().begins(code) || isInEmojiBlock(code) || isTone(code));
}

std::size_t skipSelector(View text, std::size_t at) {
    return isSelector(codeAt(text, at)) ? at + 1 : at;
}

// Behind one part of an emoji and what changes its looks.
std::size_t partEnd(View text, std::size_t at) {
    at += characterAt(text, at).units;
    at = skipSelector(text, at);
    if (isTone(codeAt(text, at))) {
        at = skipSelector(text, at + 2);
    }
    for (std::size_t tags = 0; tags < most_tags; ++tags) {
        const char32_t code = codeAt(text, at);
        if (code < first_tag || code > last_tag) {
            break;
        }
        at += 2;
    }
    return at;
}

std::size_t keycapEnd(View text, std::size_t at) {
    const char16_t unit = text[at];
    if (!isDigit(unit) && unit != u'#' && unit != u'*') {
        return at;
    }
    const std::size_t end = skipSelector(text, at + 1);
    return codeAt(text, end) == keycap ? end + 1 : at;
}

// The tags of a flag of a part of a country, as text: "gbsct".
std::u16string tagsOf(View emoji) {
    std::u16string tags;
    for (std::size_t at = 0; at < emoji.size();) {
        const auto [code, units] = characterAt(emoji, at);
        if (code > first_tag && code < last_tag) {
            tags.push_back(static_cast<char16_t>(code - 0xE0000));
        }
        at += units;
    }
    return tags;
}

// Forms of the emoji, from the exact one to ever plainer ones that mean about the same.
std::vector<std::u16string> forms(View emoji) {
    std::vector<std::u16string> found;
    std::vector<char32_t> parts;
    for (std::size_t at = 0; at < emoji.size();) {
        const auto [code, units] = characterAt(emoji, at);
        if (!isSelector(code) && !isTone(code) && (code < first_tag || code > last_tag)) {
            parts.push_back(code);
        }
        at += units;
    }
    const auto text = [&] {
        std::u16string joined;
        for (const char32_t code : parts) {
            append(joined, code);
        }
        return joined;
    };
    found.push_back(text());
    const auto dropJoined = [&](char32_t which) {
        for (std::size_t at = 0; at + 1 < parts.size(); ++at) {
            if (parts[at] == joiner && parts[at + 1] == which) {
                parts.erase(parts.begin() + static_cast<std::ptrdiff_t>(at),
                            parts.begin() + static_cast<std::ptrdiff_t>(at + 2));
                return true;
            }
        }
        return false;
    };
    for (const char32_t which : {to_the_right, male, female}) {
        if (dropJoined(which)) {
            found.push_back(text());
        }
    }
    if (parts.size() > 1 && (parts[0] == man || parts[0] == woman)) {
        parts[0] = person;
        found.push_back(text());
    }
    return found;
}

const Table::Row* rowOf(View emoji) {
    if (emoji.empty()) {
        return nullptr;
    }
    for (const std::u16string& form : forms(emoji)) {
        if (const Table::Row* row = table().find(form)) {
            return row;
        }
    }
    return nullptr;
}

// What people joined mean together, where no row says it: "" for others.
std::u16string nameOfPeople(View emoji) {
    std::size_t people = 0;
    bool heart = false, kiss = false, holding = false;
    for (std::size_t at = 0; at < emoji.size();) {
        const auto [code, units] = characterAt(emoji, at);
        people += isKin(code) ? 1 : 0;
        heart = heart || code == 0x2764;
        kiss = kiss || code == 0x1F48B;
        holding = holding || code == 0x1F91D;
        at += units;
    }
    if (people < 2) {
        return {};
    }
    return kiss ? u"(k)" : heart ? u"(L)" : holding ? u"people holding hands" : u"family";
}

struct Meaning {
    std::u16string text; // empty: none
    bool emoticon = false;
};

Meaning meaningOf(View emoji) {
    const char32_t first = codeAt(emoji, 0);
    if (keycapEnd(emoji, 0) > 0) {
        return {first == U'#' ? u"hash" : first == U'*' ? u"star" : std::u16string(1, emoji[0])};
    }
    if (isFlagLetter(first)) {
        std::u16string code;
        for (std::size_t at = 0; at < emoji.size(); at += 2) {
            code.push_back(static_cast<char16_t>(u'A' + (codeAt(emoji, at) - 0x1F1E6)));
        }
        const View country = table().country(code);
        return {country.empty() ? u"flag" : u"flag: " + std::u16string(country)};
    }
    if (first == black_flag) {
        const std::u16string tags = tagsOf(emoji);
        if (!tags.empty()) {
            return {tags == u"gbeng"   ? u"flag: England"
                    : tags == u"gbsct" ? u"flag: Scotland"
                    : tags == u"gbwls" ? u"flag: Wales"
                                       : u"flag"};
        }
    }
    if (const Table::Row* row = rowOf(emoji)) {
        return row->emoticon.empty() ? Meaning{std::u16string(row->name)}
                                     : Meaning{std::u16string(row->emoticon), true};
    }
    if (std::u16string people = nameOfPeople(emoji); !people.empty()) {
        return {people, people.front() == u'('};
    }
    // Joined ones that nobody knows: the first one says most.
    const std::size_t joined = emoji.find(static_cast<char16_t>(joiner));
    return joined != npos ? meaningOf(emoji.substr(0, joined)) : Meaning{};
}

// Those that characters act, in small letters, except for the first, which is one in that letter alone.
constexpr View emoticons[]{
    u"(S)",   u"(r)",   u"(y)",       u"(n)",   u"(b)",   u"(d)",    u"(x)",     u"(z)",   u":-[",   u":[",
    u"(})",   u"({)",   u"(l)",       u"(u)",   u"(m)",   u"(@)",    u"(&)",     u"(*)",   u"(~)",   u"(8)",
    u"(e)",   u"(f)",   u"(w)",       u"(o)",   u"(k)",   u"(g)",    u"(^)",     u"(p)",   u"(i)",   u"(c)",
    u"(t)",   u"(#)",   u"(%)",       u"(?)",   u":-)",   u":)",     u":-d",     u":d",    u";-)",   u";)",
    u":-o",   u":o",    u":-p",       u":p",    u"(h)",   u":-@",    u":@",      u":-s",   u":s",    u":$",
    u":-$",   u":-(",   u":(",        u":'(",   u":-|",   u":|",     u"(a)",     u"(6)",   u"(lol)", u"(birthday)",
    u"(boo)", u"(run)", u"(whistle)", u"(haa)", u"(ohh)", u"(slap)", u"(sniff)", u"(sigh)"};

} // namespace

std::size_t emojiAt(std::u16string_view text, std::size_t at) {
    if (const std::size_t end = keycapEnd(text, at); end > at) {
        return end - at;
    }
    const char32_t first = characterAt(text, at).code;
    if (isFlagLetter(first)) {
        return isFlagLetter(codeAt(text, at + 2)) ? 4 : 2;
    }
    const char32_t selector = codeAt(text, at + characterAt(text, at).units);
    if (!beginsEmoji(first) || selector == text_selector || (isTextAtFirst(first) && selector != emoji_selector)) {
        return 0;
    }
    std::size_t end = partEnd(text, at);
    for (std::size_t parts = 1; parts < most_parts && codeAt(text, end) == joiner; ++parts) {
        if (!beginsEmoji(codeAt(text, end + 1))) {
            break;
        }
        end = partEnd(text, end + 1);
    }
    return end - at;
}

std::u16string_view emoticonOf(std::u16string_view emoji) {
    if (emoji.empty() || emojiAt(emoji, 0) != emoji.size()) {
        return {};
    }
    const Meaning meaning = meaningOf(emoji);
    if (!meaning.emoticon) {
        return {};
    }
    for (const ActedEmoji& acted : actedEmoji()) {
        if (acted.emoticon == meaning.text) {
            return acted.emoticon;
        }
    }
    return {};
}

std::u16string nameOf(std::u16string_view emoji) {
    if (emoji.empty() || emojiAt(emoji, 0) != emoji.size()) {
        return {};
    }
    Meaning meaning = meaningOf(emoji);
    return meaning.emoticon ? std::u16string() : std::move(meaning.text);
}

std::u16string withoutEmoji(std::u16string_view text, const EmojiReading& reading) {
    std::u16string result;
    result.reserve(text.size());
    std::size_t in_row = 0;
    std::u16string last; // of the row
    bool parted = false; // what comes next stands behind an emoji
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t units = emojiAt(text, at);
        if (units == 0) {
            const auto [code, length] = characterAt(text, at);
            if (code == joiner || isSelector(code) || (code >= first_tag && code <= last_tag)) {
                at += length; // of an emoji that is none
                continue;
            }
            if (!isBlank(code)) {
                in_row = 0;
                last.clear();
            }
            const bool blank_there = result.empty() || result.back() == u' ';
            if (parted && code == U' ' && blank_there) {
                at += length;
                continue;
            }
            if (parted && code != U' ' && !blank_there) {
                result.push_back(u' ');
            }
            parted = false;
            result.append(text, at, length);
            at += length;
            continue;
        }
        Meaning meaning = meaningOf(text.substr(at, units));
        at += units;
        parted = true;
        if (meaning.text.empty() || (!meaning.emoticon && reading.others == OtherEmoji::left_out)) {
            continue;
        }
        const std::u16string said = meaning.emoticon ? meaning.text : u"[" + meaning.text + u"]";
        if (said == last || in_row >= reading.most_in_row) {
            continue;
        }
        if (!result.empty() && result.back() != u' ') {
            result.push_back(u' ');
        }
        last = said;
        ++in_row;
        result += said;
    }
    return result;
}

bool hasEmoticon(std::u16string_view text) {
    for (std::size_t at = text.find_first_of(u"(:;"); at != npos; at = text.find_first_of(u"(:;", at + 1)) {
        for (std::size_t index = 0; index < std::size(emoticons); ++index) {
            const View there = text.substr(at, emoticons[index].size());
            if (index == 0 ? there == emoticons[0]
                           : murmelix::sameText(there, emoticons[index], murmelix::LetterCase::ignored)) {
                return true;
            }
        }
    }
    return false;
}

} // namespace messenger_client::reading
