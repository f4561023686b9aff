// Which character speaks for which contact, in memory and in the registry.
#include "matchups/matchup_store.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "app/shell_state.h"
#include "common/ansi.h"
#include "tests/fakes/fakes.h"

namespace murmelix::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* matchup_key = "Software\\Murmelix\\me@x\\Matchup";

class MatchupStore : public testing::Test {
  protected:
    MatchupStore() {
        fakes::reset();
        Matchups.Clear();
        SettingsKeyPath = u"Software\\Murmelix\\me@x";
    }
    ~MatchupStore() override {
        Matchups.Clear();
        SettingsKeyPath.clear();
    }

    static void store(const std::u16string& contact, const std::string& character) {
        fakes::registry().putText(matchup_key, toAnsi(ScrambleMatchupName(contact)), character);
    }

    static std::vector<std::u16string> contacts() {
        std::vector<std::u16string> names;
        for (std::size_t i = 1; i <= Matchups.Count(); ++i) {
            names.push_back(GetMatchupContactAt(static_cast<std::int16_t>(i)));
        }
        return names;
    }
};

TEST_F(MatchupStore, ScramblingAddsTenToEveryCode) {
    EXPECT_EQ(ScrambleMatchupName(u"ann@x.com"), u"kxxJ\u201A8myw");
    EXPECT_EQ(UnscrambleMatchupName(u"kxxJ\u201A8myw"), u"ann@x.com");
    EXPECT_EQ(ScrambleMatchupName(u""), u"");
}

TEST_F(MatchupStore, ScramblingAndBackGivesEveryCodeBack) {
    std::string codes;
    for (int code = 0; code < 256; ++code) {
        codes.push_back(static_cast<char>(code));
    }
    for (const auto* page : {&fakes::windows1252(), &fakes::windows1251()}) {
        fakes::useCodePage(*page);
        const std::u16string all = fromAnsi(codes);
        EXPECT_EQ(UnscrambleMatchupName(ScrambleMatchupName(all)), all);
    }
}

TEST_F(MatchupStore, NameWithAHighCodeScramblesBelowTenAndComesBack) {
    const std::u16string name = u"b\u00FAb\u00FF"; // codes 250 and 255
    const std::u16string scrambled = ScrambleMatchupName(name);
    EXPECT_EQ(scrambled, (std::u16string{u'l', 4, u'l', 9}));
    EXPECT_EQ(UnscrambleMatchupName(scrambled), name);
}

TEST_F(MatchupStore, AddedMatchupsComeBackInOrder) {
    AddMatchup(u"ann@x", u"Max");
    AddMatchup(u"bob@x", u"Nelly");
    Matchups.Clear();
    LoadMatchups();
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"bob@x"));
    EXPECT_EQ(GetMatchupCharacter(u"ann@x"), u"Max");
    EXPECT_EQ(GetMatchupCharacterAt(2), u"Nelly");
    EXPECT_EQ(Matchups.Item(u"ann@x"), u"Max##ann@x");
}

TEST_F(MatchupStore, DataIsPlainAndNameScrambled) {
    AddMatchup(u"ann@x", u"Max");
    EXPECT_EQ(fakes::registry().text(matchup_key, "kxxJ\x82"), "Max");
}

TEST_F(MatchupStore, AddingAgainReplacesAndMovesToTheEnd) {
    AddMatchup(u"ann@x", u"Max");
    AddMatchup(u"bob@x", u"Nelly");
    AddMatchup(u"ann@x", u"Otto");
    EXPECT_THAT(contacts(), ElementsAre(u"bob@x", u"ann@x"));
    EXPECT_EQ(GetMatchupCharacter(u"ann@x"), u"Otto");
    EXPECT_EQ(fakes::registry().text(matchup_key, "kxxJ\x82"), "Otto");
}

TEST_F(MatchupStore, FirstOfTwoNamesThatUnscrambleAlikeWins) {
    fakes::registry().putText(matchup_key, "kxx", "Max");
    fakes::registry().putText(matchup_key, " kxx", "Nelly"); // the same once trimmed
    LoadMatchups();
    EXPECT_THAT(contacts(), ElementsAre(u"ann"));
    EXPECT_EQ(GetMatchupCharacter(u"ann"), u"Max");
}

TEST_F(MatchupStore, CharacterNameIsCutAtItsFirstSeparator) {
    AddMatchup(u"ann@x", u"Max##the##third");
    EXPECT_EQ(GetMatchupCharacter(u"ann@x"), u"Max");
    EXPECT_EQ(GetMatchupContactAt(1), u"the##third##ann@x");
}

