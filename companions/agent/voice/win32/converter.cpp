#include <windows.h>

#include <mmreg.h>
#include <mmsystem.h>

#include <msacm.h>

#include <algorithm>

#include "companions/agent/voice/encoded.h"

namespace agent::voice {

namespace {

constexpr std::size_t slice_bytes = 65536; // converted at once, in whole blocks

class Stream {
  public:
    explicit Stream(const EncodedFormat& format) {
        std::vector<std::uint8_t> from = format.description();
        WAVEFORMATEX to{};
        to.wFormatTag = WAVE_FORMAT_PCM;
        to.nChannels = static_cast<WORD>(format.channels);
        to.nSamplesPerSec = format.rate;
        to.wBitsPerSample = 16;
        to.nBlockAlign = static_cast<WORD>(2 * format.channels);
        to.nAvgBytesPerSec = format.rate * to.nBlockAlign;
        if (acmStreamOpen(&stream_, nullptr, reinterpret_cast<WAVEFORMATEX*>(from.data()), &to, nullptr, 0, 0,
                          ACM_STREAMOPENF_NONREALTIME) != MMSYSERR_NOERROR) {
            stream_ = nullptr;
        }
    }
    ~Stream() {
        if (stream_ != nullptr) {
            acmStreamClose(stream_, 0);
        }
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    bool open() const { return stream_ != nullptr; }

    // Fills `to` from the start; the number of samples, or nothing where it fails.
    std::optional<std::size_t> convert(std::span<std::uint8_t> from, std::span<std::int16_t> to, DWORD flags) {
        ACMSTREAMHEADER header{};
        header.cbStruct = sizeof header;
        header.pbSrc = from.data();
        header.cbSrcLength = static_cast<DWORD>(from.size());
        header.pbDst = reinterpret_cast<BYTE*>(to.data());
        header.cbDstLength = static_cast<DWORD>(to.size_bytes());
        if (acmStreamPrepareHeader(stream_, &header, 0) != MMSYSERR_NOERROR) {
            return std::nullopt;
        }
        const bool done = acmStreamConvert(stream_, &header, flags) == MMSYSERR_NOERROR &&
                          header.cbSrcLengthUsed == from.size() && header.cbDstLengthUsed <= to.size_bytes();
        const std::size_t samples = header.cbDstLengthUsed / sizeof(std::int16_t);
        acmStreamUnprepareHeader(stream_, &header, 0);
        return done ? std::optional(samples) : std::nullopt;
    }

  private:
    HACMSTREAM stream_ = nullptr;
};

} // namespace

bool decode(const EncodedFormat& format, std::span<const std::uint8_t> blocks,
            const std::function<void(std::span<const std::int16_t>)>& made, std::string& error) {
    Stream stream(format);
    if (!stream.open()) {
        error = "the system has no converter for the sound's format";
        return false;
    }
    const std::size_t at_once = std::max<std::size_t>(1, slice_bytes / format.block);
    std::vector<std::uint8_t> from;
    std::vector<std::int16_t> to(at_once * format.samples_per_block * format.channels);
    for (DWORD begin = ACM_STREAMCONVERTF_START; !blocks.empty(); begin = 0) {
        const auto slice = blocks.first(std::min(blocks.size(), at_once * format.block));
        from.assign(slice.begin(), slice.end());
        const std::optional<std::size_t> samples = stream.convert(from, to, ACM_STREAMCONVERTF_BLOCKALIGN | begin);
        if (!samples) {
            error = "the system's converter refuses the sound";
            return false;
        }
        made(std::span(to).first(*samples));
        blocks = blocks.subspan(slice.size());
    }
    return true;
}

} // namespace agent::voice
