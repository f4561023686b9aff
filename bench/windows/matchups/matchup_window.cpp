// What a user of the matchup window waits for beside a Messenger client in another process: until the window is there,
// and until all contacts are listed; and how long it does not answer meanwhile. Ends with 1 where it takes longer than
// it may.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <windows.h>

#include "app/settings.h"
#include "app/shell_state.h"
#include "bench/windows/messenger/client.h"
#include "common/com/handles.h"
#include "common/text.h"
#include "matchups/matchup_frm.h"
#include "matchups/matchup_store.h"
#include "platform/messenger_api.h"

namespace {

using namespace murmelix;
using bench::passed;
using bench::ticks;

constexpr int characters = 200, contacts = 1000, openings = 7;
constexpr int matched_every = 4;      // one contact of so many has a character
constexpr double opening_limit = 500; // milliseconds

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

std::string contact(int number) {
    return "friend" + std::to_string(number) + "@example.org";
}

struct Opening {
    double shown, listed, longest; // milliseconds; the longest message that was served
};

Opening open(MatchupFrm& window) {
    const LONGLONG begun = ticks();
    window.Show();
    RedrawWindow(reinterpret_cast<HWND>(window.handle()), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    GdiFlush();
    Opening opening{passed(begun), 0, 0};
    MSG message{};
    while (window.ContactTimer.Enabled() && GetMessageW(&message, nullptr, 0, 0) > 0) {
        const LONGLONG served = ticks();
        DispatchMessageW(&message);
        opening.longest = std::max(opening.longest, passed(served));
    }
    GdiFlush();
    opening.listed = passed(begun);
    return opening;
}

} // namespace

int main() {
    const com::Apartment apartment;
    const auto directory = std::filesystem::temp_directory_path() / L"murmelix benchmark characters";
    std::filesystem::create_directories(directory / L"msagent" / L"chars");
    WindowsDir = directory.u16string() + u"\\";
    CharPicsDir = directory.u16string();
    for (int i = 0; i < characters; ++i) {
        std::ofstream(directory / L"msagent" / L"chars" / ("Character " + std::to_string(i) + ".acs"));
    }
    bench::registerClient();
    const bench::Client client;
    client.order("window hide");
    for (int i = 0; i < contacts; ++i) {
        client.order("add " + contact(i) + " Friend " + std::to_string(i));
        if (i % matched_every == 0) {
            const std::u16string name = fromUtf8(contact(i));
            Matchups.Add(u"Character " + toText(i % characters) + u"##" + name, name);
        }
    }
    std::vector<double> shown, listed, longest;
    {
        const auto messenger = platform::createMessengerApi({});
        messenger->MyStatus();
        for (int i = 0; i < openings; ++i) {
            MatchupFrm window(nullptr, *messenger);
            const Opening opening = open(window);
            if (window.ContactList.GetItemCount() != contacts - contacts / matched_every) {
                std::printf("%d contacts are listed\n", window.ContactList.GetItemCount());
                return 1;
            }
            shown.push_back(opening.shown);
            listed.push_back(opening.listed);
            longest.push_back(opening.longest);
            window.Unload();
        }
    }
    std::filesystem::remove_all(directory);
    std::printf(
        "opening with %d characters and %d contacts, median of %d: the window %.0f ms (limit %.0f), all contacts "
        "%.0f ms\n",
        characters, contacts, openings, median(shown), opening_limit, median(listed));
    std::printf("the longest that it does not answer meanwhile: median %.1f ms, at most %.1f ms\n", median(longest),
                *std::ranges::max_element(longest));
    return median(shown) <= opening_limit ? 0 : 1;
}
