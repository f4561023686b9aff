#include "companions/agent/automation/objects.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include <windows.h>

#include <ocidl.h>

#include "common/text.h"

namespace agent::automation {
namespace {

using murmelix::com::Error;
using murmelix::com::make;
using murmelix::com::numbered::Access;
using murmelix::com::numbered::Call;
using murmelix::com::numbered::Member;
using stage::Actor;
using stage::Kind;
using stage::Request;
using stage::RequestRef;

// The published event interface, _AgentEvents.
constexpr IID agent_events = {0xf5be8bd4, 0x7de6, 0x11d0, {0x91, 0xfe, 0x00, 0xc0, 0x4f, 0xd7, 0x01, 0xa5}};

constexpr int default_move = 1000; // ms, where MoveTo names no speed
constexpr std::int32_t default_speed = 170;

std::int16_t small(int value) {
    return static_cast<std::int16_t>(std::clamp(value, -32768, 32767));
}

bool sameName(std::u16string_view a, std::u16string_view b) {
    return murmelix::sameText(a, b, murmelix::LetterCase::ignored);
}

// The value of an argument that may be left out.
bool flag(const Variant& value, bool otherwise) {
    return value.isOmitted() ? otherwise : value.toBool();
}
std::int32_t number(const Variant& value, std::int32_t otherwise) {
    return value.isOmitted() ? otherwise : value.toInt32();
}
std::u16string text(const Variant& value) {
    return value.isOmitted() ? std::u16string() : value.toText();
}

// A call that is right but cannot be carried out here.
[[noreturn]] void refuse(const std::u16string& reason) {
    throw Error(E_FAIL, reason);
}

std::u16string guidText(const acs::Guid& guid) {
    const auto at = [&](std::size_t i) { return static_cast<unsigned>(guid[i]); };
    std::array<char, 40> result{};
    std::snprintf(result.data(), result.size(),
                  "{%02X%02X%02X%02X-%02X%02X-%02X%02X-%02X%02X-%02X%02X%02X%02X%02X%02X}", at(3), at(2), at(1), at(0),
                  at(5), at(4), at(7), at(6), at(8), at(9), at(10), at(11), at(12), at(13), at(14), at(15));
    return murmelix::fromUtf8(result.data());
}

// Something that the characters of a client have; a client keeps it longer than the character is loaded.
class CharacterPart : public ClientObject {
  protected:
    CharacterPart(std::shared_ptr<Client> client, std::shared_ptr<Loaded> loaded)
        : ClientObject(std::move(client)), loaded_(std::move(loaded)) {}
    Loaded& loaded() const { return *loaded_; }
    const std::shared_ptr<Loaded>& shared() const { return loaded_; }
    Server& server() const { return client()->server(); }
    Actor& actor() const {
        Actor* found = server().stage().find(loaded_->actor);
        if (!found) {
            throw Error(RPC_E_DISCONNECTED, u"The character \"" + loaded_->id + u"\" is not loaded any more.");
        }
        return *found;
    }

  private:
    std::shared_ptr<Loaded> loaded_;
};

class Balloon final : public CharacterPart {
  public:
    Balloon(std::shared_ptr<Client> client, std::shared_ptr<Loaded> loaded)
        : CharacterPart(std::move(client), std::move(loaded)) {}

  protected:
    std::span<const Member> numbered() const override {
        static const std::array<Member, 15> table{{{L"Enabled", 1, Access::get},
                                                   {L"NumberOfLines", 2, Access::get},
                                                   {L"CharsPerLine", 3, Access::get},
                                                   {L"FontName", 4, Access::get_put},
                                                   {L"FontSize", 5, Access::get_put},
                                                   {L"ForeColor", 7, Access::get},
                                                   {L"BackColor", 8, Access::get},
                                                   {L"BorderColor", 9, Access::get},
                                                   {L"FontBold", 10, Access::get},
                                                   {L"FontItalic", 11, Access::get},
                                                   {L"FontStrikethru", 12, Access::get},
                                                   {L"FontUnderline", 13, Access::get},
                                                   {L"Visible", 14, Access::get_put},
                                                   {L"FontCharSet", 15, Access::get_put},
                                                   {L"Style", 16, Access::get_put}}};
        return table;
    }

