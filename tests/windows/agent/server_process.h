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
#include "tests/windows/support/picture.h"
#include "tests/windows/support/process.h"

namespace agent {

inline constexpr IID iid_agent_events{0xF5BE8BD4, 0x7DE6, 0x11D0, {0x91, 0xFE, 0x00, 0xC0, 0x4F, 0xD7, 0x01, 0xA5}};

using murmelix::test::contents;
using murmelix::test::desktop;
using murmelix::test::Picture;
using murmelix::test::Process;
using murmelix::test::pumpUntil;
using murmelix::test::screenshot;
using murmelix::test::temporaryFile;
using murmelix::test::windowsPath;
using murmelix::test::write;

// "Z:\…\AgentServer.exe", quoted.
std::u16string serverProgram();

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

} // namespace agent
