// The window of one character: as it is drawn in shape, above all others, never active, not in the taskbar.
#pragma once

#include <functional>
#include <memory>

#include "companions/agent/stage/composer.h"
#include "companions/agent/stage/screens.h"
#include "companions/agent/stage/windows/canvas.h"
#include "companions/agent/stage/windows/window.h"
#include "ui/win32/accessible.h"

namespace agent::stage {

// `button`: 1 left, 2 right, 4 middle. `shift`: 1 Shift, 2 Control, 4 Alt. Positions are screen pixels.
struct PointerEvent {
    int button, shift, x, y;
};

struct PointerHandlers {
    std::function<void(const PointerEvent&)> clicked, double_clicked, drag_started, drag_ended;
    std::function<void(int left, int top)> dragged; // where the window shall go
    std::function<std::u16string()> tip;            // shown where the pointer rests; empty: none
    std::function<std::u16string()> name;           // for screen readers
};

class CharacterWindow final : public Window {
  public:
    explicit CharacterWindow(PointerHandlers handlers);
    ~CharacterWindow() override;

    // The picture, scaled to the area; false where that is what shows already. Only what differs from the picture
    // before is drawn: that costs the system much more than comparing.
    bool show(const Raster& raster, const Rect& area);
    void move(int left, int top);
    void hide();
    // Where it shows what the pointer rests on.
    void hideTip();

  protected:
    LRESULT received(UINT message, WPARAM wparam, LPARAM lparam) override;

  private:
    class Source;
    void askForMenu() const;
    void press(int button);
    void release(int button);
    void dragTo(POINT at);
    void makeTip();

    PointerHandlers handlers_;
    std::shared_ptr<murmelix::ui::win32::AccessibleSource> source_; // of this window, for screen readers
    WindowHandle tip_; // made when the pointer comes first; it goes before the window
    std::u16string tip_text_;
    Canvas canvas_;
    bool shown_ = false;
    Rect area_{0, 0, 0, 0}; // of the window, and
    Raster picture_;        // in it, before it was scaled
    Scaler scaler_;

    int pressed_ = 0; // the button that is held down on it
    bool dragging_ = false;
    POINT pressed_at_{0, 0};
    POINT window_at_{0, 0}; // when the button went down
};

} // namespace agent::stage
