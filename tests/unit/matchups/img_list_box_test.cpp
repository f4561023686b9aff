#include "controls/img_list_box.h"

#include <functional>

#include <gmock/gmock.h>

#include "app/settings.h"
#include "app/shell_state.h"
#include "common/text.h"
#include "download/img_down_frm.h"
#include "matchups/matchup_store.h"
#include "tests/fakes/fakes.h"
#include "tests/fakes/gif.h"
#include "tests/fakes/ui/drag_drop.h"
#include "tests/fakes/ui/gif_decoder.h"
#include "tests/fakes/ui/windows.h"
#include "ui/form.h"
#include "ui/screen.h"

namespace murmelix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Key = ui::Key;

const std::u16string directory = u"C:\\Murmelix\\CharPics";
const std::string red("\xFF\x00\x00", 3);

fakes::Drag dragOf(const std::u16string& contact) {
    fakes::Drag drag{{}, ui::drop_move};
    drag.data.SetText(contact);
    return drag;
}

class ImgListBoxTest : public testing::Test {
  protected:
    // Three panels are in view, 130 pixels each.
    ImgListBoxTest() {
        fakes::reset();
        fakes::screen() = {};
        fakes::dragDrop() = {};
        Matchups.Clear();
        SettingsKeyPath = u"Software\\Murmelix\\1";
        CharPicsDir = directory;
        fakes::system().directories.insert(directory);
        form = std::make_unique<ui::Form>(nullptr, u"", ui::FormStyle::window);
        box = std::make_unique<ImgListBox>(*form);
        form->setScale(6000, 8000);
        box->Move({0, 0, 6000, 3 * 1950 + 2 * 405});
        box->ContactGiven = [this](const std::u16string& contact) { given.push_back(contact); };
        form->Show();
    }
    ~ImgListBoxTest() override { Matchups.Clear(); }

    void add(int count) {
        for (int i = 1; i <= count; ++i) {
            box->AddItem(u"", u"C" + std::u16string(1, static_cast<char16_t>(u'0' + i)));
        }
    }
    std::vector<int> tops() {
        std::vector<int> all;
        for (std::int16_t i = 1; i <= box->GetListCount(); ++i) {
            all.push_back(box->ListFrame(i).Top());
        }
        return all;
    }
    // The panels whose frames can be seen.
    std::vector<std::u16string> inView() {
        std::vector<std::u16string> captions;
        for (const ui::Control* frame : box->Strip.Children()) {
            if (frame->Visible()) {
                captions.push_back(frame->Caption());
            }
        }
        return captions;
    }
    std::vector<std::u16string> contacts(std::int16_t position) {
        std::vector<std::u16string> keys;
        CoolListBox& list = box->ListItems(position);
        for (std::int16_t i = 1; i <= list.GetItemCount(); ++i) {
            keys.push_back(list.Item(i).Key);
        }
        return keys;
    }
    std::vector<std::u16string> store() {
        std::vector<std::u16string> items;
        for (std::size_t i = 1; i <= Matchups.Count(); ++i) {
            items.push_back(Matchups.Item(i));
        }
        return items;
    }
    std::vector<std::u16string> marked() {
        std::vector<std::u16string> captions;
        for (const ui::Control* child : box->Strip.Children()) {
            if (const auto* frame = dynamic_cast<const ui::Frame*>(child); frame && frame->Highlighted()) {
                captions.push_back(frame->Caption());
            }
        }
        return captions;
    }
    void finishSlide() {
        for (int i = 0; box->Sliding(); ++i) {
            ASSERT_LT(i, 100);
            fakes::tick(box->SlideTimer);
        }
    }
    void scroll(std::size_t index) {
        ASSERT_TRUE(fakes::click(box->ScrollButt[index]));
        finishSlide();
    }
    // What the user does in the download window, which ends with it.
    void whileDownloading(std::function<void(ImgDownFrm&)> act) {
        fakes::screen().while_modal = [this, act = std::move(act)](const ui::Form& open) {
            auto& window = static_cast<ImgDownFrm&>(const_cast<ui::Form&>(open));
            downloads.push_back(window.CharacterName);
            act(window);
            if (fakes::screen().controls.contains(window.handle())) {
                window.Unload();
            }
        };
    }
    static std::u16string file(const std::u16string& character) { return directory + u"\\" + character + u".gif"; }

    std::unique_ptr<ui::Form> form;
    std::unique_ptr<ImgListBox> box;
    std::vector<std::u16string> given, downloads;
};

TEST_F(ImgListBoxTest, TextsAreTheGivenOnes) {
    EXPECT_EQ(box->ScrollButt[0].ToolTipText(), u"Scrolls up to view more characters");
    EXPECT_EQ(box->ScrollButt[1].ToolTipText(), u"Scrolls down to view more characters");
    box->AddItem(u"", u"Robby & Co");
    EXPECT_EQ(box->ListFrame(1).Caption(), u"Robby & Co");
    EXPECT_FALSE(box->ListFrame(1).UseMnemonic()) << "the name is shown as it is";
    EXPECT_EQ(box->ItemImage(1).ToolTipText(), u"Drag and drop contact names on me");
    EXPECT_EQ(box->ListItems(1).NoItemCaption(),
              u"No matchups for this character.[ENTER] [ENTER] Drag and drop MSN contact names here");
}

