#include "tests/unit/program/described_speech.h"

#include <algorithm>

#include "app/settings.h"
#include "common/text.h"

namespace murmelix::test {

namespace {

constexpr std::size_t none = std::u16string::npos;

std::u16string lower(std::u16string text) {
    for (char16_t& unit : text) {
        unit = toLower(unit);
    }
    return text;
}

bool standsAt(const std::u16string& text, std::size_t at, const std::u16string& wanted, bool with_case) {
    if (text.size() < at + wanted.size()) {
        return false;
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (with_case ? text[at + i] != wanted[i] : toLower(text[at + i]) != toLower(wanted[i])) {
            return false;
        }
    }
    return true;
}

std::size_t positionOf(const std::u16string& text, const std::u16string& wanted, std::size_t from, bool with_case) {
    for (std::size_t at = from; at + wanted.size() <= text.size(); ++at) {
        if (standsAt(text, at, wanted, with_case)) {
            return at;
        }
    }
    return none;
}

std::u16string replaceEvery(std::u16string text, const std::u16string& wanted, const std::u16string& replacement,
                            bool with_case) {
    std::size_t at = positionOf(text, wanted, 0, with_case);
    while (at != none) {
        text.replace(at, wanted.size(), replacement);
        at = positionOf(text, wanted, at + replacement.size(), with_case);
    }
    return text;
}

std::vector<std::u16string> split(const std::u16string& text, const std::u16string& separator) {
    std::vector<std::u16string> pieces;
    std::size_t at = 0;
    for (;;) {
        const std::size_t end = positionOf(text, separator, at, false);
        if (end == none) {
            break;
        }
        pieces.push_back(text.substr(at, end - at));
        at = end + separator.size();
    }
    pieces.push_back(text.substr(at));
    return pieces;
}

bool keepsWordApart(char16_t unit) {
    return lower(u"abcdefghijklmnopqrstuvwxyz0123456789").find(toLower(unit)) == none;
}

std::u16string prepared(std::u16string text) {
    if (AutoIgnoreChars != 0) {
        for (const char16_t unit : IgnoredChars) {
            text = replaceEvery(text, std::u16string(1, unit), u"", true);
        }
    }
    bool first = true;
    for (char16_t& unit : text) {
        const char16_t as_written = unit;
        unit = first ? toUpper(unit) : toLower(unit);
        first = std::u16string(u" \t\n\v\f\r").find(as_written) != none || as_written == u'\0';
    }
    return text;
}

} // namespace

std::u16string plainReplaceWord(std::u16string text, const std::u16string& word, const std::u16string& replacement) {
    std::size_t at = positionOf(text, word, 0, false);
    while (at != none) {
        const bool before = at == 0 || keepsWordApart(text[at - 1]);
        const bool after = at + word.size() == text.size() || keepsWordApart(text[at + word.size()]);
        if (before && after) {
            text.replace(at, word.size(), replacement);
        }
        at = positionOf(text, word, at + (before && after ? replacement.size() : word.size()), false);
    }
    while (!text.empty() && text.front() == u' ') {
        text.erase(0, 1);
    }
    while (!text.empty() && text.back() == u' ') {
        text.pop_back();
    }
    return text;
}

std::u16string plainCollapseRepeats(std::u16string text) {
    const std::vector<std::u16string> list =
        split(u"a,b,c,d,e,f,g,h,i,j,k,l,m,n,o,p,q,r,s,t,u,v,w,x,y,z,!,?,/,\\,*,&,^,%,$,#,@,:,\",;,:", u",");
    for (const std::u16string& c : list) {
        for (;;) {
            const std::size_t at = positionOf(text, c + c + c, 0, false);
            if (at == none) {
                break;
            }
            std::size_t length = 3;
            while (at + length < text.size() && toLower(text[at + length]) == toLower(c[0])) {
                ++length;
            }
            const std::u16string run(length, c[0]);
            text.replace(positionOf(text, run, 0, false), length, c);
        }
    }
    return text;
}

std::u16string plainMarkEmoticons(std::u16string text, bool mark, const std::u16string& separator) {
    const std::u16string list_1 = u"(S),(r),(y),(n),(b),(d),(x),(z),:-[,:[,(}),({),(l),(u),(m),(@),(&),(*),(~),(8),(e),"
                                  u"(f),(w),(o),(k),(g),(^),(p),(i),(c),(t),(#),(%),(?)";
    const std::u16string list_2 =
        u":-),:),:-D,:d,;-),;),:-O,:o,:-P,:p,(h),:-@,:@,:-S,:s,:$,:-$,:-(,:(,:'(,:-|,:|,(a),(6)";
    const std::u16string list_3 = u"(lol),(birthday),(boo),(run),(whistle),(haa),(ohh),(slap),(sniff),(sigh)";
    if (mark) {
        text = separator + text + separator;
    }
    const auto entries = split(list_1 + u"," + list_2 + (mark ? u"," + list_3 : u""), u",");
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::u16string replacement = mark ? separator + u"Emot+" + entries[i] + separator : u" ";
        text = replaceEvery(text, entries[i], replacement, i == 0);
    }
    return text;
}

