// The characters on stage, all keyed by the contact's sign-in name, and the calls that climb to the shell.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/keyed_collection.h"
#include "platform/agent_control.h"
#include "platform/messenger_api.h"

namespace murmelix {

extern KeyedCollection<std::shared_ptr<platform::AgentCharacter>> LoadedCharacters;
extern KeyedCollection<std::shared_ptr<platform::AgentRequest>> LastRequests;
extern KeyedCollection<std::u16string>
    LoadedCharacterKeys; // in loading order; a contact without a character is here too

// Null when the contact has none.
std::shared_ptr<platform::AgentCharacter> loadedCharacter(const std::u16string& key);
// By LoadedCharacterKeys, contacts without a character left out. A copy: a call on one of them can unload others.
std::vector<std::shared_ptr<platform::AgentCharacter>> charactersInLoadingOrder();

// What the characters need of the windows above them; filled in by the shell at start.
struct CharacterHost {
    platform::AgentControl* agent = nullptr;
    // The character file list of the main window, refreshed: file names "*.acs", sorted by the list.
    std::function<std::vector<std::u16string>()> characterFiles;
    // The conversation window being read; null when there is none.
    std::function<std::shared_ptr<platform::MessengerWindow>()> conversationWindow;
    // The Messenger client, for looking contacts up.
    std::function<platform::MessengerApi*()> messenger;
    std::function<void(const std::u16string& key)> removeMoniteredContact;
    // Opens the quick-message window for a contact, its top-left corner at these twips; not while one is open.
    std::function<void(const std::u16string& key, std::int32_t left, std::int32_t top)> openQuickMessage;
    // Opens the language window beside a contact's character (left, top in twips); returns when it has closed.
    std::function<void(const std::u16string& key, std::int32_t left, std::int32_t top)> chooseLanguage;
    // A contact's character has left the stage, or the contact has none any more.
    std::function<void(const std::u16string& key)> characterGone;
    std::function<void()> deleteSystemTrayIcon;
    bool ending = false; // the user has been told that the program ends
};
extern CharacterHost characterHost;

} // namespace murmelix
