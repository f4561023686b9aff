// What one knows of a network while connected: people, channels, what is said. It reads the server's lines and tells
// what they mean; it sends nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "companions/messenger/irc/batches.h"
#include "companions/messenger/irc/event.h"
#include "companions/messenger/irc/features.h"
#include "companions/messenger/irc/line.h"
#include "companions/messenger/irc/outbox.h"
#include "companions/messenger/irc/people.h"
#include "companions/messenger/irc/settings.h"

namespace messenger_client::irc {

// People of a channel: four times the greatest of today. Who comes then is not in the list, but is heard.
inline constexpr std::size_t most_members = 20'000;
// Netsplits of which it is remembered that they were told, and for how long: people leave one by one for minutes.
inline constexpr std::size_t most_splits = 20;
inline constexpr long long split_time = 10 * 60'000;

class Network {
  public:
    using Tell = std::function<void(Event)>;

    Network(const Address& address, Tell tell);

    PersonPtr me() const { return me_; }
    const Features& features() const { return features_; }
    // As the server names it, else as it is called.
    std::u16string name() const;
    bool isIn(std::string_view channel) const { return findChannel(channel) != nullptr; }
    bool sameName(std::string_view a, std::string_view b) const {
        return folded(a, people_.caseMapping()) == folded(b, people_.caseMapping());
    }
    // As sent, of what the user calls so.
    std::string nameOf(std::u16string_view target) const;
    std::size_t knownPeople() const { return people_.size(); }
    bool isMe(std::string_view nick) const;
    // Bytes of text that fit into a PRIVMSG to the target so that others receive it whole.
    std::size_t roomFor(std::string_view target) const;

    // Of a connection: it begins; the server is done greeting; it has ended, and everybody is gone without a word.
    void begin();
    void welcome(const Message& message); // 001
    void settle();
    void end();
    // What does not concern a network is ignored.
    void read(const Message& message, long long now);
    // An own line that the server does not send back.
    void echo(const Echo& sent);

  private:
    using Ranks = std::uint16_t; // a bit for each of the server's, the highest one the lowest bit
    struct Channel {
        std::string name; // as sent
        std::u16string shown;
        std::unordered_map<KnownPtr, Ranks> members = {};
        std::optional<long long> joined = {}; // by the server's clock
        bool listed = false;                  // its people were told
        Badges my_badges = {};                // of the streaming chat
        std::uint8_t rules = 0;               // of the streaming chat, a bit for each that holds
    };
    using Handler = void (Network::*)(const Message&);
    Handler handlerOf(std::string_view command) const;

    // network.cpp
    void onFeatures(const Message& message);
    void onBatch(const Message& message);
    void onAnswer(const Message& message); // any other number
    void onRefusedChannel(const Message& message);
    void onHiddenHost(const Message& message);
    void onMyAway(const Message& message);
    void onSomebodyAway(const Message& message);
    void onInvite(const Message& message);
    // network_people.cpp
    void onJoin(const Message& message);
    void onPart(const Message& message);
    void onKick(const Message& message);
    void onQuit(const Message& message);
    void onNick(const Message& message);
    void onNames(const Message& message);
    void onEndOfNames(const Message& message);
    void onMode(const Message& message);
    void onAway(const Message& message);
    void onAccount(const Message& message);
    void onChangedHost(const Message& message);
    void onTopic(const Message& message);
    void onTopicNow(const Message& message);
    // network_talk.cpp
    void onMessage(const Message& message); // PRIVMSG, NOTICE, WHISPER
    void tellSaid(const Message& message, event::Said said, const KnownPtr& writer, std::string_view text);
    // network_streaming.cpp
    void onClearChat(const Message& message);
    void onClearMessage(const Message& message);
    void onUserNotice(const Message& message);
    void onStreamingNotice(const Message& message);
    void onRoomState(const Message& message);
    void onMyState(const Message& message);
    KnownPtr meetTagged(const Message& message, std::string_view login, std::string_view user_id);

    const Channel* findChannel(std::string_view name) const;
    Channel* findChannel(std::string_view name);
    std::u16string shownChannel(std::string_view name) const;
    KnownPtr meet(const Message& message);
    void identify(const KnownPtr& person, const Message& message);
    void addMember(Channel& channel, const KnownPtr& person, Ranks ranks);
    void removeMember(Channel& channel, const KnownPtr& person, event::Left left);
    void leaveChannel(std::string_view name, event::ChannelLeft left);
    void quit(const KnownPtr& person, Leaving how, std::u16string_view why);
    Marks marksOf(Ranks ranks) const;
    Marks marksIn(const Channel* channel, const KnownPtr& person) const;
    Ranks ranksOf(std::string_view& nick) const;
    bool noteSplit(std::string_view why);
    bool isOld(const Message& message, const Channel* channel) const;
    void tellUser(std::u16string text, std::u16string_view channel = {});

    struct Split {
        std::string servers;
        long long seen;
    };

    Address address_;
    Tell tell_;
    Features features_;
    People people_;
    Batches batches_;
    KnownPtr me_;
    bool greeted_ = false;
    std::unordered_map<std::string, Channel> channels_; // by folded name
    std::deque<Split> splits_;
    std::optional<long long> welcomed_; // by the server's clock
    long long now_ = 0;
};

} // namespace messenger_client::irc
