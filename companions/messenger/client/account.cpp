#include "companions/messenger/client/account.h"

#include <array>
#include <cmath>

#include "common/text.h"
#include "platform/user_store.h"

namespace messenger_client {

namespace {

// UTF-16 units of four numbers, with their NULs.
constexpr std::size_t longest_place = 64;
// Twips: 32,767 pixels, which is how far the system's windows reach, at 96 dots an inch.
constexpr double farthest_place = 15.0 * 32'767;

const murmelix::platform::UserStore& store() {
    static const murmelix::platform::UserStore the_store(u"Software\\MessengerClient");
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

bool keepsRunning() {
    return store().number(u"KeepRunning").value_or(1) != 0;
}

void keepRunning(bool keep) {
    store().putNumber(u"KeepRunning", keep ? 1 : 0);
}

std::optional<WindowPlace> lastPlace() {
    const auto lines = store().lines(u"Place", longest_place);
    std::array<int, 4> numbers{};
    if (!lines || lines->size() != numbers.size()) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const double number = murmelix::leadingNumber((*lines)[i]);
        if (!(std::abs(number) <= farthest_place)) {
            return std::nullopt;
        }
        numbers[i] = static_cast<int>(number);
    }
    const WindowPlace place{numbers[0], numbers[1], numbers[2], numbers[3]};
    return place.width > 0 && place.height > 0 ? std::optional(place) : std::nullopt;
}

void keepPlace(const WindowPlace& place) {
    const auto text = [](int number) { return murmelix::toText(static_cast<long long>(number)); };
    store().putLines(u"Place", {text(place.left), text(place.top), text(place.width), text(place.height)});
}

} // namespace messenger_client
