#include <cstring>
#include <iostream>

#include "common/text.h"
#include "tools/trace/trace.h"

namespace {

using namespace murmelix;

constexpr const char* usage =
    "usage: trace message [--no-correct] [--no-emoticons] [--no-ignore] [--ignored CHARS]\n"
    "       trace capture\n"
    "\n"
    "message  Standard input: one message a line, UTF-8 with the escapes \\r \\n \\\\ \\uXXXX. The contact a@x "
    "writes,\n"
    "         b@x is the other one with a character. Standard output, for each line: a JSON array of every call on a\n"
    "         character, in order.\n"
    "           --no-correct     AutoCorrectText off\n"
    "           --no-emoticons   PlayReadEmoticon off\n"
    "           --no-ignore      AutoIgnoreChars off\n"
    "           --ignored CHARS  the ignored characters, \"^#$/\\()\" by default\n"
    "capture  Standard input, JSON lines: first {\"me\":{\"signin\":…,\"friendly\":…},\n"
    "         \"contacts\":[{\"signin\":…,\"friendly\":…}…],\"history\":\"…\"}, where reading starts; then "
    "{\"append\":\"…\"} or\n"
    "         {\"ticks\":N}. Standard output, for each tick: {\"position\":…,\"user\":…,\"speak\":…}.\n";

int fail(const std::string& what) {
    std::cerr << "trace: " << what << "\n" << usage;
    return 2;
}

int runMessage(int count, char** arguments) {
    trace::MessageOptions options;
    for (int i = 0; i < count; ++i) {
        const std::string argument = arguments[i];
        if (argument == "--no-correct") {
            options.correct = false;
        } else if (argument == "--no-emoticons") {
            options.emoticons = false;
        } else if (argument == "--no-ignore") {
            options.ignore = false;
        } else if (argument == "--ignored" && i + 1 < count) {
            options.ignored = fromUtf8(arguments[++i]);
        } else if (argument == "--ignored") {
            return fail("--ignored needs the characters");
        } else {
            return fail("unknown argument: " + argument);
        }
    }
    trace::traceMessages(options, std::cin, std::cout);
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    std::ios::sync_with_stdio(false);
    for (int i = 1; i < count; ++i) {
        // The value of --ignored may be anything.
        if (std::strcmp(arguments[i - 1], "--ignored") != 0 && std::strcmp(arguments[i], "--help") == 0) {
            std::cout << usage;
            return 0;
        }
    }
    const std::string command = count > 1 ? arguments[1] : "";
    if (command == "message") {
        return runMessage(count - 2, arguments + 2);
    }
    if (command == "capture" && count == 2) {
        return trace::traceCapture(std::cin, std::cout, std::cerr);
    }
    if (command.empty()) {
        return fail("which command?");
    }
    return fail(command == "capture" ? "capture takes no arguments" : "unknown command: " + command);
}
