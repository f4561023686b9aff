// Clients that come and go, and the events they hear.
#include <algorithm>
#include <array>
#include <chrono>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "tests/windows/agent/server_process.h"

namespace agent {
namespace {

using murmelix::com::Object;
using murmelix::com::Subscription;
using murmelix::com::Variant;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

HWND characterWindow() {
    return FindWindowW(L"AgentServerCharacter", nullptr);
}

// Events as lines: "15 a 4"; of a request "9 #12".
struct Heard {
    explicit Heard(Object& control)
        : subscription(control.dispatch(), iid_agent_events, [this](DISPID event, std::vector<Variant>& arguments) {
              std::string line = std::to_string(event);
              for (const Variant& argument : arguments) {
                  if (argument.type() == VT_DISPATCH) {
                      Object object(argument.toObject());
                      line += event == 17 ? " " + murmelix::toUtf8(object.get(u"Name").toText()) + " of " +
                                                murmelix::toUtf8(object.get(u"CharacterID").toText())
                                          : " #" + murmelix::toUtf8(object.get(u"ID").toText());
                  } else {
                      line += " " + murmelix::toUtf8(argument.toText());
                  }
              }
              lines.push_back(line);
          }) {}
    bool soon(const std::string& line) {
        return pumpUntil([&] { return std::find(lines.begin(), lines.end(), line) != lines.end(); });
    }
    std::ptrdiff_t place(const std::string& line) const {
        return std::find(lines.begin(), lines.end(), line) - lines.begin();
    }
    std::vector<std::string> lines;
    Subscription subscription;
};

// Another program of this kind, which says when it is where it is wanted.
class OtherClient {
  public:
    explicit OtherClient(const std::u16string& how) : name_(u"AgentTestClient" + murmelix::toText(++count)) {
        event_ = CreateEventW(nullptr, TRUE, FALSE, murmelix::com::wide(name_));
        std::array<wchar_t, 1024> path{};
        GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        std::u16string line = u"\"";
        line.append(murmelix::com::narrow(path.data(), std::wcslen(path.data())));
        line.append(u"\" ").append(how).append(u" ").append(name_);
        process_ = std::make_unique<Process>(line);
    }
    ~OtherClient() { CloseHandle(event_); }
    OtherClient(const OtherClient&) = delete;
    OtherClient& operator=(const OtherClient&) = delete;
    bool ready() const {
        return pumpUntil([this] { return WaitForSingleObject(event_, 0) == WAIT_OBJECT_0; });
    }
    void kill() const { process_->kill(); }

  private:
    static inline int count = 0;
    std::u16string name_;
    HANDLE event_;
    std::unique_ptr<Process> process_;
};

struct Clients : testing::Test {
    RunningServer server;
    Object control = server.control();
    Object characters = control.object(u"Characters");

