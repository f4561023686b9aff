// The windows as users and other programs meet them.
#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <richedit.h>

#include "common/text.h"
#include "tests/windows/messenger_client/client_process.h"

namespace messenger_client {

namespace {

using murmelix::com::Object;
using murmelix::com::Variant;
using murmelix::com::wide;
using testing::ElementsAre;
using testing::HasSubstr;

struct Windows : testing::Test {
    RunningClient client{u"/signin me@x /friendly Mia /left 300 /top 60 /width 560 /height 480"};
    Object messenger = client.automation();
    Object conversation;
    HWND window = nullptr;
    HWND history = nullptr;
    HWND input = nullptr;
    HWND send = nullptr;
    HWND as = nullptr;

    void SetUp() override {
        ASSERT_EQ(client.command("add ann@x Ann"), 1);
        ASSERT_EQ(client.command("add bob@x Bob :)"), 1);
        conversation = messenger.object(u"InstantMessage", {Variant(u"ann@x")});
        ASSERT_EQ(client.command("join bob@x"), 1);
        window = client.conversationWindow();
        ASSERT_TRUE(window);
        history = FindWindowExA(window, nullptr, "RichEdit20W", nullptr);
        input = FindWindowExA(window, history, "RichEdit20W", nullptr);
        send = FindWindowExA(window, nullptr, "Button", "&Send");
        as = FindWindowExA(window, nullptr, "ComboBox", nullptr);
    }

    std::u16string text() { return conversation.get(u"History").toText(); }
    std::u16string shown(HWND edit) {
        std::u16string all(static_cast<std::size_t>(SendMessageW(edit, WM_GETTEXTLENGTH, 0, 0)) + 1, u'\0');
        all.resize(
            static_cast<std::size_t>(SendMessageW(edit, WM_GETTEXT, all.size(), reinterpret_cast<LPARAM>(all.data()))));
        return all;
    }
    void pressSend() {
        SendMessageA(send, WM_KEYDOWN, VK_SPACE, 0);
        SendMessageA(send, WM_KEYUP, VK_SPACE, 0);
    }
    bool saysSoon(std::u16string_view end) {
        return pumpUntil([&] { return text().ends_with(end); });
    }
};

COLORREF pixelOnScreen(POINT at) {
    const HDC screen = GetDC(nullptr);
    const COLORREF color = GetPixel(screen, at.x, at.y);
    ReleaseDC(nullptr, screen);
    return color;
}

TEST_F(Windows, HaveTheirChildrenInOrder) {
    ASSERT_TRUE(history && input && send);
    EXPECT_EQ(FindWindowExA(window, input, "RichEdit20W", nullptr), nullptr) << "two, and no third";
    EXPECT_EQ(GetWindow(window, GW_CHILD), history);
    EXPECT_EQ(GetWindow(history, GW_HWNDNEXT), input);
    EXPECT_EQ(FindWindowExA(window, nullptr, "Button", nullptr), send);
    EXPECT_TRUE(GetWindowLongW(history, GWL_STYLE) & ES_READONLY);
    EXPECT_FALSE(GetWindowLongW(input, GWL_STYLE) & ES_READONLY);
}

TEST_F(Windows, AnotherProgramTypesAndSends) {
    SendMessageA(input, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("quick :) message"));
    pressSend();
    EXPECT_TRUE(saysSoon(u"\r\nMia says:\r\nquick :) message"));
    EXPECT_EQ(shown(input), u"");
    SendMessageW(input, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"gr\u00FC\u00DFe \u4F60"));
    pressSend();
    EXPECT_TRUE(saysSoon(u"\r\nMia says:\r\ngr\u00FC\u00DFe \u4F60"));
}

TEST_F(Windows, FormattedTextIsPlainText) {
    SendMessageA(input, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("{\\rtf1 not \\b bold}"));
    pressSend();
    EXPECT_TRUE(saysSoon(u"\r\nMia says:\r\n{\\rtf1 not \\b bold}"));
}

TEST_F(Windows, AnEmptyMessageIsNotSent) {
    const std::u16string before = text();
    pressSend();
    SendMessageA(input, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("\r\n\r\n"));
    pressSend();
    EXPECT_EQ(text(), before);
}

TEST_F(Windows, OneTypesAsAContact) {
    ASSERT_TRUE(as);
    EXPECT_EQ(SendMessageW(as, CB_GETCOUNT, 0, 0), 3);
    SendMessageW(as, CB_SETCURSEL, 2, 0);
    SendMessageW(input, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"it is me, Bob"));
    pressSend();
    EXPECT_TRUE(saysSoon(u"\r\nBob :) says:\r\nit is me, Bob"));
    client.command("part ann@x");
    EXPECT_EQ(SendMessageW(as, CB_GETCURSEL, 0, 0), 1) << "still Bob";
    client.command("part bob@x");
    EXPECT_EQ(SendMessageW(as, CB_GETCURSEL, 0, 0), 0) << "oneself again";
}

