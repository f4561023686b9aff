// Whether a server is the one that it is taken for.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include <windows.h>

#include <wincrypt.h>

#include "platform/connection.h"

namespace murmelix::platform {

class Certificate {
  public:
    Certificate() = default;
    explicit Certificate(PCCERT_CONTEXT context) : context_(context) {}
    Certificate(Certificate&& other) noexcept : context_(std::exchange(other.context_, nullptr)) {}
    Certificate& operator=(Certificate&& other) noexcept {
        std::swap(context_, other.context_);
        return *this;
    }
    ~Certificate() {
        if (context_) {
            CertFreeCertificateContext(context_);
        }
    }
    PCCERT_CONTEXT get() const { return context_; }

  private:
    PCCERT_CONTEXT context_ = nullptr;
};

// Its chain up to an issuer whom this machine knows, its dates and its names, but not whether it was revoked; nothing
// where all is well. It may ask the network for the issuers: call it where waiting does no harm.
std::optional<ConnectionEnd> judgeCertificate(const Certificate& certificate, const std::u16string& host);

} // namespace murmelix::platform
