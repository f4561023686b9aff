#include "companions/agent/settings/keys.h"

#include <algorithm>

#include "common/text.h"
#include "companions/agent/settings/settings_store.h"

namespace agent::settings {

namespace ui = murmelix::ui;

namespace {

constexpr std::uint32_t held_place = 0x10000, function_place = 0x100, other_place = 0x200;
constexpr int all_held = ui::shift_key | ui::control_key | ui::alt_key;

std::u16string takenByAnother(const ui::Shortcut& key) {
    return nameOf(key) + u" is used by another program, or by the system.";
}

// Without what marks its accelerator, and with which it ends.
std::u16string plain(const Deed& deed) {
    std::u16string text = murmelix::replaceAll(deed.caption, u"&", u"");
    text.pop_back();
    return text;
}

} // namespace

const std::array<Deed, 7> deeds{{
    {u"&Skip what is being said:", u"SkipKey", [](Listener& listener) { listener.skip(); }},
    {u"P&ause and go on:", u"PauseKey", [](Listener& listener) { listener.setPaused(!listener.paused()); }},
    {u"S&ilence all characters:", u"SilenceKey",
     [](Listener& listener) { listener.setAllSilenced(!listener.allSilenced()); }},
    {u"&Louder:", u"LouderKey", [](Listener& listener) { listener.setVolume(listener.volume() + volume_step); }},
    {u"&Quieter:", u"QuieterKey", [](Listener& listener) { listener.setVolume(listener.volume() - volume_step); }},
    {u"&Faster:", u"FasterKey", [](Listener& listener) { listener.setSpeed(listener.speed() + speed_step); }},
    {u"Sl&ower:", u"SlowerKey", [](Listener& listener) { listener.setSpeed(listener.speed() - speed_step); }},
}};

std::uint32_t numberOf(const ui::Shortcut& key) {
    const auto held = static_cast<std::uint32_t>(key.shift & all_held) * held_place;
    const auto number = static_cast<std::uint32_t>(key.key);
    if (!key) {
        return 0;
    }
    if (key.key == ui::Key::letter) {
        return held + key.letter;
    }
    const auto first = static_cast<std::uint32_t>(ui::Key::f1);
    return held + (number >= first ? function_place + number - first : other_place + number);
}

std::optional<ui::Shortcut> keyOf(std::uint32_t number) {
    const std::uint32_t held = number / held_place, code = number % held_place;
    if (held > all_held) {
        return std::nullopt;
    }
    ui::Shortcut key;
    const bool letter = (code >= u'A' && code <= u'Z') || (code >= u'0' && code <= u'9');
    if (letter) {
        key = {static_cast<char16_t>(code), static_cast<int>(held)};
    } else {
        const auto functions = static_cast<std::uint32_t>(ui::Key::f1),
                   end = static_cast<std::uint32_t>(ui::Key::letter);
        const bool function = code >= function_place && code < function_place + (end - functions);
        const bool other = code >= other_place && code < other_place + functions;
        if (!function && !other) {
            return std::nullopt;
        }
        const std::uint32_t index = function ? functions + code - function_place : code - other_place;
        key = {static_cast<ui::Key>(index), static_cast<int>(held)};
    }
    return ui::GlobalKey::canBe(key) ? std::optional(key) : std::nullopt;
}

Keys::Keys(Listener& listener) {
    for (std::size_t i = 0; i < deeds.size(); ++i) {
        taken_[i].Pressed = [&listener, act = deeds[i].act] { act(listener); };
        wanted_[i] = keyOf(readKey(deeds[i].kept_as)).value_or(ui::Shortcut());
    }
    setHeard(true);
}

void Keys::setHeard(bool heard) {
    heard_ = heard;
    for (std::size_t i = 0; i < deeds.size(); ++i) {
        const bool done = taken_[i].Set(heard ? wanted_[i] : ui::Shortcut());
        refused_[i] = done ? ui::Shortcut() : wanted_[i];
    }
}

std::u16string Keys::set(std::size_t deed, const ui::Shortcut& key) {
    if (key && !ui::GlobalKey::canBe(key)) {
        return u"A key for all programs has Ctrl or Alt with it, or is one of F1 to F12.";
    }
    for (std::size_t i = 0; i < deeds.size() && key; ++i) {
        if (i != deed && wanted_[i] == key) {
            return nameOf(key) + u" is set for \u201C" + plain(deeds[i]) + u"\u201D already.";
        }
    }
    if (!taken_.at(deed).Set(key)) {
        return takenByAnother(key);
    }
    if (!heard_) {
        taken_.at(deed).Set({});
    }
    wanted_.at(deed) = key;
    refused_.at(deed) = {};
    writeKey(deeds.at(deed).kept_as, numberOf(key));
    return {};
}

std::u16string Keys::problem() const {
    const auto found = std::ranges::find_if(refused_, [](const ui::Shortcut& key) { return bool(key); });
    return found == refused_.end() ? std::u16string() : takenByAnother(*found);
}

} // namespace agent::settings
