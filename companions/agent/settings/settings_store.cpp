#include "companions/agent/settings/settings_store.h"

#include <algorithm>
#include <cstdint>

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

int readSize() {
    return readNumber(size, {least_size, usual_size, largest_size});
}

void writeSize(int percent) {
    writeNumber(size, percent);
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

bool readKeepOnScreen() {
    return read(keep_on_screen);
}

void writeKeepOnScreen(bool keep) {
    write(keep_on_screen, keep);
}

} // namespace agent::settings
