// Any values in the registry: the settings and matchups of the program, and what its neighbours keep for their users.
// The first bytes choose the account and which operation fails; what follows are values, parted by bytes 0xFF: whose it
// is, which, of which type, and its data.
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "app/settings.h"
#include "app/shell_state.h"
#include "common/ansi.h"
#include "common/text.h"
#include "companions/agent/settings/keys.h"
#include "companions/agent/settings/languages.h"
#include "companions/agent/settings/settings_store.h"
#include "companions/messenger/client/account.h"
#include "matchups/matchup_store.h"
#include "tests/fakes/fakes.h"
#include "tests/fuzz/bytes.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using namespace murmelix;
using Text = std::u16string;

struct Flag {
    const char* name;
    std::int16_t* value;
    std::int16_t usual;
};

const std::array<Flag, 11> flags{{{"AutoHideIdleChar", &AutoHideIdleChar, 0},
                                  {"AutoAttachChar", &AutoAttachChar, 1},
                                  {"AutoMinimize", &AutoMinimize, 0},
                                  {"AutoUpdate", &AutoUpdate, 1},
                                  {"AutoIgnoreChars", &AutoIgnoreChars, 1},
                                  {"AutoCorrectText", &AutoCorrectText, 1},
                                  {"AutoHideBalloon", &AutoHideBalloon, 1},
                                  {"PlayReadEmoticon", &PlayReadEmoticon, 1},
                                  {"ShowMinimizeFrm", &ShowMinimizeFrm, 1},
                                  {"ShowTipFrm", &ShowTipFrm, 1},
                                  {"ShowEmotTipFrm", &ShowEmotTipFrm, 1}}};
constexpr std::size_t settings_count = 13;

// All thirteen in memory.
struct Memory {
    std::array<std::int16_t, flags.size()> numbers{};
    Text ignored = IgnoredChars, scheme = CurrentSoundScheme;
    Memory() {
        for (std::size_t i = 0; i < flags.size(); ++i) {
            numbers[i] = *flags[i].value;
        }
    }
    bool operator==(const Memory&) const = default;
};

std::size_t writes() {
    std::size_t count = 0;
    for (const std::string& line : fakes::registry().log) {
        count += line.starts_with("set ");
    }
    return count;
}

// What stands in the registry as a text; empty where it is none.
std::string kept(const char* name) {
    const auto value = fakes::registry().value(toAnsi(SettingsKeyPath), name);
    if (value && value->type == platform::reg_binary && value->data.size() >= 2) {
        const auto low = static_cast<std::uint8_t>(value->data[0]), high = static_cast<std::uint8_t>(value->data[1]);
        return std::to_string(static_cast<std::int16_t>(static_cast<std::uint16_t>(low | high << 8)));
    }
    return value && value->type == platform::reg_sz ? value->data.substr(0, value->data.find('\0')) : std::string();
}

void checkSettings(bool all_goes_well) {
    const std::size_t keys = fakes::registry().keyCount();
    std::array<std::string, flags.size()> before;
    for (std::size_t i = 0; i < flags.size(); ++i) {
        before[i] = kept(flags[i].name);
    }
    LoadSettings();
    const Memory first;
    require(!first.ignored.empty() && !first.scheme.empty(), "what is empty is replaced");
    require(first.ignored.find(u'\0') == Text::npos && first.scheme.find(u'\0') == Text::npos,
            "a text ends at its NUL");
    const std::size_t written = writes();
    require(written <= settings_count, "each is written once at most");
    require(fakes::registry().keyCount() <= keys + 1, "below the key of the account");
    if (!all_goes_well) {
        return;
    }
    LoadSettings();
    require(Memory() == first, "what was read is read again");
    require(!SettingsKeyPath.empty() || written == 0, "nothing is kept for nobody");
    for (std::size_t i = 0; i < flags.size(); ++i) {
        if (before[i].empty()) {
            require(first.numbers[i] == flags[i].usual, "where there is nothing, it is as usual");
            require(SettingsKeyPath.empty() || kept(flags[i].name) == std::to_string(flags[i].usual), "and is kept so");
        } else {
            require(kept(flags[i].name) == before[i], "what is there stays");
            const bool small = before[i].size() < 5 && before[i].find_first_not_of("0123456789") == std::string::npos;
            require(!small || first.numbers[i] == std::stoi(before[i]), "and is what is used");
        }
    }
}

