// An AgentServer.exe started for a test, and what tests do with it from their own process.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

#include "common/com/client.h"
#include "companions/agent/acs/character_file.h"

namespace agent {

inline constexpr IID iid_agent_events{0xF5BE8BD4, 0x7DE6, 0x11D0, {0x91, 0xFE, 0x00, 0xC0, 0x4F, 0xD7, 0x01, 0xA5}};

// Runs the message loop until the condition holds; false where it did not within 30 s.
bool pumpUntil(const std::function<bool()>& condition);

class Process {
  public:
    explicit Process(const std::u16string& command_line);
    ~Process(); // ends it
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    bool running() const { return process_ && WaitForSingleObject(process_, 0) == WAIT_TIMEOUT; }
    // None where it is still running after 30 s.
    std::optional<DWORD> exitStatus() const;
    void kill() const { TerminateProcess(process_, 99); }

  private:
    HANDLE process_ = nullptr;
};

// "Z:\…\AgentServer.exe", quoted.
std::u16string serverProgram();
std::u16string windowsPath(const std::string& host_path);
std::u16string temporaryFile(const std::u16string& name);
std::string contents(const std::u16string& file);
void write(const std::u16string& file, const std::vector<std::uint8_t>& bytes);

// A server that runs until the end of the test; asked to close, it ends with status 0.
class RunningServer {
  public:
    explicit RunningServer(const std::u16string& switches = u"-Embedding /speed 8");
    ~RunningServer();
    Process& process() { return *process_; }
    murmelix::com::Object control() const;
    static void close();

  private:
    std::unique_ptr<Process> process_;
};

// 64 × 48 pixels. RestPose is a filled disc of colour 1 (red) with a mouth of colour 2 (green); Show, Hide, Wave of a
// few frames; Loop never ends by itself; the states Showing, Hiding, Speaking.
acs::Character smallCharacter();
std::u16string smallCharacterFile(); // written for the test

// What the desktop shows, as 0x00RRGGBB, top row first.
struct Picture {
    int left = 0, top = 0, width = 0, height = 0;
    std::vector<std::uint32_t> pixels;
    std::uint32_t at(int x, int y) const; // screen position
    int count(std::uint32_t colour) const;
};
Picture desktop(const RECT& area);
// The whole desktop, as a bitmap file in the folder that MURMELIX_SCREENS names, else below the build folder.
void screenshot(const char* name);

} // namespace agent
