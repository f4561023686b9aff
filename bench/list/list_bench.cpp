// What a list decides and asks to be drawn, by its number of rows; the drawing itself is measured in Wine.
#include <benchmark/benchmark.h>

#include <string>

#include "common/text.h"
#include "controls/cool_list_box.h"
#include "tests/fakes/ui/windows.h"
#include "ui/form.h"

namespace {

using namespace murmelix;

// With room for seven rows and a half.
struct FilledList {
    explicit FilledList(std::int64_t rows) {
        list.Move({0, 0, 3000, 4500});
        list.setItemHeight(40);
        fill(rows);
    }
    void fill(std::int64_t rows) {
        for (std::int64_t row = 1; row <= rows; ++row) {
            list.AddItem(u"Conversation with:", u"Ann, Bob", keyOf(row), false, {u"picture", 32});
        }
    }
    static std::u16string keyOf(std::int64_t row) { return u"%" + toText(100'000 + row); }

    ui::Form form{nullptr, u"", ui::FormStyle::window};
    CoolListBox list{form};
};

void scrollList(benchmark::State& state) {
    FilledList filled(state.range(0));
    auto& list = filled.list;
    const int middle = list.Scroll.Max() / 2;
    list.Scroll.setValue(middle);
    int step = 0;
    for (auto _ : state) {
        list.Scroll.setValue(middle + (++step & 1));
    }
}
BENCHMARK(scrollList)->Arg(10)->Arg(10'000);

void selectKeyInList(benchmark::State& state) {
    FilledList filled(state.range(0));
    const std::u16string near_end[] = {FilledList::keyOf(state.range(0) - 1), FilledList::keyOf(state.range(0))};
    std::size_t turn = 0;
    for (auto _ : state) {
        filled.list.SelectKey(near_end[++turn & 1], true);
    }
}
BENCHMARK(selectKeyInList)->Arg(10)->Arg(10'000);

// The first row goes, another one comes at the end.
void replaceRowOfList(benchmark::State& state) {
    FilledList filled(state.range(0));
    std::int64_t row = state.range(0);
    for (auto _ : state) {
        filled.list.RemoveItem(filled.list.Item(1).Key);
        filled.list.AddItem(u"Conversation with:", u"Ann, Bob", FilledList::keyOf(++row), false, {u"picture", 32});
    }
}
BENCHMARK(replaceRowOfList)->Arg(10)->Arg(10'000);

void fillList(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        FilledList empty(0);
        state.ResumeTiming();
        empty.fill(state.range(0));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(fillList)->Arg(10)->Arg(10'000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
