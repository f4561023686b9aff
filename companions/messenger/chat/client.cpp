#include "companions/messenger/chat/client.h"

#include <algorithm>
#include <utility>

#include "common/text.h"

namespace messenger_client {

using murmelix::LetterCase;
using murmelix::sameText;

namespace {

constexpr std::u16string_view safety_notice =
    u"Keep your password and card numbers to yourself: nobody needs them in a conversation.";

template <class T>
bool removeFrom(std::vector<std::shared_ptr<T>>& all, const std::shared_ptr<T>& one) {
    return std::erase(all, one) != 0;
}

} // namespace

std::u16string messageLines(std::u16string_view text) {
    std::u16string lines;
    lines.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (unit == u'\r' || unit == u'\n') {
            if (unit == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') {
                ++i;
            }
            lines += u"\r\n";
        } else {
            lines += unit == u'\0' ? u'\xFFFD' : unit;
        }
    }
    while (lines.ends_with(u"\r\n")) {
        lines.resize(lines.size() - 2);
    }
    return lines;
}

Conversation::Conversation(std::vector<ContactPtr> participants, std::shared_ptr<LiveTalk> live)
    : live_(std::move(live)), participants_(std::move(participants)), history_(safety_notice) {
    arrange();
}

void Conversation::arrange() {
    if (live_) {
        std::ranges::stable_sort(participants_, std::ranges::greater(),
                                 [](const ContactPtr& contact) { return contact->friendly.size(); });
    }
}

bool Conversation::has(const Contact& contact) const {
    return std::any_of(participants_.begin(), participants_.end(),
                       [&](const ContactPtr& participant) { return participant.get() == &contact; });
}

void Client::tell(const Change& change) {
    // By index: a listener may add another.
    for (std::size_t i = 0; i < listeners_.size(); ++i) {
        listeners_[i](change);
    }
}

void Client::signIn(std::u16string_view signin, std::u16string_view friendly, Status status) {
    // Copies: the texts may be those of an account, and accounts move.
    const std::u16string name = oneLine(signin);
    const std::u16string shown = oneLine(friendly);
    leaveAccount();
    const Account* known = accounts_.find(name);
    const long unread_before = known ? known->unread : unread_;
    Account& account = accounts_.use(name);
    if (!shown.empty()) {
        account.friendly = shown;
    }
    me_ = std::make_shared<Contact>(Contact{account.signin, account.friendly, status});
    unread_ = unread_before;
    const std::vector<ContactPtr> added = std::exchange(contacts_, {});
    by_signin_.clear();
    for (const auto& contacts : {account.contacts, added}) {
        for (const ContactPtr& contact : contacts) {
            keep(contact);
        }
    }
    enter();
}

void Client::signInLive(std::u16string_view signin, std::u16string_view friendly, Status status) {
    leaveAccount();
    me_ = std::make_shared<Contact>(Contact{oneLine(signin), oneLine(friendly), status});
    live_ = true;
    contacts_.clear();
    by_signin_.clear();
    unread_ = 0;
    enter();
}

void Client::enter() {
    stage_ = Stage::in;
    tell({.kind = Change::Kind::signed_in});
    tell({.kind = Change::Kind::my_status});
}

void Client::setStage(Stage stage) {
    leaveAccount();
    if (std::exchange(stage_, stage) != stage) {
        tell({.kind = Change::Kind::signing_in});
    }
}

void Client::failSignIn(long result) {
    leaveAccount();
    stage_ = Stage::out;
    tell({.kind = Change::Kind::signed_in, .number = result});
}

void Client::signOut() {
    if (signingIn()) {
        failSignIn(signin_cancelled);
    } else {
        leaveAccount();
    }
}

void Client::leaveAccount() {
    if (!signedIn()) {
        return;
    }
    while (!conversations_.empty()) {
        close(ConversationPtr(conversations_.back()));
    }
    keepAccount();
    me_.reset();
    live_ = false;
    contacts_.clear();
    by_signin_.clear();
    unread_ = 0;
    stage_ = Stage::out;
    tell({.kind = Change::Kind::signed_out});
}

void Client::keepAccount() {
    if (!signedIn() || live_) {
        return;
    }
    Account& account = accounts_.use(me_->signin);
    account.friendly = me_->friendly;
    if (isChosen(me_->status)) {
        account.status = me_->status;
    } else if (me_->status == Status::idle) {
        account.status = Status::online;
    }
    account.contacts = contacts_;
    account.unread = unread_;
}

void Client::setMyStatus(Status status) {
    if (!signedIn() || me_->status == status) {
        return;
    }
    me_->status = status;
    tell({.kind = Change::Kind::my_status});
}

void Client::setMyName(std::u16string_view friendly) {
    if (!signedIn()) {
        return;
    }
    const std::u16string before = std::exchange(me_->friendly, oneLine(friendly));
    if (before != me_->friendly) {
        tell({.kind = Change::Kind::my_name, .text = before});
    }
}

