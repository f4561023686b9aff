// What acsbuild makes of a manifest: the character as the file gives it back, and what it says about a wrong manifest.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <png.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "companions/agent/acs/reader.h"
#include "companions/agent/acs/writer.h"
#include "companions/agent/stage/composer.h"
#include "tests/unit/stage/rehearsal.h"
#include "tests/unit/voice/encoded_files.h"
#include "tools/acsbuild/manifest.h"
#include "tools/acsbuild/palette.h"
#include "tools/acsbuild/picture.h"

namespace {

namespace acs = agent::acs;
using acsbuild::Picture;
using nlohmann::json;
using testing::HasSubstr;

constexpr std::uint32_t red = 0xFFFF0000, green = 0xFF00FF00, blue = 0xFF0000FF, clear = 0x00000000;

Picture picture(int width, int height, std::vector<std::uint32_t> pixels) {
    return {width, height, std::move(pixels)};
}

// A folder of its own for the files of one test, gone with it.
class Acsbuild : public testing::Test {
  protected:
    Acsbuild() {
        static int number = 0;
        folder_ = std::filesystem::temp_directory_path() /
                  ("acsbuild-test-" + std::to_string(getpid()) + "-" + std::to_string(++number));
        std::filesystem::create_directories(folder_);
    }
    ~Acsbuild() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    void writePng(const std::string& name, const Picture& drawn) {
        png_image image{};
        image.version = PNG_IMAGE_VERSION;
        image.width = static_cast<png_uint_32>(drawn.width);
        image.height = static_cast<png_uint_32>(drawn.height);
        image.format = PNG_FORMAT_BGRA;
        ASSERT_TRUE(png_image_write_to_file(&image, (folder_ / name).c_str(), 0, drawn.pixels.data(), 0, nullptr));
    }
    void writeFile(const std::string& name, const std::string& bytes) {
        std::ofstream(folder_ / name, std::ios::binary) << bytes;
    }

    // A character of one animation of one frame: two pixels, red and blue.
    json smallest() {
        writePng("dots.png", picture(2, 1, {red, blue}));
        return json::parse(R"({
            "names": [{"language": 1033, "name": "Dot", "description": "Small.", "extra": "x"}],
            "guid": "{01234567-89AB-CDEF-0123-456789ABCDEF}", "width": 4, "height": 3,
            "images": {"dots": {"file": "dots.png"}},
            "animations": [{"name": "RestPose", "transition": "none",
                            "frames": [{"duration": 10, "images": [{"image": "dots"}]}]}]
        })");
    }
    acs::Character build(const json& manifest) { return acsbuild::readCharacter(manifest.dump(), folder_); }
    // Through the file format and back.
    acs::Character written(const json& manifest) {
        std::string error;
        auto character = acs::read(acs::write(build(manifest)), error);
        EXPECT_TRUE(character) << error;
        return character ? std::move(*character) : acs::Character{};
    }
    std::string errorOf(const json& manifest) {
        try {
            build(manifest);
        } catch (const acsbuild::ManifestError& error) {
            return error.what();
        }
        return "";
    }

    std::filesystem::path folder_;
};

// The colour that the character shows at a pixel of an image, rows from the top; clear where it is transparent.
std::uint32_t colourAt(const acs::Character& character, const acs::Image& image, int x, int y) {
    const std::size_t at =
        static_cast<std::size_t>(image.height - 1 - y) * image.stride() + static_cast<std::size_t>(x);
    const std::uint8_t index = image.pixels.at(at);
    if (index == character.transparent_index) {
        return clear;
    }
    const acs::Colour colour = character.palette.at(index);
    return 0xFF000000U | static_cast<std::uint32_t>(colour.red) << 16 | static_cast<std::uint32_t>(colour.green) << 8 |
           colour.blue;
}