TEST_F(ImgListBoxTest, AddingTheSameCharacterTwiceCreatesOnePanel) {
    box->AddItem(u"", u"Robby");
    box->AddItem(file(u"Robby"), u"Robby");
    box->AddItem(u"", u"robby");
    EXPECT_EQ(box->GetListCount(), 2);
    EXPECT_EQ(box->GetPositionFromKey(u"Robby"), 1);
    EXPECT_EQ(box->GetPositionFromKey(u"robby"), 2);
    EXPECT_EQ(box->GetPositionFromKey(u"Nobody"), 0);
}

TEST_F(ImgListBoxTest, PanelsStandDirectlyBelowOneAnother) {
    add(4);
    EXPECT_EQ(box->PanelHeight(), 1950);
    EXPECT_THAT(tops(), ElementsAre(0, 1950, 3900, 5850));
    EXPECT_EQ(box->ListFrame(1).Height(), 1950);
    EXPECT_THAT(inView(), ElementsAre(u"C1", u"C2", u"C3"));
}

TEST_F(ImgListBoxTest, PanelsShareTheRoomThereIs) {
    add(4);
    box->Move({0, 0, 6000, 2 * 405 + 2 * 2145 + 100});
    EXPECT_EQ(box->PanelHeight(), 2145) << "a multiple of thirteen steps of whole pixels";
    EXPECT_THAT(inView(), ElementsAre(u"C1", u"C2"));
    box->Move({0, 0, 6000, 100});
    EXPECT_GT(box->PanelHeight(), 0);
    box->Move({0, 0, 6000, 2 * 405 + 5 * 1950});
    EXPECT_THAT(inView(), ElementsAre(u"C1", u"C2", u"C3", u"C4"));
    EXPECT_FALSE(box->ScrollButt[1].Enabled());
}

TEST_F(ImgListBoxTest, MissingPictureIsBlankAndTheFileIsShownWhereItIsThere) {
    fakes::files().content[file(u"Robby")] = fakes::plainGif(4, 2, red);
    box->AddItem(file(u"Robby"), u"Robby");
    box->AddItem(u"", u"Zoe");
    ASSERT_TRUE(box->ItemImage(1).image());
    EXPECT_EQ(box->ItemImage(1).image()->width, 4);
    EXPECT_EQ(box->ItemImage(1).image()->pixels.front(), fakes::decoded_pixel);
    EXPECT_FALSE(box->ItemImage(1).Enabled());
    EXPECT_FALSE(box->ItemImage(2).image());
    EXPECT_EQ(box->ItemImage(2).picture(), box->BlankItemImg.picture());
    EXPECT_TRUE(box->ItemImage(2).Enabled());
    EXPECT_FALSE(box->BlankItemImg.Visible());
    EXPECT_FALSE(box->MoreCharsItemImg.Visible());
}

TEST_F(ImgListBoxTest, PictureThatCannotBeShownCountsAsMissing) {
    const std::u16string network = u"\\\\server\\share\\Robby.gif";
    fakes::files().content[file(u"Bad")] = "GIF89a, or so it says";
    fakes::files().content[file(u"Empty")] = "";
    fakes::files().content[network] = fakes::plainGif(4, 2, red);
    box->AddItem(file(u"Bad"), u"Bad");
    box->AddItem(file(u"Empty"), u"Empty");
    box->AddItem(file(u"Gone"), u"Gone");
    box->AddItem(network, u"Robby");
    for (std::int16_t i = 1; i <= 4; ++i) {
        EXPECT_FALSE(box->ItemImage(i).image()) << i;
        EXPECT_TRUE(box->ItemImage(i).Enabled()) << i;
    }
}

TEST_F(ImgListBoxTest, ClickOnTheBlankPictureDownloadsItAndDisablesFurtherClicks) {
    box->AddItem(u"", u"Robby");
    whileDownloading([](ImgDownFrm&) { fakes::files().content[file(u"Robby")] = fakes::plainGif(4, 2, red); });
    EXPECT_TRUE(fakes::click(box->ItemImage(1)));
    EXPECT_THAT(downloads, ElementsAre(u"Robby"));
    EXPECT_TRUE(box->ItemImage(1).image());
    EXPECT_FALSE(fakes::click(box->ItemImage(1)));
    box->ItemImage_Click(1);
    EXPECT_EQ(downloads.size(), 1U);
}

TEST_F(ImgListBoxTest, FailedDownloadLeavesTheBlankPictureClickable) {
    box->AddItem(u"", u"Robby");
    whileDownloading([](ImgDownFrm& window) { window.CancelDoldButt_Click(); });
    EXPECT_TRUE(fakes::click(box->ItemImage(1)));
    EXPECT_TRUE(box->ItemImage(1).Enabled());
    whileDownloading([](ImgDownFrm&) { fakes::files().content[file(u"Robby")] = "<html>sorry</html>"; });
    EXPECT_TRUE(fakes::click(box->ItemImage(1)));
    EXPECT_TRUE(box->ItemImage(1).Enabled()) << "what came is no picture";
    whileDownloading([](ImgDownFrm&) { fakes::files().content[file(u"Robby")] = fakes::plainGif(1, 1, red); });
    EXPECT_TRUE(fakes::click(box->ItemImage(1)));
    EXPECT_FALSE(box->ItemImage(1).Enabled());
    EXPECT_EQ(downloads.size(), 3U);
}

