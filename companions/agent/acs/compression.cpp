#include "companions/agent/acs/compression.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

static_assert(std::endian::native == std::endian::little, "BitReader loads eight bytes at once");

namespace agent::acs {
namespace {

constexpr std::size_t closing_bytes = 6;
constexpr std::uint8_t closing_byte = 0xFF;
constexpr unsigned longest_length_code = 11; // bits

// How far back a copy reaches, in four ranges: `prefix_bits` say which (one bits up to a 0; the last has no 0).
struct DistanceRange {
    unsigned prefix_bits;
    unsigned value_bits;
    std::uint32_t first;
    std::uint32_t shortest_copy;
};
constexpr std::array<DistanceRange, 4> distance_ranges{
    {{1, 6, 1, 2}, {2, 9, 65, 2}, {3, 12, 577, 2}, {3, 20, 4673, 3}}};
constexpr std::uint32_t end_of_stream = (1U << 20) - 1; // this value in the last range
constexpr std::size_t longest_distance = 4673 + (1U << 20) - 2;
// 2^k − 1 more than the shortest copy, plus k bits, for k up to 11; the last range could copy one byte more.
constexpr std::size_t longest_copy = 2 + 2 * ((1U << longest_length_code) - 1);

constexpr std::uint32_t lowBits(std::uint64_t value, unsigned count) {
    return static_cast<std::uint32_t>(value & ((std::uint64_t{1} << count) - 1));
}

// Bits of a stream, lowest first. After refill() at least 56 can be taken, more than the 47 of the longest item; what
// lies behind the stream's end is 0, and overrun() tells that some of it was taken.
class BitReader {
  public:
    explicit BitReader(std::span<const std::uint8_t> bytes) : next_(bytes.data()), end_(next_ + bytes.size()) {}

    void refill() {
        if (end_ - next_ >= 8) {
            std::uint64_t more;
            std::memcpy(&more, next_, 8);
            bits_ |= more << count_;
            next_ += (63 - count_) >> 3;
            count_ |= 56;
            return;
        }
        for (; count_ <= 56; count_ += 8) {
            if (next_ != end_) {
                bits_ |= std::uint64_t{*next_++} << count_;
            } else {
                behind_end_ += 8;
            }
        }
    }
    std::uint64_t peek() const { return bits_; }
    void skip(unsigned count) {
        bits_ >>= count;
        count_ -= count;
    }
    std::uint32_t take(unsigned count) {
        const std::uint32_t value = lowBits(bits_, count);
        skip(count);
        return value;
    }
    bool overrun() const { return count_ < behind_end_; }

  private:
    const std::uint8_t* next_;
    const std::uint8_t* end_;
    std::uint64_t bits_ = 0;
    unsigned count_ = 0;
    std::size_t behind_end_ = 0;
};

class Nowhere {
  public:
    void literal(std::size_t, std::uint8_t) {}
    void copy(std::size_t, std::size_t, std::size_t) {}
};

class Memory {
  public:
    explicit Memory(std::uint8_t* bytes) : bytes_(bytes) {}
    void literal(std::size_t position, std::uint8_t byte) { bytes_[position] = byte; }
    void copy(std::size_t position, std::size_t distance, std::size_t length) {
        std::uint8_t* const to = bytes_ + position;
        const std::uint8_t* const from = to - distance;
        if (distance == 1) {
            std::memset(to, *from, length);
        } else if (distance >= length) {
            std::memcpy(to, from, length);
        } else {
            std::copy_n(from, distance, to); // a copy that overlaps its own output repeats it
            for (std::size_t i = distance; i < length; ++i) {
                to[i] = from[i];
            }
        }
    }

