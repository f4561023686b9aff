#include "platform/secrets.h"

#include <string>

#include <gtest/gtest.h>

#include "common/text.h"

namespace murmelix::platform {

TEST(Secrets, AreReadAgain) {
    const std::u16string longest(longest_secret, u'\u00e9');
    for (const std::u16string& text : {std::u16string(u"p\u00e4ss \U0001F511 word"), std::u16string(), longest}) {
        const auto kept = protectSecret(text);
        ASSERT_TRUE(kept);
        EXPECT_EQ(revealSecret(*kept), text);
    }
}

TEST(Secrets, AreNotAmongTheBytesThatAreKept) {
    const std::u16string text = u"correct horse battery";
    const auto kept = protectSecret(text);
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->find(toUtf8(text)), std::string::npos);
    EXPECT_EQ(kept->find(std::string(reinterpret_cast<const char*>(text.data()), 2 * text.size())), std::string::npos);
}

TEST(Secrets, AreNotMadeOfOtherBytes) {
    const auto kept = protectSecret(u"secret");
    ASSERT_TRUE(kept);
    for (std::size_t i = 0; i < kept->size(); ++i) {
        std::string changed = *kept;
        changed[i] = static_cast<char>(changed[i] ^ 1);
        // Some bytes mean nothing.
        EXPECT_EQ(revealSecret(changed).value_or(u"secret"), u"secret") << i;
    }
    EXPECT_FALSE(revealSecret(kept->substr(0, kept->size() / 2)));
    EXPECT_FALSE(revealSecret(std::string(100'000, 'x')));
    EXPECT_FALSE(revealSecret(""));
    EXPECT_FALSE(revealSecret("no secret"));
    EXPECT_FALSE(protectSecret(std::u16string(longest_secret + 1, u'x')));
}

} // namespace murmelix::platform
