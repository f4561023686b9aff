#include "platform/win32/certificate.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "common/com/handles.h"
#include "common/text.h"
#include "platform/win32/system_error.h"

namespace murmelix::platform {

namespace {

constexpr std::size_t longest_name = 64; // of a certificate, in a sentence

class Chain {
  public:
    Chain() = default;
    ~Chain() {
        if (context_) {
            CertFreeCertificateChain(context_);
        }
    }
    Chain(const Chain&) = delete;
    Chain& operator=(const Chain&) = delete;
    PCCERT_CHAIN_CONTEXT get() const { return context_; }
    PCCERT_CHAIN_CONTEXT* out() { return &context_; }

  private:
    PCCERT_CHAIN_CONTEXT context_ = nullptr;
};

// Its maker can write anything there: what is shown is one short line of printable ASCII, as host names are.
std::u16string nameIn(PCCERT_CONTEXT certificate, DWORD type, DWORD flags) {
    std::array<wchar_t, 256> buffer{};
    CertGetNameStringW(certificate, type, flags, nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
    buffer.back() = 0;
    std::u16string name(com::narrow(buffer.data(), std::min(std::wcslen(buffer.data()), longest_name)));
    for (char16_t& unit : name) {
        unit = unit < u' ' || unit > u'~' ? u'?' : unit;
    }
    return name;
}

std::u16string dayOf(const FILETIME& time) {
    static constexpr std::u16string_view months[] = {u"January",   u"February", u"March",    u"April",
                                                     u"May",       u"June",     u"July",     u"August",
                                                     u"September", u"October",  u"November", u"December"};
    SYSTEMTIME day{};
    if (!FileTimeToSystemTime(&time, &day) || day.wMonth < 1 || day.wMonth > std::size(months)) {
        return u"an unknown day";
    }
    return toText(day.wDay).append(u" ").append(months[day.wMonth - 1]).append(u" ").append(toText(day.wYear));
}

ConnectionEnd outOfDate(const CERT_INFO& certificate, const std::u16string& subject) {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    const bool early = CompareFileTime(&now, &certificate.NotBefore) < 0;
    return {ConnectionFault::certificate_out_of_date,
            subject +
                (early ? u" is not good yet: it begins to be on " + dayOf(certificate.NotBefore)
                       : u" is out of date: it was good until " + dayOf(certificate.NotAfter)) +
                u"."};
}

// Not every system's judgement of a chain minds each of its errors.
DWORD errorOf(const CERT_TRUST_STATUS& status) {
    static constexpr struct {
        DWORD bit;
        HRESULT error;
    } errors[] = {
        {CERT_TRUST_IS_EXPLICIT_DISTRUST, TRUST_E_EXPLICIT_DISTRUST},
        {CERT_TRUST_IS_NOT_SIGNATURE_VALID, TRUST_E_CERT_SIGNATURE},
        {CERT_TRUST_IS_REVOKED, CRYPT_E_REVOKED},
        {CERT_TRUST_IS_PARTIAL_CHAIN, CERT_E_CHAINING},
        {CERT_TRUST_IS_UNTRUSTED_ROOT, CERT_E_UNTRUSTEDROOT},
        {CERT_TRUST_IS_CYCLIC, CERT_E_CHAINING},
        {CERT_TRUST_INVALID_BASIC_CONSTRAINTS, TRUST_E_BASIC_CONSTRAINTS},
        {CERT_TRUST_IS_NOT_TIME_VALID, CERT_E_EXPIRED},
        {CERT_TRUST_IS_NOT_VALID_FOR_USAGE, CERT_E_WRONG_USAGE},
        {CERT_TRUST_INVALID_NAME_CONSTRAINTS, CERT_E_INVALID_NAME},
        {CERT_TRUST_HAS_NOT_SUPPORTED_CRITICAL_EXT, CERT_E_CRITICAL},
    };
    for (const auto& [bit, error] : errors) {
        if (status.dwErrorStatus & bit) {
            return static_cast<DWORD>(error);
        }
    }
    return 0;
}

ConnectionEnd endFor(DWORD error, PCCERT_CONTEXT certificate, const std::u16string& host) {
    const std::u16string subject = u"The certificate of " + host;
    switch (static_cast<HRESULT>(error)) {
    case CERT_E_EXPIRED:
    case CERT_E_VALIDITYPERIODNESTING:
        return outOfDate(*certificate->pCertInfo, subject);
    case CERT_E_CN_NO_MATCH: {
        const std::u16string name = nameIn(certificate, CERT_NAME_DNS_TYPE, 0);
        return {ConnectionFault::certificate_for_other_name,
                subject + u" is for another name" + (name.empty() ? u"" : u": " + name) + u"."};
    }
    case CERT_E_UNTRUSTEDROOT:
    case CERT_E_UNTRUSTEDCA:
    case CERT_E_CHAINING: {
        const std::u16string issuer = nameIn(certificate, CERT_NAME_SIMPLE_DISPLAY_TYPE, CERT_NAME_ISSUER_FLAG);
        return {ConnectionFault::certificate_of_unknown_issuer,
                subject + u" was issued by somebody whom this computer does not know" +
                    (issuer.empty() ? u"" : u": " + issuer) + u"."};
    }
    default:
        return {ConnectionFault::certificate_invalid, subject + u" is not valid: " + errorText(error) + u"."};
    }
}

} // namespace

std::optional<ConnectionEnd> judgeCertificate(const Certificate& certificate, const std::u16string& host) {
    std::string use = szOID_PKIX_KP_SERVER_AUTH;
    LPSTR uses[] = {use.data()};
    CERT_CHAIN_PARA parameters{};
    parameters.cbSize = sizeof parameters;
    parameters.RequestedUsage.dwType = USAGE_MATCH_TYPE_OR;
    parameters.RequestedUsage.Usage = {1, uses};
    Chain chain;
    if (!CertGetCertificateChain(nullptr, certificate.get(), nullptr, certificate.get()->hCertStore, &parameters, 0,
                                 nullptr, chain.out())) {
        return endFor(GetLastError(), certificate.get(), host);
    }
    if (const DWORD error = errorOf(chain.get()->TrustStatus)) {
        return endFor(error, certificate.get(), host);
    }
    std::u16string name = host;
    while (name.ends_with(u'.')) { // of a name that is complete; certificates have none
        name.pop_back();
    }
    SSL_EXTRA_CERT_CHAIN_POLICY_PARA extra{};
    extra.cbSize = sizeof extra;
    extra.dwAuthType = AUTHTYPE_SERVER;
    extra.pwszServerName = const_cast<wchar_t*>(com::wide(name));
    CERT_CHAIN_POLICY_PARA policy{};
    policy.cbSize = sizeof policy;
    policy.pvExtraPolicyPara = &extra;
    CERT_CHAIN_POLICY_STATUS status{};
    status.cbSize = sizeof status;
    if (!CertVerifyCertificateChainPolicy(CERT_CHAIN_POLICY_SSL, chain.get(), &policy, &status)) {
        return endFor(GetLastError(), certificate.get(), host);
    }
    return status.dwError == 0 ? std::nullopt : std::optional(endFor(status.dwError, certificate.get(), host));
}

} // namespace murmelix::platform
