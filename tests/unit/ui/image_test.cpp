// Pictures that are read from bytes, whatever these are, and made smaller and larger.
#include <random>

#include <gmock/gmock.h>

#include "tests/fakes/gif.h"
#include "ui/image.h"

namespace murmelix::ui {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr std::uint32_t black = 0xFF000000, red = 0xFFFF0000, green = 0xFF00FF00, blue = 0xFF0000FF;
const std::string four_colours("\x00\x00\x00\xFF\x00\x00\x00\xFF\x00\x00\x00\xFF", 12);

// So many rows of pixels that compress badly, of a palette in which every index has its own colour.
struct Noise {
    Noise(int columns, int lines) : width(columns), height(lines) {
        std::mt19937 random(7);
        for (int i = 0; i < 256; ++i) {
            palette += {static_cast<char>(i), static_cast<char>(255 - i), static_cast<char>(i * 7)};
        }
        for (int i = 0; i < width * height; ++i) {
            indices.push_back(static_cast<std::uint8_t>(random() % 3 ? random() : static_cast<unsigned>(i / 9)));
        }
    }
    std::uint32_t colour(std::size_t i) const {
        const auto part = [&](std::size_t k) {
            return std::uint32_t{static_cast<std::uint8_t>(palette[3U * indices[i] + k])};
        };
        return 0xFF000000 | part(0) << 16 | part(1) << 8 | part(2);
    }
    std::string file(bool interlaced = false) const {
        auto drawn = indices;
        if (interlaced) {
            drawn.clear();
            for (const auto& [first, step] : {std::pair{0, 8}, {4, 8}, {2, 4}, {1, 2}}) {
                for (int row = first; row < height; row += step) {
                    drawn.insert(drawn.end(), indices.begin() + row * width, indices.begin() + (row + 1) * width);
                }
            }
        }
        return fakes::gif(width, height, palette, {{width, height, 0, 0, drawn, -1, interlaced}});
    }

    int width, height;
    std::string palette;
    std::vector<std::uint8_t> indices;
};

TEST(Gif, ColoursAreThoseOfThePalette) {
    const auto image = decodeGif(fakes::gif(3, 2, four_colours, {{3, 2, 0, 0, {0, 1, 2, 3, 1, 1}}}));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 3);
    EXPECT_EQ(image->height, 2);
    EXPECT_THAT(image->pixels, ElementsAre(black, red, green, blue, red, red));
}

// Packed by hand: two by two pixels; red, green, blue and white.
TEST(Gif, SmallFilePackedByHand) {
    const std::string file("GIF87a\x02\x00\x02\x00\x81\x00\x00\xFF\x00\x00\x00\xFF\x00\x00\x00\xFF\xFF\xFF\xFF"
                           ",\x00\x00\x00\x00\x02\x00\x02\x00\x00\x02\x03\x44\x34\x05\x00;",
                           42);
    const auto image = decodeGif(file);
    ASSERT_TRUE(image);
    EXPECT_THAT(image->pixels, ElementsAre(red, green, blue, 0xFFFFFFFF));
}

TEST(Gif, CodesOfAllWidthsAreRead) {
    const Noise noise(300, 200); // the codes begin anew several times
    for (const bool interlaced : {false, true}) {
        const auto image = decodeGif(noise.file(interlaced));
        ASSERT_TRUE(image);
        ASSERT_EQ(image->pixels.size(), noise.indices.size());
        for (std::size_t i = 0; i < image->pixels.size(); ++i) {
            ASSERT_EQ(image->pixels[i], noise.colour(i)) << i << ", interlaced: " << interlaced;
        }
    }
}

TEST(Gif, LongRunsOfOneColourAreRead) {
    const auto image = decodeGif(fakes::plainGif(400, 300, "\x10\x20\x30"));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixels.size(), 120000U);
    EXPECT_THAT(image->pixels, Each(0xFF102030));
}

