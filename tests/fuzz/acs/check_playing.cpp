#include "tests/fuzz/acs/check_playing.h"

#include <algorithm>
#include <random>
#include <vector>

#include "companions/agent/stage/animation_player.h"
#include "companions/agent/stage/composer.h"
#include "companions/agent/stage/frame_sounds.h"
#include "companions/agent/voice/wave.h"
#include "tests/fuzz/require.h"
#include "tests/unit/stage/rehearsal.h"

namespace {

using namespace agent;
using stage::Time;

// Of one file, so that the fuzzer gets on.
constexpr std::size_t most_animations = 20, most_frames = 50, most_sounds = 20, most_pixels = std::size_t{8} << 20;
constexpr int most_steps = 200;
constexpr Time step = 10; // ms

class Checker {
  public:
    explicit Checker(std::shared_ptr<const acs::CharacterFile> file) : file_(std::move(file)), repertoire_(file_) {}

    void all() {
        for (const acs::Animation& animation : first(file_->character().animations, most_animations)) {
            for (const acs::Frame& frame : first(animation.frames, most_frames)) {
                draw(frame);
            }
            play(animation, 1);
            play(animation, 100);
        }
        sounds();
        rehearse();
    }

  private:
    template <class Item>
    static std::span<const Item> first(const std::vector<Item>& items, std::size_t most) {
        return std::span(items).first(std::min(items.size(), most));
    }

    void draw(const acs::Frame& frame) {
        std::size_t pixels = 0, mouth = 0;
        for (const acs::Mouth& other : frame.mouths) {
            mouth = std::max(mouth, file_->image(other.image)->pixels.size());
        }
        for (const acs::FrameImage& image : frame.images) {
            pixels += file_->image(image.image)->pixels.size();
        }
        require(frame.images.size() < acs::most_frame_images && pixels + mouth <= acs::most_frame_pixels,
                "a frame is drawn in no time");
        const std::size_t area = std::size_t{file_->character().width} * file_->character().height;
        for (int shape = -1; shape <= 6 && pixels_left_ >= pixels + mouth + area; ++shape) {
            pixels_left_ -= pixels + mouth + area;
            compose(*file_, &frame, shape < 0 ? std::nullopt : std::optional(static_cast<acs::MouthShape>(shape)),
                    raster_);
            require(raster_.pixels.size() == area, "the picture has the character's size");
            require(std::ranges::all_of(raster_.pixels,
                                        [](std::uint32_t pixel) { return pixel == 0 || pixel >> 24 == 0xFF; }),
                    "a pixel is there or not");
        }
    }

    // With a chance that always falls on `roll` for a while, then on anything.
    void play(const acs::Animation& animation, int roll) {
        std::mt19937 random(static_cast<unsigned>(roll));
        int rolled = 0;
        stage::AnimationPlayer player([&](int below) {
            return ++rolled < 20 ? std::min(roll, below) - 1
                                 : static_cast<int>(random() % static_cast<unsigned>(below));
        });
        Time now = 0;
        player.start(std::shared_ptr<const acs::Animation>(file_, &animation), now);
        require(player.playing() == !animation.frames.empty(), "what has frames plays");
        for (int steps = 0; steps < most_steps && player.playing(); ++steps, now += step) {
            const bool endless = player.endless();
            for (int frames = 0; player.step(now); ++frames) {
                require(frames < 70'000, "frames without duration do not go on for ever");
                requireShown(player.frame(), animation);
                require(!player.playing() || !endless || player.endless(), "what is endless stays so");
                require(player.playing() || !endless, "what is endless does not end");
            }
        }
        player.askStop(now);
        letEnd(player, now);
        player.start(std::shared_ptr<const acs::Animation>(file_, &animation), now);
        for (int steps = 0; steps < most_steps && player.playing(); ++steps, now += step) {
            player.step(now);
        }
        if (player.leave(now)) {
            require(player.playing(), "whoever leaves goes on");
            letEnd(player, now);
            require(!player.leave(now), "what has been left is not left again");
        }
    }

    static void letEnd(stage::AnimationPlayer& player, Time& now) {
        for (const Time end = now + 5000; player.playing(); now += step) {
            require(now <= end, "what is stopped ends within five seconds");
            for (int frames = 0; frames < 100 && player.step(now); ++frames) {
            }
        }
    }

    // One of the animation's frames, unless it is nothing but an end mark.
    static void requireShown(const acs::Frame* shown, const acs::Animation& animation) {
        const acs::Frame& last = animation.frames.back();
        const bool mark = last.images.empty() && last.duration == 0;
        require(shown != nullptr || (mark && animation.frames.size() == 1), "something shows");
        require(shown != &last || !mark, "an end mark is never shown");
    }

    void sounds() {
        std::uint64_t microseconds = 0;
        voice::Output output({}, [&microseconds] { return microseconds; });
        stage::FrameSounds heard(output, [](const auto& work, const auto& done) {
            work();
            done();
        });
        for (std::size_t sound = 0; sound < std::min(file_->soundCount(), most_sounds); ++sound) {
            const auto number = static_cast<std::uint16_t>(sound);
            if (const auto wave = stage::decodedSound(*file_, number)) {
                require(wave->rate == voice::mix_rate && !wave->samples.empty(), "a sound can be mixed");
                require(wave->milliseconds() <= stage::longest_frame_sound_ms, "a sound ends");
                const auto moves = voice::mouthMoves(*wave);
                require(!moves.empty() && moves.back().shape == acs::MouthShape::closed, "a mouth closes");
            }
            heard.play(1, file_, number);
            microseconds += 10'000;
            output.tick();
        }
    }

    void rehearse() {
        stage::Rehearsal rehearsal;
        stage::Actor& actor = rehearsal.enter("actor", std::make_shared<stage::FileRepertoire>(file_));
        rehearsal.show(actor, false);
        rehearsal.speak(actor, u"words");
        for (const acs::Animation& animation : first(file_->character().animations, 3)) {
            rehearsal.play(actor, animation.name);
        }
        const auto last = rehearsal.show(actor);
        for (int seconds = 0; seconds < 15; ++seconds) {
            rehearsal.pass(1000);
            rehearsal.log.clear();
        }
        rehearsal.stage.leave(actor.id());
        require(last->over(), "whoever leaves has done with everything");
        require(rehearsal.stage.actors().empty(), "the stage is empty in the end");
    }

    std::shared_ptr<const acs::CharacterFile> file_;
    stage::FileRepertoire repertoire_;
    stage::Raster raster_;
    std::size_t pixels_left_ = most_pixels;
};

} // namespace

bool checkPlaying(std::span<const std::uint8_t> bytes) {
    std::string error;
    auto file = acs::CharacterFile::open({bytes.begin(), bytes.end()}, error);
    if (!file) {
        return false;
    }
    Checker(std::make_shared<const acs::CharacterFile>(std::move(*file))).all();
    return true;
}
