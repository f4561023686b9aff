// The imitated process and machine, and its message boxes.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/system.h"

namespace murmelix::fakes {

// Thrown where the process would end.
struct ProcessEnded {};

struct ShellCall {
    std::u16string verb, file, parameters, directory;
    bool operator==(const ShellCall&) const = default;
};

struct System {
    bool previous_instance = false;
    std::u16string program_directory = u"C:\\Murmelix";
    std::u16string command_line;
    std::string windows_directory = "C:\\WINDOWS"; // empty: the call fails
    std::set<std::u16string> directories{u"C:\\WINDOWS\\msagent\\chars\\"};
    std::map<std::u16string, std::vector<std::u16string>> subdirectories;
    platform::ProgramVersion version{1, 2, 3};
    std::map<std::u16string, platform::ProgramVersion> versions; // of program files, by path
    std::u16string site_host = u"www.example.org";
    std::u16string support_address = u"support@example.org";

    std::vector<ShellCall> shell_calls;
    bool ended = false;
};

System& system();

struct MessageBox {
    std::u16string text;
    int style;
    std::u16string title;
    bool operator==(const MessageBox&) const = default;
};

struct MessageBoxes {
    std::vector<MessageBox> shown;
    std::deque<int> answers;          // for the boxes to come; without one: OK, or No where it is asked
    std::function<void()> while_open; // runs as the box's message loop would
};

MessageBoxes& messageBoxes();

} // namespace murmelix::fakes
