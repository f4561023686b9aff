// AgentServer.exe [/regserver | /unregserver | /restart] [/record FILE.wav] [/transcript FILE.txt] [/speed X] [/tray]
// /record keeps all that sounds, placed on the stage clock: with /speed 10 the characters act ten times as fast, and
// the recording, at the natural rate, is as long as their performance would have been. COM starts it with -Embedding;
// it then ends a few seconds after its last client.
#include <cmath>
#include <optional>
#include <vector>

#include "common/com/server.h"
#include "common/text.h"
#include "companions/agent/automation/reception.h"
#include "companions/agent/automation/server.h"
#include "companions/agent/stage/windows/message_window.h"
#include "companions/agent/stage/windows/system.h"
#include "ui/program.h"

namespace {

using agent::automation::Options;
using agent::automation::serverClass;

std::u16string quoted(const std::u16string& path) {
    std::u16string result(1, u'"');
    result.append(path).push_back(u'"');
    return result;
}

struct CommandLine {
    enum class Deed { serve, register_server, unregister_server, restart } deed = Deed::serve;
    Options options;
};

// Nothing for a command line that is not understood.
std::optional<CommandLine> parsed(const std::vector<std::u16string>& words) {
    CommandLine line;
    const auto is = [](const std::u16string& word, const char16_t* name) {
        return (word.starts_with(u'/') || word.starts_with(u'-')) &&
               murmelix::sameText(std::u16string_view(word).substr(1), name, murmelix::LetterCase::ignored);
    };
    bool embedded = false;
    bool tray = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool has_value = i + 1 < words.size();
        if (is(words[i], u"regserver")) {
            line.deed = CommandLine::Deed::register_server;
        } else if (is(words[i], u"unregserver")) {
            line.deed = CommandLine::Deed::unregister_server;
        } else if (is(words[i], u"restart")) {
            line.deed = CommandLine::Deed::restart;
        } else if (is(words[i], u"Embedding")) {
            embedded = true;
        } else if (is(words[i], u"tray")) {
            tray = true;
        } else if (is(words[i], u"record") && has_value) {
            line.options.recording = words[++i];
        } else if (is(words[i], u"transcript") && has_value) {
            line.options.transcript = words[++i];
        } else if (is(words[i], u"speed") && has_value) {
            line.options.speed = murmelix::leadingNumber(words[++i]);
            if (!(line.options.speed >= 0.01 && line.options.speed <= 1000)) {
                return std::nullopt;
            }
        } else {
            return std::nullopt;
        }
    }
    line.options.stay = tray || !embedded;
    return line;
}

int serve(const Options& options) {
    const auto serve_once = [&options] {
        const murmelix::com::Apartment apartment;
        murmelix::com::check(apartment.result());
        agent::automation::Server server(options);
        const agent::automation::Reception reception(server);
        return server.run();
    };
    // The next one begins when nothing of this one can be found any more.
    return !serve_once() || agent::stage::startAgain() ? 0 : 1;
}

int registration(murmelix::com::Registration result) {
    switch (result) {
    case murmelix::com::Registration::done:
        return 0;
    case murmelix::com::Registration::owned_by_another:
        return 2;
    default:
        return 3;
    }
}

} // namespace

// Exit status: 0; 1 for a wrong command line, a server that could not start, and where /restart finds no server; from
// /regserver 2 where another server is registered; from /regserver and /unregserver 3 where the registry refuses.
int murmelix::ui::runProgram(const std::vector<std::u16string>& arguments) {
    try {
        const auto line = parsed(arguments);
        if (!line) {
            return 1;
        }
        switch (line->deed) {
        case CommandLine::Deed::register_server:
            return registration(murmelix::com::registerServer(serverClass(), quoted(programPath())));
        case CommandLine::Deed::restart:
            return agent::stage::MessageWindow::askForRestart() ? 0 : 1;
        case CommandLine::Deed::unregister_server:
            return registration(murmelix::com::unregisterServer(serverClass()));
        default:
            return serve(line->options);
        }
    } catch (...) {
        return 1;
    }
}
