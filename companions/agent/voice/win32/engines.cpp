#include "companions/agent/voice/win32/engines.h"

#include <algorithm>
#include <array>
#include <chrono>

#include <windows.h>

#include "companions/agent/voice/espeak.h"
#include "companions/agent/voice/win32/child_process.h"

namespace agent::voice {

namespace {

constexpr std::chrono::seconds time_limit{20};
// What the longest text can sound, and more.
constexpr std::size_t most_output = std::size_t{64} << 20;

// The shell of the system below Wine reports the exit code that Wine does not hand on, in as many letters behind the
// output, and ends a program that hangs; its name is looked up where that system looks.
constexpr std::wstring_view shell_command =
    L"\"\\\\?\\unix\\bin\\sh\" -c \"timeout -k 1 20 espeak-ng \\\"$@\\\" 2>/dev/null; printf %4d $?\" sh";
constexpr std::size_t exit_code_letters = 4;

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
        if (!parent.empty() && attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
            return path;
    }
    std::array<wchar_t, 1024> found{};
    const std::wstring path = environment(L"PATH");
    const DWORD length =
        SearchPathW(path.c_str(), L"espeak-ng", L".exe", static_cast<DWORD>(found.size()), found.data(), nullptr);
    return length < found.size() ? std::wstring(found.data(), length) : std::wstring();
}

std::wstring withArguments(std::wstring command, const std::vector<std::string>& arguments) {
    for (const std::string& argument : arguments)
        command += L" " + std::wstring(argument.begin(), argument.end());
    return command;
}

std::optional<std::vector<std::uint8_t>> runProgram(const std::wstring& path, const ProgramRun& run,
                                                    const std::stop_token& stop, std::string& error) {
    std::optional<ChildResult> result =
        runChild(withArguments(L"\"" + path + L"\"", run.arguments), run.input, time_limit, most_output, stop, error);
    if (!result)
        return std::nullopt;
    if (result->exit_code.value_or(0) != 0) {
        error = "espeak-ng failed";
        return std::nullopt;
    }
    return std::move(result->output);
}

std::optional<std::vector<std::uint8_t>> runBelowWine(const ProgramRun& run, const std::stop_token& stop,
                                                      std::string& error) {
    std::optional<ChildResult> result = runChild(withArguments(std::wstring(shell_command), run.arguments), run.input,
                                                 time_limit, most_output, stop, error);
    if (!result)
        return std::nullopt;
    std::vector<std::uint8_t>& output = result->output;
    const std::size_t size = output.size() - std::min(output.size(), exit_code_letters);
    if (std::string_view(reinterpret_cast<const char*>(output.data()) + size, output.size() - size) != "   0") {
        error = "espeak-ng failed";
        return std::nullopt;
    }
    output.resize(size);
    return std::move(output);
}

} // namespace

std::unique_ptr<Engine> makeEspeak() {
    std::unique_ptr<Espeak> engine;
    if (const std::wstring path = findProgram(); !path.empty())
        engine = std::make_unique<Espeak>([path](const ProgramRun& run, const std::stop_token& stop,
                                                 std::string& error) { return runProgram(path, run, stop, error); });
    else if (runsUnderWine())
        engine = std::make_unique<Espeak>(runBelowWine);
    if (engine && !engine->hasVoice())
        engine.reset();
    return engine;
}

std::unique_ptr<Engine> makeEngine() {
    std::unique_ptr<Engine> engine = makeSapi();
    return engine ? std::move(engine) : makeEspeak();
}

} // namespace agent::voice
