// A picture in memory, drawn on in pixels: what a picture box shows when it is refreshed, a row of a list, a button.
#pragma once

#include <initializer_list>
#include <memory>
#include <string_view>

#include "ui/types.h"

namespace murmelix::ui {

class Surface {
  public:
    Surface();
    ~Surface();
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    int Width() const;
    int Height() const;

    // Points; 0 is the size of the system's font.
    void setFontSize(double points);
    // Of the system's font, in percent.
    void setFontScale(int percent);
    void setFontBold(bool bold);
    void setFontUnderline(bool underline);
    int TextWidth(std::u16string_view text) const;
    int TextHeight() const;

    void Cls(Colour background);
    void Fill(const Rect& pixels, Colour colour);
    // The colour where it was white, the opposite where it was black: what is there can still be read.
    void FillNotXor(const Rect& pixels, Colour colour);
    void Print(int x, int y, std::u16string_view text, Colour colour);
    void PaintPicture(const Picture& picture, int x, int y);
    // One line in the middle of the height; what does not fit ends with an ellipsis.
    enum class Align { left, center };
    void PrintIn(const Rect& pixels, std::u16string_view text, Colour colour, Align align = Align::left);
    // From one colour at the top to the other at the bottom.
    void Gradient(const Rect& pixels, Colour top, Colour bottom);
    void Ellipse(const Rect& pixels, Colour inside, Colour edge);
    // A line of one pixel around, inside the edge.
    void FrameRect(const Rect& pixels, Colour colour);
    void Polyline(std::initializer_list<Point> points, Colour colour, int thickness);
    // The mark of the keyboard's focus.
    void FocusRect(const Rect& pixels);
    // Shows what was drawn since the last time.
    void Refresh();

    struct Impl;
    Impl& impl() { return *impl_; }

  private:
    std::unique_ptr<Impl> impl_;
};

} // namespace murmelix::ui
