#include "companions/agent/automation/objects.h"

#include <algorithm>

#include "common/text.h"

namespace agent::automation {

Label Label::of(const Variant& given) {
    std::u16string text = murmelix::com::plain(given).toText();
    if (text.size() > longest_label) {
        throw Error(E_INVALIDARG, u"A name has at most " + murmelix::toText(longest_label) + u" letters.");
    }
    return {std::move(text)};
}

ClientObject::ClientObject(std::shared_ptr<Client> client) : client_(std::move(client)) {
    client_->joined(this);
}

ClientObject::~ClientObject() {
    client_->left(this);
}

stage::Actor& CharacterPart::actor() const {
    stage::Actor* found = server().stage().find(loaded_->actor);
    if (!found) {
        throw Error(RPC_E_DISCONNECTED, u"The character \"" + loaded_->id + u"\" is not loaded any more.");
    }
    return *found;
}

void refuse(const std::u16string& reason) {
    throw Error(E_FAIL, reason);
}

void refuseSpeechInput() {
    refuse(u"No speech recognition is installed.");
}

std::int16_t small(int value) {
    return static_cast<std::int16_t>(std::clamp(value, -32768, 32767));
}

bool sameName(std::u16string_view a, std::u16string_view b) {
    return murmelix::sameText(a, b, murmelix::LetterCase::ignored);
}

} // namespace agent::automation
