#include <algorithm>
#include <filesystem>

#include "common/text.h"
#include "companions/agent/automation/local_file.h"
#include "companions/agent/automation/objects.h"
#include "companions/agent/voice/tags.h"

namespace agent::automation {
namespace {

using stage::Actor;
using stage::Kind;
using stage::Request;

constexpr std::int32_t default_move = 1000;   // ms, where MoveTo names no speed
constexpr std::int32_t longest_move = 600000; // ms
constexpr std::int32_t default_speed = 170;   // words a minute, where neither the voice nor the character names one
constexpr std::int32_t no_recognition = 1;    // of SRStatus
constexpr std::int16_t not_active = 0, active_client = 1, topmost = 2; // of Active and Activate

int side(std::int16_t pixels) {
    if (pixels < 1) {
        throw Error(E_INVALIDARG, u"A character is at least one pixel wide and high.");
    }
    return pixels;
}

bool isLocalFile(const std::u16string& named) {
    try {
        const std::u16string path = localPath(named);
        std::error_code none;
        return path.find(u'\0') == path.npos && std::filesystem::is_regular_file(std::filesystem::path(path), none);
    } catch (const Error&) {
        return false;
    }
}

// The names in a list parted by commas.
std::vector<std::u16string> listed(const std::u16string& list) {
    std::vector<std::u16string> names;
    for (std::size_t at = 0; at <= list.size();) {
        const std::size_t comma = std::min(list.find(u',', at), list.size());
        names.emplace_back(murmelix::trim(std::u16string_view(list).substr(at, comma - at)));
        at = comma + 1;
    }
    return names;
}

// The kinds of a list parted by commas; nothing for a list without any.
std::optional<std::vector<stage::StopKind>> stopKinds(const std::u16string& list) {
    std::vector<stage::StopKind> kinds;
    bool named = false;
    for (const std::u16string& name : listed(list)) {
        if (name.empty()) {
            continue;
        }
        named = true;
        if (sameName(name, u"Move")) {
            kinds.push_back(stage::StopKind::move);
        } else if (sameName(name, u"Play")) {
            kinds.push_back(stage::StopKind::play);
        } else if (sameName(name, u"Speak")) {
            kinds.push_back(stage::StopKind::speak);
        } else if (sameName(name, u"Get")) {
            kinds.push_back(stage::StopKind::get);
        } else if (!sameName(name, u"NonQueuedGet")) { // over as soon as it is asked for
            throw Error(E_INVALIDARG, u"\"" + name + u"\" is no kind of request.");
        }
    }
    return named ? std::optional(kinds) : std::nullopt;
}

class Character final : public CharacterPart {
  public:
    Character(std::shared_ptr<Client> client, std::shared_ptr<Loaded> loaded)
        : CharacterPart(std::move(client), std::move(loaded)) {}

