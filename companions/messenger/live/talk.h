// A conversation with people of a chat network: a channel, or a talk with one of them. It knows what is shown of it and
// what is read; the account that has it (account.h) is told what the user does.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "companions/messenger/irc/event.h"
#include "companions/messenger/live/lines.h"
#include "companions/messenger/reading/reader.h"

namespace messenger_client {

// Somebody who is in a conversation, as its window lists them.
struct LivePerson {
    std::u16string signin, name;
    char16_t sign = 0; // of the rank in the channel; 0: none
    bool away = false, on_stage = false, pinned = false, ignored = false, chosen = false;
    bool operator==(const LivePerson&) const = default;
};

class LiveTalk {
  public:
    // What the user does in its window; the account carries it out.
    struct Deeds {
        std::function<void(std::u16string_view text)> type;
        std::function<void(const LivePerson& person)> talk_to;
        std::function<void()> rules_changed;
    };

    // `title`: the channel with its sign, or the other one's name.
    // `characters`: how many there are on this computer.
    LiveTalk(std::u16string title, bool channel, reading::Rules rules, int characters);

    const std::u16string& title() const { return title_; }
    bool isChannel() const { return channel_; }
    const std::u16string& topic() const { return topic_; }
    LiveLines& lines() { return lines_; }
    const LiveLines& lines() const { return lines_; }

    // Those on stage, then those who are something in the channel, then the others, each by name; `most` of them.
    std::vector<LivePerson> people(std::size_t most) const;
    std::size_t peopleCount() const { return members_.size(); }
    // Whether somebody there is called so (letter case ignored).
    bool hasName(std::u16string_view name) const;

    void type(std::u16string_view text) { deeds_.type(text); }
    void talkTo(const LivePerson& person) { deeds_.talk_to(person); }
    const reading::Rules& rules() const { return reader_.rules(); }
    void setRules(reading::Rules rules);
    // Of the streaming chat, which does not tell who is there: those who have written last.
    static constexpr std::size_t most_writers = 500;
    // The last lines, for a look at what rules make of them.
    static constexpr std::size_t most_recent = 100;
    const std::deque<reading::Line>& recent() const { return recent_; }
    reading::Surroundings surroundings() const;

    // Whether the user sees it. What comes after looking away has a line before it that says so.
    void setWatched(bool watched);

    // The window: something of it is to be shown anew.
    std::function<void()> lines_changed, people_changed, title_changed;
    // Every line that is shown, as a line of text; empty: nobody keeps a log.
    std::function<void(const LiveLine& line)> log;

  private:
    friend class LiveAccount;

    struct Here {
        irc::Member member;
        std::u16string name; // in small letters
    };

    void setDeeds(Deeds deeds) { deeds_ = std::move(deeds); }
    void setTitle(std::u16string title);
    void setTopic(std::u16string topic);
    void setMe(irc::PersonPtr me);
    // Shows a line of the client's own.
    void note(std::u16string text);
    void said(const irc::event::Said& said, long long now, long long today);
    void deleted(const irc::event::Deleted& what);

    void setMembers(const std::vector<irc::Member>& members);
    void came(const irc::Member& member);
    void went(const irc::Person& person);
    void forgetMembers();
    void renamed(const irc::Person& person);
    void marked(const irc::Person& person, const irc::Marks& marks);

    void meetWriter(const irc::event::Said& said);
    void list(Here& here);
    void unlist(const Here& here);
    LineNumber show(LiveLine line);
    void changed(const std::function<void()>& told) const;

    std::u16string title_;
    bool channel_;
    std::u16string topic_;
    Deeds deeds_;
    LiveLines lines_;
    reading::Reader reader_;
    std::deque<reading::Line> recent_;
    int characters_;
    irc::PersonPtr me_;
    std::unordered_map<const irc::Person*, Here> members_;
    std::unordered_map<std::u16string, std::size_t> names_; // how many have it
    std::deque<irc::PersonPtr> writers_;                    // of the streaming chat, as they came
    bool watched_ = true;
    std::optional<LineNumber> news_; // the line that says where the news begin
};

} // namespace messenger_client
