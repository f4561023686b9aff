#include "companions/messenger/client/account.h"

#include "platform/files.h"
#include "platform/secrets.h"
#include "platform/user_store.h"

namespace messenger_client {

namespace {

constexpr const char16_t* key = u"Software\\MessengerClient";

const murmelix::platform::UserStore& store() {
    static const murmelix::platform::UserStore the_store(key);
    return the_store;
}

} // namespace

void loadAccounts(Accounts& accounts) {
    accounts.read(store().lines(u"Accounts", longest_store + 1).value_or(std::vector<std::u16string>()));
    const std::u16string older = oneLine(store().text(u"SigninName", longest_store).value_or(u""));
    if (older.empty() || accounts.find(older)) {
        return;
    }
    Account& account = accounts.use(older);
    if (const std::u16string name = oneLine(store().text(u"FriendlyName", longest_store).value_or(u""));
        !name.empty()) {
        account.friendly = name;
    }
    accounts.remember(account.signin, !accounts.automatic());
}

void storeAccounts(const Accounts& accounts) {
    const std::vector<std::u16string> lines = accounts.lines();
    if (lines.empty()) {
        store().remove(u"Accounts");
    } else if (!store().putLines(u"Accounts", lines)) {
        return; // remembered until the client ends; what an older one has stored stays
    }
    store().remove(u"SigninName");
    store().remove(u"FriendlyName");
}

std::variant<NetworkAccount, std::u16string> prepareNetwork(Accounts& accounts, const NetworkRequest& request) {
    NetworkAccount account = request.account;
    const std::u16string signin = signinOf(account);
    const Account* known = accounts.find(signin);
    std::string secret;
    if (request.kept_password) {
        secret = known ? known->secret : std::string();
        auto password = murmelix::platform::revealSecret(secret);
        if (!password) {
            return u"The kept password cannot be read any more. Please type it again.";
        }
        account.password = std::move(*password);
    } else if (request.remember && !account.password.empty()) {
        // What cannot be protected is not kept.
        secret = murmelix::platform::protectSecret(account.password).value_or(std::string());
    }
    if (!request.remember) {
        accounts.forget(signin);
        return account;
    }
    Account& kept = accounts.use(signin);
    kept.network = account;
    kept.network->password.clear();
    kept.secret = std::move(secret);
    kept.contacts.clear();
    accounts.remember(signin, request.automatic);
    kept.automatic = request.automatic;
    return account;
}

bool keepsRunning() {
    return store().number(u"KeepRunning").value_or(1) != 0;
}

void keepRunning(bool keep) {
    store().putNumber(u"KeepRunning", keep ? 1 : 0);
}

namespace {

// Units of the rules of a conversation, each of their lists being full.
constexpr std::size_t longest_rules = 1024 * 1024;
// Of the name of a value of the registry.
constexpr std::size_t longest_value_name = 255;

const murmelix::platform::UserStore& readingStore() {
    static const murmelix::platform::UserStore the_store(std::u16string(key) + u"\\Reading");
    return the_store;
}

} // namespace

reading::Rules readingRules(const std::u16string& conversation) {
    return reading::rulesOf(readingStore()
                                .lines(conversation.substr(0, longest_value_name), longest_rules)
                                .value_or(std::vector<std::u16string>()));
}

void keepReadingRules(const std::u16string& conversation, const reading::Rules& rules) {
    const std::u16string name = conversation.substr(0, longest_value_name);
    const std::vector<std::u16string> lines = reading::linesOf(rules);
    if (lines.empty()) {
        readingStore().remove(name);
    } else {
        readingStore().putLines(name, lines); // where the system refuses they are good until the client ends
    }
}

int installedCharacters() {
    namespace platform = murmelix::platform;
    return static_cast<int>(platform::filesIn(platform::windowsDirectory() + u"\\msagent\\chars", u".acs").size());
}

std::optional<irc::Address> streamingServer() {
    const auto parsed = irc::parseAddress(store().text(u"StreamingServer", longest_value_name).value_or(u""));
    const auto* const address = std::get_if<irc::Address>(&parsed);
    return address && address->dialect == irc::Dialect::irc ? std::optional(*address) : std::nullopt;
}

const murmelix::platform::KeptPlace& mainPlace() {
    static const murmelix::platform::KeptPlace place(key, u"Place");
    return place;
}

const murmelix::platform::KeptPlace& conversationPlace() {
    static const murmelix::platform::KeptPlace place(key, u"ConversationPlace");
    return place;
}

} // namespace messenger_client
