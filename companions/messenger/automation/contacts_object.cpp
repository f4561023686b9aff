#include "companions/messenger/automation/contacts_object.h"

namespace messenger_client {

using murmelix::com::Error;
using murmelix::com::Members;
using murmelix::com::method;
using murmelix::com::property;
using murmelix::com::Ptr;
using murmelix::com::Variant;

ContactsObject::ContactsObject(Automation& automation, Automation::Key key, ConversationPtr conversation)
    : Answering(automation, key), conversation_(std::move(conversation)) {}

const Members<ContactsObject>& ContactsObject::table() {
    using Self = ContactsObject;
    static const Members<Self> rows{
        property(L"Item", DISPID_VALUE, &Self::item, {L"index"}),
        property(L"Count", 1792, &Self::count),
        method(L"Remove", 1793, &Self::remove, {L"contact"}),
        property(L"_NewEnum", DISPID_NEWENUM, &Self::newEnum),
    };
    return rows;
}

const std::vector<ContactPtr>& ContactsObject::all() {
    return conversation_ ? conversation_->participants() : client().contacts();
}

Ptr<IDispatch> ContactsObject::item(std::int32_t index) {
    if (index < 0 || static_cast<std::size_t>(index) >= all().size()) {
        throw Error(DISP_E_BADINDEX);
    }
    return automation().contact(all()[static_cast<std::size_t>(index)]);
}

void ContactsObject::remove(Whose whose) {
    if (conversation_) {
        throw Error(E_ACCESSDENIED, u"Participants leave a conversation by themselves.");
    }
    client().removeContact(find(whose));
}

Variant ContactsObject::newEnum() {
    std::vector<Variant> values;
    for (const ContactPtr& contact : all()) {
        values.emplace_back(automation().contact(contact));
    }
    return murmelix::com::enumerate(std::move(values));
}

} // namespace messenger_client
