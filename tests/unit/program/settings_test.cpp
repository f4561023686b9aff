#include "tests/unit/program/program_test.h"

#include "common/ansi.h"
#include "platform/registry.h"

namespace murmelix::test {

namespace {

constexpr platform::Hive hive = platform::Hive::current_user;
constexpr const char* user_key = "Software\\Murmelix\\ann@x";

class Settings : public ProgramTest {
  protected:
    static void signIn(const std::u16string& name = u"ann@x") {
        SettingsKeyPath = u"Software\\Murmelix\\" + name;
        fakes::registry().log.clear();
    }

    static std::u16string loadedKeyPath() {
        const auto messenger = platform::createMessengerApi({});
        return SettingsKeyPathFor(*messenger);
    }
};

TEST_F(Settings, FirstRunWritesAllThirteenInTheTablesOrder) {
    signIn();
    LoadSettings();

    const auto* values = fakes::registry().key(user_key);
    ASSERT_NE(values, nullptr);
    std::vector<std::pair<std::string, std::string>> written;
    for (const auto& [name, value] : *values) {
        EXPECT_EQ(value.type, 1u);
        written.emplace_back(name, value.data.c_str());
    }
    const std::vector<std::pair<std::string, std::string>> expected{
        {"AutoHideIdleChar", "0"}, {"AutoAttachChar", "1"},
        {"AutoMinimize", "0"},     {"AutoUpdate", "1"},
        {"AutoIgnoreChars", "1"},  {"IgnoredChars", "^#$/\\()"},
        {"AutoCorrectText", "1"},  {"AutoHideBalloon", "1"},
        {"PlayReadEmoticon", "1"}, {"CurrentSoundScheme", "default"},
        {"ShowMinimizeFrm", "1"},  {"ShowTipFrm", "1"},
        {"ShowEmotTipFrm", "1"},
    };
    EXPECT_EQ(written, expected);

    EXPECT_EQ(AutoHideIdleChar, 0);
    EXPECT_EQ(AutoAttachChar, 1);
    EXPECT_EQ(AutoMinimize, 0);
    EXPECT_EQ(AutoUpdate, 1);
    EXPECT_EQ(AutoIgnoreChars, 1);
    EXPECT_EQ(IgnoredChars, u"^#$/\\()");
    EXPECT_EQ(AutoCorrectText, 1);
    EXPECT_EQ(AutoHideBalloon, 1);
    EXPECT_EQ(PlayReadEmoticon, 1);
    EXPECT_EQ(CurrentSoundScheme, u"default");
    EXPECT_EQ(ShowMinimizeFrm, 1);
    EXPECT_EQ(ShowTipFrm, 1);
    EXPECT_EQ(ShowEmotTipFrm, 1);
}

TEST_F(Settings, EmptyValueIsRewrittenWithItsDefault) {
    signIn();
    fakes::registry().put(user_key, "AutoUpdate", platform::reg_sz, "");
    LoadSettings();
    EXPECT_EQ(AutoUpdate, 1);
    EXPECT_EQ(fakes::registry().text(user_key, "AutoUpdate"), "1");
}

TEST_F(Settings, TextThatIsNoNumberLoadsAsZeroAndStays) {
    signIn();
    fakes::registry().putText(user_key, "AutoUpdate", "abc");
    LoadSettings();
    EXPECT_EQ(AutoUpdate, 0);
    EXPECT_EQ(fakes::registry().text(user_key, "AutoUpdate"), "abc");
}

TEST_F(Settings, IgnoredCharsCannotStayEmpty) {
    signIn();
    LoadSettings();
    WriteRegistryValue(hive, SettingsKeyPath, u"IgnoredChars", u"");
    EXPECT_EQ(fakes::registry().text(user_key, "IgnoredChars"), "");
    LoadSettings();
    EXPECT_EQ(IgnoredChars, u"^#$/\\()");
    EXPECT_EQ(fakes::registry().text(user_key, "IgnoredChars"), "^#$/\\()");
}

TEST_F(Settings, SignedOutWritesNothingAndShowsDefaults) {
    for (const std::int32_t status : {1, 0x100, 0x200, 0x300, 0x400}) {
        fakes::messenger().status = status;
        SettingsKeyPath = loadedKeyPath();
        EXPECT_EQ(SettingsKeyPath, u"");
        AutoAttachChar = 0;
        IgnoredChars.clear();
        LoadSettings();
        EXPECT_EQ(AutoAttachChar, 1);
        EXPECT_EQ(IgnoredChars, u"^#$/\\()");
    }
    for (const std::string& operation : fakes::registry().log) {
        EXPECT_TRUE(operation.starts_with("open ") || operation.starts_with("query ")) << operation;
    }
}

TEST_F(Settings, SignedOutReadsTheRootOfTheHive) {
    fakes::registry().putText("", "CurrentSoundScheme", "left here");
    LoadSettings();
    EXPECT_EQ(CurrentSoundScheme, u"left here");
}

TEST_F(Settings, AnotherAccountBringsItsOwnOptions) {
    fakes::registry().putText("Software\\Murmelix\\bob@x", "AutoMinimize", "1");
    fakes::registry().putText("Software\\Murmelix\\bob@x", "CurrentSoundScheme", "robots");
    signIn();
    LoadSettings();
    EXPECT_EQ(AutoMinimize, 0);
    EXPECT_EQ(CurrentSoundScheme, u"default");
    signIn(u"bob@x");
    LoadSettings();
    EXPECT_EQ(AutoMinimize, 1);
    EXPECT_EQ(CurrentSoundScheme, u"robots");
}

TEST_F(Settings, TerminatingNulMakesNoDifference) {
    fakes::registry().put("K", "with", platform::reg_sz, std::string("abc\0", 4));
    fakes::registry().put("K", "without", platform::reg_sz, "abc");
    EXPECT_EQ(ReadRegistryValue(hive, u"K", u"with"), u"abc");
    EXPECT_EQ(ReadRegistryValue(hive, u"K", u"without"), u"abc");
}

TEST_F(Settings, OnlyTheFirstNulCuts) {
    fakes::registry().put("K", "V", platform::reg_sz, std::string("ab\0cd\0", 6));
    EXPECT_EQ(ReadRegistryValue(hive, u"K", u"V"), u"ab");
    fakes::registry().put("K", "V", platform::reg_sz, std::string("\0cd", 3));
    EXPECT_EQ(ReadRegistryValue(hive, u"K", u"V"), u"");
}

TEST_F(Settings, ValueIsQueriedForItsSizeFirst) {
    fakes::registry().putText("K", "V", "abc");
    fakes::registry().log.clear();
    ReadRegistryValue(hive, u"K", u"V");
    EXPECT_THAT(fakes::registry().log, ElementsAre("open K", "query V", "query V"));
}

TEST_F(Settings, BinaryValueIsItsFirstElement) {
    fakes::registry().put("K", "V", platform::reg_binary, std::string("\x34\x12\xFF\xFF", 4));
    EXPECT_EQ(ReadRegistryValue(hive, u"K", u"V"), u"4660");
    fakes::registry().put("K", "V", platform::reg_binary, std::string("\xFE\xFF", 2));
    EXPECT_EQ(ReadRegistryValue(hive, u"K", u"V"), u"-2");
    fakes::registry().put("K", "V", platform::reg_binary, "\x01");
    EXPECT_EQ(ReadRegistryValue(hive, u"K", u"V"), u"");
}

TEST_F(Settings, DamagedValuesOfEveryTypeFallBackToTheDefault) {
    signIn();
    const std::vector<std::string> damaged{"", "\x01", "\x01\x02\x03\x04", std::string(70000, '\xFF')};
    for (std::uint32_t type : {0u, 2u, 4u, 5u, 6u, 7u, 8u, 9u, 10u, 11u, 0xFFFFFFFFu}) {
        for (const std::string& data : damaged) {
            fakes::registry().put(user_key, "CurrentSoundScheme", type, data);
            fakes::registry().put(user_key, "AutoMinimize", type, data);
            LoadSettings();
            EXPECT_EQ(CurrentSoundScheme, u"default");
            EXPECT_EQ(AutoMinimize, 0);
            EXPECT_EQ(fakes::registry().value(user_key, "AutoMinimize")->type, platform::reg_sz);
        }
    }
    for (const std::string& data : damaged) { // of the two types that are read: whatever they hold
        for (const std::uint32_t type : {platform::reg_sz, platform::reg_binary}) {
            fakes::registry().put(user_key, "CurrentSoundScheme", type, data);
            fakes::registry().put(user_key, "AutoMinimize", type, data);
            LoadSettings();
        }
    }
}

TEST_F(Settings, NumberBeyondSixteenBitsStaysTrue) {
    signIn();
    const std::vector<std::pair<std::string, int>> numbers{
        {"-1", -1},       {"32767", 32767}, {"32768", 32767}, {"65536", 32767}, {"-40000", -32768},
        {"1e999", 32767}, {"2x", 2},        {" 1", 1},        {"0.5", 0},       {"1.5", 2},
        {"2.5", 2},       {"-", 0},         {"1e", 1},        {"nan", 0},       {std::string(1000, '9'), 32767},
    };
    for (const auto& [text, number] : numbers) {
        fakes::registry().putText(user_key, "AutoHideBalloon", text);
        LoadSettings();
        EXPECT_EQ(AutoHideBalloon, number) << text;
    }
}

TEST_F(Settings, WritingHasNoTerminatingNulInItsLength) {
    WriteRegistryValue(hive, u"K", u"V", u"abc");
    EXPECT_THAT(fakes::registry().log, testing::Contains("set V=abc"));
}

TEST_F(Settings, NothingIsWrittenBelowAnEmptySubkey) {
    fakes::registry().log.clear();
    WriteRegistryValue(hive, u"", u"V", u"abc");
    EXPECT_THAT(fakes::registry().log, IsEmpty());
}

TEST_F(Settings, TextsPassThroughTheAnsiCodePage) {
    WriteRegistryValue(hive, u"K", u"Grüße", u"€ ł");
    EXPECT_EQ(fakes::registry().text("K", "Gr\xFC\xDF"
                                          "e"),
              "\x80 ?");
    EXPECT_EQ(ReadRegistryValue(hive, u"K", u"Grüße"), u"€ ?");
    fakes::useCodePage(fakes::windows1251());
    WriteRegistryValue(hive, u"K", u"V", u"Привет");
    EXPECT_EQ(fakes::registry().text("K", "V"), "\xCF\xF0\xE8\xE2\xE5\xF2");
    EXPECT_EQ(ReadRegistryValue(hive, u"K", u"V"), u"Привет");
}

TEST_F(Settings, UnwritableRegistryLeavesTheDefaultsInMemory) {
    signIn();
    fakes::registry().unwritable = true;
    LoadSettings();
    EXPECT_EQ(AutoAttachChar, 1);
    EXPECT_EQ(CurrentSoundScheme, u"default");
    EXPECT_EQ(fakes::registry().key(user_key), nullptr);
}

TEST_F(Settings, UnreadableRegistryGivesTheDefaults) {
    signIn();
    fakes::registry().putText(user_key, "AutoMinimize", "1");
    fakes::registry().unreadable = true;
    LoadSettings();
    EXPECT_EQ(AutoMinimize, 0);
}

TEST_F(Settings, AnyFailingOperationGivesEveryOptionAValue) {
    for (int operation = 1; operation < 100; ++operation) {
        fakes::reset();
        signIn();
        CurrentSoundScheme.clear();
        AutoAttachChar = 7;
        fakes::registry().fail_at = operation;
        LoadSettings();
        EXPECT_EQ(CurrentSoundScheme, u"default") << operation;
        EXPECT_EQ(AutoAttachChar, 1) << operation;
    }
}

TEST_F(Settings, KeyPathNamesTheSignedInUser) {
    for (const std::int32_t status : {0, 2, 6, 10, 14, 18, 34, 50, 66, 0x500}) {
        fakes::messenger().status = status;
        fakes::messenger().signin_name = u"ann@x";
        EXPECT_EQ(loadedKeyPath(), u"Software\\Murmelix\\ann@x") << status;
    }
}

TEST_F(Settings, StatusIsReadFiveTimesWhateverItIs) {
    for (const std::int32_t status : {1, 2, 0x100, 0x400}) {
        fakes::messenger().status = status;
        fakes::messenger().status_reads = 0;
        loadedKeyPath();
        EXPECT_EQ(fakes::messenger().status_reads, 5) << status;
    }
}

TEST_F(Settings, EachReadOfTheStatusIsComparedWithAStatusOfItsOwn) {
    // The user goes offline after the comparison with offline, and is found to be finding the server by none.
    fakes::neighbours().during = [](std::string_view) {
        fakes::messenger().status = fakes::messenger().status_reads == 2 ? 1 : 2;
    };
    EXPECT_EQ(loadedKeyPath(), u"Software\\Murmelix\\me@x");
    fakes::messenger().status_reads = 0;
    fakes::neighbours().during = [](std::string_view) {
        fakes::messenger().status = fakes::messenger().status_reads == 2 ? 0x100 : 2;
    };
    EXPECT_EQ(loadedKeyPath(), u"");
}

TEST_F(Settings, VanishedClientCountsAsSignedOut) {
    for (int call = 1; call <= 6; ++call) {
        fakes::neighbours().calls = 0;
        fakes::neighbours().fail_at = call;
        EXPECT_EQ(loadedKeyPath(), u"") << call;
    }
}

} // namespace

} // namespace murmelix::test
