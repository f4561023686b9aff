#include "languages/lang_frm.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "languages/language_table.h"
#include "tests/fakes/fakes.h"
#include "tests/fakes/ui/windows.h"

namespace murmelix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LangFRMTest : public testing::Test {
  protected:
    LangFRMTest() {
        fakes::reset();
        fakes::screen() = {};
        InitLanguageTable();
    }
    ~LangFRMTest() override {
        LanguageTable.Clear();
        LanguageToSwitch = 0;
    }

    void show(std::int16_t language) {
        LanguageToSwitch = language;
        form.Show();
    }

    LangFRM form;
};

TEST_F(LangFRMTest, TheListLeavesTheCaptionOfItsFrameFree) {
    EXPECT_GT(form.LanguageList.Top(), form.Frame1.neededSize().height);
}

TEST_F(LangFRMTest, TextsAreTheGivenOnes) {
    EXPECT_EQ(form.Frame1.Caption(), u"Change Language");
    EXPECT_EQ(form.ChangeButt.Caption(), u"&Change");
    EXPECT_EQ(form.ChangeButt.ToolTipText(), u"Changes the character's language to the selected one");
    EXPECT_EQ(form.CloseButt.Caption(), u"&Close");
    EXPECT_EQ(form.CloseButt.ToolTipText(), u"Close the window and discard any changes");
    EXPECT_EQ(form.GetLangButt.Caption(), u"Get More Languages");
    EXPECT_EQ(form.GetLangButt.ToolTipText(), u"Download more languages");
}

TEST_F(LangFRMTest, LanguagesAreListedByTheirShownNamesWithTheirIdentifiers) {
    const std::vector<std::pair<std::u16string, std::u16string>> expected{
        {u"Arabic", u"%1025"},
        {u"Basque", u"%1069"},
        {u"Chinese (Simplified)", u"%2052"},
        {u"Chinese (Traditional)", u"%1028"},
        {u"Croation", u"%1050"},
        {u"Czech", u"%1029"},
        {u"Danish", u"%1030"},
        {u"Dutch", u"%1043"},
        {u"English (US)", u"%1033"},
        {u"English (GB)", u"%2057"},
        {u"Finnish", u"%1035"},
        {u"French", u"%1036"},
        {u"German", u"%1031"},
        {u"Greek", u"%1032"},
        {u"Hebrew", u"%1037"},
        {u"Hungarian", u"%1038"},
        {u"Italian", u"%1040"},
        {u"Japanese", u"%1041"},
        {u"Korean", u"%1042"},
        {u"Norwegian", u"%1044"},
        {u"Polish", u"%1045"},
        {u"Portuguese", u"%2070"},
        {u"Portuguese (Brazil)", u"%1046"},
        {u"Romanian", u"%1048"},
        {u"Russian", u"%1049"},
        {u"Slovakian", u"%1051"},
        {u"Slovenian", u"%1060"},
        {u"Spanish", u"%3082"},
        {u"Swedish", u"%1053"},
        {u"Thai", u"%1054"},
        {u"Turkish", u"%1055"},
    };
    for (int times = 1; times <= 2; ++times) { // it is filled anew each time
        show(1033);
        std::vector<std::pair<std::u16string, std::u16string>> rows;
        for (std::int16_t i = 1; i <= form.LanguageList.GetItemCount(); ++i) {
            rows.emplace_back(form.LanguageList.Item(i).Caption, form.LanguageList.Item(i).Key);
            EXPECT_EQ(form.LanguageList.Item(i).Text, u"");
        }
        EXPECT_EQ(rows, expected);
        form.Unload();
    }
}

TEST_F(LangFRMTest, TheLanguageOfTheCharacterIsSelectedAndInView) {
    show(1055);
    EXPECT_EQ(form.LanguageList.GetSelectedKey(), u"%1055");
    EXPECT_EQ(form.LanguageList.Selected(), 31);
    EXPECT_GT(form.LanguageList.Scroll.Value(), 0);
}

