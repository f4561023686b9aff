// The stage: characters that carry out their queues of requests side by side, each strictly in order. It knows neither
// windows nor sound devices: what is to be seen and heard goes to Effects, what is to be told to Audience, and time
// comes in through advance().
#pragma once

#include <deque>
#include <functional>
#include <limits>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "companions/agent/acs/character_file.h"
#include "companions/agent/stage/animation_player.h"
#include "companions/agent/stage/request.h"
#include "companions/agent/stage/screens.h"
#include "companions/agent/voice/voice.h"

namespace agent::stage {

class Actor;
class Stage;

// Width and height that a character can have on the screen, in pixels: those that a character file may have. What is
// drawn in a frame stays within its 10 ms.
inline constexpr int largest_side = acs::largest_side;

// What the stage needs of a character file. Names compare without letter case.
class Repertoire {
  public:
    virtual ~Repertoire() = default;
    virtual std::shared_ptr<const acs::Animation> animation(std::u16string_view name) const = 0;
    virtual std::vector<std::u16string> state(std::u16string_view name) const = 0; // its animations
    virtual int width() const = 0;
    virtual int height() const = 0;
};

enum class BalloonKind { words, thought };

using SpeechOrder = std::uint64_t;
using Sound = std::uint64_t;

// How a Speak sounds: heard, or taking its time in silence; how many times as fast as it was made.
struct Hearing {
    bool heard = true;
    double tempo = 1;
    bool operator==(const Hearing&) const = default;
};

// What can be seen and heard. Called on the thread of the stage.
class Effects {
  public:
    virtual ~Effects() = default;
    // Position, size or visibility changed.
    virtual void placed(Actor& actor) = 0;
    // Frame or mouth changed.
    virtual void drawn(Actor& actor) = 0;
    virtual void frameSound(Actor& actor, std::uint16_t sound) = 0;
    // Those of its frames that sound, or are about to, end at once.
    virtual void stopFrameSounds(Actor& actor) = 0;

    // Makes the sound of a Speak. `done` is called once on the thread of the stage, not from within this call, with
    // nothing where the sound file cannot be played; never after cancelSpeech.
    virtual SpeechOrder orderSpeech(Actor& actor, const std::u16string& text, const std::u16string& url,
                                    std::function<void(std::optional<voice::Speech>)> done) = 0;
    virtual void cancelSpeech(SpeechOrder order) = 0;
    // 0 where it cannot be started.
    virtual Sound startSound(voice::Wave wave, const Hearing& hearing) = 0;
    virtual void setHearing(Sound sound, const Hearing& hearing) = 0;
    virtual void stopSound(Sound sound) = 0;
    // How far it has been heard, in ms of its own; nothing when it is over.
    virtual std::optional<std::uint32_t> heard(Sound sound) = 0;
    // No sound goes on while it is paused.
    virtual void setPaused(bool paused) = 0;

    virtual void openBalloon(Actor& actor, BalloonKind kind, const std::u16string& text) = 0;
    // The text up to this position (UTF-16 units) has been spoken.
    virtual void balloonWords(Actor& actor, std::size_t end) = 0;
    virtual void closeBalloon(Actor& actor) = 0;
};

enum class VisibilityCause { never = 0, user_hid = 1, user_showed = 2, program_hid = 3, program_showed = 4 };
enum class MoveCause { never = 0, user = 1, program = 2 };

// Who is told what happens. Called on the thread of the stage, in order; must not call the stage back at once.
class Audience {
  public:
    virtual ~Audience() = default;
    virtual void requestStarted(Actor& actor, const RequestRef& request) = 0;
    virtual void requestCompleted(Actor& actor, const RequestRef& request) = 0;
    virtual void bookmark(Actor& actor, std::int32_t id) = 0;
    virtual void shown(Actor& actor, VisibilityCause cause) = 0;
    virtual void hidden(Actor& actor, VisibilityCause cause) = 0;
    virtual void moved(Actor& actor, MoveCause cause) = 0;
    virtual void resized(Actor& actor) = 0;
    virtual void idleStarted(Actor& actor) = 0;
    virtual void idleCompleted(Actor& actor) = 0;
    virtual void balloonShown(Actor& actor) = 0;
    virtual void balloonHidden(Actor& actor) = 0;
};

inline constexpr std::uint32_t balloon_on = 1;
inline constexpr std::uint32_t balloon_size_to_text = 2;
inline constexpr std::uint32_t balloon_auto_hide = 4;
inline constexpr std::uint32_t balloon_auto_pace = 8;

// What the user wants of all that is said.
struct Listening {
    double tempo = 1;      // how many times as fast as the characters speak
    Time longest = 0;      // ms that one Speak or Think takes at most, and the word in which that ends; 0: any
    Time most_waiting = 0; // ms of Speaks that may wait; with more it goes faster and faster, up to double, and then
                           // the oldest are let go; 0: any
    // ms that a balloon whose words are all said is left to be read: nothing that would close it, or take its place,
    // happens meanwhile. 0: no longer than the character has it; `until_read`: until the user says so.
    Time balloon_stays = 0;
    bool words_at_once = false; // a balloon shows all its words as it opens
    bool calm = false;          // no idling, no way between two places, and words at once
    static constexpr Time until_read = std::numeric_limits<Time>::max();
    bool operator==(const Listening&) const = default;
};

// The kinds that StopAll can name.
enum class StopKind { move, play, speak, get };

class Actor {
  public:
    Actor(Stage& stage, ActorId id, TroupeId troupe, std::shared_ptr<const Repertoire> repertoire);
    ~Actor();
    Actor(const Actor&) = delete;
    Actor& operator=(const Actor&) = delete;

