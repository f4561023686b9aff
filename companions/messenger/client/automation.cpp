#include "companions/messenger/client/automation.h"

#include <array>
#include <utility>

#include <shlobj.h>

#include "common/com/client.h"
#include "common/com/numbered.h"
#include "common/text.h"

namespace messenger_client {

using murmelix::com::Error;
using murmelix::com::EventSource;
using murmelix::com::Ptr;
using murmelix::com::Variant;
using murmelix::com::numbered::Access;
using murmelix::com::numbered::Call;
using murmelix::com::numbered::Member;
using murmelix::com::numbered::Served;

namespace {

constexpr CLSID clsid_automation{0xd601bcb9, 0xc510, 0x44c2, {0x96, 0x00, 0xc1, 0xf6, 0x7e, 0x1f, 0xbb, 0xc0}};
constexpr IID iid_events{0xC9A6A6B6, 0x9BC1, 0x43A5, {0xB0, 0x6B, 0xE5, 0x88, 0x74, 0xEE, 0xBC, 0x96}};

constexpr std::u16string_view service_name = u"Messenger";
constexpr std::u16string_view service_id = u"{2A69624F-5A16-42EC-AE0D-35BA1765A882}";

namespace event_id {
constexpr DISPID signin = 1024;
constexpr DISPID signout = 1025;
constexpr DISPID contact_list_add = 1026;
constexpr DISPID contact_list_remove = 1027;
constexpr DISPID contact_friendly_name_change = 1028;
constexpr DISPID my_friendly_name_change = 1029;
constexpr DISPID contact_status_change = 1030;
constexpr DISPID my_status_change = 1031;
constexpr DISPID app_shutdown = 1032;
constexpr DISPID unread_email_change = 1039;
constexpr DISPID im_window_created = 1041;
constexpr DISPID im_window_destroyed = 1042;
constexpr DISPID im_window_contact_added = 1043;
constexpr DISPID im_window_contact_removed = 1044;
} // namespace event_id

[[noreturn]] void unavailable(const char16_t* what) {
    throw Error(E_NOTIMPL, std::u16string(u"This client has no ") + what + u".");
}

[[noreturn]] void invalid(const char16_t* why) {
    throw Error(E_INVALIDARG, why);
}

HWND windowOf(std::intptr_t handle) {
    return reinterpret_cast<HWND>(handle);
}

// A window handle as automation carries it: its low 32 bits are all of it.
long handleNumber(HWND window) {
    return static_cast<long>(reinterpret_cast<std::intptr_t>(window));
}

} // namespace

// Base of all objects here: known to the automation while it lives, and made to fail where a test wants it.
class Answering : public Served {
  protected:
    Answering(Automation& automation, Automation::Key key) : automation_(automation), key_(key) {
        automation_.objects_[key_] = this;
    }
    ~Answering() override { automation_.objects_.erase(key_); }

    virtual Variant answer(const Call& call) = 0;
    Client& client() { return automation_.client(); }

    // The contact that a caller means: an object with a SigninName, or the sign-in name itself.
    ContactPtr contactOf(const Variant& value) {
        std::u16string signin;
        if (value.type() == VT_DISPATCH) {
            auto object = value.toObject();
            if (!object) {
                invalid(u"There is no contact.");
            }
            signin = murmelix::com::Object(std::move(object)).get(u"SigninName").toText();
        } else {
            signin = value.toText();
        }
        auto contact = client().find(signin);
        if (!contact) {
            invalid(u"No contact has this sign-in name.");
        }
        return contact;
    }

    const ContactPtr& me() {
        if (!client().me()) {
            throw Error(HRESULT_FROM_WIN32(ERROR_NOT_LOGGED_ON), u"Nobody is signed in.");
        }
        return client().me();
    }

    Automation& automation_;

  private:
    Variant invoke(const Call& call) final {
        for (const Member& member : numbered()) {
            if (member.id == call.member) {
                automation_.suffer(murmelix::com::narrow(member.name, std::wcslen(member.name)));
                break;
            }
        }
        return answer(call);
    }

