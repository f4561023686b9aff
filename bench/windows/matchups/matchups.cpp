// What a user of the character browser waits for, drawing included. Ends with 1 where it takes longer than it may.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

#include <windows.h>

#include "app/settings.h"
#include "app/shell_state.h"
#include "common/com/handles.h"
#include "common/text.h"
#include "controls/img_list_box.h"
#include "download/img_down_frm.h"
#include "matchups/matchup_store.h"
#include "tests/fakes/gif.h"
#include "ui/form.h"

namespace {

using namespace murmelix;
using Clock = std::chrono::steady_clock;

constexpr int characters = 200, contacts = 1000, openings = 11, slides = 20;
constexpr double opening_limit = 500; // milliseconds
constexpr double steps_limit = 30;    // a second
constexpr int steps_of_a_slide = 13;

double millisecondsSince(Clock::time_point begun) {
    return std::chrono::duration<double, std::milli>(Clock::now() - begun).count();
}

// Milliseconds that the processor has worked for this process, whatever else it had to do meanwhile.
double processorTime() {
    FILETIME begun{}, ended{}, kernel{}, user{};
    GetProcessTimes(GetCurrentProcess(), &begun, &ended, &kernel, &user);
    return (kernel.dwLowDateTime + user.dwLowDateTime) / 10'000.0;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void draw(const ui::Form& form) {
    RedrawWindow(reinterpret_cast<HWND>(form.handle()), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    GdiFlush();
}

std::u16string nameOf(int character) {
    return u"Character " + toText(character);
}

// As the dialogue fills it: a panel for each character, then the contacts.
void fill(ImgListBox& browser) {
    for (int i = 0; i < characters; ++i) {
        const std::u16string file = imageFile(nameOf(i));
        browser.AddItem(std::filesystem::exists(file) ? file : std::u16string(), nameOf(i));
    }
    browser.FillListsWithMatchupsFromRegistry();
}

// A picture in colours that compress as badly as those of a photograph.
std::string picture() {
    constexpr int side = 128;
    fakes::GifFrame frame{side, side, 0, 0, {}};
    std::string palette;
    for (int i = 0; i < 256; ++i) {
        palette += {static_cast<char>(i), static_cast<char>(255 - i), static_cast<char>(i * 5)};
    }
    for (unsigned i = 0, noise = 1; i < side * side; ++i) {
        noise = noise * 1103515245 + 12345;
        frame.indices.push_back(static_cast<std::uint8_t>(noise >> 16));
    }
    return fakes::gif(side, side, palette, {frame});
}

} // namespace

int main() {
    const com::Apartment apartment;
    const auto directory = std::filesystem::temp_directory_path() / L"murmelix benchmark pictures";
    std::filesystem::create_directories(directory);
    CharPicsDir = directory.u16string();
    for (int i = 0; i < characters; i += 2) { // the others have none
        std::ofstream(directory / (nameOf(i) + u".gif"), std::ios::binary) << picture();
    }
    for (int i = 0; i < contacts; ++i) {
        const std::u16string contact = u"friend" + toText(i) + u"@example.org";
        Matchups.Add(nameOf(i % characters) + u"##" + contact, contact);
    }

    ui::Form form(nullptr, u"Browser", ui::FormStyle::window);
    form.setScale(6000, 3 * 1950 + 2 * 405);
    form.Show();
    std::vector<double> opened;
    std::unique_ptr<ImgListBox> browser;
    for (int i = 0; i < openings; ++i) {
        browser.reset();
        const auto begun = Clock::now();
        browser = std::make_unique<ImgListBox>(form);
        browser->Move({0, 0, 6000, 3 * 1950 + 2 * 405});
        fill(*browser);
        draw(form);
        opened.push_back(millisecondsSince(begun));
    }

    int steps = 0;
    auto on_tick = browser->SlideTimer.Tick;
    browser->SlideTimer.Tick = [&] {
        ++steps;
        on_tick();
    };
    const auto begun = Clock::now();
    const double worked = processorTime();
    double longest = 0;
    for (int i = 0; i < slides; ++i) {
        browser->ScrollButt_Click(1);
        ++steps;
        MSG message{};
        while (browser->Sliding() && GetMessageW(&message, nullptr, 0, 0) > 0) {
            const auto served = Clock::now();
            DispatchMessageW(&message);
            longest = std::max(longest, millisecondsSince(served));
        }
    }
    const double a_second = steps / millisecondsSince(begun) * 1000;
    std::printf("opening with %d characters and %d contacts: median %.1f ms of %d\n", characters, contacts,
                median(opened), openings);
    std::printf("sliding by %d panels of %d steps: %.1f steps a second, %.1f ms for the longest message, "
                "%.1f ms of the processor a step\n",
                slides, steps_of_a_slide, a_second, longest, (processorTime() - worked) / steps);
    browser.reset();
    std::filesystem::remove_all(directory);
    return median(opened) <= opening_limit && a_second >= steps_limit ? 0 : 1;
}