TEST_F(ImgListBoxTest, BlankPictureIsClickedByTheKeyboard) {
    box->AddItem(u"", u"Robby");
    whileDownloading([](ImgDownFrm&) {});
    box->ItemImage(1).SetFocus();
    ASSERT_TRUE(box->ItemImage(1).Focused());
    EXPECT_TRUE(fakes::key(*form, Key::enter));
    EXPECT_TRUE(fakes::key(*form, Key::space));
    EXPECT_EQ(downloads.size(), 2U);
    fakes::files().content[file(u"Robby")] = fakes::plainGif(1, 1, red);
    EXPECT_TRUE(fakes::key(*form, Key::enter));
    EXPECT_FALSE(box->ItemImage(1).Focused()) << "there is nothing to click any more";
}

TEST_F(ImgListBoxTest, OneDownloadAtATime) {
    add(2);
    whileDownloading([this](ImgDownFrm&) { box->ItemImage_Click(2); });
    box->ItemImage_Click(1);
    EXPECT_THAT(downloads, ElementsAre(u"C1"));
}

TEST_F(ImgListBoxTest, MoreCharsPanelAcceptsNoDropsAndAsksForMore) {
    box->AddItem(u"MoreChars", u"Empty1");
    EXPECT_EQ(box->GetPositionFromKey(u"Empty1"), 1);
    EXPECT_EQ(box->ListFrame(1).Caption(), u"");
    EXPECT_FALSE(box->ListFrame(1).Enabled());
    EXPECT_EQ(box->ListItems(1).NoItemCaption(), u"You need to download more characters to have more matchups");
    EXPECT_EQ(box->ItemImage(1).picture(), box->MoreCharsItemImg.picture());
    EXPECT_EQ(fakes::drop(box->ListItems(1).P, dragOf(u"ann@x")), ui::drop_none);
    EXPECT_EQ(fakes::dragOver(box->Strip, dragOf(u"ann@x"), 10, 10), ui::drop_none);
    EXPECT_EQ(fakes::drop(box->Strip, dragOf(u"ann@x"), 10, 10), ui::drop_none);
    box->GiveContact(u"ann@x", 1);
    EXPECT_FALSE(fakes::click(box->ItemImage(1)));
    box->ItemImage_Click(1);
    EXPECT_THAT(downloads, IsEmpty());
    EXPECT_EQ(Matchups.Count(), 0U);
    EXPECT_THAT(contacts(1), IsEmpty());
}

TEST_F(ImgListBoxTest, DropOnAListMatchesTheContact) {
    add(2);
    box->CaptionOf = [](const std::u16string& contact) { return u"Friend " + contact; };
    EXPECT_EQ(fakes::drop(box->ListItems(2).P, dragOf(u"ann@x")), ui::drop_move);
    EXPECT_THAT(store(), ElementsAre(u"C2##ann@x"));
    EXPECT_EQ(fakes::state().registry.text("Software\\Murmelix\\1\\Matchup", "kxxJ\x82"), "C2");
    EXPECT_THAT(given, ElementsAre(u"ann@x"));
    ASSERT_THAT(contacts(2), ElementsAre(u"ann@x"));
    EXPECT_EQ(box->ListItems(2).Item(1).Caption, u"Friend ann@x");
    EXPECT_EQ(box->ListItems(2).Item(1).Text, u"ann@x") << "what a drag of it carries";
    EXPECT_EQ(box->ListItems(2).Selected(), 0);
}

TEST_F(ImgListBoxTest, WholeRowsFillTheList) {
    add(1);
    CoolListBox& list = box->ListItems(1);
    const int inside = list.P.surface().Height();
    EXPECT_GE(inside / list.ItemHeight(), 2);
    EXPECT_EQ(inside % list.ItemHeight(), 0);
    EXPECT_GE(list.ItemHeight(), 2 * list.P.surface().TextHeight());
    for (int i = 0; i <= inside / list.ItemHeight(); ++i) {
        EXPECT_FALSE(list.Scroll.Visible());
        box->GiveContact(u"friend" + toText(i) + u"@x", 1);
    }
    EXPECT_TRUE(list.Scroll.Visible()) << "for the one that does not fit";
}

TEST_F(ImgListBoxTest, DropBesideTheListIsTheSame) {
    add(4);
    scroll(1);
    EXPECT_EQ(fakes::dragOver(box->Strip, dragOf(u"ann@x"), 30, 129), ui::drop_move);
    EXPECT_EQ(fakes::drop(box->Strip, dragOf(u"ann@x"), 30, 129), ui::drop_move);
    EXPECT_EQ(fakes::drop(box->Strip, dragOf(u"bob@x"), 30, 130), ui::drop_move);
    EXPECT_THAT(store(), ElementsAre(u"C2##ann@x", u"C3##bob@x"));
}

