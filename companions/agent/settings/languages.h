// The languages that a character can be given by the user.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace agent::settings {

struct Language {
    std::uint16_t id; // as Windows counts them
    std::u16string_view name;
    std::u16string_view sample; // "This is how I sound."
};

// In the order of their names.
std::span<const Language> languages();
// Null for another one.
const Language* languageOf(std::uint16_t id);

} // namespace agent::settings
