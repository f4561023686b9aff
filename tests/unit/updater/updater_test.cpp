#include "companions/updater/updater.h"

#include <gmock/gmock.h>

#include "platform/message_box.h"
#include "tests/fakes/fakes.h"

namespace updater {
namespace {

namespace fakes = murmelix::fakes;
namespace platform = murmelix::platform;
using testing::ElementsAre;
using testing::IsEmpty;

const std::u16string address = u"http://www.example.org/download/";

class UpdaterTest : public testing::Test {
  protected:
    UpdaterTest() { fakes::reset(); }
    static const std::vector<fakes::MessageBox>& boxes() { return fakes::messageBoxes().shown; }
};

TEST_F(UpdaterTest, PageIsOpenedOnYesAlone) {
    fakes::system().versions[u"C:\\Murmelix\\Murmelix.exe"] = {1, 4, 12};
    fakes::messageBoxes().answers = {platform::answer_yes, platform::answer_no};
    EXPECT_EQ(run({address}), exit_closed);
    EXPECT_THAT(fakes::system().shell_calls, ElementsAre(fakes::ShellCall{u"open", address, u"", u""}));
    EXPECT_EQ(run({address, u"more"}), exit_closed);
    EXPECT_EQ(fakes::system().shell_calls.size(), 1U);
    ASSERT_EQ(boxes().size(), 2U);
    EXPECT_EQ(boxes()[0], (fakes::MessageBox{u"Murmelix 1.4.12 is installed.\r\n\r\nNew versions are published at\r\n" +
                                                 address + u"\r\n\r\nWould you like to see whether there is one?",
                                             platform::mb_yes_no + platform::mb_information, u"Murmelix Updates"}));
}

TEST_F(UpdaterTest, ProgramWithoutAVersionIsInstalledAllTheSame) {
    EXPECT_EQ(run({u"HTTPS://example.org/"}), exit_closed);
    EXPECT_TRUE(boxes().at(0).text.starts_with(u"Murmelix is installed.\r\n"));
}

TEST_F(UpdaterTest, NothingButAWebAddressIsOpened) {
    fakes::messageBoxes().answers.assign(8, platform::answer_yes);
    for (const std::vector<std::u16string>& arguments : std::vector<std::vector<std::u16string>>{
             {}, {u""}, {u"C:\\Windows\\notepad.exe"}, {u"file://C:/x"}, {u" http://example.org/"}, {u"httpx://a"}}) {
        EXPECT_EQ(run(arguments), exit_no_address);
        EXPECT_EQ(boxes().back().style, platform::mb_critical);
    }
    EXPECT_THAT(fakes::system().shell_calls, IsEmpty());
}

} // namespace
} // namespace updater
