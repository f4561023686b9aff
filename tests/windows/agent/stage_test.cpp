// Windows of the stage, in this process, as pixels on the desktop.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "companions/agent/acs/writer.h"
#include "companions/agent/stage/windows/balloon_window.h"
#include "companions/agent/stage/windows/character_window.h"
#include "companions/agent/stage/windows/desktop.h"
#include "companions/agent/stage/windows/theatre.h"
#include "tests/windows/agent/server_process.h"
#include "tests/windows/support/reader.h"
#include "ui/win32/windows.h"

namespace agent::stage {
namespace {

namespace test = murmelix::test;
namespace ui = murmelix::ui;

constexpr std::uint32_t backdrop_colour = 0x336699;

// A plain window behind, whose colour shows where nothing is drawn.
class Backdrop final : public Window {
  public:
    Backdrop() {
        make({.class_name = L"AgentTestBackdrop",
              .style = WS_POPUP,
              // Whatever is activated comes to the front: the screen may do that at any time.
              .extended_style = WS_EX_TOOLWINDOW | WS_EX_TOPMOST | WS_EX_NOACTIVATE,
              .width = GetSystemMetrics(SM_CXSCREEN),
              .height = GetSystemMetrics(SM_CYSCREEN)});
        ShowWindow(handle(), SW_SHOWNA);
        UpdateWindow(handle());
    }
    ~Backdrop() override { destroy(); }

  protected:
    LRESULT received(UINT message, WPARAM wparam, LPARAM lparam) override {
        if (message == WM_ERASEBKGND) {
            RECT all{};
            GetClientRect(handle(), &all);
            const gdi::Brush brush(CreateSolidBrush(RGB(0x33, 0x66, 0x99)));
            FillRect(reinterpret_cast<HDC>(wparam), &all, brush.get());
            return 1;
        }
        return Window::received(message, wparam, lparam);
    }
};

bool shows(int x, int y, std::uint32_t colour) {
    return pumpUntil([&] { return desktop({x, y, x + 1, y + 1}).at(x, y) == colour; });
}

Raster ring() {
    Raster raster{60, 60, std::vector<std::uint32_t>(3600)};
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 60; ++x) {
            const int distance = (x - 30) * (x - 30) + (y - 30) * (y - 30);
            if (distance < 28 * 28 && distance > 12 * 12) {
                raster.pixels[static_cast<std::size_t>(y * 60 + x)] = 0xFFFF8000;
            }
        }
    }
    return raster;
}

TEST(CharacterWindow, HasTheShapeOfThePicture) {
    const Backdrop backdrop;
    CharacterWindow window({});
    window.show(ring(), {100, 100, 160, 160});
    EXPECT_TRUE(shows(110, 130, 0xFF8000));
    EXPECT_TRUE(shows(130, 130, backdrop_colour)) << "the hole";
    EXPECT_TRUE(shows(101, 101, backdrop_colour)) << "the corner";
    window.move(300, 200);
    EXPECT_TRUE(shows(310, 230, 0xFF8000));
    EXPECT_TRUE(shows(110, 130, backdrop_colour));
    window.hide();
    EXPECT_TRUE(shows(310, 230, backdrop_colour));
}

TEST(CharacterWindow, DrawsWhatHasChanged) {
    const Backdrop backdrop;
    CharacterWindow window({});
    Raster picture = ring();
    window.show(picture, {100, 100, 220, 220});
    const auto paint = [&](int x, int y, std::uint32_t colour) {
        for (int i = 0; i < 100; ++i) {
            picture.pixels[static_cast<std::size_t>((y + i / 10) * 60 + x + i % 10)] = colour;
        }
        window.show(picture, {100, 100, 220, 220});
    };
    paint(25, 25, 0xFF0000FF); // in the hole
    EXPECT_TRUE(shows(160, 160, 0x0000FF));
    EXPECT_TRUE(shows(120, 160, 0xFF8000)) << "beside it all is as it was";
    paint(25, 25, 0);
    EXPECT_TRUE(shows(160, 160, backdrop_colour)) << "the hole is back";
    paint(5, 25, 0);
    EXPECT_TRUE(shows(120, 160, backdrop_colour)) << "and another beside it";
    EXPECT_TRUE(shows(200, 160, 0xFF8000));
}

