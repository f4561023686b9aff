#include "companions/agent/settings/listener.h"

#include <algorithm>

#include "common/text.h"
#include "companions/agent/settings/settings_store.h"

namespace agent::settings {

namespace {

auto same(std::u16string_view character) {
    return [character](const std::u16string& other) {
        return murmelix::sameText(character, other, murmelix::LetterCase::ignored);
    };
}

} // namespace

int Bounds::nearest(long long number) const {
    return static_cast<int>(std::clamp<long long>(number, least, most));
}

std::vector<int> withCurrent(std::vector<int> numbers, int current) {
    if (const auto place = std::ranges::lower_bound(numbers, current); place == numbers.end() || *place != current) {
        numbers.insert(place, current);
    }
    return numbers;
}

Listener::Listener()
    : sound_(readSoundEnabled()), all_silenced_(readAllSilenced()), word_by_word_(readSwitch(word_by_word_name, true)),
      calm_(readSwitch(calm_name, false)), volume_(readNumber(volume_name, volume_bounds)),
      speed_(readNumber(speed_name, speed_bounds)), longest_(readNumber(longest_name, longest_bounds)),
      most_waiting_(readNumber(most_waiting_name, most_waiting_bounds)),
      letters_(readNumber(letters_name, letters_bounds)), reading_(readNumber(reading_name, reading_bounds)),
      silenced_(readSilenced()) {}

void Listener::changed() const {
    if (Changed) {
        Changed();
    }
}

void Listener::skip() const {
    if (Skip) {
        Skip();
    }
}

void Listener::setSound(bool on) {
    if (on != sound_) {
        sound_ = on;
        writeSoundEnabled(on);
        changed();
    }
}

void Listener::setAllSilenced(bool silenced) {
    if (silenced != all_silenced_) {
        all_silenced_ = silenced;
        writeAllSilenced(silenced);
        changed();
    }
}

void Listener::setNumber(int& number, const std::u16string& name, int wanted) {
    if (wanted != number) {
        number = wanted;
        writeNumber(name, wanted);
        changed();
    }
}

void Listener::setSwitch(bool& is_on, const std::u16string& name, bool on) {
    if (on != is_on) {
        is_on = on;
        writeSwitch(name, on);
        changed();
    }
}

void Listener::setLetters(int percent) {
    setNumber(letters_, letters_name, letters_bounds.nearest(percent));
}

void Listener::setReading(int seconds) {
    setNumber(reading_, reading_name, reading_bounds.nearest(seconds));
}

void Listener::setWordByWord(bool on) {
    setSwitch(word_by_word_, word_by_word_name, on);
}

void Listener::setCalm(bool calm) {
    setSwitch(calm_, calm_name, calm);
}

void Listener::setVolume(int percent) {
    setNumber(volume_, volume_name, volume_bounds.nearest(percent));
}

void Listener::setSpeed(int percent) {
    setNumber(speed_, speed_name, speed_bounds.nearest(percent));
}

void Listener::setLongest(int seconds) {
    setNumber(longest_, longest_name, longest_bounds.nearest(seconds));
}

void Listener::setMostWaiting(int seconds) {
    setNumber(most_waiting_, most_waiting_name, most_waiting_bounds.nearest(seconds));
}

bool Listener::silenced(std::u16string_view character) const {
    return std::ranges::any_of(silenced_, same(character));
}

void Listener::setSilenced(std::u16string_view character, bool silenced) {
    if (silenced == this->silenced(character) || character.empty() || character.size() > longest_key) {
        return;
    }
    if (silenced) {
        if (silenced_.size() >= most_silenced) {
            silenced_.erase(silenced_.begin());
        }
        silenced_.emplace_back(character);
    } else {
        std::erase_if(silenced_, same(character));
    }
    writeSilenced(silenced_);
    changed();
}

OwnVoice Listener::ownVoice(std::u16string_view character) const {
    return readOwnVoice(character);
}

std::u16string Listener::voiceOf(std::u16string_view character, std::uint16_t language) const {
    std::u16string own = ownVoice(character).voice;
    return own.empty() ? readDefaultVoice(language) : own;
}

void Listener::setOwnVoice(std::u16string_view character, const OwnVoice& voice) {
    if (voice == ownVoice(character)) {
        return;
    }
    writeOwnVoice(character, voice);
    if (VoicesChanged) {
        VoicesChanged();
    }
}

void Listener::setPaused(bool paused) {
    if (paused != paused_) {
        paused_ = paused;
        changed();
    }
}

} // namespace agent::settings