TEST(Gif, TransparentColourIsNotDrawn) {
    fakes::GifFrame frame{2, 1, 0, 0, {1, 2}};
    frame.transparent = 2;
    const auto image = decodeGif(fakes::gif(2, 1, four_colours, {frame}));
    ASSERT_TRUE(image);
    EXPECT_THAT(image->pixels, ElementsAre(red, 0U));
}

TEST(Gif, FirstFrameStandsInItsPlaceOfTheWhole) {
    const fakes::GifFrame first{1, 1, 1, 0, {1}}, second{2, 2, 0, 0, {3, 3, 3, 3}};
    const auto image = decodeGif(fakes::gif(2, 2, four_colours, {first, second}));
    ASSERT_TRUE(image);
    EXPECT_THAT(image->pixels, ElementsAre(0U, red, 0U, 0U));
}

TEST(Gif, FrameBeyondTheEdgeIsCut) {
    const auto image = decodeGif(fakes::gif(2, 1, four_colours, {{2, 2, 1, 0, {1, 2, 3, 3}}}));
    ASSERT_TRUE(image);
    EXPECT_THAT(image->pixels, ElementsAre(0U, red));
}

TEST(Gif, FrameHasAPaletteOfItsOwn) {
    fakes::GifFrame frame{1, 1, 0, 0, {1}};
    frame.palette = std::string("\x01\x02\x03\x04\x05\x06", 6);
    const auto image = decodeGif(fakes::gif(1, 1, four_colours, {frame}));
    ASSERT_TRUE(image);
    EXPECT_THAT(image->pixels, ElementsAre(0xFF040506));
}

TEST(Gif, WhatIsNoGifIsRefused) {
    for (const std::string& bytes :
         {std::string(), std::string("GIF89a"), std::string("GIF90a") + fakes::plainGif(2, 2, "abc").substr(6),
          std::string("\x89PNG\r\n\x1A\n"), std::string("<html>404</html>"), std::string(5000, '\0')}) {
        EXPECT_FALSE(decodeGif(bytes)) << bytes.substr(0, 20);
    }
}

TEST(Gif, FileThatEndsInItsFirstFrameIsRefused) {
    const std::string whole = Noise(20, 20).file();
    for (std::size_t length = 0; length + 4 < whole.size(); ++length) {
        EXPECT_FALSE(decodeGif(whole.substr(0, length))) << length;
    }
}

TEST(Gif, SizesThatNobodyNeedsAreRefused) {
    const auto sized = [](int screen, int frame) {
        return fakes::gif(screen, screen, four_colours, {{frame, frame, 0, 0, {1, 2, 3}}});
    };
    EXPECT_FALSE(decodeGif(sized(65535, 1)));
    EXPECT_FALSE(decodeGif(sized(1, 65535)));
    EXPECT_FALSE(decodeGif(sized(0, 1)));
    EXPECT_FALSE(decodeGif(sized(1, 0)));
    EXPECT_FALSE(decodeGif(fakes::plainGif(513, 512, "abc")));
    EXPECT_TRUE(decodeGif(fakes::plainGif(512, 512, "abc")));
    const std::string small = fakes::plainGif(1, 1, "abc");
    EXPECT_TRUE(decodeGif(small + std::string(longest_gif - small.size(), 'x')));
    EXPECT_FALSE(decodeGif(small + std::string(longest_gif - small.size() + 1, 'x')));
}

TEST(Gif, NoChangeOfABytesHarms) {
    const std::string whole = Noise(12, 12).file(true);
    std::mt19937 random(1);
    int shown = 0;
    for (int i = 0; i < 20000; ++i) {
        std::string damaged = whole;
        for (int k = 0; k < 3; ++k) {
            damaged[random() % damaged.size()] = static_cast<char>(random());
        }
        if (const auto image = decodeGif(damaged)) {
            ++shown;
            ASSERT_EQ(image->pixels.size(), static_cast<std::size_t>(image->width * image->height));
        }
    }
    EXPECT_GT(shown, 0);
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
