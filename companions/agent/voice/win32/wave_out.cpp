#include <algorithm>
#include <array>

#include <windows.h>

#include <mmsystem.h>

#include "companions/agent/voice/sink.h"
#include "companions/agent/voice/wave.h"

namespace agent::voice {

namespace {

constexpr std::size_t block_samples = 1024;
constexpr std::size_t most_blocks = 8; // about 370 ms

class WaveOut : public Sink {
  public:
    // Throws nothing; `good` tells.
    WaveOut() {
        WAVEFORMATEX format{};
        format.wFormatTag = WAVE_FORMAT_PCM;
        format.nChannels = 1;
        format.nSamplesPerSec = mix_rate;
        format.nAvgBytesPerSec = mix_rate * 2;
        format.nBlockAlign = 2;
        format.wBitsPerSample = 16;
        if (waveOutOpen(&device_, WAVE_MAPPER, &format, 0, 0, CALLBACK_NULL) != MMSYSERR_NOERROR) {
            device_ = nullptr;
        }
    }
    ~WaveOut() override {
        if (device_ == nullptr) {
            return;
        }
        waveOutReset(device_);
        for (Block& block : blocks_) {
            if ((block.header.dwFlags & WHDR_PREPARED) != 0) {
                waveOutUnprepareHeader(device_, &block.header, sizeof block.header);
            }
        }
        waveOutClose(device_);
    }
    WaveOut(const WaveOut&) = delete;
    WaveOut& operator=(const WaveOut&) = delete;
    bool good() const { return device_ != nullptr; }

    bool write(std::span<const std::int16_t> samples) override {
        while (!samples.empty()) {
            const auto block = std::find_if(blocks_.begin(), blocks_.end(), [](const Block& candidate) {
                return (candidate.header.dwFlags & WHDR_INQUEUE) == 0;
            });
            // The device plays a little slower than the clock, or not at all: what does not fit is left out.
            if (block == blocks_.end()) {
                return ++refused_ < most_refused;
            }
            const std::size_t count = std::min(samples.size(), block->samples.size());
            if (!queue(*block, samples.first(count))) {
                return false;
            }
            samples = samples.subspan(count);
        }
        refused_ = 0;
        return true;
    }

  private:
    struct Block {
        WAVEHDR header{};
        std::array<std::int16_t, block_samples> samples{};
    };
    // Blocks in a row that found no room: some seconds in which the device played nothing.
    static constexpr int most_refused = 500;

    bool queue(Block& block, std::span<const std::int16_t> samples) {
        if ((block.header.dwFlags & WHDR_PREPARED) != 0) {
            waveOutUnprepareHeader(device_, &block.header, sizeof block.header);
        }
        std::copy(samples.begin(), samples.end(), block.samples.begin());
        block.header = {};
        block.header.lpData = reinterpret_cast<LPSTR>(block.samples.data());
        block.header.dwBufferLength = static_cast<DWORD>(samples.size_bytes());
        return waveOutPrepareHeader(device_, &block.header, sizeof block.header) == MMSYSERR_NOERROR &&
               waveOutWrite(device_, &block.header, sizeof block.header) == MMSYSERR_NOERROR;
    }

    HWAVEOUT device_ = nullptr;
    std::array<Block, most_blocks> blocks_;
    int refused_ = 0;
};

} // namespace

std::unique_ptr<Sink> makeSink() {
    if (waveOutGetNumDevs() == 0) {
        return nullptr;
    }
    auto device = std::make_unique<WaveOut>();
    if (!device->good()) {
        return nullptr;
    }
    return device;
}

} // namespace agent::voice
