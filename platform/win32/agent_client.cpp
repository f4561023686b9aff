#include "platform/win32/agent_client.h"

#include "platform/win32/neighbour_calls.h"

namespace murmelix::platform {

namespace win32 {

namespace {

using com::Object;
using com::Ptr;
using com::Variant;

constexpr IID agent_events{0xF5BE8BD4, 0x7DE6, 0x11D0, {0x91, 0xFE, 0x00, 0xC0, 0x4F, 0xD7, 0x01, 0xA5}};

enum EventId : DISPID { on_dbl_click = 4, on_shutdown = 12, on_command = 17, on_idle_start = 19, on_restart = 21 };

class Request final : public AgentRequest {
  public:
    explicit Request(Ptr<IDispatch> request) : request_(std::move(request)) {}

  private:
    Ptr<IDispatch> request_;
};

std::shared_ptr<AgentRequest> requestOf(const Variant& result) {
    return std::make_shared<Request>(result.toObject());
}

class Character final : public AgentCharacter {
  public:
    explicit Character(Object character) : character_(std::move(character)) {}

    bool Visible() override {
        return neighbourCall([&] { return character_.get(u"Visible").toBool(); });
    }
    std::u16string Name() override {
        return neighbourCall([&] { return character_.get(u"Name").toText(); });
    }
    std::int16_t Left() override { return pixels(u"Left"); }
    std::int16_t Top() override { return pixels(u"Top"); }
    std::int16_t Width() override { return pixels(u"Width"); }
    std::int16_t Height() override { return pixels(u"Height"); }
    std::int32_t LanguageID() override {
        return neighbourCall([&] { return character_.get(u"LanguageID").toInt32(); });
    }
    void setLanguageID(std::int32_t language_id) override {
        neighbourCall([&] { character_.put(u"LanguageID", Variant(language_id)); });
    }
    std::int32_t BalloonStyle() override {
        return neighbourCall([&] { return character_.object(u"Balloon").get(u"Style").toInt32(); });
    }
    void setBalloonStyle(std::int32_t style) override {
        neighbourCall([&] { character_.object(u"Balloon").put(u"Style", Variant(style)); });
    }
    void AddCommand(const std::u16string& name, const std::u16string& caption, bool enabled, bool visible) override {
        neighbourCall([&] {
            character_.object(u"Commands")
                .call(u"Add", {Variant(name), Variant(caption), Variant(u""), Variant(enabled), Variant(visible)});
        });
    }

    std::shared_ptr<AgentRequest> Play(const std::u16string& animation) override {
        return queue(u"Play", {Variant(animation)});
    }
    void Stop(const std::u16string& what) override {
        neighbourCall([&] { character_.call(u"Stop", {Variant(what)}); });
    }
    std::shared_ptr<AgentRequest> Speak(const std::optional<std::u16string>& text,
                                        const std::optional<std::u16string>& url) override {
        const Variant words = text ? Variant(*text) : Variant::omitted();
        return url ? queue(u"Speak", {words, Variant(*url)}) : queue(u"Speak", {words});
    }
    std::shared_ptr<AgentRequest> Show() override { return queue(u"Show", {}); }
    std::shared_ptr<AgentRequest> Hide() override { return queue(u"Hide", {}); }
    std::shared_ptr<AgentRequest> MoveTo(std::int16_t x, std::int16_t y) override {
        return queue(u"MoveTo", {Variant(x), Variant(y)});
    }

  private:
    std::int16_t pixels(const char16_t* name) {
        return neighbourCall([&] { return character_.get(name).toInt16(); });
    }
    std::shared_ptr<AgentRequest> queue(const char16_t* name, std::initializer_list<Variant> arguments) {
        return neighbourCall([&] { return requestOf(character_.call(name, arguments)); });
    }

    Object character_;
};

// An event with too few arguments throws and is dropped.
void deliver(const AgentEvents& events, DISPID event, const std::vector<Variant>& arguments) {
    switch (event) {
    case on_command:
        if (events.Command) {
            const auto name = neighbourCall([&] { return Object(arguments.at(0).toObject()).get(u"Name").toText(); });
            events.Command(name);
        }
        return;
    case on_dbl_click:
        if (events.DblClick) {
            events.DblClick(arguments.at(0).toText(), arguments.at(1).toInt16(), arguments.at(2).toInt16(),
                            arguments.at(3).toInt16(), arguments.at(4).toInt16());
        }
        return;
    case on_idle_start:
        if (events.IdleStart) {
            events.IdleStart(arguments.at(0).toText());
        }
        return;
    case on_restart:
        if (events.Restart) {
            events.Restart();
        }
        return;
    case on_shutdown:
        if (events.Shutdown) {
            events.Shutdown();
        }
        return;
    default:
        return;
    }
}

// A control outside a form is not connected by itself.
void connectControl(Object& control) {
    control.put(u"Connected", Variant(true));
}

class AgentClient final : public AgentControl {
  public:
    AgentClient(const char16_t* prog_id, AgentEvents events)
        : events_(std::move(events)),
          control_(
              prog_id, agent_events, [this](DISPID event, auto& arguments) { deliver(events_, event, arguments); },
              // What the server says of its end where it still can.
              {.ended =
                   [this] {
                       if (events_.Shutdown) {
                           events_.Shutdown();
                       }
                   }},
              connectControl) {}

    void setRaiseRequestErrors(bool raise) override {
        neighbourCall([&] { control_.object().put(u"RaiseRequestErrors", Variant(raise)); });
    }
    bool AudioOutputEnabled() override {
        return neighbourCall([&] { return control_.object().object(u"AudioOutput").get(u"Enabled").toBool(); });
    }
    void setPropertySheetPage(const std::u16string& page) override {
        neighbourCall([&] { control_.object().object(u"PropertySheet").put(u"Page", Variant(page)); });
    }
    void setPropertySheetVisible(bool visible) override {
        neighbourCall([&] { control_.object().object(u"PropertySheet").put(u"Visible", Variant(visible)); });
    }
    std::shared_ptr<AgentRequest> Load(const std::u16string& character_id, const std::u16string& path) override {
        return neighbourCall([&] {
            return requestOf(characters().call(u"Load", {Variant(character_id), Variant(path)}));
        });
    }
    std::shared_ptr<AgentCharacter> Character(const std::u16string& character_id) override {
        return neighbourCall([&] {
            return std::make_shared<win32::Character>(characters().object(u"Character", {Variant(character_id)}));
        });
    }
    void Unload(const std::u16string& character_id) override {
        neighbourCall([&] { characters().call(u"Unload", {Variant(character_id)}); });
    }

  private:
    Object characters() { return control_.object().object(u"Characters"); }

    AgentEvents events_;
    Connection control_;
};

} // namespace

std::unique_ptr<AgentControl> connectAgent(const char16_t* prog_id, AgentEvents events) {
    waitForBusyNeighbours();
    return std::make_unique<AgentClient>(prog_id, std::move(events));
}

} // namespace win32

std::unique_ptr<AgentControl> createAgentControl(AgentEvents events) {
    return win32::connectAgent(u"Agent.Control.2", std::move(events));
}

} // namespace murmelix::platform
