// What a program keeps for its user: values of one key below HKEY_CURRENT_USER, in UTF-16. Each operation opens the key
// anew; what is not there, is of another type, or is longer than the caller takes, counts as missing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace murmelix::platform {

class UserStore {
  public:
    // Such as u"Software\\Program".
    explicit UserStore(std::u16string key) : key_(std::move(key)) {}

    // REG_SZ, up to its first NUL.
    std::optional<std::u16string> text(const std::u16string& name, std::size_t longest) const;
    // REG_MULTI_SZ: the lines between its NULs, those without a unit left out. `longest` counts the NULs.
    std::optional<std::vector<std::u16string>> lines(const std::u16string& name, std::size_t longest) const;
    // REG_DWORD.
    std::optional<std::uint32_t> number(const std::u16string& name) const;

    // False where the system refuses. Lines have neither NULs nor nothing in them.
    bool putLines(const std::u16string& name, const std::vector<std::u16string>& lines) const;
    bool putNumber(const std::u16string& name, std::uint32_t value) const;
    void remove(const std::u16string& name) const;

  private:
    std::u16string key_;
};

} // namespace murmelix::platform
