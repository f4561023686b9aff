// TLS by Schannel as a matter of bytes alone: ciphertext of the other side goes in and plaintext comes out, plaintext
// goes in and ciphertext for the other side comes out. Whether its certificate is good is for the caller to judge.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <windows.h>

#define SECURITY_WIN32
#include <sspi.h>

#include "platform/connection.h"
#include "platform/win32/certificate.h"

namespace murmelix::platform {

class TlsStream {
  public:
    enum class State {
        agreeing,
        agreed,
        closed, // by the other side, in order
        failed
    };

    explicit TlsStream(std::u16string host);
    ~TlsStream();
    TlsStream(const TlsStream&) = delete;
    TlsStream& operator=(const TlsStream&) = delete;

    // The first bytes for the other side.
    void begin();
    // Bytes of the other side, of any length, parted anywhere.
    void feed(std::string_view ciphertext);
    // False where the two have not agreed, or no longer do.
    bool seal(std::string_view plaintext);
    // Says goodbye to the other side.
    void close();

    State state() const { return state_; }
    ConnectionFault fault() const { return fault_; }
    // Of the alert that the other side has sent, where the fault is one.
    int alert() const { return alert_; }
    // What has come of either since it was asked last.
    std::string takePlaintext();
    std::string takeCiphertext();
    Certificate certificate() const;

  private:
    void agree();
    void open();
    bool looksLikeTls();
    SECURITY_STATUS step(SecBufferDesc* in);
    void fail(ConnectionFault fault);

    std::u16string host_;
    State state_ = State::agreeing;
    ConnectionFault fault_ = ConnectionFault::none;
    int alert_ = 0;
    std::optional<CredHandle> credentials_;
    std::optional<CtxtHandle> context_;
    SecPkgContext_StreamSizes sizes_{};
    std::string in_, plain_, out_;
    std::size_t agreed_on_ = 0; // bytes of the other side so far
};

} // namespace murmelix::platform
