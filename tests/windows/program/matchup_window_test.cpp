// The matchup window with the real registry and the system's own mouse and keyboard.
#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <windows.h>

#include <ole2.h>

#include "app/shell_state.h"
#include "common/com/handles.h"
#include "common/com/server.h"
#include "common/text.h"
#include "matchups/matchup_frm.h"
#include "matchups/matchup_store.h"
#include "tests/windows/program/ending_store.h"
#include "tests/windows/program/list_neighbour.h"
#include "tests/windows/program/window_test.h"
#include "tests/windows/support/process.h"
#include "ui/screen.h"
#include "ui/win32/gdi.h"

namespace murmelix {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

// A client with a list of contacts, and nothing else.
class Contacts final : public platform::MessengerApi {
  public:
    struct Contact final : platform::MessengerContact {
        Contact(std::u16string signin, std::u16string friendly)
            : signin_name(std::move(signin)), friendly_name(std::move(friendly)) {}
        std::u16string FriendlyName() override { return friendly_name; }
        std::u16string SigninName() override { return signin_name; }
        std::u16string signin_name, friendly_name;
    };
    using All = std::vector<std::shared_ptr<Contact>>;
    struct List final : platform::MessengerContacts {
        explicit List(All contacts) : all(std::move(contacts)) {}
        std::int32_t Count() override { return static_cast<std::int32_t>(all.size()); }
        std::shared_ptr<platform::MessengerContact> Item(std::int32_t index) override {
            return all.at(static_cast<std::size_t>(index));
        }
        All all;
    };

    std::int32_t MyStatus() override { return 2; }
    std::u16string MySigninName() override { return u"me@x"; }
    std::u16string MyFriendlyName() override { return u"Me"; }
    std::int32_t UnreadEmailCount(std::int32_t) override { return 0; }
    std::shared_ptr<platform::MessengerContacts> MyContacts() override { return std::make_shared<List>(all); }
    void Signin(std::int32_t, const std::u16string&, const std::u16string&) override {}

    All all;
};

class MatchupDialogue : public testing::Test {
  protected:
    MatchupDialogue() {
        RegDeleteTreeW(HKEY_CURRENT_USER, com::wide(ending_store_path));
        SettingsKeyPath = ending_store_path;
        Matchups.Clear();
        WindowsDir = temporaryFile(u"matchups") + u"\\";
        CharPicsDir = WindowsDir + u"CharPics";
        for (const std::u16string& folder : {std::u16string(), std::u16string(u"msagent"),
                                             std::u16string(u"msagent\\chars"), std::u16string(u"CharPics")}) {
            CreateDirectoryW(com::wide(WindowsDir + folder), nullptr);
        }
        for (const char16_t* name : {u"Anna", u"Bert", u"Max"}) {
            write(WindowsDir + u"msagent\\chars\\" + name + u".acs", {});
        }
        for (const auto& [signin, friendly] : {std::pair(u"ann@x", u"Ann"), std::pair(u"bob@x", u"Bob (at work)"),
                                               std::pair(u"zoe@x", u"Zo\u00eb \u263a")}) {
            client.all.push_back(std::make_shared<Contacts::Contact>(signin, friendly));
        }
        form = std::make_unique<MatchupFrm>(nullptr, client);
    }
    ~MatchupDialogue() override {
        if (again_) {
            KillTimer(nullptr, again_);
        }
        mouse(MOUSEEVENTF_LEFTUP, {1, 1});
        sendDpi(system_dpi);
        form.reset();
        for (const char16_t* name : {u"Anna", u"Bert", u"Max"}) {
            DeleteFileW(com::wide(WindowsDir + u"msagent\\chars\\" + name + u".acs"));
        }
        RegDeleteTreeW(HKEY_CURRENT_USER, com::wide(ending_store_path));
        SettingsKeyPath = WindowsDir = CharPicsDir = u"";
        Matchups.Clear();
    }
    void open() {
        form->Show();
        SetWindowPos(windowOf(*form), HWND_TOPMOST, 10, 10, 0, 0, SWP_NOSIZE);
        ASSERT_TRUE(serveUntil([this] { return !form->ContactTimer.Enabled(); }));
        serveAll();
        BringWindowToTop(windowOf(*form));
        SetForegroundWindow(windowOf(*form));
        serveAll();
    }
    void sendDpi(int dpi) {
        SendMessageW(windowOf(*form), WM_DPICHANGED, MAKEWPARAM(dpi, dpi), 0);
        serveAll();
    }