std::vector<std::pair<Text, Text>> matchups() {
    std::vector<std::pair<Text, Text>> all;
    for (std::size_t i = 1; i <= Matchups.Count(); ++i) {
        const auto at = static_cast<std::int16_t>(i);
        all.emplace_back(GetMatchupContactAt(at), GetMatchupCharacterAt(at));
    }
    return all;
}

void checkMatchups(const Text& contact, const Text& character, bool all_goes_well) {
    LoadMatchups();
    const auto loaded = matchups();
    std::set<Text> contacts;
    for (std::size_t i = 1; i <= Matchups.Count(); ++i) {
        const Text& key = Matchups.KeyAt(i);
        require(contacts.insert(key).second && MatchupExists(key), "a contact has one character");
        require(GetMatchupCharacter(key) == loaded[i - 1].second, "the one at its place");
        require(loaded[i - 1].second.find(u"##") == Text::npos, "whose name ends before the separator");
        require(UnscrambleMatchupName(ScrambleMatchupName(key)) == key, "and whose contact can be written");
    }
    if (!all_goes_well) {
        return;
    }
    LoadMatchups();
    require(matchups() == loaded, "what was read is read again");
    AddMatchup(contact, character);
    // A name that ends in "#" loses it to the separator.
    const Text item = character + u"##";
    require(MatchupExists(contact) && GetMatchupCharacter(contact) == item.substr(0, item.find(u"##")),
            "what is added is there");
    require(Matchups.Count() == loaded.size() + (contacts.contains(contact) ? 0 : 1), "once");
    LoadMatchups();
    require(Matchups.Count() + 1 >= loaded.size(), "and nobody else is lost");
    for (const auto& [other, theirs] : loaded) {
        require(other == contact || !MatchupExists(other) || GetMatchupCharacter(other) == theirs, "or changed");
    }
    RemoveMatchup(contact);
    require(!MatchupExists(contact), "what is removed is gone");
}

void checkAgent(const Text& character) {
    using namespace agent::settings;
    readSoundEnabled();
    readKeepOnScreen();
    require(readSize() >= least_size && readSize() <= largest_size, "the size has bounds");
    const Listener listener;
    require(listener.volume() >= volume_bounds.least && listener.volume() <= volume_bounds.most, "so has the volume");
    const auto silenced = readSilenced();
    require(silenced.size() <= most_silenced, "some are silenced");
    require(std::set<Text>(silenced.begin(), silenced.end()).size() == silenced.size(), "each once");
    const OwnVoice voice = readOwnVoice(character);
    require(voice.voice.size() <= longest_voice, "a voice has a name");
    require(voice.language == 0 || languageOf(voice.language), "a language is one of those that there are");
    require(voice.pitch == 0 || (voice.pitch >= own_pitch_bounds.least && voice.pitch <= own_pitch_bounds.most),
            "a pitch has bounds");
    require(voice.speed == 0 || (voice.speed >= own_speed_bounds.least && voice.speed <= own_speed_bounds.most),
            "a speed has bounds");
    writeOwnVoice(character, voice);
    require(readOwnVoice(character) == voice, "a voice is kept");
    for (const Deed& deed : deeds) {
        if (const auto key = keyOf(readKey(deed.kept_as))) {
            require(keyOf(numberOf(*key)) == key, "a key is kept");
        }
    }
}

void checkClient(const Text& conversation) {
    using namespace messenger_client;
    Accounts accounts;
    loadAccounts(accounts);
    require(accounts.all().size() <= most_accounts, "accounts are bounded");
    std::size_t automatic = 0;
    std::set<Text> names;
    for (const Account& account : accounts.all()) {
        require(!account.signin.empty(), "an account has a name");
        require(names.insert(toLower(std::u16string_view(account.signin))).second, "one of its own");
        automatic += account.automatic;
    }
    require(automatic <= 1, "one of them signs in by itself");
    storeAccounts(accounts);
    Accounts again;
    loadAccounts(again);
    require(again.lines() == accounts.lines(), "accounts are kept as they are");
    const reading::Rules rules = readingRules(conversation);
    keepReadingRules(conversation, rules);
    require(readingRules(conversation) == rules, "so is what is read");
    if (const auto server = streamingServer()) {
        require(!server->host.empty(), "a server has a name");
    }
    keepsRunning();
}

