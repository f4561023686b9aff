// The sounds that stand in the frames of characters.
#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "companions/agent/acs/reader.h"
#include "companions/agent/stage/request.h"
#include "companions/agent/voice/voice.h"

namespace agent::stage {

// What they may cost, wide enough for an animation whose sounds overlap: seen are 34 sounds in one character, one in a
// frame.
inline constexpr std::size_t most_sounds_of_actor = 4;          // at once; further ones are left out
inline constexpr std::size_t most_frame_sounds = 32;            // at once, of all characters: half of what can be mixed
inline constexpr std::uint32_t longest_frame_sound_ms = 30'000; // the rest is left out
inline constexpr std::size_t most_kept_samples = std::size_t{4} << 20; // of one character, decoded: three minutes

// Each sound is decoded when it is first heard, and kept. Stays behind `output`.
class FrameSounds {
  public:
    explicit FrameSounds(voice::Output& output) : output_(output) {}
    void play(ActorId actor, const acs::CharacterFile& file, std::uint16_t sound);
    // Of a character that has gone; what sounds goes on.
    void forget(ActorId actor) { actors_.erase(actor); }

    // At the mixing rate; null where it cannot be heard.
    using Decoded = std::shared_ptr<const voice::Wave>;
    Decoded decoded(ActorId actor, const acs::CharacterFile& file, std::uint16_t sound);

  private:
    struct Sounds {
        std::size_t sounding = 0;
        std::size_t samples = 0; // in `decoded`
        std::map<std::uint16_t, Decoded> decoded;
    };
    const std::shared_ptr<Sounds>& soundsOf(ActorId actor);

    voice::Output& output_;
    std::map<ActorId, std::shared_ptr<Sounds>> actors_;
    std::shared_ptr<std::size_t> sounding_ = std::make_shared<std::size_t>(0);
};

} // namespace agent::stage
