#include "platform/win32/messenger_client.h"

#include "platform/win32/neighbour_calls.h"

namespace murmelix::platform {

namespace win32 {

namespace {

using com::Object;
using com::Ptr;
using com::Variant;

constexpr IID messenger_events{0xC9A6A6B6, 0x9BC1, 0x43A5, {0xB0, 0x6B, 0xE5, 0x88, 0x74, 0xEE, 0xBC, 0x96}};
constexpr IID conversation_window{0xD6B0E4C9, 0xFAD6, 0x4885, {0xB2, 0x71, 0x0D, 0xC5, 0xA5, 0x84, 0xAD, 0xF8}};

enum EventId : DISPID {
    on_signin = 1024,
    on_signout = 1025,
    on_my_friendly_name_change = 1029,
    on_my_status_change = 1031,
    on_app_shutdown = 1032,
    on_unread_email_change = 1039,
    on_im_window_created = 1041,
    on_im_window_destroyed = 1042,
    on_im_window_contact_added = 1043,
    on_im_window_contact_removed = 1044,
};

class Contact final : public MessengerContact {
  public:
    explicit Contact(Object contact) : contact_(std::move(contact)) {}
    std::u16string FriendlyName() override {
        return neighbourCall([&] { return contact_.get(u"FriendlyName").toText(); });
    }
    std::u16string SigninName() override {
        return neighbourCall([&] { return contact_.get(u"SigninName").toText(); });
    }

  private:
    Object contact_;
};

class ContactList final : public MessengerContacts {
  public:
    explicit ContactList(Object contacts) : contacts_(std::move(contacts)) {}
    std::int32_t Count() override {
        return neighbourCall([&] { return contacts_.get(u"Count").toInt32(); });
    }
    std::shared_ptr<MessengerContact> Item(std::int32_t index) override {
        return neighbourCall([&] { return std::make_shared<Contact>(contacts_.object(u"Item", {Variant(index)})); });
    }

  private:
    Object contacts_;
};

class Window final : public MessengerWindow {
  public:
    explicit Window(Ptr<IDispatch> window) : window_(std::move(window)) {}
    std::int32_t Handle() override { return number(u"HWND"); }
    std::int32_t Left() override { return number(u"Left"); }
    std::int32_t Top() override { return number(u"Top"); }
    std::int32_t Width() override { return number(u"Width"); }
    std::int32_t Height() override { return number(u"Height"); }
    std::shared_ptr<MessengerContacts> Contacts() override {
        return neighbourCall([&] { return std::make_shared<ContactList>(conversation().object(u"Contacts")); });
    }
    std::u16string History() override {
        return neighbourCall([&] { return conversation().get(u"History").toText(); });
    }

  private:
    std::int32_t number(const char16_t* name) {
        return neighbourCall([&] { return window_.get(name).toInt32(); });
    }
    // Where the interface cannot be had, the window's own object answers the names.
    Object& conversation() {
        if (!conversation_) {
            auto found = Ptr<IDispatch>(window_.dispatch()).as<IDispatch>(conversation_window);
            conversation_ = found ? Object(std::move(found)) : window_;
        }
        return conversation_;
    }

    Object window_, conversation_;
};

std::shared_ptr<MessengerWindow> windowOf(const Variant& argument) {
    return std::make_shared<Window>(argument.toObject());
}

std::shared_ptr<MessengerContact> contactOf(const Variant& argument) {
    return std::make_shared<Contact>(Object(argument.toObject()));
}

template <class Function, class... Arguments>
void raise(const Function& event, Arguments&&... arguments) {
    if (event) {
        event(std::forward<Arguments>(arguments)...);
    }
}

// An event with too few arguments throws and is dropped.
void deliver(const MessengerEvents& events, DISPID event, const std::vector<Variant>& arguments) {
    switch (event) {
    case on_signin:
        return raise(events.OnSignin, arguments.at(0).toInt32());
    case on_signout:
        return raise(events.OnSignout);
    case on_my_friendly_name_change:
        return raise(events.OnMyFriendlyNameChange, arguments.at(0).toInt32(), arguments.at(1).toText());
    case on_my_status_change:
        return raise(events.OnMyStatusChange, arguments.at(0).toInt32(), arguments.at(1).toInt32());
    case on_app_shutdown:
        return raise(events.OnAppShutdown);
    case on_unread_email_change:
        return raise(events.OnUnreadEmailChange);
    case on_im_window_created:
        return raise(events.OnIMWindowCreated, windowOf(arguments.at(0)));
    case on_im_window_destroyed:
        return raise(events.OnIMWindowDestroyed, windowOf(arguments.at(0)));
    case on_im_window_contact_added:
        return raise(events.OnIMWindowContactAdded, contactOf(arguments.at(0)), windowOf(arguments.at(1)));
    case on_im_window_contact_removed:
        return raise(events.OnIMWindowContactRemoved, contactOf(arguments.at(0)), windowOf(arguments.at(1)));
    default:
        return;
    }
}

class MessengerClient final : public MessengerApi {
  public:
    MessengerClient(const char16_t* prog_id, MessengerEvents events)
        : events_(std::move(events)),
          client_(prog_id, messenger_events,
                  [this](DISPID event, auto& arguments) { deliver(events_, event, arguments); },
                  // With the client the session ends, whatever it was.
                  {.ended = [this] { raise(events_.OnSignout); }, .returned = [this] { raise(events_.Returned); }}) {}

    std::int32_t MyStatus() override {
        return neighbourCall([&] { return client_.object().get(u"MyStatus").toInt32(); });
    }
    std::u16string MySigninName() override {
        return neighbourCall([&] { return client_.object().get(u"MySigninName").toText(); });
    }
    std::u16string MyFriendlyName() override {
        return neighbourCall([&] { return client_.object().get(u"MyFriendlyName").toText(); });
    }
    std::int32_t UnreadEmailCount(std::int32_t folder) override {
        return neighbourCall([&] { return client_.object().get(u"UnreadEmailCount", {Variant(folder)}).toInt32(); });
    }
    std::shared_ptr<MessengerContacts> MyContacts() override {
        return neighbourCall([&] { return std::make_shared<ContactList>(client_.object().object(u"MyContacts")); });
    }
    void Signin(std::int32_t parent_window, const std::u16string& signin_name,
                const std::u16string& password) override {
        neighbourCall([&] {
            client_.object().call(u"Signin", {Variant(parent_window), Variant(signin_name), Variant(password)});
        });
    }

  private:
    MessengerEvents events_;
    Connection client_;
};

} // namespace

std::unique_ptr<MessengerApi> connectMessenger(const char16_t* prog_id, MessengerEvents events) {
    waitForBusyNeighbours();
    return std::make_unique<MessengerClient>(prog_id, std::move(events));
}

} // namespace win32

std::unique_ptr<MessengerApi> createMessengerApi(MessengerEvents events) {
    return win32::connectMessenger(u"Messenger.UIAutomation", std::move(events));
}

} // namespace murmelix::platform
