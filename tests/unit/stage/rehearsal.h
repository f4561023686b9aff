// A stage without windows and sound: a clock moved by hand, and a log of all that would be seen, heard and told.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "companions/agent/stage/sequencer.h"

namespace agent::stage {

// A character of animations that are told apart by their number of frames and by the images in them.
class Cast final : public Repertoire {
  public:
    // Frames of 100 ms each.
    acs::Animation& add(const std::u16string& name, int frames = 1);
    void state(const std::u16string& name, std::vector<std::u16string> animations);

    std::shared_ptr<const acs::Animation> animation(std::u16string_view name) const override;
    std::vector<std::u16string> state(std::u16string_view name) const override;
    int width() const override { return 100; }
    int height() const override { return 120; }

  private:
    std::vector<std::shared_ptr<acs::Animation>> animations_;
    std::map<std::u16string, std::vector<std::u16string>> states_;
};

// With rest pose (with a mouth), Show, Hide, Wave (3 frames), Look (a loop with an exit), Point (1 frame, back by
// PointReturn), and an animation for each state.
std::shared_ptr<Cast> usualCast();

class Rehearsal final : public Effects, public Audience {
  public:
    Rehearsal();

    Stage stage;
    std::vector<std::string> log; // since the last taken()
    std::vector<int> rolls;       // what chance gives, in order; 0 when used up
    Time now = 0;
    std::uint32_t speech_length = 1000; // ms
    bool speech_fails = false;
    bool speech_late = false; // ordered speech comes with deliver() only
    bool sound_fails = false, device_throws = false;
    bool order_throws = false;
    int orders = 0, cancelled = 0;
    std::map<std::u16string, std::uint32_t> lengths; // ms of speeches by their text, where not speech_length

    // Named in the log by this name.
    Actor& enter(const std::string& name, std::shared_ptr<const Repertoire> cast = usualCast(), TroupeId troupe = 0);
    RequestRef ask(Actor& actor, Request request);
    RequestRef play(Actor& actor, const std::u16string& animation);
    RequestRef speak(Actor& actor, const std::u16string& text, const std::u16string& url = {});
    RequestRef show(Actor& actor, bool fast = true);
    RequestRef wait(Actor& actor, const RequestRef& target);
    // On the stage, at rest, the log empty.
    Actor& onStage(const std::string& name, std::shared_ptr<const Repertoire> cast = usualCast(), TroupeId troupe = 0);

    // In steps of 10 ms.
    void pass(Time milliseconds);
    void deliver();
    std::vector<std::string> taken();
    std::vector<std::string> taken(const std::string& beginning); // only those that begin so

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

    void requestStarted(Actor& actor, const RequestRef& request) override;
    void requestCompleted(Actor& actor, const RequestRef& request) override;
    void bookmark(Actor& actor, std::int32_t id) override;
    void shown(Actor& actor, VisibilityCause cause) override;
    void hidden(Actor& actor, VisibilityCause cause) override;
    void moved(Actor& actor, MoveCause cause) override;
    void resized(Actor& actor) override;
    void idleStarted(Actor& actor) override;
    void idleCompleted(Actor& actor) override;
    void balloonShown(Actor& actor) override;
    void balloonHidden(Actor& actor) override;

  private:
    struct Order {
        std::u16string text;
        std::function<void(std::optional<voice::Speech>)> done;
    };
    struct Sounding {
        Hearing hearing;
        Time looked_at = 0; // when
        double passed = 0;  // ms of its own up to then
        std::uint32_t length = 0;
    };
    void note(const Actor& actor, const std::string& what);
    void noteHearing(const std::string& what, const Hearing& hearing);
    void look(Sounding& sound) const;
    std::map<ActorId, std::string> names_;
    std::map<SpeechOrder, Order> orders_;
    std::map<Sound, Sounding> sounds_;
    SpeechOrder last_order_ = 0;
    Sound last_sound_ = 0;
    bool paused_ = false;
};

} // namespace agent::stage