  private:
    std::uint8_t* bytes_;
};

template <typename Sink>
std::string_view run(std::span<const std::uint8_t> stream, std::size_t size, Sink sink) {
    if (stream.size() < 1 + closing_bytes) {
        return "is too short";
    }
    if (stream.front() != 0) {
        return "does not begin with a byte 0";
    }
    const auto closing = stream.last(closing_bytes);
    if (std::any_of(closing.begin(), closing.end(), [](std::uint8_t byte) { return byte != closing_byte; })) {
        return "does not end with six bytes 0xFF";
    }
    BitReader bits(stream.subspan(1));
    std::size_t produced = 0;
    while (true) {
        bits.refill();
        if (bits.take(1) == 0) {
            const auto byte = static_cast<std::uint8_t>(bits.take(8));
            if (bits.overrun()) {
                return "has no end mark";
            }
            if (produced == size) {
                return "gives more bytes than announced";
            }
            sink.literal(produced++, byte);
            continue;
        }
        const DistanceRange& range = distance_ranges[static_cast<unsigned>(std::min(std::countr_one(bits.peek()), 3))];
        bits.skip(range.prefix_bits);
        const std::uint32_t value = bits.take(range.value_bits);
        if (range.value_bits == 20 && value == end_of_stream) {
            if (bits.overrun()) {
                return "has no end mark";
            }
            return produced == size ? "" : "gives fewer bytes than announced";
        }
        const auto length_bits = static_cast<unsigned>(std::countr_one(bits.peek()));
        if (length_bits > longest_length_code) {
            return "has a copy of impossible length";
        }
        bits.skip(length_bits + 1);
        const std::size_t length = range.shortest_copy + ((std::size_t{1} << length_bits) - 1) + bits.take(length_bits);
        const std::size_t distance = range.first + value;
        if (bits.overrun()) {
            return "has no end mark";
        }
        if (distance > produced) {
            return "copies from before its start";
        }
        if (length > size - produced) {
            return "gives more bytes than announced";
        }
        sink.copy(produced, distance, length);
        produced += length;
    }
}

class BitWriter {
  public:
    explicit BitWriter(std::vector<std::uint8_t>& bytes) : bytes_(bytes) {}
    void put(std::uint64_t value, unsigned count) {
        bits_ |= value << count_;
        for (count_ += count; count_ >= 8; count_ -= 8) {
            bytes_.push_back(static_cast<std::uint8_t>(bits_));
            bits_ >>= 8;
        }
    }
    unsigned bitsInLastByte() const { return count_; }

  private:
    std::vector<std::uint8_t>& bytes_;
    std::uint64_t bits_ = 0;
    unsigned count_ = 0;
};

const DistanceRange& rangeOf(std::size_t distance) {
    return *std::find_if(distance_ranges.begin(), distance_ranges.end() - 1, [distance](const DistanceRange& range) {
        return distance < range.first + (std::size_t{1} << range.value_bits);
    });
}

// k of a copy that is `more` bytes longer than the shortest.
unsigned lengthBits(std::size_t more) {
    return static_cast<unsigned>(std::bit_width(more + 1)) - 1;
}

struct Match {
    std::size_t length = 0;
    std::size_t distance = 0;
    int gain = 0; // bits saved over literals
};

Match matchOf(std::size_t length, std::size_t distance) {
    const DistanceRange& range = rangeOf(distance);
    if (length < range.shortest_copy) {
        return {};
    }
    const unsigned cost = 1 + range.prefix_bits + range.value_bits + 1 + 2 * lengthBits(length - range.shortest_copy);
    return {length, distance, static_cast<int>(9 * length) - static_cast<int>(cost)};
}

// Finds earlier occurrences by a hash: the last one of the same two bytes, and chains of those of the same three.
class Matcher {
  public:
    explicit Matcher(std::span<const std::uint8_t> bytes)
        : bytes_(bytes), hash_bits_(std::clamp(static_cast<unsigned>(std::bit_width(bytes.size())), 8U, 18U)),
          last_of_two_(std::size_t{1} << hash_bits_, none), head_(std::size_t{1} << hash_bits_, none),
          previous_(bytes.size(), none) {}

    Match best(std::size_t position) const {
        Match result;
        const std::size_t left = std::min(bytes_.size() - position, longest_copy);
        if (left < 2) {
            return result;
        }
        const auto consider = [&](std::size_t candidate) {
            const Match match = matchOf(commonLength(candidate, position, left), position - candidate);
            if (match.gain > result.gain) {
                result = match;
            }
        };
        if (const std::uint32_t candidate = last_of_two_[hashOfTwo(position)]; candidate != none) {
            consider(candidate);
        }
        if (left < 3) {
            return result;
        }
        std::uint32_t candidate = head_[hashOfThree(position)];
        for (int tries = longest_chain; tries > 0 && candidate != none && position - candidate <= longest_distance &&
                                        result.length < std::min(left, long_enough);
             --tries) {
            // A candidate farther away is worth it only when it is longer.
            if (result.length == 0 || bytes_[candidate + result.length] == bytes_[position + result.length]) {
                consider(candidate);
            }
            candidate = previous_[candidate];
        }
        return result;
    }

