// What every window of every program owes to those who hear it and to those who have no mouse.
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <typeinfo>

#include <gmock/gmock.h>

#include "tests/fakes/fakes.h"
#include "tests/fakes/ui/windows.h"
#include "tests/forms/form_check.h"
#include "tests/forms/gallery.h"
#include "ui/button.h"
#include "ui/picture_box.h"
#include "ui/text_box.h"

namespace murmelix {

namespace test {

std::u16string galleryFolder() {
    return u"C:\\WINDOWS\\";
}

void putCharacter(const std::u16string& name) {
    fakes::screen().files[u"C:\\WINDOWS\\msagent\\chars\\"].push_back(name + u".acs");
}

void putSoundScheme(const std::u16string& name) {
    fakes::system().subdirectories[u"C:\\WINDOWS\\sounds\\"].push_back(name);
}

void settle() {
    fakes::runPosted();
}

} // namespace test

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class Forms : public testing::Test {
  protected:
    Forms() {
        fakes::reset();
        fakes::screen() = {};
    }
};

TEST_F(Forms, EveryControlHasAName) {
    test::visitAll(
        [](ui::Form& form, const std::string& name) { EXPECT_THAT(test::namingMistakes(form), IsEmpty()) << name; });
}

// What captions that are given share: the menu has the letter, and Tab leads to the other; where both are buttons, each
// press goes to the next one.
const std::set<std::string> given_letters{
    "Alt+M is menu &Murmelix and check box \"Minimize to System Tray on Startup\" in group \"Murmelix Options\"",
    "Alt+H is menu &Help and check box \"Auto Hide when Idle For a Short Time\" in group \"Character Options\"",
    "Alt+S is menu &Smilies and button \"Send\"", "Alt+C is button \"Change\" and button \"Close\""};

TEST_F(Forms, EveryControlIsReachedByTheKeyboard) {
    std::set<std::string> given;
    test::visitAll([&](ui::Form& form, const std::string& name) {
        std::vector<std::string> mistakes = test::keyboardMistakes(form);
        std::erase_if(mistakes, [&](const std::string& mistake) {
            return given_letters.contains(mistake) && given.insert(mistake).second;
        });
        EXPECT_THAT(mistakes, IsEmpty()) << name;
    });
    EXPECT_EQ(given, given_letters) << "what is no mistake any more need not be passed over";
}

// A window with what is wrong in it planted.
struct Faulty : ui::Form {
    Faulty() : Form(nullptr, u"Faulty", ui::FormStyle::dialog) {
        Box.setTakesFocus(true);
        for (ui::Control* control : controls()) {
            control->Move({0, 0, 100, 100});
        }
        Show();
    }
    std::vector<ui::Control*> controls() { return {&First, &Field, &Box, &Second, &Second2}; }
    ui::Button First{*this, u"&Find"};
    ui::TextBox Field{*this, u"what is in it is no name"};
    ui::PictureBox Box{*this};
    ui::Button Second{*this, u"&Forget"}, Second2{*this, u"&Forget"};
};

TEST_F(Forms, AControlWithoutANameIsFound) {
    Faulty form;
    EXPECT_THAT(test::namingMistakes(form),
                UnorderedElementsAre("a field without a name", "a button without a name", "another button \"Forget\""));
}

TEST_F(Forms, SharedLettersAreFound) {
    Faulty form;
    EXPECT_THAT(test::keyboardMistakes(form), UnorderedElementsAre("Alt+F is button \"Find\" and button \"Forget\"",
                                                                   "Alt+F is button \"Find\" and button \"Forget\""));
}

TEST_F(Forms, AControlThatTheTabKeyIsKeptFromIsFound) {
    Faulty form;
    form.Field.KeyPress = [](const ui::Shortcut& key) { return key.key == ui::Key::tab; };
    EXPECT_THAT(test::keyboardMistakes(form), testing::Contains(testing::HasSubstr("Tab does not get to")));
}

// A window that is added to a program is to be added to those that are visited.
TEST_F(Forms, NoneIsForgotten) {
    std::set<std::string> visited, known;
    test::visitAll([&](ui::Form& form, const std::string&) { visited.insert(typeid(form).name()); });
    const std::regex declared("class (\\w+)( final)? : public (murmelix::)?(ui::Form|NoticeFrm|ConversationForm)\\b");
    const std::filesystem::path root(MURMELIX_SOURCE_DIR);
    for (const char* folder : {"app", "companions", "download", "languages", "matchups", "quickmsg"}) {
        for (const auto& file : std::filesystem::recursive_directory_iterator(root / folder)) {
            if (file.path().extension() != ".h") {
                continue;
            }
            std::ifstream stream(file.path());
            const std::string text{std::istreambuf_iterator<char>(stream), {}};
            for (std::sregex_iterator at(text.begin(), text.end(), declared), end; at != end; ++at) {
                known.insert((*at)[1]);
            }
        }
    }
    EXPECT_GE(known.size(), 15u);
    for (const std::string& name : known) {
        const bool others_stand_on_it = name == "NoticeFrm" || name == "ConversationForm";
        EXPECT_TRUE(others_stand_on_it || std::ranges::any_of(visited,
                                                              [&](const std::string& each) {
                                                                  return each.find(std::to_string(name.size()) + name +
                                                                                   "E") != std::string::npos;
                                                              }))
            << name;
    }
}

} // namespace
} // namespace murmelix
