#include "common/com/error.h"

#include <array>
#include <cstdio>

#include "common/text.h"

namespace murmelix::com {

namespace {

std::string message(HRESULT result, const std::u16string& description) {
    std::array<char, 32> code{};
    std::snprintf(code.data(), code.size(), "0x%08lX", static_cast<unsigned long>(result));
    return description.empty() ? std::string(code.data()) : toUtf8(description) + " (" + code.data() + ")";
}

} // namespace

Error::Error(HRESULT result, std::u16string description)
    : std::runtime_error(message(result, description)), result_(result), description_(std::move(description)) {}

void check(HRESULT result) {
    if (FAILED(result)) {
        throw Error(result);
    }
}

bool isGone(HRESULT result) {
    return result == RPC_E_DISCONNECTED || result == HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE) ||
           result == RPC_E_SERVER_DIED || result == RPC_E_SERVER_DIED_DNE || result == CO_E_OBJNOTCONNECTED ||
           result == HRESULT_FROM_WIN32(RPC_S_CALL_FAILED) || result == HRESULT_FROM_WIN32(RPC_S_CALL_FAILED_DNE);
}

} // namespace murmelix::com
