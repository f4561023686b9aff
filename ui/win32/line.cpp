#include "ui/line.h"

#include "ui/win32/window.h"

namespace murmelix::ui {

using namespace win32;

namespace {

class LineWindow final : public ControlWindow {
  public:
    LineWindow(Control& line, HWND parent, const std::u16string& caption)
        : ControlWindow(line, {L"STATIC", SS_ETCHEDHORZ}, parent, caption) {}

    // What would be below its two edges is drawn by nobody.
    int heightFor(int) const override { return GetSystemMetrics(SM_CYEDGE); }
};

} // namespace

native::Handle native::createLine(Control& line, Handle parent, const std::u16string& caption) {
    return make<LineWindow>(line, parent, caption);
}

} // namespace murmelix::ui
