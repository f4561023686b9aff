#include "companions/messenger/client/live_view.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "common/text.h"
#include "companions/messenger/client/conversation_form.h"
#include "companions/messenger/client/measures.h"
#include "companions/messenger/reading/links.h"

namespace messenger_client {

namespace {

// Lines that fall out at the beginning are taken out of the control in so large parts: each time it lays out anew.
constexpr std::size_t dropped_at_once = 500;

// A line end counts as one.
int lengthOf(std::u16string_view text) {
    return static_cast<int>(text.size()) - static_cast<int>(std::ranges::count(text, u'\r'));
}

} // namespace

std::u16string webAddress(std::u16string_view link) {
    constexpr std::string_view signs = "-._~:/?#[]@!$&'()*+,;=%";
    const bool has_scheme = reading::isWebLink(link) && murmelix::toLower(link.front()) == u'h'; // else it is "www."
    std::string address = has_scheme ? "" : "http://";
    for (const char byte : murmelix::toUtf8(link)) {
        const bool kept = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                          (byte >= '0' && byte <= '9') || signs.find(byte) != std::string_view::npos;
        if (kept) {
            address += byte;
        } else {
            std::array<char, 4> code{};
            std::snprintf(code.data(), code.size(), "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
            address += code.data();
        }
    }
    return murmelix::fromUtf8(address);
}

ui::RichTextBox::Looks LiveView::looksOf(Style style, bool told) {
    const ui::Colour plain = told ? colour::text : colour::unread;
    switch (style) {
    case Style::name:
        return {.colour = plain, .bold = told}; // so that it is told by more than a colour
    case Style::link:
        return {.colour = colour::link, .link = true};
    case Style::announcement:
        return {.colour = told ? colour::text : colour::link, .bold = true};
    case Style::news:
        return {.colour = colour::fault, .bold = true};
    case Style::sign:
    case Style::note:
        return {.colour = colour::soft_text};
    case Style::text:
        break;
    }
    return {.colour = plain};
}

std::size_t LiveView::append(const LiveLine& line) {
    std::vector<std::pair<Style, std::u16string>> parts;
    const auto text = [&](Style style) {
        const std::u16string lines = LineBreaker().broken(line.text);
        std::size_t at = 0;
        for (const reading::Range& link : reading::linksIn(lines)) {
            if (!reading::isWebLink(std::u16string_view(lines).substr(link.begin))) {
                continue;
            }
            parts.emplace_back(style, lines.substr(at, link.begin - at));
            parts.emplace_back(Style::link, lines.substr(link.begin, link.end - link.begin));
            at = link.end;
        }
        parts.emplace_back(style, lines.substr(at));
    };
    switch (line.kind) {
    case LiveLine::Kind::message:
        parts.emplace_back(Style::name, line.writer + u": ");
        text(Style::text);
        break;
    case LiveLine::Kind::action:
        parts.emplace_back(Style::name, u"* " + line.writer + u" ");
        text(Style::text);
        break;
    case LiveLine::Kind::announcement:
        text(Style::announcement);
        break;
    case LiveLine::Kind::notice:
        if (!line.writer.empty()) {
            parts.emplace_back(Style::sign, line.writer + u" notes: ");
        }
        text(Style::note);
        break;
    case LiveLine::Kind::news:
        parts.emplace_back(Style::news, u"\x2500\x2500 New since you looked away \x2500\x2500");
        break;
    }
    std::erase_if(parts, [](const auto& part) { return part.second.empty(); });
    Shown shown{line.number, shown_.empty() ? 0 : 1, {}};
    std::size_t units = 0;
    for (auto& [style, run] : parts) {
        const bool begins = shown.runs.empty() && !shown_.empty();
        shown.runs.push_back({style, lengthOf(run)});
        shown.length += shown.runs.back().length;
        ui::RichTextBox::Looks looks = looksOf(style, line.told);
        looks.space_before = 2 * pixel;
        box_.Append(begins ? u"\r\n" + run : run, looks);
        units += run.size();
    }
    length_ += shown.length;
    shown_.push_back(std::move(shown));
    return units;
}

// Most of what changes is near the end.
int LiveView::beginOf(std::size_t index) const {
    int begin = length_;
    for (std::size_t i = shown_.size(); i > index; --i) {
        begin -= shown_[i - 1].length;
    }
    return begin;
}

void LiveView::remove(std::size_t index) {
    const int begin = beginOf(index);
    int length = shown_[index].length;
    if (index == 0 && shown_.size() > 1) {
        ++length; // the line end before the next one, which is the first one now
        --shown_[1].length;
    }
    box_.Remove(begin, length);
    length_ -= length;
    shown_.erase(shown_.begin() + static_cast<std::ptrdiff_t>(index));
}

void LiveView::alter(LineNumber number) {
    const auto found = std::ranges::lower_bound(shown_, number, {}, &Shown::number);
    if (found == shown_.end() || found->number != number) {
        return; // not shown yet
    }
    const auto index = static_cast<std::size_t>(found - shown_.begin());
    const LiveLine* const line = talk_.lines().find(number);
    if (!line || line->gone) {
        return remove(index);
    }
    int at = beginOf(index) + (index == 0 ? 0 : 1);
    for (const Run& run : found->runs) {
        box_.setLooks(at, run.length, looksOf(run.style, line->told));
        at += run.length;
    }
}

void LiveView::dropOld() {
    const LineNumber first = talk_.lines().first();
    const auto end = std::ranges::lower_bound(shown_, first, {}, &Shown::number);
    const auto count = static_cast<std::size_t>(end - shown_.begin());
    if (count < dropped_at_once && count < shown_.size()) {
        return;
    }
    int length = 0;
    for (auto line = shown_.begin(); line != end; ++line) {
        length += line->length;
    }
    if (end != shown_.end()) {
        ++length;
        --end->length;
    }
    if (length > 0) {
        box_.Remove(0, length);
        length_ -= length;
        shown_.erase(shown_.begin(), end);
    }
}

bool LiveView::show(std::size_t units) {
    box_.BeginUpdate();
    const LiveLines& lines = talk_.lines();
    dropOld();
    for (const LineNumber number : talk_.lines().takeAltered()) {
        alter(number);
    }
    next_ = std::max(next_, lines.first()); // what has come and gone meanwhile was never seen
    std::size_t shown = 0;
    while (next_ < lines.next() && shown < units) {
        const LiveLine& line = *lines.find(next_++);
        if (!line.gone) {
            shown += append(line);
        }
    }
    box_.EndUpdate();
    return next_ < lines.next();
}

} // namespace messenger_client
