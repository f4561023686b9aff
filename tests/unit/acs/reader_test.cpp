#include "companions/agent/acs/compression.h"
#include "companions/agent/acs/reader.h"
#include "companions/agent/acs/writer.h"
#include "tests/unit/acs/sample_character.h"
#include "tests/unit/acs/tiny_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>

namespace {

using namespace agent::acs;
using Bytes = std::vector<std::uint8_t>;

Bytes patched(Bytes file, std::size_t position, const Bytes& bytes) {
    std::copy(bytes.begin(), bytes.end(), file.begin() + static_cast<std::ptrdiff_t>(position));
    return file;
}

void append16(Bytes& file, std::size_t value) {
    file.push_back(static_cast<std::uint8_t>(value));
    file.push_back(static_cast<std::uint8_t>(value >> 8U));
}

void append32(Bytes& file, std::size_t value) {
    append16(file, value);
    append16(file, value >> 16U);
}

Bytes little32(std::size_t value) {
    Bytes bytes;
    append32(bytes, value);
    return bytes;
}

// The tiny file with `part` added at its end, and the locator at `locator` pointing there.
Bytes withPart(std::size_t locator, const Bytes& part, Bytes file = tinyFile()) {
    file = patched(file, locator, little32(file.size()));
    file = patched(file, locator + 4, little32(part.size()));
    file.insert(file.end(), part.begin(), part.end());
    return file;
}
constexpr std::size_t information_locator = 4;
constexpr std::size_t animations_locator = 12;
constexpr std::size_t images_locator = 20;
constexpr std::size_t image_locator = tiny::image_directory + 4;
constexpr std::size_t animation_locator = tiny::animation_directory + 14;
constexpr std::size_t names_locator = tiny::information + 4;

Bytes part(const Bytes& file, std::size_t position, std::size_t size) {
    const auto begin = file.begin() + static_cast<std::ptrdiff_t>(position);
    return {begin, begin + static_cast<std::ptrdiff_t>(size)};
}

std::string refusal(const Bytes& file) {
    std::string error;
    EXPECT_FALSE(read(file, error));
    std::string error_of_file;
    EXPECT_FALSE(CharacterFile::open(file, error_of_file));
    EXPECT_EQ(error, error_of_file);
    return error;
}

Character accepted(const Bytes& file) {
    std::string error;
    auto character = read(file, error);
    EXPECT_TRUE(character) << error;
    return character ? *character : Character{};
}

CharacterFile opened(const Bytes& file) {
    std::string error;
    auto result = CharacterFile::open(file, error);
    if (!result) {
        throw std::runtime_error(error);
    }
    return std::move(*result);
}

// An image of the tiny file's size, compressed, with the stream.
Bytes compressedImage(const Bytes& stream) {
    Bytes image{1, 2, 0, 1, 0, 1};
    append32(image, stream.size());
    image.insert(image.end(), stream.begin(), stream.end());
    image.insert(image.end(), 8, 0);
    return image;
}

TEST(AcsReader, ReadsTheTinyFile) {
    const Character character = accepted(tinyFile());
    EXPECT_EQ(character.major_version, 2);
    EXPECT_EQ(character.minor_version, 1);
    EXPECT_EQ(character.guid, (Guid{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
    EXPECT_EQ(character.width, 80);
    EXPECT_EQ(character.height, 60);
    EXPECT_EQ(character.transparent_index, 10);
    EXPECT_EQ(character.style, 0x00100000U);
    EXPECT_FALSE(character.voice);
    EXPECT_FALSE(character.balloon);
    EXPECT_FALSE(character.tray_icon);
    ASSERT_EQ(character.palette.size(), 256U);
    EXPECT_EQ(character.palette[0], (Colour{0x11, 0x22, 0x33}));
    EXPECT_EQ(character.palette[255], Colour{});
    ASSERT_EQ(character.animations.size(), 1U);
    const Animation& animation = character.animations[0];
    EXPECT_EQ(animation.name, u"Hi");
    EXPECT_EQ(animation.transition, Transition::exit_branches);
    EXPECT_EQ(animation.return_animation, u"");
    ASSERT_EQ(animation.frames.size(), 1U);
    const Frame& frame = animation.frames[0];
    ASSERT_EQ(frame.images.size(), 1U);
    EXPECT_EQ(frame.images[0], (FrameImage{0, -3, 4}));
    EXPECT_EQ(frame.sound, no_sound);
    EXPECT_EQ(frame.duration, 25);
    EXPECT_EQ(frame.exit_frame, exit_none);
    EXPECT_TRUE(frame.branches.empty());
    EXPECT_TRUE(frame.mouths.empty());
    ASSERT_EQ(character.images.size(), 1U);
    EXPECT_EQ(character.images[0].width, 2);
    EXPECT_EQ(character.images[0].height, 1);
    EXPECT_EQ(character.images[0].pixels, (Bytes{5, 6, 0, 0}));
    EXPECT_TRUE(character.images[0].region.empty());
    EXPECT_TRUE(character.sounds.empty());
}

TEST(AcsReader, ReadsVoiceBalloonIconStatesAndNames) {
    const Bytes tiny = tinyFile();
    Bytes information = part(tiny, tiny::information, 41);
    information[33] = 0x20; // the style flags for voice and balloon
    information[34] = 0x02;
    information.resize(41); // up to the palette
    information.insert(information.begin() + 41, 16, 0xE0);
    information.insert(information.end(), 16, 0xD0);
    append32(information, 170);
    append16(information, 90);
    information.push_back(1);
    append16(information, 0x0407);
    information.insert(information.end(), {1, 0, 0, 0, 'd', 0, 0, 0});
    append16(information, 1);
    append16(information, 30);
    append32(information, 0);
    information.insert(information.end(), {3, 28});
    information.insert(information.end(), {1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0});
    information.insert(information.end(), {1, 0, 0, 0, 'F', 0, 0, 0});
    append32(information, 0xFFFFFFF5);
    append32(information, 700);
    information.insert(information.end(), {0, 1});
    append32(information, 0); // no colours
    information.push_back(1);
    information.insert(information.end(), {2, 0, 0, 0, 0xAA, 0xBB, 1, 0, 0, 0, 0xCC});
    append16(information, 1);
    information.insert(information.end(), {2, 0, 0, 0, 'U', 0, 'P', 0, 0, 0, 1, 0, 2, 0, 0, 0, 'H', 0, 'I', 0, 0, 0});
    // The names are another part; its locator lies in this one.
    const Bytes names{1, 0, 0x09, 0x04, 1, 0, 0, 0, 'N', 0, 0, 0, 1, 0, 0, 0, 'D', 0, 0, 0, 1, 0, 0, 0, 0xE9, 0, 0, 0};
    Bytes file = withPart(information_locator, information);
    file = withPart(tiny.size() + 4, names, file);

    const Character character = accepted(file);
    ASSERT_TRUE(character.voice);
    EXPECT_EQ(character.voice->engine[15], 0xE0);
    EXPECT_EQ(character.voice->mode[0], 0xD0);
    EXPECT_EQ(character.voice->speed, 170U);
    EXPECT_EQ(character.voice->pitch, 90);
    ASSERT_TRUE(character.voice->choice);
    EXPECT_EQ(*character.voice->choice, (Voice::Choice{0x0407, u"d", 1, 30, u""}));
    ASSERT_TRUE(character.balloon);
    EXPECT_EQ(*character.balloon, (Balloon{3, 28, 0x00030201, 0x00060504, 0x00090807, u"F", -11, 700, false, true}));
    ASSERT_TRUE(character.tray_icon);
    EXPECT_EQ(character.tray_icon->colour_image, (Bytes{0xAA, 0xBB}));
    EXPECT_EQ(character.tray_icon->mask_image, (Bytes{0xCC}));
    ASSERT_EQ(character.states.size(), 1U);
    EXPECT_EQ(character.states[0], (State{u"UP", {u"HI"}}));
    ASSERT_EQ(character.names.size(), 1U);
    EXPECT_EQ(character.names[0], (LocalizedName{0x0409, u"N", u"D", u"é"}));
}

TEST(AcsReader, ReadsBranchesAndMouths) {
    const Bytes tiny = tinyFile();
    Bytes animation = part(tiny, tiny::animation, 17 + 16); // up to the count of branches
    animation[10] = 0;
    animation.push_back(2);
    animation.insert(animation.end(), {0, 0, 40, 0, 0, 0, 60, 0});
    animation.push_back(2);
    animation.insert(animation.end(), {4, 1, 0, 0, 99, 0, 0xFF, 0xFF, 2, 0, 5, 0, 6, 0});
    animation.insert(animation.end(), {6, 0, 0, 0, 99, 1, 1, 0, 2, 0, 5, 0, 6, 0, 3, 0, 0, 0, 7, 8, 9});
    const Character character = accepted(withPart(animation_locator, animation));
    const Frame& frame = character.animations.at(0).frames.at(0);
    EXPECT_EQ(character.animations[0].transition, Transition::return_animation);
    EXPECT_EQ(frame.branches, (std::vector<Branch>{{0, 40}, {0, 60}}));
    ASSERT_EQ(frame.mouths.size(), 2U);
    EXPECT_EQ(frame.mouths[0], (Mouth{MouthShape::wide4, true, 0, -1, 2, 5, 6, {}}));
    EXPECT_EQ(frame.mouths[1], (Mouth{MouthShape::narrow, false, 0, 1, 2, 5, 6, {7, 8, 9}}));
}

TEST(AcsReader, DecompressesPixelsAndRegions) {
    // Pixels: a literal 0x41 and a copy of three from distance 1. Region: one literal 0x41.
    Bytes image{1, 2, 0, 1, 0, 1};
    const Bytes pixels{0, 0x82, 0x02, 0xF2, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    const Bytes region{0, 0x82, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    append32(image, pixels.size());
    image.insert(image.end(), pixels.begin(), pixels.end());
    append32(image, region.size());
    append32(image, 1);
    image.insert(image.end(), region.begin(), region.end());
    const Character character = accepted(withPart(image_locator, image));
    EXPECT_EQ(character.images.at(0).pixels, Bytes(4, 0x41));
    EXPECT_EQ(character.images.at(0).region, Bytes{0x41});
}

TEST(AcsReader, AnEmptyImageIsAZero) {
    const Character character = accepted(withPart(image_locator, {0}));
    EXPECT_EQ(character.images.at(0), Image{});
}

TEST(AcsReader, ReferencesThatDoNoHarmMayLeadNowhere) {
    Character character = sampleCharacter();
    character.states[0].animations = {u"Nowhere"};
    character.animations[1].return_animation = u"Nowhere";
    EXPECT_EQ(accepted(write(character)), character);
}

TEST(AcsReader, FindsWithoutLetterCase) {
    const Character character = sampleCharacter();
    ASSERT_NE(character.findAnimation(u"GREET"), nullptr);
    EXPECT_EQ(character.findAnimation(u"GREET")->name, u"Greet");
    EXPECT_EQ(character.findAnimation(u"greetreturn"), &character.animations[2]);
    EXPECT_EQ(character.findAnimation(u"Gree"), nullptr);
    EXPECT_EQ(character.findAnimation(u""), nullptr);
    EXPECT_EQ(character.findState(u"IdlingLevel1"), &character.states[1]);
    EXPECT_EQ(character.findState(u"Idling"), nullptr);
}

TEST(AcsRefusals, OtherFiles) {
    EXPECT_EQ(refusal({}), "The file's header is cut short.");
    EXPECT_EQ(refusal({0xC3, 0xAB}), "The file's header is cut short.");
    EXPECT_EQ(refusal({0xC3, 0xAB, 0xCD, 0xAB}), "The file's header is cut short.");
    EXPECT_EQ(refusal(patched(tinyFile(), 0, {'R', 'I', 'F', 'F'})),
              "The file is not a character: its signature is wrong.");
    EXPECT_EQ(refusal(patched(tinyFile(), 0, {0xD0, 0xCF, 0x11, 0xE0})),
              "The file is a character of version 1.5, stored as a compound file; only version 2 can be read.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::information, {5, 0, 1, 0})),
              "The character is of version 1.5; only version 2 can be read.");
}

TEST(AcsRefusals, PartsOutsideTheFile) {
    const std::size_t size = tinyFile().size();
    EXPECT_EQ(refusal(patched(tinyFile(), 4, little32(size))), "The character information lies outside the file.");
    EXPECT_EQ(refusal(patched(tinyFile(), 8, little32(0xFFFFFFFF))),
              "The character information lies outside the file.");
    EXPECT_EQ(refusal(patched(tinyFile(), 12, little32(0xFFFFFFF0))),
              "The directory of animations lies outside the file.");
    EXPECT_EQ(refusal(patched(tinyFile(), 20, little32(0x80000000))), "The directory of images lies outside the file.");
    EXPECT_EQ(refusal(patched(tinyFile(), 32, little32(5))), "The directory of sounds lies outside the file.");
    EXPECT_EQ(refusal(patched(tinyFile(), names_locator, little32(size))), "The table of names lies outside the file.");
    EXPECT_EQ(refusal(patched(tinyFile(), animation_locator, little32(size))),
              "The animation \"Hi\" lies outside the file.");
    EXPECT_EQ(refusal(patched(tinyFile(), image_locator, little32(size))), "Image 0 lies outside the file.");
    Bytes sounds;
    append32(sounds, 1);
    append32(sounds, size);
    append32(sounds, 100);
    append32(sounds, 0);
    EXPECT_EQ(refusal(withPart(28, sounds)), "Sound 0 lies outside the file.");
}

TEST(AcsRefusals, CountsThatCannotFit) {
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::animation_directory, little32(2))),
              "The directory of animations announces 2 animations, more than its size can hold.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::image_directory, little32(0xFFFFFFFF))),
              "The directory of images announces 4294967295 images, more than its size can hold.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::sound_directory, little32(1))),
              "The directory of sounds announces 1 sounds, more than its size can hold.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::frame_count, {0xFF, 0xFF})),
              "The animation \"Hi\" announces 65535 frames, more than its size can hold.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::frame, {0xFF, 0xFF})),
              "The animation \"Hi\" announces 65535 images of a frame, more than its size can hold.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::frame + 16, {2})),
              "The animation \"Hi\" announces 2 branches, more than its size can hold.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::frame + 17, {1})),
              "The animation \"Hi\" announces 1 mouths, more than its size can hold.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::state_count, {1, 0})),
              "The character information announces 1 states, more than its size can hold.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::names, {1, 0})),
              "The table of names announces 1 names, more than its size can hold.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::palette_count, little32(257))),
              "The palette has 257 colours, more than 256.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::palette_count, little32(3))),
              "The character information is cut short.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::animation, little32(0x7FFFFFFF))),
              "The animation \"Hi\" is cut short.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::animation, little32(0xFFFFFFFF))),
              "The animation \"Hi\" is cut short.");
}

TEST(AcsRefusals, MissingImagesSoundsAndFrames) {
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::frame_image, little32(1))),
              "The animation \"Hi\" refers to image 1, which does not exist.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::frame_sound, {0, 0})),
              "The animation \"Hi\" refers to sound 0, which does not exist.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::frame_exit, {1, 0})),
              "The animation \"Hi\" refers to frame 1, which does not exist.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::frame_exit, {0xFD, 0xFF})),
              "The animation \"Hi\" refers to frame -3, which does not exist.");
    const Bytes until_branches = part(tinyFile(), tiny::animation, 17 + 16);
    Bytes animation = until_branches;
    animation.insert(animation.end(), {1, 1, 0, 100, 0, 0});
    EXPECT_EQ(refusal(withPart(animation_locator, animation)),
              "The animation \"Hi\" refers to frame 1, which does not exist.");
    animation = until_branches;
    animation.insert(animation.end(), {0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(refusal(withPart(animation_locator, animation)),
              "The animation \"Hi\" refers to image 1, which does not exist.");
    animation = until_branches;
    animation.insert(animation.end(), {0, 1, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(refusal(withPart(animation_locator, animation)),
              "The animation \"Hi\" refers to mouth shape 7, which does not exist.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::transition, {3})),
              "The animation \"Hi\" has an unknown way to return: 3.");
}

TEST(AcsRefusals, DamagedImages) {
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::image + 1, {5, 0})),
              "Image 0: the pixels' data has 4 bytes instead of 8.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::image + 6, little32(5))), "Image 0 is cut short.");
    EXPECT_EQ(refusal(withPart(image_locator, {})), "Image 0 is cut short.");
    EXPECT_EQ(refusal(withPart(image_locator, compressedImage({0, 0x01, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}))),
              "Image 0: the pixels' data copies from before its start.");
    EXPECT_EQ(refusal(withPart(image_locator, compressedImage(compress(Bytes(5, 1))))),
              "Image 0: the pixels' data gives more bytes than announced.");
    EXPECT_EQ(refusal(withPart(image_locator, compressedImage(compress(Bytes(3, 1))))),
              "Image 0: the pixels' data gives fewer bytes than announced.");
    Bytes image = part(tinyFile(), tiny::image, 14);
    append32(image, 7);
    append32(image, 1);
    image.insert(image.end(), {0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF});
    EXPECT_EQ(refusal(withPart(image_locator, image)), "Image 0: the region's data gives fewer bytes than announced.");
}

TEST(AcsRefusals, ImpossibleSizes) {
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::information + 28, {0, 0})),
              "The character is of impossible size: 0 by 60 pixels.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::information + 28, {0xFF, 0xFF, 0xFF, 0xFF})),
              "The character is of impossible size: 65535 by 65535 pixels.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::image + 1, {0xFF, 0xFF, 0xFF, 0xFF})),
              "Image 0 is of impossible size: 65535 by 65535 pixels.");
}

