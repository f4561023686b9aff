#include "app/settings.h"

#include <array>
#include <bit>
#include <variant>

#include "app/shell_state.h"
#include "common/ansi.h"
#include "common/text.h"

namespace murmelix {

using platform::RegistryKey;

std::int16_t AutoHideIdleChar, AutoAttachChar, AutoMinimize, AutoUpdate, AutoIgnoreChars, AutoCorrectText,
    AutoHideBalloon, PlayReadEmoticon, ShowMinimizeFrm, ShowTipFrm, ShowEmotTipFrm;
std::u16string IgnoredChars, CurrentSoundScheme;

namespace {

struct Setting {
    const char16_t* name;
    const char16_t* default_text;
    std::variant<std::int16_t*, std::u16string*> memory;
};

const std::array<Setting, 13> settings{{
    {u"AutoHideIdleChar", u"0", &AutoHideIdleChar},
    {u"AutoAttachChar", u"1", &AutoAttachChar},
    {u"AutoMinimize", u"0", &AutoMinimize},
    {u"AutoUpdate", u"1", &AutoUpdate},
    {u"AutoIgnoreChars", u"1", &AutoIgnoreChars},
    {u"IgnoredChars", u"^#$/\\()", &IgnoredChars},
    {u"AutoCorrectText", u"1", &AutoCorrectText},
    {u"AutoHideBalloon", u"1", &AutoHideBalloon},
    {u"PlayReadEmoticon", u"1", &PlayReadEmoticon},
    {u"CurrentSoundScheme", u"default", &CurrentSoundScheme},
    {u"ShowMinimizeFrm", u"1", &ShowMinimizeFrm},
    {u"ShowTipFrm", u"1", &ShowTipFrm},
    {u"ShowEmotTipFrm", u"1", &ShowEmotTipFrm},
}};

std::u16string textValue(const RegistryKey& key, const std::string& name, std::uint32_t size) {
    std::string buffer(size, ' ');
    if (!key.query(name, buffer)) {
        return {};
    }
    return fromAnsi(std::string_view(buffer).substr(0, buffer.find('\0')));
}

std::u16string binaryValue(const RegistryKey& key, const std::string& name, std::uint32_t size) {
    std::string buffer(size, '\0');
    if (size < 2 || !key.query(name, buffer)) {
        return {};
    }
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(buffer[at]); };
    return toText(std::bit_cast<std::int16_t>(static_cast<std::uint16_t>(byte(0) | byte(1) << 8)));
}

} // namespace

std::u16string SettingsKeyPathFor(platform::MessengerApi& messenger) {
    bool signed_in = true;
    for (const std::int32_t signed_out_status : {1, 0x100, 0x200, 0x300, 0x400}) {
        const bool known = platform::attempt([&] { signed_in &= messenger.MyStatus() != signed_out_status; });
        signed_in &= known;
    }
    std::u16string path;
    if (signed_in) {
        platform::attempt([&] { path = u"Software\\Murmelix\\" + messenger.MySigninName(); });
    }
    return path;
}

std::u16string ReadRegistryValue(platform::Hive hive, const std::u16string& subkey, const std::u16string& name) {
    const auto key = RegistryKey::open(hive, toAnsi(subkey));
    if (!key) {
        return {};
    }
    const std::string ansi_name = toAnsi(name);
    const auto info = key->query(ansi_name);
    if (!info) {
        return {};
    }
    switch (info->type) {
    case platform::reg_sz:
        return textValue(*key, ansi_name, info->size);
    case platform::reg_binary:
        return binaryValue(*key, ansi_name, info->size);
    default:
        return {};
    }
}

void WriteRegistryValue(platform::Hive hive, const std::u16string& subkey, const std::u16string& name,
                        const std::u16string& text) {
    if (subkey.empty()) {
        return;
    }
    if (const auto key = RegistryKey::create(hive, toAnsi(subkey))) {
        key->set(toAnsi(name), platform::reg_sz, toAnsi(text));
    }
}

void LoadSettings() {
    for (const Setting& setting : settings) {
        std::u16string text = ReadRegistryValue(platform::Hive::current_user, SettingsKeyPath, setting.name);
        if (text.empty()) {
            text = setting.default_text;
            WriteRegistryValue(platform::Hive::current_user, SettingsKeyPath, setting.name, text);
        }
        if (const auto flag = std::get_if<std::int16_t*>(&setting.memory)) {
            **flag = toInt16(leadingNumber(text));
        } else {
            *std::get<std::u16string*>(setting.memory) = std::move(text);
        }
    }
}

} // namespace murmelix