    Variant invoke(const Call& call) override {
        Actor& of = actor();
        stage::BalloonLook* look = server().theatre().look(of.id());
        if (!look) {
            refuse(u"The character has no balloon.");
        }
        if (call.put) {
            put(call.member, call.arguments.back(), of, *look);
            return {};
        }
        switch (call.member) {
        case 1:
            return (of.balloon_style & stage::balloon_on) != 0;
        case 2:
            return static_cast<std::int32_t>(of.balloon_style >> 24 & 0xFF);
        case 3:
            return static_cast<std::int32_t>(of.balloon_style >> 16 & 0xFF);
        case 4:
            return look->font_name;
        case 5:
            return static_cast<std::int32_t>((std::abs(look->font_height) * 72 + 48) / 96);
        case 7:
            return static_cast<std::int32_t>(look->text_colour);
        case 8:
            return static_cast<std::int32_t>(look->background_colour);
        case 9:
            return static_cast<std::int32_t>(look->border_colour);
        case 10:
            return look->weight >= FW_BOLD;
        case 11:
            return look->italic;
        case 12:
            return look->strike_out;
        case 13:
            return look->underline;
        case 14:
            return of.balloonOpen();
        case 15:
            return static_cast<std::int16_t>(look->character_set);
        default:
            return static_cast<std::int32_t>(of.balloon_style);
        }
    }

  private:
    static void put(DISPID member, const Variant& value, Actor& of, stage::BalloonLook& look) {
        switch (member) {
        case 4:
            look.font_name = value.toText();
            break;
        case 5: {
            const std::int32_t points = value.toInt32();
            if (points < 1 || points > 72) {
                throw Error(E_INVALIDARG, u"A balloon's font has 1 to 72 points.");
            }
            look.font_height = -((points * 96 + 36) / 72);
            break;
        }
        case 14:
            if (!value.toBool()) {
                of.hideBalloon();
            }
            break;
        case 15:
            look.character_set = static_cast<std::uint8_t>(value.toInt16() & 0xFF);
            break;
        default:
            of.balloon_style = static_cast<std::uint32_t>(value.toInt32());
            break;
        }
    }
};

class Command final : public CharacterPart {
  public:
    Command(std::shared_ptr<Client> client, std::shared_ptr<Loaded> loaded, std::u16string name)
        : CharacterPart(std::move(client), std::move(loaded)), name_(std::move(name)) {}

  protected:
    std::span<const Member> numbered() const override {
        static const std::array<Member, 6> table{{{L"Voice", 1, Access::get_put},
                                                  {L"Caption", 2, Access::get_put},
                                                  {L"Confidence", 3, Access::get_put},
                                                  {L"ConfidenceText", 4, Access::get_put},
                                                  {L"Enabled", 5, Access::get_put},
                                                  {L"Visible", 6, Access::get_put}}};
        return table;
    }

    Variant invoke(const Call& call) override {
        MenuCommand* command = loaded().commands.find(name_);
        if (!command) {
            throw Error(RPC_E_DISCONNECTED, u"The command \"" + name_ + u"\" was removed.");
        }
        const auto field = [&](auto& of, auto read) -> Variant {
            if (call.put) {
                of = read(call.arguments.back());
                return {};
            }
            return of;
        };
        const auto as_text = [](const Variant& value) { return value.toText(); };
        const auto as_flag = [](const Variant& value) { return value.toBool(); };
        switch (call.member) {
        case 1:
            return field(command->voice, as_text);
        case 2:
            return field(command->caption, as_text);
        case 3:
            return field(command->confidence, [](const Variant& value) { return value.toInt32(); });
        case 4:
            return field(command->confidence_text, as_text);
        case 5:
            return field(command->enabled, as_flag);
        default:
            return field(command->visible, as_flag);
        }
    }

  private:
    std::u16string name_;
};

class Commands final : public CharacterPart {
  public:
    Commands(std::shared_ptr<Client> client, std::shared_ptr<Loaded> loaded)
        : CharacterPart(std::move(client), std::move(loaded)) {}

    Variant item(const Variant& name) const {
        const std::u16string wanted = name.toText();
        if (!loaded().commands.find(wanted)) {
            throw Error(E_INVALIDARG, u"There is no command \"" + wanted + u"\".");
        }
        return make<Command>(client(), shared(), wanted);
    }

