#include "companions/agent/voice/espeak.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "common/text.h"
#include "companions/agent/voice/speech.h"

namespace agent::voice {

namespace {

struct Language {
    std::uint16_t id;
    std::string_view name;
};

// The first of each language stands for its other dialects.
constexpr Language table[] = {
    {1025, "ar"}, {1027, "ca"}, {1028, "cmn"},   {2052, "cmn"},   {3076, "yue"}, {1029, "cs"}, {1030, "da"},
    {1031, "de"}, {1032, "el"}, {1033, "en-us"}, {2057, "en-gb"}, {3082, "es"},  {1034, "es"}, {1035, "fi"},
    {1036, "fr"}, {1037, "he"}, {1038, "hu"},    {1040, "it"},    {1041, "ja"},  {1042, "ko"}, {1043, "nl"},
    {1044, "nb"}, {1045, "pl"}, {1046, "pt-br"}, {2070, "pt"},    {1048, "ro"},  {1049, "ru"}, {1050, "hr"},
    {1051, "sk"}, {1053, "sv"}, {1054, "th"},    {1055, "tr"},    {1060, "sl"},  {1069, "eu"},
};

constexpr std::uint16_t primary_language = 0x3FF; // the part of a language id without its dialect

constexpr std::uint32_t slowest = 80, fastest = 450; // words a minute

// Measured: the pitch heard at the middle setting, for the male voice and the female variant used here; and how many
// settings make an octave above it and below it.
constexpr double male_hertz = 105, female_hertz = 197, steps_above = 67, steps_below = 96;
constexpr long middle_setting = 50, highest_setting = 99;
constexpr std::uint16_t lowest_pitch = 50, highest_pitch = 400; // hertz, as the tag has them
constexpr std::uint32_t usual_speed = 175;                      // words a minute, where none is named

// Voices that the program has for every language, as its variants.
struct Variant {
    std::u16string_view name;
    std::string_view argument;
    bool female;
};
constexpr Variant variants[] = {
    {u"Woman 1", "f1", true},          {u"Woman 2", "f2", true},
    {u"Woman 3", "f3", true},          {u"Woman 4", "f4", true},
    {u"Woman 5", "f5", true},          {u"Man 1", "m1", false},
    {u"Man 2", "m2", false},           {u"Man 3", "m3", false},
    {u"Man 4", "m4", false},           {u"Man 5", "m5", false},
    {u"Man 6", "m6", false},           {u"Man 7", "m7", false},
    {u"Grandmother", "grandma", true}, {u"Grandfather", "grandpa", false},
};

const Variant* variantOf(const Manner& manner) {
    const auto* const found = std::ranges::find(variants, manner.voice, &Variant::name);
    return found == std::end(variants) ? nullptr : found;
}

bool isFemale(const Manner& manner) {
    const Variant* const variant = variantOf(manner);
    return variant ? variant->female : manner.gender == 1;
}

struct Pitch {
    long setting;
    // How many times as fast the sound is to be heard as it is spoken, and so as high: 1 within the voice's own range.
    double faster;
};

Pitch pitchOf(const Manner& manner) {
    const double octaves = std::log2(std::clamp(manner.pitch, lowest_pitch, highest_pitch) /
                                     (isFemale(manner) ? female_hertz : male_hertz));
    const double steps = octaves < 0 ? steps_below : steps_above;
    const long wanted = std::lround(static_cast<double>(middle_setting) + octaves * steps);
    const long setting = std::clamp(wanted, 0L, highest_setting);
    return {setting, std::exp2(static_cast<double>(wanted - setting) / steps)};
}

// So that what is heard faster lasts as long as if it were not.
std::uint32_t speedOf(const Manner& manner) {
    const double speed = manner.speed == 0 ? usual_speed : manner.speed;
    const double faster = manner.pitch == 0 ? 1 : pitchOf(manner).faster;
    return std::clamp(static_cast<std::uint32_t>(std::lround(speed / faster)), slowest, fastest);
}

Wave heardFaster(const Wave& wave, double faster) {
    Wave heard{wave.rate, {}};
    const auto count = static_cast<std::size_t>(static_cast<double>(wave.samples.size()) / faster);
    heard.samples.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double at = static_cast<double>(i) * faster;
        const auto before = std::min(static_cast<std::size_t>(at), wave.samples.size() - 1);
        const auto after = std::min(before + 1, wave.samples.size() - 1);
        const double part = at - static_cast<double>(before);
        heard.samples.push_back(
            static_cast<std::int16_t>(std::lround(wave.samples[before] * (1 - part) + wave.samples[after] * part)));
    }
    return heard;
}

} // namespace