TEST_F(Windows, EnterSendsAndShiftEnterDoesNot) {
    SendMessageW(input, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"by the key"));
    PostMessageW(input, WM_KEYDOWN, VK_RETURN, 0);
    EXPECT_TRUE(saysSoon(u"\r\nMia says:\r\nby the key"));
    EXPECT_EQ(shown(input), u"");
}

TEST_F(Windows, TheHistoryControlShowsTheHistory) {
    client.command("say ann@x one\\ntwo");
    client.command("rename ann@x Anna");
    client.command("say ann@x three");
    EXPECT_TRUE(pumpUntil([&] { return shown(history) == text(); })) << murmelix::toUtf8(shown(history)) << "\n---\n"
                                                                     << murmelix::toUtf8(text());
}

TEST_F(Windows, ALongHistoryIsShownWhole) {
    ASSERT_EQ(client.command("fill 1000000"), 1);
    client.command("say ann@x after");
    const std::size_t wanted = text().size();
    EXPECT_TRUE(pumpUntil([&] {
        return static_cast<std::size_t>(SendMessageW(history, WM_GETTEXTLENGTH, 0, 0)) == wanted;
    })) << SendMessageW(history, WM_GETTEXTLENGTH, 0, 0)
        << " of " << wanted;
    SendMessageA(input, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("still here"));
    pressSend();
    EXPECT_TRUE(saysSoon(u"\r\nMia says:\r\nstill here"));
}

