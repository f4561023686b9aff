// A MessengerClient.exe started for a test, and what tests do with it: the automation from this other process,
// control commands, its windows.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

#include "common/com/client.h"
#include "tests/windows/support/picture.h"
#include "tests/windows/support/process.h"

namespace messenger_client {

inline constexpr IID iid_messenger_events{0xC9A6A6B6, 0x9BC1, 0x43A5, {0xB0, 0x6B, 0xE5, 0x88, 0x74, 0xEE, 0xBC, 0x96}};

using murmelix::test::contents;
using murmelix::test::Process;
using murmelix::test::pumpUntil;
using murmelix::test::screenshot;
using murmelix::test::temporaryFile;
using murmelix::test::windowsPath;

// "Z:\…\MessengerClient.exe", quoted.
std::u16string clientProgram();

// A running client whose main window is there and whose automation answers. It takes orders, sign-ins are done at once
// and nobody becomes idle, where the switches do not say otherwise.
class RunningClient {
  public:
    explicit RunningClient(const std::u16string& switches = {});
    ~RunningClient();

    HWND mainWindow() const;
    // A conversation window that is open; the newest where there are several.
    HWND conversationWindow() const;
    // The Result of a control command; -1 where the client does not answer.
    int command(std::string_view line) const;
    Process& process() { return process_; }
    murmelix::com::Object automation() const;

  private:
    Process process_;
};

// A control inside a window or inside what it holds, by its class and its number among those of that class in the order
// of the Tab key; the parts of combo boxes do not count. Null where there is none.
HWND controlOf(HWND window, const wchar_t* class_name, int number);
// As a user who types it in place of what is there; a combo box is told of it then.
void replaceText(HWND field, const std::u16string& text);
// Opens a menu of the window by its letter and goes on in it by letters; u'\r' and u'\x19' stand for Enter and Down.
// Menus are seen by their own process alone.
void chooseByKeys(HWND window, std::u16string_view keys);

// A picture of a window when it has been drawn to its end, above all others: when two pictures, a moment apart, are the
// same. The second is for one that moves: when it has changed.
void screenshotWhenStill(HWND window, const char* name);
void screenshotWhenAgain(HWND window, const char* name);

// Events as lines: "1043 ann@x Hazel", objects by sign-in name or "window".
struct Heard {
    explicit Heard(murmelix::com::Object& messenger);
    std::vector<std::string> lines;
    std::vector<murmelix::com::Object> windows;
    murmelix::com::Subscription subscription;
    bool has(const std::string& line) const;
};

} // namespace messenger_client