TEST_F(Acsbuild, ACharacterComesBackFromItsFileAsDescribed) {
    writePng("mouth.png", picture(1, 1, {green}));
    writeFile("pop.wav", std::string("RIFF\x04\0\0\0WAVE", 12));
    json manifest = smallest();
    manifest["voice"] = {{"gender", "female"}, {"speed", 170}, {"pitch", 215}, {"language", 1033}, {"age", 25}};
    manifest["balloon"] = {{"lines", 4}, {"charactersPerLine", 32}, {"background", "#102030"}, {"font", "Tahoma"}};
    manifest["images"]["mouth"] = {{"file", "mouth.png"}};
    manifest["sounds"] = {{"pop", "pop.wav"}};
    manifest["states"] = {{"SHOWING", {"Wave"}}};
    manifest["animations"].push_back(json::parse(R"({
        "name": "Wave", "transition": "returns", "return": "RestPose", "frames": [
            {"duration": 7, "sound": "pop", "exit": 1, "branches": [{"to": 0, "percent": 40}, {"to": 1, "percent": 60}],
             "images": [{"image": "mouth", "x": 3, "y": -2}, {"image": "dots"}],
             "mouths": {"narrow": {"image": "mouth", "x": 1, "y": 2}, "closed": {"image": "mouth", "replaces": true}}},
            {"duration": 9, "exit": "end"}]})"));
    const acs::Character character = written(manifest);

    EXPECT_EQ(character.width, 4);
    EXPECT_EQ(character.height, 3);
    EXPECT_EQ(character.guid, (acs::Guid{0x67, 0x45, 0x23, 0x01, 0xAB, 0x89, 0xEF, 0xCD, 0x01, 0x23, 0x45, 0x67, 0x89,
                                         0xAB, 0xCD, 0xEF}));
    ASSERT_EQ(character.names.size(), 1U);
    EXPECT_EQ(character.names[0].name, u"Dot");
    EXPECT_EQ(character.names[0].description, u"Small.");
    EXPECT_EQ(character.names[0].extra_data, u"x");
    ASSERT_TRUE(character.voice && character.voice->choice);
    EXPECT_EQ(character.voice->speed, 170U);
    EXPECT_EQ(character.voice->pitch, 215);
    EXPECT_EQ(character.voice->choice->gender, 1);
    ASSERT_TRUE(character.balloon);
    EXPECT_EQ(character.balloon->characters_a_line, 32);
    EXPECT_EQ(character.balloon->background_colour, 0x00302010U);
    EXPECT_EQ(character.palette.size(), 256U);
    EXPECT_EQ(character.images.size(), 2U);
    ASSERT_EQ(character.sounds.size(), 1U);
    EXPECT_EQ(character.sounds[0].size(), 12U);
    const acs::State* const showing = character.findState(u"SHOWING");
    ASSERT_NE(showing, nullptr);
    EXPECT_EQ(showing->animations, std::vector<std::u16string>{u"Wave"});

    const acs::Animation* const wave = character.findAnimation(u"Wave");
    ASSERT_NE(wave, nullptr);
    EXPECT_EQ(wave->transition, acs::Transition::return_animation);
    EXPECT_EQ(wave->return_animation, u"RestPose");
    ASSERT_EQ(wave->frames.size(), 2U);
    const acs::Frame& frame = wave->frames[0];
    EXPECT_EQ(frame.duration, 7);
    EXPECT_EQ(frame.sound, 0);
    EXPECT_EQ(frame.exit_frame, 1);
    ASSERT_EQ(frame.branches.size(), 2U);
    EXPECT_EQ(frame.branches[1].target, 1);
    EXPECT_EQ(frame.branches[1].probability, 60);
    ASSERT_EQ(frame.images.size(), 2U);
    EXPECT_EQ(frame.images[0].x, 3);
    EXPECT_EQ(frame.images[0].y, -2);
    ASSERT_EQ(frame.mouths.size(), 2U);
    EXPECT_EQ(frame.mouths[0].shape, acs::MouthShape::closed);
    EXPECT_TRUE(frame.mouths[0].replaces_top_image);
    EXPECT_EQ(frame.mouths[1].shape, acs::MouthShape::narrow);
    EXPECT_FALSE(frame.mouths[1].replaces_top_image);
    EXPECT_EQ(frame.mouths[1].y, 2);
    EXPECT_EQ(frame.mouths[1].width, 1);
    EXPECT_EQ(wave->frames[1].exit_frame, acs::exit_end);
    EXPECT_EQ(wave->frames[1].sound, acs::no_sound);
    EXPECT_TRUE(wave->frames[1].images.empty());

    const acs::Image& dots = character.images[frame.images[1].image];
    EXPECT_EQ(colourAt(character, dots, 0, 0), red);
    EXPECT_EQ(colourAt(character, dots, 1, 0), blue);
}