TEST(CharacterWindow, IsTopmostAndTakesNoFocus) {
    CharacterWindow window({});
    const HWND active = GetActiveWindow();
    window.show(ring(), {100, 100, 160, 160});
    const auto style = static_cast<DWORD>(GetWindowLongW(window.handle(), GWL_EXSTYLE));
    EXPECT_TRUE(style & WS_EX_TOPMOST);
    EXPECT_TRUE(style & WS_EX_TOOLWINDOW);
    EXPECT_EQ(GetActiveWindow(), active);
    EXPECT_EQ(SendMessageW(window.handle(), WM_MOUSEACTIVATE, 0, 0), MA_NOACTIVATE);
}

TEST(CharacterWindow, ThatShowsThePictureAlreadyIsNotDrawnAgain) {
    CharacterWindow window({});
    Raster raster = ring();
    EXPECT_TRUE(window.show(raster, {100, 100, 160, 160}));
    EXPECT_FALSE(window.show(raster, {100, 100, 160, 160}));
    EXPECT_TRUE(window.show(raster, {110, 100, 170, 160}));
    window.move(100, 100);
    EXPECT_TRUE(window.show(raster, {110, 100, 170, 160}));
    raster.pixels[1800] ^= 0xFF;
    EXPECT_TRUE(window.show(raster, {110, 100, 170, 160}));
    window.hide();
    EXPECT_TRUE(window.show(raster, {110, 100, 170, 160}));
}

TEST(CharacterWindow, ChangesItsSize) {
    const Backdrop backdrop;
    CharacterWindow window({});
    window.show(ring(), {100, 100, 160, 160});
    window.show(ring(), {100, 100, 220, 220});
    EXPECT_TRUE(shows(110, 160, 0xFF8000));
    EXPECT_TRUE(shows(160, 160, backdrop_colour));
}

TEST(CharacterWindow, TellsAScreenReaderWhoItIs) {
    ui::win32::prepareToPost();
    int menus = 0;
    PointerHandlers handlers;
    handlers.name = [] { return std::u16string(u"Brindle"); };
    handlers.tip = [] { return std::u16string(u"Speaks for Ann"); };
    handlers.clicked = [&](const PointerEvent& event) {
        menus += event.button == 2 && event.x == 130 && event.y == 130 ? 1 : 0;
    };
    CharacterWindow window(std::move(handlers));
    window.show(ring(), {100, 100, 160, 160});
    const test::Told told = test::ask(test::accessibleOf(window.handle()));
    EXPECT_EQ(told.role, ROLE_SYSTEM_CHARACTER);
    EXPECT_EQ(told.name, u"Brindle");
    EXPECT_EQ(told.description, u"Speaks for Ann");
    EXPECT_EQ(told.place.left, 100);
    EXPECT_EQ(told.place.right, 160);
    EXPECT_EQ(told.action, u"Menu");
    EXPECT_EQ(told.doIt(), S_OK);
    EXPECT_TRUE(pumpUntil([&] { return menus == 1; }));
    window.hide();
    EXPECT_TRUE(test::ask(test::accessibleOf(window.handle())).state & STATE_SYSTEM_INVISIBLE);
}

struct Balloons : testing::Test {
    Backdrop backdrop;
    Screens screens = readScreens();
    int clicks = 0;
    BalloonWindow balloon{screens, [this] { ++clicks; }, [] { return std::u16string(u"Brindle"); }};
    BalloonLook look;
    const Rect character{300, 300, 400, 420};

    Balloons() {
        look.background_colour = 0x00E1FFFF; // 0x00BBGGRR
        look.border_colour = 0x000000FF;
        look.text_colour = 0;
    }
    RECT frame() const {
        RECT area{};
        GetWindowRect(balloon.handle(), &area);
        return area;
    }
    // Pixels that are drawn by letters, in a part of the balloon's width given in percent.
    int ink(int from, int to) const {
        const RECT area = frame();
        const int width = area.right - area.left;
        const RECT part{area.left + width * from / 100, area.top, area.left + width * to / 100, area.bottom};
        return desktop(part).count(0x000000);
    }
    bool drawn() {
        return pumpUntil([&] { return desktop(frame()).count(0xFFFFE1) > 100; });
    }
};

