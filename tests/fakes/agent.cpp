#include "tests/fakes/agent.h"

#include "tests/fakes/fakes.h"

namespace murmelix {

namespace fakes {

AgentServer& agent() {
    return state().agent;
}

std::shared_ptr<Character> AgentServer::add(const std::u16string& id, const std::u16string& name) {
    auto character = std::make_shared<Character>(id);
    character->name = name;
    characters[id] = character;
    return character;
}

namespace {

std::shared_ptr<platform::AgentRequest> record(AgentCall call) {
    agent().calls.push_back(std::move(call));
    return std::make_shared<platform::AgentRequest>();
}

[[noreturn]] void fail(std::uint32_t result, const char* what) {
    throw platform::NeighbourError(static_cast<std::int32_t>(result), what);
}

} // namespace

bool Character::Visible() {
    neighbours().enter("Visible");
    return visible;
}

std::u16string Character::Name() {
    neighbours().enter("Name");
    return name;
}

std::int16_t Character::Left() {
    neighbours().enter("Left");
    return left;
}

std::int16_t Character::Top() {
    neighbours().enter("Top");
    return top;
}

std::int16_t Character::Width() {
    neighbours().enter("Width");
    return width;
}

std::int16_t Character::Height() {
    neighbours().enter("Height");
    return height;
}

std::int32_t Character::LanguageID() {
    neighbours().enter("LanguageID");
    return language_id;
}

void Character::setLanguageID(std::int32_t language) {
    neighbours().enter("setLanguageID");
    record({.key = id, .call = u"LanguageID", .x = language});
    if (agent().languages.contains(language)) {
        language_id = language;
    }
}

std::int32_t Character::BalloonStyle() {
    neighbours().enter("BalloonStyle");
    return balloon_style;
}

void Character::setBalloonStyle(std::int32_t style) {
    neighbours().enter("setBalloonStyle");
    record({.key = id, .call = u"BalloonStyle", .x = style});
    balloon_style = style;
}

void Character::AddCommand(const std::u16string& command, const std::u16string& caption, bool enabled,
                           bool is_visible) {
    neighbours().enter("AddCommand");
    record({.key = id, .call = u"AddCommand", .text = command, .animation = caption, .x = enabled, .y = is_visible});
}

std::shared_ptr<platform::AgentRequest> Character::Play(const std::u16string& animation) {
    neighbours().enter("Play");
    auto request = record({.key = id, .call = u"Play", .animation = animation});
    if (agent().missing_animations.contains(animation)) {
        fail(0x80042001, "the character lacks the animation");
    }
    return request;
}

void Character::Stop(const std::u16string& what) {
    neighbours().enter("Stop");
    record({.key = id, .call = u"Stop", .text = what});
    fail(0x80020005, "Stop needs a request");
}

std::shared_ptr<platform::AgentRequest> Character::Speak(const std::optional<std::u16string>& text,
                                                         const std::optional<std::u16string>& url) {
    neighbours().enter("Speak");
    return record({.key = id, .call = u"Speak", .text = text, .url = url});
}

std::shared_ptr<platform::AgentRequest> Character::Show() {
    neighbours().enter("Show");
    visible = true;
    return record({.key = id, .call = u"Show"});
}

std::shared_ptr<platform::AgentRequest> Character::Hide() {
    neighbours().enter("Hide");
    visible = false;
    return record({.key = id, .call = u"Hide"});
}

std::shared_ptr<platform::AgentRequest> Character::MoveTo(std::int16_t to_x, std::int16_t to_y) {
    neighbours().enter("MoveTo");
    left = to_x;
    top = to_y;
    return record({.key = id, .call = u"MoveTo", .x = to_x, .y = to_y});
}

namespace {

class Control : public platform::AgentControl {
  public:
    void setRaiseRequestErrors(bool raise) override {
        enter("RaiseRequestErrors");
        agent().request_errors = raise;
    }

    bool AudioOutputEnabled() override {
        enter("AudioOutput.Enabled");
        return agent().audio_output;
    }

    void setPropertySheetPage(const std::u16string& page) override {
        enter("PropertySheet.Page");
        agent().property_page = page;
    }

    void setPropertySheetVisible(bool visible) override {
        enter("PropertySheet.Visible");
        agent().property_sheet_visible = visible;
    }

    std::shared_ptr<platform::AgentRequest> Load(const std::u16string& character_id,
                                                 const std::u16string& path) override {
        enter("Load");
        agent().log.push_back(u"Load " + character_id + u" " + path);
        const auto file = agent().files.find(path);
        if (file == agent().files.end()) {
            fail(0x80070002, "no such character file");
        }
        if (agent().characters.contains(character_id)) {
            fail(0x8004210B, "the id is in use");
        }
        const auto character = agent().add(character_id, file->second.name);
        character->width = file->second.width;
        character->height = file->second.height;
        return std::make_shared<platform::AgentRequest>();
    }

    std::shared_ptr<platform::AgentCharacter> Character(const std::u16string& character_id) override {
        enter("Character");
        return loaded(character_id)->second;
    }

    void Unload(const std::u16string& character_id) override {
        enter("Unload");
        agent().log.push_back(u"Unload " + character_id);
        agent().characters.erase(loaded(character_id));
    }

  private:
    static void enter(std::string_view call) {
        neighbours().enter(call);
        if (!agent().installed) {
            fail(0x80040154, "Agent is not installed");
        }
    }

    static std::map<std::u16string, std::shared_ptr<fakes::Character>>::iterator loaded(const std::u16string& id) {
        const auto found = agent().characters.find(id);
        if (found == agent().characters.end()) {
            fail(0x80042106, "no character has the id");
        }
        return found;
    }
};

} // namespace

} // namespace fakes

std::unique_ptr<platform::AgentControl> platform::createAgentControl(AgentEvents events) {
    fakes::agent().events = std::move(events);
    return std::make_unique<fakes::Control>();
}

} // namespace murmelix
