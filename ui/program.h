#pragma once

#include <string>
#include <vector>

namespace murmelix::ui {

// Where a program begins: it defines this. `arguments`: those of the command line, without the program's name. The
// result is the exit status.
int runProgram(const std::vector<std::u16string>& arguments);

// The path of the program's own executable.
std::u16string programPath();

} // namespace murmelix::ui