TEST_F(Acsbuild, LessThanHalfCoveredIsTransparent) {
    json manifest = smallest();
    writePng("dots.png", picture(3, 1, {red, 0x7F0000FF, 0x800000FF}));
    const acs::Character character = written(manifest);
    ASSERT_EQ(character.images.size(), 1U);
    EXPECT_EQ(colourAt(character, character.images[0], 1, 0), clear);
    EXPECT_EQ(colourAt(character, character.images[0], 2, 0), blue) << "an edge keeps its own colour, without a fringe";
}

TEST_F(Acsbuild, NoPixelButATransparentOneHasTheTransparentColour) {
    json manifest = smallest();
    writePng("dots.png", picture(2, 1, {0xFFFF00FF, red}));
    manifest["transparent"] = "#FF00FF";
    const acs::Character character = written(manifest);
    const acs::Colour transparent = character.palette[character.transparent_index];
    EXPECT_EQ(transparent, (acs::Colour{0xFF, 0x00, 0xFF}));
    EXPECT_EQ(std::count(character.palette.begin(), character.palette.end(), transparent), 1);
    EXPECT_EQ(colourAt(character, character.images[0], 0, 0), 0xFFFF01FFU);
}

TEST_F(Acsbuild, BordersAreCutOffAndPlacesMovedWithThem) {
    json manifest = smallest();
    writePng("dots.png", picture(4, 3,
                                 {clear, clear, clear, clear, //
                                  clear, clear, red, green,   //
                                  clear, clear, clear, clear}));
    manifest["animations"][0]["frames"][0]["images"][0] = {{"image", "dots"}, {"x", 10}, {"y", 20}};
    const acs::Character character = written(manifest);
    ASSERT_EQ(character.images.size(), 1U);
    EXPECT_EQ(character.images[0].width, 2);
    EXPECT_EQ(character.images[0].height, 1);
    EXPECT_EQ(character.animations[0].frames[0].images[0].x, 12);
    EXPECT_EQ(character.animations[0].frames[0].images[0].y, 21);
}

TEST_F(Acsbuild, EqualPicturesBecomeOneImage) {
    json manifest = smallest();
    writePng("again.png", picture(4, 1, {clear, red, blue, clear}));
    writePng("other.png", picture(2, 1, {blue, red}));
    manifest["images"]["again"] = {{"file", "again.png"}};
    manifest["images"]["part"] = {{"file", "again.png"}, {"crop", {1, 0, 2, 1}}};
    manifest["images"]["other"] = {{"file", "other.png"}};
    manifest["animations"][0]["frames"][0]["images"] = {
        {{"image", "dots"}}, {{"image", "again"}}, {{"image", "part"}}, {{"image", "other"}}};
    const acs::Character character = written(manifest);
    EXPECT_EQ(character.images.size(), 2U);
    const std::vector<acs::FrameImage>& shown = character.animations[0].frames[0].images;
    ASSERT_EQ(shown.size(), 4U);
    EXPECT_EQ(shown[0].image, shown[1].image);
    EXPECT_EQ(shown[0].image, shown[2].image);
    EXPECT_NE(shown[0].image, shown[3].image);
    EXPECT_EQ(shown[1].x, 1);
    EXPECT_EQ(shown[2].x, 0);
}

