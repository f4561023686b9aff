#include "companions/messenger/live/account.h"

#include <algorithm>
#include <utility>

#include "common/text.h"
#include "companions/messenger/irc/input.h"

namespace messenger_client {

using murmelix::LetterCase;
using murmelix::sameText;

namespace {

// How often it is looked whether programs have dealt with a change of seats, in milliseconds.
constexpr long long look_again = 10;
// The result of a sign-in that the network refused or could not be reached for: the service is not available.
constexpr long signin_unavailable = static_cast<std::int32_t>(0x800704CF);

std::u16string seconds(long long milliseconds) {
    const long long count = std::max((milliseconds + 500) / 1000, 1LL);
    return murmelix::toText(count) + (count == 1 ? u" second" : u" seconds");
}

std::u16string because(std::u16string_view why) {
    return why.empty() ? std::u16string() : u": " + std::u16string(why);
}

// What others are told; that nobody touches the keyboard is nothing to trouble a network with.
bool isAway(Status status) {
    return status == Status::be_right_back || status == Status::away || status == Status::on_the_phone ||
           status == Status::out_to_lunch;
}

template <class... Deeds>
struct Overloaded : Deeds... {
    using Deeds::operator()...;
};
template <class... Deeds>
Overloaded(Deeds...) -> Overloaded<Deeds...>;

} // namespace

LiveAccount::LiveAccount(Client& client, irc::Settings settings, Status status, Hooks hooks)
    : client_(client), address_(settings.address), status_(status), hooks_(std::move(hooks)),
      session_(std::move(settings), {.open = [this] { hooks_.open(address_); },
                                     .send = [this](std::string_view bytes) { hooks_.send(bytes); },
                                     .close = [this] { hooks_.close(); },
                                     .tell = [this](const irc::Event& event) { heard(event); },
                                     .random = [this] { return hooks_.random(); }}) {}

LiveAccount::~LiveAccount() = default;

bool LiveAccount::is(const Contact& contact) const {
    const irc::PersonPtr me = session_.me();
    return me && irc::signinName(*me) == contact.signin;
}

void LiveAccount::start() {
    session_.start(now());
    schedule();
}

void LiveAccount::quit() {
    session_.quit({}, now());
}

void LiveAccount::reconnectNow() {
    session_.reconnectNow(now());
    schedule();
}

void LiveAccount::connected() {
    session_.connected(now());
    schedule();
}

void LiveAccount::received(std::string_view bytes) {
    session_.received(bytes, now());
    for (const PlacePtr& place : std::vector(places_)) {
        read(*place);
    }
    schedule();
}

void LiveAccount::lost(std::u16string_view why) {
    session_.lost(why, now());
    schedule();
}

void LiveAccount::failed(std::u16string_view why) {
    session_.failed(why, now());
    schedule();
}

void LiveAccount::tick() {
    session_.tick(now());
    for (const PlacePtr& place : std::vector(places_)) {
        read(*place);
    }
    schedule();
}

void LiveAccount::schedule() {
    std::optional<long long> next = session_.nextTick();
    const auto sooner = [&](std::optional<long long> time) {
        if (time && (!next || *time < *next)) {
            next = time;
        }
    };
    for (const PlacePtr& place : places_) {
        sooner(place->settles ? std::optional(now() + look_again) : place->talk->reader_.dueAt());
    }
    if (next) {
        hooks_.set_timer(static_cast<unsigned>(std::clamp(*next - now(), 1LL, 60'000LL)));
    }
}

void LiveAccount::heard(const irc::Event& event) {
    std::visit([this](const auto& known) { on(known); }, event);
}

void LiveAccount::noteEverywhere(const std::u16string& sentence) {
    for (const PlacePtr& place : std::vector(places_)) {
        place->talk->note(sentence);
    }
}

// The session's own way.

void LiveAccount::on(const irc::event::Connecting&) {
    if (!been_online_) {
        client_.setStage(Stage::connecting);
    }
}

void LiveAccount::on(const irc::event::Registering&) {
    if (!been_online_) {
        client_.setStage(Stage::synchronising);
    }
}

void LiveAccount::on(const irc::event::Online& event) {
    network_ = event.network;
    if (!std::exchange(been_online_, true)) {
        client_.signInLive(irc::signinName(*event.me), irc::shownName(*event.me), status_);
    } else {
        client_.setMyName(irc::shownName(*event.me)); // the old one may have been taken meanwhile
        noteEverywhere(u"Connected again.");
    }
    for (const PlacePtr& place : places_) {
        place->talk->setMe(event.me);
    }
}

void LiveAccount::on(const irc::event::Lost& event) {
    if (!been_online_) {
        session_.quit({}, now());
        client_.failSignIn(signin_unavailable);
        return hooks_.failed(event.why);
    }
    for (const PlacePtr& place : places_) {
        place->talk->forgetMembers();
    }
    noteEverywhere(u"The connection was lost" + because(event.why) + u" It is tried again in " +
                   seconds(event.again - now()) + u".");
}

void LiveAccount::on(const irc::event::Refused& event) {
    if (!been_online_) {
        client_.failSignIn(signin_unavailable);
        return hooks_.failed(event.why);
    }
    noteEverywhere(u"The connection has ended" + because(event.why));
}

void LiveAccount::on(const irc::event::Ended&) {}

// Channels.

LiveAccount::PlacePtr LiveAccount::placeOf(std::u16string_view channel) const {
    const auto found = std::ranges::find_if(places_, [&](const PlacePtr& place) {
        return place->talk->isChannel() && sameText(place->talk->title(), channel, LetterCase::ignored);
    });
    return found == places_.end() ? nullptr : *found;
}

LiveAccount::PlacePtr LiveAccount::placeWith(const irc::PersonPtr& person) {
    const auto found = std::ranges::find(places_, person, &Place::with);
    if (found != places_.end()) {
        return *found;
    }
    std::erase(partners_, person);
    partners_.push_back(person);
    if (partners_.size() > most_partners) {
        partners_.erase(partners_.begin());
    }
    return open(irc::shownName(*person), false, person);
}

LiveAccount::PlacePtr LiveAccount::open(std::u16string title, bool channel, const irc::PersonPtr& with) {
    auto place = std::make_shared<Place>();
    place->key = (channel ? title : irc::signinName(*with)) + u" " + network_;
    place->with = with;
    place->talk =
        std::make_shared<LiveTalk>(std::move(title), channel, hooks_.rules_of(place->key), hooks_.characters());
    place->talk->setMe(session_.me());
    place->talk->setDeeds({.type =
                               [this, weak = std::weak_ptr(place)](std::u16string_view text) {
                                   if (const PlacePtr typed = weak.lock()) {
                                       type(*typed, text);
                                   }
                               },
                           .talk_to = [this](const LivePerson& person) { bringUp(placeWith(person.signin)); },
                           .rules_changed =
                               [this, weak = std::weak_ptr(place)] {
                                   if (const PlacePtr changed = weak.lock()) {
                                       hooks_.keep_rules(changed->key, changed->talk->rules());
                                       read(*changed);
                                       schedule();
                                   }
                               }});
    place->conversation = client_.open({}, place->talk);
    if (place->conversation) {
        places_.push_back(place);
    } else {
        hooks_.tell_user(u"So many conversations are open that no other one can be.");
        return nullptr;
    }
    for (std::u16string& sentence : std::exchange(held_, {})) {
        place->talk->note(std::move(sentence));
    }
    if (with) {
        place->talk->came({with, {}});
        place->talk->reader_.seat(irc::signinName(*with), irc::shownName(*with));
        read(*place);
    }
    return place;
}

void LiveAccount::on(const irc::event::ChannelJoined& event) {
    if (const PlacePtr known = placeOf(event.channel)) {
        known->talk->note(u"You are in " + event.channel + u" again.");
    } else {
        open(event.channel, true, nullptr);
    }
}

void LiveAccount::on(const irc::event::ChannelLeft& event) {
    const PlacePtr place = placeOf(event.channel);
    if (event.how == irc::Leaving::parted) {
        if (place) {
            client_.close(place->conversation);
        }
        return;
    }
    std::u16string sentence = event.how == irc::Leaving::kicked
                                  ? u"You were removed from " + event.channel +
                                        (event.by ? u" by " + irc::shownName(*event.by) : std::u16string())
                                  : event.channel + u" could not be entered";
    sentence += event.why.empty() ? u"." : because(event.why);
    if (!place) {
        return hooks_.tell_user(sentence);
    }
    place->talk->forgetMembers();
    place->talk->note(std::move(sentence));
}

void LiveAccount::on(const irc::event::Topic& event) {
    if (const PlacePtr place = placeOf(event.channel)) {
        place->talk->setTopic(event.text);
        if (event.by) {
            place->talk->note(irc::shownName(*event.by) + u" has set the topic: " + event.text);
        }
    }
}

// People.

void LiveAccount::on(const irc::event::People& event) {
    if (const PlacePtr place = placeOf(event.channel)) {
        place->talk->setMembers(event.members);
    }
}

void LiveAccount::on(const irc::event::Joined& event) {
    if (const PlacePtr place = placeOf(event.channel)) {
        place->talk->came(event.member);
    }
    if (const ContactPtr contact = client_.find(irc::signinName(*event.member.person))) {
        client_.setStatus(contact, event.member.person->away ? Status::away : Status::online);
    }
}

void LiveAccount::on(const irc::event::Left& event) {
    const PlacePtr place = placeOf(event.channel);
    if (!place) {
        return;
    }
    place->talk->went(*event.person);
    if (event.how == irc::Leaving::kicked) {
        place->talk->note(irc::shownName(*event.person) + u" was removed" +
                          (event.by ? u" by " + irc::shownName(*event.by) : std::u16string()) +
                          (event.why.empty() ? u"." : because(event.why)));
    }
    const ContactPtr contact = client_.find(irc::signinName(*event.person));
    if (contact && contact != client_.me() &&
        (event.how == irc::Leaving::quit || event.how == irc::Leaving::netsplit)) {
        client_.setStatus(contact, Status::offline);
    }
}

void LiveAccount::on(const irc::event::Renamed& event) {
    const irc::Person& person = *event.person;
    const bool me = event.person == session_.me();
    const ContactPtr contact = me ? client_.me() : client_.find(irc::signinName(person));
    for (const PlacePtr& place : std::vector(places_)) {
        const bool here = place->talk->members_.contains(&person);
        place->talk->renamed(person);
        if (me) {
            place->talk->setMe(event.person);
        }
        if (here && contact) {
            place->talk->note(event.before + u" is now called " + irc::shownName(person) + u".");
        }
        if (place->with == event.person) {
            place->talk->setTitle(irc::shownName(person));
        }
        read(*place);
    }
    if (contact) {
        client_.rename(contact, irc::shownName(person));
    }
}

void LiveAccount::on(const irc::event::AwayChanged& event) {
    const Status status = event.person->away ? Status::away : Status::online;
    if (event.person == session_.me()) {
        if (client_.me() && isAway(client_.me()->status) != event.person->away) {
            client_.setMyStatus(status);
        }
    } else if (const ContactPtr contact = client_.find(irc::signinName(*event.person))) {
        client_.setStatus(contact, status);
    }
    for (const PlacePtr& place : places_) {
        if (place->talk->members_.contains(event.person.get())) {
            place->talk->changed(place->talk->people_changed);
        }
    }
}

void LiveAccount::on(const irc::event::Identified& event) {
    for (const PlacePtr& place : places_) {
        place->talk->renamed(*event.person);
    }
    if (const ContactPtr contact = client_.find(irc::signinName(*event.person)); contact && contact != client_.me()) {
        client_.rename(contact, irc::shownName(*event.person));
    }
}

void LiveAccount::on(const irc::event::Marked& event) {
    if (const PlacePtr place = placeOf(event.channel)) {
        place->talk->marked(*event.person, event.marks);
    }
}

void LiveAccount::on(const irc::event::NetSplit& event) {
    noteEverywhere(u"Servers of the network have lost each other (" + event.servers +
                   u"): people will come back by themselves.");
}

// What is said.

LiveAccount::PlacePtr LiveAccount::placeFor(const irc::event::Said& said) {
    if (!said.with) {
        return placeOf(said.channel);
    }
    const bool is_open = std::ranges::find(places_, said.with, &Place::with) != places_.end();
    const auto talks = std::ranges::count_if(places_, [](const PlacePtr& place) { return place->with != nullptr; });
    if (is_open || said.own || static_cast<std::size_t>(talks) < most_talks) {
        return placeWith(said.with);
    }
    if (const PlacePtr place = currentPlace()) {
        place->talk->note(irc::shownName(*said.with) + u" writes to you alone: " + said.text);
    }
    return nullptr;
}

LiveAccount::PlacePtr LiveAccount::currentPlace() const {
    if (const PlacePtr last = typed_in_.lock()) {
        return last;
    }
    return places_.empty() ? nullptr : places_.front();
}

void LiveAccount::on(const irc::event::Said& event) {
    if (const PlacePtr place = placeFor(event)) {
        place->talk->said(event, now(), hooks_.today());
        read(*place);
    }
}

void LiveAccount::on(const irc::event::Deleted& event) {
    if (const PlacePtr place = placeOf(event.channel)) {
        place->talk->deleted(event);
    }
}

void LiveAccount::on(const irc::event::Told& event) {
    PlacePtr place = placeOf(event.channel);
    if (!place) {
        place = currentPlace();
    }
    if (place) {
        place->talk->note(event.text);
    } else if (been_online_ && held_.size() < most_held) { // what comes before is between servers
        held_.push_back(event.text);
    }
}

// What is read.

ContactPtr LiveAccount::contactOf(Place& place, const reading::Seat& seat) {
    if (seat.person == reading::rest_person) {
        if (!place.rest) {
            place.rest = std::make_shared<Contact>(Contact{seat.person, seat.name, Status::online});
        }
        return place.rest;
    }
    ContactPtr contact = client_.addContact(seat.person, seat.name);
    if (contact && contact != client_.me()) {
        std::erase(people_, contact);
        people_.push_back(contact);
    }
    return contact;
}

void LiveAccount::forgetSilent() {
    for (std::size_t i = 0; people_.size() > most_people && i < people_.size();) {
        const bool needed =
            std::ranges::any_of(places_, [&](const PlacePtr& place) { return place->conversation->has(*people_[i]); });
        if (needed) {
            ++i;
            continue;
        }
        const ContactPtr silent = people_[i];
        people_.erase(people_.begin() + static_cast<std::ptrdiff_t>(i));
        client_.removeContact(silent);
    }
}

void LiveAccount::changeSeats(Place& place, const reading::SeatChanges& changes) {
    for (const reading::SeatChange& change : changes) {
        const ContactPtr contact = contactOf(place, change.seat);
        if (!contact) {
            continue;
        }
        switch (change.kind) {
        case reading::SeatChange::Kind::removed:
            client_.leave(place.conversation, contact);
            break;
        case reading::SeatChange::Kind::added:
            client_.rename(contact, change.seat.name);
            client_.join(place.conversation, contact);
            break;
        case reading::SeatChange::Kind::renamed:
            client_.rename(contact, change.seat.name);
            break;
        }
    }
    forgetSilent();
    place.talk->changed(place.talk->people_changed);
}

void LiveAccount::read(Place& place) {
    reading::Reader& reader = place.talk->reader_;
    while (!place.conversation->closed()) {
        if (place.settles && !hooks_.delivered() && now() - *place.settles < longest_settling) {
            return;
        }
        place.settles.reset();
        const std::optional<reading::Reading> reading = reader.next(now());
        if (!reading) {
            return;
        }
        if (!reading->seats.empty()) {
            place.settles = now();
            changeSeats(place, reading->seats);
        }
        if (!reading->has_line) {
            continue;
        }
        const ContactPtr speaker = reading->mine ? client_.me() : contactOf(place, reading->speaker);
        if (speaker && client_.say(place.conversation, speaker, reading->text)) {
            place.talk->lines().tell(reading->number);
            place.talk->changed(place.talk->lines_changed);
        }
    }
}

// The user.

void LiveAccount::type(Place& place, std::u16string_view text) {
    for (const PlacePtr& known : places_) {
        if (known.get() == &place) {
            typed_in_ = known;
        }
    }
    const std::u16string target = place.with ? place.with->nick : place.talk->title();
    std::visit(Overloaded{
                   [&](const irc::typed::Say& typed) { session_.say(target, typed.text, now()); },
                   [&](const irc::typed::Act& typed) { session_.act(target, typed.text, now()); },
                   [&](const irc::typed::Message& typed) { session_.say(typed.target, typed.text, now()); },
                   [&](const irc::typed::Join& typed) {
                       if (const std::u16string fault = join(typed.channels); !fault.empty()) {
                           place.talk->note(fault);
                       }
                   },
                   [&](const irc::typed::Part& typed) {
                       session_.part(typed.channel.empty() ? target : typed.channel, typed.why, now());
                   },
                   [&](const irc::typed::Nick& typed) { session_.nick(typed.nick, now()); },
                   [&](const irc::typed::Away& typed) { session_.away(typed.text, now()); },
                   [&](const irc::typed::Query& typed) {
                       const irc::PersonPtr person = personCalled(typed.nick);
                       if (person) {
                           bringUp(placeWith(person));
                       }
                       if (!typed.text.empty()) {
                           session_.say(typed.nick, typed.text, now());
                       } else if (!person) {
                           place.talk->note(u"Nobody called " + typed.nick + u" is known here.");
                       }
                   },
                   [&](const irc::typed::Quote& typed) { session_.quote(typed.line, now()); },
                   [&](const irc::typed::Refused& typed) { place.talk->note(typed.why); },
               },
               irc::parseTyped(text));
    schedule();
}

irc::PersonPtr LiveAccount::personCalled(std::u16string_view nick) const {
    return find([&](const irc::Person& person) { return sameText(person.nick, nick, LetterCase::ignored); });
}

irc::PersonPtr LiveAccount::find(const std::function<bool(const irc::Person&)>& wanted) const {
    for (const PlacePtr& place : places_) {
        for (const auto& [person, here] : place->talk->members_) {
            if (wanted(*person)) {
                return here.member.person;
            }
        }
    }
    const auto partner = std::ranges::find_if(partners_, [&](const irc::PersonPtr& person) { return wanted(*person); });
    return partner == partners_.end() ? nullptr : *partner;
}

void LiveAccount::bringUp(const PlacePtr& place) {
    if (place) {
        hooks_.bring_up(*place->conversation);
    }
}

LiveAccount::PlacePtr LiveAccount::placeWith(const std::u16string& signin) {
    const irc::PersonPtr person = find([&](const irc::Person& known) { return irc::signinName(known) == signin; });
    return person ? placeWith(person) : nullptr;
}

ConversationPtr LiveAccount::talkWith(const ContactPtr& contact) {
    const PlacePtr place = placeWith(contact->signin);
    return place ? place->conversation : nullptr;
}

std::u16string LiveAccount::join(std::u16string_view channels) {
    const auto wanted = irc::parseChannels(channels, address_.dialect);
    if (const auto* const fault = std::get_if<irc::Fault>(&wanted)) {
        return *fault;
    }
    session_.join(std::get<0>(wanted), now());
    schedule();
    return {};
}

void LiveAccount::statusChosen() {
    const irc::PersonPtr me = session_.me();
    const bool away = client_.me() && isAway(client_.me()->status);
    if (me && me->away != away) {
        session_.away(away ? nameOf(client_.me()->status) : std::u16string_view(), now());
        schedule();
    }
}

void LiveAccount::nameChosen() {
    const irc::PersonPtr me = session_.me();
    if (me && client_.me() && client_.me()->friendly != irc::shownName(*me)) {
        session_.nick(client_.me()->friendly, now());
        client_.setMyName(irc::shownName(*me)); // until the network agrees
        schedule();
    }
}

void LiveAccount::closed(const ConversationPtr& conversation) {
    const auto found = std::ranges::find(places_, conversation, &Place::conversation);
    if (found == places_.end()) {
        return;
    }
    const PlacePtr place = *found;
    places_.erase(found);
    if (place->talk->isChannel()) {
        session_.part(place->talk->title(), {}, now());
    }
    schedule();
}

} // namespace messenger_client
