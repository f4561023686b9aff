// Places as rows and columns that measure what is in them:
//
//     rows({item(Question).wrapped(), columns({stretch(), item(Ok).least(1200),
//     item(Cancel).least(1200)})}).gap(120).pad(240)
//
// A layout is made anew each time it is needed: it keeps nothing but references to the controls. Lengths are twips.
#pragma once

#include <vector>

#include "ui/control.h"

namespace murmelix::ui {

class Form;

class Layout {
  public:
    // At least so large, whatever it measures.
    Layout least(int width, int height = 0) &&;
    // At most so wide: what is in it is wrapped or cut.
    Layout widest(int width) &&;
    // Its text breaks into lines at the width that it is given.
    Layout wrapped() &&;
    // Takes what is left of the length of its row or column, shared with others that grow.
    Layout growing(int share = 1) &&;
    // Does not fill the breadth of its row or column: it stands in the middle, at the start or at the end.
    Layout centered() &&;
    Layout atStart() &&;
    Layout atEnd() &&;
    // Between the parts.
    Layout gap(int between) &&;
    // Around all.
    Layout pad(int around) &&;
    Layout pad(int left, int top, int right, int bottom) &&;

    // Twips that it takes, wrapped to a width where one is given.
    Size needed(int width = 0) const;
    // Gives everything in it its place.
    void place(const Rect& twips) const;

  private:
    friend Layout item(Control& control);
    friend Layout rows(std::vector<Layout> parts);
    friend Layout columns(std::vector<Layout> parts);
    friend Layout within(Control& holder, Layout inside);
    friend Layout space(int length);
    enum class Kind { item, within, rows, columns, space };
    enum class Alignment { fill, start, center, end };
    explicit Layout(Kind kind) : kind_(kind) {}

    Size inner(int width) const;
    std::vector<int> lengths(const Size& room) const;
    std::vector<int> columnWidths(int width) const;

    Kind kind_;
    Control* control_ = nullptr;
    std::vector<Layout> parts_;
    Size least_;
    int widest_ = 0; // 0: as wide as it likes
    int gap_ = 0;
    int left_ = 0, top_ = 0, right_ = 0, bottom_ = 0;
    int share_ = 0;
    bool wraps_ = false;
    Alignment alignment_ = Alignment::fill;
};

Layout item(Control& control);
// A frame, panel or picture box with what is in it, which has places of its own within it.
Layout within(Control& holder, Layout inside);
Layout rows(std::vector<Layout> parts);    // below one another
Layout columns(std::vector<Layout> parts); // beside one another
Layout space(int length = 0);              // nothing, so long
// Nothing, as long as there is room.
inline Layout stretch() {
    return space().growing();
}

// Makes a form of a fixed size as large as the layout, which is `width` wide where one is given, and places it.
void fit(Form& form, const Layout& layout, int width = 0);
// Fills a form that has a size of its own.
void fill(const Form& form, const Layout& layout);

} // namespace murmelix::ui
