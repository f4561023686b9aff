// Any bytes as lines of a server, in portions of any size: their parts, their text, and lines made of them.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/text.h"
#include "companions/messenger/irc/address.h"
#include "companions/messenger/irc/features.h"
#include "companions/messenger/irc/input.h"
#include "companions/messenger/irc/line.h"
#include "companions/messenger/irc/server_time.h"
#include "companions/messenger/irc/streaming.h"
#include "companions/messenger/irc/text.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using namespace messenger_client::irc;

std::vector<std::string> linesOf(std::string_view bytes, std::size_t portion) {
    LineReader reader;
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < bytes.size(); at += portion) {
        reader.feed(bytes.substr(at, portion));
        while (auto line = reader.next()) {
            require(!line->empty() && line->size() <= longest_line, "a line has a length");
            require(line->find('\n') == std::string::npos, "and no other line in it");
            lines.push_back(*line);
        }
    }
    return lines;
}

bool showsAll(std::u16string_view text) {
    for (const char16_t unit : text) {
        if (unit < u' ' || (unit >= 0x7F && unit < 0xA0) || (unit >= 0x202A && unit <= 0x202E) || unit == 0x2028) {
            return false;
        }
    }
    return murmelix::fromUtf8(murmelix::toUtf8(text)) == text;
}

void checkSent(const std::optional<std::string>& line) {
    if (line) {
        require(line->size() <= longest_sent_line && line->size() > 2 && line->ends_with("\r\n"), "a line fits");
        require(line->find_first_of(std::string_view("\0\r\n", 3)) == line->size() - 2, "it is one line");
    }
}

void checkText(std::string_view bytes) {
    const std::u16string text = decoded(bytes);
    require(text.size() <= bytes.size(), "text is no longer than its bytes");
    std::vector<std::size_t> places{0, text.size() / 2, text.size()};
    const std::u16string plain = plainText(text, &places);
    require(showsAll(plain), "all of a text shows");
    require(places[0] <= places[1] && places[1] <= places[2] && places[2] <= plain.size(), "places keep their order");
    require(plainText(plain) == plain, "plain text stays");
    const std::u16string name = plainName(bytes, 20);
    require(showsAll(name) && name.size() <= 20, "so does a name");
    std::string together;
    for (const std::string& piece : piecesOf(text, 16)) {
        require(!piece.empty() && piece.size() <= 16, "pieces fit");
        require(murmelix::toUtf8(murmelix::fromUtf8(piece)) == piece, "and have whole characters");
    }
}

void checkMessage(const std::string& line) {
    const Message message(line);
    require(message.parameters().size() <= most_parameters, "parameters are bounded");
    for (const std::string_view parameter : message.parameters()) {
        checkText(parameter);
    }
    checkSent(formatLine({message.command(), message.parameter(0), message.last()}));
    checkSent(formatRawLine(line));
    timeOf(message);
    badgesOf(message);
    Features features;
    features.read(message);
    require(features.rankModes().size() == features.rankSigns().size(), "every rank has a sign");
    const std::u16string text = decoded(message.last());
    std::size_t reached = 0;
    for (const Emote& emote : parseEmotes(message.tag("emotes"), text)) {
        require(emote.first >= reached && emote.length > 0, "emotes do not overlap");
        reached = emote.first + emote.length;
    }
    require(reached <= text.size(), "and are in the text");
    const auto address = parseAddress(text);
    if (const auto* good = std::get_if<Address>(&address)) {
        const auto again = parseAddress(addressText(*good));
        require(std::holds_alternative<Address>(again) && std::get<Address>(again) == *good, "addresses are read back");
    }
    parseTyped(text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::vector<std::string> lines = linesOf(bytes, bytes.size() + 1);
    require(linesOf(bytes, data[0] + 1U) == lines, "portions do not matter");
    for (const std::string& line : lines) {
        checkMessage(line);
    }
    return 0;
}
