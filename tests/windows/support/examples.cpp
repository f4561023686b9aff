#include "tests/windows/support/examples.h"

#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "tests/windows/support/process.h"

namespace murmelix::test {

namespace {

std::string withoutCarriageReturns(std::string text) {
    std::erase(text, '\r');
    return text;
}

// The text of the next fenced block from `at` on, which is moved behind it, and its language.
std::pair<std::string, std::string> nextBlock(const std::string& page, std::size_t& at) {
    constexpr std::string_view fence = "\n```";
    const std::size_t begin = page.find(fence, at);
    const std::size_t line = page.find('\n', begin + 1);
    const std::size_t end = page.find(fence, line);
    if (begin == page.npos || line == page.npos || end == page.npos) {
        at = page.npos;
        return {};
    }
    at = end + fence.size();
    return {page.substr(begin + fence.size(), line - begin - fence.size()), page.substr(line + 1, end - line)};
}

} // namespace

std::vector<Example> examples() {
    const std::string page = withoutCarriageReturns(contents(windowsPath(SCRIPTING_PAGE)));
    std::vector<Example> all;
    constexpr std::string_view heading = "\n## ";
    for (std::size_t at = page.find(heading); at != page.npos; at = page.find(heading, at + 1)) {
        const int number = std::atoi(page.c_str() + at + heading.size());
        if (number == 0) {
            continue;
        }
        std::size_t place = at + 1;
        auto [language, code] = nextBlock(page, place);
        auto [kind, output] = nextBlock(page, place);
        EXPECT_EQ(kind, "text") << "of example " << number;
        all.push_back({number, std::move(language), std::move(code), std::move(output)});
    }
    return all;
}

std::string outputOf(const std::u16string& command_line) {
    const std::u16string told = temporaryFile(u"output.txt");
    // All of it in quotes: the first and the last of a line are taken off.
    EXPECT_EQ(Process(u"cmd.exe /c \"" + command_line + u" > \"" + told + u"\" 2>&1\"").exitStatus(), 0U);
    std::string output = withoutCarriageReturns(contents(told));
    std::filesystem::remove(std::filesystem::path(told));
    return output;
}

std::string outputOfScript(const Example& example, const std::u16string& argument) {
    const std::u16string file = temporaryFile(example.language == "jscript" ? u"example.js" : u"example.vbs");
    write(file, {example.code.begin(), example.code.end()});
    std::string output = outputOf(u"cscript.exe //nologo \"" + file + u"\" \"" + argument + u"\"");
    std::filesystem::remove(std::filesystem::path(file));
    return output;
}

} // namespace murmelix::test
