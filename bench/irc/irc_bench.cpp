// What a session of a chat network takes for lines in a burst: of a busy channel, of the streaming chat, and of people
// who come and go.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include <benchmark/benchmark.h>

#include "companions/messenger/irc/session.h"

namespace {

using namespace messenger_client::irc;

constexpr int lines = 100'000, people = 1'000, crowd = 20'000;

class Chat {
  public:
    explicit Chat(Dialect dialect)
        : session_({.address = {.dialect = dialect, .host = u"irc.example.org", .channels = {u"#room"}}, .nick = u"me"},
                   {.open = [] {},
                    .send = [](std::string_view) {},
                    .close = [] {},
                    .tell = [this](const Event&) { ++told; },
                    .random = [] { return 0U; }}) {
        session_.start(0);
        session_.connected(0);
        take(":s.example 001 me :Welcome\r\n:s.example 376 me :End\r\n:me!u@h JOIN #room\r\n:s.example 366 me #room "
             ":End\r\n");
    }

    void take(std::string_view bytes) { session_.received(bytes, 0); }

    std::size_t told = 0;

  private:
    Session session_;
};

std::string nick(int number) {
    return "somebody" + std::to_string(number);
}

void run(benchmark::State& state, Dialect dialect, const std::function<std::string(int)>& line) {
    std::string joins, burst;
    for (int i = 0; i < people; ++i) {
        joins += ":" + nick(i) + "!user@host.example JOIN #room\r\n";
    }
    for (int i = 0; i < lines; ++i) {
        burst += line(i) + "\r\n";
    }
    for (auto _ : state) {
        state.PauseTiming();
        Chat chat(dialect);
        chat.take(joins);
        chat.told = 0;
        state.ResumeTiming();
        chat.take(burst);
        benchmark::DoNotOptimize(chat.told);
    }
    state.SetItemsProcessed(state.iterations() * lines);
    state.SetBytesProcessed(static_cast<std::int64_t>(burst.size()) * state.iterations());
}

void talk(benchmark::State& state) {
    run(state, Dialect::irc, [](int i) {
        return "@time=2026-11-21T18:00:00.000Z;account=" + nick(i % people) + " :" + nick(i % people) +
               "!user@host.example PRIVMSG #room :Does anybody know when the next one is? I cannot find it anywhere.";
    });
}
BENCHMARK(talk)->Unit(benchmark::kMillisecond);

void streaming(benchmark::State& state) {
    run(state, Dialect::twitch, [](int i) {
        const std::string number = std::to_string(i % people);
        return "@badge-info=subscriber/14;badges=subscriber/12,premium/1;color=#1E90FF;display-name=Somebody" + number +
               ";emotes=25:0-4,12-16/1902:6-10;first-msg=0;flags=;id=b34ccfc7-4977-403a-8a94-33c6bac34fb8;mod=0;"
               "returning-chatter=0;room-id=1337;subscriber=1;tmi-sent-ts=1507246572675;turbo=0;user-id=" +
               number + ";user-type= :" + nick(i % people) + "!" + nick(i % people) + "@" + nick(i % people) +
               ".tmi.twitch.tv PRIVMSG #room :Kappa Keepo Kappa what was that";
    });
}
BENCHMARK(streaming)->Unit(benchmark::kMillisecond);

void strangers(benchmark::State& state) {
    run(state, Dialect::irc, [](int i) { return ":stranger" + std::to_string(i) + "!user@host PRIVMSG #room :hello"; });
}
BENCHMARK(strangers)->Unit(benchmark::kMillisecond);

void comeAndGo(benchmark::State& state) {
    run(state, Dialect::irc, [](int i) {
        return i < lines / 2 ? ":other" + std::to_string(i % crowd) + "!user@host JOIN #room"
                             : ":other" + std::to_string(i % crowd) + "!user@host QUIT :a.example b.example";
    });
}
BENCHMARK(comeAndGo)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
