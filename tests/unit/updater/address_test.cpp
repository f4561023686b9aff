#include "common/address.h"

#include <gmock/gmock.h>

#include "common/text.h"
#include "companions/updater/asking.h"

namespace updater {
namespace {

using murmelix::toUtf8;
using murmelix::webAddress;
using murmelix::WebAddress;

TEST(WebAddress, HasAHostAPortAndAPath) {
    EXPECT_EQ(webAddress(u"http://www.example.org/a/b.txt"), (WebAddress{false, u"www.example.org", 80, u"/a/b.txt"}));
    EXPECT_EQ(webAddress(u"HTTPS://example"), (WebAddress{true, u"example", 443, u"/"}));
    EXPECT_EQ(webAddress(u"http://127.0.0.1:8080/"), (WebAddress{false, u"127.0.0.1", 8080, u"/"}));
    EXPECT_EQ(webAddress(u"https://a.b:1?x=/y%20z"), (WebAddress{true, u"a.b", 1, u"/?x=/y%20z"}));
}

TEST(WebAddress, NothingElseIsOne) {
    for (const std::u16string_view text : {u"",
                                           u"http",
                                           u"http:/a/",
                                           u"http://",
                                           u"https:///a",
                                           u"httpx://a/",
                                           u"ftp://a/",
                                           u"file://C:/x",
                                           u" http://a/",
                                           u"http://a b/",
                                           u"http://a/b c",
                                           u"http://a/b\"c",
                                           u"http://a/b\\c",
                                           u"http://a/#b",
                                           u"http://a/\u00E9",
                                           u"http://a/\x7F",
                                           u"http://a/\n",
                                           u"http://a:0/",
                                           u"http://a:65536/",
                                           u"http://a:/",
                                           u"http://me@a/",
                                           u"http://me:b@a/",
                                           u"http://[::1]/",
                                           u"http://-a/",
                                           u"C:\\Windows\\notepad.exe"}) {
        EXPECT_FALSE(webAddress(text)) << toUtf8(text);
    }
    EXPECT_FALSE(webAddress(std::u16string(u"http://a/\0b", 11)));
    EXPECT_TRUE(webAddress(u"http://a/" + std::u16string(2039, u'b')));
    EXPECT_FALSE(webAddress(u"http://a/" + std::u16string(2040, u'b')));
}

TEST(VersionAddress, IsInTheFolderOfThePage) {
    for (const std::u16string page : {u"http://a/Murmelix/download/", u"http://a/Murmelix/download"}) {
        EXPECT_EQ(versionAddress(page), (WebAddress{false, u"a", 80, u"/Murmelix/download/version.txt"}));
    }
    EXPECT_EQ(versionAddress(u"https://a:8"), (WebAddress{true, u"a", 8, u"/version.txt"}));
    for (const std::u16string page : {u"http://a/?", u"http://a/download/?x=1", u"http://a?/", u"http://a/#", u"a/"}) {
        EXPECT_FALSE(versionAddress(page)) << toUtf8(page);
    }
}

} // namespace
} // namespace updater