    Automation::Key key_;
};

namespace {

class ContactObject final : public Answering {
  public:
    ContactObject(Automation& automation, Automation::Key key, ContactPtr contact)
        : Answering(automation, key), contact_(std::move(contact)) {}

  private:
    enum Id : DISPID {
        friendly_name = 1536,
        status,
        signin_name,
        member_service_name,
        blocked,
        is_self,
        property,
        can_page,
        phone_number,
        member_service_id
    };

    std::span<const Member> numbered() const override {
        static const std::vector<Member> table{
            {L"FriendlyName", friendly_name, Access::get},
            {L"Status", status, Access::get},
            {L"SigninName", signin_name, Access::get},
            {L"ServiceName", member_service_name, Access::get},
            {L"Blocked", blocked, Access::get_put},
            {L"IsSelf", is_self, Access::get},
            {L"Property", property, Access::get_put, {L"property"}, 1},
            {L"CanPage", can_page, Access::get},
            {L"PhoneNumber", phone_number, Access::get, {L"type"}, 0},
            {L"ServiceId", member_service_id, Access::get},
        };
        return table;
    }

    Variant answer(const Call& call) override {
        switch (call.member) {
        case friendly_name:
            return contact_->friendly;
        case status:
            return static_cast<long>(contact_->status);
        case signin_name:
            return contact_->signin;
        case member_service_name:
            return service_name;
        case blocked:
            if (call.put) {
                contact_->blocked = call.arguments.back().toBool();
            }
            return contact_->blocked;
        case is_self:
            return contact_ == client().me();
        case can_page:
            return false;
        case phone_number:
            return u"";
        case member_service_id:
            return service_id;
        default:
            unavailable(u"properties of contacts");
        }
    }

    ContactPtr contact_;
};

// The contact list, or the participants of a conversation; it follows its changes.
class ContactsObject final : public Answering {
  public:
    // Without a conversation: the contact list.
    ContactsObject(Automation& automation, Automation::Key key, ConversationPtr conversation)
        : Answering(automation, key), conversation_(std::move(conversation)) {}

  private:
    enum Id : DISPID { item = DISPID_VALUE, count = 1792, remove = 1793, new_enum = DISPID_NEWENUM };

    std::span<const Member> numbered() const override {
        static const std::vector<Member> table{
            {L"Item", item, Access::get, {L"index"}, 1},
            {L"Count", count, Access::get},
            {L"Remove", remove, Access::method, {L"contact"}, 1},
            {L"_NewEnum", new_enum, Access::get},
        };
        return table;
    }

    const std::vector<ContactPtr>& all() { return conversation_ ? conversation_->participants() : client().contacts(); }

    Variant answer(const Call& call) override {
        switch (call.member) {
        case item: {
            const long index = call.arguments[0].toInt32();
            if (index < 0 || static_cast<std::size_t>(index) >= all().size()) {
                throw Error(DISP_E_BADINDEX);
            }
            return automation_.contact(all()[static_cast<std::size_t>(index)]);
        }
        case count:
            return static_cast<long>(all().size());
        case remove: {
            if (conversation_) {
                throw Error(E_ACCESSDENIED, u"Participants leave a conversation by themselves.");
            }
            const ContactPtr contact = contactOf(call.arguments[0]);
            client().removeContact(contact);
            return {};
        }
        default: {
            std::vector<Variant> values;
            for (const ContactPtr& contact : all()) {
                values.emplace_back(automation_.contact(contact));
            }
            return murmelix::com::enumerate(std::move(values));
        }
        }
    }

    ConversationPtr conversation_;
};

// What the windows have in common; `window` gives the handle of an open one.
class WindowObject : public Answering {
  public:
    WindowObject(Automation& automation, Automation::Key key) : Answering(automation, key) {}

  protected:
    enum Id : DISPID {
        hwnd = 2048,
        left,
        top,
        width,
        height,
        close_window,
        show,
        is_closed,
        property,
        window_contacts,
        window_history,
        add_contact
    };

    static std::vector<Member> windowMembers() {
        return {
            {L"HWND", hwnd, Access::get},
            {L"Left", left, Access::get_put},
            {L"Top", top, Access::get_put},
            {L"Width", width, Access::get_put},
            {L"Height", height, Access::get_put},
            {L"Close", close_window, Access::method},
            {L"Show", show, Access::method},
            {L"IsClosed", is_closed, Access::get},
            {L"Property", property, Access::get_put, {L"property"}, 1},
        };
    }

