// One chat line of a contact as a sequence of character commands.
#pragma once

#include <string>
#include <string_view>

namespace murmelix {

void SpeakMessage(const std::u16string& key, const std::u16string& text);
void SpeakMarkedMessage(const std::u16string& text, const std::u16string& key, bool othersListen = false);

// Whole words, without letter case; the result is trimmed.
std::u16string ReplaceWord(std::u16string_view text, std::u16string_view word, std::u16string_view replacement);
// Runs of three and more of one of forty characters become a single one.
std::u16string CollapseRepeats(std::u16string_view text);

} // namespace murmelix
