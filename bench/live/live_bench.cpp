// What a busy channel costs the Messenger client beside its windows: lines of a server into conversations.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "companions/messenger/live/account.h"
#include "tests/fakes/live_hooks.h"

namespace messenger_client {

namespace {

constexpr int people = 1'000;

// A channel with a thousand people.
struct Channel {
    Client client;
    long long now = 0;
    std::unique_ptr<LiveAccount> account;

    Channel() {
        LiveAccount::Hooks hooks = quietHooks();
        hooks.milliseconds = [this] { return now; };
        hooks.today = [] { return 0LL; };
        account = std::make_unique<LiveAccount>(client, roomSettings(), Status::online, std::move(hooks));
        account->start();
        account->connected();
        account->received(":irc.example.org 001 me :Welcome\r\n:irc.example.org 422 me :No message\r\n"
                          ":me!u@h JOIN #room\r\n");
        for (int i = 0; i < people; ++i) {
            account->received(":user" + std::to_string(i) + "!u@h JOIN #room\r\n");
        }
    }
};

std::string lineOf(int number) {
    return ":user" + std::to_string(number % people) + "!u@h PRIVMSG #room :line " + std::to_string(number) +
           " says something of a usual length " + std::to_string(number * 7919 % 1000) + "\r\n";
}

// As the system gives them: in pieces of 64 KB.
void Burst(benchmark::State& state) {
    std::string lines;
    for (int i = 0; i < 100'000; ++i) {
        lines += lineOf(i);
    }
    Channel channel;
    for (auto _ : state) {
        for (std::size_t at = 0; at < lines.size(); at += 65'536) {
            channel.account->received(std::string_view(lines).substr(at, 65'536));
            channel.now += 10;
            channel.account->tick();
        }
    }
}
BENCHMARK(Burst)->Unit(benchmark::kMillisecond)->Name("100,000 lines in a burst");

// From the line to the history, of somebody who has a seat.
void OneLine(benchmark::State& state) {
    Channel channel;
    int number = 0;
    for (auto _ : state) {
        channel.now += 60'000;
        channel.account->received(":user7!u@h PRIVMSG #room :a word of number " + std::to_string(number++ * 7919) +
                                  "\r\n");
        channel.account->tick();
    }
}
BENCHMARK(OneLine)->Unit(benchmark::kMicrosecond)->Name("one line among a thousand people");

// Eight hours with ten lines a second, on a clock of its own: what of it is read is the history.
void Evening(benchmark::State& state) {
    for (auto _ : state) {
        Channel channel;
        for (int i = 0; i < 8 * 3600 * 10; ++i) {
            channel.now += 100;
            channel.account->received(lineOf(i));
            channel.account->tick();
        }
        const std::u16string& history = channel.client.conversations().front()->history();
        state.counters["history_MB"] = static_cast<double>(2 * history.size()) / 1e6;
        state.counters["contacts"] = static_cast<double>(channel.client.contacts().size());
    }
}
BENCHMARK(Evening)->Unit(benchmark::kSecond)->Iterations(1)->Name("an evening of eight hours");

} // namespace

} // namespace messenger_client

BENCHMARK_MAIN();
