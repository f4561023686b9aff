// Keys that are heard whichever program has the keyboard, for what a listener does most. None is taken until the user
// sets it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "companions/agent/settings/listener.h"
#include "ui/global_key.h"

namespace agent::settings {

struct Deed {
    const char16_t* caption; // with its accelerator on the page
    const char16_t* kept_as; // the name of a value, see keptKey
    void (*act)(Listener& listener);
};
inline constexpr int volume_step = 10, speed_step = 10; // percent, of one press
extern const std::array<Deed, 7> deeds;
enum DeedIndex : std::size_t { skip_deed, pause_deed, silence_deed };

// A key as one number of the store: its ShiftKeys times 0x10000, and the letter or digit itself or 0x100 + the number
// of a function key, 0x200 + that of another one. Nothing for a number that is no key which can be heard everywhere.
std::uint32_t numberOf(const murmelix::ui::Shortcut& key);
std::optional<murmelix::ui::Shortcut> keyOf(std::uint32_t number);

class Keys {
  public:
    // Takes those that were kept.
    explicit Keys(Listener& listener);
    Keys(const Keys&) = delete;
    Keys& operator=(const Keys&) = delete;

    // What the user has set; it need not be heard, see problem.
    const murmelix::ui::Shortcut& key(std::size_t deed) const { return wanted_.at(deed); }
    // Kept where it could be taken, or is none; else all stays as it was, and the result is a sentence that tells why.
    std::u16string set(std::size_t deed, const murmelix::ui::Shortcut& key);
    // While the user sets one, none is heard: it is to be told by its field.
    void setHeard(bool heard);
    // A sentence about a key that was kept and could not be taken; empty where all are heard.
    std::u16string problem() const;

  private:
    bool heard_ = true;
    std::array<murmelix::ui::Shortcut, std::tuple_size_v<decltype(deeds)>> wanted_, refused_;
    std::array<murmelix::ui::GlobalKey, std::tuple_size_v<decltype(deeds)>> taken_;
};

} // namespace agent::settings
