// Lines of the protocol: bytes into lines, a line into its parts, and parts into a line to send.
//   [@tags ] [:prefix ] COMMAND parameters… [:last parameter]
#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace messenger_client::irc {

// Bytes of a line that is sent, with CR LF.
inline constexpr std::size_t longest_sent_line = 512;
// Bytes of a line that is taken, without its end: the 8,191 that tags may have, and as many again, since some servers
// let lines be longer than 512. Of a longer one nothing is taken.
inline constexpr std::size_t longest_line = 2 * 8191;
// Tags of a line: three times what the streaming chat sends. Others are left out.
inline constexpr std::size_t most_tags = 100;
// Parameters of a line, by the protocol; the last one takes the rest.
inline constexpr std::size_t most_parameters = 15;

// Gathers bytes to lines. It keeps no more than longest_line and what was fed last.
class LineReader {
  public:
    void feed(std::string_view bytes);
    // The next whole line, without its LF or CR LF; empty lines are skipped.
    std::optional<std::string> next();
    void clear();
    // Bytes that are kept.
    std::size_t size() const { return bytes_.size() - begin_; }

  private:
    std::string bytes_;
    std::size_t begin_ = 0;    // of the line under way
    std::size_t searched_ = 0; // up to here there is no LF
    bool too_long_ = false;    // the line under way; its bytes are gone
};

struct Prefix {
    std::string_view nick; // of a person, or the server's name
    std::string_view user, host;
    // A server has neither of them, and a name with a dot.
    bool isServer() const { return user.empty() && host.empty() && nick.find('.') != std::string_view::npos; }
};

// "nick!user@host", of which the user and the host may be missing.
Prefix parsePrefix(std::string_view prefix);

// A line's parts, as views into it.
class Message {
  public:
    Message() = default;
    // Takes any bytes; a line without a command has an empty one.
    explicit Message(std::string_view line);

    std::string_view command() const { return command_; }
    const Prefix& prefix() const { return prefix_; }
    const std::vector<std::string_view>& parameters() const { return parameters_; }
    // Empty where there are not so many.
    std::string_view parameter(std::size_t index) const {
        return index < parameters_.size() ? parameters_[index] : std::string_view();
    }
    std::string_view last() const { return parameters_.empty() ? std::string_view() : parameters_.back(); }

    bool hasTag(std::string_view key) const { return findTag(key) != nullptr; }
    // The value without its escapes; empty where the tag is missing or has none.
    std::string tag(std::string_view key) const;

  private:
    struct Tag {
        std::string_view key, value;
    };

    void readTags(std::string_view tags);
    void readParameters(std::string_view rest);
    const Tag* findTag(std::string_view key) const;

    std::vector<Tag> tags_;
    Prefix prefix_;
    std::string_view command_;
    std::vector<std::string_view> parameters_;
};

// A line with CR LF. The last part becomes the trailing parameter where it needs to. NUL, CR and LF are left out of the
// parts; nothing where the line is too long, or another part than the last is empty, begins with ":" or has a blank.
std::optional<std::string> formatLine(std::initializer_list<std::string_view> parts);
// The same of a line as a person types it.
std::optional<std::string> formatRawLine(std::string_view line);

} // namespace messenger_client::irc
