"""What a user does with a character on the screen: answer its contact, change its language, have it tell who it is."""

import shutil
import wave

import sound
from case import main, thorough, windows_path
from shell import START, ShellTest

QUICK, LANGUAGES = "Quick Message", "Change Language"
PROMPT = "Enter your quick message and press Enter..."
ANN = "ann@messenger.example"


class BesideCharacters(ShellTest):
    def read(self, *switches, recording=None, **settings):
        """Ann's conversation is being read, and her character stands above it. A recording goes at the clock's own speed."""
        self.settle(**settings)
        if recording:
            self.start_agent("/record", windows_path(recording), speed=1)
        else:
            self.start_agent()
        self.start_messenger("/signin", "you@messenger.example", "/friendly", "You", *switches)
        self.start_program()
        self.open_conversation()
        self.start_reading_first_row()
        self.eventually("the character at its place", lambda: self.ended("Show"))

    def ended(self, what):
        """What Ann's character has done of that kind."""
        self.transcript.new()
        return [act for act in self.transcript.acts if act.moment == "end" and act.what == what and act.key == ANN]

    def moves(self):
        """The places to which the program has sent characters, in order."""
        self.transcript.new()
        return [tuple(map(int, act.of.split(","))) for act in self.transcript.acts
                if act.moment == "call" and act.what == "MoveTo"]

    def move_conversation(self, left, top):
        """Returns when it is there, and the character has been sent after it once."""
        before = len(self.moves())
        character = next(window for window in self.windows() if window.kind == "AgentServerCharacter")
        width, height = character.place[2] - character.place[0], character.place[3] - character.place[1]
        self.screen.move(self.screen.find("Conversation$")[-1], left, top)
        self.eventually("the way of the character", lambda: len(self.moves()) > before)
        conversation = self.window("Ann - Conversation").place
        self.assertEqual(self.moves()[before:], [(conversation[0] - width // 2, conversation[1] - height)])
        return self.moves()[-1]

    def character(self):
        return self.characters()[0]

    def point_at(self):
        """The middle of the character, where it is drawn whatever it does."""
        left, top, right, bottom = self.character().place
        return (left + right) // 2, (top + 2 * bottom) // 3

    def double_click_character(self):
        self.click_at(*self.point_at(), times=2)
        return self.eventually("the quick message", lambda: self.window(QUICK))

    def choose_from_character(self, letter):
        """By the right mouse button and an item's accelerator."""
        self.open_menu_at(*self.point_at())
        self.eventually("the keyboard in it", self.menu_has_keyboard)
        self.screen.key(letter)
        # The keyboard goes back: a menu that opens before would lose it, and close.
        self.eventually("the end of the menu", lambda: not self.popup() and not self.menu_has_keyboard())

    def menu_has_keyboard(self):
        return self.screen.active() in self.screen.find("^AgentServer menu$")

    def wait_for_keyboard(self, title):
        """Until the window has it for Wine, and for the screen, which gives it a moment later."""
        self.eventually(f"the keyboard in {title}", lambda: self.focus_in(self.window(title))
                        and self.screen.active() in self.screen.find(f"^{title}$"))

    def history(self):
        texts = self.conversation().texts()
        return next((text for text in texts if " says:" in text), "")

    def wait_for_speech(self, words):
        """Until Ann's character has said them, and rests."""
        self.eventually(f"{words!r}", lambda: any(words in act.of for act in self.ended("Speak")))

    def wait_until_gone(self, title):
        self.eventually(f"the end of {title}", lambda: not self.window(title))

    def test_a_double_click_and_a_line_answer_the_contact(self):
        self.read()
        window = self.double_click_character()
        left, _, _, bottom = self.character().place
        self.assertEqual(window.place[:2], (left, bottom))
        self.assertEqual(self.control("Edit", window).text, PROMPT)
        self.wait_for_keyboard(QUICK)
        self.picture("quick")
        self.xdotool("type", "see you")
        self.eventually("the typed text", lambda: self.control("Edit", self.window(QUICK)).text == "see you")
        self.screen.key("Return")
        self.wait_until_gone(QUICK)
        self.eventually("the sent text", lambda: "see you" in self.history())
        self.assertIn("You says:", self.history())
        # Ann's answer comes after it, and is what is read.
        self.client(f"say {ANN} bye then")
        self.wait_for_speech("Bye Then")
        self.assertFalse(any("see you" in act.of.lower() for act in self.transcript.acts), "what was sent is not read")

    @thorough
    def test_smilies_canned_texts_and_effects_are_chosen_from_the_menus(self):
        self.read()
        self.double_click_character()
        self.wait_for_keyboard(QUICK)
        text = lambda: self.control("Edit", self.window(QUICK)).text  # noqa: E731
        self.screen.key("F10")
        self.screen.key("s")
        self.eventually("the smilies", self.popup)
        self.picture("smilies")
        self.screen.key("Down", "Down", "Return")
        self.eventually("the smiley", lambda: text() == ";)")
        self.screen.key("F10", "e")
        self.eventually("the effects", self.popup)
        self.picture("effects")
        self.screen.key("Up", "Return")
        self.eventually("the effect", lambda: text() == ";)(sigh)")
        self.screen.key("F10", "c")
        self.eventually("the canned texts", self.popup)
        self.screen.key("Return")
        self.eventually("the canned text", lambda: text() == "Thank you")
        self.screen.key("alt+o")
        self.wait_until_gone(QUICK)
        self.assertEqual(self.history(), "")

    @thorough
    def test_escape_stop_sign_out_and_the_contacts_end_close_the_quick_message(self):
        self.read()
        self.double_click_character()
        self.wait_for_keyboard(QUICK)
        self.screen.key("Escape")
        self.wait_until_gone(QUICK)
        self.choose_from_character("q")
        self.eventually("the quick message", lambda: self.window(QUICK))
        self.activate_main()
        self.screen.key("alt+s")
        self.wait_until_gone(QUICK)
        self.eventually("the empty stage", lambda: not self.characters())
        for end in (f"part {ANN}", "signout"):
            self.start_reading_first_row()
            self.eventually("the character", self.characters)
            self.double_click_character()
            self.client(end)
            self.wait_until_gone(QUICK)
            if end != "signout":
                self.activate_main()
                self.screen.key("alt+s")
                self.client(f"join {ANN}")

    @thorough
    def test_a_dragged_character_stays_until_its_conversation_moves(self):
        self.read()
        left, top, _, _ = self.character().place
        x, y = self.point_at()
        self.xdotool("mousemove", x, y, "mousedown", 1)
        for step in range(1, 11):
            self.xdotool("mousemove", x - 20 * step, y + 30 * step)
        self.xdotool("mouseup", 1)
        dropped = (left - 200, top + 300)
        self.eventually("the dropped character", lambda: self.character().place[:2] == dropped)
        self.picture("dragged")
        self.assertIsNone(self.window(QUICK), "a drag is no click")
        sent = len(self.moves())
        # It speaks there, and nothing sends it away.
        self.client(f"say {ANN} i stand here now")
        self.wait_for_speech("I Stand Here Now")
        self.assertEqual(self.character().place[:2], dropped)
        self.assertEqual(len(self.moves()), sent)
        # The one way it is sent is after its conversation.
        place = self.move_conversation(600, 300)
        self.eventually("the character at its conversation", lambda: self.character().place[:2] == place)

    @thorough
    def test_an_idle_character_is_hidden_also_after_its_conversation_was_moved(self):
        self.read(AutoHideIdleChar="1")
        self.move_conversation(600, 300)
        for words in ("Here Again", "Once More"):
            # Its words show it, wherever it was; that nothing comes after them hides it.
            self.client(f"say {ANN} {words}")
            self.wait_for_speech(words)
            self.eventually("the hidden character", lambda: not self.characters())
        calls = [act.what for act in self.transcript.acts if act.moment == "call"]
        self.assertEqual(calls[calls.index("Speak") + 1:].count("MoveTo"), 0, "nobody sends it anywhere meanwhile")

    def keep_those_of_one_size(self):
        """The files of characters that are as large as one another; the others are removed."""
        files = {file.stem: file for file in (self.desk.prefix.windows / "msagent" / "chars").glob("*.acs")}
        kept = [files.pop(name) for name in ("Brindle", "Ottoline", "Plonk")]
        for file in files.values():
            file.unlink()
        return kept

    def test_eight_characters_stand_around_the_conversation(self):
        self.settle()
        self.start_agent()
        self.start_messenger()
        cast = self.keep_those_of_one_size()
        for number in range(8 - len(cast)):
            shutil.copy(cast[number % len(cast)], cast[0].with_name(f"Zz{number}.acs"))
        self.start_program()
        self.open_conversation()
        friends = ["Bob", "Cleo", "Dan", "Eve", "Finn", "Gwen", "Hal"]
        for name in friends:
            self.client(f"join {name.lower()}@messenger.example {name}")
        self.screen.resize(self.screen.find("Conversation$")[-1], 480, 360)
        self.screen.move(self.screen.find("Conversation$")[-1], 520, 330)
        self.start_reading_first_row()
        self.eventually("eight characters", lambda: len(self.characters()) == 8)
        self.eventually("the last one's entrance", lambda: self.transcript.new() or len(
            [act for act in self.transcript.acts if act.moment == "end" and act.what == "Show"]) == 8)
        for name in ["Ann", *friends]:
            self.client(f"say {name.lower()}@messenger.example {name} stands here")
        self.eventually("the last one's words", lambda: self.transcript.new() or any(
            act.what == "Speak" and act.moment == "end" and "Hal Stands Here" in act.of for act in self.transcript.acts))
        self.picture("eight")
        left, top, right, bottom = self.conversation().place
        ordered = [act.of for act in self.transcript.acts if act.moment == "call" and act.what == "MoveTo"][-8:]
        width, height = right - left, bottom - top
        character = self.character().place
        cw, ch = character[2] - character[0], character[3] - character[1]
        sides = (left - cw / 2, left + width - cw / 2, left + width / 2 - cw / 2)
        middle, below = top + height / 2 - ch / 2, top + height - ch / 2 + ch / 4
        places = [(sides[0], top - ch), (sides[1], top - ch), (sides[2], top - ch),
                  (sides[0] - cw / 4, middle), (sides[1] + cw / 4, middle),
                  (sides[0], below), (sides[1], below), (sides[2], below)]
        self.assertEqual(ordered, [f"{round(x)},{round(y)}" for x, y in places])
        self.assertEqual(sorted(window.place[:2] for window in self.characters()),
                         sorted((round(x), round(y)) for x, y in places))

    def test_characters_follow_a_conversation_that_is_resized_minimised_and_restored(self):
        self.keep_those_of_one_size()
        self.read()
        self.client("join bob@messenger.example Bob")
        self.eventually("Bob's character", lambda: len(self.characters()) == 2)
        handle = self.screen.find("Conversation$")[-1]
        # Taken at its upper left corner, so that it gets another place and another size.
        self.screen.resize(handle, 470, 410)
        self.screen.move(handle, 480, 350)
        self.eventually("the characters at the corners", lambda: self.followed() == self.corners())
        resized = self.followed()
        self.picture("resized")
        self.screen.minimize(handle)
        (width,) = {window.place[2] - window.place[0] for window in self.characters()}
        row = {(width, 0), (2 * width, 0)}
        self.eventually("the characters in a row", lambda: self.followed() == row)
        self.picture("minimised")
        self.assertTrue(self.screen.activate(handle))
        self.eventually("the characters where they were", lambda: self.followed() == resized)
        self.picture("restored")

    def followed(self):
        """Where the characters stand."""
        return frozenset(window.place[:2] for window in self.characters())

    def corners(self):
        """Where two characters belong: above both upper corners of the conversation."""
        left, top, right, _ = self.conversation().place
        character = self.character().place
        width, height = character[2] - character[0], character[3] - character[1]
        return frozenset({(round(left - width / 2), top - height), (round(right - width / 2), top - height)})

    def answer_in(self, classes):
        self.read("/edits", classes)
        self.double_click_character()
        self.wait_for_keyboard(QUICK)
        self.xdotool("type", "in any box")
        self.screen.key("Return")

    @thorough
    def test_two_ansi_boxes_take_the_text(self):
        self.answer_in("RichEdit20A+RichEdit20A")
        self.eventually("the sent text", lambda: "in any box" in self.history())
        self.wait_until_gone(QUICK)

    @thorough
    def test_an_ink_box_takes_the_text(self):
        self.answer_in("RichEdit20W+InkEdit")
        self.eventually("the sent text", lambda: "in any box" in self.history())
        self.wait_until_gone(QUICK)

    @thorough
    def test_an_ink_box_after_an_ansi_box_takes_the_text(self):
        self.answer_in("RichEdit20A+InkEdit")
        self.eventually("the sent text", lambda: "in any box" in self.history())
        self.wait_until_gone(QUICK)

    @thorough
    def test_boxes_of_two_kinds_are_not_found(self):
        self.answer_in("RichEdit20A+RichEdit20W")
        self.assertEqual(self.message_box("Unable to send Quick message!").splitlines()[0],
                         "Murmelix is unable to send your quick message. Try sending it manually!")
        self.answer("Unable to send Quick message!")
        self.wait_until_gone(QUICK)
        self.assertEqual(self.history(), "")

    def languages(self):
        """What is seen of the list's lower half, which no character covers."""
        left, top, right, bottom = self.window(LANGUAGES).place
        return self.painted((left + 20, top + 140, left + 300, bottom - 60))

    @thorough
    def test_another_language_is_chosen(self):
        self.read()
        self.choose_from_character("c")
        window = self.eventually("the languages", lambda: self.window(LANGUAGES))
        left, top, _, _ = self.character().place
        self.assertEqual(window.place[:2], (left, top))
        self.wait_for_keyboard(LANGUAGES)
        self.picture("languages")
        english = self.languages()
        self.screen.key("Down", "Down", "Down", "Down", "Return")  # English (GB), Finnish, French, German
        self.wait_until_gone(LANGUAGES)
        # The window has the new one selected the next time.
        self.choose_from_character("c")
        self.wait_for_keyboard(LANGUAGES)
        self.picture("languages-again")
        german = self.languages()
        self.assertNotEqual(english, german)
        self.screen.key("Escape")
        self.wait_until_gone(LANGUAGES)
        self.choose_from_character("c")
        self.wait_for_keyboard(LANGUAGES)
        self.assertEqual(self.languages(), german, "left without a choice, nothing changes")

    @thorough
    def test_the_chosen_language_is_heard(self):
        recording = self.output / "speech.wav"
        self.read(recording=recording)
        said = "27 81 365"
        self.client(f"say {ANN} {said}")
        self.wait_for_speech(said)
        self.choose_from_character("c")
        self.wait_for_keyboard(LANGUAGES)
        self.screen.key("Down", "Down", "Down", "Down", "Return")  # English (GB), Finnish, French, German
        self.wait_until_gone(LANGUAGES)
        self.client(f"say {ANN} {said}")
        heard = self.eventually("both in the recording", lambda: self.two_utterances(recording))
        alone = {language: sound.loudness(sound.spoken_alone(language, said)[0]) for language in ("en-us", "de")}
        for language, utterance in zip(alone, heard, strict=True):
            likeness = {other: sound.likeness(utterance, loudness) for other, loudness in alone.items()}
            self.assertEqual(max(likeness, key=likeness.get), language, likeness)
            self.assertGreater(likeness[language], 0.6)

    def two_utterances(self, recording):
        """How loud both utterances are as they go on; None before both are over."""
        try:
            samples, rate = sound.read(recording.read_bytes())
        except (FileNotFoundError, EOFError, wave.Error):
            return None
        long = [part for part in sound.utterances(samples, rate) if len(part) > rate]
        return [sound.loudness(part) for part in long] if len(long) == 2 else None

    @thorough
    def test_the_languages_come_in_front_of_the_conversation(self):
        self.read()
        for conversation_first in (True, False):
            self.activate("Conversation$") if conversation_first else self.activate_main()
            # By the mouse: "Change My Language" is between the middle and the last of the seven.
            menu = self.open_menu_at(*self.point_at())
            left, _, right, bottom = menu.place
            self.click_at((left + right) // 2, bottom - 36)
            self.wait_for_keyboard(LANGUAGES)
            self.eventually("the languages in front",
                            lambda: self.screen.stacking()[-1] == self.screen.find(f"^{LANGUAGES}$")[-1])
            self.picture("languages-in-front")
            self.screen.key("Escape")
            self.wait_until_gone(LANGUAGES)

    @thorough
    def test_who_it_is_is_told_and_it_can_be_sent_away(self):
        self.read()
        self.choose_from_character("w")
        self.wait_for_speech("Best Known As: Ann")
        self.choose_from_character("r")
        self.eventually("the empty stage", lambda: not self.characters())
        # It stays away, whatever its contact writes, until the reading starts anew.
        self.client(f"say {ANN} nobody says this")
        self.activate_main()
        self.screen.key("alt+s")
        self.eventually("the end of the reading", lambda: self.control(START))
        self.start_reading_first_row()
        self.eventually("the character again", self.characters)
        self.client(f"say {ANN} here again")
        self.wait_for_speech("Here Again")
        self.assertFalse(any("Nobody Says This" in act.of for act in self.transcript.acts))


if __name__ == "__main__":
    main()
