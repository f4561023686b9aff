#include "companions/agent/voice/stretch.h"

#include <algorithm>
#include <cmath>

#include "companions/agent/voice/wave.h"

namespace agent::voice {

namespace {

constexpr std::size_t overlap =
    mix_rate * 15 / 1000;                           // samples that a piece overlaps the next by: a deep voice's period
constexpr std::size_t reach = mix_rate * 10 / 1000; // how far from its place a piece may be laid
// Only some samples are compared, and only at some places: voices have little above a quarter of the mixing rate.
constexpr std::size_t step = 2;

} // namespace

double Stretch::position() const {
    const double unread = static_cast<double>(laid_.size() - laid_at_) * laid_tempo_;
    return std::clamp(position_ - unread, 0.0, static_cast<double>(length()));
}

std::size_t Stretch::read(std::span<std::int16_t> into, double tempo) {
    tempo = std::clamp(tempo, least_tempo, most_tempo);
    std::size_t count = 0;
    while (count < into.size()) {
        if (laid_at_ < laid_.size()) {
            const std::size_t taken = std::min(into.size() - count, laid_.size() - laid_at_);
            std::copy_n(laid_.begin() + static_cast<std::ptrdiff_t>(laid_at_), taken,
                        into.begin() + static_cast<std::ptrdiff_t>(count));
            laid_at_ += taken;
            count += taken;
        } else if (over()) {
            break;
        } else if (tempo == 1 || length() - next_ < 2 * overlap) {
            // What is left at the end is too short for pieces.
            const std::size_t taken = std::min(into.size() - count, length() - next_);
            std::copy_n(wave_->samples.begin() + static_cast<std::ptrdiff_t>(next_), taken,
                        into.begin() + static_cast<std::ptrdiff_t>(count));
            next_ += taken;
            position_ = static_cast<double>(next_);
            count += taken;
        } else {
            lay(tempo);
        }
    }
    return count;
}

// One more piece: what continues the last one gives way to it.
void Stretch::lay(double tempo) {
    const double most = static_cast<double>(length() - overlap);
    const std::size_t at = bestAt(static_cast<std::size_t>(std::clamp(std::round(position_), 0.0, most)));
    laid_.resize(overlap);
    laid_at_ = 0;
    laid_tempo_ = tempo;
    for (std::size_t i = 0; i < overlap; ++i) {
        const auto share = static_cast<std::int32_t>(i), rest = static_cast<std::int32_t>(overlap - i);
        const std::int32_t both = wave_->samples[next_ + i] * rest + wave_->samples[at + i] * share;
        laid_[i] = static_cast<std::int16_t>(both / static_cast<std::int32_t>(overlap));
    }
    next_ = at + overlap;
    position_ += static_cast<double>(overlap) * tempo;
}

std::size_t Stretch::bestAt(std::size_t wanted) const {
    const std::size_t first = wanted - std::min(wanted, reach), last = std::min(wanted + reach, length() - overlap);
    std::size_t best = std::min(wanted, last);
    double least = unlike(best);
    for (std::size_t at = first; at <= last; at += step) {
        if (const double found = unlike(at); found < least) {
            best = at;
            least = found;
        }
    }
    return best;
}

double Stretch::unlike(std::size_t at) const {
    double sum = 0;
    for (std::size_t i = 0; i < overlap; i += step) {
        const double difference = wave_->samples[next_ + i] - wave_->samples[at + i];
        sum += difference * difference;
    }
    return sum;
}

} // namespace agent::voice