TEST_F(Balloons, AreRoundedWithATailToTheCharacter) {
    balloon.open(BalloonKind::words, u"Hello there, this is a longer text that takes lines.", look, character);
    balloon.spoken(1000);
    ASSERT_TRUE(drawn());
    const RECT area = frame();
    EXPECT_TRUE(shows(area.left, area.top, backdrop_colour)) << "the corner is not square";
    EXPECT_TRUE(shows((area.left + area.right) / 2, area.top + 4, 0xFFFFE1));
    EXPECT_TRUE(shows((area.left + area.right) / 2, area.top, 0xFF0000)) << "the border";
    const Picture under = desktop({area.left, area.bottom - 6, area.right, area.bottom});
    EXPECT_GT(under.count(0xFFFFE1) + under.count(0xFF0000), 3) << "the tail";
    EXPECT_GT(under.count(backdrop_colour), (area.right - area.left) * 5);
    EXPECT_LE(area.bottom, 300 + 1);
    screenshot("balloon-words");
}

TEST_F(Balloons, ShowTheirWordsAsTheyAreSpoken) {
    const std::u16string text = u"one two three four five six seven eight nine ten eleven twelve";
    balloon.open(BalloonKind::words, text, look, character);
    ASSERT_TRUE(drawn());
    UpdateWindow(balloon.handle());
    const int none = ink(0, 100);
    balloon.spoken(7);
    UpdateWindow(balloon.handle());
    EXPECT_TRUE(pumpUntil([&] { return ink(0, 100) > none; }));
    const int two = ink(0, 100);
    balloon.spoken(text.size());
    EXPECT_TRUE(pumpUntil([&] { return ink(0, 100) > two; }));
}

TEST_F(Balloons, WriteFromTheRightWhereTheScriptDoes) {
    look.size_to_text = false;
    look.lines = 2;
    balloon.open(BalloonKind::words, u"\u05E9\u05DC\u05D5\u05DD", look, character);
    balloon.spoken(4);
    ASSERT_TRUE(drawn());
    EXPECT_TRUE(pumpUntil([&] { return ink(60, 100) > 0; }));
    EXPECT_EQ(ink(0, 40), 0);
    screenshot("balloon-right-to-left");
}

TEST_F(Balloons, OfThoughtsHaveBubbles) {
    balloon.open(BalloonKind::thought, u"Hm, what could that be?", look, character);
    balloon.spoken(1000);
    ASSERT_TRUE(drawn());
    const RECT area = frame();
    const Picture gap = desktop({area.left, area.bottom - 18, area.right, area.bottom});
    EXPECT_GT(gap.count(0xFFFFE1), 5);
    screenshot("balloon-thought");
}

TEST_F(Balloons, OfALongTextStayOnTheScreenAndScroll) {
    std::u16string text;
    for (int i = 0; i < 3000; ++i) {
        text += u"word ";
    }
    balloon.open(BalloonKind::words, text, look, character);
    balloon.spoken(text.size());
    ASSERT_TRUE(drawn());
    const RECT area = frame();
    EXPECT_GE(area.left, 0);
    EXPECT_GE(area.top, 0);
    EXPECT_LE(area.bottom, GetSystemMetrics(SM_CYSCREEN));
    EXPECT_TRUE(pumpUntil([&] { return ink(0, 100) > 1000; }));
    EXPECT_EQ(ink(97, 100), 0) << "no line is wider than the balloon";
    screenshot("balloon-long");
}

TEST_F(Balloons, StayOnTheScreenBesideACharacterAtItsEdge) {
    balloon.open(BalloonKind::words, u"At the very edge of the screen", look, {-20, -20, 80, 100});
    balloon.spoken(1000);
    ASSERT_TRUE(drawn());
    EXPECT_GE(frame().left, 0);
    EXPECT_GE(frame().top, 80);
    screenshot("balloon-edge");
}

