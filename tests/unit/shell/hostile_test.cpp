// What comes from outside and is none of what was agreed on: settings, folders, names, neighbours that hang.
#include "tests/unit/shell/shell_fixture.h"

#include <gmock/gmock.h>

#include "common/address.h"
#include "common/text.h"

namespace murmelix {
namespace {

using testing::ElementsAre;

class HostileTest : public ShellTest {
  protected:
    // Another start of the program, the registry and the neighbours being as they are.
    MainFrm& startAgain() {
        MainFormLoaded = IsReadingConversation = 0;
        another_ = std::make_unique<Loader>();
        another_->Main();
        return another_->MainFrm();
    }
    // Where a reading can begin and end, the start has left everything whole.
    void readOnce(MainFrm& window) {
        openConversation(7);
        window.StartConvButt_Click();
        EXPECT_NE(IsReadingConversation, 0);
        window.StartConvButt_Click();
        EXPECT_EQ(IsReadingConversation, 0);
    }

  private:
    std::unique_ptr<Loader> another_;
};

const std::vector<std::string> all_settings{
    "AutoHideIdleChar", "AutoAttachChar",  "AutoMinimize",    "AutoUpdate",       "AutoIgnoreChars",
    "IgnoredChars",     "AutoCorrectText", "AutoHideBalloon", "PlayReadEmoticon", "CurrentSoundScheme",
    "ShowMinimizeFrm",  "ShowTipFrm",      "ShowEmotTipFrm"};

TEST_F(HostileTest, EverySettingMayHoldAnyText) {
    const std::vector<std::string> texts{"99999999999999999999",
                                         "-99999999999",
                                         "abc",
                                         "1e400",
                                         "-1e-400",
                                         "NaN",
                                         "0x10",
                                         " 1",
                                         "+",
                                         "\x01\x02\xff",
                                         std::string("1\0junk", 6),
                                         std::string("\0\0\0", 3),
                                         std::string(1 << 20, '9'),
                                         std::string(1 << 20, 'x'),
                                         "../../..",
                                         "\\\\server\\share",
                                         "%s%n"};
    for (const std::string& text : texts) {
        for (const std::string& name : all_settings) {
            store(name, text);
        }
        MainFrm& window = startAgain();
        for (const ui::CheckBox* box :
             {&window.UpdatesCheck, &window.AutoMinimizeCheck, &window.HideIdleCheck, &window.AutoHideBalloonCheck,
              &window.PlayReadEmoticonCheck, &window.AutoAttachCheck, &window.AutoCorrectTextCheck,
              &window.IgnoreCharsCheck}) {
            EXPECT_TRUE(box->Value() == 0 || box->Value() == 1);
        }
        // No folder has such a name: the first one. An empty value is as good as none.
        EXPECT_EQ(window.SoundSchemeList.Text(), text[0] == '\0' ? u"default" : u"bells");
        readOnce(window);
    }
}

TEST_F(HostileTest, EverySettingMayBeOfAnyType) {
    for (const std::uint32_t type : {0U, 2U, 3U, 4U, 7U, 11U, 0xFFFFU}) {
        for (const std::string& data :
             {std::string(), std::string(1, '\1'), std::string("\1\0\0\0", 4), std::string(1 << 20, '\xfe')}) {
            for (const std::string& name : all_settings) {
                fakes::registry().put(account_key, name, type, data);
            }
            readOnce(startAgain());
        }
    }
}

TEST_F(HostileTest, NumberOfEveryFlagIsFalseOrTrueAndNeverAnotherSetting) {
    store("AutoAttachChar", "0.4");
    store("AutoHideBalloon", "65536");
    store("AutoCorrectText", "-1");
    const MainFrm& window = startAgain();
    EXPECT_EQ(window.AutoAttachCheck.Value(), 0);
    EXPECT_EQ(window.AutoHideBalloonCheck.Value(), 1) << "what does not fit is not zero";
    EXPECT_EQ(window.AutoCorrectTextCheck.Value(), 1);
}

TEST_F(HostileTest, SoundDirectoryMayBeMissingOrEmpty) {
    fakes::system().subdirectories.clear();
    MainFrm& missing = startAgain();
    EXPECT_EQ(missing.SoundSchemeList.ListCount(), 0);
    EXPECT_EQ(missing.SoundSchemeList.ListIndex(), -1);
    EXPECT_EQ(stored("CurrentSoundScheme"), "default") << "what was chosen is kept";
    fakes::system().subdirectories[u"C:\\Murmelix\\sounds\\"] = {};
    EXPECT_EQ(startAgain().SoundSchemeList.ListCount(), 0);
}

TEST_F(HostileTest, SoundDirectoryMayHoldFiveThousandSchemes) {
    auto& names = fakes::system().subdirectories[u"C:\\Murmelix\\sounds\\"];
    names.clear();
    for (int i = 0; i < 5000; ++i) {
        names.push_back(u"scheme " + toText(i));
    }
    store("CurrentSoundScheme", "scheme 4321");
    MainFrm& window = startAgain();
    EXPECT_EQ(window.SoundSchemeList.ListCount(), 5000);
    EXPECT_EQ(window.SoundSchemeList.ListIndex(), 4321);
    window.ReadOptnsButt_Click();
    EXPECT_TRUE(fakes::pick(window.SoundSchemeList, 4999));
    EXPECT_EQ(stored("CurrentSoundScheme"), "scheme 4999");
}

TEST_F(HostileTest, NamesOfAnyKindAreShown) {
    ASSERT_TRUE(start());
    const auto shown = [&](const std::u16string& name) {
        fakes::messenger().friendly_name = name;
        fakes::messenger().events.OnMyFriendlyNameChange(0, u"Me");
        return form().MainFrame.Caption();
    };
    std::u16string emoticons;
    for (int i = 0; i < 2500; ++i) {
        emoticons += u":)(Y)";
    }
    EXPECT_EQ(shown(emoticons), u" - Online (0 Unread)") << "nothing is left of it but the status";
    EXPECT_EQ(shown(std::u16string(10000, u'W')), std::u16string(10000, u'W') + u" - Online (0 Unread)");
    EXPECT_EQ(shown(u"((Bob) (]["), u"((Bob) (][ - Online (0 Unread)");
    EXPECT_EQ(shown(u"\u05e9\u05dc\u05d5\u05dd"), u"\u05e9\u05dc\u05d5\u05dd - Online (0 Unread)");
    EXPECT_EQ(shown(u""), u" - Online (0 Unread)");
    EXPECT_EQ(shown(u"a\r\nb"), u"a\r\nb - Online (0 Unread)");
    const std::u16string with_nul(u"a\0b", 3);
    EXPECT_EQ(shown(with_nul), with_nul + u" - Online (0 Unread)");
}

TEST_F(HostileTest, UnbalancedBracketOfANameTakesTheRestAlongWhenMailArrives) {
    ASSERT_TRUE(start());
    fakes::messenger().friendly_name = u"Bob (";
    fakes::messenger().events.OnMyStatusChange(0, 2);
    EXPECT_EQ(form().MainFrame.Caption(), u"Bob ( - Online (0 Unread)");
    fakes::messenger().unread = 3;
    fakes::messenger().events.OnUnreadEmailChange();
    EXPECT_EQ(form().MainFrame.Caption(), u"Bob (3 Unread)");
}

TEST_F(HostileTest, LetterOfTheUsersNameIsNoAccelerator) {
    ASSERT_TRUE(start());
    openConversation(7);
    fakes::messenger().friendly_name = u"&Sam";
    fakes::messenger().events.OnMyFriendlyNameChange(0, u"Me");
    EXPECT_TRUE(form().onMnemonicKey(u's'));
    EXPECT_NE(IsReadingConversation, 0) << "Alt+S still starts the reading";
}

TEST_F(HostileTest, SignInAndOutTwentyTimesInARowWhileMessagesArrive) {
    ASSERT_TRUE(start());
    form().TipFrm->OkButt_Click();
    std::size_t windows = 0;
    for (int round = 0; round < 20; ++round) {
        const auto window = openConversation(100 + round);
        form().StartConvButt_Click();
        window->say(u"Ann", u"hello");
        fakes::tick(form().ReadMoniter);
        fakes::messenger().status = 1;
        fakes::messenger().events.OnSignout();
        window->say(u"Ann", u"still there");
        fakes::tick(form().ReadMoniter);
        EXPECT_EQ(IsReadingConversation, 0);
        EXPECT_EQ(form().ConversationsList.GetItemCount(), 0);
        EXPECT_EQ(LoadedCharacterKeys.Count(), 0U);
        fakes::messenger().events.OnIMWindowDestroyed(window);

        fakes::messenger().status = 2;
        fakes::messenger().signin_name = round % 2 == 0 ? u"other@x" : u"me@x";
        fakes::messenger().events.OnSignin(0);
        EXPECT_FALSE(form().SignOutFrame.Visible());
        EXPECT_TRUE(form().ConversationsList.EnabledIt());
        EXPECT_EQ(SettingsKeyPath, u"Software\\Murmelix\\" + fakes::messenger().signin_name);
        if (round == 1) {
            windows = fakes::screen().bounds.size();
        }
        if (round >= 1) {
            EXPECT_EQ(fakes::screen().bounds.size(), windows) << "no window is made twice";
        }
    }
    EXPECT_EQ(fakes::screen().tray_calls.size(), 1U);
    EXPECT_EQ(shellCalls().size(), 1U) << "the updater ran once";
    EXPECT_TRUE(boxes().empty());
}

TEST_F(HostileTest, TicksDoNotPileUpWhileACallHangs) {
    ASSERT_TRUE(start());
    const auto window = openConversation(7);
    form().StartConvButt_Click();
    const int before = window->history_reads;
    int inside = 0;
    fakes::neighbours().during = [&](std::string_view call) {
        if (call != "History") {
            return;
        }
        fakes::neighbours().call_pending = true; // five seconds of ticks
        for (int i = 0; i < 500; ++i) {
            ++inside;
            fakes::tick(form().ReadMoniter);
            if (i % 100 == 0) {
                fakes::tick(form().WindowResizeTimer);
            }
        }
        fakes::neighbours().call_pending = false;
    };
    fakes::tick(form().ReadMoniter);
    EXPECT_EQ(inside, 500);
    EXPECT_EQ(window->history_reads, before + 1);
    fakes::neighbours().during = nullptr;
    fakes::tick(form().ReadMoniter);
    EXPECT_EQ(window->history_reads, before + 2);
}

TEST_F(HostileTest, ButtonsCanBeUsedInTheMiddleOfACallThatHangs) {
    ASSERT_TRUE(start());
    const auto window = openConversation(7);
    form().StartConvButt_Click();
    fakes::neighbours().during = [&](std::string_view call) {
        if (call == "History" && IsReadingConversation) {
            form().StartConvButt_Click();
        }
    };
    window->say(u"Ann", u"hello");
    fakes::state().agent.calls.clear();
    fakes::tick(form().ReadMoniter);
    EXPECT_EQ(IsReadingConversation, 0);
    for (const fakes::AgentCall& call : fakes::state().agent.calls) {
        EXPECT_NE(call.call, u"Speak") << "what was stopped is not read";
    }
}

TEST(Addresses, HostsAreTold) {
    for (const std::u16string host : {u"www.example.org", u"localhost", u"127.0.0.1", u"127.0.0.1:8080", u"a-b.c:1"}) {
        EXPECT_TRUE(isHost(host)) << toUtf8(host);
    }
    for (const std::u16string nonsense :
         {u"",         u".",   u"a..b",   u"-a",  u"a-",  u"a b",  u"a/b",  u"http://a",   u"a:",  u"a:0",  u"a:65536",
          u"a:123456", u"a:b", u"user@a", u"a?b", u"a#b", u"a\"b", u"a\\b", u"\u00e4.org", u":80", u"a:1:2"}) {
        EXPECT_FALSE(isHost(nonsense)) << toUtf8(nonsense);
    }
    EXPECT_TRUE(isHost(std::u16string(63, u'a') + u".org"));
    EXPECT_FALSE(isHost(std::u16string(64, u'a') + u".org"));
    std::u16string long_name;
    while (long_name.size() < 254) {
        long_name += u"ab.";
    }
    EXPECT_FALSE(isHost(long_name + u"c"));
    EXPECT_FALSE(isHost(std::u16string(u"a\0b", 3)));
}

TEST(Addresses, MailAddressesAreTold) {
    for (const std::u16string address : {u"support@example.org", u"a.b+c_d-e@x"}) {
        EXPECT_TRUE(isMailAddress(address)) << toUtf8(address);
    }
    for (const std::u16string nonsense : {u"", u"@", u"a@", u"@a", u"a", u"a@b@c", u"a b@c", u"a@b c", u"a?cc=x@b",
                                          u"a@b?subject=x", u"a@b:25", u"<a@b>"}) {
        EXPECT_FALSE(isMailAddress(nonsense)) << toUtf8(nonsense);
    }
    EXPECT_FALSE(isMailAddress(std::u16string(65, u'a') + u"@b"));
}

} // namespace
} // namespace murmelix
