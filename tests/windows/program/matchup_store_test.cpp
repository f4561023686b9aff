// The matchup store on the real registry.
#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <windows.h>

#include "app/shell_state.h"
#include "common/ansi.h"
#include "common/com/handles.h"
#include "common/text.h"
#include "matchups/matchup_store.h"
#include "platform/registry.h"
#include "tests/windows/program/ending_store.h"
#include "tests/windows/support/process.h"

namespace murmelix {
namespace {

using namespace test;
using platform::Hive;
using platform::RegistryKey;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

const std::string path = toAnsi(ending_store_path);

class StoredMatchups : public testing::Test {
  protected:
    StoredMatchups() {
        RegDeleteTreeA(HKEY_CURRENT_USER, path.c_str());
        SettingsKeyPath = ending_store_path;
    }
    ~StoredMatchups() override {
        SettingsKeyPath.clear();
        Matchups.Clear();
        RegDeleteTreeA(HKEY_CURRENT_USER, path.c_str());
    }
    // The value's data as it is given, which need not end with a NUL.
    static void store(const std::u16string& contact, const std::string& data) {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, (path + "\\Matchup").c_str(), &key), ERROR_SUCCESS);
        const std::string behind = data + "!"; // a NUL there would be stored as well
        RegSetValueExA(key, toAnsi(ScrambleMatchupName(contact)).c_str(), 0, REG_SZ,
                       reinterpret_cast<const BYTE*>(behind.data()), static_cast<DWORD>(data.size()));
        RegCloseKey(key);
    }
    // Contacts with their characters, as "ann@x=Max".
    static std::vector<std::u16string> loaded() {
        Matchups.Clear();
        LoadMatchups();
        std::vector<std::u16string> all;
        for (std::int16_t position = 1; position <= static_cast<std::int16_t>(Matchups.Count()); ++position) {
            all.push_back(GetMatchupContactAt(position) + u"=" + GetMatchupCharacterAt(position));
        }
        return all;
    }
    // The contacts in the order in which the registry lists its values.
    static std::vector<std::u16string> listed() {
        std::vector<std::u16string> order;
        if (const auto key = RegistryKey::open(Hive::current_user, path + "\\Matchup")) {
            while (const auto value = key->enumerate(static_cast<std::uint32_t>(order.size()), 1000, 1000)) {
                order.push_back(UnscrambleMatchupName(fromAnsi(value->first)));
            }
        }
        return order;
    }
};

TEST_F(StoredMatchups, AreReadBackWhole) {
    AddMatchup(u"ann@x", u"Max");
    AddMatchup(u"bob@x", u"Z\u00fcri");
    AddMatchup(u"cyn@x", u"");
    EXPECT_THAT(loaded(), UnorderedElementsAre(u"ann@x=Max", u"bob@x=Z\u00fcri", u"cyn@x="));
    AddMatchup(u"ann@x", u"Otto");
    EXPECT_EQ(Matchups.position(u"ann@x"), 3U) << "a replacement moves to the end";
    EXPECT_THAT(loaded(), UnorderedElementsAre(u"ann@x=Otto", u"bob@x=Z\u00fcri", u"cyn@x="));
}

TEST_F(StoredMatchups, LoseTheLastCharacterOfAValueThatHasNoNul) {
    store(u"ann@x", "Max");
    store(u"bob@x", std::string("Nelly\0", 6));
    store(u"cyn@x", "");
    EXPECT_THAT(loaded(), UnorderedElementsAre(u"ann@x=Ma", u"bob@x=Nelly", u"cyn@x="));
}

TEST_F(StoredMatchups, AreInTheOrderOfTheRegistry) {
    for (const char16_t* contact : {u"dan@x", u"ann@x", u"cyn@x", u"bob@x"}) {
        AddMatchup(contact, u"Max");
    }
    EXPECT_EQ(Matchups.KeyAt(1), u"dan@x") << "in this run, that of the additions";
    const auto order = listed();
    ASSERT_EQ(order.size(), 4U);
    LoadMatchups();
    for (std::size_t i = 0; i < order.size(); ++i) {
        EXPECT_EQ(Matchups.KeyAt(i + 1), order[i]);
    }
}

TEST_F(StoredMatchups, AreRemovedByAPathThatEndsWithABackslash) {
    AddMatchup(u"ann@x", u"Max");
    AddMatchup(u"bob@x", u"Nelly");
    RemoveMatchup(u"ann@x");
    EXPECT_THAT(loaded(), ElementsAre(u"bob@x=Nelly"));
    EXPECT_TRUE(RegistryKey::open(Hive::current_user, path + "\\Matchup\\"));
    RemoveMatchup(u"nobody@x");
    EXPECT_THAT(loaded(), ElementsAre(u"bob@x=Nelly"));
}

