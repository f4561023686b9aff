#include "characters/message_to_speech.h"

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include "app/settings.h"
#include "characters/action_script.h"
#include "characters/character_state.h"
#include "characters/emoticons.h"
#include "common/text.h"

namespace murmelix {

namespace {

constexpr std::u16string_view piece_separator = u" .0%// ";
constexpr std::u16string_view emoticon_prefix = u"Emot+";
constexpr std::u16string_view link_start = u"http://www.";
constexpr std::u16string_view link_placeholder = u"<%VOXIL%URL%TAG%>";
constexpr std::u16string_view collapsed_characters = u"abcdefghijklmnopqrstuvwxyz!?/\\*&^%$#@:\";";

enum class Action { none, play, wav, speak };

struct Step {
    Action action = Action::none;
    std::u16string_view what{};
};

constexpr Step play(std::u16string_view animation) {
    return {Action::play, animation};
}

constexpr Step wav(std::u16string_view sound) {
    return {Action::wav, sound};
}

constexpr Step speak(std::u16string_view text) {
    return {Action::speak, text};
}

struct EmoticonRow {
    std::u16string_view name, other_name;
    std::array<Step, 3> steps;
};

constexpr EmoticonRow emoticon_rows[] = {
    {u"(lol)", {}, {wav(u"laugh")}},
    {u"(run)", {}, {wav(u"run")}},
    {u"(whistle)", {}, {wav(u"whistle")}},
    {u"(haa)", {}, {wav(u"haa")}},
    {u"(ohh)", {}, {wav(u"ohhh")}},
    {u"(slap)", {}, {wav(u"slap")}},
    {u"(sniff)", {}, {play(u"sad"), wav(u"sniff")}},
    {u"(sigh)", {}, {play(u"sad"), wav(u"sigh")}},
    {u":)", u":-)", {play(u"pleased")}},
    {u";)", u";-)", {play(u"blink"), play(u"blink"), play(u"pleased")}},
    {u":$", u":-$", {play(u"uncertain"), wav(u"ting")}},
    {u":-d", u":d", {play(u"pleased"), wav(u"evil-laugh")}},
    {u":-p", u":p", {play(u"sad"), wav(u"yawn")}},
    {u":(", u":-(", {play(u"sad")}},
    {u":'(", {}, {play(u"sad"), wav(u"cry")}},
    {u":-|", u":|", {play(u"uncertain"), wav(u"chock")}},
    {u":o", u":-o", {play(u"surprised"), wav(u"gasp")}},
    {u":-s", u":s", {play(u"confused")}},
    {u":-@", u":@", {wav(u"angry")}},
    {u"(a)", {}, {wav(u"angel")}},
    {u"(l)", {}, {play(u"pleased"), wav(u"heart")}},
    {u"(u)", {}, {play(u"sad"), wav(u"broken_heart")}},
    {u"({)", {}, {play(u"pleased"), wav(u"boy_hug")}},
    {u"(})", {}, {play(u"pleased"), wav(u"girl_hug")}},
    {u"(d)", {}, {wav(u"drink")}},
    {u"(g)", {}, {play(u"alert"), wav(u"gift")}},
    {u"(f)", {}, {wav(u"flower")}},
    {u"(w)", {}, {wav(u"wilted-flower")}},
    {u"(h)", {}, {wav(u"yehaa")}},
    {u"(boo)", {}, {play(u"explain"), wav(u"boo")}},
    {u"(b)", {}, {wav(u"burp")}},
    {u"(^)", u"(birthday)", {wav(u"birthday")}},
    {u"(e)", {}, {wav(u"email")}},
    {u"(k)", {}, {wav(u"kiss")}},
    {u"(@)", {}, {wav(u"cat")}},
    {u"(&)", {}, {wav(u"dog")}},
    {u"(c)", {}, {wav(u"coffee")}},
    {u"(t)", {}, {wav(u"ring")}},
    {u"(p)", {}, {wav(u"camera")}},
    {u"(s)", {}, {wav(u"snore")}},
    {u"(m)", {}, {wav(u"MSN")}},
    {u"(o)", {}, {wav(u"clock")}},
    {u"(*)", {}, {wav(u"star")}},
    {u"(i)", {}, {wav(u"light")}},
    {u":-[", u":[", {wav(u"bat")}},
    {u"(8)", {}, {wav(u"music-note")}},
    {u"(y)", {}, {play(u"congratulate")}},
    {u"(n)", {}, {play(u"decline")}},
    {u"(6)", {}, {wav(u"devil")}},
    {u"(r)", {}, {speak(u"rainbow")}},
    {u"(~)", {}, {wav(u"film_strip")}},
    {u"(x)", {}, {speak(u"girl")}},
    {u"(z)", {}, {speak(u"boy")}},
    {u"(?)", {}, {speak(u"age sex language?")}},
    {u"(%)", {}, {speak(u"chains")}},
    {u"(#)", {}, {speak(u"sunshine")}},
};

// Whose character says a message. Each call of one lets events in: another character that came meanwhile, in a new
// reading, does not go on with the old one's message.
class Speaker {
  public:
    explicit Speaker(const std::u16string& key) : key_(key), character_(loadedCharacter(key)) {}

    const std::u16string& key() const { return key_; }
    platform::AgentCharacter* character() const { return character_.get(); }
    bool isThere() const { return loadedCharacter(key_) == character_; }

