// A sound read faster or slower than it was made, its pitch kept.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "companions/agent/voice/voice.h"

namespace agent::voice {

// How many times as fast a sound may be heard. What is beyond loses whole syllables.
inline constexpr double least_tempo = 0.25, most_tempo = 4;

// Reads a sound at the mixing rate from its beginning to its end. At a tempo of 1 its samples come as they are; at
// others pieces of it overlap, each laid where it continues the one before best.
class Stretch {
  public:
    explicit Stretch(std::shared_ptr<const Wave> wave) : wave_(std::move(wave)) {}
    // The next samples, `tempo` times as fast as they are; fewer than `into` holds at the end of the sound.
    std::size_t read(std::span<std::int16_t> into, double tempo);
    bool over() const { return laid_at_ == laid_.size() && (next_ >= length() || past()); }
    // What has been read, in samples of the sound.
    double position() const;
    std::size_t length() const { return wave_->samples.size(); }

  private:
    bool past() const { return position_ >= static_cast<double>(length()); }
    void lay(double tempo);
    std::size_t bestAt(std::size_t wanted) const;
    double unlike(std::size_t at) const;

    std::shared_ptr<const Wave> wave_;
    double position_ = 0;            // of what has been laid
    double laid_tempo_ = 1;          // of what is in laid_
    std::size_t next_ = 0;           // what continues the last piece
    std::vector<std::int16_t> laid_; // and not read yet, from laid_at_ on
    std::size_t laid_at_ = 0;
};

} // namespace agent::voice