TEST_F(StoredMatchups, EndAtTheFirstValueThatIsTooLong) {
    store(u"ann@x", std::string(254, 'm') + '\0'); // as long as can be
    store(u"bob@x", std::string(255, 'n') + '\0');
    store(u"cyn@x", std::string("Otto\0", 5));
    const auto order = listed();
    const auto all = loaded();
    ASSERT_EQ(order.size(), 3U);
    EXPECT_EQ(all.size(), static_cast<std::size_t>(std::ranges::find(order, u"bob@x") - order.begin()));
}

TEST_F(StoredMatchups, WhatCouldNotBeLoadedAgainHidesNoOthers) {
    const std::u16string longest(254, u'a'), too_long(255, u'b');
    AddMatchup(longest, longest);
    AddMatchup(too_long, u"Max");
    AddMatchup(u"dan@x", too_long);
    AddMatchup(u"ann@x", u"Nelly");
    EXPECT_THAT(loaded(), UnorderedElementsAre(longest + u"=" + longest, u"ann@x=Nelly"));
}

// Every code that a sign-in name can have, but that which becomes a NUL.
TEST_F(StoredMatchups, EveryCharacterOfTheCodePageComesBack) {
    std::vector<std::u16string> expected;
    for (int code = 1; code < 256; ++code) {
        const std::u16string character = fromAnsi(std::string(1, static_cast<char>(code)));
        const std::string back = toAnsi(character);
        const bool blank = code == 22; // scrambled, and trimmed at the end
        if (back.size() != 1 || static_cast<unsigned char>(back[0]) != code || code == 246 || blank) {
            continue;
        }
        Matchups.Clear();
        RegDeleteTreeA(HKEY_CURRENT_USER, path.c_str());
        const std::u16string contact = u"a" + character;
        AddMatchup(contact, u"Max");
        EXPECT_THAT(loaded(), ElementsAre(contact + u"=Max")) << code;
    }
}

TEST_F(StoredMatchups, NameThatTheRegistryWouldCutHarmsNoOther) {
    AddMatchup(u"j", u"Max");
    AddMatchup(u"j\u00F6rg@x", u"Nelly");
    EXPECT_THAT(loaded(), ElementsAre(u"j=Max"));
    RemoveMatchup(u"j\u00F6rg@x");
    EXPECT_THAT(loaded(), ElementsAre(u"j=Max"));
}

TEST_F(StoredMatchups, OfNobodyAreNotStored) {
    SettingsKeyPath.clear();
    AddMatchup(u"ann@x", u"Max");
    RemoveMatchup(u"bob@x");
    EXPECT_FALSE(RegistryKey::open(Hive::current_user, "Matchup"));
    EXPECT_TRUE(MatchupExists(u"ann@x"));
    LoadMatchups();
    EXPECT_EQ(Matchups.Count(), 0U);
}

TEST_F(StoredMatchups, OthersStayReadableWhereverTheProgramEnds) {
    std::wstring program(MAX_PATH, L'\0');
    program.resize(GetModuleFileNameW(nullptr, program.data(), MAX_PATH));
    const std::u16string command = u"\"" + std::u16string(com::narrow(program.data(), program.size())) + u"\" " +
                                   fromUtf8(ending_store_switch) + u" ";
    std::vector<std::u16string> characters_of_bob;
    int call = 0;
    for (bool whole = false; !whole; ++call) {
        ASSERT_LT(call, 100);
        SCOPED_TRACE("ended behind call " + std::to_string(call));
        RegDeleteTreeA(HKEY_CURRENT_USER, path.c_str());
        Matchups.Clear();
        AddMatchup(u"ann@x", u"Max");
        AddMatchup(u"bob@x", u"Nelly");
        AddMatchup(u"eve@x", u"Bert");
        const Process child(command + toText(call));
        const auto status = child.exitStatus();
        ASSERT_TRUE(status);
        whole = *status == 0;
        ASSERT_TRUE(whole || *status == ended_in_the_middle) << *status;

        loaded();
        ASSERT_TRUE(MatchupExists(u"ann@x") && MatchupExists(u"bob@x") && MatchupExists(u"eve@x"));
        EXPECT_EQ(GetMatchupCharacter(u"ann@x"), u"Max");
        EXPECT_EQ(GetMatchupCharacter(u"eve@x"), u"Bert");
        characters_of_bob.push_back(GetMatchupCharacter(u"bob@x"));
        EXPECT_EQ(Matchups.Count(), MatchupExists(u"cyn@x") ? 4U : 3U);
        if (MatchupExists(u"cyn@x")) {
            EXPECT_EQ(GetMatchupCharacter(u"cyn@x"), u"Otto");
        }
    }
    EXPECT_GE(call, 14) << "opening, listing and closing; creating, setting and closing, twice; opening, deleting, "
                           "closing";
    EXPECT_EQ(characters_of_bob.front(), u"Nelly");
    EXPECT_EQ(characters_of_bob.back(), u"Anna");
}

} // namespace
} // namespace murmelix