TEST(AcsRefusals, SidesLongerThanAnyCharacterHas) {
    static_assert(largest_side == 800);
    const Bytes longest{0x20, 0x03, 1, 0}, longer{0x21, 0x03, 1, 0}, higher{1, 0, 0x21, 0x03};
    EXPECT_EQ(accepted(patched(tinyFile(), tiny::information + 28, longest)).width, 800);
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::information + 28, longer)),
              "The character is of impossible size: 801 by 1 pixels.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::information + 28, higher)),
              "The character is of impossible size: 1 by 801 pixels.");
    EXPECT_EQ(refusal(patched(tinyFile(), tiny::image + 1, longer)), "Image 0 is of impossible size: 801 by 1 pixels.");
}

// An image of one colour.
Bytes bigImage(std::size_t width, std::size_t height) {
    Bytes image{1};
    append16(image, width);
    append16(image, height);
    image.push_back(1);
    const Bytes stream = compress(Bytes((width + 3) / 4 * 4 * height, 0));
    append32(image, stream.size());
    image.insert(image.end(), stream.begin(), stream.end());
    image.insert(image.end(), 8, 0);
    return image;
}

// With so many entries that all stand for the part at `offset`.
Bytes imageDirectory(std::size_t count, std::size_t offset, std::size_t size) {
    Bytes directory;
    append32(directory, count);
    for (std::size_t i = 0; i < count; ++i) {
        append32(directory, offset);
        append32(directory, size);
        append32(directory, 0);
    }
    return directory;
}

