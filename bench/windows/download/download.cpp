// How long a character's picture of a megabyte takes from a server on loopback: from the window that is opened to its
// end, with the file written and the progress drawn. Ends with 1 where it takes longer than it may.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <windows.h>

#include "app/shell_state.h"
#include "common/com/handles.h"
#include "download/img_down_frm.h"
#include "tests/windows/download/web_server.h"

namespace {

using namespace murmelix;

constexpr std::size_t length = 1024 * 1024;
constexpr int downloads = 21;
constexpr double limit = 300; // milliseconds

double milliseconds() {
    LARGE_INTEGER now{}, frequency{};
    QueryPerformanceCounter(&now);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(now.QuadPart) * 1000 / static_cast<double>(frequency.QuadPart);
}

void useSite(const std::u16string& host) {
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, L"Software\\Murmelix", L"SiteHost", REG_SZ, com::wide(host),
                    static_cast<DWORD>(2 * host.size() + 2));
}

} // namespace

int main() {
    const com::Apartment apartment;
    const auto directory = std::filesystem::temp_directory_path() / L"murmelix benchmark downloads";
    std::filesystem::create_directories(directory);
    CharPicsDir = directory.u16string();
    const std::string answer =
        "HTTP/1.0 200 OK\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n" + std::string(length, 'x');
    const test::WebServer server([&](const test::WebServer::Visitor& visitor) {
        visitor.request();
        visitor.answer(answer);
    });
    useSite(server.host());
    std::vector<double> times;
    double longest_message = 0;
    for (int i = 0; i < downloads; ++i) {
        std::filesystem::remove(directory / L"Robby.gif");
        const double begun = milliseconds();
        ImgDownFrm window(nullptr);
        window.CharacterName = u"Robby";
        window.Show();
        MSG message{};
        while (window.Loaded() && GetMessageW(&message, nullptr, 0, 0) > 0) {
            const double served = milliseconds();
            DispatchMessageW(&message);
            longest_message = std::max(longest_message, milliseconds() - served);
        }
        times.push_back(milliseconds() - begun);
        if (std::filesystem::file_size(directory / L"Robby.gif") != length) {
            std::printf("the picture is not whole\n");
            return 1;
        }
    }
    useSite(u"");
    std::filesystem::remove_all(directory);
    std::sort(times.begin(), times.end());
    std::printf(
        "a picture of 1 MB from loopback: median %.0f ms of %d, at most %.0f ms (limit %.0f); the longest message "
        "%.1f ms\n",
        times[downloads / 2], downloads, times.back(), limit, longest_message);
    return times[downloads / 2] <= limit ? 0 : 1;
}
