// Events that come in the middle of the calls to a neighbour, at every single one of them: the last one wins.
#include "tests/unit/shell/shell_fixture.h"

#include <algorithm>
#include <functional>
#include <memory>

#include <gmock/gmock.h>

#include "common/text.h"

namespace murmelix {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAreArray;

class EventsInTheMiddle : public ShellTest {
  protected:
    EventsInTheMiddle() {
        other_->contacts = {std::make_shared<fakes::Contact>(u"ann@x", u"Ann"),
                            std::make_shared<fakes::Contact>(u"cy@x", u"Cy")};
    }

    using Step = std::function<void()>;

    // Prepares a machine, then runs `what`, once for each of the calls that it makes, with `event` in that one's
    // middle; then once more each, with answers that were found before it.
    void atEveryCall(const Step& prepare, const Step& what, const Step& event, const Step& check) {
        for (const bool answers_first : {false, true}) {
            for (int at = 1;; ++at) {
                program_.reset();
                prepareMachine();
                program_ = std::make_unique<Loader>();
                fakes::registry().putText("Software\\Murmelix\\other@x", "AutoHideIdleChar", "1");
                prepare();
                fakes::neighbours().answers_first = answers_first;
                int calls = 0;
                std::string name;
                fakes::neighbours().during = [&](std::string_view call) {
                    if (++calls == at) {
                        name = call;
                        event();
                    }
                };
                what();
                fakes::neighbours().during = nullptr;
                if (calls < at) {
                    ASSERT_GT(at, 1) << "there was no call to come in the middle of";
                    break;
                }
                SCOPED_TRACE("in call " + std::to_string(at) + ", " + name + (answers_first ? ", answered first" : ""));
                check();
                if (HasFailure()) {
                    return;
                }
            }
        }
    }

    MainFrm& window() { return program_->MainFrm(); }
    void begin() { program_->Main(); }

    static void signIn(const std::u16string& account = u"other@x") {
        fakes::messenger().status = 2;
        fakes::messenger().signin_name = account;
        fakes::messenger().friendly_name = account == u"me@x" ? u"Me" : u"Other";
        fakes::messenger().events.OnSignin(0);
    }
    static void signOut() { fakes::messenger().events.OnSignout(); }
    void open(const std::shared_ptr<fakes::Window>& conversation) {
        fakes::messenger().events.OnIMWindowCreated(conversation);
    }
    void press() { window().StartConvButt_Click(); }
    // Ends the reading where there is one and begins the one of this conversation.
    void read(const std::shared_ptr<fakes::Window>& conversation) {
        if (IsReadingConversation) {
            press();
        }
        window().ConversationsList.SelectKey(u"%" + toText(conversation->handle), true);
        press();
    }

