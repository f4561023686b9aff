// The process that calls a server, and its end.
#pragma once

#include <functional>
#include <memory>

namespace murmelix::com {

using ProcessId = unsigned long; // 0: unknown

// The process whose call this thread carries out. It can be told on a thread outside every single-threaded apartment
// alone, and not on older systems.
ProcessId callingProcess();

// Waits for the end of a process for as long as it lives.
class ProcessWatch {
  public:
    // Calls `ended` once, on another thread. Nothing for the own process, or one that cannot be watched.
    static std::unique_ptr<ProcessWatch> begin(ProcessId process, std::function<void()> ended);
    virtual ~ProcessWatch() = default;
    ProcessWatch(const ProcessWatch&) = delete;
    ProcessWatch& operator=(const ProcessWatch&) = delete;

  protected:
    ProcessWatch() = default;
};

} // namespace murmelix::com
