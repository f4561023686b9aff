"""What the pages list: emoticons, languages, the conversation of the live demo. What the program makes of an emoticon or
a line is not written here: `trace` tells it."""

# Groups of emoticons: the spellings of each, the first one shown large, and what it stands for.
EMOTICONS = (
    ("Faces", "faces", (
        ((":)", ":-)"), "Smile"),
        ((";)", ";-)"), "Wink"),
        ((":D", ":-D"), "Big grin"),
        ((":P", ":-P"), "Tongue out"),
        ((":O", ":-O"), "Surprise"),
        ((":(", ":-("), "Sad"),
        ((":'(",), "In tears"),
        ((":|", ":-|"), "Speechless"),
        ((":S", ":-S"), "Puzzled"),
        ((":$", ":-$"), "Blushing"),
        ((":@", ":-@"), "Furious"),
        (("(h)",), "Very cool"),
        (("(a)",), "Innocent"),
        (("(6)",), "Up to no good"),
    )),
    ("Hearts, hands and people", "people", (
        (("(l)",), "Love"),
        (("(u)",), "Broken heart"),
        (("(k)",), "Kiss"),
        (("(})",), "A hug from her"),
        (("({)",), "A hug from him"),
        (("(y)",), "Yes, well done"),
        (("(n)",), "No, thank you"),
        (("(x)",), "Girl"),
        (("(z)",), "Boy"),
        (("(?)",), "And who are you?"),
    )),
    ("Animals, sky and garden", "outdoors", (
        (("(@)",), "Cat"),
        (("(&)",), "Dog"),
        ((":[", ":-["), "Bat"),
        (("(f)",), "Flower"),
        (("(w)",), "Wilted flower"),
        (("(r)",), "Rainbow"),
        (("(#)",), "Sunshine"),
        (("(*)",), "Star"),
        (("(S)",), "Asleep under the moon (with a capital S)"),
    )),
    ("Things on the table", "things", (
        (("(b)",), "One drink too many"),
        (("(d)",), "Something to drink"),
        (("(c)",), "Coffee"),
        (("(g)",), "Present"),
        (("(^)", "(birthday)"), "Birthday"),
        (("(e)",), "You have mail"),
        (("(t)",), "Telephone"),
        (("(p)",), "Camera"),
        (("(o)",), "Clock"),
        (("(i)",), "Bright idea"),
        (("(8)",), "Music"),
        (("(~)",), "Film"),
        (("(%)",), "Locked up"),
        (("(m)",), "Messenger"),
    )),
    ("Only Murmelix knows these", "more", (
        (("(lol)",), "Laughing out loud"),
        (("(haa)",), "A short laugh"),
        (("(ohh)",), "How touching"),
        (("(whistle)",), "A whistle"),
        (("(boo)",), "Boo!"),
        (("(slap)",), "A slap"),
        (("(run)",), "Running off"),
        (("(sniff)",), "Sniffing back a tear"),
        (("(sigh)",), "A long sigh"),
    )),
)

