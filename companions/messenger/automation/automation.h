// The automation interface Messenger.UIAutomation: the objects that other programs call, and the events that they hear.
// Objects are made when they are asked for and are the same as long as somebody holds them. They answer IDispatch and
// the dual interfaces of messenger.idl.
#pragma once

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
        std::function<std::intptr_t()> main_window;
        std::function<void()> show_main_window;
        std::function<void()> ask_sign_in; // shows the user where to sign in
        std::function<void(const std::u16string& signin)> sign_in;
        std::function<void()> auto_sign_in;                  // as a remembered account
        std::function<void(std::function<void()>)> soon;     // does the work from the message loop
        std::function<void(const Conversation&)> read;       // a program has read the History
        std::function<std::u16string()> received_files;      // a directory
        std::function<void(std::chrono::milliseconds)> hang; // for so long
        std::function<void(unsigned status)> end;            // the process, at once
    };

    // What an object stands for; equal keys are the same object.
    enum class Kind { root, main_window, contacts, contact, conversation, participants };
    using Key = std::pair<Kind, const void*>;

    Automation(Client& client, Faults& faults, Hooks hooks);
    ~Automation();
    Automation(const Automation&) = delete;
    Automation& operator=(const Automation&) = delete;

    // Offers the class to other processes, and tells them of the client's changes from now on, after all who listen to
    // them already. Error where COM refuses. Once.
    void offer();
    // True while no other program holds any object.
    bool unused() const { return objects_.empty(); }
    // True where every listener has dealt with every event.
    bool delivered() const;
    // Grants the listeners a moment to hear their last events, then cuts all clients off: two seconds at most, whatever
    // the listeners do.
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

    // Of the objects, as they come and go.
    void enter(const Key& key, IDispatch& object) { objects_[key] = &object; }
    void leave(const Key& key) { objects_.erase(key); }
    // Where the root object's listeners are; null without a root object.
    void setSource(murmelix::com::EventSource* source) { source_ = source; }
    // Tells a new listener of the windows that it has missed.
    void introduce(DWORD listener) noexcept;

  private:
    struct Event {
        DISPID id;
        std::vector<murmelix::com::Variant> arguments;
        DWORD only; // the listener's cookie, or every_sink
    };

    // The object of that key, or a new T made of the arguments.
    template <class T, class... Arguments>
    murmelix::com::Ptr<IDispatch> object(const Key& key, Arguments&&... arguments);
    void changed(const Change& change);
    void fire(DISPID event, std::vector<murmelix::com::Variant> arguments,
              DWORD only = murmelix::com::EventSource::every_sink);
    void fireWaiting() noexcept;

    Client& client_;
    Faults& faults_;
    Hooks hooks_;
    std::map<Key, IDispatch*> objects_; // not counted: an object takes itself out when it ends
    murmelix::com::EventSource* source_ = nullptr;
    std::vector<Event> waiting_; // while there is a listener that the open windows were not told to yet
    // What an event lets its listeners clear; each gets a copy, for the client has no action of its own to leave out.
    VARIANT_BOOL enable_default_ = VARIANT_TRUE;
    std::unique_ptr<murmelix::com::ClassObject> class_object_;
    bool closed_ = false;
};

} // namespace messenger_client
