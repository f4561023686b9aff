// The character browser with real windows: its pictures, its slide, and contacts dragged with the system's own mouse.
#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <windows.h>

#include "app/settings.h"
#include "app/shell_state.h"
#include "common/com/handles.h"
#include "common/text.h"
#include "controls/img_list_box.h"
#include "matchups/matchup_store.h"
#include "tests/fakes/gif.h"
#include "tests/windows/program/list_neighbour.h"
#include "tests/windows/program/window_test.h"
#include "tests/windows/support/process.h"
#include "ui/form.h"
#include "ui/screen.h"
#include "ui/win32/gdi.h"

namespace murmelix {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr COLORREF red = RGB(255, 0, 0);
const std::string red_of_palette("\xFF\x00\x00", 3);

// Colours of no order, so that any two that are mistaken for each other are found out.
struct Noise {
    Noise(int width, int height, int transparent) : frame{width, height, 0, 0, {}, transparent} {
        std::mt19937 random(3);
        for (int i = 0; i < 256 * 3; ++i) {
            palette += static_cast<char>(random());
        }
        for (int i = 0; i < width * height; ++i) { // runs of one colour, and what compresses badly
            frame.indices.push_back(static_cast<std::uint8_t>(random() % 4 ? static_cast<unsigned>(i / 50) : random()));
        }
    }
    std::string file(bool interlaced) const {
        fakes::GifFrame drawn = frame;
        drawn.interlaced = interlaced;
        if (interlaced) {
            drawn.indices.clear();
            for (const auto& [first, step] : {std::pair{0, 8}, {4, 8}, {2, 4}, {1, 2}}) {
                for (int row = first; row < frame.height; row += step) {
                    const auto at = frame.indices.begin() + std::ptrdiff_t{row} * frame.width;
                    drawn.indices.insert(drawn.indices.end(), at, at + frame.width);
                }
            }
        }
        return fakes::gif(frame.width, frame.height, palette, {drawn});
    }
    std::uint32_t colour(std::size_t i) const {
        const auto part = [&](std::size_t k) {
            return std::uint32_t{static_cast<std::uint8_t>(palette[3U * frame.indices[i] + k])};
        };
        return frame.indices[i] == frame.transparent ? 0 : 0xFF000000 | part(0) << 16 | part(1) << 8 | part(2);
    }

    fakes::GifFrame frame;
    std::string palette;
};

TEST(Gif, PixelsAreThoseOfTheFile) {
    for (const auto& [width, height, transparent] : {std::tuple{1, 1, -1}, {17, 9, -1}, {300, 200, -1}, {123, 77, 5}}) {
        const Noise noise(width, height, transparent);
        for (const bool interlaced : {false, true}) {
            const auto image = ui::decodeGif(noise.file(interlaced));
            ASSERT_TRUE(image) << width;
            ASSERT_EQ(image->width, width);
            ASSERT_EQ(image->height, height);
            for (std::size_t i = 0; i < image->pixels.size(); ++i) {
                ASSERT_EQ(image->pixels[i], noise.colour(i)) << width << " wide, pixel " << i << ", " << interlaced;
            }
        }
    }
}

// Packed by hand: two by two pixels; red, green, blue and white.
TEST(Gif, SmallFilePackedByHand) {
    const std::string file("GIF87a\x02\x00\x02\x00\x81\x00\x00\xFF\x00\x00\x00\xFF\x00\x00\x00\xFF\xFF\xFF\xFF"
                           ",\x00\x00\x00\x00\x02\x00\x02\x00\x00\x02\x03\x44\x34\x05\x00;",
                           42);
    const auto image = ui::decodeGif(file);
    ASSERT_TRUE(image);
    EXPECT_THAT(image->pixels, ElementsAre(0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFFFF));
}

TEST(Gif, SmallFirstFrameWithItsOwnPaletteStandsInItsPlace) {
    fakes::GifFrame first{2, 1, 1, 1, {1, 0}, 0}, second{3, 2, 0, 0, {1, 1, 1, 1, 1, 1}};
    first.palette = std::string("\x00\x00\x00\x04\x05\x06", 6);
    const auto image = ui::decodeGif(fakes::gif(3, 2, std::string(3, '\0') + red_of_palette, {first, second}));
    ASSERT_TRUE(image);
    EXPECT_THAT(image->pixels, ElementsAre(0U, 0U, 0U, 0U, 0xFF040506, 0U));
}

TEST(Gif, NoChangeOfBytesHarms) {
    const std::string whole = Noise(12, 12, 3).file(true);
    std::mt19937 random(1);
    int shown = 0;
    for (int i = 0; i < 2000; ++i) {
        std::string damaged = whole;
        for (int k = 0; k < 3; ++k) {
            damaged[random() % damaged.size()] = static_cast<char>(random());
        }
        if (const auto image = ui::decodeGif(damaged)) {
            ++shown;
            ASSERT_EQ(image->pixels.size(), static_cast<std::size_t>(image->width * image->height));
        }
    }
    EXPECT_GT(shown, 0);
}

class Browser : public testing::Test {
  protected:
    // One window for all tests: showing one takes long on a screen without a window manager.
    static void SetUpTestSuite() {
        form = std::make_unique<ui::Form>(nullptr, u"Browser", ui::FormStyle::window);
        form->setScale(9000, height);
        form->Show();
        SetWindowPos(windowOf(*form), HWND_TOPMOST, 10, 10, 0, 0, SWP_NOSIZE);
    }
    static void TearDownTestSuite() { form.reset(); }

