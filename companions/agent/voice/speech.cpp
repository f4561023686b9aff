#include "companions/agent/voice/speech.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "companions/agent/voice/wave.h"

namespace agent::voice {

namespace {

constexpr std::int16_t audible_level = 300;
constexpr std::uint32_t kept_lead_ms = 20, kept_tail_ms = 60;
constexpr std::uint32_t syllable_ms = 120; // of a mouth that has no sound to follow

bool isBlank(char16_t unit) {
    return unit <= u' ' || unit == 0x7F || unit == 0xA0 || unit == 0x3000;
}
bool isHigh(char16_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}
bool isLow(char16_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}
bool isIdeograph(char16_t unit) {
    return (unit >= 0x3041 && unit <= 0x30FF) || (unit >= 0x3400 && unit <= 0x9FFF) ||
           (unit >= 0xF900 && unit <= 0xFAFF);
}

std::size_t samplesIn(std::uint64_t ms) {
    return static_cast<std::size_t>(ms * mix_rate / 1000);
}

// How long a word takes, in units of text: digits are said as whole words, a sentence's end is a pause.
std::uint64_t weightOf(std::u16string_view word) {
    std::uint64_t weight = 1;
    for (const char16_t unit : word) {
        weight += unit >= u'0' && unit <= u'9' ? 4 : isIdeograph(unit) ? 3 : 1;
    }
    if (!word.empty() && std::u16string_view(u".!?,;:").find(word.back()) != std::u16string_view::npos) {
        weight += 3;
    }
    return weight;
}

std::uint32_t readingTime(std::u16string_view spoken, std::uint32_t speed) {
    std::uint64_t weight = 0;
    for (const auto& [begin, end] : splitWords(spoken)) {
        weight += weightOf(spoken.substr(begin, end - begin));
    }
    return static_cast<std::uint32_t>(weight * 60000 /
                                      (std::uint64_t{speed == 0 ? reading_speed : speed} * units_a_word));
}

std::u16string_view cutAtBlank(std::u16string_view text, std::size_t most) {
    if (text.size() <= most) {
        return text;
    }
    std::size_t end = most;
    while (end > 0 && !isBlank(text[end])) {
        --end;
    }
    if (end == 0) {
        end = isLow(text[most]) && most > 0 && isHigh(text[most - 1]) ? most - 1 : most;
    }
    return text.substr(0, end);
}

class Maker {
  public:
    Maker(const Script& script, Engine* engine, const std::stop_token& stop)
        : script_(script), engine_(engine), stop_(stop) {
        speech_.sound.rate = mix_rate;
        speech_.shown = script.shown;
    }

    std::optional<Speech> make() {
        for (const Piece& piece : script_.pieces) {
            if (stop_.stop_requested()) {
                return std::nullopt;
            }
            switch (piece.kind) {
            case Piece::Kind::words:
                words(piece);
                break;
            case Piece::Kind::pause:
                silence(samplesIn(piece.pause));
                break;
            case Piece::Kind::bookmark:
                speech_.bookmarks.push_back({piece.bookmark, now()});
                break;
            }
        }
        if (stop_.stop_requested()) {
            return std::nullopt;
        }
        if (speech_.mouth.empty() || speech_.mouth.back().shape != acs::MouthShape::closed) {
            speech_.mouth.push_back({now(), acs::MouthShape::closed});
        }
        return std::move(speech_);
    }

  private:
    std::uint32_t now() const { return speech_.sound.milliseconds(); }
    std::size_t room() const {
        const std::size_t most = samplesIn(most_heard_ms);
        return most - std::min(most, speech_.sound.samples.size());
    }
    void silence(std::size_t count) {
        speech_.sound.samples.resize(speech_.sound.samples.size() + std::min(count, room()));
    }

    void words(const Piece& piece) {
        const std::u16string_view shown =
            std::u16string_view(script_.shown).substr(piece.begin, piece.end - piece.begin);
        const std::u16string_view heard = cutAtBlank(piece.spoken, units_left_);
        units_left_ -= heard.size();
        if (heard.size() < piece.spoken.size()) {
            units_left_ = 0;
        }
        const std::u16string text = speakable(heard);
        const std::uint32_t begin = now();
        std::size_t lead = 0, said = 0;
        if (!splitWords(text).empty() && room() > 0) {
            if (const std::optional<Wave> wave = synthesised(text, piece.manner)) {
                const auto [first, last] = audiblePart(*wave);
                lead = std::min(first, samplesIn(kept_lead_ms));
                said = last - first;
                const std::size_t end = std::min(wave->samples.size(), last + samplesIn(kept_tail_ms));
                sound({wave->rate,
                       {wave->samples.begin() + static_cast<std::ptrdiff_t>(first - lead),
                        wave->samples.begin() + static_cast<std::ptrdiff_t>(end)}},
                      piece);
            } else if (!stop_.stop_requested()) {
                said = std::min(room(), samplesIn(readingTime(text, piece.manner.speed)));
                silence(said);
            }
        }
        const bool with_sound = speech_.mouth.size() != mouth_before_;
        const std::size_t heard_shown = piece.mapped ? shown.size() : heard.size();
        place(shown, heard_shown, piece.begin, begin + static_cast<std::uint32_t>(millisecondsOf(lead, mix_rate)), said,
              !with_sound);
        mouth_before_ = speech_.mouth.size();
    }

