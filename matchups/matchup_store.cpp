#include "matchups/matchup_store.h"

#include "app/settings.h"
#include "app/shell_state.h"
#include "common/ansi.h"
#include "common/text.h"

namespace murmelix {

KeyedCollection<std::u16string> Matchups;

namespace {

constexpr std::u16string_view separator = u"##";
constexpr std::size_t value_buffer = 255;

std::u16string matchupKeyPath() {
    return SettingsKeyPath + u"\\Matchup";
}

std::u16string characterOf(const std::u16string& item) {
    return item.substr(0, item.find(separator));
}

std::u16string shiftCodes(const std::u16string& text, unsigned char distance) {
    std::string codes = toAnsi(text);
    for (char& code : codes) {
        code = static_cast<char>(static_cast<unsigned char>(code) + distance);
    }
    return fromAnsi(codes);
}

// Loading ends at the first value that is too long, so that it would lose those behind it as well.
bool canBeLoaded(const std::u16string& name, const std::u16string& data) {
    return toAnsi(name).size() < value_buffer && toAnsi(data).size() < value_buffer;
}

} // namespace

void LoadMatchups() {
    const RegistryValueList values = ReadRegistryValueList(platform::Hive::current_user, matchupKeyPath());
    Matchups.Clear();
    for (const auto& [name, data] : values) {
        const std::u16string contact = UnscrambleMatchupName(std::u16string(trim(name)));
        if (!MatchupExists(contact)) {
            Matchups.Add(data + std::u16string(separator) + contact, contact);
        }
    }
}

bool MatchupExists(const std::u16string& contact) {
    return Matchups.contains(contact);
}

std::u16string GetMatchupCharacter(const std::u16string& contact) {
    return characterOf(Matchups.Item(contact));
}

std::u16string GetMatchupCharacterAt(std::int16_t position) {
    return characterOf(Matchups.Item(static_cast<std::size_t>(position)));
}

std::u16string GetMatchupContactAt(std::int16_t position) {
    const std::u16string& item = Matchups.Item(static_cast<std::size_t>(position));
    return item.substr(item.find(separator) + separator.size());
}

void AddMatchup(const std::u16string& contact, const std::u16string& character) {
    if (MatchupExists(contact)) {
        Matchups.Remove(contact);
    }
    Matchups.Add(character + std::u16string(separator) + contact, contact);
    if (const std::u16string name = ScrambleMatchupName(contact); canBeLoaded(name, character)) {
        WriteRegistryValue(platform::Hive::current_user, matchupKeyPath(), name, character);
    }
}

void RemoveMatchup(const std::u16string& contact) {
    if (MatchupExists(contact)) {
        Matchups.Remove(contact);
    }
    DeleteRegistryValue(platform::Hive::current_user, matchupKeyPath() + u"\\", ScrambleMatchupName(contact));
}

std::u16string ScrambleMatchupName(const std::u16string& text) {
    return shiftCodes(text, 10);
}

std::u16string UnscrambleMatchupName(const std::u16string& text) {
    return shiftCodes(text, 256 - 10);
}

RegistryValueList ReadRegistryValueList(platform::Hive hive, const std::u16string& subkey) {
    RegistryValueList values;
    const auto key = platform::RegistryKey::open(hive, toAnsi(subkey));
    if (!key) {
        return values;
    }
    for (std::uint32_t index = 0;; ++index) {
        const auto value = key->enumerate(index, value_buffer, value_buffer);
        if (!value) {
            return values;
        }
        std::string_view data = value->second;
        data.remove_suffix(data.empty() ? 0 : 1); // the terminating NUL
        values.emplace_back(fromAnsi(value->first), fromAnsi(data));
    }
}

void DeleteRegistryValue(platform::Hive hive, const std::u16string& subkey, const std::u16string& name) {
    if (const auto key = platform::RegistryKey::open(hive, toAnsi(subkey))) {
        key->remove(toAnsi(name));
    }
}

} // namespace murmelix
