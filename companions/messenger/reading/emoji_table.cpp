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
    {u":O", u"😮 😯 😲 😱 😨 😧 😦 🤯 🙀 😰 🫢"},
    {u"(ohh)", u"🥹 🥺"},
    {u"(H)", u"😎 🤠 🕶 🥸"},
    {u":@", u"😠 😡 🤬 😤 😾 💢 🙎"},
    {u":S", u"😕 😖 🥴 😵 🤔 🤨 🧐 😵‍💫 🫠"},
    {u":$", u"😳 🫣 🙈"},
    {u":(", u"🙁 ☹ 😞 😟 😣 😩 😫 😥 😓 🙍 🫥"},
    {u":'(", u"😢 😭 😿 🥲"},
    {u":|", u"😐 😑 😶 🫤 😒 🙄 😬 😶‍🌫"},
    {u"(sigh)", u"😮‍💨 😔"},
    {u"(sniff)", u"🤧 🤒 😷"},
    {u"(slap)", u"🤦 👊"},
    {u"(run)", u"🏃 💨"},
    {u"(whistle)", u"😗"},
    {u"(boo)", u"👻 🎃"},
    {u"(a)", u"😇 👼"},
    {u"(6)", u"😈 👿"},
    {u"(L)", u"❤ ♥ 💕 💖 💗 💓 💞 💘 💝 💟 ❣ 💙 💚 💛 🧡 💜 🖤 🤍 🤎 🩷 🩵 🩶 🥰 😍 😻 🫶 💑 ❤‍🔥 ❤‍🩹 🫰 💌"},
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
    u"‼ exclamation mark, ⁉ surprised question, ™ trade mark, ℹ information, ↔ left and right, "
    u"↕ up and down, ↖ up left, ↗ up right, ↘ down right, ↙ down left, ↩ arrow back, ↪ arrow on, "
    u"⌨ keyboard, ⏏ eject, ⏩ fast forward, ⏪ rewind, ⏫ fast up, ⏬ fast down, ⏭ next, "
    u"⏮ previous, ⏯ play or pause, ⏸ pause, ⏹ stop, ⏺ record, Ⓜ metro sign, ▪ small black square, "
    u"▫ small white square, ▶ play, ◀ play backwards, ◻ white square, ◼ black square, "
    u"◽ white square, ◾ black square",
    u"☁ cloud, ☂ umbrella, ☃ snowman, ☄ comet, ☔ umbrella in the rain, ☘ shamrock, ☝ finger up, "
    u"☠ skull and crossbones, ☢ radioactive, ☣ biohazard, ☦ orthodox cross, ☪ star and crescent, "
    u"☮ peace sign, ☯ yin and yang, ☸ wheel of dharma, ♀ female sign, ♂ male sign, ♈ Aries, "
    u"♉ Taurus, ♊ Gemini, ♋ Cancer, ♌ Leo, ♍ Virgo, ♎ Libra, ♏ Scorpio, ♐ Sagittarius, "
    u"♑ Capricorn, ♒ Aquarius, ♓ Pisces, ⛎ Ophiuchus",
    u"♟ chess pawn, ♠ spades, ♣ clubs, ♦ diamonds, ♨ hot springs, ♻ recycling, ♾ infinity, "
    u"♿ wheelchair, ⚒ hammer and pick, ⚓ anchor, ⚔ crossed swords, ⚕ medical sign, ⚖ scales, "
    u"⚗ alembic, ⚙ gear, ⚛ atom, ⚜ fleur-de-lis, ⚠ warning, ⚡ lightning, ⚧ transgender sign, "
    u"⚪ white circle, ⚫ black circle, ⚰ coffin, ⚱ urn, ⚽ football, ⚾ baseball, ⛄ snowman, "
    u"⛅ sun behind a cloud, ⛈ thunderstorm, ⛏ pick, ⛑ rescue helmet, ⛔ no entry, ⛩ shrine, "
    u"⛪ church, ⛰ mountain, ⛱ beach umbrella, ⛲ fountain, ⛳ golf hole, ⛴ ferry, "
    u"⛵ sailing boat, ⛷ skier, ⛸ ice skate, ⛹ person bouncing a ball, ⛺ tent, ⛽ petrol pump",
    u"✂ scissors, ✈ aeroplane, ✊ raised fist, ✋ raised hand, ✌ peace, ✍ writing hand, ✏ pencil, "
    u"✒ pen nib, ✝ cross, ✡ star of David, ✳ asterisk, ❄ snowflake, ❎ crossed box, "
    u"❓ question mark, ❔ question mark, ❕ exclamation mark, ❗ exclamation mark, ➕ plus, "
    u"➖ minus, ➗ divided by, ➡ arrow right, ➰ loop, ➿ double loop, ⤴ arrow turning up, "
    u"⤵ arrow turning down, ⬅ arrow left, ⬆ arrow up, ⬇ arrow down, ⬛ black square, "
    u"⬜ white square, ⭕ hollow circle, 〰 wave, 〽 part mark, ㊗ congratulations, ㊙ secret",
    u"🀄 mahjong tile, 🃏 joker, 🅰 blood type A, 🅱 letter B, 🅾 blood type O, 🅿 parking, "
    u"🆎 blood type AB, 🆑 clear, 🆒 cool, 🆓 free, 🆔 ID, 🆕 new, 🆖 no good, 🆗 OK, 🆘 SOS, "
    u"🆙 up, 🆚 versus, 🈁 here, 🈂 service charge, 🈚 free of charge, 🈯 reserved, "
    u"🈲 prohibited, 🈳 vacancy, 🈴 passing grade, 🈵 no vacancy, 🈶 not free of charge, "
    u"🈷 monthly amount, 🈸 application, 🈹 discount, 🈺 open for business, 🉐 bargain, "
    u"🉑 acceptable",
    u"🌀 whirl, 🌁 fog, 🌂 closed umbrella, 🌃 starry night, 🌆 city at dusk, 🌉 bridge at night, "
    u"🌊 wave, 🌋 volcano, 🌌 Milky Way, 🌍 Earth, 🌎 Earth, 🌏 Earth, 🌐 globe, 🌑 new moon, "
    u"🌒 waxing crescent moon, 🌓 half moon, 🌔 waxing moon, 🌕 full moon, 🌖 waning moon, "
    u"🌗 half moon, 🌘 waning crescent moon, 🌙 crescent moon, 🌚 new moon face, 🌛 moon face, "
    u"🌜 moon face, 🌝 full moon face, 🌡 thermometer, 🌤 mostly sunny, 🌥 mostly cloudy, "
    u"🌦 sun and rain, 🌧 rain, 🌨 snowfall, 🌩 lightning cloud, 🌪 tornado, 🌫 mist, 🌬 blowing wind",
    u"🌭 hot dog, 🌮 taco, 🌯 burrito, 🌰 chestnut, 🌱 seedling, 🌲 fir tree, 🌳 tree, "
    u"🌴 palm tree, 🌵 cactus, 🌶 hot pepper, 🌽 corn, 🌾 ear of rice, 🌿 herb, "
    u"🍀 four-leaf clover, 🍁 maple leaf, 🍂 fallen leaves, 🍃 leaves in the wind, 🍄 mushroom, "
    u"🍄‍🟫 brown mushroom, 🍅 tomato, 🍆 aubergine, 🍇 grapes, 🍈 melon, 🍉 watermelon, "
    u"🍊 tangerine, 🍋 lemon, 🍋‍🟩 lime, 🍌 banana, 🍍 pineapple, 🍎 red apple, 🍏 green apple, "
    u"🍐 pear, 🍑 peach, 🍒 cherries, 🍓 strawberry, 🍔 hamburger, 🍕 pizza, 🍖 meat on a bone, "
    u"🍗 chicken leg, 🍘 rice cracker, 🍙 rice ball, 🍚 bowl of rice, 🍛 curry, 🍜 noodle soup, "
    u"🍝 spaghetti, 🍞 bread, 🍟 fries, 🍠 sweet potato, 🍡 dango, 🍢 oden, 🍣 sushi, "
    u"🍤 fried shrimp, 🍥 fish cake, 🍦 soft ice, 🍧 shaved ice, 🍨 ice cream, 🍩 doughnut, "
    u"🍪 cookie, 🍫 chocolate, 🍬 candy, 🍭 lollipop, 🍮 custard, 🍯 honey, 🍱 bento box, "
    u"🍲 stew, 🍳 fried egg, 🍴 knife and fork, 🍶 sake, 🍼 baby bottle, "
    u"🍽 plate with knife and fork, 🍿 popcorn",
    u"🎄 Christmas tree, 🎅 Father Christmas, 🎆 fireworks, 🎇 sparkler, 🎋 wish tree, "
    u"🎌 crossed flags, 🎍 pine decoration, 🎎 dolls, 🎏 carp streamer, 🎐 wind chime, "
    u"🎑 moon viewing, 🎒 school bag, 🎓 graduation cap, 🎖 military medal, 🎗 ribbon, "
    u"🎙 studio microphone, 🎚 slider, 🎛 control knobs, 🎟 admission tickets, 🎠 carousel, "
    u"🎡 Ferris wheel, 🎢 roller coaster, 🎣 fishing, 🎨 palette, 🎩 top hat, 🎪 circus, "
    u"🎫 ticket, 🎭 theatre masks, 🎮 video game, 🎯 bullseye, 🎰 slot machine, 🎱 billiard ball, "
    u"🎲 dice, 🎳 bowling, 🎴 playing cards, 🎽 running shirt, 🎾 tennis, 🎿 skis",
    u"🏀 basketball, 🏁 finish flag, 🏂 snowboarder, 🏄 surfer, 🏅 sports medal, 🏇 horse race, "
    u"🏈 American football, 🏉 rugby, 🏊 swimmer, 🏋 weight lifter, 🏌 golfer, 🏍 motorcycle, "
    u"🏎 racing car, 🏏 cricket, 🏐 volleyball, 🏑 hockey, 🏒 ice hockey, 🏓 table tennis, "
    u"🏔 snowy mountain, 🏕 camping, 🏖 beach, 🏗 building site, 🏘 houses, 🏙 city, 🏚 derelict house, "
    u"🏛 classical building, 🏜 desert, 🏝 desert island, 🏞 national park, 🏟 stadium, 🏠 house, "
    u"🏡 house with a garden, 🏢 office building, 🏣 post office, 🏤 post office, 🏥 hospital, "
    u"🏦 bank, 🏧 cash machine, 🏨 hotel, 🏩 love hotel, 🏪 convenience store, 🏫 school, "
    u"🏬 department store, 🏭 factory, 🏮 red lantern, 🏯 Japanese castle, 🏰 castle, "
    u"🏳 white flag, 🏴 black flag, 🏳‍⚧ transgender flag, 🏴‍☠ pirate flag, 🏷 label, 🏸 badminton, "
    u"🏹 bow and arrow, 🏺 amphora",
    u"🐀 rat, 🐁 mouse, 🐂 ox, 🐃 water buffalo, 🐄 cow, 🐅 tiger, 🐆 leopard, 🐇 rabbit, "
    u"🐉 dragon, 🐊 crocodile, 🐋 whale, 🐌 snail, 🐍 snake, 🐎 horse, 🐏 ram, 🐐 goat, 🐑 sheep, "
    u"🐒 monkey, 🐓 rooster, 🐔 chicken, 🐖 pig, 🐗 boar, 🐘 elephant, 🐙 octopus, 🐚 shell, "
    u"🐛 caterpillar, 🐜 ant, 🐝 bee, 🐞 ladybird, 🐟 fish, 🐠 tropical fish, 🐡 blowfish, "
    u"🐢 turtle, 🐣 hatching chick, 🐤 chick, 🐥 chick, 🐦 bird, 🐦‍⬛ black bird, 🐦‍🔥 phoenix, "
    u"🐧 penguin, 🐨 koala, 🐪 camel, 🐫 camel, 🐬 dolphin, 🐭 mouse, 🐮 cow, 🐯 tiger, 🐰 bunny, "
    u"🐲 dragon, 🐳 whale, 🐴 horse, 🐵 monkey, 🐷 pig, 🐸 frog, 🐹 hamster, 🐺 wolf, 🐻 bear, "
    u"🐻‍❄ polar bear, 🐼 panda, 🐽 pig nose, 🐾 paw prints, 🐿 squirrel",
    u"👀 eyes, 👁 eye, 👁‍🗨 eye witness, 👂 ear, 👃 nose, 👆 pointing up, 👇 pointing down, "
    u"👈 pointing left, 👉 pointing right, 👋 waving hand, 👐 open hands, 👑 crown, 👒 sun hat, "
    u"👓 glasses, 👔 tie, 👕 T-shirt, 👖 jeans, 👗 dress, 👘 kimono, 👙 bikini, 👚 blouse, "
    u"👛 purse, 👜 handbag, 👝 pouch, 👞 shoe, 👟 trainer, 👠 high heels, 👡 sandal, 👢 boot, "
    u"👣 footprints, 👪 family, 👫 couple holding hands, 👬 men holding hands, "
    u"👭 women holding hands, 👮 police officer, 👯 dancing party, 👰 bride, 👱 blond person, "
    u"👲 man in a cap, 👳 person in a turban, 👴 old man, 👵 old woman, 👶 baby, 👷 builder, "
    u"👸 princess, 👹 ogre, 👺 goblin, 👽 alien, 👾 space invader, 💀 skull, 💁 tipping hand, "
    u"💂 guard, 💃 dancer, 💄 lipstick, 💅 nail polish, 💆 massage, 💇 haircut, 💈 barber pole, "
    u"💉 syringe, 💊 pill, 💍 ring, 💎 gem, 💒 wedding, 💠 diamond with a dot, 💣 bomb, 💥 bang, "
    u"💦 splash, 💧 drop, 💩 pile of poo, 💪 strong arm, 💬 speech balloon, 💭 thought balloon, "
    u"💰 money bag, 💱 currency exchange, 💲 dollar sign, 💳 credit card, 💴 yen note, "
    u"💵 dollar note, 💶 euro note, 💷 pound note, 💸 flying money, 💹 rising chart, 💺 seat, "
    u"💻 laptop, 💼 briefcase, 💽 minidisc, 💾 floppy disk, 💿 CD, 📀 DVD",
    u"📁 folder, 📂 open folder, 📃 page, 📄 page, 📅 calendar, 📆 calendar, 📇 card index, "
    u"📈 rising chart, 📉 falling chart, 📊 bar chart, 📋 clipboard, 📌 pin, 📍 pin, "
    u"📎 paperclip, 📏 ruler, 📐 set square, 📑 bookmark tabs, 📒 ledger, 📓 notebook, "
    u"📔 notebook, 📕 red book, 📖 open book, 📗 green book, 📘 blue book, 📙 orange book, "
    u"📚 books, 📛 name badge, 📜 scroll, 📝 memo, 📟 pager, 📠 fax, 📡 satellite dish, "
    u"📢 loudspeaker, 📣 megaphone, 📤 outbox, 📥 inbox, 📦 parcel, 📪 mailbox, 📭 empty mailbox, "
    u"📮 postbox, 📯 post horn, 📰 newspaper, 📳 vibration mode, 📴 phone off, 📵 no phones, "
    u"📶 signal bars, 📺 television, 📻 radio, 📿 prayer beads",
    u"🔀 shuffle, 🔁 repeat, 🔂 repeat once, 🔃 turn clockwise, 🔄 turn anticlockwise, 🔅 dim, "
    u"🔆 bright, 🔇 muted, 🔈 quiet, 🔉 louder, 🔊 loud, 🔋 battery, 🔌 plug, "
    u"🔍 magnifying glass, 🔎 magnifying glass, 🔏 lock with a pen, 🔐 lock with a key, 🔑 key, "
    u"🔒 locked, 🔓 unlocked, 🔔 bell, 🔕 bell off, 🔖 bookmark, 🔘 radio button, 🔙 back, "
    u"🔚 end, 🔛 on, 🔜 soon, 🔝 top, 🔞 over eighteen, 🔟 ten, 🔠 capital letters, "
    u"🔡 small letters, 🔢 numbers, 🔣 signs, 🔤 letters, 🔥 fire, 🔦 torch, 🔧 spanner, "
    u"🔨 hammer, 🔩 nut and bolt, 🔪 knife, 🔫 water pistol, 🔬 microscope, 🔭 telescope, "
    u"🔮 crystal ball, 🔯 six-pointed star, 🔰 beginner, 🔱 trident, 🔲 black button, "
    u"🔳 white button, 🔴 red circle, 🔵 blue circle, 🔶 orange diamond, 🔷 blue diamond, "
    u"🔸 orange diamond, 🔹 blue diamond, 🔺 red triangle, 🔻 red triangle, 🔼 upwards, "
    u"🔽 downwards",
    u"🕉 om, 🕊 dove, 🕋 Kaaba, 🕌 mosque, 🕍 synagogue, 🕎 menorah, 🕯 candle, 🕳 hole, "
    u"🕴 levitating man, 🕵 detective, 🕷 spider, 🕸 spider web, 🕹 joystick, 🕺 dancing man, "
    u"🖇 paperclips, 🖊 pen, 🖋 fountain pen, 🖌 paintbrush, 🖍 crayon, 🖐 open hand, 🖕 middle finger, "
    u"🖖 Vulcan salute, 🖥 computer, 🖨 printer, 🖱 computer mouse, 🖲 trackball, 🖼 picture, "
    u"🗂 index cards, 🗃 card file, 🗄 filing cabinet, 🗑 waste basket, 🗒 notepad, 🗓 calendar, "
    u"🗜 clamp, 🗝 old key, 🗞 newspaper, 🗡 dagger, 🗣 speaking head, 🗨 speech bubble, "
    u"🗯 anger bubble, 🗳 ballot box, 🗺 world map, 🗻 Mount Fuji, 🗼 tower, 🗽 Statue of Liberty, "
    u"🗾 map of Japan, 🗿 stone face",
    u"🙂‍↔ shaking head, 🙂‍↕ nodding head, 🙆 OK gesture, 🙇 bowing, 🙉 hear no evil, "
    u"🙊 speak no evil, 🙋 hand up, 🙏 folded hands",
    u"🚀 rocket, 🚁 helicopter, 🚂 steam engine, 🚃 railway car, 🚄 fast train, 🚅 bullet train, "
    u"🚆 train, 🚇 underground, 🚈 light rail, 🚉 station, 🚊 tram, 🚋 tram, 🚌 bus, 🚍 bus, "
    u"🚎 trolleybus, 🚏 bus stop, 🚐 minibus, 🚑 ambulance, 🚒 fire engine, 🚓 police car, "
    u"🚔 police car, 🚕 taxi, 🚖 taxi, 🚗 car, 🚘 car, 🚙 camper, 🚚 lorry, 🚛 big lorry, "
    u"🚜 tractor, 🚝 monorail, 🚞 mountain railway, 🚟 suspension railway, 🚠 cable car, "
    u"🚡 cable car, 🚢 ship, 🚣 rower, 🚤 speedboat, 🚥 traffic light, 🚦 traffic light, "
    u"🚧 road works, 🚨 police light, 🚩 red flag, 🚪 door, 🚬 cigarette, 🚭 no smoking, "
    u"🚮 litter bin, 🚯 no littering, 🚰 drinking water, 🚱 no drinking water, 🚲 bicycle, "
    u"🚳 no bicycles, 🚴 cyclist, 🚵 mountain biker, 🚶 walker, 🚷 no walking, "
    u"🚸 children crossing, 🚹 men's room, 🚺 ladies' room, 🚻 restrooms, 🚼 baby sign, "
    u"🚽 toilet, 🚾 water closet, 🚿 shower, 🛀 bath, 🛁 bathtub, 🛂 passport control, "
    u"🛃 customs, 🛄 baggage claim, 🛅 left luggage, 🛋 sofa, 🛍 shopping bags, 🛎 desk bell, 🛏 bed, "
    u"🛐 place of worship, 🛑 stop sign, 🛒 shopping trolley, 🛕 Hindu temple, 🛖 hut, 🛗 lift, "
    u"🛜 wireless, 🛝 slide, 🛞 wheel, 🛟 life belt, 🛠 tools, 🛡 shield, 🛢 oil drum, 🛣 motorway, "
    u"🛤 railway track, 🛥 motor boat, 🛩 small aeroplane, 🛫 departure, 🛬 arrival, 🛰 satellite, "
    u"🛳 cruise ship, 🛴 kick scooter, 🛵 scooter, 🛶 canoe, 🛷 sledge, 🛸 flying saucer, "
    u"🛹 skateboard, 🛺 auto rickshaw, 🛻 pickup, 🛼 roller skate",
    u"🟠 orange circle, 🟡 yellow circle, 🟢 green circle, 🟣 purple circle, 🟤 brown circle, "
    u"🟥 red square, 🟦 blue square, 🟧 orange square, 🟨 yellow square, 🟩 green square, "
    u"🟪 purple square, 🟫 brown square, 🟰 equals",
    u"🤌 pinched fingers, 🤏 a little bit, 🤐 sealed lips, 🤑 money face, 🤕 bandaged head, "
    u"🤖 robot, 🤘 sign of the horns, 🤚 back of a hand, 🤛 fist, 🤜 fist, 🤝 handshake, "
    u"🤞 fingers crossed, 🤟 love-you sign, 🤡 clown, 🤢 feeling sick, 🤤 drooling, 🤥 liar, "
    u"🤫 hush, 🤮 throwing up, 🤰 pregnant woman, 🤱 breast-feeding, 🤲 palms together, "
    u"🤴 prince, 🤵 person in a tuxedo, 🤶 Mother Christmas, 🤷 shrug, 🤸 cartwheel, 🤹 juggler, "
    u"🤺 fencer, 🤼 wrestlers, 🤽 water polo, 🤾 handball, 🤿 diving mask",
    u"🥁 drum, 🥄 spoon, 🥅 goal, 🥈 silver medal, 🥉 bronze medal, 🥊 boxing glove, "
    u"🥋 martial arts, 🥌 curling, 🥍 lacrosse, 🥎 softball, 🥏 flying disc, 🥐 croissant, "
    u"🥑 avocado, 🥒 cucumber, 🥓 bacon, 🥔 potato, 🥕 carrot, 🥖 baguette, 🥗 salad, "
    u"🥘 pan of food, 🥙 filled flatbread, 🥚 egg, 🥛 glass of milk, 🥜 peanuts, 🥝 kiwi, "
    u"🥞 pancakes, 🥟 dumpling, 🥠 fortune cookie, 🥡 takeaway box, 🥢 chopsticks, "
    u"🥣 bowl with a spoon, 🥤 cup with a straw, 🥥 coconut, 🥦 broccoli, 🥧 pie, 🥨 pretzel, "
    u"🥩 steak, 🥪 sandwich, 🥫 tin of food, 🥬 salad leaves, 🥭 mango, 🥮 moon cake, 🥯 bagel, "
    u"🥵 hot face, 🥶 freezing, 🥷 ninja, 🥻 sari, 🥼 lab coat, 🥽 goggles, 🥾 hiking boot, "
    u"🥿 flat shoe",
    u"🦀 crab, 🦁 lion, 🦂 scorpion, 🦃 turkey, 🦄 unicorn, 🦅 eagle, 🦆 duck, 🦈 shark, 🦉 owl, "
    u"🦊 fox, 🦋 butterfly, 🦌 deer, 🦍 gorilla, 🦎 lizard, 🦏 rhinoceros, 🦐 shrimp, 🦑 squid, "
    u"🦒 giraffe, 🦓 zebra, 🦔 hedgehog, 🦕 dinosaur, 🦖 tyrannosaur, 🦗 cricket, 🦘 kangaroo, "
    u"🦙 llama, 🦚 peacock, 🦛 hippopotamus, 🦜 parrot, 🦝 raccoon, 🦞 lobster, 🦟 mosquito, "
    u"🦠 microbe, 🦡 badger, 🦢 swan, 🦣 mammoth, 🦤 dodo, 🦥 sloth, 🦦 otter, 🦧 orangutan, "
    u"🦨 skunk, 🦩 flamingo, 🦪 oyster, 🦫 beaver, 🦬 bison, 🦭 seal, 🦯 white cane, 🦰 red hair, "
    u"🦱 curly hair, 🦲 bald head, 🦳 white hair, 🦴 bone, 🦵 leg, 🦶 foot, 🦷 tooth, "
    u"🦸 superhero, 🦹 supervillain, 🦺 safety vest, 🦻 hearing aid, 🦼 motorised wheelchair, "
    u"🦽 manual wheelchair, 🦾 mechanical arm, 🦿 mechanical leg",
    u"🧀 cheese, 🧂 salt, 🧃 juice box, 🧄 garlic, 🧅 onion, 🧆 falafel, 🧇 waffle, 🧈 butter, "
    u"🧉 mate, 🧊 ice cube, 🧋 bubble tea, 🧌 troll, 🧍 person standing, 🧎 person kneeling, "
    u"🧏 deaf person, 🧑 person, 🧒 child, 🧓 old person, 🧔 bearded person, "
    u"🧕 woman in a headscarf, 🧖 sauna, 🧗 climber, 🧘 yoga, 🧙 wizard, 🧚 fairy, 🧜 mermaid, "
    u"🧝 elf, 🧞 genie, 🧟 zombie, 🧠 brain, 🧢 cap, 🧣 scarf, 🧤 gloves, 🧥 coat, 🧦 socks, "
    u"🧧 red envelope, 🧨 firecracker, 🧩 puzzle piece, 🧪 test tube, 🧫 petri dish, 🧬 DNA, "
    u"🧭 compass, 🧮 abacus, 🧯 fire extinguisher, 🧰 toolbox, 🧱 brick, 🧲 magnet, 🧳 suitcase, "
    u"🧴 lotion, 🧵 thread, 🧶 yarn, 🧷 safety pin, 🧸 teddy bear, 🧹 broom, 🧺 basket, "
    u"🧻 toilet paper, 🧼 soap, 🧽 sponge, 🧾 receipt, 🧿 evil eye",
    u"🩰 ballet shoes, 🩱 swimsuit, 🩲 briefs, 🩳 shorts, 🩴 flip-flop, 🩸 drop of blood, "
    u"🩹 plaster, 🩺 stethoscope, 🩻 x-ray, 🩼 crutch, 🪀 yo-yo, 🪁 kite, 🪂 parachute, "
    u"🪃 boomerang, 🪄 magic wand, 🪆 nesting dolls, 🪇 maracas, 🪈 flute, 🪉 harp, 🪏 shovel, "
    u"🪐 planet with a ring, 🪑 chair, 🪒 razor, 🪓 axe, 🪔 oil lamp, 🪕 banjo, 🪖 helmet, "
    u"🪗 accordion, 🪘 long drum, 🪙 coin, 🪚 saw, 🪛 screwdriver, 🪜 ladder, 🪝 hook, 🪞 mirror, "
    u"🪟 window, 🪠 plunger, 🪡 needle, 🪢 knot, 🪣 bucket, 🪤 mouse trap, 🪥 toothbrush, "
    u"🪦 gravestone, 🪧 placard, 🪨 rock, 🪩 mirror ball, 🪪 identity card, 🪫 low battery, "
    u"🪬 hamsa, 🪭 fan, 🪮 hair pick, 🪯 khanda, 🪰 fly, 🪱 worm, 🪲 beetle, 🪳 cockroach, "
    u"🪴 potted plant, 🪵 wood, 🪶 feather, 🪸 coral, 🪹 empty nest, 🪺 nest with eggs, "
    u"🪼 jellyfish, 🪽 wing, 🪾 leafless tree, 🪿 goose",
    u"🫀 heart organ, 🫁 lungs, 🫃 pregnant man, 🫄 pregnant person, 🫅 person with a crown, "
    u"🫆 fingerprint, 🫎 moose, 🫏 donkey, 🫐 blueberries, 🫑 bell pepper, 🫒 olive, "
    u"🫓 flatbread, 🫔 tamale, 🫕 fondue, 🫗 pouring, 🫘 beans, 🫙 jar, 🫚 ginger, 🫛 pea pod, "
    u"🫜 turnip, 🫟 splatter, 🫧 bubbles, 🫨 shaking face, 🫩 tired face, 🫱 hand to the right, "
    u"🫲 hand to the left, 🫳 palm down, 🫴 palm up, 🫵 pointing at you, 🫷 push left, "
    u"🫸 push right, 🫱‍🫲 handshake",
    u"🧑‍⚕ health worker, 🧑‍🎓 student, 🧑‍🏫 teacher, 🧑‍⚖ judge, 🧑‍🌾 farmer, 🧑‍🍳 cook, "
    u"🧑‍🔧 mechanic, 🧑‍🏭 factory worker, 🧑‍💼 office worker, 🧑‍🔬 scientist, 🧑‍💻 programmer, "
    u"🧑‍🎤 singer, 🧑‍🎨 artist, 🧑‍✈ pilot, 🧑‍🚀 astronaut, 🧑‍🚒 firefighter, "
    u"🧑‍🎄 Christmas person, 🧑‍🍼 person feeding a baby, 🧑‍🦯 person with a white cane, "
    u"🧑‍🦼 person in a wheelchair, 🧑‍🦽 person in a wheelchair, 🧑‍🦰 red-haired person, "
    u"🧑‍🦱 curly-haired person, 🧑‍🦲 bald person, 🧑‍🦳 white-haired person, "
    u"🧑‍🤝‍🧑 people holding hands, 🧑‍🩰 ballet dancer",
};

