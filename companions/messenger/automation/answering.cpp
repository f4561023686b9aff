#include "companions/messenger/automation/answering.h"

#include <cwchar>

#include "common/com/client.h"

namespace messenger_client {

using murmelix::com::Error;
using murmelix::com::Variant;

void invalid(const char16_t* why) {
    throw Error(E_INVALIDARG, why);
}

Whose Whose::of(const Variant& given) {
    if (given.type() != VT_DISPATCH && given.type() != VT_UNKNOWN) {
        return {given.toText()};
    }
    auto object = given.toObject();
    if (!object) {
        invalid(u"There is no contact.");
    }
    return {murmelix::com::Object(std::move(object)).get(u"SigninName").toText()};
}

Answering::Answering(Automation& automation, Automation::Key key) : automation_(automation), key_(key) {
    automation_.enter(key_, *this);
}

Answering::~Answering() {
    automation_.leave(key_);
}

void Answering::entering(const murmelix::com::Member& member) {
    automation_.suffer(murmelix::com::narrow(member.name, std::wcslen(member.name)));
}

ContactPtr Answering::find(const Whose& whose) {
    ContactPtr contact = client().find(whose.signin);
    if (!contact) {
        invalid(u"No contact has this sign-in name.");
    }
    return contact;
}

const ContactPtr& Answering::me() {
    if (!client().me()) {
        throw Error(HRESULT_FROM_WIN32(ERROR_NOT_LOGGED_ON), u"Nobody is signed in.");
    }
    return client().me();
}

} // namespace messenger_client
