// A .wav file that grows while the server runs.
#pragma once

#include <cstdint>
#include <fstream>
#include <span>
#include <string>

namespace agent::voice {

// Mono, 16 bits, at the rate of all mixing. What is said to it is kept in order: samples and stretches of silence. It
// ends, with an error, where the file cannot be written or reaches the most a .wav file holds.
class Recording {
  public:
    // A file that was there is replaced.
    explicit Recording(const std::u16string& path);
    ~Recording(); // as after flush
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    void write(std::span<const std::int16_t> samples);
    // Long silences are left out of the file's middle by seeking, not written.
    void silence(std::uint64_t samples);
    // The file on disk is whole up to here.
    void flush();
    const std::string& error() const { return error_; }

  private:
    void put(std::span<const std::int16_t> samples);
    std::uint64_t room() const;
    void fail(const char* reason);

    std::ofstream file_;
    std::uint64_t written_ = 0; // samples
    std::uint64_t silent_ = 0;  // samples of silence behind them
    std::string error_;
};

} // namespace agent::voice
