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
    scale(raster, width, height, pixels.data());
    return pixels;
}

TEST(Composer, ScalesByTheNearestPixel) {
    const Raster small{2, 1, {red, blue}};
    EXPECT_THAT(scaled(small, 4, 2), ElementsAre(red, red, blue, blue, red, red, blue, blue));
    EXPECT_THAT(scaled(small, 1, 1), ElementsAre(red));
    EXPECT_THAT(scaled(small, 2, 1), ElementsAre(red, blue));
    const Raster high{1, 3, {red, green, blue}};
    EXPECT_THAT(scaled(high, 1, 5), ElementsAre(red, red, green, green, blue));
    EXPECT_THAT(scaled(high, 1, 2), ElementsAre(red, green));
}

} // namespace
} // namespace agent::stage
