#include <algorithm>
#include <chrono>
#include <cmath>

#include <windows.h>

#include <sapi.h>

#include "common/com/handles.h"
#include "common/text.h"
#include "companions/agent/voice/speech.h"
#include "companions/agent/voice/wave.h"
#include "companions/agent/voice/win32/engines.h"

namespace agent::voice {

namespace {

using murmelix::com::Apartment;
using murmelix::com::check;
using murmelix::com::Ptr;
using murmelix::com::wide;

constexpr GUID wave_format_id = {0xC31ADBAE, 0x527F, 0x4FF5, {0xA2, 0x30, 0xF6, 0x2B, 0xB6, 0x1F, 0xF7, 0x0C}};
constexpr wchar_t voices_category[] = L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Speech\\Voices";
constexpr std::chrono::seconds sapi_time_limit{20};
constexpr ULONG sapi_poll_ms = 20;
constexpr std::uint16_t primary_language = 0x3FF;

template <class T>
Ptr<T> create(const CLSID& class_id, const IID& interface_id) {
    Ptr<T> object;
    check(CoCreateInstance(class_id, nullptr, CLSCTX_ALL, interface_id, reinterpret_cast<void**>(object.out())));
    return object;
}

// Text that SAPI hands out for its caller to free.
class TaskText {
  public:
    ~TaskText() { CoTaskMemFree(text_); }
    wchar_t** out() { return &text_; }
    std::wstring_view view() const { return text_ == nullptr ? std::wstring_view{} : std::wstring_view(text_); }
    TaskText() = default;
    TaskText(const TaskText&) = delete;
    TaskText& operator=(const TaskText&) = delete;

  private:
    wchar_t* text_ = nullptr;
};

struct InstalledVoice {
    std::wstring id;
    std::u16string name; // as the system shows it
    std::vector<std::uint16_t> languages;
    std::uint16_t gender = 0; // 1 female, 2 male
};

// "409;9": hexadecimal language ids.
std::vector<std::uint16_t> languagesOf(std::wstring_view text) {
    std::vector<std::uint16_t> languages;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(L';'), text.size());
        const std::wstring one(text.substr(0, end));
        if (const unsigned long id = std::wcstoul(one.c_str(), nullptr, 16); id > 0 && id <= 0xFFFF) {
            languages.push_back(static_cast<std::uint16_t>(id));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return languages;
}

InstalledVoice describe(ISpObjectToken& token) {
    InstalledVoice voice;
    TaskText id, name, languages, gender;
    check(token.GetId(id.out()));
    voice.id = id.view();
    if (SUCCEEDED(token.GetStringValue(nullptr, name.out()))) {
        voice.name.assign(name.view().begin(), name.view().end());
    }
    Ptr<ISpDataKey> attributes;
    if (SUCCEEDED(token.OpenKey(L"Attributes", attributes.out()))) {
        if (SUCCEEDED(attributes->GetStringValue(L"Language", languages.out()))) {
            voice.languages = languagesOf(languages.view());
        }
        if (SUCCEEDED(attributes->GetStringValue(L"Gender", gender.out()))) {
            voice.gender = gender.view() == L"Female" ? 1 : gender.view() == L"Male" ? 2 : 0;
        }
    }
    return voice;
}

std::vector<InstalledVoice> installedVoices() {
    std::vector<InstalledVoice> voices;
    const auto category = create<ISpObjectTokenCategory>(CLSID_SpObjectTokenCategory, IID_ISpObjectTokenCategory);
    check(category->SetId(voices_category, FALSE));
    Ptr<IEnumSpObjectTokens> tokens;
    check(category->EnumTokens(nullptr, nullptr, tokens.out()));
    Ptr<ISpObjectToken> token;
    while (tokens && tokens->Next(1, token.out(), nullptr) == S_OK && token) {
        InstalledVoice voice = describe(*token.get());
        if (!voice.languages.empty()) {
            voices.push_back(std::move(voice));
        }
    }
    return voices;
}

// Speed as SAPI counts it: -10 is a third, 10 three times the usual 180 words a minute.
long rateOf(std::uint32_t words_a_minute) {
    return std::clamp(std::lround(10 * std::log(words_a_minute / 180.0) / std::log(3.0)), -10L, 10L);
}

// Pitch as SAPI counts it: -10 to 10, 24 steps an octave.
long pitchOf(const Manner& manner) {
    const double usual = manner.gender == 1 ? 200 : 120;
    return std::clamp(std::lround(24 * std::log2(manner.pitch / usual)), -10L, 10L);
}

// The text in SAPI's mark-up, nothing of it able to be taken for mark-up.
std::u16string markedUp(const std::u16string& text, const Manner& manner) {
    std::u16string result;
    for (const char16_t unit : speakable(text)) {
        switch (unit) {
        case u'&':
            result += u"&amp;";
            break;
        case u'<':
            result += u"&lt;";
            break;
        case u'>':
            result += u"&gt;";
            break;
        default:
            result += unit;
        }
    }
    if (manner.emphasis) {
        result = u"<emph>" + result + u"</emph>";
    }
    if (manner.pitch != 0) {
        result = u"<pitch absmiddle=\"" + murmelix::toText(pitchOf(manner)) + u"\">" + result + u"</pitch>";
    }
    return result;
}

std::vector<std::int16_t> contentOf(IStream& stream) {
    STATSTG state{};
    check(stream.Stat(&state, STATFLAG_NONAME));
    std::vector<std::int16_t> samples(static_cast<std::size_t>(state.cbSize.QuadPart / 2));
    const LARGE_INTEGER begin{};
    check(stream.Seek(begin, STREAM_SEEK_SET, nullptr));
    ULONG got = 0;
    check(stream.Read(samples.data(), static_cast<ULONG>(samples.size() * 2), &got));
    samples.resize(got / 2);
    return samples;
}

class Sapi : public Engine {
  public:
    explicit Sapi(std::vector<InstalledVoice> voices) : voices_(std::move(voices)) {}