    static POINT middle(const ui::Control& control) {
        RECT area{};
        GetClientRect(windowOf(control), &area);
        return onScreen(windowOf(control), area.right / 2, area.bottom / 2);
    }
    static POINT row(const CoolListBox& list, int position) {
        return onScreen(windowOf(list.P), 20, position * list.ItemHeight() - list.ItemHeight() / 2);
    }
    CoolListBox& listOf(const std::u16string& character) {
        return form->MatchUpList.ListItems(form->MatchUpList.GetPositionFromKey(character));
    }
    static std::vector<std::u16string> keys(const CoolListBox& list) {
        std::vector<std::u16string> all;
        for (std::int16_t i = 1; i <= list.GetItemCount(); ++i) {
            all.push_back(list.Item(i).Key);
        }
        return all;
    }
    // As the registry has it, read anew.
    static std::u16string storedCharacter(const std::u16string& contact) {
        LoadMatchups();
        return MatchupExists(contact) ? GetMatchupCharacter(contact) : u"none";
    }

    // Pulls a row of a list with the mouse, and does `go_on` once the drag has begun: nothing else is served meanwhile.
    void drag(CoolListBox& list, int position, std::function<void()> go_on) {
        bool begun = false;
        const auto start = list.P.OLEStartDrag;
        list.P.OLEStartDrag = [&, start](ui::DataObject& data, ui::DropEffect& allowed) {
            start(data, allowed);
            begun = true;
            go_on();
        };
        const bool lasts = &list == &form->ContactList; // those of the characters can end with the window
        const POINT from = row(list, position);
        ASSERT_TRUE(hover(list.P, from));
        mouse(MOUSEEVENTF_LEFTDOWN, from);
        mouse(0, {from.x + 8, from.y});
        EXPECT_TRUE(serveUntil([&] { return begun; })) << "the drag has not begun";
        serveAll();
        if (lasts) {
            list.P.OLEStartDrag = start;
        }
    }
    // Another program can take the release of the button before the drag has the mouse: then it is let go again.
    void letGo(POINT place) {
        let_go_at_ = place;
        mouse(0, place);
        mouse(MOUSEEVENTF_LEFTUP, place);
        again_ =
            SetTimer(nullptr, again_, 1000, [](HWND, UINT, UINT_PTR, DWORD) { mouse(MOUSEEVENTF_LEFTUP, let_go_at_); });
    }

    const com::Apartment apartment;
    const int system_dpi = ui::win32::screenDpi();
    Contacts client;
    std::unique_ptr<MatchupFrm> form;

