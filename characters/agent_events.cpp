#include "characters/agent_events.h"

#include <utility>

#include "app/settings.h"
#include "app/shell_state.h"
#include "characters/action_script.h"
#include "characters/character_state.h"
#include "characters/emoticons.h"
#include "characters/placement.h"
#include "common/text.h"
#include "languages/language_table.h"
#include "platform/message_box.h"
#include "platform/system.h"
#include "ui/screen.h"

namespace murmelix {

namespace {

using platform::attempt;

// Nothing when no contact has the sign-in name.
std::shared_ptr<platform::MessengerContact> findContact(const std::u16string& signin_name) {
    platform::MessengerApi* const messenger = characterHost.messenger ? characterHost.messenger() : nullptr;
    if (!messenger) {
        return nullptr;
    }
    std::shared_ptr<platform::MessengerContacts> contacts;
    std::int32_t count = 0;
    attempt([&] {
        contacts = messenger->MyContacts();
        count = contacts->Count();
    });
    for (std::int32_t i = 0; i < count; ++i) {
        std::shared_ptr<platform::MessengerContact> contact;
        bool found = false;
        attempt([&] {
            contact = contacts->Item(i);
            found = contact->SigninName() == signin_name;
        });
        if (found) {
            return contact;
        }
    }
    return nullptr;
}

void sayWhoIAm(const std::u16string& key) {
    std::u16string text = u"I am " + key + u".";
    if (const auto contact = findContact(key)) {
        attempt([&] {
            const std::u16string name = MarkEmoticons(contact->FriendlyName(), false);
            text += u"\r\nBest known as: ";
            text += trim(name);
        });
    }
    RunCharacterCommand(key, u"speak", text);
}

void changeLanguage(const std::u16string& key) {
    static bool choosing = false; // one at a time: there is one LanguageToSwitch
    const auto character = loadedCharacter(key);
    if (!character || choosing) {
        return;
    }
    attempt([&] {
        LanguageToSwitch = toInt16(character->LanguageID());
        const std::int32_t left = character->Left(), top = character->Top();
        if (characterHost.chooseLanguage) {
            struct Choice {
                Choice() { choosing = true; }
                ~Choice() { choosing = false; }
            } const choice;
            characterHost.chooseLanguage(key, ui::toTwips(left), ui::toTwips(top));
        }
        if (character->LanguageID() == LanguageToSwitch) {
            return;
        }
        attempt([&] { character->setLanguageID(LanguageToSwitch); });
        if (character->LanguageID() != LanguageToSwitch) {
            platform::messageBox(
                u"You don't have that language installed! Please download more languages and try again!",
                platform::mb_ok | platform::mb_critical, u"Error Switching Languages");
        }
    });
}

void removeForThisRun(const std::u16string& key) {
    const std::uint32_t reading = ReadingNumber;
    if (characterHost.removeMoniteredContact) {
        characterHost.removeMoniteredContact(key);
    }
    if (reading != ReadingNumber) { // the reading has ended meanwhile, and its contacts with it
        return;
    }
    if (!LoadedCharacterKeys.contains(key)) {
        LoadedCharacterKeys.Add(key, key);
    }
    if (AutoAttachChar) {
        ReArrangeLoadedCharacterPositions();
    }
}

void endAfter(const std::u16string& text, const std::u16string& title) {
    // A server that tells of its end and then ends is heard twice, the second time in the middle of the first.
    if (std::exchange(characterHost.ending, true)) {
        return;
    }
    platform::messageBox(text, platform::mb_ok | platform::mb_critical, title);
    if (characterHost.deleteSystemTrayIcon) {
        characterHost.deleteSystemTrayIcon();
    }
    platform::endProcess();
}

} // namespace

void Agent_Command(const std::u16string& name) {
    if (name.size() < 2 || name.back() != u'%') {
        return;
    }
    const std::u16string key = name.substr(0, name.size() - 2);
    switch (name[name.size() - 2]) {
    case u'Q':
        Agent_DblClick(key);
        break;
    case u'W':
        sayWhoIAm(key);
        break;
    case u'L':
        changeLanguage(key);
        break;
    case u'R':
        removeForThisRun(key);
        break;
    default:
        break;
    }
}

void Agent_DblClick(const std::u16string& character_id) {
    attempt([&] {
        const auto character = characterHost.agent->Character(character_id);
        const std::int32_t left = character->Left();
        const std::int32_t bottom = character->Top() + character->Height();
        if (characterHost.openQuickMessage) {
            characterHost.openQuickMessage(character_id, ui::toTwips(left), ui::toTwips(bottom));
        }
    });
}

void Agent_IdleStart(const std::u16string& character_id) {
    if (AutoHideIdleChar) {
        RunCharacterCommand(character_id, u"hide");
    }
}

void Agent_Restart() {
    endAfter(u"Microsoft Agent was restarted! Murmelix will now close!", u"MSAgent Restart Alert!");
}

void Agent_Shutdown() {
    endAfter(u"Microsoft Agent was shutdown! Murmelix will now close!", u"MSAgent Shutdown Alert!");
}

platform::AgentEvents agentEvents() {
    platform::AgentEvents events;
    events.Command = Agent_Command;
    events.DblClick = [](const std::u16string& character_id, std::int16_t, std::int16_t, std::int16_t, std::int16_t) {
        Agent_DblClick(character_id);
    };
    events.IdleStart = Agent_IdleStart;
    events.Restart = Agent_Restart;
    events.Shutdown = Agent_Shutdown;
    return events;
}

} // namespace murmelix