    std::span<const Member> numbered() const override {
        static const std::vector<Member> table = windowMembers();
        return table;
    }

    virtual HWND window() { return automation_.hooks().main_window(); }
    virtual void close() { ShowWindow(window(), SW_MINIMIZE); }
    virtual bool closed() { return !IsWindowVisible(window()) || IsIconic(window()); }
    virtual void bringUp() { automation_.hooks().show_main_window(); }

    Variant answer(const Call& call) override {
        switch (call.member) {
        case hwnd:
            return handleNumber(window());
        case is_closed:
            return closed();
        case left:
        case top:
        case width:
        case height:
            return side(call);
        case close_window:
            close();
            return {};
        case show:
            bringUp();
            return {};
        default:
            unavailable(u"properties of windows");
        }
    }

  private:
    Variant side(const Call& call) {
        RECT place{};
        if (!GetWindowRect(window(), &place)) {
            throw Error(HRESULT_FROM_WIN32(GetLastError()));
        }
        std::array<long, 4> sides{place.left, place.top, place.right - place.left, place.bottom - place.top};
        long& value = sides[static_cast<std::size_t>(call.member - left)];
        if (call.put) {
            value = call.arguments.back().toInt32();
            if (!SetWindowPos(window(), nullptr, sides[0], sides[1], sides[2], sides[3],
                              SWP_NOZORDER | SWP_NOACTIVATE)) {
                throw Error(HRESULT_FROM_WIN32(GetLastError()));
            }
        }
        return value;
    }
};

class ConversationObject final : public WindowObject {
  public:
    ConversationObject(Automation& automation, Automation::Key key, ConversationPtr conversation)
        : WindowObject(automation, key), conversation_(std::move(conversation)) {}

  private:
    std::span<const Member> numbered() const override {
        static const std::vector<Member> table = [] {
            std::vector<Member> all = windowMembers();
            all.push_back({L"Contacts", window_contacts, Access::get});
            all.push_back({L"History", window_history, Access::get});
            all.push_back({L"AddContact", add_contact, Access::method, {L"contact"}, 1});
            return all;
        }();
        return table;
    }

    HWND window() override { return windowOf(conversation_->window()); }
    void close() override { client().close(conversation_); }
    bool closed() override { return conversation_->closed(); }
    void bringUp() override {
        ShowWindow(window(), IsIconic(window()) ? SW_RESTORE : SW_SHOW);
        SetForegroundWindow(window());
    }

    Variant answer(const Call& call) override {
        // Not one of the results that say that the whole server is gone: it is only the window.
        if (conversation_->closed() && call.member != hwnd && call.member != is_closed) {
            throw Error(HRESULT_FROM_WIN32(ERROR_INVALID_WINDOW_HANDLE), u"The conversation window is closed.");
        }
        switch (call.member) {
        case window_contacts:
            return automation_.contactsOf(conversation_);
        case window_history:
            automation_.hooks().read(*conversation_);
            return conversation_->history();
        case add_contact:
            client().join(conversation_, contactOf(call.arguments[0]));
            return {};
        default:
            return WindowObject::answer(call);
        }
    }

    ConversationPtr conversation_;
};

} // namespace

class Root final : public Answering {
  public:
    Root(Automation& automation, Automation::Key key) : Answering(automation, key), source_(*this, iid_events) {
        automation_.source_ = &source_;
        source_.onAdded([this](DWORD listener) { automation_.introduce(listener); });
    }

  private:
    ~Root() override { automation_.source_ = nullptr; }

    enum Id : DISPID {
        receive_file_directory = 1280,
        start_voice,
        my_friendly_name,
        window,
        unread_email_count,
        view_profile,
        get_contact,
        options_pages,
        add_contact,
        find_contact,
        instant_message,
        signout,
        send_file,
        open_inbox,
        my_service_name,
        invite_app,
        my_phone_number,
        signin,
        send_mail,
        auto_signin,
        phone,
        media_wizard,
        page,
        my_contacts,
        my_signin_name,
        my_status,
        my_property,
        my_service_id,
        services
    };

