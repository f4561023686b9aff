#include "companions/messenger/chat/signing_in.h"

namespace messenger_client {

SigningIn::SigningIn(Client& client) : client_(client) {}

void SigningIn::begin(std::u16string_view signin, std::u16string_view friendly, Status status, long long now) {
    client_.signOut();
    wanted_ = {oneLine(signin), oneLine(friendly), status};
    stage_began_ = now;
    if (time_ <= 0 && !held_) {
        client_.signIn(wanted_.signin, wanted_.friendly, wanted_.status);
        return;
    }
    client_.setStage(Stage::connecting);
}

std::optional<long long> SigningIn::dueAt() const {
    if (held_ || !client_.signingIn()) {
        return std::nullopt;
    }
    return stage_began_ + time_ / 2;
}

void SigningIn::advance(long long now) {
    while (const auto due = dueAt()) {
        if (*due > now) {
            return;
        }
        next(*due);
    }
}

bool SigningIn::next(long long now) {
    if (client_.stage() == Stage::connecting) {
        stage_began_ = now;
        client_.setStage(Stage::synchronising);
        return true;
    }
    return finish();
}

bool SigningIn::finish() {
    if (!client_.signingIn()) {
        return false;
    }
    const Wanted wanted = wanted_; // a listener may begin another
    client_.signIn(wanted.signin, wanted.friendly, wanted.status);
    return true;
}

bool SigningIn::fail(long result) {
    if (!client_.signingIn()) {
        return false;
    }
    client_.failSignIn(result);
    return true;
}

} // namespace messenger_client
