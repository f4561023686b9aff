#include "platform/secrets.h"

#include <windows.h>

#include <wincrypt.h>

namespace murmelix::platform {

namespace {

// What the system hands out; gone from memory afterwards, since it may be the secret itself.
class Blob {
  public:
    Blob() = default;
    ~Blob() {
        if (blob_.pbData) {
            SecureZeroMemory(blob_.pbData, blob_.cbData);
            LocalFree(blob_.pbData);
        }
    }
    Blob(const Blob&) = delete;
    Blob& operator=(const Blob&) = delete;
    DATA_BLOB* out() { return &blob_; }
    const BYTE* data() const { return blob_.pbData; }
    std::size_t size() const { return blob_.cbData; }

  private:
    DATA_BLOB blob_{};
};

DATA_BLOB blobOf(const void* data, std::size_t size) {
    return {static_cast<DWORD>(size), const_cast<BYTE*>(static_cast<const BYTE*>(data))};
}

// What protecting may add: keys, the description, what it is checked by. A bound for what is handed to the system.
constexpr std::size_t most_protected = longest_secret * sizeof(char16_t) + 4096;

} // namespace

std::optional<std::string> protectSecret(std::u16string_view text) {
    if (text.size() > longest_secret) {
        return std::nullopt;
    }
    DATA_BLOB in = blobOf(text.data(), text.size() * sizeof(char16_t));
    Blob out;
    // Never with a window that asks.
    if (!CryptProtectData(&in, nullptr, nullptr, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN, out.out())) {
        return std::nullopt;
    }
    return std::string(reinterpret_cast<const char*>(out.data()), out.size());
}

std::optional<std::u16string> revealSecret(std::string_view bytes) {
    if (bytes.empty() || bytes.size() > most_protected) {
        return std::nullopt;
    }
    DATA_BLOB in = blobOf(bytes.data(), bytes.size());
    Blob out;
    if (!CryptUnprotectData(&in, nullptr, nullptr, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN, out.out()) ||
        out.size() % sizeof(char16_t) != 0 || out.size() > longest_secret * sizeof(char16_t)) {
        return std::nullopt;
    }
    return std::u16string(reinterpret_cast<const char16_t*>(out.data()), out.size() / sizeof(char16_t));
}

} // namespace murmelix::platform