TEST_F(Acsbuild, APictureWithoutAnOpaquePixelIsLeftOut) {
    json manifest = smallest();
    writePng("dots.png", picture(2, 1, {clear, clear}));
    const acs::Character character = written(manifest);
    EXPECT_TRUE(character.images.empty());
    EXPECT_TRUE(character.animations[0].frames[0].images.empty());
}

// As most characters are made: red at rest, blue and yellow to its own left and right, green in a pose with a mouth
// that is left by exit branches behind the end, MS-ADPCM, names of languages without a region.
class CharacterOfOthers : public Acsbuild {
  protected:
    CharacterOfOthers() {
        json manifest = smallest();
        const auto draws = [&](const char* name, std::uint32_t colour) {
            writePng(std::string(name) + ".png", picture(4, 3, std::vector(12, colour)));
            manifest["images"][name] = {{"file", std::string(name) + ".png"}};
        };
        draws("red", red);
        draws("blue", blue);
        draws("green", green);
        draws("yellow", yellow);
        draws("grey", grey);
        writePng("mouth.png", picture(1, 1, {blue}));
        manifest["images"]["mouth"] = {{"file", "mouth.png"}};
        const auto bytes = agent::voice::encodedFile({}, agent::voice::tone(11025, 1, 200));
        sound_.assign(bytes.begin(), bytes.end());
        writeFile("adpcm.wav", sound_);
        manifest["sounds"] = {{"adpcm", "adpcm.wav"}};
        manifest["names"] = {{{"language", 0x0401}, {"name", "Nuqta"}}, {{"language", 0x0009}, {"name", "Dot"}}};
        const auto frame = [](const char* image) { return json{{"duration", 10}, {"images", {{{"image", image}}}}}; };
        const json end_mark = {{"duration", 0}};
        json pose = frame("green");
        pose["mouths"] = {{"wide1", {{"image", "mouth"}}}};
        pose["branches"] = {{{"to", 3}, {"percent", 100}}};
        pose["exit"] = 2;
        json heard = frame("grey");
        heard["sound"] = "adpcm";
        const auto moving = [&](const char* name, const char* image) {
            return json{{"name", name}, {"transition", "none"}, {"frames", {frame(image), end_mark}}};
        };
        manifest["animations"] = {
            {{"name", "RestPose"}, {"transition", "none"}, {"frames", {frame("red")}}},
            {{"name", "Explain"}, {"transition", "exits"}, {"frames", {heard, pose, frame("grey"), end_mark}}},
            moving("Left", "blue"),
            moving("Right", "yellow")};
        manifest["states"] = {{"MOVINGLEFT", {"Left"}},
                              {"MOVINGRIGHT", {"Right"}},
                              {"GESTURINGLEFT", {"Left"}},
                              {"GESTURINGRIGHT", {"Right"}},
                              {"SPEAKING", {"RestPose"}}};
        std::string error;
        auto file = acs::CharacterFile::open(acs::write(build(manifest)), error);
        if (!file) {
            throw std::runtime_error(error);
        }
        file_ = std::make_shared<const acs::CharacterFile>(std::move(*file));
        actor_ = &rehearsal_.onStage("dot", std::make_shared<agent::stage::FileRepertoire>(file_));
        actor_->place(100, 100, agent::stage::MoveCause::program);
    }

    agent::stage::RequestRef ask(agent::stage::Kind kind, int x, int y, int speed = 0) {
        agent::stage::Request request;
        request.kind = kind;
        request.x = x;
        request.y = y;
        request.speed = speed;
        return rehearsal_.ask(*actor_, request);
    }
    // What shows at the right below, where no mouth is.
    std::uint32_t shown() {
        agent::stage::compose(*file_, actor_->frame(), actor_->mouth(), raster_);
        return raster_.pixels.back();
    }