    Object load(const char16_t* id) {
        characters.call(u"Load", {Variant(id), Variant(smallCharacterFile())});
        return characters.object(u"Character", {Variant(id)});
    }
};

TEST_F(Clients, HearWhatTheirCharactersDo) {
    Heard heard(control);
    Object character = load(u"a");
    character.call(u"MoveTo", {Variant(std::int16_t{50}), Variant(std::int16_t{60})});
    Object show(character.call(u"Show", {Variant(true)}).toObject());
    Object play(character.call(u"Play", {Variant(u"Wave")}).toObject());
    Object speak(character.call(u"Speak", {Variant(u"one \\Mrk=42\\ two")}).toObject());
    Object hide(character.call(u"Hide", {Variant(true)}).toObject());
    const auto request = [](const char* event, Object& of) {
        return std::string(event) + " #" + murmelix::toUtf8(of.get(u"ID").toText());
    };
    ASSERT_TRUE(heard.soon(request("11", hide)));
    EXPECT_THAT(heard.lines, Contains("22 a 50 60 2"));
    EXPECT_THAT(heard.lines, Contains("15 a 4"));
    EXPECT_THAT(heard.lines, Contains("7 a 3"));
    EXPECT_THAT(heard.lines, Contains("16 42"));
    EXPECT_THAT(heard.lines, Contains("24 a"));
    EXPECT_THAT(heard.lines, Contains("25 a"));
    EXPECT_LT(heard.place(request("9", show)), heard.place(request("11", show)));
    EXPECT_LT(heard.place(request("11", show)), heard.place(request("9", play)));
    EXPECT_LT(heard.place(request("11", play)), heard.place(request("9", speak)));
    EXPECT_LT(heard.place(request("11", speak)), heard.place(request("9", hide)));
}

TEST_F(Clients, HearWhenIdlingBeginsAndEnds) {
    Heard heard(control);
    Object character = load(u"a");
    character.call(u"Show", {Variant(true)});
    ASSERT_TRUE(heard.soon("19 a"));
    character.call(u"Play", {Variant(u"Wave")});
    ASSERT_TRUE(heard.soon("20 a"));
    EXPECT_EQ(std::count(heard.lines.begin(), heard.lines.end(), "19 a"), 1);
}

TEST_F(Clients, HearThatTheServerShutsDown) {
    Heard heard(control);
    RunningServer::close();
    EXPECT_TRUE(heard.soon("12"));
}

TEST_F(Clients, HearThatTheServerRestarts) {
    Heard heard(control);
    const auto window = [] { return FindWindowW(L"AgentServerMessages", L"AgentServer"); };
    const HWND before = window();
    const Process asking(serverProgram() + u" /restart");
    EXPECT_EQ(asking.exitStatus(), 0U);
    EXPECT_TRUE(heard.soon("21"));
    EXPECT_THAT(heard.lines, Not(Contains("12"))) << "it does not shut down";
    EXPECT_EQ(server.process().exitStatus(), 0U);
    EXPECT_TRUE(pumpUntil([&] { return window() && window() != before; })) << "another one is there";
    Object again = server.control();
    again.object(u"Characters").call(u"Load", {Variant(u"a"), Variant(smallCharacterFile())});
    again = {};
    RunningServer::close();
    EXPECT_TRUE(pumpUntil([&] { return !window(); }));
}

TEST(Server, IsNotRestartedWhereThereIsNone) {
    EXPECT_EQ(Process(serverProgram() + u" /restart").exitStatus(), 1U);
}

// The pointer, which comes to a character from elsewhere. What the display tells of it reaches the programs later than
// what a test posts, and moves it back: so each step waits until it has been heard of.
void pointAway() {
    SetCursorPos(10, 10);
}

// A character's window makes its tip when it first hears of the pointer.
bool pointAt(HWND character, int x, int y) {
    SetCursorPos(x, y);
    return pumpUntil([=] {
        for (HWND tip = nullptr; (tip = FindWindowExW(nullptr, tip, L"tooltips_class32", nullptr)) != nullptr;) {
            if (GetWindow(tip, GW_OWNER) == character) {
                return true;
            }
        }
        return false;
    });
}

bool pressAt(HWND character, int x, int y) {
    PostMessageW(character, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    return pumpUntil([=] {
        GUITHREADINFO thread{};
        thread.cbSize = sizeof thread;
        return GetGUIThreadInfo(GetWindowThreadProcessId(character, nullptr), &thread) &&
               thread.hwndCapture == character;
    });
}

// Until the character's window stands there.
bool dragTo(HWND character, int x, int y, POINT place) {
    return pumpUntil([=] {
        SetCursorPos(x, y);
        PostMessageW(character, WM_MOUSEMOVE, MK_LBUTTON, 0);
        RECT frame{};
        GetWindowRect(character, &frame);
        return frame.left == place.x && frame.top == place.y;
    });
}

TEST_F(Clients, HearOfThePointer) {
    pointAway();
    Heard heard(control);
    Object character = load(u"a");
    character.put(u"AutoPopupMenu", Variant(false));
    character.call(u"MoveTo", {Variant(std::int16_t{200}), Variant(std::int16_t{200})});
    character.call(u"Show", {Variant(true)});
    ASSERT_TRUE(pumpUntil([] { return characterWindow() && IsWindowVisible(characterWindow()); }));
    const HWND window = characterWindow();
    ASSERT_TRUE(pointAt(window, 230, 220));
    PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(30, 20));
    PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(30, 20));
    EXPECT_TRUE(heard.soon("2 a 1 0 230 220"));
    EXPECT_THAT(heard.lines, Contains("1 a"));
    PostMessageW(window, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(30, 20));
    EXPECT_TRUE(heard.soon("4 a 1 0 230 220"));
    PostMessageW(window, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(30, 20));
    PostMessageW(window, WM_RBUTTONUP, 0, MAKELPARAM(30, 20));
    EXPECT_TRUE(heard.soon("2 a 2 0 230 220"));
}

// The text of the tip that is shown; empty where there is none.
std::wstring tip() {
    std::array<wchar_t, 100> text{};
    for (HWND found = nullptr; (found = FindWindowExW(nullptr, found, L"tooltips_class32", nullptr)) != nullptr;) {
        if (IsWindowVisible(found)) {
            SendMessageW(found, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
        }
    }
    return std::wstring(text.data());
}

// Comes to rest on a character that stands at 200, 200.
struct RestingHand {
    int x = 215;
    void moves() {
        if (x < 240) {
            SetCursorPos(++x, 220);
            PostMessageW(characterWindow(), WM_MOUSEMOVE, 0, MAKELPARAM(x - 200, 20));
        }
    }
};

TEST_F(Clients, TellTheUserForWhomACharacterSpeaks) {
    Object character = load(u"ann@messenger.example");
    character.call(u"MoveTo", {Variant(std::int16_t{200}), Variant(std::int16_t{200})});
    character.call(u"Show", {Variant(true)});
    ASSERT_TRUE(pumpUntil([] { return characterWindow() && IsWindowVisible(characterWindow()); }));
    EXPECT_TRUE(pumpUntil([hand = RestingHand()]() mutable {
        hand.moves();
        return tip() == L"Dot speaks for ann@messenger.example";
    }));
    screenshot("agent-tip");
}

TEST_F(Clients, HearOfADragAndTheCharacterFollows) {
    pointAway();
    Heard heard(control);
    Object character = load(u"a");
    character.call(u"MoveTo", {Variant(std::int16_t{200}), Variant(std::int16_t{200})});
    character.call(u"Show", {Variant(true)});
    ASSERT_TRUE(pumpUntil([] { return characterWindow() && IsWindowVisible(characterWindow()); }));
    const HWND window = characterWindow();
    ASSERT_TRUE(pointAt(window, 230, 220));
    ASSERT_TRUE(pressAt(window, 30, 20));
    ASSERT_TRUE(dragTo(window, 280, 260, {250, 240}));
    PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(30, 20));
    EXPECT_TRUE(heard.soon("6 a 1 0 280 260"));
    EXPECT_THAT(heard.lines, Contains("5 a 1 0 230 220"));
    EXPECT_TRUE(heard.soon("22 a 250 240 1"));
    EXPECT_EQ(character.get(u"Left").toInt16(), 250);
    EXPECT_EQ(character.get(u"MoveCause").toInt16(), 1);
}

// Posts keys to the menu that is open, as its own process sees them.
void keys(std::initializer_list<WPARAM> pressed) {
    for (const WPARAM key : pressed) {
        PostMessageW(FindWindowW(L"AgentServerMessages", nullptr), WM_KEYDOWN, key, 0);
    }
}

HWND openMenu() {
    const HWND menu = FindWindowW(L"#32768", nullptr);
    return menu && IsWindowVisible(menu) ? menu : nullptr;
}

TEST_F(Clients, ChooseFromTheCharactersMenu) {
    Heard heard(control);
    Object character = load(u"ann@x");
    Object commands = character.object(u"Commands");
    commands.call(u"Add", {Variant(u"ann@xQ%"), Variant(u"&Quick Message")});
    commands.call(u"Add", {Variant(u"ann@x1%"), Variant(u" "), Variant(u""), Variant(false)});
    commands.call(u"Add", {Variant(u"ann@x2%"), Variant(u"  "), Variant(u""), Variant(false)});
    commands.call(u"Add", {Variant(u"hidden"), Variant(u"Hidden"), Variant(u""), Variant(true), Variant(false)});
    commands.call(u"Add", {Variant(u"mute"), Variant(u"")});
    commands.call(u"Add", {Variant(u"ann@xR%"), Variant(u"&Remove Me")});
    commands.call(u"Add", {Variant(u"ann@x3%"), Variant(u" "), Variant(u""), Variant(false)});
    character.call(u"MoveTo", {Variant(std::int16_t{200}), Variant(std::int16_t{200})});
    character.call(u"Show", {Variant(true)});
    ASSERT_TRUE(pumpUntil([] { return characterWindow() && IsWindowVisible(characterWindow()); }));
    const auto pop_up = [&] {
        character.call(u"ShowPopupMenu", {Variant(std::int16_t{230}), Variant(std::int16_t{220})});
        ASSERT_TRUE(pumpUntil(openMenu));
    };
    pop_up();
    screenshot("agent-menu");
    keys({VK_UP, VK_RETURN});
    EXPECT_TRUE(heard.soon("17 ann@xR% of ann@x")) << "the last entry";
    pop_up();
    keys({VK_UP, VK_UP, VK_RETURN});
    EXPECT_TRUE(heard.soon("17 ann@xQ% of ann@x")) << "the one above it: what parts them is no entry";
    heard.lines.clear();
    pop_up();
    RECT place{};
    GetWindowRect(openMenu(), &place);
    SetCursorPos((place.left + place.right) / 2, place.bottom - 10);
    mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
    mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
    EXPECT_TRUE(heard.soon("17 ann@xR% of ann@x")) << "by the mouse";
}

TEST_F(Clients, ADoubleClickIsTheDefaultCommand) {
    pointAway();
    Heard heard(control);
    Object character = load(u"a");
    Object commands = character.object(u"Commands");
    Object greet(commands.call(u"Add", {Variant(u"greet"), Variant(u"&Greet")}).toObject());
    character.call(u"MoveTo", {Variant(std::int16_t{200}), Variant(std::int16_t{200})});
    character.call(u"Show", {Variant(true)});
    ASSERT_TRUE(pumpUntil([] { return characterWindow() && IsWindowVisible(characterWindow()); }));
    ASSERT_TRUE(pointAt(characterWindow(), 230, 220));
    const auto double_click = [&] {
        heard.lines.clear();
        PostMessageW(characterWindow(), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(30, 20));
        EXPECT_TRUE(heard.soon("4 a 1 0 230 220"));
        // What comes after it has come when the next request is over.
        Object after(character.call(u"Get", {Variant(u"Animation"), Variant(u"Wave"), Variant(false)}).toObject());
        EXPECT_TRUE(heard.soon("11 #" + murmelix::toUtf8(after.get(u"ID").toText())));
        return heard.lines;
    };
    EXPECT_THAT(double_click(), Not(Contains("17 greet of a")));
    commands.put(u"DefaultCommand", Variant(u"greet"));
    EXPECT_THAT(double_click(), Contains("17 greet of a"));
    greet.put(u"Enabled", Variant(false));
    EXPECT_THAT(double_click(), Not(Contains("17 greet of a")));
}

TEST_F(Clients, ChooseAnotherClientByTheCaptionOfItsCommands) {
    Object second = server.control();
    Heard heard(control), second_heard(second);
    Object others = second.object(u"Characters");
    others.call(u"Load", {Variant(u"theirs"), Variant(smallCharacterFile())});
    Object theirs = others.object(u"Character", {Variant(u"theirs")});
    theirs.object(u"Commands").put(u"Caption", Variant(u"The other program"));
    Object mine = load(u"mine");
    mine.call(u"Show", {Variant(true)});
    ASSERT_TRUE(pumpUntil([&] { return mine.get(u"Visible").toBool(); }));
    mine.call(u"ShowPopupMenu", {Variant(std::int16_t{230}), Variant(std::int16_t{220})});
    ASSERT_TRUE(pumpUntil(openMenu));
    screenshot("agent-menu-others");
    keys({VK_UP, VK_RETURN});
    EXPECT_TRUE(second_heard.soon("1 theirs")) << "the last entry";
    EXPECT_EQ(theirs.get(u"Active").toInt16(), 2);
}

TEST_F(Clients, NoTipCoversAnOpenMenu) {
    Object character = load(u"ann@messenger.example");
    character.call(u"MoveTo", {Variant(std::int16_t{200}), Variant(std::int16_t{200})});
    character.call(u"Show", {Variant(true)});
    ASSERT_TRUE(pumpUntil([] { return characterWindow() && IsWindowVisible(characterWindow()); }));
    ASSERT_TRUE(pumpUntil([hand = RestingHand()]() mutable {
        hand.moves();
        return !tip().empty();
    }));
    // Elsewhere, so that the pointer still rests on the character.
    character.call(u"ShowPopupMenu", {Variant(std::int16_t{500}), Variant(std::int16_t{400})});
    ASSERT_TRUE(pumpUntil(openMenu));
    EXPECT_EQ(tip(), L"") << "it goes before the menu opens";
    // Nor comes one while it is open, where the pointer comes again and rests longer than a tip takes to come.
    SetCursorPos(10, 10);
    SendMessageW(characterWindow(), WM_MOUSEMOVE, 0, MAKELPARAM(20, 20));
    RestingHand hand;
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(3 * GetDoubleClickTime());
    EXPECT_TRUE(pumpUntil([&] {
        hand.moves();
        EXPECT_EQ(tip(), L"");
        return HasFailure() || std::chrono::steady_clock::now() > until;
    }));
    EXPECT_TRUE(openMenu());
    keys({VK_ESCAPE});
    EXPECT_TRUE(pumpUntil([&] { return !openMenu(); }));
}

TEST_F(Clients, AMenuThatIsLeftGivesTheKeyboardBack) {
    Object character = load(u"a");
    character.call(u"Show", {Variant(true)});
    const HWND own = CreateWindowExW(0, L"EDIT", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 300, 300, 200, 100, nullptr,
                                     nullptr, nullptr, nullptr);
    SetForegroundWindow(own);
    ASSERT_TRUE(pumpUntil([&] { return GetForegroundWindow() == own && GetFocus() == own; }));
    character.call(u"ShowPopupMenu", {Variant(std::int16_t{230}), Variant(std::int16_t{220})});
    ASSERT_TRUE(pumpUntil(openMenu));
    EXPECT_NE(GetForegroundWindow(), own);
    keys({VK_ESCAPE});
    EXPECT_TRUE(pumpUntil([&] { return !openMenu() && GetForegroundWindow() == own && GetFocus() == own; }));
    DestroyWindow(own);
}

TEST_F(Clients, EachHaveTheirOwnCharacters) {
    Object second = server.control();
    load(u"a");
    Object others = second.object(u"Characters");
    EXPECT_THROW(others.object(u"Character", {Variant(u"a")}), murmelix::com::Error);
    others.call(u"Load", {Variant(u"a"), Variant(smallCharacterFile())});
}

TEST_F(Clients, KnowOfOthersWithTheSameCharacter) {
    Object second = server.control();
    Heard first_heard(control), second_heard(second);
    Object mine = load(u"mine");
    EXPECT_FALSE(mine.get(u"HasOtherClients").toBool());
    EXPECT_EQ(mine.get(u"Active").toInt16(), 1);
    Object others = second.object(u"Characters");
    others.call(u"Load", {Variant(u"theirs"), Variant(smallCharacterFile())});
    Object theirs = others.object(u"Character", {Variant(u"theirs")});
    EXPECT_TRUE(mine.get(u"HasOtherClients").toBool());
    EXPECT_TRUE(theirs.get(u"HasOtherClients").toBool());
    EXPECT_EQ(theirs.get(u"Active").toInt16(), 0);
    EXPECT_FALSE(theirs.call(u"Activate", {Variant(std::int16_t{1})}).toBool()) << "it is hidden";
    theirs.call(u"Show", {Variant(true)});
    EXPECT_TRUE(pumpUntil([&] { return theirs.get(u"Visible").toBool(); }));
    EXPECT_TRUE(theirs.call(u"Activate", {Variant(std::int16_t{1})}).toBool());
    EXPECT_TRUE(first_heard.soon("32 mine False"));
    EXPECT_TRUE(second_heard.soon("32 theirs True"));
    EXPECT_EQ(mine.get(u"Active").toInt16(), 0);
    EXPECT_EQ(theirs.get(u"Active").toInt16(), 1);
    EXPECT_TRUE(theirs.call(u"Activate", {Variant(std::int16_t{2})}).toBool());
    EXPECT_EQ(theirs.get(u"Active").toInt16(), 2);
    theirs = {};
    others.call(u"Unload", {Variant(u"theirs")});
    EXPECT_TRUE(pumpUntil([&] { return mine.get(u"Active").toInt16() == 1; })) << "the one that is left";
    EXPECT_FALSE(mine.get(u"HasOtherClients").toBool());
}

TEST_F(Clients, HearOfLoadAndGet) {
    Heard heard(control);
    Object loaded(characters.call(u"Load", {Variant(u"a"), Variant(smallCharacterFile())}).toObject());
    const std::string id = " #" + murmelix::toUtf8(loaded.get(u"ID").toText());
    EXPECT_TRUE(heard.soon("11" + id));
    EXPECT_LT(heard.place("9" + id), heard.place("11" + id));
    Object character = characters.object(u"Character", {Variant(u"a")});
    for (const bool queued : {false, true}) {
        Object got(character.call(u"Get", {Variant(u"Animation"), Variant(u"Wave"), Variant(queued)}).toObject());
        const std::string of_get = " #" + murmelix::toUtf8(got.get(u"ID").toText());
        EXPECT_TRUE(heard.soon("11" + of_get));
        EXPECT_LT(heard.place("9" + of_get), heard.place("11" + of_get));
    }
    for (const std::string& line : heard.lines) {
        EXPECT_FALSE(line.starts_with("27") || line.starts_with("28")) << "nobody listens";
    }
}

TEST_F(Clients, HearThatTheSettingsChanged) {
    Heard heard(control);
    control.call(u"ShowDefaultCharacterProperties");
    const HWND window = FindWindowW(L"AgentServerProperties", nullptr);
    ASSERT_TRUE(window);
    Object sheet = control.object(u"PropertySheet");
    sheet.put(u"Page", Variant(u"Output"));
    HWND box = nullptr;
    for (HWND child = nullptr; !box && (child = FindWindowExW(window, child, nullptr, nullptr)) != nullptr;) {
        for (HWND page = nullptr; !box && (page = FindWindowExW(child, page, nullptr, nullptr)) != nullptr;) {
            box = FindWindowExW(page, nullptr, L"Button", L"&Play spoken audio");
        }
        box = box ? box : FindWindowExW(child, nullptr, L"Button", L"&Play spoken audio");
    }
    ASSERT_TRUE(box);
    SendMessageW(box, BM_CLICK, 0, 0);
    EXPECT_TRUE(heard.soon("31"));
    SendMessageW(box, BM_CLICK, 0, 0);
}

TEST_F(Clients, OneKilledInTheMiddleOfForEachLeavesNothing) {
    const OtherClient client(u"--enumerating");
    ASSERT_TRUE(client.ready());
    control = {};
    characters = {};
    client.kill();
    EXPECT_EQ(server.process().exitStatus(), 0U) << "the server ends as after its last client";
}

TEST_F(Clients, AVanishedOneLosesItsCharacters) {
    const OtherClient client(u"--client");
    ASSERT_TRUE(client.ready());
    ASSERT_TRUE(pumpUntil([] { return characterWindow() && IsWindowVisible(characterWindow()); }));
    client.kill();
    EXPECT_TRUE(pumpUntil([] { return characterWindow() == nullptr; }));
    load(u"a"); // the server lives on for the others
}

TEST_F(Clients, OneThatHangsInAnEventStopsNobodyElse) {
    const OtherClient first(u"--hanging");
    const OtherClient second(u"--hanging");
    ASSERT_TRUE(first.ready() && second.ready());
    Heard heard(control);
    Object character = load(u"a");
    character.call(u"Show", {Variant(true)});
    Object play(character.call(u"Play", {Variant(u"Wave")}).toObject());
    EXPECT_TRUE(heard.soon("11 #" + murmelix::toUtf8(play.get(u"ID").toText())));
    EXPECT_EQ(play.get(u"Status").toInt32(), 0);
}

TEST_F(Clients, OneThatHangsInAnEventDoesNotKeepTheServerFromEnding) {
    const OtherClient client(u"--hanging");
    ASSERT_TRUE(client.ready());
    Heard heard(control);
    RunningServer::close();
    EXPECT_TRUE(heard.soon("12"));
    EXPECT_EQ(server.process().exitStatus(), 0U);
}

TEST_F(Clients, OneThatHangsAndIsKilledIsForgotten) {
    const OtherClient client(u"--hanging");
    ASSERT_TRUE(client.ready());
    control = {};
    characters = {};
    client.kill();
    EXPECT_EQ(server.process().exitStatus(), 0U) << "it ends with its last client";
}

TEST_F(Clients, CanMakeAControlInsideAHandler) {
    Object second;
    bool failed = false;
    const Subscription subscription(control.dispatch(), iid_agent_events, [&](DISPID event, std::vector<Variant>&) {
        if (event == 9 && !second) {
            try {
                second = server.control();
                second.object(u"Characters").call(u"Load", {Variant(u"b"), Variant(smallCharacterFile())});
            } catch (const murmelix::com::Error&) {
                failed = true;
            }
        }
    });
    Object character = load(u"a");
    Object show(character.call(u"Show", {Variant(true)}).toObject());
    ASSERT_TRUE(pumpUntil([&] { return second && show.get(u"Status").toInt32() == 0; }));
    EXPECT_FALSE(failed);
    EXPECT_EQ(second.object(u"Characters").object(u"Character", {Variant(u"b")}).get(u"Name").toText(), u"Dot");
}

TEST_F(Clients, WhoLetsGoLosesItsCharacters) {
    Object character = load(u"a");
    character.call(u"Show", {Variant(true)});
    ASSERT_TRUE(pumpUntil([] { return characterWindow() && IsWindowVisible(characterWindow()); }));
    character = {};
    characters = {};
    control = {};
    EXPECT_TRUE(pumpUntil([] { return characterWindow() == nullptr; }));
}

TEST(Server, StartedByComEndsWithItsLastClient) {
    {
        Object control = Object::create(u"Agent.Control");
        EXPECT_TRUE(control.object(u"AudioOutput"));
        EXPECT_TRUE(FindWindowW(L"AgentServerMessages", nullptr));
    }
    EXPECT_TRUE(pumpUntil([] { return FindWindowW(L"AgentServerMessages", nullptr) == nullptr; }));
}

TEST(Server, RefusesACommandLineItDoesNotUnderstand) {
    EXPECT_EQ(Process(serverProgram() + u" /dance").exitStatus(), 1U);
    EXPECT_EQ(Process(serverProgram() + u" /speed 0").exitStatus(), 1U);
    EXPECT_EQ(Process(serverProgram() + u" /record").exitStatus(), 1U);
}

TEST(Server, NeverReplacesTheRegistrationOfAnother) {
    ASSERT_EQ(Process(serverProgram() + u" /unregserver").exitStatus(), 0U);
    const std::wstring other = L"{00000000-1111-2222-3333-444444444444}";
    const wchar_t* key = L"Software\\Classes\\Agent.Control.2\\CLSID";
    RegSetKeyValueW(HKEY_CURRENT_USER, key, nullptr, REG_SZ, other.c_str(),
                    static_cast<DWORD>((other.size() + 1) * sizeof(wchar_t)));
    EXPECT_EQ(Process(serverProgram() + u" /regserver").exitStatus(), 2U);
    EXPECT_EQ(Process(serverProgram() + u" /unregserver").exitStatus(), 0U);
    std::array<wchar_t, 64> left{};
    DWORD size = sizeof left;
    EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, key, nullptr, RRF_RT_REG_SZ, nullptr, left.data(), &size), ERROR_SUCCESS);
    EXPECT_EQ(std::wstring(left.data()), other);
    RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Classes\\Agent.Control.2");
    EXPECT_EQ(Process(serverProgram() + u" /regserver").exitStatus(), 0U);
}

