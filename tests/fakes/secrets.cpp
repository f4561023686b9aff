#include "tests/fakes/secrets.h"

#include "common/text.h"
#include "platform/secrets.h"
#include "tests/fakes/fakes.h"

namespace murmelix {

namespace fakes {

Secrets& secrets() {
    return state().secrets;
}

} // namespace fakes

namespace platform {

namespace {

constexpr std::string_view mark = "protected\0";
constexpr char cover = 0x5A;

std::string covered(std::string bytes) {
    for (char& byte : bytes) {
        byte = static_cast<char>(byte ^ cover);
    }
    return bytes;
}

} // namespace

std::optional<std::string> protectSecret(std::u16string_view text) {
    if (fakes::secrets().refused || text.size() > longest_secret) {
        return std::nullopt;
    }
    return std::string(mark) + covered(toUtf8(text));
}

std::optional<std::u16string> revealSecret(std::string_view bytes) {
    if (fakes::secrets().other_user || !bytes.starts_with(mark)) {
        return std::nullopt;
    }
    return fromUtf8(covered(std::string(bytes.substr(mark.size()))));
}

} // namespace platform

} // namespace murmelix
