"""What a user does with a character on the screen: answer its contact, change its language, have it tell who it is."""

from case import main
from shell import ShellTest

QUICK, LANGUAGES = "Quick Message", "Change Language"
PROMPT = "Enter your quick message and press Enter..."
ANN = "ann@messenger.example"


class BesideCharacters(ShellTest):
    def read(self, *switches):
        """Ann's conversation is being read, and her character stands above it."""
        self.settle()
        self.start_agent()
        self.start_messenger("/signin", "you@messenger.example", "/friendly", "You", *switches)
        self.start_program()
        self.open_conversation()
        self.start_reading_first_row()
        # It walks to its place first.
        places = []

        def stands():
            characters = self.characters()
            places.append(characters[0].place if characters else None)
            return len(places) > 3 and places[-1] is not None and len(set(places[-4:])) == 1
        self.eventually("the character at its place", stands)

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
        self.click_at(*self.point_at(), button=3)
        self.eventually("the character's menu", self.popup)
        self.screen.key(letter)

    def history(self):
        texts = next(window for window in self.windows() if window.kind == "MessengerClientConversation").texts()
        return next((text for text in texts if " says:" in text), "")

    def wait_until_gone(self, title):
        self.eventually(f"the end of {title}", lambda: not self.window(title))

    def test_a_double_click_and_a_line_answer_the_contact(self):
        self.read()
        window = self.double_click_character()
        left, _, _, bottom = self.character().place
        self.assertEqual(window.place[:2], (left, bottom))
        self.assertEqual(self.control("Edit", window).text, PROMPT)
        self.eventually("the keyboard in it", lambda: self.focus_in(self.window(QUICK)))
        self.picture("quick")
        self.xdotool("type", "see you")
        self.eventually("the typed text", lambda: self.control("Edit", self.window(QUICK)).text == "see you")
        self.screen.key("Return")
        self.wait_until_gone(QUICK)
        self.eventually("the sent text", lambda: "see you" in self.history())
        self.assertIn("You says:", self.history())
        # Ann's answer comes after it, and is what is read.
        self.client(f"say {ANN} bye then")
        self.eventually("her answer", lambda: self.transcript.new() or [
            act for act in self.transcript.acts if act.what == "Speak" and "Bye Then" in act.of])

    def test_smilies_canned_texts_and_effects_are_chosen_from_the_menus(self):
        self.read()
        self.double_click_character()
        self.eventually("the keyboard in it", lambda: self.focus_in(self.window(QUICK)))
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

    def test_escape_stop_sign_out_and_the_contacts_end_close_the_quick_message(self):
        self.read()
        self.double_click_character()
        self.eventually("the keyboard in it", lambda: self.focus_in(self.window(QUICK)))
        self.screen.key("Escape")
        self.wait_until_gone(QUICK)
        self.choose_from_character("q")
        self.eventually("the quick message", lambda: self.window(QUICK))
        self.activate_main()
        self.screen.key("alt+s")
        self.wait_until_gone(QUICK)
        self.eventually("the empty stage", lambda: not self.characters())
        for end in (f"leave {ANN}", "signout"):
            self.start_reading_first_row()
            self.eventually("the character", self.characters)
            self.double_click_character()
            self.client(end)
            self.wait_until_gone(QUICK)
            if end != "signout":
                self.activate_main()
                self.screen.key("alt+s")
                self.client(f"join {ANN}")

    def answer_in(self, classes):
        self.read("/edits", classes)
        self.double_click_character()
        self.eventually("the keyboard in it", lambda: self.focus_in(self.window(QUICK)))
        self.xdotool("type", "in any box")
        self.screen.key("Return")

    def test_two_ansi_boxes_take_the_text(self):
        self.answer_in("RichEdit20A+RichEdit20A")
        self.eventually("the sent text", lambda: "in any box" in self.history())
        self.wait_until_gone(QUICK)

    def test_an_ink_box_takes_the_text(self):
        self.answer_in("RichEdit20W+InkEdit")
        self.eventually("the sent text", lambda: "in any box" in self.history())
        self.wait_until_gone(QUICK)

    def test_boxes_of_two_kinds_are_not_found(self):
        self.answer_in("RichEdit20A+RichEdit20W")
        self.assertEqual(self.message_box("Unable to send Quick message!").splitlines()[0],
                         "Murmelix is unable to send your quick message. Try sending it manually!")
        self.answer("Unable to send Quick message!")
        self.wait_until_gone(QUICK)
        self.assertEqual(self.history(), "")

    def test_another_language_is_chosen_and_spoken(self):
        self.read()
        self.choose_from_character("c")
        window = self.eventually("the languages", lambda: self.window(LANGUAGES))
        left, top, _, _ = self.character().place
        self.assertEqual(window.place[:2], (left, top))
        self.eventually("the keyboard in it", lambda: self.focus_in(self.window(LANGUAGES)))
        self.picture("languages")
        self.screen.key("Down", "Down", "Down", "Down", "Return")  # Finnish, French, German? the fourth after English (US)
        self.wait_until_gone(LANGUAGES)
        # The window has the new one selected the next time.
        self.choose_from_character("c")
        self.eventually("the languages again", lambda: self.window(LANGUAGES))
        self.picture("languages-again")
        self.screen.key("Escape")
        self.wait_until_gone(LANGUAGES)

    def test_who_it_is_is_told_and_it_can_be_sent_away(self):
        self.read()
        self.choose_from_character("w")
        self.eventually("its name", lambda: self.transcript.new() or [
            act for act in self.transcript.acts
            if act.what == "Speak" and act.key == ANN and "Best Known As: Ann" in act.of])
        self.choose_from_character("r")
        self.eventually("the empty stage", lambda: not self.characters())


if __name__ == "__main__":
    main()