    Browser() : directory_(std::filesystem::temp_directory_path() / L"murmelix browser pictures") {
        std::filesystem::remove_all(directory_);
        std::filesystem::create_directories(directory_);
        CharPicsDir = directory_.u16string();
        SettingsKeyPath = u"Software\\MurmelixBrowserTest";
        Matchups.Clear();
        make();
        contacts->Move({0, 0, 2900, height});
        contacts->setItemHeight(30);
        contacts->setDragDropZone(1);
        contacts->P.setOLEDropMode(ui::DropMode::manual);
        for (const char16_t* name : {u"ann@x", u"bob@x"}) {
            contacts->AddItem(name, name, name, false);
        }
        box->ContactGiven = [this](const std::u16string& contact) { contacts->RemoveItem(contact); };
        contacts->DragDropAlert = [this](ui::DataObject& data, ui::DropEffect&, std::int16_t, std::int16_t, float,
                                         float) {
            box->RemoveContact(data.Text());
            RemoveMatchup(data.Text());
            contacts->AddItem(data.Text(), data.Text(), data.Text(), false);
        };
        serveAll();
    }
    ~Browser() override {
        if (again_) {
            KillTimer(nullptr, again_);
        }
        mouse(MOUSEEVENTF_LEFTUP, {1, 1});
        contacts.reset();
        box.reset();
        Matchups.Clear();
        RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\MurmelixBrowserTest");
        std::filesystem::remove_all(directory_);
    }

    void make() {
        box = std::make_unique<ImgListBox>(*form);
        box->Move({3000, 0, 6000, height});
    }
    void add(int count) {
        for (int i = 1; i <= count; ++i) {
            box->AddItem(u"", u"C" + toText(i));
        }
        serveAll();
    }
    std::u16string file(const std::u16string& name, const std::string& bytes) const {
        std::ofstream(directory_ / (name + u".gif"), std::ios::binary) << bytes;
        return imagePath(name);
    }
    std::u16string imagePath(const std::u16string& name) const { return CharPicsDir + u"\\" + name + u".gif"; }
    static Image seen(const ui::Control& control) {
        control.form();
        return insideOf(windowOf(control));
    }
    bool rest() {
        return serveUntil([&] { return !box->Sliding(); });
    }
    static POINT middleOf(const ui::Control& control, int beside = 0) {
        RECT area{};
        GetClientRect(windowOf(control), &area);
        return onScreen(windowOf(control), area.right / 2 + beside, area.bottom / 2);
    }

