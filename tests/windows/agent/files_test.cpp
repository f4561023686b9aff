// Characters and sounds as others made them, and as others name them.
#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/com/served.h"
#include "common/text.h"
#include "companions/agent/acs/writer.h"
#include "companions/agent/voice/wave.h"
#include "tests/unit/voice/encoded_files.h"
#include "tests/windows/agent/server_process.h"

namespace agent {
namespace {

using murmelix::com::Error;
using murmelix::com::Object;
using murmelix::com::Variant;

struct FilesOfOthers : testing::Test {
    RunningServer server;
    Object control = server.control();
    Object characters = control.object(u"Characters");

    Object load(const acs::Character& character) {
        const std::u16string file = temporaryFile(u"others.acs");
        write(file, acs::write(character));
        characters.call(u"Load", {Variant(u"a"), Variant(file)});
        return characters.object(u"Character", {Variant(u"a")});
    }
    // How the request ended: its Status.
    static int outcome(Object& character, const char16_t* call, std::initializer_list<Variant> arguments) {
        Object request(character.call(call, arguments).toObject());
        int status = 2;
        EXPECT_TRUE(pumpUntil([&] {
            status = request.get(u"Status").toInt32();
            return status != 2 && status != 4;
        }));
        return status;
    }
};

std::u16string addressOf(const std::u16string& path, const char16_t* beginning) {
    return beginning + murmelix::replaceAll(murmelix::replaceAll(path, u"\\", u"/"), u" ", u"%20");
}

TEST_F(FilesOfOthers, ATextWithoutARegionServesEveryRegion) {
    acs::Character made = smallCharacter();
    made.names = {{0x0401, u"\u0646\u0642\u0637\u0629", u"\u0642\u0631\u0635", u""},
                  {0x0009, u"Dot", u"A disc.", u"more"}};
    Object character = load(made);
    EXPECT_EQ(character.get(u"Name").toText(), u"Dot");
    EXPECT_EQ(character.get(u"Description").toText(), u"A disc.");
    EXPECT_EQ(character.get(u"ExtraData").toText(), u"more");
}

TEST_F(FilesOfOthers, TextsFollowTheCharactersLanguage) {
    acs::Character made = smallCharacter();
    made.names = {{0x0409, u"Dot", u"A disc.", u"more"}, {0x0407, u"Punkt", u"Eine Scheibe.", u"mehr"}};
    Object character = load(made);
    ASSERT_EQ(character.get(u"Name").toText(), u"Dot");
    character.put(u"LanguageID", Variant(std::int32_t{0x0407}));
    EXPECT_EQ(character.get(u"Name").toText(), u"Punkt");
    EXPECT_EQ(character.get(u"Description").toText(), u"Eine Scheibe.");
    EXPECT_EQ(character.get(u"ExtraData").toText(), u"mehr");
    character.put(u"Name", Variant(u"Spot"));
    character.put(u"LanguageID", Variant(std::int32_t{0x0409}));
    EXPECT_EQ(character.get(u"Name").toText(), u"Spot") << "a name that a program gave stays";
    EXPECT_EQ(character.get(u"Description").toText(), u"A disc.");
}

TEST_F(FilesOfOthers, AreNamedByTheirAddress) {
    const std::u16string file = temporaryFile(u"a dot.acs"), sound = temporaryFile(u"a sound.wav");
    write(file, acs::write(smallCharacter()));
    write(sound, voice::writeWave({voice::mix_rate, std::vector<std::int16_t>(2000, 100)}));
    for (const char16_t* beginning : {u"file:///", u"File://LocalHost/"}) {
        characters.call(u"Load", {Variant(u"a"), Variant(addressOf(file, beginning))});
        Object character = characters.object(u"Character", {Variant(u"a")});
        EXPECT_EQ(outcome(character, u"Show", {Variant(true)}), 0);
        EXPECT_EQ(outcome(character, u"Speak", {Variant(u"heard"), Variant(addressOf(sound, beginning))}), 0);
        EXPECT_EQ(outcome(character, u"Speak", {Variant(u"lost"), Variant(addressOf(sound, beginning) + u"x")}), 1);
        characters.call(u"Unload", {Variant(u"a")});
    }
}

TEST_F(FilesOfOthers, OfOtherMachinesAreNotReachedByTheirAddress) {
    Object character = load(smallCharacter());
    for (const char16_t* address :
         {u"file://server/share/x.wav", u"file:////server/share/x.wav", u"file:///%5C%5Cserver/share/x.wav",
          u"file://./pipe/x.wav", u"file:///C:/x%00.wav", u"file:"}) {
        try {
            character.call(u"Speak", {Variant(u"words"), Variant(address)});
            ADD_FAILURE() << murmelix::toUtf8(address);
        } catch (const Error& error) {
            EXPECT_EQ(error.result(), E_INVALIDARG) << murmelix::toUtf8(address);
        }
        EXPECT_THROW(characters.call(u"Load", {Variant(u"b"), Variant(address)}), Error);
    }
}

using voice::EncodedFile;
using voice::Encoding;

// How much of a tone of 441 Hz is in the samples, as a part of all that sounds in them.
double toneIn(const std::vector<std::int16_t>& samples) {
    constexpr double step = 2 * std::numbers::pi * 441 / voice::mix_rate;
    double sine = 0, cosine = 0, all = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        sine += samples[i] * std::sin(step * static_cast<double>(i));
        cosine += samples[i] * std::cos(step * static_cast<double>(i));
        all += static_cast<double>(samples[i]) * samples[i];
    }
    return all == 0 ? 0 : (sine * sine + cosine * cosine) * 2 / (all * static_cast<double>(samples.size()));
}

// The samples of a recording from the first to the last that is heard.
std::vector<std::int16_t> heardIn(const std::u16string& recording) {
    const std::string bytes = contents(recording);
    std::string error;
    const auto wave = voice::readWave({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, error);
    EXPECT_TRUE(wave) << error;
    std::vector<std::int16_t> samples = wave ? wave->samples : std::vector<std::int16_t>{};
    const auto audible = [](std::int16_t sample) { return sample != 0; };
    samples.erase(samples.begin(), std::ranges::find_if(samples, audible));
    while (!samples.empty() && samples.back() == 0) {
        samples.pop_back();
    }
    return samples;
}

const std::vector<EncodedFile> encoded_files{{Encoding::ms_adpcm, 11025, 1, 256},
                                             {Encoding::ms_adpcm, 22050, 2, 1024},
                                             {Encoding::ima_adpcm, 11025, 1, 256},
                                             {Encoding::mu_law, 8000, 1, 1},
                                             {Encoding::a_law, 8000, 1, 1}};
// A tag that is nobody's.
std::vector<std::uint8_t> unknownSound() {
    std::vector<std::uint8_t> file = encodedFile(encoded_files[0], voice::tone(11025, 1, 500));
    file[20] = 0x34;
    file[21] = 0x12;
    return file;
}

// What is recorded while `perform` goes on.
std::vector<std::int16_t> recordingOf(const std::function<void(Object& characters)>& perform) {
    const std::u16string recording = temporaryFile(u"others.wav");
    DeleteFileW(murmelix::com::wide(recording));
    {
        const RunningServer server(u"-Embedding /record \"" + recording + u"\"");
        Object control = server.control();
        Object characters = control.object(u"Characters");
        perform(characters);
    }
    return heardIn(recording);
}

Object loaded(Object& characters, const acs::Character& character) {
    const std::u16string file = temporaryFile(u"others.acs");
    write(file, acs::write(character));
    characters.call(u"Load", {Variant(u"a"), Variant(file)});
    Object made = characters.object(u"Character", {Variant(u"a")});
    EXPECT_EQ(FilesOfOthers::outcome(made, u"Show", {Variant(true)}), 0);
    return made;
}

TEST(SoundsOfOthers, InFramesAreHeardInEveryEncoding) {
    for (const EncodedFile& encoded : encoded_files) {
        const auto heard = recordingOf([&](Object& characters) {
            acs::Character character = smallCharacter();
            character.sounds = {encodedFile(encoded, voice::tone(encoded.rate, encoded.channels, 500)), unknownSound()};
            for (acs::Animation& animation : character.animations) {
                if (animation.name == u"Blue") { // two seconds
                    animation.frames[2].sound = 0;
                    animation.frames[3].sound = 1;
                }
            }
            Object made = loaded(characters, character);
            EXPECT_EQ(FilesOfOthers::outcome(made, u"Play", {Variant(u"Blue")}), 0);
        });
        EXPECT_GT(heard.size(), voice::mix_rate * 400 / 1000) << static_cast<int>(encoded.encoding);
        EXPECT_LT(heard.size(), voice::mix_rate * 510 / 1000) << "the other one is silent";
        EXPECT_GT(toneIn(heard), 0.9) << static_cast<int>(encoded.encoding);
    }
}

TEST(SoundsOfOthers, AreSpokenInEveryEncoding) {
    for (const EncodedFile& encoded : encoded_files) {
        const auto heard = recordingOf([&](Object& characters) {
            const std::u16string sound = temporaryFile(u"others sound.wav");
            write(sound, encodedFile(encoded, voice::tone(encoded.rate, encoded.channels, 500)));
            Object made = loaded(characters, smallCharacter());
            EXPECT_EQ(FilesOfOthers::outcome(made, u"Speak", {Variant(u"words"), Variant(sound)}), 0);
            write(sound, unknownSound());
            EXPECT_EQ(FilesOfOthers::outcome(made, u"Speak", {Variant(u"words"), Variant(sound)}), 1);
        });
        EXPECT_GT(heard.size(), voice::mix_rate * 400 / 1000) << static_cast<int>(encoded.encoding);
        EXPECT_GT(toneIn(heard), 0.9) << static_cast<int>(encoded.encoding);
    }
}

} // namespace
} // namespace agent
