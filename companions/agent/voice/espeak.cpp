#include "companions/agent/voice/espeak.h"

#include <algorithm>
#include <cmath>

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

// Measured: the pitch heard at the middle setting, for the male voice and the female variant used here; about
// `octave_steps` settings make an octave.
constexpr double male_hertz = 99, female_hertz = 188, octave_steps = 70;

std::uint32_t pitchSetting(std::uint16_t hertz, bool female) {
    const double steps = std::log2(hertz / (female ? female_hertz : male_hertz)) * octave_steps;
    return static_cast<std::uint32_t>(std::clamp(std::lround(50 + steps), 0L, 99L));
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
        voice += manner.gender == 1 ? "+whisperf" : "+whisper";
    } else if (manner.gender == 1) {
        voice += "+f2";
    } else if (manner.gender == 2) {
        voice += "+m3";
    }
    std::vector<std::string> arguments{"-v", voice, "-b", "1", "-z", "--stdin", "--stdout"};
    if (manner.speed != 0) {
        arguments.insert(arguments.end(), {"-s", std::to_string(std::clamp(manner.speed, slowest, fastest))});
    }
    if (manner.pitch != 0) {
        arguments.insert(arguments.end(), {"-p", std::to_string(pitchSetting(manner.pitch, manner.gender == 1))});
    }
    if (manner.emphasis) {
        arguments.insert(arguments.end(), {"-a", "160"});
    }
    return arguments;
}

std::string espeakText(std::u16string_view text) {
    std::string bytes = murmelix::toUtf8(speakable(text));
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

std::optional<Wave> Espeak::synthesise(const std::u16string& text, const Manner& manner, const std::stop_token& stop,
                                       std::string& error) {
    if (!speaks(manner.language_id)) {
        error = "the program has no voice for this language";
        return std::nullopt;
    }
    const auto file = run_({espeakArguments(manner), espeakText(text)}, stop, error);
    if (!file) {
        return std::nullopt;
    }
    return readWave(*file, error);
}

} // namespace agent::voice
