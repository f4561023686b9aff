// Lines that a server sends as belonging together.
#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

#include "companions/messenger/irc/line.h"

namespace messenger_client::irc {

// Batches that are open at a time: servers nest two or three. Of more the oldest is taken for closed.
inline constexpr std::size_t most_batches = 50;
// Bytes of a batch's name: servers have some ten.
inline constexpr std::size_t longest_batch_name = 100;

class Batches {
  public:
    // A line of it: `BATCH +name type parameters…`, `BATCH -name`, perhaps itself in a batch.
    void read(const Message& message) {
        const std::string_view name = message.parameter(0);
        if (name.size() < 2 || name.size() > longest_batch_name) {
            return;
        }
        if (name.starts_with('-')) {
            std::erase_if(open_, [&](const Batch& batch) { return batch.name == name.substr(1); });
        } else if (name.starts_with('+')) {
            const std::string_view type = message.parameter(1);
            const bool history = type == "chathistory" || type == "znc.in/playback" || isHistory(message);
            open_.push_back({std::string(name.substr(1)), history});
            if (open_.size() > most_batches) {
                open_.pop_front();
            }
        }
    }

    // Whether a line is in a batch of what was said before.
    bool isHistory(const Message& message) const {
        if (open_.empty() || !message.hasTag("batch")) {
            return false;
        }
        const std::string name = message.tag("batch");
        return std::any_of(open_.begin(), open_.end(),
                           [&](const Batch& batch) { return batch.history && batch.name == name; });
    }

    std::size_t size() const { return open_.size(); }
    void clear() { open_.clear(); }

  private:
    struct Batch {
        std::string name;
        bool history;
    };

    std::deque<Batch> open_;
};

} // namespace messenger_client::irc
