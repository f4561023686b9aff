#include "companions/updater/updater.h"

#include "companions/updater/asking.h"
#include "companions/updater/last_asking.h"
#include "platform/clock.h"
#include "platform/message_box.h"
#include "platform/system.h"

namespace updater {

namespace platform = murmelix::platform;

namespace {

const std::u16string title = u"Murmelix Updates";

void offer(const Version& installed, const Published& published, const std::u16string& page) {
    std::u16string text = u"Murmelix " + versionText(published.version) + u" has been published. Version " +
                          versionText(installed) + u" is installed.\r\n\r\n";
    if (!published.news.empty()) {
        text += u"What is new:\r\n" + published.news + u"\r\n\r\n";
    }
    text += u"Would you like to open the download page?\r\n" + page;
    if (platform::messageBox(text, platform::mb_yes_no + platform::mb_information, title) == platform::answer_yes) {
        platform::shellExecute(u"open", page, u"", u"");
    }
}

} // namespace

int run(const std::vector<std::u16string>& arguments) {
    const std::u16string page = arguments.empty() ? std::u16string() : arguments.front();
    const auto address = versionAddress(page);
    if (!address) {
        platform::messageBox(u"This program is started with the address of the download page: updater.exe http://…",
                             platform::mb_critical, title);
        return exit_no_address;
    }
    const auto installed = platform::versionOf(platform::programDirectory() + u"\\Murmelix.exe");
    if (!installed) {
        return exit_no_program;
    }
    const long long now = platform::secondsSince1970();
    if (askedLately(now)) {
        return exit_asked_lately;
    }
    // Before it asks: where the asking ends this program, it does so once a day.
    if (!noteAsking(now)) {
        return exit_not_noted;
    }
    const auto answer = askPublished(*address, *installed);
    if (const auto* why_not = std::get_if<ExitStatus>(&answer)) {
        return *why_not;
    }
    const auto& published = std::get<Published>(answer);
    if (published.version <= *installed) {
        return exit_none_newer;
    }
    offer(*installed, published, page);
    return exit_offered;
}

} // namespace updater
