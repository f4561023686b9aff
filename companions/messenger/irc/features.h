// What a server says of itself (ISUPPORT), as far as a client needs it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "companions/messenger/irc/case_mapping.h"
#include "companions/messenger/irc/line.h"

namespace messenger_client::irc {

// Ranks that people can have in a channel: servers know five.
inline constexpr std::size_t most_ranks = 16;
// Bytes of a feature's value that is kept: servers' longest are a tenth of it.
inline constexpr std::size_t longest_feature = 200;

class Features {
  public:
    // A line of it: `005 nick KEY=value KEY -KEY … :are supported by this server`.
    void read(const Message& message);

    CaseMapping caseMapping() const { return case_mapping_; }
    const std::string& network() const { return network_; } // empty where it is not told
    std::size_t lineLength() const { return line_length_; } // bytes with CR LF

    bool isChannel(std::string_view target) const;
    // A target as "@#channel" has a rank before the channel that it means.
    std::string_view withoutRank(std::string_view target) const;

    // Modes of ranks and their signs, highest first: "ov" and "@+".
    const std::string& rankModes() const { return rank_modes_; }
    const std::string& rankSigns() const { return rank_signs_; }
    // Whether a mode of a channel that is no rank takes a parameter.
    bool takesParameter(char mode, bool set) const;

  private:
    void readFeature(std::string_view key, std::string_view value);
    void readRanks(std::string_view value);

    CaseMapping case_mapping_ = CaseMapping::rfc1459;
    std::string network_;
    std::size_t line_length_ = longest_sent_line;
    std::string channel_signs_ = "#&";
    std::string rank_modes_ = "ov", rank_signs_ = "@+";
    std::string always_ = "beIk", when_set_ = "l"; // CHANMODES: lists and keys, limits
};

} // namespace messenger_client::irc