// The last key that a tree's removal comes to, closed to everybody.
class ClosedKey {
  public:
    explicit ClosedKey(const wchar_t* path) {
        RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, READ_CONTROL | WRITE_DAC, &key_);
        DWORD size = 0;
        RegGetKeySecurity(key_, DACL_SECURITY_INFORMATION, nullptr, &size);
        before_.resize(size);
        RegGetKeySecurity(key_, DACL_SECURITY_INFORMATION, before_.data(), &size);
        ACL nobody{};
        InitializeAcl(&nobody, sizeof nobody, ACL_REVISION);
        SECURITY_DESCRIPTOR closed{};
        InitializeSecurityDescriptor(&closed, SECURITY_DESCRIPTOR_REVISION);
        SetSecurityDescriptorDacl(&closed, TRUE, &nobody, FALSE);
        is_closed = RegSetKeySecurity(key_, DACL_SECURITY_INFORMATION, &closed) == ERROR_SUCCESS;
    }
    ~ClosedKey() {
        RegSetKeySecurity(key_, DACL_SECURITY_INFORMATION, before_.data());
        RegCloseKey(key_);
    }
    ClosedKey(const ClosedKey&) = delete;
    ClosedKey& operator=(const ClosedKey&) = delete;
    bool is_closed;

  private:
    HKEY key_ = nullptr;
    std::vector<std::uint8_t> before_;
};

