// What the user wants of all that characters say: changed by the menu of the icon, the window and the keys, kept, and
// told to the server, which has it take effect at once.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace agent::settings {

// Whole numbers that are kept, each within its bounds.
struct Bounds {
    int least, usual, most;
    int nearest(long long number) const;
};
inline constexpr Bounds volume_bounds{0, 100, 100};      // percent
inline constexpr Bounds speed_bounds{50, 100, 200};      // percent
inline constexpr Bounds longest_bounds{0, 0, 300};       // s a request; 0: to its end
inline constexpr Bounds most_waiting_bounds{0, 0, 3600}; // s of speech that may wait; 0: any
inline constexpr Bounds letters_bounds{100, 100, 300};   // percent of the text in balloons
// s that a balloon is left to be read. 0: as the character has it; the most: until the user clicks it.
inline constexpr Bounds reading_bounds{0, 0, 3600};
// Characters that are silenced: many more than anybody has. The oldest is forgotten.
inline constexpr std::size_t most_silenced = 500;
inline constexpr std::size_t longest_key = 64; // units of what a character is known by

// How the user wants one character to sound; what is empty or 0 is as the character has it.
struct OwnVoice {
    std::u16string voice;       // one of the engine's
    std::uint16_t language = 0; // see languages.h
    int pitch = 0;              // hertz
    int speed = 0;              // words a minute
    bool operator==(const OwnVoice&) const = default;
};
// Those of the tags that a text can have.
inline constexpr Bounds own_pitch_bounds{50, 0, 400}, own_speed_bounds{50, 0, 450};
inline constexpr std::size_t longest_voice = 200; // units of its name

// A character that is installed, or that a program has loaded: what it is known by, its name, and the language that it
// is asked to speak.
struct KnownCharacter {
    std::u16string key, name;
    std::uint16_t language = 0;
    bool loaded = true;
    bool operator==(const KnownCharacter&) const = default;
};

// Numbers to choose from, in order, and among them the one that it is.
std::vector<int> withCurrent(std::vector<int> numbers, int current);

class Listener {
  public:
    Listener(); // as it was kept

    // Whether there is to be sound at all; programs are told, and some of them end without.
    bool sound() const { return sound_; }
    void setSound(bool on);
    // All characters are silenced, which is nobody's matter but the listener's.
    bool allSilenced() const { return all_silenced_; }
    void setAllSilenced(bool silenced);
    // Both together.
    bool audible() const { return sound_ && !all_silenced_; }
    int volume() const { return volume_; }
    void setVolume(int percent);
    int speed() const { return speed_; }
    void setSpeed(int percent);
    int longest() const { return longest_; }
    void setLongest(int seconds);
    int mostWaiting() const { return most_waiting_; }
    void setMostWaiting(int seconds);
    int letters() const { return letters_; }
    void setLetters(int percent);
    int reading() const { return reading_; }
    void setReading(int seconds);
    // Balloons show their words one after another, as they are spoken.
    bool wordByWord() const { return word_by_word_; }
    void setWordByWord(bool on);
    // Nothing moves that need not.
    bool calm() const { return calm_; }
    void setCalm(bool calm);
    // By the character file's own id, as text, whoever has it loaded; without letter case.
    bool silenced(std::u16string_view character) const;
    void setSilenced(std::u16string_view character, bool silenced);

    OwnVoice ownVoice(std::u16string_view character) const;
    void setOwnVoice(std::u16string_view character, const OwnVoice& voice);
    // The voice that a character is to speak this language with: its own, else the default one of the language, which
    // is chosen by tv_enua.exe; empty where the user wants none in particular.
    std::u16string voiceOf(std::u16string_view character, std::uint16_t language) const;

    // Until the server ends: one that begins in silence would seem to be broken.
    bool paused() const { return paused_; }
    void setPaused(bool paused);
    void skip() const;

    // Something of the above is different now; but for the voices, which tell it themselves.
    std::function<void()> Changed, VoicesChanged;
    std::function<void()> Skip;

  private:
    void changed() const;
    void setNumber(int& number, const std::u16string& name, int wanted);

    void setSwitch(bool& is_on, const std::u16string& name, bool on);

    bool sound_, all_silenced_, word_by_word_, calm_;
    int volume_, speed_, longest_, most_waiting_, letters_, reading_;
    std::vector<std::u16string> silenced_;
    bool paused_ = false;
};

} // namespace agent::settings
