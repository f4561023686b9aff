// What all controls of a window have in common. A form has them as members, created in the order of the Tab key, and
// sets their events: `StartConvButt.Click = [this] { StartConvButt_Click(); };`
//
// A control is a pair of files here and one in win32/, where its system class, its notifications, its measures and its
// drawing stand together.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "ui/accessible.h"
#include "ui/drag_drop.h"
#include "ui/types.h"

namespace murmelix::ui {

class Form;
class Button;

namespace native {
using Handle = std::uintptr_t;
}

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
    // By which a screen reader calls it: the name that it was given, else what it shows as its caption, else the label
    // before it.
    std::u16string AccessibleName() const;
    void setAccessibleName(const std::u16string& name);
    // Whether "&" marks an accelerator in the caption, as at first; else it is a letter like others.
    bool UseMnemonic() const { return use_mnemonic_; }
    void setUseMnemonic(bool use);
    // What lies behind it and, where these have none of their own, behind what is in it.
    Colour BackColor() const;
    void setBackColor(Colour colour);
    // Of its text.
    Colour ForeColor() const { return fore_color_; }
    void setForeColor(Colour colour);

    // Twips, within the parent.
    const Rect& Bounds() const { return bounds_; }
    int Left() const { return bounds_.left; }
    int Top() const { return bounds_.top; }
    int Width() const { return bounds_.width; }
    int Height() const { return bounds_.height; }
    void Move(const Rect& twips);
    // Moves those that lie in it, as they are drawn, up (negative) or down; what appears is drawn when all else is
    // done, or by Refresh.
    void ScrollChildren(int twips);
    // Twips that a caption would take in this control, its box or rim included; wrapped where a width is given.
    Size sizeFor(const std::u16string& caption, int width = 0) const;
    // Twips that it takes as it is; what has no caption to measure tells the least that is of use.
    virtual Size neededSize(int width = 0) const { return sizeFor(caption_, width); }
    // Draws it now, with what is in it: before something that takes long, which keeps the loop from drawing.
    void Refresh();
    // In front of its siblings.
    void ZOrder();
    void SetFocus();
    // It comes right after a sibling in the order of the Tab key; first of all where there is none.
    void setTabAfter(const Control* sibling);
    bool Focused() const;

    std::function<void()> Click, GotFocus, LostFocus;
    // A key while it has the focus, before anybody else hears of it; true when it was of use.
    std::function<bool(const Shortcut& key)> KeyPress;
    // The menu of what is here was asked for, by the right mouse button or the keyboard: the place for PopupMenu.
    std::function<void()> ContextMenu;
    // The wheel was turned over it, or over what is in it and does not use it itself; up is negative. Of windows of the
    // toolkit's own class alone.
    std::function<void(int rows)> Wheel;
    static constexpr int rows_of_a_notch = 3;

    // Whether text that is dragged can be let go here: over it, and over what is in it and takes none itself.
    DropMode OLEDropMode() const { return drop_mode_; }
    void setOLEDropMode(DropMode mode);
    // Text is dragged over it; positions are pixels within. It changes `effect` where letting go here does something
    // else than is offered. Not every move is told, and no stay.
    std::function<void(DropEffect& effect, int shift, double x, double y, DragState state)> OLEDragOver;
    // Text was let go over it: it changes `effect` where another one happened than is offered.
    std::function<void(DataObject& data, DropEffect& effect, int button, int shift, double x, double y)> OLEDragDrop;

    Control* Parent() const { return parent_; }
    Form& form();
    const Form& form() const;
    const std::vector<Control*>& Children() const { return children_; }
    native::Handle handle() const { return handle_; }

    // True where it can be seen: visible with all around it, and not wholly behind a sibling of it or of what holds it.
    bool inSight() const;
    // True where the user can get at it: in sight, and enabled with all around it.
    bool reachable() const;
    virtual bool takesFocus() const { return false; }
    // Whether the arrow keys go from it to others of its kind beside it.
    virtual bool movesByArrows() const { return false; }
    // Whether Enter is a click on it while it has the focus.
    virtual bool clickedByEnter() const { return false; }
    // Whether it can be drawn as the one that Enter presses.
    virtual bool canBeDefault() const { return false; }
    virtual void showDefault(bool) {}
    // The accelerator that its caption marks, in upper case; 0: none.
    virtual char16_t mnemonic() const;
    // The same, or that of the label before it.
    char16_t accessKey() const;
    // What else a screen reader is told of it.
    virtual Accessible accessible() const { return {}; }
    virtual std::u16string accessibleValue() const { return {}; }
    // Does the action that accessible() names.
    virtual void onAccessibleAction() { onClick(); }
    virtual AccessibleParts* parts() { return nullptr; }
    // The accelerator was pressed.
    virtual void onMnemonic();
    virtual void onClick();
    // What letting go here would do.
    DropEffect dropEffect(DropEffect allowed, int shift) const;
    // The same, told to whoever listens.
    DropEffect onDragOver(DropEffect allowed, int shift, double x, double y, DragState state);
    // It was let go; the result is what happened. What has no text is not taken: for the control, it has left.
    DropEffect onDrop(DataObject& data, DropEffect allowed, int button, int shift, double x, double y);
    // The wheel turns by so many of wheel_notch, up being positive: fine ones turn by less than a row, which adds up.
    void onWheel(int delta);
    static constexpr int wheel_notch = 120;
    void onFocus();
    void onFocusLost();
    // The screen's resolution, or the system's font or colours, changed: takes its place anew, with all that is in it.
    void replace();

  protected:
    // Makes the window system's part of a control.
    using Make = native::Handle (*)(Control& control, native::Handle parent, const std::u16string& caption);
    Control(Control& parent, Make make, const std::u16string& caption);
    explicit Control(const std::u16string& caption); // a form
    virtual void resized() {}
    // What it shows as its caption, of which nothing else names it.
    virtual std::u16string nameShown() const { return spoken(caption_, use_mnemonic_); }
    virtual void captionChanged() { tell(AccessibleEvent::name); }
    void tell(AccessibleEvent event, int part = no_part) const;
    native::Handle handle_ = 0;

  private:
    friend class Form;
    bool covered() const;
    void place(bool anew);
    // The label before it with no other control between them; null where there is none.
    const Control* labelBefore() const;

    Control* parent_ = nullptr;
    std::vector<Control*> children_; // in the order of the Tab key
    std::vector<Control*> stacking_; // the same, the frontmost last
    std::u16string caption_, tip_, accessible_name_;
    Rect bounds_;
    Rect pixels_; // the same on the screen
    Colour back_color_ = inherited_colour, fore_color_ = button_text;
    bool visible_ = true;
    bool enabled_ = true;
    bool use_mnemonic_ = true;
    DropMode drop_mode_ = DropMode::none;
    int turned_ = 0; // by the wheel, less than a row: parts of wheel_notch, down being positive
};

// The accelerator letter of a caption in upper case, 0 where it has none.
char16_t mnemonicOf(const std::u16string& caption);

// Raises an event that somebody may have set.
template <class... Arguments>
void raise(const std::function<void(Arguments...)>& event, Arguments... arguments) {
    if (event) {
        event(arguments...);
    }
}

} // namespace murmelix::ui
