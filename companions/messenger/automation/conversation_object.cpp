#include "companions/messenger/automation/conversation_object.h"

namespace messenger_client {

using murmelix::com::Error;
using murmelix::com::Member;
using murmelix::com::Members;
using murmelix::com::method;
using murmelix::com::property;

namespace {

constexpr DISPID id_hwnd = 2048, id_is_closed = 2055;

} // namespace

ConversationObject::ConversationObject(Automation& automation, Automation::Key key, ConversationPtr conversation)
    : WindowObject(automation, key), conversation_(std::move(conversation)) {}

const Members<ConversationObject>& ConversationObject::table() {
    using Self = ConversationObject;
    static const Members<Self> rows(WindowObject::table(),
                                    {
                                        property(L"Contacts", 2057, &Self::contacts),
                                        property(L"History", 2058, &Self::history),
                                        method(L"AddContact", 2059, &Self::addContact, {L"contact"}),
                                    });
    return rows;
}

void ConversationObject::entering(const Member& member) {
    WindowObject::entering(member);
    // Not one of the results that say that the whole server is gone: it is only the window.
    if (conversation_->closed() && member.id != id_hwnd && member.id != id_is_closed) {
        throw Error(HRESULT_FROM_WIN32(ERROR_INVALID_WINDOW_HANDLE), u"The conversation window is closed.");
    }
}

std::u16string_view ConversationObject::history() {
    automation().hooks().read(*conversation_);
    return conversation_->history();
}

} // namespace messenger_client
