// The Messenger client as its automation interface shows it. Every call can throw NeighbourError, and runs the message
// loop while it waits: events and timers can come in the middle of it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/neighbour.h"

namespace murmelix::platform {

class MessengerContact {
  public:
    virtual ~MessengerContact() = default;
    virtual std::u16string FriendlyName() = 0;
    virtual std::u16string SigninName() = 0;
};

class MessengerContacts {
  public:
    virtual ~MessengerContacts() = default;
    virtual std::int32_t Count() = 0;
    virtual std::shared_ptr<MessengerContact> Item(std::int32_t index) = 0; // from 0
};

// A window as an event hands it over; it answers the conversation window's members where it is one.
class MessengerWindow {
  public:
    virtual ~MessengerWindow() = default;
    virtual std::int32_t Handle() = 0; // HWND
    virtual std::int32_t Left() = 0;   // screen pixels, as are the next three
    virtual std::int32_t Top() = 0;
    virtual std::int32_t Width() = 0;
    virtual std::int32_t Height() = 0;
    virtual std::shared_ptr<MessengerContacts> Contacts() = 0;
    virtual std::u16string History() = 0;
};

// What the client tells; functions left empty are not called. One that ends without a word has signed out.
struct MessengerEvents {
    std::function<void()> OnAppShutdown;
    std::function<void(std::int32_t result)> OnSignin;
    std::function<void()> OnSignout;
    std::function<void(std::int32_t result, std::int32_t status)> OnMyStatusChange;
    std::function<void(std::int32_t result, const std::u16string& previous)> OnMyFriendlyNameChange;
    std::function<void()> OnUnreadEmailChange;
    std::function<void(std::shared_ptr<MessengerWindow>)> OnIMWindowCreated;
    std::function<void(std::shared_ptr<MessengerWindow>)> OnIMWindowDestroyed;
    std::function<void(std::shared_ptr<MessengerContact>, std::shared_ptr<MessengerWindow>)> OnIMWindowContactAdded;
    std::function<void(std::shared_ptr<MessengerContact>, std::shared_ptr<MessengerWindow>)> OnIMWindowContactRemoved;
    // Not told by the client: it was not there, and is there again; what it told meanwhile is not known.
    std::function<void()> Returned;
};

class MessengerApi {
  public:
    virtual ~MessengerApi() = default;
    virtual std::int32_t MyStatus() = 0;
    virtual std::u16string MySigninName() = 0;
    virtual std::u16string MyFriendlyName() = 0;
    virtual std::int32_t UnreadEmailCount(std::int32_t folder) = 0;
    virtual std::shared_ptr<MessengerContacts> MyContacts() = 0;
    virtual void Signin(std::int32_t parent_window, const std::u16string& signin_name,
                        const std::u16string& password) = 0;
};

// The client's automation object, made at the first call, its events heard from then on. Never null; where there is no
// client, every call throws.
std::unique_ptr<MessengerApi> createMessengerApi(MessengerEvents events);

} // namespace murmelix::platform