TEST_F(ImgListBoxTest, NothingIsTakenBelowTheLastPanel) {
    add(1);
    EXPECT_EQ(fakes::dragOver(box->Strip, dragOf(u"ann@x"), 30, 131), ui::drop_none);
    EXPECT_EQ(fakes::drop(box->Strip, dragOf(u"ann@x"), 30, 131), ui::drop_none);
    EXPECT_EQ(fakes::drop(box->Strip, dragOf(u"ann@x"), 30, -1), ui::drop_none);
    EXPECT_EQ(Matchups.Count(), 0U);
}

TEST_F(ImgListBoxTest, TextThatIsNoContactIsNotTaken) {
    add(1);
    const std::u16string longest(254, u'x');
    for (const std::u16string& text : {std::u16string(), longest + u"x", std::u16string(u"two\r\nlines"),
                                       std::u16string(u"a\0b", 3), std::u16string(2'000'000, u'x')}) {
        EXPECT_EQ(fakes::drop(box->ListItems(1).P, dragOf(text)), ui::drop_none) << text.size();
        box->GiveContact(text, 1);
    }
    EXPECT_EQ(Matchups.Count(), 0U);
    EXPECT_THAT(given, IsEmpty());
    fakes::drop(box->ListItems(1).P, dragOf(longest));
    Matchups.Clear();
    LoadMatchups();
    EXPECT_TRUE(MatchupExists(longest));
}

TEST_F(ImgListBoxTest, ContactThatHasACharacterMovesAndItsMatchupGoesToTheEnd) {
    add(2);
    box->GiveContact(u"ann@x", 1);
    box->GiveContact(u"bob@x", 1);
    box->GiveContact(u"ann@x", 2);
    EXPECT_THAT(contacts(1), ElementsAre(u"bob@x"));
    EXPECT_THAT(contacts(2), ElementsAre(u"ann@x"));
    EXPECT_THAT(store(), ElementsAre(u"C1##bob@x", u"C2##ann@x"));
    box->GiveContact(u"bob@x", 1);
    EXPECT_THAT(contacts(1), ElementsAre(u"bob@x")) << "its own character keeps it";
    EXPECT_THAT(store(), ElementsAre(u"C2##ann@x", u"C1##bob@x"));
}

TEST_F(ImgListBoxTest, RowIsDraggedFromPanelToPanel) {
    add(2);
    box->GiveContact(u"ann@x", 1);
    CoolListBox& list = box->ListItems(1);
    ASSERT_NE(list.DragDropZone(), 0);
    fakes::dragDrop().let_go = [this](const fakes::Drag& drag) { return fakes::drop(box->ListItems(2).P, drag); };
    fakes::dragMouse(list.P, 10, 5, 30, 5);
    EXPECT_THAT(contacts(1), IsEmpty());
    EXPECT_THAT(contacts(2), ElementsAre(u"ann@x"));
}

TEST_F(ImgListBoxTest, PanelThatSomethingIsDraggedOverIsMarked) {
    add(3);
    const auto drag = dragOf(u"ann@x");
    using enum ui::DragState;
    EXPECT_THAT(marked(), IsEmpty());
    fakes::dragOver(box->ListItems(2).P, drag, 5, 5, enter);
    EXPECT_THAT(marked(), ElementsAre(u"C2"));
    fakes::dragOver(box->ListItems(2).P, drag, 6, 5);
    EXPECT_THAT(marked(), ElementsAre(u"C2"));
    fakes::dragOver(box->ListItems(2).P, drag, 0, 0, leave);
    EXPECT_THAT(marked(), IsEmpty());
    fakes::dragOver(box->Strip, drag, 30, 129, enter);
    EXPECT_THAT(marked(), ElementsAre(u"C1"));
    fakes::dragOver(box->Strip, drag, 30, 130);
    EXPECT_THAT(marked(), ElementsAre(u"C2")) << "one at a time";
    fakes::dragOver(box->Strip, drag, 0, 0, leave);
    EXPECT_THAT(marked(), IsEmpty());
    EXPECT_EQ(Matchups.Count(), 0U);
}

TEST_F(ImgListBoxTest, MarkEndsWithTheDrop) {
    add(3);
    for (ui::Control* target :
         {static_cast<ui::Control*>(&box->Strip), static_cast<ui::Control*>(&box->ListItems(1).P)}) {
        fakes::dragOver(*target, dragOf(u"ann@x"), 30, 50, ui::DragState::enter);
        ASSERT_THAT(marked(), ElementsAre(u"C1"));
        EXPECT_EQ(fakes::drop(*target, dragOf(u"ann@x"), 30, 50), ui::drop_move);
        EXPECT_THAT(marked(), IsEmpty());
        fakes::dragOver(*target, dragOf(u"no\ncontact"), 30, 50, ui::DragState::enter);
        EXPECT_EQ(fakes::drop(*target, dragOf(u"no\ncontact"), 30, 50), ui::drop_none);
        EXPECT_THAT(marked(), IsEmpty());
        fakes::dragOver(*target, dragOf(u"ann@x"), 30, 50, ui::DragState::enter);
        EXPECT_EQ(fakes::drop(*target, {{}, ui::drop_move}, 30, 50), ui::drop_none);
        EXPECT_THAT(marked(), IsEmpty()) << "what has no text is not taken";
    }
}

