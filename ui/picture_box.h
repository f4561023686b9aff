#pragma once

#include "ui/control.h"
#include "ui/drag_drop.h"
#include "ui/surface.h"

namespace murmelix::ui {

// A surface of its own with mouse and keyboard. Positions are pixels within it.
class PictureBox : public Control {
  public:
    explicit PictureBox(Control& parent);
    ~PictureBox() override;
    bool takesFocus() const override { return takes_focus_; }
    void setTakesFocus(bool takes) { takes_focus_ = takes; }
    Size neededSize(int = 0) const override { return {15 * picture_.size, 15 * picture_.size}; }
    void setSunken(bool sunken); // the three-dimensional border
    const Picture& picture() const { return picture_; }
    void setPicture(const Picture& picture); // shown in the middle, where the surface is not drawn on
    Surface& surface() { return surface_; }
    const Surface& surface() const { return surface_; }

    std::function<void()> DblClick, Resize;
    std::function<void(int button, int shift, double x, double y)> MouseDown, MouseMove, MouseUp;
    std::function<bool(Key key)> KeyDown; // that the form has no use for; true when it was of use
    std::function<void(int rows)> Wheel;  // up is negative

    DropMode OLEDropMode() const { return drop_mode_; }
    void setOLEDropMode(DropMode mode);
    // Drags what OLEStartDrag puts on the data object (nothing where it allows no effect) and returns when it was let
    // go, after OLECompleteDrag. Meanwhile the windows of this thread are served.
    void OLEDrag();
    std::function<void(DataObject& data, DropEffect& allowed)> OLEStartDrag;
    std::function<void(DropEffect effect)> OLECompleteDrag;
    // Text was let go over the box: it changes `effect` where another one happened than is offered.
    std::function<void(DataObject& data, DropEffect& effect, int button, int shift, double x, double y)> OLEDragDrop;

    // What letting go here would do.
    DropEffect dropEffect(DropEffect allowed, int shift) const;
    // It was let go; the result is what happened. What has no text is not taken.
    DropEffect onDrop(DataObject& data, DropEffect allowed, int button, int shift, double x, double y);

  protected:
    void resized() override;

  private:
    Picture picture_;
    bool takes_focus_ = false;
    DropMode drop_mode_ = DropMode::none;
    Surface surface_;
};

// Carried out by win32/picture_box.cpp and win32/drag_drop.cpp.
namespace native {
Handle createPictureBox(Control& box, Handle parent, const std::u16string& caption);
void setSunken(Handle box, bool sunken);
// The surface belongs to this picture box from now on and has its size.
void attach(Surface& surface, Handle box);
// Drags the data with the mouse, whose left button is held; returns when it was let go or taken back, with what
// happened to it.
DropEffect drag(const DataObject& data, DropEffect allowed);
void acceptDrops(PictureBox& box, bool accepts);
} // namespace native

} // namespace murmelix::ui
