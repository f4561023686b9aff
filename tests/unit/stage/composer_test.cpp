#include <algorithm>
#include <random>
#include <set>

#include <gmock/gmock.h>

#include "companions/agent/acs/writer.h"
#include "companions/agent/stage/composer.h"

namespace agent::stage {
namespace {

using testing::ElementsAre;

constexpr std::uint32_t clear = 0, red = 0xFFFF0000, green = 0xFF00FF00, blue = 0xFF0000FF;

acs::Image image(std::uint16_t width, std::uint16_t height, std::vector<std::uint8_t> bottom_up) {
    acs::Image made;
    made.width = width;
    made.height = height;
    made.pixels.assign(std::size_t{made.stride()} * height, 0);
    for (std::size_t row = 0; row < height; ++row) {
        for (std::size_t column = 0; column < width; ++column) {
            made.pixels[row * made.stride() + column] = bottom_up[row * width + column];
        }
    }
    return made;
}

// 3 × 2 pixels; colour 0 transparent, 1 red, 2 green, 3 blue. Images: 0 all red, 1 a green dot, 2 a blue dot.
acs::Character character() {
    acs::Character made;
    made.width = 3;
    made.height = 2;
    made.transparent_index = 0;
    made.palette.resize(256);
    made.palette[1] = {0, 0, 255};
    made.palette[2] = {0, 255, 0};
    made.palette[3] = {255, 0, 0};
    made.names.push_back({0x0409, u"Dot", u"", u""});
    made.images = {image(3, 2, {1, 1, 1, 1, 1, 1}), image(1, 1, {2}), image(1, 1, {3})};
    made.animations.resize(1);
    made.animations[0].name = u"RestPose";
    made.animations[0].frames.resize(1);
    return made;
}

std::vector<std::uint32_t> composed(const acs::Character& made, std::optional<acs::MouthShape> mouth = {}) {
    std::string error;
    const auto file = acs::CharacterFile::open(acs::write(made), error);
    EXPECT_TRUE(file) << error;
    Raster raster;
    compose(*file, &file->character().animations[0].frames[0], mouth, raster);
    return raster.pixels;
}

TEST(Composer, DrawsTheFirstListedImageOnTop) {
    auto made = character();
    made.animations[0].frames[0].images = {{1, 0, 0}, {0, 0, 0}};
    EXPECT_THAT(composed(made), ElementsAre(green, red, red, red, red, red));
}

TEST(Composer, HasTheBottomRowOfAnImageLast) {
    auto made = character();
    made.images[0] = image(3, 2, {1, 2, 3, 0, 0, 1});
    made.animations[0].frames[0].images = {{0, 0, 0}};
    EXPECT_THAT(composed(made), ElementsAre(clear, clear, red, red, green, blue));
}

TEST(Composer, CutsWhatStandsOutOfTheCharacter) {
    auto made = character();
    made.animations[0].frames[0].images = {{0, 2, -1}, {0, -2, 1}, {1, 900, 900}, {1, -900, -900}};
    EXPECT_THAT(composed(made), ElementsAre(clear, clear, red, red, clear, clear));
}

TEST(Composer, PutsTheMouthOverTheImages) {
    auto made = character();
    auto& frame = made.animations[0].frames[0];
    frame.images = {{1, 0, 0}, {0, 0, 0}};
    acs::Mouth mouth;
    mouth.shape = acs::MouthShape::wide2;
    mouth.image = 2;
    mouth.x = 1;
    mouth.y = 1;
    frame.mouths = {mouth};
    EXPECT_THAT(composed(made), ElementsAre(green, red, red, red, red, red));
    EXPECT_THAT(composed(made, acs::MouthShape::wide2), ElementsAre(green, red, red, red, blue, red));
}

TEST(Composer, AMouthMayReplaceTheTopImage) {
    auto made = character();
    auto& frame = made.animations[0].frames[0];
    frame.images = {{1, 0, 0}, {0, 0, 0}};
    acs::Mouth mouth;
    mouth.shape = acs::MouthShape::medium;
    mouth.replaces_top_image = true;
    mouth.image = 2;
    mouth.x = 2;
    frame.mouths = {mouth};
    EXPECT_THAT(composed(made, acs::MouthShape::medium), ElementsAre(red, red, blue, red, red, red));
}

TEST(Composer, AShapeThatIsMissingTakesAnother) {
    auto made = character();
    auto& frame = made.animations[0].frames[0];
    acs::Mouth mouth;
    mouth.shape = acs::MouthShape::medium;
    mouth.image = 2;
    frame.mouths = {mouth};
    EXPECT_THAT(composed(made, acs::MouthShape::wide4), ElementsAre(blue, clear, clear, clear, clear, clear));
    EXPECT_THAT(composed(made, acs::MouthShape::closed), ElementsAre(clear, clear, clear, clear, clear, clear));
}

TEST(Composer, WithoutAFrameAllIsTransparent) {
    std::string error;
    const auto file = acs::CharacterFile::open(acs::write(character()), error);
    ASSERT_TRUE(file) << error;
    Raster raster;
    compose(*file, nullptr, std::nullopt, raster);
    EXPECT_THAT(raster.pixels, ElementsAre(clear, clear, clear, clear, clear, clear));
}

std::vector<std::uint32_t> scaled(const Raster& raster, int width, int height) {
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width * height));
    const Rect whole = Scaler().scale(raster, {0, 0, raster.width, raster.height}, width, height, pixels.data());
    EXPECT_EQ(whole, (Rect{0, 0, width, height}));
    return pixels;
}

