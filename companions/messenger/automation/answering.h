// What the objects have in common.
#pragma once

#include <optional>
#include <string>

#include "common/com/served.h"
#include "companions/messenger/automation/automation.h"

// The interfaces that messenger.idl describes.
namespace type_library {

using murmelix::com::Interface;
extern const Interface IMessenger3, IMessengerContact, IMessengerContacts, IMessengerConversationWnd, IMessengerWindow;

} // namespace type_library

namespace messenger_client {

inline constexpr std::u16string_view service_name = u"Messenger";
inline constexpr std::u16string_view service_id = u"{2A69624F-5A16-42EC-AE0D-35BA1765A882}";

// An argument that may be left out, and that nothing depends on.
using Any = std::optional<murmelix::com::Variant>;

// Whom an argument means: an object with a SigninName, or the sign-in name itself. The object is asked before anything
// is looked up.
struct Whose {
    std::u16string signin;
    // Error(E_INVALIDARG) for Nothing; what the object answers where it has no such name.
    static Whose of(const murmelix::com::Variant& given);
};

[[noreturn]] void invalid(const char16_t* why);

// A member that is there and does nothing: what says what the client does not have. Object is the class it is of, and
// Arguments are those of the member.
template <class Object, class... Arguments>
struct Unavailable {
    const char16_t* what;
    murmelix::com::Variant operator()(Object&, Arguments...) const {
        throw murmelix::com::Error(E_NOTIMPL, std::u16string(u"This client has no ") + what + u".");
    }
};

// Base of all objects here: known to the automation while it lives, and made to fail where a test wants it.
class Answering : public murmelix::com::Served {
  protected:
    Answering(Automation& automation, Automation::Key key);
    ~Answering() override;

    void entering(const murmelix::com::Member& member) override;

    Automation& automation() { return automation_; }
    Client& client() { return automation_.client(); }
    // Error(E_INVALIDARG) where nobody has that name.
    ContactPtr find(const Whose& whose);
    // Error(ERROR_NOT_LOGGED_ON) where nobody is signed in.
    const ContactPtr& me();

  private:
    Automation& automation_;
    Automation::Key key_;
};

} // namespace messenger_client
