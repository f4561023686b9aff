#include "companions/agent/stage/windows/balloon_window.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cwchar>
#include <utility>

#include <oleacc.h>

#include "common/com/handles.h"

namespace agent::stage {
namespace {

using murmelix::com::wide;

// Pixels at a scale of 1.
constexpr int padding_at_1 = 9;   // between text and border
constexpr int tail_at_1 = 18;     // from the body to the character
constexpr int tail_half_at_1 = 7; // of its width, at its root
constexpr int corner_at_1 = 12;   // radius

// UTF-16 units of a text that a screen reader is told: minutes of its speech.
constexpr std::size_t longest_told = 4096;

// Whether the first letter that has a direction is of a script written from the right.
bool beginsRightToLeft(std::u16string_view text) {
    std::array<WORD, 256> kinds{};
    const int count = static_cast<int>(std::min(text.size(), kinds.size()));
    if (count == 0 || !GetStringTypeW(CT_CTYPE2, wide(text.data()), count, kinds.data())) {
        return false;
    }
    for (int i = 0; i < count; ++i) {
        const WORD kind = kinds[static_cast<std::size_t>(i)];
        if (kind == C2_LEFTTORIGHT || kind == C2_RIGHTTOLEFT) {
            return kind == C2_RIGHTTOLEFT;
        }
    }
    return false;
}

// Row by row: Windows' own rounded rectangles are cut off rather than round at this size.
gdi::Region roundedRegion(const Rect& area, int radius) {
    gdi::Region region(CreateRectRgn(area.left, area.top + radius, area.right, area.bottom - radius));
    for (int row = 0; row < radius; ++row) {
        const double height = radius - row - 0.5;
        const int inset = radius - static_cast<int>(std::lround(std::sqrt(radius * radius - height * height)));
        for (const int y : {area.top + row, area.bottom - 1 - row}) {
            const gdi::Region line(CreateRectRgn(area.left + inset, y, area.right - inset, y + 1));
            CombineRgn(region.get(), region.get(), line.get(), RGN_OR);
        }
    }
    return region;
}

// What cannot be drawn as a letter becomes a blank.
std::u16string drawable(std::u16string text) {
    for (char16_t& unit : text) {
        if (unit < u' ' && unit != u'\n' && unit != u'\r') {
            unit = u' ';
        }
    }
    return text;
}

} // namespace

class BalloonWindow::Source final : public murmelix::ui::win32::AccessibleSource {
  public:
    Source(const BalloonWindow& balloon, std::function<std::u16string()> whose)
        : balloon_(balloon), whose_(std::move(whose)) {}
    HWND hwnd() const override { return balloon_.handle(); }
    long role() const override { return ROLE_SYSTEM_HELPBALLOON; }
    long state() const override { return STATE_SYSTEM_READONLY | (balloon_.open_ ? 0 : STATE_SYSTEM_INVISIBLE); }
    std::u16string name() const override { return balloon_.text_.substr(0, longest_told); }
    std::u16string description() const override { return whose_ ? whose_() : std::u16string(); }
    std::u16string action() const override { return balloon_.clicked_ ? u"Close" : u""; }
    void act() override { balloon_.clicked_(); }

