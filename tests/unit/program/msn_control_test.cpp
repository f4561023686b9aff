#include "tests/unit/program/monitor_test.h"

namespace murmelix::test {

namespace {

using MsnControl = MonitorTest;

TEST_F(MsnControl, StatusFollowsTheNameInTheCaption) {
    const std::vector<std::pair<std::int32_t, std::u16string>> suffixes{
        {1, u" - Offline"},        {2, u" - Online"}, {6, u" - Invisible"},      {10, u" - Busy"},
        {14, u" - Be right back"}, {34, u" - Away"},  {50, u" -  On the Phone"}, {66, u" - Out to Lunch"},
    };
    fakes::messenger().unread = -1;
    for (const auto& [status, suffix] : suffixes) {
        fakes::messenger().events.OnMyStatusChange(0, status);
        EXPECT_EQ(caption_, u"Me" + suffix);
    }
}

TEST_F(MsnControl, UnknownStatusShowsTheNameAlone) {
    fakes::messenger().unread = 4;
    for (const std::int32_t status : {18, 0, 3, 0x100, -1}) {
        fakes::messenger().events.OnMyStatusChange(0, status);
        EXPECT_EQ(caption_, u"Me (4 Unread)");
    }
}

TEST_F(MsnControl, NoUnreadMessageIsShownAsZero) {
    fakes::messenger().events.OnMyStatusChange(0, 2);
    EXPECT_EQ(caption_, u"Me - Online (0 Unread)");
    fakes::messenger().events.OnUnreadEmailChange();
    EXPECT_EQ(caption_, u"Me - Online (0 Unread)");
}

TEST_F(MsnControl, NegativeUnreadCountRemovesTheSuffix) {
    fakes::messenger().events.OnMyStatusChange(0, 2);
    fakes::messenger().unread = -1;
    fakes::messenger().events.OnUnreadEmailChange();
    EXPECT_EQ(caption_, u"Me - Online");
}

TEST_F(MsnControl, UnreadCountIsAskedAgain) {
    caption_ = u"Me (home) - Online (3 Unread)";
    fakes::messenger().unread = 12;
    fakes::messenger().events.OnUnreadEmailChange();
    EXPECT_EQ(caption_, u"Me  - Online (12 Unread)");
    fakes::neighbours().failing = {"UnreadEmailCount"};
    fakes::messenger().events.OnUnreadEmailChange();
    EXPECT_EQ(caption_, u"Me  - Online") << "the old count is not shown any longer";
}

TEST_F(MsnControl, EmoticonsInTheNameBecomeBlanks) {
    fakes::messenger().unread = -1;
    fakes::messenger().friendly_name = u":) Max(Y)imum (L)";
    fakes::messenger().events.OnMyStatusChange(0, 2);
    EXPECT_EQ(caption_, u"Max imum - Online");
}

TEST_F(MsnControl, NameChangeKeepsTheStatus) {
    fakes::messenger().status = 10;
    fakes::messenger().friendly_name = u"New";
    fakes::messenger().events.OnMyFriendlyNameChange(0, u"Old");
    EXPECT_EQ(caption_, u"New - Busy (0 Unread)");
}

TEST_F(MsnControl, NameIsShownThoughTheStatusCannotBeHad) {
    fakes::messenger().friendly_name = u"New";
    fakes::neighbours().failing = {"MyStatus"};
    fakes::messenger().events.OnMyFriendlyNameChange(0, u"Old");
    EXPECT_EQ(caption_, u"New (0 Unread)");
    EXPECT_THAT(log_, IsEmpty());
}

TEST_F(MsnControl, FailureWhileTheCaptionIsMadeSignsOut) {
    for (const char* failing : {"MyFriendlyName", "UnreadEmailCount"}) {
        log_.clear();
        fakes::neighbours().failing = {failing};
        fakes::messenger().events.OnMyStatusChange(0, 2);
        EXPECT_THAT(log_, ElementsAre(u"unload", u"ShowSignOut")) << failing;
    }
    EXPECT_EQ(caption_, u"Me - Online"); // set before the count failed
}

TEST_F(MsnControl, SigninStartsAgainFromMain) {
    fakes::messenger().events.OnSignin(0);
    EXPECT_THAT(log_, ElementsAre(u"hide SignOut", u"reset", u"Main"));
}

TEST_F(MsnControl, SigninGoesStepByStep) {
    startReading(*open(7, {u"Ann"}));
    fakes::neighbours().during = [&](std::string_view call) {
        if (call == "Unload") {
            log_.push_back(IsReadingConversation && ReadingWindowHandle == 7 ? u"unload in the reading" : u"unload");
        }
    };
    fakes::messenger().events.OnSignin(0);
    EXPECT_THAT(log_, ElementsAre(u"hide SignOut", u"unload in the reading", u"reset", u"Main"));
}

TEST_F(MsnControl, FailedSigninStopsReadingAndShowsThePanel) {
    const auto window = open(7, {u"Ann"});
    startReading(*window);
    ASSERT_THAT(stage(), ElementsAre(u"ann@x"));
    fakes::messenger().events.OnSignin(-1);
    EXPECT_THAT(log_, ElementsAre(u"ShowSignOut", u"reset", u"Main"));
    EXPECT_EQ(IsReadingConversation, 0);
    EXPECT_EQ(ReadingWindowHandle, 0);
    EXPECT_THAT(stage(), IsEmpty());
    EXPECT_EQ(LoadedCharacterKeys.Count(), 0u);
}

TEST_F(MsnControl, SignoutUnloadsTheSecondaryWindowsFirst) {
    fakes::messenger().events.OnSignout();
    EXPECT_THAT(log_, ElementsAre(u"unload", u"ShowSignOut"));
}

TEST_F(MsnControl, SignoutEndsTheReading) {
    startReading(*open(7, {u"Ann"}));
    fakes::messenger().events.OnSignout();
    EXPECT_THAT(log_, ElementsAre(u"unload", u"ShowSignOut", u"StartConvButt_Click"));
    EXPECT_EQ(IsReadingConversation, 0);
}

TEST_F(MsnControl, ClientShutdownEndsTheProgram) {
    EXPECT_THROW(fakes::messenger().events.OnAppShutdown(), fakes::ProcessEnded);
    EXPECT_THAT(log_, ElementsAre(u"DeleteSystemTrayIcon"));
}

TEST_F(MsnControl, NewWindowIsListedSelectedAndStartable) {
    open(1234, {u"Ann", u"Bob"});
    EXPECT_THAT(rows_, ElementsAre(Row{u"%1234", u"Conversation with:", u"Ann, Bob", true}));
    EXPECT_TRUE(start_enabled_);
    EXPECT_NE(monitor_.GetWindowAt(1234), nullptr);
    EXPECT_EQ(monitor_.GetWindowAt(123), nullptr);
    EXPECT_EQ(monitor_.GetTheWindowAt(1), monitor_.GetWindowAt(1234));
    EXPECT_THROW(monitor_.GetTheWindowAt(2), CollectionError);
}

TEST_F(MsnControl, NewWindowWhileReadingIsNotSelected) {
    startReading(*open(1, {u"Ann"}));
    open(2, {u"Bob"});
    EXPECT_TRUE(rows_[0].selected);
    EXPECT_FALSE(rows_[1].selected);
}

TEST_F(MsnControl, FifthContactIsShownAsDots) {
    open(1, {u"Ann", u"Bob", u"Cy", u"Di", u"Ed"});
    open(2, {u"Ann", u"Bob", u"Cy", u"Di"});
    open(3, {u"Ann", u"Bob", u"Cy", u"Di", u"Ed", u"Flo"});
    EXPECT_EQ(rows_[0].text, u"Ann, Bob, Cy, Di,...");
    EXPECT_EQ(rows_[1].text, u"Ann, Bob, Cy, Di");
    EXPECT_EQ(rows_[2].text, u"Ann, Bob, Cy, Di,...");
}

TEST_F(MsnControl, NameOfEmoticonsAloneIsEmptyBetweenSeparators) {
    open(1, {u"Ann", u":)(Y)", u"Cy"});
    open(2, {u":)", u"Bob"}); // no separator while the text is empty
    EXPECT_EQ(rows_[0].text, u"Ann, , Cy");
    EXPECT_EQ(rows_[1].text, u"Bob");
}

TEST_F(MsnControl, ParticipantsReadSoFarAreShownWhenACallFails) {
    const auto window = open(1, {u"Ann", u"Bob"});
    fakes::neighbours().calls = 0;
    fakes::neighbours().fail_at = 6; // HWND, Contacts, Count, Item, FriendlyName, Item
    fakes::messenger().events.OnIMWindowContactAdded(contact(u"Cy"), window);
    EXPECT_EQ(rows_[0].text, u"Ann");
}

TEST_F(MsnControl, ClosingTheWindowBeingReadStopsReading) {
    const auto window = open(1, {u"Ann", u"Bob"});
    open(2, {u"Cy"});
    startReading(*window);
    ASSERT_THAT(stage(), ElementsAre(u"ann@x", u"bob@x"));
    fakes::messenger().events.OnIMWindowDestroyed(window);
    EXPECT_THAT(log_, ElementsAre(u"StartConvButt_Click"));
    EXPECT_THAT(stage(), IsEmpty());
    ASSERT_EQ(rows_.size(), 1u);
    EXPECT_EQ(rows_[0].key, u"%2");
    EXPECT_TRUE(start_enabled_);
}

TEST_F(MsnControl, ClosingAnotherWindowOnlyRemovesItsRow) {
    const auto window = open(1, {u"Ann"}), other = open(2, {u"Cy"});
    startReading(*window);
    fakes::messenger().events.OnIMWindowDestroyed(other);
    EXPECT_THAT(log_, IsEmpty());
    EXPECT_THAT(stage(), ElementsAre(u"ann@x"));
    EXPECT_EQ(rows_.size(), 1u);
    EXPECT_EQ(monitor_.GetWindowAt(2), nullptr);
}

TEST_F(MsnControl, ClosingTheLastWindowDisablesTheStartButton) {
    const auto window = open(1, {u"Ann"});
    fakes::messenger().events.OnIMWindowDestroyed(window);
    EXPECT_FALSE(start_enabled_);
    fakes::messenger().events.OnIMWindowDestroyed(window); // once more: nothing
}

TEST_F(MsnControl, ContactJoiningAnotherWindowChangesItsRowAlone) {
    const auto window = open(1, {u"Ann"}), other = open(2, {u"Cy"});
    startReading(*window);
    other->contacts.push_back(contact(u"Di"));
    fakes::messenger().events.OnIMWindowContactAdded(other->contacts[1], other);
    EXPECT_EQ(rows_[0].text, u"Ann");
    EXPECT_EQ(rows_[1].text, u"Cy, Di");
    EXPECT_THAT(stage(), ElementsAre(u"ann@x"));
}

TEST_F(MsnControl, ContactJoiningTheReadingGetsACharacter) {
    const auto window = open(1, {u"Ann"});
    startReading(*window);
    window->contacts.push_back(contact(u"Bob"));
    fakes::messenger().events.OnIMWindowContactAdded(window->contacts[1], window);
    EXPECT_EQ(rows_[0].text, u"Ann, Bob");
    EXPECT_THAT(stage(), ElementsAre(u"ann@x", u"bob@x"));
}

TEST_F(MsnControl, ContactLeavingTheReadingLosesItsCharacter) {
    const auto window = open(1, {u"Ann", u"Bob"});
    startReading(*window);
    calls().clear();
    const auto ann = window->contacts[0];
    window->contacts.erase(window->contacts.begin());
    fakes::messenger().events.OnIMWindowContactRemoved(ann, window);
    EXPECT_EQ(rows_[0].text, u"Bob");
    EXPECT_THAT(stage(), ElementsAre(u"bob@x"));
    EXPECT_THAT(calls(), ElementsAre(AgentCall{.key = u"bob@x", .call = u"MoveTo", .x = 36, .y = 72}));

    AutoAttachChar = 0;
    calls().clear();
    fakes::messenger().events.OnIMWindowContactRemoved(window->contacts[0], window);
    EXPECT_THAT(stage(), IsEmpty());
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(MsnControl, ContactLeavingWithNothingReadChangesTheRowAlone) {
    const auto window = open(1, {u"Ann", u"Bob"});
    putOnStage(u"ann@x");
    fakes::messenger().events.OnIMWindowContactRemoved(window->contacts[0], window);
    EXPECT_THAT(stage(), ElementsAre(u"ann@x"));
}

TEST_F(MsnControl, CharactersAreLoadedInTheClientsOrder) {
    startReading(*open(1, {u"Cy", u"Ann", u"Bob"}));
    EXPECT_EQ(LoadedCharacterKeys.Item(1), u"cy@x");
    EXPECT_EQ(LoadedCharacterKeys.Item(2), u"ann@x");
    EXPECT_EQ(LoadedCharacterKeys.Item(3), u"bob@x");
}

TEST_F(MsnControl, RemovingAnUnknownContactIsSilent) {
    monitor_.RemoveMoniteredContact(u"nobody@x");
    EXPECT_EQ(LoadedCharacterKeys.Count(), 0u);
}

TEST_F(MsnControl, AllAreRemovedThoughUnloadingFailsOrRemovesOthers) {
    startReading(*open(1, {u"Ann", u"Bob", u"Cy"}));
    fakes::neighbours().failing = {"Unload"};
    monitor_.RemoveMoniteredWindowContacts();
    EXPECT_EQ(LoadedCharacterKeys.Count(), 0u);

    fakes::neighbours().failing = {};
    fakes::agent().characters.clear();
    monitor_.AddMoniteredWindowContacts();
    fakes::neighbours().during = [&](std::string_view call) {
        if (call == "Unload") {
            monitor_.RemoveMoniteredContact(u"ann@x");
        }
    };
    monitor_.RemoveMoniteredWindowContacts();
    EXPECT_EQ(LoadedCharacterKeys.Count(), 0u);
}

TEST_F(MsnControl, StoppingWhileCharactersAreLoadedLoadsNoFurtherOnes) {
    const auto window = open(1, {u"Ann", u"Bob", u"Cy"});
    fakes::neighbours().during = [&](std::string_view call) {
        if (call == "Show") {
            stopReading();
        }
    };
    startReading(*window);
    EXPECT_THAT(stage(), IsEmpty());
    EXPECT_EQ(LoadedCharacterKeys.Count(), 0u);
}

TEST_F(MsnControl, WindowClosedWhileItIsBeingListedLeavesNoRow) {
    const auto window = std::make_shared<fakes::Window>(1);
    window->contacts.push_back(contact(u"Ann"));
    fakes::neighbours().during = [&](std::string_view call) {
        if (call == "FriendlyName") {
            fakes::messenger().events.OnIMWindowDestroyed(window);
        }
    };
    fakes::messenger().events.OnIMWindowCreated(window);
    EXPECT_THAT(rows_, IsEmpty());
    EXPECT_FALSE(start_enabled_);
}

TEST_F(MsnControl, HandleUsedAgainKeepsOneRow) {
    open(1, {u"Ann"});
    const auto second = open(1, {u"Bob"});
    ASSERT_EQ(rows_.size(), 1u);
    EXPECT_EQ(rows_[0].text, u"Bob");
    EXPECT_EQ(monitor_.GetWindowAt(1), second);
}

TEST_F(MsnControl, RowThatIsGoneAfterASignOutIsListedAgain) {
    const auto window = open(1, {u"Ann"});
    fakes::messenger().events.OnSignout();
    rows_.clear(); // as the main window does
    start_enabled_ = false;
    fakes::messenger().events.OnSignin(0);
    fakes::messenger().events.OnIMWindowCreated(window);
    EXPECT_THAT(rows_, ElementsAre(Row{u"%1", u"Conversation with:", u"Ann", true}));
    EXPECT_TRUE(start_enabled_);
}

TEST_F(MsnControl, ContactLeavingAnotherWindowChangesItsRowAlone) {
    const auto window = open(1, {u"Ann"}), other = open(2, {u"Ann", u"Cy"});
    startReading(*window);
    calls().clear();
    const auto ann = other->contacts[0];
    other->contacts.erase(other->contacts.begin());
    fakes::messenger().events.OnIMWindowContactRemoved(ann, other);
    EXPECT_EQ(rows_[0].text, u"Ann");
    EXPECT_EQ(rows_[1].text, u"Cy");
    EXPECT_THAT(stage(), ElementsAre(u"ann@x"));
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(MsnControl, ContactThatComesBackIsSpokenForAgain) {
    const auto window = open(1, {u"Ann", u"Bob"});
    startReading(*window);
    const auto bob = window->contacts[1];
    window->contacts.pop_back();
    fakes::messenger().events.OnIMWindowContactRemoved(bob, window);
    EXPECT_FALSE(LastRequests.contains(u"bob@x"));
    window->contacts.push_back(bob);
    fakes::messenger().events.OnIMWindowContactAdded(bob, window);
    EXPECT_THAT(stage(), ElementsAre(u"ann@x", u"bob@x"));
    calls().clear();
    window->say(u"Bob", u"hi");
    monitor_.ReadMoniter_Timer();
    EXPECT_THAT(spoken(), ElementsAre(u"bob@x: Hi"));
}

TEST_F(MsnControl, HandleUsedAgainWhileItsWindowEndsKeepsItsRow) {
    const auto window = open(1, {u"Ann"});
    startReading(*window);
    std::shared_ptr<fakes::Window> next;
    fakes::neighbours().during = [&](std::string_view call) {
        if (call == "Unload" && !next) {
            next = open(1, {u"Bob"});
        }
    };
    fakes::messenger().events.OnIMWindowDestroyed(window);
    EXPECT_EQ(monitor_.GetWindowAt(1), next);
    ASSERT_EQ(rows_.size(), 1u);
    EXPECT_EQ(rows_[0].text, u"Bob");
    EXPECT_TRUE(start_enabled_);
}

TEST_F(MsnControl, CharactersThatStayAreNotMovedWithoutTheAttachOption) {
    AutoAttachChar = 0;
    const auto window = open(1, {u"Ann", u"Bob"});
    startReading(*window);
    calls().clear();
    const auto ann = window->contacts[0];
    window->contacts.erase(window->contacts.begin());
    fakes::messenger().events.OnIMWindowContactRemoved(ann, window);
    EXPECT_THAT(stage(), ElementsAre(u"bob@x"));
    EXPECT_THAT(calls(), IsEmpty());
}

} // namespace

} // namespace murmelix::test