TEST(Server, SaysWhereTheRegistryKeepsItRegistered) {
    {
        const ClosedKey closed(L"Software\\Classes\\CLSID\\{6D1F5C02-3B7E-4A86-9C41-E82A57B0D319}\\LocalServer32");
        ASSERT_TRUE(closed.is_closed);
        EXPECT_EQ(Process(serverProgram() + u" /unregserver").exitStatus(), 3U);
    }
    EXPECT_EQ(Process(serverProgram() + u" /unregserver").exitStatus(), 0U);
    EXPECT_EQ(Process(serverProgram() + u" /unregserver").exitStatus(), 0U) << "nothing is left of it";
    EXPECT_EQ(Process(serverProgram() + u" /regserver").exitStatus(), 0U);
}

TEST(Server, WritesATranscriptAndARecording) {
    const std::u16string transcript = temporaryFile(u"transcript.txt");
    const std::u16string recording = temporaryFile(u"recording.wav");
    DeleteFileW(murmelix::com::wide(transcript));
    DeleteFileW(murmelix::com::wide(recording));
    {
        const RunningServer server(u"-Embedding /speed 8 /transcript \"" + transcript + u"\" /record \"" + recording +
                                   u"\"");
        Object control = server.control();
        Object characters = control.object(u"Characters");
        characters.call(u"Load", {Variant(u"ann@x"), Variant(smallCharacterFile())});
        Object character = characters.object(u"Character", {Variant(u"ann@x")});
        character.call(u"Show", {Variant(true)});
        Object speak(character.call(u"Speak", {Variant(u"one\ttwo\\three")}).toObject());
        EXPECT_TRUE(pumpUntil([&] { return speak.get(u"Status").toInt32() == 0; }));
        character.call(u"Think", {Variant(u"\\Chr=\"Whisper\"\\not \\Map=\"a\"=\"b\"\\ aloud")});
    }
    const std::string lines = contents(transcript);
    EXPECT_THAT(lines.substr(0, lines.find('\n')), EndsWith("\tready\t\t\t\t"));
    EXPECT_THAT(lines, HasSubstr("\tcall\tann@x\tDot\tShow\t\n"));
    EXPECT_THAT(lines, HasSubstr("\tend\tann@x\tDot\tShow\t\tcomplete\n"));
    EXPECT_THAT(lines, HasSubstr("\tcall\tann@x\tDot\tSpeak\tone\\ttwo\\\\three\n"));
    EXPECT_THAT(lines, HasSubstr("\tend\tann@x\tDot\tSpeak\tone\\ttwo\\\\three\tcomplete\n"));
    EXPECT_THAT(lines, HasSubstr("\tcall\tann@x\tDot\tThink\tnot b aloud\n")) << "tags are not shown";
    const std::string wave = contents(recording);
    EXPECT_EQ(wave.substr(0, 4), "RIFF");
    EXPECT_GT(wave.size(), 20000U);
}

} // namespace
} // namespace agent