    // What the user does once a drag out of a list has begun: nothing else is served meanwhile.
    static void whenDragging(CoolListBox& list, std::function<void()> go_on) {
        list.P.OLEStartDrag = [&list, go_on = std::move(go_on), start = list.P.OLEStartDrag](ui::DataObject& data,
                                                                                             ui::DropEffect& allowed) {
            start(data, allowed);
            go_on();
        };
    }
    // Presses a row and moves the mouse until the drag has begun; returns when it has ended.
    void pull(CoolListBox& list, int row) {
        bool dragged = false;
        list.P.OLECompleteDrag = [&dragged, complete = list.P.OLECompleteDrag](ui::DropEffect effect) {
            complete(effect);
            dragged = true;
        };
        const int y = row * list.ItemHeight() - list.ItemHeight() / 2;
        ASSERT_TRUE(hover(list.P, onScreen(windowOf(list.P), 20, y)));
        mouse(MOUSEEVENTF_LEFTDOWN, onScreen(windowOf(list.P), 20, y));
        mouse(0, onScreen(windowOf(list.P), 28, y));
        ASSERT_TRUE(serveUntil([&] { return dragged; }));
        list.P.OLECompleteDrag = nullptr;
    }
    // Another program can take the release of the button before the drag has the mouse: then it is let go again.
    void letGo(POINT place) {
        let_go_at_ = place;
        mouse(0, place);
        mouse(MOUSEEVENTF_LEFTUP, place);
        KillTimer(nullptr, again_);
        again_ = SetTimer(nullptr, 0, 1000, [](HWND, UINT, UINT_PTR, DWORD) { mouse(MOUSEEVENTF_LEFTUP, let_go_at_); });
    }
    std::u16string characterOf(const std::u16string& contact) const {
        return MatchupExists(contact) ? GetMatchupCharacter(contact) : u"";
    }

    static constexpr int height = 3 * 1950 + 2 * 405;
    static inline std::unique_ptr<ui::Form> form;
    std::unique_ptr<ImgListBox> box;
    std::unique_ptr<CoolListBox> contacts = std::make_unique<CoolListBox>(*form);