    void* interfaceFor(REFIID iid) override {
        return IsEqualIID(iid, IID_IConnectionPointContainer) ? source_.container() : nullptr;
    }

    std::span<const Member> numbered() const override {
        static const std::vector<Member> table{
            {L"ReceiveFileDirectory", receive_file_directory, Access::get},
            {L"StartVoice", start_voice, Access::method, {L"contact"}, 0},
            {L"MyFriendlyName", my_friendly_name, Access::get},
            {L"Window", window, Access::get},
            {L"UnreadEmailCount", unread_email_count, Access::get, {L"folder"}, 1},
            {L"ViewProfile", view_profile, Access::method, {L"contact"}, 0},
            {L"GetContact", get_contact, Access::method, {L"signinName", L"serviceId"}, 1},
            {L"OptionsPages", options_pages, Access::method, {L"hwnd", L"page"}, 0},
            {L"AddContact", add_contact, Access::method, {L"hwnd", L"email"}, 2},
            {L"FindContact", find_contact, Access::method, {L"hwnd", L"firstName", L"lastName"}, 0},
            {L"InstantMessage", instant_message, Access::method, {L"contact"}, 1},
            {L"Signout", signout, Access::method},
            {L"SendFile", send_file, Access::method, {L"contact", L"fileName"}, 0},
            {L"OpenInbox", open_inbox, Access::method},
            {L"MyServiceName", my_service_name, Access::get},
            {L"InviteApp", invite_app, Access::method, {L"contact", L"application"}, 0},
            {L"MyPhoneNumber", my_phone_number, Access::get, {L"type"}, 0},
            {L"Signin", signin, Access::method, {L"hwndParent", L"signinName", L"password"}, 0},
            {L"SendMail", send_mail, Access::method, {L"contact"}, 0},
            {L"AutoSignin", auto_signin, Access::method},
            {L"Phone", phone, Access::method, {L"contact", L"type", L"number"}, 0},
            {L"MediaWizard", media_wizard, Access::method, {L"hwnd"}, 0},
            {L"Page", page, Access::method, {L"contact"}, 0},
            {L"MyContacts", my_contacts, Access::get},
            {L"MySigninName", my_signin_name, Access::get},
            {L"MyStatus", my_status, Access::get_put},
            {L"MyProperty", my_property, Access::get_put, {L"property"}, 1},
            {L"MyServiceId", my_service_id, Access::get},
            {L"Services", services, Access::get},
        };
        return table;
    }

    Variant answer(const Call& call) override {
        switch (call.member) {
        case receive_file_directory:
            return receivedFiles();
        case my_friendly_name:
            return me()->friendly;
        case window:
            return automation_.mainWindow();
        case unread_email_count:
            me();
            return call.arguments[0].toInt32() == 0 ? client().unread() : 0L;
        case get_contact:
            me();
            return automation_.contact(contactOf(call.arguments[0]));
        case add_contact: {
            me();
            const std::u16string email = call.arguments[1].toText();
            if (email.empty()) {
                invalid(u"A contact needs a sign-in name.");
            }
            client().addContact(email, email.substr(0, email.find(u'@')), Status::offline);
            return {};
        }
        case instant_message: {
            me();
            const ContactPtr contact = contactOf(call.arguments[0]);
            if (contact == me()) {
                invalid(u"A conversation needs somebody else.");
            }
            return automation_.conversation(client().openWith(contact));
        }
        case signout:
            client().signOut();
            return {};
        case my_service_name:
            return service_name;
        case my_phone_number:
            me();
            return u"";
        case signin: {
            const std::u16string name = call.arguments[1].isOmitted() ? u"" : call.arguments[1].toText();
            if (name.empty()) {
                automation_.hooks().ask_sign_in();
            } else {
                automation_.hooks().sign_in(name); // the password is of no use here, and is not kept
            }
            return {};
        }
        case auto_signin:
            automation_.hooks().auto_sign_in();
            return {};
        case my_contacts:
            me();
            return automation_.contacts();
        case my_signin_name:
            return me()->signin;
        case my_status:
            return status(call);
        case my_service_id:
            return service_id;
        case services:
            unavailable(u"list of services");
        case start_voice:
            unavailable(u"voice conversations");
        case view_profile:
        case find_contact:
            unavailable(u"member directory");
        case options_pages:
            unavailable(u"options pages");
        case send_file:
            unavailable(u"file transfer");
        case open_inbox:
        case send_mail:
            unavailable(u"mail");
        case invite_app:
            unavailable(u"invitations");
        case phone:
        case page:
            unavailable(u"telephone");
        case media_wizard:
            unavailable(u"sound and picture settings");
        default:
            unavailable(u"properties of the account");
        }
    }

