// A conversation written down, a line of UTF-8 for each of its lines, where the user wants it.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "companions/messenger/live/talk.h"

namespace messenger_client {

// What stands in the file, without its line end: the local time, and who said what.
std::string logLine(const LiveLine& line);
// Every line of the conversation is added to the file from now on, instead of to another one. What keeps it from that,
// as a sentence for people; empty where nothing does.
std::u16string keepLog(LiveTalk& talk, const std::filesystem::path& file);
// A name that every file system takes, whatever a conversation is called.
std::u16string logFileName(std::u16string_view title);

} // namespace messenger_client
