#include "tests/windows/program/neighbour_server.h"

#include <array>
#include <chrono>
#include <string>

#include <windows.h>

#include "common/com/numbered.h"
#include "common/com/server.h"
#include "common/text.h"

namespace murmelix::test {

namespace {

using com::Ptr;
using com::Variant;
using com::numbered::Access;
using com::numbered::Call;
using com::numbered::Member;

constexpr CLSID classId(int number) {
    return {0x4C1B6E11, 0x52F0, 0x4D07, {0x9A, 0x3E, 0x21, 0x6F, 0x0B, 0xC4, 0xD8, static_cast<BYTE>(number)}};
}

// The first two are Messengers, the others Agents.
constexpr std::array prog_ids{messenger_prog_id, mortal_messenger_prog_id, agent_prog_id, mortal_agent_prog_id};

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

class Contact final : public com::numbered::Served {
    std::span<const Member> numbered() const override {
        static const std::vector<Member> all{{L"FriendlyName", 1536, Access::get}, {L"SigninName", 1538, Access::get}};
        return all;
    }
    Variant invoke(const Call& call) override {
        return call.member == 1536 ? Variant(u"Ann \U0001F600") : Variant(u"ann@test");
    }
};

class ContactList final : public com::numbered::Served {
    std::span<const Member> numbered() const override {
        static const std::vector<Member> all{{L"Item", 0, Access::get, {L"Index"}, 1}, {L"Count", 1792, Access::get}};
        return all;
    }
    Variant invoke(const Call& call) override {
        if (call.member == 1792) {
            return Variant(std::int32_t{1});
        }
        if (call.arguments.at(0).toInt32() != 0) {
            throw com::Error(E_INVALIDARG);
        }
        return Variant(com::make<Contact>());
    }
};

// Answers the conversation's members itself, as a window does whose other interface cannot cross processes.
class Window final : public com::numbered::Served {
    std::span<const Member> numbered() const override {
        static const std::vector<Member> all{{L"HWND", 2048, Access::get},   {L"Left", 2049, Access::get},
                                             {L"Top", 2050, Access::get},    {L"Width", 2051, Access::get},
                                             {L"Height", 2052, Access::get}, {L"Contacts", 2057, Access::get},
                                             {L"History", 2058, Access::get}};
        return all;
    }
    Variant invoke(const Call& call) override {
        if (call.member == 2057) {
            return Variant(com::make<ContactList>());
        }
        if (call.member == 2058) {
            return Variant(std::u16string(500000, u'x') + u'\0' + u"\r\nAnn says:\r\nhi");
        }
        return Variant(static_cast<std::int32_t>(call.member));
    }
};

class Messenger final : public com::numbered::Served {
  public:
    Messenger() = default;

