// The sounds that stand in the frames of characters.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>

#include "companions/agent/acs/reader.h"
#include "companions/agent/stage/request.h"
#include "companions/agent/voice/voice.h"

namespace agent::stage {

// What they may cost, wide enough for an animation whose sounds overlap: seen are 34 sounds in one character, one in a
// frame.
inline constexpr std::size_t most_sounds_of_actor = 4;          // at once, in the workshop too; others are left out
inline constexpr std::size_t most_frame_sounds = 32;            // at once, of all characters: half of what can be mixed
inline constexpr std::uint32_t longest_frame_sound_ms = 30'000; // the rest is left out
inline constexpr std::size_t most_kept_samples = std::size_t{4} << 20; // of one character, decoded: three minutes

// The sound of a file at the mixing rate; null where it cannot be heard. For any thread.
using DecodedSound = std::shared_ptr<const voice::Wave>;
DecodedSound decodedSound(const acs::CharacterFile& file, std::uint16_t sound);

// Carries out `work` on another thread, and then `done` on that of the stage.
using Workshop = std::function<void(std::function<void()> work, std::function<void()> done)>;

// Each sound is decoded in the workshop when it is first heard, and kept. Stays behind `output`.
class FrameSounds {
  public:
    FrameSounds(voice::Output& output, Workshop workshop);
    // Heard at once, the first time as soon as it is decoded.
    void play(ActorId actor, const std::shared_ptr<const acs::CharacterFile>& file, std::uint16_t sound);
    // What sounds of a character, or is being decoded to be heard, is heard no more.
    void stop(ActorId actor);
    // Of a character that has gone; what sounds goes on.
    void forget(ActorId actor) { actors_.erase(actor); }

  private:
    struct Kept {
        bool made = false;
        DecodedSound sound;
    };
    struct Sounds {
        std::set<voice::Output::Playing> sounding;
        std::size_t awaited = 0;
        std::uint64_t stops = 0; // how often it was stopped
        std::size_t samples = 0; // in `kept`
        std::map<std::uint16_t, Kept> kept;
    };
    void make(const std::shared_ptr<Sounds>& sounds, const std::shared_ptr<const acs::CharacterFile>& file,
              std::uint16_t sound);
    void keep(Sounds& sounds, std::uint16_t sound, DecodedSound made);
    void start(const std::shared_ptr<Sounds>& sounds, const DecodedSound& sound);

    voice::Output& output_;
    Workshop workshop_;
    std::map<ActorId, std::shared_ptr<Sounds>> actors_;
    std::shared_ptr<std::size_t> sounding_ = std::make_shared<std::size_t>(0);
    std::shared_ptr<FrameSounds*> self_; // goes with it: what comes from the workshop afterwards finds nobody
};

} // namespace agent::stage
