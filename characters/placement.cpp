#include "characters/placement.h"

#include <cmath>
#include <limits>
#include <stdexcept>

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

std::optional<Place> placeBeside(platform::MessengerWindow& window, platform::AgentCharacter& character,
                                 std::int16_t slot, std::int16_t left, std::int16_t top) {
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

void moveToSlot(platform::MessengerWindow& window, platform::AgentCharacter& character, std::int16_t slot) {
    const std::int32_t left = window.Left(), top = window.Top();
    if (left < 0 || top < 0) { // minimised, or off the screen: the characters line up along its top edge
        character.MoveTo(checked((slot + 1LL) * character.Width()), 0);
    } else if (const auto place = placeBeside(window, character, slot, checked(left), checked(top))) {
        character.MoveTo(place->x, place->y);
    }
}

} // namespace

void PlaceCharacter(platform::AgentCharacter& character, std::optional<std::int16_t> slot) {
    const auto window = characterHost.conversationWindow ? characterHost.conversationWindow() : nullptr;
    if (!window) {
        return;
    }
    try {
        const auto own_slot = slot.value_or(static_cast<std::int16_t>(LoadedCharacters.Count()));
        platform::attempt([&] { moveToSlot(*window, character, own_slot); });
    } catch (const Overflow&) {
    }
}

void ReArrangeLoadedCharacterPositions() {
    std::int16_t slot = 0;
    for (const auto& character : charactersInLoadingOrder()) {
        PlaceCharacter(*character, slot++);
    }
}

void AddAutoHideBalloonFeatureToAllLoadedChars(bool auto_hide) {
    for (const auto& character : charactersInLoadingOrder()) {
        platform::attempt([&] { character->setBalloonStyle(BalloonStyleFor(character->BalloonStyle(), auto_hide)); });
    }
}

} // namespace murmelix
