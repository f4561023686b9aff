#include "companions/messenger/client/conversation_form.h"

#include <algorithm>
#include <utility>

#include "companions/messenger/client/account.h"
#include "companions/messenger/client/measures.h"
#include "ui/screen.h"

namespace messenger_client {

namespace {

// Longer lines are shown as several.
constexpr std::size_t longest_line = 500;

// Twips.
constexpr int padding = 6 * pixel; // between the frame of a text and the text

// Pixels at 96 dots an inch: what a character and its balloon take above a window; a window at first, at least, and
// beside the one before it.
constexpr int head_room = 300;
constexpr int first_left = 330, first_width = 560, first_height = 480, least_first_height = 320;
constexpr int beside = 28, most_beside = 8;

ui::RichTextBox::WindowClass windowClass(EditClass edit_class) {
    using WindowClass = ui::RichTextBox::WindowClass;
    switch (edit_class) {
    case EditClass::rich_edit_20a:
        return WindowClass::ansi;
    case EditClass::ink_edit:
        return WindowClass::ink;
    case EditClass::rich_edit_20w:
        break;
    }
    return WindowClass::wide;
}

} // namespace

ui::Rect placeOfConversation(const ui::Rect& work_area, std::size_t others, const WantedPlace& wanted,
                             const std::optional<ui::Rect>& last) {
    const int number = static_cast<int>(others % most_beside);
    if (last && !wanted.left && !wanted.top && !wanted.width && !wanted.height) {
        // At the far side it begins again at the near one.
        const auto stepped = [step = px(beside) * number](int at, int size, int area, int area_size) {
            return area + (at - area + step) % (area_size - size + 1);
        };
        return {stepped(last->left, last->width, work_area.left, work_area.width),
                stepped(last->top, last->height, work_area.top, work_area.height), last->width, last->height};
    }
    const int width = wanted.width.value_or(px(first_width));
    const int left = wanted.left ? *wanted.left + px(beside) * number
                                 : std::max(std::min(work_area.left + px(first_left + beside * number),
                                                     work_area.left + work_area.width - width),
                                            work_area.left);
    if (wanted.top) {
        return {left, *wanted.top + px(beside) * number, width, wanted.height.value_or(px(first_height))};
    }
    // Where the window would reach out of the screen it is less high; where it cannot be, the room above it is less.
    const int bottom = work_area.top + work_area.height;
    const int least = wanted.height.value_or(px(least_first_height));
    const int highest = std::max(std::min(work_area.top + px(head_room), bottom - least), work_area.top);
    const int steps = std::max((bottom - least - highest) / px(beside), 0) + 1;
    const int top = highest + px(beside) * (number % steps);
    return {left, top, width, wanted.height.value_or(std::max(std::min(px(first_height), bottom - top), least))};
}

std::u16string LineBreaker::broken(std::u16string_view text) {
    std::u16string lines;
    lines.reserve(text.size());
    std::size_t blank = 0; // the end of the last one in the line, which is where words part; 0: none
    for (const char16_t unit : text) {
        if (unit == u'\r' || unit == u'\n') {
            units_ = 0;
            blank = 0;
        } else if (++units_ > longest_line && (unit & 0xFC00) != 0xDC00) {
            const std::size_t at = blank > 0 ? blank : lines.size();
            units_ = lines.size() - at + 1;
            lines.insert(at, u"\r\n");
            blank = 0;
        }
        lines += unit;
        if (unit == u' ') {
            blank = lines.size();
        }
    }
    return lines;
}

void ConversationForm::onClose() {
    client_.close(conversation_);
}

void ConversationForm::rememberPlace() const {
    if (Visible() && WindowState() == State::normal && Place() != first_place_) {
        conversationPlace().keep(Place());
    }
}

bool ConversationForm::onEscape() {
    onClose();
    return true;
}

ConversationForm::ConversationForm(Client& client, ConversationPtr conversation, const EditClasses& edits)
    : Form(nullptr, u"Conversation", ui::FormStyle::sizable, conversation_class),
      History(*this, ui::RichTextBox::Use::show, windowClass(edits.history)),
      Input(*this, ui::RichTextBox::Use::edit, windowClass(edits.input)), client_(client),
      conversation_(std::move(conversation)) {
    setIcon({u"#1", 32});
    setBackColor(colour::face);
    Input.KeyPress = [this](const ui::Shortcut& key) { return Input_KeyPress(key); };
    History.setAccessibleName(u"History");
    Input.setAccessibleName(u"Message");
    Send.Click = [this] { Send_Click(); };
    DefaultButton = &Send;
}

bool ConversationForm::Input_KeyPress(const ui::Shortcut& key) {
    if (key.key != ui::Key::enter) {
        return false;
    }
    if (key.shift & ui::shift_key) {
        Input.setSelText(u"\r\n");
    } else {
        Send_Click();
    }
    return true;
}

void ConversationForm::settle(const ui::Rect& place) {
    // The window system counts from the front: so that other programs find the first created first.
    for (auto child = Children().rbegin(); child != Children().rend(); ++child) {
        (*child)->ZOrder();
    }
    layOut(); // with its least size, which the place may be below
    setPlace(place);
    first_place_ = Place();
    conversation_->setWindow(static_cast<std::intptr_t>(handle()));
}

ui::Rect ConversationForm::pixelsOf(const ui::Rect& twips) {
    const int left = ui::toPixels(twips.left), top = ui::toPixels(twips.top);
    return {left, top, ui::toPixels(twips.left + twips.width) - left, ui::toPixels(twips.top + twips.height) - top};
}

ui::Layout ConversationForm::framed(ui::Control& text, int height) {
    return ui::item(text).least(0, height).pad(padding, padding, pixel, padding);
}

void ConversationForm::drawFrame(ui::Surface& surface, const ui::Control& text, bool padded) {
    if (text.Visible()) {
        // It stands away from the text; the scroll bar stands at it.
        const int inset = padded ? padding : pixel;
        const ui::Rect& place = text.Bounds();
        const ui::Rect frame =
            pixelsOf({place.left - inset, place.top - inset, place.width + inset + pixel, place.height + 2 * inset});
        surface.Fill(frame, colour::field);
        surface.FrameRect(frame, colour::line);
    }
}

int ConversationForm::headingHeight() const {
    return sizeFor(u"X").height * 9 / 4 + 18 * pixel;
}

void ConversationForm::drawHeading(ui::Surface& surface, std::u16string_view title, std::u16string_view below) const {
    const int line = ui::toPixels(sizeFor(u"X").height);
    drawBand(surface, {0, 0, surface.Width(), line * 9 / 4 + px(18)});
    ui::Rect place{px(12), px(7), std::max(surface.Width() - px(20), 0), line * 5 / 4 + px(3)};
    surface.setFontScale(125);
    surface.setFontBold(true);
    surface.PrintIn(place, title, colour::on_band);
    surface.setFontScale(100);
    surface.setFontBold(false);
    place.top += place.height;
    place.height = line + px(3);
    surface.PrintIn(place, below, colour::on_band_soft);
}

} // namespace messenger_client
