// What a picture box shows: a picture kept in memory, drawn on in pixels, copied to the screen by Refresh.
#pragma once

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
    void setFontBold(bool bold);
    void setFontUnderline(bool underline);
    int TextWidth(std::u16string_view text) const;
    int TextHeight() const;

    void Cls(Colour background);
    void Fill(const Rect& pixels, Colour colour);
    void Print(int x, int y, std::u16string_view text, Colour colour);
    void PaintPicture(const Picture& picture, int x, int y);
    // Shows what was drawn since the last time.
    void Refresh();

    struct Impl;
    Impl& impl() { return *impl_; }

  private:
    std::unique_ptr<Impl> impl_;
};

} // namespace murmelix::ui
