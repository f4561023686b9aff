// The characters and icons as they were built.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <tuple>
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

// Each animation that a character has, in the spelling of the directory.
enum class Way { none, exits, returns };
struct Wanted {
    const char16_t* name;
    Way way;
    bool mouths; // on some frame at least
    const char16_t* way_back = u"";
};
const std::vector<Wanted> wanted_animations{
    {u"RestPose", Way::none, true},
    {u"Show", Way::none, false},
    {u"Hide", Way::none, false},
    {u"Blink", Way::exits, true},
    {u"Speak", Way::exits, true},
    {u"Greet", Way::exits, false},
    {u"Wave", Way::exits, false},
    {u"Pleased", Way::exits, true},
    {u"Sad", Way::exits, false},
    {u"Surprised", Way::exits, false},
    {u"Confused", Way::exits, false},
    {u"Uncertain", Way::exits, false},
    {u"Alert", Way::exits, false},
    {u"Explain", Way::exits, true},
    {u"Congratulate", Way::exits, false},
    {u"Decline", Way::exits, false},
    {u"Acknowledge", Way::exits, false},
    {u"Announce", Way::exits, false},
    {u"Suggest", Way::exits, false},
    {u"GetAttention", Way::exits, false},
    {u"Think", Way::returns, false, u"ThinkReturn"},
    {u"Read", Way::returns, false, u"ReadReturn"},
    {u"Write", Way::returns, false, u"WriteReturn"},
    {u"Search", Way::exits, false},
    {u"Process", Way::exits, false},
    {u"StartListening", Way::returns, false, u"StopListening"},
    {u"StopListening", Way::exits, false},
    {u"Hearing_1", Way::exits, false},
    {u"Hearing_2", Way::exits, false},
    {u"Hearing_3", Way::exits, false},
    {u"GestureUp", Way::returns, true, u"GestureUpReturn"},
    {u"GestureDown", Way::returns, true, u"GestureDownReturn"},
    {u"GestureLeft", Way::returns, true, u"GestureLeftReturn"},
    {u"GestureRight", Way::returns, true, u"GestureRightReturn"},
    {u"LookUp", Way::returns, false, u"LookUpReturn"},
    {u"LookDown", Way::returns, false, u"LookDownReturn"},
    {u"LookLeft", Way::returns, false, u"LookLeftReturn"},
    {u"LookRight", Way::returns, false, u"LookRightReturn"},
    {u"MoveUp", Way::returns, false, u"MoveUpReturn"},
    {u"MoveDown", Way::returns, false, u"MoveDownReturn"},
    {u"MoveLeft", Way::returns, false, u"MoveLeftReturn"},
    {u"MoveRight", Way::returns, false, u"MoveRightReturn"},
    {u"Idle1_1", Way::exits, false},
    {u"Idle1_2", Way::exits, false},
    {u"Idle2_1", Way::exits, false},
    {u"Idle2_2", Way::exits, false},
    {u"Idle3_1", Way::exits, false},
    {u"Idle3_2", Way::exits, false},
};

constexpr std::uint16_t longest_moving = 8;      // 1/100 s: twelve pictures a second and more
constexpr std::uintmax_t largest_file = 2000000; // bytes
constexpr std::uint16_t least_side = 128, largest_side = 160;

// The characters that the build is told to make, and any other file that lies beside them.
std::vector<std::string> charactersOfTheBuild() {
    std::set<std::string> names;
    std::string listed = MURMELIX_CHARACTERS;
    std::replace(listed.begin(), listed.end(), ',', ' ');
    std::istringstream words(listed);
    for (std::string name; words >> name;) {
        names.insert(name);
    }
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(assets / "chars", ignored)) {
        if (entry.path().extension() == ".acs") {
            names.insert(entry.path().stem().string());
        }
    }
    return {names.begin(), names.end()};
}

