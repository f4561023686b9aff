// The word balloon of a character: a shaped window that shows the words as they are spoken.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "companions/agent/stage/balloon_layout.h"
#include "companions/agent/stage/sequencer.h"
#include "companions/agent/stage/windows/canvas.h"
#include "companions/agent/stage/windows/lettering.h"
#include "companions/agent/stage/windows/window.h"
#include "ui/win32/accessible.h"

namespace agent::stage {

struct BalloonLook {
    int lines = 2;
    int characters_a_line = 28;
    bool size_to_text = true;
    std::uint32_t text_colour = 0, background_colour = 0x00E1FFFF, border_colour = 0; // 0x00BBGGRR
    std::u16string font_name = u"MS Sans Serif";
    int font_height = -11; // as in LOGFONT, at 96 dots an inch
    int weight = FW_NORMAL;
    bool italic = false, strike_out = false, underline = false;
    std::uint8_t character_set = DEFAULT_CHARSET;
};

class BalloonWindow final : public Window {
  public:
    // The screens as they are whenever it is placed. `clicked`: by the user, to whom `whose` tells the character.
    explicit BalloonWindow(const Screens& screens, std::function<void()> clicked = {},
                           std::function<std::u16string()> whose = {});
    ~BalloonWindow() override;

    // `others`: the areas of other characters, which it keeps off where it can.
    void open(BalloonKind kind, std::u16string text, const BalloonLook& look, const Rect& character,
              std::vector<Rect> others = {});
    void follow(const Rect& character, std::vector<Rect> others = {});
    // How much larger it is than at 96 dots an inch; at first 1.
    void setScale(double scale);
    // How much larger its text is than the character has it; at first 1.
    void setLetters(double letters);
    // A screen reader reads it out: what cannot be heard otherwise.
    void readOut() const;
    // The text up to here is shown.
    void spoken(std::size_t end);
    void close();

  protected:
    LRESULT received(UINT message, WPARAM wparam, LPARAM lparam) override;

  private:
    class Source;
    void remeasure();
    void measure();
    void lay();
    int scaled(int pixels) const;
    void draw();

    const Screens& screens_;
    BalloonKind kind_ = BalloonKind::words;
    std::u16string text_;
    BalloonLook look_;
    Canvas canvas_;
    Lettering lettering_{canvas_.context()};
    Lines lines_;
    std::size_t room_ = 1; // lines
    double scale_ = 1, letters_ = 1;
    std::function<void()> clicked_;
    std::shared_ptr<murmelix::ui::win32::AccessibleSource> source_; // of this window, for screen readers
    Rect character_{0, 0, 0, 0};
    std::vector<Rect> others_;
    int body_width_ = 0, body_height_ = 0, padding_ = 0;
    Rect body_{0, 0, 0, 0}; // in the window
    gdi::Region outline_;
    std::size_t spoken_ = 0;
    bool right_to_left_ = false;
    bool open_ = false;
};

} // namespace agent::stage
