#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "companions/agent/voice/voice.h"
#include "ui/timer.h"

namespace setup {

// One sentence said by a voice: made by a worker, heard meanwhile. All calls on the user-interface thread.
class Sample {
  public:
    enum class State { speaking, heard, failed };
    // Once or twice for each `play` that no other one has broken off; `error` where it has failed.
    using Told = std::function<void(State state, const std::string& error)>;

    explicit Sample(std::unique_ptr<agent::voice::Output> output);
    ~Sample(); // breaks off what is under way
    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;

    // `engine` outlives this. What another one says is broken off.
    void play(agent::voice::Engine& engine, std::u16string text, agent::voice::Manner manner, Told told);

  private:
    void made(std::optional<agent::voice::Wave> wave, const std::string& error, const Told& told);
    void breakOff();

    std::unique_ptr<agent::voice::Output> output_;
    agent::voice::Output::Playing playing_ = 0;
    murmelix::ui::Timer tick_{10}; // ms: what the output asks for
    std::shared_ptr<int> current_; // of the latest play: what others have posted is too late
    std::jthread worker_;
};

} // namespace setup
