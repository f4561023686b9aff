#include "companions/updater/updater.h"

#include "common/text.h"
#include "platform/message_box.h"
#include "platform/system.h"

namespace updater {

namespace platform = murmelix::platform;

namespace {

const std::u16string title = u"Murmelix Updates";

// An address is opened by the shell, which would as well start a program of that name: web addresses alone pass.
bool isWebAddress(const std::u16string& address) {
    return murmelix::find(address, u"http://", 0, murmelix::LetterCase::ignored) == 0 ||
           murmelix::find(address, u"https://", 0, murmelix::LetterCase::ignored) == 0;
}

// Of Murmelix.exe beside this program, as "1.0.0"; empty where it has none.
std::u16string installedVersion() {
    const auto version = platform::versionOf(platform::programDirectory() + u"\\Murmelix.exe");
    if (!version) {
        return {};
    }
    return murmelix::toText(version->major) + u"." + murmelix::toText(version->minor) + u"." +
           murmelix::toText(version->revision);
}

} // namespace

int run(const std::vector<std::u16string>& arguments) {
    const std::u16string address = arguments.empty() ? std::u16string() : arguments.front();
    if (!isWebAddress(address)) {
        platform::messageBox(u"The address of the download page is missing: updater.exe http://…",
                             platform::mb_critical, title);
        return exit_no_address;
    }
    const std::u16string version = installedVersion();
    const std::u16string text =
        (version.empty() ? std::u16string(u"Murmelix is installed.") : u"Murmelix " + version + u" is installed.") +
        u"\r\n\r\nNew versions are published at\r\n" + address + u"\r\n\r\nWould you like to see whether there is one?";
    if (platform::messageBox(text, platform::mb_yes_no + platform::mb_information, title) == platform::answer_yes) {
        platform::shellExecute(u"open", address, u"", u"");
    }
    return exit_closed;
}

} // namespace updater
