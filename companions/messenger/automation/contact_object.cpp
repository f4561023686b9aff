#include "companions/messenger/automation/contact_object.h"

namespace messenger_client {

using murmelix::com::Members;
using murmelix::com::property;
using murmelix::com::Variant;

ContactObject::ContactObject(Automation& automation, Automation::Key key, ContactPtr contact)
    : Answering(automation, key), contact_(std::move(contact)) {}

const Members<ContactObject>& ContactObject::table() {
    using Self = ContactObject;
    constexpr char16_t properties[] = u"properties of contacts";
    static const Members<Self> rows{
        property(L"FriendlyName", 1536, &Self::friendlyName),
        property(L"Status", 1537, &Self::status),
        property(L"SigninName", 1538, &Self::signinName),
        property(L"ServiceName", 1539, [](Self&) { return service_name; }),
        property(L"Blocked", 1540, &Self::blocked, &Self::setBlocked),
        property(L"IsSelf", 1541, &Self::isSelf),
        property(L"Property", 1542, Unavailable<Self, Variant>{properties},
                 Unavailable<Self, Variant, Variant>{properties}, {L"property"}),
        property(L"CanPage", 1543, [](Self&) { return false; }),
        property(L"PhoneNumber", 1544, [](Self&, Any) { return u""; }, {L"type"}),
        property(L"ServiceId", 1545, [](Self&) { return service_id; }),
    };
    return rows;
}

} // namespace messenger_client
