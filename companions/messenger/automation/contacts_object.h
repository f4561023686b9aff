// IMessengerContacts: the contact list, or the participants of a conversation; it follows their changes.
#pragma once

#include "companions/messenger/automation/answering.h"

namespace messenger_client {

class ContactsObject final : public Answering {
  public:
    // Without a conversation: the contact list.
    ContactsObject(Automation& automation, Automation::Key key, ConversationPtr conversation);

  private:
    static const murmelix::com::Members<ContactsObject>& table();
    const murmelix::com::Interface* published() const override { return &type_library::IMessengerContacts; }
    std::span<const murmelix::com::Member> members() const override { return table(); }

    const std::vector<ContactPtr>& all();
    murmelix::com::Ptr<IDispatch> item(std::int32_t index);
    long count() { return static_cast<long>(all().size()); }
    void remove(Whose whose);
    murmelix::com::Variant newEnum();

    ConversationPtr conversation_;
};

} // namespace messenger_client
