#include "companions/setup/agent_plan.h"

#include <algorithm>
#include <iterator>

#include "common/text.h"
#include "companions/setup/install.h"
#include "platform/automation_server.h"
#include "platform/child.h"
#include "platform/files.h"
#include "platform/system.h"

namespace setup {

namespace platform = murmelix::platform;
using murmelix::LetterCase;
using murmelix::sameText;

namespace {

// Milliseconds: it writes a few keys.
constexpr unsigned registration_time = 30000;
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
        const std::u16string command = platform::registeredServer(prog_id);
        if (!command.empty()) {
            return programOf(command);
        }
    }
    return {};
}

bool isOurs(const std::u16string& program) {
    return sameText(std::u16string_view(program).substr(program.rfind(u'\\') + 1), server_name, LetterCase::ignored);
}

struct Places {
    std::u16string source = platform::programDirectory() + u"\\msagent";
    std::u16string before = platform::programDirectory() + u"\\msagent.before";
    std::u16string target = platform::windowsDirectory() + u"\\msagent";
};

const std::u16string chars = u"\\chars\\";

std::vector<std::u16string> charactersIn(const std::u16string& folder) {
    return platform::filesIn(folder + u"\\chars", u".acs");
}

Step removal(const Places& places, const std::u16string& name) {
    return {u"Removing the character " + name, [places, name] {
                return removeFile(places.target + chars + name,
                                  {places.source + chars + name, places.before + chars + name});
            }};
}

Result callServer(const std::u16string& program, const std::u16string& argument, const std::u16string& done,
                  const std::u16string& failed) {
    const platform::ProgramEnd end = platform::runAndWait(program, argument, registration_time);
    if (!end.status) {
        return {Outcome::failed, failed + u": " + program + u": " + end.error};
    }
    if (*end.status != 0) {
        return {Outcome::failed, failed + u": " + program + u" " + argument + u" ended with status " +
                                     murmelix::toText(static_cast<long long>(*end.status)) + u"."};
    }
    return {Outcome::done, done};
}

} // namespace

Plan agentInstallation() {
    const Places places;
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
    const auto characters = charactersIn(places.source), earlier = charactersIn(places.before);
    for (const std::u16string& name : characters) {
        plan.steps.push_back({u"Installing the character " + name, [places, name] {
                                  return installFile(places.source + chars + name, places.target + chars + name,
                                                     Existing::kept, places.before + chars + name);
                              }});
    }
    std::vector<std::u16string> gone;
    std::ranges::set_difference(earlier, characters, std::back_inserter(gone));
    for (const std::u16string& name : gone) {
        plan.steps.push_back(removal(places, name));
    }
    if (characters.empty()) {
        plan.steps.push_back({u"Looking for characters", [places]() -> Result {
                                  return {Outcome::failed, u"there are no character files in " + places.source +
                                                               u"\\chars. Please get a complete copy of this setup."};
                              }});
    }
    return plan;
}

Plan agentRemoval() {
    const Places places;
    Plan plan;
    plan.title = u"Character server removal";
    plan.introduction = u"The character server and its characters are being removed from " + places.target + u".";
    plan.success = u"The character server is removed.";

    const std::u16string server = places.target + u"\\" + server_name;
    if (platform::fileExists(server)) {
        plan.steps.push_back({u"Unregistering the character server", [server] {
                                  return callServer(server, u"/unregserver",
                                                    u"The character server is no longer registered.",
                                                    u"The registration cannot be removed");
                              }});
    }
    plan.steps.push_back(
        {u"Removing " + server, [places, server] {
             return removeFile(server, {places.source + u"\\" + server_name, places.before + u"\\" + server_name});
         }});
    const auto characters = charactersIn(places.source), earlier = charactersIn(places.before);
    std::vector<std::u16string> names;
    std::ranges::set_union(characters, earlier, std::back_inserter(names));
    for (const std::u16string& name : names) {
        plan.steps.push_back(removal(places, name));
    }
    for (const std::u16string& folder : {places.target + u"\\chars", places.target}) {
        plan.steps.push_back({u"Removing " + folder, [folder] { return removeFolder(folder); }});
    }
    return plan;
}

} // namespace setup
