#include "platform/automation_server.h"

#include <memory>
#include <type_traits>
#include <vector>

#include <windows.h>

#include "common/com/handles.h"

namespace murmelix::platform {

namespace {

struct CloseKey {
    void operator()(HKEY key) const { RegCloseKey(key); }
};

// The text that a key of the classes stands for; empty where there is none.
std::u16string classText(const std::u16string& path, REGSAM view) {
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, com::wide(path), 0, KEY_QUERY_VALUE | view, &opened) != ERROR_SUCCESS) {
        return {};
    }
    const std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKey> key(opened);
    DWORD bytes = 0;
    if (RegGetValueW(opened, nullptr, nullptr, RRF_RT_REG_SZ, nullptr, nullptr, &bytes) != ERROR_SUCCESS) {
        return {};
    }
    std::vector<wchar_t> text(bytes / sizeof(wchar_t) + 1);
    if (RegGetValueW(opened, nullptr, nullptr, RRF_RT_REG_SZ, nullptr, text.data(), &bytes) != ERROR_SUCCESS) {
        return {};
    }
    return std::u16string(com::narrow(text.data(), wcslen(text.data())));
}

} // namespace

std::u16string registeredServer(const std::u16string& prog_id) {
    const std::u16string clsid = classText(prog_id + u"\\CLSID", 0);
    if (clsid.empty()) {
        return {};
    }
    for (const REGSAM view : {REGSAM{KEY_WOW64_64KEY}, REGSAM{KEY_WOW64_32KEY}}) {
        for (const char16_t* kind : {u"\\LocalServer32", u"\\InprocServer32"}) {
            const std::u16string command = classText(u"CLSID\\" + clsid + kind, view);
            if (!command.empty()) {
                return command;
            }
        }
    }
    return {};
}

} // namespace murmelix::platform
