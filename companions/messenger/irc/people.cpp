#include "companions/messenger/irc/people.h"

#include <algorithm>
#include <utility>

#include "common/text.h"
#include "companions/messenger/irc/text.h"

namespace messenger_client::irc {

namespace {

constexpr std::size_t longest_user = 64, longest_host = 128;

// Signs that stand for themselves nowhere: in paths, in the registry, in patterns, in this very form.
bool needsEscape(char16_t unit) {
    return unit <= u' ' || std::u16string_view(u"\\/:*?\"<>|%@~,;").find(unit) != murmelix::npos;
}

std::u16string escapedForSignin(std::u16string_view name) {
    constexpr std::u16string_view digits = u"0123456789ABCDEF";
    std::u16string escaped;
    for (const char16_t unit : name) {
        if (needsEscape(unit)) {
            escaped += {u'%', digits[unit / 16], digits[unit % 16]};
        } else {
            escaped += unit;
        }
    }
    return escaped;
}

bool isName(std::string_view nick) {
    return !nick.empty() && nick.size() <= longest_nick;
}

} // namespace

void People::setCaseMapping(CaseMapping mapping) {
    if (std::exchange(mapping_, mapping) == mapping) {
        return;
    }
    std::unordered_map<std::string, KnownPtr> before = std::exchange(by_key_, {});
    for (const auto& [key, person] : before) {
        person->key = folded(person->name, mapping_);
        // Of two whose names are the same now, one is forgotten.
        if (!by_key_.emplace(person->key, person).second) {
            forgetButName(person);
        }
    }
}

KnownPtr People::find(std::string_view nick) const {
    const auto found = by_key_.find(folded(nick, mapping_));
    return found == by_key_.end() ? nullptr : found->second;
}

KnownPtr People::meet(const Prefix& prefix, std::string_view account) {
    if (!isName(prefix.nick) || prefix.isServer()) {
        return nullptr;
    }
    KnownPtr person = find(prefix.nick);
    if (person && person->channels == 0 && !account.empty() && !person->account.empty() &&
        person->account != plainName(account, longest_person_name)) {
        forget(person);
        person = nullptr;
    }
    if (!person) {
        person = add(prefix.nick);
    }
    touch(person);
    if (!prefix.user.empty()) {
        person->user = plainName(prefix.user, longest_user);
    }
    if (!prefix.host.empty()) {
        person->host = plainName(prefix.host, longest_host);
    }
    return person;
}

KnownPtr People::meetUser(const Prefix& prefix, std::string_view user_id) {
    if (user_id.empty() || !isName(prefix.nick)) {
        return meet(prefix);
    }
    const std::u16string id = plainName(user_id, longest_person_name);
    const auto found = by_user_id_.find(id);
    if (found != by_user_id_.end()) {
        const KnownPtr person = found->second;
        if (person->key != folded(prefix.nick, mapping_)) {
            rename(person, prefix.nick);
        }
        touch(person);
        return person;
    }
    // Somebody else had the nick.
    if (const KnownPtr other = find(prefix.nick); other && !other->user_id.empty()) {
        forget(other);
    }
    KnownPtr person = meet(prefix);
    if (person) {
        person->user_id = id;
        chooseSignin(person);
        if (person->registered) {
            by_user_id_.emplace(id, person);
        }
    }
    return person;
}

bool People::setAccount(const KnownPtr& person, std::string_view account) {
    std::u16string name = plainName(account, longest_person_name);
    if (person->account == name) {
        return false;
    }
    person->account = std::move(name);
    chooseSignin(person);
    return true;
}

bool People::setShownName(const KnownPtr& person, std::string_view name) {
    std::u16string shown(murmelix::trim(plainName(name, longest_person_name)));
    if (shown.empty() || person->display_name == shown) {
        return false;
    }
    person->display_name = std::move(shown);
    return true;
}

void People::rename(const KnownPtr& person, std::string_view nick) {
    if (!isName(nick)) {
        return;
    }
    if (const KnownPtr other = find(nick); other && other != person) {
        forget(other);
    }
    if (person->registered) {
        by_key_.erase(person->key);
        by_key_.emplace(folded(nick, mapping_), person);
    }
    person->name = nick;
    person->key = folded(nick, mapping_);
    person->nick = plainName(nick, longest_person_name);
}

void People::enter(const KnownPtr& person) {
    if (person->channels++ == 0) {
        absent_.erase(person->absent);
    }
}

void People::leave(const KnownPtr& person) {
    if (--person->channels == 0 && person->registered) {
        putAbsent(person);
    }
}

KnownPtr People::add(std::string_view nick) {
    auto person = std::make_shared<Known>();
    person->name = nick;
    person->key = folded(nick, mapping_);
    person->nick = plainName(nick, longest_person_name);
    if (by_key_.size() >= most_people && !absent_.empty()) {
        forget(KnownPtr(absent_.back()));
    }
    person->registered = by_key_.size() < most_people;
    if (person->registered) {
        by_key_.emplace(person->key, person);
        putAbsent(person);
    }
    chooseSignin(person);
    return person;
}

void People::forget(const KnownPtr& person) {
    if (person->registered) {
        by_key_.erase(person->key);
        forgetButName(person);
    }
}

void People::forgetButName(const KnownPtr& person) {
    person->registered = false;
    if (const auto found = by_user_id_.find(person->user_id); found != by_user_id_.end() && found->second == person) {
        by_user_id_.erase(found);
    }
    releaseSignin(*person);
    if (person->channels == 0) {
        absent_.erase(person->absent);
    }
}

void People::putAbsent(const KnownPtr& person) {
    person->absent = absent_.insert(absent_.begin(), person);
    if (absent_.size() > most_absent) {
        forget(KnownPtr(absent_.back()));
    }
}

void People::touch(const KnownPtr& person) {
    if (person->registered && person->channels == 0) {
        absent_.splice(absent_.begin(), absent_, person->absent);
    }
}

void People::chooseSignin(const KnownPtr& person) {
    if (person->has_spoken && !person->signin.empty()) {
        return;
    }
    releaseSignin(*person);
    const std::u16string at_network = u"@" + escapedForSignin(network_);
    const auto isFree = [&](const std::u16string& name) {
        return !name.empty() && !signins_.contains(murmelix::toLower(name));
    };
    std::u16string wanted = escapedForSignin(person->account);
    if (!person->user_id.empty()) {
        wanted = escapedForSignin(person->user_id) + at_network;
    }
    if (!isFree(wanted)) {
        wanted = escapedForSignin(person->nick) + at_network;
    }
    // Somebody who had this nick before is known by it.
    while (!isFree(wanted)) {
        wanted = escapedForSignin(person->nick) + u"~" + murmelix::toText(++namesakes_) + at_network;
    }
    person->signin = std::move(wanted);
    person->holds_signin = person->registered;
    if (person->holds_signin) {
        signins_.insert(murmelix::toLower(person->signin));
    }
}

void People::releaseSignin(Known& person) {
    if (std::exchange(person.holds_signin, false)) {
        signins_.erase(murmelix::toLower(person.signin));
    }
}

} // namespace messenger_client::irc
