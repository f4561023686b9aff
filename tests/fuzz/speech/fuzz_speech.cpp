// Any text as somebody's message: what becomes of it is compared with the preparation in its plainest form. The first
// bytes choose the settings, who else is on stage, what is ignored, and what happens in the middle of it.
#include <cstddef>
#include <cstdint>
#include <string>

#include "app/settings.h"
#include "app/shell_state.h"
#include "characters/character_state.h"
#include "characters/emoticons.h"
#include "characters/message_to_speech.h"
#include "common/text.h"
#include "tests/fakes/fakes.h"
#include "tests/fuzz/bytes.h"
#include "tests/fuzz/require.h"
#include "tests/unit/program/described_speech.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using namespace murmelix;
using Calls = std::vector<fakes::AgentCall>;

const std::u16string speaker = u"ann@x";
const std::vector<std::u16string> listeners{u"bob@x", u"eve@x", u"zoe@x"};

// The plain form looks at a text some hundred times.
constexpr std::size_t longest_compared = 120;

void putOnStage(const std::u16string& key) {
    const auto character = fakes::agent().add(key, u"Max");
    character->visible = true;
    LoadedCharacterKeys.Add(key, key);
    LoadedCharacters.Add(character, key);
    LastRequests.Add(nullptr, key);
}

void takeOffStage(const std::u16string& key) {
    if (LoadedCharacterKeys.contains(key)) {
        LoadedCharacterKeys.Remove(key);
        LoadedCharacters.Remove(key);
        LastRequests.Remove(key);
    }
}

void clearStage() {
    LoadedCharacterKeys.Clear();
    LoadedCharacters.Clear();
    LastRequests.Clear();
}

// Whatever happens in the middle of it.
void requireBounded(const Calls& calls, std::size_t units, std::size_t others) {
    // An emoticon has two units or more and makes nine calls at most; beside it stands a piece of text.
    const std::size_t most_pieces = units + 2;
    require(calls.size() <= most_pieces * (9 + 3 + 2 * others) + 2, "commands are in proportion to the text");
    std::size_t said = 0;
    for (const fakes::AgentCall& call : calls) {
        require(call.key == speaker || call.call != u"Speak", "nobody else speaks");
        said += call.call == u"Speak" && !call.url ? call.text->size() : 0;
        require(!call.url || (call.url->starts_with(SoundsDir + u"default\\") && call.url->ends_with(u".wav")),
                "sounds are those of the scheme");
    }
    // "brb" becomes thirteen units, "(?)" seventeen.
    require(said <= 6 * units, "so is what is said");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const std::uint8_t choice = bytes.byte(), event = bytes.byte();
    const std::size_t others = bytes.byte() % (listeners.size() + 1);
    const bool raw = (choice & 1) != 0;
    fakes::reset();
    clearStage();
    SoundsDir = u"S:\\sounds\\";
    CurrentSoundScheme = u"default";
    AutoCorrectText = (choice & 2) != 0;
    PlayReadEmoticon = (choice & 4) != 0;
    AutoIgnoreChars = (choice & 8) != 0;
    IgnoredChars = Bytes::text(bytes.take((choice & 16) != 0 ? bytes.byte() % 32 : 0), raw);
    const std::u16string text = Bytes::text(bytes.all(), raw);

    putOnStage(speaker);
    for (std::size_t i = 0; i < others; ++i) {
        putOnStage(listeners[i]);
    }
    fakes::agent().characters[speaker]->visible = (choice & 32) == 0;

    if ((choice & 64) != 0) { // one of the calls fails, or has something happen
        const auto number = static_cast<int>(event >> 2);
        if ((event & 3) == 0) {
            fakes::neighbours().fail_at = number + 1;
        }
        std::size_t calls_then = 0;
        fakes::neighbours().during = [&](std::string_view) {
            if (fakes::neighbours().calls != number + 1 || (event & 3) == 0) {
                return;
            }
            calls_then = fakes::agent().calls.size();
            takeOffStage((event & 3) == 2 && others > 0 ? listeners[0] : speaker);
            if ((event & 3) == 3) {
                putOnStage(speaker); // another one, in a new reading
            }
        };
        SpeakMessage(speaker, text);
        const Calls& calls = fakes::agent().calls;
        requireBounded(calls, text.size(), others);
        if ((event & 1) != 0 && fakes::neighbours().calls > number) {
            // The command that was under way is all that follows.
            require(calls.size() <= calls_then + 3, "a character that is gone says nothing any more");
        }
    } else {
        SpeakMessage(speaker, text);
        const Calls& calls = fakes::agent().calls;
        requireBounded(calls, text.size(), others);
        require(LoadedCharacters.Count() == others + 1 && LastRequests.Count() == others + 1, "all stay on stage");
        if (text.size() <= longest_compared) {
            Calls plain = (choice & 32) == 0 ? Calls{} : Calls{test::showCall(speaker)};
            const std::vector<std::u16string> there(listeners.begin(),
                                                    listeners.begin() + static_cast<std::ptrdiff_t>(others));
            plain = test::joined(plain, test::plainSpeakMessage(speaker, text, there));
            require(calls == plain, "it is what is described");
            require(MarkEmoticons(text, false) == test::plainMarkEmoticons(text, false, u""), "and so is a caption");
        }
    }
    require(MarkEmoticons(text, false).size() <= text.size(), "a caption does not grow");
    clearStage();
    fakes::neighbours().during = nullptr;
    return 0;
}
