// What the characters do, a line for each thing, in a file that can be read while it grows. UTF-8, appended to; the
// fields of a line are parted by tabs:
//   seconds.milliseconds since the server started, on the real clock
//   microseconds of the performance counter, comparable between processes
//   "ready" alone, once, when clients can find the server; "call" as the call arrives, "start" when its turn comes,
//   "end" when it is over the character's id, and its name "Play", "Speak", "Think", "MoveTo", "GestureAt", "Show",
//   "Hide", "Wait", "Interrupt", "Get" or "Stop" the words, the animation, the sound file after "file:", or "x,y"; at
//   "end" a tab and the outcome follow: "complete", "failed" or "interrupted"
// Within a field a tab is \t, CR is \r, LF is \n and a backslash is \\.
#pragma once

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "companions/agent/stage/request.h"

namespace agent::automation {

class Transcript {
  public:
    // An empty path: nothing is written. A file that cannot be opened is as if none was asked for.
    explicit Transcript(const std::u16string& path);

    void ready();
    void call(std::u16string_view id, std::u16string_view name, const stage::Request& request);
    void start(std::u16string_view id, std::u16string_view name, const stage::Request& request);
    void end(std::u16string_view id, std::u16string_view name, const stage::Request& request);
    void stop(std::u16string_view id, std::u16string_view name);

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    void write(std::string_view moment, std::u16string_view id, std::u16string_view name, std::string_view what,
               const std::u16string& of, std::string_view outcome = {});

    std::unique_ptr<std::FILE, Close> file_;
    std::chrono::steady_clock::time_point since_;
};

} // namespace agent::automation
