#include "controls/cool_list_box.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/text.h"
#include "ui/screen.h"

namespace murmelix {

namespace {

constexpr int scroll_bar_twips = 255;
constexpr int message_margin_twips = 120; // on either side
constexpr float drag_distance = 5;        // pixels from the press, in one direction
constexpr std::u16string_view line_break = u"\r\n";

std::vector<std::u16string_view> split(std::u16string_view text, std::u16string_view at) {
    std::vector<std::u16string_view> parts;
    for (std::size_t found; (found = text.find(at)) != npos; text.remove_prefix(found + at.size())) {
        parts.push_back(text.substr(0, found));
    }
    parts.push_back(text);
    return parts;
}

// Offsets may be any numbers: the sum stays one.
std::int32_t below(std::int32_t top, std::int32_t offset) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(std::int64_t{top} + offset, Limits::min(), Limits::max()));
}

} // namespace

CoolListBox::CoolListBox(ui::Control& parent) : Frame(parent, u"", Border::none) {
    P.setSunken(true);
    P.setTakesFocus(true);
    P.setParts(this);
    Scroll.setVisible(false);
    P.Resize = [this] {
        updateScroll();
        Redraw();
    };
    P.MouseDown = [this](int, int, double x, double y) { P_MouseDown(static_cast<float>(x), static_cast<float>(y)); };
    P.MouseUp = [this](int, int, double, double) { mouse_down_.reset(); };
    P.MouseMove = [this](int button, int, double x, double y) {
        P_MouseMove(button, static_cast<float>(x), static_cast<float>(y));
    };
    P.Click = [this] { P_Click(); };
    P.DblClick = [this] {
        if (DblClick) {
            DblClick();
        }
    };
    P.GotFocus = [this] { markFocus(true); };
    P.LostFocus = [this] { markFocus(false); };
    P.KeyDown = [this](ui::Key key) { return P_KeyDown(key); };
    P.Wheel = [this](int rows) { Scroll.setValue(Scroll.Value() + rows); };
    P.OLEStartDrag = [this](ui::DataObject& data, ui::DropEffect& allowed) { P_OLEStartDrag(data, allowed); };
    P.OLECompleteDrag = [this](ui::DropEffect effect) { P_OLECompleteDrag(effect); };
    P.OLEDragDrop = [this](ui::DataObject& data, ui::DropEffect& effect, int button, int shift, double x, double y) {
        if (DragDropAlert) {
            DragDropAlert(data, effect, static_cast<std::int16_t>(button), static_cast<std::int16_t>(shift),
                          static_cast<float>(x), static_cast<float>(y));
        } else {
            effect = ui::drop_none;
        }
    };
    Scroll.Change = [this] { Redraw(); };
}

void CoolListBox::announce(std::u16string_view name) const {
    if (PropertyChanged) {
        PropertyChanged(name);
    }
}

template <class T>
void CoolListBox::setAndRedraw(T& property, T value, std::u16string_view name) {
    property = std::move(value);
    Redraw();
    announce(name);
}

void CoolListBox::setEnabledIt(bool enabled) {
    P.setEnabled(enabled);
    Redraw();
    announce(u"EnabledIt");
}

void CoolListBox::setAppearance(std::int16_t appearance) {
    appearance_ = appearance;
    P.setSunken(appearance != 0);
    layOut();
    announce(u"Appearance");
}

void CoolListBox::setBackColor(ui::Colour colour) {
    setAndRedraw(back_color_, colour, u"BackColor");
}

void CoolListBox::setDragDropZone(std::int16_t zone) {
    drag_drop_zone_ = zone;
    announce(u"OLEDropMode");
}

void CoolListBox::setNoItemCaption(const std::u16string& message) {
    setAndRedraw(no_item_caption_, message, u"NoItemCaption");
}

void CoolListBox::setItemHeight(std::int16_t height) {
    item_height_ = std::max<std::int16_t>(height, 1);
    updateScroll();
    Redraw();
    announce(u"ItemHeight");
}

void CoolListBox::setIconPosX(std::int32_t x) {
    setAndRedraw(icon_pos_x_, x, u"IconPosX");
}

void CoolListBox::setIconPosY(std::int32_t y) {
    setAndRedraw(icon_pos_y_, y, u"IconPosY");
}