  private:
    std::filesystem::path directory_;
    static inline POINT let_go_at_{};
    UINT_PTR again_ = 0;
};

TEST_F(Browser, PictureOfAFileIsSeenAndItsTransparentPartIsTheBackground) {
    // Red on the left; the right is transparent.
    fakes::GifFrame frame{40, 20, 0, 0, {}, 0};
    for (int i = 0; i < 40 * 20; ++i) {
        frame.indices.push_back(i % 40 < 20 ? 1 : 0);
    }
    box->AddItem(file(u"Robby", fakes::gif(40, 20, std::string(3, '\0') + red_of_palette, {frame})), u"Robby");
    show(*form, "browser_picture");
    const Image image = seen(box->ItemImage(1));
    const COLORREF background = ui::win32::toColorRef(ui::button_face);
    const int x = image.width / 2, y = image.height / 2;
    EXPECT_EQ(image.at(x - 10, y), red);
    EXPECT_EQ(image.at(x + 10, y), background);
    EXPECT_EQ(image.at(2, 2), background);
    EXPECT_EQ(image.at(x - 10, y + 30), background) << "it keeps its size where there is room";
}

TEST_F(Browser, LargePictureFitsItsBox) {
    box->AddItem(file(u"Robby", fakes::plainGif(512, 256, red_of_palette)), u"Robby");
    show(*form, "browser_large_picture");
    const Image image = seen(box->ItemImage(1));
    EXPECT_EQ(image.at(0, image.height / 2), red);
    EXPECT_EQ(image.at(image.width - 1, image.height / 2), red);
    EXPECT_EQ(image.at(image.width / 2, image.height / 2 - image.width / 4 + 2), red);
    EXPECT_NE(image.at(image.width / 2, image.height / 2 - image.width / 4 - 2), red);
}

TEST_F(Browser, FilesThatCannotBeShownLeaveTheBlankPicture) {
    std::string huge = fakes::plainGif(1, 1, red_of_palette);
    huge.replace(6, 4, "\xFF\xFF\xFF\xFF");
    box->AddItem(u"", u"none");
    box->AddItem(file(u"damaged", fakes::plainGif(80, 80, red_of_palette).substr(0, 60)), u"damaged");
    box->AddItem(file(u"huge", huge), u"huge");
    show(*form, "browser_blank");
    const Image blank = seen(box->ItemImage(1));
    const auto coloured = std::ranges::count_if(
        blank.pixels, [](COLORREF pixel) { return GetBValue(pixel) > GetRValue(pixel) + 100; }); // the arrow's disc
    EXPECT_GT(coloured, 100);
    EXPECT_EQ(seen(box->ItemImage(2)).pixels, blank.pixels);
    EXPECT_EQ(seen(box->ItemImage(3)).pixels, blank.pixels);
}

TEST_F(Browser, FileOfAPictureIsNotHeldOpen) {
    const auto path = file(u"Robby", fakes::plainGif(8, 8, red_of_palette));
    box->AddItem(path, u"Robby");
    serveAll();
    ASSERT_TRUE(box->ItemImage(1).image());
    HANDLE opened = CreateFileW(com::wide(path), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(opened, INVALID_HANDLE_VALUE);
    CloseHandle(opened);
}

TEST_F(Browser, StripSlidesByItself) {
    add(5);
    box->ScrollButt_Click(1);
    EXPECT_TRUE(box->Sliding());
    ASSERT_TRUE(rest());
    EXPECT_EQ(box->ListFrame(2).Top(), 0);
    RECT strip{}, frame{};
    GetWindowRect(windowOf(box->Strip), &strip);
    GetWindowRect(windowOf(box->ListFrame(2)), &frame);
    EXPECT_EQ(frame.top, strip.top);
    EXPECT_FALSE(IsWindowVisible(windowOf(box->ListFrame(1))));
}

TEST_F(Browser, SlidingStripShowsWhatIsThere) {
    for (const int dpi : {96, 120}) {
        ui::win32::setScreenDpi(dpi);
        const auto fonts_before = ui::win32::renewFonts();
        ui::Form window(nullptr, u"Browser", ui::FormStyle::window);
        window.setScale(6000, height);
        ImgListBox browser(window);
        browser.Move({0, 0, 6000, height});
        for (int i = 1; i <= 6; ++i) {
            browser.AddItem(file(u"C" + toText(i), fakes::plainGif(20 * i, 80, red_of_palette)), u"C" + toText(i));
            browser.GiveContact(u"friend" + toText(i) + u"@x", static_cast<std::int16_t>(i));
        }
        window.Show();
        serveAll();
        RECT strip{};
        GetWindowRect(windowOf(browser.Strip), &strip);
        for (const int index : {1, 1, 0, 1}) {
            browser.ScrollButt_Click(static_cast<std::int16_t>(index));
            for (int step = 0; browser.Sliding(); ++step) {
                const Image slid = seen(browser.Strip);
                RedrawWindow(windowOf(browser.Strip), nullptr, nullptr,
                             RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
                ASSERT_EQ(slid.pixels, seen(browser.Strip).pixels) << dpi << ", step " << step;
                browser.SlideTimer.Tick();
            }
            for (std::int16_t i = 1; i <= 6; ++i) {
                RECT frame{};
                GetWindowRect(windowOf(browser.ListFrame(i)), &frame);
                if (browser.ListFrame(i).Visible()) {
                    const int above = browser.Top() + browser.Strip.Top();
                    ASSERT_EQ(frame.top - strip.top,
                              ui::toPixels(above + browser.ListFrame(i).Top()) - ui::toPixels(above))
                        << dpi << ", panel " << i;
                }
            }
        }
        Matchups.Clear();
    }
    ui::win32::setScreenDpi(96);
    const auto fonts_before = ui::win32::renewFonts();
}

TEST_F(Browser, WheelOverAPictureTurnsTheStrip) {
    add(5);
    SendMessageW(windowOf(box->ItemImage(2)), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
    ASSERT_TRUE(rest());
    EXPECT_EQ(box->ListFrame(2).Top(), 0);
    // A fine one tells of less than a notch.
    for (int i = 1; i <= 8; ++i) {
        SendMessageW(windowOf(box->ItemImage(2)), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(WHEEL_DELTA / 8)), 0);
        EXPECT_EQ(box->Sliding(), i == 8);
    }
    ASSERT_TRUE(rest());
    EXPECT_EQ(box->ListFrame(1).Top(), 0);
}

TEST_F(Browser, ContactIsDraggedToAPanelAndBack) {
    add(3);
    whenDragging(*contacts, [this] { letGo(middleOf(box->ListItems(2).P)); });
    pull(*contacts, 1);
    EXPECT_EQ(characterOf(u"ann@x"), u"C2");
    ASSERT_EQ(box->ListItems(2).GetItemCount(), 1);
    EXPECT_EQ(contacts->GetItemCount(), 1);
    whenDragging(box->ListItems(2), [this] { letGo(middleOf(contacts->P)); });
    pull(box->ListItems(2), 1);
    EXPECT_EQ(characterOf(u"ann@x"), u"");
    EXPECT_EQ(box->ListItems(2).GetItemCount(), 0);
    EXPECT_EQ(contacts->GetItemCount(), 2);
}

TEST_F(Browser, ContactIsDroppedOnAPicture) {
    box->AddItem(file(u"Robby", fakes::plainGif(80, 80, red_of_palette)), u"Robby");
    box->AddItem(u"", u"Blank");
    serveAll();
    whenDragging(*contacts, [this] { letGo(middleOf(box->ItemImage(1))); });
    pull(*contacts, 1);
    EXPECT_EQ(characterOf(u"ann@x"), u"Robby");
    contacts->P.OLEStartDrag = nullptr;
    box->GiveContact(u"ann@x", 2);
    whenDragging(box->ListItems(2), [this] { letGo(middleOf(box->ItemImage(1))); });
    pull(box->ListItems(2), 1);
    EXPECT_EQ(characterOf(u"ann@x"), u"Robby");
}

TEST_F(Browser, NothingIsDroppedOnAPanelThatAsksForMore) {
    add(1);
    box->AddItem(u"MoreChars", u"Empty1");
    serveAll();
    whenDragging(*contacts, [this] { letGo(middleOf(box->ListItems(2))); });
    pull(*contacts, 1);
    EXPECT_EQ(Matchups.Count(), 0U);
    EXPECT_EQ(contacts->GetItemCount(), 2);
}

TEST_F(Browser, ContactIsCarriedToAPanelOutOfView) {
    add(5);
    static std::function<void()> look;
    UINT_PTR looks = 0;
    bool let_go = false, there = false;
    look = [&] {
        if (let_go) {
            return;
        }
        if (box->Sliding() || !box->ListFrame(5).Visible()) {
            there = !there; // where it moved before the drag had it, it moves again
            mouse(0, middleOf(box->ScrollButt[1], there));
        } else {
            let_go = true;
            letGo(middleOf(box->ListItems(5).P));
        }
    };
    whenDragging(*contacts, [&] { looks = SetTimer(nullptr, 0, 20, [](HWND, UINT, UINT_PTR, DWORD) { look(); }); });
    pull(*contacts, 1);
    KillTimer(nullptr, looks);
    EXPECT_EQ(characterOf(u"ann@x"), u"C5");
    EXPECT_FALSE(box->HoldTimer.Enabled());
}

// What is seen of a panel while a contact is dragged over it.
TEST_F(Browser, PanelThatAContactIsDraggedOverIsMarked) {
    add(3);
    const Image before = seen(box->ListFrame(2));
    static std::function<void()> look;
    Image over, beside;
    std::size_t stage = 0;
    bool nearby = false;
    const auto drawn = [this] {
        box->Strip.Refresh();
        return seen(box->ListFrame(2));
    };
    look = [&] {
        nearby = !nearby; // where it moved before the drag had it, it moves again
        switch (stage) {
        case 0:
            mouse(0, middleOf(box->ListItems(2).P, nearby));
            if (box->ListFrame(2).Highlighted()) {
                over = drawn();
                keepPicture(*form, "browser_marked");
                ++stage;
            }
            break;
        case 1:
            mouse(0, middleOf(box->ItemImage(3), nearby));
            if (box->ListFrame(3).Highlighted()) {
                beside = drawn();
                ++stage;
            }
            break;
        default:
            keyboard(VK_ESCAPE, true);
            keyboard(VK_ESCAPE, false);
        }
    };
    UINT_PTR looks = 0;
    whenDragging(*contacts, [&] { looks = SetTimer(nullptr, 0, 20, [](HWND, UINT, UINT_PTR, DWORD) { look(); }); });
    pull(*contacts, 1);
    KillTimer(nullptr, looks);
    mouse(MOUSEEVENTF_LEFTUP, middleOf(box->ItemImage(3)));
    EXPECT_NE(over.pixels, before.pixels);
    EXPECT_EQ(over.at(over.width / 2, over.height - 1), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(beside.pixels, before.pixels);
    EXPECT_FALSE(box->ListFrame(3).Highlighted());
    EXPECT_EQ(drawn().pixels, before.pixels);
    EXPECT_EQ(Matchups.Count(), 0U);
}

TEST_F(Browser, EscapeOverTheScrollButtonLeavesAllAsItIs) {
    add(5);
    whenDragging(*contacts, [this] {
        mouse(0, middleOf(box->ScrollButt[1]));
        keyboard(VK_ESCAPE, true);
        keyboard(VK_ESCAPE, false);
    });
    pull(*contacts, 1);
    mouse(MOUSEEVENTF_LEFTUP, middleOf(box->ScrollButt[1]));
    ASSERT_TRUE(rest());
    EXPECT_EQ(Matchups.Count(), 0U);
    EXPECT_FALSE(box->HoldTimer.Enabled());
}

// Another process with a list, beside the browser.
class BrowserAndAnotherProgram : public Browser {
  protected:
    static std::u16string command() {
        std::array<wchar_t, MAX_PATH> program{};
        const DWORD length = GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
        std::u16string line = u"\"";
        line += com::narrow(program.data(), length);
        return line + u"\" " + fromUtf8(neighbour_switch) + u" " + toText(left) + u" 10";
    }
    void SetUp() override {
        add(3);
        ASSERT_TRUE(serveUntil([this] {
            window = FindWindowW(nullptr, neighbour_caption);
            RECT area{};
            return window && GetWindowRect(window, &area) && area.left == left && area.top == 10;
        }));
    }
    // Drags the row of the other program there; what that program tells of it.
    std::u16string dragTo(POINT place) {
        EXPECT_TRUE(pullRow(window));
        letGo(place);
        EXPECT_TRUE(serveUntil([this] { return told(window) != u"dragging"; }));
        return told(window);
    }

    static constexpr int left = 660; // pixels, right of the browser
    Process neighbour{command()};
    HWND window = nullptr;
};

TEST_F(BrowserAndAnotherProgram, RowOfTheOtherIsMatchedAndMovedAndListedOnce) {
    const std::u16string stranger = u"Zo\u00eb \u263a";
    EXPECT_EQ(dragTo(middleOf(box->ListItems(2).P)), u"completed: 2, " + stranger);
    EXPECT_EQ(characterOf(stranger), u"C2");
    EXPECT_EQ(box->ListItems(2).GetItemCount(), 1);
    EXPECT_EQ(dragTo(middleOf(box->ItemImage(3))), u"completed: 2, " + stranger);
    EXPECT_EQ(characterOf(stranger), u"C3");
    EXPECT_EQ(box->ListItems(2).GetItemCount(), 0);
    EXPECT_EQ(box->ListItems(3).GetItemCount(), 1);
    EXPECT_EQ(contacts->GetItemCount(), 2);
}

TEST_F(BrowserAndAnotherProgram, RowDroppedOnAScrollButtonIsNotTaken) {
    EXPECT_EQ(dragTo(middleOf(box->ScrollButt[0])), u"completed: 0, Zo\u00eb \u263a");
    EXPECT_EQ(Matchups.Count(), 0U);
}

// Signing out ends the dialogue whatever is open.
TEST_F(Browser, FormMayEndDuringADownload) {
    auto dialogue = std::make_unique<ui::Form>(nullptr, u"Dialogue", ui::FormStyle::dialog);
    dialogue->setScale(6000, height);
    auto browser = std::make_unique<ImgListBox>(*dialogue);
    browser->Move({0, 0, 6000, height});
    browser->AddItem(u"", u"Robby");
    dialogue->Show();
    ui::post([&] {
        browser.reset();
        dialogue.reset();
    });
    browser->ItemImage_Click(1);
    EXPECT_FALSE(dialogue);
    serveAll();
    EXPECT_TRUE(IsWindowEnabled(windowOf(*form)));
}

TEST_F(Browser, LooksWellAtAllResolutions) {
    for (const int dpi : {96, 144, 192}) {
        ui::win32::setScreenDpi(dpi);
        const auto fonts_before = ui::win32::renewFonts();
        ui::Form window(nullptr, u"Browser", ui::FormStyle::window);
        window.setScale(6000, height);
        ImgListBox browser(window);
        browser.Move({0, 0, 6000, height});
        browser.CaptionOf = [](const std::u16string& contact) { return u"Friend " + contact; };
        browser.AddItem(file(u"Robby", fakes::plainGif(200, 300, red_of_palette)), u"Robby");
        browser.AddItem(u"", u"Zoe && friends");
        browser.AddItem(u"MoreChars", u"Empty1");
        browser.AddItem(u"", u"One more");
        for (const char16_t* contact : {u"ann@x", u"bob@x", u"cyd@x", u"dan@x"}) {
            browser.GiveContact(contact, 1);
        }
        window.Show();
        browser.FocusPanel(1);
        browser.ItemImage(2).SetFocus();
        show(window, "browser_" + std::to_string(dpi));
        EXPECT_THAT(layoutMistakes(window), IsEmpty()) << dpi;
        Matchups.Clear();
    }
    ui::win32::setScreenDpi(96);
    const auto fonts_before = ui::win32::renewFonts();
}

} // namespace
} // namespace murmelix