TEST_F(MatchupStore, BlanksAroundAValueNameAreLost) {
    const std::u16string contact = u"\u0016ann\u0016"; // its first and last character scramble to blanks
    AddMatchup(contact, u"Max");
    LoadMatchups();
    EXPECT_THAT(contacts(), ElementsAre(u"ann"));
}

TEST_F(MatchupStore, DeletingWhatIsNotThereChangesNothing) {
    AddMatchup(u"ann@x", u"Max");
    RemoveMatchup(u"bob@x");
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x"));
    EXPECT_EQ(fakes::registry().key(matchup_key)->size(), 1u);
}

TEST_F(MatchupStore, RemovingDeletesTheValueBelowAPathWithATrailingBackslash) {
    AddMatchup(u"ann@x", u"Max");
    fakes::registry().log.clear();
    RemoveMatchup(u"ann@x");
    EXPECT_THAT(fakes::registry().log, ElementsAre("open Software\\Murmelix\\me@x\\Matchup\\", "delete kxxJ\x82"));
    EXPECT_FALSE(MatchupExists(u"ann@x"));
    EXPECT_THAT(*fakes::registry().key(matchup_key), IsEmpty());
}

TEST_F(MatchupStore, LoadingDropsWhatWasThereBefore) {
    AddMatchup(u"ann@x", u"Max");
    SettingsKeyPath = u"Software\\Murmelix\\other@x";
    LoadMatchups();
    EXPECT_EQ(Matchups.Count(), 0u);
}

TEST_F(MatchupStore, LoadingEndsAtTheFirstValueThatIsTooLong) {
    store(u"ann@x", "Max");
    store(u"bob@x", std::string(254, 'N')); // with its NUL exactly the buffer
    store(u"cyn@x", std::string(255, 'N'));
    store(u"dan@x", "Otto");
    LoadMatchups();
    EXPECT_THAT(contacts(), ElementsAre(u"ann@x", u"bob@x"));
}

TEST_F(MatchupStore, LoadingEndsAtTheFirstNameThatIsTooLong) {
    store(std::u16string(254, u'a'), "Max");
    store(std::u16string(255, u'b'), "Nelly");
    store(u"cyn@x", "Otto");
    LoadMatchups();
    EXPECT_THAT(contacts(), ElementsAre(std::u16string(254, u'a')));
}

TEST_F(MatchupStore, OneCharacterOfTheDataIsDroppedWhateverItIs) {
    fakes::registry().put(matchup_key, "kxx", 1, "Max"); // without a terminating NUL
    fakes::registry().put(matchup_key, "lyl", 1, "");
    LoadMatchups();
    EXPECT_EQ(GetMatchupCharacter(u"ann"), u"Ma");
    EXPECT_EQ(GetMatchupCharacter(u"bob"), u"");
}

TEST_F(MatchupStore, DamagedValuesOfEveryTypeAreRead) {
    for (std::uint32_t type = 0; type < 12; ++type) {
        fakes::registry().put(matchup_key, std::string(1, static_cast<char>('a' + type)), type, "\xFF\x01\x80");
    }
    LoadMatchups();
    EXPECT_EQ(Matchups.Count(), 12u);
}

TEST_F(MatchupStore, MissingKeyGivesNone) {
    LoadMatchups();
    EXPECT_EQ(Matchups.Count(), 0u);
    EXPECT_FALSE(MatchupExists(u"ann@x"));
    EXPECT_THROW(GetMatchupCharacter(u"ann@x"), CollectionError);
    EXPECT_THROW(GetMatchupCharacterAt(1), CollectionError);
    EXPECT_THROW(GetMatchupCharacterAt(-1), CollectionError);
}

TEST_F(MatchupStore, FailedWriteKeepsTheMatchupForThisRun) {
    fakes::registry().unwritable = true;
    AddMatchup(u"ann@x", u"Max");
    EXPECT_TRUE(MatchupExists(u"ann@x"));
    EXPECT_EQ(fakes::registry().key(matchup_key), nullptr);
    RemoveMatchup(u"ann@x");
    EXPECT_FALSE(MatchupExists(u"ann@x"));
}