    // Settings, read and written freely.
    std::u16string name; // in the transcript and for people
    voice::Manner manner;
    bool idle_on = true;
    bool sound_effects_on = true;
    std::uint32_t balloon_style = balloon_on | balloon_size_to_text | balloon_auto_hide | balloon_auto_pace;

    ActorId id() const { return id_; }
    const Repertoire& repertoire() const { return *repertoire_; }
    bool visible() const { return visible_; }
    int left() const { return left_; }
    int top() const { return top_; }
    int width() const { return width_; }
    int height() const { return height_; }
    Rect area() const { return {left_, top_, left_ + width_, top_ + height_}; }
    VisibilityCause visibilityCause() const { return visibility_cause_; }
    MoveCause moveCause() const { return move_cause_; }
    bool balloonOpen() const { return balloon_open_; }

    // What shows: null before anything was played.
    const acs::Frame* frame() const { return player_.frame(); }
    std::optional<acs::MouthShape> mouth() const { return mouth_; }

    // To the end of the queue.
    void add(const RequestRef& request);
    void stop();                          // everything
    void stop(const RequestRef& request); // that one, if it is this character's and not over
    void stopAll(const std::vector<StopKind>& kinds);

    // One that is silenced speaks in its balloon alone, without waiting for its turn to be heard.
    bool silenced() const { return silenced_; }
    void setSilenced(bool silenced);

    // At once, past the queue; onto the screen, where the stage keeps characters there.
    void place(int left, int top, MoveCause cause);
    // To the nearest size that a character can have on the screen.
    void resize(int width, int height);
    // By the user's hand: told once, when it lets go, and brought back onto the screen then.
    void drag(int left, int top);
    void drop();
    void hideByUser();
    void hideBalloon();
    // With the words that it had last, until it is hidden or has others. Nothing where it had none.
    void showBalloon();
    // The user has read it: where its words are all said it closes.
    void dismissBalloon();

  private:
    friend class Stage;
    enum class Role { none, request, leaving, returning, resting, idling };
    struct Utterance {
        SpeechOrder order = 0;
        std::optional<voice::Speech> speech;
        bool failed = false;
        Sound sound = 0;
        Time length = 0;                                  // ms on the clock, of what makes no sound
        Time since = 0, taken = 0;                        // ms: of the last look, and of what it took up to then
        double passed = 0;                                // ms of its own, of what makes no sound
        std::size_t words = 0, mouths = 0, bookmarks = 0; // of the speech, passed already
        bool quiet = false;                               // a thought: without sound or voice
        bool posed = false;                               // in the pose of the animation before
    };
    struct Journey {
        int from_x, from_y, to_x, to_y;
        Time since;
        Time length;
    };

    bool animate();
    bool progress();
    bool ready(const Request& request);
    bool settled(bool keep_mouth);
    bool canSpeakInPose() const;
    bool leavesItsPose(const Request& request) const;
    void begin();
    bool acting();
    void finish(Status status, Failure failure = Failure::none);
    void stopCurrent();
    void retire(const RequestRef& request, Status status);

    void playNow(std::shared_ptr<const acs::Animation> animation, Role role);
    void showFrame();
    std::shared_ptr<const acs::Animation> fromState(std::u16string_view state) const;
    void leaveAnimation();
    void rest();
    void idle();
    void wake();

