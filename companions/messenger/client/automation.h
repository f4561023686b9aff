// The automation interface Messenger.UIAutomation: the objects that other programs call, and the events that they hear.
// Objects are made when they are asked for and are the same as long as somebody holds them. Only IDispatch is answered,
// not the published dual interfaces, whose virtual tables could not be marshalled without their type library.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>

#include "common/com/server.h"
#include "companions/messenger/chat/client.h"
#include "companions/messenger/chat/control.h"

namespace messenger_client {

// The server's class and its ProgIDs.
const murmelix::com::ServerClass& automationServer();

// Exit status of a client that was made to vanish.
inline constexpr unsigned vanished_status = 3;

class Automation {
  public:
    struct Hooks {
        std::function<HWND()> main_window;
        std::function<void()> show_main_window;
        std::function<void()> ask_sign_in; // shows the user where to sign in
        std::function<void(const std::u16string& signin)> sign_in;
        std::function<void()> auto_sign_in;            // as a remembered account
        std::function<void()> deliver_later;           // calls deliverEvents from the message loop
        std::function<void(const Conversation&)> read; // a program has read the History
    };

    // What an object stands for; equal keys are the same object.
    enum class Kind { root, main_window, contacts, contact, conversation, participants };
    using Key = std::pair<Kind, const void*>;

    Automation(Client& client, Faults& faults, Hooks hooks);
    ~Automation();
    Automation(const Automation&) = delete;
    Automation& operator=(const Automation&) = delete;

    // Offers the class to other processes. Error where COM refuses.
    void offer();
    // Fires the events that are waiting, in order.
    void deliverEvents();
    bool eventsWaiting() const { return !events_.empty(); }
    // True while no other program holds any object.
    bool unused() const { return objects_.empty(); }
    // Cuts all clients off.
    void close();
    // Ends the process at once. The class is withdrawn first: Wine 8 would hand out that of a dead process for as long
    // as its session lasts, and no other client could be reached.
    void vanish();

    murmelix::com::Ptr<IDispatch> contact(const ContactPtr& contact);
    murmelix::com::Ptr<IDispatch> contacts();
    murmelix::com::Ptr<IDispatch> contactsOf(const ConversationPtr& conversation);
    murmelix::com::Ptr<IDispatch> conversation(const ConversationPtr& conversation);
    murmelix::com::Ptr<IDispatch> mainWindow();

    Client& client() { return client_; }
    const Hooks& hooks() const { return hooks_; }
    // Carries out the faults that a test has set for a call of the member.
    void suffer(std::u16string_view member);

  private:
    friend class Answering;
    friend class Root;
    // The object of that key, or a new T made of the arguments.
    template <class T, class... Arguments>
    murmelix::com::Ptr<IDispatch> object(const Key& key, Arguments&&... arguments);
    void changed(const Change& change);
    void enqueue(DISPID event, std::function<std::vector<murmelix::com::Variant>()> arguments,
                 DWORD only = murmelix::com::EventSource::every_sink);
    // Tells a new listener of the windows that it has missed.
    void introduce(DWORD listener) noexcept;

    Client& client_;
    Faults& faults_;
    Hooks hooks_;
    std::map<Key, IDispatch*> objects_;            // not counted: an object takes itself out when it ends
    murmelix::com::EventSource* source_ = nullptr; // of the root object, while there is one
    std::unique_ptr<murmelix::com::ClassObject> class_object_;
    std::deque<std::function<void()>> events_;
    VARIANT_BOOL enable_default_ = VARIANT_TRUE; // what a sink may clear; the client has no own action to leave out
};

} // namespace messenger_client
