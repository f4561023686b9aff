#pragma once

#include <memory>
#include <optional>

#include "ui/control.h"
#include "ui/drag_drop.h"
#include "ui/image.h"
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
    // Shown instead, as large as it fits and at most in its own size; nothing is no image.
    const std::optional<Image>& image() const { return image_; }
    void setImage(std::optional<Image> image);
    // That the mouse has over it.
    enum class Pointer { arrow, hand };
    Pointer MousePointer() const { return pointer_; }
    void setMousePointer(Pointer pointer) { pointer_ = pointer; }
    Surface& surface() { return surface_; }
    const Surface& surface() const { return surface_; }

    // It shows them: rows, of which the surface is drawn.
    void setParts(AccessibleParts* parts) { parts_ = parts; }
    AccessibleParts* parts() override { return parts_; }
    // What it shows, where that is no picture: a control that it draws itself, with its value now.
    void setLooksLike(Role role, const std::u16string& value);
    Accessible accessible() const override;
    std::u16string accessibleValue() const override { return value_; }
    // What happened to one of them.
    void tellOfPart(AccessibleEvent event, int part) const { tell(event, part); }

    std::function<void()> DblClick, Resize;
    std::function<void(int button, int shift, double x, double y)> MouseDown, MouseMove, MouseUp;
    std::function<bool(Key key)> KeyDown; // that the form has no use for; true when it was of use

    // Drags what OLEStartDrag puts on the data object (nothing where it allows no effect) and returns when it was let
    // go, after OLECompleteDrag. Meanwhile the windows of this thread are served.
    void OLEDrag();
    std::function<void(DataObject& data, DropEffect& allowed)> OLEStartDrag;
    std::function<void(DropEffect effect)> OLECompleteDrag;

  protected:
    void resized() override;

  private:
    Picture picture_;
    std::optional<Image> image_;
    Pointer pointer_ = Pointer::arrow;
    bool takes_focus_ = false;
    AccessibleParts* parts_ = nullptr;
    std::optional<Role> role_;
    std::u16string value_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    Surface surface_;
};

// Carried out by win32/picture_box.cpp and win32/drag_drop.cpp.
namespace native {
Handle createPictureBox(Control& box, Handle parent, const std::u16string& caption);
void setSunken(Handle box, bool sunken);
void imageChanged(Handle box);
// The surface belongs to this picture box from now on and has its size.
void attach(Surface& surface, Handle box);
// Drags the data with the mouse, whose left button is held; returns when it was let go or taken back, with what
// happened to it. It is taken back as well when the form of `from` is hidden.
DropEffect drag(Handle from, const DataObject& data, DropEffect allowed);
} // namespace native

} // namespace murmelix::ui
