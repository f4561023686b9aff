#include "companions/agent/automation/objects.h"

namespace agent::automation {
namespace {

constexpr std::int16_t available = 0, not_installed = 1; // of Status

class AudioOutput final : public ClientObject {
  public:
    explicit AudioOutput(std::shared_ptr<Client> client) : ClientObject(std::move(client)) {}

  private:
    const Interface* published() const override { return &type_library::IAudioOutput; }
    std::span<const Member> members() const override {
        static const Members<AudioOutput> all{
            property(L"Enabled", 1, &AudioOutput::enabled),
            property(L"SoundEffects", 2, &AudioOutput::enabled),
            property(
                L"Status", 3,
                [](const AudioOutput& self) { return self.server().output().hasDevice() ? available : not_installed; }),
        };
        return all;
    }

    bool enabled() const { return server().listener().sound(); }
};

} // namespace

Ptr<IDispatch> makeAudioOutput(const std::shared_ptr<Client>& client) {
    return Ptr<IDispatch>(make<AudioOutput>(client).get());
}

} // namespace agent::automation