TEST_F(ImgListBoxTest, WhatTakesNoDropIsNotMarked) {
    add(1);
    box->AddItem(u"MoreChars", u"Empty1");
    using enum ui::DragState;
    fakes::dragOver(box->Strip, dragOf(u"ann@x"), 30, 200, enter);
    EXPECT_THAT(marked(), IsEmpty()) << "a placeholder";
    fakes::dragOver(box->Strip, dragOf(u"ann@x"), 30, 300);
    EXPECT_THAT(marked(), IsEmpty()) << "nothing";
    fakes::dragOver(box->Strip, {{}, ui::drop_none}, 30, 50);
    EXPECT_THAT(marked(), IsEmpty()) << "what allows nothing";
    fakes::dragOver(box->ListItems(1).P, {{}, ui::drop_none}, 30, 50);
    EXPECT_THAT(marked(), IsEmpty());
    fakes::dragOver(box->ScrollButt[1], dragOf(u"ann@x"), 5, 5, enter);
    EXPECT_THAT(marked(), IsEmpty());
}

TEST_F(ImgListBoxTest, MarkGoesToThePanelThatSlidesUnderTheMouse) {
    add(5);
    box->ScrollButt_Click(1);
    fakes::dragOver(box->Strip, dragOf(u"ann@x"), 30, 60, ui::DragState::enter);
    EXPECT_THAT(marked(), ElementsAre(u"C1"));
    finishSlide();
    EXPECT_THAT(marked(), ElementsAre(u"C2"));
    EXPECT_EQ(fakes::drop(box->Strip, dragOf(u"ann@x"), 30, 60), ui::drop_move);
    EXPECT_THAT(store(), ElementsAre(u"C2##ann@x"));
}

TEST_F(ImgListBoxTest, MarkEndsWithItsPanel) {
    add(3);
    fakes::dragOver(box->ListItems(2).P, dragOf(u"ann@x"), 5, 5, ui::DragState::enter);
    box->RemoveItemAtPos(2);
    EXPECT_THAT(marked(), IsEmpty());
    fakes::dragOver(box->Strip, dragOf(u"ann@x"), 30, 50, ui::DragState::enter);
    ASSERT_THAT(marked(), ElementsAre(u"C1"));
    box->ClearItems();
    add(2);
    EXPECT_THAT(marked(), IsEmpty());
    fakes::dragOver(box->Strip, dragOf(u"ann@x"), 0, 0, ui::DragState::leave);
    fakes::dragOver(box->ListItems(2).P, dragOf(u"ann@x"), 5, 5, ui::DragState::enter);
    EXPECT_THAT(marked(), ElementsAre(u"C2"));
}

TEST_F(ImgListBoxTest, RemovedContactKeepsItsMatchup) {
    add(5);
    box->GiveContact(u"ann@x", 1);
    box->GiveContact(u"bob@x", 5);
    box->RemoveContact(u"ann@x");
    box->RemoveContact(u"bob@x");
    box->RemoveContact(u"nobody@x");
    EXPECT_THAT(contacts(1), IsEmpty());
    EXPECT_THAT(contacts(5), IsEmpty());
    EXPECT_EQ(Matchups.Count(), 2U);
}

TEST_F(ImgListBoxTest, FillingAddsPanelsWhereThereAreNone) {
    AddMatchup(u"ann@x", u"Robby");
    AddMatchup(u"bob@x", u"Zoe");
    AddMatchup(u"cyd@x", u"Robby");
    AddMatchup(u"dan@x", u"..\\..\\secret");
    fakes::files().content[file(u"Zoe")] = fakes::plainGif(2, 2, red);
    box->AddItem(u"", u"First");
    box->FillListsWithMatchupsFromRegistry();
    ASSERT_EQ(box->GetListCount(), 4);
    EXPECT_EQ(box->ListFrame(2).Caption(), u"Robby");
    EXPECT_THAT(contacts(2), ElementsAre(u"ann@x", u"cyd@x"));
    EXPECT_TRUE(box->ItemImage(2).Enabled()) << "blank";
    EXPECT_TRUE(box->ItemImage(3).image());
    EXPECT_THAT(contacts(4), ElementsAre(u"dan@x"));
    EXPECT_FALSE(box->ItemImage(4).image());
    EXPECT_THAT(given, IsEmpty());
    EXPECT_EQ(box->ListItems(2).Selected(), 0);
}

TEST_F(ImgListBoxTest, OnlyPanelsThatWereInViewHaveWindows) {
    for (int i = 0; i < 200; ++i) {
        const std::u16string name = u"Character " + toText(i);
        for (int k = 0; k < 5; ++k) {
            AddMatchup(toText(i) + u"." + toText(k) + u"@x", name);
        }
    }
    box->FillListsWithMatchupsFromRegistry();
    EXPECT_EQ(box->GetListCount(), 200);
    EXPECT_EQ(box->Strip.Children().size(), 3U);
    scroll(1);
    EXPECT_EQ(box->Strip.Children().size(), 4U);
    EXPECT_THAT(contacts(200), testing::SizeIs(5)) << "made when it is asked for";
    EXPECT_EQ(box->Strip.Children().size(), 5U);
    EXPECT_FALSE(box->ListFrame(200).Visible());
}

