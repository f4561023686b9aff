#include "companions/messenger/reading/links.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace messenger_client::reading {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::u16string> textsOf(std::u16string_view text) {
    std::vector<std::u16string> links;
    for (const Range& link : linksIn(text)) {
        links.emplace_back(text.substr(link.begin, link.end - link.begin));
    }
    return links;
}

TEST(LinksTest, AreFoundWithWhatBelongsToThem) {
    EXPECT_THAT(textsOf(u"see http://example.org/a?b=c#d, and www.example.org."),
                ElementsAre(u"http://example.org/a?b=c#d", u"www.example.org"));
    EXPECT_THAT(textsOf(u"(https://example.org/x_(y)) <HTTPS://EXAMPLE.ORG>"),
                ElementsAre(u"https://example.org/x_(y)", u"HTTPS://EXAMPLE.ORG"));
    EXPECT_THAT(textsOf(u"https://example.org/x\r\nand on"), ElementsAre(u"https://example.org/x"));
    EXPECT_THAT(textsOf(u"http:// www. javascript:alert(1) a://"), IsEmpty());
    EXPECT_THAT(textsOf(u""), IsEmpty());
}

TEST(LinksTest, LeadIntoTheWebOrElsewhere) {
    EXPECT_TRUE(isWebLink(u"https://example.org"));
    EXPECT_TRUE(isWebLink(u"HTTP://example.org"));
    EXPECT_TRUE(isWebLink(u"Www.example.org"));
    EXPECT_FALSE(isWebLink(u"file://x"));
    EXPECT_FALSE(isWebLink(u"irc://example.org"));
    EXPECT_FALSE(isWebLink(u"xhttp://example.org"));
}

} // namespace

} // namespace messenger_client::reading