  private:
    std::span<const Member> numbered() const override {
        static const std::vector<Member> all{
            {L"MyFriendlyName", 1282, Access::get},
            {L"UnreadEmailCount", 1284, Access::get, {L"Folder"}, 1},
            {L"Signin", 1297, Access::method, {L"Parent", L"SigninName", L"Password"}, 3},
            {L"MyContacts", 1303, Access::get},
            {L"MySigninName", 1304, Access::get},
            {L"MyStatus", 1305, Access::get}};
        return all;
    }
    Variant invoke(const Call& call) override {
        switch (call.member) {
        case 1282:
            return Variant(u"Test user");
        case 1284:
            return Variant(call.arguments.at(0).toInt32() + 7);
        case 1297:
            signin(call.arguments.at(1).toText());
            return {};
        case 1303:
            return Variant(com::make<ContactList>());
        case 1304:
            throw com::Error(E_FAIL, u"nobody is signed in");
        default:
            return Variant(std::int32_t{34});
        }
    }
    void* interfaceFor(REFIID iid) override {
        return IsEqualIID(iid, IID_IConnectionPointContainer) ? source_.container() : nullptr;
    }
    void signin(const std::u16string& name) {
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

// An object with one property, or whatever a member of the Agent hands out.
class Request final : public com::numbered::Served {
    std::span<const Member> numbered() const override { return {}; }
    Variant invoke(const Call&) override { return {}; }
};

class AudioOutput final : public com::numbered::Served {
    std::span<const Member> numbered() const override {
        static const std::vector<Member> all{{L"Enabled", 1, Access::get}};
        return all;
    }
    Variant invoke(const Call&) override { return Variant(true); }
};

class Balloon final : public com::numbered::Served {
    std::span<const Member> numbered() const override {
        static const std::vector<Member> all{{L"Style", 16, Access::get_put}};
        return all;
    }
    Variant invoke(const Call& call) override {
        if (call.put) {
            style() = call.arguments.back().toInt32();
        }
        return Variant(style());
    }
    static std::int32_t& style() {
        static std::int32_t value = 0x2001C;
        return value;
    }
};

class Character final : public com::numbered::Served {
    std::span<const Member> numbered() const override {
        static const std::vector<Member> all{{L"Visible", 2, Access::get},
                                             {L"Left", 3, Access::get},
                                             {L"Play", 13, Access::method, {L"Animation"}, 1},
                                             {L"Stop", 14, Access::method, {L"Request"}, 0},
                                             {L"Speak", 15, Access::method, {L"Text", L"Url"}, 0},
                                             {L"Balloon", 23, Access::get},
                                             {L"Name", 24, Access::get}};
        return all;
    }
    Variant invoke(const Call& call) override {
        switch (call.member) {
        case 2:
            return Variant(false);
        case 3:
            return Variant(std::int16_t{-300});
        case 13:
            if (call.arguments.at(0).toText() != u"Wave") {
                throw com::Error(E_INVALIDARG, u"no such animation");
            }
            return Variant(com::make<Request>());
        case 14:
            throw com::Error(DISP_E_TYPEMISMATCH);
        case 15:
            if (call.arguments.at(0).isOmitted() == call.arguments.at(1).isOmitted()) {
                throw com::Error(E_INVALIDARG);
            }
            return Variant(com::make<Request>());
        case 23:
            return Variant(com::make<Balloon>());
        default:
            return Variant(u"Anna");
        }
    }
};

class Characters final : public com::numbered::Served {
    std::span<const Member> numbered() const override {
        static const std::vector<Member> all{{L"Load", 1, Access::method, {L"CharacterID", L"LoadKey"}, 1},
                                             {L"Unload", 2, Access::method, {L"CharacterID"}, 1},
                                             {L"Character", 3, Access::method, {L"CharacterID"}, 1}};
        return all;
    }
    Variant invoke(const Call& call) override {
        if (call.member == 2) {
            die();
        }
        if (call.arguments.at(0).toText() != u"ann@test") {
            throw com::Error(E_INVALIDARG, u"no such character");
        }
        return call.member == 1 ? Variant(com::make<Request>()) : Variant(com::make<Character>());
    }
};

class UserInput final : public com::numbered::Served {
    std::span<const Member> numbered() const override {
        static const std::vector<Member> all{{L"Name", 1, Access::get}};
        return all;
    }
    Variant invoke(const Call&) override { return Variant(u"ann@testQ%"); }
};

class Agent final : public com::numbered::Served {
    std::span<const Member> numbered() const override {
        static const std::vector<Member> all{{L"Characters", 3, Access::get},
                                             {L"AudioOutput", 4, Access::get},
                                             {L"Connected", 9, Access::get_put},
                                             {L"RaiseRequestErrors", 21, Access::get_put}};
        return all;
    }
    Variant invoke(const Call& call) override {
        if (call.member == 9) {
            connected_ = connected_ || call.put;
            return Variant(connected_);
        }
        if (!connected_) {
            throw com::Error(E_UNEXPECTED, u"not connected");
        }
        switch (call.member) {
        case 3:
            return Variant(com::make<Characters>());
        case 4:
            return Variant(com::make<AudioOutput>());
        default:
            source_.fire(17, {Variant(com::make<UserInput>())});
            source_.fire(4, {Variant(u"ann@test"), Variant(std::int16_t{1}), Variant(std::int16_t{2}),
                             Variant(std::int16_t{3}), Variant(std::int16_t{4})});
            source_.fire(19, {Variant(u"ann@test")});
            source_.fire(21, {});
            source_.fire(12, {});
            com::waitForEvents(patience);
            return {};
        }
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
        return number < 2 ? Ptr<IDispatch>(com::make<Messenger>().get()) : Ptr<IDispatch>(com::make<Agent>().get());
    });
    SetTimer(nullptr, 0, 60000, [](HWND, UINT, UINT_PTR, DWORD) { PostQuitMessage(0); });
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
    return 0;
}

} // namespace murmelix::test
