#include "platform/registry.h"

#include <windows.h>

namespace murmelix::platform {

namespace {

HKEY hiveKey(Hive hive) {
    // Predefined handles are sign-extended where handles are wider than 32 bits.
    return reinterpret_cast<HKEY>(static_cast<INT_PTR>(static_cast<std::int32_t>(hive)));
}

HKEY keyOf(std::uintptr_t handle) {
    return reinterpret_cast<HKEY>(handle);
}

// The system would take what is before a NUL for the whole: another key's or value's name.
bool canBeName(const std::string& text) {
    return text.find('\0') == std::string::npos;
}

} // namespace

std::optional<RegistryKey> RegistryKey::open(Hive hive, const std::string& subkey) {
    HKEY key = nullptr;
    if (!canBeName(subkey) || RegOpenKeyA(hiveKey(hive), subkey.c_str(), &key) != ERROR_SUCCESS) {
        return {};
    }
    return RegistryKey(reinterpret_cast<std::uintptr_t>(key));
}

std::optional<RegistryKey> RegistryKey::create(Hive hive, const std::string& subkey) {
    HKEY key = nullptr;
    if (!canBeName(subkey) || RegCreateKeyA(hiveKey(hive), subkey.c_str(), &key) != ERROR_SUCCESS) {
        return {};
    }
    return RegistryKey(reinterpret_cast<std::uintptr_t>(key));
}

RegistryKey::RegistryKey(RegistryKey&& other) noexcept : handle_(std::exchange(other.handle_, 0)) {}

RegistryKey& RegistryKey::operator=(RegistryKey&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
}

RegistryKey::~RegistryKey() {
    if (handle_) {
        RegCloseKey(keyOf(handle_));
    }
}

std::optional<RegistryValueInfo> RegistryKey::query(const std::string& name) const {
    DWORD type = 0, size = 0;
    if (!canBeName(name) ||
        RegQueryValueExA(keyOf(handle_), name.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS) {
        return {};
    }
    return RegistryValueInfo{type, size};
}

bool RegistryKey::query(const std::string& name, std::string& buffer) const {
    auto size = static_cast<DWORD>(buffer.size());
    BYTE none = 0; // without a buffer the call would succeed for any length
    BYTE* data = buffer.empty() ? &none : reinterpret_cast<BYTE*>(buffer.data());
    return canBeName(name) &&
           RegQueryValueExA(keyOf(handle_), name.c_str(), nullptr, nullptr, data, &size) == ERROR_SUCCESS;
}

bool RegistryKey::set(const std::string& name, std::uint32_t type, const std::string& data) const {
    return canBeName(name) &&
           RegSetValueExA(keyOf(handle_), name.c_str(), 0, type, reinterpret_cast<const BYTE*>(data.data()),
                          static_cast<DWORD>(data.size())) == ERROR_SUCCESS;
}

std::optional<std::pair<std::string, std::string>> RegistryKey::enumerate(std::uint32_t index, std::size_t name_buffer,
                                                                          std::size_t data_buffer) const {
    std::string name(name_buffer, ' '), data(data_buffer, ' ');
    auto name_length = static_cast<DWORD>(name_buffer), data_length = static_cast<DWORD>(data_buffer);
    if (RegEnumValueA(keyOf(handle_), index, name.data(), &name_length, nullptr, nullptr,
                      reinterpret_cast<BYTE*>(data.data()), &data_length) != ERROR_SUCCESS) {
        return {};
    }
    name.resize(name_length);
    data.resize(data_length);
    return std::pair(std::move(name), std::move(data));
}

bool RegistryKey::remove(const std::string& name) const {
    return canBeName(name) && RegDeleteValueA(keyOf(handle_), name.c_str()) == ERROR_SUCCESS;
}

} // namespace murmelix::platform