TEST_F(LangFRMTest, ALanguageThatIsNotInTheTableSelectsNoRow) {
    show(1033);
    form.Unload();
    show(1034);
    EXPECT_EQ(form.LanguageList.Selected(), 0);
    EXPECT_FALSE(form.ChangeButt.Enabled());
    EXPECT_FALSE(fakes::key(form, ui::Key::enter));
    form.ChangeButt_Click();
    EXPECT_EQ(LanguageToSwitch, 1034);
    EXPECT_TRUE(form.Loaded());
    EXPECT_TRUE(fakes::key(form, ui::Key::end));
    EXPECT_TRUE(form.ChangeButt.Enabled());
}

TEST_F(LangFRMTest, ChangeTakesTheSelectedOne) {
    for (const auto& [key, language] : {std::pair{u"%2057", 2057}, {u"%2070", 2070}, {u"%3082", 3082}}) {
        show(1033);
        form.LanguageList.SelectKey(key, true);
        EXPECT_TRUE(fakes::click(form.ChangeButt));
        EXPECT_EQ(LanguageToSwitch, language);
        EXPECT_FALSE(form.Loaded());
    }
}

TEST_F(LangFRMTest, ChangeOfTheSelectedRowAndCloseLeaveTheLanguage) {
    show(1031);
    EXPECT_TRUE(fakes::click(form.ChangeButt));
    EXPECT_EQ(LanguageToSwitch, 1031);
    show(1031);
    form.LanguageList.SelectKey(u"%1036", true);
    EXPECT_TRUE(fakes::click(form.CloseButt));
    EXPECT_EQ(LanguageToSwitch, 1031);
    EXPECT_FALSE(form.Loaded());
}

TEST_F(LangFRMTest, TheCloseBoxIsRefused) {
    show(1031);
    fakes::close(form);
    EXPECT_TRUE(form.Loaded());
    EXPECT_TRUE(form.Visible());
}

TEST_F(LangFRMTest, GetMoreLanguagesOpensThePage) {
    show(1031);
    EXPECT_TRUE(fakes::click(form.GetLangButt));
    EXPECT_THAT(
        fakes::system().shell_calls,
        ElementsAre(fakes::ShellCall{u"Open", u"http://www.example.org/Murmelix/download/langauges.html", u"0", u"0"}));
    EXPECT_TRUE(form.Loaded());
}

TEST_F(LangFRMTest, TheKeyboardDoesItAll) {
    show(1033);
    EXPECT_TRUE(form.LanguageList.P.Focused());
    const auto selected = [&] { return form.LanguageList.Item(form.LanguageList.Selected()).Caption; };
    const std::vector<std::pair<ui::Key, std::u16string>> steps{
        {ui::Key::down, u"English (GB)"},    {ui::Key::up, u"English (US)"}, {ui::Key::page_down, u"Korean"},
        {ui::Key::page_up, u"English (US)"}, {ui::Key::home, u"Arabic"},     {ui::Key::up, u"Arabic"},
        {ui::Key::end, u"Turkish"},          {ui::Key::down, u"Turkish"},    {ui::Key::page_up, u"Polish"}};
    for (const auto& [key, expected] : steps) {
        EXPECT_TRUE(fakes::key(form, key));
        EXPECT_EQ(selected(), expected);
    }
    EXPECT_TRUE(fakes::key(form, ui::Key::enter));
    EXPECT_EQ(LanguageToSwitch, 1045);
    show(1033);
    fakes::key(form, ui::Key::home);
    EXPECT_TRUE(fakes::key(form, ui::Key::escape));
    EXPECT_EQ(LanguageToSwitch, 1033);
    EXPECT_FALSE(form.Loaded());
}

TEST_F(LangFRMTest, ADoubleClickChanges) {
    show(1033);
    form.LanguageList.SelectKey(u"%1053", true);
    form.LanguageList.DblClick();
    EXPECT_EQ(LanguageToSwitch, 1053);
    EXPECT_FALSE(form.Loaded());
}

} // namespace
} // namespace murmelix
