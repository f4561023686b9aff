#include "tests/windows/program/ending_store.h"

#include <cstdint>
#include <cstring>

#include <windows.h>

#include "app/shell_state.h"
#include "matchups/matchup_store.h"

namespace murmelix::test {
namespace {

int calls_left = 0;

LSTATUS counted(LSTATUS result) {
    if (--calls_left == 0) {
        TerminateProcess(GetCurrentProcess(), ended_in_the_middle);
    }
    return result;
}

LSTATUS WINAPI openKey(HKEY key, LPCSTR subkey, PHKEY result) {
    return counted(RegOpenKeyExA(key, subkey, 0, MAXIMUM_ALLOWED, result));
}
LSTATUS WINAPI createKey(HKEY key, LPCSTR subkey, PHKEY result) {
    return counted(RegCreateKeyExA(key, subkey, 0, nullptr, 0, MAXIMUM_ALLOWED, nullptr, result, nullptr));
}
decltype(&RegSetValueExA) set_value;
LSTATUS WINAPI setValue(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    return counted(set_value(key, name, reserved, type, data, size));
}
decltype(&RegEnumValueA) enum_value;
LSTATUS WINAPI enumValue(HKEY key, DWORD index, LPSTR name, LPDWORD name_size, LPDWORD reserved, LPDWORD type,
                         LPBYTE data, LPDWORD data_size) {
    return counted(enum_value(key, index, name, name_size, reserved, type, data, data_size));
}
decltype(&RegDeleteValueA) delete_value;
LSTATUS WINAPI deleteValue(HKEY key, LPCSTR name) {
    return counted(delete_value(key, name));
}
decltype(&RegCloseKey) close_key;
LSTATUS WINAPI closeKey(HKEY key) {
    return counted(close_key(key));
}

// The address that this program's own calls of a function of another module go to.
void** importOf(const char* function) {
    auto* const base = reinterpret_cast<std::uint8_t*>(GetModuleHandleW(nullptr));
    const auto& headers =
        *reinterpret_cast<const IMAGE_NT_HEADERS*>(base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const auto& directory = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto* module = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress); module->Name;
         ++module) {
        const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + module->OriginalFirstThunk);
        auto* addresses = reinterpret_cast<void**>(base + module->FirstThunk);
        for (; names->u1.AddressOfData; ++names, ++addresses) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) {
                continue;
            }
            const auto* name = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            if (std::strcmp(name->Name, function) == 0) {
                return addresses;
            }
        }
    }
    return nullptr;
}

// What was there before.
template <class Function>
Function replace(const char* name, Function by) {
    void** const import = importOf(name);
    if (!import) {
        ExitProcess(ended_in_the_middle + 1); // nothing would be counted
    }
    Function before = nullptr;
    std::memcpy(&before, import, sizeof before);
    DWORD protection = 0;
    VirtualProtect(import, sizeof by, PAGE_READWRITE, &protection);
    std::memcpy(import, &by, sizeof by);
    VirtualProtect(import, sizeof by, protection, &protection);
    return before;
}

} // namespace

int changeMatchupsUntil(int call) {
    replace("RegOpenKeyA", &openKey);
    replace("RegCreateKeyA", &createKey);
    set_value = replace("RegSetValueExA", &setValue);
    enum_value = replace("RegEnumValueA", &enumValue);
    delete_value = replace("RegDeleteValueA", &deleteValue);
    close_key = replace("RegCloseKey", &closeKey);
    if (call == 0) {
        return ended_in_the_middle;
    }
    calls_left = call;
    SettingsKeyPath = ending_store_path;
    LoadMatchups();
    AddMatchup(u"cyn@x", u"Otto");
    AddMatchup(u"bob@x", u"Anna");
    RemoveMatchup(u"cyn@x");
    return 0;
}

} // namespace murmelix::test