void CoolListBox::setCaptionPosX(std::int32_t x) {
    setAndRedraw(caption_pos_x_, x, u"CaptionPosX");
}

void CoolListBox::setCaptionPosY(std::int32_t y) {
    setAndRedraw(caption_pos_y_, y, u"CaptionPosY");
}

void CoolListBox::setTextPosX(std::int32_t x) {
    setAndRedraw(text_pos_x_, x, u"TextPosX");
}

void CoolListBox::setTextPosY(std::int32_t y) {
    setAndRedraw(text_pos_y_, y, u"TextPosY");
}

void CoolListBox::setSelected(std::int16_t position) {
    if (position == selected_ || position < 0 || position > GetItemCount()) {
        return;
    }
    const std::int16_t before = selected_;
    const bool marked_all = marksAll();
    selected_ = position;
    if (marked_all != marksAll()) {
        Redraw();
    } else {
        DrawItem(before);
        DrawItem(position);
    }
    tellSelection();
    if (OnSelect) {
        OnSelect();
    }
    announce(u"Selected");
}

void CoolListBox::tellSelection() const {
    if (isRow(selected_)) {
        P.tellOfPart(ui::AccessibleEvent::selection, selected_ - 1);
        if (has_focus_) {
            P.tellOfPart(ui::AccessibleEvent::focus, selected_ - 1);
        }
    }
}

std::u16string CoolListBox::partName(int index) const {
    const CItem& item = Item(static_cast<std::int16_t>(index + 1));
    return item.Caption.empty() || item.Text.empty() ? item.Caption + item.Text : item.Caption + u", " + item.Text;
}

ui::Rect CoolListBox::partPlace(int index) const {
    const int top = std::max(rowTop(index + 1), 0);
    const int bottom = std::min(rowTop(index + 1) + item_height_, P.surface().Height());
    return bottom > top ? ui::Rect{0, top, P.surface().Width(), bottom - top} : ui::Rect{};
}

void CoolListBox::selectPart(int index) {
    setSelected(static_cast<std::int16_t>(index + 1));
    makeVisible(selected_);
}

void CoolListBox::doPart(int index) {
    selectPart(index);
    if (DblClick) {
        DblClick();
    } else if (Click) {
        Click();
    }
}

void CoolListBox::ReadProperties(const PropertyBag& bag) {
    const auto number = [&bag]<class T>(const char16_t* name, T default_value, T least = 0,
                                        T most = std::numeric_limits<T>::max()) {
        return static_cast<T>(bag.ReadProperty(name, default_value, least, most));
    };
    const auto offset = [&number](const char16_t* name, std::int32_t default_value) {
        return number(name, default_value, std::numeric_limits<std::int32_t>::min());
    };
    using Short = std::int16_t;
    P.setEnabled(bag.ReadProperty(u"EnabledIt", false));
    appearance_ = number(u"Appearance", Short{1}, Short{0}, Short{1});
    back_color_ = number(u"BackColor", ui::window_background);
    drag_drop_zone_ = number(u"DragDropZone", Short{0}, std::numeric_limits<Short>::min());
    no_item_caption_ = bag.ReadProperty(u"NoItemCaption", u"No Items in List");
    item_height_ = number(u"ItemHeight", Short{15}, Short{1});
    icon_pos_x_ = offset(u"IconPosX", 0);
    icon_pos_y_ = offset(u"IconPosY", 0);
    caption_pos_x_ = offset(u"CaptionPosX", 0);
    caption_pos_y_ = offset(u"CaptionPosY", 0);
    text_pos_x_ = offset(u"TextPosX", 1);
    text_pos_y_ = offset(u"TextPosY", 1);
    selected_ = number(u"Selected", Short{0});
    P.setSunken(appearance_ != 0);
    layOut();
}

void CoolListBox::WriteProperties(PropertyBag& bag) const {
    const auto number = [&bag](const char16_t* name, std::int64_t value, std::int64_t default_value) {
        bag.WriteProperty(name, value, default_value);
    };
    bag.WriteProperty(u"EnabledIt", EnabledIt(), false);
    number(u"Appearance", appearance_, 1);
    number(u"BackColor", back_color_, ui::window_background);
    number(u"DragDropZone", drag_drop_zone_, 0);
    bag.WriteProperty(u"NoItemCaption", no_item_caption_, u"No Items in List");
    number(u"ItemHeight", item_height_, 15);
    number(u"IconPosX", icon_pos_x_, 0);
    number(u"IconPosY", icon_pos_y_, 0);
    number(u"CaptionPosX", caption_pos_x_, 0);
    number(u"CaptionPosY", caption_pos_y_, 0);
    number(u"TextPosX", text_pos_x_, 1);
    number(u"TextPosY", text_pos_y_, 1);
    number(u"Selected", selected_, 0);
}