  private:
    static inline POINT let_go_at_{};
    UINT_PTR again_ = 0;
};

TEST_F(MatchupDialogue, KeepsItsLayoutAtEveryResolution) {
    AddMatchup(u"ann@x", u"Max");
    open();
    form->onEscape();
    for (const int dpi : {96, 120, 144, 192}) {
        sendDpi(dpi);
        show(*form, "matchups-" + std::to_string(dpi));
        EXPECT_THAT(layoutMistakes(*form), IsEmpty()) << dpi;
    }
}

TEST_F(MatchupDialogue, ContactIsDraggedOntoACharacterAndBack) {
    open();
    EXPECT_THAT(keys(form->ContactList), ElementsAre(u"ann@x", u"bob@x", u"zoe@x"));
    drag(form->ContactList, 3, [this] { letGo(middle(listOf(u"Anna").P)); });
    EXPECT_EQ(storedCharacter(u"zoe@x"), u"Anna");
    EXPECT_THAT(keys(form->ContactList), ElementsAre(u"ann@x", u"bob@x"));
    EXPECT_THAT(keys(listOf(u"Anna")), ElementsAre(u"zoe@x"));
    EXPECT_EQ(listOf(u"Anna").Item(1).Caption, u"Zo\u00eb \u263a");

    drag(listOf(u"Anna"), 1, [this] { letGo(middle(form->ContactList.P)); });
    EXPECT_EQ(storedCharacter(u"zoe@x"), u"none");
    EXPECT_THAT(keys(form->ContactList), ElementsAre(u"ann@x", u"bob@x", u"zoe@x"));
    EXPECT_THAT(keys(listOf(u"Anna")), IsEmpty());
}

TEST_F(MatchupDialogue, ContactIsDraggedFromOneCharacterToAnother) {
    AddMatchup(u"ann@x", u"Anna");
    open();
    drag(listOf(u"Anna"), 1, [this] { letGo(middle(listOf(u"Bert").P)); });
    EXPECT_EQ(storedCharacter(u"ann@x"), u"Bert");
    EXPECT_THAT(keys(listOf(u"Anna")), IsEmpty());
    EXPECT_THAT(keys(listOf(u"Bert")), ElementsAre(u"ann@x"));
}

TEST_F(MatchupDialogue, EscapeAndALetGoElsewhereChangeNothing) {
    open();
    drag(form->ContactList, 1, [this] {
        mouse(0, middle(listOf(u"Anna").P));
        keyboard(VK_ESCAPE, true);
        keyboard(VK_ESCAPE, false);
    });
    mouse(MOUSEEVENTF_LEFTUP, middle(listOf(u"Anna").P));
    serveAll();
    drag(form->ContactList, 2,
         [this] { letGo(middle(form->HintLbl)); }); // a second press of the same row is a double click
    EXPECT_THAT(keys(form->ContactList), ElementsAre(u"ann@x", u"bob@x", u"zoe@x"));
    LoadMatchups();
    EXPECT_EQ(Matchups.Count(), 0U);
    EXPECT_TRUE(form->Visible());
}

// The button is still held: the drag ends by itself.
TEST_F(MatchupDialogue, SignOutInTheMiddleOfADragEndsTheDragToo) {
    AddMatchup(u"ann@x", u"Anna");
    const auto signOutWhile = [this](CoolListBox& list) {
        const POINT target = middle(form->HintLbl);
        drag(list, 1, [&] { ui::post([this] { form->Unload(); }); });
        EXPECT_TRUE(GetKeyState(VK_LBUTTON) & 0x8000) << "it was not the release that ended the drag";
        mouse(MOUSEEVENTF_LEFTUP, target);
        serveAll();
        EXPECT_FALSE(form->Visible());
        EXPECT_EQ(storedCharacter(u"ann@x"), u"Anna");
    };
    open();
    signOutWhile(form->ContactList);
    open();
    signOutWhile(listOf(u"Anna"));
    open();
    EXPECT_THAT(keys(listOf(u"Anna")), ElementsAre(u"ann@x"));
    EXPECT_THAT(keys(form->ContactList), ElementsAre(u"bob@x", u"zoe@x"));
}

TEST_F(MatchupDialogue, OtherAccountInTheMiddleOfADragFillsItAnewUnharmed) {
    AddMatchup(u"ann@x", u"Anna");
    open();
    const POINT list = middle(form->ContactList.P);
    drag(listOf(u"Anna"), 1, [&] {
        ui::post([&] { // in the drag's own loop
            form->Refill();
            letGo(list);
        });
    });
    ASSERT_TRUE(serveUntil([this] { return !form->ContactTimer.Enabled(); }));
    EXPECT_TRUE(form->Visible());
    EXPECT_EQ(keys(form->ContactList).size() + Matchups.Count(), 3U) << "each contact is in one place";
}

// A list of another program, beside the window.
class MatchupDialogueAndAnotherProgram : public MatchupDialogue {
  protected:
    static std::u16string command() {
        std::array<wchar_t, MAX_PATH> program{};
        const DWORD length = GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
        std::u16string line = u"\"";
        line += com::narrow(program.data(), length);
        return line + u"\" " + fromUtf8(neighbour_switch) + u" " + toText(left) + u" 10";
    }
    // Drags its row to the contacts; what that program tells of it.
    std::u16string dragToTheContacts() {
        EXPECT_TRUE(pullRow(window));
        letGo(middle(form->ContactList.P));
        EXPECT_TRUE(serveUntil([this] { return told(window) != u"dragging"; }));
        serveAll();
        return told(window);
    }
    void SetUp() override {
        ASSERT_TRUE(serveUntil([this] {
            window = FindWindowW(nullptr, neighbour_caption);
            RECT area{};
            return window && GetWindowRect(window, &area) && area.left == left && area.top == 10;
        }));
    }

