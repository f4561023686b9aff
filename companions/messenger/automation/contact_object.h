// IMessengerContact.
#pragma once

#include "companions/messenger/automation/answering.h"

namespace messenger_client {

class ContactObject final : public Answering {
  public:
    ContactObject(Automation& automation, Automation::Key key, ContactPtr contact);

  private:
    static const murmelix::com::Members<ContactObject>& table();
    const murmelix::com::Interface* published() const override { return &type_library::IMessengerContact; }
    std::span<const murmelix::com::Member> members() const override { return table(); }

    std::u16string friendlyName() { return contact_->friendly; }
    long status() { return static_cast<long>(contact_->status); }
    std::u16string signinName() { return contact_->signin; }
    bool blocked() { return contact_->blocked; }
    void setBlocked(bool blocked) { contact_->blocked = blocked; }
    bool isSelf() { return contact_ == client().me(); }

    ContactPtr contact_;
};

} // namespace messenger_client
