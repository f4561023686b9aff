// Modal message boxes.
#pragma once

#include <string>

namespace murmelix::platform {

// Style values as the system has them: buttons plus icon.
inline constexpr int mb_ok = 0;
inline constexpr int mb_yes_no = 4;
inline constexpr int mb_critical = 16;
inline constexpr int mb_question = 32;
inline constexpr int mb_information = 64;
inline constexpr int answer_ok = 1;
inline constexpr int answer_yes = 6;
inline constexpr int answer_no = 7;

// Owned by the main window where there is one, and in front of all others; returns the button pressed.
int messageBox(const std::u16string& text, int style, const std::u16string& title);

} // namespace murmelix::platform
