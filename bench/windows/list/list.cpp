// What a user of a list waits for, drawing included, by its number of rows. Ends with 1 where scrolling a long list
// costs more than a short one.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include <windows.h>

#include "common/text.h"
#include "controls/cool_list_box.h"
#include "ui/form.h"

namespace {

using namespace murmelix;

constexpr int short_rows = 10, long_rows = 10'000;
constexpr std::size_t steps = 2001;
constexpr double ratio_limit = 1.1; // the same, as exactly as two runs of one thing are

// Side by side, so that their steps are measured in turn and the machine's other work meets both.
class Lists : public ui::Form {
  public:
    Lists() : Form(nullptr, u"Lists", ui::FormStyle::window) {
        setScale(8200, 5000);
        Short.Move({0, 0, 4000, 5000});
        Long.Move({4200, 0, 4000, 5000});
        for (CoolListBox* list : {&Short, &Long}) {
            list->setItemHeight(40);
            list->SetPos(44, 4, 44, 21, 4, 4);
        }
        Show();
    }

    CoolListBox Short{*this}, Long{*this};
};

// Microseconds until all of it is seen.
template <class Action>
double timed(CoolListBox& list, Action&& action) {
    const auto begun = std::chrono::steady_clock::now();
    action();
    RedrawWindow(reinterpret_cast<HWND>(list.handle()), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    GdiFlush();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begun).count();
}

double fill(CoolListBox& list, int rows) {
    return timed(list, [&] {
        for (int row = 1; row <= rows; ++row) {
            list.AddItem(u"Conversation with:", u"Ann, Bob", toText(row), row == 1, {u"picture_conversation", 32});
        }
    });
}

double scroll(CoolListBox& list, std::size_t step) {
    return timed(list, [&] { list.Scroll.setValue(list.Scroll.Max() / 2 + (step % 2 == 0 ? 0 : 1)); });
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

int main() {
    Lists lists;
    const double short_fill = fill(lists.Short, short_rows), long_fill = fill(lists.Long, long_rows);
    std::vector<double> of_short, of_long;
    for (std::size_t step = 1; step <= steps; ++step) {
        of_short.push_back(scroll(lists.Short, step));
        of_long.push_back(scroll(lists.Long, step));
    }
    const double ratio = median(of_long) / median(of_short);
    std::printf("filling a list with %d rows: %.1f ms\n", short_rows, short_fill / 1000);
    std::printf("filling a list with %d rows: %.1f ms\n", long_rows, long_fill / 1000);
    std::printf("scrolling a list of %d rows by one: median %.2f ms of %zu\n", short_rows, median(of_short) / 1000,
                steps);
    std::printf("scrolling a list of %d rows by one: median %.2f ms, %.2f times as much\n", long_rows,
                median(of_long) / 1000, ratio);
    return ratio <= ratio_limit ? 0 : 1;
}
