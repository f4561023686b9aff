// The controls of a window. A form has them as members, created in the order of the Tab key, and sets their events:
// `StartConvButt.Click = [this] { StartConvButt_Click(); };`
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "ui/drag_drop.h"
#include "ui/surface.h"
#include "ui/types.h"

namespace murmelix::ui {

class Form;

enum class Kind {
    form,
    frame,
    panel,
    label,
    line,
    link,
    button,
    check_box,
    text_box,
    drop_down_list,
    scroll_bar,
    picture_box
};

class Control {
  public:
    virtual ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    const std::u16string& Caption() const { return caption_; }
    void setCaption(const std::u16string& caption);
    bool Visible() const { return visible_; }
    void setVisible(bool visible);
    bool Enabled() const { return enabled_; }
    void setEnabled(bool enabled);
    const std::u16string& ToolTipText() const { return tip_; }
    void setToolTipText(const std::u16string& tip);
    // Whether "&" marks an accelerator in the caption, as at first; else it is a letter like others.
    bool UseMnemonic() const { return use_mnemonic_; }
    void setUseMnemonic(bool use);

    // Twips, within the parent.
    const Rect& Bounds() const { return bounds_; }
    int Left() const { return bounds_.left; }
    int Top() const { return bounds_.top; }
    int Width() const { return bounds_.width; }
    int Height() const { return bounds_.height; }
    void Move(const Rect& twips);
    // Twips that a caption would take in this control, its box or rim included; wrapped where a width is given.
    Size sizeFor(const std::u16string& caption, int width = 0) const;
    Size neededSize() const { return sizeFor(caption_); }
    // In front of its siblings.
    void ZOrder();
    void SetFocus();

    std::function<void()> Click, GotFocus;

    Control* Parent() const { return parent_; }
    Form& form();
    const std::vector<Control*>& Children() const { return children_; }
    std::uintptr_t handle() const { return handle_; }

    // True where the user can get at it: visible and enabled with all around it, and not wholly behind a sibling of it
    // or of what holds it.
    bool reachable() const;
    virtual bool takesFocus() const { return false; }
    // The accelerator was pressed.
    virtual void onMnemonic();
    virtual void onClick();
    void onFocus();
    // The screen's resolution, or the system's font or colours, changed: takes its place anew, with all that is in it.
    void replace();

  protected:
    Control(Control* parent, Kind kind, const std::u16string& caption, std::uintptr_t owner = 0);
    virtual void resized() {}
    std::uintptr_t handle_ = 0;

  private:
    friend class Form;
    bool covered() const;
    void place(bool anew);

    Control* parent_;
    std::vector<Control*> children_; // in the order of the Tab key
    std::vector<Control*> stacking_; // the same, the frontmost last
    std::u16string caption_, tip_;
    Rect bounds_;
    Rect pixels_; // the same on the screen
    bool visible_ = true;
    bool enabled_ = true;
    bool use_mnemonic_ = true;
};

// Holds other controls; with a border and a caption, or without (a panel).
class Frame : public Control {
  public:
    enum class Border { line, none };
    Frame(Control& parent, const std::u16string& caption, Border border = Border::line);
};

class Label : public Control {
  public:
    Label(Control& parent, const std::u16string& caption) : Control(&parent, Kind::label, caption) {}
    void setHeading(); // in bold
    void setCentered();
};

// Horizontal, to part what is above from what is below.
class Line : public Control {
  public:
    explicit Line(Control& parent) : Control(&parent, Kind::line, u"") {}
};

// A label that is clicked to go somewhere.
class LinkLabel : public Control {
  public:
    LinkLabel(Control& parent, const std::u16string& caption) : Control(&parent, Kind::link, caption) {}
    bool takesFocus() const override { return true; }
};

class Button : public Control {
  public:
    Button(Control& parent, const std::u16string& caption) : Control(&parent, Kind::button, caption) {}
    bool takesFocus() const override { return true; }
};

class CheckBox : public Control {
  public:
    CheckBox(Control& parent, const std::u16string& caption) : Control(&parent, Kind::check_box, caption) {}
    bool takesFocus() const override { return true; }
    // 0 or 1. Setting another value than the current one raises Click.
    std::int16_t Value() const { return value_; }
    void setValue(std::int16_t value);
    void onClick() override { setValue(value_ == 0 ? 1 : 0); }