  protected:
    std::span<const Member> numbered() const override {
        static const std::array<Member, 16> table{
            {{L"Item", 0, Access::get, {L"Name"}, 1},
             {L"Count", 2, Access::get},
             {L"Caption", 3, Access::get_put},
             {L"Voice", 4, Access::get_put},
             {L"Visible", 5, Access::get_put},
             {L"Add", 10, Access::method, {L"Name", L"Caption", L"Voice", L"Enabled", L"Visible"}, 1},
             {L"Insert",
              11,
              Access::method,
              {L"Name", L"RefName", L"Before", L"Caption", L"Voice", L"Enabled", L"Visible"},
              2},
             {L"Remove", 13, Access::method, {L"Name"}, 1},
             {L"RemoveAll", 14, Access::method},
             {L"Command", 15, Access::method, {L"Name"}, 1},
             {L"DefaultCommand", 16, Access::get_put},
             {L"FontName", 21, Access::get_put},
             {L"VoiceCaption", 22, Access::get_put},
             {L"FontSize", 23, Access::get_put},
             {L"GlobalVoiceCommandsEnabled", 24, Access::get_put},
             {L"_NewEnum", DISPID_NEWENUM, Access::get}}};
        return table;
    }

    Variant invoke(const Call& call) override {
        actor(); // of a character that is loaded
        CommandList& list = loaded().commands;
        const auto& given = call.arguments;
        const auto words = [&](std::u16string& field) -> Variant {
            if (call.put) {
                field = given.back().toText();
                return {};
            }
            return field;
        };
        const auto choice = [&](bool& field) -> Variant {
            if (call.put) {
                field = given.back().toBool();
                return {};
            }
            return field;
        };
        switch (call.member) {
        case 0:
        case 15:
            return item(given[0]);
        case 2:
            return static_cast<std::int32_t>(list.commands.size());
        case 3:
            return words(list.caption);
        case 4:
            return words(list.voice);
        case 5:
            return choice(list.visible);
        case 10:
            return insert(list.commands.size(), given[0], given[1], given[2], given[3], given[4]);
        case 11: {
            const MenuCommand* reference = list.find(given[1].toText());
            if (!reference) {
                throw Error(E_INVALIDARG, u"There is no command \"" + given[1].toText() + u"\".");
            }
            const auto place = static_cast<std::size_t>(reference - list.commands.data());
            return insert(place + (flag(given[2], true) ? 0 : 1), given[0], given[3], given[4], given[5], given[6]);
        }
        case 13: {
            const std::u16string name = given[0].toText();
            if (!list.find(name)) {
                throw Error(E_INVALIDARG, u"There is no command \"" + name + u"\".");
            }
            std::erase_if(list.commands, [&](const MenuCommand& command) { return sameName(command.name, name); });
            return {};
        }
        case 14:
            list.commands.clear();
            return {};
        case 16:
            return words(list.default_command);
        case 21:
            return words(list.font_name);
        case 22:
            return words(list.voice_caption);
        case 23:
            if (call.put) {
                list.font_size = given.back().toInt32();
                return {};
            }
            return list.font_size;
        case 24:
            return choice(list.global_voice_commands);
        default: {
            std::vector<Variant> all;
            for (const MenuCommand& command : list.commands) {
                all.emplace_back(make<Command>(client(), shared(), command.name));
            }
            return murmelix::com::enumerate(std::move(all));
        }
        }
    }

  private:
    Variant insert(std::size_t place, const Variant& name, const Variant& caption, const Variant& voice,
                   const Variant& enabled, const Variant& visible) {
        CommandList& list = loaded().commands;
        MenuCommand command;
        command.name = name.toText();
        if (command.name.empty() || list.find(command.name)) {
            throw Error(E_INVALIDARG, u"A command needs a name of its own; \"" + command.name + u"\" is none.");
        }
        command.caption = text(caption);
        command.voice = text(voice);
        command.enabled = flag(enabled, true);
        command.visible = flag(visible, true);
        const std::u16string added = command.name;
        list.commands.insert(list.commands.begin() + static_cast<std::ptrdiff_t>(place), std::move(command));
        return make<Command>(client(), shared(), added);
    }
};

class AnimationNames final : public CharacterPart {
  public:
    AnimationNames(std::shared_ptr<Client> client, std::shared_ptr<Loaded> loaded)
        : CharacterPart(std::move(client), std::move(loaded)) {}

  protected:
    std::span<const Member> numbered() const override {
        static const std::array<Member, 1> table{{{L"Enum", DISPID_NEWENUM, Access::get}}};
        return table;
    }
    Variant invoke(const Call&) override {
        std::vector<Variant> names;
        for (const acs::Animation& animation : loaded().file->character().animations) {
            names.emplace_back(animation.name);
        }
        return murmelix::com::enumerate(std::move(names));
    }
};

class Character final : public CharacterPart {
  public:
    Character(std::shared_ptr<Client> client, std::shared_ptr<Loaded> loaded)
        : CharacterPart(std::move(client), std::move(loaded)) {}

