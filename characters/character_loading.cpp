#include "characters/character_loading.h"

#include <algorithm>
#include <deque>

#include "app/settings.h"
#include "app/shell_state.h"
#include "characters/character_state.h"
#include "characters/placement.h"
#include "common/text.h"
#include "languages/language_table.h"
#include "matchups/matchup_store.h"
#include "platform/message_box.h"
#include "platform/system.h"

namespace murmelix {

namespace {

using platform::AgentCharacter;
using platform::attempt;

constexpr std::u16string_view no_characters = u"NO_CHARS";
constexpr std::u16string_view all_characters_loaded = u"ALL_CHARS_LOADED";

constexpr struct {
    const char16_t* suffix;
    const char16_t* caption;
    bool enabled;
} menu_commands[] = {
    {u"Q%", u"&Quick Message", true},      {u"1%", u" ", false}, {u"W%", u"&Who Am I?", true}, {u"2%", u" ", false},
    {u"L%", u"&Change My Language", true}, {u"3%", u" ", false}, {u"R%", u"&Remove Me", true},
};

// Contacts that came up while another one's character was being loaded or unloaded: one at a time, so that no two take
// the same file and none an id that is still in use.
bool stage_in_use = false;
std::deque<std::u16string> waiting;

std::u16string charactersDirectory() {
    return WindowsDir + u"msagent\\chars\\";
}

bool isInUse(const std::u16string& character_name) {
    const auto characters = charactersInLoadingOrder();
    return std::any_of(characters.begin(), characters.end(), [&](const auto& character) {
        bool same = false;
        attempt([&] { same = character->Name() == character_name; });
        return same;
    });
}

MatchedCharacter loadFile(const std::u16string& key, const std::u16string& file) {
    MatchedCharacter loaded;
    loaded.request = characterHost.agent->Load(key, charactersDirectory() + file);
    loaded.character = characterHost.agent->Character(key);
    loaded.done = true;
    return loaded;
}

void offerDownload(const std::u16string& title, const std::u16string& trouble, const std::u16string& advice) {
    const std::u16string page = u"http://" + platform::siteHost() + u"/Murmelix/download/d_characters.html";
    const std::u16string text = trouble + u"\r\n" + advice + page + u"\r\nWould you like to go there now?";
    if (platform::messageBox(text, platform::mb_yes_no | platform::mb_critical, title) == platform::answer_yes) {
        platform::shellExecute(u"Open", page, {}, {});
    }
}

// A character from the first free file; null where there is none, the user having been told.
std::shared_ptr<AgentCharacter> loadFreeCharacter(const std::u16string& key) {
    const std::u16string file = PickFreeCharacter();
    if (file == no_characters) {
        offerDownload(u"No Characters To Use!",
                      u"You have no character files on your computer! You must have at least one character to use "
                      u"this application!",
                      u"Please download some characters from ");
        return nullptr;
    }
    if (file == all_characters_loaded) {
        offerDownload(u"All Characters Loaded!",
                      u"All characters have been loaded and used. You need at least one more character!",
                      u"Please download one more character file from ");
        return nullptr;
    }
    return loadFile(key, file).character;
}

void addMenuCommands(AgentCharacter& character, const std::u16string& key) {
    for (const auto& command : menu_commands) {
        attempt([&] { character.AddCommand(key + command.suffix, command.caption, command.enabled, true); });
    }
}

void setUp(AgentCharacter& character) {
    attempt([&] {
        if (LanguageTable.contains(u"EnglishUS")) {
            character.setLanguageID(LanguageFromKey(LanguageTable.Item(u"EnglishUS")));
        }
    });
    attempt([&] { character.setBalloonStyle(BalloonStyleFor(character.BalloonStyle(), AutoHideBalloon != 0)); });
}

// Loading runs the message loop: the contact may have been dropped, or dropped and asked for again.
bool isStillWanted(const std::u16string& key) {
    return LoadedCharacterKeys.contains(key) && !LoadedCharacters.contains(key) &&
           std::find(waiting.begin(), waiting.end(), key) == waiting.end();
}

void bringOnStage(const std::u16string& key) {
    std::shared_ptr<AgentCharacter> character;
    attempt([&] {
        const MatchedCharacter matched = LoadMatchedCharacter(key);
        character = matched.done ? matched.character : loadFreeCharacter(key);
    });
    if (!character) {
        return;
    }
    std::shared_ptr<platform::AgentRequest> request;
    if (isStillWanted(key)) {
        addMenuCommands(*character, key);
        setUp(*character);
        PlaceCharacter(*character);
        attempt([&] { request = character->Show(); });
    }
    if (!isStillWanted(key)) {
        attempt([&] { characterHost.agent->Unload(key); });
        return;
    }
    LoadedCharacters.Add(character, key);
    LastRequests.Add(request, key);
}

class StageUse {
  public:
    StageUse() { stage_in_use = true; }
    ~StageUse() {
        stage_in_use = false;
        waiting.clear();
    }
    StageUse(const StageUse&) = delete;
    StageUse& operator=(const StageUse&) = delete;

    void bringOnWaiting() {
        while (!waiting.empty()) {
            const std::u16string next = std::move(waiting.front());
            waiting.pop_front();
            if (isStillWanted(next)) {
                bringOnStage(next);
            }
        }
    }
};

void unload(const std::vector<std::u16string>& keys) {
    for (const std::u16string& key : keys) {
        attempt([&] { characterHost.agent->Unload(key); });
    }
}

} // namespace

void LoadCharacterForContact(const std::u16string& key) {
    if (LoadedCharacterKeys.contains(key)) {
        return;
    }
    // Entered before the loading, which may fail: no contact is tried twice.
    LoadedCharacterKeys.Add(key, key);
    waiting.push_back(key);
    if (!stage_in_use) {
        StageUse().bringOnWaiting();
    }
}

void UnloadCharacters(const std::vector<std::u16string>& keys) {
    if (characterHost.characterGone) {
        std::for_each(keys.begin(), keys.end(), characterHost.characterGone);
    }
    if (stage_in_use) {
        return unload(keys);
    }
    StageUse use;
    unload(keys);
    use.bringOnWaiting();
}

MatchedCharacter LoadMatchedCharacter(const std::u16string& key) {
    if (!MatchupExists(key)) {
        return {};
    }
    const std::u16string name = GetMatchupCharacter(key);
    if (name.empty()) {
        return {.character = nullptr, .request = nullptr, .done = true};
    }
    if (isInUse(name)) {
        return {};
    }
    return loadFile(key, name + u".acs");
}

std::u16string PickFreeCharacter() {
    const std::vector<std::u16string> files =
        characterHost.characterFiles ? characterHost.characterFiles() : std::vector<std::u16string>{};
    if (files.empty()) {
        return std::u16string(no_characters);
    }
    for (const std::u16string& file : files) {
        const std::u16string name = file.substr(0, file.size() - std::min<std::size_t>(file.size(), 4));
        if (!isInUse(name)) {
            return name + u".acs";
        }
    }
    return std::u16string(all_characters_loaded);
}

std::int32_t BalloonStyleFor(std::int32_t style, bool auto_hide) {
    constexpr std::int32_t size_to_text = 2, hides_itself = 4, auto_pace = 8;
    return auto_hide ? style | size_to_text | hides_itself | auto_pace
                     : (style & ~hides_itself) | size_to_text | auto_pace;
}

} // namespace murmelix
