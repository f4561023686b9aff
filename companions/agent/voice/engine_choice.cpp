#include "companions/agent/voice/engine_choice.h"

#include <algorithm>
#include <iterator>

namespace agent::voice {

Engine* EngineChoice::find(std::uint16_t language_id, const std::u16string& voice) const {
    const auto speaks = [&](const auto& engine) { return engine->speaks(language_id); };
    const auto has = [&](const auto& engine) {
        const auto voices = engine->voices(language_id);
        return speaks(engine) && std::ranges::find(voices, voice) != voices.end();
    };
    auto found = voice.empty() ? engines_.end() : std::ranges::find_if(engines_, has);
    if (found == engines_.end()) {
        found = std::ranges::find_if(engines_, speaks);
    }
    return found == engines_.end() ? nullptr : found->get();
}

std::vector<std::u16string> EngineChoice::voices(std::uint16_t language_id) const {
    std::vector<std::u16string> all;
    for (const auto& engine : engines_) {
        if (engine->speaks(language_id)) {
            std::ranges::move(engine->voices(language_id), std::back_inserter(all));
        }
    }
    return all;
}

bool EngineChoice::speaks(std::uint16_t language_id) const {
    return find(language_id) != nullptr;
}

std::optional<Wave> EngineChoice::synthesise(const std::u16string& text, const Manner& manner,
                                             const std::stop_token& stop, std::string& error) {
    Engine* const engine = find(manner.language_id, manner.voice);
    if (!engine) {
        error = "no voice for this language";
        return std::nullopt;
    }
    return engine->synthesise(text, manner, stop, error);
}

} // namespace agent::voice
