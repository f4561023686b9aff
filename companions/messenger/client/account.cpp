#include "companions/messenger/client/account.h"

#include <cstring>
#include <vector>

#include <windows.h>

#include "common/com/handles.h"
#include "common/text.h"

namespace messenger_client {

using murmelix::com::wide;

namespace {

constexpr wchar_t key_path[] = L"Software\\MessengerClient";
constexpr DWORD longest_value = 64 * 1024 * 1024; // bytes; more is none of ours

class Key {
  public:
    explicit Key(REGSAM access) { RegOpenKeyExW(HKEY_CURRENT_USER, key_path, 0, access, &key_); }
    ~Key() {
        if (key_) {
            RegCloseKey(key_);
        }
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    HKEY get() const { return key_; }

  private:
    HKEY key_ = nullptr;
};

// The units of a value of that type, with whatever NULs it holds; empty where there is none.
std::u16string stored(HKEY key, const wchar_t* name, DWORD wanted) {
    DWORD type = 0;
    DWORD bytes = 0;
    if (!key || RegQueryValueExW(key, name, nullptr, &type, nullptr, &bytes) != ERROR_SUCCESS || type != wanted ||
        bytes > longest_value) {
        return {};
    }
    std::vector<BYTE> data(bytes);
    if (RegQueryValueExW(key, name, nullptr, &type, data.data(), &bytes) != ERROR_SUCCESS || type != wanted) {
        return {}; // somebody is changing it
    }
    std::u16string text(bytes / sizeof(char16_t), u'\0');
    std::memcpy(text.data(), data.data(), text.size() * sizeof(char16_t));
    return text;
}

std::vector<std::u16string> linesOf(const std::u16string& text) {
    std::vector<std::u16string> lines;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = std::min(text.find(u'\0', from), text.size());
        if (end > from) {
            lines.push_back(text.substr(from, end - from));
        }
        from = end + 1;
    }
    return lines;
}

std::u16string firstLine(const std::u16string& text) {
    return text.substr(0, text.find(u'\0'));
}

} // namespace

std::vector<ContactPtr> demoContacts() {
    const auto contact = [](const char16_t* signin, const char16_t* friendly, Status status) {
        return std::make_shared<Contact>(Contact{signin, friendly, status});
    };
    return {contact(u"hazel@messenger.example", u"Hazel", Status::online),
            contact(u"otto@messenger.example", u"Otto :)", Status::online),
            contact(u"mina@messenger.example", u"Mina", Status::away),
            contact(u"theo@messenger.example", u"Theo", Status::busy),
            contact(u"juniper@messenger.example", u"Juniper", Status::offline)};
}

void loadAccounts(Accounts& accounts) {
    const Key key(KEY_QUERY_VALUE);
    accounts.read(linesOf(stored(key.get(), L"Accounts", REG_MULTI_SZ)));
    const std::u16string older = firstLine(stored(key.get(), L"SigninName", REG_SZ));
    if (older.empty() || accounts.find(older)) {
        return;
    }
    Account& account = accounts.use(older);
    if (const std::u16string name = firstLine(stored(key.get(), L"FriendlyName", REG_SZ)); !name.empty()) {
        account.friendly = oneLine(name);
    }
    accounts.remember(account.signin, !accounts.automatic());
}

void storeAccounts(const Accounts& accounts) {
    std::u16string text;
    for (const std::u16string& line : accounts.lines()) {
        text.append(line).push_back(u'\0');
    }
    if (!text.empty()) {
        text.push_back(u'\0');
        // What the registry refuses is remembered until the client ends.
        RegSetKeyValueW(HKEY_CURRENT_USER, key_path, L"Accounts", REG_MULTI_SZ, text.data(),
                        static_cast<DWORD>(text.size() * sizeof(char16_t)));
    }
    const Key key(KEY_SET_VALUE);
    if (!key.get()) {
        return;
    }
    if (text.empty()) {
        RegDeleteValueW(key.get(), L"Accounts");
    }
    RegDeleteValueW(key.get(), L"SigninName");
    RegDeleteValueW(key.get(), L"FriendlyName");
}

bool keepsRunning() {
    DWORD value = 0;
    DWORD bytes = sizeof value;
    return RegGetValueW(HKEY_CURRENT_USER, key_path, L"KeepRunning", RRF_RT_REG_DWORD, nullptr, &value, &bytes) ==
               ERROR_SUCCESS &&
           value != 0;
}

void keepRunning(bool keep) {
    const DWORD value = keep ? 1 : 0;
    RegSetKeyValueW(HKEY_CURRENT_USER, key_path, L"KeepRunning", REG_DWORD, &value, sizeof value);
}

} // namespace messenger_client
