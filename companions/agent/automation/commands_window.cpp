// The window of the voice commands, which a server without speech recognition does not show.
#include "companions/agent/automation/objects.h"

namespace agent::automation {
namespace {

class CommandsWindow final : public ClientObject {
  public:
    explicit CommandsWindow(std::shared_ptr<Client> client) : ClientObject(std::move(client)) {}

  private:
    const Interface* published() const override { return &type_library::ICommandsWindow; }
    std::span<const Member> members() const override {
        static const Members<CommandsWindow> all{
            property(L"Visible", 1, &CommandsWindow::no, [](CommandsWindow&, const Variant&) { refuseSpeechInput(); }),
            property(L"Left", 2, &CommandsWindow::no),
            property(L"Top", 3, &CommandsWindow::no),
            property(L"Height", 4, &CommandsWindow::no),
            property(L"Width", 5, &CommandsWindow::no),
        };
        return all;
    }

    bool no() const { return false; }
};

} // namespace

Ptr<IDispatch> makeCommandsWindow(const std::shared_ptr<Client>& client) {
    return Ptr<IDispatch>(make<CommandsWindow>(client).get());
}

} // namespace agent::automation