std::set<std::string, std::less<>> listedLanguages(std::string_view voices) {
    std::set<std::string, std::less<>> languages;
    bool heading = true;
    for (std::size_t begin = 0; begin < voices.size();) {
        const std::size_t end = std::min(voices.find('\n', begin), voices.size());
        const std::string_view line = voices.substr(begin, end - begin);
        begin = end + 1;
        if (std::exchange(heading, false)) {
            continue;
        }
        const auto wordAt = [&](std::size_t at) {
            const std::size_t first = std::min(line.find_first_not_of(' ', at), line.size());
            const std::size_t last = std::min(line.find_first_of(" )\r", first), line.size());
            return std::pair(first, last);
        };
        const auto [language, language_end] = wordAt(wordAt(0).second);
        if (language < language_end) {
            languages.emplace(line.substr(language, language_end - language));
        }
        for (std::size_t at = line.find(" ("); at != line.npos; at = line.find('(', at)) {
            const auto [other, other_end] = wordAt(line.find('(', at) + 1);
            if (other < other_end) {
                languages.emplace(line.substr(other, other_end - other));
            }
            at = other_end;
        }
    }
    return languages;
}

std::string_view espeakLanguage(std::uint16_t language_id) {
    const Language* usual = nullptr;
    for (const Language& language : table) {
        if (language.id == language_id) {
            return language.name;
        }
        if (usual == nullptr && (language.id & primary_language) == (language_id & primary_language)) {
            usual = &language;
        }
    }
    return usual == nullptr ? std::string_view{} : usual->name;
}

std::vector<std::string> espeakArguments(const Manner& manner) {
    std::string voice(espeakLanguage(manner.language_id));
    if (manner.delivery == Delivery::whisper) {
        voice += isFemale(manner) ? "+whisperf" : "+whisper";
    } else if (const Variant* const variant = variantOf(manner)) {
        voice.append("+").append(variant->argument);
    } else if (manner.gender == 1) {
        voice += "+f2";
    } else if (manner.gender == 2) {
        voice += "+m3";
    }
    std::vector<std::string> arguments{"-v", voice, "-b", "1", "-z", "--stdin", "--stdout"};
    const bool shifted = manner.pitch != 0 && pitchOf(manner).faster != 1;
    if (manner.speed != 0 || shifted) {
        arguments.insert(arguments.end(), {"-s", std::to_string(speedOf(manner))});
    }
    if (manner.pitch != 0) {
        arguments.insert(arguments.end(), {"-p", std::to_string(pitchOf(manner).setting)});
    }
    if (manner.emphasis) {
        arguments.insert(arguments.end(), {"-a", "160"});
    }
    return arguments;
}

std::string espeakText(std::u16string_view text, Delivery delivery) {
    // The program's own command for a range of pitch without any width.
    constexpr std::string_view monotone = "\0010R";
    std::string bytes(delivery == Delivery::monotone ? monotone : "");
    bytes += murmelix::toUtf8(speakable(text));
    // Two brackets would begin phonemes in the program's own notation.
    for (std::size_t at = bytes.find("[["); at != bytes.npos; at = bytes.find("[[", at + 1)) {
        bytes.insert(at + 1, 1, ' ');
    }
    bytes += '\n';
    return bytes;
}

Espeak::Espeak(RunProgram run) : run_(std::move(run)) {
    std::string error;
    if (const auto voices = run_({{"--voices"}, {}}, std::stop_token{}, error)) {
        languages_ = listedLanguages({reinterpret_cast<const char*>(voices->data()), voices->size()});
    }
}

bool Espeak::speaks(std::uint16_t language_id) const {
    return languages_.contains(espeakLanguage(language_id));
}

std::vector<std::u16string> Espeak::voices(std::uint16_t language_id) const {
    std::vector<std::u16string> names;
    if (speaks(language_id)) {
        std::ranges::transform(variants, std::back_inserter(names),
                               [](const Variant& variant) { return std::u16string(variant.name); });
    }
    return names;
}

std::optional<Wave> Espeak::synthesise(const std::u16string& text, const Manner& manner, const std::stop_token& stop,
                                       std::string& error) {
    if (!speaks(manner.language_id)) {
        error = "the program has no voice for this language";
        return std::nullopt;
    }
    const auto file = run_({espeakArguments(manner), espeakText(text, manner.delivery)}, stop, error);
    if (!file) {
        return std::nullopt;
    }
    auto wave = readWave(*file, error);
    if (wave && manner.pitch != 0 && pitchOf(manner).faster != 1 && !wave->samples.empty()) {
        wave = heardFaster(*wave, pitchOf(manner).faster);
    }
    return wave;
}

} // namespace agent::voice
