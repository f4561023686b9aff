// The examples of docs/scripting.md, run as a reader would run them.
#pragma once

#include <string>
#include <vector>

namespace murmelix::test {

struct Example {
    int number;           // of its section
    std::string language; // "vbscript", "jscript" or "cpp"
    std::string code;
    std::string output; // what it writes, lines ended by LF
};

std::vector<Example> examples();

// What a program or a script writes, its errors too, lines ended by LF.
std::string outputOf(const std::u16string& command_line);
std::string outputOfScript(const Example& example, const std::u16string& argument);

} // namespace murmelix::test
