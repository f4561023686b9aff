#include "ui/surface.h"

#include "tests/fakes/ui/windows.h"
#include "ui/picture_box.h"

namespace murmelix {

struct ui::Surface::Impl {
    int width = 0, height = 0, refreshes = 0;
    bool bold = false, underline = false;
    double points = 0;
    int percent = 100;
    ui::Colour background = 0;
    std::vector<fakes::Drawing> drawings;
};

namespace fakes {

const std::vector<Drawing>& drawings(ui::Surface& surface) {
    return surface.impl().drawings;
}

int refreshes(ui::Surface& surface) {
    return surface.impl().refreshes;
}

ui::Colour background(ui::Surface& surface) {
    return surface.impl().background;
}

std::vector<Drawing> drawn(const ui::ListBox& list, int index, int width, int height, const ui::ListBox::Looks& looks) {
    ui::Surface surface;
    surface.impl().width = width;
    surface.impl().height = height;
    list.onDraw(surface, index, looks);
    return surface.impl().drawings;
}

std::vector<Drawing> drawn(const ui::Button& button, int width, int height, const ui::Button::Looks& looks) {
    ui::Surface surface;
    surface.impl().width = width;
    surface.impl().height = height;
    button.draw()(surface, looks);
    return surface.impl().drawings;
}

std::vector<Drawing> drawn(const ui::Form& form) {
    const ui::Rect& inside = screen().bounds[form.handle()];
    ui::Surface surface;
    surface.impl().width = inside.width;
    surface.impl().height = inside.height;
    ui::raise<ui::Surface&>(form.Paint, surface);
    return surface.impl().drawings;
}

} // namespace fakes

namespace ui {

using fakes::Drawing;

Surface::Surface() : impl_(std::make_unique<Impl>()) {}
Surface::~Surface() = default;

int Surface::Width() const {
    return impl_->width;
}

int Surface::Height() const {
    return impl_->height;
}

void Surface::setFontSize(double points) {
    impl_->points = points;
}

void Surface::setFontScale(int percent) {
    impl_->percent = percent;
}

void Surface::setFontBold(bool bold) {
    impl_->bold = bold;
}

void Surface::setFontUnderline(bool underline) {
    impl_->underline = underline;
}

int Surface::TextWidth(std::u16string_view text) const {
    return static_cast<int>(text.size()) * fakes::character_width;
}

int Surface::TextHeight() const {
    return fakes::line_height;
}

void Surface::Cls(Colour background) {
    impl_->background = background;
    impl_->drawings.clear();
}

void Surface::Fill(const Rect& pixels, Colour colour) {
    impl_->drawings.push_back({Drawing::Kind::fill, pixels, colour});
}

void Surface::FillNotXor(const Rect& pixels, Colour colour) {
    impl_->drawings.push_back({Drawing::Kind::fill_not_xor, pixels, colour});
}

void Surface::Print(int x, int y, std::u16string_view text, Colour colour) {
    impl_->drawings.push_back({Drawing::Kind::text,
                               {x, y, 0, 0},
                               colour,
                               std::u16string(text),
                               impl_->bold,
                               impl_->underline,
                               impl_->points});
}

void Surface::PaintPicture(const Picture& picture, int x, int y) {
    impl_->drawings.push_back({Drawing::Kind::picture, {x, y, 0, 0}, 0, picture.name});
}

void Surface::PrintIn(const Rect& pixels, std::u16string_view text, Colour colour, Align) {
    impl_->drawings.push_back(
        {Drawing::Kind::text, pixels, colour, std::u16string(text), impl_->bold, impl_->underline, impl_->points});
}

void Surface::Gradient(const Rect& pixels, Colour top, Colour) {
    impl_->drawings.push_back({Drawing::Kind::gradient, pixels, top});
}

void Surface::Ellipse(const Rect& pixels, Colour inside, Colour edge) {
    impl_->drawings.push_back({.kind = Drawing::Kind::ellipse, .area = pixels, .colour = inside, .edge = edge});
}

void Surface::FrameRect(const Rect& pixels, Colour colour) {
    impl_->drawings.push_back({Drawing::Kind::frame, pixels, colour});
}

void Surface::Polyline(std::initializer_list<Point> points, Colour colour, int) {
    const Point first = points.size() > 0 ? *points.begin() : Point{};
    impl_->drawings.push_back({Drawing::Kind::line, {first.x, first.y, 0, 0}, colour});
}

void Surface::FocusRect(const Rect& pixels) {
    impl_->drawings.push_back({Drawing::Kind::focus, pixels});
}

void Surface::Refresh() {
    ++impl_->refreshes;
}

void native::attach(Surface& surface, Handle picture_box) {
    const Rect& bounds = fakes::screen().bounds[picture_box];
    surface.impl().width = bounds.width;
    surface.impl().height = bounds.height;
}

} // namespace ui
} // namespace murmelix