void Client::setUnread(long count) {
    unread_ = count;
    tell({.kind = Change::Kind::unread, .number = count});
}

ContactPtr Client::find(std::u16string_view signin) const {
    if (me_ && sameText(me_->signin, signin, LetterCase::ignored)) {
        return me_;
    }
    const auto found = by_signin_.find(murmelix::toLower(signin));
    return found == by_signin_.end() ? nullptr : found->second;
}

bool Client::keep(const ContactPtr& contact) {
    if (contacts_.size() >= most_contacts || find(contact->signin)) {
        return false;
    }
    by_signin_.emplace(murmelix::toLower(contact->signin), contact);
    contacts_.push_back(contact);
    return true;
}

ContactPtr Client::addContact(std::u16string_view signin, std::u16string_view friendly, Status status) {
    if (ContactPtr known = find(signin)) {
        return known;
    }
    auto contact = std::make_shared<Contact>(Contact{oneLine(signin), oneLine(friendly), status});
    if (!keep(contact)) {
        return find(contact->signin); // known by its name on one line, or one too many
    }
    tell({.kind = Change::Kind::contact_added, .contact = contact});
    return contact;
}

void Client::removeContact(const ContactPtr& contact) {
    const ContactPtr kept = contact;
    if (removeFrom(contacts_, kept)) {
        by_signin_.erase(murmelix::toLower(kept->signin));
        tell({.kind = Change::Kind::contact_removed, .contact = kept});
    }
}

void Client::rename(const ContactPtr& contact, std::u16string_view friendly) {
    if (contact == me_) {
        setMyName(friendly);
        return;
    }
    const std::u16string before = std::exchange(contact->friendly, oneLine(friendly));
    if (before != contact->friendly) {
        for (const ConversationPtr& conversation : conversations_) {
            conversation->arrange();
        }
        tell({.kind = Change::Kind::contact_renamed, .contact = contact, .text = before});
    }
}

void Client::setStatus(const ContactPtr& contact, Status status) {
    if (contact == me_) {
        setMyStatus(status);
    } else if (contact->status != status) {
        contact->status = status;
        tell({.kind = Change::Kind::contact_status, .contact = contact});
    }
}

ConversationPtr Client::openWith(const ContactPtr& contact) {
    if (live_ && opener_) {
        return opener_(contact);
    }
    for (const ConversationPtr& conversation : conversations_) {
        if (conversation->participants() == std::vector{contact}) {
            return conversation;
        }
    }
    return open({contact});
}

ConversationPtr Client::open(std::vector<ContactPtr> participants, std::shared_ptr<LiveTalk> live) {
    if (conversations_.size() >= most_conversations) {
        return nullptr;
    }
    auto conversation = std::make_shared<Conversation>(std::move(participants), std::move(live));
    conversations_.push_back(conversation);
    try {
        tell({.kind = Change::Kind::window_created, .conversation = conversation});
    } catch (...) {
        close(conversation);
        throw;
    }
    return conversation;
}

void Client::close(const ConversationPtr& conversation) {
    const ConversationPtr kept = conversation;
    if (!removeFrom(conversations_, kept)) {
        return;
    }
    kept->closed_ = true;
    tell({.kind = Change::Kind::window_destroyed, .conversation = kept});
}

void Client::join(const ConversationPtr& conversation, const ContactPtr& contact) {
    if (conversation->closed() || conversation->has(*contact)) {
        return;
    }
    conversation->participants_.push_back(contact);
    conversation->arrange();
    tell({.kind = Change::Kind::window_joined, .contact = contact, .conversation = conversation});
}

void Client::leave(const ConversationPtr& conversation, const ContactPtr& contact) {
    if (!conversation->closed() && removeFrom(conversation->participants_, ContactPtr(contact))) {
        tell({.kind = Change::Kind::window_left, .contact = contact, .conversation = conversation});
    }
}

bool Client::say(const ConversationPtr& conversation, const ContactPtr& writer, std::u16string_view text) {
    const std::u16string lines = messageLines(text);
    const std::u16string added = u"\r\n" + writer->friendly + u" says:\r\n" + lines;
    if (conversation->closed() || lines.empty() || !conversation->hasRoomFor(added)) {
        return false;
    }
    tell({.kind = Change::Kind::said, .contact = writer, .conversation = conversation, .text = lines});
    append(conversation, added);
    return true;
}

bool Client::append(const ConversationPtr& conversation, std::u16string_view text) {
    if (conversation->closed() || !conversation->hasRoomFor(text)) {
        return false;
    }
    if (text.empty()) {
        return true;
    }
    conversation->history_ += text;
    tell({.kind = Change::Kind::text_appended, .conversation = conversation, .text = text});
    return true;
}

void Client::shutDown() {
    tell({.kind = Change::Kind::shutting_down});
}

} // namespace messenger_client
