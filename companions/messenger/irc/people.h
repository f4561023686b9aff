// Everybody who is known: who is in channels, and of those who are not, the ones met last.
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "companions/messenger/irc/case_mapping.h"
#include "companions/messenger/irc/line.h"
#include "companions/messenger/irc/person.h"

namespace messenger_client::irc {

// People known at a time: several times as many as the greatest channels have. Others are met anew with each line.
inline constexpr std::size_t most_people = 30'000;
// Of them, who is in no channel: an evening's writers of a busy streaming chat, whose channels have no members.
inline constexpr std::size_t most_absent = 2'000;
// Bytes of a nick: twice what any server allows. Who has a longer one is nobody.
inline constexpr std::size_t longest_nick = 100;

// A person as the session knows it.
struct Known : Person {
    std::string name;                                        // the nick as sent
    std::string key;                                         // the same folded
    std::size_t channels = 0;                                // of the own ones in which the person is
    bool registered = false;                                 // else there were too many: known for one line
    bool has_spoken = false;                                 // so the sign-in name stays
    bool holds_signin = false;                               // nobody else gets it
    bool in_split = false;                                   // left by a netsplit
    std::list<std::shared_ptr<Known>>::iterator absent = {}; // where the person is in no channel
};
using KnownPtr = std::shared_ptr<Known>;

class People {
  public:
    // `network` is a part of sign-in names.
    explicit People(std::u16string network) : network_(std::move(network)) {}

    void setNetwork(std::u16string network) { network_ = std::move(network); }
    // Unless a line of the person was told already.
    void chooseSignin(const KnownPtr& person);
    CaseMapping caseMapping() const { return mapping_; }
    void setCaseMapping(CaseMapping mapping);

    KnownPtr find(std::string_view nick) const;
    // The person of that prefix, who may be new; what the prefix tells is kept. Null where it is no person's. Where the
    // account is known to be another one's than that of who had this nick and left, it is somebody new.
    KnownPtr meet(const Prefix& prefix, std::string_view account = {});
    // The same, with the streaming chat's number for good, which tells the person whatever the nick is.
    KnownPtr meetUser(const Prefix& prefix, std::string_view user_id);

    // True where something has changed.
    bool setAccount(const KnownPtr& person, std::string_view account);
    bool setShownName(const KnownPtr& person, std::string_view name);
    void rename(const KnownPtr& person, std::string_view nick);
    // From the first line on the sign-in name stays.
    void hasSpoken(const KnownPtr& person) { person->has_spoken = true; }

    // Of a channel; entered only by who is registered.
    void enter(const KnownPtr& person);
    void leave(const KnownPtr& person);

    std::size_t size() const { return by_key_.size(); }

  private:
    KnownPtr add(std::string_view nick);
    void forget(const KnownPtr& person);
    void forgetButName(const KnownPtr& person);
    void putAbsent(const KnownPtr& person);
    void touch(const KnownPtr& person);
    void releaseSignin(Known& person);

    std::u16string network_;
    CaseMapping mapping_ = CaseMapping::rfc1459;
    std::unordered_map<std::string, KnownPtr> by_key_;
    std::unordered_map<std::u16string, KnownPtr> by_user_id_;
    std::list<KnownPtr> absent_;                 // met last first
    std::unordered_set<std::u16string> signins_; // in lower case
    long long namesakes_ = 0;
};

} // namespace messenger_client::irc
