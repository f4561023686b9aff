#include "companions/messenger/irc/line.h"

#include <algorithm>
#include <utility>

#include "companions/messenger/irc/cutting.h"

namespace messenger_client::irc {

namespace {

void skipBlanks(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
}

std::string unescaped(std::string_view value) {
    std::string plain;
    plain.reserve(value.size());
    for (std::size_t at = 0; at < value.size(); ++at) {
        if (value[at] != '\\') {
            plain += value[at];
        } else if (++at < value.size()) {
            switch (value[at]) {
            case ':':
                plain += ';';
                break;
            case 's':
                plain += ' ';
                break;
            case 'r':
                plain += '\r';
                break;
            case 'n':
                plain += '\n';
                break;
            default:
                plain += value[at];
            }
        }
    }
    return plain;
}

// Without what would end it.
std::string oneLine(std::string_view text) {
    std::string line(text);
    std::erase_if(line, [](char byte) { return byte == '\0' || byte == '\r' || byte == '\n'; });
    return line;
}

std::optional<std::string> ended(std::string line) {
    line += "\r\n";
    return line.size() <= longest_sent_line ? std::optional(std::move(line)) : std::nullopt;
}

} // namespace

void LineReader::feed(std::string_view bytes) {
    bytes_.erase(0, begin_);
    searched_ -= begin_;
    begin_ = 0;
    bytes_ += bytes;
}

std::optional<std::string> LineReader::next() {
    for (;;) {
        const std::size_t end = bytes_.find('\n', searched_);
        if (end == std::string::npos) {
            searched_ = bytes_.size();
            if (bytes_.size() - begin_ > longest_line + 1) {
                too_long_ = true;
                begin_ = bytes_.size();
            }
            return std::nullopt;
        }
        std::string_view line = std::string_view(bytes_).substr(begin_, end - begin_);
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        begin_ = searched_ = end + 1;
        if (!std::exchange(too_long_, false) && !line.empty() && line.size() <= longest_line) {
            return std::string(line);
        }
    }
}

void LineReader::clear() {
    bytes_.clear();
    begin_ = searched_ = 0;
    too_long_ = false;
}

Prefix parsePrefix(std::string_view prefix) {
    std::string_view rest = prefix.substr(0, prefix.find('@'));
    const std::string_view host = prefix.substr(std::min(rest.size() + 1, prefix.size()));
    const std::string_view nick = take(rest, '!');
    return {nick, rest, host};
}

Message::Message(std::string_view line) {
    if (line.starts_with('@')) {
        readTags(take(line, ' ').substr(1));
        skipBlanks(line);
    }
    if (line.starts_with(':')) {
        prefix_ = parsePrefix(take(line, ' ').substr(1));
        skipBlanks(line);
    }
    command_ = take(line, ' ');
    readParameters(line);
}

void Message::readTags(std::string_view tags) {
    while (!tags.empty() && tags_.size() < most_tags) {
        std::string_view value = take(tags, ';');
        if (const std::string_view key = take(value, '='); !key.empty()) {
            tags_.push_back({key, value});
        }
    }
}

void Message::readParameters(std::string_view rest) {
    for (skipBlanks(rest); !rest.empty(); skipBlanks(rest)) {
        const bool trailing = rest.starts_with(':');
        if (trailing || parameters_.size() + 1 == most_parameters) {
            parameters_.push_back(rest.substr(trailing ? 1 : 0));
            return;
        }
        parameters_.push_back(take(rest, ' '));
    }
}

const Message::Tag* Message::findTag(std::string_view key) const {
    // Of the same key the last one counts.
    const auto found = std::find_if(tags_.rbegin(), tags_.rend(), [&](const Tag& tag) { return tag.key == key; });
    return found == tags_.rend() ? nullptr : &*found;
}

std::string Message::tag(std::string_view key) const {
    const Tag* found = findTag(key);
    return found ? unescaped(found->value) : std::string();
}

std::optional<std::string> formatLine(std::initializer_list<std::string_view> parts) {
    std::string line;
    for (const std::string_view& given : parts) {
        const std::string part = oneLine(given);
        const bool first = line.empty(), last = &given + 1 == parts.end();
        const bool word = !part.empty() && !part.starts_with(':') && part.find(' ') == std::string::npos;
        if (!word && (first || !last)) {
            return std::nullopt;
        }
        line += first ? "" : word ? " " : " :";
        line += part;
    }
    return ended(std::move(line));
}

std::optional<std::string> formatRawLine(std::string_view typed) {
    std::string line = oneLine(typed);
    line.erase(0, line.find_first_not_of(' '));
    return line.empty() ? std::nullopt : ended(std::move(line));
}

} // namespace messenger_client::irc