  protected:
    std::span<const Member> numbered() const override {
        static const std::array<Member, 46> table{{
            {L"Visible", 2, Access::get},
            {L"Left", 3, Access::get_put},
            {L"Top", 4, Access::get_put},
            {L"Height", 5, Access::get_put},
            {L"Width", 6, Access::get_put},
            {L"Speed", 10, Access::get},
            {L"Pitch", 11, Access::get},
            {L"Play", 13, Access::method, {L"Animation"}, 1},
            {L"Stop", 14, Access::method, {L"Request"}},
            {L"Speak", 15, Access::method, {L"Text", L"Url"}},
            {L"GestureAt", 17, Access::method, {L"x", L"y"}, 2},
            {L"MoveTo", 18, Access::method, {L"x", L"y", L"Speed"}, 2},
            {L"Hide", 19, Access::method, {L"Fast"}},
            {L"Show", 20, Access::method, {L"Fast"}},
            {L"Interrupt", 21, Access::method, {L"Request"}, 1},
            {L"Wait", 22, Access::method, {L"Request"}, 1},
            {L"Balloon", 23, Access::get},
            {L"Name", 24, Access::get_put},
            {L"Commands", 25, Access::get, {L"Name"}},
            {L"Activate", 26, Access::method, {L"State"}},
            {L"Get", 27, Access::method, {L"Type", L"Name", L"Queue"}, 2},
            {L"Description", 28, Access::get_put},
            {L"IdleOn", 29, Access::get_put},
            {L"StopAll", 31, Access::method, {L"Types"}},
            {L"MoveCause", 32, Access::get},
            {L"VisibilityCause", 33, Access::get},
            {L"HasOtherClients", 34, Access::get},
            {L"SoundEffectsOn", 35, Access::get_put},
            {L"ExtraData", 36, Access::get},
            {L"ShowPopupMenu", 37, Access::method, {L"x", L"y"}, 2},
            {L"AutoPopupMenu", 38, Access::get_put},
            {L"HelpModeOn", 39, Access::get_put},
            {L"HelpContextID", 40, Access::get_put},
            {L"Active", 41, Access::get},
            {L"Listen", 42, Access::method, {L"Listen"}, 1},
            {L"LanguageID", 43, Access::get_put},
            {L"SRModeID", 46, Access::get_put},
            {L"TTSModeID", 47, Access::get_put},
            {L"HelpFile", 48, Access::get_put},
            {L"GUID", 49, Access::get},
            {L"OriginalHeight", 50, Access::get},
            {L"OriginalWidth", 51, Access::get},
            {L"Think", 52, Access::method, {L"Text"}, 1},
            {L"Version", 53, Access::get},
            {L"AnimationNames", 54, Access::get},
            {L"SRStatus", 55, Access::get},
        }};
        return table;
    }

    Variant invoke(const Call& call) override {
        Actor& of = actor();
        return call.put ? put(call.member, call.arguments.back(), of) : run(call, of);
    }

  private:
    Variant put(DISPID member, const Variant& value, Actor& of) {
        switch (member) {
        case 3:
            of.place(value.toInt16(), of.top(), stage::MoveCause::program);
            break;
        case 4:
            of.place(of.left(), value.toInt16(), stage::MoveCause::program);
            break;
        case 5:
            of.resize(of.width(), positive(value.toInt16()));
            break;
        case 6:
            of.resize(positive(value.toInt16()), of.height());
            break;
        case 24:
            of.name = value.toText();
            break;
        case 28:
            loaded().description = value.toText();
            break;
        case 29:
            of.idle_on = value.toBool();
            break;
        case 35:
            of.sound_effects_on = value.toBool();
            break;
        case 38:
            loaded().auto_popup_menu = value.toBool();
            break;
        case 39:
            loaded().help_mode = value.toBool();
            break;
        case 40:
            loaded().help_context = value.toInt32();
            break;
        case 43: {
            const std::int32_t language = value.toInt32();
            if (language > 0 && language <= 0xFFFF && server().service().speaks(static_cast<std::uint16_t>(language))) {
                of.manner.language_id = static_cast<std::uint16_t>(language);
            }
            break;
        }
        case 46:
            refuse(u"No speech recognition is installed.");
        case 47:
            loaded().tts_mode = value.toText();
            break;
        case 48:
            loaded().help_file = value.toText();
            break;
        default:
            throw Error(DISP_E_MEMBERNOTFOUND);
        }
        return {};
    }

    static int positive(std::int16_t size) {
        if (size < 1) {
            throw Error(E_INVALIDARG, u"A character is at least one pixel wide and high.");
        }
        return size;
    }