    Variant status(const Call& call) {
        if (!call.put) {
            return client().me() ? static_cast<long>(client().me()->status) : static_cast<long>(client().stage());
        }
        me();
        const long code = call.arguments.back().toInt32();
        if (!isStatus(code) || static_cast<Status>(code) == Status::offline) {
            invalid(u"This is no status that one can choose.");
        }
        client().setMyStatus(static_cast<Status>(code));
        return {};
    }

    static std::u16string receivedFiles() {
        std::array<wchar_t, MAX_PATH> folder{};
        murmelix::com::check(SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, SHGFP_TYPE_CURRENT, folder.data()));
        return std::u16string(murmelix::com::narrow(folder.data(), std::wcslen(folder.data()))) + u"\\Received Files";
    }

    EventSource source_;
};

const murmelix::com::ServerClass& automationServer() {
    static const murmelix::com::ServerClass server{
        clsid_automation, u"Messenger automation", {u"Messenger.UIAutomation", u"Messenger.UIAutomation.1"}};
    return server;
}

Automation::Automation(Client& client, Faults& faults, Hooks hooks)
    : client_(client), faults_(faults), hooks_(std::move(hooks)) {
    client_.listen([this](const Change& change) { changed(change); });
}

Automation::~Automation() {
    close();
}

void Automation::offer() {
    class_object_ = std::make_unique<murmelix::com::ClassObject>(clsid_automation, [this] {
        return object<Root>({Kind::root, this});
    });
}

void Automation::close() {
    class_object_.reset();
    events_.clear();
    std::vector<Ptr<IDispatch>> all;
    for (const auto& [key, object] : objects_) {
        all.emplace_back(object);
    }
    if (source_) {
        source_->close();
    }
    for (const auto& object : all) {
        CoDisconnectObject(object.get(), 0);
    }
}

template <class T, class... Arguments>
Ptr<IDispatch> Automation::object(const Key& key, Arguments&&... arguments) {
    if (const auto found = objects_.find(key); found != objects_.end()) {
        return Ptr<IDispatch>(found->second);
    }
    const auto made = murmelix::com::make<T>(*this, key, std::forward<Arguments>(arguments)...);
    return Ptr<IDispatch>(made.get());
}

Ptr<IDispatch> Automation::contact(const ContactPtr& contact) {
    return object<ContactObject>({Kind::contact, contact.get()}, contact);
}

Ptr<IDispatch> Automation::contacts() {
    return object<ContactsObject>({Kind::contacts, this}, ConversationPtr());
}

Ptr<IDispatch> Automation::contactsOf(const ConversationPtr& conversation) {
    return object<ContactsObject>({Kind::participants, conversation.get()}, conversation);
}

Ptr<IDispatch> Automation::conversation(const ConversationPtr& conversation) {
    return object<ConversationObject>({Kind::conversation, conversation.get()}, conversation);
}

Ptr<IDispatch> Automation::mainWindow() {
    return object<WindowObject>({Kind::main_window, this});
}

void Automation::vanish() {
    class_object_.reset();
    TerminateProcess(GetCurrentProcess(), vanished_status);
}

void Automation::suffer(std::u16string_view member) {
    for (const Fault& fault : faults_.take(member)) {
        switch (fault.kind) {
        case Fault::Kind::hang:
            Sleep(static_cast<DWORD>(fault.amount));
            break;
        case Fault::Kind::fail:
            throw Error(static_cast<HRESULT>(fault.amount));
        case Fault::Kind::vanish:
            vanish();
        }
    }
}

