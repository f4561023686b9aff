// IMessenger, IMessenger2, IMessenger3 and the source of DMessengerEvents: the object that programs begin with.
#pragma once

#include "companions/messenger/automation/answering.h"

namespace messenger_client {

class MessengerObject final : public Answering {
  public:
    MessengerObject(Automation& automation, Automation::Key key);

  private:
    ~MessengerObject() override;
    static const murmelix::com::Members<MessengerObject>& table();
    const murmelix::com::Interface* published() const override { return &type_library::IMessenger3; }
    std::span<const murmelix::com::Member> members() const override { return table(); }
    void* interfaceFor(REFIID iid) override;

    std::u16string receiveFileDirectory() { return automation().hooks().received_files(); }
    std::u16string myFriendlyName() { return me()->friendly; }
    murmelix::com::Ptr<IDispatch> window() { return automation().mainWindow(); }
    long unreadEmailCount(std::int32_t folder);
    murmelix::com::Ptr<IDispatch> getContact(Whose whose, Any service);
    void addContact(murmelix::com::Variant owner, std::u16string email);
    murmelix::com::Ptr<IDispatch> instantMessage(Whose whose);
    void signout() { client().signOut(); }
    std::u16string myPhoneNumber(Any kind);
    void signin(Any owner, std::optional<std::u16string> name, Any password);
    void autoSignin() { automation().hooks().auto_sign_in(); }
    murmelix::com::Ptr<IDispatch> myContacts();
    std::u16string mySigninName() { return me()->signin; }
    long myStatus();
    void setMyStatus(std::int32_t code);

    murmelix::com::EventSource source_;
    murmelix::com::ClassInfo class_info_;
};

} // namespace messenger_client
