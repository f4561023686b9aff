// How fast a message becomes commands, and what an idle tick costs beyond reading the history.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "app/settings.h"
#include "app/shell_state.h"
#include "characters/character_state.h"
#include "characters/message_to_speech.h"
#include "common/text.h"
#include "messenger/msn_control.h"
#include "tests/conversations/chat_logs.h"
#include "tests/fakes/fakes.h"
#include "tests/unit/program/described_speech.h"

namespace {

using namespace murmelix;

class IdleCharacter : public platform::AgentCharacter {
  public:
    bool Visible() override { return true; }
    std::u16string Name() override { return {}; }
    std::int16_t Left() override { return 0; }
    std::int16_t Top() override { return 0; }
    std::int16_t Width() override { return 0; }
    std::int16_t Height() override { return 0; }
    std::int32_t LanguageID() override { return 0; }
    void setLanguageID(std::int32_t) override {}
    std::int32_t BalloonStyle() override { return 0; }
    void setBalloonStyle(std::int32_t) override {}
    void AddCommand(const std::u16string&, const std::u16string&, bool, bool) override {}
    std::shared_ptr<platform::AgentRequest> Play(const std::u16string&) override { return nullptr; }
    void Stop(const std::u16string&) override {}
    std::shared_ptr<platform::AgentRequest> Speak(const std::optional<std::u16string>& text,
                                                  const std::optional<std::u16string>&) override {
        benchmark::DoNotOptimize(text->data());
        return nullptr;
    }
    std::shared_ptr<platform::AgentRequest> Show() override { return nullptr; }
    std::shared_ptr<platform::AgentRequest> Hide() override { return nullptr; }
    std::shared_ptr<platform::AgentRequest> MoveTo(std::int16_t, std::int16_t) override { return nullptr; }
};

void setStage() {
    fakes::reset();
    SettingsKeyPath.clear();
    LoadSettings();
    SoundsDir = u"S:\\sounds\\";
    LoadedCharacterKeys.Clear();
    LoadedCharacters.Clear();
    LastRequests.Clear();
    LoadedCharacterKeys.Add(u"a@x", u"a@x");
    LoadedCharacters.Add(std::make_shared<IdleCharacter>(), u"a@x");
    LastRequests.Add(nullptr, u"a@x");
}

// What the people of a chat log said, a line each.
std::vector<std::u16string> messagesOf(const std::filesystem::path& file) {
    std::vector<std::u16string> messages;
    std::istringstream log(test::contentsOf(file));
    for (std::string line; std::getline(log, line);) {
        const std::size_t nick_end = line.find("> ");
        if (line.starts_with("[") && nick_end != std::string::npos) {
            messages.push_back(fromUtf8(line.substr(nick_end + 2)));
        }
    }
    return messages;
}

// The fastest of three times that the plain transcription of the described steps takes for all messages.
double plainSeconds(const std::vector<std::u16string>& messages) {
    double fastest = std::numeric_limits<double>::max();
    for (int run = 0; run < 3; ++run) {
        const auto start = std::chrono::steady_clock::now();
        for (const std::u16string& message : messages) {
            benchmark::DoNotOptimize(test::plainSpeakMessage(u"a@x", message, {}));
        }
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        fastest = std::min(fastest, taken.count());
    }
    return fastest;
}

// The counter tells how many times as long the plain transcription takes for the same messages in the same run.
void speakChatLog(benchmark::State& state, const std::filesystem::path& file) {
    const std::vector<std::u16string> messages = messagesOf(file);
    if (messages.empty()) {
        state.SkipWithError(("there is nothing to say in " + file.string()).c_str());
        return;
    }
    setStage();
    std::size_t bytes = 0;
    for (const std::u16string& message : messages) {
        bytes += message.size() * sizeof(char16_t);
    }
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state) {
        for (const std::u16string& message : messages) {
            SpeakMessage(u"a@x", message);
        }
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes * static_cast<std::size_t>(state.iterations())));
    state.counters["plain/this"] = plainSeconds(messages) * static_cast<double>(state.iterations()) / taken.count();
}

void speakMegabyte(benchmark::State& state, const char16_t* part) {
    setStage();
    std::u16string text;
    while (text.size() < 1 << 19) {
        text += part;
    }
    for (auto _ : state) {
        SpeakMessage(u"a@x", text);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size() * sizeof(char16_t)) * state.iterations());
}
BENCHMARK_CAPTURE(speakMegabyte, one_letter, u"a")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(speakMegabyte, aaab, u"aaab")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(speakMegabyte, colon_dash, u":-")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(speakMegabyte, lol_emoticon, u"(lol)")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(speakMegabyte, brb, u"brb ")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(speakMegabyte, link, u"http://www.")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(speakMegabyte, sunshine_emoticon, u"(#)")->Unit(benchmark::kMillisecond);

std::shared_ptr<fakes::Window> longConversation() {
    auto window = std::make_shared<fakes::Window>(1);
    while (window->history.size() < 1 << 19) {
        window->say(u"Ann", u"a line of an ordinary conversation, of an ordinary length");
    }
    return window;
}

void readHistory(benchmark::State& state) {
    setStage();
    const auto window = longConversation();
    for (auto _ : state) {
        benchmark::DoNotOptimize(window->History());
    }
}
BENCHMARK(readHistory)->Unit(benchmark::kMicrosecond);

// To be compared with readHistory.
void idleTick(benchmark::State& state) {
    setStage();
    MonitorHost host;
    host.addConversation = [](const std::u16string&, const std::u16string&, const std::u16string&, bool) {};
    host.editConversationText = [](const std::u16string&, const std::u16string&) {};
    host.enableStartConvButt = [](bool) {};
    MSNControl monitor(std::move(host));
    const auto window = longConversation();
    monitor.MSNAPI_OnIMWindowCreated(window);
    IsReadingConversation = 1;
    ReadingWindowHandle = window->handle;
    monitor.StartAtEndOf(*window);
    for (auto _ : state) {
        monitor.ReadMoniter_Timer();
    }
    IsReadingConversation = 0;
}
BENCHMARK(idleTick)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int count, char** arguments) {
    for (const auto& file : murmelix::test::chatLogs()) {
        benchmark::RegisterBenchmark(("speakChatLog/" + file.stem().string()).c_str(), speakChatLog, file)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
