#include "platform/win32/server_watch.h"

#include <array>
#include <set>

#include <objbase.h>
#include <tlhelp32.h>

#include "common/com/handles.h"
#include "common/text.h"

namespace murmelix::platform::win32 {

namespace {

using com::narrow;
using com::wide;

// Of a process whose system does not tell when its start is over.
constexpr int looks_at_a_start = 5;

// File name of the program in a command line, without its folders: "C:\Programs\server.exe" /x is server.exe.
std::u16string programOf(std::u16string_view command) {
    if (command.starts_with(u'"')) {
        command = command.substr(1, command.find(u'"', 1) - 1);
    } else if (const std::size_t end = find(command, u".exe", 0, LetterCase::ignored); end != npos) {
        command = command.substr(0, end + 4);
    }
    return std::u16string(command.substr(command.find_last_of(u"\\/") + 1));
}

// Empty where the ProgID is unknown or its objects live in the caller's own process.
std::u16string serverProgram(const std::u16string& prog_id) {
    CLSID clsid{};
    std::array<wchar_t, 40> text{};
    if (FAILED(CLSIDFromProgID(wide(prog_id), &clsid)) ||
        StringFromGUID2(clsid, text.data(), static_cast<int>(text.size())) == 0) {
        return {};
    }
    const std::u16string key =
        u"CLSID\\" + std::u16string(narrow(text.data(), wcslen(text.data()))) + u"\\LocalServer32";
    std::array<wchar_t, 1024> command{};
    DWORD bytes = sizeof command;
    if (RegGetValueW(HKEY_CLASSES_ROOT, wide(key), nullptr, RRF_RT_REG_SZ, nullptr, command.data(), &bytes) !=
        ERROR_SUCCESS) {
        return {};
    }
    return programOf(narrow(command.data(), wcslen(command.data())));
}

std::set<DWORD> processesOf(const std::u16string& program) {
    std::set<DWORD> ids;
    if (program.empty()) {
        return ids;
    }
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) {
        return ids;
    }
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot, &entry); more; more = Process32NextW(snapshot, &entry)) {
        const bool same = sameText(narrow(entry.szExeFile, wcslen(entry.szExeFile)), program, LetterCase::ignored);
        if (same && entry.th32ProcessID != GetCurrentProcessId()) {
            ids.insert(entry.th32ProcessID);
        }
    }
    CloseHandle(snapshot);
    return ids;
}

bool hasEnded(HANDLE process) {
    return WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
}

} // namespace

void ServerWatch::refresh() {
    std::erase_if(processes_, [](const auto& process) { return hasEnded(process.second.handle.get()); });
    for (const DWORD id : processesOf(serverProgram(prog_id_))) {
        if (!processes_.contains(id)) {
            if (const HANDLE handle = OpenProcess(SYNCHRONIZE | PROCESS_QUERY_INFORMATION, FALSE, id)) {
                processes_[id].handle.reset(handle);
            }
        }
    }
}

void ServerWatch::begin() {
    refresh();
    for (auto& [id, process] : processes_) {
        process.told = true;
    }
}

bool ServerWatch::anyEnded() {
    return std::erase_if(processes_, [](const auto& process) { return hasEnded(process.second.handle.get()); }) > 0;
}

bool ServerWatch::newOneReady() {
    refresh();
    bool ready = false;
    for (auto& [id, process] : processes_) {
        if (process.told) {
            continue;
        }
        // Its classes are there to be called once it waits for input.
        const DWORD start = WaitForInputIdle(process.handle.get(), 0);
        const bool over = start == 0 ? process.looks > 0 : start == WAIT_FAILED && process.looks >= looks_at_a_start;
        ++process.looks;
        if (over) {
            process.told = ready = true;
        }
    }
    return ready;
}

} // namespace murmelix::platform::win32
