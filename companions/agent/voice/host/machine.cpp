// The machine that builds: it has no voice, no sound device and no converters.
#include "companions/agent/voice/encoded.h"
#include "companions/agent/voice/sink.h"
#include "companions/agent/voice/voice.h"

namespace agent::voice {

std::unique_ptr<Engine> makeEngine() {
    return nullptr;
}
std::unique_ptr<Sink> makeSink() {
    return nullptr;
}

bool decode(const EncodedFormat&, std::span<const std::uint8_t>,
            const std::function<void(std::span<const std::int16_t>)>&, std::string& error) {
    error = "the system has no converter for the sound's format";
    return false;
}

} // namespace agent::voice
