#include "tools/trace/json.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "common/text.h"

namespace murmelix::trace {

namespace {

constexpr int deepest = 64;

class Parser {
  public:
    explicit Parser(std::string_view line) : line_(line) {}

    Json whole() {
        Json value = any(0);
        skipBlanks();
        if (at_ != line_.size()) {
            fail("something follows the value");
        }
        return value;
    }

  private:
    [[noreturn]] void fail(const char* what) const {
        throw JsonError(std::string(what) + " at byte " + std::to_string(at_ + 1));
    }

    void skipBlanks() { at_ = std::min(line_.find_first_not_of(" \t\r\n", at_), line_.size()); }

    // NUL behind the end.
    char next() const { return at_ < line_.size() ? line_[at_] : '\0'; }

    bool take(std::string_view wanted) {
        const bool there = line_.substr(at_).starts_with(wanted);
        at_ += there ? wanted.size() : 0;
        return there;
    }

    Json any(int depth) {
        if (depth > deepest) {
            fail("the value is nested too deeply");
        }
        skipBlanks();
        switch (next()) {
        case '{':
            return Json(object(depth));
        case '[':
            return Json(array(depth));
        case '"':
            return Json(string());
        default:
            break;
        }
        if (take("null")) {
            return Json();
        }
        if (take("true")) {
            return Json(true);
        }
        if (take("false")) {
            return Json(false);
        }
        return Json(number());
    }

    JsonObject object(int depth) {
        JsonObject members;
        take("{");
        skipBlanks();
        if (take("}")) {
            return members;
        }
        for (;;) {
            skipBlanks();
            if (next() != '"') {
                fail("a name in quotes is missing");
            }
            std::u16string name = string();
            skipBlanks();
            if (!take(":")) {
                fail("\":\" is missing");
            }
            members.insert_or_assign(std::move(name), any(depth + 1));
            skipBlanks();
            if (take("}")) {
                return members;
            }
            if (!take(",")) {
                fail("\",\" or \"}\" is missing");
            }
        }
    }

    JsonArray array(int depth) {
        JsonArray items;
        take("[");
        skipBlanks();
        if (take("]")) {
            return items;
        }
        for (;;) {
            items.push_back(any(depth + 1));
            skipBlanks();
            if (take("]")) {
                return items;
            }
            if (!take(",")) {
                fail("\",\" or \"]\" is missing");
            }
        }
    }

    double number() {
        double value = 0;
        const auto [end, error] = std::from_chars(line_.data() + at_, line_.data() + line_.size(), value);
        if (error != std::errc{}) {
            fail("no value");
        }
        at_ = static_cast<std::size_t>(end - line_.data());
        return value;
    }

    std::u16string string() {
        std::u16string text;
        take("\"");
        for (;;) {
            const std::size_t plain_end = std::min(line_.find_first_of("\"\\", at_), line_.size());
            text += fromUtf8(line_.substr(at_, plain_end - at_));
            at_ = plain_end;
            if (take("\"")) {
                return text;
            }
            if (!take("\\")) {
                fail("the closing quote is missing");
            }
            text.push_back(escaped());
        }
    }

    char16_t escaped() {
        const char letter = next();
        ++at_;
        switch (letter) {
        case '"':
        case '\\':
        case '/':
            return static_cast<char16_t>(letter);
        case 'b':
            return u'\b';
        case 'f':
            return u'\f';
        case 'n':
            return u'\n';
        case 'r':
            return u'\r';
        case 't':
            return u'\t';
        case 'u': {
            std::uint16_t unit = 0;
            const char* const first = line_.data() + std::min(at_, line_.size());
            const char* const last = line_.data() + std::min(at_ + 4, line_.size());
            const auto [end, error] = std::from_chars(first, last, unit, 16);
            if (error != std::errc{} || end != first + 4) {
                fail("four hexadecimal digits are missing");
            }
            at_ += 4;
            return unit;
        }
        default:
            --at_;
            fail("unknown escape");
        }
    }

    std::string_view line_;
    std::size_t at_ = 0;
};

template <class Kind>
const Kind& as(const Json::Value& value, const char* kind) {
    if (const auto found = std::get_if<Kind>(&value)) {
        return *found;
    }
    throw JsonError(std::string(kind) + " was expected");
}

bool isSurrogate(char16_t unit, char16_t first) {
    return (unit & 0xFC00) == first;
}

} // namespace

const std::u16string& Json::text() const {
    return as<std::u16string>(value_, "a text");
}

std::int32_t Json::count() const {
    const double number = as<double>(value_, "a number");
    if (number < 0 || number > std::numeric_limits<std::int32_t>::max() || number != std::floor(number)) {
        throw JsonError("a whole number from 0 was expected");
    }
    return static_cast<std::int32_t>(number);
}

const JsonArray& Json::array() const {
    return as<JsonArray>(value_, "an array");
}

const JsonObject& Json::object() const {
    return as<JsonObject>(value_, "an object");
}

const Json& Json::operator[](std::u16string_view name) const {
    const auto found = object().find(std::u16string(name));
    if (found == object().end()) {
        throw JsonError("\"" + toUtf8(name) + "\" is missing");
    }
    return found->second;
}

bool Json::has(std::u16string_view name) const {
    return object().contains(std::u16string(name));
}

Json parseJson(std::string_view line) {
    return Parser(line).whole();
}

std::string quoted(std::u16string_view text) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string result = "\"";
    result.reserve(text.size() + 2);
    const auto escape = [&](char16_t unit) {
        result += "\\u";
        for (int shift = 12; shift >= 0; shift -= 4) {
            result.push_back(digits[unit >> shift & 0xF]);
        }
    };
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char16_t unit = text[at];
        if (unit == u'"' || unit == u'\\') {
            result.push_back('\\');
            result.push_back(static_cast<char>(unit));
        } else if (unit == u'\r') {
            result += "\\r";
        } else if (unit == u'\n') {
            result += "\\n";
        } else if (unit == u'\t') {
            result += "\\t";
        } else if (unit < u' ' || isSurrogate(unit, 0xDC00)) {
            escape(unit);
        } else if (unit < 0x80) {
            result.push_back(static_cast<char>(unit));
        } else if (!isSurrogate(unit, 0xD800)) {
            result += toUtf8(text.substr(at, 1));
        } else if (at + 1 < text.size() && isSurrogate(text[at + 1], 0xDC00)) {
            result += toUtf8(text.substr(at, 2));
            ++at;
        } else {
            escape(unit);
        }
    }
    return result += '"';
}

} // namespace murmelix::trace
