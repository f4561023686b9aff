// What programs keep for their user, in memory: values by "KEY\NAME".
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace murmelix::fakes {

struct UserStores {
    using Value = std::variant<std::u16string, std::vector<std::u16string>, std::uint32_t>;
    std::map<std::u16string, Value> values;
    bool unwritable = false; // putting fails
};

UserStores& userStores();

} // namespace murmelix::fakes
