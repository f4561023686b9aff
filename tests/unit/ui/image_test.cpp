// Pictures that are read from bytes, whatever these are, and made smaller and larger.
#include <gmock/gmock.h>

#include "tests/fakes/gif.h"
#include "tests/fakes/ui/gif_decoder.h"
#include "ui/image.h"

namespace murmelix::ui {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr std::uint32_t black = 0xFF000000, red = 0xFFFF0000, green = 0xFF00FF00, blue = 0xFF0000FF;
const std::string four_colours("\x00\x00\x00\xFF\x00\x00\x00\xFF\x00\x00\x00\xFF", 12);

class Gif : public testing::Test {
  protected:
    Gif() {
        fakes::gifDecoder().files.clear();
        fakes::gifDecoder().answer = [this](const std::string&) { return decoded; };
    }
    ~Gif() override { fakes::gifDecoder() = {}; }
    static const std::vector<std::string>& given() { return fakes::gifDecoder().files; }

    std::optional<Image> decoded; // by the system
};

TEST_F(Gif, SystemIsGivenTheFirstFrameAlone) {
    fakes::GifFrame first{2, 1, 1, 3, {1, 2}}, second{3, 4, 0, 0, std::vector<std::uint8_t>(12, 3)};
    first.transparent = 2;
    decoded = Image{2, 1, {red, 0}};
    ASSERT_TRUE(decodeGif(fakes::gif(3, 4, four_colours, {first, second}) + "what follows is nobody's business"));
    std::string expected("GIF89a\x02\x00\x01\x00\x81\x00\x00", 13);
    expected += four_colours;
    expected += std::string("\x21\xF9\x04\x01\x00\x00\x02\x00", 8);
    expected += std::string(",\x00\x00\x00\x00\x02\x00\x01\x00\x00\x02", 11);
    expected += fakes::compressed({1, 2}, 2) + ';';
    EXPECT_THAT(given(), ElementsAre(expected));
}

TEST_F(Gif, FrameHasAPaletteOfItsOwnAndMayBeInterlaced) {
    fakes::GifFrame frame{1, 1, 0, 0, {1}};
    frame.palette = std::string("\x01\x02\x03\x04\x05\x06", 6);
    frame.interlaced = true;
    decoded = Image{1, 1, {0xFF040506}};
    ASSERT_TRUE(decodeGif(fakes::gif(1, 1, "", {frame})));
    ASSERT_EQ(given().size(), 1U);
    EXPECT_THAT(given()[0], testing::HasSubstr(std::string("\x01\x00\x01\x00\xC0", 5) + frame.palette));
}

TEST_F(Gif, FirstFrameStandsInItsPlaceOfTheWhole) {
    decoded = Image{1, 1, {red}};
    const auto image = decodeGif(fakes::gif(2, 2, four_colours, {{1, 1, 1, 0, {1}}}));
    ASSERT_TRUE(image);
    EXPECT_EQ(*image, (Image{2, 2, {0U, red, 0U, 0U}}));
}

TEST_F(Gif, FrameBeyondTheEdgeIsCut) {
    decoded = Image{2, 2, {red, green, blue, black}};
    EXPECT_THAT(decodeGif(fakes::gif(2, 1, four_colours, {{2, 2, 1, 0, {1, 2, 3, 3}}}))->pixels, ElementsAre(0U, red));
    EXPECT_THAT(decodeGif(fakes::gif(1, 2, four_colours, {{2, 2, 0, 1, {1, 2, 3, 3}}}))->pixels, ElementsAre(0U, red));
    for (const auto& [left, top] : {std::pair{2, 0}, {0, 2}, {65535, 65535}}) {
        EXPECT_THAT(decodeGif(fakes::gif(2, 2, four_colours, {{2, 2, left, top, {1, 2, 3, 3}}}))->pixels, Each(0U));
    }
}

TEST_F(Gif, WhatTheSystemCannotDecodeIsRefused) {
    const std::string file = fakes::plainGif(2, 2, "abc");
    EXPECT_FALSE(decodeGif(file));
    decoded = Image{2, 1, {red, red}};
    EXPECT_FALSE(decodeGif(file)) << "another size";
    decoded = Image{1, 2, {red, red}};
    EXPECT_FALSE(decodeGif(file)) << "another size";
    EXPECT_EQ(given().size(), 3U);
}

TEST_F(Gif, WhatIsNoGifIsNotGivenToTheSystem) {
    for (const std::string& bytes :
         {std::string(), std::string("GIF89a"), std::string("GIF90a") + fakes::plainGif(2, 2, "abc").substr(6),
          std::string("\x89PNG\r\n\x1A\n"), std::string("<html>404</html>"), std::string(5000, '\0'),
          fakes::gif(2, 2, four_colours, {}), fakes::gif(2, 2, "", {{2, 2, 0, 0, {1, 1, 1, 1}}})}) {
        EXPECT_FALSE(decodeGif(bytes)) << bytes.substr(0, 20);
    }
    EXPECT_THAT(given(), testing::IsEmpty());
}

TEST_F(Gif, CodesOfAWidthThatCannotBeAreRefused) {
    const std::string whole = fakes::plainGif(1, 1, "abc");
    const std::size_t at = whole.rfind(',') + 10;
    for (const char bits : {'\0', '\1', '\x09', '\x0C', '\xFF'}) {
        std::string damaged = whole;
        damaged[at] = bits;
        EXPECT_FALSE(decodeGif(damaged));
    }
    EXPECT_THAT(given(), testing::IsEmpty());
}

TEST_F(Gif, FileThatBreaksOffAnywhereIsRefused) {
    const fakes::GifFrame frame{20, 20, 0, 0, std::vector<std::uint8_t>(400, 1)};
    const std::string whole = fakes::gif(20, 20, four_colours, {frame, frame});
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(decodeGif(whole.substr(0, length))) << length;
    }
    EXPECT_THAT(given(), testing::IsEmpty());
}