  private:
    const BalloonWindow& balloon_;
    std::function<std::u16string()> whose_;
};

BalloonWindow::BalloonWindow(const Screens& screens, std::function<void()> clicked,
                             std::function<std::u16string()> whose)
    : screens_(screens), clicked_(std::move(clicked)), source_(std::make_shared<Source>(*this, std::move(whose))) {
    make({.class_name = L"AgentServerBalloon",
          .style = WS_POPUP,
          .extended_style = WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE});
}

BalloonWindow::~BalloonWindow() {
    destroy();
}

void BalloonWindow::open(BalloonKind kind, std::u16string text, const BalloonLook& look, const Rect& character,
                         std::vector<Rect> others) {
    kind_ = kind;
    text_ = drawable(std::move(text));
    look_ = look;
    spoken_ = 0;
    right_to_left_ = beginsRightToLeft(text_);

    character_ = character;
    others_ = std::move(others);
    measure();
    open_ = true;
    lay();
}

int BalloonWindow::scaled(int pixels) const {
    return static_cast<int>(std::lround(pixels * scale_));
}

void BalloonWindow::setScale(double scale) {
    if (std::exchange(scale_, scale) != scale) {
        remeasure();
    }
}

void BalloonWindow::setLetters(double letters) {
    if (std::exchange(letters_, letters) != letters) {
        remeasure();
    }
}

void BalloonWindow::remeasure() {
    if (open_) {
        measure();
        lines_.reach(spoken_);
        lay();
    }
}

void BalloonWindow::readOut() const {
    murmelix::ui::win32::tellReader(handle(), murmelix::ui::AccessibleEvent::news, murmelix::ui::no_part);
}

void BalloonWindow::measure() {
    padding_ = scaled(padding_at_1);
    LOGFONTW font{};
    font.lfHeight = static_cast<LONG>(std::lround(look_.font_height * scale_ * letters_));
    font.lfWeight = look_.weight;
    font.lfItalic = look_.italic;
    font.lfStrikeOut = look_.strike_out;
    font.lfUnderline = look_.underline;
    font.lfCharSet = look_.character_set;
    std::wcsncpy(font.lfFaceName, wide(look_.font_name.c_str()), LF_FACESIZE - 1);

    lettering_.choose(text_, font);
    const Rect screen = screenOf(screens_, character_).work;
    const int widest = std::clamp(lettering_.letterWidth() * std::clamp(look_.characters_a_line, 8, 255), 40,
                                  std::max(40, screen.width() - 2 * padding_));
    const std::size_t most =
        static_cast<std::size_t>(std::max(1, (screen.height() * 3 / 5 - 2 * padding_) / lettering_.lineHeight()));
    lines_ =
        Lines(text_, widest, [this](std::u16string_view piece, int width) { return lettering_.fitting(piece, width); });
    lines_.first(most);
    room_ = look_.size_to_text ? lines_.laid().size() : static_cast<std::size_t>(std::clamp(look_.lines, 1, 128));
    room_ = std::clamp<std::size_t>(room_, 1, most);
    // Of a text that scrolls not all lines are known: they have all the room that there is.
    int width = look_.size_to_text && lines_.complete() ? 0 : widest;
    for (std::size_t i = 0; width < widest && i < lines_.laid().size(); ++i) {
        const TextLine& line = lines_.laid()[i];
        width =
            std::max(width, lettering_.widthOf(std::u16string_view(text_).substr(line.begin, line.end - line.begin)));
    }
    body_width_ = std::max(std::min(width, widest), 24) + 2 * padding_;
    body_height_ = static_cast<int>(room_) * lettering_.lineHeight() + 2 * padding_;
}

void BalloonWindow::follow(const Rect& character, std::vector<Rect> others) {
    const bool moved = character != std::exchange(character_, character);
    const bool others_moved = others != others_;
    others_ = std::move(others);
    if (open_ && (moved || others_moved)) {
        lay();
    }
}

void BalloonWindow::lay() {
    const int reach = scaled(tail_at_1), corner = scaled(corner_at_1), tail_half = scaled(tail_half_at_1);
    const BalloonPlace place =
        placeBalloon(body_width_, body_height_, reach, character_, screenOf(screens_, character_).work, others_);
    Rect all = place.body;
    all.left -= place.side == Side::right ? reach : 0;
    all.right += place.side == Side::left ? reach : 0;
    all.top -= place.side == Side::below ? reach : 0;
    all.bottom += place.side == Side::above ? reach : 0;
    body_ = {place.body.left - all.left, place.body.top - all.top, place.body.right - all.left,
             place.body.bottom - all.top};
    const bool upright = place.side == Side::above || place.side == Side::below;
    // The tail grows from the body near the character's middle and ends at it, or as near as the window goes.
    const int tip_x = std::clamp(place.tail_x - all.left, 0, all.width() - 1);
    const int tip_y = std::clamp(place.tail_y - all.top, 0, all.height() - 1);
    const int root_x = std::clamp(tip_x, body_.left + corner + tail_half,
                                  std::max(body_.left + corner + tail_half, body_.right - corner - tail_half));
    const int root_y = std::clamp(tip_y, body_.top + corner, std::max(body_.top + corner, body_.bottom - corner));

    gdi::Region outline = roundedRegion(body_, corner);
    const auto join = [&](HRGN part) {
        const gdi::Region owned(part);
        CombineRgn(outline.get(), outline.get(), part, RGN_OR);
    };
    if (kind_ == BalloonKind::words) {
        const int inner_x = place.side == Side::left ? body_.right - 2 : body_.left + 2;
        const int inner_y = place.side == Side::above ? body_.bottom - 2 : body_.top + 2;
        const std::array<POINT, 3> corners =
            upright
                ? std::array<POINT, 3>{{{root_x - tail_half, inner_y}, {root_x + tail_half, inner_y}, {tip_x, tip_y}}}
                : std::array<POINT, 3>{{{inner_x, root_y - tail_half}, {inner_x, root_y + tail_half}, {tip_x, tip_y}}};
        join(CreatePolygonRgn(corners.data(), 3, WINDING));
    } else {
        const int edge_x = place.side == Side::left ? body_.right : body_.left;
        const int edge_y = place.side == Side::above ? body_.bottom : body_.top;
        const auto bubble = [&](int part, int radius) {
            const int x = upright ? root_x + (tip_x - root_x) * part / 100 : edge_x + (tip_x - edge_x) * part / 100;
            const int y = upright ? edge_y + (tip_y - edge_y) * part / 100 : root_y + (tip_y - root_y) * part / 100;
            join(CreateEllipticRgn(x - radius, y - radius, x + radius + 1, y + radius + 1));
        };
        bubble(40, scaled(5));
        bubble(85, scaled(3));
    }
    gdi::Region shape(CreateRectRgn(0, 0, 0, 0));
    CombineRgn(shape.get(), outline.get(), nullptr, RGN_COPY);
    outline_ = std::move(outline);
    SetWindowRgn(handle(), shape.release(), TRUE); // the window owns it now
    SetWindowPos(handle(), HWND_TOPMOST, all.left, all.top, all.width(), all.height(), SWP_NOACTIVATE | SWP_SHOWWINDOW);
    InvalidateRect(handle(), nullptr, FALSE);
}

void BalloonWindow::spoken(std::size_t end) {
    spoken_ = std::min(end, text_.size());
    if (open_) {
        lines_.reach(spoken_);
    }
    InvalidateRect(handle(), nullptr, FALSE);
}

void BalloonWindow::close() {
    open_ = false;
    ShowWindow(handle(), SW_HIDE);
}

void BalloonWindow::draw() {
    RECT area{};
    GetClientRect(handle(), &area);
    canvas_.resize(std::max(1L, area.right), std::max(1L, area.bottom));
    const HDC context = canvas_.context();
    const gdi::Brush background(CreateSolidBrush(look_.background_colour));
    const gdi::Brush border(CreateSolidBrush(look_.border_colour));
    FillRgn(context, outline_.get(), background.get());
    FrameRgn(context, outline_.get(), border.get(), 1, 1);
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, look_.text_colour);
    const int x = right_to_left_ ? body_.right - padding_ : body_.left + padding_;
    const std::vector<TextLine>& lines = lines_.laid();
    const std::size_t first = lines_.firstShown(spoken_, room_);
    for (std::size_t i = first; i < std::min(first + room_, lines.size()); ++i) {
        const TextLine& line = lines[i];
        const std::size_t end = std::min(line.end, std::max(line.begin, spoken_));
        const int y = body_.top + padding_ + static_cast<int>(i - first) * lettering_.lineHeight();
        lettering_.write(x, y, std::u16string_view(text_).substr(line.begin, end - line.begin), right_to_left_);
    }
}

LRESULT BalloonWindow::received(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;
    case WM_GETOBJECT:
        if (const LRESULT answer = murmelix::ui::win32::answerReader(source_, wparam, lparam)) {
            return answer;
        }
        return Window::received(message, wparam, lparam);
    case WM_LBUTTONUP:
        if (clicked_) {
            clicked_();
        }
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT: {
        PAINTSTRUCT painting{};
        const HDC context = BeginPaint(handle(), &painting);
        if (context && outline_) {
            draw();
            const SIZE size = canvas_.size();
            BitBlt(context, 0, 0, size.cx, size.cy, canvas_.context(), 0, 0, SRCCOPY);
        }
        EndPaint(handle(), &painting);
        return 0;
    }
    default:
        return Window::received(message, wparam, lparam);
    }
}

} // namespace agent::stage