// The tiny file whose frame lists its image, of this size, so many times.
Bytes frameOf(std::size_t images, std::size_t width, std::size_t height) {
    Bytes animation = part(tinyFile(), tiny::animation, 17);
    append16(animation, images);
    for (std::size_t i = 0; i < images; ++i) {
        animation.insert(animation.end(), 8, 0);
    }
    const Bytes rest = part(tinyFile(), tiny::frame_sound, 8);
    animation.insert(animation.end(), rest.begin(), rest.end());
    return withPart(animation_locator, animation, withPart(image_locator, bigImage(width, height)));
}

TEST(AcsRefusals, OneImageListedInOneFrameOverAndOver) {
    EXPECT_EQ(refusal(frameOf(65'535, 800, 800)),
              "The animation \"Hi\" has a frame of 65535 images and 41942400000 pixels, too much to draw.");
    EXPECT_EQ(accepted(frameOf(6, 800, 800)).animations[0].frames[0].images.size(), 6U);
    EXPECT_EQ(refusal(frameOf(7, 800, 800)),
              "The animation \"Hi\" has a frame of 7 images and 4480000 pixels, too much to draw.");
    EXPECT_EQ(accepted(frameOf(255, 4, 1)).animations[0].frames[0].images.size(), 255U);
    EXPECT_EQ(refusal(frameOf(256, 4, 1)),
              "The animation \"Hi\" has a frame of 256 images and 1024 pixels, too much to draw.");
}

TEST(AcsRefusals, AMouthIsDrawnToo) {
    Character character = accepted(frameOf(6, 800, 800));
    Mouth mouth;
    character.animations[0].frames[0].mouths = {mouth, mouth};
    EXPECT_THROW(write(character), std::invalid_argument);
    character.animations[0].frames[0].images.pop_back();
    EXPECT_NO_THROW(write(character));
}

TEST(AcsRefusals, ANameSharedByEveryEntryIsReadOnceForEachAndNotMore) {
    // Two thousand animations whose directory entries all point to one body with a name of 100,000 letters.
    Bytes animation;
    append32(animation, 100'000);
    animation.insert(animation.end(), 200'002, 'n');
    animation.insert(animation.end(), {2, 0, 0, 0, 0, 0, 0});
    Bytes directory;
    append32(directory, 2000);
    for (int i = 0; i < 2000; ++i) {
        append32(directory, 0);
        append32(directory, tinyFile().size());
        append32(directory, animation.size());
    }
    EXPECT_EQ(refusal(withPart(animations_locator, directory, withPart(animation_locator, animation))),
              "The character's parts share their bytes more than 16 times over.");
}

TEST(AcsReader, PartsMayShareTheirBytes) {
    const Bytes image = part(tinyFile(), tiny::image, 22);
    const Bytes file = withPart(images_locator, imageDirectory(9, tiny::image, image.size()));
    EXPECT_EQ(accepted(file).images.size(), 9U);
}

TEST(AcsRefusals, TextsThatFillTheMemory) {
    Bytes names;
    append16(names, 3);
    for (int i = 0; i < 3; ++i) {
        append16(names, 0x0409);
        append32(names, 800'000);
        names.insert(names.end(), 1'600'002, 'n');
        names.insert(names.end(), 8, 0);
    }
    EXPECT_EQ(refusal(withPart(names_locator, names)),
              "The names and texts of the character take more than 4 MB of memory.");
}

TEST(AcsRefusals, MoreBranchesThanCanBeFollowed) {
    Character character = accepted(tinyFile());
    Frame frame;
    frame.branches.resize(255, {1, 1});
    character.animations[0].frames.assign(257, frame);
    EXPECT_EQ(accepted(write(character)).animations[0].frames.size(), 257U);
    character.animations[0].frames.push_back(frame);
    EXPECT_THROW(write(character), std::invalid_argument);
}

TEST(AcsRefusals, OneBigImageListedOftenTakesNoMemory) {
    const Bytes image = bigImage(800, 800);
    Bytes file = withPart(image_locator, image);
    file.insert(file.end(), std::size_t{1} << 20, 0); // the readings are not what it is refused for
    EXPECT_EQ(refusal(withPart(images_locator, imageDirectory(210, tinyFile().size(), image.size()), file)),
              "The character takes more than 128 MB of memory.");
}

TEST(AcsRefusals, OneLongAnimationListedOftenTakesNoMemory) {
    Bytes animation{0, 0, 0, 0, 2, 0, 0, 0, 0};
    append16(animation, 60'000);
    for (int i = 0; i < 60'000; ++i) {
        animation.insert(animation.end(), {0, 0, 0xFF, 0xFF, 10, 0, 0xFE, 0xFF, 0, 0});
    }
    Bytes directory;
    append32(directory, 1000);
    for (int i = 0; i < 1000; ++i) {
        append32(directory, 0);
        append32(directory, tinyFile().size());
        append32(directory, animation.size());
    }
    Bytes file = withPart(animation_locator, animation);
    file.insert(file.end(), std::size_t{2} << 20, 0); // the readings are not what it is refused for
    EXPECT_EQ(refusal(withPart(animations_locator, directory, file)),
              "The character takes more than 128 MB of memory.");
}

TEST(AcsRefusals, AnEndlessNameIsShortenedInTheSentence) {
    Bytes directory;
    append32(directory, 1);
    append32(directory, 1000);
    for (int i = 0; i < 1000; ++i) {
        append16(directory, 'n');
    }
    append16(directory, 0);
    append32(directory, 0xFFFFFF);
    append32(directory, 1);
    EXPECT_EQ(refusal(withPart(animations_locator, directory)),
              "The animation \"" + std::string(64, 'n') + "\" lies outside the file.");
}

TEST(AcsFile, GivesTheSameImagesAndSoundsAsReadingTheWhole) {
    const Character whole = sampleCharacter();
    const CharacterFile file = opened(write(whole));
    ASSERT_EQ(file.imageCount(), 4U);
    ASSERT_EQ(file.soundCount(), 2U);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(*file.image(i), whole.images[i]);
    }
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(Bytes(file.sound(i).begin(), file.sound(i).end()), whole.sounds[i]);
    }
    Character rest = file.character();
    EXPECT_TRUE(rest.images.empty());
    EXPECT_TRUE(rest.sounds.empty());
    rest.images = whole.images;
    rest.sounds = whole.sounds;
    EXPECT_EQ(rest, whole);
}

TEST(AcsFile, KeepsNoMoreImagesThanAreQuicklyLookedThrough) {
    Character character = sampleCharacter();
    character.images.resize(1100, character.images[1]);
    const CharacterFile file = opened(write(character));
    const std::weak_ptr<const Image> first = file.image(10);
    for (std::size_t i = 20; i < 20 + 1023; ++i) {
        file.image(i);
    }
    EXPECT_FALSE(first.expired());
    file.image(1099);
    EXPECT_TRUE(first.expired());
}

TEST(AcsFile, KeepsImagesLatelyAskedFor) {
    const CharacterFile file = opened(write(sampleCharacter()));
    const auto first = file.image(2);
    EXPECT_EQ(file.image(0)->width, 24);
    EXPECT_EQ(file.image(2), first);
}

TEST(AcsFile, AnImageOutlivesWhatIsKept) {
    Character character = sampleCharacter();
    Image large;
    large.width = 800;
    large.height = 800;
    large.pixels.assign(std::size_t{800} * 800, 5);
    character.images.assign(6, large);
    for (std::size_t i = 0; i < 6; ++i) {
        character.images[i].pixels[0] = static_cast<std::uint8_t>(i);
    }
    const CharacterFile file = opened(write(character));
    const auto first = file.image(0);
    for (std::size_t i = 1; i < 6; ++i) {
        EXPECT_EQ(file.image(i)->pixels[0], i);
    }
    EXPECT_EQ(first->pixels[0], 0);
    EXPECT_NE(file.image(0), first);
    EXPECT_EQ(*file.image(0), *first);
}

TEST(AcsFile, StaysWholeWhenMoved) {
    CharacterFile file = opened(write(sampleCharacter()));
    const CharacterFile moved = std::move(file);
    EXPECT_EQ(*moved.image(0), sampleCharacter().images[0]);
}

TEST(AcsFile, LoadsFromThePath) {
    const std::string path = testing::TempDir() + "acs_file_test.acs";
    const Bytes bytes = write(sampleCharacter());
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), // NOLINT
               static_cast<std::streamsize>(bytes.size()));
    std::string error;
    const auto file = CharacterFile::load(path, error);
    ASSERT_TRUE(file) << error;
    EXPECT_EQ(file->character().names.at(0).name, u"Sample");
    std::filesystem::remove(path);
    EXPECT_FALSE(CharacterFile::load(path, error));
    EXPECT_EQ(error, "There is no such file.");
    EXPECT_FALSE(CharacterFile::load(testing::TempDir(), error));
}

// Written and read, with names told apart by their descriptions; a voice of that language where it is not 0.
Character named(const std::vector<std::uint16_t>& languages, std::uint16_t own = 0) {
    Character made;
    made.width = made.height = 1;
    for (const std::uint16_t language : languages) {
        made.names.push_back({language, u"Dot", std::u16string(1, language), u""});
    }
    if (own != 0) {
        made.voice = Voice{};
        made.voice->choice = Voice::Choice{};
        made.voice->choice->language_id = own;
    }
    std::string error;
    const auto read_again = read(write(made), error);
    EXPECT_TRUE(read_again) << error;
    return read_again.value_or(Character{});
}

std::uint16_t chosen(const Character& character, std::uint16_t language) {
    const LocalizedName* const name = character.nameFor(language);
    return name ? name->language_id : std::uint16_t{0xFFFF};
}

TEST(AcsNames, StoredWithoutARegionServeEveryRegion) {
    const Character character = named({0x0401, 0x0009, 0x000C});
    EXPECT_EQ(chosen(character, 0x0409), 0x0009) << "English (United States)";
    EXPECT_EQ(chosen(character, 0x0809), 0x0009) << "English (United Kingdom)";
    EXPECT_EQ(chosen(character, 0x100C), 0x000C) << "French (Switzerland)";
    EXPECT_EQ(chosen(character, 0x0009), 0x0009);
}

TEST(AcsNames, OfTheVeryLanguageComeBeforeThoseOfTheMainOne) {
    const Character character = named({0x0009, 0x0407, 0x0409});
    EXPECT_EQ(chosen(character, 0x0409), 0x0409);
    EXPECT_EQ(chosen(character, 0x0809), 0x0009);
}

TEST(AcsNames, OfTheCharactersOwnLanguageComeBeforeTheFirst) {
    EXPECT_EQ(chosen(named({0x0401, 0x040C, 0x000C}, 0x040C), 0x0411), 0x040C);
    EXPECT_EQ(chosen(named({0x0401, 0x000C}, 0x040C), 0x0411), 0x000C);
    EXPECT_EQ(chosen(named({0x0401, 0x0809}, 0x040C), 0x0411), 0x0401);
    EXPECT_EQ(chosen(named({0x0401, 0x040C}), 0x0411), 0x0401);
    EXPECT_EQ(named({}).nameFor(0x0409), nullptr);
}

TEST(AcsWriter, WritesTheTinyFileByteForByte) {
    Character character = accepted(tinyFile());
    character.palette.resize(1);
    EXPECT_EQ(write(character), tinyFile());
}

TEST(AcsWriter, WhatItWritesIsReadBack) {
    EXPECT_EQ(accepted(write(sampleCharacter())), sampleCharacter());
}

TEST(AcsWriter, TheStyleTellsOfVoiceAndBalloon) {
    Character character = sampleCharacter();
    character.style = style_balloon;
    character.balloon.reset();
    const Character back = accepted(write(character));
    EXPECT_EQ(back.style, style_voice);
    EXPECT_TRUE(back.voice);
    EXPECT_FALSE(back.balloon);
}

std::string writersComplaint(const Character& character) {
    try {
        write(character);
    } catch (const std::invalid_argument& complaint) {
        return complaint.what();
    }
    return "none";
}

TEST(AcsWriter, RefusesWhatNoReaderWouldTake) {
    Character character = sampleCharacter();
    character.images[0].pixels.pop_back();
    EXPECT_EQ(writersComplaint(character), "An image of 24 by 20 pixels has 479 bytes instead of 480.");
    character = sampleCharacter();
    character.animations[1].frames[0].branches[0].target = 3;
    EXPECT_EQ(writersComplaint(character), "The animation \"Greet\" refers to frame 3, which does not exist.");
    character = sampleCharacter();
    character.animations[1].frames.resize(65'536);
    EXPECT_EQ(writersComplaint(character), "There are too many frames of an animation: 65536.");
    character = sampleCharacter();
    character.palette.resize(257);
    EXPECT_EQ(writersComplaint(character), "The palette has 257 colours, more than 256.");
}

} // namespace