TEST_F(Gif, SizesThatNobodyNeedsAreRefused) {
    fakes::gifDecoder().answer = nullptr; // what it is given it decodes
    const auto sized = [](int screen, int frame, int next = 1) {
        return fakes::gif(screen, screen, four_colours,
                          {{frame, frame, 0, 0, {1, 2, 3}}, {next, next, 0, 0, {1, 2, 3}}});
    };
    EXPECT_TRUE(decodeGif(sized(1, 1)));
    EXPECT_FALSE(decodeGif(sized(65535, 1)));
    EXPECT_FALSE(decodeGif(sized(1, 65535)));
    EXPECT_FALSE(decodeGif(sized(1, 1, 65535)));
    EXPECT_FALSE(decodeGif(sized(0, 1)));
    EXPECT_FALSE(decodeGif(sized(1, 0)));
    EXPECT_FALSE(decodeGif(fakes::plainGif(513, 512, "abc")));
    EXPECT_TRUE(decodeGif(fakes::plainGif(512, 512, "abc")));
    const std::string small = fakes::plainGif(1, 1, "abc");
    EXPECT_TRUE(decodeGif(small + std::string(longest_gif - small.size(), 'x')));
    EXPECT_FALSE(decodeGif(small + std::string(longest_gif - small.size() + 1, 'x')));
}

TEST(Resized, HalfTheSizeAveragesNeighbours) {
    const Image image{4, 1, {black, black, 0xFFFFFFFF, 0xFFFFFFFF}};
    const Image small = resized(image, 2, 1);
    EXPECT_EQ(small.width, 2);
    ASSERT_EQ(small.pixels.size(), 2U);
    // Three quarters from the pixels that it covers, the rest from those beside.
    EXPECT_EQ(small.pixels[0], 0xFF242424);
    EXPECT_EQ(small.pixels[1], 0xFFDBDBDB);
}

TEST(Resized, OneColourStaysThatColourAtEverySize) {
    const Image image{5, 7, std::vector<std::uint32_t>(35, 0x80336699)};
    for (const Size size : {Size{1, 1}, Size{3, 2}, Size{5, 7}, Size{50, 70}}) {
        const Image other = resized(image, size.width, size.height);
        EXPECT_EQ(other.pixels.size(), static_cast<std::size_t>(size.width * size.height));
        EXPECT_THAT(other.pixels, Each(0x80336699)) << size.width;
    }
}

// The colour of what is not seen must not show at the edges of what is.
TEST(Resized, TransparentPixelsLendNoColour) {
    const Image image{2, 1, {red, 0x0000FF00}};
    EXPECT_THAT(resized(image, 1, 1).pixels, ElementsAre(0x80FF0000));
}

TEST(Resized, RowsStayRows) {
    const Image image{1, 2, {red, blue}};
    const Image large = resized(image, 3, 2);
    EXPECT_THAT(large.pixels, ElementsAre(red, red, red, blue, blue, blue));
}

TEST(Fitted, KeepsItsShape) {
    EXPECT_EQ(fitted({200, 100, {}}, {100, 100}), (Size{100, 50}));
    EXPECT_EQ(fitted({100, 200, {}}, {100, 100}), (Size{50, 100}));
    EXPECT_EQ(fitted({10, 10, {}}, {300, 200}), (Size{200, 200}));
    EXPECT_EQ(fitted({65535, 1, {}}, {100, 100}), (Size{100, 1})) << "something is seen of it";
}

} // namespace
} // namespace murmelix::ui