    void run(const std::u16string& command, const std::u16string& text = {}, const std::u16string& animation = {},
             const std::u16string& sound = {}) const {
        if (isThere()) {
            RunCharacterCommand(key_, command, text, animation, sound);
        }
    }

  private:
    std::u16string key_;
    std::shared_ptr<platform::AgentCharacter> character_;
};

// `name` in lower case.
void actEmoticon(const Speaker& speaker, const std::u16string& name) {
    const auto row =
        std::find_if(std::begin(emoticon_rows), std::end(emoticon_rows), [&](const EmoticonRow& candidate) {
            return name == candidate.name || (!candidate.other_name.empty() && name == candidate.other_name);
        });
    if (row == std::end(emoticon_rows)) {
        speaker.run(u"speak", name);
        return;
    }
    for (const Step& step : row->steps) {
        const std::u16string what(step.what);
        switch (step.action) {
        case Action::none:
            break;
        case Action::play:
            speaker.run(u"play", {}, what);
            break;
        case Action::wav:
            speaker.run(u"wav", {}, {}, what);
            break;
        case Action::speak:
            speaker.run(u"speak", what);
            break;
        }
    }
}

void letOthersListen(const Speaker& speaker) {
    for (std::size_t i = 1; i <= LoadedCharacterKeys.Count() && speaker.isThere(); ++i) {
        const std::u16string key = LoadedCharacterKeys.Item(i);
        if (key != speaker.key()) {
            RunCharacterCommand(key, u"listen");
        }
    }
}

bool isLetterOrDigit(char16_t unit) {
    const char16_t lower = toLower(unit);
    return (lower >= u'a' && lower <= u'z') || (lower >= u'0' && lower <= u'9');
}

bool isCollapsed(char16_t lower_unit) {
    static const auto collapsed = [] {
        std::array<bool, 128> table{};
        for (const char16_t unit : collapsed_characters) {
            table[unit] = true;
        }
        return table;
    }();
    return lower_unit < collapsed.size() && collapsed[lower_unit];
}

} // namespace

void SpeakMessage(const std::u16string& key, const std::u16string& text) {
    const Speaker speaker(key);
    if (speaker.character()) {
        bool visible = true;
        platform::attempt([&] { visible = speaker.character()->Visible(); });
        if (!visible) {
            speaker.run(u"show");
        }
        if (!speaker.isThere()) {
            return;
        }
    }
    std::u16string message = text;
    if (AutoCorrectText) {
        // A link's "www" is no run to be collapsed.
        message = CollapseRepeats(replaceAll(message, link_start, link_placeholder, LetterCase::ignored));
        message = replaceAll(message, link_placeholder, link_start);
    }
    message = ReplaceWord(message, u"brb", u"be right back");
    message = ReplaceWord(message, u"lol", u"(lol)");
    message = ReplaceWord(message, u"ic", u"I see");
    SpeakMarkedMessage(message, key, true);
    if (find(message, u"be right back", 0, LetterCase::ignored) != npos) {
        speaker.run(u"hide");
    }
}

void SpeakMarkedMessage(const std::u16string& text, const std::u16string& key, bool othersListen) {
    // What stands in the text itself counts too: it is marked first and split as a whole.
    const std::u16string marked = MarkEmoticons(text, true, piece_separator);
    const std::u16string_view all = marked;
    const Speaker speaker(key);
    for (std::size_t at = 0; at <= all.size();) {
        const std::size_t end = std::min(all.find(piece_separator, at), all.size());
        const std::u16string piece(all.substr(at, end - at));
        at = end + piece_separator.size();
        if (!speaker.isThere()) {
            return;
        }
        if (piece.starts_with(emoticon_prefix)) {
            if (PlayReadEmoticon) {
                actEmoticon(speaker, toLower(std::u16string_view(piece).substr(emoticon_prefix.size())));
            }
        } else if (!piece.empty()) {
            if (othersListen) {
                letOthersListen(speaker);
            }
            speaker.run(u"speak", piece);
        }
    }
}

std::u16string ReplaceWord(std::u16string_view text, std::u16string_view word, std::u16string_view replacement) {
    std::u16string result;
    result.reserve(text.size());
    std::size_t copied = 0;
    std::size_t at = word.empty() ? npos : find(text, word, 0, LetterCase::ignored);
    while (at != npos) {
        const std::size_t end = at + word.size();
        result.append(text, copied, at - copied);
        const bool whole_word =
            (result.empty() || !isLetterOrDigit(result.back())) && (end == text.size() || !isLetterOrDigit(text[end]));
        result.append(whole_word ? replacement : text.substr(at, word.size()));
        copied = end;
        at = find(text, word, end, LetterCase::ignored);
    }
    result.append(text, copied);
    return std::u16string(trim(result));
}

std::u16string CollapseRepeats(std::u16string_view text) {
    std::u16string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const char16_t lower = toLower(text[at]);
        std::size_t end = at + 1;
        while (end < text.size() && toLower(text[end]) == lower) {
            ++end;
        }
        if (end - at >= 3 && isCollapsed(lower)) {
            result.push_back(lower);
        } else {
            result.append(text, at, end - at);
        }
        at = end;
    }
    return result;
}

} // namespace murmelix
