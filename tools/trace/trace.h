// What the program does with text, shown without Windows: JSON lines from the program's own code over the imitated
// machine.
#pragma once

#include <iosfwd>
#include <string>

namespace murmelix::trace {

struct MessageOptions {
    bool correct = true, emoticons = true, ignore = true;
    std::u16string ignored = u"^#$/\\()";
};

// Each line of `in` is a message of a@x, read aloud with a@x and b@x on stage; each line of `out` is the array of all
// calls on the characters.
void traceMessages(const MessageOptions& options, std::istream& in, std::ostream& out);

// A conversation window whose history grows, and the reading of it. Returns the exit status: 1 after a line that cannot
// be understood, which `err` names.
int traceCapture(std::istream& in, std::ostream& out, std::ostream& err);

} // namespace murmelix::trace