    static constexpr std::uint32_t yellow = 0xFFFFFF00, grey = 0xFF808080;
    std::string sound_;
    std::shared_ptr<const acs::CharacterFile> file_;
    agent::stage::Rehearsal rehearsal_;
    agent::stage::Actor* actor_ = nullptr;
    agent::stage::Raster raster_;
};

TEST_F(CharacterOfOthers, PointsAndGoesToTheRightOfTheScreenByItsOwnLeft) {
    using agent::stage::Kind;
    for (const Kind kind : {Kind::gesture_at, Kind::move_to}) {
        ask(kind, 900, 100, 500);
        rehearsal_.pass(50);
        EXPECT_EQ(shown(), blue);
        rehearsal_.pass(1000);
        ask(kind, -900, 100, 500);
        rehearsal_.pass(50);
        EXPECT_EQ(shown(), yellow);
        rehearsal_.pass(1000);
    }
}

TEST_F(CharacterOfOthers, IsSeenAllTheWay) {
    const auto move = ask(agent::stage::Kind::move_to, 900, 100, 2000);
    rehearsal_.pass(20);
    for (int passed = 20; passed < 2000; passed += 20) {
        ASSERT_EQ(shown(), blue) << passed << " ms";
        rehearsal_.pass(20);
    }
    rehearsal_.pass(100);
    EXPECT_TRUE(move->over());
    EXPECT_EQ(shown(), red);
}

TEST_F(CharacterOfOthers, SpeaksInItsPoseAndLeavesItByItsExit) {
    rehearsal_.play(*actor_, u"Explain");
    rehearsal_.pass(3000);
    EXPECT_EQ(shown(), green);
    rehearsal_.speak(*actor_, u"one two");
    rehearsal_.pass(300);
    EXPECT_EQ(shown(), green);
    EXPECT_EQ(raster_.pixels.front(), blue) << "the mouth";
    rehearsal_.pass(2000);
    EXPECT_EQ(shown(), green);
    rehearsal_.play(*actor_, u"RestPose");
    rehearsal_.pass(50);
    EXPECT_EQ(shown(), grey);
    rehearsal_.pass(100);
    EXPECT_EQ(shown(), red);
}

TEST_F(CharacterOfOthers, IsNamedAndHeardAsItsFileSays) {
    ASSERT_NE(file_->character().nameFor(0x0409), nullptr);
    EXPECT_EQ(file_->character().nameFor(0x0409)->name, u"Dot");
    ASSERT_EQ(file_->soundCount(), 1U);
    EXPECT_TRUE(std::ranges::equal(file_->sound(0), std::as_bytes(std::span(sound_)),
                                   [](std::uint8_t a, std::byte b) { return a == std::to_integer<std::uint8_t>(b); }));
    rehearsal_.play(*actor_, u"Explain");
    rehearsal_.pass(10);
    EXPECT_THAT(rehearsal_.taken(), testing::Contains("dot noise 0"));
}

TEST(AcsbuildPalette, UpTo255ColoursAreExact) {
    Picture drawn{255, 1, {}};
    for (std::uint32_t i = 0; i < 255; ++i) {
        drawn.pixels.push_back(0xFF000000U | i * 0x010203U);
    }
    acsbuild::Palette palette({drawn}, 0xFF00FF);
    const std::vector<acs::Colour> colours = palette.colours();
    for (const std::uint32_t pixel : drawn.pixels) {
        const acs::Colour found = colours[palette.indexOf(pixel)];
        EXPECT_EQ(found, (acs::Colour{static_cast<std::uint8_t>(pixel), static_cast<std::uint8_t>(pixel >> 8),
                                      static_cast<std::uint8_t>(pixel >> 16)}));
        EXPECT_NE(palette.indexOf(pixel), 0);
    }
}

