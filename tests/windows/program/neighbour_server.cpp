#include "tests/windows/program/neighbour_server.h"

#include <array>
#include <chrono>
#include <string>

#include <windows.h>

#include "common/com/server.h"
#include "common/text.h"

namespace murmelix::test {

namespace {

using com::Member;
using com::Members;
using com::method;
using com::property;
using com::Ptr;
using com::Variant;

constexpr CLSID classId(int number) {
    return {0x4C1B6E11, 0x52F0, 0x4D07, {0x9A, 0x3E, 0x21, 0x6F, 0x0B, 0xC4, 0xD8, static_cast<BYTE>(number)}};
}

// The Messengers first, then the Agents.
constexpr int messengers = 4;
constexpr std::array prog_ids{
    messenger_prog_id, mortal_messenger_prog_id, vanishing_messenger_prog_id, returning_messenger_prog_id,
    agent_prog_id,     mortal_agent_prog_id,     vanishing_agent_prog_id};

com::ServerClass serverClass(int number) {
    return {classId(number), u"Murmelix test", {prog_ids.at(static_cast<std::size_t>(number))}};
}

constexpr IID messenger_events{0xC9A6A6B6, 0x9BC1, 0x43A5, {0xB0, 0x6B, 0xE5, 0x88, 0x74, 0xEE, 0xBC, 0x96}};
constexpr IID agent_events{0xF5BE8BD4, 0x7DE6, 0x11D0, {0x91, 0xFE, 0x00, 0xC0, 0x4F, 0xD7, 0x01, 0xA5}};

constexpr std::chrono::seconds patience{30};

[[noreturn]] void die() {
    TerminateProcess(GetCurrentProcess(), 1);
    std::abort();
}

class Contact final : public com::Served {
    std::span<const Member> members() const override {
        static const Members<Contact> all{
            property(L"FriendlyName", 1536, [](const Contact&) { return u"Ann \U0001F600"; }),
            property(L"SigninName", 1538, [](const Contact&) { return u"ann@test"; })};
        return all;
    }
};

// Its items are had by a property or by a method: automation servers do either.
class ContactList final : public com::Served {
  public:
    enum class Item { property, method };
    explicit ContactList(Item as) : as_(as) {}

  private:
    std::span<const Member> members() const override {
        static const auto count = [](const ContactList&) { return std::int32_t{1}; };
        static const Members<ContactList> by_property{property(L"Item", 0, &ContactList::item, {L"Index"}),
                                                      property(L"Count", 1792, count)};
        static const Members<ContactList> by_method{method(L"Item", 0, &ContactList::item, {L"Index"}),
                                                    property(L"Count", 1792, count)};
        return as_ == Item::property ? by_property : by_method;
    }
    Ptr<Contact> item(std::int32_t index) {
        if (index != 0) {
            throw com::Error(E_INVALIDARG);
        }
        return com::make<Contact>();
    }

    Item as_;
};

// Answers the conversation's members itself, as a window does whose other interface cannot cross processes.
class Window final : public com::Served {
    std::span<const Member> members() const override {
        static const Members<Window> all{
            property(L"HWND", 2048, [](const Window&) { return std::int32_t{2048}; }),
            property(L"Left", 2049, [](const Window&) { return std::int32_t{2049}; }),
            property(L"Top", 2050, [](const Window&) { return std::int32_t{2050}; }),
            property(L"Width", 2051, [](const Window&) { return std::int32_t{2051}; }),
            property(L"Height", 2052, [](const Window&) { return std::int32_t{2052}; }),
            property(L"Contacts", 2057,
                     [](const Window&) { return com::make<ContactList>(ContactList::Item::method); }),
            property(L"History", 2058,
                     [](const Window&) { return std::u16string(500000, u'x') + u'\0' + u"\r\nAnn says:\r\nhi"; })};
        return all;
    }
};

class Messenger final : public com::Served {
  public:
    Messenger() = default;

