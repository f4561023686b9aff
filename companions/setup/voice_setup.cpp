// tv_enua.exe: sees to it that the character server has a voice. Voices of Windows come with Windows, espeak-ng by its
// own installer: this program finds them and says what is there and what to do where nothing is.
#include <exception>

#include "common/text.h"
#include "companions/setup/files.h"
#include "companions/setup/setup.h"

namespace {

using namespace setup;

const std::u16string voice_tokens = u"SOFTWARE\\Microsoft\\Speech\\Voices\\Tokens";

// Names of the SAPI 5 voices of this machine.
std::vector<std::u16string> windowsVoices() {
    std::vector<std::u16string> names;
    for (const std::u16string& token : registryKeys(HKEY_LOCAL_MACHINE, voice_tokens)) {
        const auto name = registryText(HKEY_LOCAL_MACHINE, voice_tokens + u"\\" + token, nullptr);
        names.push_back(name && !name->empty() ? *name : token);
    }
    return names;
}

std::u16string environment(const wchar_t* name) {
    std::vector<wchar_t> value(GetEnvironmentVariableW(name, nullptr, 0) + std::size_t{1});
    const DWORD length = GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size()));
    return {value.begin(), value.begin() + static_cast<std::ptrdiff_t>(length)};
}

// Full path of espeak-ng, empty where it is not installed. The last two are where a Linux that runs Wine has it.
std::u16string espeakProgram() {
    std::vector<std::u16string> places;
    for (const wchar_t* variable : {L"ProgramFiles", L"ProgramW6432", L"ProgramFiles(x86)"}) {
        const std::u16string folder = environment(variable);
        if (!folder.empty())
            places.push_back(folder + u"\\eSpeak NG\\espeak-ng.exe");
    }
    places.push_back(u"\\\\?\\unix\\usr\\bin\\espeak-ng");
    places.push_back(u"\\\\?\\unix\\usr\\local\\bin\\espeak-ng");
    for (const std::u16string& place : places) {
        if (fileExists(place))
            return place;
    }
    return {};
}

Result lookForVoice() {
    const auto voices = windowsVoices();
    if (!voices.empty()) {
        std::u16string list;
        for (const std::u16string& voice : voices)
            list += (list.empty() ? u"" : u", ") + voice;
        return {Outcome::done, u"Windows has voices: " + list + u". The characters speak with them."};
    }
    const std::u16string espeak = espeakProgram();
    if (!espeak.empty())
        return {Outcome::done, u"espeak-ng is installed (" + espeak + u"). The characters speak with its voices."};
    return {Outcome::failed, u"there is no voice on this computer: Windows has none, and espeak-ng is not installed. "
                             u"Please add a voice in the speech settings of Windows, or install espeak-ng, and run "
                             u"this setup again. Until then the characters show their words in balloons, unheard."};
}

Plan installation() {
    return {u"Voice setup",
            u"A voice for the characters is being looked for: the voices of Windows, else espeak-ng.",
            {{u"Looking for a voice", lookForVoice}},
            u"The characters have a voice."};
}

Plan removal() {
    return {u"Voice removal",
            u"This setup uses voices that are installed by others.",
            {{u"Looking for files of this setup",
              []() -> Result {
                  return {Outcome::done, u"This setup has put nothing on this computer, so nothing is removed."};
              }}},
            u"Nothing was changed."};
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    try {
        const CommandLine command_line = readCommandLine();
        if (!command_line.unknown.empty())
            return refuse(u"Voice setup", command_line);
        return carryOut(command_line.uninstall ? removal() : installation(), command_line);
    } catch (const std::exception&) {
        return exit_failed;
    }
}