TEST_F(ImgListBoxTest, StripSlidesInThirteenEqualSteps) {
    add(4);
    ASSERT_TRUE(fakes::click(box->ScrollButt[1]));
    std::vector<int> first, fourth;
    for (int i = 0; i < 13; ++i) {
        EXPECT_EQ(box->Sliding(), i < 12);
        first.push_back(tops()[0]);
        fourth.push_back(tops()[3]);
        EXPECT_EQ(fakes::screen().drawn_now.back(), box->Strip.handle());
        EXPECT_EQ(static_cast<int>(std::ranges::count(fakes::screen().drawn_now, box->Strip.handle())), i + 1);
        fakes::tick(box->SlideTimer);
    }
    EXPECT_THAT(first,
                ElementsAre(-150, -300, -450, -600, -750, -900, -1050, -1200, -1350, -1500, -1650, -1800, -1950));
    EXPECT_THAT(fourth, ElementsAre(5700, 5550, 5400, 5250, 5100, 4950, 4800, 4650, 4500, 4350, 4200, 4050, 3900));
    EXPECT_THAT(inView(), ElementsAre(u"C2", u"C3", u"C4"));
}

TEST_F(ImgListBoxTest, WhatStaysInViewSlidesAsItIsDrawn) {
    add(5);
    for (const std::size_t index : {1U, 1U, 0U}) {
        fakes::screen().moved.clear();
        scroll(index);
        const auto frames = box->Strip.Children();
        const auto moved = std::ranges::count_if(frames, [](const ui::Control* frame) {
            return std::ranges::find(fakes::screen().moved, frame->handle()) != fakes::screen().moved.end();
        });
        EXPECT_LE(moved, 1) << "the one that comes into view";
        for (const ui::Control* frame : frames) {
            if (frame->Visible()) {
                EXPECT_EQ(fakes::screen().bounds[frame->handle()].top, ui::toPixels(frame->Top()));
            }
        }
    }
}

TEST_F(ImgListBoxTest, ClickWhileTheStripSlidesStartsNoSecondSlide) {
    add(6);
    box->ScrollButt_Click(1);
    fakes::tick(box->SlideTimer);
    box->ScrollButt_Click(1);
    box->ScrollButt_Click(0);
    EXPECT_EQ(tops()[0], -300);
    finishSlide();
    EXPECT_EQ(tops()[0], -1950);
}

TEST_F(ImgListBoxTest, ButtonsAreEnabledWhereThereIsSomethingBeyond) {
    const auto enabled = [this] { return std::pair(box->ScrollButt[0].Enabled(), box->ScrollButt[1].Enabled()); };
    EXPECT_EQ(enabled(), std::pair(false, false));
    add(3);
    EXPECT_EQ(enabled(), std::pair(false, false)) << "the last panel is fully shown";
    add(5);
    EXPECT_EQ(enabled(), std::pair(false, true));
    scroll(1);
    EXPECT_EQ(enabled(), std::pair(true, true));
    scroll(1);
    EXPECT_EQ(enabled(), std::pair(true, false));
    box->ScrollButt_Click(1);
    EXPECT_FALSE(box->Sliding());
    scroll(0);
    scroll(0);
    EXPECT_EQ(enabled(), std::pair(false, true));
    box->ScrollButt_Click(0);
    EXPECT_FALSE(box->Sliding());
}

TEST_F(ImgListBoxTest, NothingSlidesWhereTheUserWantsNoMovement) {
    fakes::screen().animates = false;
    add(5);
    box->ScrollButt_Click(1);
    EXPECT_FALSE(box->Sliding());
    EXPECT_EQ(tops()[0], -1950);
}

TEST_F(ImgListBoxTest, WheelTurnsByAPanel) {
    add(5);
    box->Wheel(3);
    finishSlide();
    EXPECT_EQ(tops()[0], -1950);
    box->ListItems(2).P.Wheel(3);
    finishSlide();
    EXPECT_EQ(tops()[0], -3900) << "a list that is all in view has no use for it";
    for (int i = 0; i < 20; ++i) {
        box->GiveContact(u"friend" + toText(i) + u"@x", 3);
    }
    box->ListItems(3).P.Wheel(1);
    EXPECT_FALSE(box->Sliding());
    EXPECT_EQ(box->ListItems(3).Scroll.Value(), 1);
    box->Wheel(-3);
    finishSlide();
    EXPECT_EQ(tops()[0], -1950);
}

TEST_F(ImgListBoxTest, FineWheelTurnsByAPanelANotch) {
    add(5);
    const auto turn = [](ui::Control& control, int delta, int times) {
        for (int i = 0; i < times; ++i) {
            control.onWheel(delta);
        }
    };
    turn(*box, -20, 5);
    EXPECT_FALSE(box->Sliding());
    turn(*box, 20, 5);
    turn(*box, -20, 5);
    EXPECT_FALSE(box->Sliding()) << "it went there and back";
    turn(*box, -20, 1);
    EXPECT_TRUE(box->Sliding());
    turn(*box, -20, 60);
    finishSlide();
    EXPECT_EQ(tops()[0], -1950);
    turn(*box, -20, 4);
    EXPECT_FALSE(box->Sliding()) << "what was turned while it slid is not kept";
    turn(*box, -20, 2);
    finishSlide();
    EXPECT_EQ(tops()[0], -3900);
    turn(box->ListItems(3).P, 20, 6);
    EXPECT_TRUE(box->Sliding()) << "over a list that is all in view";
}