# The languages of the language window in its order: the name shown there, the language's own name, its code on a page,
# the voice of espeak-ng, and a greeting.
LANGUAGES = (
    ("Arabic", "العربية", "ar", "ar", "مرحبا! كيف حالك؟"),
    ("Basque", "Euskara", "eu", "eu", "Kaixo! Zer moduz?"),
    ("Chinese (Simplified)", "简体中文", "zh-Hans", "cmn", "你好！你好吗？"),
    ("Chinese (Traditional)", "繁體中文", "zh-Hant", "cmn", "你好！你好嗎？"),
    ("Croation", "Hrvatski", "hr", "hr", "Bok! Kako si?"),
    ("Czech", "Čeština", "cs", "cs", "Ahoj! Jak se máš?"),
    ("Danish", "Dansk", "da", "da", "Hej! Hvordan går det?"),
    ("Dutch", "Nederlands", "nl", "nl", "Hallo! Hoe gaat het?"),
    ("English (US)", "English", "en-US", "en-us", "Hello! How are you?"),
    ("English (GB)", "English", "en-GB", "en-gb", "Hello! How do you do?"),
    ("Finnish", "Suomi", "fi", "fi", "Hei! Mitä kuuluu?"),
    ("French", "Français", "fr", "fr", "Bonjour ! Comment ça va ?"),
    ("German", "Deutsch", "de", "de", "Hallo! Wie geht es dir?"),
    ("Greek", "Ελληνικά", "el", "el", "Γεια σου! Τι κάνεις;"),
    ("Hebrew", "עברית", "he", "he", "שלום! מה שלומך?"),
    ("Hungarian", "Magyar", "hu", "hu", "Szia! Hogy vagy?"),
    ("Italian", "Italiano", "it", "it", "Ciao! Come stai?"),
    ("Japanese", "日本語", "ja", "ja", "こんにちは！おげんきですか？"),
    ("Korean", "한국어", "ko", "ko", "안녕하세요! 잘 지내세요?"),
    ("Norwegian", "Norsk", "nb", "nb", "Hei! Hvordan går det?"),
    ("Polish", "Polski", "pl", "pl", "Cześć! Jak się masz?"),
    ("Portuguese", "Português", "pt-PT", "pt", "Olá! Como estás?"),
    ("Portuguese (Brazil)", "Português do Brasil", "pt-BR", "pt-br", "Oi! Tudo bem?"),
    ("Romanian", "Română", "ro", "ro", "Salut! Ce mai faci?"),
    ("Russian", "Русский", "ru", "ru", "Привет! Как дела?"),
    ("Slovakian", "Slovenčina", "sk", "sk", "Ahoj! Ako sa máš?"),
    ("Slovenian", "Slovenščina", "sl", "sl", "Živjo! Kako si?"),
    ("Spanish", "Español", "es", "es", "¡Hola! ¿Cómo estás?"),
    ("Swedish", "Svenska", "sv", "sv", "Hej! Hur mår du?"),
    ("Thai", "ไทย", "th", "th", "สวัสดี! สบายดีไหม"),
    ("Turkish", "Türkçe", "tr", "tr", "Merhaba! Nasılsın?"),
)

# The conversation of the live demo: who writes, and what.
DEMO = (
    ("hazel", "hi all :) who is coming to the lake on saturday?"),
    ("otto", "me! me! I bring the lemonade (d)"),
    ("mina", "and the big blanket, if the cat lets you have it (@)"),
    ("otto", "she sleeps on it (S)"),
    ("hazel", "lol"),
    ("mina", "brb, somebody is at the door"),
    ("hazel", "ic! I bake the cake meanwhile. sooooo many cherries!!!!!!"),
    ("otto", "best plan of the year (birthday)"),
)
# Who plays whom in it.
PLAYED_BY = {"hazel": "Ottoline", "otto": "Plonk", "mina": "Brindle"}

# What each character says of itself.
INTRODUCTIONS = {
    "Brindle": "Good morning! I am Brindle. I have slept all winter, and now I have things to say.",
    "Clatterby": "Clatterby, at your service. I was made for the post office, and I still deliver. Ding!",
    "Ottoline": "How do you do? I am Ottoline. I can hold eight conversations, but I read you one at a time.",
    "Plonk": "Plonk. That is my name, and also the sound I make.",
    "Tansy": "I am Tansy. I keep bees. They do the work, and I do the talking.",
    "Tremolina": "Tremolina! You have heard of me. You have not? I am offended. There, it is over: what shall I play?",
}
TEMPERS = {
    "Brindle": "Cheerful, early to rise from April on, asleep before that. Gives everything he has got to a good laugh, "
               "and dozes off when nobody writes.",
    "Clatterby": "Dignified, punctual, and softer than his enamel. Types what he feels, lifts his carriage to everybody, "
                 "and has to be wound up now and then.",
    "Ottoline": "Warm and well brought up. Hides a smile behind her fan, never a raised brow, and finds a kind tone "
                "even for an angry line.",
    "Plonk": "Plain-spoken, wide-mouthed, correctly dressed. Reads the long words as if he had thought of them himself.",
    "Tansy": "Warm, dry, and a step ahead of whoever writes. Lifts her hat to friends, lets down her veil at nonsense, and is "
             "obeyed by everybody but one bee.",
    "Tremolina": "Young and all theatre. Takes offence at a comma and forgives it by the full stop; what she feels, her "
                 "bellows tell the last row.",
}