TEST(AcsbuildPalette, AGradientStaysNearItsColours) {
    Picture drawn{256, 16, {}};
    for (std::uint32_t y = 0; y < 16; ++y) {
        for (std::uint32_t x = 0; x < 256; ++x) {
            drawn.pixels.push_back(0xFF000000U | x << 16 | (y * 16) << 8 | (255 - x));
        }
    }
    acsbuild::Palette palette({drawn}, 0xFF00FF);
    const std::vector<acs::Colour> colours = palette.colours();
    EXPECT_EQ(colours.size(), 256U);
    int worst = 0;
    std::set<int> used;
    for (const std::uint32_t pixel : drawn.pixels) {
        const int index = palette.indexOf(pixel);
        used.insert(index);
        const acs::Colour found = colours[static_cast<std::size_t>(index)];
        worst = std::max({worst, std::abs(found.red - static_cast<int>(pixel >> 16 & 0xFF)),
                          std::abs(found.green - static_cast<int>(pixel >> 8 & 0xFF)),
                          std::abs(found.blue - static_cast<int>(pixel & 0xFF))});
    }
    EXPECT_EQ(used.size(), 255U);
    EXPECT_LE(worst, 16); // 4096 colours in 255 boxes: 16 a box, so no side of a box need be longer than that
}

TEST(AcsbuildPalette, TakesNoMoreColoursThanAreAllowed) {
    Picture drawn{255, 1, {}};
    for (std::uint32_t i = 0; i < 255; ++i) {
        drawn.pixels.push_back(0xFF000000U | i * 0x010203U);
    }
    acsbuild::Palette palette({drawn}, 0xFF00FF, 12);
    std::set<int> used;
    for (const std::uint32_t pixel : drawn.pixels) {
        used.insert(palette.indexOf(pixel));
    }
    EXPECT_EQ(used.size(), 12U);
    EXPECT_EQ(used.count(0), 0U);
}

TEST(AcsbuildPalette, RowsAreStoredFromTheBottomAndPadded) {
    const Picture drawn = picture(3, 2, {red, green, blue, blue, clear, red});
    acsbuild::Palette palette({drawn}, 0xFF00FF);
    const acs::Image image = palette.image(drawn);
    const std::uint8_t r = palette.indexOf(red), g = palette.indexOf(green), b = palette.indexOf(blue);
    EXPECT_EQ(image.pixels, (std::vector<std::uint8_t>{b, 0, r, 0, r, g, b, 0}));
}

TEST(AcsbuildRegion, EqualRowsShareTheirRectangles) {
    const Picture drawn = picture(5, 4, {clear, red,   clear, red,   clear, //
                                         clear, red,   clear, blue,  clear, //
                                         clear, clear, clear, clear, clear, //
                                         clear, red,   red,   red,   red});
    const std::vector<std::uint8_t> bytes = acsbuild::opaqueRegion(drawn);
    std::vector<int> numbers;
    for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
        numbers.push_back(bytes[i] | bytes[i + 1] << 8 | bytes[i + 2] << 16 | bytes[i + 3] << 24);
    }
    EXPECT_EQ(numbers, (std::vector<int>{32, 1, 3, 48, 1, 0, 5, 4, /**/ 1, 0, 2, 2, /**/ 3, 0, 4, 2, /**/ 1, 3, 5, 4}));
}

