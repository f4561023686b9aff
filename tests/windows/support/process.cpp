#include "tests/windows/support/process.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include <gtest/gtest.h>

#include "common/com/handles.h"
#include "common/text.h"

namespace murmelix::test {

using com::wide;

namespace {

// Of one wait, and of a whole run: minutes, so that they end what hangs and nothing that is slow.
constexpr DWORD patience = 240'000;
constexpr DWORD longest_run = 570'000;

std::optional<std::u16string> registeredServer(const std::u16string& clsid) {
    std::array<wchar_t, 1024> text{};
    DWORD bytes = sizeof text;
    const std::u16string key = u"CLSID\\" + clsid + u"\\LocalServer32";
    if (RegGetValueW(HKEY_CLASSES_ROOT, wide(key), nullptr, RRF_RT_REG_SZ, nullptr, text.data(), &bytes) !=
        ERROR_SUCCESS) {
        return std::nullopt;
    }
    return std::u16string(com::narrow(text.data(), std::wcslen(text.data())));
}

class Registered : public testing::Environment {
  public:
    Registered(std::u16string program, std::u16string clsid) : program_(std::move(program)), clsid_(std::move(clsid)) {}
    void SetUp() override {
        before_ = registeredServer(clsid_);
        ASSERT_EQ(Process(program_ + u" /regserver").exitStatus(), 0U);
    }
    void TearDown() override {
        const std::u16string command = before_ ? *before_ + u" /regserver" : program_ + u" /unregserver";
        EXPECT_EQ(Process(command).exitStatus(), 0U);
    }

  private:
    std::u16string program_, clsid_;
    std::optional<std::u16string> before_;
};

void watch(const wchar_t* window_class) {
    Sleep(longest_run);
    std::fprintf(stderr, "the watchdog ends the tests\n");
    if (const HWND window = FindWindowW(window_class, nullptr)) {
        DWORD id = 0;
        GetWindowThreadProcessId(window, &id);
        TerminateProcess(OpenProcess(PROCESS_TERMINATE, FALSE, id), 98);
    }
    TerminateProcess(GetCurrentProcess(), 98);
}

} // namespace

bool pumpUntil(const std::function<bool()>& condition) {
    const ULONGLONG end = GetTickCount64() + patience;
    while (!condition()) {
        if (GetTickCount64() > end) {
            return false;
        }
        MsgWaitForMultipleObjectsEx(0, nullptr, 10, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return true;
}

Process::Process(const std::u16string& command_line) {
    std::vector<wchar_t> line(wide(command_line), wide(command_line) + command_line.size() + 1);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION made{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &made)) {
        CloseHandle(made.hThread);
        process_ = made.hProcess;
        id_ = made.dwProcessId;
    } else {
        ADD_FAILURE() << toUtf8(command_line) << " does not start: error " << GetLastError();
    }
}

Process::~Process() {
    if (!process_) {
        return;
    }
    if (running()) {
        kill();
    }
    WaitForSingleObject(process_, patience);
    CloseHandle(process_);
}

std::optional<DWORD> Process::exitStatus() const {
    if (!process_ || !pumpUntil([this] { return !running(); })) {
        return std::nullopt;
    }
    DWORD status = 0;
    GetExitCodeProcess(process_, &status);
    return status;
}

std::u16string windowsPath(const std::string& host_path) {
    std::u16string path = u"Z:" + fromUtf8(host_path);
    std::replace(path.begin(), path.end(), u'/', u'\\');
    return path;
}

std::u16string programCommand(const std::string& host_path) {
    std::u16string quoted = u"\"";
    quoted += windowsPath(host_path);
    quoted += u'"';
    return quoted;
}

std::u16string temporaryFile(const std::u16string& name) {
    std::array<wchar_t, MAX_PATH + 1> path{};
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    const std::filesystem::path program(std::wstring(path.data(), length));
    const std::filesystem::path file = program.stem().wstring() + L"_" + wide(name);
    return (std::filesystem::temp_directory_path() / file).u16string();
}

std::string contents(const std::u16string& file) {
    std::ifstream in(std::filesystem::path(wide(file)), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

void write(const std::u16string& file, const std::vector<std::uint8_t>& bytes) {
    std::ofstream out(std::filesystem::path(wide(file)), std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

int runTestsWithServer(const std::u16string& program, const std::u16string& clsid, const wchar_t* window_class) {
    std::thread(watch, window_class).detach();
    const com::Apartment apartment;
    testing::AddGlobalTestEnvironment(new Registered(program, clsid));
    return RUN_ALL_TESTS();
}

} // namespace murmelix::test
