// MSAGENT.exe: sets up the character server and the bundled characters, which lie in the folder "msagent" beside it.
#include <exception>

#include "common/com/handles.h"
#include "common/text.h"
#include "companions/setup/files.h"
#include "companions/setup/setup.h"

namespace {

using namespace setup;
using murmelix::LetterCase;
using murmelix::sameText;

constexpr DWORD registration_ms = 30000;
const std::u16string server_name = u"AgentServer.exe";

// The program of a server's command line, which may be quoted and followed by switches.
std::u16string programOf(const std::u16string& command) {
    if (!command.empty() && command.front() == u'"') {
        return command.substr(1, command.find(u'"', 1) - 1);
    }
    const std::size_t end = murmelix::find(command, u".exe", 0, LetterCase::ignored);
    return end == murmelix::npos ? command : command.substr(0, end + 4);
}

// The program or library that serves Agent on this machine; empty where there is none.
std::u16string registeredAgent() {
    for (const char16_t* prog_id : {u"Agent.Control.2", u"Agent.Control"}) {
        const auto clsid = registryText(HKEY_CLASSES_ROOT, std::u16string(prog_id) + u"\\CLSID", nullptr);
        if (!clsid) {
            continue;
        }
        for (const REGSAM view : {KEY_WOW64_64KEY, KEY_WOW64_32KEY}) {
            for (const char16_t* kind : {u"\\LocalServer32", u"\\InprocServer32"}) {
                const auto command =
                    registryText(HKEY_CLASSES_ROOT, u"CLSID\\" + *clsid + kind, nullptr, static_cast<REGSAM>(view));
                if (command && !command->empty()) {
                    return programOf(*command);
                }
            }
        }
    }
    return {};
}

bool isOurs(const std::u16string& program) {
    return sameText(fileName(program), server_name, LetterCase::ignored);
}

struct Places {
    std::u16string source = programDirectory() + u"\\msagent";
    std::u16string target = windowsDirectory() + u"\\msagent";
};

Result callServer(const std::u16string& program, const std::u16string& argument, const std::u16string& done,
                  const std::u16string& failed) {
    const auto status = runAndWait(program, argument, registration_ms);
    if (!status) {
        return {Outcome::failed, failed + u": " + program + u": " + errorText(GetLastError())};
    }
    if (*status != 0) {
        return {Outcome::failed, failed + u": " + program + u" " + argument + u" ended with status " +
                                     murmelix::toText(static_cast<long long>(*status)) + u"."};
    }
    return {Outcome::done, done};
}

Plan installation(const Places& places) {
    Plan plan;
    plan.title = u"Character server setup";
    plan.introduction = u"The character server and its characters are being set up in " + places.target + u".";
    plan.success = u"The character server is ready.";

    const std::u16string server = places.target + u"\\" + server_name;
    const std::u16string present = registeredAgent();
    if (!present.empty() && !isOurs(present)) {
        plan.success = u"The characters are ready.";
        plan.steps.push_back({u"Looking for an Agent that is installed", [present]() -> Result {
                                  return {Outcome::kept, u"an Agent is installed on this computer already (" + present +
                                                             u"). Nothing of it is changed."};
                              }});
    } else {
        plan.steps.push_back({u"Installing " + server, [places, server] {
                                  return installFile(places.source + u"\\" + server_name, server, Existing::replaced);
                              }});
        plan.steps.push_back({u"Registering the character server", [server] {
                                  return callServer(server, u"/regserver", u"The character server is registered.",
                                                    u"The character server cannot be registered");
                              }});
    }
    const auto characters = filesIn(places.source + u"\\chars", u"*.acs");
    for (const std::u16string& name : characters) {
        plan.steps.push_back({u"Installing the character " + name, [places, name] {
                                  return installFile(places.source + u"\\chars\\" + name,
                                                     places.target + u"\\chars\\" + name, Existing::kept);
                              }});
    }
    if (characters.empty()) {
        plan.steps.push_back({u"Looking for characters", [places]() -> Result {
                                  return {Outcome::failed, u"there are no character files in " + places.source +
                                                               u"\\chars. Please get a complete copy of this setup."};
                              }});
    }
    return plan;
}

Plan removal(const Places& places) {
    Plan plan;
    plan.title = u"Character server removal";
    plan.introduction = u"The character server and its characters are being removed from " + places.target + u".";
    plan.success = u"The character server is removed.";

    const std::u16string server = places.target + u"\\" + server_name;
    if (fileExists(server)) {
        plan.steps.push_back({u"Unregistering the character server", [server] {
                                  return callServer(server, u"/unregserver",
                                                    u"The character server is no longer registered.",
                                                    u"The registration cannot be removed");
                              }});
    }
    plan.steps.push_back(
        {u"Removing " + server, [places, server] { return removeFile(server, places.source + u"\\" + server_name); }});
    for (const std::u16string& name : filesIn(places.source + u"\\chars", u"*.acs")) {
        plan.steps.push_back({u"Removing the character " + name, [places, name] {
                                  return removeFile(places.target + u"\\chars\\" + name,
                                                    places.source + u"\\chars\\" + name);
                              }});
    }
    return plan;
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    try {
        const CommandLine command_line = readCommandLine();
        if (!command_line.unknown.empty()) {
            return refuse(u"Character server setup", command_line);
        }
        const Places places;
        return carryOut(command_line.uninstall ? removal(places) : installation(places), command_line);
    } catch (const std::exception&) {
        return exit_failed;
    }
}
