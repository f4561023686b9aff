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
    return neighbours().answer("FriendlyName", friendly_name);
}

std::u16string Contact::SigninName() {
    return neighbours().answer("SigninName", signin_name);
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
    return neighbours().answer("HWND", handle);
}

std::int32_t Window::Left() {
    return neighbours().answer("Window.Left", left);
}

std::int32_t Window::Top() {
    return neighbours().answer("Window.Top", top);
}

std::int32_t Window::Width() {
    return neighbours().answer("Window.Width", width);
}

std::int32_t Window::Height() {
    return neighbours().answer("Window.Height", height);
}

std::shared_ptr<platform::MessengerContacts> Window::Contacts() {
    return std::make_shared<fakes::Contacts>(neighbours().answer("Contacts", contacts));
}

std::u16string Window::History() {
    ++history_reads;
    return neighbours().answer("History", history);
}

void Window::say(const std::u16string& friendly_name, const std::u16string& message) {
    history += u"\r\n" + friendly_name + u" says:\r\n" + message;
}

namespace {

class Api : public platform::MessengerApi {
  public:
    std::int32_t MyStatus() override {
        ++messenger().status_reads;
        return neighbours().answer("MyStatus", messenger().status);
    }

    std::u16string MySigninName() override { return neighbours().answer("MySigninName", messenger().signin_name); }

    std::u16string MyFriendlyName() override {
        return neighbours().answer("MyFriendlyName", messenger().friendly_name);
    }

    std::int32_t UnreadEmailCount(std::int32_t) override {
        return neighbours().answer("UnreadEmailCount", messenger().unread);
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
