#include "app/version_text.h"

#include "common/text.h"
#include "platform/system.h"

namespace murmelix {

std::u16string versionText() {
    const auto version = platform::programVersion();
    return toText(version.major) + u"." + toText(version.minor) + u"." + toText(version.revision);
}

} // namespace murmelix
