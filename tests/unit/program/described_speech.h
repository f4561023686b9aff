// The preparation of messages in its plainest form, one step after the other over the whole text, slow and obvious:
// what the program does faster is compared with it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/unit/program/agent_calls.h"

namespace murmelix::test {

std::u16string plainReplaceWord(std::u16string text, const std::u16string& word, const std::u16string& replacement);
std::u16string plainCollapseRepeats(std::u16string text);
std::u16string plainMarkEmoticons(std::u16string text, bool mark, const std::u16string& separator);

// "play sad; wav cry" of every emoticon, in the order of the rows.
const std::vector<std::pair<std::u16string, std::u16string>>& emoticonCommands();
// The calls of such a list of commands.
std::vector<AgentCall> callsOf(const std::u16string& key, const std::u16string& commands);

// All calls for a message of `key`, whose character is visible, with the other characters in their order; by the
// current settings.
std::vector<AgentCall> plainSpeakMessage(const std::u16string& key, const std::u16string& text,
                                         const std::vector<std::u16string>& others);

} // namespace murmelix::test
