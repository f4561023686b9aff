#include "companions/agent/stage/balloon_layout.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace agent::stage {
namespace {

bool isLineEnd(char16_t unit) {
    return unit == u'\n' || unit == u'\r' || unit == u'\v' || unit == u'\f' || unit == u'\u2028' || unit == u'\u2029';
}

bool breaksLine(char16_t unit) {
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
    while (begin_ < text_.size() && breaksLine(text_[begin_])) {
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
    if ((end < piece.size() || !whole) && !(end < rest.size() && breaksLine(rest[end]))) {
        std::size_t word = end;
        while (word > 0 && !breaksLine(piece[word - 1])) {
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
    while (shown > 0 && breaksLine(text_[begin_ + shown - 1])) {
        --shown;
    }
    lines_.push_back({begin_, begin_ + shown});
    begin_ += end;
    while (begin_ < text_.size() && breaksLine(text_[begin_])) {
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
                                                [](char16_t unit) { return breaksLine(unit) || isLineEnd(unit); });
        begin_ += static_cast<std::size_t>(blank - text_.substr(begin_, longest_line).begin());
        while (begin_ < spoken && (breaksLine(text_[begin_]) || isLineEnd(text_[begin_]) || isInside(text_, begin_))) {
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

BalloonPlace placeBalloon(int width, int height, int tail, const Rect& character, const Rect& screen,
                          std::span<const Rect> others) {
    const auto within = [](int at, int length, int low, int high) {
        return std::max(low, std::min(at, high - length));
    };
    const int middle_x = (character.left + character.right) / 2;
    const int middle_y = (character.top + character.bottom) / 2;
    const auto at = [&](Side side, int aside) {
        int left = middle_x - width / 2 + width * aside / 100, top = middle_y - height / 2 + height * aside / 100;
        int tail_x = middle_x, tail_y = middle_y;
        switch (side) {
        case Side::above:
            top = character.top - tail - height;
            tail_y = character.top;
            break;
        case Side::below:
            top = character.bottom + tail;
            tail_y = character.bottom;
            break;
        case Side::left:
            left = character.left - tail - width;
            tail_x = character.left;
            break;
        case Side::right:
            left = character.right + tail;
            tail_x = character.right;
            break;
        }
        left = within(left, width, screen.left, screen.right);
        top = within(top, height, screen.top, screen.bottom);
        return BalloonPlace{{left, top, left + width, top + height}, side, tail_x, tail_y};
    };
    const auto hasRoom = [&](Side side) {
        switch (side) {
        case Side::above:
            return character.top - tail - height >= screen.top;
        case Side::below:
            return character.bottom + tail + height <= screen.bottom;
        case Side::left:
            return character.left - tail - width >= screen.left;
        default:
            return character.right + tail + width <= screen.right;
        }
    };
    const auto covered = [&](const BalloonPlace& place) {
        std::int64_t area = 0;
        for (const Rect& other : others) {
            area += sharedArea(place.body, other);
        }
        return area;
    };
    const bool left_first = character.left - screen.left > screen.right - character.right;
    const std::array<Side, 4> sides{Side::above, Side::below, left_first ? Side::left : Side::right,
                                    left_first ? Side::right : Side::left};
    std::optional<BalloonPlace> best;
    std::int64_t best_covered = 0;
    for (const Side side : sides) {
        if (!hasRoom(side)) {
            continue;
        }
        for (const int aside : {0, 25, -25, 45, -45}) { // percent of its length, so that it stays over its tail
            const BalloonPlace place = at(side, aside);
            const std::int64_t covers = covered(place);
            if (!best || covers < best_covered) {
                best = place;
                best_covered = covers;
            }
            if (best_covered == 0) {
                return *best;
            }
        }
    }
    return best ? *best : at(sides[2], 0);
}

} // namespace agent::stage
