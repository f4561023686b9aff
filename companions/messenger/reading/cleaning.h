// A line of chat as it is worth listening to.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "companions/messenger/reading/emoji.h"

namespace messenger_client::reading {

// Part of a text: units from 0.
struct Range {
    std::size_t begin = 0, end = 0;
    bool operator==(const Range&) const = default;
};

enum class Links { named, left_out, whole }; // "a link to example.org", nothing, as it was written

struct WordRule {
    std::u16string word;        // letter case ignored, as a whole word
    std::u16string replacement; // empty: the word is left out
    bool operator==(const WordRule&) const = default;
};

struct Cleaning {
    Links links = Links::named;
    EmojiReading emoji; // its most_in_row is that of the chat's own pictures, too
    // Long numbers and words, rows of signs and the same word again and again are cut.
    bool shorten = true;
    // Characters, as people count them; what is longer ends at a word, with an ellipsis.
    std::size_t longest = 200;
    std::span<const WordRule> words;
};

// One line without control characters and unpaired surrogates, empty where nothing is left to be said. `emotes`: where
// the pictures of the chat stand in the text; what does not lie in it, or lies in another one, is passed over.
std::u16string cleaned(std::u16string_view text, const std::vector<Range>& emotes, const Cleaning& cleaning);
// Units of the result, whatever comes in: what a voice says in three minutes.
inline constexpr std::size_t longest_cleaned = 2'000;
// Units of a text that are looked at: what comes after them would not be read anyway.
inline constexpr std::size_t longest_looked_at = 4'000;

// What a link is called: "a link to example.org", or "a link" where its host is none that can be told honestly.
std::u16string linkName(std::u16string_view link);

} // namespace messenger_client::reading
