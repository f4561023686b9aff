// The window that fetches a picture, with real sockets, a real disk and servers of all kinds.
#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <optional>

#include <gmock/gmock.h>

#include "app/shell_state.h"
#include "common/com/handles.h"
#include "common/text.h"
#include "download/img_down_frm.h"
#include "tests/windows/download/web_server.h"
#include "tests/windows/program/window_test.h"
#include "ui/win32/window.h"

namespace murmelix {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using ui::win32::textOf;
using Visitor = WebServer::Visitor;

const std::string header = "HTTP/1.0 200 OK\r\nContent-Length: 5\r\n\r\n";

// Presses OK in the message boxes of this thread and keeps what they said.
class Boxes {
  public:
    Boxes() : timer_(SetTimer(nullptr, 0, 10, look)) { all().clear(); }
    Boxes(const Boxes&) = delete;
    Boxes& operator=(const Boxes&) = delete;
    ~Boxes() { KillTimer(nullptr, timer_); }
    static std::vector<std::u16string>& all() {
        static std::vector<std::u16string> said;
        return said;
    }

  private:
    // A box that is open serves timers.
    static void CALLBACK look(HWND, UINT, UINT_PTR, DWORD) {
        EnumThreadWindows(
            GetCurrentThreadId(),
            [](HWND window, LPARAM) -> BOOL {
                std::array<wchar_t, 16> kind{};
                GetClassNameW(window, kind.data(), static_cast<int>(kind.size()));
                if (std::wstring_view(kind.data()) == L"#32770" && IsWindowVisible(window)) {
                    all().push_back(textOf(window) + u"|" + textOf(GetDlgItem(window, 0xFFFF)));
                    SendMessageW(window, WM_COMMAND, IDOK, 0);
                }
                return TRUE;
            },
            0);
    }
    UINT_PTR timer_;
};

class Download : public testing::Test {
  protected:
    Download() : directory_(std::filesystem::temp_directory_path() / L"murmelix pictures") {
        std::filesystem::remove_all(directory_);
        std::filesystem::create_directories(directory_);
        CharPicsDir = directory_.u16string();
    }
    ~Download() override {
        std::filesystem::remove_all(directory_);
        useSite(u"");
    }

    static void useSite(const std::u16string& host) {
        const auto bytes = static_cast<DWORD>(2 * host.size() + 2);
        RegSetKeyValueW(HKEY_LOCAL_MACHINE, L"Software\\Murmelix", L"SiteHost", REG_SZ, com::wide(host), bytes);
    }

    // Fetches Robby's picture from a server that serves so; tells whether the window closed by itself.
    bool fetch(std::function<void(const Visitor&)> serve, const std::function<bool(ImgDownFrm&)>& meanwhile = {}) {
        const WebServer server(std::move(serve));
        useSite(server.host());
        ImgDownFrm window(nullptr);
        window.CharacterName = u"Robby";
        window.Show();
        if (meanwhile) {
            EXPECT_TRUE(serveUntil([&] { return meanwhile(window); }));
        }
        return serveUntil([&] { return !window.Loaded(); });
    }

