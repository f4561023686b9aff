#include "companions/agent/voice/engine_choice.h"

#include <algorithm>

namespace agent::voice {

Engine* EngineChoice::find(std::uint16_t language_id) const {
    const auto found = std::ranges::find_if(engines_, [&](const auto& engine) { return engine->speaks(language_id); });
    return found == engines_.end() ? nullptr : found->get();
}

bool EngineChoice::speaks(std::uint16_t language_id) const {
    return find(language_id) != nullptr;
}

std::optional<Wave> EngineChoice::synthesise(const std::u16string& text, const Manner& manner,
                                             const std::stop_token& stop, std::string& error) {
    Engine* const engine = find(manner.language_id);
    if (!engine) {
        error = "no voice for this language";
        return std::nullopt;
    }
    return engine->synthesise(text, manner, stop, error);
}

} // namespace agent::voice