  private:
    const Interface* published() const override { return &type_library::ICharacter; }
    std::span<const Member> members() const override {
        static const Members<Character> all{
            property(L"Visible", 2, [](const Character& self) { return self.actor().visible(); }),
            property(
                L"Left", 3, [](const Character& self) { return small(self.actor().left()); }, &Character::setLeft),
            property(
                L"Top", 4, [](const Character& self) { return small(self.actor().top()); }, &Character::setTop),
            property(
                L"Height", 5, [](const Character& self) { return small(self.actor().height()); },
                &Character::setHeight),
            property(
                L"Width", 6, [](const Character& self) { return small(self.actor().width()); }, &Character::setWidth),
            property(L"Speed", 10, &Character::speed),
            property(L"Pitch", 11,
                     [](const Character& self) { return static_cast<std::int32_t>(self.actor().manner.pitch); }),
            method(L"Play", 13, &Character::play, {L"Animation"}),
            method(L"Stop", 14, &Character::stop, {L"Request"}),
            method(L"Speak", 15, &Character::speak, {L"Text", L"Url"}),
            method(L"GestureAt", 17, &Character::gestureAt, {L"x", L"y"}),
            method(L"MoveTo", 18, &Character::moveTo, {L"x", L"y", L"Speed"}),
            method(L"Hide", 19, &Character::hide, {L"Fast"}),
            method(L"Show", 20, &Character::show, {L"Fast"}),
            method(L"Interrupt", 21, &Character::interrupt, {L"Request"}),
            method(L"Wait", 22, &Character::wait, {L"Request"}),
            property(L"Balloon", 23, [](Character& self) { return makeBalloon(self.client(), self.shared()); }),
            property(
                L"Name", 24, [](const Character& self) { return self.actor().name; },
                [](Character& self, Label name) {
                    self.actor().name = std::move(name.text);
                    self.loaded().renamed = true;
                }),
            property(L"Commands", 25, &Character::commands, {L"Name"}),
            method(L"Activate", 26, &Character::activate, {L"State"}),
            method(L"Get", 27, &Character::get, {L"Type", L"Name", L"Queue"}),
            property(
                L"Description", 28, [](const Character& self) { return self.loaded().description; },
                [](Character& self, std::u16string words) { self.loaded().description = std::move(words); }),
            property(
                L"IdleOn", 29, [](const Character& self) { return self.actor().idle_on; },
                [](Character& self, bool on) { self.actor().idle_on = on; }),
            method(L"StopAll", 31, &Character::stopAll, {L"Types"}),
            property(L"MoveCause", 32,
                     [](const Character& self) { return static_cast<std::int16_t>(self.actor().moveCause()); }),
            property(L"VisibilityCause", 33,
                     [](const Character& self) { return static_cast<std::int16_t>(self.actor().visibilityCause()); }),
            property(L"HasOtherClients", 34,
                     [](const Character& self) { return self.server().hasOtherClients(self.loaded()); }),
            property(
                L"SoundEffectsOn", 35, [](const Character& self) { return self.actor().sound_effects_on; },
                [](Character& self, bool on) { self.actor().sound_effects_on = on; }),
            property(L"ExtraData", 36, [](const Character& self) { return self.loaded().extra_data; }),
            method(L"ShowPopupMenu", 37, &Character::showPopupMenu, {L"x", L"y"}),
            property(
                L"AutoPopupMenu", 38, [](const Character& self) { return self.loaded().auto_popup_menu; },
                [](Character& self, bool on) { self.loaded().auto_popup_menu = on; }),
            property(
                L"HelpModeOn", 39, [](const Character& self) { return self.loaded().help_mode; },
                [](Character& self, bool on) { self.loaded().help_mode = on; }),
            property(
                L"HelpContextID", 40, [](const Character& self) { return self.loaded().help_context; },
                [](Character& self, std::int32_t id) { self.loaded().help_context = id; }),
            property(L"Active", 41, &Character::active),
            method(L"Listen", 42, &Character::listen, {L"Listen"}),
            property(L"LanguageID", 43, &Character::languageId, &Character::setLanguageId),
            property(
                L"SRModeID", 46, [](const Character&) { return u""; },
                [](Character&, const Variant&) { refuseSpeechInput(); }),
            property(
                L"TTSModeID", 47, [](const Character& self) { return self.ownVoice(); }, &Character::setTtsModeId),
            property(
                L"HelpFile", 48, [](const Character& self) { return self.loaded().help_file; },
                [](Character& self, Label file) { self.loaded().help_file = std::move(file.text); }),
            property(L"GUID", 49, [](const Character& self) { return textOf(self.file().guid); }),
            property(L"OriginalHeight", 50, [](const Character& self) { return small(self.file().height); }),
            property(L"OriginalWidth", 51, [](const Character& self) { return small(self.file().width); }),
            method(L"Think", 52, &Character::think, {L"Text"}),
            property(L"Version", 53, [](const Character&) { return u"2.0"; }),
            property(L"AnimationNames", 54,
                     [](Character& self) { return makeAnimationNames(self.client(), self.shared()); }),
            property(L"SRStatus", 55, [](const Character&) { return no_recognition; }),
        };
        return all;
    }

    const acs::Character& file() const { return loaded().file->character(); }

    void setLeft(std::int16_t left) { actor().place(left, actor().top(), stage::MoveCause::program); }
    void setTop(std::int16_t top) { actor().place(actor().left(), top, stage::MoveCause::program); }
    void setWidth(std::int16_t width) { actor().resize(side(width), actor().height()); }
    void setHeight(std::int16_t height) { actor().resize(actor().width(), side(height)); }

    std::int32_t speed() const {
        const auto speed = static_cast<std::int32_t>(actor().manner.speed);
        return speed == 0 ? default_speed : speed;
    }

    std::int32_t languageId() const { return actor().manner.language_id; }
    void setLanguageId(std::int32_t language) {
        if (language > 0 && language <= 0xFFFF && server().service().speaks(static_cast<std::uint16_t>(language))) {
            actor().manner.language_id = static_cast<std::uint16_t>(language);
            client()->takeNames(loaded());
        }
    }

    Ptr<IDispatch> queue(Request request) {
        Actor& of = actor();
        const stage::RequestRef added = server().stage().newRequest(std::move(request));
        client()->admit(added);
        server().transcript().call(loaded().id, of.name, *added);
        of.add(added);
        return Ptr<IDispatch>(client()->object(added).get());
    }

    Ptr<IDispatch> play(const Label& animation) {
        if (client()->raise_request_errors && !file().findAnimation(animation.text)) {
            throw Error(HRESULT_FROM_WIN32(ERROR_NOT_FOUND),
                        u"The character has no animation \"" + animation.text + u"\".");
        }
        return queue({.kind = Kind::play, .text = animation.text});
    }

    Ptr<IDispatch> speak(const std::optional<std::u16string>& text, const std::optional<Label>& url) {
        const std::u16string sound = url ? localPath(url->text) : std::u16string();
        return queue({.kind = Kind::speak, .text = text.value_or(u""), .url = sound});
    }

