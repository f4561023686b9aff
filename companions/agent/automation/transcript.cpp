#include "companions/agent/automation/transcript.h"

#include <array>

#include "common/com/handles.h"
#include "common/text.h"
#include "companions/agent/stage/windows/system.h"

namespace agent::automation {
namespace {

std::string escaped(std::u16string_view text) {
    std::string result;
    for (const char unit : murmelix::toUtf8(text)) {
        switch (unit) {
        case '\t':
            result += "\\t";
            break;
        case '\r':
            result += "\\r";
            break;
        case '\n':
            result += "\\n";
            break;
        case '\\':
            result += "\\\\";
            break;
        case '\0':
            result += "\\0";
            break;
        default:
            result += unit;
        }
    }
    return result;
}

std::string_view kindName(stage::Kind kind) {
    switch (kind) {
    case stage::Kind::play:
        return "Play";
    case stage::Kind::speak:
        return "Speak";
    case stage::Kind::think:
        return "Think";
    case stage::Kind::move_to:
        return "MoveTo";
    case stage::Kind::gesture_at:
        return "GestureAt";
    case stage::Kind::show:
        return "Show";
    case stage::Kind::hide:
        return "Hide";
    case stage::Kind::wait:
        return "Wait";
    case stage::Kind::interrupt:
        return "Interrupt";
    case stage::Kind::get:
        return "Get";
    case stage::Kind::load:
        return "Load";
    }
    return "";
}

std::u16string objectOf(const stage::Request& request) {
    if (!request.url.empty()) {
        return u"file:" + request.url;
    }
    if (request.kind == stage::Kind::move_to || request.kind == stage::Kind::gesture_at) {
        return murmelix::toText(request.x) + u"," + murmelix::toText(request.y);
    }
    return request.text;
}

std::string_view outcomeOf(stage::Status status) {
    return status == stage::Status::complete ? "complete" : status == stage::Status::failed ? "failed" : "interrupted";
}

} // namespace

Transcript::Transcript(const std::u16string& path) : since_(std::chrono::steady_clock::now()) {
    if (!path.empty()) {
        file_.reset(_wfopen(murmelix::com::wide(path), L"ab"));
    }
}

void Transcript::ready() {
    if (file_) {
        write("ready", {}, {}, {}, {});
    }
}

void Transcript::call(std::u16string_view id, std::u16string_view name, const stage::Request& request) {
    if (file_) {
        write("call", id, name, kindName(request.kind), objectOf(request));
    }
}

void Transcript::start(std::u16string_view id, std::u16string_view name, const stage::Request& request) {
    if (file_) {
        write("start", id, name, kindName(request.kind), objectOf(request));
    }
}

void Transcript::end(std::u16string_view id, std::u16string_view name, const stage::Request& request) {
    if (file_) {
        write("end", id, name, kindName(request.kind), objectOf(request), outcomeOf(request.status));
    }
}

void Transcript::stop(std::u16string_view id, std::u16string_view name) {
    if (file_) {
        write("call", id, name, "Stop", {});
    }
}

void Transcript::write(std::string_view moment, std::u16string_view id, std::u16string_view name, std::string_view what,
                       const std::u16string& of, std::string_view outcome) {
    const auto since = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - since_);
    std::array<char, 64> times{};
    std::snprintf(times.data(), times.size(), "%lld.%03lld\t%llu\t", static_cast<long long>(since.count() / 1000),
                  static_cast<long long>(since.count() % 1000),
                  static_cast<unsigned long long>(stage::counterMicroseconds()));
    std::string line = times.data();
    line.append(moment).append("\t").append(escaped(id)).append("\t").append(escaped(name)).append("\t");
    line.append(what).append("\t").append(escaped(of));
    if (!outcome.empty()) {
        line.append("\t").append(outcome);
    }
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), file_.get());
    std::fflush(file_.get());
}

} // namespace agent::automation
