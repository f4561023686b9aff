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
constexpr DWORD longest_wait = 1000;   // ms without a block played: the device plays nothing any more

class Event {
  public:
    Event() : event_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}
    ~Event() {
        if (event_ != nullptr) {
            CloseHandle(event_);
        }
    }
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;
    HANDLE get() const { return event_; }

  private:
    HANDLE event_;
};

class WaveOut final : public Device {
  public:
    WaveOut() = default;
    ~WaveOut() override { WaveOut::close(); }
    WaveOut(const WaveOut&) = delete;
    WaveOut& operator=(const WaveOut&) = delete;

    bool open() override {
        WAVEFORMATEX format{};
        format.wFormatTag = WAVE_FORMAT_PCM;
        format.nChannels = 1;
        format.nSamplesPerSec = mix_rate;
        format.nAvgBytesPerSec = mix_rate * 2;
        format.nBlockAlign = 2;
        format.wBitsPerSample = 16;
        if (played_.get() == nullptr ||
            waveOutOpen(&device_, WAVE_MAPPER, &format, reinterpret_cast<DWORD_PTR>(played_.get()), 0,
                        CALLBACK_EVENT) != MMSYSERR_NOERROR) {
            device_ = nullptr;
        }
        return device_ != nullptr;
    }

    bool write(std::span<const std::int16_t> samples) override {
        while (!samples.empty()) {
            Block* const block = freeBlock();
            const std::size_t count = std::min(samples.size(), block_samples);
            if (block == nullptr || !queue(*block, samples.first(count))) {
                return false;
            }
            samples = samples.subspan(count);
        }
        return true;
    }

    void close() override {
        if (device_ == nullptr) {
            return;
        }
        waveOutReset(device_);
        for (Block& block : blocks_) {
            if ((block.header.dwFlags & WHDR_PREPARED) != 0) {
                waveOutUnprepareHeader(device_, &block.header, sizeof block.header);
            }
            block.header = {};
        }
        waveOutClose(device_);
        device_ = nullptr;
    }

  private:
    struct Block {
        WAVEHDR header{};
        std::array<std::int16_t, block_samples> samples{};
    };

    // Waits for one; null when the device plays nothing.
    Block* freeBlock() {
        for (;;) {
            const auto block = std::ranges::find_if(
                blocks_, [](const Block& candidate) { return (candidate.header.dwFlags & WHDR_INQUEUE) == 0; });
            if (block != blocks_.end()) {
                return &*block;
            }
            if (WaitForSingleObject(played_.get(), longest_wait) != WAIT_OBJECT_0) {
                return nullptr;
            }
        }
    }

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

    const Event played_; // set with every block that was played
    HWAVEOUT device_ = nullptr;
    std::array<Block, most_blocks> blocks_;
};

} // namespace

std::unique_ptr<Sink> makeSink() {
    if (waveOutGetNumDevs() == 0) {
        return nullptr;
    }
    return std::make_unique<Feeder>(std::make_unique<WaveOut>());
}

} // namespace agent::voice