constexpr std::u16string_view country_list =
    u"AC Ascension Island, AD Andorra, AE United Arab Emirates, AF Afghanistan, "
    u"AG Antigua and Barbuda, AI Anguilla, AL Albania, AM Armenia, AO Angola, AQ Antarctica, "
    u"AR Argentina, AS American Samoa, AT Austria, AU Australia, AW Aruba, AX Åland Islands, "
    u"AZ Azerbaijan, BA Bosnia and Herzegovina, BB Barbados, BD Bangladesh, BE Belgium, "
    u"BF Burkina Faso, BG Bulgaria, BH Bahrain, BI Burundi, BJ Benin, BL Saint Barthélemy, "
    u"BM Bermuda, BN Brunei, BO Bolivia, BQ Caribbean Netherlands, BR Brazil, BS Bahamas, "
    u"BT Bhutan, BV Bouvet Island, BW Botswana, BY Belarus, BZ Belize, CA Canada, "
    u"CC Cocos Islands, CD Congo-Kinshasa, CF Central African Republic, CG Congo-Brazzaville, "
    u"CH Switzerland, CI Ivory Coast, CK Cook Islands, CL Chile, CM Cameroon, CN China, "
    u"CO Colombia, CP Clipperton Island, CR Costa Rica, CU Cuba, CV Cape Verde, CW Curaçao, "
    u"CX Christmas Island, CY Cyprus, CZ Czechia, DE Germany, DG Diego Garcia, DJ Djibouti, "
    u"DK Denmark, DM Dominica, DO Dominican Republic, DZ Algeria, EA Ceuta and Melilla, "
    u"EC Ecuador, EE Estonia, EG Egypt, EH Western Sahara, ER Eritrea, ES Spain, ET Ethiopia, "
    u"EU European Union, FI Finland, FJ Fiji, FK Falkland Islands, FM Micronesia, "
    u"FO Faroe Islands, FR France, GA Gabon, GB United Kingdom, GD Grenada, GE Georgia, "
    u"GF French Guiana, GG Guernsey, GH Ghana, GI Gibraltar, GL Greenland, GM Gambia, GN Guinea, "
    u"GP Guadeloupe, GQ Equatorial Guinea, GR Greece, GS South Georgia, GT Guatemala, GU Guam, "
    u"GW Guinea-Bissau, GY Guyana, HK Hong Kong, HM Heard Island, HN Honduras, HR Croatia, "
    u"HT Haiti, HU Hungary, IC Canary Islands, ID Indonesia, IE Ireland, IL Israel, "
    u"IM Isle of Man, IN India, IO British Indian Ocean Territory, IQ Iraq, IR Iran, IS Iceland, "
    u"IT Italy, JE Jersey, JM Jamaica, JO Jordan, JP Japan, KE Kenya, KG Kyrgyzstan, KH Cambodia, "
    u"KI Kiribati, KM Comoros, KN Saint Kitts and Nevis, KP North Korea, KR South Korea, "
    u"KW Kuwait, KY Cayman Islands, KZ Kazakhstan, LA Laos, LB Lebanon, LC Saint Lucia, "
    u"LI Liechtenstein, LK Sri Lanka, LR Liberia, LS Lesotho, LT Lithuania, LU Luxembourg, "
    u"LV Latvia, LY Libya, MA Morocco, MC Monaco, MD Moldova, ME Montenegro, MF Saint Martin, "
    u"MG Madagascar, MH Marshall Islands, MK North Macedonia, ML Mali, MM Myanmar, MN Mongolia, "
    u"MO Macao, MP Northern Mariana Islands, MQ Martinique, MR Mauritania, MS Montserrat, "
    u"MT Malta, MU Mauritius, MV Maldives, MW Malawi, MX Mexico, MY Malaysia, MZ Mozambique, "
    u"NA Namibia, NC New Caledonia, NE Niger, NF Norfolk Island, NG Nigeria, NI Nicaragua, "
    u"NL Netherlands, NO Norway, NP Nepal, NR Nauru, NU Niue, NZ New Zealand, OM Oman, PA Panama, "
    u"PE Peru, PF French Polynesia, PG Papua New Guinea, PH Philippines, PK Pakistan, PL Poland, "
    u"PM Saint Pierre and Miquelon, PN Pitcairn Islands, PR Puerto Rico, PS Palestine, "
    u"PT Portugal, PW Palau, PY Paraguay, QA Qatar, RE Réunion, RO Romania, RS Serbia, RU Russia, "
    u"RW Rwanda, SA Saudi Arabia, SB Solomon Islands, SC Seychelles, SD Sudan, SE Sweden, "
    u"SG Singapore, SH Saint Helena, SI Slovenia, SJ Svalbard, SK Slovakia, SL Sierra Leone, "
    u"SM San Marino, SN Senegal, SO Somalia, SR Suriname, SS South Sudan, "
    u"ST São Tomé and Príncipe, SV El Salvador, SX Sint Maarten, SY Syria, SZ Eswatini, "
    u"TA Tristan da Cunha, TC Turks and Caicos Islands, TD Chad, TF French Southern Territories, "
    u"TG Togo, TH Thailand, TJ Tajikistan, TK Tokelau, TL East Timor, TM Turkmenistan, "
    u"TN Tunisia, TO Tonga, TR Turkey, TT Trinidad and Tobago, TV Tuvalu, TW Taiwan, TZ Tanzania, "
    u"UA Ukraine, UG Uganda, UM US Outlying Islands, UN United Nations, US United States, "
    u"UY Uruguay, UZ Uzbekistan, VA Vatican City, VC Saint Vincent, VE Venezuela, "
    u"VG British Virgin Islands, VI US Virgin Islands, VN Vietnam, VU Vanuatu, "
    u"WF Wallis and Futuna, WS Samoa, XK Kosovo, YE Yemen, YT Mayotte, ZA South Africa, "
    u"ZM Zambia, ZW Zimbabwe";
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
