// The machine that builds: it has no voice and no sound device.
#include "companions/agent/voice/sink.h"
#include "companions/agent/voice/voice.h"

namespace agent::voice {

std::unique_ptr<Engine> makeEngine() {
    return nullptr;
}
std::unique_ptr<Sink> makeSink() {
    return nullptr;
}

} // namespace agent::voice
