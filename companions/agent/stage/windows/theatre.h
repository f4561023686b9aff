// Brings the stage before the user: windows, balloons, sound and speech.
#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <thread>

#include "companions/agent/stage/frame_sounds.h"
#include "companions/agent/stage/sequencer.h"
#include "companions/agent/stage/windows/balloon_window.h"
#include "companions/agent/stage/windows/character_window.h"
#include "companions/agent/stage/windows/desktop.h"
#include "companions/agent/stage/windows/message_window.h"

namespace agent::stage {

// Time that runs `speed` times as fast as the real one.
class Clock {
  public:
    explicit Clock(double speed);
    std::uint64_t microseconds() const;
    Time milliseconds() const { return static_cast<Time>(microseconds() / 1000); }

  private:
    std::chrono::steady_clock::time_point since_;
    double speed_;
};

// What the user does with the pointer on a character.
struct Hand {
    std::function<void(ActorId, const PointerEvent&)> clicked, double_clicked, drag_started, drag_ended;
    std::function<void(ActorId, int left, int top)> dragged;
    std::function<std::u16string(ActorId)> tip; // shown where the pointer rests on it
    std::function<void(ActorId)> balloon_clicked;
    std::function<std::u16string(ActorId)> name; // for screen readers
};

class Theatre final : public Effects {
  public:
    // The screens are asked for at once, and again whenever the system tells of a change.
    Theatre(MessageWindow& messages, voice::Service& service, voice::Output& output, Hand hand,
            std::function<Screens()> read_screens = readScreens);
    ~Theatre() override;

    void admit(ActorId actor, std::shared_ptr<const acs::CharacterFile> file);
    void dismiss(ActorId actor);
    // Shown from the next balloon on.
    BalloonLook* look(ActorId actor);
    void toFront(ActorId actor);
    void hideTips();
    // How a character's words are to be spoken, where it is not its own manner.
    void setManners(std::function<voice::Manner(const Actor&)> manners) { manners_ = std::move(manners); }
    // How loud everything is, from 0 to 1. At 0 spoken audio passes in silence.
    void setVolume(double volume);
    // How much larger characters and balloons are than the resolution of the screen makes them.
    void setSize(double size);
    // How much larger the text of balloons is than characters have it.
    void setLetters(double letters);
    // After every advance of the stage: draws what changed since the last one and can be seen.
    void present(Stage& stage);

    void placed(Actor& actor) override;
    void drawn(Actor& actor) override;
    void frameSound(Actor& actor, std::uint16_t sound) override;
    void stopFrameSounds(Actor& actor) override;
    SpeechOrder orderSpeech(Actor& actor, const std::u16string& text, const std::u16string& url,
                            std::function<void(std::optional<voice::Speech>)> done) override;
    void cancelSpeech(SpeechOrder order) override;
    Sound startSound(voice::Wave wave, const Hearing& hearing) override;
    void setHearing(Sound sound, const Hearing& hearing) override;
    void stopSound(Sound sound) override;
    std::optional<std::uint32_t> heard(Sound sound) override;
    void setPaused(bool paused) override;
    void openBalloon(Actor& actor, BalloonKind kind, const std::u16string& text) override;
    void balloonWords(Actor& actor, std::size_t end) override;
    void closeBalloon(Actor& actor) override;

  private:
    struct Figure {
        std::shared_ptr<const acs::CharacterFile> file;
        std::unique_ptr<CharacterWindow> window;
        std::unique_ptr<BalloonWindow> balloon; // made with the first words
        BalloonLook look;
        Raster raster;
        std::pair<int, int> size; // as it was drawn
        Rect area{0, 0, 0, 0};    // where it is shown
        bool redraw = false;
        bool replace = false;
        bool shown = false;
    };
    struct Order {
        voice::Service::Order service = 0; // 0: of a sound file
        std::function<void(std::optional<voice::Speech>)> done;
    };
    // Does one thing after another on a thread of its own, so that nothing slow holds up the stage.
    class Worker {
      public:
        Worker();
        ~Worker();
        void add(std::function<void()> task);

      private:
        void run(const std::stop_token& stop);
        std::mutex mutex_;
        std::condition_variable_any changed_;
        std::deque<std::function<void()>> tasks_;
        std::jthread thread_;
    };

    void show(Figure& shown, const Actor& actor);
    std::vector<Rect> areasBeside(ActorId actor) const;
    double scale() const { return size_ * resolution_; }
    void changeScreens(const Screens& screens, double resolution);
    void delivered(SpeechOrder order, std::optional<voice::Speech> speech);
    Figure* figure(ActorId actor);

    MessageWindow& messages_;
    voice::Service& service_;
    voice::Output& output_;
    Hand hand_;
    std::function<Screens()> read_screens_;
    Screens screens_;
    double size_ = 1, letters_ = 1, resolution_;
    bool screens_changed_ = true; // since the stage was told
    FrameSounds frame_sounds_;
    std::map<ActorId, Figure> figures_;
    std::map<SpeechOrder, Order> orders_;
    SpeechOrder last_order_ = 0;
    double volume_ = 1;
    std::function<voice::Manner(const Actor&)> manners_;
    // Last: their threads end first. A slow disk, from which the one reads sound files, must not make those of frames
    // come late, which the other decodes.
    Worker reader_, decoder_;
};

} // namespace agent::stage