TEST_F(MatchupStore, NameThatTheRegistryCutsIsNotWrittenUnderAnothersName) {
    AddMatchup(u"j", u"Max");
    AddMatchup(u"j\u00F6rg@x", u"Nelly"); // code 246 becomes a NUL, which ends names
    EXPECT_EQ(GetMatchupCharacter(u"j\u00F6rg@x"), u"Nelly") << "for this run";
    LoadMatchups();
    EXPECT_THAT(contacts(), ElementsAre(u"j"));
    EXPECT_EQ(GetMatchupCharacter(u"j"), u"Max");
    RemoveMatchup(u"j\u00F6rg@x");
    LoadMatchups();
    EXPECT_THAT(contacts(), ElementsAre(u"j")) << "nor is the other's value deleted";
}

TEST_F(MatchupStore, WhatCouldNotBeLoadedAgainIsNotWrittenBeforeTheOthers) {
    const std::u16string longest(254, u'a'), too_long(255, u'b');
    AddMatchup(longest, longest);
    AddMatchup(too_long, u"Max");
    AddMatchup(u"ann@x", too_long);
    AddMatchup(u"bob@x", u"Nelly");
    EXPECT_EQ(Matchups.Count(), 4U);
    LoadMatchups();
    EXPECT_THAT(contacts(), ElementsAre(longest, u"bob@x"));
    EXPECT_EQ(GetMatchupCharacter(longest), longest);
}

TEST_F(MatchupStore, CharactersOutsideTheCodePageMapAsItMapsThem) {
    EXPECT_EQ(ScrambleMatchupName(u"\u65E5@x"), u"IJ\u201A"); // a question mark, and ten more
    AddMatchup(u"\u65E5@x", u"Max");
    EXPECT_EQ(GetMatchupCharacter(u"\u65E5@x"), u"Max");
    LoadMatchups();
    EXPECT_THAT(contacts(), ElementsAre(u"?@x"));
}

TEST_F(MatchupStore, SeparatorIsFoundByItsExactCharactersAndTheContactIsAllBehindIt) {
    AddMatchup(u"a##b", u"#");
    EXPECT_EQ(Matchups.Item(u"a##b"), u"###a##b");
    EXPECT_EQ(GetMatchupCharacter(u"a##b"), u"");
    EXPECT_EQ(GetMatchupContactAt(1), u"#a##b");
}

TEST_F(MatchupStore, RegistryIsAskedInThisOrder) {
    store(u"ann@x", "Max");
    fakes::registry().log.clear();
    LoadMatchups();
    const std::string path = std::string("open ") + matchup_key;
    EXPECT_THAT(fakes::registry().log, ElementsAre(path, "enumerate 0", "enumerate 1"));
    fakes::registry().log.clear();
    AddMatchup(u"bob@x", u"Nelly");
    EXPECT_THAT(fakes::registry().log, ElementsAre(std::string("create ") + matchup_key, "set lylJ\x82=Nelly"));
}

// The registry as it is where the program ends, or is refused, at its n-th operation: what was said of others stays.
TEST_F(MatchupStore, OthersStayReadableWhereverItEnds) {
    const auto changes = [] {
        AddMatchup(u"cyn@x", u"Otto"); // a new one
        AddMatchup(u"bob@x", u"Anna"); // another character
        RemoveMatchup(u"cyn@x");
        RemoveMatchup(u"dan@x"); // which never was there
    };
    for (int end = 1; end <= 9; ++end) {
        fakes::reset();
        store(u"ann@x", "Max");
        store(u"bob@x", "Nelly");
        store(u"eve@x", "Bert");
        LoadMatchups();
        fakes::registry().fail_at = end;
        changes();
        const bool failed = fakes::registry().fail_at == 0;
        EXPECT_EQ(failed, end <= 8) << "as many operations as there are";
        fakes::registry().fail_at = 0;
        LoadMatchups();
        ASSERT_TRUE(MatchupExists(u"ann@x") && MatchupExists(u"bob@x") && MatchupExists(u"eve@x")) << end;
        EXPECT_EQ(GetMatchupCharacter(u"ann@x"), u"Max");
        EXPECT_EQ(GetMatchupCharacter(u"eve@x"), u"Bert");
        EXPECT_TRUE(GetMatchupCharacter(u"bob@x") == u"Nelly" || GetMatchupCharacter(u"bob@x") == u"Anna");
        EXPECT_LE(Matchups.Count(), 4U);
    }
}

TEST_F(MatchupStore, SignedOutStoresNothing) {
    SettingsKeyPath.clear();
    const std::size_t keys = fakes::registry().keyCount();
    AddMatchup(u"ann@x", u"Max");
    EXPECT_EQ(fakes::registry().keyCount(), keys);
    EXPECT_TRUE(MatchupExists(u"ann@x"));
}

} // namespace

} // namespace murmelix::test
