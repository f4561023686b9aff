// The characters and icons as they were built.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "common/text.h"
#include "companions/agent/acs/reader.h"

namespace {

namespace acs = agent::acs;
namespace fs = std::filesystem;

const fs::path assets = MURMELIX_ASSETS;

std::vector<std::uint8_t> bytesOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::uint32_t number(const std::vector<std::uint8_t>& bytes, std::size_t at, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i) {
        value |= static_cast<std::uint32_t>(bytes.at(at + i)) << (8 * i);
    }
    return value;
}

class Characters : public testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        file_ = assets / "chars" / (std::string(GetParam()) + ".acs");
        std::string error;
        const auto bytes = acs::readFile(file_, error);
        ASSERT_TRUE(bytes) << error;
        auto read = acs::read(*bytes, error);
        ASSERT_TRUE(read) << error;
        character_ = std::move(*read);
    }

    fs::path file_;
    acs::Character character_;
};

INSTANTIATE_TEST_SUITE_P(All, Characters, testing::Values("Brindle", "Ottoline", "Plonk"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_P(Characters, AreNamedAsTheirFileIs) {
    ASSERT_FALSE(character_.names.empty());
    EXPECT_EQ(murmelix::toUtf8(character_.names[0].name), GetParam());
    EXPECT_FALSE(character_.names[0].description.empty());
}

TEST_P(Characters, FitASmallWindowAndASmallFile) {
    EXPECT_EQ(character_.width, 144);
    EXPECT_EQ(character_.height, 144);
    EXPECT_LE(fs::file_size(file_), 1024U * 1024U);
    for (const acs::Image& image : character_.images) {
        EXPECT_LE(image.width, 144);
        EXPECT_LE(image.height, 144);
    }
}

TEST_P(Characters, KnowEveryAnimationThatIsAskedOfThem) {
    for (const char16_t* name :
         {u"RestPose",  u"Show",         u"Hide",        u"Blink",        u"Speak",  u"StartListening", u"Pleased",
          u"Uncertain", u"Sad",          u"Surprised",   u"Confused",     u"Alert",  u"Explain",        u"Decline",
          u"GestureUp", u"GestureDown",  u"GestureLeft", u"GestureRight", u"MoveUp", u"MoveDown",       u"MoveLeft",
          u"MoveRight", u"Congratulate", u"Idle1_1",     u"Greet",        u"Wave",   u"Read",           u"Think"}) {
        const acs::Animation* const found = character_.findAnimation(name);
        ASSERT_NE(found, nullptr) << murmelix::toUtf8(name);
        EXPECT_EQ(found->name, name) << "as the directory spells it";
    }
}

TEST_P(Characters, HaveAnAnimationForEveryState) {
    for (const char16_t* name : {u"SHOWING", u"HIDING", u"SPEAKING", u"LISTENING", u"HEARING", u"IDLINGLEVEL1",
                                 u"IDLINGLEVEL2", u"IDLINGLEVEL3", u"GESTURINGUP", u"GESTURINGDOWN", u"GESTURINGLEFT",
                                 u"GESTURINGRIGHT", u"MOVINGUP", u"MOVINGDOWN", u"MOVINGLEFT", u"MOVINGRIGHT"}) {
        const acs::State* const state = character_.findState(name);
        ASSERT_NE(state, nullptr) << murmelix::toUtf8(name);
        EXPECT_FALSE(state->animations.empty()) << murmelix::toUtf8(name);
        for (const std::u16string& animation : state->animations) {
            EXPECT_NE(character_.findAnimation(animation), nullptr) << murmelix::toUtf8(animation);
        }
    }
}

TEST_P(Characters, PointAndGoTheWayOfTheState) {
    const std::vector<std::pair<const char16_t*, const char16_t*>> pairs{
        {u"GESTURINGUP", u"GestureUp"},       {u"GESTURINGDOWN", u"GestureDown"}, {u"GESTURINGLEFT", u"GestureLeft"},
        {u"GESTURINGRIGHT", u"GestureRight"}, {u"MOVINGUP", u"MoveUp"},           {u"MOVINGDOWN", u"MoveDown"},
        {u"MOVINGLEFT", u"MoveLeft"},         {u"MOVINGRIGHT", u"MoveRight"}};
    for (const auto& [state, animation] : pairs) {
        EXPECT_EQ(character_.findState(state)->animations, std::vector<std::u16string>{animation});
    }
    // The hand that points to the right, which is the viewer's left, reaches further that way than the figure at rest
    // does; so to the left.
    const auto extent = [&](const char16_t* name) {
        const acs::FrameImage& shown = character_.findAnimation(name)->frames.back().images.at(0);
        return std::pair<int, int>{shown.x, shown.x + character_.images[shown.image].width};
    };
    EXPECT_LE(extent(u"GestureRight").first, extent(u"RestPose").first);
    EXPECT_LT(extent(u"GestureRight").first, 30);
    EXPECT_GE(extent(u"GestureLeft").second, extent(u"RestPose").second);
    EXPECT_GT(extent(u"GestureLeft").second, 114);
}

TEST_P(Characters, AreNotCutOffAtTheSidesWhereTheyPointAndGo) {
    for (const char16_t* name : {u"GestureLeft", u"GestureRight", u"MoveLeft", u"MoveRight", u"GestureUp", u"MoveUp"}) {
        for (const acs::Frame& frame : character_.findAnimation(name)->frames) {
            for (const acs::FrameImage& shown : frame.images) {
                EXPECT_GT(shown.x, 0) << murmelix::toUtf8(name);
                EXPECT_LT(shown.x + character_.images[shown.image].width, character_.width) << murmelix::toUtf8(name);
            }
        }
    }
}

// The seven shapes differ, lie inside the figure, and the closed one is what the pose shows.
TEST_P(Characters, SpeakWithSevenMouths) {
    for (const char16_t* name : {u"RestPose", u"Speak", u"Explain"}) {
        const acs::Animation* const animation = character_.findAnimation(name);
        ASSERT_NE(animation, nullptr);
        for (const acs::Frame& frame : animation->frames) {
            std::set<int> shapes;
            std::set<std::uint16_t> images;
            for (const acs::Mouth& mouth : frame.mouths) {
                shapes.insert(static_cast<int>(mouth.shape));
                images.insert(mouth.image);
                EXPECT_GE(mouth.x, 0);
                EXPECT_GE(mouth.y, 0);
                EXPECT_LE(mouth.x + mouth.width, character_.width);
                EXPECT_LE(mouth.y + mouth.height, character_.height);
            }
            EXPECT_EQ(shapes, (std::set<int>{0, 1, 2, 3, 4, 5, 6})) << murmelix::toUtf8(name);
            EXPECT_EQ(images.size(), 7U) << murmelix::toUtf8(name);
        }
    }
    const acs::Frame& rest = character_.findAnimation(u"RestPose")->frames.at(0);
    ASSERT_EQ(rest.images.size(), 1U);
    const acs::Image& whole = character_.images[rest.images[0].image];
    const auto pixel = [](const acs::Image& image, int x, int y) {
        return image.pixels.at(static_cast<std::size_t>(image.height - 1 - y) * image.stride() +
                               static_cast<std::size_t>(x));
    };
    int different = 0;
    const acs::Mouth& closed = rest.mouths.at(0);
    for (int y = 0; y < closed.height; ++y) {
        for (int x = 0; x < closed.width; ++x) {
            different += pixel(character_.images[closed.image], x, y) !=
                                 pixel(whole, closed.x + x - rest.images[0].x, closed.y + y - rest.images[0].y)
                             ? 1
                             : 0;
        }
    }
    EXPECT_EQ(different, 0);
}

// The frames of an animation, from the first until none follows: with `asked` as after a stop, otherwise with no
// branch.
std::vector<std::size_t> played(const acs::Animation& animation, std::size_t from, bool asked) {
    std::vector<std::size_t> frames;
    for (std::size_t at = from; at < animation.frames.size() && frames.size() <= 2 * animation.frames.size();) {
        frames.push_back(at);
        const acs::Frame& frame = animation.frames[at];
        if (asked && frame.exit_frame == acs::exit_end) {
            break;
        }
        at = asked && frame.exit_frame >= 0 ? static_cast<std::size_t>(frame.exit_frame) : at + 1;
    }
    return frames;
}

TEST_P(Characters, EndEveryAnimation) {
    for (const acs::Animation& animation : character_.animations) {
        const std::string name = murmelix::toUtf8(animation.name);
        EXPECT_LE(played(animation, 0, false).size(), animation.frames.size()) << name;
        for (std::size_t from = 0; from < animation.frames.size(); ++from) {
            EXPECT_LE(played(animation, from, true).size(), animation.frames.size()) << name << " asked at " << from;
        }
        for (const acs::Frame& frame : animation.frames) {
            EXPECT_GT(frame.duration, 0) << name;
            int back = 0;
            for (const acs::Branch& branch : frame.branches) {
                back += branch.probability;
            }
            EXPECT_LT(back, 100) << name << " may go round for ever";
        }
    }
}

// Whatever is played ends in the rest pose, or stays in a pose from which another animation leads back to it.
TEST_P(Characters, ComeBackToTheRestPose) {
    const acs::Animation* const rest = character_.findAnimation(u"RestPose");
    ASSERT_NE(rest, nullptr);
    ASSERT_EQ(rest->frames.size(), 1U);
    const auto atRest = [&](const acs::Frame& frame) {
        return frame.images.size() == 1 && frame.images[0].image == rest->frames[0].images[0].image &&
               frame.images[0].x == rest->frames[0].images[0].x && frame.images[0].y == rest->frames[0].images[0].y;
    };
    for (const acs::Animation& animation : character_.animations) {
        if (animation.name == u"Hide") {
            continue;
        }
        const std::string name = murmelix::toUtf8(animation.name);
        if (animation.transition == acs::Transition::return_animation) {
            const acs::Animation* const back = character_.findAnimation(animation.return_animation);
            ASSERT_NE(back, nullptr) << name;
            EXPECT_NE(back->transition, acs::Transition::return_animation) << name;
            EXPECT_TRUE(atRest(back->frames.back())) << name;
        } else {
            EXPECT_TRUE(atRest(animation.frames.back())) << name;
            for (std::size_t from = 0; from < animation.frames.size(); ++from) {
                EXPECT_TRUE(atRest(animation.frames[played(animation, from, true).back()]))
                    << name << " asked at " << from;
            }
        }
    }
}

TEST_P(Characters, AreNoStiffPictures) {
    for (const char16_t* name : {u"Show", u"Hide", u"Pleased", u"Uncertain", u"Sad", u"Surprised", u"Confused",
                                 u"Alert", u"Explain", u"Congratulate", u"Decline"}) {
        std::set<std::uint32_t> images;
        int duration = 0;
        for (const acs::Frame& frame : character_.findAnimation(name)->frames) {
            for (const acs::FrameImage& shown : frame.images) {
                images.insert(shown.image);
            }
            duration += frame.duration;
        }
        EXPECT_GE(images.size(), 4U) << murmelix::toUtf8(name);
        EXPECT_GE(duration, 30) << murmelix::toUtf8(name);
        EXPECT_LE(duration, 400) << murmelix::toUtf8(name);
    }
}

TEST(CharacterSet, CanBeToldApart) {
    std::set<acs::Guid> guids;
    std::set<std::uint16_t> pitches;
    for (const char* name : {"Brindle", "Ottoline", "Plonk"}) {
        std::string error;
        const auto file = acs::CharacterFile::load(assets / "chars" / (std::string(name) + ".acs"), error);
        ASSERT_TRUE(file) << error;
        guids.insert(file->character().guid);
        ASSERT_TRUE(file->character().voice);
        pitches.insert(file->character().voice->pitch);
    }
    EXPECT_EQ(guids.size(), 3U);
    EXPECT_EQ(pitches.size(), 3U);
}

struct IconImage {
    std::uint32_t size, bits, at, length;
};

std::vector<IconImage> imagesOf(const std::vector<std::uint8_t>& icon) {
    std::vector<IconImage> images;
    if (icon.size() < 6 || number(icon, 0, 4) != 0x00010000U) {
        return images;
    }
    const std::uint32_t count = number(icon, 4, 2);
    for (std::size_t i = 0; i < count && 6 + 16 * (i + 1) <= icon.size(); ++i) {
        const std::size_t entry = 6 + 16 * i;
        const std::uint32_t size = number(icon, entry, 1);
        images.push_back({size == 0 ? 256 : size, number(icon, entry + 6, 2), number(icon, entry + 12, 4),
                          number(icon, entry + 8, 4)});
    }
    return images;
}

TEST(Icons, HaveEverySize) {
    const std::vector<std::uint32_t> programs{16, 20, 24, 32, 40, 48, 64, 80, 96, 128, 256};
    const std::vector<std::pair<std::string, std::vector<std::uint32_t>>> expected{
        {"murmelix", programs},        {"messenger", programs}, {"agent", programs},
        {"setup", programs},           {"updater", programs},   {"conversation", {16, 20, 24, 32, 40, 48, 64}},
        {"about", {96, 120, 144, 192}}};
    for (const auto& [name, wanted] : expected) {
        const std::vector<std::uint8_t> bytes = bytesOf(assets / "icons" / (name + ".ico"));
        std::vector<std::uint32_t> sizes;
        for (const IconImage& image : imagesOf(bytes)) {
            sizes.push_back(image.size);
            ASSERT_LE(static_cast<std::size_t>(image.at) + image.length, bytes.size()) << name;
            EXPECT_EQ(number(bytes, image.at, 4), image.size >= 64 ? 0x474E5089U : 40U)
                << name << ": a PNG where it is large, else a bitmap";
            if (image.size < 64) {
                EXPECT_EQ(number(bytes, image.at + 8, 4), 2 * image.size) << name << ": colours and mask";
            }
        }
        EXPECT_EQ(sizes, wanted) << name;
    }
}

TEST(Icons, MenuPicturesTakeTheMenusColours) {
    for (const std::string name :
         {"minimize", "restore", "characters", "voices", "exit", "about", "tips", "help", "friend", "stop"}) {
        const std::vector<std::uint8_t> bytes = bytesOf(assets / "icons" / ("menu_" + name + ".ico"));
        const auto images = imagesOf(bytes);
        ASSERT_EQ(images.size(), 22U) << name;
        for (std::size_t i = 0; i < images.size(); ++i) {
            EXPECT_EQ(images[i].size, 11 + i) << name;
            EXPECT_EQ(images[i].bits, 1U) << name << ": one bit a pixel";
            std::set<std::uint32_t> rows;
            const std::uint32_t mask = images[i].at + 48 + 4 * images[i].size;
            ASSERT_LE(mask + 4 * images[i].size, bytes.size());
            for (std::uint32_t y = 0; y < images[i].size; ++y) {
                rows.insert(number(bytes, mask + 4 * y, 4));
            }
            EXPECT_GT(rows.size(), 1U) << name << " shows nothing at " << images[i].size;
        }
    }
    const std::vector<std::uint8_t> conversation = bytesOf(assets / "icons" / "conversation.bmp");
    ASSERT_EQ(conversation.size(), 54U + 32U * 32U * 3U);
    EXPECT_EQ(number(conversation, 18, 4), 32U);
}

} // namespace