    // The program has started once, whatever came in between.
    void expectOneStart() {
        ASSERT_EQ(fakes::screen().tray_calls.size(), 1U);
        EXPECT_EQ(std::count_if(shellCalls().begin(), shellCalls().end(),
                                [](const fakes::ShellCall& call) { return call.file.ends_with(u"updater.exe"); }),
                  1);
        EXPECT_NE(MainFormLoaded, 0);
        EXPECT_TRUE(window().Visible());
        EXPECT_EQ(LanguageTable.Count(), 31U);
    }
    void expectNothingRead() {
        EXPECT_EQ(IsReadingConversation, 0);
        EXPECT_EQ(ReadingWindowHandle, 0);
        EXPECT_EQ(window().ReadingWindowTop, 0);
        EXPECT_EQ(window().ReadingWindowLeft, 0);
        EXPECT_TRUE(window().ConversationsList.EnabledIt());
        EXPECT_FALSE(window().WindowResizeTimer.Enabled());
        EXPECT_FALSE(window().SystemMenuStopReadingConver.Enabled());
        EXPECT_TRUE(window().StartConvButt.Caption().starts_with(u"&Start"));
        EXPECT_EQ(LoadedCharacterKeys.Count(), 0U);
        EXPECT_EQ(LoadedCharacters.Count(), 0U);
        EXPECT_TRUE(fakes::agent().characters.empty());
        fakes::tick(window().ReadMoniter);
        EXPECT_FALSE(window().ReadMoniter.Enabled());
    }
    void expectRead(const std::shared_ptr<fakes::Window>& conversation) {
        EXPECT_NE(IsReadingConversation, 0);
        EXPECT_EQ(ReadingWindowHandle, conversation->handle);
        EXPECT_EQ(window().ReadingWindowTop, conversation->top);
        EXPECT_EQ(window().ReadingWindowLeft, conversation->left);
        EXPECT_FALSE(window().ConversationsList.EnabledIt());
        EXPECT_TRUE(window().WindowResizeTimer.Enabled());
        EXPECT_TRUE(window().ReadMoniter.Enabled());
        EXPECT_TRUE(window().SystemMenuStopReadingConver.Enabled());
        EXPECT_EQ(window().StartConvButt.Caption(), u"&Stop Reading Conversation");
        std::vector<std::u16string> on_stage, taking_part;
        for (const auto& [key, character] : fakes::agent().characters) {
            on_stage.push_back(key);
            EXPECT_TRUE(LoadedCharacters.contains(key) && LoadedCharacters.Item(key) == character);
        }
        for (const auto& contact : conversation->contacts) {
            taking_part.push_back(contact->signin_name);
        }
        EXPECT_THAT(on_stage, UnorderedElementsAreArray(taking_part));
        EXPECT_EQ(LoadedCharacterKeys.Count(), taking_part.size());
        fakes::agent().calls.clear();
        conversation->say(u"Ann", u"hello");
        fakes::tick(window().ReadMoniter);
        EXPECT_EQ(std::count_if(fakes::agent().calls.begin(), fakes::agent().calls.end(),
                                [](const fakes::AgentCall& call) { return call.call == u"Speak"; }),
                  1);
    }
    void expectSignedIn(const std::u16string& account) {
        const std::int16_t hides = account == u"other@x" ? 1 : 0;
        EXPECT_EQ(SettingsKeyPath, u"Software\\Murmelix\\" + account);
        EXPECT_FALSE(window().SignOutFrame.Visible());
        EXPECT_EQ(AutoHideIdleChar, hides);
        EXPECT_EQ(window().HideIdleCheck.Value(), hides);
        EXPECT_EQ(window().MainFrame.Caption(),
                  (account == u"me@x" ? u"Me" : u"Other") + std::u16string(u" - Online (0 Unread)"));
        ASSERT_TRUE(window().TipFrm);
        EXPECT_TRUE(window().TipFrm->Visible());
    }
    void expectSignedOut() {
        EXPECT_EQ(SettingsKeyPath, u"");
        EXPECT_TRUE(window().SignOutFrame.Visible());
        EXPECT_EQ(window().ConversationsList.GetItemCount(), 0);
        EXPECT_FALSE(window().StartConvButt.Enabled());
        EXPECT_EQ(ShowTipFrm, 0);
        EXPECT_EQ(ShowMinimizeFrm, 0);
        EXPECT_EQ(ShowEmotTipFrm, 0);
        EXPECT_FALSE(window().TipFrm && window().TipFrm->Visible());
        EXPECT_FALSE(window().TipEmotFrm && window().TipEmotFrm->Visible());
        EXPECT_EQ(fakes::registry().text(account_key, "AutoHideIdleChar").value_or("0"), "0");
        window().HideIdleCheck.setValue(1);
        EXPECT_EQ(fakes::registry().text(account_key, "AutoHideIdleChar").value_or("0"), "0") << "nothing is stored";
        expectNothingRead();
    }

    std::unique_ptr<Loader> program_;
    std::shared_ptr<fakes::Window> conversation_ = twoContacts(7), other_ = std::make_shared<fakes::Window>(8);

