// What the user types.
#include "companions/messenger/irc/input.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"

namespace messenger_client::irc {

namespace {

using testing::HasSubstr;

template <class Kind>
Kind parsed(std::u16string_view text) {
    const Typed result = parseTyped(text);
    if (const Kind* kind = std::get_if<Kind>(&result)) {
        return *kind;
    }
    ADD_FAILURE() << murmelix::toUtf8(text) << " is of another kind";
    return {};
}

std::string refusalOf(std::u16string_view text) {
    return murmelix::toUtf8(parsed<typed::Refused>(text).why);
}

TEST(TypedText, IsSaid) {
    EXPECT_EQ(parsed<typed::Say>(u"hello").text, u"hello");
    EXPECT_EQ(parsed<typed::Say>(u"").text, u"");
    EXPECT_EQ(parsed<typed::Say>(u" /me waves").text, u" /me waves");
    EXPECT_EQ(parsed<typed::Say>(u"//me waves").text, u"/me waves");
    EXPECT_EQ(parsed<typed::Say>(u"//").text, u"/");
    EXPECT_EQ(parsed<typed::Say>(u"two\r\n/me lines").text, u"two\r\n/me lines");
}

TEST(TypedCommands, HaveTheirParts) {
    EXPECT_EQ(parsed<typed::Act>(u"/me waves  twice").text, u"waves  twice");
    EXPECT_EQ(parsed<typed::Act>(u"/ME waves").text, u"waves");
    const auto message = parsed<typed::Message>(u"/msg ann hello  you");
    EXPECT_EQ(message.target, u"ann");
    EXPECT_EQ(message.text, u"hello  you");
    EXPECT_EQ(parsed<typed::Join>(u"/join #a, #b ").channels, u"#a, #b");
    EXPECT_EQ(parsed<typed::Part>(u"/part").channel, u"");
    EXPECT_EQ(parsed<typed::Part>(u"/part #a good night").channel, u"#a");
    EXPECT_EQ(parsed<typed::Part>(u"/part #a good night").why, u"good night");
    EXPECT_EQ(parsed<typed::Part>(u"/part good night").why, u"good night");
    EXPECT_EQ(parsed<typed::Nick>(u"/nick ann").nick, u"ann");
    EXPECT_EQ(parsed<typed::Away>(u"/away").text, u"");
    EXPECT_EQ(parsed<typed::Away>(u"/away at lunch").text, u"at lunch");
    EXPECT_EQ(parsed<typed::Query>(u"/query ann").nick, u"ann");
    EXPECT_EQ(parsed<typed::Query>(u"/query ann hello you").text, u"hello you");
    EXPECT_EQ(parsed<typed::Quote>(u"/quote WHOIS ann").line, u"WHOIS ann");
}

TEST(TypedCommands, AreRefusedWithWhatIsWrong) {
    EXPECT_THAT(refusalOf(u"/dance now"), HasSubstr("no command /dance. "));
    EXPECT_THAT(refusalOf(u"/"), HasSubstr("no command /. "));
    EXPECT_THAT(refusalOf(u"/ hello"), HasSubstr("no command /. "));
    EXPECT_THAT(refusalOf(u"/me"), HasSubstr("/me does something"));
    EXPECT_THAT(refusalOf(u"/me "), HasSubstr("/me does something"));
    EXPECT_THAT(refusalOf(u"/msg ann"), HasSubstr("/msg name text"));
    EXPECT_THAT(refusalOf(u"/join"), HasSubstr("/join #channel"));
    EXPECT_THAT(refusalOf(u"/nick a\nb"), HasSubstr("one line"));
    EXPECT_THAT(refusalOf(u"/quote PING\r\nQUIT"), HasSubstr("one line"));
    EXPECT_LT(refusalOf(u"/" + std::u16string(100'000, u'x')).size(), 200U);
}

} // namespace

} // namespace messenger_client::irc
