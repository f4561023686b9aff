// An Agent server in memory: character files, the characters loaded from them, and every call on these in order.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/agent_control.h"

namespace murmelix::fakes {

// One call on a character; the fields that the call has.
struct AgentCall {
    std::u16string key;
    std::u16string
        call; // "Speak", "Play", "Stop", "Show", "Hide", "MoveTo", "AddCommand", "LanguageID", "BalloonStyle"
    std::optional<std::u16string> text{}, url{}, animation{};
    std::int32_t x = 0, y = 0; // MoveTo; the value set by LanguageID and BalloonStyle is x; AddCommand's flags
    bool operator==(const AgentCall&) const = default;
};

// What a character file holds.
struct CharacterFile {
    std::u16string name;
    std::int16_t width = 128, height = 128;
};

class Character : public platform::AgentCharacter {
  public:
    explicit Character(std::u16string character_id) : id(std::move(character_id)) {}

    bool Visible() override;
    std::u16string Name() override;
    std::int16_t Left() override;
    std::int16_t Top() override;
    std::int16_t Width() override;
    std::int16_t Height() override;
    std::int32_t LanguageID() override;
    void setLanguageID(std::int32_t language) override;
    std::int32_t BalloonStyle() override;
    void setBalloonStyle(std::int32_t style) override;
    void AddCommand(const std::u16string& command, const std::u16string& caption, bool enabled,
                    bool is_visible) override;
    std::shared_ptr<platform::AgentRequest> Play(const std::u16string& animation) override;
    void Stop(const std::u16string& what) override; // fails, as it does for any text
    std::shared_ptr<platform::AgentRequest> Speak(const std::optional<std::u16string>& text,
                                                  const std::optional<std::u16string>& url) override;
    std::shared_ptr<platform::AgentRequest> Show() override;
    std::shared_ptr<platform::AgentRequest> Hide() override;
    std::shared_ptr<platform::AgentRequest> MoveTo(std::int16_t to_x, std::int16_t to_y) override;

    std::u16string id;
    std::u16string name;
    bool visible = false;
    std::int16_t left = 0, top = 0, width = 128, height = 128;
    std::int32_t language_id = 1033;
    std::int32_t balloon_style = 1;
};

struct AgentServer {
    std::map<std::u16string, CharacterFile> files; // by path
    std::map<std::u16string, std::shared_ptr<Character>> characters;
    std::set<std::u16string> missing_animations;        // Play of these fails
    std::set<std::int32_t> languages{1033, 2057, 1031}; // with a voice
    std::vector<AgentCall> calls;
    std::vector<std::u16string> log; // "Load ID PATH", "Unload ID"
    bool installed = true;
    bool audio_output = true;
    bool request_errors = false;
    std::u16string property_page;
    bool property_sheet_visible = false;
    platform::AgentEvents events; // of the control created last

    // A character on stage without a file; the program's collections know nothing of it.
    std::shared_ptr<Character> add(const std::u16string& id, const std::u16string& name);
};

AgentServer& agent();

} // namespace murmelix::fakes
