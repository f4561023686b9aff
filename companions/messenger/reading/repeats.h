// Lines that were said before, or nearly so.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>
#include <vector>

#include "companions/messenger/reading/rules.h"

namespace messenger_client::reading {

// Compared are the letters and digits of two texts, in small letters, runs of the same one as one (signs and blanks
// count where there is nothing else). Equal ones are repeated; nearly so are those of which four fifths of the groups
// of three neighbouring characters are the same (twice the common ones to all of both).
class Repeats {
  public:
    // Nothing where it is new; then it is remembered, for most_remembered lines and longest_remembered milliseconds.
    std::optional<Unread> look(unsigned long long number, std::u16string_view person, std::u16string_view text,
                               long long now);
    // It was not read after all, so that who says the same is heard.
    void forget(unsigned long long number);

    // As many as a listener still has in mind.
    static constexpr std::size_t most_remembered = 30;
    static constexpr long long longest_remembered = 60'000;
    // Units that are compared: texts that differ only behind them are the same to who listens.
    static constexpr std::size_t most_compared = 160;
    // Short answers ("yes") of several people are no repetition, up to so many.
    static constexpr std::size_t short_answer = 12, most_answers = 2;

  private:
    struct Said {
        unsigned long long number;
        std::u16string person;
        std::u16string text;               // as it is compared
        std::vector<std::uint32_t> groups; // hashes, in order
        long long time;
    };
    std::deque<Said> said_;
};

} // namespace messenger_client::reading
