#include "companions/messenger/automation/messenger_object.h"

namespace messenger_client {

using murmelix::com::Error;
using murmelix::com::Members;
using murmelix::com::method;
using murmelix::com::property;
using murmelix::com::Ptr;
using murmelix::com::Variant;

namespace {

constexpr IID iid_events{0xC9A6A6B6, 0x9BC1, 0x43A5, {0xB0, 0x6B, 0xE5, 0x88, 0x74, 0xEE, 0xBC, 0x96}};

} // namespace

MessengerObject::MessengerObject(Automation& automation, Automation::Key key)
    : Answering(automation, key), source_(*this, iid_events), class_info_(*this, automationServer().clsid, iid_events) {
    automation.setSource(&source_);
    source_.onAdded([&automation](DWORD listener) { automation.introduce(listener); });
}

MessengerObject::~MessengerObject() {
    automation().setSource(nullptr);
}

const Members<MessengerObject>& MessengerObject::table() {
    using Self = MessengerObject;
    using None = Unavailable<Self>;
    using One = Unavailable<Self, Any>;
    using Two = Unavailable<Self, Any, Any>;
    using Three = Unavailable<Self, Any, Any, Any>;
    constexpr char16_t properties[] = u"properties of the account";
    static const Members<Self> rows{
        property(L"ReceiveFileDirectory", 1280, &Self::receiveFileDirectory),
        method(L"StartVoice", 1281, One{u"voice conversations"}, {L"contact"}),
        property(L"MyFriendlyName", 1282, &Self::myFriendlyName),
        property(L"Window", 1283, &Self::window),
        property(L"UnreadEmailCount", 1284, &Self::unreadEmailCount, {L"folder"}),
        method(L"ViewProfile", 1285, One{u"member directory"}, {L"contact"}),
        method(L"GetContact", 1286, &Self::getContact, {L"signinName", L"serviceId"}),
        method(L"OptionsPages", 1287, Two{u"options pages"}, {L"hwnd", L"page"}),
        method(L"AddContact", 1288, &Self::addContact, {L"hwnd", L"email"}),
        method(L"FindContact", 1289, Three{u"member directory"}, {L"hwnd", L"firstName", L"lastName"}),
        method(L"InstantMessage", 1290, &Self::instantMessage, {L"contact"}),
        method(L"Signout", 1291, &Self::signout),
        method(L"SendFile", 1292, Two{u"file transfer"}, {L"contact", L"fileName"}),
        method(L"OpenInbox", 1293, None{u"mail"}),
        property(L"MyServiceName", 1294, [](Self&) { return service_name; }),
        method(L"InviteApp", 1295, Two{u"invitations"}, {L"contact", L"application"}),
        property(L"MyPhoneNumber", 1296, &Self::myPhoneNumber, {L"type"}),
        method(L"Signin", 1297, &Self::signin, {L"hwndParent", L"signinName", L"password"}),
        method(L"SendMail", 1298, One{u"mail"}, {L"contact"}),
        method(L"AutoSignin", 1299, &Self::autoSignin),
        method(L"Phone", 1300, Three{u"telephone"}, {L"contact", L"type", L"number"}),
        method(L"MediaWizard", 1301, One{u"sound and picture settings"}, {L"hwnd"}),
        method(L"Page", 1302, One{u"telephone"}, {L"contact"}),
        property(L"MyContacts", 1303, &Self::myContacts),
        property(L"MySigninName", 1304, &Self::mySigninName),
        property(L"MyStatus", 1305, &Self::myStatus, &Self::setMyStatus),
        property(L"MyProperty", 1306, Unavailable<Self, Variant>{properties},
                 Unavailable<Self, Variant, Variant>{properties}, {L"property"}),
        property(L"MyServiceId", 1307, [](Self&) { return service_id; }),
        property(L"Services", 1308, None{u"list of services"}),
    };
    return rows;
}

void* MessengerObject::interfaceFor(REFIID iid) {
    return IsEqualIID(iid, IID_IConnectionPointContainer) ? source_.container() : class_info_.answer(iid);
}

long MessengerObject::unreadEmailCount(std::int32_t folder) {
    me();
    return folder == 0 ? client().unread() : 0; // the inbox; there is no other
}

Ptr<IDispatch> MessengerObject::getContact(Whose whose, Any) {
    me();
    return automation().contact(find(whose));
}

void MessengerObject::addContact(Variant, std::u16string email) {
    me();
    if (email.empty()) {
        invalid(u"A contact needs a sign-in name.");
    }
    if (!client().addContact(email, shortName(email), Status::offline)) {
        throw Error(E_ACCESSDENIED, u"The contact list is full.");
    }
}

Ptr<IDispatch> MessengerObject::instantMessage(Whose whose) {
    me();
    const ContactPtr contact = find(whose);
    if (contact == me()) {
        invalid(u"A conversation needs somebody else.");
    }
    const ConversationPtr conversation = client().openWith(contact);
    if (!conversation) {
        throw Error(E_ACCESSDENIED, u"There are too many conversations.");
    }
    return automation().conversation(conversation);
}

std::u16string MessengerObject::myPhoneNumber(Any) {
    me();
    return {};
}

void MessengerObject::signin(Any, std::optional<std::u16string> name, Any) {
    if (!name || name->empty()) {
        return automation().hooks().ask_sign_in();
    }
    automation().hooks().sign_in(*name); // the password is of no use here, and is not kept
}

Ptr<IDispatch> MessengerObject::myContacts() {
    me();
    return automation().contacts();
}

long MessengerObject::myStatus() {
    return client().me() ? static_cast<long>(client().me()->status) : static_cast<long>(client().stage());
}

void MessengerObject::setMyStatus(std::int32_t code) {
    me();
    if (!isStatus(code) || static_cast<Status>(code) == Status::offline) {
        invalid(u"This is no status that one can choose.");
    }
    client().setMyStatus(static_cast<Status>(code));
}

} // namespace messenger_client
