#include "companions/setup/sample.h"

#include <exception>
#include <optional>
#include <utility>

#include "ui/screen.h"

namespace setup {

namespace voice = agent::voice;

Sample::Sample(std::unique_ptr<voice::Output> output) : output_(std::move(output)) {
    tick_.Tick = [this] { output_->tick(); };
}

Sample::~Sample() {
    breakOff();
}

void Sample::breakOff() {
    current_.reset();
    tick_.setEnabled(false);
    output_->stop(std::exchange(playing_, 0));
    if (worker_.joinable()) {
        worker_.request_stop();
        worker_.join();
    }
}

void Sample::play(voice::Engine& engine, std::u16string text, voice::Manner manner, Told told) {
    breakOff();
    current_ = std::make_shared<int>();
    worker_ = std::jthread([this, &engine, text = std::move(text), manner = std::move(manner), told = std::move(told),
                            wanted = std::weak_ptr<int>(current_)](const std::stop_token& stop) {
        std::string error;
        std::optional<voice::Wave> wave;
        try {
            wave = engine.synthesise(text, manner, stop, error);
        } catch (const std::exception& failure) {
            error = failure.what();
        }
        murmelix::ui::post([this, wave = std::move(wave), error = std::move(error), told, wanted]() mutable {
            if (!wanted.expired()) {
                made(std::move(wave), error, told);
            }
        });
    });
}

void Sample::made(std::optional<voice::Wave> wave, const std::string& error, const Told& told) {
    if (!wave || wave->samples.empty()) {
        told(State::failed, error.empty() ? "it makes no sound" : error);
        return;
    }
    playing_ = output_->play(std::move(*wave), [this, told] {
        tick_.setEnabled(false);
        told(State::heard, {});
    });
    tick_.setEnabled(true);
    told(State::speaking, {});
}

} // namespace setup
