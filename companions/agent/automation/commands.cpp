#include "common/text.h"
#include "companions/agent/automation/objects.h"

namespace agent::automation {
namespace {

// A menu of more entries helps nobody, and each new one is compared with those that are there.
constexpr std::size_t most_commands = 200;

[[noreturn]] void noSuchCommand(const std::u16string& name) {
    throw Error(E_INVALIDARG, u"There is no command \"" + name + u"\".");
}

[[noreturn]] void refuseFont() {
    refuse(u"Menus are written in the system's own font.");
}

class Commands final : public CharacterPart {
  public:
    Commands(std::shared_ptr<Client> client, std::shared_ptr<Loaded> loaded)
        : CharacterPart(std::move(client), std::move(loaded)) {}

  private:
    using OptionalLabel = std::optional<Label>;
    using OptionalFlag = std::optional<bool>;

    const Interface* published() const override { return &type_library::ICommands; }
    std::span<const Member> members() const override {
        static const Members<Commands> all{
            property(L"Item", 0, &Commands::command, {L"Name"}),
            property(L"Count", 2, &Commands::count),
            property(
                L"Caption", 3, [](Commands& self) { return self.list().caption; },
                [](Commands& self, Label caption) { self.list().caption = std::move(caption.text); }),
            property(
                L"Voice", 4, [](Commands& self) { return self.list().voice; },
                [](Commands& self, Label voice) { self.list().voice = std::move(voice.text); }),
            property(
                L"Visible", 5, [](Commands& self) { return self.list().visible; },
                [](Commands& self, bool visible) { self.list().visible = visible; }),
            method(L"Add", 10, &Commands::add, {L"Name", L"Caption", L"Voice", L"Enabled", L"Visible"}),
            method(L"Insert", 11, &Commands::insert,
                   {L"Name", L"RefName", L"Before", L"Caption", L"Voice", L"Enabled", L"Visible"}),
            method(L"Remove", 13, &Commands::remove, {L"Name"}),
            method(L"RemoveAll", 14, [](Commands& self) { self.list().commands.clear(); }),
            method(L"Command", 15, &Commands::command, {L"Name"}),
            property(
                L"DefaultCommand", 16, [](Commands& self) { return self.list().default_command; },
                &Commands::setDefaultCommand),
            property(
                L"FontName", 21, [](Commands&) { return u""; }, [](Commands&, const Label&) { refuseFont(); }),
            property(
                L"VoiceCaption", 22, [](Commands& self) { return self.list().voice_caption; },
                [](Commands& self, Label caption) { self.list().voice_caption = std::move(caption.text); }),
            property(
                L"FontSize", 23, [](Commands&) { return 0; }, [](Commands&, std::int32_t) { refuseFont(); }),
            property(
                L"GlobalVoiceCommandsEnabled", 24, [](Commands& self) { return self.list().global_voice_commands; },
                [](Commands& self, bool enabled) { self.list().global_voice_commands = enabled; }),
            property(L"_NewEnum", DISPID_NEWENUM, &Commands::each),
        };
        return all;
    }

    CommandList& list() { return loaded().commands; }

    void setDefaultCommand(const Label& name) {
        if (!name.text.empty() && !list().find(name.text)) {
            noSuchCommand(name.text);
        }
        list().default_command = name.text;
    }

    std::int32_t count() { return static_cast<std::int32_t>(list().commands.size()); }

    Ptr<IDispatch> command(const Label& name) { return commandOf(client(), shared(), name.text); }

    Ptr<IDispatch> add(const Label& name, OptionalLabel caption, OptionalLabel voice, OptionalFlag enabled,
                       OptionalFlag visible) {
        return insertAt(list().commands.size(), name, std::move(caption), std::move(voice), enabled, visible);
    }

    Ptr<IDispatch> insert(const Label& name, const Label& reference, OptionalFlag before, OptionalLabel caption,
                          OptionalLabel voice, OptionalFlag enabled, OptionalFlag visible) {
        const MenuCommand* found = list().find(reference.text);
        if (!found) {
            noSuchCommand(reference.text);
        }
        const auto place = static_cast<std::size_t>(found - list().commands.data());
        return insertAt(place + (before.value_or(true) ? 0 : 1), name, std::move(caption), std::move(voice), enabled,
                        visible);
    }

    Ptr<IDispatch> insertAt(std::size_t place, const Label& name, OptionalLabel caption, OptionalLabel voice,
                            OptionalFlag enabled, OptionalFlag visible) {
        auto& commands = list().commands;
        if (name.text.empty() || list().find(name.text)) {
            throw Error(E_INVALIDARG, u"A command needs a name of its own; \"" + name.text + u"\" is none.");
        }
        if (commands.size() >= most_commands) {
            refuse(u"A character has at most " + murmelix::toText(most_commands) + u" commands.");
        }
        MenuCommand added;
        added.name = name.text;
        added.caption = std::move(caption).value_or(Label()).text;
        added.voice = std::move(voice).value_or(Label()).text;
        added.enabled = enabled.value_or(true);
        added.visible = visible.value_or(true);
        commands.insert(commands.begin() + static_cast<std::ptrdiff_t>(place), std::move(added));
        return makeCommand(client(), shared(), name.text);
    }

    void remove(const Label& name) {
        if (!list().find(name.text)) {
            noSuchCommand(name.text);
        }
        std::erase_if(list().commands, [&](const MenuCommand& command) { return sameName(command.name, name.text); });
    }

    Variant each() {
        std::vector<Variant> all;
        for (const MenuCommand& command : list().commands) {
            all.emplace_back(makeCommand(client(), shared(), command.name));
        }
        return murmelix::com::enumerate(std::move(all), client());
    }
};

} // namespace

Ptr<IDispatch> makeCommands(const std::shared_ptr<Client>& client, const std::shared_ptr<Loaded>& loaded) {
    return Ptr<IDispatch>(make<Commands>(client, loaded).get());
}

Ptr<IDispatch> commandOf(const std::shared_ptr<Client>& client, const std::shared_ptr<Loaded>& loaded,
                         const std::u16string& name) {
    if (!loaded->commands.find(name)) {
        noSuchCommand(name);
    }
    return makeCommand(client, loaded, name);
}

} // namespace agent::automation