    void insert(std::size_t position) {
        const auto place = static_cast<std::uint32_t>(position);
        if (position + 2 <= bytes_.size()) {
            last_of_two_[hashOfTwo(position)] = place;
        }
        if (position + 3 <= bytes_.size()) {
            std::uint32_t& head = head_[hashOfThree(position)];
            previous_[position] = head;
            head = place;
        }
    }

    // A copy this long is taken as it comes: it bounds the work for each byte.
    static constexpr std::size_t long_enough = 192;

  private:
    static constexpr std::uint32_t none = 0xFFFFFFFF;
    static constexpr int longest_chain = 128;

    std::size_t hash(std::uint32_t bytes) const { return (bytes * 2654435761U) >> (32U - hash_bits_); }
    std::size_t hashOfTwo(std::size_t position) const {
        return hash(bytes_[position] | static_cast<std::uint32_t>(bytes_[position + 1] << 8U));
    }
    std::size_t hashOfThree(std::size_t position) const {
        return hash(bytes_[position] | static_cast<std::uint32_t>(bytes_[position + 1] << 8U) |
                    static_cast<std::uint32_t>(bytes_[position + 2] << 16U));
    }
    std::size_t commonLength(std::size_t a, std::size_t b, std::size_t at_most) const {
        const auto first = bytes_.begin() + static_cast<std::ptrdiff_t>(b);
        const auto end = first + static_cast<std::ptrdiff_t>(at_most);
        const auto different = std::mismatch(first, end, bytes_.begin() + static_cast<std::ptrdiff_t>(a)).first;
        return static_cast<std::size_t>(different - first);
    }

    std::span<const std::uint8_t> bytes_;
    unsigned hash_bits_;
    std::vector<std::uint32_t> last_of_two_, head_, previous_;
};

void putCopy(BitWriter& bits, const Match& match) {
    const DistanceRange& range = rangeOf(match.distance);
    bits.put(1, 1);
    // One bits for the ranges passed; a 0 follows where the prefix is not full.
    const auto passed = static_cast<unsigned>(&range - distance_ranges.data());
    bits.put((1U << passed) - 1, range.prefix_bits);
    bits.put(match.distance - range.first, range.value_bits);
    const std::size_t more = match.length - range.shortest_copy;
    const unsigned length_bits = lengthBits(more);
    bits.put((1U << length_bits) - 1, length_bits + 1);
    bits.put(more + 1 - (std::size_t{1} << length_bits), length_bits);
}

} // namespace

std::string_view streamFault(std::span<const std::uint8_t> stream, std::size_t size) {
    return run(stream, size, Nowhere());
}

std::string_view decompress(std::span<const std::uint8_t> stream, std::span<std::uint8_t> output) {
    return run(stream, output.size(), Memory(output.data()));
}

std::vector<std::uint8_t> compress(std::span<const std::uint8_t> bytes) {
    std::vector<std::uint8_t> stream{0};
    BitWriter bits(stream);
    Matcher matcher(bytes);
    Match match = matcher.best(0);
    for (std::size_t position = 0; position < bytes.size();) {
        matcher.insert(position);
        // The copy waits where the one that starts a byte later saves more.
        Match later;
        if (match.gain > 0 && match.length < Matcher::long_enough && position + 1 < bytes.size()) {
            later = matcher.best(position + 1);
        }
        if (match.gain <= 0 || later.gain > match.gain) {
            bits.put(std::uint64_t{bytes[position]} << 1, 9);
            ++position;
            match = later.gain > 0 ? later : matcher.best(position);
            continue;
        }
        putCopy(bits, match);
        for (std::size_t end = position + match.length; ++position < end;) {
            matcher.insert(position);
        }
        match = matcher.best(position);
    }
    if (bits.bitsInLastByte() != 0) {
        const unsigned left = 8 - bits.bitsInLastByte();
        bits.put((1U << left) - 1, left);
    }
    stream.insert(stream.end(), closing_bytes, closing_byte);
    return stream;
}

} // namespace agent::acs