TEST_F(Balloons, AreReadByScreenReadersAndClosedByThem) {
    ui::win32::prepareToPost();
    const std::u16string text = u"one two three";
    balloon.open(BalloonKind::words, text, look, character);
    const test::Told told = test::ask(test::accessibleOf(balloon.handle()));
    EXPECT_EQ(told.role, ROLE_SYSTEM_HELPBALLOON);
    EXPECT_EQ(told.name, text) << "all of it, however much is shown by now";
    EXPECT_EQ(told.description, u"Brindle");
    EXPECT_EQ(told.action, u"Close");
    EXPECT_EQ(told.doIt(), S_OK);
    EXPECT_TRUE(pumpUntil([&] { return clicks == 1; }));
    SendMessageW(balloon.handle(), WM_LBUTTONUP, 0, MAKELPARAM(10, 10));
    EXPECT_EQ(clicks, 2);
    balloon.open(BalloonKind::words, std::u16string(1'000'000, u'x'), look, character);
    EXPECT_EQ(test::ask(test::accessibleOf(balloon.handle())).name.size(), 4096u);
    balloon.close();
    EXPECT_TRUE(test::ask(test::accessibleOf(balloon.handle())).state & STATE_SYSTEM_INVISIBLE);
}

TEST_F(Balloons, HaveLettersAsLargeAsTheUserWantsThem) {
    balloon.open(BalloonKind::words, u"Large letters", look, character);
    balloon.spoken(1000);
    ASSERT_TRUE(drawn());
    const RECT usual = frame();
    balloon.setLetters(3);
    const RECT large = frame();
    EXPECT_GT(large.right - large.left, 2 * (usual.right - usual.left));
    EXPECT_GT(large.bottom - large.top, usual.bottom - usual.top + 20);
    EXPECT_TRUE(drawn());
    screenshot("balloon-large-letters");
    balloon.setLetters(1);
    EXPECT_EQ(frame().right - frame().left, usual.right - usual.left);
}

TEST_F(Balloons, CloseAndFollow) {
    balloon.open(BalloonKind::words, u"Hello", look, character);
    ASSERT_TRUE(drawn());
    const RECT before = frame();
    balloon.follow({350, 330, 450, 450});
    EXPECT_EQ(frame().left, before.left + 50);
    EXPECT_EQ(frame().top, before.top + 30);
    balloon.close();
    EXPECT_FALSE(IsWindowVisible(balloon.handle()));
}

TEST_F(Balloons, TakeTextOfAnyKind) {
    for (const std::u16string& text : {std::u16string(), std::u16string(u"\0\x1\x7F\xFFFF", 4),
                                       std::u16string(u"\xD800\xD800\xDC00"), std::u16string(200000, u'x')}) {
        balloon.open(BalloonKind::words, text, look, character);
        balloon.spoken(text.size() + 10);
        ASSERT_TRUE(drawn());
    }
}

TEST_F(Balloons, OfAMegabyteShowItsEnd) {
    std::u16string text;
    for (int i = 0; i < 200'000; ++i) {
        text += u"word ";
    }
    balloon.open(BalloonKind::words, text, look, character);
    ASSERT_TRUE(drawn());
    UpdateWindow(balloon.handle());
    const int none = ink(0, 100);
    balloon.spoken(400);
    EXPECT_TRUE(pumpUntil([&] { return ink(0, 100) > none; }));
    const int beginning = ink(0, 100) - none;
    balloon.spoken(text.size());
    UpdateWindow(balloon.handle());
    EXPECT_TRUE(pumpUntil([&] { return ink(0, 100) > none + 2 * beginning; })) << "it is full";
    EXPECT_EQ(ink(97, 100), 0) << "no line is wider than the balloon";
    screenshot("balloon-megabyte");
}

// However many units it takes, a character is one picture: the box of an unknown one, or its own.
TEST_F(Balloons, WriteACharacterOfTwoUnitsAsOne) {
    const auto widthOf = [](std::u16string_view text) {
        Canvas canvas;
        Lettering lettering(canvas.context());
        LOGFONTW font{};
        font.lfHeight = -16;
        std::wcscpy(font.lfFaceName, L"Tahoma");
        lettering.choose(std::u16string(text), font);
        return lettering.widthOf(text);
    };
    const int unknown = widthOf(u"\xDBFF\xDFFD"); // for private use: in no font
    EXPECT_GT(unknown, 0);
    EXPECT_EQ(widthOf(u"\xDBFF\xDFFD\xDBFF\xDFFC"), 2 * unknown);
    EXPECT_EQ(widthOf(u"\xDBFF\xDFFD\xFE0F"), unknown) << "a selector shows nothing";
    EXPECT_EQ(widthOf(u"ab\xDBFF\xDFFD"
                      u"ab"),
              2 * widthOf(u"ab") + unknown);

    Canvas canvas;
    Lettering lettering(canvas.context());
    LOGFONTW font{};
    font.lfHeight = -16;
    const std::u16string text = u"ab\xDBFF\xDFFD"
                                u"cd";
    lettering.choose(text, font);
    const int whole = lettering.widthOf(text);
    EXPECT_EQ(lettering.fitting(text, whole), text.size());
    for (int width = 0; width < whole; ++width) {
        EXPECT_NE(lettering.fitting(text, width), 3U) << "half of it";
        EXPECT_LT(lettering.fitting(text, width), text.size());
    }
    balloon.open(BalloonKind::words, u"Hello \xD83D\xDE00\xD83D\xDE00 \x2764\xFE0F there \xDBFF\xDFFD!", look,
                 character);
    balloon.spoken(1000);
    ASSERT_TRUE(drawn());
    EXPECT_TRUE(pumpUntil([&] { return ink(0, 100) > 20; }));
    screenshot("balloon-signs");
}

