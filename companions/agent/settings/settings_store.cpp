#include "companions/agent/settings/settings_store.h"

#include "platform/user_store.h"

namespace agent::settings {

namespace {

const murmelix::platform::UserStore& store() {
    static const murmelix::platform::UserStore of_server(u"Software\\Murmelix AgentServer");
    return of_server;
}

} // namespace

bool readSoundEnabled() {
    return store().number(u"SoundEnabled").value_or(1) != 0;
}

void writeSoundEnabled(bool enabled) {
    store().putNumber(u"SoundEnabled", enabled ? 1 : 0);
}

} // namespace agent::settings
