#include <istream>
#include <memory>
#include <ostream>

#include "app/shell_state.h"
#include "messenger/msn_control.h"
#include "tests/fakes/fakes.h"
#include "tools/trace/json.h"
#include "tools/trace/trace.h"

namespace murmelix::trace {

namespace {

constexpr std::int32_t window_handle = 1;

MonitorHost unattendedHost() {
    MonitorHost host;
    host.addConversation = [](const std::u16string&, const std::u16string&, const std::u16string&, bool) {};
    host.editConversationText = [](const std::u16string&, const std::u16string&) {};
    host.enableStartConvButt = [](bool) {};
    host.enableReadMoniter = [](bool) {};
    return host;
}

// The conversation of the first line, being read from its end on.
class Reading {
  public:
    explicit Reading(const Json& start) : monitor_(unattendedHost()) {
        const Json& me = start[u"me"];
        fakes::messenger().signin_name = me[u"signin"].text();
        fakes::messenger().friendly_name = me[u"friendly"].text();
        for (const Json& contact : start[u"contacts"].array()) {
            window_->contacts.push_back(
                std::make_shared<fakes::Contact>(contact[u"signin"].text(), contact[u"friendly"].text()));
        }
        window_->history = start[u"history"].text();
        monitor_.MSNAPI_OnIMWindowCreated(window_);
        IsReadingConversation = 1;
        ReadingWindowHandle = window_handle;
        monitor_.StartAtEndOf(*window_);
    }

    void append(const std::u16string& text) { window_->history += text; }

    void tick(std::ostream& out) {
        const auto captured = monitor_.CaptureNewText();
        out << "{\"position\":" << monitor_.LastReadPosition << ",\"user\":" << quoted(monitor_.currentUser)
            << ",\"speak\":";
        if (captured) {
            out << "{\"key\":" << quoted(captured->key) << ",\"text\":" << quoted(captured->text) << "}}" << std::endl;
        } else {
            out << "null}" << std::endl;
        }
    }

  private:
    std::shared_ptr<fakes::Window> window_ = std::make_shared<fakes::Window>(window_handle);
    MSNControl monitor_;
};

void step(Reading& reading, const Json& line, std::ostream& out) {
    if (line.has(u"append")) {
        reading.append(line[u"append"].text());
    } else if (!line.has(u"ticks")) {
        throw JsonError("neither \"append\" nor \"ticks\"");
    } else {
        const std::int32_t ticks = line[u"ticks"].count();
        for (std::int32_t i = 0; i < ticks; ++i) {
            reading.tick(out);
        }
    }
}

} // namespace

int traceCapture(std::istream& in, std::ostream& out, std::ostream& err) {
    fakes::reset();
    std::unique_ptr<Reading> reading;
    std::size_t number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        if (line.find_first_not_of(" \t\r") == std::string::npos) {
            continue;
        }
        try {
            const Json json = parseJson(line);
            if (reading) {
                step(*reading, json, out);
            } else {
                reading = std::make_unique<Reading>(json);
            }
        } catch (const JsonError& error) {
            err << "trace capture: line " << number << ": " << error.what() << std::endl;
            return 1;
        }
    }
    return 0;
}

} // namespace murmelix::trace
