#include "companions/messenger/live/lines.h"

#include <algorithm>
#include <utility>

namespace messenger_client {

LineNumber LiveLines::add(LiveLine line) {
    line.number = next_++;
    lines_.push_back(std::move(line));
    if (lines_.size() > most) {
        lines_.pop_front();
    }
    return lines_.back().number;
}

void LiveLines::tell(LineNumber number) {
    LiveLine* const line = get(number);
    if (line && !line->told && !line->gone) {
        line->told = true;
        alter(*line);
    }
}

void LiveLines::remove(LineNumber number) {
    LiveLine* const line = get(number);
    if (line && !line->gone) {
        line->gone = true;
        line->text.clear();
        alter(*line);
    }
}

void LiveLines::removeThose(const std::function<bool(const LiveLine&)>& chosen) {
    for (const LiveLine& line : lines_) {
        if (!line.gone && chosen(line)) {
            remove(line.number);
        }
    }
}

const LiveLine* LiveLines::find(LineNumber number) const {
    return number < first() || number >= next_ ? nullptr : &lines_[static_cast<std::size_t>(number - first())];
}

LiveLine* LiveLines::get(LineNumber number) {
    return const_cast<LiveLine*>(std::as_const(*this).find(number));
}

std::vector<LineNumber> LiveLines::takeAltered() {
    std::erase_if(altered_, [this](LineNumber number) { return number < first(); });
    for (const LineNumber number : altered_) {
        get(number)->altered = false;
    }
    return std::exchange(altered_, {});
}

void LiveLines::alter(LiveLine& line) {
    if (std::exchange(line.altered, true)) {
        return;
    }
    // Where nobody looks, those that have fallen out since are forgotten.
    if (altered_.size() == most) {
        std::erase_if(altered_, [this](LineNumber number) { return number < first(); });
    }
    altered_.push_back(line.number);
}

} // namespace messenger_client
