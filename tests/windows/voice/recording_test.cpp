// The output with this machine's clock and device, and its recording on a Windows file system.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include <gtest/gtest.h>

#include <windows.h>

#include <mmsystem.h>

#include "companions/agent/voice/recording.h"
#include "companions/agent/voice/voice.h"
#include "companions/agent/voice/wave.h"

namespace agent::voice {
namespace {

namespace fs = std::filesystem;

class RecordingTest : public testing::Test {
  protected:
    RecordingTest() { fs::create_directories(folder); }
    ~RecordingTest() override { fs::remove_all(folder); }
    std::optional<Wave> recorded() const {
        std::ifstream file(path, std::ios::binary);
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
        std::string error;
        return readWave(bytes, error);
    }

    fs::path folder = fs::temp_directory_path() / (L"voice-recording-" + std::to_wstring(GetCurrentProcessId()));
    fs::path path = folder / L"spoken \u00E9\u4F60.wav";
};

TEST_F(RecordingTest, WhatSoundsIsRecorded) {
    std::vector<std::int16_t> samples;
    for (std::size_t i = 0; i < 4410; ++i) {
        samples.push_back(static_cast<std::int16_t>(i % 2 == 0 ? 1000 + i : 1));
    }
    bool finished = false;
    Output output(path.u16string());
    EXPECT_EQ(output.hasDevice(), waveOutGetNumDevs() != 0);
    output.play(Wave{22050, samples}, [&] { finished = true; });
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(4);
    while (!finished && std::chrono::steady_clock::now() < deadline) {
        output.tick();
        std::this_thread::yield();
    }
    ASSERT_TRUE(finished);
    output.flush();
    EXPECT_EQ(output.recordingError(), "");
    // Read while it is being written, as another program would.
    const std::optional<Wave> wave = recorded();
    ASSERT_TRUE(wave);
    const auto found = std::search(wave->samples.begin(), wave->samples.end(), samples.begin(), samples.end());
    EXPECT_NE(found, wave->samples.end());
}

TEST_F(RecordingTest, GrowsPastTwoGigabytes) {
    constexpr std::uint64_t silence = 1'200'000'000; // samples
    {
        Recording recording(path.u16string());
        recording.silence(silence);
        recording.write(std::vector<std::int16_t>{7, 8});
        recording.flush();
        EXPECT_EQ(recording.error(), "");
    }
    EXPECT_EQ(fs::file_size(path), 44 + (silence + 2) * 2);
}

} // namespace
} // namespace agent::voice
