#include "quickmsg/quick_msg_frm.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/shell_state.h"
#include "tests/fakes/ansi.h"
#include "tests/fakes/fakes.h"
#include "tests/fakes/ui/windows.h"

namespace murmelix {
namespace {

using fakes::ForeignInput;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int32_t conversation = 500;
constexpr std::intptr_t history = 501, input = 502, send_button = 503;
const std::u16string prompt = u"Enter your quick message and press Enter...";

class QuickMsgFRMTest : public testing::Test {
  protected:
    QuickMsgFRMTest() {
        fakes::reset();
        fakes::screen() = {};
        IsReadingConversation = -1;
        ReadingWindowHandle = conversation;
        putEdits("RichEdit20W", "RichEdit20W");
        form.Show();
    }
    ~QuickMsgFRMTest() override {
        IsReadingConversation = 0;
        ReadingWindowHandle = 0;
    }

    static void putEdits(const std::string& first, const std::string& second) {
        fakes::foreignWindows().windows = {
            {history, conversation, first, "what was said"},
            {504, conversation, "Button", "&Invite"},
            {input, conversation, second, ""},
            {send_button, conversation, "Button", "&Send"},
        };
    }

    static std::vector<ForeignInput> sent(const std::string& text, std::intptr_t box = input) {
        return {{.window = box, .text = text, .code = 0, .down = false},
                {.window = send_button, .text = "", .code = 32, .down = true},
                {.window = send_button, .text = "", .code = 32, .down = false}};
    }

    std::u16string text() const { return form.QuicTextBox.Text(); }