void putAway(Bytes value, const Text& character, const Text& conversation) {
    static constexpr std::array<std::string_view, 13> names{
        "AutoHideIdleChar", "AutoAttachChar",  "AutoMinimize",    "AutoUpdate",       "AutoIgnoreChars",
        "IgnoredChars",     "AutoCorrectText", "AutoHideBalloon", "PlayReadEmoticon", "CurrentSoundScheme",
        "ShowMinimizeFrm",  "ShowTipFrm",      "ShowEmotTipFrm"};
    static const Text agent = u"Software\\Murmelix AgentServer\\", client = u"Software\\MessengerClient\\";
    const std::array<Text, 20> stored{agent + u"SoundEnabled",
                                      agent + u"KeepOnScreen",
                                      agent + u"Size",
                                      agent + u"AllSilenced",
                                      agent + u"Silenced",
                                      agent + u"Volume",
                                      agent + u"Speed",
                                      agent + u"LongestRequest",
                                      agent + u"MostWaiting",
                                      agent + agent::settings::deeds[0].kept_as,
                                      agent + agent::settings::deeds[1].kept_as,
                                      agent + u"Voices\\" + character + u"\\Voice",
                                      agent + u"Voices\\" + character + u"\\Language",
                                      agent + u"Voices\\" + character + u"\\Pitch",
                                      agent + u"Voices\\" + character + u"\\Speed",
                                      client + u"Accounts",
                                      client + u"SigninName",
                                      client + u"KeepRunning",
                                      client + u"StreamingServer",
                                      client + u"Reading\\" + conversation};
    const std::uint8_t whose = value.byte(), which = value.byte(), type = value.byte();
    if (whose % 3 == 0) {
        fakes::registry().put(toAnsi(SettingsKeyPath), std::string(names[which % names.size()]), type % 8,
                              std::string(value.all()));
    } else if (whose % 3 == 1) {
        if (SettingsKeyPath.empty()) {
            return; // nobody's matchups have no place
        }
        const std::string name(value.take(which));
        fakes::registry().put(toAnsi(SettingsKeyPath) + "\\Matchup", name, type % 8, std::string(value.all()));
    } else {
        auto& place = fakes::userStores().values[stored[which % stored.size()]];
        if (type % 3 == 0) {
            place = value.number();
        } else if (type % 3 == 1) {
            place = Bytes::text(value.all(), false);
        } else {
            std::vector<Text> lines;
            while (!value.empty()) {
                if (Text line = Bytes::text(value.until('\n'), false); !line.empty()) {
                    lines.push_back(line.substr(0, line.find(u'\0')));
                }
            }
            std::erase(lines, Text());
            place = std::move(lines);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const std::uint8_t choice = bytes.byte();
    const int fails = bytes.byte();
    const Text account = Bytes::text(bytes.until('\xFF'), false);
    const Text contact = Bytes::text(bytes.until('\xFF'), false), character = Bytes::text(bytes.until('\xFF'), false);
    fakes::reset();
    if ((choice & 1) != 0) {
        fakes::useCodePage(fakes::windows1251());
    }
    // As of somebody who is signed in: it holds no NUL, which no registry path has.
    SettingsKeyPath = (choice & 2) != 0 ? Text() : u"Software\\Murmelix\\" + account.substr(0, account.find(u'\0'));
    while (!bytes.empty()) {
        const std::string_view value = bytes.until('\xFF');
        putAway(Bytes(reinterpret_cast<const std::uint8_t*>(value.data()), value.size()), character, contact);
    }
    const bool all_goes_well = (choice & 4) == 0;
    fakes::registry().fail_at = all_goes_well ? 0 : 1 + fails;
    fakes::registry().unwritable = (choice & 12) == 12;
    checkSettings(all_goes_well);
    checkMatchups(contact, character, all_goes_well);
    checkAgent(character);
    checkClient(contact);
    return 0;
}
