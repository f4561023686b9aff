#include <gmock/gmock.h>

#include "companions/agent/acs/writer.h"
#include "companions/agent/stage/frame_sounds.h"
#include "companions/agent/voice/sink.h"
#include "companions/agent/voice/wave.h"

namespace agent::stage {
namespace {

// Adds up what is heard.
class Ear final : public voice::Sink {
  public:
    explicit Ear(std::vector<std::int16_t>& heard) : heard_(heard) {}
    bool write(std::span<const std::int16_t> samples) override {
        heard_.insert(heard_.end(), samples.begin(), samples.end());
        return true;
    }

  private:
    std::vector<std::int16_t>& heard_;
};

struct FrameSoundsTest : testing::Test {
    std::uint64_t microseconds = 0;
    std::vector<std::int16_t> heard;
    voice::Output output{{}, [this] { return microseconds; }, std::make_unique<Ear>(heard)};
    bool at_once = true; // what is brought to the workshop is done; else with work()
    int brought = 0;
    std::vector<std::function<void()>> jobs;
    FrameSounds sounds{output, [this](const auto& work, const auto& done) {
                           ++brought;
                           jobs.push_back([work, done] {
                               work();
                               done();
                           });
                           if (at_once) {
                               this->work();
                           }
                       }};

    void work() {
        for (const auto& job : std::exchange(jobs, {})) {
            job();
        }
    }
    static std::shared_ptr<const acs::CharacterFile> file(std::vector<std::vector<std::uint8_t>> bytes) {
        acs::Character made;
        made.width = made.height = 1;
        made.sounds = std::move(bytes);
        std::string error;
        auto opened = acs::CharacterFile::open(acs::write(made), error);
        if (!opened) {
            throw std::runtime_error(error);
        }
        return std::make_shared<const acs::CharacterFile>(std::move(*opened));
    }
    static std::vector<std::uint8_t> wave(std::int16_t level, std::uint32_t ms, std::uint32_t rate = voice::mix_rate) {
        return voice::writeWave({rate, std::vector<std::int16_t>(std::size_t{rate} * ms / 1000, level)});
    }
    void pass(int ms) {
        for (int passed = 0; passed < ms; passed += 10) {
            microseconds += 10'000;
            output.tick();
        }
    }
    int loudest() const { return heard.empty() ? 0 : *std::ranges::max_element(heard); }
};

TEST_F(FrameSoundsTest, AreHeard) {
    const auto character = file({wave(100, 50), wave(7, 50, 11025)});
    sounds.play(1, character, 0);
    sounds.play(1, character, 1);
    pass(200);
    EXPECT_EQ(loudest(), 107);
    EXPECT_EQ(std::ranges::count(heard, 107), 22050 / 20);
}

TEST_F(FrameSoundsTest, AreDecodedOnce) {
    const auto character = file({wave(100, 50, 11025), wave(1, 50)});
    for (int time = 0; time < 3; ++time) {
        sounds.play(1, character, 0);
        sounds.play(1, character, 1);
    }
    EXPECT_EQ(brought, 2);
    sounds.play(2, character, 0);
    EXPECT_EQ(brought, 3) << "of another character";
    sounds.forget(1);
    sounds.play(1, character, 0);
    EXPECT_EQ(brought, 4);
}

TEST_F(FrameSoundsTest, AreHeardAsSoonAsTheyAreDecoded) {
    at_once = false;
    const auto character = file({wave(100, 50)});
    sounds.play(1, character, 0);
    sounds.play(1, character, 0);
    pass(100);
    EXPECT_TRUE(heard.empty());
    EXPECT_EQ(brought, 1) << "awaited already";
    work();
    pass(100);
    EXPECT_EQ(loudest(), 100) << "once";
    EXPECT_EQ(std::ranges::count(heard, 100), 22050 / 20);
    sounds.play(1, character, 0);
    heard.clear();
    pass(100);
    EXPECT_EQ(loudest(), 100) << "at once the next time";
}

TEST_F(FrameSoundsTest, OfACharacterThatHasGoneComeTooLate) {
    at_once = false;
    const auto character = file({wave(100, 50)});
    sounds.play(1, character, 0);
    sounds.forget(1);
    work();
    pass(100);
    EXPECT_TRUE(heard.empty());
    std::optional<FrameSounds> other(std::in_place, output, [this](const auto& work, const auto& done) {
        jobs.push_back(work);
        jobs.push_back(done);
    });
    other->play(1, character, 0);
    other.reset();
    work();
    pass(100);
    EXPECT_TRUE(heard.empty());
}

TEST_F(FrameSoundsTest, OfOneCharacterDoNotCrowdTheWorkshop) {
    at_once = false;
    const auto character = file(std::vector(100, wave(100, 50)));
    for (std::uint16_t sound = 0; sound < 100; ++sound) {
        sounds.play(1, character, sound);
    }
    EXPECT_EQ(brought, static_cast<int>(most_sounds_of_actor));
    work();
    sounds.play(1, character, 99);
    EXPECT_EQ(brought, static_cast<int>(most_sounds_of_actor) + 1) << "another time";
}

TEST_F(FrameSoundsTest, OfOneCharacterAreCutAndThoseOfOthersGoOn) {
    const auto character = file({wave(100, 1000), wave(10, 1000)});
    sounds.play(1, character, 0);
    sounds.play(1, character, 1);
    sounds.play(2, character, 1);
    pass(100);
    EXPECT_EQ(loudest(), 120);
    sounds.stop(1);
    sounds.stop(3);
    const std::size_t before = heard.size();
    pass(100);
    heard.erase(heard.begin(), heard.begin() + static_cast<std::ptrdiff_t>(before));
    ASSERT_FALSE(heard.empty());
    EXPECT_EQ(loudest(), 10);
    heard.clear();
    sounds.play(1, character, 0);
    pass(100);
    EXPECT_EQ(loudest(), 110) << "what begins afterwards is heard";
}

TEST_F(FrameSoundsTest, ThatAreCutMakeRoomForOthers) {
    const auto character = file({wave(100, 30'000)});
    for (int round = 0; round < 3; ++round) {
        for (ActorId actor = 1; actor <= most_frame_sounds / most_sounds_of_actor; ++actor) {
            for (std::size_t sound = 0; sound < most_sounds_of_actor; ++sound) {
                sounds.play(actor, character, 0);
            }
        }
        pass(200);
        heard.clear();
        pass(100);
        EXPECT_EQ(loudest(), 100 * static_cast<int>(most_frame_sounds));
        for (ActorId actor = 1; actor <= most_frame_sounds / most_sounds_of_actor; ++actor) {
            sounds.stop(actor);
        }
        pass(200);
        heard.clear();
        pass(100);
        EXPECT_EQ(loudest(), 0);
    }
}

TEST_F(FrameSoundsTest, AreCutBeforeTheyAreDecoded) {
    at_once = false;
    const auto character = file({wave(100, 50)});
    sounds.play(1, character, 0);
    sounds.stop(1);
    work();
    pass(100);
    EXPECT_TRUE(heard.empty());
    sounds.play(1, character, 0);
    pass(100);
    EXPECT_EQ(brought, 1) << "kept for the next time";
    EXPECT_EQ(loudest(), 100);
}

// A frame of 10 ms that goes round, with a sound of half a minute.
TEST_F(FrameSoundsTest, OfALoopAddUpToAFew) {
    const auto character = file({wave(100, 30'000)});
    for (int frame = 0; frame < 500; ++frame) {
        sounds.play(1, character, 0);
        pass(10);
    }
    EXPECT_EQ(loudest(), 100 * static_cast<int>(most_sounds_of_actor));
    pass(30'000);
    heard.clear();
    sounds.play(1, character, 0);
    pass(100);
    EXPECT_EQ(loudest(), 100) << "those before have made room";
}

TEST_F(FrameSoundsTest, OfManyCharactersLeaveRoomForSpeech) {
    const auto character = file({wave(100, 1000)});
    for (ActorId actor = 1; actor <= 100; ++actor) {
        sounds.play(actor, character, 0);
    }
    EXPECT_NE(output.play(voice::Wave{voice::mix_rate, {0, 0, 0}}, {}), 0U);
    pass(500);
    EXPECT_EQ(loudest(), 100 * static_cast<int>(most_frame_sounds));
}

TEST_F(FrameSoundsTest, AreHeardForHalfAMinuteAndKeptForThree) {
    const auto character =
        file({wave(1, 31'000, 8000), wave(2, 31'000, 8000), wave(3, 31'000, 8000), wave(4, 31'000, 8000),
              wave(5, 31'000, 8000), wave(6, 31'000, 8000), wave(7, 31'000, 8000)});
    const auto first = decodedSound(*character, 0);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->samples.size(), 30U * voice::mix_rate);
    for (std::uint16_t sound = 0; sound < 6; ++sound) {
        sounds.play(1, character, sound);
    }
    sounds.play(1, character, 0);
    EXPECT_EQ(brought, 6);
    sounds.play(1, character, 6);
    sounds.play(1, character, 0);
    EXPECT_EQ(brought, 8);
    sounds.play(1, character, 6);
    EXPECT_EQ(brought, 8);
}

TEST_F(FrameSoundsTest, ThatAreNoneAreSilent) {
    const auto character = file({{'R', 'I', 'F', 'F'}, {}, voice::writeWave({voice::mix_rate, {}})});
    for (std::uint16_t sound = 0; sound < 5; ++sound) {
        sounds.play(1, character, sound);
    }
    pass(100);
    EXPECT_TRUE(heard.empty());
}

} // namespace
} // namespace agent::stage