    bool speaks(std::uint16_t language_id) const override { return find({.language_id = language_id}) != nullptr; }

    std::vector<std::u16string> voices(std::uint16_t language_id) const override {
        std::vector<std::u16string> names;
        for (const InstalledVoice& voice : voices_) {
            if (!voice.name.empty() && nearness(voice, language_id) > 0) {
                names.push_back(voice.name);
            }
        }
        return names;
    }

    std::optional<Wave> synthesise(const std::u16string& text, const Manner& manner, const std::stop_token& stop,
                                   std::string& error) override {
        try {
            const Apartment apartment;
            return speak(text, manner, stop, error);
        } catch (const std::exception& failure) {
            error = failure.what();
            return std::nullopt;
        }
    }

  private:
    // 4 for a voice of exactly this language, 2 for one of another dialect of it, 0 for others.
    static int nearness(const InstalledVoice& voice, std::uint16_t language_id) {
        int nearest = 0;
        for (const std::uint16_t language : voice.languages) {
            if (language == language_id) {
                nearest = 4;
            } else if ((language & primary_language) == (language_id & primary_language)) {
                nearest = std::max(nearest, 2);
            }
        }
        return nearest;
    }

    // The voice that is named, before the nearest language, before the wanted gender.
    const InstalledVoice* find(const Manner& manner) const {
        const InstalledVoice* best = nullptr;
        int best_score = 0;
        for (const InstalledVoice& voice : voices_) {
            int score = nearness(voice, manner.language_id);
            if (score > 0 && manner.gender != 0 && voice.gender == manner.gender) {
                ++score;
            }
            if (score > 0 && !manner.voice.empty() && voice.name == manner.voice) {
                return &voice;
            }
            if (score > best_score) {
                best = &voice;
                best_score = score;
            }
        }
        return best;
    }

    std::optional<Wave> speak(const std::u16string& text, Manner manner, const std::stop_token& stop,
                              std::string& error) const {
        const InstalledVoice* installed = find(manner);
        if (installed == nullptr) {
            error = "no voice for this language";
            return std::nullopt;
        }
        if (installed->name == manner.voice) {
            manner.gender = installed->gender; // which its pitch is measured from
        }
        const auto token = create<ISpObjectToken>(CLSID_SpObjectToken, IID_ISpObjectToken);
        check(token->SetId(nullptr, installed->id.c_str(), FALSE));
        const auto voice = create<ISpVoice>(CLSID_SpVoice, IID_ISpVoice);
        check(voice->SetVoice(token.get()));

        Ptr<IStream> memory;
        check(CreateStreamOnHGlobal(nullptr, TRUE, memory.out()));
        const auto stream = create<ISpStream>(CLSID_SpStream, IID_ISpStream);
        WAVEFORMATEX format{};
        format.wFormatTag = WAVE_FORMAT_PCM;
        format.nChannels = 1;
        format.nSamplesPerSec = mix_rate;
        format.nAvgBytesPerSec = mix_rate * 2;
        format.nBlockAlign = 2;
        format.wBitsPerSample = 16;
        check(stream->SetBaseStream(memory.get(), wave_format_id, &format));
        check(voice->SetOutput(stream.get(), FALSE));
        if (manner.speed != 0) {
            check(voice->SetRate(rateOf(manner.speed)));
        }

        check(voice->Speak(wide(markedUp(text, manner)), SPF_ASYNC | SPF_IS_XML, nullptr));
        const auto deadline = std::chrono::steady_clock::now() + sapi_time_limit;
        while (voice->WaitUntilDone(sapi_poll_ms) == S_FALSE) {
            if (stop.stop_requested() || std::chrono::steady_clock::now() >= deadline) {
                voice->Speak(nullptr, SPF_PURGEBEFORESPEAK, nullptr);
                error = "stopped";
                return std::nullopt;
            }
        }
        return Wave{mix_rate, contentOf(*memory.get())};
    }

    std::vector<InstalledVoice> voices_;
};

} // namespace

std::unique_ptr<Engine> makeSapi() {
    try {
        const Apartment apartment;
        std::vector<InstalledVoice> voices = installedVoices();
        if (!voices.empty()) {
            return std::make_unique<Sapi>(std::move(voices));
        }
    } catch (const std::exception&) {
        // No SAPI, or one that cannot list its voices: another engine speaks.
    }
    return nullptr;
}

} // namespace agent::voice
