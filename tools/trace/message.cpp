#include <charconv>
#include <istream>
#include <ostream>

#include "app/settings.h"
#include "app/shell_state.h"
#include "characters/character_state.h"
#include "characters/message_to_speech.h"
#include "common/text.h"
#include "tests/fakes/fakes.h"
#include "tools/trace/json.h"
#include "tools/trace/trace.h"

namespace murmelix::trace {

namespace {

constexpr const char16_t* writer_key = u"a@x";
constexpr const char16_t* listener_key = u"b@x";

// Nothing unless exactly four hexadecimal digits stand at the position.
std::optional<char16_t> hexUnit(std::u16string_view text, std::size_t at) {
    if (text.size() < at + 4) {
        return std::nullopt;
    }
    const std::string digits = toUtf8(text.substr(at, 4));
    std::uint16_t unit = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
    if (error != std::errc{} || end != digits.data() + 4) {
        return std::nullopt;
    }
    return unit;
}

// \r, \n, \\ and \uXXXX; any other backslash stands for itself.
std::u16string unescaped(std::u16string_view text) {
    std::u16string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char16_t letter = text[at] == u'\\' && at + 1 < text.size() ? text[at + 1] : u'\0';
        const auto unit = letter == u'u' ? hexUnit(text, at + 2) : std::nullopt;
        if (letter == u'r' || letter == u'n' || letter == u'\\') {
            result.push_back(letter == u'r' ? u'\r' : letter == u'n' ? u'\n' : u'\\');
            ++at;
        } else if (unit) {
            result.push_back(*unit);
            at += 5;
        } else {
            result.push_back(text[at]);
        }
    }
    return result;
}

void putOnStage(const std::u16string& key) {
    const auto character = fakes::agent().add(key, key);
    character->visible = true;
    LoadedCharacterKeys.Add(key, key);
    LoadedCharacters.Add(character, key);
    LastRequests.Add(nullptr, key);
}

std::string shown(const fakes::AgentCall& call) {
    std::string json = "{\"key\":" + quoted(call.key) + ",\"call\":" + quoted(call.call);
    if (call.text) {
        json += ",\"text\":" + quoted(*call.text);
    }
    if (call.url) {
        json += ",\"url\":" + quoted(*call.url);
    }
    if (call.animation) {
        json += ",\"animation\":" + quoted(*call.animation);
    }
    return json + "}";
}

} // namespace

void traceMessages(const MessageOptions& options, std::istream& in, std::ostream& out) {
    fakes::reset();
    SettingsKeyPath.clear();
    LoadSettings();
    AutoCorrectText = options.correct;
    PlayReadEmoticon = options.emoticons;
    AutoIgnoreChars = options.ignore;
    IgnoredChars = options.ignored;
    SoundsDir = u"S:\\sounds\\";

    for (std::string line; std::getline(in, line);) {
        fakes::agent() = {};
        LoadedCharacterKeys.Clear();
        LoadedCharacters.Clear();
        LastRequests.Clear();
        putOnStage(writer_key);
        putOnStage(listener_key);
        SpeakMessage(writer_key, unescaped(fromUtf8(line)));

        out << '[';
        const char* comma = "";
        for (const fakes::AgentCall& call : fakes::agent().calls) {
            out << comma << shown(call);
            comma = ",";
        }
        out << ']' << std::endl;
    }
}

} // namespace murmelix::trace