    static constexpr int left = 800; // pixels, right of the matchup window
    const std::u16string stranger = u"Zo\u00eb \u263a";
    Process neighbour{command()};
    HWND window = nullptr;
};

TEST_F(MatchupDialogueAndAnotherProgram, ItsTextIsTakenBackWhereItIsAContact) {
    client.all.push_back(std::make_shared<Contacts::Contact>(stranger, u"Zo\u00eb"));
    open();
    form->MatchUpList.GiveContact(stranger, form->MatchUpList.GetPositionFromKey(u"Bert"));
    ASSERT_TRUE(MatchupExists(stranger));
    EXPECT_EQ(dragToTheContacts(), u"completed: 2, " + stranger);
    EXPECT_FALSE(MatchupExists(stranger));
    LoadMatchups();
    EXPECT_EQ(Matchups.Count(), 0U) << "nothing of it is left in the registry";
    EXPECT_THAT(keys(listOf(u"Bert")), IsEmpty());
    EXPECT_THAT(keys(form->ContactList), ElementsAre(u"ann@x", u"bob@x", u"zoe@x", stranger));
}

TEST_F(MatchupDialogueAndAnotherProgram, ItsTextIsRefusedWhereItIsNoContact) {
    open();
    EXPECT_EQ(dragToTheContacts(), u"completed: 0, " + stranger);
    EXPECT_THAT(keys(form->ContactList), ElementsAre(u"ann@x", u"bob@x", u"zoe@x"));
}

TEST_F(MatchupDialogue, KeyboardGivesAndTakesBack) {
    open();
    EXPECT_TRUE(form->ContactList.P.Focused());
    typeKey(VK_DOWN, VK_CONTROL);
    EXPECT_EQ(form->ContactList.GetSelectedKey(), u"bob@x");
    typeKey('X', VK_CONTROL);
    for (int tabs = 0; !listOf(u"Anna").P.Focused(); ++tabs) {
        ASSERT_LT(tabs, 10);
        typeKey(VK_TAB);
    }
    typeKey('V', VK_CONTROL);
    EXPECT_EQ(storedCharacter(u"bob@x"), u"Anna");
    typeKey(VK_DOWN, VK_CONTROL);
    typeKey(VK_DELETE);
    EXPECT_EQ(storedCharacter(u"bob@x"), u"none");
    EXPECT_THAT(keys(form->ContactList), ElementsAre(u"ann@x", u"zoe@x", u"bob@x"));
}

TEST_F(MatchupDialogue, CloseBoxAndEscapeLeaveIt) {
    open();
    SendMessageW(windowOf(*form), WM_CLOSE, 0, 0);
    typeKey(VK_ESCAPE);
    EXPECT_TRUE(form->Visible());
    typeKey('D', VK_MENU);
    EXPECT_FALSE(form->Visible());
}

TEST_F(MatchupDialogue, FitsASmallScreen) {
    open();
    for (const int dpi : {96, 120, 144, 192}) {
        sendDpi(dpi);
        RECT screen{}, own{};
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
        GetWindowRect(windowOf(*form), &own);
        EXPECT_LE(own.right - own.left, screen.right - screen.left) << dpi;
        EXPECT_LE(own.bottom - own.top, screen.bottom - screen.top) << dpi;
    }
}

} // namespace
} // namespace murmelix
