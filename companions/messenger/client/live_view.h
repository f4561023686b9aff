// Shows the lines of a live conversation in a history control: as they come, black once they are read, and without
// those that were taken out.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "companions/messenger/live/talk.h"
#include "ui/rich_text_box.h"

namespace messenger_client {

namespace ui = murmelix::ui;

// A link as an address of the web, whatever else the system would know to do with what somebody wrote: with http://
// where it has no scheme, and all that has no place in an address as %XX.
std::u16string webAddress(std::u16string_view link);

class LiveView {
  public:
    LiveView(ui::RichTextBox& box, LiveTalk& talk) : box_(box), talk_(talk) {}
    // Shows what is new and what has changed, as much as fits a moment (UTF-16 units); true where more waits.
    bool show(std::size_t units);

  private:
    enum class Style { sign, name, text, link, note, announcement, news };
    struct Run {
        Style style;
        int length; // as the control counts
    };
    // A line with the line end before it, which the first one does not have.
    struct Shown {
        LineNumber number;
        int length;
        std::vector<Run> runs;
    };

    static ui::RichTextBox::Looks looksOf(Style style, bool told);
    std::size_t append(const LiveLine& line);
    void alter(LineNumber number);
    void dropOld();
    int beginOf(std::size_t index) const;
    void remove(std::size_t index);

    ui::RichTextBox& box_;
    LiveTalk& talk_;
    std::deque<Shown> shown_;
    LineNumber next_ = 1; // the first one not shown yet
    int length_ = 0;      // of all
};

} // namespace messenger_client
