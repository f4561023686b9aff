// A fuzz target's input as a sequence of choices and texts. Behind its end all numbers are 0 and all texts are empty.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "common/text.h"

class Bytes {
  public:
    Bytes(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

    bool empty() const { return rest_.empty(); }
    std::uint8_t byte() {
        const std::string_view one = take(1);
        return one.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(one[0]);
    }
    std::uint32_t number() {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            value = value << 8 | byte();
        }
        return value;
    }
    std::string_view take(std::size_t size) {
        const std::string_view taken = rest_.substr(0, size);
        rest_.remove_prefix(taken.size());
        return taken;
    }
    // Up to the next such byte, which is taken as well.
    std::string_view until(char end) {
        const std::string_view taken = take(std::min(rest_.find(end), rest_.size()));
        take(1);
        return taken;
    }
    std::string_view all() { return take(rest_.size()); }

    // Any units at all where `raw`, else the text that UTF-8 stands for.
    static std::u16string text(std::string_view bytes, bool raw) {
        if (!raw) {
            return murmelix::fromUtf8(bytes);
        }
        std::u16string units;
        for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
            units.push_back(static_cast<char16_t>(static_cast<std::uint8_t>(bytes[at]) |
                                                  static_cast<std::uint8_t>(bytes[at + 1]) << 8));
        }
        return units;
    }

  private:
    std::string_view rest_;
};
