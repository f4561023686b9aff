// What a server without speech recognition says of it.
#include "companions/agent/automation/objects.h"

namespace agent::automation {
namespace {

class SpeechInput final : public ClientObject {
  public:
    explicit SpeechInput(std::shared_ptr<Client> client) : ClientObject(std::move(client)) {}

  private:
    const Interface* published() const override { return &type_library::ISpeechInput; }
    std::span<const Member> members() const override {
        static const Members<SpeechInput> all{
            property(L"Enabled", 1, &SpeechInput::no),
            property(L"Engine", 2, &SpeechInput::nothing, &SpeechInput::refuseAny),
            property(L"HotKey", 3, &SpeechInput::nothing, &SpeechInput::refuseAny),
            property(L"Installed", 4, &SpeechInput::no),
            property(L"Language", 5, &SpeechInput::nothing, &SpeechInput::refuseAny),
            property(L"ListeningTip", 6, &SpeechInput::no, &SpeechInput::refuseAny),
            property(L"Status", 7, &SpeechInput::no),
        };
        return all;
    }

    bool no() const { return false; }
    std::u16string nothing() const { return {}; }
    void refuseAny(const Variant&) { refuseSpeechInput(); }
};

} // namespace

Ptr<IDispatch> makeSpeechInput(const std::shared_ptr<Client>& client) {
    return Ptr<IDispatch>(make<SpeechInput>(client).get());
}

} // namespace agent::automation
