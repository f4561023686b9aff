// What a server says of itself, and when names are the same.
#include "companions/messenger/irc/features.h"

#include <string>

#include <gtest/gtest.h>

#include "companions/messenger/irc/case_mapping.h"

namespace messenger_client::irc {

namespace {

Features told(const std::string& features) {
    Features result;
    const std::string line = ":s.example 005 me " + features + " :are supported by this server";
    result.read(Message(line));
    return result;
}

TEST(CaseMappingTest, FoldsNames) {
    EXPECT_EQ(folded("Ann[\\]~", CaseMapping::ascii), "ann[\\]~");
    EXPECT_EQ(folded("Ann[\\]~{|}^", CaseMapping::rfc1459), "ann{|}^{|}^");
    EXPECT_EQ(folded("Ann[\\]~", CaseMapping::strict_rfc1459), "ann{|}~");
    EXPECT_EQ(folded("@`Z\xC4", CaseMapping::rfc1459), "@`z\xC4");
}

TEST(FeaturesTest, AreThoseOfTheProtocolAtFirst) {
    const Features none;
    EXPECT_EQ(none.caseMapping(), CaseMapping::rfc1459);
    EXPECT_EQ(none.lineLength(), 512U);
    EXPECT_TRUE(none.isChannel("#a"));
    EXPECT_TRUE(none.isChannel("&a"));
    EXPECT_FALSE(none.isChannel("ann"));
    EXPECT_FALSE(none.isChannel("#"));
    EXPECT_FALSE(none.isChannel(""));
    EXPECT_EQ(none.rankModes(), "ov");
    EXPECT_EQ(none.rankSigns(), "@+");
}

TEST(FeaturesTest, AreRead) {
    const Features features = told("CASEMAPPING=ascii NETWORK=Test.Net LINELEN=400 CHANTYPES=# PREFIX=(qaohv)~&@%+ "
                                   "CHANMODES=b,k,l,imnpst SAFELIST");
    EXPECT_EQ(features.caseMapping(), CaseMapping::ascii);
    EXPECT_EQ(features.network(), "Test.Net");
    EXPECT_EQ(features.lineLength(), 400U);
    EXPECT_FALSE(features.isChannel("&a"));
    EXPECT_EQ(features.rankSigns(), "~&@%+");
    EXPECT_EQ(features.withoutRank("@#a"), "#a");
    EXPECT_EQ(features.withoutRank("#a"), "#a");
    EXPECT_EQ(features.withoutRank("@ann"), "@ann");
    EXPECT_TRUE(features.takesParameter('b', false));
    EXPECT_TRUE(features.takesParameter('k', false));
    EXPECT_TRUE(features.takesParameter('l', true));
    EXPECT_FALSE(features.takesParameter('l', false));
    EXPECT_FALSE(features.takesParameter('n', true));
}

TEST(FeaturesTest, OtherMappingsKnowLettersAlone) {
    EXPECT_EQ(told("CASEMAPPING=rfc7613").caseMapping(), CaseMapping::ascii);
    EXPECT_EQ(told("CASEMAPPING=strict-rfc1459").caseMapping(), CaseMapping::strict_rfc1459);
}

TEST(HostileFeatures, LeaveWhatIsGood) {
    EXPECT_EQ(told("LINELEN=99999999").lineLength(), 512U);
    EXPECT_EQ(told("LINELEN=99999999999999999999999999").lineLength(), 512U);
    EXPECT_EQ(told("LINELEN=-1").lineLength(), 512U);
    EXPECT_EQ(told("LINELEN=3").lineLength(), 256U);
    EXPECT_EQ(told("PREFIX=(ov)@").rankSigns(), "@+");
    EXPECT_EQ(told("PREFIX=ov@+").rankSigns(), "@+");
    EXPECT_EQ(told("PREFIX=(abcdefghijklmnopq)12345678901234567").rankSigns(), "@+");
    EXPECT_EQ(told("PREFIX=").rankSigns(), "");
    EXPECT_EQ(told("NETWORK=" + std::string(1000, 'x')).network(), "");
    EXPECT_EQ(told("= == =x NETWORK==").network(), "=");
}

} // namespace

} // namespace messenger_client::irc