void CoolListBox::AddItem(const std::u16string& Caption, const std::u16string& Text, const std::u16string& aKey,
                          bool sel, const ui::Picture& Icon) {
    if (items_.contains(aKey) || GetItemCount() == last_position) {
        return;
    }
    items_.Add({Caption, Text, aKey, Icon}, aKey);
    const std::int16_t position = GetItemCount();
    updateScroll();
    if (sel) {
        setSelected(position);
        makeVisible(selected_);
    }
    // A row below those that are shown changes nothing that is seen: long lists fill quickly.
    if (repaint_due_ || rowTop(position) < P.surface().Height()) {
        Redraw();
    }
    P.tellOfPart(ui::AccessibleEvent::parts, ui::no_part);
}

void CoolListBox::RemoveItem(const std::u16string& Key) {
    const auto position = static_cast<std::int16_t>(items_.position(Key));
    if (position == 0) {
        return;
    }
    std::int16_t selection = selected_;
    const bool last = position == GetItemCount();
    if (position < selected_ || (position == selected_ && last)) {
        --selection;
    }
    items_.Remove(static_cast<std::size_t>(position));
    setSelected(selection);
    updateScroll();
    Redraw();
    P.tellOfPart(ui::AccessibleEvent::parts, ui::no_part);
}

void CoolListBox::ClearList() {
    items_.Clear();
    updateScroll();
    Redraw();
    P.tellOfPart(ui::AccessibleEvent::parts, ui::no_part);
}

void CoolListBox::EditItemCaption(const std::u16string& Key, const std::u16string& aCaption) {
    if (!items_.contains(Key)) {
        return;
    }
    items_.Item(Key).Caption = aCaption;
    DrawItem(static_cast<std::int16_t>(items_.position(Key)));
    P.tellOfPart(ui::AccessibleEvent::name, static_cast<int>(items_.position(Key)) - 1);
}

void CoolListBox::EditItemText(const std::u16string& Key, const std::u16string& newText) {
    if (!items_.contains(Key)) {
        return;
    }
    items_.Item(Key).Text = newText;
    DrawItem(static_cast<std::int16_t>(items_.position(Key)));
    P.tellOfPart(ui::AccessibleEvent::name, static_cast<int>(items_.position(Key)) - 1);
}

std::u16string CoolListBox::GetSelectedKey() const {
    return isRow(selected_) ? Item(selected_).Key : std::u16string();
}

void CoolListBox::SelectKey(const std::u16string& New_Seketed_Key, bool MakeVisible) {
    const auto position = static_cast<std::int16_t>(items_.position(New_Seketed_Key));
    if (position == 0) {
        return;
    }
    setSelected(position);
    if (MakeVisible) {
        makeVisible(selected_);
    }
}

void CoolListBox::SetPos(std::int32_t CaptionX, std::int32_t CaptionY, std::int32_t TextX, std::int32_t TextY,
                         std::int32_t IconX, std::int32_t IconY) {
    caption_pos_x_ = CaptionX;
    caption_pos_y_ = CaptionY;
    text_pos_x_ = TextX;
    text_pos_y_ = TextY;
    icon_pos_x_ = IconX;
    icon_pos_y_ = IconY;
    Redraw();
}

void CoolListBox::Redraw() {
    repaint_due_ = false;
    ui::Surface& surface = P.surface();
    surface.Cls(back_color_);
    if (items_.Count() == 0) {
        drawMessage();
    } else {
        const int count = GetItemCount();
        const int behind = Scroll.Value() + (surface.Height() + item_height_ - 1) / item_height_;
        for (int position = Scroll.Value() + 1; position <= std::min(count, behind); ++position) {
            paintRow(static_cast<std::int16_t>(position));
        }
    }
    if (marksAll()) {
        surface.FocusRect({0, 0, surface.Width(), surface.Height()});
    }
    surface.Refresh();
}

