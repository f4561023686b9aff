// Programs of the system below Wine, really started; elsewhere there are none.
#include "companions/agent/voice/win32/lasting_shell.h"

#include <algorithm>
#include <future>

#include <gtest/gtest.h>

#include <windows.h>

#include "companions/agent/voice/win32/inheritance.h"
#include "tests/windows/voice/limits.h"

namespace agent::voice {
namespace {

using std::chrono::milliseconds;

class LastingShellTest : public testing::Test {
  protected:
    void SetUp() override {
        if (GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") == nullptr) {
            GTEST_SKIP() << "this is not Wine";
        }
    }
    // The argument names what is done.
    LastingShell shell{L"case $arguments in "
                       L"copy*) t=$(cat); printf %s $t >&0; printf end >&0;; "
                       L"rights*) cat >/dev/null; stat -Lc %a /dev/stdin >&0;; "
                       L"shell*) cat >/dev/null; echo $$ >&0;; "
                       L"words*) cat >/dev/null; printf %s, $arguments >&0;; "
                       L"fail*) (exit 42);; "
                       L"leave*) exit 0;; "
                       L"hang*) sleep 3 3>&-;; "
                       L"wait*) read -r sign; : >$sign; sleep 1 3>&-; rm -f $sign; printf late >&0;; "
                       L"flood*) head -c 9000000 /dev/zero >&0;; "
                       L"esac"};
    std::string error;

    std::optional<ChildResult> run(const std::string& what, std::string_view input = {}, milliseconds limit = patience,
                                   const std::stop_token& stop = {}) {
        error.clear();
        return shell.run({what}, input, limit, most_output, stop, error);
    }
    std::string output(const std::string& what, std::string_view input = {}) {
        const auto result = run(what, input);
        EXPECT_TRUE(result) << error;
        return result ? std::string(result->output.begin(), result->output.end()) : std::string();
    }
};

TEST_F(LastingShellTest, OutputIsWhatComesBehindTheInput) {
    std::string input;
    for (int i = 0; input.size() < 300'000; ++i) {
        input += std::to_string(i);
    }
    EXPECT_EQ(output("copy", input), input + "end");
    EXPECT_EQ(output("copy", "short"), "shortend") << "nothing is left of the longer one";
    EXPECT_EQ(output("copy"), "end");
}

TEST_F(LastingShellTest, OneShellServesAllRuns) {
    const std::string first = output("shell");
    EXPECT_FALSE(first.empty());
    for (int i = 0; i < 200; ++i) {
        ASSERT_EQ(output("shell", std::to_string(i)), first);
    }
}

TEST_F(LastingShellTest, ArgumentsAreWords) {
    const auto result = shell.run({"words", "-v", "en-us+f2"}, "text", patience, most_output, {}, error);
    ASSERT_TRUE(result) << error;
    EXPECT_EQ(std::string(result->output.begin(), result->output.end()), "words,-v,en-us+f2,");
}

TEST_F(LastingShellTest, TheExitCodeIsTold) {
    const auto failed = run("fail", "text");
    ASSERT_TRUE(failed) << error;
    EXPECT_EQ(failed->exit_code, 42U);
    EXPECT_EQ(run("shell")->exit_code, 0U);
}

TEST_F(LastingShellTest, NobodyElseReadsWhatIsSaid) {
    const std::string rights = output("rights", "private words");
    ASSERT_EQ(rights.size(), 4U);
    EXPECT_TRUE(rights.starts_with("6") && rights.ends_with("0\n")) << rights;
}

TEST_F(LastingShellTest, OneThatEndsIsStartedAnew) {
    const std::string first = output("shell");
    EXPECT_FALSE(run("leave"));
    EXPECT_EQ(error, "the program ended without telling how");
    const std::string second = output("shell");
    EXPECT_FALSE(second.empty());
    EXPECT_NE(second, first);
}

// A file of the system below Wine, as Windows names it.
std::wstring windowsName(const std::string& path) {
    std::wstring name = L"\\\\?\\unix" + std::wstring(path.begin(), path.end());
    std::replace(name.begin(), name.end(), L'/', L'\\');
    return name;
}

// Leaves a value all over the part of the stack that the next call uses.
[[gnu::noinline]] void leaveOnTheStack(HANDLE value) {
    HANDLE volatile below[4096];
    for (HANDLE volatile& slot : below) {
        slot = value;
    }
}

TEST_F(LastingShellTest, ItsStartClosesNothingElse) {
    const Handle in(temporaryFile()), out(temporaryFile()), other(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    std::wstring line = L"\"\\\\?\\unix\\usr\\bin\\env\" true";
    leaveOnTheStack(other.get());
    EXPECT_EQ(startProgram(line, in.get(), out.get()), nullptr);
    EXPECT_TRUE(SetEvent(other.get())) << "the event was closed";
}

// What bash reads before anything else ends the first one, as a busy system may.
TEST_F(LastingShellTest, OneThatNeverBeganIsStartedAnew) {
    const std::string script =
        "/tmp/murmelix-begin-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(GetTickCount64());
    const std::wstring name = windowsName(script);
    const Handle file(CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    const std::string once = "rm -f " + script + "; exit 1\n";
    ASSERT_TRUE(fill(file, once));
    SetEnvironmentVariableW(L"BASH_ENV", std::wstring(script.begin(), script.end()).c_str());
    EXPECT_EQ(output("copy", "text"), "textend");
    SetEnvironmentVariableW(L"BASH_ENV", nullptr);
    EXPECT_EQ(GetFileAttributesW(name.c_str()), INVALID_FILE_ATTRIBUTES) << "one has begun and ended";
}

TEST_F(LastingShellTest, OneThatHangsIsStartedAnew) {
    const std::string first = output("shell");
    EXPECT_FALSE(run("hang", "text", milliseconds(300)));
    EXPECT_EQ(error, "the program takes too long");
    const std::string second = output("shell");
    EXPECT_FALSE(second.empty());
    EXPECT_NE(second, first);
}

// What was stopped is waited for by the next run, and is no part of what that gets.
TEST_F(LastingShellTest, AStopEndsTheWaitAlone) {
    const std::string first = output("shell");
    const std::string sign =
        "/tmp/murmelix-shell-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(GetTickCount64());
    std::stop_source stop;
    auto ran = std::async(std::launch::async, [&] {
        std::string reason;
        const bool any = shell.run({"wait"}, sign + "\n", patience, most_output, stop.get_token(), reason).has_value();
        return any ? "an output" : reason;
    });
    while (GetFileAttributesW(windowsName(sign).c_str()) == INVALID_FILE_ATTRIBUTES &&
           ran.wait_for(milliseconds(5)) == std::future_status::timeout) {
    }
    stop.request_stop();
    ASSERT_EQ(ran.wait_for(patience), std::future_status::ready);
    EXPECT_EQ(ran.get(), "stopped");
    EXPECT_EQ(output("shell", "text"), first);
    EXPECT_EQ(output("copy", "text"), "textend");
}

TEST_F(LastingShellTest, OneThatFloodsIsTold) {
    EXPECT_FALSE(run("flood"));
    EXPECT_EQ(error, "the program writes too much");
    EXPECT_EQ(output("copy", "text"), "textend");
}

} // namespace
} // namespace agent::voice