    Variant run(const Call& call, Actor& of) {
        const auto& given = call.arguments;
        switch (call.member) {
        case 2:
            return of.visible();
        case 3:
            return small(of.left());
        case 4:
            return small(of.top());
        case 5:
            return small(of.height());
        case 6:
            return small(of.width());
        case 10:
            return of.manner.speed == 0 ? default_speed : static_cast<std::int32_t>(of.manner.speed);
        case 11:
            return static_cast<std::int32_t>(of.manner.pitch);
        case 13:
            return play(of, given[0].toText());
        case 14:
            return stop(of, given[0]);
        case 15:
            return queue(of, {.kind = Kind::speak, .text = text(given[0]), .url = text(given[1])});
        case 17:
            return queue(of, {.kind = Kind::gesture_at, .x = given[0].toInt16(), .y = given[1].toInt16()});
        case 18:
            return queue(of, {.kind = Kind::move_to,
                              .x = given[0].toInt16(),
                              .y = given[1].toInt16(),
                              .speed = std::clamp(number(given[2], default_move), 0, 600000)});
        case 19:
            return queue(of, {.kind = Kind::hide, .fast = flag(given[0], false)});
        case 20:
            return queue(of, {.kind = Kind::show, .fast = flag(given[0], false)});
        case 21:
            return queue(of, {.kind = Kind::interrupt, .target = requestIn(given[0])});
        case 22:
            return queue(of, {.kind = Kind::wait, .target = requestIn(given[0])});
        case 23:
            return make<Balloon>(client(), shared());
        case 24:
            return of.name;
        case 25: {
            const auto commands = make<Commands>(client(), shared());
            return given[0].isOmitted() ? Variant(commands) : commands->item(given[0]);
        }
        case 26:
            return activate(of, number(given[0], 2));
        case 27:
            return get(of, given[0].toText(), given[1].toText());
        case 28:
            return loaded().description;
        case 29:
            return of.idle_on;
        case 31:
            return stopAll(of, given[0]);
        case 32:
            return static_cast<std::int16_t>(of.moveCause());
        case 33:
            return static_cast<std::int16_t>(of.visibilityCause());
        case 34:
            return false; // every client has characters of its own
        case 35:
            return of.sound_effects_on;
        case 36:
            return loaded().extra_data;
        case 37:
            server().popUpMenu(of.id(), given[0].toInt16(), given[1].toInt16());
            return of.visible();
        case 38:
            return loaded().auto_popup_menu;
        case 39:
            return loaded().help_mode;
        case 40:
            return loaded().help_context;
        case 41:
            return static_cast<std::int16_t>(server().active() == of.id() ? 2 : 1);
        case 42:
            if (given[0].toBool()) {
                refuse(u"No speech recognition is installed.");
            }
            return false;
        case 43:
            return static_cast<std::int32_t>(of.manner.language_id);
        case 46:
            return u"";
        case 47:
            return loaded().tts_mode;
        case 48:
            return loaded().help_file;
        case 49:
            return guidText(loaded().file->character().guid);
        case 50:
            return small(loaded().file->character().height);
        case 51:
            return small(loaded().file->character().width);
        case 52:
            return queue(of, {.kind = Kind::think, .text = text(given[0])});
        case 53:
            return u"2.0";
        case 54:
            return make<AnimationNames>(client(), shared());
        case 55:
            return std::int32_t{1}; // no recognition
        default:
            throw Error(DISP_E_MEMBERNOTFOUND);
        }
    }

    Variant queue(Actor& of, Request request) {
        const RequestRef added = server().stage().newRequest(std::move(request));
        server().transcript().call(loaded().id, of.name, *added);
        of.add(added);
        return client()->object(added);
    }

    Variant play(Actor& of, const std::u16string& animation) {
        if (client()->raise_request_errors && !loaded().file->character().findAnimation(animation)) {
            throw Error(HRESULT_FROM_WIN32(ERROR_NOT_FOUND), u"The character has no animation \"" + animation + u"\".");
        }
        return queue(of, {.kind = Kind::play, .text = animation});
    }

    // A text, say, is no request: a type error, before anything changes.
    RequestRef requestIn(const Variant& value) const {
        const auto given = value.toObject();
        const auto own = given ? given.as<IDispatch>(RequestObject::own_interface) : Ptr<IDispatch>();
        if (!own) {
            throw Error(DISP_E_TYPEMISMATCH);
        }
        return static_cast<RequestObject*>(own.get())->request();
    }

    Variant stop(Actor& of, const Variant& request) {
        const RequestRef stopped = request.isOmitted() ? nullptr : requestIn(request);
        server().transcript().stop(loaded().id, of.name);
        if (stopped) {
            of.stop(stopped);
        } else {
            of.stop();
        }
        return {};
    }