class Characters : public testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
        file_ = assets / "chars" / (GetParam() + ".acs");
        std::string error;
        const auto bytes = acs::readFile(file_, error);
        ASSERT_TRUE(bytes) << error;
        auto read = acs::read(*bytes, error);
        ASSERT_TRUE(read) << error;
        character_ = std::move(*read);
    }

    // What shows of a frame: which images, and where.
    static std::vector<std::tuple<std::uint32_t, int, int>> shown(const acs::Frame& frame) {
        std::vector<std::tuple<std::uint32_t, int, int>> result;
        for (const acs::FrameImage& image : frame.images) {
            result.emplace_back(image.image, image.x, image.y);
        }
        return result;
    }

    // The pixels of a frame as palette indices, top row first.
    std::vector<std::uint8_t> composed(const acs::Frame& frame) const {
        std::vector<std::uint8_t> pixels(std::size_t{character_.width} * character_.height,
                                         character_.transparent_index);
        for (std::size_t i = frame.images.size(); i-- > 0;) {
            const acs::FrameImage& placed = frame.images[i];
            const acs::Image& image = character_.images.at(placed.image);
            for (int y = 0; y < image.height; ++y) {
                for (int x = 0; x < image.width; ++x) {
                    const int left = placed.x + x, top = placed.y + y;
                    const std::uint8_t index = image.pixels.at(
                        static_cast<std::size_t>(image.height - 1 - y) * image.stride() + static_cast<std::size_t>(x));
                    if (index != character_.transparent_index && left >= 0 && top >= 0 && left < character_.width &&
                        top < character_.height) {
                        pixels[static_cast<std::size_t>(top) * character_.width + static_cast<std::size_t>(left)] =
                            index;
                    }
                }
            }
        }
        return pixels;
    }

    // The first and the last column in which something shows.
    std::pair<int, int> extent(const acs::Frame& frame) const {
        const std::vector<std::uint8_t> pixels = composed(frame);
        std::pair<int, int> found{character_.width, -1};
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            if (pixels[i] != character_.transparent_index) {
                const int x = static_cast<int>(i % character_.width);
                found = {std::min(found.first, x), std::max(found.second, x)};
            }
        }
        return found;
    }

    const acs::Animation& animation(const char16_t* name) const {
        const acs::Animation* const found = character_.findAnimation(name);
        if (!found) {
            throw std::runtime_error("there is no " + murmelix::toUtf8(name));
        }
        return *found;
    }

    fs::path file_;
    acs::Character character_;
};

INSTANTIATE_TEST_SUITE_P(All, Characters, testing::ValuesIn(charactersOfTheBuild()),
                         [](const auto& tested) { return tested.param; });

TEST_P(Characters, AreNamedAsTheirFileIs) {
    ASSERT_FALSE(character_.names.empty());
    EXPECT_EQ(murmelix::toUtf8(character_.names[0].name), GetParam());
    EXPECT_FALSE(character_.names[0].description.empty());
}

TEST_P(Characters, FitASmallWindowAndASmallFile) {
    EXPECT_GE(character_.width, least_side);
    EXPECT_GE(character_.height, least_side);
    EXPECT_LE(character_.width, largest_side);
    EXPECT_LE(character_.height, largest_side);
    EXPECT_LE(fs::file_size(file_), largest_file);
    for (const acs::Image& image : character_.images) {
        EXPECT_LE(image.width, largest_side + 48);
        EXPECT_LE(image.height, largest_side + 48);
    }
}

TEST_P(Characters, HaveAVoiceAndABalloon) {
    ASSERT_TRUE(character_.voice);
    ASSERT_TRUE(character_.voice->choice);
    EXPECT_NE(character_.voice->choice->language_id, 0);
    EXPECT_TRUE(character_.voice->choice->gender == 1 || character_.voice->choice->gender == 2);
    EXPECT_GE(character_.voice->pitch, 50);
    EXPECT_LE(character_.voice->pitch, 400);
    EXPECT_GE(character_.voice->speed, 100U);
    EXPECT_LE(character_.voice->speed, 260U);
    EXPECT_TRUE(character_.balloon);
}

