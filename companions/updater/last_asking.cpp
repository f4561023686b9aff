#include "companions/updater/last_asking.h"

#include <charconv>
#include <optional>
#include <string>

#include "platform/registry.h"

namespace updater {

namespace platform = murmelix::platform;

namespace {

constexpr std::uint32_t longest_data = 20; // every 64-bit number and the NUL behind it

std::optional<long long> lastAsking() {
    const auto key = platform::RegistryKey::open(platform::Hive::current_user, last_asking_key);
    const auto info = key ? key->query(last_asking_value) : std::nullopt;
    if (!info || info->type != platform::reg_sz || info->size > longest_data) {
        return {};
    }
    std::string data(info->size, '\0');
    if (!key->query(last_asking_value, data)) {
        return {};
    }
    data.resize(data.find_last_not_of('\0') + 1);
    long long time = 0;
    const auto [end, error] = std::from_chars(data.data(), data.data() + data.size(), time);
    return error == std::errc() && end == data.data() + data.size() && time >= 0 ? std::optional(time) : std::nullopt;
}

} // namespace

bool askedLately(long long now) {
    const auto last = lastAsking();
    return last && *last <= now && now - *last < seconds_between_askings;
}

bool noteAsking(long long now) {
    const auto key = platform::RegistryKey::create(platform::Hive::current_user, last_asking_key);
    return key && key->set(last_asking_value, platform::reg_sz, std::to_string(now) + '\0');
}

} // namespace updater
