#include "companions/agent/settings/settings_store.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "platform/user_store.h"

namespace agent::settings {

namespace {

const murmelix::platform::UserStore& store() {
    static const murmelix::platform::UserStore of_server(u"Software\\Murmelix AgentServer");
    return of_server;
}

const std::u16string sound_enabled = u"SoundEnabled";
const std::u16string keep_on_screen = u"KeepOnScreen";
const std::u16string size = u"Size";

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

int readSize() {
    const auto kept = store().number(size);
    return kept ? static_cast<int>(std::clamp<std::int64_t>(*kept, least_size, largest_size)) : usual_size;
}

void writeSize(int percent) {
    store().putNumber(size, static_cast<std::uint32_t>(percent));
}

bool readKeepOnScreen() {
    return read(keep_on_screen);
}

void writeKeepOnScreen(bool keep) {
    write(keep_on_screen, keep);
}

} // namespace agent::settings