void Automation::enqueue(DISPID event, std::function<std::vector<Variant>()> arguments, DWORD only) {
    if (!source_ || source_->sinks() == 0) {
        return;
    }
    events_.push_back([this, event, only, arguments = std::move(arguments)] {
        if (!source_) {
            return;
        }
        // Held: the root ends when its last sink lets go of it in the call.
        const Ptr<IDispatch> root(objects_.at({Kind::root, this}));
        source_->fire(event, arguments(), only);
    });
    hooks_.deliver_later();
}

void Automation::introduce(DWORD listener) noexcept {
    try {
        for (const ConversationPtr& open : client_.conversations()) {
            enqueue(
                event_id::im_window_created, [=, this] { return std::vector<Variant>{conversation(open)}; }, listener);
        }
    } catch (const std::exception&) {
        // Without memory for it the listener sees the windows to come alone.
        return;
    }
}

void Automation::deliverEvents() {
    while (!events_.empty()) {
        const auto event = std::move(events_.front());
        events_.pop_front();
        try {
            event();
        } catch (const Error&) {
            // An event that cannot be packed is lost alone.
            continue;
        }
    }
}

void Automation::changed(const Change& change) {
    const long good = S_OK;
    const ContactPtr who = change.contact;
    const ConversationPtr where = change.conversation;
    const std::u16string before(change.kind == Change::Kind::text_appended || change.kind == Change::Kind::said
                                    ? std::u16string_view()
                                    : change.text);
    const long number = change.number;
    using Arguments = std::vector<Variant>;
    switch (change.kind) {
    case Change::Kind::signed_in:
        enqueue(event_id::signin, [number] { return Arguments{number}; });
        break;
    case Change::Kind::signed_out:
        enqueue(event_id::signout, [] { return Arguments{}; });
        break;
    case Change::Kind::contact_added:
        enqueue(event_id::contact_list_add, [=, this] { return Arguments{good, contact(who)}; });
        break;
    case Change::Kind::contact_removed:
        enqueue(event_id::contact_list_remove, [=, this] { return Arguments{good, contact(who)}; });
        break;
    case Change::Kind::contact_renamed:
        enqueue(event_id::contact_friendly_name_change, [=, this] { return Arguments{good, contact(who), before}; });
        break;
    case Change::Kind::contact_status:
        enqueue(event_id::contact_status_change, [=, this, status = static_cast<long>(who->status)] {
            return Arguments{contact(who), status};
        });
        break;
    case Change::Kind::my_name:
        enqueue(event_id::my_friendly_name_change, [=] { return Arguments{good, before}; });
        break;
    case Change::Kind::my_status:
        enqueue(event_id::my_status_change, [good, status = static_cast<long>(client_.me()->status)] {
            return Arguments{good, status};
        });
        break;
    case Change::Kind::unread:
        enqueue(event_id::unread_email_change, [this, number] {
            enable_default_ = VARIANT_TRUE;
            Variant reference;
            VARIANT& raw = *reference.out();
            raw.vt = VT_BYREF | VT_BOOL;
            raw.pboolVal = &enable_default_;
            return Arguments{0L, number, reference};
        });
        break;
    case Change::Kind::window_created:
        enqueue(event_id::im_window_created, [=, this] { return Arguments{conversation(where)}; });
        break;
    case Change::Kind::window_destroyed:
        enqueue(event_id::im_window_destroyed, [=, this] { return Arguments{conversation(where)}; });
        break;
    case Change::Kind::window_joined:
        enqueue(event_id::im_window_contact_added, [=, this] { return Arguments{contact(who), conversation(where)}; });
        break;
    case Change::Kind::window_left:
        enqueue(event_id::im_window_contact_removed, [=, this] {
            return Arguments{contact(who), conversation(where)};
        });
        break;
    case Change::Kind::shutting_down:
        enqueue(event_id::app_shutdown, [] { return Arguments{}; });
        break;
    case Change::Kind::signing_in: // MyStatus tells it who asks
    case Change::Kind::text_appended:
    case Change::Kind::said:
        break;
    }
}

} // namespace messenger_client
