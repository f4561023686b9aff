// From a script and an engine to a whole speech: sound, words in time, mouth.
#pragma once

#include <stop_token>
#include <utility>

#include "companions/agent/voice/tags.h"

namespace agent::voice {

// What of one text is heard at most; how fast it is read where no voice reads it.
inline constexpr std::size_t most_heard_units = 4000;
inline constexpr std::uint32_t most_heard_ms = 5 * 60 * 1000;
inline constexpr std::size_t most_synthesised_pieces = 64; // parted by tags; further ones are read in silence
inline constexpr std::uint32_t reading_speed = 180;        // words a minute
inline constexpr std::uint32_t units_a_word = 6;           // with its blank

// Begin and end of each run of non-blank units; an ideograph or kana is a word of its own.
std::vector<std::pair<std::size_t, std::size_t>> splitWords(std::u16string_view text);

// What an engine is given: blanks for control characters and unpaired surrogates.
std::u16string speakable(std::u16string_view text);

// First sample of the audible part, and the one behind its end; both 0 where nothing is audible.
std::pair<std::size_t, std::size_t> audiblePart(const Wave& wave);

// The words' times are an estimate: the audible part of each piece's sound, shared among its words by their length.
// `engine` may be null. Nothing when stopped.
std::optional<Speech> makeSpeech(const Script& script, Engine* engine, const std::stop_token& stop);

} // namespace agent::voice
