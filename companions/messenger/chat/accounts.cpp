#include "companions/messenger/chat/accounts.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <unordered_set>
#include <utility>

#include "common/text.h"
#include "companions/messenger/chat/escapes.h"

namespace messenger_client {

namespace {

using View = std::u16string_view;

constexpr char16_t part = u'\t';
constexpr View network_mark = u"\t\tnetwork\t"; // a contact without a sign-in name, for who does not know it

std::u16string field(View text) {
    return murmelix::fromUtf8(escaped(text));
}

std::u16string number(long value) {
    return murmelix::toText(value);
}

std::optional<long> numberOf(View text) {
    const std::string digits = murmelix::toUtf8(text);
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (digits.empty() || error != std::errc() || end != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return value;
}

// At least `count` fields, the last one to the end of the line; nothing where there are fewer.
std::vector<View> fieldsOf(View line, std::size_t count) {
    std::vector<View> fields;
    while (fields.size() + 1 < count) {
        const std::size_t end = line.find(part);
        if (end == murmelix::npos) {
            return {};
        }
        fields.push_back(line.substr(0, end));
        line.remove_prefix(end + 1);
    }
    fields.push_back(line);
    return fields;
}

// A code that is no status, or not one to have, counts as `otherwise`; without a name there is nobody.
struct Person {
    std::u16string signin, friendly;
    Status status;
};
std::optional<Person> personOf(View signin, View friendly, View status, bool (*can_have)(Status), Status otherwise) {
    Person person{oneLine(unescaped(signin)), oneLine(unescaped(friendly)), otherwise};
    if (person.signin.empty()) {
        return std::nullopt;
    }
    if (person.friendly.empty()) {
        person.friendly = shortName(person.signin);
    }
    const auto code = numberOf(status);
    if (code && can_have(static_cast<Status>(*code))) {
        person.status = static_cast<Status>(*code);
    }
    return person;
}

std::optional<Account> accountOf(View line) {
    const auto fields = fieldsOf(line, 5);
    if (fields.empty()) {
        return std::nullopt;
    }
    const auto person = personOf(fields[0], fields[4], fields[1], isChosen, Status::online);
    if (!person) {
        return std::nullopt;
    }
    Account account{person->signin, person->friendly, person->status};
    account.unread = numberOf(fields[3]).value_or(0);
    account.remembered = true;
    account.automatic = fields[2] == u"automatic";
    return account;
}

ContactPtr contactOf(View line) {
    const auto fields = fieldsOf(line, 4);
    if (fields.empty()) {
        return nullptr;
    }
    const auto any = [](Status status) { return isStatus(static_cast<long>(status)); };
    const auto person = personOf(fields[0], fields[3], fields[1], any, Status::offline);
    if (!person) {
        return nullptr;
    }
    return std::make_shared<Contact>(
        Contact{person->signin, person->friendly, person->status, fields[2] == u"blocked"});
}

// False where the text does not tell of a network, or of another one than the account's.
bool readNetwork(Account& account, View text) {
    auto kept = account.network ? std::nullopt : networkOf(text);
    if (!kept || !murmelix::sameText(signinOf(kept->account), account.signin, murmelix::LetterCase::ignored)) {
        return false;
    }
    account.network = std::move(kept->account);
    account.secret = std::move(kept->secret);
    account.contacts.clear();
    return true;
}

} // namespace

const Account* Accounts::find(View signin) const {
    const auto found = std::find_if(all_.begin(), all_.end(), [&](const Account& account) {
        return murmelix::sameText(account.signin, signin, murmelix::LetterCase::ignored);
    });
    return found == all_.end() ? nullptr : &*found;
}

Account* Accounts::find(View signin) {
    return const_cast<Account*>(std::as_const(*this).find(signin));
}

Account& Accounts::use(View signin) {
    if (const Account* known = find(signin)) {
        const auto place = all_.begin() + (known - all_.data());
        std::rotate(all_.begin(), place, place + 1);
    } else {
        const std::u16string name = oneLine(signin);
        if (all_.size() >= most_accounts) {
            const auto not_kept =
                std::find_if(all_.rbegin(), all_.rend(), [](const Account& a) { return !a.remembered; });
            all_.erase(not_kept == all_.rend() ? all_.end() - 1 : not_kept.base() - 1);
        }
        all_.insert(all_.begin(), Account{name, std::u16string(shortName(name))});
    }
    return all_.front();
}

void Accounts::remember(View signin, bool automatic) {
    if (automatic) {
        for (Account& account : all_) {
            account.automatic = false;
        }
    }
    if (Account* account = find(signin)) {
        account->remembered = true;
        account->automatic = automatic;
    }
}

bool Accounts::forget(View signin) {
    const Account* known = find(signin);
    if (!known) {
        return false;
    }
    all_.erase(all_.begin() + (known - all_.data()));
    return true;
}

const Account* Accounts::automatic() const {
    const auto found = std::find_if(all_.begin(), all_.end(), [](const Account& account) { return account.automatic; });
    return found == all_.end() ? nullptr : &*found;
}

const Account* Accounts::lastRemembered() const {
    const auto found =
        std::find_if(all_.begin(), all_.end(), [](const Account& account) { return account.remembered; });
    return found == all_.end() ? nullptr : &*found;
}

void Accounts::read(const std::vector<std::u16string>& lines) {
    all_.clear();
    std::unordered_set<std::u16string> accounts, contacts;
    bool kept = false; // the account that contacts belong to
    for (const std::u16string& line : lines) {
        if (line.starts_with(network_mark)) {
            // Without what makes it one of a network it would be one of another kind.
            if (kept && !readNetwork(all_.back(), View(line).substr(network_mark.size()))) {
                all_.pop_back();
                kept = false;
            }
            continue;
        }
        if (line.starts_with(part)) {
            if (!kept || all_.back().network || all_.back().contacts.size() == most_contacts) {
                continue;
            }
            auto contact = contactOf(View(line).substr(1));
            if (contact && contacts.insert(murmelix::toLower(contact->signin)).second) {
                all_.back().contacts.push_back(std::move(contact));
            }
            continue;
        }
        auto account = accountOf(line);
        kept = account && all_.size() < most_accounts && accounts.insert(murmelix::toLower(account->signin)).second;
        if (!kept) {
            continue;
        }
        account->automatic = account->automatic && !automatic();
        contacts = {murmelix::toLower(account->signin)};
        all_.push_back(std::move(*account));
    }
}

std::vector<std::u16string> Accounts::lines() const {
    std::vector<std::u16string> lines;
    std::size_t room = longest_store;
    const auto add = [&](std::u16string line) {
        if (line.size() >= room) {
            return false;
        }
        room -= line.size() + 1;
        lines.push_back(std::move(line));
        return true;
    };
    for (const Account& account : all_) {
        if (!account.remembered) {
            continue;
        }
        if (!add(field(account.signin) + part + number(static_cast<long>(account.status)) + part +
                 (account.automatic ? u"automatic" : u"-") + part + number(account.unread) + part +
                 field(account.friendly))) {
            return lines;
        }
        if (account.network) {
            if (!add(std::u16string(network_mark) + networkText(*account.network, account.secret))) {
                lines.pop_back();
                return lines;
            }
            continue;
        }
        for (const ContactPtr& contact : account.contacts) {
            if (!add(part + field(contact->signin) + part + number(static_cast<long>(contact->status)) + part +
                     (contact->blocked ? u"blocked" : u"-") + part + field(contact->friendly))) {
                return lines;
            }
        }
    }
    return lines;
}

} // namespace messenger_client
