#include "ui/types.h"

#include <array>
#include <utility>

namespace murmelix::ui {

namespace {

constexpr std::array<std::pair<Key, const char16_t*>, 26> key_names{
    {{Key::tab, u"Tab"},      {Key::enter, u"Enter"},    {Key::escape, u"Esc"},  {Key::up, u"Up"},
     {Key::down, u"Down"},    {Key::left, u"Left"},      {Key::right, u"Right"}, {Key::space, u"Space"},
     {Key::insert, u"Ins"},   {Key::del, u"Del"},        {Key::home, u"Home"},   {Key::end, u"End"},
     {Key::page_up, u"PgUp"}, {Key::page_down, u"PgDn"}, {Key::f1, u"F1"},       {Key::f2, u"F2"},
     {Key::f3, u"F3"},        {Key::f4, u"F4"},          {Key::f5, u"F5"},       {Key::f6, u"F6"},
     {Key::f7, u"F7"},        {Key::f8, u"F8"},          {Key::f9, u"F9"},       {Key::f10, u"F10"},
     {Key::f11, u"F11"},      {Key::f12, u"F12"}}};

} // namespace

std::u16string nameOf(const Shortcut& shortcut) {
    std::u16string name;
    for (const auto& [held, prefix] : {std::pair{control_key, u"Ctrl+"}, {alt_key, u"Alt+"}, {shift_key, u"Shift+"}}) {
        if (shortcut.shift & held) {
            name += prefix;
        }
    }
    if (shortcut.key == Key::letter) {
        return name + shortcut.letter;
    }
    for (const auto& [key, of_key] : key_names) {
        if (key == shortcut.key) {
            return name + of_key;
        }
    }
    return {};
}

} // namespace murmelix::ui
