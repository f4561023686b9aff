#include "companions/messenger/chat/sign_in_form.h"

#include <utility>

#include "common/text.h"

namespace messenger_client {

const SignInRequest& SignInForm::proposeLast() {
    if (!accounts_.all().empty()) {
        return propose(accounts_.all().front());
    }
    return propose(Account{std::u16string(demo_account.signin), std::u16string(demo_account.friendly)});
}

const SignInRequest& SignInForm::proposeNobody() {
    return propose(Account{});
}

const SignInRequest& SignInForm::propose(const Account& account) {
    proposed_ = {account.signin, account.friendly, account.status, account.remembered, account.automatic};
    put_ = account.friendly;
    return proposed_;
}

std::optional<std::u16string> SignInForm::friendlyFor(std::u16string_view typed, std::u16string_view shown) {
    if (shown != put_) {
        return std::nullopt; // somebody has typed it
    }
    const std::u16string signin = completedSignin(murmelix::trim(typed));
    std::u16string friendly;
    if (const Account* known = accounts_.find(signin)) {
        friendly = known->friendly;
    } else if (murmelix::sameText(signin, proposed_.signin, murmelix::LetterCase::ignored)) {
        friendly = proposed_.friendly;
    } else {
        friendly = nameTypedForSignin(typed);
    }
    if (std::exchange(put_, friendly) == friendly) {
        return std::nullopt;
    }
    return friendly;
}

SignInRequest SignInForm::completed(SignInRequest fields) {
    fields.friendly = murmelix::trim(friendlyFor(fields.signin, fields.friendly).value_or(fields.friendly));
    fields.signin = completedSignin(murmelix::trim(fields.signin));
    fields.remember = fields.remember || fields.automatic;
    return fields;
}

} // namespace messenger_client
