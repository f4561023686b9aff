// IMessengerConversationWnd.
#pragma once

#include "companions/messenger/automation/window_object.h"

namespace messenger_client {

class ConversationObject final : public WindowObject {
  public:
    ConversationObject(Automation& automation, Automation::Key key, ConversationPtr conversation);

  private:
    static const murmelix::com::Members<ConversationObject>& table();
    const murmelix::com::Interface* published() const override { return &type_library::IMessengerConversationWnd; }
    std::span<const murmelix::com::Member> members() const override { return table(); }
    // A closed window answers HWND and IsClosed alone.
    void entering(const murmelix::com::Member& member) override;

    std::intptr_t window() override { return conversation_->window(); }
    void close() override { client().close(conversation_); }
    void show() override { murmelix::platform::bringWindowUp(window()); }
    bool isClosed() override { return conversation_->closed(); }

    murmelix::com::Ptr<IDispatch> contacts() { return automation().contactsOf(conversation_); }
    std::u16string_view history();
    void addContact(Whose whose) { client().join(conversation_, find(whose)); }

    ConversationPtr conversation_;
};

} // namespace messenger_client