    std::optional<std::string> picture() const {
        std::ifstream in(directory_ / L"Robby.gif", std::ios::binary);
        if (!in) {
            return std::nullopt;
        }
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    std::filesystem::path directory_;
    Boxes boxes_;
    std::mutex mutex_;
    std::string heard_;
};

TEST_F(Download, APictureComesWholeByOneRequest) {
    const std::string body("GIF\0\xFF", 5);
    EXPECT_TRUE(fetch([&](const Visitor& visitor) {
        heard_ = visitor.request();
        visitor.answer(header + body);
    }));
    EXPECT_EQ(heard_, "GET /murmelix/download/charimgs/robby.gif HTTP/1.0\r\n"
                      "Accept: */*\r\nAccept: image/gif\r\n\r\n");
    EXPECT_EQ(picture(), body);
    EXPECT_THAT(Boxes::all(), IsEmpty());
}

TEST_F(Download, ServerThatClosesAfterAnyByteLeavesNothingOrWhatItSent) {
    const std::string all = header + "GIF89";
    for (std::size_t length = 0; length <= all.size(); ++length) {
        std::filesystem::remove(directory_ / L"Robby.gif");
        Boxes::all().clear();
        ASSERT_TRUE(fetch([&](const Visitor& visitor) {
            visitor.request();
            visitor.answer(all.substr(0, length));
        })) << length;
        if (length < header.size()) {
            ASSERT_THAT(Boxes::all(),
                        ElementsAre(u"Unknown Download Error!|An unknown error has occured while downloading the "
                                    u"character image!"))
                << length;
            ASSERT_EQ(picture(), std::nullopt) << length;
        } else {
            ASSERT_THAT(Boxes::all(), IsEmpty()) << length;
            ASSERT_EQ(picture(), all.substr(header.size(), length - header.size())) << length;
        }
    }
}

TEST_F(Download, ProgressIsSeenWhileTheServerTakesItsTime) {
    constexpr int length = 2000;
    std::atomic<int> allowed{0};
    EXPECT_TRUE(fetch(
        [&](const Visitor& visitor) {
            visitor.request();
            visitor.answer("HTTP/1.0 200 OK\r\nContent-Length: 2000\r\n\r\n");
            for (int sent = 0; sent < length;) {
                if (sent >= allowed) {
                    Sleep(1);
                } else if (visitor.answer("x")) {
                    ++sent;
                } else {
                    return;
                }
            }
        },
        [&](ImgDownFrm& window) {
            if (window.socket.State() != platform::SocketState::connected) {
                return false;
            }
            const Image box = insideOf(windowOf(window.progress));
            const COLORREF done = GetSysColor(COLOR_HIGHLIGHT), open = GetSysColor(COLOR_WINDOW);
            if (box.at(1, 1) != done || box.at(box.width / 4, 1) != done) {
                allowed = std::min(allowed + 10, length / 2); // more and more, up to a half
                return false;
            }
            EXPECT_EQ(box.at(box.width / 2 + 2, 1), open);
            show(window, "download");
            EXPECT_THAT(layoutMistakes(window), IsEmpty());
            allowed = length;
            return true;
        }));
    EXPECT_EQ(picture(), std::string(length, 'x'));
}

TEST_F(Download, SilentServerIsLeftByCancel) {
    EXPECT_TRUE(fetch([&](const Visitor& visitor) { visitor.untilClosed(); },
                      [](ImgDownFrm& window) {
                          if (window.socket.State() != platform::SocketState::connected) {
                              return false;
                          }
                          key(windowOf(window.CancelDoldButt), VK_ESCAPE);
                          return true;
                      }));
    EXPECT_EQ(picture(), std::nullopt);
    EXPECT_THAT(Boxes::all(), IsEmpty());
}

TEST_F(Download, UnloadedInTheMiddleItClosesTheConnection) {
    EXPECT_TRUE(fetch(
        [&](const Visitor& visitor) {
            visitor.request();
            visitor.answer(header + "G");
            visitor.untilClosed();
        },
        [](ImgDownFrm& window) {
            if (window.socket.State() != platform::SocketState::connected) {
                return false;
            }
            window.Unload();
            return true;
        }));
    EXPECT_EQ(picture(), std::nullopt);
}

TEST_F(Download, OtherAnswersAreNoPictures) {
    for (const std::string& answer : {std::string("HTTP/1.0 200 OK\r\n\r\nGIF89"),
                                      std::string("HTTP/1.0 404 Not Found\r\nServer: x\r\n\r\nno such page"),
                                      std::string("HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1/other.gif\r\n\r\n"),
                                      std::string("HTTP/1.0 500 Internal Server Error\r\nServer: x\r\n\r\n"),
                                      std::string(5000, '\0') + "\r\n\r\n"}) {
        Boxes::all().clear();
        EXPECT_TRUE(fetch([&](const Visitor& visitor) {
            visitor.request();
            visitor.answer(answer);
        }));
        ASSERT_EQ(Boxes::all().size(), 1U);
        EXPECT_TRUE(Boxes::all()[0].starts_with(u"Image not found!|No image for Robby was found for download!\r\n"));
        EXPECT_EQ(picture(), std::nullopt);
    }
}

TEST_F(Download, LengthThatIsMissingOrWrongChangesNothing) {
    for (const std::string& field : {std::string("Server: x"), std::string("Content-Length: 5000000"),
                                     std::string("Content-Length: 0"), std::string("Content-Length: x")}) {
        std::filesystem::remove(directory_ / L"Robby.gif");
        EXPECT_TRUE(fetch([&](const Visitor& visitor) {
            visitor.request();
            visitor.answer("HTTP/1.0 200 OK\r\n" + field + "\r\n\r\nGI");
            visitor.answer("F89");
        }));
        EXPECT_EQ(picture(), "GIF89") << field;
    }
    EXPECT_THAT(Boxes::all(), IsEmpty());
}

TEST_F(Download, HundredMegabytesEndAsAnError) {
    std::atomic<int> taken{0};
    EXPECT_TRUE(fetch([&](const Visitor& visitor) {
        visitor.request();
        visitor.answer("HTTP/1.0 200 OK\r\nServer: x\r\n\r\n");
        const std::string megabyte(1024 * 1024, 'x');
        while (taken < 100 && visitor.answer(megabyte)) {
            ++taken;
        }
    }));
    EXPECT_LT(taken, 100);
    EXPECT_THAT(Boxes::all(), ElementsAre(u"Error Downloading Image!|Error downloading character image from server!\r\n"
                                          u"The answer is too long for an image."));
    EXPECT_EQ(picture(), std::nullopt);
}

TEST_F(Download, ServerThatClosesBeforeTheRequestIsToldOnce) {
    EXPECT_TRUE(fetch([](const Visitor&) {}));
    EXPECT_EQ(Boxes::all().size(), 1U); // an end or an error, as the request came too late or not
    EXPECT_EQ(picture(), std::nullopt);
}

TEST_F(Download, WithoutAServerOrAnAddressItIsAnError) {
    for (const std::u16string& host : {std::u16string(u"127.0.0.1:1"), std::u16string(u"no.such.host.invalid")}) {
        Boxes::all().clear();
        useSite(host);
        ImgDownFrm window(nullptr);
        window.CharacterName = u"Robby";
        window.Show();
        EXPECT_TRUE(serveUntil([&] { return !window.Loaded(); }));
        ASSERT_EQ(Boxes::all().size(), 1U);
        EXPECT_TRUE(Boxes::all()[0].starts_with(
            u"Error Downloading Image!|Error downloading character image from server!\r\n"));
    }
}

TEST_F(Download, DirectoryThatIsMissingAndAFileThatCannotBeWrittenAreTold) {
    const auto serve = [](const Visitor& visitor) {
        visitor.request();
        visitor.answer(header + "GIF89");
    };
    std::filesystem::create_directories(directory_ / L"Robby.gif");
    EXPECT_TRUE(fetch(serve));
    ASSERT_EQ(Boxes::all().size(), 1U);
    EXPECT_TRUE(
        Boxes::all()[0].starts_with(u"Error #5|An Error has occured while getting/saving character image!\r\n"));
    Boxes::all().clear();
    std::filesystem::remove_all(directory_);
    EXPECT_TRUE(fetch(serve));
    EXPECT_THAT(Boxes::all(), ElementsAre(u"Char Image Directory Not found!|Your character image directory can not be "
                                          u"found!\r\nPlease reinstall Murmelix to correct this error"));
}

} // namespace
} // namespace murmelix
