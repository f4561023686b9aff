#include "companions/messenger/chat/control.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "common/text.h"
#include "companions/messenger/chat/escapes.h"

namespace messenger_client {

using murmelix::LetterCase;
using murmelix::sameText;
using View = std::u16string_view;

namespace {

View takeArgument(View& rest) {
    const View word = rest.substr(0, rest.find(u' '));
    rest.remove_prefix(std::min(word.size() + 1, rest.size()));
    return word;
}

std::optional<long> number(View word, int base = 10) {
    const std::string digits = murmelix::toUtf8(word);
    if (base == 16) {
        unsigned long value = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        if (error != std::errc() || end != digits.data() + digits.size() || value > 0xFFFFFFFF) {
            return std::nullopt;
        }
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
    }
    long value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (digits.empty() || error != std::errc() || end != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return value;
}

// Lines of a history, `units` long, that no one wrote.
std::u16string filler(std::size_t units) {
    constexpr View line = u"\r\nThe quick brown fox jumps over the lazy dog and comes home in time for tea.";
    std::u16string text;
    text.reserve(units + line.size());
    while (text.size() < units) {
        text += line;
    }
    text.resize(units);
    while (text.ends_with(u'\r') || text.ends_with(u'\n')) {
        text.back() = u'.';
    }
    return text;
}

} // namespace

std::vector<Fault> Faults::take(View member) {
    std::vector<Fault> taken;
    for (Fault& fault : faults_) {
        if (fault.count > 0 && (fault.member.empty() || sameText(fault.member, member, LetterCase::ignored))) {
            --fault.count;
            taken.push_back(fault);
        }
    }
    std::erase_if(faults_, [](const Fault& fault) { return fault.count <= 0; });
    return taken;
}

ConversationPtr Control::current() const {
    if (used_ && !used_->closed()) {
        return used_;
    }
    return client_.conversations().empty() ? nullptr : client_.conversations().back();
}

ContactPtr Control::who(View signin) const {
    return signin == u"me" ? client_.me() : client_.find(signin);
}

Result Control::execute(std::string_view line) {
    if (!takes_orders_) {
        return Result::no_orders;
    }
    if (line.size() > longest_order) {
        return Result::bad_arguments;
    }
    const std::u16string text = murmelix::fromUtf8(line);
    View rest = text;
    const View command = takeArgument(rest);
    return run(command, rest);
}

Result Control::run(View command, View rest) {
    const auto done = [](bool good) { return good ? Result::done : Result::refused; };
    if (command == u"replay") {
        return rest == u"start" ? done(hooks_.start_replay()) : Result::bad_arguments;
    }
    if (command == u"signout") {
        client_.signOut();
        return Result::done;
    }
    if (command == u"shutdown") {
        hooks_.shut_down();
        return Result::done;
    }
    if (command == u"exit") {
        hooks_.exit();
        return Result::done;
    }
    if (command == u"delivered") {
        return hooks_.delivered() ? Result::done : Result::refused;
    }
    if (command == u"heal") {
        faults_.clear();
        return Result::done;
    }
    if (command == u"vanish") {
        faults_.add({Fault::Kind::vanish, 0, 1, std::u16string(rest)});
        return Result::done;
    }
    if (command == u"close") {
        const auto conversation = current();
        if (conversation) {
            client_.close(conversation);
        }
        return done(conversation != nullptr);
    }
    if (command == u"append") {
        const auto conversation = current();
        return done(conversation && client_.append(conversation, unescaped(rest)));
    }

    if (command == u"window") {
        return hooks_.window(rest) ? Result::done : Result::bad_arguments;
    }

    const View first = takeArgument(rest);
    if (command == u"signing") {
        return sign(first, rest);
    }
    if (command == u"accounts") {
        return account(first, rest);
    }
    if (command == u"untouched") {
        const auto seconds = number(first);
        if (first != u"real" && (!seconds || *seconds < 0)) {
            return Result::bad_arguments;
        }
        hooks_.untouched(seconds ? std::optional(*seconds * 1000LL) : std::nullopt);
        return Result::done;
    }
    if (command == u"hang" || command == u"unread" || command == u"fill" || command == u"use") {
        const auto amount = number(first);
        if (!amount) {
            return Result::bad_arguments;
        }
        if (command == u"hang") {
            if (*amount < 0) {
                return Result::bad_arguments;
            }
            faults_.add({Fault::Kind::hang, *amount, 1, std::u16string(rest)});
        } else if (command == u"unread") {
            client_.setUnread(*amount);
        } else if (command == u"fill") {
            const auto conversation = current();
            if (*amount < 0 || *amount > static_cast<long>(longest_history)) {
                return Result::bad_arguments;
            }
            return done(conversation && client_.append(conversation, filler(static_cast<std::size_t>(*amount))));
        } else {
            const auto& all = client_.conversations();
            if (*amount < 1 || static_cast<std::size_t>(*amount) > all.size()) {
                return Result::refused;
            }
            used_ = all[static_cast<std::size_t>(*amount) - 1];
        }
        return Result::done;
    }
    if (command == u"fail") {
        const auto code = number(first, 16);
        const auto count = number(takeArgument(rest));
        if (!code || *code >= 0 || !count || *count < 1 || *count > 1000000) {
            return Result::bad_arguments;
        }
        faults_.add({Fault::Kind::fail, *code, static_cast<int>(*count), std::u16string(rest)});
        return Result::done;
    }
    if (command == u"signin-fail") {
        const auto code = number(first, 16);
        if (!code || *code >= 0) {
            return Result::bad_arguments;
        }
        client_.failSignIn(*code);
        return Result::done;
    }

    const std::u16string text = unescaped(rest);
    if (command == u"signin" || command == u"connect") {
        if (first.empty()) {
            return Result::bad_arguments;
        }
        if (command == u"connect") {
            hooks_.connect(std::u16string(first), text);
        } else {
            client_.signIn(first, text);
        }
        return Result::done;
    }
    if (command == u"add") {
        if (first.empty()) {
            return Result::bad_arguments;
        }
        return done(client_.addContact(first, text) != nullptr);
    }
    if (command == u"join") {
        const auto conversation = current();
        ContactPtr contact = who(first);
        if (!contact && !first.empty() && conversation) {
            contact = client_.addContact(first, text);
        }
        if (!conversation || !contact) {
            return Result::refused;
        }
        client_.join(conversation, contact);
        return Result::done;
    }

    if (command == u"open") {
        if (!client_.signedIn() || first.empty()) {
            return Result::refused;
        }
        ContactPtr contact = who(first);
        if (!contact && text.empty()) {
            return Result::refused;
        }
        if (!contact) {
            contact = client_.addContact(first, text);
        }
        if (!contact) {
            return Result::refused;
        }
        const ConversationPtr opened = client_.open({std::move(contact)});
        if (opened) {
            used_ = opened;
        }
        return done(opened != nullptr);
    }
    const bool of_somebody =
        command == u"say" || command == u"part" || command == u"rename" || command == u"status" || command == u"remove";
    if (!of_somebody) {
        return Result::unknown_command;
    }
    const ContactPtr contact = who(first);
    if (!contact) {
        return Result::refused;
    }
    if (command == u"rename") {
        client_.rename(contact, text);
    } else if (command == u"remove") {
        client_.removeContact(contact);
    } else if (command == u"status") {
        const auto code = number(rest);
        if (!code) {
            return Result::bad_arguments;
        }
        client_.setStatus(contact, static_cast<Status>(*code));
    } else {
        const auto conversation = current();
        if (!conversation) {
            return Result::refused;
        }
        if (command == u"part") {
            client_.leave(conversation, contact);
        } else {
            return done(client_.say(conversation, contact, text));
        }
    }
    return Result::done;
}

Result Control::sign(View deed, View rest) {
    const auto done = [](bool good) { return good ? Result::done : Result::refused; };
    if (deed == u"hold" || deed == u"free") {
        signing_.hold(deed == u"hold");
        return Result::done;
    }
    if (deed == u"next") {
        return done(signing_.next(clock_()));
    }
    if (deed == u"finish") {
        return done(signing_.finish());
    }
    if (deed == u"cancel") {
        return done(signing_.cancel());
    }
    const auto code = number(rest, 16);
    if (deed != u"fail" || !code || *code >= 0) {
        return Result::bad_arguments;
    }
    return done(signing_.fail(*code));
}

Result Control::account(View deed, View rest) {
    const View signin = takeArgument(rest);
    if (signin.empty()) {
        return Result::bad_arguments;
    }
    Accounts& accounts = client_.accounts();
    if (deed == u"has") {
        const Account* known = accounts.find(signin);
        return known && known->remembered ? Result::done : Result::refused;
    }
    if (deed == u"forget") {
        if (!accounts.forget(signin)) {
            return Result::refused;
        }
    } else if (deed == u"remember" || deed == u"automatic") {
        if (!accounts.find(signin)) {
            accounts.use(signin);
        }
        if (const std::u16string name = oneLine(unescaped(rest)); !name.empty()) {
            accounts.find(signin)->friendly = name;
        }
        accounts.remember(signin, deed == u"automatic");
    } else {
        return Result::bad_arguments;
    }
    hooks_.accounts_changed();
    return Result::done;
}

} // namespace messenger_client
