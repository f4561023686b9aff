#include "companions/agent/stage/balloon_layout.h"

#include <algorithm>
#include <utility>

namespace agent::stage {
namespace {

bool isLineEnd(char16_t unit) {
    return unit == u'\n' || unit == u'\r' || unit == u'\v' || unit == u'\f' || unit == u'\u2028' || unit == u'\u2029';
}

bool isBlank(char16_t unit) {
    return unit == u' ' || unit == u'\t' || unit == u'\u3000';
}

// Whether a character goes on at `at`: by the second half of a pair, or by what joins to the one before it (variation
// selectors, and the joiner with what it joins).
bool isInside(std::u16string_view text, std::size_t at) {
    if (at == 0 || at >= text.size()) {
        return false;
    }
    const char16_t unit = text[at], before = text[at - 1];
    const bool second = (unit & 0xFC00) == 0xDC00 && (before & 0xFC00) == 0xD800;
    return second || (unit >= 0xFE00 && unit <= 0xFE0F) || unit == 0x200D || before == 0x200D;
}

} // namespace

Lines::Lines(std::u16string_view text, int width, Fitting fitting)
    : text_(text), width_(width), fitting_(std::move(fitting)), complete_(false) {
    while (begin_ < text_.size() && isBlank(text_[begin_])) {
        ++begin_;
    }
}

void Lines::next() {
    const std::u16string_view rest = text_.substr(begin_, longest_line);
    const auto line_end = static_cast<std::size_t>(std::ranges::find_if(rest, isLineEnd) - rest.begin());
    const std::u16string_view piece = rest.substr(0, line_end);
    const bool whole = line_end < rest.size() || begin_ + rest.size() == text_.size();
    const auto goesOn = [&](std::size_t at) { return isInside(text_, begin_ + at); };

    std::size_t end = std::min(fitting_(piece, width_), piece.size());
    if ((end < piece.size() || !whole) && !(end < rest.size() && isBlank(rest[end]))) {
        std::size_t word = end;
        while (word > 0 && !isBlank(piece[word - 1])) {
            --word;
        }
        end = word > 0 ? word : std::max<std::size_t>(end, 1);
    }
    std::size_t between = end;
    while (between > 0 && goesOn(between)) {
        --between;
    }
    if (between == 0) {
        for (between = end; goesOn(between); ++between) {
        }
    }
    end = between;

    std::size_t shown = end;
    while (shown > 0 && isBlank(text_[begin_ + shown - 1])) {
        --shown;
    }
    lines_.push_back({begin_, begin_ + shown});
    begin_ += end;
    while (begin_ < text_.size() && isBlank(text_[begin_])) {
        ++begin_;
    }
    if (begin_ >= text_.size()) {
        complete_ = true;
    } else if (isLineEnd(text_[begin_])) {
        begin_ += text_[begin_] == u'\r' && begin_ + 1 < text_.size() && text_[begin_ + 1] == u'\n' ? 2 : 1;
    }
}

void Lines::first(std::size_t count) {
    while (!complete_ && lines_.size() < count) {
        next();
    }
}

void Lines::reach(std::size_t spoken) {
    spoken = std::min(spoken, text_.size());
    if (!complete_ && spoken > begin_ + most_at_once) {
        lines_.clear();
        begin_ = spoken - most_at_once;
        const auto blank = std::ranges::find_if(text_.substr(begin_, longest_line),
                                                [](char16_t unit) { return isBlank(unit) || isLineEnd(unit); });
        begin_ += static_cast<std::size_t>(blank - text_.substr(begin_, longest_line).begin());
        while (begin_ < spoken && (isBlank(text_[begin_]) || isLineEnd(text_[begin_]) || isInside(text_, begin_))) {
            ++begin_;
        }
    }
    while (!complete_ && begin_ < spoken) {
        next();
    }
}

std::size_t Lines::firstShown(std::size_t spoken, std::size_t room) const {
    if (lines_.size() <= room || room == 0) {
        return 0;
    }
    const auto after = std::ranges::partition_point(lines_, [&](const TextLine& line) { return line.begin < spoken; });
    const auto reached = static_cast<std::size_t>(after - lines_.begin());
    return reached > room ? reached - room : 0;
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