    std::optional<Wave> synthesised(const std::u16string& text, const Manner& manner) {
        if (engine_ == nullptr || !engine_->speaks(manner.language_id) || pieces_left_ == 0) {
            return std::nullopt;
        }
        --pieces_left_;
        std::optional<Wave> wave = asked(text, manner);
        if (!wave || wave->rate < 4000 || wave->rate > 96000) {
            return std::nullopt;
        }
        Wave result = resampled(std::move(*wave), mix_rate);
        // Of signs alone an engine makes no sound: they are read in silence.
        if (audiblePart(result).second == 0) {
            return std::nullopt;
        }
        return result;
    }

    // An engine that fails, by an exception too, has nothing to say.
    std::optional<Wave> asked(const std::u16string& text, const Manner& manner) {
        try {
            std::string error;
            return engine_->synthesise(text, manner, stop_, error);
        } catch (...) {
            return std::nullopt;
        }
    }

    void sound(Wave wave, const Piece& piece) {
        const std::uint32_t begin = now();
        wave.samples.resize(std::min(wave.samples.size(), room()));
        for (const MouthMove& move : mouthMoves(wave)) {
            speech_.mouth.push_back({begin + move.at, move.shape});
        }
        for (const std::int16_t sample : wave.samples) {
            speech_.sound.samples.push_back(static_cast<std::int16_t>(std::int32_t{sample} * piece.volume / 0xFFFF));
        }
    }

    // The words of `shown`, those before `heard` shared over `samples` from `begin` on, the rest at the end.
    void place(std::u16string_view shown, std::size_t heard, std::size_t offset, std::uint32_t begin,
               std::size_t samples, bool moves_mouth) {
        const auto found = splitWords(shown);
        std::uint64_t whole = 0, passed = 0;
        for (const auto& [first, last] : found) {
            if (first < heard) {
                whole += weightOf(shown.substr(first, last - first));
            }
        }
        const auto timeOf = [&](std::uint64_t weight) {
            return begin + static_cast<std::uint32_t>(millisecondsOf(samples, mix_rate) * weight /
                                                      std::max<std::uint64_t>(1, whole));
        };
        for (const auto& [first, last] : found) {
            const std::uint32_t at = first < heard ? timeOf(passed) : now();
            speech_.words.push_back({offset + first, offset + last, at});
            if (first >= heard) {
                continue;
            }
            const std::u16string_view word = shown.substr(first, last - first);
            passed += weightOf(word);
            if (moves_mouth && samples > 0) {
                mouthOf(word, at, timeOf(passed));
            }
        }
    }

    // A mouth for a word that has no sound: a syllable after another, by its letters, then closed.
    void mouthOf(std::u16string_view word, std::uint32_t begin, std::uint32_t end) {
        using acs::MouthShape;
        constexpr std::array<MouthShape, 6> shapes{MouthShape::medium, MouthShape::wide2, MouthShape::narrow,
                                                   MouthShape::wide3,  MouthShape::wide1, MouthShape::wide4};
        const std::uint32_t closes = begin + (end - begin) * 3 / 4;
        std::size_t letter = 0;
        for (std::uint32_t at = begin; at < closes; at += syllable_ms) {
            speech_.mouth.push_back({at, shapes[word[letter++ % word.size()] % shapes.size()]});
        }
        if (closes > begin) {
            speech_.mouth.push_back({closes, MouthShape::closed});
        }
    }

    const Script& script_;
    Engine* engine_;
    const std::stop_token& stop_;
    Speech speech_;
    std::size_t units_left_ = most_heard_units;
    std::size_t pieces_left_ = most_synthesised_pieces;
    std::size_t mouth_before_ = 0;
};

} // namespace

std::vector<std::pair<std::size_t, std::size_t>> splitWords(std::u16string_view text) {
    std::vector<std::pair<std::size_t, std::size_t>> words;
    for (std::size_t at = 0; at < text.size();) {
        if (isBlank(text[at])) {
            ++at;
            continue;
        }
        std::size_t end = at + 1;
        if (!isIdeograph(text[at])) {
            while (end < text.size() && !isBlank(text[end]) && !isIdeograph(text[end])) {
                ++end;
            }
        }
        words.emplace_back(at, end);
        at = end;
    }
    return words;
}

std::u16string speakable(std::u16string_view text) {
    std::u16string result(text);
    for (std::size_t i = 0; i < result.size(); ++i) {
        if (isHigh(result[i]) && i + 1 < result.size() && isLow(result[i + 1])) {
            ++i;
        } else if (result[i] < u' ' || (result[i] >= 0x7F && result[i] <= 0x9F) || isHigh(result[i]) ||
                   isLow(result[i]) || result[i] >= 0xFFFE) {
            result[i] = u' ';
        }
    }
    return result;
}

std::pair<std::size_t, std::size_t> audiblePart(const Wave& wave) {
    const auto isAudible = [](std::int16_t sample) { return sample >= audible_level || sample <= -audible_level; };
    const auto first = std::find_if(wave.samples.begin(), wave.samples.end(), isAudible);
    if (first == wave.samples.end()) {
        return {0, 0};
    }
    const auto last = std::find_if(wave.samples.rbegin(), wave.samples.rend(), isAudible).base();
    return {static_cast<std::size_t>(first - wave.samples.begin()),
            static_cast<std::size_t>(last - wave.samples.begin())};
}

std::optional<Speech> makeSpeech(const Script& script, Engine* engine, const std::stop_token& stop) {
    return Maker(script, engine, stop).make();
}

} // namespace agent::voice