    Variant stopAll(Actor& of, const Variant& types) {
        const std::u16string list = text(types);
        std::vector<stage::StopKind> kinds;
        bool named = false;
        for (std::size_t at = 0; at <= list.size();) {
            const std::size_t comma = std::min(list.find(u',', at), list.size());
            const std::u16string_view name = murmelix::trim(std::u16string_view(list).substr(at, comma - at));
            at = comma + 1;
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
            } else if (!sameName(name, u"Get") && !sameName(name, u"NonQueuedGet")) {
                throw Error(E_INVALIDARG, u"\"" + std::u16string(name) + u"\" is no kind of request.");
            }
        }
        server().transcript().stop(loaded().id, of.name);
        if (named) {
            of.stopAll(kinds);
        } else {
            of.stop();
        }
        return {};
    }

    Variant activate(Actor& of, std::int32_t state) {
        if (state < 0 || state > 2) {
            throw Error(E_INVALIDARG, u"A character is activated by 0, 1 or 2.");
        }
        if (!of.visible()) {
            return false;
        }
        if (state == 2) {
            server().activate(of.id());
        }
        return true;
    }

    // All of a character is there once it is loaded: what Get asks for is so at once.
    Variant get(const Actor& of, const std::u16string& type, const std::u16string& name) {
        if (!sameName(type, u"Animation") && !sameName(type, u"State") && !sameName(type, u"WaveFile")) {
            throw Error(E_INVALIDARG, u"\"" + type + u"\" is nothing that can be got.");
        }
        (void)name;
        const RequestRef done = server().stage().newRequest({});
        done->actor = of.id();
        done->status = stage::Status::complete;
        return client()->object(done);
    }
};

class Characters final : public ClientObject {
  public:
    explicit Characters(std::shared_ptr<Client> client) : ClientObject(std::move(client)) {}

    Variant item(const Variant& id) const {
        const std::u16string wanted = id.toText();
        const auto found = client()->find(wanted);
        if (!found) {
            throw Error(E_INVALIDARG, u"There is no character \"" + wanted + u"\".");
        }
        return make<Character>(client(), found);
    }

  protected:
    std::span<const Member> numbered() const override {
        static const std::array<Member, 6> table{{{L"Item", 0, Access::get, {L"CharacterID"}, 1},
                                                  {L"Load", 1, Access::method, {L"CharacterID", L"LoadKey"}, 1},
                                                  {L"Unload", 2, Access::method, {L"CharacterID"}, 1},
                                                  {L"Character", 3, Access::method, {L"CharacterID"}, 1},
                                                  {L"Enum", DISPID_NEWENUM, Access::get},
                                                  {L"_NewEnum", DISPID_NEWENUM, Access::get}}};
        return table;
    }

    Variant invoke(const Call& call) override {
        const auto& given = call.arguments;
        switch (call.member) {
        case 0:
        case 3:
            return item(given[0]);
        case 1: {
            const std::u16string id = given[0].toText();
            const Loaded& loaded = client()->load(id, given[1].isOmitted() ? id : given[1].toText());
            const RequestRef done = client()->server().stage().newRequest({});
            done->actor = loaded.actor;
            done->status = stage::Status::complete;
            return client()->object(done);
        }
        case 2:
            client()->unload(given[0].toText());
            return {};
        default: {
            std::vector<Variant> all;
            for (const auto& loaded : client()->loaded()) {
                all.emplace_back(make<Character>(client(), loaded));
            }
            return murmelix::com::enumerate(std::move(all));
        }
        }
    }
};

class AudioOutput final : public ClientObject {
  public:
    explicit AudioOutput(std::shared_ptr<Client> client) : ClientObject(std::move(client)) {}

  protected:
    std::span<const Member> numbered() const override {
        static const std::array<Member, 3> table{
            {{L"Enabled", 1, Access::get}, {L"SoundEffects", 2, Access::get}, {L"Status", 3, Access::get}}};
        return table;
    }
    Variant invoke(const Call& call) override {
        const bool enabled = client()->server().soundEnabled();
        // Where there is no device sound passes on the clock: it is available all the same.
        return call.member == 3 ? Variant(std::int16_t{0}) : Variant(enabled);
    }
};

// What a server without speech recognition, and without a window for its commands, says of them.
class Unavailable final : public ClientObject {
  public:
    Unavailable(std::shared_ptr<Client> client, std::span<const Member> members)
        : ClientObject(std::move(client)), members_(members) {}