TEST_F(Windows, NamesAndTextsOfAnyKindAreShown) {
    const std::string long_name(10'000, 'n');
    client.command("rename ann@x " + long_name);
    client.command("rename bob@x :) (k) &");
    client.command("say ann@x \\u0000 \\uD800 \\u202E\\u05D0\\u05D1 \\\\vce\\\\");
    client.command("append " + std::string(100'000, 'x'));
    client.command("join long" + std::string(5'000, 'g') + "@x " + std::string(5'000, ' '));
    EXPECT_EQ(client.command("say me fine"), 1);
    EXPECT_TRUE(saysSoon(u"fine"));
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    EXPECT_TRUE(client.process().running());
}

TEST_F(Windows, TheirPartsStayInsideAtEverySize) {
    for (const auto& [width, height] : {std::pair{560, 480}, {900, 700}, {420, 320}, {100, 100}, {1200, 300}}) {
        SetWindowPos(window, nullptr, 20, 20, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
        RECT area{};
        GetClientRect(window, &area);
        std::vector<RECT> places;
        for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
            if (!IsWindowVisible(child)) {
                continue;
            }
            RECT place{};
            GetWindowRect(child, &place);
            MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
            EXPECT_GE(place.left, 0);
            EXPECT_GE(place.top, 0);
            EXPECT_LE(place.right, area.right) << width;
            EXPECT_LE(place.bottom, area.bottom) << height;
            for (const RECT& other : places) {
                RECT common{};
                EXPECT_FALSE(IntersectRect(&common, &place, &other)) << width << " x " << height;
            }
            places.push_back(place);
        }
        EXPECT_GE(places.size(), 4U);
    }
}

TEST_F(Windows, ControlsOfAResizedOneShowThemselvesAlone) {
    const auto resize = [&](int width, int height) {
        SetWindowPos(window, HWND_TOPMOST, 20, 20, width, height, SWP_NOACTIVATE);
    };
    const auto look = [&] {
        std::vector<std::vector<std::uint32_t>> pictures;
        for (const HWND control : {send, as, FindWindowExA(window, nullptr, "ListBox", nullptr),
                                   FindWindowExA(window, nullptr, "Button", "&Invite")}) {
            if (!IsWindowVisible(control)) { // of a window that is too narrow for it
                continue;
            }
            RECT place{};
            GetWindowRect(control, &place);
            pictures.push_back(murmelix::test::desktop(place).pixels);
        }
        return pictures;
    };
    resize(560, 480);
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    auto before = look();
    int same = 0; // looks, one after the other
    ASSERT_TRUE(pumpUntil([&] {
        same = std::exchange(before, look()) == before ? same + 1 : 0;
        return same >= 20;
    }));
    for (const auto& [width, height] : {std::pair{900, 700}, {440, 330}, {1100, 400}, {470, 800}, {560, 480}}) {
        resize(width, height);
    }
    EXPECT_TRUE(pumpUntil([&] { return look() == before; }));
}

TEST_F(Windows, AResizedHistoryStaysWhereItIsRead) {
    for (int i = 0; i < 40; ++i) {
        ASSERT_EQ(
            client.command("say ann@x a longer message that takes more than one line of a narrow window, number " +
                           std::to_string(i)),
            1);
    }
    ASSERT_TRUE(pumpUntil([&] { return shown(history) == text(); }));
    const auto first = [&] { return SendMessageW(history, EM_GETFIRSTVISIBLELINE, 0, 0); };
    const auto first_character = [&] { return SendMessageW(history, EM_LINEINDEX, static_cast<WPARAM>(first()), 0); };
    const auto resize = [&](int width) {
        SetWindowPos(window, nullptr, 20, 20, width, 480, SWP_NOZORDER | SWP_NOACTIVATE);
    };
    for (const int width : {440, 900}) {
        resize(width);
        const LRESULT end = first();
        SendMessageW(history, WM_VSCROLL, SB_BOTTOM, 0);
        EXPECT_EQ(first(), end) << "the end stays in sight";
        EXPECT_GT(end, 0);
    }
    SendMessageW(history, WM_VSCROLL, SB_TOP, 0);
    SendMessageW(history, WM_VSCROLL, SB_PAGEDOWN, 0);
    const LRESULT read = first_character();
    ASSERT_GT(read, 0);
    resize(440);
    EXPECT_LE(first_character(), read);
    EXPECT_GT(SendMessageW(history, EM_LINEINDEX, static_cast<WPARAM>(first() + 1), 0), read);
    resize(900);
    EXPECT_LE(first_character(), read);
    EXPECT_GT(SendMessageW(history, EM_LINEINDEX, static_cast<WPARAM>(first() + 2), 0), read);
}

TEST_F(Windows, WhatIsTypedAfterChoosingAWriterGoesToTheInput) {
    const auto focus = [&] {
        GUITHREADINFO thread{};
        thread.cbSize = sizeof thread;
        GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &thread);
        return thread.hwndFocus;
    };
    SetForegroundWindow(window);
    ASSERT_TRUE(pumpUntil([&] { return focus() == input; })) << "at first";
    PostMessageW(input, WM_KEYDOWN, VK_TAB, 0);
    PostMessageW(send, WM_KEYDOWN, VK_TAB, 0);
    ASSERT_TRUE(pumpUntil([&] { return focus() == as; }));
    SendMessageW(as, CB_SHOWDROPDOWN, TRUE, 0);
    PostMessageW(as, WM_KEYDOWN, VK_DOWN, 0);
    PostMessageW(as, WM_KEYDOWN, VK_RETURN, 0);
    EXPECT_TRUE(pumpUntil([&] { return focus() == input; }));
    EXPECT_EQ(SendMessageW(as, CB_GETCURSEL, 0, 0), 1);
}

TEST_F(Windows, ClosingOneEndsTheConversation) {
    Heard heard(messenger);
    PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1042 window"); }));
    EXPECT_TRUE(conversation.get(u"IsClosed").toBool());
    EXPECT_TRUE(pumpUntil([&] { return !IsWindow(window); }));
}

TEST_F(Windows, ExitEndsTheClient) {
    Heard heard(messenger);
    chooseByKeys(client.mainWindow(), u"fx");
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1032"); }));
    EXPECT_EQ(client.process().exitStatus(), 0U);
}

TEST_F(Windows, AreShown) {
    client.command("say ann@x hello :) how was the lake?");
    client.command("say bob@x (lol) wet.\\nbut sunny!");
    client.command("say me send pictures :D");
    client.command("add cy@x Cyril");
    client.command("status cy@x 1");
    client.command("status bob@x 34");
    EXPECT_TRUE(pumpUntil([&] { return shown(history) == text(); }));
    screenshotWhenStill(window, "messenger_conversation");
    screenshotWhenStill(client.mainWindow(), "messenger_main");
    client.command("signout");
    // Where the contacts were stands the place to sign in: what is below it has its colour.
    RECT area{};
    GetClientRect(client.mainWindow(), &area);
    POINT at_bottom{area.right / 2, area.bottom - 4};
    ClientToScreen(client.mainWindow(), &at_bottom);
    EXPECT_TRUE(pumpUntil([&] { return pixelOnScreen(at_bottom) == RGB(243, 247, 251); }));
    screenshotWhenStill(client.mainWindow(), "messenger_signed_out");
}

TEST(SigningIn, ByTheMainWindow) {
    const RunningClient client(u"/signedout");
    Object messenger = client.automation();
    EXPECT_EQ(messenger.get(u"MyStatus").toInt32(), 1);
    const HWND name = controlOf(client.mainWindow(), L"ComboBox", 1);
    const HWND friendly = controlOf(client.mainWindow(), L"Edit", 1);
    const HWND button = controlOf(client.mainWindow(), L"Button", 7);
    ASSERT_TRUE(name && friendly && button);
    replaceText(name, u" kim@x ");
    replaceText(friendly, u"Kim");
    SendMessageW(button, BM_CLICK, 0, 0);
    EXPECT_TRUE(pumpUntil([&] { return messenger.get(u"MyStatus").toInt32() == 2; }));
    EXPECT_EQ(messenger.get(u"MySigninName").toText(), u"kim@x");
    EXPECT_EQ(messenger.get(u"MyFriendlyName").toText(), u"Kim");
}

std::vector<std::string> kindsIn(const std::u16string& log) {
    std::vector<std::string> kinds;
    std::istringstream lines(contents(log));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line);
        std::string field;
        for (int i = 0; i < 3; ++i) {
            std::getline(fields, field, '\t');
        }
        if (field != "present" && field != "offered") { // what readers are told beside the events
            kinds.push_back(field);
        }
    }
    return kinds;
}