// Written from the right, too, and among words that are.
TEST_F(Balloons, WriteSignsWhereTheDirectionOfTheTextPutsThem) {
    const std::u16string sign = u"\xDBFF\xDFFD", first = u"\u05D0\u05D1 ", second = u" \u05D2\u05D3\u05D4";
    Canvas canvas;
    canvas.resize(400, 40);
    Lettering lettering(canvas.context());
    LOGFONTW font{};
    font.lfHeight = -16;
    std::wcscpy(font.lfFaceName, L"Tahoma");
    lettering.choose(u"a " + first + sign + second, font);
    const auto widthOf = [&](const std::u16string& text) { return lettering.widthOf(text); };
    const auto drawnBy = [&](const std::u16string& text, bool right_to_left, int left, int width) {
        const RECT all{0, 0, 400, 40};
        FillRect(canvas.context(), &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
        SetBkMode(canvas.context(), TRANSPARENT);
        SetTextColor(canvas.context(), 0);
        lettering.write(right_to_left ? 400 : 0, 0, text, right_to_left);
        std::vector<COLORREF> pixels;
        for (int y = 0; y < 40; ++y) {
            for (int x = left; x < left + width; ++x) {
                pixels.push_back(GetPixel(canvas.context(), x, y));
            }
        }
        return pixels;
    };
    const int width = widthOf(sign);
    const auto alone = drawnBy(sign, false, 0, width);
    ASSERT_NE(std::count(alone.begin(), alone.end(), RGB(0, 0, 0)), 0);
    EXPECT_EQ(drawnBy(first + sign, true, 400 - widthOf(first + sign), width), alone) << "at the left end";
    EXPECT_EQ(drawnBy(sign + second, true, 400 - width, width), alone) << "at the right end";
    EXPECT_EQ(drawnBy(u"a " + first + sign + second, false, widthOf(u"a ") + widthOf(second), width), alone)
        << "with the second word at its left";
    balloon.open(BalloonKind::words,
                 u"\u05E9\u05DC\u05D5\u05DD \xD83D\xDE00 \u05D7\u05D1\u05E8! 12 \xD83C\xDF88 abc \xDBFF\xDFFD", look,
                 character);
    balloon.spoken(1000);
    ASSERT_TRUE(drawn());
    screenshot("balloon-signs-right-to-left");
}

TEST(Messages, TellOfAChangeOfTheScreens) {
    MessageWindow messages;
    int told = 0;
    std::optional<int> resolution;
    messages.onScreensChanged([&](std::optional<int> changed) {
        ++told;
        resolution = changed;
    });
    SendMessageW(messages.handle(), WM_DISPLAYCHANGE, 32, MAKELPARAM(1024, 768));
    SendMessageW(messages.handle(), WM_SETTINGCHANGE, SPI_SETWORKAREA, 0);
    SendMessageW(messages.handle(), WM_SETTINGCHANGE, SPI_SETICONTITLELOGFONT, 0);
    EXPECT_EQ(told, 2);
    EXPECT_EQ(resolution, std::nullopt);
    int settings = 0;
    messages.onSettingsChanged([&] { ++settings; });
    SendMessageW(messages.handle(), WM_SETTINGCHANGE, SPI_SETCLIENTAREAANIMATION, 0);
    EXPECT_EQ(settings, 1);
    SendMessageW(messages.handle(), WM_DPICHANGED, MAKEWPARAM(192, 192), 0);
    EXPECT_EQ(told, 3);
    EXPECT_EQ(resolution, 192);
}

TEST(Desktop, HasScreensWithWorkAreas) {
    const Screens screens = readScreens();
    ASSERT_FALSE(screens.empty());
    for (const Screen& screen : screens) {
        EXPECT_GT(screen.whole.width(), 0);
        EXPECT_GE(screen.work.left, screen.whole.left);
        EXPECT_LE(screen.work.bottom, screen.whole.bottom);
    }
}

// A character of one red image, on a theatre of its own.
struct OnTheatre : testing::Test, Audience {
    const Backdrop backdrop; // behind the character, which is shown later
    MessageWindow messages;
    voice::Service service{nullptr};
    voice::Output output{std::u16string()};
    int asked_for_screens = 0;
    Theatre theatre{messages, service, output, {}, [this] {
                        ++asked_for_screens;
                        return readScreens();
                    }};
    Stage stage{theatre, *this, [](int) { return 0; }};
    std::shared_ptr<const acs::CharacterFile> file;
    Actor* actor = nullptr;
    HWND window = nullptr;

    OnTheatre() {
        std::string error;
        acs::Character made;
        made.width = made.height = 40;
        made.palette.resize(256, {0, 0, 255});
        made.transparent_index = 1;
        acs::Image image{40, 40, std::vector<std::uint8_t>(1600), {}};
        made.images = {image};
        made.animations.resize(1);
        made.animations[0].name = u"RestPose";
        made.animations[0].frames.resize(1);
        made.animations[0].frames[0].images = {{0, 0, 0}};
        file = std::make_shared<const acs::CharacterFile>(*acs::CharacterFile::open(acs::write(made), error));
        actor = &stage.enter(std::make_shared<FileRepertoire>(file));
        theatre.admit(actor->id(), file);
        stage.setKeepOnScreen(false);
        Request show;
        show.kind = Kind::show;
        show.fast = true;
        actor->place(200, 200, MoveCause::program);
        actor->add(stage.newRequest(show));
        advance(10);
        window = FindWindowW(L"AgentServerCharacter", nullptr);
    }
    void advance(Time now) {
        stage.advance(now);
        theatre.present(stage);
    }
    RECT place() const {
        RECT area{};
        GetWindowRect(window, &area);
        return area;
    }
    void requestStarted(Actor&, const RequestRef&) override {}
    void requestCompleted(Actor&, const RequestRef&) override {}
    void bookmark(Actor&, std::int32_t) override {}
    void shown(Actor&, VisibilityCause) override {}
    void hidden(Actor&, VisibilityCause) override {}
    void moved(Actor&, MoveCause) override {}
    void resized(Actor&) override {}
    void idleStarted(Actor&) override {}
    void idleCompleted(Actor&) override {}
    void balloonShown(Actor&) override {}
    void balloonHidden(Actor&) override {}
};

TEST_F(OnTheatre, ACharacterGrowsToItsBound) {
    EXPECT_TRUE(shows(220, 220, 0xFF0000));
    actor->resize(12000, 12000);
    advance(20);
    EXPECT_EQ(place().right - place().left, largest_side);
    EXPECT_EQ(place().bottom - place().top, largest_side);
    EXPECT_TRUE(shows(500, 500, 0xFF0000));
}

TEST_F(OnTheatre, WhatCannotBeSeenIsDrawnWhenItCan) {
    ASSERT_TRUE(shows(220, 220, 0xFF0000));
    actor->place(-5000, -5000, MoveCause::program);
    advance(20);
    EXPECT_EQ(place().left, -5000);
    actor->resize(700, 700);
    advance(30);
    EXPECT_EQ(place().right - place().left, 40) << "nobody sees that it is larger";
    actor->place(200, 200, MoveCause::program);
    advance(40);
    EXPECT_EQ(place().right - place().left, 700);
    EXPECT_TRUE(shows(500, 500, 0xFF0000));
}

TEST_F(OnTheatre, ACharacterComesToTheFront) {
    const Backdrop in_front;
    const auto isBehind = [](HWND behind, HWND front) {
        HWND next = front;
        while (next && next != behind) {
            next = GetWindow(next, GW_HWNDNEXT);
        }
        return next != nullptr;
    };
    ASSERT_TRUE(isBehind(window, in_front.handle()));
    theatre.toFront(actor->id());
    EXPECT_TRUE(isBehind(in_front.handle(), window));
}

TEST_F(OnTheatre, CharactersAndBalloonsFollowTheResolutionAndTheSize) {
    Request speak{.kind = Kind::think, .text = u"Some words that are thought for quite a while, one after another."};
    actor->add(stage.newRequest(speak));
    advance(20);
    advance(1500);
    const HWND balloon = FindWindowW(L"AgentServerBalloon", nullptr);
    const auto size = [](HWND of) {
        RECT area{};
        GetWindowRect(of, &area);
        return std::pair(area.right - area.left, area.bottom - area.top);
    };
    const auto letters = size(balloon);
    EXPECT_EQ(size(window), std::pair(40L, 40L));
    SendMessageW(messages.handle(), WM_DPICHANGED, MAKEWPARAM(192, 192), 0);
    advance(1510);
    EXPECT_EQ(size(window), std::pair(80L, 80L));
    EXPECT_EQ(actor->width(), 80);
    EXPECT_TRUE(shows(275, 275, 0xFF0000));
    EXPECT_NEAR(size(balloon).second, 2 * letters.second, letters.second / 2) << "at once";
    screenshot("character-192-dpi");
    theatre.setSize(1.5);
    advance(1520);
    EXPECT_EQ(size(window), std::pair(120L, 120L));
    EXPECT_GT(size(balloon).second, 2 * letters.second);
    SendMessageW(messages.handle(), WM_DPICHANGED, MAKEWPARAM(96, 96), 0);
    theatre.setSize(1);
    advance(1530);
    EXPECT_EQ(size(window), std::pair(40L, 40L));
    EXPECT_EQ(size(balloon), letters);
}

TEST_F(OnTheatre, WordsAreHeardAsSoonAsTheyAreMade) {
    int ticks = 0;
    messages.every(USER_TIMER_MAXIMUM, [&] {
        ++ticks;
        advance(30);
    });
    const auto speak = stage.newRequest({.kind = Kind::speak, .text = u"one"});
    actor->add(speak);
    advance(20);
    EXPECT_TRUE(pumpUntil([&] { return speak->status == Status::in_progress; }));
    EXPECT_EQ(ticks, 1) << "no timer ticked";
}

TEST_F(OnTheatre, ABalloonKeepsOffTheOtherCharacters) {
    actor->add(stage.newRequest({.kind = Kind::think, .text = u"Some words that are thought for quite a while."}));
    advance(20);
    advance(500);
    const HWND balloon = FindWindowW(L"AgentServerBalloon", nullptr);
    const auto covers = [&](const RECT& area) {
        RECT words{}, shared{};
        GetWindowRect(balloon, &words);
        return IntersectRect(&shared, &words, &area) != 0;
    };
    const RECT above{200, 140, 240, 180};
    EXPECT_TRUE(covers(above));
    Actor& other = stage.enter(std::make_shared<FileRepertoire>(file));
    theatre.admit(other.id(), file);
    other.place(above.left, above.top, MoveCause::program);
    other.add(stage.newRequest({.kind = Kind::show, .fast = true}));
    advance(510);
    advance(520);
    EXPECT_TRUE(IsWindowVisible(balloon));
    EXPECT_FALSE(covers(above)) << "the words made way";
}

TEST_F(OnTheatre, TheStageKnowsTheScreens) {
    stage.setKeepOnScreen(true);
    actor->place(-10, -10, MoveCause::program);
    advance(20);
    EXPECT_EQ(place().left, 0);
    EXPECT_EQ(place().top, 0);
}

TEST_F(OnTheatre, TheScreensAreAskedForOnceAChange) {
    actor->add(stage.newRequest({.kind = Kind::think, .text = u"A thought that takes a while."}));
    for (Time now = 20; now < 2000; now += 10) {
        actor->place(static_cast<int>(now), 200, MoveCause::program);
        advance(now);
    }
    EXPECT_EQ(asked_for_screens, 1);
    SendMessageW(messages.handle(), WM_DISPLAYCHANGE, 32, MAKELPARAM(1280, 1024));
    advance(2010);
    advance(2020);
    EXPECT_EQ(asked_for_screens, 2);
}

} // namespace
} // namespace agent::stage