void CoolListBox::DrawItem(std::int16_t position) {
    if (!isRow(position)) {
        return;
    }
    if (marksAll()) { // a row painted over the mark would leave a piece of it
        return Redraw();
    }
    paintRow(position);
    P.surface().Refresh();
}

void CoolListBox::ChangeFontSize(double newFontSize) {
    P.surface().setFontSize(newFontSize);
    repaint_due_ = true;
}

void CoolListBox::resized() {
    layOut();
}

int CoolListBox::rowTop(int position) const {
    return (position - 1 - Scroll.Value()) * item_height_;
}

int CoolListBox::wholeRows() const {
    return P.surface().Height() / item_height_;
}

bool CoolListBox::wholeInView(std::int16_t position) const {
    return position > Scroll.Value() && position <= Scroll.Value() + wholeRows();
}

void CoolListBox::makeVisible(std::int16_t position) {
    if (!wholeInView(position)) {
        Scroll.setValue(position - wholeRows());
    }
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
    const std::int32_t y = rowTop(position);
    if (y + item_height_ <= 0 || y >= surface.Height()) {
        return;
    }
    ui::Colour colour = ui::grey_text;
    const bool selected = position == selected_;
    if (P.Enabled()) {
        colour = selected ? ui::highlight_text : ui::button_text;
    }
    surface.Fill({0, y, surface.Width(), item_height_}, selected ? ui::highlight : back_color_);
    surface.setFontBold(true);
    surface.setFontUnderline(true);
    surface.Print(caption_pos_x_, below(y, caption_pos_y_), item.Caption, colour);
    surface.setFontBold(false);
    surface.setFontUnderline(false);
    surface.Print(text_pos_x_, below(y, text_pos_y_), item.Text, colour);
    if (item.Icon) {
        surface.PaintPicture(item.Icon, icon_pos_x_, below(y, icon_pos_y_));
    }
    if (selected && has_focus_) {
        surface.FocusRect({0, y, surface.Width(), item_height_});
    }
}

bool CoolListBox::marksAll() const {
    if (!has_focus_ || !isRow(selected_)) {
        return has_focus_;
    }
    const std::int32_t y = rowTop(selected_);
    return y + item_height_ <= 0 || y >= P.surface().Height();
}

void CoolListBox::markFocus(bool has_focus) {
    has_focus_ = has_focus;
    Redraw();
    if (has_focus && isRow(selected_)) {
        P.tellOfPart(ui::AccessibleEvent::focus, selected_ - 1);
    }
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

void CoolListBox::P_MouseDown(float x, float y) {
    mouse_down_ = {x, y};
    const float row = std::ceil(y / static_cast<float>(item_height_)) + static_cast<float>(Scroll.Value());
    setSelected(static_cast<std::int16_t>(std::clamp(row, 0.0F, static_cast<float>(last_position))));
}

void CoolListBox::P_MouseMove(int button, float x, float y) {
    if (button != ui::left_button || !mouse_down_ || drag_drop_zone_ == 0) {
        return;
    }
    if (std::abs(x - mouse_down_->x) < drag_distance && std::abs(y - mouse_down_->y) < drag_distance) {
        return;
    }
    // The drag takes the button's release, and one that was called off does not begin again.
    mouse_down_.reset();
    P.OLEDrag();
}

void CoolListBox::P_Click() {
    if (isRow(selected_) && !wholeInView(selected_)) {
        Scroll.setValue(Scroll.Value() + 1);
    }
    if (Click) {
        Click();
    }
}

bool CoolListBox::P_KeyDown(ui::Key key) {
    if (SuppressKeyboard || (key != ui::Key::up && key != ui::Key::down)) {
        return false;
    }
    Scroll.setValue(Scroll.Value() + (key == ui::Key::up ? -1 : 1));
    return true;
}

void CoolListBox::P_OLEStartDrag(ui::DataObject& data, ui::DropEffect& allowed) const {
    data.Clear();
    allowed = ui::drop_none;
    if (!isRow(selected_)) {
        return;
    }
    data.SetText(Item(selected_).Text);
    allowed = ui::drop_move;
}

void CoolListBox::P_OLECompleteDrag(ui::DropEffect effect) const {
    if (!DragDropCompleted || !isRow(selected_)) {
        return;
    }
    const CItem item = Item(selected_); // outlives its row, which may be removed now
    DragDropCompleted(effect, item);
}

} // namespace murmelix
