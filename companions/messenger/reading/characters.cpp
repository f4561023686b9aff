#include "companions/messenger/reading/characters.h"

#include <algorithm>
#include <iterator>

namespace messenger_client::reading {

namespace {

constexpr char32_t selector = 0xFE0F, tag_end = 0xE007F;

struct Span {
    char32_t first, last;
};

template <std::size_t count>
bool isIn(const Span (&spans)[count], char32_t code) {
    const auto after = std::upper_bound(std::begin(spans), std::end(spans), code,
                                        [](char32_t wanted, const Span& span) { return wanted < span.first; });
    return after != std::begin(spans) && code <= std::prev(after)->last;
}

template <std::size_t count>
constexpr bool inOrder(const Span (&spans)[count]) {
    for (std::size_t i = 0; i < count; ++i) {
        if (spans[i].last < spans[i].first || (i > 0 && spans[i].first <= spans[i - 1].last)) {
            return false;
        }
    }
    return true;
}

// From Unicode's classes Mn, Mc and Me, in the scripts that chats are written in.
constexpr Span marks[] = {
    {0x0300, 0x036F},   {0x0483, 0x0489},   {0x0591, 0x05BD}, {0x05BF, 0x05BF}, {0x05C1, 0x05C2}, {0x05C4, 0x05C5},
    {0x05C7, 0x05C7},   {0x0610, 0x061A},   {0x064B, 0x065F}, {0x0670, 0x0670}, {0x06D6, 0x06DC}, {0x06DF, 0x06E4},
    {0x06E7, 0x06E8},   {0x06EA, 0x06ED},   {0x0900, 0x0903}, {0x093A, 0x093C}, {0x093E, 0x094F}, {0x0951, 0x0957},
    {0x0962, 0x0963},   {0x0981, 0x0983},   {0x09BC, 0x09BC}, {0x09BE, 0x09CD}, {0x0A01, 0x0A03}, {0x0A3C, 0x0A51},
    {0x0A81, 0x0A83},   {0x0ABC, 0x0ABC},   {0x0ABE, 0x0ACD}, {0x0B82, 0x0B82}, {0x0BBE, 0x0BCD}, {0x0C00, 0x0C04},
    {0x0C3E, 0x0C56},   {0x0CBC, 0x0CBC},   {0x0CBE, 0x0CD6}, {0x0D00, 0x0D03}, {0x0D3B, 0x0D3C}, {0x0D3E, 0x0D4D},
    {0x0E31, 0x0E31},   {0x0E34, 0x0E3A},   {0x0E47, 0x0E4E}, {0x0EB1, 0x0EB1}, {0x0EB4, 0x0EBC}, {0x0EC8, 0x0ECE},
    {0x0F71, 0x0F84},   {0x102B, 0x103E},   {0x17B4, 0x17D3}, {0x1AB0, 0x1ACE}, {0x1DC0, 0x1DFF}, {0x200D, 0x200D},
    {0x20D0, 0x20F0},   {0x302A, 0x302F},   {0x3099, 0x309A}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0x1F3FB, 0x1F3FF},
    {0xE0020, 0xE007F}, {0xE0100, 0xE01EF},
};

constexpr Span blanks[] = {
    // beyond ASCII
    {0x0085, 0x0085}, {0x00A0, 0x00A0}, {0x1680, 0x1680}, {0x2000, 0x200A}, {0x2028, 0x2029}, {0x202F, 0x202F},
    {0x205F, 0x205F}, {0x2800, 0x2800}, {0x3000, 0x3000}, {0x3164, 0x3164}, {0xFFA0, 0xFFA0},
};

// The joiner, the selectors and the tags of emoji are not among them: what they stand with needs them.
constexpr Span invisibles[] = {
    {0x00AD, 0x00AD},   {0x034F, 0x034F},   {0x061C, 0x061C},   {0x115F, 0x1160},   {0x180B, 0x180E},
    {0x200B, 0x200C},   {0x200E, 0x200F},   {0x202A, 0x202E},   {0x2060, 0x206F},   {0xFEFF, 0xFEFF},
    {0xFFF0, 0xFFFB},   {0xFFFE, 0xFFFF},   {0x1D173, 0x1D17A}, {0x1FFFE, 0x1FFFF}, {0xE0000, 0xE001F},
    {0xE0080, 0xE00FF}, {0xE01F0, 0xE0FFF},
};

// Signs, pictures and what has no meaning of its own, beyond ASCII.
constexpr Span signs[] = {
    {0x0080, 0x00A9},   {0x00AB, 0x00B4},   {0x00B6, 0x00B9},    {0x00BB, 0x00BF}, {0x00D7, 0x00D7}, {0x00F7, 0x00F7},
    {0x02C2, 0x02DF},   {0x037E, 0x037E},   {0x055A, 0x055F},    {0x0589, 0x058A}, {0x05BE, 0x05BE}, {0x05F3, 0x05F4},
    {0x060C, 0x060D},   {0x061B, 0x061F},   {0x066A, 0x066D},    {0x0964, 0x0965}, {0x2010, 0x2BFF}, {0x3001, 0x3004},
    {0x3008, 0x3020},   {0x3030, 0x3030},   {0x303D, 0x303D},    {0x30FB, 0x30FB}, {0xD800, 0xF8FF}, {0xFD3E, 0xFD3F},
    {0xFE10, 0xFE6F},   {0xFF01, 0xFF0F},   {0xFF1A, 0xFF20},    {0xFF3B, 0xFF40}, {0xFF5B, 0xFF65}, {0xFFE0, 0xFFFF},
    {0x1D100, 0x1D1FF}, {0x1F000, 0x1FBFF}, {0xE0000, 0x10FFFF},
};

static_assert(inOrder(marks) && inOrder(blanks) && inOrder(invisibles) && inOrder(signs));

constexpr bool isHigh(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}

constexpr bool isLow(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

} // namespace

Character characterAt(std::u16string_view text, std::size_t at) {
    const char16_t unit = text[at];
    if (isHigh(unit) && at + 1 < text.size() && isLow(text[at + 1])) {
        return {0x10000 + ((unit - 0xD800u) << 10) + (text[at + 1] - 0xDC00u), 2};
    }
    return {isHigh(unit) || isLow(unit) ? U'\xFFFD' : unit, 1};
}

void append(std::u16string& text, char32_t code) {
    if (code < 0x10000) {
        text.push_back(static_cast<char16_t>(code));
        return;
    }
    text.push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)));
    text.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
}

