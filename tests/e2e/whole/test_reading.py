"""A conversation is read aloud, whatever it holds and whatever its people do."""

import re

from case import ROOT, WholeProgramTest, main, thorough

BUSY_DAY = ROOT / "tests" / "conversations" / "busy-day.txt"

ANN, BOB, CY = (f"{name}@messenger.example" for name in ("ann", "bob", "cy"))


class Reading(WholeProgramTest):
    def wait_for_words(self, key, words):
        self.eventually(f"{words!r} of {key}", lambda: words in [said.strip() for said in self.said(key)])

    def test_twenty_messages_of_a_busy_day_become_what_they_should(self):
        reading = self.start_reading(BUSY_DAY, participants=3, messages=20)
        reading.follow()
        reading.finish()
        self.assertEqual(len(reading.log.of_kind("message")), 20)
        self.assertEqual(reading.faults(), [])

    def test_several_writers_are_heard_in_the_order_of_the_conversation(self):
        # The chat is faster than the voices; long and short messages take turns.
        lines = [f"[09:00] <{('Ann', 'Bob', 'Cy')[number * 7 % 5 % 3]}> " +
                 ("number %d" % number if number % 3 else "a longer message that bears the number %d" % number) + "\n"
                 for number in range(20)]
        reading = self.start_reading(self.conversation("".join(lines)), participants=3, speed=60, stage_speed=8)
        reading.follow()
        spoken = [(act.key, act.of) for act in self.acts(moment="start", what="Speak")]
        self.assertEqual(spoken, [(act.key, act.of) for act in self.acts(moment="call", what="Speak")])
        messages = [(event.signin, event.text.split()[-1]) for event in reading.log.of_kind("message")]
        self.assertEqual(len(messages), 20)
        self.assertEqual({signin for signin, _ in messages}, {ANN, BOB, CY})
        self.assertEqual([(key, of.split()[-1]) for key, of in spoken if of.strip()], messages)

    def test_the_first_message_and_the_own_ones(self):
        self.start_reading(self.conversation("[09:00] <Ann> first words\n"), participants=1)
        self.wait_for_words(ANN, "First Words")
        # The user has no character: what they write is nobody's to speak.
        self.client("say me my own words")
        self.client(f"say {ANN} last words")
        self.wait_for_words(ANN, "Last Words")
        self.assertEqual([act.of.strip() for act in self.acts(moment="call", what="Speak")],
                         ["First Words", "Last Words"])

    def test_contacts_join_leave_and_are_renamed(self):
        self.start_reading(self.conversation("[09:00] <Ann> one\n[09:00] <Bob> two\n"), participants=2)
        self.wait_for_words(BOB, "Two")
        self.client(f"join {CY} Cy")
        self.eventually("Cy's character", lambda: self.acts(key=CY, what="Show"))
        self.client(f"say {CY} three")
        self.wait_for_words(CY, "Three")
        self.client(f"rename {ANN} Annabel")
        self.client(f"say {ANN} four")
        self.wait_for_words(ANN, "Four")
        self.client(f"part {BOB}")
        # Whoever is gone has no character: their words are nobody's, those of the others are read on.
        self.client(f"say {CY} five")
        self.wait_for_words(CY, "Five")
        self.client(f"join {BOB} Bob")
        self.eventually("Bob's character again", lambda: len(self.acts(moment="call", key=BOB, what="Show")) == 2)
        self.client(f"say {BOB} six")
        self.wait_for_words(BOB, "Six")
        spoken = [act.of.strip() for act in self.acts(moment="call", what="Speak")]
        self.assertEqual(spoken, ["One", "Two", "Three", "Four", "Five", "Six"])

    @thorough
    def test_right_to_left_text_and_text_beyond_the_basic_plane(self):
        self.start_reading(self.conversation("[09:00] <Ann> שלום עולם\n[09:00] <Ann> مرحبا 🎈 hi\n"), participants=1)
        self.wait_for_words(ANN, "שלום עולם")
        self.eventually("the second message", lambda: any("مرحبا" in said and "🎈" in said
                                                          for said in self.said(ANN)))
        self.assert_responsive()

    @thorough
    def test_a_megabyte_of_one_message_is_taken_and_the_next_is_read(self):
        words = "many words " * (2**20 // 11)
        self.start_reading(self.conversation(f"[09:00] <Ann> short\n[09:00] <Ann> {words}\n[09:00] <Ann> the end\n"),
                           participants=1, speed=30)
        self.eventually("all three messages", lambda: len(self.said(ANN)) == 3)
        self.assertEqual([text.strip() for text in self.said(ANN)], ["Short", words.title().strip(), "The End"])
        self.assert_responsive()

    @thorough
    def test_a_megabyte_of_history_is_not_read_and_what_comes_after_it_is(self):
        reading = self.open_program(self.conversation("[09:00] <Ann> after all that\n"), participants=1)
        self.client("fill 1000000")
        reading.start_reading()
        self.wait_for_words(ANN, "After All That")
        self.client(f"say {ANN} and this")
        self.wait_for_words(ANN, "And This")
        self.assertEqual([act.of.strip() for act in self.acts(moment="call", what="Speak")],
                         ["After All That", "And This"])
        self.assert_responsive()

    @thorough
    def test_voice_tags_of_a_message_change_nothing_but_the_voice(self):
        self.start_reading(self.conversation("[09:00] <Ann> start\n"), participants=1)
        self.wait_for_words(ANN, "Start")
        self.client(f"say {ANN} " + r"before \\\\Vol=0\\\\ \\\\Mrk=7\\\\ after")
        self.client(f"say {ANN} the end")
        self.wait_for_words(ANN, "The End")

    @thorough
    def test_closing_the_conversation_ends_the_reading_and_its_characters(self):
        self.start_reading(self.conversation("[09:00] <Ann> one\n[09:00] <Bob> two\n"), participants=2)
        self.wait_for_words(BOB, "Two")
        self.client("close")
        self.eventually("the reading's end", lambda: self.button_says("&Start Reading"))
        self.client(f"open {ANN}")
        window = self.assert_responsive()
        self.assertTrue(window.visible)

    def test_signing_out_while_reading(self):
        self.start_reading(self.conversation("[09:00] <Ann> one\n"), participants=1)
        self.wait_for_words(ANN, "One")
        self.client("signout")
        self.eventually("the signed-out panel", lambda: any(
            window.visible and window.text == "&Sign in" for window in self.assert_responsive().all()))

    @thorough
    def test_stopping_and_starting_again_reads_what_comes_after(self):
        self.start_reading(self.conversation("[09:00] <Ann> one\n"), participants=1)
        self.wait_for_words(ANN, "One")
        self.screen.activate(self.reading.window)
        self.screen.key("alt+s")
        self.eventually("the reading's end", lambda: self.button_says("&Start Reading"))
        self.client(f"say {ANN} unheard")
        self.screen.activate(self.reading.window)
        self.screen.key("alt+s")
        self.eventually("Ann's character again", lambda: len(self.acts(moment="call", key=ANN, what="Show")) == 2)
        self.eventually("the reading", lambda: self.button_says("&Stop Reading"))
        self.client(f"say {ANN} heard again")
        self.wait_for_words(ANN, "Heard Again")
        self.assertNotIn("Unheard", [said.strip() for said in self.said(ANN)])

    def button_says(self, text):
        window = self.assert_responsive()
        return any(re.match(re.escape(text), child.text) for child in window.all())


if __name__ == "__main__":
    main()
