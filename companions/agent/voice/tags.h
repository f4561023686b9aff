// The text of a Speak call, read: alternatives, and the tags between backslashes that change the voice.
//
// A tag is a backslash, one of the twelve names (without letter case), its values after "=", and a backslash. Whatever
// is not exactly that is text, shown and spoken as it stands. Numbers beyond a tag's range count as the nearest in it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "companions/agent/voice/voice.h"

namespace agent::voice {

// Further bookmarks of one text are left out. Each one is told to the client by a call of its own; of 4,000 units that
// are heard a thousand leave one for every word.
inline constexpr std::size_t most_bookmarks = 1000;

struct Piece {
    enum class Kind : std::uint8_t { words, pause, bookmark };
    Kind kind = Kind::words;
    Manner manner;                  // words
    std::uint16_t volume = 0xFFFF;  // words; 0xFFFF: full
    std::u16string spoken;          // words
    bool mapped = false;            // words: `spoken` is not what is shown
    std::size_t begin = 0, end = 0; // words: their place in Script::shown
    std::uint32_t pause = 0;        // ms, 10 to 2550
    std::int32_t bookmark = 0;
};

struct Script {
    std::u16string shown;
    std::vector<Piece> pieces;
    std::u16string remembered; // what \Lst\ repeats after this
};

// One of the parts between "|", picked by a random number; empty parts are no choice.
std::u16string_view chooseAlternative(std::u16string_view text, std::uint64_t random);

// `last`: the remembered text of this speaker's script before.
Script readTags(std::u16string_view text, const Manner& manner, std::u16string_view last);

} // namespace agent::voice