TEST(Composer, ScalesSmoothly) {
    const Raster small{2, 1, {0xFF000000, 0xFF0000FF}};
    EXPECT_THAT(scaled(small, 2, 1), ElementsAre(0xFF000000, 0xFF0000FF));
    // A quarter and three quarters of the way from one to the other.
    EXPECT_THAT(scaled(small, 4, 1), ElementsAre(0xFF000000, 0xFF000040, 0xFF0000BF, 0xFF0000FF));
    EXPECT_THAT(scaled(small, 1, 1), ElementsAre(0xFF000080));
    const Raster high{1, 2, {0xFF000000, 0xFFFF0000}};
    EXPECT_THAT(scaled(high, 1, 4), ElementsAre(0xFF000000, 0xFF400000, 0xFFBF0000, 0xFFFF0000));
    const Raster many{4, 1, {0xFFFFFFFF, 0xFF000000, 0xFFFFFFFF, 0xFF000000}};
    for (const std::uint32_t pixel : scaled(many, 2, 1)) {
        EXPECT_GT(pixel & 0xFF, 0x50U) << "none is left out";
        EXPECT_LT(pixel & 0xFF, 0xB0U);
    }
}

TEST(Composer, ScalesWithAHardOutlineInFullColours) {
    // A disc: at three times its size its edge has no steps of three pixels, and no colour but its own.
    constexpr int side = 16;
    Raster disc{side, side, {}};
    for (int i = 0; i < side * side; ++i) {
        const int x = 2 * (i % side) + 1 - side, y = 2 * (i / side) + 1 - side;
        disc.pixels.push_back(x * x + y * y < side * side ? red : clear);
    }
    const std::vector<std::uint32_t> large = scaled(disc, 3 * side, 3 * side);
    EXPECT_THAT(large, testing::Each(testing::AnyOf(red, clear)));
    const auto widthOf = [&](std::size_t row) {
        return std::count(large.begin() + static_cast<std::ptrdiff_t>(row * 3 * side),
                          large.begin() + static_cast<std::ptrdiff_t>((row + 1) * 3 * side), red);
    };
    std::set<std::ptrdiff_t> widths;
    for (std::size_t row = 0; row < 3 * side; ++row) {
        widths.insert(widthOf(row));
    }
    EXPECT_GT(widths.size(), 8U) << "a row of blocks would be as wide as the next";
    EXPECT_EQ(widthOf(3 * side / 2), 3 * side);
}

TEST(Composer, AreaThatChangedIsTheSmallest) {
    const Raster before{4, 3, std::vector<std::uint32_t>(12, red)};
    EXPECT_EQ(changedArea(before, before).width(), 0);
    Raster after = before;
    after.pixels[5] = clear; // at 1, 1
    EXPECT_EQ(changedArea(before, after), (Rect{1, 1, 2, 2}));
    after.pixels[11] = clear; // at 3, 2
    EXPECT_EQ(changedArea(before, after), (Rect{1, 1, 4, 3}));
    after.pixels[0] = clear;
    EXPECT_EQ(changedArea(before, after), (Rect{0, 0, 4, 3}));
}

// Whatever changes, and whatever the sizes: drawing what has changed leaves the same picture as drawing all.
TEST(Composer, WhatHasChangedIsScaledAlone) {
    std::mt19937 random(20);
    const auto below = [&](int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(random); };
    for (int round = 0; round < 200; ++round) {
        const int width = 1 + below(24), height = 1 + below(24);
        const int wide = 1 + below(60), high = 1 + below(60);
        Raster picture{width, height, {}};
        for (int i = 0; i < width * height; ++i) {
            picture.pixels.push_back(below(4) == 0 ? clear : 0xFF000000U | static_cast<std::uint32_t>(below(1 << 24)));
        }
        Scaler scaler;
        std::vector<std::uint32_t> pixels(static_cast<std::size_t>(wide * high));
        scaler.scale(picture, {0, 0, width, height}, wide, high, pixels.data());
        for (int step = 0; step < 4; ++step) {
            Raster next = picture;
            for (int changes = below(5); changes > 0; --changes) {
                next.pixels[static_cast<std::size_t>(below(width * height))] ^= 0x00FFFFFFU;
            }
            const std::vector<std::uint32_t> before = pixels;
            const Rect drawn = scaler.scale(next, changedArea(picture, next), wide, high, pixels.data());
            ASSERT_EQ(pixels, scaled(next, wide, high)) << round;
            for (int i = 0; i < wide * high; ++i) {
                const int x = i % wide, y = i / wide;
                if (x < drawn.left || x >= drawn.right || y < drawn.top || y >= drawn.bottom) {
                    ASSERT_EQ(pixels[static_cast<std::size_t>(i)], before[static_cast<std::size_t>(i)]) << round;
                }
            }
            picture = next;
        }
    }
}

TEST(Composer, ScalesAnotherPictureInAnotherSize) {
    Scaler scaler;
    for (const auto& [from, to] : {std::pair{3, 6}, std::pair{5, 6}, std::pair{5, 9}, std::pair{3, 6}}) {
        const Raster picture{from, 1, std::vector<std::uint32_t>(static_cast<std::size_t>(from), red)};
        std::vector<std::uint32_t> pixels(static_cast<std::size_t>(to));
        EXPECT_EQ(scaler.scale(picture, {0, 0, from, 1}, to, 1, pixels.data()), (Rect{0, 0, to, 1}));
        EXPECT_THAT(pixels, testing::Each(red));
    }
}

TEST(Composer, ScalesToAndFromASinglePixel) {
    EXPECT_THAT(scaled({1, 1, {red}}, 3, 2), testing::Each(red));
    EXPECT_THAT(scaled({3, 2, {red, red, red, red, red, red}}, 1, 1), ElementsAre(red));
    EXPECT_THAT(scaled({3, 1, {red, clear, clear}}, 1, 1), ElementsAre(clear));
}

} // namespace
} // namespace agent::stage
