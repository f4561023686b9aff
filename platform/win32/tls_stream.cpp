#include "platform/win32/tls_stream.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include <schannel.h>

#include "common/com/handles.h"

namespace murmelix::platform {

namespace {

// A chain of certificates takes some thousand bytes; many times that is no server that wants to agree.
constexpr std::size_t most_to_agree_on = 256 * 1024;

constexpr ULONG wanted_properties = ISC_REQ_SEQUENCE_DETECT | ISC_REQ_REPLAY_DETECT | ISC_REQ_CONFIDENTIALITY |
                                    ISC_REQ_ALLOCATE_MEMORY | ISC_REQ_STREAM | ISC_REQ_MANUAL_CRED_VALIDATION |
                                    ISC_REQ_USE_SUPPLIED_CREDS | ISC_REQ_EXTENDED_ERROR;

// RFC 5246, 6.2.1 and 7.2: what stands before each record, and what an alert says.
constexpr std::size_t header_size = 5;
constexpr std::size_t longest_record = 16384 + 2048;
constexpr std::uint8_t first_type = 20, alert_type = 21, last_type = 23;
constexpr std::uint8_t major_version = 3;
constexpr std::size_t alert_size = 2;
constexpr int alert_protocol_version = 70, alert_insufficient_security = 71;

std::uint8_t byteAt(std::string_view bytes, std::size_t place) {
    return static_cast<std::uint8_t>(bytes[place]);
}

SecBuffer bufferOf(unsigned long type, char* data = nullptr, std::size_t size = 0) {
    return {static_cast<unsigned long>(size), type, data};
}

template <std::size_t count>
SecBufferDesc describe(std::array<SecBuffer, count>& buffers) {
    return {SECBUFFER_VERSION, static_cast<unsigned long>(count), buffers.data()};
}

template <std::size_t count>
const SecBuffer* find(const std::array<SecBuffer, count>& buffers, unsigned long type) {
    const auto found =
        std::find_if(buffers.begin(), buffers.end(), [&](const SecBuffer& one) { return one.BufferType == type; });
    return found == buffers.end() ? nullptr : &*found;
}

} // namespace

TlsStream::TlsStream(std::u16string host) : host_(std::move(host)) {}

TlsStream::~TlsStream() {
    if (context_) {
        DeleteSecurityContext(&*context_);
    }
    if (credentials_) {
        FreeCredentialsHandle(&*credentials_);
    }
}

void TlsStream::fail(ConnectionFault fault) {
    state_ = State::failed;
    fault_ = fault;
    in_.clear();
}

void TlsStream::begin() {
    SCHANNEL_CRED wishes{};
    wishes.dwVersion = SCHANNEL_CRED_VERSION;
    wishes.grbitEnabledProtocols = SP_PROT_TLS1_2_CLIENT;
    wishes.dwFlags = SCH_CRED_MANUAL_CRED_VALIDATION | SCH_CRED_NO_DEFAULT_CREDS | SCH_USE_STRONG_CRYPTO;
    CredHandle credentials;
    const SECURITY_STATUS status =
        AcquireCredentialsHandleW(nullptr, const_cast<wchar_t*>(UNISP_NAME_W), SECPKG_CRED_OUTBOUND, nullptr, &wishes,
                                  nullptr, nullptr, &credentials, nullptr);
    if (status != SEC_E_OK) {
        return fail(ConnectionFault::system);
    }
    credentials_ = credentials;
    if (step(nullptr) != SEC_I_CONTINUE_NEEDED) {
        fail(ConnectionFault::system);
    }
}

SECURITY_STATUS TlsStream::step(SecBufferDesc* in) {
    std::array<SecBuffer, 1> out{bufferOf(SECBUFFER_TOKEN)};
    SecBufferDesc out_description = describe(out);
    CtxtHandle made{};
    ULONG got = 0;
    const SECURITY_STATUS status = InitializeSecurityContextW(
        &*credentials_, context_ ? &*context_ : nullptr, const_cast<wchar_t*>(com::wide(host_)), wanted_properties, 0,
        0, in, 0, context_ ? nullptr : &made, &out_description, &got, nullptr);
    if (!context_ && (status == SEC_E_OK || status == SEC_I_CONTINUE_NEEDED)) {
        context_ = made;
    }
    if (out[0].pvBuffer) {
        out_.append(static_cast<const char*>(out[0].pvBuffer), out[0].cbBuffer);
        FreeContextBuffer(out[0].pvBuffer);
    }
    return status;
}

void TlsStream::feed(std::string_view ciphertext) {
    if (state_ != State::agreeing && state_ != State::agreed) {
        return;
    }
    in_ += ciphertext;
    if (state_ == State::agreeing) {
        agreed_on_ += ciphertext.size();
        if (agreed_on_ > most_to_agree_on) {
            return fail(ConnectionFault::no_agreement);
        }
        agree();
    }
    if (state_ == State::agreed) {
        open();
    }
}

// What begins before the two have agreed is in the clear. The system would take a server that speaks anything else for
// one that is slow, and does not tell which alert it got.
bool TlsStream::looksLikeTls() {
    const std::uint8_t type = in_.empty() ? first_type : byteAt(in_, 0);
    if (type < first_type || type > last_type || (in_.size() > 1 && byteAt(in_, 1) != major_version)) {
        fail(ConnectionFault::not_tls);
        return false;
    }
    if (in_.size() < header_size) {
        return true;
    }
    const std::size_t length = byteAt(in_, 3) * 256u + byteAt(in_, 4);
    if (length > longest_record) {
        fail(ConnectionFault::not_tls);
        return false;
    }
    if (type == alert_type && length == alert_size && in_.size() >= header_size + alert_size) {
        alert_ = byteAt(in_, header_size + 1);
        fail(alert_ == alert_protocol_version || alert_ == alert_insufficient_security ? ConnectionFault::no_agreement
                                                                                       : ConnectionFault::alert);
        return false;
    }
    return true;
}

void TlsStream::agree() {
    bool asked_for_ours = false; // our own certificate: there is none
    while (!in_.empty() && state_ == State::agreeing && looksLikeTls()) {
        std::array<SecBuffer, 2> in{bufferOf(SECBUFFER_TOKEN, in_.data(), in_.size()), bufferOf(SECBUFFER_EMPTY)};
        SecBufferDesc description = describe(in);
        const SECURITY_STATUS status = step(&description);
        if (status == SEC_E_INCOMPLETE_MESSAGE) {
            return;
        }
        if (status == SEC_I_INCOMPLETE_CREDENTIALS && !std::exchange(asked_for_ours, true)) {
            continue; // the same bytes again go on without
        }
        if (status != SEC_E_OK && status != SEC_I_CONTINUE_NEEDED) {
            return fail(ConnectionFault::no_agreement);
        }
        const SecBuffer* extra = find(in, SECBUFFER_EXTRA);
        const std::size_t left = extra ? std::min<std::size_t>(extra->cbBuffer, in_.size()) : 0;
        const bool progress = left < in_.size();
        in_.erase(0, in_.size() - left);
        if (status == SEC_E_OK) {
            if (QueryContextAttributesW(&*context_, SECPKG_ATTR_STREAM_SIZES, &sizes_) != SEC_E_OK) {
                return fail(ConnectionFault::system);
            }
            state_ = State::agreed;
        } else if (!progress) {
            return; // more has to come first
        }
    }
}

void TlsStream::open() {
    std::size_t done = 0;
    while (state_ == State::agreed && done < in_.size()) {
        std::array<SecBuffer, 4> buffers{bufferOf(SECBUFFER_DATA, in_.data() + done, in_.size() - done),
                                         bufferOf(SECBUFFER_EMPTY), bufferOf(SECBUFFER_EMPTY),
                                         bufferOf(SECBUFFER_EMPTY)};
        SecBufferDesc description = describe(buffers);
        const bool is_alert = byteAt(in_, done) == alert_type;
        const SECURITY_STATUS status = DecryptMessage(&*context_, &description, 0, nullptr);
        if (status == SEC_E_INCOMPLETE_MESSAGE) {
            break;
        }
        // Wine takes a goodbye for a record with nothing in it.
        if (status == SEC_I_CONTEXT_EXPIRED || (status == SEC_E_OK && is_alert)) {
            state_ = State::closed;
            break;
        }
        if (status != SEC_E_OK) {
            // Also where the server wants to agree anew, which no chat server has a reason to.
            return fail(ConnectionFault::broken_off);
        }
        if (const SecBuffer* data = find(buffers, SECBUFFER_DATA)) {
            plain_.append(static_cast<const char*>(data->pvBuffer), data->cbBuffer);
        }
        const SecBuffer* extra = find(buffers, SECBUFFER_EXTRA);
        const std::size_t left = extra ? extra->cbBuffer : 0;
        if (left >= in_.size() - done) {
            return fail(ConnectionFault::broken_off);
        }
        done = in_.size() - left;
    }
    in_.erase(0, done);
}

bool TlsStream::seal(std::string_view plaintext) {
    if (state_ != State::agreed || sizes_.cbMaximumMessage == 0) {
        return false;
    }
    while (!plaintext.empty()) {
        const std::size_t size = std::min<std::size_t>(plaintext.size(), sizes_.cbMaximumMessage);
        std::string record(sizes_.cbHeader + size + sizes_.cbTrailer, '\0');
        std::copy_n(plaintext.data(), size, record.data() + sizes_.cbHeader);
        std::array<SecBuffer, 4> buffers{
            bufferOf(SECBUFFER_STREAM_HEADER, record.data(), sizes_.cbHeader),
            bufferOf(SECBUFFER_DATA, record.data() + sizes_.cbHeader, size),
            bufferOf(SECBUFFER_STREAM_TRAILER, record.data() + sizes_.cbHeader + size, sizes_.cbTrailer),
            bufferOf(SECBUFFER_EMPTY)};
        SecBufferDesc description = describe(buffers);
        if (EncryptMessage(&*context_, 0, &description, 0) != SEC_E_OK) {
            fail(ConnectionFault::broken_off);
            return false;
        }
        for (const SecBuffer& buffer : buffers) {
            if (buffer.BufferType != SECBUFFER_EMPTY) {
                out_.append(static_cast<const char*>(buffer.pvBuffer), buffer.cbBuffer);
            }
        }
        plaintext.remove_prefix(size);
    }
    return true;
}

void TlsStream::close() {
    if (!context_ || state_ != State::agreed) {
        return;
    }
    DWORD token = SCHANNEL_SHUTDOWN;
    std::array<SecBuffer, 1> buffers{bufferOf(SECBUFFER_TOKEN, reinterpret_cast<char*>(&token), sizeof token)};
    SecBufferDesc description = describe(buffers);
    if (ApplyControlToken(&*context_, &description) == SEC_E_OK) {
        step(nullptr);
    }
}

std::string TlsStream::takePlaintext() {
    return std::exchange(plain_, {});
}

std::string TlsStream::takeCiphertext() {
    return std::exchange(out_, {});
}

Certificate TlsStream::certificate() const {
    PCCERT_CONTEXT found = nullptr;
    auto* context = const_cast<CtxtHandle*>(&*context_);
    return context_ && QueryContextAttributesW(context, SECPKG_ATTR_REMOTE_CERT_CONTEXT, &found) == SEC_E_OK
               ? Certificate(found)
               : Certificate();
}

} // namespace murmelix::platform
