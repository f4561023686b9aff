#include "companions/agent/voice/win32/engines.h"

#include <array>
#include <chrono>

#include <windows.h>

#include "companions/agent/voice/engine_choice.h"
#include "companions/agent/voice/espeak.h"
#include "companions/agent/voice/win32/child_process.h"
#include "companions/agent/voice/win32/lasting_shell.h"

namespace agent::voice {

namespace {

constexpr std::chrono::seconds engine_time_limit{22}; // more than the program's own below Wine
// What the longest text can sound, and more.
constexpr std::size_t most_output = std::size_t{60} << 20;

// Below Wine the sound is written behind the text, which espeak-ng reads to its end first. One that hangs or writes
// beyond all measure (in blocks of 1024 bytes) ends.
constexpr std::wstring_view below_wine =
    L"(ulimit -f 65536; exec timeout -k 1 20 espeak-ng $arguments >&0 2>/dev/null 3>&-)";

bool runsUnderWine() {
    const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
    return ntdll != nullptr && GetProcAddress(ntdll, "wine_get_version") != nullptr;
}

std::wstring environment(const wchar_t* name) {
    std::wstring value(GetEnvironmentVariableW(name, nullptr, 0), L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}

// Full path of espeak-ng.exe, as its installer places it or on the path; empty without one. The current directory is
// not looked at.
std::wstring findProgram() {
    for (const wchar_t* folder : {L"ProgramFiles", L"ProgramW6432", L"ProgramFiles(x86)"}) {
        const std::wstring parent = environment(folder);
        const std::wstring path = parent + L"\\eSpeak NG\\espeak-ng.exe";
        const DWORD attributes = GetFileAttributesW(path.c_str());
        if (!parent.empty() && attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            return path;
        }
    }
    std::array<wchar_t, 1024> found{};
    const std::wstring path = environment(L"PATH");
    const DWORD length =
        SearchPathW(path.c_str(), L"espeak-ng", L".exe", static_cast<DWORD>(found.size()), found.data(), nullptr);
    return length < found.size() ? std::wstring(found.data(), length) : std::wstring();
}

std::wstring withArguments(std::wstring command, const std::vector<std::string>& arguments) {
    for (const std::string& argument : arguments) {
        command += L" " + std::wstring(argument.begin(), argument.end());
    }
    return command;
}

std::optional<std::vector<std::uint8_t>> written(std::optional<ChildResult> result, std::string& error) {
    if (result && result->exit_code != 0) {
        error = "espeak-ng failed with the exit code " + std::to_string(result->exit_code);
        return std::nullopt;
    }
    return result ? std::optional(std::move(result->output)) : std::nullopt;
}

RunProgram runnerOf(const std::wstring& path) {
    return [command = L"\"" + path + L"\""](const ProgramRun& run, const std::stop_token& stop, std::string& error) {
        return written(
            runChild(withArguments(command, run.arguments), run.input, engine_time_limit, most_output, stop, error),
            error);
    };
}

RunProgram runnerBelowWine() {
    return [shell = std::make_shared<LastingShell>(std::wstring(below_wine))](
               const ProgramRun& run, const std::stop_token& stop, std::string& error) {
        return written(shell->run(run.arguments, run.input, engine_time_limit, most_output, stop, error), error);
    };
}

} // namespace

std::unique_ptr<Engine> makeEspeak() {
    std::unique_ptr<Espeak> engine;
    if (const std::wstring path = findProgram(); !path.empty()) {
        engine = std::make_unique<Espeak>(runnerOf(path));
    } else if (runsUnderWine()) {
        engine = std::make_unique<Espeak>(runnerBelowWine());
    }
    if (engine && !engine->hasVoice()) {
        engine.reset();
    }
    return engine;
}

std::unique_ptr<Engine> makeEngine() {
    std::vector<std::unique_ptr<Engine>> engines;
    for (std::unique_ptr<Engine> (*make)() : {makeSapi, makeEspeak}) {
        if (std::unique_ptr<Engine> engine = make()) {
            engines.push_back(std::move(engine));
        }
    }
    return engines.empty() ? nullptr : std::make_unique<EngineChoice>(std::move(engines));
}

} // namespace agent::voice