  private:
    static std::shared_ptr<fakes::Window> twoContacts(std::int32_t handle) {
        auto window = std::make_shared<fakes::Window>(handle);
        window->contacts = {std::make_shared<fakes::Contact>(u"ann@x", u"Ann"),
                            std::make_shared<fakes::Contact>(u"bob@x", u"Bob")};
        window->left = 300;
        return window;
    }
};

TEST_F(EventsInTheMiddle, OfMainASignInOfAnotherAccount) {
    atEveryCall([] {}, [this] { begin(); }, [] { signIn(); },
                [this] {
                    expectOneStart();
                    expectSignedIn(u"other@x");
                    expectNothingRead();
                });
}

TEST_F(EventsInTheMiddle, OfASignedOutMainASignIn) {
    atEveryCall([] { fakes::messenger().status = 1; }, [this] { begin(); }, [] { signIn(); },
                [this] {
                    expectOneStart();
                    expectSignedIn(u"other@x");
                });
}

TEST_F(EventsInTheMiddle, OfMainAFailedSignIn) {
    const auto fail = [] {
        fakes::messenger().status = 1;
        fakes::messenger().events.OnSignin(-1);
    };
    atEveryCall([] {}, [this] { begin(); }, fail,
                [this] {
                    expectOneStart();
                    expectSignedOut();
                });
}

TEST_F(EventsInTheMiddle, OfMainASignOut) {
    atEveryCall([] {}, [this] { begin(); }, [] { signOut(); },
                [this] {
                    expectOneStart();
                    expectSignedOut();
                });
}

TEST_F(EventsInTheMiddle, OfMainAStartOfReading) {
    const auto prepare = [this] {
        begin();
        open(conversation_);
    };
    atEveryCall(
        prepare, [this] { begin(); }, [this] { press(); },
        [this] {
            expectOneStart();
            expectSignedIn(u"me@x");
            expectRead(conversation_);
        });
}

TEST_F(EventsInTheMiddle, OfMainSignInsWithoutEnd) {
    program_ = std::make_unique<Loader>();
    fakes::neighbours().during = [](std::string_view) { signIn(u"me@x"); };
    begin();
    fakes::neighbours().during = nullptr;
    expectOneStart();
    EXPECT_EQ(SettingsKeyPath, u"Software\\Murmelix\\me@x");
    EXPECT_FALSE(window().SignOutFrame.Visible());
}

TEST_F(EventsInTheMiddle, OfASignInAnotherOne) {
    const auto prepare = [this] {
        begin();
        open(conversation_);
        press();
    };
    atEveryCall(
        prepare, [] { signIn(u"me@x"); }, [] { signIn(); },
        [this] {
            expectOneStart();
            expectSignedIn(u"other@x");
            expectNothingRead();
        });
}

TEST_F(EventsInTheMiddle, OfASignInASignOut) {
    const auto prepare = [this] {
        begin();
        open(conversation_);
        press();
    };
    atEveryCall(
        prepare, [] { signIn(); }, [] { signOut(); },
        [this] {
            expectOneStart();
            expectSignedOut();
        });
}

TEST_F(EventsInTheMiddle, OfASignInAStartOfReading) {
    const auto prepare = [this] {
        begin();
        open(conversation_);
        open(other_);
        read(conversation_);
    };
    atEveryCall(
        prepare, [] { signIn(); }, [this] { read(other_); },
        [this] {
            expectOneStart();
            expectSignedIn(u"other@x");
            expectRead(other_);
        });
}

class EventsInTheMiddleOfReading : public EventsInTheMiddle {
  protected:
    EventsInTheMiddleOfReading() {
        opened_ = [this] {
            begin();
            open(other_);
            open(conversation_);
        };
        reading_ = [this] {
            opened_();
            press();
        };
    }

