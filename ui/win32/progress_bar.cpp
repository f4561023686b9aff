#include "ui/progress_bar.h"

#include "ui/win32/window.h"

#include <commctrl.h>

namespace murmelix::ui {

using namespace win32;

namespace {

class ProgressBarWindow final : public ControlWindow {
  public:
    ProgressBarWindow(Control& bar, HWND parent, const std::u16string& caption)
        : ControlWindow(bar, {PROGRESS_CLASSW}, parent, caption) {}
};

} // namespace

native::Handle native::createProgressBar(Control& bar, Handle parent, const std::u16string& caption) {
    return make<ProgressBarWindow>(bar, parent, caption);
}

void native::setProgress(Handle bar, int value, int max) {
    SendMessageW(windowOf(bar), PBM_SETRANGE32, 0, max);
    SendMessageW(windowOf(bar), PBM_SETPOS, static_cast<WPARAM>(value), 0);
}

} // namespace murmelix::ui
