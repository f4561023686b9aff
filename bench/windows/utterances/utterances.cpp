// Speaks short texts one after another, as many as its argument says, and tells every thousand what the median of them
// took.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "common/text.h"
#include "companions/agent/voice/win32/engines.h"

int main(int count, char** arguments) {
    const int all = count > 1 ? std::atoi(arguments[1]) : 1000;
    const auto engine = agent::voice::makeEspeak();
    if (!engine) {
        std::puts("espeak-ng is missing");
        return 1;
    }
    std::string error;
    std::vector<double> milliseconds;
    for (int number = 1; number <= all; ++number) {
        const auto begun = std::chrono::steady_clock::now();
        const std::u16string words = u"Hello there, number " + murmelix::toText(number % 100);
        if (!engine->synthesise(words, {}, {}, error)) {
            std::printf("utterance %d: %s\n", number, error.c_str());
            return 1;
        }
        milliseconds.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begun).count());
        if (number % 1000 == 0 || number == 100 || number == all) {
            const auto middle = milliseconds.begin() + static_cast<std::ptrdiff_t>(milliseconds.size() / 2);
            std::nth_element(milliseconds.begin(), middle, milliseconds.end());
            std::printf("%d %.1f\n", number, *middle);
            std::fflush(stdout);
            milliseconds.clear();
        }
    }
    return 0;
}
