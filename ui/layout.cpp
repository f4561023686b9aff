#include "ui/layout.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "ui/form.h"

namespace murmelix::ui {

Layout Layout::least(int width, int height) && {
    least_ = {width, height};
    return std::move(*this);
}

Layout Layout::widest(int width) && {
    widest_ = width;
    return std::move(*this);
}

Layout Layout::wrapped() && {
    wraps_ = true;
    return std::move(*this);
}

Layout Layout::growing(int share) && {
    share_ = share;
    return std::move(*this);
}

Layout Layout::centered() && {
    alignment_ = Alignment::center;
    return std::move(*this);
}

Layout Layout::atStart() && {
    alignment_ = Alignment::start;
    return std::move(*this);
}

Layout Layout::atEnd() && {
    alignment_ = Alignment::end;
    return std::move(*this);
}

Layout Layout::gap(int between) && {
    gap_ = between;
    return std::move(*this);
}

Layout Layout::pad(int around) && {
    return std::move(*this).pad(around, around, around, around);
}

Layout Layout::pad(int left, int top, int right, int bottom) && {
    left_ = left;
    top_ = top;
    right_ = right;
    bottom_ = bottom;
    return std::move(*this);
}

Layout item(Control& control) {
    Layout layout(Layout::Kind::item);
    layout.control_ = &control;
    return layout;
}

Layout within(Control& holder, Layout inside) {
    Layout layout(Layout::Kind::within);
    layout.control_ = &holder;
    layout.parts_.push_back(std::move(inside));
    return layout;
}

Layout rows(std::vector<Layout> parts) {
    Layout layout(Layout::Kind::rows);
    layout.parts_ = std::move(parts);
    return layout;
}

Layout columns(std::vector<Layout> parts) {
    Layout layout(Layout::Kind::columns);
    layout.parts_ = std::move(parts);
    return layout;
}

Layout space(int length) {
    Layout layout(Layout::Kind::space);
    layout.least_ = {length, length};
    return layout;
}

Size Layout::needed(int width) const {
    const int limited = widest_ > 0 && width > 0 ? std::min(width, widest_) : width > 0 ? width : widest_;
    Size size = inner(limited > 0 ? std::max(limited - left_ - right_, 1) : 0);
    size.width += left_ + right_;
    size.height += top_ + bottom_;
    if (widest_ > 0) {
        size.width = std::min(size.width, widest_);
    }
    return {std::max(size.width, least_.width), std::max(size.height, least_.height)};
}

// What it takes inside its padding; a width of 0 is as much as it likes.
Size Layout::inner(int width) const {
    const int gaps = gap_ * std::max(static_cast<int>(parts_.size()) - 1, 0);
    Size size;
    switch (kind_) {
    case Kind::space:
        return {};
    case Kind::item:
        return control_->neededSize(wraps_ ? width : 0);
    case Kind::within:
        return parts_.front().needed(width);
    case Kind::rows:
        for (const Layout& part : parts_) {
            const Size of_part = part.needed(width);
            // The length of an empty space is that in the direction of what it is in.
            size.width = std::max(size.width, part.kind_ == Kind::space ? 0 : of_part.width);
            size.height += of_part.height;
        }
        size.height += gaps;
        return size;
    case Kind::columns: {
        const auto widths = columnWidths(width);
        for (std::size_t i = 0; i < parts_.size(); ++i) {
            size.width += widths[i];
            size.height =
                std::max(size.height, parts_[i].kind_ == Kind::space ? 0 : parts_[i].needed(widths[i]).height);
        }
        size.width += gaps;
        return size;
    }
    }
    return size;
}

namespace {

// Shares out what is left of a length by the shares of the parts that grow.
void grow(std::vector<int>& lengths, const std::vector<int>& shares, int left) {
    int all = std::accumulate(shares.begin(), shares.end(), 0);
    for (std::size_t i = 0; i < lengths.size() && all > 0; ++i) {
        if (shares[i] > 0) {
            const int more = left * shares[i] / all;
            lengths[i] = std::max(lengths[i] + more, 0);
            left -= more;
            all -= shares[i];
        }
    }
}

} // namespace

std::vector<int> Layout::columnWidths(int width) const {
    std::vector<int> widths, shares;
    for (const Layout& part : parts_) {
        widths.push_back(part.wraps_ && part.share_ > 0 && width > 0 ? part.least_.width : part.needed().width);
        shares.push_back(part.share_);
    }
    if (width > 0) {
        const int gaps = gap_ * std::max(static_cast<int>(parts_.size()) - 1, 0);
        grow(widths, shares, width - gaps - std::accumulate(widths.begin(), widths.end(), 0));
    }
    return widths;
}

std::vector<int> Layout::lengths(const Size& room) const {
    if (kind_ == Kind::columns) {
        return columnWidths(room.width);
    }
    std::vector<int> heights, shares;
    for (const Layout& part : parts_) {
        heights.push_back(part.needed(room.width).height);
        shares.push_back(part.share_);
    }
    const int gaps = gap_ * std::max(static_cast<int>(parts_.size()) - 1, 0);
    grow(heights, shares, room.height - gaps - std::accumulate(heights.begin(), heights.end(), 0));
    return heights;
}

void Layout::place(const Rect& twips) const {
    const Rect inside{twips.left + left_, twips.top + top_, std::max(twips.width - left_ - right_, 0),
                      std::max(twips.height - top_ - bottom_, 0)};
    if (kind_ == Kind::item) {
        return control_->Move(inside);
    }
    if (kind_ == Kind::within) {
        control_->Move(inside);
        return parts_.front().place({0, 0, inside.width, inside.height});
    }
    const bool across = kind_ == Kind::columns;
    const auto along = lengths({inside.width, inside.height});
    int at = across ? inside.left : inside.top;
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        const Layout& part = parts_[i];
        const int room = across ? inside.height : inside.width;
        int breadth = room;
        if (part.alignment_ != Alignment::fill) {
            const Size needed = across ? part.needed(along[i]) : part.needed(room);
            breadth = std::min(across ? needed.height : needed.width, room);
        }
        const int left_over = part.alignment_ == Alignment::center ? (room - breadth) / 2
                              : part.alignment_ == Alignment::end  ? room - breadth
                                                                   : 0;
        part.place(across ? Rect{at, inside.top + left_over, along[i], breadth}
                          : Rect{inside.left + left_over, at, breadth, along[i]});
        at += along[i] + gap_;
    }
}

void fit(Form& form, const Layout& layout, int width) {
    const Size size = layout.needed(width);
    const int wide = std::max(width, size.width);
    form.setScale(wide, size.height);
    layout.place({0, 0, wide, size.height});
}

void fill(const Form& form, const Layout& layout) {
    layout.place({0, 0, form.ScaleWidth(), form.ScaleHeight()});
}

} // namespace murmelix::ui