const std::vector<std::pair<std::u16string, std::u16string>>& emoticonCommands() {
    static const std::vector<std::pair<std::u16string, std::u16string>> rows{
        {u"(lol)", u"wav laugh"},
        {u"(run)", u"wav run"},
        {u"(whistle)", u"wav whistle"},
        {u"(haa)", u"wav haa"},
        {u"(ohh)", u"wav ohhh"},
        {u"(slap)", u"wav slap"},
        {u"(sniff)", u"play sad; wav sniff"},
        {u"(sigh)", u"play sad; wav sigh"},
        {u":)", u"play pleased"},
        {u":-)", u"play pleased"},
        {u";)", u"play blink; play blink; play pleased"},
        {u";-)", u"play blink; play blink; play pleased"},
        {u":$", u"play uncertain; wav ting"},
        {u":-$", u"play uncertain; wav ting"},
        {u":-d", u"play pleased; wav evil-laugh"},
        {u":d", u"play pleased; wav evil-laugh"},
        {u":-p", u"play sad; wav yawn"},
        {u":p", u"play sad; wav yawn"},
        {u":(", u"play sad"},
        {u":-(", u"play sad"},
        {u":'(", u"play sad; wav cry"},
        {u":-|", u"play uncertain; wav chock"},
        {u":|", u"play uncertain; wav chock"},
        {u":o", u"play surprised; wav gasp"},
        {u":-o", u"play surprised; wav gasp"},
        {u":-s", u"play confused"},
        {u":s", u"play confused"},
        {u":-@", u"wav angry"},
        {u":@", u"wav angry"},
        {u"(a)", u"wav angel"},
        {u"(l)", u"play pleased; wav heart"},
        {u"(u)", u"play sad; wav broken_heart"},
        {u"({)", u"play pleased; wav boy_hug"},
        {u"(})", u"play pleased; wav girl_hug"},
        {u"(d)", u"wav drink"},
        {u"(g)", u"play alert; wav gift"},
        {u"(f)", u"wav flower"},
        {u"(w)", u"wav wilted-flower"},
        {u"(h)", u"wav yehaa"},
        {u"(boo)", u"play explain; wav boo"},
        {u"(b)", u"wav burp"},
        {u"(^)", u"wav birthday"},
        {u"(birthday)", u"wav birthday"},
        {u"(e)", u"wav email"},
        {u"(k)", u"wav kiss"},
        {u"(@)", u"wav cat"},
        {u"(&)", u"wav dog"},
        {u"(c)", u"wav coffee"},
        {u"(t)", u"wav ring"},
        {u"(p)", u"wav camera"},
        {u"(s)", u"wav snore"},
        {u"(m)", u"wav MSN"},
        {u"(o)", u"wav clock"},
        {u"(*)", u"wav star"},
        {u"(i)", u"wav light"},
        {u":-[", u"wav bat"},
        {u":[", u"wav bat"},
        {u"(8)", u"wav music-note"},
        {u"(y)", u"play congratulate"},
        {u"(n)", u"play decline"},
        {u"(6)", u"wav devil"},
        {u"(r)", u"speak rainbow"},
        {u"(~)", u"wav film_strip"},
        {u"(x)", u"speak girl"},
        {u"(z)", u"speak boy"},
        {u"(?)", u"speak age sex language?"},
        {u"(%)", u"speak chains"},
        {u"(#)", u"speak sunshine"},
    };
    return rows;
}

std::vector<AgentCall> callsOf(const std::u16string& key, const std::u16string& commands) {
    std::vector<AgentCall> all;
    for (const std::u16string& command : split(commands, u"; ")) {
        const std::size_t blank = command.find(u' ');
        const std::u16string word = command.substr(0, blank), what = command.substr(blank + 1);
        if (word == u"play") {
            all.push_back(playCall(key, what));
        } else {
            all = joined(all, word == u"wav" ? soundCalls(key, what) : speakCalls(key, prepared(what)));
        }
    }
    return all;
}

std::vector<AgentCall> plainSpeakMessage(const std::u16string& key, const std::u16string& message,
                                         const std::vector<std::u16string>& others) {
    std::u16string text = message;
    if (AutoCorrectText != 0) {
        text = replaceEvery(text, u"http://www.", u"<%VOXIL%URL%TAG%>", false);
        text = plainCollapseRepeats(text);
        text = replaceEvery(text, u"<%VOXIL%URL%TAG%>", u"http://www.", true);
    }
    text = plainReplaceWord(text, u"brb", u"be right back");
    text = plainReplaceWord(text, u"lol", u"(lol)");
    text = plainReplaceWord(text, u"ic", u"I see");

    std::vector<AgentCall> all;
    for (const std::u16string& piece : split(plainMarkEmoticons(text, true, u" .0%// "), u" .0%// ")) {
        if (piece.substr(0, 5) == u"Emot+") {
            if (PlayReadEmoticon == 0) {
                continue;
            }
            const std::u16string name = lower(piece.substr(5));
            const auto& rows = emoticonCommands();
            const auto row = std::find_if(rows.begin(), rows.end(), [&](const auto& r) { return r.first == name; });
            all = joined(all, row == rows.end() ? speakCalls(key, prepared(name)) : callsOf(key, row->second));
        } else if (!piece.empty()) {
            for (const std::u16string& other : others) {
                all = joined(all, listenCalls(other));
            }
            all = joined(all, speakCalls(key, prepared(piece)));
        }
    }
    if (positionOf(text, u"be right back", 0, false) != none) {
        all.push_back(hideCall(key));
    }
    return all;
}

} // namespace murmelix::test
