#include "controls/img_list_box.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "common/ansi.h"
#include "common/text.h"
#include "download/img_down_frm.h"
#include "matchups/matchup_store.h"
#include "platform/files.h"
#include "ui/form.h"
#include "ui/image.h"
#include "ui/screen.h"

namespace murmelix {

namespace {

const std::u16string more_characters = u"MoreChars";
constexpr int slide_steps = 13;
constexpr int slide_interval = 20; // milliseconds between two steps
constexpr int hold_pause = 300;    // milliseconds that the strip rests where something is held over a button

// Twips. The height of a panel is a multiple of what thirteen steps of whole pixels take at 96 dots an inch.
constexpr int step_unit = slide_steps * 15;
constexpr int least_panel_height = 10 * step_unit;
constexpr int button_height = 345, gap = 60, margin = 120;

// The store cannot keep longer ones.
constexpr std::size_t longest_contact = 254; // characters of the ANSI code page

bool isContact(const std::u16string& text) {
    const auto is_control = [](char16_t unit) { return unit < u' '; };
    return !text.empty() && std::ranges::none_of(text, is_control) && toAnsi(text).size() <= longest_contact;
}

// A name out of the registry could lead anywhere, and a network's computer can take minutes to answer.
bool isOfNetwork(const std::u16string& path) {
    return path.starts_with(u"\\\\") || path.starts_with(u"//");
}

std::optional<ui::Image> readImage(const std::u16string& path) {
    if (path.empty() || isOfNetwork(path)) {
        return std::nullopt;
    }
    const auto bytes = platform::readFile(path, ui::longest_gif);
    return bytes ? ui::decodeGif(*bytes) : std::nullopt;
}

} // namespace

struct ImgListBox::Windows {
    explicit Windows(ui::Control& strip) : frame(strip, u"") {}

    ui::Frame frame;
    ui::PictureBox image{frame};
    CoolListBox list{frame};
};

struct ImgListBox::Panel {
    CItem record;               // its caption, the file of its picture as text, its key
    bool has_character = true;  // else it asks for more
    std::vector<CItem> waiting; // the rows of its list, until that is made
    std::unique_ptr<Windows> windows;