  private:
    std::span<const Member> members() const override {
        static const Members<Messenger> all{
            property(L"MyFriendlyName", 1282, [](const Messenger&) { return u"Test user"; }),
            property(L"UnreadEmailCount", 1284, [](const Messenger&, std::int32_t folder) { return folder + 7; },
                     {L"Folder"}),
            method(L"Signin", 1297, &Messenger::signin, {L"Parent", L"SigninName", L"Password"}),
            property(L"MyContacts", 1303,
                     [](const Messenger&) { return com::make<ContactList>(ContactList::Item::property); }),
            property(L"MySigninName", 1304,
                     [](const Messenger&) -> std::int32_t { throw com::Error(E_FAIL, u"nobody is signed in"); }),
            property(L"MyStatus", 1305, [](const Messenger&) { return std::int32_t{34}; })};
        return all;
    }
    void* interfaceFor(REFIID iid) override {
        return IsEqualIID(iid, IID_IConnectionPointContainer) ? source_.container() : nullptr;
    }
    void signin(std::int32_t, const std::u16string& name, const std::u16string&) {
        if (name == ask_for_death) {
            die();
        }
        if (name != ask_for_events) {
            throw com::Error(E_ACCESSDENIED);
        }
        const Variant window(com::make<Window>()), contact(com::make<Contact>());
        source_.fire(1024, {Variant(std::int32_t{-5})});
        source_.fire(1025, {});
        source_.fire(1029, {Variant(std::int32_t{0}), Variant(u"before")});
        source_.fire(1031, {Variant(std::int32_t{0}), Variant(std::int32_t{10})});
        source_.fire(1031, {}); // damaged: dropped
        source_.fire(1041, {Variant(u"no object")});
        source_.fire(1039, {Variant(std::int32_t{0}), Variant(std::int32_t{3}), Variant(true)});
        source_.fire(1041, {window});
        source_.fire(1043, {contact, window});
        source_.fire(1044, {contact, window});
        source_.fire(1042, {window});
        source_.fire(9999, {});
        source_.fire(1032, {});
        com::waitForEvents(patience); // so that they arrive in the middle of the call
    }

    com::EventSource source_{*this, messenger_events};
};

// Whatever a member of the Agent hands out.
class Request final : public com::Served {
    std::span<const Member> members() const override { return {}; }
};

class AudioOutput final : public com::Served {
    std::span<const Member> members() const override {
        static const Members<AudioOutput> all{property(L"Enabled", 1, [](const AudioOutput&) { return true; })};
        return all;
    }
};

class Balloon final : public com::Served {
    std::span<const Member> members() const override {
        static const Members<Balloon> all{property(
            L"Style", 16, [](const Balloon&) { return style(); },
            [](const Balloon&, std::int32_t value) { style() = value; })};
        return all;
    }
    static std::int32_t& style() {
        static std::int32_t value = 0x2001C;
        return value;
    }
};

class Character final : public com::Served {
    using Text = std::optional<std::u16string>;

    std::span<const Member> members() const override {
        static const Members<Character> all{
            property(L"Visible", 2, [](const Character&) { return false; }),
            property(L"Left", 3, [](const Character&) { return std::int16_t{-300}; }),
            method(L"Play", 13, &Character::play, {L"Animation"}),
            method(L"Stop", 14,
                   [](const Character&, const std::optional<Variant>&) { throw com::Error(DISP_E_TYPEMISMATCH); },
                   {L"Request"}),
            method(L"Speak", 15, &Character::speak, {L"Text", L"Url"}),
            property(L"Balloon", 23, [](const Character&) { return com::make<Balloon>(); }),
            property(L"Name", 24, [](const Character&) { return u"Anna"; })};
        return all;
    }
    Ptr<Request> play(const std::u16string& animation) {
        if (animation != u"Wave") {
            throw com::Error(E_INVALIDARG, u"no such animation");
        }
        return com::make<Request>();
    }
    Ptr<Request> speak(const Text& text, const Text& url) {
        if (text.has_value() == url.has_value()) {
            throw com::Error(E_INVALIDARG);
        }
        return com::make<Request>();
    }
};

class Characters final : public com::Served {
    using Text = std::optional<std::u16string>;