    QuickMsgFRM form;
};

TEST_F(QuickMsgFRMTest, TextsAreTheGivenOnes) {
    EXPECT_EQ(text(), prompt);
    EXPECT_EQ(form.QuicTextBox.ToolTipText(), u"Type a quick message and press Enter to send");
    EXPECT_EQ(form.SendButt.Caption(), u"&Send");
    EXPECT_EQ(form.SendButt.ToolTipText(), u"Send quick message");
    EXPECT_EQ(form.SmiliesMenu.Caption(), u"&Smilies");
    EXPECT_EQ(form.CannedMenu.Caption(), u"&Canned");
    EXPECT_EQ(form.EffectsMenu.Caption(), u"&Effects");
    EXPECT_EQ(form.CloseMenu.Caption(), u"Cl&ose");
    std::vector<std::u16string> captions;
    for (const ui::Menu* menu : {&form.SmiliesMenu, &form.CannedMenu, &form.EffectsMenu}) {
        for (const ui::MenuItem* item : menu->items()) {
            captions.push_back(item->Caption());
        }
    }
    EXPECT_THAT(captions, testing::ElementsAreArray<std::u16string>({u"Happy",
                                                                     u"Open-Mouthed",
                                                                     u"Winking",
                                                                     u"Surprised",
                                                                     u"Tongue out",
                                                                     u"Hot",
                                                                     u"Angry",
                                                                     u"Confused",
                                                                     u"Embarrassed",
                                                                     u"Sad",
                                                                     u"Crying",
                                                                     u"Disappointed",
                                                                     u"Thank you",
                                                                     u"Always a pleasure",
                                                                     u"Be right back (BRB)",
                                                                     u"Sorry, I was away",
                                                                     u"- For Murmelix Users Only -",
                                                                     u"(lol)",
                                                                     u"(birthday)",
                                                                     u"(whistle)",
                                                                     u"(boo)",
                                                                     u"(run)",
                                                                     u"(ohh)",
                                                                     u"(slap)",
                                                                     u"(sniff)",
                                                                     u"(sigh)"}));
    EXPECT_FALSE(form.EffectsMenu.items().front()->Enabled());
}

TEST_F(QuickMsgFRMTest, TheTextHasTheFocusAndIsSelected) {
    EXPECT_TRUE(form.QuicTextBox.Focused());
    EXPECT_EQ(fakes::screen().selections.at(form.QuicTextBox.handle()), fakes::Selection::all);
    EXPECT_FALSE(form.SendButt.Enabled());
}

// Else the first word typed would be put before the prompt, and sent with it.
TEST_F(QuickMsgFRMTest, TheTextIsSelectedAgainWhereTheFocusHasNeverLeftIt) {
    form.Unload();
    form.QuicTextBox.GotFocus = nullptr;
    fakes::screen().selections.clear();
    form.Show();
    EXPECT_EQ(fakes::screen().selections.at(form.QuicTextBox.handle()), fakes::Selection::all);
}

TEST_F(QuickMsgFRMTest, ADoubleClickSelectsTheWholeText) {
    fakes::type(form.QuicTextBox, u"hello there");
    fakes::screen().selections.clear();
    ui::raise(form.QuicTextBox.DblClick);
    EXPECT_EQ(fakes::screen().selections.at(form.QuicTextBox.handle()), fakes::Selection::all);
}

TEST_F(QuickMsgFRMTest, EachSmileyIsAppendedAndHasItsPicture) {
    const std::vector<std::u16string> texts{u":)", u":D", u";)", u":O", u":p",  u"(H)",
                                            u":@", u":S", u":$", u":(", u":'(", u":|"};
    ASSERT_THAT(form.SmiliesMenu.items(), SizeIs(texts.size()));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        form.QuicTextBox.setText(u"so");
        fakes::screen().selections.clear();
        EXPECT_TRUE(fakes::choose(*form.SmiliesMenu.items()[i]));
        EXPECT_EQ(text(), u"so" + texts[i]);
        EXPECT_TRUE(form.SmiliesMenu.items()[i]->picture());
        EXPECT_TRUE(form.SmiliesMenu.items()[i]->inColours());
        EXPECT_EQ(fakes::screen().selections.at(form.QuicTextBox.handle()), fakes::Selection::end);
    }
}

TEST_F(QuickMsgFRMTest, WinkingWhileThePromptShowsGivesExactlyTheEmoticon) {
    fakes::choose(*fakes::find(form.SmiliesMenu, u"Winking"));
    EXPECT_EQ(text(), u";)");
    EXPECT_TRUE(form.SendButt.Enabled());
}

TEST_F(QuickMsgFRMTest, ThankYouReplacesWhatWasTypedAndAnEffectIsAppended) {
    fakes::type(form.QuicTextBox, u"I mean");
    fakes::choose(*fakes::find(form.CannedMenu, u"Thank you"));
    EXPECT_EQ(text(), u"Thank you");
    fakes::choose(*fakes::find(form.EffectsMenu, u"(sigh)"));
    EXPECT_EQ(text(), u"Thank you(sigh)");
    EXPECT_EQ(fakes::screen().selections.at(form.QuicTextBox.handle()), fakes::Selection::end);
}

TEST_F(QuickMsgFRMTest, EveryCannedTextAndEffectTakesThePlaceOfThePrompt) {
    for (ui::Menu* menu : {&form.CannedMenu, &form.EffectsMenu}) {
        for (ui::MenuItem* item : menu->items()) {
            form.QuicTextBox.setText(prompt);
            const bool heading = item->Caption() == u"- For Murmelix Users Only -";
            EXPECT_EQ(fakes::choose(*item), !heading);
            EXPECT_EQ(text(), heading ? prompt : item->Caption());
        }
    }
}

TEST_F(QuickMsgFRMTest, SendIsEnabledForATextOfOnesOwnAlone) {
    fakes::type(form.QuicTextBox, u"hi");
    EXPECT_TRUE(form.SendButt.Enabled());
    fakes::type(form.QuicTextBox, u"");
    EXPECT_FALSE(form.SendButt.Enabled());
    fakes::type(form.QuicTextBox, u"hi");
    fakes::type(form.QuicTextBox, prompt);
    EXPECT_FALSE(form.SendButt.Enabled());
}

TEST_F(QuickMsgFRMTest, EnterSendsTheTextAndPressesSend) {
    fakes::type(form.QuicTextBox, u"na\u00efve \u20ac5 \u0416");
    EXPECT_TRUE(fakes::key(form, ui::Key::enter));
    EXPECT_EQ(fakes::foreignWindows().input, sent("na\xEFve \x80"
                                                  "5 ?"));
    EXPECT_FALSE(form.Loaded());
    EXPECT_THAT(fakes::messageBoxes().shown, IsEmpty());
}

TEST_F(QuickMsgFRMTest, EnterWithThePromptOrWithoutATextSendsNothing) {
    for (const std::u16string& nothing : {prompt, std::u16string()}) {
        form.Show();
        form.QuicTextBox.setText(nothing);
        form.SendButt_Click();
        EXPECT_THAT(fakes::foreignWindows().input, IsEmpty());
        EXPECT_FALSE(form.Loaded());
    }
}

TEST_F(QuickMsgFRMTest, NothingIsSentWhereNothingIsRead) {
    for (const bool flag : {false, true}) {
        form.Show();
        IsReadingConversation = flag ? -1 : 0;
        ReadingWindowHandle = flag ? 0 : conversation;
        fakes::type(form.QuicTextBox, u"hi");
        fakes::click(form.SendButt);
        EXPECT_THAT(fakes::foreignWindows().input, IsEmpty());
        EXPECT_FALSE(form.Loaded());
        EXPECT_THAT(fakes::messageBoxes().shown, IsEmpty());
    }
}

TEST_F(QuickMsgFRMTest, EveryLayoutOfAConversationWindowTakesTheText) {
    const std::pair<const char*, const char*> layouts[] = {{"RichEdit20A", "RichEdit20A"},
                                                           {"RichEdit20W", "RichEdit20W"},
                                                           {"RichEdit20A", "InkEdit"},
                                                           {"RichEdit20W", "InkEdit"}};
    for (const auto& [first, second] : layouts) {
        SCOPED_TRACE(std::string(first) + " and " + second);
        fakes::foreignWindows().input.clear();
        putEdits(first, second);
        form.Show();
        fakes::type(form.QuicTextBox, u"hi");
        fakes::click(form.SendButt);
        EXPECT_EQ(fakes::foreignWindows().input, sent("hi"));
    }
}

TEST_F(QuickMsgFRMTest, TwoWideBoxesAreTakenBeforeAnInkEdit) {
    fakes::foreignWindows().windows.push_back({510, conversation, "InkEdit", ""});
    fakes::foreignWindows().windows.push_back({511, conversation, "RichEdit20A", ""});
    fakes::type(form.QuicTextBox, u"hi");
    fakes::click(form.SendButt);
    EXPECT_EQ(fakes::foreignWindows().input, sent("hi"));
}

TEST_F(QuickMsgFRMTest, AMissingInputBoxIsTold) {
    const std::vector<std::vector<fakes::ForeignWindow>> without{
        {},
        {{history, conversation, "RichEdit20W", ""}},
        {{input, conversation, "InkEdit", ""}, {history, conversation, "RichEdit20W", ""}},
        {{input, conversation, "InkEdit", ""}},
        {{history, conversation, "RichEdit20A", ""}, {input, conversation, "RichEdit20W", ""}},
        {{history, 77, "RichEdit20W", ""}, {input, 77, "RichEdit20W", ""}},
    };
    for (const auto& windows : without) {
        fakes::messageBoxes().shown.clear();
        fakes::foreignWindows().windows = windows;
        form.Show();
        fakes::type(form.QuicTextBox, u"hi");
        fakes::click(form.SendButt);
        EXPECT_THAT(fakes::messageBoxes().shown,
                    ElementsAre(fakes::MessageBox{
                        u"Murmelix is unable to send your quick message. Try sending it manually!\r\nPlease report "
                        u"this to support@example.org",
                        16, u"Unable to send Quick message!"}));
        EXPECT_THAT(fakes::foreignWindows().input, IsEmpty());
        EXPECT_FALSE(form.Loaded());
    }
}

TEST_F(QuickMsgFRMTest, EscapeClosesWithoutSending) {
    fakes::type(form.QuicTextBox, u"hi");
    EXPECT_TRUE(fakes::key(form, ui::Key::escape));
    EXPECT_FALSE(form.Loaded());
    EXPECT_THAT(fakes::foreignWindows().input, IsEmpty());
}

TEST_F(QuickMsgFRMTest, CloseInTheMenuBarCloses) {
    EXPECT_TRUE(fakes::choose(form.CloseMenu));
    EXPECT_FALSE(form.Loaded());
    EXPECT_FALSE(fakes::choose(form.CloseMenu)) << "it is not there any more";
}

TEST_F(QuickMsgFRMTest, ThePromptIsThereAgainTheNextTime) {
    fakes::type(form.QuicTextBox, u"never mind");
    fakes::close(form);
    form.Show();
    EXPECT_EQ(text(), prompt);
    EXPECT_FALSE(form.SendButt.Enabled());
}

} // namespace
} // namespace murmelix
