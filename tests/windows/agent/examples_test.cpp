// What docs/scripting.md shows of the server does what it says there.
#include <gtest/gtest.h>

#include "tests/windows/agent/server_process.h"
#include "tests/windows/support/examples.h"

namespace agent {
namespace {

using murmelix::test::Example;
using murmelix::test::outputOf;
using murmelix::test::outputOfScript;

// The last one is the Messenger client's.
constexpr std::size_t of_the_server = 9, of_all = 10;

struct Examples : testing::Test {
    RunningServer server;
    std::vector<Example> all = murmelix::test::examples();
};

TEST_F(Examples, OfScriptsWriteWhatIsSaid) {
    ASSERT_EQ(all.size(), of_all);
    std::size_t run = 0;
    for (const Example& example : all) {
        if (example.number > static_cast<int>(of_the_server) || example.language == "cpp") {
            continue;
        }
        SCOPED_TRACE(example.number);
        EXPECT_EQ(outputOfScript(example, smallCharacterFile()), example.output);
        ++run;
    }
    EXPECT_EQ(run, of_the_server - 1);
}

TEST_F(Examples, OfEarlyBindingWriteWhatIsSaid) {
    ASSERT_EQ(all.size(), of_all);
    const Example& early = all[of_the_server - 1];
    ASSERT_EQ(early.language, "cpp");
    EXPECT_EQ(outputOf(murmelix::test::programCommand(EARLY_BINDING) + u" \"" + smallCharacterFile() + u"\""),
              early.output);
}

} // namespace
} // namespace agent
