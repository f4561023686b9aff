#include "companions/messenger/automation/automation.h"

#include <chrono>
#include <utility>

#include "companions/messenger/automation/contact_object.h"
#include "companions/messenger/automation/contacts_object.h"
#include "companions/messenger/automation/conversation_object.h"
#include "companions/messenger/automation/messenger_object.h"
#include "companions/messenger/automation/window_object.h"

namespace messenger_client {

using murmelix::com::Error;
using murmelix::com::Ptr;
using murmelix::com::Variant;

namespace {

constexpr CLSID clsid_automation{0xd601bcb9, 0xc510, 0x44c2, {0x96, 0x00, 0xc1, 0xf6, 0x7e, 0x1f, 0xbb, 0xc0}};

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

long codeOf(Status status) {
    return static_cast<long>(status);
}

} // namespace

const murmelix::com::ServerClass& automationServer() {
    static const murmelix::com::ServerClass server{
        clsid_automation, u"Messenger automation", {u"Messenger.UIAutomation", u"Messenger.UIAutomation.1"}};
    return server;
}

Automation::Automation(Client& client, Faults& faults, Hooks hooks)
    : client_(client), faults_(faults), hooks_(std::move(hooks)) {}

Automation::~Automation() {
    close();
}

void Automation::offer() {
    client_.listen([this](const Change& change) {
        try {
            changed(change);
        } catch (const std::exception&) {
            return; // an event that cannot be packed is lost alone; the other listeners hear of the change
        }
    });
    class_object_ = std::make_unique<murmelix::com::ClassObject>(clsid_automation, [this] {
        return object<MessengerObject>({Kind::root, this});
    });
}

void Automation::close() {
    if (std::exchange(closed_, true)) {
        return;
    }
    fireWaiting();
    if (source_) {
        murmelix::com::waitForEvents(murmelix::com::last_events_time);
    }
    class_object_.reset();
    std::vector<Ptr<IDispatch>> all;
    for (const auto& [key, object] : objects_) {
        all.emplace_back(object);
    }
    for (const auto& object : all) {
        CoDisconnectObject(object.get(), 0);
    }
    all.clear();
    murmelix::com::waitForSinksToEnd(murmelix::com::last_sinks_time);
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
    return object<MainWindowObject>({Kind::main_window, this});
}

bool Automation::delivered() const {
    return murmelix::com::allEventsDelivered();
}

void Automation::vanish() {
    class_object_.reset();
    hooks_.end(vanished_status);
}

void Automation::suffer(std::u16string_view member) {
    for (const Fault& fault : faults_.take(member)) {
        switch (fault.kind) {
        case Fault::Kind::hang:
            hooks_.hang(std::chrono::milliseconds(fault.amount));
            break;
        case Fault::Kind::fail:
            throw Error(static_cast<HRESULT>(fault.amount));
        case Fault::Kind::vanish:
            vanish();
        }
    }
}

void Automation::fire(DISPID event, std::vector<Variant> arguments, DWORD only) {
    if (!source_) {
        return;
    }
    if (waiting_.empty()) {
        return source_->fire(event, arguments, only);
    }
    waiting_.push_back({event, std::move(arguments), only});
}

void Automation::introduce(DWORD listener) noexcept {
    try {
        // Not before the listener knows that it is one. What happens meanwhile comes after it.
        const bool first = waiting_.empty();
        for (const ConversationPtr& open : client_.conversations()) {
            waiting_.push_back({event_id::im_window_created, {conversation(open)}, listener});
        }
        if (first && !waiting_.empty()) {
            hooks_.soon([this] { fireWaiting(); });
        }
    } catch (const std::exception&) {
        // Without memory for it the listener sees the windows to come alone.
        fireWaiting();
    }
}

void Automation::fireWaiting() noexcept {
    for (const Event& event : std::exchange(waiting_, {})) {
        try {
            fire(event.id, event.arguments, event.only);
        } catch (const std::exception&) {
            continue; // an event without memory for it is lost alone
        }
    }
}

void Automation::changed(const Change& change) {
    if (!source_ || source_->sinks() == 0) {
        return;
    }
    const Variant good(static_cast<long>(S_OK));
    const ContactPtr& who = change.contact;
    const ConversationPtr& where = change.conversation;
    switch (change.kind) {
    case Change::Kind::signed_in:
        return fire(event_id::signin, {change.number});
    case Change::Kind::signed_out:
        return fire(event_id::signout, {});
    case Change::Kind::contact_added:
        return fire(event_id::contact_list_add, {good, contact(who)});
    case Change::Kind::contact_removed:
        return fire(event_id::contact_list_remove, {good, contact(who)});
    case Change::Kind::contact_renamed:
        return fire(event_id::contact_friendly_name_change, {good, contact(who), change.text});
    case Change::Kind::contact_status:
        return fire(event_id::contact_status_change, {contact(who), codeOf(who->status)});
    case Change::Kind::my_name:
        return fire(event_id::my_friendly_name_change, {good, change.text});
    case Change::Kind::my_status:
        return fire(event_id::my_status_change, {good, codeOf(client_.me()->status)});
    case Change::Kind::unread: {
        Variant reference;
        VARIANT& raw = *reference.out();
        raw.vt = VT_BYREF | VT_BOOL;
        raw.pboolVal = &enable_default_;
        return fire(event_id::unread_email_change, {0L, change.number, reference});
    }
    case Change::Kind::window_created:
        return fire(event_id::im_window_created, {conversation(where)});
    case Change::Kind::window_destroyed:
        return fire(event_id::im_window_destroyed, {conversation(where)});
    case Change::Kind::window_joined:
        return fire(event_id::im_window_contact_added, {contact(who), conversation(where)});
    case Change::Kind::window_left:
        return fire(event_id::im_window_contact_removed, {contact(who), conversation(where)});
    case Change::Kind::shutting_down:
        return fire(event_id::app_shutdown, {});
    case Change::Kind::signing_in: // MyStatus tells it who asks
    case Change::Kind::text_appended:
    case Change::Kind::said:
        return;
    }
}

} // namespace messenger_client
