// Emoji of a text, and what is said and acted for them.
#include "companions/messenger/reading/emoji.h"

#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "characters/emoticons.h"
#include "common/text.h"
#include "companions/messenger/reading/characters.h"
#include "companions/messenger/reading/emoji_table.h"

namespace messenger_client::reading {

namespace {

using View = std::u16string_view;

std::vector<std::u16string> listed(View list) {
    std::vector<std::u16string> parts;
    for (std::size_t at = 0; at < list.size();) {
        const std::size_t end = std::min(list.find(u' ', at), list.size());
        if (end > at) {
            parts.emplace_back(list.substr(at, end - at));
        }
        at = end + 1;
    }
    return parts;
}

TEST(EmojiTest, MostUsedOnesAreActed) {
    EXPECT_EQ(withoutEmoji(u"😂"), u"(lol)");
    EXPECT_EQ(withoutEmoji(u"❤"), u"(L)");
    EXPECT_EQ(withoutEmoji(u"❤️"), u"(L)");
    EXPECT_EQ(withoutEmoji(u"😢"), u":'(");
    EXPECT_EQ(withoutEmoji(u"😉"), u";)");
    EXPECT_EQ(withoutEmoji(u"🎂"), u"(^)");
    EXPECT_EQ(withoutEmoji(u"👏"), u"(y)");
}

TEST(EmojiTest, OthersAreNamedOrLeftOut) {
    EXPECT_EQ(withoutEmoji(u"I want 🍕 now"), u"I want [pizza] now");
    EXPECT_EQ(withoutEmoji(u"I want 🍕 now", {.others = OtherEmoji::left_out}), u"I want now");
    EXPECT_EQ(withoutEmoji(u"I want 🍕", {.others = OtherEmoji::left_out}), u"I want ");
    EXPECT_EQ(withoutEmoji(u"😂 and 🍕", {.others = OtherEmoji::left_out}), u"(lol) and ");
}

TEST(EmojiTest, AllOfTheTableAreFound) {
    std::set<std::u16string> acted, emoticons;
    for (const ActedEmoji& row : actedEmoji()) {
        emoticons.insert(murmelix::toLower(row.emoticon));
        for (const std::u16string& emoji : listed(row.emoji)) {
            EXPECT_EQ(emoticonOf(emoji), row.emoticon) << murmelix::toUtf8(emoji);
            EXPECT_TRUE(acted.insert(emoji).second) << "twice: " << murmelix::toUtf8(emoji);
        }
    }
    EXPECT_GE(acted.size(), 150u);
    // All that characters act, but for the question after age and sex, which no emoji asks.
    EXPECT_EQ(emoticons, (std::set<std::u16string>{
                             u":)",      u":d",     u"(lol)", u"(haa)", u";)",         u":p",  u":o",  u"(ohh)",
                             u"(h)",     u":@",     u":s",    u":$",    u":(",         u":'(", u":|",  u"(sigh)",
                             u"(sniff)", u"(slap)", u"(run)", u"(boo)", u"(whistle)",  u"(a)", u"(6)", u"(l)",
                             u"(u)",     u"(k)",    u"({)",   u"(})",   u"(y)",        u"(n)", u"(b)", u"(d)",
                             u"(c)",     u"(^)",    u"(g)",   u"(f)",   u"(birthday)", u"(w)", u"(s)", u"(@)",
                             u"(&)",     u":[",     u"(*)",   u"(#)",   u"(r)",        u"(8)", u"(~)", u"(p)",
                             u"(e)",     u"(t)",    u"(i)",   u"(o)",   u"(m)",        u"(x)", u"(z)", u"(%)"}));
}

// What reads the conversations finds each of them whatever stands beside it.
TEST(EmojiTest, EmoticonsAreRecognisedWithinAnyText) {
    for (const ActedEmoji& row : actedEmoji()) {
        for (const std::u16string& emoji : listed(row.emoji)) {
            for (const auto& [before, after] :
                 {std::pair<View, View>{u"a", u"b"}, {u":", u")"}, {u"(", u")"}, {u"8", u"("}}) {
                const std::u16string text = withoutEmoji(std::u16string(before) + emoji + std::u16string(after));
                const std::u16string marked = murmelix::MarkEmoticons(text, true, u" | ");
                EXPECT_EQ(murmelix::toLower(marked),
                          murmelix::toLower(u" | " + std::u16string(before) + u"  | Emot+" +
                                            std::u16string(row.emoticon) + u" |  " + std::u16string(after) + u" | "))
                    << murmelix::toUtf8(text);
            }
        }
    }
}

TEST(EmojiTest, NamesAreNoEmoticonsWhateverStandsBesideThem) {
    EXPECT_EQ(withoutEmoji(u":🍕)"), u": [pizza] )");
    EXPECT_EQ(withoutEmoji(u":🍕)", {.others = OtherEmoji::left_out}), u": )");
    for (const View list : namedEmoji()) {
        EXPECT_FALSE(hasEmoticon(list)) << murmelix::toUtf8(list);
    }
    EXPECT_FALSE(hasEmoticon(u"[flag: Germany]"));
}

TEST(EmojiTest, AllNamesAreFoundAndShort) {
    std::size_t count = 0;
    for (const View list : namedEmoji()) {
        for (std::size_t at = 0; at < list.size();) {
            const std::size_t end = std::min(list.find(u", ", at), list.size());
            const View entry = list.substr(at, end - at);
            const std::size_t blank = entry.find(u' ');
            ASSERT_NE(blank, View::npos);
            std::u16string emoji(entry.substr(0, blank));
            if (emojiAt(emoji, 0) == 0) {
                emoji += u'\xFE0F'; // one that is text at first
            }
            EXPECT_EQ(nameOf(emoji), entry.substr(blank + 1)) << murmelix::toUtf8(entry);
            EXPECT_EQ(emoticonOf(emoji), u"") << murmelix::toUtf8(entry);
            EXPECT_LE(entry.size() - blank + 3, longest_emoji_name);
            ++count;
            at = end + 2;
        }
    }
    EXPECT_GE(count, 1'000u);
}

TEST(EmojiTest, SkinTonesAndSelectorsChangeNothing) {
    for (const View thumb : {u"👍", u"👍🏻", u"👍🏼", u"👍🏽", u"👍🏾", u"👍🏿", u"👍️"}) {
        EXPECT_EQ(withoutEmoji(thumb), u"(y)");
    }
    EXPECT_EQ(withoutEmoji(u"☝🏽"), u"[finger up]");
    EXPECT_EQ(withoutEmoji(u"🫱🏻‍🫲🏿"), u"[handshake]");
    EXPECT_EQ(withoutEmoji(u"☺️"), u":)");
    EXPECT_EQ(withoutEmoji(u"☎️"), u"(t)");
}

TEST(EmojiTest, SignsOfTextStayUnlessASelectorMakesPicturesOfThem) {
    EXPECT_EQ(withoutEmoji(u"Murmelix™ ↔ ℹ ▶"), u"Murmelix™ ↔ ℹ ▶");
    EXPECT_EQ(withoutEmoji(u"™️"), u"[trade mark]");
    EXPECT_EQ(withoutEmoji(u"↔️"), u"[left and right]");
    EXPECT_EQ(withoutEmoji(u"❤︎"), u"❤"); // a selector for text
    EXPECT_EQ(withoutEmoji(u"© ® → ★ ✓ 1 # *"), u"© ® → ★ ✓ 1 # *");
}

TEST(EmojiTest, JoinedOnesAreOne) {
    EXPECT_EQ(withoutEmoji(u"🏳️‍🌈"), u"(r)");
    EXPECT_EQ(withoutEmoji(u"❤️‍🔥"), u"(L)");
    EXPECT_EQ(withoutEmoji(u"😮‍💨"), u"(sigh)");
    EXPECT_EQ(withoutEmoji(u"😵‍💫"), u":S");
    EXPECT_EQ(withoutEmoji(u"🐈‍⬛"), u"(@)");
    EXPECT_EQ(withoutEmoji(u"🏴‍☠️"), u"[pirate flag]");
    EXPECT_EQ(withoutEmoji(u"👩🏽‍🚀"), u"[astronaut]");
    EXPECT_EQ(withoutEmoji(u"👨‍💻"), u"[programmer]");
    EXPECT_EQ(withoutEmoji(u"🧑‍💻"), u"[programmer]");
    EXPECT_EQ(withoutEmoji(u"🤷🏿‍♀️"), u"[shrug]");
    EXPECT_EQ(withoutEmoji(u"🤦‍♂️"), u"(slap)");
    EXPECT_EQ(withoutEmoji(u"🏃🏼‍♀️‍➡️"), u"(run)");
    EXPECT_EQ(withoutEmoji(u"👨‍👩‍👧‍👦"), u"[family]");
    EXPECT_EQ(withoutEmoji(u"👩‍❤️‍👨"), u"(L)");
    EXPECT_EQ(withoutEmoji(u"👩‍❤️‍💋‍👨"), u"(k)");
    EXPECT_EQ(withoutEmoji(u"🧑🏻‍🤝‍🧑🏿"), u"[people holding hands]");
}

TEST(EmojiTest, JoinedOnesThatNobodyKnowsAreTheFirst) {
    EXPECT_EQ(withoutEmoji(u"🍕‍🚀"), u"[pizza]");
    EXPECT_EQ(withoutEmoji(u"😂‍🍕"), u"(lol)");
}

TEST(EmojiTest, FlagsAreTheirCountries) {
    EXPECT_EQ(withoutEmoji(u"🇩🇪"), u"[flag: Germany]");
    EXPECT_EQ(withoutEmoji(u"🇩🇪🇫🇷"), u"[flag: Germany] [flag: France]");
    EXPECT_EQ(withoutEmoji(u"🇿🇿"), u"[flag]");
    EXPECT_EQ(withoutEmoji(u"🇩"), u"[flag]");
    EXPECT_EQ(withoutEmoji(u"🏴󠁧󠁢󠁳󠁣󠁴󠁿!"), u"[flag: Scotland] !");
    EXPECT_EQ(withoutEmoji(u"🏴󠁧󠁢󠁥󠁮󠁧󠁿"), u"[flag: England]");
    EXPECT_EQ(withoutEmoji(u"🏴󠁧󠁢󠁷󠁬󠁳󠁿"), u"[flag: Wales]");
    EXPECT_EQ(withoutEmoji(u"🏴󠁵󠁳󠁴󠁸󠁿"), u"[flag]");
    EXPECT_EQ(withoutEmoji(u"🏴"), u"[black flag]");
}

TEST(EmojiTest, KeycapsAreTheirKeys) {
    EXPECT_EQ(withoutEmoji(u"1️⃣"), u"[1]");
    EXPECT_EQ(withoutEmoji(u"9⃣"), u"[9]");
    EXPECT_EQ(withoutEmoji(u"#️⃣ *️⃣ 🔟"), u"[hash] [star] [ten]");
    EXPECT_EQ(withoutEmoji(u"1️2"), u"12");
}

TEST(EmojiTest, RowsAreCut) {
    EXPECT_EQ(withoutEmoji(u"😂😂😂😂😂😂"), u"(lol)");
    EXPECT_EQ(withoutEmoji(u"😂 😂 🤣"), u"(lol) ");
    EXPECT_EQ(withoutEmoji(u"😂❤👏🎂🍕"), u"(lol) (L) (y)");
    EXPECT_EQ(withoutEmoji(u"😂❤👏🎂🍕", {.most_in_row = 1}), u"(lol)");
    EXPECT_EQ(withoutEmoji(u"😂 ha 😂"), u"(lol) ha (lol)");
    EXPECT_EQ(withoutEmoji(u"👍🏻👍🏿"), u"(y)");
}

TEST(EmojiTest, PartsWithoutAnEmojiVanish) {
    EXPECT_EQ(withoutEmoji(u"a\u200Db\uFE0Fc"), u"abc");
    EXPECT_EQ(withoutEmoji(u"\U000E0067\U000E007F!"), u"!");
    EXPECT_EQ(withoutEmoji(u"x🏿y"), u"x y");
    EXPECT_EQ(withoutEmoji(u"\U0001FAFAtail"), u"tail"); // newer than the tables
}

TEST(EmojiTest, WhatIsNoEmojiStays) {
    EXPECT_EQ(withoutEmoji(u"Grüße, 漢字 :) ½"), u"Grüße, 漢字 :) ½");
    EXPECT_EQ(withoutEmoji(u""), u"");
    EXPECT_EQ(emojiAt(u"a", 0), 0u);
    EXPECT_EQ(emojiAt(u"👨‍👩‍👧x", 0), 8u);
    EXPECT_EQ(nameOf(u"pizza"), u"");
    EXPECT_EQ(nameOf(u"🍕🍕"), u"");
    EXPECT_EQ(nameOf(u"😂"), u"");
    EXPECT_EQ(emoticonOf(u"🍕"), u"");
    EXPECT_EQ(emoticonOf(u""), u"");
}

TEST(EmojiTest, ChainsWithoutEndAreParted) {
    std::u16string chain = u"👩";
    for (int i = 0; i < 1'000; ++i) {
        chain += u"\u200D👩";
    }
    EXPECT_EQ(withoutEmoji(chain), u"[family] (x)"); // a hundred of ten, and one
}

TEST(EmojiTest, EmoticonsAreKnownInBothCases) {
    for (const View text : {u":)", u"a(l)b", u"(L)", u":D", u":d", u"(BIRTHDAY)", u"(S)", u"x:'(", u"(((y)"}) {
        EXPECT_TRUE(hasEmoticon(text)) << murmelix::toUtf8(text);
    }
    for (const View text : {u"(s)", u"", u"(", u":", u": )", u"(lo", u"()", u"8)"}) {
        EXPECT_FALSE(hasEmoticon(text)) << murmelix::toUtf8(text);
    }
}

// Those that the client takes for emoticons are those of who reads.
TEST(EmojiTest, EmoticonsAreThoseThatAreRead) {
    for (char16_t first : {u'(', u':', u';'}) {
        for (char16_t second = u' '; second < 0x7F; ++second) {
            for (const View tail : {u"", u")", u"(", u"D", u"|"}) {
                const std::u16string text = std::u16string{first, second} + std::u16string(tail);
                EXPECT_EQ(hasEmoticon(text), murmelix::MarkEmoticons(text, false) != text) << murmelix::toUtf8(text);
            }
        }
    }
}

} // namespace

} // namespace messenger_client::reading
