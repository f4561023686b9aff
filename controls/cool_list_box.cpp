#include "controls/cool_list_box.h"

#include <algorithm>
#include <cmath>

#include "common/text.h"
#include "platform/ui/screen.h"

namespace murmelix {

namespace {

constexpr int scroll_bar_twips = 255;
constexpr int message_margin_twips = 120; // on either side
constexpr std::u16string_view line_break = u"\r\n";

std::vector<std::u16string_view> split(std::u16string_view text, std::u16string_view at) {
    std::vector<std::u16string_view> parts;
    for (std::size_t found; (found = text.find(at)) != npos; text.remove_prefix(found + at.size()))
        parts.push_back(text.substr(0, found));
    parts.push_back(text);
    return parts;
}

} // namespace

CoolListBox::CoolListBox(ui::Control& parent) : Frame(parent, u"", Border::none) {
    P.setSunken(true);
    P.setTakesFocus(true);
    Scroll.setVisible(false);
    P.Resize = [this] {
        updateScroll();
        Redraw();
    };
    P.MouseDown = [this](int, int, double, double y) { P_MouseDown(y); };
    P.Click = [this] { P_Click(); };
    P.DblClick = [this] {
        if (DblClick)
            DblClick();
    };
    P.KeyDown = [this](ui::Key key) { return P_KeyDown(key); };
    P.Wheel = [this](int rows) { Scroll.setValue(Scroll.Value() + rows); };
    Scroll.Change = [this] { Redraw(); };
}

void CoolListBox::setEnabledIt(bool enabled) {
    P.setEnabled(enabled);
    Redraw();
}

void CoolListBox::setAppearance(std::int16_t appearance) {
    appearance_ = appearance;
    P.setSunken(appearance != 0);
    layOut();
}

void CoolListBox::setBackColor(ui::Colour colour) {
    back_color_ = colour;
    Redraw();
}

void CoolListBox::setNoItemCaption(const std::u16string& message) {
    no_item_caption_ = message;
    Redraw();
}

void CoolListBox::setItemHeight(std::int16_t height) {
    item_height_ = std::max<std::int16_t>(height, 1);
    updateScroll();
    Redraw();
}

void CoolListBox::setSelected(std::int16_t position) {
    if (position == selected_ || position > GetItemCount())
        return;
    const std::int16_t before = selected_;
    selected_ = position;
    DrawItem(before);
    DrawItem(position);
    if (OnSelect)
        OnSelect();
}

void CoolListBox::AddItem(const std::u16string& Caption, const std::u16string& Text, const std::u16string& aKey,
                          bool sel, const ui::Picture& Icon) {
    if (items_.contains(aKey))
        return;
    items_.Add({Caption, Text, aKey, Icon}, aKey);
    updateScroll();
    if (sel) {
        setSelected(GetItemCount());
        makeVisible(selected_);
    }
    Redraw();
}

void CoolListBox::RemoveItem(const std::u16string& Key) {
    const auto position = static_cast<std::int16_t>(items_.position(Key));
    if (position == 0)
        return;
    std::int16_t selection = selected_;
    const bool last = position == GetItemCount();
    if (position < selected_ || (position == selected_ && last))
        --selection;
    items_.Remove(Key);
    setSelected(selection);
    updateScroll();
    Redraw();
}

void CoolListBox::ClearList() {
    items_.Clear();
    updateScroll();
    Redraw();
}

void CoolListBox::EditItemCaption(const std::u16string& Key, const std::u16string& aCaption) {
    if (!items_.contains(Key))
        return;
    items_.Item(Key).Caption = aCaption;
    DrawItem(static_cast<std::int16_t>(items_.position(Key)));
}

void CoolListBox::EditItemText(const std::u16string& Key, const std::u16string& newText) {
    if (!items_.contains(Key))
        return;
    items_.Item(Key).Text = newText;
    DrawItem(static_cast<std::int16_t>(items_.position(Key)));
}

std::u16string CoolListBox::GetSelectedKey() const {
    return selected_ >= 1 && selected_ <= GetItemCount() ? Item(selected_).Key : std::u16string();
}

void CoolListBox::SelectKey(const std::u16string& New_Seketed_Key, bool MakeVisible) {
    const auto position = static_cast<std::int16_t>(items_.position(New_Seketed_Key));
    if (position == 0)
        return;
    setSelected(position);
    if (MakeVisible)
        makeVisible(selected_);
}

void CoolListBox::SetPos(std::int32_t CaptionX, std::int32_t CaptionY, std::int32_t TextX, std::int32_t TextY,
                         std::int32_t IconX, std::int32_t IconY) {
    CaptionPosX = CaptionX;
    CaptionPosY = CaptionY;
    TextPosX = TextX;
    TextPosY = TextY;
    IconPosX = IconX;
    IconPosY = IconY;
    Redraw();
}

void CoolListBox::Redraw() {
    ui::Surface& surface = P.surface();
    surface.Cls(back_color_);
    if (items_.Count() == 0) {
        drawMessage();
    } else {
        const int count = GetItemCount();
        const int behind = Scroll.Value() + (surface.Height() + item_height_ - 1) / item_height_;
        for (int position = Scroll.Value() + 1; position <= std::min(count, behind); ++position)
            paintRow(static_cast<std::int16_t>(position));
    }
    surface.Refresh();
}

void CoolListBox::DrawItem(std::int16_t position) {
    if (position < 1 || position > GetItemCount())
        return;
    paintRow(position);
    P.surface().Refresh();
}

void CoolListBox::ChangeFontSize(double newFontSize) {
    P.surface().setFontSize(newFontSize);
}

void CoolListBox::resized() {
    layOut();
}

int CoolListBox::rowTop(std::int16_t position) const {
    return (position - 1 - Scroll.Value()) * item_height_;
}

int CoolListBox::wholeRows() const {
    return P.surface().Height() / item_height_;
}

bool CoolListBox::wholeInView(std::int16_t position) const {
    return position > Scroll.Value() && position <= Scroll.Value() + wholeRows();
}

void CoolListBox::makeVisible(std::int16_t position) {
    if (!wholeInView(position))
        Scroll.setValue(position - wholeRows());
}

void CoolListBox::updateScroll() {
    const double beyond = GetItemCount() - static_cast<double>(P.surface().Height()) / item_height_;
    const bool needed = beyond >= 1;
    // Halves go to the even neighbour.
    Scroll.setRange(needed ? static_cast<int>(std::nearbyint(beyond)) : 0, std::max(wholeRows(), 1));
    if (needed != Scroll.Visible()) {
        Scroll.setVisible(needed);
        layOut();
    }
}

void CoolListBox::layOut() {
    const int bar = Scroll.Visible() ? scroll_bar_twips : 0;
    P.Move({0, 0, std::max(Width() - bar, 0), Height()});
    Scroll.Move({Width() - scroll_bar_twips, 0, scroll_bar_twips, Height()});
}

void CoolListBox::paintRow(std::int16_t position) {
    ui::Surface& surface = P.surface();
    const CItem& item = Item(position);
    const int y = rowTop(position);
    if (y + item_height_ <= 0 || y >= surface.Height())
        return;
    ui::Colour colour = ui::grey_text;
    const bool selected = position == selected_;
    if (P.Enabled())
        colour = selected ? ui::highlight_text : ui::button_text;
    surface.Fill({0, y, surface.Width(), item_height_}, selected ? ui::highlight : back_color_);
    surface.setFontBold(true);
    surface.setFontUnderline(true);
    surface.Print(CaptionPosX, y + CaptionPosY, item.Caption, colour);
    surface.setFontBold(false);
    surface.setFontUnderline(false);
    surface.Print(TextPosX, y + TextPosY, item.Text, colour);
    if (item.Icon)
        surface.PaintPicture(item.Icon, IconPosX, y + IconPosY);
}

void CoolListBox::drawMessage() {
    ui::Surface& surface = P.surface();
    const auto lines = wrappedMessage();
    const int line_height = surface.TextHeight();
    int y = (surface.Height() - static_cast<int>(lines.size()) * line_height) / 2;
    for (const std::u16string& line : lines) {
        surface.Print((surface.Width() - surface.TextWidth(line)) / 2, y, line, ui::grey_text);
        y += line_height;
    }
}

std::vector<std::u16string> CoolListBox::wrappedMessage() const {
    const ui::Surface& surface = P.surface();
    const int room = surface.Width() - 2 * ui::toPixels(message_margin_twips);
    std::vector<std::u16string> lines;
    const std::u16string message = replaceAll(no_item_caption_, u"[ENTER]", line_break);
    for (const auto paragraph : split(message, line_break)) {
        std::u16string line;
        bool first = true;
        for (const auto word : split(paragraph, u" ")) {
            const std::u16string longer = first ? std::u16string(word) : line + u" " + std::u16string(word);
            if (first || surface.TextWidth(longer) <= room) {
                line = longer;
            } else {
                lines.push_back(std::exchange(line, std::u16string(word)));
            }
            first = false;
        }
        lines.push_back(line);
    }
    return lines;
}

void CoolListBox::P_MouseDown(double y) {
    const double row = std::ceil(y / item_height_) + Scroll.Value();
    setSelected(static_cast<std::int16_t>(std::clamp(row, 0.0, 32767.0)));
}

void CoolListBox::P_Click() {
    if (!wholeInView(selected_) && Scroll.Value() < Scroll.Max())
        Scroll.setValue(Scroll.Value() + 1);
    if (Click)
        Click();
}

bool CoolListBox::P_KeyDown(ui::Key key) {
    if (SuppressKeyboard || (key != ui::Key::up && key != ui::Key::down))
        return false;
    Scroll.setValue(Scroll.Value() + (key == ui::Key::up ? -1 : 1));
    return true;
}

} // namespace murmelix
