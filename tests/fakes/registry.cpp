#include "tests/fakes/registry.h"

#include <algorithm>
#include <memory>

#include "common/ansi.h"
#include "common/text.h"
#include "platform/registry.h"
#include "tests/fakes/fakes.h"

namespace murmelix {

namespace fakes {

namespace {

std::string folded(const std::string& bytes) {
    return toAnsi(toLower(std::u16string_view(fromAnsi(bytes.c_str()))));
}

bool canBeName(const std::string& text) {
    return text.find('\0') == std::string::npos;
}

// Nothing for a path that the system refuses.
std::optional<std::string> normalPath(const std::string& path) {
    std::string normal = folded(path);
    if (!canBeName(path) || (!normal.empty() && normal.front() == '\\')) {
        return std::nullopt;
    }
    while (!normal.empty() && normal.back() == '\\') {
        normal.pop_back();
    }
    return normal;
}

template <class Values>
auto findValue(Values& values, const std::string& name) {
    return std::find_if(values.begin(), values.end(),
                        [wanted = folded(name)](const auto& value) { return folded(value.first) == wanted; });
}

} // namespace

bool Registry::enter(std::string operation, bool writes) {
    log.push_back(std::move(operation));
    if (fail_at > 0 && --fail_at == 0) {
        return false;
    }
    return writes ? !unwritable : !unreadable;
}

Registry::Values* Registry::open(const std::string& path, bool create) {
    const auto normal = normalPath(path);
    if (!normal) {
        return nullptr;
    }
    if (create || normal->empty()) {
        return &keys_[*normal];
    }
    const auto found = keys_.find(*normal);
    return found == keys_.end() ? nullptr : &found->second;
}

void Registry::put(const std::string& path, const std::string& name, std::uint32_t type, const std::string& data) {
    Values& values = *open(path, true);
    const auto found = findValue(values, name);
    if (found == values.end()) {
        values.push_back({name.c_str(), {type, data}});
    } else {
        found->second = {type, data};
    }
}

void Registry::putText(const std::string& path, const std::string& name, const std::string& text) {
    put(path, name, platform::reg_sz, text + '\0');
}

std::optional<RegistryValue> Registry::value(const std::string& path, const std::string& name) const {
    const Values* values = key(path);
    if (!values) {
        return std::nullopt;
    }
    const auto found = findValue(*values, name);
    return found == values->end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::string> Registry::text(const std::string& path, const std::string& name) const {
    const auto found = value(path, name);
    return found ? std::optional(std::string(found->data.c_str())) : std::nullopt;
}

const Registry::Values* Registry::key(const std::string& path) const {
    const auto normal = normalPath(path);
    if (!normal) {
        return nullptr;
    }
    const auto found = keys_.find(*normal);
    return found == keys_.end() ? nullptr : &found->second;
}

Registry& registry() {
    return state().registry;
}

} // namespace fakes

namespace platform {

namespace {

fakes::Registry::Values& valuesOf(std::uintptr_t handle) {
    return *reinterpret_cast<fakes::Registry::Values*>(handle);
}

std::uintptr_t openKey(const std::string& subkey, bool create) {
    const bool allowed = fakes::registry().enter((create ? "create " : "open ") + subkey, create);
    return allowed ? reinterpret_cast<std::uintptr_t>(fakes::registry().open(subkey, create)) : 0;
}

} // namespace

std::optional<RegistryKey> RegistryKey::open(Hive, const std::string& subkey) {
    const std::uintptr_t handle = openKey(subkey, false);
    return handle ? std::optional(RegistryKey(handle)) : std::nullopt;
}

std::optional<RegistryKey> RegistryKey::create(Hive, const std::string& subkey) {
    const std::uintptr_t handle = openKey(subkey, true);
    return handle ? std::optional(RegistryKey(handle)) : std::nullopt;
}

RegistryKey::RegistryKey(RegistryKey&& other) noexcept : handle_(std::exchange(other.handle_, 0)) {}

RegistryKey& RegistryKey::operator=(RegistryKey&& other) noexcept {
    handle_ = std::exchange(other.handle_, 0);
    return *this;
}

RegistryKey::~RegistryKey() = default;

std::optional<RegistryValueInfo> RegistryKey::query(const std::string& name) const {
    if (!fakes::registry().enter("query " + name, false) || !fakes::canBeName(name)) {
        return std::nullopt;
    }
    const auto& values = valuesOf(handle_);
    const auto found = fakes::findValue(values, name);
    if (found == values.end()) {
        return std::nullopt;
    }
    return RegistryValueInfo{found->second.type, static_cast<std::uint32_t>(found->second.data.size())};
}

bool RegistryKey::query(const std::string& name, std::string& buffer) const {
    if (!fakes::registry().enter("query " + name, false) || !fakes::canBeName(name)) {
        return false;
    }
    const auto& values = valuesOf(handle_);
    const auto found = fakes::findValue(values, name);
    if (found == values.end() || found->second.data.size() > buffer.size()) {
        return false;
    }
    std::copy(found->second.data.begin(), found->second.data.end(), buffer.begin());
    return true;
}

bool RegistryKey::set(const std::string& name, std::uint32_t type, const std::string& data) const {
    if (!fakes::registry().enter("set " + name + "=" + data, true) || !fakes::canBeName(name)) {
        return false;
    }
    // The system stores the terminating NUL of a text that it finds right behind the given length.
    std::string stored = data;
    if (type == reg_sz && !data.empty() && data.back() != '\0') {
        stored.push_back('\0');
    }
    auto& values = valuesOf(handle_);
    const auto found = fakes::findValue(values, name);
    if (found == values.end()) {
        values.push_back({name.c_str(), {type, stored}});
    } else {
        found->second = {type, stored};
    }
    return true;
}

std::optional<std::pair<std::string, std::string>> RegistryKey::enumerate(std::uint32_t index, std::size_t name_buffer,
                                                                          std::size_t data_buffer) const {
    if (!fakes::registry().enter("enumerate " + std::to_string(index), false)) {
        return std::nullopt;
    }
    const auto& values = valuesOf(handle_);
    if (index >= values.size()) {
        return std::nullopt;
    }
    const auto& [name, value] = values[index];
    if (name.size() + 1 > name_buffer || value.data.size() > data_buffer) {
        return std::nullopt;
    }
    return std::pair(name, value.data);
}

bool RegistryKey::remove(const std::string& name) const {
    if (!fakes::registry().enter("delete " + name, true) || !fakes::canBeName(name)) {
        return false;
    }
    auto& values = valuesOf(handle_);
    const auto found = fakes::findValue(values, name);
    if (found == values.end()) {
        return false;
    }
    values.erase(found);
    return true;
}

} // namespace platform

} // namespace murmelix
