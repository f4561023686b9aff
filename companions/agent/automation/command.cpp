#include "companions/agent/automation/objects.h"

namespace agent::automation {
namespace {

constexpr std::int32_t surest = 100; // of how sure a recognition is

class Command final : public CharacterPart {
  public:
    Command(std::shared_ptr<Client> client, std::shared_ptr<Loaded> loaded, std::u16string name)
        : CharacterPart(std::move(client), std::move(loaded)), name_(std::move(name)) {}

  private:
    const Interface* published() const override { return &type_library::ICommand; }
    std::span<const Member> members() const override {
        static const Members<Command> all{
            property(
                L"Voice", 1, [](Command& self) { return self.command().voice; },
                [](Command& self, Label voice) { self.command().voice = std::move(voice.text); }),
            property(
                L"Caption", 2, [](Command& self) { return self.command().caption; },
                [](Command& self, Label caption) { self.command().caption = std::move(caption.text); }),
            property(
                L"Confidence", 3, [](Command& self) { return self.command().confidence; }, &Command::setConfidence),
            property(
                L"ConfidenceText", 4, [](Command& self) { return self.command().confidence_text; },
                [](Command& self, Label text) { self.command().confidence_text = std::move(text.text); }),
            property(
                L"Enabled", 5, [](Command& self) { return self.command().enabled; },
                [](Command& self, bool enabled) { self.command().enabled = enabled; }),
            property(
                L"Visible", 6, [](Command& self) { return self.command().visible; },
                [](Command& self, bool visible) { self.command().visible = visible; }),
        };
        return all;
    }

    void setConfidence(std::int32_t confidence) {
        if (confidence < -surest || confidence > surest) {
            throw Error(E_INVALIDARG, u"A confidence is from -100 to 100.");
        }
        command().confidence = confidence;
    }

    MenuCommand& command() {
        MenuCommand* found = loaded().commands.find(name_);
        if (!found) {
            throw Error(RPC_E_DISCONNECTED, u"The command \"" + name_ + u"\" was removed.");
        }
        return *found;
    }

    std::u16string name_;
};

} // namespace

Ptr<IDispatch> makeCommand(const std::shared_ptr<Client>& client, const std::shared_ptr<Loaded>& loaded,
                           const std::u16string& name) {
    return Ptr<IDispatch>(make<Command>(client, loaded, name).get());
}

} // namespace agent::automation
