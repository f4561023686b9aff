#include "companions/messenger/irc/streaming.h"

#include <algorithm>
#include <string>

#include "companions/messenger/irc/cutting.h"
#include "companions/messenger/irc/text.h"

namespace messenger_client::irc {

namespace {

constexpr std::size_t longest_emote_id = 100;

// Where each code point of the text begins, and where the last one ends.
std::vector<std::size_t> codePoints(std::u16string_view text) {
    std::vector<std::size_t> begins;
    begins.reserve(text.size() + 1);
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool second =
            at > 0 && text[at] >= 0xDC00 && text[at] < 0xE000 && text[at - 1] >= 0xD800 && text[at - 1] < 0xDC00;
        if (!second) {
            begins.push_back(at);
        }
    }
    begins.push_back(text.size());
    return begins;
}

} // namespace

Badges badgesOf(const Message& message) {
    Badges badges;
    const std::string all = message.tag("badges");
    for (std::string_view rest = all; !rest.empty();) {
        std::string_view badge = take(rest, ',');
        const std::string_view name = take(badge, '/');
        badges.broadcaster |= name == "broadcaster";
        badges.moderator |= name == "moderator" || name == "lead_moderator";
        badges.vip |= name == "vip";
        // Founders are the first subscribers.
        badges.subscriber |= name == "subscriber" || name == "founder";
    }
    badges.moderator |= message.tag("mod") == "1" || badges.broadcaster;
    badges.subscriber |= message.tag("subscriber") == "1";
    return badges;
}

std::vector<Emote> parseEmotes(std::string_view emotes, std::u16string_view text) {
    std::vector<Emote> found;
    if (emotes.empty()) {
        return found;
    }
    const std::vector<std::size_t> begins = codePoints(text);
    while (!emotes.empty()) {
        std::string_view places = take(emotes, '/');
        const std::string_view id = take(places, ':');
        while (!places.empty() && found.size() < most_emotes) {
            std::string_view place = take(places, ',');
            const auto first = wholeNumber<std::size_t>(take(place, '-')), last = wholeNumber<std::size_t>(place);
            if (first && last && *first <= *last && *last < begins.size() - 1) {
                const std::size_t begin = begins[*first], end = begins[*last + 1];
                found.push_back({plainName(id, longest_emote_id), begin, end - begin});
            }
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const Emote& a, const Emote& b) { return a.first < b.first; });
    std::size_t reached = 0;
    std::erase_if(found, [&](const Emote& emote) {
        if (emote.first < reached) {
            return true;
        }
        reached = emote.first + emote.length;
        return false;
    });
    return found;
}

} // namespace messenger_client::irc