TEST_F(ImgListBoxTest, DragOverAButtonScrollsAndGoesOnWhileItStays) {
    add(6);
    const auto drag = dragOf(u"ann@x");
    EXPECT_EQ(fakes::dragOver(box->ScrollButt[1], drag, 5, 5, ui::DragState::enter), ui::drop_none);
    EXPECT_TRUE(box->Sliding());
    fakes::dragOver(box->ScrollButt[1], drag, 6, 5);
    EXPECT_FALSE(box->HoldTimer.Enabled());
    finishSlide();
    EXPECT_EQ(tops()[0], -1950);
    fakes::dragOver(box->ScrollButt[1], drag, 7, 5);
    EXPECT_FALSE(box->Sliding()) << "it pauses";
    ASSERT_TRUE(box->HoldTimer.Enabled());
    fakes::tick(box->HoldTimer);
    finishSlide();
    EXPECT_EQ(tops()[0], -3900);
    fakes::dragOver(box->ScrollButt[1], drag, 0, 0, ui::DragState::leave);
    EXPECT_FALSE(box->HoldTimer.Enabled());
    fakes::dragOver(box->ScrollButt[1], drag, 5, 5, ui::DragState::enter);
    finishSlide();
    fakes::tick(box->HoldTimer);
    EXPECT_FALSE(box->Sliding()) << "there is no more";
    EXPECT_FALSE(box->HoldTimer.Enabled());
    EXPECT_EQ(tops()[0], -5850);
    EXPECT_EQ(fakes::drop(box->ScrollButt[0], drag), ui::drop_none);
    EXPECT_EQ(Matchups.Count(), 0U);
}

TEST_F(ImgListBoxTest, PanelIsShownWhereverItIs) {
    add(9);
    box->ShowPanel(4);
    finishSlide();
    EXPECT_THAT(inView(), ElementsAre(u"C2", u"C3", u"C4"));
    box->ShowPanel(3);
    EXPECT_FALSE(box->Sliding()) << "it is in view";
    box->ShowPanel(9);
    EXPECT_FALSE(box->Sliding()) << "it is far";
    EXPECT_THAT(inView(), ElementsAre(u"C7", u"C8", u"C9"));
    box->ShowPanel(6);
    EXPECT_TRUE(box->Sliding());
    finishSlide();
    EXPECT_EQ(tops()[5], 0);
    EXPECT_THROW(box->ShowPanel(10), CollectionError);
    EXPECT_THROW(box->ListFrame(0), CollectionError);
    EXPECT_THROW(box->ListFrame(-1), CollectionError);
}

TEST_F(ImgListBoxTest, PageKeysGoFromListToList) {
    add(5);
    box->FocusPanel(3);
    std::vector<std::int16_t> heard;
    box->PanelKey = [&](const ui::Shortcut& key, std::int16_t position) {
        heard.push_back(position);
        return key == ui::Shortcut(Key::del);
    };
    EXPECT_TRUE(fakes::key(*form, Key::page_down));
    finishSlide();
    EXPECT_TRUE(box->ListItems(4).P.Focused());
    EXPECT_THAT(inView(), ElementsAre(u"C2", u"C3", u"C4"));
    EXPECT_TRUE(fakes::key(*form, Key::del));
    EXPECT_TRUE(fakes::key(*form, Key::page_up));
    EXPECT_TRUE(box->ListItems(3).P.Focused());
    EXPECT_TRUE(fakes::key(*form, {Key::end, ui::control_key}));
    finishSlide();
    EXPECT_TRUE(box->ListItems(5).P.Focused());
    EXPECT_FALSE(fakes::key(*form, Key::page_down));
    EXPECT_TRUE(fakes::key(*form, {Key::home, ui::control_key}));
    finishSlide();
    EXPECT_TRUE(box->ListItems(1).P.Focused());
    EXPECT_FALSE(fakes::key(*form, Key::page_up));
    EXPECT_THAT(heard, ElementsAre(3, 4, 4, 3, 5, 5, 1));
}

TEST_F(ImgListBoxTest, TabGoesThroughThePanelsInViewFromTopToBottom) {
    add(9);
    box->ShowPanel(9);
    scroll(0); // the first in view was made last
    box->ItemImage(6).SetFocus();
    for (std::int16_t position = 6; position <= 8; ++position) {
        EXPECT_TRUE(box->ItemImage(position).Focused()) << position;
        fakes::key(*form, Key::tab);
        EXPECT_TRUE(box->ListItems(position).P.Focused()) << position;
        fakes::key(*form, Key::tab);
    }
    EXPECT_TRUE(box->ScrollButt[0].Focused());
}