    static std::span<const Member> speechInput() {
        static const std::array<Member, 7> table{{{L"Enabled", 1, Access::get},
                                                  {L"Engine", 2, Access::get_put},
                                                  {L"HotKey", 3, Access::get_put},
                                                  {L"Installed", 4, Access::get},
                                                  {L"Language", 5, Access::get_put},
                                                  {L"ListeningTip", 6, Access::get_put},
                                                  {L"Status", 7, Access::get}}};
        return table;
    }
    static std::span<const Member> commandsWindow() {
        static const std::array<Member, 5> table{{{L"Visible", 1, Access::get_put},
                                                  {L"Left", 2, Access::get},
                                                  {L"Top", 3, Access::get},
                                                  {L"Height", 4, Access::get},
                                                  {L"Width", 5, Access::get}}};
        return table;
    }

  protected:
    std::span<const Member> numbered() const override { return members_; }
    Variant invoke(const Call& call) override {
        if (call.put) {
            refuse(u"No speech recognition is installed.");
        }
        const bool text_value =
            members_.data() == speechInput().data() && (call.member == 2 || call.member == 3 || call.member == 5);
        return text_value ? Variant(u"") : Variant(false);
    }

  private:
    std::span<const Member> members_;
};

class Sheet final : public ClientObject {
  public:
    explicit Sheet(std::shared_ptr<Client> client) : ClientObject(std::move(client)) {}

  protected:
    std::span<const Member> numbered() const override {
        static const std::array<Member, 6> table{{{L"Left", 1, Access::get},
                                                  {L"Top", 2, Access::get},
                                                  {L"Height", 3, Access::get},
                                                  {L"Width", 4, Access::get},
                                                  {L"Page", 5, Access::get_put},
                                                  {L"Visible", 6, Access::get_put}}};
        return table;
    }
    Variant invoke(const Call& call) override {
        settings::SettingsFrm& sheet = client()->server().settingsFrm();
        if (call.put) {
            if (call.member == 6) {
                if (call.arguments.back().toBool()) {
                    sheet.present();
                } else {
                    sheet.Unload();
                }
            } else if (!sheet.setPage(call.arguments.back().toText())) {
                throw Error(E_INVALIDARG, u"The pages are Speech, Output and Copyright.");
            }
            return {};
        }
        const murmelix::ui::Rect place = sheet.Place();
        switch (call.member) {
        case 1:
            return small(place.left);
        case 2:
            return small(place.top);
        case 3:
            return small(place.height);
        case 4:
            return small(place.width);
        case 5:
            return sheet.page();
        default:
            return sheet.Visible();
        }
    }
};

class UserInput final : public ClientObject {
  public:
    UserInput(std::shared_ptr<Client> client, std::u16string character, std::u16string command)
        : ClientObject(std::move(client)), character_(std::move(character)), command_(std::move(command)) {}

  protected:
    std::span<const Member> numbered() const override {
        static const std::array<Member, 11> table{{{L"Count", 1, Access::get},
                                                   {L"Name", 2, Access::get},
                                                   {L"CharacterID", 3, Access::get},
                                                   {L"Confidence", 4, Access::get},
                                                   {L"Voice", 5, Access::get},
                                                   {L"Alt1Name", 6, Access::get},
                                                   {L"Alt1Confidence", 7, Access::get},
                                                   {L"Alt1Voice", 8, Access::get},
                                                   {L"Alt2Name", 9, Access::get},
                                                   {L"Alt2Confidence", 10, Access::get},
                                                   {L"Alt2Voice", 11, Access::get}}};
        return table;
    }
    Variant invoke(const Call& call) override {
        switch (call.member) {
        case 1:
            return std::int16_t{1};
        case 2:
            return command_;
        case 3:
            return character_;
        case 4:
            return std::int32_t{100}; // chosen from the menu: no doubt about it
        case 7:
        case 10:
            return std::int32_t{0};
        default:
            return u"";
        }
    }

  private:
    std::u16string character_, command_;
};

class Control final : public ClientObject {
  public:
    explicit Control(std::shared_ptr<Client> owner) : ClientObject(std::move(owner)), events_(*this, agent_events) {
        client()->fire = [this](DISPID event, const std::vector<Variant>& arguments) {
            if (events_.sinks() > 0) {
                events_.fire(event, arguments);
            }
        };
        client()->hang_up = [this] { events_.close(); };
        // A client whose sink is gone is gone itself.
        events_.onLost([&server = client()->server(), weak = std::weak_ptr<Client>(client())] {
            server.messages().post([weak] {
                if (const auto gone = weak.lock()) {
                    gone->cutOff();
                }
            });
        });
    }