    std::span<const Member> members() const override {
        static const Members<Characters> all{
            method(L"Load", 1, &Characters::load, {L"CharacterID", L"LoadKey"}),
            method(L"Unload", 2, [](const Characters&, const std::u16string&) { die(); }, {L"CharacterID"}),
            method(L"Character", 3, &Characters::character, {L"CharacterID"})};
        return all;
    }
    static void require(const std::u16string& id) {
        if (id != u"ann@test") {
            throw com::Error(E_INVALIDARG, u"no such character");
        }
    }
    Ptr<Request> load(const std::u16string& id, const Text&) {
        require(id);
        return com::make<Request>();
    }
    Ptr<Character> character(const std::u16string& id) {
        require(id);
        return com::make<Character>();
    }
};

class UserInput final : public com::Served {
    std::span<const Member> members() const override {
        static const Members<UserInput> all{property(L"Name", 1, [](const UserInput&) { return u"ann@testQ%"; })};
        return all;
    }
};

class Agent final : public com::Served {
    std::span<const Member> members() const override {
        static const Members<Agent> all{
            property(L"Characters", 3, [](Agent& self) { return self.connected<Characters>(); }),
            property(L"AudioOutput", 4, [](Agent& self) { return self.connected<AudioOutput>(); }),
            property(
                L"Connected", 9, [](const Agent& self) { return self.connected_; },
                [](Agent& self, bool) { self.connected_ = true; }),
            property(
                L"RaiseRequestErrors", 21, [](const Agent&) { return true; }, &Agent::setRaiseRequestErrors)};
        return all;
    }
    void requireConnection() const {
        if (!connected_) {
            throw com::Error(E_UNEXPECTED, u"not connected");
        }
    }
    template <class T>
    Ptr<T> connected() const {
        requireConnection();
        return com::make<T>();
    }
    void setRaiseRequestErrors(bool) {
        requireConnection();
        source_.fire(17, {Variant(com::make<UserInput>())});
        source_.fire(4, {Variant(u"ann@test"), Variant(std::int16_t{1}), Variant(std::int16_t{2}),
                         Variant(std::int16_t{3}), Variant(std::int16_t{4})});
        source_.fire(19, {Variant(u"ann@test")});
        source_.fire(21, {});
        source_.fire(12, {});
        com::waitForEvents(patience);
    }
    void* interfaceFor(REFIID iid) override {
        return IsEqualIID(iid, IID_IConnectionPointContainer) ? source_.container() : nullptr;
    }

    bool connected_ = false;
    com::EventSource source_{*this, agent_events};
};

} // namespace

NeighbourRegistration::NeighbourRegistration() {
    std::array<wchar_t, 32768> path{};
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    for (int number = 0; number < static_cast<int>(prog_ids.size()); ++number) {
        std::u16string command = u"\"";
        command.append(com::narrow(path.data(), length)).append(u"\" --neighbour ").append(toText(number));
        com::registerServer(serverClass(number), command);
    }
}

NeighbourRegistration::~NeighbourRegistration() {
    for (int number = 0; number < static_cast<int>(prog_ids.size()); ++number) {
        com::unregisterServer(serverClass(number));
    }
}

int serveNeighbour(int number) {
    const com::Apartment apartment;
    const com::ClassObject server(classId(number), [number] {
        return number < messengers ? Ptr<IDispatch>(com::make<Messenger>().get())
                                   : Ptr<IDispatch>(com::make<Agent>().get());
    });
    SetTimer(nullptr, 0, 60000, [](HWND, UINT, UINT_PTR, DWORD) { PostQuitMessage(0); });
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
    return 0;
}

} // namespace murmelix::test
