#include "companions/updater/asking.h"

#include "common/text.h"
#include "platform/clock.h"
#include "platform/http.h"

namespace updater {

namespace platform = murmelix::platform;
using murmelix::WebAddress;

namespace {

constexpr int status_ok = 200;

bool isRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

ExitStatus statusOf(platform::HttpFailure failure) {
    switch (failure) {
    case platform::HttpFailure::no_such_host:
        return exit_no_such_host;
    case platform::HttpFailure::not_trusted:
        return exit_not_trusted;
    case platform::HttpFailure::timed_out:
        return exit_timed_out;
    case platform::HttpFailure::too_long:
    case platform::HttpFailure::not_http:
        return exit_not_as_expected;
    case platform::HttpFailure::none:
    case platform::HttpFailure::unreachable:
        break;
    }
    return exit_unreachable;
}

// Where a redirect leads: an address, or another path of the same server. What was secure stays so.
std::optional<WebAddress> redirected(const WebAddress& from, std::u16string_view location) {
    location = location.substr(0, location.find(u'#'));
    if (location.starts_with(u'/') && !location.starts_with(u"//")) {
        const std::u16string host = from.host + u":" + murmelix::toText(from.port);
        return murmelix::webAddress((from.secure ? u"https://" : u"http://") + host + std::u16string(location));
    }
    const auto to = murmelix::webAddress(location);
    return to && (to->secure || !from.secure) ? to : std::nullopt;
}

} // namespace

std::optional<WebAddress> versionAddress(const std::u16string& page) {
    if (page.find_first_of(u"?#") != murmelix::npos) {
        return {};
    }
    auto address = murmelix::webAddress(page);
    if (address) {
        address->path += address->path.ends_with(u'/') ? u"version.txt" : u"/version.txt";
    }
    return address;
}

std::variant<Published, ExitStatus> askPublished(WebAddress address, const Version& program) {
    const long long deadline = platform::milliseconds() + most_milliseconds;
    for (int redirects = 0; redirects <= most_redirects; ++redirects) {
        const long long left = deadline - platform::milliseconds();
        if (left <= 0) {
            return exit_timed_out;
        }
        const auto answer =
            platform::httpGet({address, u"Murmelix/" + versionText(program), most_bytes, static_cast<unsigned>(left)});
        if (answer.failure != platform::HttpFailure::none) {
            return statusOf(answer.failure);
        }
        if (answer.status == status_ok) {
            // A version that was cut off is another version.
            const bool whole = answer.measured || answer.content.find('\n') != std::string::npos;
            const auto published = whole ? readPublished(answer.content) : std::nullopt;
            return published ? std::variant<Published, ExitStatus>(*published) : exit_not_as_expected;
        }
        if (!isRedirect(answer.status)) {
            return exit_refused;
        }
        const auto elsewhere = redirected(address, answer.location);
        if (!elsewhere) {
            return exit_redirected;
        }
        address = *elsewhere;
    }
    return exit_redirected;
}

} // namespace updater