TEST(Replaying, WaitsForAReaderAndTellsItsEnd) {
    const std::u16string log = temporaryFile(u"log.txt");
    const std::u16string demo =
        windowsPath(std::string(MESSENGER_SOURCE_DIR) + "/companions/messenger/demo/conversation.txt");
    RunningClient client(u"/conversation \"" + demo + u"\" /messages 6 /speed 1000 /wait /exit-when-done /log \"" +
                         log + u"\"");
    EXPECT_THAT(kindsIn(log), ElementsAre("signin", "window"));
    Object messenger = client.automation();
    Heard heard(messenger);
    Object window = messenger.object(u"InstantMessage", {Variant(u"otto@messenger.example")});
    const std::u16string start = window.get(u"History").toText();
    EXPECT_EQ(client.command("replay start"), 1) << "that was not the conversation it waits for";
    EXPECT_TRUE(client.process().exitStatus());
    EXPECT_THAT(kindsIn(log), ElementsAre("signin", "window", "window", "message", "message", "join", "rename",
                                          "message", "message", "message", "message", "done", "shutdown"));
    EXPECT_THAT(contents(log), HasSubstr("\tmessage\thazel@messenger.example\thi all :) is anybody around?\n"));
}

TEST(Replaying, BeginsWhenTheHistoryIsRead) {
    const std::u16string chat = temporaryFile(u"chat.txt");
    std::ofstream(std::filesystem::path(wide(chat)), std::ios::binary)
        << "[10:00] <ann> \xFF one\r\n[10:00] <ann> two\r\n[10:59] <ann> three";
    const std::u16string log = temporaryFile(u"log2.txt");
    RunningClient client(u"/conversation \"" + chat + u"\" /speed 100 /wait /log \"" + log + u"\"");
    Object messenger = client.automation();
    // The only contact's own conversation is the one that is replayed.
    Object window = messenger.object(u"InstantMessage", {Variant(u"ann@messenger.example")});
    const std::u16string before = window.get(u"History").toText();
    EXPECT_TRUE(pumpUntil([&] { return contents(log).find("\tdone\t") != std::string::npos; }));
    EXPECT_EQ(window.get(u"History").toText(),
              before + u"\r\nann says:\r\n\xFFFD one\r\nann says:\r\ntwo\r\nann says:\r\nthree");
}

// The message box that says so, once it is there with its text; null where it does not come.
HWND boxThatSays(const wchar_t* text) {
    HWND box = nullptr;
    const bool said = pumpUntil([&] {
        box = FindWindowW(L"#32770", L"Messenger");
        return box && FindWindowExW(box, nullptr, L"Static", text);
    });
    return said ? box : nullptr;
}

TEST(Replaying, AMissingLogIsSaid) {
    Process process(clientProgram() + u" /conversation Z:\\no\\such\\file.txt");
    EXPECT_TRUE(boxThatSays(L"The chat log cannot be read: Z:\\no\\such\\file.txt"));
    process.kill();
}

TEST(CommandLine, AWrongSwitchIsSaid) {
    Process process(clientProgram() + u" /dance");
    const HWND box = boxThatSays(L"Unknown switch: /dance");
    ASSERT_TRUE(box);
    PostMessageW(box, WM_COMMAND, IDOK, 0);
    EXPECT_EQ(process.exitStatus(), 20U);
}

TEST(CommandLine, SendHandsACommandToTheRunningClient) {
    EXPECT_EQ(Process(clientProgram() + u" /send signout").exitStatus(), 21U) << "no client runs";
    const RunningClient client(u"/signin me@x");
    EXPECT_EQ(Process(clientProgram() + u" /send \"status me 10\"").exitStatus(), 0U);
    EXPECT_EQ(client.automation().get(u"MyStatus").toInt32(), 10);
    EXPECT_EQ(Process(clientProgram() + u" /send dance").exitStatus(), 2U);
}

} // namespace

} // namespace messenger_client
