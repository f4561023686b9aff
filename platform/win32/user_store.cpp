#include "platform/user_store.h"

#include <algorithm>
#include <cstring>

#include <windows.h>

#include "common/com/handles.h"

namespace murmelix::platform {

using com::wide;

namespace {

class Key {
  public:
    Key(const std::u16string& path, REGSAM access) { RegOpenKeyExW(HKEY_CURRENT_USER, wide(path), 0, access, &key_); }
    ~Key() {
        if (key_) {
            RegCloseKey(key_);
        }
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    HKEY get() const { return key_; }

  private:
    HKEY key_ = nullptr;
};

// The units of a value of that type, with whatever NULs it holds.
std::optional<std::u16string> stored(const std::u16string& path, const std::u16string& name, DWORD expected,
                                     std::size_t longest) {
    const Key key(path, KEY_QUERY_VALUE);
    DWORD type = 0;
    DWORD bytes = 0;
    if (!key.get() || RegQueryValueExW(key.get(), wide(name), nullptr, &type, nullptr, &bytes) != ERROR_SUCCESS ||
        type != expected || bytes / sizeof(char16_t) > longest) {
        return std::nullopt;
    }
    std::vector<BYTE> data(bytes);
    if (RegQueryValueExW(key.get(), wide(name), nullptr, &type, data.data(), &bytes) != ERROR_SUCCESS ||
        type != expected) {
        return std::nullopt; // somebody is changing it
    }
    std::u16string text(bytes / sizeof(char16_t), u'\0');
    std::memcpy(text.data(), data.data(), text.size() * sizeof(char16_t));
    return text;
}

} // namespace

std::optional<std::u16string> UserStore::text(const std::u16string& name, std::size_t longest) const {
    auto text = stored(key_, name, REG_SZ, longest);
    if (text) {
        text->resize(std::min(text->find(u'\0'), text->size()));
    }
    return text;
}

std::optional<std::vector<std::u16string>> UserStore::lines(const std::u16string& name, std::size_t longest) const {
    const auto text = stored(key_, name, REG_MULTI_SZ, longest);
    if (!text) {
        return std::nullopt;
    }
    std::vector<std::u16string> lines;
    for (std::size_t from = 0; from < text->size();) {
        const std::size_t end = std::min(text->find(u'\0', from), text->size());
        if (end > from) {
            lines.push_back(text->substr(from, end - from));
        }
        from = end + 1;
    }
    return lines;
}

std::optional<std::uint32_t> UserStore::number(const std::u16string& name) const {
    DWORD value = 0;
    DWORD bytes = sizeof value;
    if (RegGetValueW(HKEY_CURRENT_USER, wide(key_), wide(name), RRF_RT_REG_DWORD, nullptr, &value, &bytes) !=
        ERROR_SUCCESS) {
        return std::nullopt;
    }
    return value;
}

bool UserStore::putLines(const std::u16string& name, const std::vector<std::u16string>& lines) const {
    std::u16string text;
    for (const std::u16string& line : lines) {
        text.append(line).push_back(u'\0');
    }
    text.push_back(u'\0');
    return RegSetKeyValueW(HKEY_CURRENT_USER, wide(key_), wide(name), REG_MULTI_SZ, text.data(),
                           static_cast<DWORD>(text.size() * sizeof(char16_t))) == ERROR_SUCCESS;
}

bool UserStore::putNumber(const std::u16string& name, std::uint32_t value) const {
    return RegSetKeyValueW(HKEY_CURRENT_USER, wide(key_), wide(name), REG_DWORD, &value, sizeof value) == ERROR_SUCCESS;
}

void UserStore::remove(const std::u16string& name) const {
    if (const Key key(key_, KEY_SET_VALUE); key.get()) {
        RegDeleteValueW(key.get(), wide(name));
    }
}

} // namespace murmelix::platform