  protected:
    ~Control() override {
        client()->fire = nullptr;
        client()->hang_up = nullptr;
    }

    std::span<const Member> numbered() const override {
        static const std::array<Member, 9> table{{{L"Characters", 3, Access::get, {L"CharacterID"}},
                                                  {L"AudioOutput", 4, Access::get},
                                                  {L"SpeechInput", 5, Access::get},
                                                  {L"PropertySheet", 8, Access::get},
                                                  {L"Connected", 9, Access::get_put},
                                                  {L"CommandsWindow", 12, Access::get},
                                                  {L"Suspended", 14, Access::get},
                                                  {L"ShowDefaultCharacterProperties", 20, Access::method, {L"x", L"y"}},
                                                  {L"RaiseRequestErrors", 21, Access::get_put}}};
        return table;
    }

    Variant invoke(const Call& call) override {
        const auto& given = call.arguments;
        switch (call.member) {
        case 3: {
            const auto characters = make<Characters>(client());
            return given[0].isOmitted() ? Variant(characters) : characters->item(given[0]);
        }
        case 4:
            return make<AudioOutput>(client());
        case 5:
            return make<Unavailable>(client(), Unavailable::speechInput());
        case 8:
            return make<Sheet>(client());
        case 9:
            return choice(call, client()->connected);
        case 12:
            return make<Unavailable>(client(), Unavailable::commandsWindow());
        case 14:
            return false;
        case 20:
            client()->server().settingsFrm().present();
            return {};
        default:
            return choice(call, client()->raise_request_errors);
        }
    }

    void* interfaceFor(REFIID iid) override {
        return IsEqualIID(iid, IID_IConnectionPointContainer) ? events_.container() : nullptr;
    }

  private:
    static Variant choice(const Call& call, bool& value) {
        if (call.put) {
            value = call.arguments.back().toBool();
            return {};
        }
        return value;
    }

    murmelix::com::EventSource events_;
};

} // namespace

ClientObject::ClientObject(std::shared_ptr<Client> client) : client_(std::move(client)) {
    client_->joined(this);
}

ClientObject::~ClientObject() {
    client_->left(this);
}

const IID RequestObject::own_interface = {0x2b8f6a41, 0x9d15, 0x4c3e, {0xb7, 0x02, 0x5e, 0x93, 0xc8, 0x1d, 0x60, 0xfa}};

RequestObject::RequestObject(std::shared_ptr<Client> client, RequestRef request)
    : ClientObject(std::move(client)), request_(std::move(request)) {}

RequestObject::~RequestObject() {
    client()->forget(request_->number);
}

std::span<const Member> RequestObject::numbered() const {
    static const std::array<Member, 4> table{{{L"ID", 0, Access::get},
                                              {L"Status", 1, Access::get},
                                              {L"Description", 2, Access::get},
                                              {L"Number", 3, Access::get}}};
    return table;
}

Variant RequestObject::invoke(const Call& call) {
    switch (call.member) {
    case 0:
        return request_->number;
    case 1:
        return static_cast<std::int32_t>(request_->status);
    case 2:
        switch (request_->failure) {
        case stage::Failure::none:
            return u"";
        case stage::Failure::no_animation:
            return u"The character has no such animation.";
        case stage::Failure::hidden:
            return u"The character is hidden.";
        case stage::Failure::no_sound:
            return u"The sound file cannot be played.";
        case stage::Failure::bad_target:
            return u"That request belongs to the same character.";
        case stage::Failure::deadlock:
            return u"The characters would wait for one another for ever.";
        }
        return u"";
    default:
        switch (request_->failure) {
        case stage::Failure::none:
            return std::int32_t{0};
        case stage::Failure::no_animation:
            return static_cast<std::int32_t>(HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
        case stage::Failure::no_sound:
            return static_cast<std::int32_t>(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
        default:
            return static_cast<std::int32_t>(E_FAIL);
        }
    }
}

void* RequestObject::interfaceFor(REFIID iid) {
    return IsEqualIID(iid, own_interface) ? static_cast<IDispatch*>(this) : nullptr;
}

Ptr<IDispatch> makeControl(Server& server, DWORD process) {
    const auto client = server.newClient();
    server.watch(client, process);
    const auto control = make<Control>(client);
    return Ptr<IDispatch>(control.get());
}

Ptr<IDispatch> makeUserInput(const std::shared_ptr<Client>& client, std::u16string character, std::u16string command) {
    const auto input = make<UserInput>(client, std::move(character), std::move(command));
    return Ptr<IDispatch>(input.get());
}

} // namespace agent::automation
