#include "tests/fakes/user_store.h"

#include "platform/user_store.h"
#include "tests/fakes/fakes.h"

namespace murmelix {

namespace fakes {

UserStores& userStores() {
    return state().user_stores;
}

} // namespace fakes

namespace platform {

namespace {

template <class T>
std::optional<T> valueOf(const std::u16string& key, const std::u16string& name) {
    const auto& values = fakes::userStores().values;
    const auto found = values.find(key + u"\\" + name);
    if (found == values.end() || !std::holds_alternative<T>(found->second)) {
        return std::nullopt;
    }
    return std::get<T>(found->second);
}

bool put(const std::u16string& key, const std::u16string& name, fakes::UserStores::Value value) {
    if (fakes::userStores().unwritable) {
        return false;
    }
    fakes::userStores().values[key + u"\\" + name] = std::move(value);
    return true;
}

} // namespace

std::optional<std::u16string> UserStore::text(const std::u16string& name, std::size_t longest) const {
    auto text = valueOf<std::u16string>(key_, name);
    return text && text->size() <= longest ? text : std::nullopt;
}

std::optional<std::vector<std::u16string>> UserStore::lines(const std::u16string& name, std::size_t longest) const {
    auto lines = valueOf<std::vector<std::u16string>>(key_, name);
    if (!lines) {
        return std::nullopt;
    }
    std::size_t units = 1;
    for (const std::u16string& line : *lines) {
        units += line.size() + 1;
    }
    return units <= longest ? lines : std::nullopt;
}

std::optional<std::uint32_t> UserStore::number(const std::u16string& name) const {
    return valueOf<std::uint32_t>(key_, name);
}

bool UserStore::putLines(const std::u16string& name, const std::vector<std::u16string>& lines) const {
    return put(key_, name, lines);
}

bool UserStore::putNumber(const std::u16string& name, std::uint32_t value) const {
    return put(key_, name, value);
}

void UserStore::remove(const std::u16string& name) const {
    fakes::userStores().values.erase(key_ + u"\\" + name);
}

} // namespace platform

} // namespace murmelix
