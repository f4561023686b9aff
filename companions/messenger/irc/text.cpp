#include "companions/messenger/irc/text.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/text.h"

namespace messenger_client::irc {

namespace {

using View = std::u16string_view;

// Windows-1252 from 0x80 to 0x9F; its five holes as U+FFFD. Above it is as Unicode.
constexpr std::array<char16_t, 32> windows_1252{0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD,
                                                0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};

bool isAscii(char byte) {
    return static_cast<unsigned char>(byte) < 0x80;
}

// Bytes that a lead byte announces; 0 where it leads nothing.
std::size_t announced(char lead) {
    const auto byte = static_cast<unsigned char>(lead);
    return byte < 0xC2 ? 0 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : byte < 0xF5 ? 4 : 0;
}

bool isHigh(char16_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLow(char16_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

bool isControl(char16_t unit) {
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
}

// Marks that turn the direction of writing for what follows, and signs that nobody sees: they make a text look like
// another one. Joiners stay: emoji and many scripts need them.
bool isHiddenMark(char16_t unit) {
    constexpr View hidden =
        u"\u00AD\u034F\u061C\u115F\u1160\u180E\u200B\u200E\u200F\u3164\uFEFF\uFFA0\uFFF9\uFFFA\uFFFB";
    // Nearly all that is written comes before the first of them.
    return unit >= hidden.front() && (hidden.find(unit) != murmelix::npos || (unit >= 0x202A && unit <= 0x202E) ||
                                      (unit >= 0x2060 && unit <= 0x206F));
}

bool endsLine(char16_t unit) {
    return unit == u'\n' || unit == u'\r' || unit == 0x2028 || unit == 0x2029;
}

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

bool isHexDigit(char16_t unit) {
    return isDigit(unit) || (unit >= u'a' && unit <= u'f') || (unit >= u'A' && unit <= u'F');
}

// Codes of a colour: `most` digits of the text's, a comma and as many again.
std::size_t colourLength(View text, bool (*is_digit)(char16_t), std::size_t least, std::size_t most) {
    const auto digits = [&](View at) {
        const View few = at.substr(0, most);
        const auto count = static_cast<std::size_t>(std::find_if_not(few.begin(), few.end(), is_digit) - few.begin());
        return count < least ? 0 : count;
    };
    const std::size_t first = digits(text);
    if (first == 0 || !text.substr(first).starts_with(u',')) {
        return first;
    }
    const std::size_t second = digits(text.substr(first + 1));
    return second == 0 ? first : first + 1 + second;
}

// Units of the formatting code at the beginning of the text; 0 where there is none.
std::size_t formattingLength(View text) {
    switch (text.front()) {
    case 0x02: // bold
    case 0x1D: // italic
    case 0x1F: // underlined
    case 0x1E: // struck
    case 0x11: // monospace
    case 0x16: // reverse
    case 0x0F: // reset
        return 1;
    case 0x03:
        return 1 + colourLength(text.substr(1), isDigit, 1, 2);
    case 0x04:
        return 1 + colourLength(text.substr(1), isHexDigit, 6, 6);
    default:
        return 0;
    }
}

// Whether a unit belongs to the character before: accents, variation selectors, joiners, skin tones, tags of flags.
bool continuesCharacter(View text, std::size_t at) {
    const char16_t unit = text[at], before = text[at - 1];
    if (isLow(unit)) {
        return isHigh(before);
    }
    const bool skin_tone = unit == 0xD83C && at + 1 < text.size() && text[at + 1] >= 0xDFFB && text[at + 1] <= 0xDFFF;
    const bool tag = unit == 0xDB40;
    const bool accent = (unit >= 0x0300 && unit <= 0x036F) || (unit >= 0x1AB0 && unit <= 0x1AFF) ||
                        (unit >= 0x20D0 && unit <= 0x20FF) || (unit >= 0xFE00 && unit <= 0xFE0F);
    return skin_tone || tag || accent || unit == 0x200D || before == 0x200D;
}

std::size_t utf8Size(char16_t unit) {
    // A pair has four bytes, a lone surrogate becomes U+FFFD: three are never too few for it.
    return unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3;
}

// Units of the first piece of a line that has to be cut or not.
std::size_t pieceLength(View line, std::size_t most_bytes) {
    std::size_t bytes = 0, blank = 0, character = 0, pair = 0;
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (at > 0 && !(isLow(line[at]) && isHigh(line[at - 1]))) {
            pair = at;
            if (!continuesCharacter(line, at)) {
                character = at;
            }
        }
        if (line[at] == u' ' && at > 0) {
            blank = at;
        }
        bytes += isLow(line[at]) && at > 0 && isHigh(line[at - 1]) ? 1 : utf8Size(line[at]);
        if (bytes > most_bytes) {
            // A character that is as long as a piece, of accents without end, is cut all the same.
            return blank > 0 ? blank : character > 0 ? character : pair;
        }
    }
    return line.size();
}

} // namespace

std::u16string decoded(std::string_view bytes) {
    std::u16string text;
    text.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
        const auto byte = static_cast<unsigned char>(bytes[at]);
        if (isAscii(bytes[at])) {
            text += byte;
            ++at;
            continue;
        }
        const std::size_t length = announced(bytes[at]);
        const std::u16string character = murmelix::fromUtf8(bytes.substr(at, length));
        // A sequence that is not well-formed gives one unit for each byte.
        if (length != 0 && at + length <= bytes.size() && character.size() == (length == 4 ? 2U : 1U)) {
            text += character;
            at += length;
        } else {
            text += byte < 0xA0 ? windows_1252[byte - 0x80U] : static_cast<char16_t>(byte);
            ++at;
        }
    }
    return text;
}

std::u16string plainText(std::u16string_view text, std::vector<std::size_t>* places) {
    std::u16string plain;
    plain.reserve(text.size());
    std::size_t next_place = 0;
    const auto place = [&](std::size_t reached) {
        while (places && next_place < places->size() && (*places)[next_place] <= reached) {
            (*places)[next_place++] = plain.size();
        }
    };
    for (std::size_t at = 0; at < text.size();) {
        place(at);
        if (const std::size_t code = formattingLength(text.substr(at))) {
            at += code;
            continue;
        }
        const char16_t unit = text[at++];
        if (unit == u'\t' || endsLine(unit)) {
            plain += u' ';
        } else if (!isControl(unit) && !isHiddenMark(unit)) {
            plain += unit;
        }
    }
    place(murmelix::npos);
    return plain;
}

std::u16string plainName(std::string_view bytes, std::size_t longest) {
    // No character has more than four bytes.
    std::u16string name = decoded(bytes.substr(0, longest * 4));
    std::replace_if(
        name.begin(), name.end(), [](char16_t unit) { return isControl(unit) || isHiddenMark(unit) || endsLine(unit); },
        u'\uFFFD');
    if (name.size() > longest) {
        name.resize(isLow(name[longest]) ? longest - 1 : longest);
    }
    return name;
}

std::optional<Request> requestIn(std::string_view bytes) {
    if (!bytes.starts_with('\x01')) {
        return std::nullopt;
    }
    bytes.remove_prefix(1);
    bytes = bytes.substr(0, bytes.find('\x01'));
    const std::string_view command = bytes.substr(0, bytes.find(' '));
    bytes.remove_prefix(std::min(command.size() + 1, bytes.size()));
    return Request{command, bytes};
}

std::string firstPieceOf(std::u16string_view text, std::size_t most_bytes) {
    std::vector<std::string> pieces = piecesOf(text, most_bytes);
    return pieces.empty() ? std::string() : std::move(pieces.front());
}

std::vector<std::string> piecesOf(std::u16string_view text, std::size_t most_bytes) {
    std::vector<std::string> pieces;
    while (!text.empty()) {
        View line =
            text.substr(0, static_cast<std::size_t>(std::find_if(text.begin(), text.end(), endsLine) - text.begin()));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        while (line.find_first_not_of(u' ') != murmelix::npos) {
            const View piece = line.substr(0, pieceLength(line, most_bytes));
            line.remove_prefix(piece.size());
            // The blank at which it was cut is in neither of the pieces.
            line.remove_prefix(line.starts_with(u' ') ? 1 : 0);
            if (piece.find_first_not_of(u' ') != murmelix::npos) {
                pieces.push_back(murmelix::toUtf8(piece));
            }
        }
    }
    return pieces;
}

} // namespace messenger_client::irc
