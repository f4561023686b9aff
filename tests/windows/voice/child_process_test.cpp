#include "companions/agent/voice/win32/child_process.h"

#include <array>
#include <future>
#include <thread>

#include <gtest/gtest.h>

#include <windows.h>

#include "tests/windows/voice/limits.h"

namespace agent::voice {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

std::wstring child(const wchar_t* what) {
    std::array<wchar_t, MAX_PATH> path{};
    GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    const std::wstring own(path.data());
    return L"\"" + own.substr(0, own.find_last_of(L"\\/") + 1) + L"voice_child.exe\" \"" + what + L"\"";
}

struct Ran {
    std::optional<ChildResult> result;
    std::string error;
    std::string output() const {
        return result ? std::string(result->output.begin(), result->output.end()) : std::string();
    }
};

Ran run(const std::wstring& command, std::string_view input = {}, milliseconds limit = patience,
        const std::stop_token& stop = {}, std::size_t most_bytes = most_output) {
    Ran ran;
    ran.result = runChild(command, input, limit, most_bytes, stop, ran.error);
    return ran;
}

TEST(ChildProcess, InputGoesInAndOutputComesOut) {
    const Ran ran = run(child(L"echo"), "Hello\r\n\x1A\xFF there");
    EXPECT_EQ(ran.output(), "Hello\r\n\x1A\xFF there");
    ASSERT_TRUE(ran.result);
    EXPECT_EQ(ran.result->exit_code, 0U);
}

TEST(ChildProcess, MuchGoesBothWaysAtOnce) {
    std::string input;
    for (int i = 0; input.size() < (4U << 20); ++i) {
        input += std::to_string(i);
    }
    EXPECT_EQ(run(child(L"echo"), input).output(), input);
}

TEST(ChildProcess, EmptyInputEnds) {
    EXPECT_EQ(run(child(L"echo")).output(), "");
}

TEST(ChildProcess, TheExitCodeIsTold) {
    const Ran failed = run(child(L"fail"), std::string(1 << 20, 'x'));
    ASSERT_TRUE(failed.result) << failed.error;
    EXPECT_EQ(failed.result->exit_code, 7U);
    const Ran crashed = run(child(L"crash"));
    ASSERT_TRUE(crashed.result) << crashed.error;
    EXPECT_EQ(crashed.result->exit_code, 0xC0000005U);
}

TEST(ChildProcess, AMissingProgramIsTold) {
    EXPECT_EQ(run(L"\"C:\\no such folder\\no such program.exe\"").error, "the program cannot be started");
}

bool runs(const wchar_t* event_name) {
    const HANDLE event = OpenEventW(SYNCHRONIZE, FALSE, event_name);
    if (event != nullptr) {
        CloseHandle(event);
    }
    return event != nullptr;
}

// Seen while it is running, and gone once the wait for it is over.
TEST(ChildProcess, OneThatHangsIsNotLeftBehind) {
    constexpr wchar_t name[] = L"voice-child-hangs";
    std::stop_source stop;
    auto ran = std::async(std::launch::async,
                          [&] { return run(child(L"hang") + L" " + name, {}, patience, stop.get_token()); });
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!runs(name) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    EXPECT_TRUE(runs(name));
    stop.request_stop();
    EXPECT_EQ(ran.get().error, "stopped");
    while (runs(name) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    EXPECT_FALSE(runs(name));
}

TEST(ChildProcess, OneThatHangsIsEnded) {
    EXPECT_EQ(run(child(L"hang"), "text", milliseconds(300)).error, "the program takes too long");
    EXPECT_EQ(run(child(L"hang"), std::string(4U << 20, 'x'), milliseconds(300)).error, "the program takes too long");
}

TEST(ChildProcess, OneThatHangsAfterItsOutputIsEnded) {
    EXPECT_EQ(run(child(L"close and hang"), "text", milliseconds(500)).error, "the program takes too long");
}

TEST(ChildProcess, ChatterOnTheStandardErrorHoldsNothingUp) {
    EXPECT_EQ(run(child(L"chatter")).output(), "said");
}

TEST(ChildProcess, OneThatFloodsIsEnded) {
    EXPECT_EQ(run(child(L"flood"), {}, patience, {}, 1 << 20).error, "the program writes too much");
}

TEST(ChildProcess, AStopEndsTheWait) {
    std::stop_source stop;
    auto ran = std::async(std::launch::async, [&] { return run(child(L"hang"), "text", patience, stop.get_token()); });
    stop.request_stop();
    ASSERT_EQ(ran.wait_for(patience), std::future_status::ready);
    EXPECT_EQ(ran.get().error, "stopped");
}

std::vector<std::wstring> temporaryFiles() {
    std::array<wchar_t, MAX_PATH + 1> folder{};
    GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
    std::vector<std::wstring> paths;
    WIN32_FIND_DATAW entry{};
    const HANDLE search = FindFirstFileW((std::wstring(folder.data()) + L"say*").c_str(), &entry);
    for (BOOL more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileW(search, &entry)) {
        paths.push_back(std::wstring(folder.data()) + entry.cFileName);
    }
    if (search != INVALID_HANDLE_VALUE) {
        FindClose(search);
    }
    return paths;
}

// Text is spoken in private: no other program can open it while it is on its way, and nothing is left of it.
TEST(ChildProcess, NobodyElseReadsWhatIsOnItsWay) {
    constexpr wchar_t name[] = L"voice-child-private";
    ASSERT_TRUE(temporaryFiles().empty());
    std::stop_source stop;
    auto ran = std::async(std::launch::async, [&] {
        return run(child(L"hang") + L" " + name, "private words", std::chrono::minutes(2), stop.get_token());
    });
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!runs(name) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    ASSERT_TRUE(runs(name));
    const auto files = temporaryFiles();
    EXPECT_EQ(files.size(), 2U);
    for (const std::wstring& path : files) {
        const HANDLE opened =
            CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                        OPEN_EXISTING, 0, nullptr);
        EXPECT_EQ(opened, INVALID_HANDLE_VALUE);
        if (opened != INVALID_HANDLE_VALUE) {
            CloseHandle(opened);
        }
    }
    stop.request_stop();
    ran.get();
    while (!temporaryFiles().empty() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield(); // the program that was ended lets go of them
    }
    EXPECT_TRUE(temporaryFiles().empty());
    run(L"\"C:\\no such folder\\no such program.exe\"", "private words");
    EXPECT_TRUE(temporaryFiles().empty()) << "also where no program was started";
}

TEST(ChildProcess, ManyRunSideBySide) {
    std::vector<std::future<Ran>> runs;
    for (int i = 0; i < 8; ++i) {
        runs.push_back(std::async(std::launch::async, [i] { return run(child(L"echo"), std::to_string(i)); }));
    }
    for (std::size_t i = 0; i < runs.size(); ++i) {
        EXPECT_EQ(runs[i].get().output(), std::to_string(i));
    }
}

} // namespace
} // namespace agent::voice
