#include "companions/messenger/reading/emoji_table.h"

namespace messenger_client::reading {

namespace {

// clang-format off
constexpr ActedEmoji acted[] = {
    {u":)", u"🙂 😊 ☺ 😌 🙃 😺 🫡 😸 🤓"},
    {u":D", u"😀 😃 😄 😁 😆 😅 🤩"},
    {u"(lol)", u"😂 🤣 😹"},
    {u"(haa)", u"🤭 😏 😼"},
    {u";)", u"😉"},
    {u":p", u"😛 😜 😝 🤪 😋 👅"},
    {u":O", u"😮 😯 😲 😱 😨 😧 😦 🤯 🙀 😰 🫢 ‼ ❗"},
    {u"(ohh)", u"🥹 🥺 😻 😍"},
    {u"(H)", u"😎 🤠 🕶 🥸"},
    {u":@", u"😠 😡 🤬 😤 😾 💢 🙎"},
    {u":S", u"😕 😖 🥴 😵 🤔 🤨 🧐 😵‍💫 🫠"},
    {u":$", u"😳 🫣 🙈"},
    {u":(", u"🙁 ☹ 😞 😟 😣 😩 😫 😥 😓 🙍 🫥"},
    {u":'(", u"😢 😭 😿 🥲"},
    {u":|", u"😐 😑 😶 🫤 😒 🙄 😬 😶‍🌫"},
    {u"(sigh)", u"😮‍💨 😔"},
    {u"(sniff)", u"🤧 🤒 😷"},
    {u"(slap)", u"🤦 👊 🤛 🤜"},
    {u"(run)", u"🏃 💨 👟"},
    {u"(whistle)", u"😗"},
    {u"(boo)", u"👻 🎃"},
    {u"(a)", u"😇 👼"},
    {u"(6)", u"😈 👿"},
    {u"(L)", u"❤ ♥ 💕 💖 💗 💓 💞 💘 💝 💟 ❣ 💙 💚 💛 🧡 💜 🖤 🤍 🤎 🩷 🩵 🩶 🥰 🫶 💑 ❤‍🔥 ❤‍🩹 🫰 💌"},
    {u"(u)", u"💔"},
    {u"(k)", u"💋 😘 😙 😚 😽 💏 👄 🫦"},
    {u"({)", u"🫂"},
    {u"(})", u"🤗"},
    {u"(y)", u"👍 👏 🙌 👌 💯 ✅ ✔ ☑ 🏆 🥇"},
    {u"(n)", u"👎 🙅 ❌ ✖ 🚫"},
    {u"(b)", u"🍺 🍻"},
    {u"(d)", u"🍸 🍹 🍷 🥂 🍾 🥃"},
    {u"(c)", u"☕ 🍵 🫖"},
    {u"(^)", u"🎂 🍰 🧁"},
    {u"(birthday)", u"🎉 🎊 🥳 🎈 🪅"},
    {u"(g)", u"🎁 🎀"},
    {u"(f)", u"🌹 🌷 🌸 🌺 🌻 🌼 💐 🏵 💮 🪷 🪻"},
    {u"(w)", u"🥀"},
    {u"(S)", u"😴 💤 😪 🥱 🛌"},
    {u"(@)", u"🐱 🐈 🐈‍⬛"},
    {u"(&)", u"🐶 🐕 🐩 🦮 🐕‍🦺"},
    {u":[", u"🦇 🧛"},
    {u"(*)", u"⭐ 🌟 ✨ 💫 🌠 ✴ ❇"},
    {u"(#)", u"☀ 🌞 🌅 🌄 🌇"},
    {u"(r)", u"🌈 🏳‍🌈"},
    {u"(8)", u"🎵 🎶 🎼 🎤 🎧 🎷 🎸 🎹 🎺 🎻"},
    {u"(~)", u"🎥 🎞 🎬 📽 📹 🎦 📼"},
    {u"(p)", u"📷 📸 🤳"},
    {u"(e)", u"✉ 📧 📨 📩 📬 📫"},
    {u"(t)", u"📞 ☎ 📱 📲 🤙"},
    {u"(i)", u"💡"},
    {u"(o)", u"⏰ ⏱ ⏲ 🕰 ⌚ ⌛ ⏳ "
              u"🕐 🕑 🕒 🕓 🕔 🕕 🕖 🕗 🕘 🕙 🕚 🕛 🕜 🕝 🕞 🕟 🕠 🕡 🕢 🕣 🕤 🕥 🕦 🕧"},
    {u"(m)", u"👥 👤"},
    {u"(x)", u"👧 👩"},
    {u"(z)", u"👦 👨"},
    {u"(%)", u"⛓ 🔗 ⛓‍💥"},
};

constexpr std::u16string_view named[] = {
    u"🍕 pizza",
};

constexpr std::u16string_view country_list = u"DE Germany";
// clang-format on

} // namespace

std::span<const ActedEmoji> actedEmoji() {
    return acted;
}

std::span<const std::u16string_view> namedEmoji() {
    return named;
}

std::u16string_view countries() {
    return country_list;
}

} // namespace messenger_client::reading
