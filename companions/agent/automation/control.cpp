#include "companions/agent/automation/objects.h"
#include "ui/screen.h"

namespace agent::automation {
namespace {

// The published event interface, _AgentEvents.
constexpr IID agent_events = {0xf5be8bd4, 0x7de6, 0x11d0, {0x91, 0xfe, 0x00, 0xc0, 0x4f, 0xd7, 0x01, 0xa5}};

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
        events_.onLost([&server = server(), weak = std::weak_ptr<Client>(client())] {
            server.messages().post([weak] {
                if (const auto gone = weak.lock()) {
                    gone->cutOff();
                }
            });
        });
    }

  private:
    ~Control() override {
        client()->fire = nullptr;
        client()->hang_up = nullptr;
    }

    const Interface* published() const override { return &type_library::IAgent; }
    std::span<const Member> members() const override {
        static const Members<Control> all{
            property(L"Characters", 3, &Control::characters, {L"CharacterID"}),
            property(L"AudioOutput", 4, [](Control& self) { return makeAudioOutput(self.client()); }),
            property(L"SpeechInput", 5, [](Control& self) { return makeSpeechInput(self.client()); }),
            property(L"PropertySheet", 8, [](Control& self) { return makePropertySheet(self.client()); }),
            property(
                L"Connected", 9, [](Control& self) { return self.client()->connected; },
                [](Control& self, bool connected) { self.client()->connected = connected; }),
            property(L"CommandsWindow", 12, [](Control& self) { return makeCommandsWindow(self.client()); }),
            // Only an idle server without a client would be.
            property(L"Suspended", 14, [](Control&) { return false; }),
            method(L"ShowDefaultCharacterProperties", 20, &Control::showDefaultCharacterProperties, {L"x", L"y"}),
            property(
                L"RaiseRequestErrors", 21, [](Control& self) { return self.client()->raise_request_errors; },
                [](Control& self, bool raise) { self.client()->raise_request_errors = raise; }),
        };
        return all;
    }

    Ptr<IDispatch> characters(const std::optional<Label>& id) {
        return id ? characterOf(client(), id->text) : makeCharacters(client());
    }

    void showDefaultCharacterProperties(std::optional<std::int16_t> x, std::optional<std::int16_t> y) {
        settings::SettingsFrm& sheet = server().settingsFrm();
        sheet.present();
        const murmelix::ui::Rect now = sheet.Place();
        sheet.setPlace(
            murmelix::ui::onScreen({x.value_or(small(now.left)), y.value_or(small(now.top)), now.width, now.height}));
    }

    void* interfaceFor(REFIID iid) override {
        return IsEqualIID(iid, IID_IConnectionPointContainer) ? events_.container() : class_info_.answer(iid);
    }

    murmelix::com::EventSource events_;
    murmelix::com::ClassInfo class_info_{*this, serverClass().clsid, agent_events};
};

} // namespace

Ptr<IDispatch> makeControl(Server& server, murmelix::com::ProcessId process) {
    const auto client = server.newClient();
    server.watch(client, process);
    return Ptr<IDispatch>(make<Control>(client).get());
}

} // namespace agent::automation