  private:
    std::int16_t value_ = 0;
};

class TextBox : public Control {
  public:
    TextBox(Control& parent, const std::u16string& text);
    bool takesFocus() const override { return true; }
    const std::u16string& Text() const { return text_; }
    // Setting another text than the current one raises Change.
    void setText(const std::u16string& text);
    std::function<void()> Change;
    // The user changed the text.
    void onText(const std::u16string& text);

  private:
    std::u16string text_;
};

class DropDownList : public Control {
  public:
    explicit DropDownList(Control& parent) : Control(&parent, Kind::drop_down_list, u"") {}
    bool takesFocus() const override { return true; }
    void Clear();
    void AddItem(const std::u16string& text);
    // As many in one go, instead of what is there.
    void setItems(std::vector<std::u16string> items);
    int ListCount() const { return static_cast<int>(items_.size()); }
    const std::u16string& List(int index) const { return items_.at(static_cast<std::size_t>(index)); }
    int ListIndex() const { return index_; } // from 0; -1 when nothing is selected
    // Setting another entry than the current one raises Click; a position that is not there selects nothing.
    void setListIndex(int index);
    std::u16string Text() const { return index_ < 0 ? std::u16string() : List(index_); }
    // The user picked an entry.
    void onPick(int index);

  private:
    std::vector<std::u16string> items_;
    int index_ = -1;
};

// A vertical one; values from 0 to Max.
class ScrollBar : public Control {
  public:
    explicit ScrollBar(Control& parent) : Control(&parent, Kind::scroll_bar, u"") {}
    int Value() const { return value_; }
    int Max() const { return max_; }
    // Setting another value than the current one raises Change.
    void setValue(int value);
    // `page`: how far a click beside the thumb goes.
    void setRange(int max, int page);
    int page() const { return page_; }
    std::function<void()> Change;

  private:
    int value_ = 0, max_ = 0, page_ = 1;
};

// A surface of its own with mouse and keyboard. Positions are pixels within it.
class PictureBox : public Control {
  public:
    explicit PictureBox(Control& parent) : Control(&parent, Kind::picture_box, u"") {}
    ~PictureBox() override;
    bool takesFocus() const override { return takes_focus_; }
    void setTakesFocus(bool takes) { takes_focus_ = takes; }
    void setSunken(bool sunken); // the three-dimensional border
    const Picture& picture() const { return picture_; }
    void setPicture(const Picture& picture); // shown in the middle, where the surface is not drawn on
    Surface& surface() { return surface_; }
    const Surface& surface() const { return surface_; }

    std::function<void()> DblClick, Resize;
    std::function<void(int button, int shift, double x, double y)> MouseDown, MouseMove, MouseUp;
    std::function<bool(Key key)> KeyDown; // true when it was of use
    std::function<void(int rows)> Wheel;  // up is negative

    DropMode OLEDropMode() const { return drop_mode_; }
    void setOLEDropMode(DropMode mode);
    // Drags what OLEStartDrag puts on the data object (nothing where it allows no effect) and returns when it was let
    // go, after OLECompleteDrag. Meanwhile the windows of this thread are served.
    void OLEDrag();
    std::function<void(DataObject& data, DropEffect& allowed)> OLEStartDrag;
    std::function<void(DropEffect effect)> OLECompleteDrag;
    // Data was let go over the box: it changes `effect` where another one happened than is offered.
    std::function<void(DataObject& data, DropEffect& effect, int button, int shift, double x, double y)> OLEDragDrop;

    // What letting go here would do.
    DropEffect dropEffect(DropEffect allowed, int shift) const;
    // It was let go; the result is what happened.
    DropEffect onDrop(DataObject& data, DropEffect allowed, int button, int shift, double x, double y);

  protected:
    void resized() override;

  private:
    Picture picture_;
    bool takes_focus_ = false;
    DropMode drop_mode_ = DropMode::none;
    Surface surface_;
};

} // namespace murmelix::ui