TEST_P(Characters, KnowEveryAnimationThatIsAskedOfThem) {
    for (const Wanted& wanted : wanted_animations) {
        const std::string name = murmelix::toUtf8(wanted.name);
        const acs::Animation* const found = character_.findAnimation(wanted.name);
        ASSERT_NE(found, nullptr) << name;
        EXPECT_EQ(found->name, wanted.name) << "as the directory spells it";
        EXPECT_EQ(found->transition, wanted.way == Way::returns ? acs::Transition::return_animation
                                     : wanted.way == Way::exits ? acs::Transition::exit_branches
                                                                : acs::Transition::none)
            << name;
        EXPECT_EQ(found->return_animation, wanted.way_back) << name;
        const bool speaks = std::any_of(found->frames.begin(), found->frames.end(),
                                        [](const acs::Frame& frame) { return !frame.mouths.empty(); });
        EXPECT_TRUE(speaks || !wanted.mouths) << name << " has no mouths";
        if (wanted.way == Way::returns && wanted.mouths) {
            EXPECT_FALSE(found->frames.back().mouths.empty()) << name << ": it speaks in the pose that it stays in";
        }
    }
}

TEST_P(Characters, HaveAnAnimationForEveryState) {
    const std::vector<std::pair<const char16_t*, std::size_t>> states{
        {u"SHOWING", 1},     {u"HIDING", 1},        {u"SPEAKING", 1},      {u"LISTENING", 1},
        {u"HEARING", 3},     {u"IDLINGLEVEL1", 2},  {u"IDLINGLEVEL2", 2},  {u"IDLINGLEVEL3", 2},
        {u"GESTURINGUP", 1}, {u"GESTURINGDOWN", 1}, {u"GESTURINGLEFT", 1}, {u"GESTURINGRIGHT", 1},
        {u"MOVINGUP", 1},    {u"MOVINGDOWN", 1},    {u"MOVINGLEFT", 1},    {u"MOVINGRIGHT", 1}};
    for (const auto& [name, least] : states) {
        const acs::State* const state = character_.findState(name);
        ASSERT_NE(state, nullptr) << murmelix::toUtf8(name);
        EXPECT_GE(state->animations.size(), least) << murmelix::toUtf8(name);
        for (const std::u16string& played : state->animations) {
            EXPECT_NE(character_.findAnimation(played), nullptr) << murmelix::toUtf8(played);
        }
    }
}

// Where something moves, twelve pictures a second at least: a frame that stands longer is a hold, and no hold follows
// another one with a different picture.
TEST_P(Characters, MoveSmoothly) {
    for (const acs::Animation& animation : character_.animations) {
        const std::string name = murmelix::toUtf8(animation.name);
        for (std::size_t i = 0; i + 1 < animation.frames.size(); ++i) {
            const acs::Frame &here = animation.frames[i], &next = animation.frames[i + 1];
            EXPECT_FALSE(here.duration > longest_moving && next.duration > longest_moving && shown(here) != shown(next))
                << name << " jumps after frame " << i;
        }
    }
}

TEST_P(Characters, PointAndGoTheWayOfTheState) {
    const std::vector<std::pair<const char16_t*, const char16_t*>> pairs{
        {u"GESTURINGUP", u"GestureUp"},       {u"GESTURINGDOWN", u"GestureDown"}, {u"GESTURINGLEFT", u"GestureLeft"},
        {u"GESTURINGRIGHT", u"GestureRight"}, {u"MOVINGUP", u"MoveUp"},           {u"MOVINGDOWN", u"MoveDown"},
        {u"MOVINGLEFT", u"MoveLeft"},         {u"MOVINGRIGHT", u"MoveRight"}};
    for (const auto& [state, name] : pairs) {
        EXPECT_EQ(character_.findState(state)->animations, std::vector<std::u16string>{name});
    }
    // The hand that points to the right, which is the viewer's left, reaches further that way than the figure at rest
    // does, or nearly to the edge; so to the left.
    const auto last = [&](const char16_t* name) { return extent(animation(name).frames.back()); };
    EXPECT_LE(last(u"GestureRight").first, last(u"RestPose").first);
    EXPECT_LT(last(u"GestureRight").first, character_.width / 5);
    EXPECT_GE(last(u"GestureLeft").second, last(u"RestPose").second);
    EXPECT_GT(last(u"GestureLeft").second, character_.width * 4 / 5);
}

