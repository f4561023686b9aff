#include "companions/agent/stage/balloon_layout.h"

#include <algorithm>

namespace agent::stage {
namespace {

bool isLineEnd(char16_t unit) {
    return unit == u'\n' || unit == u'\r' || unit == u'\v' || unit == u'\f' || unit == u'\u2028' || unit == u'\u2029';
}

bool isBlank(char16_t unit) {
    return unit == u' ' || unit == u'\t' || unit == u'\u3000';
}

bool isSecondOfPair(std::u16string_view text, std::size_t at) {
    return at > 0 && at < text.size() && (text[at] & 0xFC00) == 0xDC00 && (text[at - 1] & 0xFC00) == 0xD800;
}

// One paragraph, begun at `base` of the whole text.
void breakParagraph(std::u16string_view text, std::size_t base, int width, const Fitting& fitting,
                    std::vector<TextLine>& lines) {
    std::size_t begin = 0;
    do {
        std::size_t fits = std::min(fitting(text.substr(begin), width), text.size() - begin);
        std::size_t end = begin + fits;
        if (end < text.size() && !isBlank(text[end])) {
            std::size_t word = end;
            while (word > begin && !isBlank(text[word - 1])) {
                --word;
            }
            end = word > begin ? word : std::max(end, begin + 1);
        }
        if (isSecondOfPair(text, end)) {
            end = end - 1 > begin ? end - 1 : end + 1;
        }
        std::size_t shown_end = end;
        while (shown_end > begin && isBlank(text[shown_end - 1])) {
            --shown_end;
        }
        lines.push_back({base + begin, base + shown_end});
        begin = end;
        while (begin < text.size() && isBlank(text[begin])) {
            ++begin;
        }
    } while (begin < text.size());
}

} // namespace

std::vector<TextLine> breakLines(std::u16string_view text, int width, const Fitting& fitting) {
    std::vector<TextLine> lines;
    std::size_t begin = 0;
    while (begin <= text.size()) {
        std::size_t end = begin;
        while (end < text.size() && !isLineEnd(text[end])) {
            ++end;
        }
        breakParagraph(text.substr(begin, end - begin), begin, width, fitting, lines);
        if (end >= text.size()) {
            break;
        }
        begin = end + (text[end] == u'\r' && end + 1 < text.size() && text[end + 1] == u'\n' ? 2 : 1);
    }
    return lines;
}

std::size_t firstLine(const std::vector<TextLine>& lines, std::size_t spoken, std::size_t room) {
    if (lines.size() <= room || room == 0) {
        return 0;
    }
    const auto after =
        std::find_if(lines.begin(), lines.end(), [&](const TextLine& line) { return line.begin >= spoken; });
    const auto reached = static_cast<std::size_t>(after - lines.begin());
    return reached > room ? std::min(reached, lines.size()) - room : 0;
}

BalloonPlace placeBalloon(int width, int height, int tail, const Rect& character, const Rect& screen) {
    const auto within = [](int at, int length, int low, int high) {
        return std::max(low, std::min(at, high - length));
    };
    const int middle_x = (character.left + character.right) / 2;
    const int middle_y = (character.top + character.bottom) / 2;
    const int left = within(middle_x - width / 2, width, screen.left, screen.right);
    const int top = within(middle_y - height / 2, height, screen.top, screen.bottom);

    if (character.top - tail - height >= screen.top) {
        const int y = within(character.top - tail - height, height, screen.top, screen.bottom);
        return {{left, y, left + width, y + height}, Side::above, middle_x, character.top};
    }
    if (character.bottom + tail + height <= screen.bottom) {
        const int y = within(character.bottom + tail, height, screen.top, screen.bottom);
        return {{left, y, left + width, y + height}, Side::below, middle_x, character.bottom};
    }
    if (character.left - screen.left > screen.right - character.right) {
        const int x = within(character.left - tail - width, width, screen.left, screen.right);
        return {{x, top, x + width, top + height}, Side::left, character.left, middle_y};
    }
    const int x = within(character.right + tail, width, screen.left, screen.right);
    return {{x, top, x + width, top + height}, Side::right, character.right, middle_y};
}

} // namespace agent::stage
