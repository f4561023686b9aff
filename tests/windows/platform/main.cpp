#include <cstdio>
#include <cstdlib>
#include <thread>

#include <windows.h>

#include <wincrypt.h>

#include <gtest/gtest.h>

#include "common/text.h"
#include "tests/windows/support/process.h"

namespace {

constexpr DWORD longest_run = 300'000; // minutes: what hangs is ended, nothing that is slow

// The issuer of the servers' certificates is one that this machine knows, for as long as the prefix lives.
bool trustIssuer() {
    const char* path = std::getenv("MURMELIX_ISSUER");
    if (!path) {
        std::fprintf(stderr, "run it by with_servers.py\n");
        return false;
    }
    const std::string bytes = murmelix::test::contents(murmelix::test::windowsPath(path));
    const HCERTSTORE store = CertOpenSystemStoreW(0, L"ROOT");
    const bool done =
        CertAddEncodedCertificateToStore(store, X509_ASN_ENCODING, reinterpret_cast<const BYTE*>(bytes.data()),
                                         static_cast<DWORD>(bytes.size()), CERT_STORE_ADD_REPLACE_EXISTING, nullptr);
    CertCloseStore(store, 0);
    return done;
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    std::thread([] {
        Sleep(longest_run);
        std::fprintf(stderr, "the watchdog ends the tests\n");
        TerminateProcess(GetCurrentProcess(), 98);
    }).detach();
    return trustIssuer() ? RUN_ALL_TESTS() : 1;
}
