#include "app/pages.h"

#include "platform/system.h"

namespace murmelix {

std::u16string pageAddress(const std::u16string& path) {
    return u"http://" + platform::siteHost() + path;
}

void openAddress(const std::u16string& address) {
    platform::shellExecute(u"Open", address, u"0", u"0");
}

void openPage(const std::u16string& path) {
    openAddress(pageAddress(path));
}

} // namespace murmelix
