#include "companions/agent/stage/frame_sounds.h"

#include <exception>
#include <string>
#include <utility>

#include "companions/agent/voice/wave.h"

namespace agent::stage {

DecodedSound decodedSound(const acs::CharacterFile& file, std::uint16_t sound) {
    try {
        std::string error;
        auto wave = voice::readWave(file.sound(sound), error, longest_frame_sound_ms);
        if (wave && !wave->samples.empty()) {
            return std::make_shared<const voice::Wave>(voice::resampled(std::move(*wave), voice::mix_rate));
        }
    } catch (const std::exception&) {
        // Without memory for it the frame is silent.
    }
    return nullptr;
}

FrameSounds::FrameSounds(voice::Output& output, Workshop workshop)
    : output_(output), workshop_(std::move(workshop)), self_(std::make_shared<FrameSounds*>(this)) {}

void FrameSounds::play(ActorId actor, const std::shared_ptr<const acs::CharacterFile>& file, std::uint16_t sound) {
    std::shared_ptr<Sounds>& sounds = actors_[actor];
    if (!sounds) {
        sounds = std::make_shared<Sounds>();
    }
    if (sound >= file->soundCount()) {
        return;
    }
    const auto found = sounds->kept.find(sound);
    if (found == sounds->kept.end()) {
        make(sounds, file, sound);
    } else if (found->second.made) {
        start(sounds, found->second.sound);
    }
}

void FrameSounds::make(const std::shared_ptr<Sounds>& sounds, const std::shared_ptr<const acs::CharacterFile>& file,
                       std::uint16_t sound) {
    if (sounds->awaited >= most_sounds_of_actor) {
        return;
    }
    ++sounds->awaited;
    sounds->kept[sound] = {};
    const auto made = std::make_shared<DecodedSound>();
    workshop_([file, sound, made] { *made = decodedSound(*file, sound); },
              [self = std::weak_ptr(self_), awaiting = std::weak_ptr(sounds), sound, made, stops = sounds->stops] {
                  const auto frame_sounds = self.lock();
                  const auto awaited = awaiting.lock();
                  if (frame_sounds && awaited) {
                      (*frame_sounds)->keep(*awaited, sound, *made);
                      if (awaited->stops == stops) {
                          (*frame_sounds)->start(awaited, *made);
                      }
                  }
              });
}

void FrameSounds::keep(Sounds& sounds, std::uint16_t sound, DecodedSound made) {
    --sounds.awaited;
    const std::size_t samples = made ? made->samples.size() : 0;
    if (sounds.samples + samples > most_kept_samples) {
        std::erase_if(sounds.kept, [](const auto& entry) { return entry.second.sound != nullptr; });
        sounds.samples = 0;
    }
    sounds.samples += samples;
    sounds.kept[sound] = {true, std::move(made)};
}

void FrameSounds::start(const std::shared_ptr<Sounds>& sounds, const DecodedSound& sound) {
    if (!sound || sounds->sounding.size() >= most_sounds_of_actor || *sounding_ >= most_frame_sounds) {
        return;
    }
    // It may sound on when its character has gone.
    const auto playing = std::make_shared<voice::Output::Playing>(0);
    const auto ended = [owner = std::weak_ptr(sounds), all = sounding_, playing] {
        if (const auto still = owner.lock()) {
            still->sounding.erase(*playing);
        }
        --*all;
    };
    *playing = output_.play(sound, ended);
    if (*playing != 0) {
        sounds->sounding.insert(*playing);
        ++*sounding_;
    }
}

void FrameSounds::stop(ActorId actor) {
    const auto found = actors_.find(actor);
    if (found == actors_.end()) {
        return;
    }
    Sounds& sounds = *found->second;
    ++sounds.stops;
    *sounding_ -= sounds.sounding.size();
    for (const voice::Output::Playing playing : std::exchange(sounds.sounding, {})) {
        output_.stop(playing);
    }
}

} // namespace agent::stage
