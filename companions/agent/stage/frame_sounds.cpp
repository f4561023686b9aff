#include "companions/agent/stage/frame_sounds.h"

#include <string>
#include <utility>

#include "companions/agent/voice/wave.h"

namespace agent::stage {

const std::shared_ptr<FrameSounds::Sounds>& FrameSounds::soundsOf(ActorId actor) {
    std::shared_ptr<Sounds>& sounds = actors_[actor];
    if (!sounds) {
        sounds = std::make_shared<Sounds>();
    }
    return sounds;
}

FrameSounds::Decoded FrameSounds::decoded(ActorId actor, const acs::CharacterFile& file, std::uint16_t sound) {
    Sounds& sounds = *soundsOf(actor);
    if (const auto found = sounds.decoded.find(sound); found != sounds.decoded.end()) {
        return found->second;
    }
    std::string error;
    auto wave = voice::readWave(file.sound(sound), error, longest_frame_sound_ms);
    if (!wave || wave->samples.empty()) {
        return sounds.decoded[sound] = nullptr;
    }
    auto made = std::make_shared<const voice::Wave>(voice::resampled(std::move(*wave), voice::mix_rate));
    sounds.samples += made->samples.size();
    if (sounds.samples > most_kept_samples) {
        std::erase_if(sounds.decoded, [](const auto& entry) { return entry.second != nullptr; });
        sounds.samples = made->samples.size();
    }
    return sounds.decoded[sound] = std::move(made);
}

void FrameSounds::play(ActorId actor, const acs::CharacterFile& file, std::uint16_t sound) {
    const std::shared_ptr<Sounds> sounds = soundsOf(actor);
    if (sound >= file.soundCount() || sounds->sounding >= most_sounds_of_actor || *sounding_ >= most_frame_sounds) {
        return;
    }
    const Decoded wave = decoded(actor, file, sound);
    if (!wave) {
        return;
    }
    const auto ended = [sounds, all = sounding_] {
        --sounds->sounding;
        --*all;
    };
    if (output_.play(wave, ended) != 0) {
        ++sounds->sounding;
        ++*sounding_;
    }
}

} // namespace agent::stage
