#include "companions/messenger/live/talk.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "common/text.h"

namespace messenger_client {

namespace {

LiveLine::Kind shownKind(irc::event::Said::Kind kind) {
    using Kind = irc::event::Said::Kind;
    switch (kind) {
    case Kind::action:
        return LiveLine::Kind::action;
    case Kind::notice:
        return LiveLine::Kind::notice;
    case Kind::announcement:
        return LiveLine::Kind::announcement;
    case Kind::message:
        break;
    }
    return LiveLine::Kind::message;
}

reading::Line::Kind readKind(irc::event::Said::Kind kind) {
    using Kind = irc::event::Said::Kind;
    switch (kind) {
    case Kind::action:
        return reading::Line::Kind::action;
    case Kind::notice:
        return reading::Line::Kind::notice;
    case Kind::announcement:
        return reading::Line::Kind::announcement;
    case Kind::message:
        break;
    }
    return reading::Line::Kind::message;
}

} // namespace

LiveTalk::LiveTalk(std::u16string title, bool channel, reading::Rules rules, int characters)
    : title_(std::move(title)), channel_(channel),
      reader_(std::move(rules), {.my_name = {},
                                 .has_name = [this](std::u16string_view name) { return hasName(name); },
                                 .characters = characters}),
      characters_(characters) {}

reading::Surroundings LiveTalk::surroundings() const {
    return {me_ ? irc::shownName(*me_) : std::u16string(), [this](std::u16string_view name) { return hasName(name); },
            characters_};
}

void LiveTalk::changed(const std::function<void()>& told) const {
    if (told) {
        told();
    }
}

void LiveTalk::setTitle(std::u16string title) {
    title_ = std::move(title);
    changed(title_changed);
}

void LiveTalk::setTopic(std::u16string topic) {
    topic_ = std::move(topic);
    changed(title_changed);
}

void LiveTalk::setMe(irc::PersonPtr me) {
    me_ = std::move(me);
    reader_.setMyName(me_ ? irc::shownName(*me_) : std::u16string());
}

void LiveTalk::setRules(reading::Rules rules) {
    reader_.setRules(std::move(rules));
    changed(people_changed);
    deeds_.rules_changed();
}

void LiveTalk::setWatched(bool watched) {
    if (watched_ && !watched && news_) {
        lines_.remove(*std::exchange(news_, std::nullopt)); // it was seen
        changed(lines_changed);
    }
    watched_ = watched;
}

LineNumber LiveTalk::show(LiveLine line) {
    // Where nothing was seen before, everything is new.
    const bool news = !watched_ && line.kind != LiveLine::Kind::notice && lines_.next() > 1;
    if (news && !news_) {
        news_ = lines_.add({.kind = LiveLine::Kind::news});
    }
    const LineNumber number = lines_.add(std::move(line));
    if (log) {
        log(*lines_.find(number));
    }
    changed(lines_changed);
    return number;
}

void LiveTalk::note(std::u16string text) {
    show({.text = std::move(text)});
}

void LiveTalk::meetWriter(const irc::event::Said& said) {
    if (!channel_ || !said.writer || said.writer->user_id.empty() || members_.contains(said.writer.get())) {
        return;
    }
    const bool moderates = said.badges.moderator || said.badges.broadcaster;
    came({said.writer, {.moderator = moderates, .voiced = false, .sign = moderates ? u'@' : char16_t{0}}});
    writers_.push_back(said.writer);
    if (writers_.size() > most_writers) {
        went(*writers_.front());
        writers_.pop_front();
    }
}

void LiveTalk::said(const irc::event::Said& said, long long now, long long today) {
    meetWriter(said);
    const std::u16string name = said.writer ? irc::shownName(*said.writer) : std::u16string();
    const std::u16string signin = said.writer ? irc::signinName(*said.writer) : std::u16string();
    reading::Line line{.id = said.id, .person = signin, .name = name, .text = said.text, .kind = readKind(said.kind)};
    line.number = show({.kind = shownKind(said.kind),
                        .writer = name,
                        .text = said.text,
                        .signin = signin,
                        .id = said.id,
                        .time = said.time.value_or(today)});
    const auto member = members_.find(said.writer.get());
    line.moderator = said.badges.moderator || said.badges.broadcaster ||
                     (member != members_.end() && member->second.member.marks.moderator);
    line.subscriber = said.badges.subscriber;
    line.mine = said.own;
    line.old = said.history;
    line.time = now;
    for (const irc::Emote& emote : said.emotes) {
        line.emotes.push_back({emote.first, emote.first + emote.length});
    }
    reader_.arrived(line, now);
    recent_.push_back(std::move(line));
    if (recent_.size() > most_recent) {
        recent_.pop_front();
    }
}

void LiveTalk::deleted(const irc::event::Deleted& what) {
    const auto is_meant = [&](const std::u16string& id, const std::u16string& signin) {
        if (!what.id.empty()) {
            return id == what.id;
        }
        return !what.person || signin == irc::signinName(*what.person);
    };
    if (!what.id.empty()) {
        reader_.deleted(what.id);
    } else if (what.person) {
        reader_.deletedOf(irc::signinName(*what.person));
    } else {
        reader_.deletedAll();
    }
    lines_.removeThose([&](const LiveLine& line) {
        return (line.kind == LiveLine::Kind::message || line.kind == LiveLine::Kind::action) &&
               is_meant(line.id, line.signin);
    });
    std::erase_if(recent_, [&](const reading::Line& line) { return is_meant(line.id, line.person); });
    changed(lines_changed);
}

bool LiveTalk::hasName(std::u16string_view name) const {
    return names_.contains(murmelix::toLower(name));
}

void LiveTalk::setMembers(const std::vector<irc::Member>& members) {
    forgetMembers();
    for (const irc::Member& member : members) {
        came(member);
    }
    changed(people_changed);
}

void LiveTalk::list(Here& here) {
    here.name = murmelix::toLower(irc::shownName(*here.member.person));
    ++names_[here.name];
}

void LiveTalk::unlist(const Here& here) {
    const auto name = names_.find(here.name);
    if (--name->second == 0) {
        names_.erase(name);
    }
}

void LiveTalk::came(const irc::Member& member) {
    const auto [place, is_new] = members_.try_emplace(member.person.get());
    if (!is_new) {
        unlist(place->second);
    }
    place->second.member = member;
    list(place->second);
    changed(people_changed);
}

void LiveTalk::went(const irc::Person& person) {
    if (const auto place = members_.find(&person); place != members_.end()) {
        unlist(place->second);
        members_.erase(place);
    }
    reader_.left(irc::signinName(person));
    changed(people_changed);
}

void LiveTalk::forgetMembers() {
    members_.clear();
    names_.clear();
    writers_.clear();
}

void LiveTalk::renamed(const irc::Person& person) {
    if (const auto place = members_.find(&person); place != members_.end()) {
        unlist(place->second);
        list(place->second);
        changed(people_changed);
    }
    reader_.renamed(irc::signinName(person), irc::shownName(person));
}

void LiveTalk::marked(const irc::Person& person, const irc::Marks& marks) {
    if (const auto place = members_.find(&person); place != members_.end()) {
        place->second.member.marks = marks;
        changed(people_changed);
    }
}

std::vector<LivePerson> LiveTalk::people(std::size_t most) const {
    using Rank = std::tuple<bool, bool, std::u16string_view>;
    std::vector<std::pair<Rank, const Here*>> ranked;
    ranked.reserve(members_.size());
    for (const auto& [person, here] : members_) {
        const bool on_stage = reader_.seats().of(irc::signinName(*person)) != nullptr;
        ranked.emplace_back(Rank(!on_stage, here.member.marks.sign == 0, here.name), &here);
    }
    const auto end = ranked.begin() + static_cast<std::ptrdiff_t>(std::min(most, ranked.size()));
    std::partial_sort(ranked.begin(), end, ranked.end(),
                      [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<LivePerson> listed;
    for (auto one = ranked.begin(); one != end; ++one) {
        const irc::Person& person = *one->second->member.person;
        const std::u16string& signin = irc::signinName(person);
        listed.push_back({signin, irc::shownName(person), one->second->member.marks.sign, person.away,
                          !std::get<0>(one->first), reading::isListed(rules().pinned_people, signin),
                          reading::isListed(rules().ignored_people, signin),
                          reading::isListed(rules().chosen_people, signin)});
    }
    return listed;
}

} // namespace messenger_client