TEST_P(Characters, AreNotCutOffAtTheSidesWhereTheyStandPointAndGo) {
    for (const char16_t* name : {u"RestPose", u"GestureLeft", u"GestureRight", u"MoveLeft", u"MoveRight", u"GestureUp",
                                 u"MoveUp", u"Sad", u"Pleased", u"Surprised", u"StartListening"}) {
        for (const acs::Frame& frame : animation(name).frames) {
            const auto [left, right] = extent(frame);
            EXPECT_GT(left, 0) << murmelix::toUtf8(name);
            EXPECT_LT(right, character_.width - 1) << murmelix::toUtf8(name);
        }
    }
}

// The seven shapes differ, lie inside the figure, and the closed one is what the pose shows.
TEST_P(Characters, SpeakWithSevenMouths) {
    const auto check = [&](const acs::Frame& frame, const std::string& name) {
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
        EXPECT_EQ(shapes, (std::set<int>{0, 1, 2, 3, 4, 5, 6})) << name;
        EXPECT_EQ(images.size(), 7U) << name;
    };
    for (const char16_t* everywhere : {u"RestPose", u"Speak", u"Explain"}) {
        for (const acs::Frame& frame : animation(everywhere).frames) {
            check(frame, murmelix::toUtf8(everywhere));
        }
    }
    for (const acs::Animation& animation : character_.animations) {
        for (const acs::Frame& frame : animation.frames) {
            if (!frame.mouths.empty()) {
                check(frame, murmelix::toUtf8(animation.name));
            }
        }
    }
    const acs::Frame& rest = animation(u"RestPose").frames.at(0);
    const std::vector<std::uint8_t> whole = composed(rest);
    const acs::Mouth& closed = rest.mouths.at(0);
    const acs::Image& image = character_.images.at(closed.image);
    int different = 0;
    for (int y = 0; y < closed.height; ++y) {
        for (int x = 0; x < closed.width; ++x) {
            const std::uint8_t index = image.pixels.at(static_cast<std::size_t>(image.height - 1 - y) * image.stride() +
                                                       static_cast<std::size_t>(x));
            different += index != whole[static_cast<std::size_t>(closed.y + y) * character_.width +
                                        static_cast<std::size_t>(closed.x + x)]
                             ? 1
                             : 0;
        }
    }
    // Where parts of the figure meet, the mouth's own picture has a smooth edge.
    EXPECT_LE(different, closed.width * closed.height / 20);
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
    const auto atRest = [&](const acs::Frame& frame) { return shown(frame) == shown(rest->frames[0]); };
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
        std::set<std::vector<std::tuple<std::uint32_t, int, int>>> pictures;
        int duration = 0;
        for (const acs::Frame& frame : character_.findAnimation(name)->frames) {
            pictures.insert(shown(frame));
            duration += frame.duration;
        }
        EXPECT_GE(pictures.size(), 8U) << murmelix::toUtf8(name);
        EXPECT_GE(duration, 30) << murmelix::toUtf8(name);
        EXPECT_LE(duration, 600) << murmelix::toUtf8(name);
    }
}

TEST(CharacterSet, CanBeToldApart) {
    std::set<acs::Guid> guids;
    std::set<std::uint16_t> pitches;
    const std::vector<std::string> names = charactersOfTheBuild();
    for (const std::string& name : names) {
        std::string error;
        const auto file = acs::CharacterFile::load(assets / "chars" / (name + ".acs"), error);
        ASSERT_TRUE(file) << error;
        guids.insert(file->character().guid);
        ASSERT_TRUE(file->character().voice);
        pitches.insert(file->character().voice->pitch);
    }
    EXPECT_GE(names.size(), 3U);
    EXPECT_EQ(guids.size(), names.size());
    EXPECT_EQ(pitches.size(), names.size());
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
