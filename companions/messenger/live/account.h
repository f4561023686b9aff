// An account of a chat network: what its session tells becomes conversations and contacts of the client, and what the
// user does goes to the session. Connection, clock, timer and store are the caller's.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "companions/messenger/chat/client.h"
#include "companions/messenger/irc/session.h"
#include "companions/messenger/live/talk.h"

namespace messenger_client {

class LiveAccount {
  public:
    struct Hooks {
        // Of the connection. Its events are told to the methods of the same meaning.
        std::function<void(const irc::Address& address)> open;
        std::function<void(std::string_view bytes)> send;
        std::function<void()> close;
        std::function<long long()> milliseconds; // since any moment
        std::function<long long()> today;        // milliseconds since 1970
        std::function<std::uint32_t()> random;
        std::function<void(unsigned milliseconds)> set_timer; // has tick called so much later; again for another time
        std::function<bool()> delivered;                      // whether programs have dealt with every event
        // The first connection came to nothing: a sentence for people. The account is of no use any more.
        std::function<void(const std::u16string& why)> failed;
        std::function<void(const std::u16string& sentence)> tell_user;  // where no conversation is open for it
        std::function<void(const Conversation& conversation)> bring_up; // its window
        std::function<int()> characters;                                // that there are on this computer
        // What is kept of a conversation.
        std::function<reading::Rules(const std::u16string& conversation)> rules_of;
        std::function<void(const std::u16string& conversation, const reading::Rules& rules)> keep_rules;
    };
    // After a change of seats programs have so long to deal with it, in milliseconds, before the line follows: loading
    // a character takes a tenth of that.
    static constexpr long long longest_settling = 3'000;
    // People that stay contacts when they have no seat any more; who was silent longest goes first.
    static constexpr std::size_t most_people = 200;
    // Talks that others can open by writing to the user alone: a stranger must not fill the screen with windows. What
    // comes beyond them stands, unread, where the user has typed last.
    static constexpr std::size_t most_talks = 20;
    // People that were talked to alone, who can be talked to again though they are in no channel of the user's.
    static constexpr std::size_t most_partners = 50;
    // Sentences of the network that wait for a conversation to stand in.
    static constexpr std::size_t most_held = 20;

    // `status` as the user wants to be seen.
    LiveAccount(Client& client, irc::Settings settings, Status status, Hooks hooks);
    ~LiveAccount();
    LiveAccount(const LiveAccount&) = delete;
    LiveAccount& operator=(const LiveAccount&) = delete;

    void start();
    void quit();
    void reconnectNow();

    void connected();
    void received(std::string_view bytes);
    void lost(std::u16string_view why);
    void failed(std::u16string_view why);
    void tick();

    const irc::Address& address() const { return address_; }
    // Whether that is who the network knows the user as.
    bool is(const Contact& contact) const;
    // The conversation with one of the contacts, new where there is none; null where there can be none.
    ConversationPtr talkWith(const ContactPtr& contact);
    // As one types them. What is wrong, as a sentence for people; empty where nothing is.
    std::u16string join(std::u16string_view channels);
    // The user has closed the conversation.
    void closed(const ConversationPtr& conversation);
    // The client's own status or name has changed.
    void statusChosen();
    void nameChosen();

  private:
    struct Place { // a conversation
        ConversationPtr conversation;
        std::shared_ptr<LiveTalk> talk;
        std::u16string key;               // by which its rules are kept
        irc::PersonPtr with;              // of a private talk
        ContactPtr rest;                  // who tells for all who have no seat
        std::optional<long long> settles; // since when programs deal with a change of seats
    };
    using PlacePtr = std::shared_ptr<Place>;

    void heard(const irc::Event& event);
    void on(const irc::event::Connecting& event);
    void on(const irc::event::Registering& event);
    void on(const irc::event::Online& event);
    void on(const irc::event::Lost& event);
    void on(const irc::event::Refused& event);
    void on(const irc::event::Ended& event);
    void on(const irc::event::ChannelJoined& event);
    void on(const irc::event::ChannelLeft& event);
    void on(const irc::event::People& event);
    void on(const irc::event::Joined& event);
    void on(const irc::event::Left& event);
    void on(const irc::event::Renamed& event);
    void on(const irc::event::AwayChanged& event);
    void on(const irc::event::Identified& event);
    void on(const irc::event::Marked& event);
    void on(const irc::event::NetSplit& event);
    void on(const irc::event::Topic& event);
    void on(const irc::event::Said& event);
    void on(const irc::event::Deleted& event);
    void on(const irc::event::Told& event);

    PlacePtr placeOf(std::u16string_view channel) const;
    PlacePtr placeFor(const irc::event::Said& said);
    // Where the user was last, for what belongs nowhere else; null where there is no conversation.
    PlacePtr currentPlace() const;
    PlacePtr placeWith(const irc::PersonPtr& person);
    PlacePtr placeWith(const std::u16string& signin); // null where nobody here has that sign-in name
    irc::PersonPtr personCalled(std::u16string_view nick) const;
    irc::PersonPtr find(const std::function<bool(const irc::Person&)>& wanted) const;
    void bringUp(const PlacePtr& place);
    PlacePtr open(std::u16string title, bool channel, const irc::PersonPtr& with);
    void noteEverywhere(const std::u16string& sentence);
    void type(Place& place, std::u16string_view text);
    ContactPtr contactOf(Place& place, const reading::Seat& seat);
    void forgetSilent();
    void changeSeats(Place& place, const reading::SeatChanges& changes);
    void read(Place& place);
    void schedule();
    long long now() const { return hooks_.milliseconds(); }

    Client& client_;
    irc::Address address_;
    Status status_;
    Hooks hooks_;
    irc::Session session_;
    bool been_online_ = false;
    std::u16string network_;
    std::vector<PlacePtr> places_;
    std::weak_ptr<Place> typed_in_; // the last one
    std::vector<std::u16string> held_;
    std::vector<irc::PersonPtr> partners_; // the last one last
    std::vector<ContactPtr> people_;       // who has spoken last is the last one
};

} // namespace messenger_client
