// The dialect of the streaming chat: every command that it has, in the shapes that it sends.
#include "companions/messenger/irc/streaming.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "tests/unit/messenger_irc/chat.h"

namespace messenger_client::irc {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

Settings withToken() {
    Settings settings = twitchSettings();
    settings.nick = u"Somebody";
    settings.password = u"oauth:0123456789secret";
    return settings;
}

std::vector<Emote> emotesOf(std::string_view emotes, std::u16string_view text) {
    return parseEmotes(emotes, text);
}

// A session in #room of the streaming chat.
class StreamingChat : public Chat {
  public:
    explicit StreamingChat(const Settings& settings = twitchSettings()) : Chat(settings) {
        connect();
        const std::string nick = settings.password.empty() ? "justinfan10000" : "somebody";
        server(":tmi.twitch.tv CAP * ACK :twitch.tv/tags twitch.tv/commands");
        server(":tmi.twitch.tv 001 " + nick + " :Welcome, GLHF!");
        server(":tmi.twitch.tv 002 " + nick + " :Your host is tmi.twitch.tv");
        server(":tmi.twitch.tv 372 " + nick + " :You are in a maze of twisty passages.");
        server(":tmi.twitch.tv 376 " + nick + " :>");
        server(":" + nick + "!" + nick + "@" + nick + ".tmi.twitch.tv JOIN #room");
        server(":" + nick + ".tmi.twitch.tv 353 " + nick + " = #room :" + nick);
        server(":" + nick + ".tmi.twitch.tv 366 " + nick + " #room :End of /NAMES list");
    }
};

TEST(Streaming, IsReadWithoutAnAccount) {
    Chat chat(twitchSettings());
    chat.random = 90'001;
    chat.connect();
    EXPECT_THAT(chat.sent(), ElementsAre("CAP REQ :twitch.tv/tags twitch.tv/commands", "NICK justinfan10001"));
    chat.server(":tmi.twitch.tv CAP * ACK :twitch.tv/tags twitch.tv/commands");
    chat.welcome("justinfan10001");
    EXPECT_THAT(chat.sent(), ElementsAre("JOIN #room"));
    EXPECT_THAT(chat.told(), ElementsAre("connecting", "registering", "online justinfan10001 Twitch read only"));
    chat.session.say(u"#room", u"hello", chat.now);
    EXPECT_THAT(chat.sent(), IsEmpty());
    EXPECT_THAT(chat.told(), ElementsAre(HasSubstr("one can only read along")));
}

TEST(Streaming, IsWrittenWithAToken) {
    for (const char16_t* token : {u"oauth:0123456789secret", u"0123456789secret"}) {
        Settings settings = withToken();
        settings.password = token;
        Chat chat(settings);
        chat.connect();
        EXPECT_THAT(chat.sent(), ElementsAre("CAP REQ :twitch.tv/tags twitch.tv/commands",
                                             "PASS oauth:0123456789secret", "NICK somebody"));
        chat.welcome("somebody");
        EXPECT_THAT(chat.told(), Contains("online somebody Twitch"));
    }
}

TEST(Streaming, KeepsTheTokenWithoutTls) {
    Settings settings = withToken();
    settings.address.tls = false;
    Chat chat(settings);
    chat.connect();
    EXPECT_THAT(chat.sent(), ElementsAre("CAP REQ :twitch.tv/tags twitch.tv/commands", "NICK justinfan10000"));
    EXPECT_THAT(chat.told(), Contains(HasSubstr("password was not sent")));
}

TEST(Streaming, AWrongTokenIsRefusedForGood) {
    for (const char* text : {"Login authentication failed", "Improperly formatted auth", "Login unsuccessful"}) {
        Chat chat(withToken());
        chat.connect();
        chat.server(std::string(":tmi.twitch.tv NOTICE * :") + text);
        EXPECT_EQ(chat.session.state(), State::refused);
        EXPECT_THAT(chat.told(), Contains(HasSubstr(text)));
    }
}

TEST(Streaming, ATokenThatIsWithdrawnIsRefusedForGood) {
    StreamingChat chat(withToken());
    chat.session.lost(u"", chat.now);
    chat.pass(2000);
    chat.session.connected(chat.now);
    chat.told();
    chat.server(":tmi.twitch.tv NOTICE * :Login authentication failed for 0123456789secret");
    EXPECT_EQ(chat.session.state(), State::refused);
    EXPECT_THAT(chat.told(), ElementsAre("refused: The server does not accept the name or the token: Login "
                                         "authentication failed for …"));
}

TEST(StreamingTalk, HasAllItsTags) {
    StreamingChat chat;
    chat.told();
    chat.server("@badge-info=subscriber/14;badges=moderator/1,subscriber/12;bits=100;color=#1E90FF;display-name=Ann_B;"
                "emotes=25:0-4,12-16/1902:6-10;first-msg=1;flags=;id=b34ccfc7-4977-403a-8a94-33c6bac34fb8;mod=1;"
                "reply-parent-display-name=Cy;reply-parent-msg-id=x;returning-chatter=0;room-id=1337;subscriber=1;"
                "tmi-sent-ts=1507246572675;turbo=0;user-id=4242;user-type=mod "
                ":ann_b!ann_b@ann_b.tmi.twitch.tv PRIVMSG #room :Kappa Keepo Kappa");
    EXPECT_THAT(chat.told(),
                ElementsAre("identified ann_b as Ann_B 4242@twitch",
                            "#room ann_b says: Kappa Keepo Kappa [moderator] [subscriber] "
                            "[id b34ccfc7-4977-403a-8a94-33c6bac34fb8] [at 1507246572675] [to Cy] [100 bits] [first] "
                            "[25=Kappa] [1902=Keepo] [25=Kappa]"));
    chat.server("@badges=broadcaster/1;display-name=;user-id=1 :room!room@room.tmi.twitch.tv PRIVMSG #room :hi");
    chat.server("@badges=vip/1,founder/0;user-id=2 :v!v@v.tmi.twitch.tv PRIVMSG #room :hi");
    EXPECT_THAT(chat.told(),
                ElementsAre("#room room says: hi [broadcaster] [moderator]", "#room v says: hi [vip] [subscriber]"));
}

TEST(StreamingTalk, EmotesOfAnActionAreCountedInWhatIsDone) {
    StreamingChat chat;
    chat.told();
    chat.server("@emotes=25:6-10;user-id=2 :v!v@v.tmi.twitch.tv PRIVMSG #room :\x01"
                "ACTION waves Kappa\x01");
    EXPECT_THAT(chat.told(), ElementsAre("#room v acts: waves Kappa [25=Kappa]"));
}

TEST(StreamingTalk, EmotesMoveWithTheText) {
    StreamingChat chat;
    chat.told();
    chat.server("@emotes=25:2-6;user-id=2 :v!v@v.tmi.twitch.tv PRIVMSG #room :😂\xE2\x80\xAEKappa\x02 x");
    EXPECT_THAT(chat.told(), ElementsAre("#room v says: 😂Kappa x [25=Kappa]"));
}

TEST(StreamingPeople, AreKnownByTheirNumberForGood) {
    StreamingChat chat;
    chat.server("@display-name=Ann;user-id=7 :ann!ann@ann.tmi.twitch.tv PRIVMSG #room :hi");
    const PersonPtr ann = std::get<event::Said>(chat.events.back()).writer;
    EXPECT_EQ(signinName(*ann), u"7@twitch");
    EXPECT_EQ(shownName(*ann), u"Ann");
    chat.told();
    chat.server("@display-name=Anna\\sB;user-id=7 :anna!anna@anna.tmi.twitch.tv PRIVMSG #room :hi");
    EXPECT_EQ(std::get<event::Said>(chat.events.back()).writer, ann);
    EXPECT_EQ(signinName(*ann), u"7@twitch");
    EXPECT_THAT(chat.told(), ElementsAre("identified anna as Anna B 7@twitch", "#room anna says: hi"));
    chat.server("@display-name=ann;user-id=8 :ann!ann@ann.tmi.twitch.tv PRIVMSG #room :hi");
    EXPECT_NE(std::get<event::Said>(chat.events.back()).writer, ann) << "who took the name is somebody else";
    chat.server("@display-name=Anna;user-id=9 :anna!anna@anna.tmi.twitch.tv PRIVMSG #room :hi");
    EXPECT_EQ(signinName(*std::get<event::Said>(chat.events.back()).writer), u"9@twitch");
}

TEST(StreamingPeople, NamesInOtherLettersAreShown) {
    StreamingChat chat;
    chat.server("@display-name=安娜;user-id=7 :anna!anna@anna.tmi.twitch.tv PRIVMSG #room :hi");
    EXPECT_EQ(shownName(*std::get<event::Said>(chat.events.back()).writer), u"安娜");
}

TEST(StreamingDeletions, AreOfALineAPersonOrAll) {
    StreamingChat chat;
    chat.server("@display-name=Ann;user-id=7 :ann!ann@ann.tmi.twitch.tv PRIVMSG #room :hi");
    const PersonPtr ann = std::get<event::Said>(chat.events.back()).writer;
    chat.told();
    chat.server(
        "@login=ann;room-id=;target-msg-id=abc-123;tmi-sent-ts=1642720582342 :tmi.twitch.tv CLEARMSG #room :hi");
    chat.server("@ban-duration=350;room-id=1;target-user-id=7;tmi-sent-ts=1642719320727 :tmi.twitch.tv CLEARCHAT #room "
                ":ann");
    EXPECT_EQ(std::get<event::Deleted>(chat.events.back()).person, ann);
    chat.server("@room-id=1;target-user-id=99;tmi-sent-ts=1642715756806 :tmi.twitch.tv CLEARCHAT #room :unknown");
    EXPECT_EQ(signinName(*std::get<event::Deleted>(chat.events.back()).person), u"99@twitch");
    chat.server("@room-id=1;tmi-sent-ts=1642715695392 :tmi.twitch.tv CLEARCHAT #room");
    EXPECT_THAT(chat.told(), ElementsAre("deleted #room abc-123", "deleted #room of ann", "deleted #room of unknown",
                                         "deleted #room"));
    chat.server("@room-id=1 :tmi.twitch.tv CLEARMSG #room :hi");
    chat.server("@room-id=1 :tmi.twitch.tv CLEARCHAT #other");
    EXPECT_THAT(chat.told(), IsEmpty());
}

TEST(StreamingNotices, AnnounceWhatHappens) {
    StreamingChat chat;
    chat.told();
    chat.server("@badges=subscriber/6;display-name=Ann;emotes=25:0-4;id=1;login=ann;msg-id=resub;"
                "msg-param-cumulative-months=6;subscriber=1;system-msg=Ann\\shas\\ssubscribed\\sfor\\s6\\smonths!;"
                "tmi-sent-ts=5;user-id=7 :tmi.twitch.tv USERNOTICE #room :Kappa again");
    chat.server(
        "@display-name=Raider;id=2;login=raider;msg-id=raid;msg-param-viewerCount=15;"
        "system-msg=15\\sraiders\\sfrom\\sRaider\\shave\\sjoined\\n!;user-id=8 :tmi.twitch.tv USERNOTICE #room");
    chat.server("@display-name=Mod;id=3;login=mod;mod=1;msg-id=announcement;msg-param-color=PRIMARY;system-msg=;"
                "user-id=9 :tmi.twitch.tv USERNOTICE #room :Welcome all");
    chat.server("@msg-id=odd;system-msg=Something\\shappens :tmi.twitch.tv USERNOTICE #room");
    EXPECT_THAT(chat.told(),
                ElementsAre("identified ann as Ann 7@twitch", "#room ann announces: Ann has subscribed for 6 months!",
                            "#room ann says: Kappa again [subscriber] [id 1] [at 5] [25=Kappa]",
                            "identified raider as Raider 8@twitch",
                            "#room raider announces: 15 raiders from Raider have joined !",
                            "identified mod as Mod 9@twitch", "#room mod announces: Welcome all [moderator] [id 3]",
                            "#room - announces: Something happens"));
}

TEST(StreamingNotices, AreTold) {
    StreamingChat chat;
    chat.told();
    chat.server("@msg-id=slow_on :tmi.twitch.tv NOTICE #room :This room is now in slow mode.");
    chat.server(":tmi.twitch.tv NOTICE * :Maintenance");
    EXPECT_THAT(chat.told(), ElementsAre("told #room: This room is now in slow mode.", "told: Maintenance"));
    chat.server("@msg-id=msg_channel_suspended :tmi.twitch.tv NOTICE #gone :This channel does not exist.");
    chat.server("@msg-id=msg_channel_suspended :tmi.twitch.tv NOTICE #room :This channel has been suspended.");
    EXPECT_THAT(chat.told(), ElementsAre("out of #gone refused: This channel does not exist.",
                                         "out of #room refused: This channel has been suspended."));
}

TEST(StreamingStates, AreToldWhereTheyChange) {
    StreamingChat chat(withToken());
    chat.told();
    chat.server("@emote-only=0;followers-only=-1;r9k=0;room-id=1;slow=0;subs-only=0 :tmi.twitch.tv ROOMSTATE #room");
    EXPECT_THAT(chat.told(), IsEmpty());
    chat.server("@room-id=1;slow=10 :tmi.twitch.tv ROOMSTATE #room");
    chat.server("@room-id=1;slow=20 :tmi.twitch.tv ROOMSTATE #room");
    chat.server("@followers-only=0;room-id=1 :tmi.twitch.tv ROOMSTATE #room");
    chat.server("@room-id=1;slow=0 :tmi.twitch.tv ROOMSTATE #room");
    EXPECT_THAT(chat.told(), ElementsAre(HasSubstr("told #room: Slow mode: "), HasSubstr("Only followers"),
                                         "told #room: Slow mode has ended."));
    chat.server("@badges=;display-name=SomeBody;user-id=5;user-type= :tmi.twitch.tv GLOBALUSERSTATE");
    chat.server("@badges=moderator/1;display-name=SomeBody;mod=1 :tmi.twitch.tv USERSTATE #room");
    EXPECT_THAT(chat.told(), ElementsAre("identified somebody as SomeBody 5@twitch", "marked #room mod somebody"));
    chat.session.say(u"#room", u"hello", chat.now);
    EXPECT_THAT(chat.told(), ElementsAre("#room somebody says: hello [own] [moderator]"));
    EXPECT_EQ(signinName(*chat.session.me()), u"5@twitch");
}

TEST(StreamingStates, WhispersArePrivateTalks) {
    StreamingChat chat(withToken());
    chat.told();
    chat.server("@badges=;display-name=Ann;message-id=1;user-id=7 :ann!ann@ann.tmi.twitch.tv WHISPER somebody :psst");
    EXPECT_THAT(chat.told(), ElementsAre("identified ann as Ann 7@twitch", "with ann ann says: psst"));
}

TEST(Streaming, ConnectsAgainWhereTheServerAsks) {
    StreamingChat chat;
    chat.told();
    chat.server(":tmi.twitch.tv RECONNECT");
    EXPECT_EQ(chat.session.state(), State::waiting);
    EXPECT_EQ(chat.closed, 1);
    EXPECT_THAT(chat.told(), ElementsAre(HasSubstr("wants to be connected to again")));
    Chat other;
    other.enter();
    other.server(":s.example RECONNECT");
    EXPECT_EQ(other.session.state(), State::online);
}

TEST(Streaming, ChannelsHaveSmallLetters) {
    StreamingChat chat;
    chat.sent();
    chat.session.join({u"#SomeBody"}, chat.now);
    EXPECT_THAT(chat.sent(), ElementsAre("JOIN #somebody"));
}

TEST(Streaming, ItsCommandsMeanNothingElsewhere) {
    Chat chat;
    chat.enter();
    for (const char* line : {"CLEARCHAT #room", "CLEARMSG #room :x", "ROOMSTATE #room", "USERSTATE #room",
                             "USERNOTICE #room :x", "GLOBALUSERSTATE", "WHISPER me :x"}) {
        chat.server(std::string("@system-msg=x;login=x;slow=10;mod=1;target-msg-id=1 :ann!u@h ") + line);
    }
    EXPECT_THAT(chat.told(), IsEmpty());
}

TEST(Streaming, SendsMoreSlowly) {
    StreamingChat chat(withToken());
    chat.pass(10'000);
    chat.sent();
    for (int i = 0; i < 30; ++i) {
        chat.session.say(u"#room", u"x", chat.now);
    }
    chat.pass(30'000);
    EXPECT_THAT(chat.sent(), SizeIs(20));
}

TEST(Emotes, HaveTheirPlaces) {
    EXPECT_THAT(emotesOf("25:0-4,12-16/1902:6-10", u"Kappa Keepo Kappa"),
                ElementsAre(Emote{u"25", 0, 5}, Emote{u"1902", 6, 5}, Emote{u"25", 12, 5}));
    EXPECT_THAT(emotesOf("e:2-2", u"😂 x"), ElementsAre(Emote{u"e", 3, 1})) << "code points are counted";
    EXPECT_THAT(emotesOf("e:0-0", u"😂 x"), ElementsAre(Emote{u"e", 0, 2}));
    EXPECT_THAT(emotesOf("", u"x"), IsEmpty());
}

TEST(HostileEmotes, AreLeftOut) {
    EXPECT_THAT(emotesOf("a:0-5", u"12345"), IsEmpty());
    EXPECT_THAT(emotesOf("a:3-2", u"12345"), IsEmpty());
    EXPECT_THAT(emotesOf("a:-1-2", u"12345"), IsEmpty());
    EXPECT_THAT(emotesOf("a:0-99999999999999999999999", u"12345"), IsEmpty());
    EXPECT_THAT(emotesOf("a:0-18446744073709551615", u"12345"), IsEmpty());
    EXPECT_THAT(emotesOf("a:0-1x,x-1,1,-,,0", u"12345"), IsEmpty());
    EXPECT_THAT(emotesOf("/:/a/::0-1/", u"12345"), IsEmpty());
    EXPECT_THAT(emotesOf("a:0-0", u""), IsEmpty());
    EXPECT_THAT(emotesOf("a:0-3/b:2-4/c:4-4", u"12345"), ElementsAre(Emote{u"a", 0, 4}, Emote{u"c", 4, 1}))
        << "nothing overlaps";
    std::string many = "a:";
    for (int i = 0; i < 3000; ++i) {
        many += std::to_string(i) + "-" + std::to_string(i) + ",";
    }
    EXPECT_THAT(emotesOf(many, std::u16string(3000, u'x')), SizeIs(most_emotes));
}

} // namespace

} // namespace messenger_client::irc
