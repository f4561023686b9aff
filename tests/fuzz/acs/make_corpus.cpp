// make_corpus FOLDER: writes the character files that fuzzing starts from.
#include "companions/agent/acs/writer.h"
#include "companions/agent/voice/wave.h"
#include "tests/unit/acs/sample_character.h"
#include "tests/unit/acs/tiny_file.h"
#include "tests/unit/voice/encoded_files.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

int main(int argument_count, char** arguments) {
    if (argument_count != 2) {
        std::fprintf(stderr, "Usage: make_corpus FOLDER\n");
        return 2;
    }
    const std::filesystem::path folder = arguments[1];
    const auto save = [&folder](const char* name, const std::vector<std::uint8_t>& bytes) {
        std::ofstream out(folder / name, std::ios::binary);
        out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return static_cast<bool>(out.flush());
    };
    agent::acs::Character character = sampleCharacter();
    bool saved = save("tiny.acs", tinyFile()) && save("everything.acs", agent::acs::write(character));
    // Loops with and without a way out, frames of no duration, and sounds.
    agent::acs::Character playing = character;
    playing.sounds = {agent::voice::writeWave({22050, std::vector<std::int16_t>(200, 4000)}),
                      agent::voice::writeWave({8000, {0, 900, -900, 30'000}})};
    playing.states = {{u"SHOWING", {u"GREET"}}, {u"SPEAKING", {u"RestPose"}}, {u"IDLINGLEVEL1", {u"Round"}}};
    playing.animations.push_back(playing.animations[1]);
    playing.animations.back().name = u"Round";
    for (agent::acs::Frame& frame : playing.animations.back().frames) {
        frame.duration = 0;
        frame.sound = 0;
        frame.branches = {{0, 60}, {1, 40}};
    }
    saved = saved && save("playing.acs", agent::acs::write(playing));
    // A pose that is left by its exit, behind it an end mark, and sounds that a converter has to decode.
    agent::acs::Character posing = character;
    posing.sounds = {
        agent::voice::encodedFile({}, agent::voice::tone(11025, 1, 100)),
        agent::voice::encodedFile({agent::voice::Encoding::ima_adpcm, 8000, 2, 64}, agent::voice::tone(8000, 2, 50))};
    posing.names.push_back({0x0009, u"Sample", u"", u""});
    posing.animations.push_back(posing.animations[1]);
    agent::acs::Animation& pose = posing.animations.back();
    pose.name = u"Pose";
    pose.transition = agent::acs::Transition::exit_branches;
    pose.return_animation.clear();
    pose.frames.resize(4, pose.frames[0]);
    for (agent::acs::Frame& frame : pose.frames) {
        frame.branches.clear();
        frame.exit_frame = agent::acs::exit_none;
        frame.sound = 1;
    }
    pose.frames[1].branches = {{3, 100}};
    pose.frames[1].exit_frame = 2;
    pose.frames[3] = agent::acs::Frame{};
    pose.frames[3].duration = 0;
    saved = saved && save("posing.acs", agent::acs::write(posing));
    character.voice.reset();
    character.balloon.reset();
    character.tray_icon.reset();
    character.palette.resize(4);
    saved = saved && save("voiceless.acs", agent::acs::write(character));
    character.states.clear();
    character.animations.clear();
    character.sounds.clear();
    saved = saved && save("pictures.acs", agent::acs::write(character));
    saved = saved && save("compound.acs", {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1});
    if (!saved) {
        std::perror(arguments[1]);
    }
    return saved ? 0 : 1;
}
