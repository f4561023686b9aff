// Several engines as one.
#pragma once

#include <memory>
#include <vector>

#include "companions/agent/voice/voice.h"

namespace agent::voice {

// Each language is spoken by the first engine that has a voice for it, or by the first that has the voice which is
// named.
class EngineChoice final : public Engine {
  public:
    explicit EngineChoice(std::vector<std::unique_ptr<Engine>> engines) : engines_(std::move(engines)) {}
    bool speaks(std::uint16_t language_id) const override;
    std::vector<std::u16string> voices(std::uint16_t language_id) const override;
    std::optional<Wave> synthesise(const std::u16string& text, const Manner& manner, const std::stop_token& stop,
                                   std::string& error) override;

  private:
    Engine* find(std::uint16_t language_id, const std::u16string& voice = {}) const;

    std::vector<std::unique_ptr<Engine>> engines_; // none of them null
};

} // namespace agent::voice
