// What many people cost the windows of the Messenger client: contacts added one by one to the list of its main window,
// and somebody who joins a conversation of a thousand. Orders (companions/messenger/chat/control.h) are timed until
// they are answered, and the window is drawn at the end. Ends with 1 where a limit is not kept.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/windows/messenger/client.h"

namespace {

using namespace bench;

constexpr int few_contacts = 200, many_contacts = 2000;
constexpr double proportion_limit = 2; // a contact of many may cost so many times as much as one of few
constexpr int people = 1000;
constexpr int joins = 51;
constexpr double join_limit = 5; // milliseconds

double adding(int contacts) { // milliseconds
    const Client client;
    client.draw();
    const LONGLONG begun = ticks();
    for (int i = 0; i < contacts; ++i) {
        client.order("add contact" + std::to_string(i) + "@x Contact " + std::to_string((i * 7919) % contacts));
    }
    client.draw();
    return passed(begun);
}

double joining() { // milliseconds, median
    const Client client;
    client.order("open person0@x Person 0");
    for (int i = 1; i < people; ++i) {
        client.order("join person" + std::to_string(i) + "@x Person " + std::to_string(i));
    }
    std::vector<double> times;
    for (int i = 0; i < joins; ++i) {
        client.order("part person500@x");
        const LONGLONG begun = ticks();
        client.order("join person500@x");
        times.push_back(passed(begun));
    }
    std::sort(times.begin(), times.end());
    return times[joins / 2];
}

} // namespace

int main() {
    const double few = adding(few_contacts), many = adding(many_contacts);
    const double proportion = many / many_contacts / (few / few_contacts);
    std::printf("adding %d contacts to the main window, one by one: %.0f ms\n", few_contacts, few);
    std::printf("adding %d contacts: %.0f ms, each %.2f times as much (limit %.0f)\n", many_contacts, many, proportion,
                proportion_limit);
    std::fflush(stdout);
    const double join = joining();
    std::printf("a join in a conversation window of %d people: median %.2f ms of %d (limit %.0f)\n", people, join,
                joins, join_limit);
    return proportion <= proportion_limit && join <= join_limit ? 0 : 1;
}
