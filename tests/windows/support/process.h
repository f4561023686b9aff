// Programs started for a test in Wine, and files for them. A watchdog ends a run that takes too long.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

namespace murmelix::test {

// Runs the message loop until the condition holds; false where it did not within minutes.
bool pumpUntil(const std::function<bool()>& condition);

class Process {
  public:
    explicit Process(const std::u16string& command_line);
    ~Process(); // ends it
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    bool running() const { return process_ && WaitForSingleObject(process_, 0) == WAIT_TIMEOUT; }
    // None where it is still running after minutes, or was never started.
    std::optional<DWORD> exitStatus() const;
    void kill() const { TerminateProcess(process_, 99); }
    DWORD id() const { return id_; }

  private:
    HANDLE process_ = nullptr;
    DWORD id_ = 0;
};

// The path of the host system as Windows programs see it.
std::u16string windowsPath(const std::string& host_path);
// A program of the build, by its host path, quoted for a command line.
std::u16string programCommand(const std::string& host_path);
// In the directory of temporary files, named after this test program too.
std::u16string temporaryFile(const std::u16string& name);
std::string contents(const std::u16string& file);
void write(const std::u16string& file, const std::vector<std::uint8_t>& bytes);

// Runs all tests with a server (its quoted program, its CLSID) registered meanwhile in the prefix and the registration
// before it put back at the end. After 280 s the owner of the window of that class, and this process, are ended.
int runTestsWithServer(const std::u16string& program, const std::u16string& clsid, const wchar_t* window_class);

} // namespace murmelix::test
