#pragma once

#include <string>

namespace murmelix::ui {

class Form;

// `style` and the result are those of the system's MessageBox (MB_…, ID…). In front of everything, on its owner where
// that is shown; windows and timers live on meanwhile.
int messageBox(const Form* owner, const std::u16string& text, int style, const std::u16string& title);

} // namespace murmelix::ui