TEST_F(ImgListBoxTest, KeyboardStaysInViewWhereItsPanelLeaves) {
    add(5);
    box->FocusPanel(1);
    box->Wheel(3);
    finishSlide();
    EXPECT_TRUE(box->ListItems(2).P.Focused());
    box->FocusPanel(4);
    box->Wheel(-3);
    finishSlide();
    EXPECT_TRUE(box->ListItems(3).P.Focused());
}

TEST_F(ImgListBoxTest, RemovedPanelLeavesNoGap) {
    add(5);
    box->ScrollButt_Click(1); // in the middle of a slide
    box->RemoveItemAtPos(2);
    EXPECT_FALSE(box->Sliding());
    EXPECT_EQ(box->GetListCount(), 4);
    EXPECT_EQ(box->GetPositionFromKey(u"C3"), 2);
    EXPECT_THAT(inView(), ElementsAre(u"C3", u"C4", u"C5"));
    box->RemoveItemAtPos(4);
    EXPECT_THAT(tops(), ElementsAre(0, 1950, 3900)) << "there is nothing left to scroll";
    EXPECT_THROW(box->RemoveItemAtPos(4), CollectionError);
    box->ClearItems();
    EXPECT_EQ(box->GetListCount(), 0);
    EXPECT_THAT(box->Strip.Children(), IsEmpty());
    add(1);
    EXPECT_THAT(inView(), ElementsAre(u"C1"));
}

TEST_F(ImgListBoxTest, DownloadEndsWithThePanels) {
    add(1);
    whileDownloading([this](ImgDownFrm& window) {
        box->ClearItems();
        EXPECT_FALSE(window.Loaded());
    });
    box->ItemImage_Click(1);
    EXPECT_EQ(box->GetListCount(), 0);
}

TEST_F(ImgListBoxTest, PanelsMayChangeDuringADownload) {
    add(3);
    whileDownloading([this](ImgDownFrm&) {
        fakes::files().content[file(u"C3")] = fakes::plainGif(1, 1, red);
        box->RemoveItemAtPos(1);
    });
    box->ItemImage_Click(3);
    ASSERT_EQ(box->GetPositionFromKey(u"C3"), 2);
    EXPECT_TRUE(box->ItemImage(2).image());
}

TEST_F(ImgListBoxTest, FormMayEndDuringADownload) {
    add(1);
    fakes::screen().while_modal = [this](const ui::Form&) { box.reset(); };
    EXPECT_TRUE(fakes::click(box->ItemImage(1)));
    EXPECT_FALSE(box);
}

TEST_F(ImgListBoxTest, AnythingMayHappenWhereTheOwnerIsAsked) {
    const auto clears = [this](const auto&...) {
        box->ClearItems();
        return std::u16string();
    };
    const auto ends = [this](const auto&...) {
        box.reset();
        return std::u16string();
    };
    add(2);
    AddMatchup(u"ann@x", u"C1");
    AddMatchup(u"bob@x", u"C2");
    box->CaptionOf = [](const std::u16string&) {
        Matchups.Clear();
        return std::u16string();
    };
    box->FillListsWithMatchupsFromRegistry();
    EXPECT_THAT(contacts(1), ElementsAre(u"ann@x"));
    EXPECT_THAT(contacts(2), IsEmpty());

    box->CaptionOf = clears;
    box->GiveContact(u"cyd@x", 1);
    EXPECT_EQ(Matchups.Count(), 0U) << "its character is there no more";
    box->CaptionOf = nullptr;

    add(2);
    box->ContactGiven = clears;
    fakes::drop(box->ListItems(1).P, dragOf(u"cyd@x"));
    EXPECT_EQ(Matchups.Count(), 1U);

    add(2);
    box->PanelKey = [&](const auto&...) {
        box->ClearItems();
        return false;
    };
    box->FocusPanel(1);
    fakes::key(*form, Key::page_down);
    EXPECT_EQ(box->GetListCount(), 0);
    box->PanelKey = nullptr;
    box->ContactGiven = nullptr;

    add(2);
    box->GiveContact(u"dan@x", 1);
    fakes::dragDrop().let_go = [this](const fakes::Drag&) {
        box->ClearItems();
        return ui::drop_move;
    };
    fakes::dragMouse(box->ListItems(1).P, 10, 5, 30, 5);
    EXPECT_EQ(box->GetListCount(), 0);

    add(2);
    box->ContactGiven = ends;
    fakes::drop(box->ListItems(1).P, dragOf(u"eve@x"));
    EXPECT_FALSE(box);
}

TEST_F(ImgListBoxTest, PanelsStandInWholePixelsAtAnyResolution) {
    for (const double twips_per_pixel : {15.0, 12.0, 10.0, 7.5}) {
        fakes::screen().twips_per_pixel = twips_per_pixel;
        box = std::make_unique<ImgListBox>(*form);
        box->Move({0, 0, 6000, 3 * 1950 + 2 * 405});
        add(5);
        scroll(1);
        int below = 0;
        for (std::int16_t i = 2; i <= 4; ++i) {
            const ui::Rect& frame = fakes::screen().bounds[box->ListFrame(i).handle()];
            EXPECT_EQ(frame.top, below) << twips_per_pixel;
            below = frame.top + frame.height;
        }
        EXPECT_EQ(below, fakes::screen().bounds[box->Strip.handle()].height);
    }
}

} // namespace
} // namespace murmelix