    Step opened_, reading_;
};

TEST_F(EventsInTheMiddleOfReading, StartAndStop) {
    atEveryCall(
        opened_, [this] { press(); }, [this] { press(); },
        [this] {
            expectNothingRead();
            EXPECT_FALSE(window().TipEmotFrm && window().TipEmotFrm->Visible());
        });
}

TEST_F(EventsInTheMiddleOfReading, StartAndStartOfAnother) {
    atEveryCall(
        opened_, [this] { press(); }, [this] { read(other_); }, [this] { expectRead(other_); });
}

TEST_F(EventsInTheMiddleOfReading, StartAndStartOfTheSame) {
    atEveryCall(
        opened_, [this] { press(); }, [this] { read(conversation_); }, [this] { expectRead(conversation_); });
}

TEST_F(EventsInTheMiddleOfReading, StartAndSignIn) {
    atEveryCall(
        opened_, [this] { press(); }, [] { signIn(); },
        [this] {
            expectSignedIn(u"other@x");
            expectNothingRead();
        });
}

TEST_F(EventsInTheMiddleOfReading, StartAndSignOut) {
    atEveryCall(
        opened_, [this] { press(); }, [] { signOut(); }, [this] { expectSignedOut(); });
}

TEST_F(EventsInTheMiddleOfReading, StartAndTheWindowsEnd) {
    const auto close = [this] { fakes::messenger().events.OnIMWindowDestroyed(conversation_); };
    atEveryCall(
        opened_, [this] { press(); }, close,
        [this] {
            expectNothingRead();
            EXPECT_EQ(window().ConversationsList.GetItemCount(), 1);
        });
}

TEST_F(EventsInTheMiddleOfReading, StopAndStartOfTheSame) {
    atEveryCall(
        reading_, [this] { press(); }, [this] { press(); }, [this] { expectRead(conversation_); });
}

TEST_F(EventsInTheMiddleOfReading, StopAndStartOfAnother) {
    atEveryCall(
        reading_, [this] { press(); }, [this] { read(other_); }, [this] { expectRead(other_); });
}

TEST_F(EventsInTheMiddleOfReading, StopAndStartAndStop) {
    const auto twice = [this] {
        press();
        press();
    };
    atEveryCall(
        reading_, [this] { press(); }, twice, [this] { expectNothingRead(); });
}

TEST_F(EventsInTheMiddleOfReading, StopAndSignIn) {
    atEveryCall(
        reading_, [this] { press(); }, [] { signIn(); },
        [this] {
            expectSignedIn(u"other@x");
            expectNothingRead();
        });
}

TEST_F(EventsInTheMiddleOfReading, StopAndSignOut) {
    atEveryCall(
        reading_, [this] { press(); }, [] { signOut(); }, [this] { expectSignedOut(); });
}

TEST_F(EventsInTheMiddleOfReading, WindowsEndAndStartOfAnother) {
    const auto close = [this] { fakes::messenger().events.OnIMWindowDestroyed(conversation_); };
    atEveryCall(
        reading_, close, [this] { read(other_); },
        [this] {
            expectRead(other_);
            EXPECT_EQ(window().ConversationsList.GetItemCount(), 1);
        });
}

TEST_F(EventsInTheMiddleOfReading, TickAndStartOfAnother) {
    const auto prepare = [this] {
        reading_();
        conversation_->say(u"Ann", u"one :) two");
    };
    atEveryCall(
        prepare, [this] { fakes::tick(window().ReadMoniter); }, [this] { read(other_); },
        [this] { expectRead(other_); });
}

TEST_F(EventsInTheMiddleOfReading, TickOfTheWindowsPlaceAndStartOfAnother) {
    const auto prepare = [this] {
        reading_();
        conversation_->top += 50;
    };
    atEveryCall(
        prepare, [this] { fakes::tick(window().WindowResizeTimer); }, [this] { read(other_); },
        [this] {
            expectRead(other_);
            conversation_->top -= 50;
        });
}

TEST_F(EventsInTheMiddleOfReading, RemoveMeAndStop) {
    atEveryCall(
        reading_, [] { fakes::agent().events.Command(u"ann@xR%"); }, [this] { press(); },
        [this] { expectNothingRead(); });
}

TEST_F(EventsInTheMiddleOfReading, ContactComesAndGoes) {
    const auto cy = std::make_shared<fakes::Contact>(u"cy@x", u"Cy");
    const auto come = [&] {
        conversation_->contacts.push_back(cy);
        fakes::messenger().events.OnIMWindowContactAdded(cy, conversation_);
    };
    const auto go = [&] {
        std::erase(conversation_->contacts, cy);
        fakes::messenger().events.OnIMWindowContactRemoved(cy, conversation_);
    };
    const auto prepare = [&] {
        std::erase(conversation_->contacts, cy);
        reading_();
    };
    atEveryCall(prepare, come, go, [&] {
        EXPECT_EQ(window().ConversationsList.Item(2).Text, u"Ann, Bob");
        expectRead(conversation_);
    });
}

TEST_F(EventsInTheMiddle, OfAConversationsBeginningItsEnd) {
    const auto close = [this] { fakes::messenger().events.OnIMWindowDestroyed(conversation_); };
    atEveryCall([this] { begin(); }, [this] { open(conversation_); }, close,
                [this] {
                    EXPECT_EQ(window().ConversationsList.GetItemCount(), 0);
                    EXPECT_FALSE(window().StartConvButt.Enabled());
                });
}

TEST_F(EventsInTheMiddle, OfAConversationsBeginningASignOut) {
    atEveryCall([this] { begin(); }, [this] { open(conversation_); }, [] { signOut(); }, [this] { expectSignedOut(); });
}

TEST_F(EventsInTheMiddle, OfAStatusAnotherOne) {
    atEveryCall([this] { begin(); },
                [] {
                    fakes::messenger().status = 34;
                    fakes::messenger().events.OnMyStatusChange(0, 34);
                },
                [] {
                    fakes::messenger().status = 10;
                    fakes::messenger().friendly_name = u"New";
                    fakes::messenger().events.OnMyStatusChange(0, 10);
                },
                [this] { EXPECT_EQ(window().MainFrame.Caption(), u"New - Busy (0 Unread)"); });
}

TEST_F(EventsInTheMiddle, OfAStatusNewMail) {
    const auto mail = [] {
        fakes::messenger().unread = 3;
        fakes::messenger().events.OnUnreadEmailChange();
    };
    atEveryCall([this] { begin(); }, [] { fakes::messenger().events.OnMyStatusChange(0, 34); }, mail,
                [this] { EXPECT_EQ(window().MainFrame.Caption(), u"Me - Away (3 Unread)"); });
}

TEST_F(EventsInTheMiddle, OfNewMailMoreMailOrAStatus) {
    const auto mail = [](int count) {
        fakes::messenger().unread = count;
        fakes::messenger().events.OnUnreadEmailChange();
    };
    atEveryCall([this] { begin(); }, [&] { mail(3); }, [&] { mail(4); },
                [this] { EXPECT_EQ(window().MainFrame.Caption(), u"Me - Online (4 Unread)"); });
    atEveryCall([this] { begin(); }, [&] { mail(3); }, [] { fakes::messenger().events.OnMyStatusChange(0, 34); },
                [this] { EXPECT_EQ(window().MainFrame.Caption(), u"Me - Away (3 Unread)"); });
}

TEST_F(EventsInTheMiddle, OfANewNameAStatus) {
    const auto rename = [] {
        fakes::messenger().friendly_name = u"New";
        fakes::messenger().events.OnMyFriendlyNameChange(0, u"Me");
    };
    const auto go_away = [] {
        fakes::messenger().status = 34;
        fakes::messenger().events.OnMyStatusChange(0, 34);
    };
    atEveryCall([this] { begin(); }, rename, go_away,
                [this] { EXPECT_EQ(window().MainFrame.Caption(), u"New - Away (0 Unread)"); });
}

TEST_F(EventsInTheMiddle, OfAFailingStatusASignIn) {
    const auto fail = [] {
        fakes::neighbours().failing = {"MyFriendlyName"};
        fakes::messenger().events.OnMyStatusChange(0, 34);
    };
    const auto sign_in = [] {
        fakes::neighbours().failing.clear();
        signIn();
        fakes::neighbours().fail_at = fakes::neighbours().calls; // the call it came in the middle of
    };
    atEveryCall([this] { begin(); }, fail, sign_in, [this] { expectSignedIn(u"other@x"); });
}

} // namespace
} // namespace murmelix
