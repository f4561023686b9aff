// What choosing the lines that are read costs, by kinds of chat.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "common/text.h"
#include "companions/messenger/reading/reader.h"

namespace {

using namespace messenger_client::reading;
using murmelix::toText;

Line lineOf(long long number, const std::u16string& text) {
    Line line;
    line.number = static_cast<unsigned long long>(number);
    line.id = toText(number);
    line.name = u"person" + toText(number % 1'000);
    line.person = line.name + u"@net";
    line.text = text;
    return line;
}

// A thousand people who write a hundred thousand lines in a second, no two of which are alike.
void burstOfLines(benchmark::State& state) {
    std::vector<Line> lines;
    for (long long i = 0; i < 100'000; ++i) {
        lines.push_back(lineOf(i, u"what a game 😂😂 https://example.org/" + toText(i) + u" I have seen " +
                                      toText(i * 7'919 % 1'000'003) + u" of them 🍕"));
    }
    for (auto _ : state) {
        Reader reader;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const auto now = static_cast<long long>(i / 100);
            reader.arrived(lines[i], now);
            benchmark::DoNotOptimize(reader.next(now));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines.size()));
}
BENCHMARK(burstOfLines)->Unit(benchmark::kMillisecond);

void linesWithWordsToReplace(benchmark::State& state) {
    Rules rules;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        rules.words.push_back({u"word" + toText(i), u"other"});
    }
    const Line line = lineOf(1, u"a line of nine words of which none is listed");
    for (auto _ : state) {
        benchmark::DoNotOptimize(judge(line, rules));
    }
}
BENCHMARK(linesWithWordsToReplace)->Arg(0)->Arg(static_cast<std::int64_t>(most_listed));

void longestLine(benchmark::State& state) {
    std::u16string text;
    while (text.size() < longest_looked_at) {
        text += u"ha 😂 www.example.org ";
    }
    const Line line = lineOf(1, text);
    for (auto _ : state) {
        benchmark::DoNotOptimize(judge(line, {}));
    }
}
BENCHMARK(longestLine)->Unit(benchmark::kMicrosecond);

void previewOfAHundredLines(benchmark::State& state) {
    std::vector<Line> lines;
    for (long long i = 0; i < 100; ++i) {
        lines.push_back(lineOf(i, u"some line of usual length, the number of which is " + toText(i * 7'919)));
        lines.back().time = i * 1'000;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(preview(lines, {}));
    }
}
BENCHMARK(previewOfAHundredLines)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