    Ptr<IDispatch> think(const std::u16string& text) {
        return queue({.kind = Kind::think, .text = voice::readTags(text, actor().manner, {}).shown});
    }

    Ptr<IDispatch> gestureAt(std::int16_t x, std::int16_t y) {
        return queue({.kind = Kind::gesture_at, .x = x, .y = y});
    }

    Ptr<IDispatch> moveTo(std::int16_t x, std::int16_t y, std::optional<std::int32_t> speed) {
        return queue({.kind = Kind::move_to,
                      .x = x,
                      .y = y,
                      .speed = std::clamp(speed.value_or(default_move), 0, longest_move)});
    }

    Ptr<IDispatch> hide(std::optional<bool> fast) { return queue({.kind = Kind::hide, .fast = fast.value_or(false)}); }
    Ptr<IDispatch> show(std::optional<bool> fast) { return queue({.kind = Kind::show, .fast = fast.value_or(false)}); }
    Ptr<IDispatch> interrupt(const GivenRequest& target) {
        return queue({.kind = Kind::interrupt, .target = target.request});
    }
    Ptr<IDispatch> wait(const GivenRequest& target) { return queue({.kind = Kind::wait, .target = target.request}); }

    void stop(const std::optional<GivenRequest>& request) {
        server().transcript().stop(loaded().id, actor().name);
        if (request) {
            actor().stop(request->request);
        } else {
            actor().stop();
        }
    }

    void stopAll(const std::optional<Label>& types) {
        const auto kinds = stopKinds(types ? types->text : std::u16string());
        server().transcript().stop(loaded().id, actor().name);
        if (kinds) {
            actor().stopAll(*kinds);
        } else {
            actor().stop();
        }
    }

    Ptr<IDispatch> commands(const std::optional<Label>& name) {
        return name ? commandOf(client(), shared(), name->text) : makeCommands(client(), shared());
    }

    bool activate(std::optional<std::int32_t> state) {
        const std::int32_t wanted = state.value_or(topmost);
        if (wanted < not_active || wanted > topmost) {
            throw Error(E_INVALIDARG, u"A character is activated by 0, 1 or 2.");
        }
        if (!actor().visible()) {
            return false;
        }
        if (wanted == topmost) {
            server().activate(actor().id());
        } else if (wanted == active_client) {
            server().claim(loaded());
        } else {
            server().giveUp(loaded());
        }
        return true;
    }

    std::int16_t active() const {
        if (server().active() == actor().id()) {
            return topmost;
        }
        return server().isActiveClient(loaded()) ? active_client : not_active;
    }

    // The file's; empty where it names none.
    std::u16string ownVoice() const {
        const auto& voice = file().voice;
        return voice && voice->mode != acs::Guid{} ? textOf(voice->mode) : u"";
    }
    void setTtsModeId(const Label& mode) {
        if (!mode.text.empty() && !sameName(mode.text, ownVoice())) {
            throw Error(E_INVALIDARG, u"There is no voice \"" + mode.text + u"\".");
        }
    }

    // All that a character has is there once it is loaded: Get finds out whether it is.
    Ptr<IDispatch> get(const Label& type, const Label& names, std::optional<bool> queued) {
        stage::Failure failure = stage::Failure::none;
        if (sameName(type.text, u"WaveFile")) {
            failure = isLocalFile(names.text) ? failure : stage::Failure::no_sound;
        } else if (sameName(type.text, u"Animation")) {
            const auto has = [this](const std::u16string& name) { return file().findAnimation(name) != nullptr; };
            failure = std::ranges::all_of(listed(names.text), has) ? failure : stage::Failure::no_animation;
        } else if (sameName(type.text, u"State")) {
            const auto has = [this](const std::u16string& name) { return !actor().repertoire().state(name).empty(); };
            failure = std::ranges::all_of(listed(names.text), has) ? failure : stage::Failure::no_state;
        } else {
            throw Error(E_INVALIDARG, u"\"" + type.text + u"\" is nothing that can be got.");
        }
        if (failure != stage::Failure::none && client()->raise_request_errors) {
            throw Error(HRESULT_FROM_WIN32(ERROR_NOT_FOUND), u"The character has no \"" + names.text + u"\".");
        }
        Request request{.kind = Kind::get, .text = names.text, .actor = actor().id(), .failure = failure};
        return queued.value_or(true) ? queue(std::move(request)) : finished(client(), std::move(request), failure);
    }

    bool showPopupMenu(std::int16_t x, std::int16_t y) {
        server().popUpMenu(actor().id(), x, y);
        return actor().visible();
    }

    bool listen(bool on) {
        if (on) {
            refuseSpeechInput();
        }
        return false;
    }
};

} // namespace

Ptr<IDispatch> makeCharacter(const std::shared_ptr<Client>& client, const std::shared_ptr<Loaded>& loaded) {
    return Ptr<IDispatch>(make<Character>(client, loaded).get());
}

} // namespace agent::automation
