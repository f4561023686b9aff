#!/usr/bin/env python3
"""Makes the web site at OUT. OUT/murmelix is the folder of the pages; OUT/Murmelix leads there as well. Every name below
is in small letters, so that a server which is to answer in any spelling has one to look for."""

import argparse
import concurrent.futures
import html
import json
import re
import shutil
import subprocess
import textwrap
import urllib.parse
from pathlib import Path

import drawing
import speech
from cast import CAST
from contents import DEMO, EMOTICONS, INTRODUCTIONS, LANGUAGES, PLAYED_BY, TEMPERS
from layout import filled, page, read_page

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent

# What a character does, for people.
ACTS = {
    "pleased": "is pleased", "blink": "winks", "uncertain": "is not so sure", "sad": "is sad",
    "surprised": "is surprised", "confused": "is puzzled", "alert": "is all attention",
    "explain": "spreads both arms", "congratulate": "cheers",
    "decline": "shakes the head",
}
SCREENS = ("main-selected", "main-signed-out", "main-options", "matchups", "messenger-sign-in")
TASTE = ("(lol)", "(@)", ":'(", "(boo)", "(birthday)", "(l)")
PAUSE = 0.35       # seconds between two lines of the demo
SHORT_PAUSE = 0.1  # and between two pieces of one
STAGE = {"Ottoline": 60, "Brindle": 288, "Plonk": 516}  # where each stands in the demo, in pixels of 720
STAGE_SIZE = (720, 380)  # room for captions above the heads and for the player's controls below the feet
STAGE_TOP = 130
CAPTION_WIDTH, CAPTION_LETTERS = 36, 18  # of a caption: per cent of the stage, and what of a line fits into that
LETTER_SUBJECT = "You should hear this"
LETTER = ("Hello!\n\nI have found a little program that reads my chats aloud. Everybody I write with gets a character "
          "of their own: a marmot, an octopus, a frog. When you laugh, it laughs; when you send me a cat, it meows.\n\n"
          "Have a look, there is a live demo with sound:\nhttp://{host}/Murmelix/\n\nGuess which of them plays you.\n")


def slug(text):
    """A file's name for a text: "Chinese (Traditional)" is chinese-traditional."""
    return re.sub(r"[^a-z0-9]+", "-", text.lower()).strip("-")


class Deeds:
    """What the program makes of messages: its own code, asked through `trace`."""

    def __init__(self, program, messages):
        # A backslash is the escape of trace.
        lines = "".join(message.replace("\\", "\\\\") + "\n" for message in messages)
        answer = subprocess.run([program, "message"], input=lines, capture_output=True, text=True, check=True)
        told = [json.loads(line) for line in answer.stdout.splitlines()]
        if len(told) != len(messages):
            raise ValueError(f"trace has told of {len(told)} messages, not of {len(messages)}")
        self._of = {message: self._in_short(calls) for message, calls in zip(messages, told)}

    @staticmethod
    def _in_short(calls):
        deeds = []
        for call in calls:
            if call["key"] != "a@x":
                continue
            if call["call"] == "Play" and call["animation"] != "restpose":
                deeds.append(("play", call["animation"]))
            elif call["call"] == "Speak" and "url" in call:
                deeds.append(("wav", call["url"].replace("\\", "/").rsplit("/", 1)[-1].removesuffix(".wav")))
            elif call["call"] == "Speak" and call["text"].strip():
                deeds.append(("speak", call["text"].strip()))
            elif call["call"] == "Hide":
                deeds.append(("hide", ""))
        return deeds

    def of(self, message):
        return self._of[message]


def told(deeds):
    """Deeds as words for people, in HTML."""
    words = []
    for kind, what in deeds:
        if kind == "play":
            if not words or words[-1] != ACTS[what]:
                words.append(ACTS[what])
        elif kind == "wav":
            words.append(f"plays the sound <code>{html.escape(what)}</code>")
        elif kind == "speak":
            words.append(f"says “{html.escape(what)}”")
        elif kind == "hide":
            words.append("leaves the stage")
    return ", then ".join(words)


def audio(address, label):
    return f'<audio controls preload="none" src="{{{{root}}}}{address}" aria-label="{html.escape(label)}"></audio>'


