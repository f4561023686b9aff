#include "companions/agent/automation/local_file.h"

#include <string>

#include "common/com/error.h"
#include "companions/agent/stage/file_address.h"
#include "companions/agent/stage/windows/system.h"

namespace agent::automation {
namespace {

bool isSlash(char16_t unit) {
    return unit == u'\\' || unit == u'/';
}

bool hasDrive(std::u16string_view path) {
    return path.size() > 1 && path[1] == u':';
}

char16_t lower(char16_t letter) {
    return static_cast<char16_t>(letter | 0x20);
}

bool isOnADrive(std::u16string_view path) {
    return !(path.size() > 1 && isSlash(path[0]) && isSlash(path[1]));
}

} // namespace

std::u16string localPath(std::u16string_view named) {
    const std::optional<std::u16string> path = stage::pathOf(named);
    if (!path || path->empty() != named.empty()) {
        throw murmelix::com::Error(E_INVALIDARG, u"\"" + std::u16string(named) + u"\" is no address of a file.");
    }
    const std::u16string own = stage::windowsDirectory();
    const bool own_drive = !hasDrive(*path) || (hasDrive(own) && lower((*path)[0]) == lower(own[0]));
    if (!isOnADrive(*path) || (!own_drive && stage::isRemoteDrive((*path)[0]))) {
        throw murmelix::com::Error(E_INVALIDARG, u"\"" + std::u16string(named) +
                                                     u"\" is not on this machine. Copy the file to a drive of it.");
    }
    return *path;
}

} // namespace agent::automation
