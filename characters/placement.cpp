#include "characters/placement.h"

#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

#include "characters/character_loading.h"
#include "characters/character_state.h"

namespace murmelix {

namespace {

// The places are worked out in 16-bit numbers; one that does not fit leaves the character where it is.
class Overflow : public std::overflow_error {
  public:
    Overflow() : std::overflow_error("a place on the screen lies beyond 16 bits") {}
};

std::int16_t checked(long long value) {
    if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max()) {
        throw Overflow();
    }
    return static_cast<std::int16_t>(value);
}

std::int16_t sum(std::int16_t a, std::int16_t b) {
    return checked(static_cast<long long>(a) + b);
}

std::int16_t difference(std::int16_t a, std::int16_t b) {
    return checked(static_cast<long long>(a) - b);
}

std::int16_t rounded(double value) {
    return checked(std::llrint(value)); // halves to even
}

struct Place {
    std::int16_t x, y;
};

// The conversation's window as it was when each of its values was first needed: eight characters that are arranged ask
// the Messenger once for all of them.
class SeenWindow {
  public:
    explicit SeenWindow(std::shared_ptr<platform::MessengerWindow> window) : window_(std::move(window)) {}

    std::int32_t Left() { return once(left_, &platform::MessengerWindow::Left); }
    std::int32_t Top() { return once(top_, &platform::MessengerWindow::Top); }
    std::int32_t Width() { return once(width_, &platform::MessengerWindow::Width); }
    std::int32_t Height() { return once(height_, &platform::MessengerWindow::Height); }

  private:
    template <class Read>
    std::int32_t once(std::optional<std::int32_t>& value, Read read) {
        if (!value) {
            value = ((*window_).*read)();
        }
        return *value;
    }

    std::shared_ptr<platform::MessengerWindow> window_;
    std::optional<std::int32_t> left_, top_, width_, height_;
};

std::optional<Place> placeBeside(SeenWindow& window, platform::AgentCharacter& character, std::int16_t slot,
                                 std::int16_t left, std::int16_t top) {
    const auto width = [&] { return checked(window.Width()); };
    const auto height = [&] { return checked(window.Height()); };
    const double half_character = character.Width() / 2.0;
    const std::int16_t character_height = character.Height();
    const double quarter_width = half_character / 2, half_character_height = character_height / 2.0;

    const auto above = [&] { return difference(top, character_height); };
    const auto at_mid_height = [&] { return rounded(top + height() / 2.0 - half_character_height); };
    const auto at_bottom = [&] {
        return rounded(sum(top, height()) - half_character_height + half_character_height / 2);
    };
    const auto at_left = [&] { return rounded(left - half_character); };
    const auto at_right = [&] { return rounded(sum(left, width()) - half_character); };
    const auto at_middle = [&] { return rounded(left + width() / 2.0 - half_character); };

    switch (slot) {
    case 0:
        return Place{at_left(), above()};
    case 1:
        return Place{at_right(), above()};
    case 2:
        return Place{at_middle(), above()};
    case 3:
        return Place{rounded(left - half_character - quarter_width), at_mid_height()};
    case 4:
        return Place{rounded(sum(left, width()) - half_character + quarter_width), at_mid_height()};
    case 5:
        return Place{at_left(), at_bottom()};
    case 6:
        return Place{at_right(), at_bottom()};
    case 7:
        return Place{at_middle(), at_bottom()};
    default:
        return std::nullopt;
    }
}

void moveToSlot(SeenWindow& window, platform::AgentCharacter& character, std::int16_t slot) {
    const std::int32_t left = window.Left(), top = window.Top();
    if (left < 0 || top < 0) { // minimised, or off the screen: the characters line up along its top edge
        character.MoveTo(checked((slot + 1LL) * character.Width()), 0);
    } else if (const auto place = placeBeside(window, character, slot, checked(left), checked(top))) {
        character.MoveTo(place->x, place->y);
    }
}

void place(SeenWindow& window, platform::AgentCharacter& character, std::int16_t slot) {
    try {
        platform::attempt([&] { moveToSlot(window, character, slot); });
    } catch (const Overflow&) {
    }
}

std::shared_ptr<platform::MessengerWindow> conversationWindow() {
    return characterHost.conversationWindow ? characterHost.conversationWindow() : nullptr;
}

} // namespace

void PlaceCharacter(platform::AgentCharacter& character, std::optional<std::int16_t> slot) {
    if (const auto window = conversationWindow()) {
        SeenWindow seen(window);
        place(seen, character, slot.value_or(static_cast<std::int16_t>(LoadedCharacters.Count())));
    }
}

void ReArrangeLoadedCharacterPositions() {
    const auto window = conversationWindow();
    if (!window) {
        return;
    }
    SeenWindow seen(window);
    std::int16_t slot = 0;
    for (const auto& character : charactersInLoadingOrder()) {
        if (conversationWindow() == window) { // not where an event has come meanwhile
            place(seen, *character, slot++);
        }
    }
}

void AddAutoHideBalloonFeatureToAllLoadedChars(bool auto_hide) {
    for (const auto& character : charactersInLoadingOrder()) {
        platform::attempt([&] { character->setBalloonStyle(BalloonStyleFor(character->BalloonStyle(), auto_hide)); });
    }
}

} // namespace murmelix
