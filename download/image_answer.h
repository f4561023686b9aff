// What a web server answers to the request for a character's picture, taken in as it arrives.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace murmelix {

// A picture of a character has some thousand bytes.
inline constexpr std::size_t longest_image = 16 * 1024 * 1024; // bytes
// Before the picture; servers send less than a hundredth of it.
inline constexpr std::size_t longest_header = 64 * 1024; // bytes

class ImageAnswer {
  public:
    // Takes what has arrived next. Tells how much of the picture there is, in percent, once its header was read before;
    // nothing where that is unknown. Where the header tells no length, each byte counts for 100 percent.
    std::optional<std::int32_t> take(std::string_view bytes);
    // It is longer than any picture: what else arrives is of no use.
    bool tooLong() const;

    // Whether there is a whole header.
    bool hasHeader() const { return header_end_ != std::string::npos; }
    // Whether the header says "200 OK" in a line that is not its last one.
    bool found() const;
    // All behind the header.
    std::string_view body() const;

  private:
    std::string_view header() const;
    void readLength();

    std::string received_;
    std::size_t header_end_ = std::string::npos; // where the empty line begins
    bool header_done_ = false;
    double content_length_ = 0;
};

// The request for the picture of a character, in the ANSI code page.
std::string imageRequest(const std::u16string& character);
// Whether the name can be that of a file, as the name of every installed character is, here and on the server.
bool isFileName(std::u16string_view name);

} // namespace murmelix
