#include "companions/agent/settings/settings_store.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

#include "common/text.h"
#include "companions/agent/settings/languages.h"
#include "platform/user_store.h"

namespace agent::settings {

namespace {

using Lines = std::vector<std::u16string>;

const murmelix::platform::UserStore& store() {
    static const murmelix::platform::UserStore of_server(u"Software\\Murmelix AgentServer");
    return of_server;
}

const std::u16string sound_enabled = u"SoundEnabled";
const std::u16string keep_on_screen = u"KeepOnScreen";
const std::u16string size = u"Size";
const std::u16string all_silenced = u"AllSilenced";
const std::u16string silenced = u"Silenced";

bool read(const std::u16string& name) {
    return store().number(name).value_or(1) != 0;
}

void write(const std::u16string& name, bool on) {
    store().putNumber(name, on ? 1 : 0);
}

} // namespace

bool readSoundEnabled() {
    return read(sound_enabled);
}

void writeSoundEnabled(bool enabled) {
    write(sound_enabled, enabled);
}

int readNumber(const std::u16string& name, const Bounds& bounds) {
    const auto kept = store().number(name);
    return kept ? bounds.nearest(*kept) : bounds.usual;
}

void writeNumber(const std::u16string& name, int number) {
    store().putNumber(name, static_cast<std::uint32_t>(number));
}

bool readSwitch(const std::u16string& name, bool usual) {
    return store().number(name).value_or(usual ? 1 : 0) != 0;
}

void writeSwitch(const std::u16string& name, bool on) {
    write(name, on);
}

std::uint32_t readKey(const std::u16string& name) {
    return store().number(name).value_or(0);
}

void writeKey(const std::u16string& name, std::uint32_t key) {
    store().putNumber(name, key);
}

int readSize() {
    return readNumber(size, {least_size, usual_size, largest_size});
}

void writeSize(int percent) {
    writeNumber(size, percent);
}

bool readAllSilenced() {
    return store().number(all_silenced).value_or(0) != 0;
}

void writeAllSilenced(bool on) {
    write(all_silenced, on);
}

std::vector<std::u16string> readSilenced() {
    std::vector<std::u16string> characters;
    for (std::u16string& line : store().lines(silenced, most_silenced * (longest_key + 1) + 1).value_or(Lines{})) {
        if (line.size() <= longest_key && characters.size() < most_silenced &&
            std::ranges::find(characters, line) == characters.end()) {
            characters.push_back(std::move(line));
        }
    }
    return characters;
}

void writeSilenced(const std::vector<std::u16string>& characters) {
    store().putLines(silenced, characters);
}

namespace {

const std::u16string own_voice = u"Voice", own_language = u"Language", own_pitch = u"Pitch", own_speed = u"Speed";

// Nothing for what is no name of a key.
std::optional<murmelix::platform::UserStore> storeOf(std::u16string_view character) {
    if (character.empty() || character.size() > longest_key ||
        character.find_first_of(std::u16string_view(u"\\\0", 2)) != character.npos) {
        return std::nullopt;
    }
    return murmelix::platform::UserStore(u"Software\\Murmelix AgentServer\\Voices\\" + std::u16string(character));
}

} // namespace

OwnVoice readOwnVoice(std::u16string_view character) {
    OwnVoice voice;
    const auto store = storeOf(character);
    if (!store) {
        return voice;
    }
    const auto number = [&](const std::u16string& name, const Bounds& bounds) {
        const auto kept = store->number(name).value_or(0);
        return kept == static_cast<std::uint32_t>(bounds.nearest(kept)) ? static_cast<int>(kept) : 0;
    };
    if (auto lines = store->lines(own_voice, longest_voice + 2); lines && !lines->empty()) {
        voice.voice = std::move(lines->front());
    }
    const auto language = static_cast<std::uint16_t>(number(own_language, {0, 0, 0xFFFF}));
    voice.language = languageOf(language) ? language : std::uint16_t{0};
    voice.pitch = number(own_pitch, own_pitch_bounds);
    voice.speed = number(own_speed, own_speed_bounds);
    return voice;
}

void writeOwnVoice(std::u16string_view character, const OwnVoice& voice) {
    const auto store = storeOf(character);
    if (!store) {
        return;
    }
    if (voice.voice.empty()) {
        store->remove(own_voice);
    } else {
        store->putLines(own_voice, {voice.voice});
    }
    const auto put = [&](const std::u16string& name, int number) {
        if (number == 0) {
            store->remove(name);
        } else {
            store->putNumber(name, static_cast<std::uint32_t>(number));
        }
    };
    put(own_language, voice.language);
    put(own_pitch, voice.pitch);
    put(own_speed, voice.speed);
}

namespace {

const murmelix::platform::UserStore& defaultVoices() {
    static const murmelix::platform::UserStore of_server(u"Software\\Murmelix AgentServer\\DefaultVoices");
    return of_server;
}

} // namespace

std::u16string readDefaultVoice(std::uint16_t language) {
    auto lines = defaultVoices().lines(murmelix::toText(language), longest_voice + 2);
    return lines && !lines->empty() ? std::move(lines->front()) : std::u16string();
}

bool writeDefaultVoice(std::uint16_t language, const std::u16string& voice) {
    if (voice.empty()) {
        defaultVoices().remove(murmelix::toText(language));
        return true;
    }
    return defaultVoices().putLines(murmelix::toText(language), {voice});
}

bool readKeepOnScreen() {
    return read(keep_on_screen);
}

void writeKeepOnScreen(bool keep) {
    write(keep_on_screen, keep);
}

} // namespace agent::settings
