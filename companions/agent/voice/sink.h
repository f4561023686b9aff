// Where mixed sound is heard.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

namespace agent::voice {

class Sink {
  public:
    virtual ~Sink() = default;
    // Queues a block at the mixing rate; false when the device is gone or takes no more.
    virtual bool write(std::span<const std::int16_t> samples) = 0;
};

// The machine's sound device, opened; null when there is none.
std::unique_ptr<Sink> makeSink();

} // namespace agent::voice
