// The word balloon of a character: a shaped window that shows the words as they are spoken.
#pragma once

#include <string>
#include <vector>

#include "companions/agent/stage/balloon_layout.h"
#include "companions/agent/stage/sequencer.h"
#include "companions/agent/stage/windows/canvas.h"
#include "companions/agent/stage/windows/lettering.h"
#include "companions/agent/stage/windows/window.h"

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
    // The screens as they are whenever it is placed.
    explicit BalloonWindow(const Screens& screens);
    ~BalloonWindow() override;

    // `others`: the areas of other characters, which it keeps off where it can.
    void open(BalloonKind kind, std::u16string text, const BalloonLook& look, const Rect& character,
              std::vector<Rect> others = {});
    void follow(const Rect& character, std::vector<Rect> others = {});
    // How much larger it is than at 96 dots an inch; at first 1.
    void setScale(double scale);
    // The text up to here is shown.
    void spoken(std::size_t end);
    void close();

  protected:
    LRESULT received(UINT message, WPARAM wparam, LPARAM lparam) override;

  private:
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
    double scale_ = 1;
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
