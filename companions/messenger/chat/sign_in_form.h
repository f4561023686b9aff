// What stands in the form in which one signs in: which account is proposed, and what typing another name changes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "companions/messenger/chat/accounts.h"

namespace messenger_client {

// Who shall be signed in, and what is to be remembered of it.
struct SignInRequest {
    std::u16string signin, friendly;
    Status status = Status::online;
    bool remember = false;
    bool automatic = false;
};

// Where nobody has signed in yet.
struct DemoAccount {
    std::u16string_view signin, friendly;
};
inline constexpr DemoAccount demo_account{u"you@messenger.example", u"You"};

class SignInForm {
  public:
    explicit SignInForm(const Accounts& accounts) : accounts_(accounts) {}

    // What the fields are to show: the account used last, the demo account where there is none; ...
    const SignInRequest& proposeLast();
    // ... nothing, for somebody else; ...
    const SignInRequest& proposeNobody();
    // ... that account.
    const SignInRequest& propose(const Account& account);

    // The name for people to show from now on, where another sign-in name has been typed: a name that the form has put
    // there itself belongs to its account alone. Nothing where the field keeps what it shows.
    std::optional<std::u16string> friendlyFor(std::u16string_view typed, std::u16string_view shown);
    // Of the fields as they are: with the sign-in name completed, and without a name that belongs to another account.
    SignInRequest completed(SignInRequest fields);

  private:
    const Accounts& accounts_;
    SignInRequest proposed_;
    std::u16string put_; // by the form into the field of the name for people
};

} // namespace messenger_client
