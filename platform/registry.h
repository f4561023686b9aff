// The registry by its ANSI operations, one function each; names, paths and data are bytes of the ANSI code page.
// A name or path with a NUL in it is that of nothing: every operation on it fails.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace murmelix::platform {

enum class Hive : std::uint32_t { current_user = 0x80000001 };

inline constexpr std::uint32_t reg_sz = 1;
inline constexpr std::uint32_t reg_binary = 3;

struct RegistryValueInfo {
    std::uint32_t type;
    std::uint32_t size; // bytes
};

// An open key, closed at its end.
class RegistryKey {
  public:
    // RegOpenKeyA; an empty subkey is the hive itself.
    static std::optional<RegistryKey> open(Hive hive, const std::string& subkey);
    // RegCreateKeyA: opens it if it exists.
    static std::optional<RegistryKey> create(Hive hive, const std::string& subkey);

    RegistryKey(RegistryKey&& other) noexcept;
    RegistryKey& operator=(RegistryKey&& other) noexcept;
    ~RegistryKey();

    // RegQueryValueExA without a buffer.
    std::optional<RegistryValueInfo> query(const std::string& name) const;
    // RegQueryValueExA into `buffer`; tells whether it succeeded (it fails where the data is longer than the buffer).
    bool query(const std::string& name, std::string& buffer) const;
    // RegSetValueExA with exactly these bytes.
    bool set(const std::string& name, std::uint32_t type, const std::string& data) const;
    // RegEnumValueA with buffers of that many characters: name cut to its returned length, and all returned bytes of
    // the data. Nothing where the call fails: no value of that index, or one too long for the buffers.
    std::optional<std::pair<std::string, std::string>> enumerate(std::uint32_t index, std::size_t name_buffer,
                                                                 std::size_t data_buffer) const;
    // RegDeleteValueA.
    bool remove(const std::string& name) const;

  private:
    explicit RegistryKey(std::uintptr_t handle) : handle_(handle) {}
    std::uintptr_t handle_ = 0;
};

} // namespace murmelix::platform