    void add(const CItem& row) {
        if (windows) {
            windows->list.AddItem(row.Caption, row.Text, row.Key, false);
        } else if (std::ranges::find(waiting, row.Key, &CItem::Key) == waiting.end()) {
            waiting.push_back(row);
        }
    }
    void remove(const std::u16string& contact) {
        if (windows) {
            windows->list.RemoveItem(contact);
        } else {
            std::erase_if(waiting, [&](const CItem& row) { return row.Key == contact; });
        }
    }
    bool hasFocus() const { return windows && (windows->image.Focused() || windows->list.P.Focused()); }
};

ImgListBox::ImgListBox(ui::Control& parent)
    : Frame(parent, u"", Border::none), SlideTimer(slide_interval), HoldTimer(hold_pause),
      panel_height_(least_panel_height) {
    setAccessibleName(u"Characters and their contacts");
    Strip.setAccessibleName(u"Characters in view");
    ScrollButt[0].setToolTipText(u"Scrolls up to view more characters");
    ScrollButt[1].setToolTipText(u"Scrolls down to view more characters");
    for (std::size_t i = 0; i < ScrollButt.size(); ++i) {
        ui::Button& button = ScrollButt[i];
        button.setDraw(
            [this, i](ui::Surface& surface, const ui::Button::Looks& looks) { drawScrollButt(i, surface, looks); });
        button.Click = [this, i] { ScrollButt_Click(static_cast<std::int16_t>(i)); };
        button.setOLEDropMode(ui::DropMode::manual);
        button.OLEDragOver = [this, i](ui::DropEffect& effect, int, double, double, ui::DragState state) {
            effect = ui::drop_none;
            holdOver(i, state);
        };
        button.OLEDragDrop = [](ui::DataObject&, ui::DropEffect& effect, int, int, double, double) {
            effect = ui::drop_none;
        };
    }
    BlankItemImg.setPicture({u"picture_blank_character", 96});
    BlankItemImg.setVisible(false);
    MoreCharsItemImg.setPicture({u"picture_more_characters", 96});
    MoreCharsItemImg.setVisible(false);
    Strip.setOLEDropMode(ui::DropMode::manual);
    Strip.OLEDragOver = [this](ui::DropEffect& effect, int, double, double y, ui::DragState) {
        effect = panelAt(y) == 0 ? ui::drop_none : effect;
        markAt(effect == ui::drop_none ? std::nullopt : std::optional(y));
    };
    Strip.OLEDragDrop = [this](ui::DataObject& data, ui::DropEffect& effect, int, int, double, double y) {
        dropOn(panelAt(y), data, effect);
    };
    Wheel = [this](int rows) { turn(rows); };
    SlideTimer.Tick = [this] { slideStep(); };
    HoldTimer.Tick = [this] {
        HoldTimer.setEnabled(false);
        if (held_over_) {
            ScrollButt_Click(static_cast<std::int16_t>(*held_over_));
        }
    };
    arrange();
}

ImgListBox::~ImgListBox() {
    *alive_ = false;
    closeDownload();
}

void ImgListBox::AddItem(const std::u16string& ItemIMGFileName, const std::u16string& itemKeyCaption) {
    if (panels_.contains(itemKeyCaption) || GetListCount() == std::numeric_limits<std::int16_t>::max()) {
        return;
    }
    auto panel = std::make_unique<Panel>();
    panel->has_character = ItemIMGFileName != more_characters;
    panel->record.Key = itemKeyCaption;
    if (panel->has_character) {
        panel->record.Caption = itemKeyCaption;
        panel->record.Text = ItemIMGFileName;
    }
    panels_.Add(std::move(panel), itemKeyCaption);
    arrange();
}

void ImgListBox::RemoveItemAtPos(std::int16_t position) {
    endSlide();
    mark(nullptr);
    std::erase(shown_, &at(position));
    panels_.Remove(static_cast<std::size_t>(position));
    arrange();
}

void ImgListBox::ClearItems() {
    closeDownload();
    endSlide();
    shown_.clear();
    mark(nullptr);
    panels_.Clear();
    arrange();
}

std::int16_t ImgListBox::GetPositionFromKey(const std::u16string& key) const {
    return static_cast<std::int16_t>(panels_.position(key));
}

void ImgListBox::FillListsWithMatchupsFromRegistry() {
    const auto alive = alive_;
    // Asking what a row says can let in what changes the matchups.
    for (std::int16_t i = 1; static_cast<std::size_t>(i) <= Matchups.Count(); ++i) {
        const std::u16string character = GetMatchupCharacterAt(i), contact = GetMatchupContactAt(i);
        const std::u16string caption = captionOf(contact);
        if (!*alive) {
            return;
        }
        if (!panels_.contains(character)) {
            const std::u16string file = imageFile(character);
            AddItem(!file.empty() && platform::fileExists(file) ? file : std::u16string(), character);
        }
        if (panels_.contains(character)) {
            panels_.Item(character)->add({caption, contact, contact, {}});
        }
        if (i == std::numeric_limits<std::int16_t>::max()) {
            return;
        }
    }
}

ui::Frame& ImgListBox::ListFrame(std::int16_t position) {
    return windows(position).frame;
}

CoolListBox& ImgListBox::ListItems(std::int16_t position) {
    return windows(position).list;
}

ui::PictureBox& ImgListBox::ItemImage(std::int16_t position) {
    return windows(position).image;
}

void ImgListBox::GiveContact(const std::u16string& contact, std::int16_t position) {
    const std::u16string character = at(position).record.Key;
    if (!isContact(contact) || !at(position).has_character) {
        return;
    }
    const auto alive = alive_;
    const CItem row{captionOf(contact), contact, contact, {}};
    if (!*alive || !panels_.contains(character)) {
        return;
    }
    RemoveContact(contact);
    AddMatchup(contact, character);
    if (const auto listener = ContactGiven) {
        listener(contact);
    }
    if (*alive && panels_.contains(character)) {
        panels_.Item(character)->add(row);
    }
}

void ImgListBox::RemoveContact(const std::u16string& contact) {
    for (std::size_t i = 1; i <= panels_.Count(); ++i) {
        panels_.Item(i)->remove(contact);
    }
}

void ImgListBox::ShowPanel(std::int16_t position) {
    at(position);
    slideTo(std::clamp(first_, position - panelsInView(), position - 1));
}

void ImgListBox::FocusPanel(std::int16_t position) {
    ShowPanel(position);
    windows(position).list.P.SetFocus();
}

void ImgListBox::ScrollButt_Click(std::int16_t index) {
    if (!Sliding() && canScroll(static_cast<std::size_t>(index))) {
        slideTo(index == 0 ? first_ - 1 : first_ + 1);
    }
}

void ImgListBox::ItemImage_Click(std::int16_t position) {
    Panel& clicked = at(position);
    if (download_ || !clicked.has_character || !windows(position).image.Enabled()) {
        return;
    }
    const std::u16string character = clicked.record.Caption;
    const auto alive = alive_;
    {
        ImgDownFrm download(&form());
        download.CharacterName = character;
        download_ = &download;
        download.ShowModal();
    }
    if (!*alive) {
        return;
    }
    download_ = nullptr;
    const std::u16string file = imageFile(character);
    if (panels_.contains(character) && !file.empty() && platform::fileExists(file)) {
        Panel& panel = *panels_.Item(character);
        panel.record.Text = file;
        showImage(panel);
    }
}

void ImgListBox::resized() {
    endSlide();
    const int inside = std::max(Height() - 2 * (button_height + gap), 0);
    const int count = std::max(inside / least_panel_height, 1);
    panel_height_ = std::max(inside / count / step_unit, 1) * step_unit;
    // No part of a panel more: the buttons share what is left.
    const int strip = std::min(count * panel_height_, inside), button = button_height + (inside - strip) / 2;
    ScrollButt[0].Move({0, 0, Width(), button});
    Strip.Move({0, button + gap, Width(), strip});
    ScrollButt[1].Move({0, Height() - button, Width(), button});
    for (std::size_t i = 1; i <= panels_.Count(); ++i) {
        if (const Panel& panel = *panels_.Item(i); panel.windows) {
            layOut(*panel.windows);
        }
    }
    arrange();
}

ImgListBox::Panel& ImgListBox::at(std::int16_t position) const {
    return *panels_.Item(static_cast<std::size_t>(std::max<std::int16_t>(position, 0)));
}

std::int16_t ImgListBox::positionOf(const Panel& panel) const {
    return GetPositionFromKey(panel.record.Key);
}

ImgListBox::Windows& ImgListBox::windows(std::int16_t position) {
    Panel& panel = at(position);
    if (!panel.windows) {
        panel.windows = std::make_unique<Windows>(Strip);
        Windows& made = *panel.windows;
        made.frame.setVisible(false);
        const ui::Control* before = nullptr;
        for (std::int16_t i = position; --i > 0 && !before;) {
            before = at(i).windows ? &at(i).windows->frame : nullptr;
        }
        made.frame.setTabAfter(before);
        connect(panel);
        showImage(panel);
        for (const CItem& row : std::exchange(panel.waiting, {})) {
            panel.add(row);
        }
        layOut(made);
    }
    place(position);
    return *panel.windows;
}

void ImgListBox::connect(Panel& panel) {
    Windows& made = *panel.windows;
    made.frame.setUseMnemonic(false);
    made.frame.setCaption(panel.record.Caption);
    made.list.setNoItemCaption(panel.has_character ? u"No matchups for this character.[ENTER] [ENTER] Drag and drop "
                                                     u"MSN contact names here"
                                                   : u"You need to download more characters to have more matchups");
    // A picture that cannot be clicked leaves the mouse to its frame.
    made.image.setToolTipText(u"Drag and drop contact names on me");
    made.frame.setToolTipText(made.image.ToolTipText());
    made.frame.setEnabled(panel.has_character);
    made.frame.setAccessibleName(panel.has_character ? panel.record.Caption : u"More characters");
    made.list.P.setAccessibleName(panel.has_character ? u"Contacts of " + panel.record.Caption
                                                      : u"Download more characters");
    if (!panel.has_character) {
        return;
    }
    made.list.P.setToolTipText(ListToolTipText);
    made.list.setDragDropZone(1);
    made.list.P.setOLEDropMode(ui::DropMode::manual);
    made.list.DragDropAlert = [this, &panel](ui::DataObject& data, ui::DropEffect& effect, std::int16_t, std::int16_t,
                                             float, float) { dropOn(positionOf(panel), data, effect); };
    made.list.P.OLEDragOver = [this, &panel](ui::DropEffect& effect, int, double, double, ui::DragState) {
        mark(effect == ui::drop_none ? nullptr : &panel);
    };
    made.list.P.KeyPress = [this, &panel](const ui::Shortcut& key) { return panelKey(key, panel); };
    made.list.P.Wheel = [this, &panel, scroll_rows = made.list.P.Wheel](int rows) {
        if (panel.windows->list.Scroll.Visible()) {
            scroll_rows(rows);
        } else {
            turn(rows);
        }
    };
    made.image.Click = [this, &panel] { ItemImage_Click(positionOf(panel)); };
    made.image.KeyPress = [this, &panel](const ui::Shortcut& key) {
        if (key == ui::Shortcut(ui::Key::enter) || key == ui::Shortcut(ui::Key::space)) {
            ItemImage_Click(positionOf(panel));
            return true;
        }
        return panelKey(key, panel);
    };
}

// The blank picture can be clicked, as long as it is shown.
void ImgListBox::showImage(Panel& panel) {
    if (!panel.windows) {
        return;
    }
    ui::PictureBox& image = panel.windows->image;
    auto decoded = panel.has_character ? readImage(panel.record.Text) : std::nullopt;
    const bool blank = panel.has_character && !decoded;
    image.setPicture(panel.has_character ? BlankItemImg.picture() : MoreCharsItemImg.picture());
    image.setImage(std::move(decoded));
    image.setMousePointer(blank ? ui::PictureBox::Pointer::hand : ui::PictureBox::Pointer::arrow);
    image.setAccessibleName(blank                 ? u"Download the picture of " + panel.record.Caption
                            : panel.has_character ? u"Picture of " + panel.record.Caption
                                                  : u"More characters");
    image.setTakesFocus(blank);
    image.setEnabled(blank);
}

void ImgListBox::layOut(Windows& made) const {
    const int top = made.frame.sizeFor(u"X").height + gap;
    const int height = std::max(panel_height_ - top - margin, 0);
    const int side = std::max(std::min(height, Strip.Width() / 3), 0);
    made.frame.Move({made.frame.Left(), made.frame.Top(), Strip.Width(), panel_height_});
    made.image.Move({margin, top, side, height});
    made.list.Move({margin + side + margin, top, std::max(Strip.Width() - side - 3 * margin, 0), height});
    const int line = made.list.P.surface().TextHeight(), around = ui::toPixels(30);
    // Whole rows fill the list, so that none hides below its edge.
    const auto inside = [&] { return made.list.P.surface().Height(); };
    const int rows = std::max(inside() / std::max(2 * line + 2 * around, 1), 1), row = std::max(inside() / rows, 1);
    made.list.setItemHeight(static_cast<std::int16_t>(std::min(row, 1000)));
    if (inside() > rows * row) {
        made.list.Move({made.list.Left(), top, made.list.Width(), height - ui::toTwips(inside() - rows * row)});
    }
    made.list.SetPos(ui::toPixels(60), around, ui::toPixels(60), around + line, 0, 0);
}

void ImgListBox::place(std::int16_t position) {
    ui::Frame& frame = at(position).windows->frame;
    const ui::Rect bounds{0, (position - 1) * panel_height_ - offset_, Strip.Width(), panel_height_};
    if (frame.Bounds() != bounds) {
        frame.Move(bounds);
    }
}

void ImgListBox::arrange() {
    if (!Sliding()) {
        first_ = std::clamp(first_, 0, lastFirst());
        scrollTo(first_ * panel_height_);
    }
    const int behind = std::min((offset_ + Strip.Height() + panel_height_ - 1) / panel_height_, int{GetListCount()});
    std::vector<Panel*> in_view;
    for (int i = offset_ / panel_height_ + 1; i <= behind; ++i) {
        const auto position = static_cast<std::int16_t>(i);
        windows(position);
        in_view.push_back(&at(position));
    }
    for (Panel* panel : in_view) {
        if (!panel->windows->frame.Visible()) {
            panel->windows->frame.setVisible(true);
        }
    }
    keepFocusInView(in_view);
    if (dragged_to_) { // another panel slides there
        markAt(dragged_to_);
    }
    for (Panel* panel : std::exchange(shown_, in_view)) {
        if (std::ranges::find(in_view, panel) == in_view.end()) {
            panel->windows->frame.setVisible(false);
        }
    }
    for (std::size_t i = 0; i < ScrollButt.size(); ++i) {
        ScrollButt[i].setEnabled(Sliding() || canScroll(i));
    }
}

// Where the panel with the keyboard goes out of view, the nearest one has it from now on.
void ImgListBox::keepFocusInView(const std::vector<Panel*>& in_view) {
    for (const Panel* panel : shown_) {
        if (panel->hasFocus() && std::ranges::find(in_view, panel) == in_view.end() && !in_view.empty()) {
            const bool above = positionOf(*panel) < positionOf(*in_view.front());
            (above ? in_view.front() : in_view.back())->windows->list.P.SetFocus();
            return;
        }
    }
}

int ImgListBox::panelsInView() const {
    return std::max(Strip.Height() / panel_height_, 1);
}

int ImgListBox::lastFirst() const {
    return std::max(GetListCount() - panelsInView(), 0);
}

bool ImgListBox::canScroll(std::size_t index) const {
    return index == 0 ? first_ > 0 : first_ < lastFirst();
}

void ImgListBox::slideTo(int first) {
    if (first == first_) {
        return;
    }
    endSlide();
    const bool far = std::abs(first - first_) > 1;
    first_ = first;
    if (far || !ui::animates() || !form().Visible()) {
        return rest();
    }
    slide_from_ = offset_;
    slide_step_ = 0;
    SlideTimer.setEnabled(true);
    slideStep();
}

void ImgListBox::slideStep() {
    if (++slide_step_ == slide_steps) {
        return rest();
    }
    scrollTo(slide_from_ + (first_ * panel_height_ - slide_from_) / slide_steps * slide_step_);
    arrange();
    Strip.Refresh();
}

// What stays in view is not drawn again.
void ImgListBox::scrollTo(int offset) {
    const int down = std::exchange(offset_, offset) - offset;
    if (down != 0 && std::abs(down) < panel_height_) {
        Strip.ScrollChildren(down);
    }
}

void ImgListBox::endSlide() {
    if (Sliding()) {
        rest();
    }
}

void ImgListBox::rest() {
    SlideTimer.setEnabled(false);
    arrange();
    Strip.Refresh();
    HoldTimer.setEnabled(held_over_.has_value());
}

void ImgListBox::holdOver(std::size_t index, ui::DragState state) {
    if (state == ui::DragState::leave) {
        held_over_.reset();
        HoldTimer.setEnabled(false);
    } else if (held_over_ != index) {
        held_over_ = index;
        ScrollButt_Click(static_cast<std::int16_t>(index));
    }
}

void ImgListBox::drawScrollButt(std::size_t index, ui::Surface& surface, const ui::Button::Looks& looks) const {
    const int width = surface.Width(), height = surface.Height(), pixel = std::max(ui::toPixels(15), 1);
    surface.Cls(ui::button_face);
    surface.FrameRect({0, 0, width, height}, ui::grey_text);
    const int half = 6 * pixel, rise = index == 0 ? -3 * pixel : 3 * pixel;
    const int x = width / 2, y = height / 2 + (looks.pressed ? pixel : 0);
    surface.Polyline({{x - half, y - rise}, {x, y + rise}, {x + half, y - rise}},
                     ScrollButt[index].Enabled() ? ui::button_text : ui::grey_text, 2 * pixel);
    if (looks.focused) {
        surface.FocusRect({3, 3, width - 6, height - 6});
    }
}

bool ImgListBox::panelKey(const ui::Shortcut& key, Panel& panel) {
    const auto alive = alive_;
    const std::u16string character = panel.record.Key;
    if (const auto listener = PanelKey; listener && listener(key, positionOf(panel))) {
        return true;
    }
    if (!*alive || !panels_.contains(character)) {
        return false;
    }
    const std::int16_t position = GetPositionFromKey(character), last = GetListCount();
    std::int16_t next = position;
    if (key == ui::Shortcut(ui::Key::page_up)) {
        next = static_cast<std::int16_t>(position - 1);
    } else if (key == ui::Shortcut(ui::Key::page_down)) {
        next = static_cast<std::int16_t>(position + 1);
    } else if (key == ui::Shortcut(ui::Key::home, ui::control_key)) {
        next = 1;
    } else if (key == ui::Shortcut(ui::Key::end, ui::control_key)) {
        next = last;
    }
    if (next == position || next < 1 || next > last) {
        return false;
    }
    FocusPanel(next);
    return true;
}

std::int16_t ImgListBox::panelAt(double y) const {
    const int position = (ui::toTwips(static_cast<int>(y)) + offset_) / panel_height_ + 1;
    if (y < 0 || position > GetListCount() || !at(static_cast<std::int16_t>(position)).has_character) {
        return 0;
    }
    return static_cast<std::int16_t>(position);
}

// A notch turns by a panel, however fine the wheel is.
void ImgListBox::turn(int rows) {
    if ((rows < 0) != (turned_ < 0)) {
        turned_ = 0;
    }
    turned_ = Sliding() ? 0 : turned_ + rows;
    if (std::abs(turned_) >= rows_of_a_notch) {
        ScrollButt_Click(std::exchange(turned_, 0) < 0 ? 0 : 1);
    }
}

void ImgListBox::mark(Panel* panel) {
    dragged_to_.reset();
    if (panel == marked_) {
        return;
    }
    if (Panel* before = std::exchange(marked_, panel)) {
        before->windows->frame.setHighlighted(false);
    }
    if (panel) {
        panel->windows->frame.setHighlighted(true);
    }
}

void ImgListBox::markAt(std::optional<double> y) {
    const std::int16_t position = y ? panelAt(*y) : std::int16_t{0};
    if (position != 0) {
        windows(position);
    }
    mark(position == 0 ? nullptr : &at(position));
    dragged_to_ = y;
}

void ImgListBox::dropOn(std::int16_t position, const ui::DataObject& data, ui::DropEffect& effect) {
    mark(nullptr);
    if (position == 0 || !isContact(data.Text())) {
        effect = ui::drop_none;
        return;
    }
    GiveContact(data.Text(), position);
}

std::u16string ImgListBox::captionOf(const std::u16string& contact) const {
    const auto asks = CaptionOf;
    return asks ? asks(contact) : contact;
}

void ImgListBox::closeDownload() {
    if (download_) {
        download_->Unload();
    }
}

} // namespace murmelix