TEST_F(Acsbuild, SaysWhatIsWrongAndWhere) {
    const json good = smallest();
    EXPECT_EQ(errorOf(good), "");
    writePng("clear.png", picture(1, 1, {clear}));
    writeFile("broken.png", "\x89PNG\r\n\x1a\n and no more");
    writeFile("text.wav", "RIFF but no wave");

    struct Case {
        const char* name;
        std::function<void(json&)> spoil;
        const char* error;
    };
    const auto frame = [](json& m) -> json& { return m["animations"][0]["frames"][0]; };
    const std::vector<Case> cases{
        {"no names", [](json& m) { m.erase("names"); }, "manifest: \"names\" is missing"},
        {"names empty", [](json& m) { m["names"] = json::array(); }, "manifest.names: the character needs a name"},
        {"name empty", [](json& m) { m["names"][0]["name"] = ""; }, "manifest.names[0].name: is empty"},
        {"name a number", [](json& m) { m["names"][0]["name"] = 3; }, "manifest.names[0].name: must be a text"},
        {"unknown member", [](json& m) { m["hight"] = 3; }, "manifest: unknown member \"hight\""},
        {"no object", [](json& m) { m = json::array(); }, "manifest: must be an object"},
        {"guid", [](json& m) { m["guid"] = "{01234567-89AB-CDEF-0123-456789ABCDEG}"; },
         "manifest.guid: must be a GUID"},
        {"width 0", [](json& m) { m["width"] = 0; }, "manifest.width: must be a whole number from 1 to 1024"},
        {"width huge", [](json& m) { m["width"] = 18446744073709551615ULL; }, "manifest.width: must be a whole number"},
        {"width a fraction", [](json& m) { m["width"] = 1.5; }, "manifest.width: must be a whole number"},
        {"colour", [](json& m) { m["transparent"] = "#FF00F"; }, "manifest.transparent: must be a colour"},
        {"colours 0", [](json& m) { m["colours"] = 0; }, "manifest.colours: must be a whole number from 1 to 255"},
        {"colours 256", [](json& m) { m["colours"] = 256; }, "manifest.colours: must be a whole number from 1 to 255"},
        {"gender",
         [](json& m) {
             m["voice"] = {{"gender", "frog"}};
         },
         "manifest.voice.gender: must be"},
        {"balloon",
         [](json& m) {
             m["balloon"] = {{"lines", 0}};
         },
         "manifest.balloon.lines: must be a whole number"},
        {"flag",
         [](json& m) {
             m["balloon"] = {{"italic", 1}};
         },
         "manifest.balloon.italic: must be true or false"},
        {"file missing", [](json& m) { m["images"]["dots"]["file"] = "none.png"; }, "manifest.images.dots: "},
        {"file damaged", [](json& m) { m["images"]["dots"]["file"] = "broken.png"; }, "broken.png: "},
        {"crop outside",
         [](json& m) {
             m["images"]["dots"]["crop"] = {1, 0, 2, 1};
         },
         "manifest.images.dots.crop: goes beyond"},
        {"crop huge",
         [](json& m) {
             m["images"]["dots"]["crop"] = {1, 0, 2147483647, 1};
         },
         "goes beyond the picture of 2 x 1"},
        {"crop short",
         [](json& m) {
             m["images"]["dots"]["crop"] = {1, 0};
         },
         "must be [x, y, width, height]"},
        {"no wave", [](json& m) { m["sounds"]["pop"] = "text.wav"; }, "text.wav: is not a WAVE file"},
        {"no sound file", [](json& m) { m["sounds"]["pop"] = "none.wav"; }, "none.wav: cannot be read"},
        {"no frames", [](json& m) { m["animations"][0]["frames"] = json::array(); },
         "manifest.animations[0].frames: there must be"},
        {"transition", [](json& m) { m["animations"][0]["transition"] = "x"; },
         "manifest.animations[0].transition: must be"},
        {"no return", [](json& m) { m["animations"][0]["transition"] = "returns"; },
         "manifest.animations[0]: \"return\" is missing"},
        {"return", [](json& m) { m["animations"][0]["return"] = "RestPose"; },
         "only an animation that \"returns\" has one"},
        {"return nowhere",
         [](json& m) {
             m["animations"][0]["transition"] = "returns";
             m["animations"][0]["return"] = "Nowhere";
         },
         "manifest.animations[0].return: there is no animation \"Nowhere\""},
        {"twice", [](json& m) { m["animations"].push_back(m["animations"][0]); },
         "manifest.animations[1].name: there is an animation"},
        {"no duration", [&](json& m) { frame(m).erase("duration"); }, "frames[0]: \"duration\" is missing"},
        {"duration", [&](json& m) { frame(m)["duration"] = -1; },
         "frames[0].duration: must be a whole number from 0 to 65535"},
        {"no image", [&](json& m) { frame(m)["images"][0]["image"] = "dot"; },
         "images[0].image: there is no image \"dot\""},
        {"far out", [&](json& m) { frame(m)["images"][0]["x"] = 40000; }, "images[0].x: must be a whole number"},
        {"no sound", [&](json& m) { frame(m)["sound"] = "pop"; }, "frames[0].sound: there is no sound \"pop\""},
        {"exit", [&](json& m) { frame(m)["exit"] = 1; }, "frames[0].exit: must be a whole number from 0 to 0"},
        {"exit text", [&](json& m) { frame(m)["exit"] = "End"; }, "frames[0].exit: must be \"end\" or the number"},
        {"branch nowhere",
         [&](json& m) {
             frame(m)["branches"] = {{{"to", 1}, {"percent", 5}}};
         },
         "branches[0].to: must be"},
        {"branches over",
         [&](json& m) {
             frame(m)["branches"] = {{{"to", 0}, {"percent", 60}}, {{"to", 0}, {"percent", 41}}};
         },
         "frames[0].branches: more than 100 percent"},
        {"mouth",
         [&](json& m) {
             frame(m)["mouths"]["wide5"] = {{"image", "dots"}};
         },
         "mouths.wide5: the mouths are closed"},
        {"mouth empty",
         [&](json& m) {
             m["images"]["clear"] = {{"file", "clear.png"}};
             frame(m)["mouths"]["closed"] = {{"image", "clear"}};
         },
         "mouths.closed.image: a mouth must have an opaque pixel"},
        {"state", [](json& m) { m["states"]["SHOWING"] = {"Show"}; },
         "manifest.states.SHOWING[0]: there is no animation \"Show\""},
    };
    for (const Case& wrong : cases) {
        json manifest = good;
        wrong.spoil(manifest);
        EXPECT_THAT(errorOf(manifest), HasSubstr(wrong.error)) << wrong.name;
    }
    EXPECT_THROW(acsbuild::readCharacter("{\"names\": [", folder_), acsbuild::ManifestError);
    EXPECT_THROW(acsbuild::readCharacter("", folder_), acsbuild::ManifestError);
    EXPECT_THROW(acsbuild::readCharacter("{\"a\": \"\xff\"}", folder_), acsbuild::ManifestError);
}

