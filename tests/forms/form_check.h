// What is wrong with a window that is shown for those who hear it, or have no mouse. Each is a sentence for the reader
// of a test; nothing where all is well.
#pragma once

#include <string>
#include <vector>

#include "ui/form.h"

namespace murmelix::test {

std::string describe(const ui::Control& control);

// Controls without a name, and those of one kind that have the same one beside each other.
std::vector<std::string> namingMistakes(ui::Form& form);

// Controls that the Tab key does not get to in either direction, or where it goes back and forth over the window;
// accelerators that two of the controls in reach, or of the menu bar, share, and two entries of one menu.
std::vector<std::string> keyboardMistakes(ui::Form& form);

// All of them, a parent before what is in it.
std::vector<ui::Control*> controlsOf(ui::Control& parent);

} // namespace murmelix::test