bool isDigit(char32_t code) {
    return code >= U'0' && code <= U'9';
}

bool isLetter(char32_t code) {
    if (code < 0x80) {
        return (code >= U'a' && code <= U'z') || (code >= U'A' && code <= U'Z');
    }
    return !isIn(signs, code) && !isBlank(code) && !isInvisible(code) && !isMark(code);
}

bool isMark(char32_t code) {
    return code >= marks[0].first && isIn(marks, code);
}

bool isBlank(char32_t code) {
    if (code < 0x80) {
        return code == U' ' || (code >= U'\t' && code <= U'\r');
    }
    return isIn(blanks, code);
}

bool isInvisible(char32_t code) {
    return code >= invisibles[0].first && isIn(invisibles, code);
}

std::size_t clusterEnd(std::u16string_view text, std::size_t at) {
    const Character first = characterAt(text, at);
    at += first.units;
    if (isFlagLetter(first.code) && at < text.size() && isFlagLetter(characterAt(text, at).code)) {
        at += 2;
    }
    for (std::size_t codes = 2; at < text.size() && codes < most_in_cluster; ++codes) {
        const Character next = characterAt(text, at);
        if (!isMark(next.code)) {
            break;
        }
        at += next.units;
        if (next.code == joiner && at < text.size() && !isBlank(characterAt(text, at).code)) {
            at += characterAt(text, at).units;
            ++codes;
        }
    }
    return at;
}

std::u16string tidied(std::u16string_view text) {
    std::u16string result;
    result.reserve(text.size());
    std::size_t marks_in_row = 0;
    bool blank = false;
    for (std::size_t at = 0; at < text.size();) {
        const auto [code, units] = characterAt(text, at);
        at += units;
        if (isBlank(code) || code < U' ' || (code >= 0x7F && code < 0xA0)) {
            blank = true;
            marks_in_row = 0;
            continue;
        }
        if (isInvisible(code)) {
            continue;
        }
        // What makes an emoji is not counted: its length has bounds of its own.
        const bool of_emoji = code == joiner || code == selector || (code >= 0x1F3FB && code <= tag_end);
        if (!isMark(code)) {
            marks_in_row = 0;
        } else if (!of_emoji && ++marks_in_row > most_marks) {
            continue;
        }
        if (blank && !result.empty()) {
            result.push_back(u' ');
        }
        blank = false;
        append(result, code);
    }
    return result;
}

} // namespace messenger_client::reading
