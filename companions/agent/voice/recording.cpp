#include "companions/agent/voice/recording.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <vector>

#include "companions/agent/voice/wave.h"

namespace agent::voice {

namespace {

constexpr std::uint64_t longest_written_silence = mix_rate * 2; // samples

} // namespace

Recording::Recording(const std::u16string& path) {
    try {
        file_.open(std::filesystem::path(path), std::ios::binary | std::ios::trunc);
    } catch (const std::exception&) {
        fail("the name of the recording cannot be used");
        return;
    }
    if (!file_) {
        fail("the recording cannot be written");
    }
    flush();
}

Recording::~Recording() {
    flush();
}

std::uint64_t Recording::room() const {
    return most_wave_bytes / 2 - written_;
}

void Recording::fail(const char* reason) {
    if (error_.empty()) {
        error_ = reason;
    }
}

void Recording::silence(std::uint64_t samples) {
    silent_ += samples;
}

void Recording::write(std::span<const std::int16_t> samples) {
    if (samples.empty() || !error_.empty()) {
        return;
    }
    static constexpr std::array<std::int16_t, 1024> nothing{};
    if (silent_ > longest_written_silence) {
        written_ += std::min(silent_, room());
        file_.seekp(static_cast<std::streamoff>(wave_header_size + written_ * 2));
        silent_ = 0;
    }
    while (silent_ > 0) {
        const std::size_t count = static_cast<std::size_t>(std::min<std::uint64_t>(silent_, nothing.size()));
        put(std::span(nothing).first(count));
        silent_ -= count;
    }
    put(samples);
}

void Recording::put(std::span<const std::int16_t> samples) {
    const std::size_t count = static_cast<std::size_t>(std::min<std::uint64_t>(samples.size(), room()));
    std::array<char, 4096> bytes{};
    for (std::size_t begin = 0; begin < count; begin += bytes.size() / 2) {
        const std::size_t block = std::min(count - begin, bytes.size() / 2);
        for (std::size_t i = 0; i < block; ++i) {
            const auto sample = static_cast<std::uint16_t>(samples[begin + i]);
            bytes[2 * i] = static_cast<char>(sample & 0xFFU);
            bytes[2 * i + 1] = static_cast<char>(sample >> 8);
        }
        file_.write(bytes.data(), static_cast<std::streamsize>(block * 2));
    }
    written_ += count;
    if (count < samples.size()) {
        fail("the recording is as long as a wave file can be");
    }
    if (!file_) {
        fail("the recording could not be written on");
    }
}

void Recording::flush() {
    if (!file_.is_open() || !file_) {
        return;
    }
    if (silent_ > 0) {
        // The last sample is written for the file to be as long as its header says.
        static constexpr std::array<std::int16_t, 1> last{};
        --silent_;
        if (silent_ <= longest_written_silence || silent_ < room()) {
            write(last);
        } else {
            silent_ = 0;
            fail("the recording is as long as a wave file can be");
        }
    }
    const std::vector<std::uint8_t> header = waveHeader(mix_rate, static_cast<std::uint32_t>(written_ * 2));
    file_.seekp(0);
    file_.write(reinterpret_cast<const char*>(header.data()), static_cast<std::streamsize>(header.size()));
    file_.seekp(static_cast<std::streamoff>(wave_header_size + written_ * 2));
    file_.flush();
    if (!file_) {
        fail("the recording could not be written on");
    }
}

} // namespace agent::voice
