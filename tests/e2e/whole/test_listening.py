"""What a listener does with the icon of the character server while characters speak: what is heard, and what is told."""

import wave

import sound
from case import main, thorough, windows_path
from shell import ShellTest

ANN = "ann@messenger.example"
LONG = "one two three four five six seven eight nine ten eleven twelve thirteen fourteen fifteen sixteen"
SKIP, PAUSE = 1, 2  # items of the menu
NUMBERS = "27 81 365"  # which sound quite different from a language to another
PROPERTIES = "Character Properties"
SERVER_KEY = r"Software\Murmelix AgentServer"
HOLD_SECONDS = 2  # that a pause lasts in the recording


class Listening(ShellTest):
    def read(self, scheme="default", **numbers):
        """Ann's conversation is being read at the clock's own speed, and recorded. Numbers that the server keeps are set
        before."""
        for name, number in numbers.items():
            data = number.to_bytes(4, "little").hex()
            self.assertEqual(self.inspector.ask(f"put {SERVER_KEY}\t{name}\t4\t{data}"), [])
        self.settle(AutoHideBalloon="0", CurrentSoundScheme=scheme)
        self.recording = self.output / "speech.wav"
        self.icons_of_others = set(self.tray_icons())
        self.start_agent("/record", windows_path(self.recording), speed=1)
        (self.server_icon,) = [icon for handle, icon in self.tray_icons().items() if handle not in self.icons_of_others]
        self.start_messenger()
        self.start_program()
        self.open_conversation()
        self.start_reading_first_row()
        self.eventually("the character", lambda: self.acts_of("Show", "end"))

    def acts_of(self, what, moment, key=ANN):
        self.transcript.new()
        return [act for act in self.transcript.acts
                if act.moment == moment and act.what == what and act.key == key]

    def spoken(self, words):
        """The end of the request that spoke them; None before it has come."""
        return next((act for act in self.acts_of("Speak", "end") if words in act.of), None)

    def say(self, words, by=ANN):
        """Returns when it is being spoken."""
        self.client(f"say {by} {words}")
        begun = words.split()[-1].lower()
        self.eventually(f"{words!r}", lambda: any(begun in act.of.lower() for act in self.acts_of("Speak", "start", by)))

    def icon(self):
        """The middle of the server's icon, wherever the tray has been moved."""
        left, top, right, bottom = self.tray_icons()[self.server_icon.handle].place
        return (left + right) // 2, (top + bottom) // 2

    def server_menu(self):
        return self.open_menu_at(*self.icon())

    def choose(self, number, picture=None):
        """The first item or the second from the menu of the server's icon: of nine, and two lines half as high."""
        menu = self.server_menu()
        if picture:
            self.picture(picture)
        left, top, right, bottom = menu.place
        self.click_at((left + right) // 2, top + round((number - 0.5) * (bottom - top) / 10))
        self.eventually("the end of the menu", lambda: not self.popup())

    def heard(self):
        """The recording up to now, and its rate."""
        try:
            return sound.read(self.recording.read_bytes())
        except (FileNotFoundError, EOFError, wave.Error):
            return [], 1

    def loud_seconds(self):
        samples, rate = self.heard()
        return sum(len(part) for part in sound.utterances([*samples, *[0] * rate], rate)) / rate

    def sounding(self):
        """Whether something has been heard within the last half second."""
        samples, rate = self.heard()
        return any(abs(value) > sound.QUIET for value in samples[-rate // 2:])

    def seconds(self):
        samples, rate = self.heard()
        return len(samples) / rate

    def wait_for_quiet(self):
        self.eventually("quiet", lambda: not self.sounding())

    def hold(self):
        """Lets the clock of the recording go on, in quiet."""
        since = self.seconds()
        self.eventually("a while", lambda: self.seconds() > since + HOLD_SECONDS)
        self.assertFalse(self.sounding())

    def properties(self):
        """The server's window, opened by its icon; it has the keyboard."""
        self.click_at(*self.icon(), times=2)
        self.eventually("the window", lambda: self.window(PROPERTIES))
        self.activate(f"^{PROPERTIES}$")
        return self.window(PROPERTIES)

    def fields(self):
        """The texts of the fields for keys, from above."""
        fields = [control for control in self.window(PROPERTIES).all() if control.kind == "Edit" and control.visible]
        return [field.text for field in sorted(fields, key=lambda field: field.place[1])]

    @thorough
    def test_keys_set_in_the_window_skip_and_pause_wherever_the_keyboard_is(self):
        self.read()
        self.properties()
        self.screen.key(*5 * ["ctrl+Tab"])
        self.eventually("the page of the keys", lambda: self.fields()[:1] == ["None"])
        self.screen.key("alt+s")
        self.screen.key("ctrl+alt+k")
        self.eventually("the key", lambda: self.fields()[:1] == ["Ctrl+Alt+K"])
        self.screen.key("Tab", "F8")
        self.eventually("both keys", lambda: self.fields()[:2] == ["Ctrl+Alt+K", "F8"])
        self.screen.key("Tab", "F8")
        self.eventually("why not", lambda: any("already" in text for text in self.window(PROPERTIES).texts()))
        self.assertEqual(self.fields()[2], "None")
        self.picture("keys")
        self.screen.key("Escape")
        self.eventually("the end of the window", lambda: not self.window(PROPERTIES))
        self.assertEqual(self.values(SERVER_KEY)["PauseKey"], "07010000")

        self.say(LONG)
        self.eventually("its sound", self.sounding)
        self.activate("^Ann - Conversation$")
        self.screen.key("F8")
        self.wait_for_quiet()
        self.hold()
        self.assertFalse(self.acts_of("Speak", "end"))
        self.screen.key("F8")
        self.eventually("its sound again", self.sounding)
        self.screen.key("ctrl+alt+k")
        act = self.eventually("its end", lambda: self.spoken("Sixteen"))
        self.assertEqual(act.outcome, "interrupted")
        self.wait_for_quiet()

    def test_a_key_silences_all_in_the_middle_of_a_sentence_which_goes_on_unheard(self):
        self.read(SilenceKey=0x106)  # F7
        self.say(LONG)
        self.eventually("its sound", self.sounding)
        self.activate("^Ann - Conversation$")
        self.screen.key("F7")
        self.wait_for_quiet()
        self.assertFalse(self.acts_of("Speak", "end"))
        act = self.eventually("its end", lambda: self.spoken("Sixteen"))
        self.assertEqual(act.outcome, "complete")
        self.assertFalse(self.sounding())
        self.screen.key("F7")
        self.say("short words")
        self.eventually("the sound of the next", self.sounding)

    def test_a_character_speaks_in_the_language_that_the_listener_chose_and_tried(self):
        self.read()
        self.properties()
        self.screen.key(*4 * ["ctrl+Tab"])
        self.eventually("the page of the voices", lambda: "&Listen" in self.shown_texts())
        self.screen.key("alt+a")
        self.screen.key("g")  # the first that begins so: German
        self.eventually("the language", lambda: self.values(SERVER_KEY + r"\Voices\%s" % self.character_key()).get(
            "Language") == "07040000")
        self.screen.key("alt+l")
        self.eventually("a sample", self.sounding)
        self.picture("voices")
        self.wait_for_quiet()
        # One that is installed and nobody has loaded: it is the last by its name.
        self.screen.key("alt+c", "End")
        self.eventually("another character", lambda: "Tremolina" in self.shown_texts())
        self.screen.key("alt+l")
        self.eventually("its voice", self.sounding)
        self.picture("voices-of-another")
        self.wait_for_quiet()
        before = len(self.heard()[0])
        self.say(NUMBERS)
        self.eventually("its end", lambda: self.spoken(NUMBERS))
        self.wait_for_quiet()
        samples, rate = self.heard()
        heard = sound.loudness(samples[before:])
        likeness = {language: sound.likeness(heard, sound.loudness(sound.spoken_alone(language, NUMBERS)[0]))
                    for language in ("en-us", "de")}
        self.assertEqual(max(likeness, key=likeness.get), "de", likeness)

    def loudness_of(self, words):
        """How what is said now is heard."""
        self.wait_for_quiet()
        before, times = len(self.heard()[0]), len(self.acts_of("Speak", "end"))
        self.client(f"say {ANN} {words}")
        self.eventually("its end", lambda: len(self.acts_of("Speak", "end")) > times)
        self.wait_for_quiet()
        return sound.loudness(self.heard()[0][before:])

    @thorough
    def test_a_character_without_a_voice_of_its_own_speaks_with_the_default_one(self):
        self.read()
        first, again = self.loudness_of(NUMBERS), self.loudness_of(NUMBERS)
        for english in (1033, 2057):
            data = "Grandmother\0\0".encode("utf-16-le").hex()
            self.assertEqual(self.inspector.ask(f"put {SERVER_KEY}\\DefaultVoices\t{english}\t7\t{data}"), [])
        changed = self.loudness_of(NUMBERS)
        self.assertGreater(sound.likeness(first, again), 0.99)
        self.assertLess(sound.likeness(first, changed), 0.9)

    def shown_texts(self):
        return [control.text for control in self.window(PROPERTIES).all() if control.visible and control.text]

    def character_key(self):
        keys = self.inspector.ask(f"subkeys {SERVER_KEY}\\Voices")
        return keys[0] if keys else "none"

    @thorough
    def test_what_has_waited_longest_is_let_go_where_too_much_waits(self):
        self.read(MostWaiting=3)
        words = ["first", "second", "third", "fourth", "fifth", "sixth", "last"]
        self.say(f"{words[0]} {LONG}")
        for word in words[1:]:
            self.client(f"say {ANN} {word} {LONG}")
        act = self.eventually("the last one", lambda: self.spoken("Last"))
        self.assertEqual(act.outcome, "complete")
        outcomes = [self.spoken(word.capitalize() + " ").outcome for word in words]
        self.assertIn("interrupted", outcomes)
        self.assertEqual(outcomes[0], "complete", "it had begun")
        self.assertEqual(sorted(outcomes[1:], reverse=True), outcomes[1:], "the oldest are let go, and no newer one")

    @thorough
    def test_what_is_said_is_skipped_by_the_menu(self):
        self.read()
        self.say(LONG)
        self.eventually("its sound", self.sounding)
        self.choose(SKIP, "menu")
        act = self.eventually("the end of the long one", lambda: self.spoken("Sixteen"))
        self.assertEqual(act.outcome, "interrupted")
        self.wait_for_quiet()
        self.say("short words")
        act = self.eventually("the end of the next", lambda: self.spoken("Words"))
        self.assertEqual(act.outcome, "complete")

    @thorough
    def test_a_pause_is_silence_in_the_middle_of_a_sentence(self):
        self.read()
        self.say(LONG)
        self.eventually("its sound", self.sounding)
        self.choose(PAUSE)
        self.wait_for_quiet()
        self.assertFalse(self.acts_of("Speak", "end"))
        self.hold()
        self.assertFalse(self.acts_of("Speak", "end"))
        self.choose(PAUSE, "paused")
        self.eventually("its sound again", self.sounding)
        act = self.eventually("its end", lambda: self.spoken("Sixteen"))
        self.assertEqual(act.outcome, "complete")
        self.wait_for_quiet()
        samples, rate = self.heard()
        self.assertEqual(len(sound.utterances(samples, rate)), 2, "it was heard in two parts")

    @thorough
    def test_an_emoticon_sounds_as_in_the_scheme_that_was_chosen(self):
        self.read(scheme="toy box")
        self.client(f"say {ANN} (@)")
        act = self.eventually("the end of the cat", lambda: self.spoken("cat.wav"))
        self.assertEqual(act.outcome, "complete")
        self.wait_for_quiet()
        heard = sound.loudness(self.heard()[0])
        likeness = {}
        for scheme in ("default", "toy box"):
            made = sound.read((self.desk.program_directory / "sounds" / scheme / "cat.wav").read_bytes())[0]
            likeness[scheme] = sound.likeness(heard, sound.loudness(made))
        self.assertGreater(likeness["toy box"], 0.99, likeness)
        self.assertLess(likeness["default"], 0.9, likeness)


if __name__ == "__main__":
    main()