class Site:
    def __init__(self, chosen, folder):
        self.chosen, self.folder = chosen, folder
        self.frames = {name: drawing.Frames(name, chosen.rsvg_convert) for name in CAST}
        typed = [spelling for _, _, group in EMOTICONS for spellings, _ in group for spelling in spellings]
        self.deeds = Deeds(chosen.trace, typed + [text for _, text in DEMO])
        self.jobs = concurrent.futures.ThreadPoolExecutor()
        self.running = []

    def write(self, name, content):
        path = self.folder / name
        if name != name.lower():
            raise ValueError(f"not in small letters: {name}")
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())

    def say_later(self, name, say, *what):
        """What is said is made while the rest is; its label and place are known before."""
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        self.running.append(self.jobs.submit(lambda: speech.write_wave(path, say(*what))))

    def finish(self):
        for job in self.running:
            job.result()

    # Pictures.

    def act(self, character, name):
        """The address of a moving picture; made once. The one beside it that stands still ends in .svg."""
        file = f"pictures/{character.lower()}-{name}.png"
        if not (self.folder / file).exists():
            self.write(file, self.frames[character].act(name))
            self.write(file.replace(".png", ".svg"), drawing.still(character, name))
        return file

    def acting(self, character, name, size, alt):
        moving = self.act(character, name)
        return (f'<picture><source media="(prefers-reduced-motion: reduce)" srcset="{{{{root}}}}{moving[:-4]}.svg">'
                f'<img src="{{{{root}}}}{moving}" width="{size}" height="{size}" loading="lazy" alt="{html.escape(alt)}">'
                "</picture>")

    def pictures(self):
        self.write("pictures/murmelix.svg", (ROOT / "assets" / "icons" / "murmelix.svg").read_bytes())
        self.write("pictures/meadow.svg", drawing.wide_meadow())
        self.write("pictures/meadow-narrow.svg", drawing.narrow_meadow())
        self.write("pictures/burrow.svg", drawing.burrow())
        for character in CAST:
            self.write(f"pictures/{character.lower()}.svg", drawing.still(character, "restpose"))
        for name in SCREENS:
            self.write(f"pictures/{name}.png", (ROOT / "docs" / "screens" / f"{name}.png").read_bytes())
        self.write("pictures/stage.png", (ROOT / "docs" / "stage.png").read_bytes())

    # What the program opens and fetches beside the pages.

    def downloads(self):
        for character in CAST:
            acs = self.chosen.assets / "chars" / f"{character}.acs"
            self.write(f"download/chars/{character.lower()}.acs", acs.read_bytes())
            portrait = self.chosen.assets / "portraits" / f"{character}.gif"
            self.write(f"download/charimgs/{character.lower()}.gif", portrait.read_bytes())
        for sound in sorted((self.chosen.assets / "sounds" / "default").glob("*.wav")):
            self.write(f"sounds/{sound.name.lower()}", sound.read_bytes())
        news = (HERE / "news.txt").read_text("utf-8")
        self.write("download/version.txt", f"{self.chosen.version}\n{news}")
        return "<ul>\n" + "".join(f"<li>{html.escape(line)}</li>\n" for line in news.splitlines()) + "</ul>"

    # Parts of pages.

    def emoticon(self, spellings, means, player):
        deeds = self.deeds.of(spellings[0])
        for spelling in spellings[1:]:
            if self.deeds.of(spelling) != deeds:
                raise ValueError(f"{spelling} is not {spellings[0]}")
        keys = "".join(f"<kbd>{html.escape(spelling)}</kbd>" for spelling in spellings)
        played = [what for kind, what in deeds if kind == "play"]
        sounds = [what for kind, what in deeds if kind == "wav"]
        words = [what for kind, what in deeds if kind == "speak"]
        picture = sound = ""
        if played:
            picture = self.acting(player, played[-1] if "blink" not in played else "blink", 84,
                                  f"{player} {ACTS[played[-1]]}")
        if sounds:
            sound = audio(f"sounds/{sounds[0].lower()}.wav", f"Sound of {means}")
        elif words:
            name = f"voices/{slug(words[0])}.wav"
            self.say_later(name, speech.said_by, player, words[0])
            sound = audio(name, f"{player} says: {words[0]}")
        return (f'<li class="card"><h3>{keys}</h3><p class="means">{html.escape(means)}</p>'
                f'<p class="does">{told(deeds)}</p>{picture}{sound}</li>')

    def emoticons(self):
        players = list(CAST)
        groups, links, number = [], [], 0
        for heading, identifier, group in EMOTICONS:
            cards = []
            for spellings, means in group:
                cards.append(self.emoticon(spellings, means, players[number % len(players)]))
                number += 1
            links.append(f'<a href="#{identifier}">{html.escape(heading)}</a>')
            groups.append(f'<section id="{identifier}">\n<h2>{html.escape(heading)}</h2>\n<ul class="cards">\n'
                          + "\n".join(cards) + "\n</ul>\n</section>")
        return "\n".join(groups), " · ".join(links), number

    def taste(self):
        known = {spelling: (spellings, means) for _, _, group in EMOTICONS for spellings, means in group
                 for spelling in spellings}
        players = list(CAST)
        cards = []
        for number, spelling in enumerate(TASTE):
            spellings, means = known[spelling]
            cards.append(self.emoticon((spelling,), means, players[number % len(players)]).replace("<li ", "<div ", 1)
                         .replace("</li>", "</div>"))
        return "\n".join(cards)

    def cast(self):
        return "\n".join(
            f'<div class="portrait"><img src="{{{{root}}}}pictures/{name.lower()}.svg" width="144" height="144" alt="">'
            f"<h3>{name}</h3><p>{html.escape(figure.description)}</p></div>" for name, figure in CAST.items())

    def pairs(self):
        pairs = (("Your grandmother", "Brindle"), ("Your best friend", "Plonk"), ("The lady from the office", "Ottoline"))
        return "\n".join(f'<p><img src="{{{{root}}}}pictures/{name.lower()}.svg" width="64" height="64" alt="">'
                         f"<span>{who} is <b>{name}</b></span></p>" for who, name in pairs)

    def characters(self):
        sections = []
        for name, figure in CAST.items():
            low, voice = name.lower(), figure.voice
            self.say_later(f"voices/{low}.wav", speech.said_by, name, INTRODUCTIONS[name])
            size = (self.folder / f"download/chars/{low}.acs").stat().st_size
            moods = "".join(self.acting(name, mood, 84, f"{name} {ACTS[mood]}")
                            for mood in ("pleased", "sad", "surprised", "congratulate"))
            sounds_like = f"{voice['style']}, {voice['gender']}, {voice['age']} years, {voice['speed']} words a minute"
            sections.append(f"""<section id="{low}">
<h2>{name}</h2>
<div class="sheet">
<img class="face" src="{{{{root}}}}pictures/{low}.svg" width="220" height="220"
 alt="{name}: {html.escape(figure.description)}">
<div>
<p><b>{html.escape(figure.description)}</b></p>
<dl>
<dt>Temper</dt><dd>{html.escape(TEMPERS[name])}</dd>
<dt>Voice</dt><dd>{html.escape(sounds_like)}</dd>
<dt>Picture</dt><dd><a href="charimgs/{low}.gif"><img src="charimgs/{low}.gif" width="96" height="96" loading="lazy"
 alt="{name}'s small picture"></a></dd>
</dl>
<p class="moods">{moods}</p>
<p class="small">“{html.escape(INTRODUCTIONS[name])}”</p>
{audio(f"voices/{low}.wav", f"{name} introduces itself")}
<p class="buttons"><a class="button" href="chars/{low}.acs" download="{name}.acs">{name}.acs</a>
<span class="small">{size / 1e6:.1f} MB</span></p>
</div>
</div>
</section>""")
        return "\n\n".join(sections)

    def languages(self):
        items = []
        for shown, own, code, voice, greeting in LANGUAGES:
            name = f"voices/hello-{slug(shown)}.wav"
            self.say_later(name, speech.said, greeting, voice)
            direction = ' dir="rtl"' if code in ("ar", "he") else ""
            items.append(f'<li><h3>{html.escape(shown)} <span lang="{code}"{direction}>{html.escape(own)}</span></h3>'
                         f'<p><q lang="{code}"{direction}>{html.escape(greeting)}</q></p>'
                         + audio(name, f"A greeting in {shown}") + "</li>")
        return "\n".join(items)

    # The live demo.

    def demo(self):
        whole, cues, items = speech.silence(0.6), [], []
        scheme = self.chosen.assets / "sounds" / "default"
        for number, (writer, text) in enumerate(DEMO, 1):
            character = PLAYED_BY[writer]
            line = speech.silence(0)
            deeds = self.deeds.of(text)
            for kind, what in deeds:
                if kind == "speak":
                    piece, balloon = speech.said_by(character, what), what
                elif kind == "wav":
                    piece, balloon = speech.read_wave((scheme / f"{what}.wav").read_bytes()), f"[{what}]"
                else:
                    continue
                begins = speech.seconds(whole) + speech.seconds(line)
                cues.append((begins, begins + speech.seconds(piece) + SHORT_PAUSE, character, balloon))
                line += piece + speech.silence(SHORT_PAUSE)
            whole += line + speech.silence(PAUSE)
            name = f"demo/line-{number}.wav"
            (self.folder / "demo").mkdir(exist_ok=True)
            speech.write_wave(self.folder / name, line)
            picture = f"{{{{root}}}}pictures/{character.lower()}.svg"
            items.append(f'<li><img src="{picture}" width="84" height="84" alt="{character}">'
                         f'<p class="typed"><b>{writer}</b> types: {html.escape(text)}</p>'
                         f'<p class="heard balloon">{told(deeds)}</p>'
                         + audio(name, f"Line {number}, by {character}") + "</li>")
        speech.write_wave(self.folder / "demo/conversation.wav", whole)
        self.write("demo/conversation.vtt", self.captions(cues))
        self.write("demo/stage.png", self.stage())
        return "\n".join(items), round(speech.seconds(whole))

    @staticmethod
    def captions(cues):
        def clock(moment):
            minutes, rest = divmod(moment, 60)
            return f"{int(minutes):02d}:{rest:06.3f}"

        lines = ["WEBVTT", ""]
        for begin, end, character, text in cues:
            middle = (STAGE[character] + drawing.SIZE / 2) / STAGE_SIZE[0] * 100
            # Each caption hangs above the one who speaks, as its balloon would.
            place = f"line:4% position:{middle:.0f}%,center size:{CAPTION_WIDTH}% align:center"
            wrapped = "\n".join(textwrap.wrap(text, CAPTION_LETTERS))
            lines += [f"{clock(begin)} --> {clock(end)} {place}",
                      f"<v {character}>{html.escape(wrapped, quote=False)}", ""]
        return "\n".join(lines)

    def stage(self):
        """The three on the stage: one after the other does something, the whole picture is drawn but once."""
        whole = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{STAGE_SIZE[0]}" height="{STAGE_SIZE[1]}">'
                 + "".join(drawing.placed(name, {}, x, STAGE_TOP, drawing.SIZE) for name, x in STAGE.items()) + "</svg>")
        first = subprocess.run([self.chosen.rsvg_convert], input=whole.encode(), capture_output=True, check=True).stdout
        frames = [(first, 80, 0, 0)]
        for name, animation in (("Ottoline", "greet"), ("Plonk", "blink"), ("Brindle", "pleased"), ("Ottoline", "blink"),
                                ("Plonk", "congratulate"), ("Brindle", "hearing_2")):
            frames += self.frames[name].of(animation, STAGE[name], STAGE_TOP)
            frames += self.frames[name].rest(70, STAGE[name], STAGE_TOP)
        return drawing.moving(frames)

    # The pages.

    def build(self):
        self.pictures()
        news = self.downloads()
        groups, links, count = self.emoticons()
        chat, demo_seconds = self.demo()
        letter = LETTER.format(host=self.chosen.host)
        paragraphs = "\n".join("<p>" + html.escape(part).replace("\n", "<br>\n") + "</p>"
                               for part in letter.strip().split("\n\n"))
        query = urllib.parse.urlencode({"subject": LETTER_SUBJECT, "body": letter.replace("\n", "\r\n")},
                                       quote_via=urllib.parse.quote)
        parts = {
            "host": html.escape(self.chosen.host), "support": html.escape(self.chosen.support),
            "version": self.chosen.version, "news": news,
            "emoticons": groups, "emoticon_groups": links, "emoticon_count": str(count),
            "cast": self.cast(), "taste": self.taste(), "pairs": self.pairs(), "characters": self.characters(),
            "languages": self.languages(), "language_count": str(len(LANGUAGES)), "chat": chat,
            "demo_seconds": str(demo_seconds), "letter": paragraphs, "letter_subject": LETTER_SUBJECT,
            "letter_link": html.escape("mailto:?" + query),
        }
        self.write("site.css", (HERE / "site.css").read_bytes())
        for path in sorted((HERE / "pages").rglob("*.html")):
            name = path.relative_to(HERE / "pages").as_posix()
            values = read_page(path)
            if "animated" in values:
                character, act = values["animated"].removesuffix(".png").split("-")
                self.act(character.capitalize(), act)
            # What is not there is told of at any address: its links cannot be relative.
            root = "/Murmelix/" if name == "404.html" else None
            values = {key: filled(value, parts) if key in ("title", "description") else value
                      for key, value in values.items()}
            self.write(name, page(name, values, parts, root))
        self.finish()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("out", type=Path)
    parser.add_argument("--assets", type=Path, required=True, help="where the assets were built")
    for name in ("trace", "rsvg-convert", "version", "host", "support"):
        parser.add_argument(f"--{name}", required=True)
    chosen = parser.parse_args()
    # A server that shows the last one goes on doing so until this one is complete.
    unfinished = chosen.out.with_name(chosen.out.name + ".new")
    shutil.rmtree(unfinished, ignore_errors=True)
    (unfinished / "murmelix").mkdir(parents=True)
    Site(chosen, unfinished / "murmelix").build()
    (unfinished / "Murmelix").symlink_to("murmelix")
    shutil.rmtree(chosen.out, ignore_errors=True)
    unfinished.rename(chosen.out)


if __name__ == "__main__":
    main()
