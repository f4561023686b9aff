#include "tests/fakes/messenger.h"

#include "tests/fakes/fakes.h"

namespace murmelix {

namespace fakes {

Messenger& messenger() {
    return state().messenger;
}

Neighbours& neighbours() {
    return state().neighbours;
}

void Neighbours::enter(std::string_view call) {
    ++calls;
    if (during && !inside_) {
        inside_ = true;
        during(call);
        inside_ = false;
    }
    if (gone || calls == fail_at || failing.contains(call)) {
        throw platform::NeighbourError(static_cast<std::int32_t>(0x80010108), "the neighbour is gone");
    }
}

std::u16string Contact::FriendlyName() {
    neighbours().enter("FriendlyName");
    return friendly_name;
}

std::u16string Contact::SigninName() {
    neighbours().enter("SigninName");
    return signin_name;
}

namespace {

class Contacts : public platform::MessengerContacts {
  public:
    explicit Contacts(ContactList list) : list_(std::move(list)) {}

    std::int32_t Count() override {
        neighbours().enter("Count");
        return static_cast<std::int32_t>(list_.size());
    }

    std::shared_ptr<platform::MessengerContact> Item(std::int32_t index) override {
        neighbours().enter("Item");
        if (index < 0 || static_cast<std::size_t>(index) >= list_.size()) {
            throw platform::NeighbourError(static_cast<std::int32_t>(0x80070057), "no contact has the index");
        }
        return list_[static_cast<std::size_t>(index)];
    }

  private:
    ContactList list_;
};

} // namespace

std::int32_t Window::Handle() {
    neighbours().enter("HWND");
    return handle;
}

std::int32_t Window::Left() {
    neighbours().enter("Window.Left");
    return left;
}

std::int32_t Window::Top() {
    neighbours().enter("Window.Top");
    return top;
}

std::int32_t Window::Width() {
    neighbours().enter("Window.Width");
    return width;
}

std::int32_t Window::Height() {
    neighbours().enter("Window.Height");
    return height;
}

std::shared_ptr<platform::MessengerContacts> Window::Contacts() {
    neighbours().enter("Contacts");
    return std::make_shared<fakes::Contacts>(contacts);
}

std::u16string Window::History() {
    ++history_reads;
    neighbours().enter("History");
    return history;
}

void Window::say(const std::u16string& friendly_name, const std::u16string& message) {
    history += u"\r\n" + friendly_name + u" says:\r\n" + message;
}

namespace {

class Api : public platform::MessengerApi {
  public:
    std::int32_t MyStatus() override {
        ++messenger().status_reads;
        neighbours().enter("MyStatus");
        return messenger().status;
    }

    std::u16string MySigninName() override {
        neighbours().enter("MySigninName");
        return messenger().signin_name;
    }

    std::u16string MyFriendlyName() override {
        neighbours().enter("MyFriendlyName");
        return messenger().friendly_name;
    }

    std::int32_t UnreadEmailCount(std::int32_t) override {
        neighbours().enter("UnreadEmailCount");
        return messenger().unread;
    }

    std::shared_ptr<platform::MessengerContacts> MyContacts() override {
        neighbours().enter("MyContacts");
        return std::make_shared<fakes::Contacts>(messenger().contacts);
    }

    void Signin(std::int32_t, const std::u16string&, const std::u16string&) override {
        neighbours().enter("Signin");
        ++messenger().signin_calls;
    }
};

} // namespace

} // namespace fakes

bool platform::neighbourCallPending() {
    return fakes::neighbours().call_pending;
}

std::unique_ptr<platform::MessengerApi> platform::createMessengerApi(MessengerEvents events) {
    fakes::messenger().events = std::move(events);
    return std::make_unique<fakes::Api>();
}

} // namespace murmelix