// Runs the program itself: its exit status, and what it printed to standard error.
std::pair<int, std::string> runProgram(const std::string& arguments) {
    const std::string command = "\"$ACSBUILD\" " + arguments + " 2>&1 >/dev/null";
    FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        return {-1, "cannot start acsbuild"};
    }
    std::string printed;
    std::array<char, 256> buffer{};
    while (fgets(buffer.data(), static_cast<int>(buffer.size()), pipe) != nullptr) {
        printed += buffer.data();
    }
    const int status = pclose(pipe);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, printed};
}

TEST_F(Acsbuild, TheProgramWritesAFileOrSaysWhyNot) {
    json manifest = smallest();
    const std::string input = (folder_ / "dot.json").string(), output = (folder_ / "Dot.acs").string();
    writeFile("dot.json", manifest.dump());
    EXPECT_EQ(runProgram("'" + input + "' -o '" + output + "'"), (std::pair<int, std::string>{0, ""}));
    std::string error;
    const auto file = acs::readFile(output, error);
    ASSERT_TRUE(file) << error;
    EXPECT_TRUE(acs::read(*file, error)) << error;

    std::filesystem::remove(output);
    manifest["width"] = 0;
    writeFile("dot.json", manifest.dump());
    const auto [status, printed] = runProgram("'" + input + "' -o '" + output + "'");
    EXPECT_EQ(status, 1);
    EXPECT_THAT(printed, HasSubstr("dot.json: manifest.width: must be a whole number from 1 to 1024"));
    EXPECT_FALSE(std::filesystem::exists(output));

    EXPECT_EQ(runProgram("'" + (folder_ / "none.json").string() + "' -o '" + output + "'").first, 1);
    EXPECT_EQ(runProgram("'" + input + "'").first, 2);
}

} // namespace
