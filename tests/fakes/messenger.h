// A Messenger client in memory: its user, contacts and conversation windows.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/messenger_api.h"

namespace murmelix::fakes {

class Contact : public platform::MessengerContact {
  public:
    Contact(std::u16string signin, std::u16string friendly)
        : signin_name(std::move(signin)), friendly_name(std::move(friendly)) {}
    std::u16string FriendlyName() override;
    std::u16string SigninName() override;

    std::u16string signin_name, friendly_name;
};

using ContactList = std::vector<std::shared_ptr<Contact>>;

class Window : public platform::MessengerWindow {
  public:
    explicit Window(std::int32_t hwnd) : handle(hwnd) {}
    std::int32_t Handle() override;
    std::int32_t Left() override;
    std::int32_t Top() override;
    std::int32_t Width() override;
    std::int32_t Height() override;
    std::shared_ptr<platform::MessengerContacts> Contacts() override;
    std::u16string History() override;

    // As the client does: CR LF, "NAME says:", CR LF, the message.
    void say(const std::u16string& friendly_name, const std::u16string& message);

    std::int32_t handle;
    std::int32_t left = 100, top = 200, width = 400, height = 300;
    ContactList contacts;
    std::u16string history = u"Never give out your password.";
    int history_reads = 0;
};

struct Messenger {
    std::int32_t status = 2;
    std::u16string signin_name = u"me@x", friendly_name = u"Me";
    std::int32_t unread = 0;
    ContactList contacts;
    int status_reads = 0, signin_calls = 0;
    platform::MessengerEvents events; // of the object created last
};

Messenger& messenger();

} // namespace murmelix::fakes
