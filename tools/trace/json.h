// JSON of a line, with text as UTF-16: strings can hold unpaired surrogates, which go out and come in as \uXXXX.
#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace murmelix::trace {

class JsonError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class Json;
using JsonArray = std::vector<Json>;
using JsonObject = std::map<std::u16string, Json>;

// A value as it was read. Each access throws JsonError where the value is of another kind.
class Json {
  public:
    using Value = std::variant<std::nullptr_t, bool, double, std::u16string, JsonArray, JsonObject>;

    Json() = default;
    explicit Json(Value value) : value_(std::move(value)) {}

    const std::u16string& text() const;
    std::int32_t count() const; // a whole number from 0
    const JsonArray& array() const;
    const JsonObject& object() const;
    const Json& operator[](std::u16string_view name) const; // JsonError where there is none
    bool has(std::u16string_view name) const;

  private:
    Value value_;
};

// One value and nothing else. UTF-8; JsonError says what is wrong and at which byte.
Json parseJson(std::string_view line);

// In quotes, as UTF-8.
std::string quoted(std::u16string_view text);

} // namespace murmelix::trace
