#include "companions/messenger/chat/event_log.h"

#include <array>
#include <cstdio>

#include "common/text.h"
#include "companions/messenger/chat/escapes.h"

namespace messenger_client {

namespace {

std::u16string hexadecimal(long code) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%08X", static_cast<unsigned>(code));
    return murmelix::fromUtf8(text.data());
}

} // namespace

bool EventLog::open(const std::filesystem::path& file) {
    file_.open(file, std::ios::binary | std::ios::trunc);
    start_ = clock_();
    return file_.is_open();
}

void EventLog::write(std::string_view kind, std::u16string_view signin, std::u16string_view text) {
    if (!file_.is_open()) {
        return;
    }
    const long long now = clock_();
    std::array<char, 64> times{};
    std::snprintf(times.data(), times.size(), "%lld\t%.6f\t", now, static_cast<double>(now - start_) / 1e6);
    file_ << times.data() << kind << '\t' << escaped(signin) << '\t' << escaped(text) << '\n' << std::flush;
}

void EventLog::write(const Change& change, const Client& client) {
    const auto of = [&](std::string_view kind, const Contact& who, std::u16string_view text) {
        write(kind, who.signin, text);
    };
    switch (change.kind) {
    case Change::Kind::signed_in:
        if (client.me()) {
            of("signin", *client.me(), client.me()->friendly);
        } else {
            write("signin-failed", {}, hexadecimal(change.number));
        }
        break;
    case Change::Kind::signing_in:
        write("signing", {}, client.stage() == Stage::connecting ? u"connecting" : u"synchronising");
        break;
    case Change::Kind::unread:
        write("unread", client.me() ? client.me()->signin : std::u16string(), murmelix::toText(change.number));
        break;
    case Change::Kind::shutting_down:
        write("shutdown", {}, {});
        break;
    case Change::Kind::signed_out:
        write("signout", {}, {});
        break;
    case Change::Kind::my_name:
        of("rename", *client.me(), client.me()->friendly);
        break;
    case Change::Kind::contact_renamed:
        of("rename", *change.contact, change.contact->friendly);
        break;
    case Change::Kind::window_created:
        write("window", {}, u"opened");
        for (const ContactPtr& participant : change.conversation->participants()) {
            of("present", *participant, participant->friendly);
        }
        break;
    case Change::Kind::window_destroyed:
        write("window", {}, u"closed");
        break;
    case Change::Kind::window_joined:
        of("join", *change.contact, change.contact->friendly);
        break;
    case Change::Kind::window_left:
        of("leave", *change.contact, change.contact->friendly);
        break;
    case Change::Kind::said:
        of("message", *change.contact, change.text);
        break;
    default:
        break;
    }
}

} // namespace messenger_client
