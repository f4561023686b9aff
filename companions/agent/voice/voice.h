// What the character server hears and says: sound in memory, speech with its timing, and the service that makes it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

#include "companions/agent/acs/character_file.h"

namespace agent::voice {

// Mono, 16 bits a sample.
struct Wave {
    std::uint32_t rate = 22050; // samples a second
    std::vector<std::int16_t> samples;
    std::uint32_t milliseconds() const;
};

// What of one sound is read at most, 115 MB of samples at the highest rate: longer than anything said in one breath.
inline constexpr std::uint32_t longest_sound_ms = 10 * 60 * 1000;

// A RIFF/WAVE file (one or two channels, 4 to 96 kHz; PCM of 8 or 16 bits, or an encoding of encoded.h that the system
// converts) as a Wave; nothing, with the reason in `error`, for anything else. What comes after `most_ms` is left out.
// Takes its time: for a worker.
std::optional<Wave> readWave(std::span<const std::uint8_t> file, std::string& error,
                             std::uint32_t most_ms = longest_sound_ms);
std::vector<std::uint8_t> writeWave(const Wave& wave);

struct MouthMove {
    std::uint32_t at; // ms from the start
    acs::MouthShape shape;
};

// Mouth moves for any sound, from its loudness over time; the last closes the mouth.
std::vector<MouthMove> mouthMoves(const Wave& wave);

// One word of the shown text and when it is heard.
struct Word {
    std::size_t begin, end; // in Speech::shown, UTF-16 units
    std::uint32_t at;       // ms from the start
};

struct Bookmark {
    std::int32_t id;
    std::uint32_t at; // ms from the start
};

// What a Speak call with its tags comes to.
struct Speech {
    Wave sound;
    std::u16string shown; // for the balloon
    std::vector<Word> words;
    std::vector<MouthMove> mouth;
    std::vector<Bookmark> bookmarks;
};

enum class Delivery : std::uint8_t { normal, monotone, whisper };

// How a character sounds when its text says nothing else.
struct Manner {
    std::uint16_t language_id = 0x0409;
    std::uint32_t speed = 0;  // words a minute; 0: the engine's own
    std::uint16_t pitch = 0;  // hertz; 0: the engine's own
    std::uint16_t gender = 0; // 1 female, 2 male, 0 either
    Delivery delivery = Delivery::normal;
    bool emphasis = false;
    std::uint32_t speaker = 0; // whose last text the tag \Lst\ repeats
    std::u16string voice = {}; // one of Engine::voices; empty, or another: by language and gender
    friend bool operator==(const Manner&, const Manner&) = default;
};

// One engine that turns text into sound. `speaks` and `voices` may be called on any thread and always answer the same;
// `synthesise` is called on the service's worker thread alone, has a time limit of its own, and returns soon (with
// nothing) once `stop` is requested.
class Engine {
  public:
    virtual ~Engine() = default;
    virtual bool speaks(std::uint16_t language_id) const = 0;
    // The names of the voices that it has for a language, for people to choose from.
    virtual std::vector<std::u16string> voices(std::uint16_t) const { return {}; }
    virtual std::optional<Wave> synthesise(const std::u16string& text, const Manner& manner,
                                           const std::stop_token& stop, std::string& error) = 0;
};

// Speaks by what has a voice on this machine, each language by SAPI 5 or else by espeak-ng as a process; null when
// neither has any.
// Asks for their voices, which may take some 100 ms.
std::unique_ptr<Engine> makeEngine();

// Speaks on a worker thread, orders one after another.
class Service {
  public:
    explicit Service(std::unique_ptr<Engine> engine);
    ~Service(); // abandons what is under way
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    bool available() const;
    bool speaks(std::uint16_t language_id) const;
    std::vector<std::u16string> voices(std::uint16_t language_id) const;

    // `text` as it was given to Speak: alternatives parted by "|" (one is chosen at random) and tags between
    // backslashes. `done` is called on the worker thread, once, with the speech; without a usable voice the speech is
    // silence as long as the words take to read (180 words a minute). A cancelled order is called back only if that
    // was under way already.
    // At most 4000 UTF-16 units and five minutes of one text are heard; all of it is shown, what is not heard counts as
    // said when the sound ends.
    using Order = std::uint64_t;
    Order order(std::u16string text, Manner manner, std::function<void(Speech)> done);
    void cancel(Order order);

  private:
    struct Impl;
    std::shared_ptr<Impl> impl_;
};

class Sink;

// The one way sound leaves the server, mixed: to the sound device if there is one and while something sounds, else on
// the clock, unheard; and to a recording if one was asked for. All calls on the user-interface thread.
class Output {
  public:
    // Microseconds since any fixed moment, never going back.
    using Clock = std::function<std::uint64_t()>;
    // `recording`: path of a .wav file that receives everything that sounds from now on, placed on the clock; empty:
    // none.
    explicit Output(std::u16string recording);
    // On a clock that is given, heard by a sink that is given, or unheard.
    Output(std::u16string recording, Clock clock);
    Output(std::u16string recording, Clock clock, std::unique_ptr<Sink> sink);
    ~Output(); // closes the recording
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // More sounds at once are a mistake or a mischief: nobody tells them apart, and all of them are mixed.
    static constexpr std::size_t most_sounds = 64;

    using Playing = std::uint64_t;
    // Starts at once; 0 where so many sound already. `finished` is called from `tick` when it has been heard to its
    // end (not after stop).
    Playing play(Wave wave, std::function<void()> finished);
    // The same for a sound that is heard again and again: at the mixing rate it is not copied.
    Playing play(std::shared_ptr<const Wave> wave, std::function<void()> finished);
    void stop(Playing playing);
    // How far it has been heard, in ms of the sound itself; nothing once it is stopped or its end was told.
    std::optional<std::uint32_t> heard(Playing playing) const;
    // What follows takes effect on what sounds already, a moment later with a device, which is fed ahead.
    // How loud everything is, 1 being as it was made; and how loud one sound is beside it. Beyond 0 to 1 the nearest.
    void setVolume(double volume);
    void setLoudness(Playing playing, double loudness);
    // How many times as fast one sound is heard, in its own pitch; beyond stretch.h's limits the nearest.
    void setTempo(Playing playing, double tempo);
    // Nothing sounds, and all that did goes on where it was once that ends.
    void setPaused(bool paused);
    bool paused() const;
    bool hasDevice() const;
    // To be called about every 10 ms by the owner's timer.
    void tick();
    // The recording is written up to now, its header made good: what is on disk can be read at any time.
    void flush();
    // Why there is no recording or it ended early (at the 4 GB of a .wav file, or a full disk); empty while all is
    // well.
    const std::string& recordingError() const;

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace agent::voice