    void beginSpeaking();
    bool speaking();
    void orderAhead();
    void order(const RequestRef& request);
    void endUtterance();
    void setMouth(std::optional<acs::MouthShape> mouth);
    bool utters() const;
    Hearing hearing() const;
    void hearAnew();
    void orderAnew();
    Time lengthOf(const Request& request) const;
    std::vector<RequestRef> unspoken() const;
    void closeBalloonNow();
    bool balloonBeingRead() const;
    bool wordByWord() const;
    void setVisible(bool visible, VisibilityCause cause);
    Rect kept(const Rect& area) const;
    void returnToScreen(MoveCause cause);
    // The screens are others than before.
    void followScreens(const Screens& before);
    std::pair<int, int> scaledSize() const;
    void setSize(int width, int height);
    bool travelling();
    bool hasWaiter() const;
    RequestRef firstToBeHeard() const;
    bool wouldDeadlock(const Request& wait) const;

    Stage& stage_;
    const ActorId id_;
    const TroupeId troupe_;
    std::shared_ptr<const Repertoire> repertoire_;
    AnimationPlayer player_;
    Role role_ = Role::none;
    std::u16string return_to_; // the return animation that is still to be played
    bool standing_ = false;    // in the last frame of an animation that has ended, until something else is asked
    Time played_since_ = 0;    // the animation that plays, or did last
    std::deque<RequestRef> queue_;
    RequestRef current_;
    bool begun_ = false;
    std::map<const Request*, Utterance> utterances_; // of the current request and of the one ordered ahead
    std::optional<Journey> journey_;
    std::optional<acs::MouthShape> mouth_;
    bool silenced_ = false;
    bool visible_ = false;
    int left_ = 0, top_ = 0, width_ = 0, height_ = 0;
    double unscaled_width_ = 0, unscaled_height_ = 0; // what the size would be at a scale of 1
    VisibilityCause visibility_cause_ = VisibilityCause::never;
    MoveCause move_cause_ = MoveCause::never;
    bool balloon_open_ = false;
    BalloonKind last_kind_ = BalloonKind::words;
    std::u16string last_words_;                       // that the balloon showed
    std::optional<Time> words_over_;                  // when the last word of the open balloon was said
    bool balloon_goes_ = false;                       // by itself, some time after that
    std::shared_ptr<const acs::Animation> rest_pose_; // null where there is none
    Time begun_at_ = 0;
    Time quiet_since_ = 0;
    Time no_idling_until_ = 0; // where idling was switched off
    std::optional<Time> idle_since_;
    Time next_idle_ = 0;
};

class Stage {
  public:
    Stage(Effects& effects, Audience& audience, Random random);
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    // The characters of one troupe speak in the order in which they were asked to.
    Actor& enter(std::shared_ptr<const Repertoire> repertoire, TroupeId troupe = 0);
    // Its requests are interrupted; it vanishes.
    void leave(ActorId actor);
    Actor* find(ActorId actor);
    std::vector<Actor*> actors();

    RequestRef newRequest(Request request);
    void advance(Time now);

    // The screens as they are now; at first there are none.
    void setScreens(Screens screens);
    // Whether a visible character that an edge of the screen would cut is moved onto the screen; at first so. One that
    // is sent wholly off the screen goes there.
    void setKeepOnScreen(bool keep);
    bool keepsOnScreen() const { return keep_on_screen_; }
    // How much larger than in its file each character is on the screen where no client gave it a size; at first 1. One
    // with a size of its own grows as much.
    void setScale(double scale);

    // What is being said is interrupted; where nothing is, what would be next.
    void skip();
    // Nothing is said, begun or not, until that ends. All else goes on.
    void setPaused(bool paused);
    bool paused() const { return paused_; }
    void setListening(const Listening& listening);
    // How the characters sound has changed: what was made ahead is made anew.
    void voicesChanged();
    // How many times as fast all is said now.
    double tempo() const;

  private:
    friend class Actor;
    // The one audio channel: true when the character, whose Speak has its turn in its own queue, has it. Of a troupe
    // the one gets it whose turn it is to speak; troupes get it in the order of asking.
    bool channel(ActorId actor);
    void releaseChannel(ActorId actor);
    std::set<ActorId> nextSpeakers() const;
    const Actor* holderUp(const Request& request) const;
    void hurry();

    Effects& effects_;
    Audience& audience_;
    Random random_;
    Time now_ = 0;
    ActorId last_actor_ = 0;
    std::int32_t last_request_ = 0;
    std::map<ActorId, std::unique_ptr<Actor>> actors_;
    std::uint64_t last_place_ = 0;
    ActorId speaker_ = 0;        // who has the channel
    std::deque<ActorId> asking_; // who could use it at once
    Screens screens_;
    bool keep_on_screen_ = true;
    double scale_ = 1;
    bool paused_ = false;
    Listening listening_;
    double haste_ = 1;            // how many times as fast it goes because so much waits
    bool waiting_changed_ = true; // since that was found out
};

} // namespace agent::stage
