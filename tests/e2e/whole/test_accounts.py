"""Signing in, out and in as another: settings of their own, a clean shell, captions of every kind."""

from case import main, thorough
from shell import (ABOUT, CHECK_BOXES, DEFAULTS, GETTING_STARTED, MINIMIZED, PAGES, SHOW_OPTIONS, START_SELECTED,
                   YOU, ShellTest)

BOB = "bob@messenger.example"


class Accounts(ShellTest):
    def sign_out(self):
        self.client("signout")
        self.eventually("the panel", self.signed_out)

    def sign_in(self, account=YOU, name="You"):
        self.client(f"signin {account} {name}")
        self.eventually("the list", lambda: not self.signed_out() and self.control(START_SELECTED))

    @thorough
    def test_each_account_has_its_own_settings_and_its_tip(self):
        self.settle(ShowTipFrm="1", AutoHideIdleChar="1", AutoCorrectText="0", IgnoredChars="abc")
        self.start_messenger()
        self.start_program()
        empty = self.pixels(self.list_place().place)
        self.open_conversation()
        self.eventually("a row", lambda: self.pixels(self.list_place().place) != empty)
        self.click(SHOW_OPTIONS)
        self.eventually("the options", self.options_shown)
        self.assertTrue(self.window(GETTING_STARTED))
        self.open_menu("h")
        self.screen.key("a")
        self.eventually("the about window", lambda: self.window(ABOUT))

        # Signing out closes them all.
        self.sign_out()
        self.assertIsNone(self.window(ABOUT))
        self.assertIsNone(self.window(GETTING_STARTED))
        self.assertTrue(self.main().enabled)
        self.assertFalse(self.options_shown())
        panel = next(child for child in self.main().children if self.control("&Sign in") in child.children)
        frame = self.frame()
        self.assertTrue(panel.place[0] <= frame.place[0] and panel.place[2] >= frame.place[2]
                        and panel.place[1] <= frame.place[1] and panel.place[3] >= frame.place[3])

        # So it does with the notice of the hidden window; who signs in sees the window again.
        self.settle("guest@messenger.example", ShowMinimizeFrm="1")
        self.sign_in("guest@messenger.example", "Guest")
        self.click_close_box(self.main())
        self.wait_until_hidden()
        self.eventually("the notice", lambda: self.window(MINIMIZED))
        self.client("signout")
        self.eventually("the end of the notice", lambda: not self.window(MINIMIZED))
        self.assertFalse(self.shown())

        # Another account: its own settings, here a new one's, and the tip.
        self.sign_in(BOB, "Bob")
        self.assertEqual(self.caption(), "Bob - Online (0 Unread)")
        self.eventually("the defaults", lambda: self.settings(BOB) == DEFAULTS)
        self.dismiss(GETTING_STARTED, never=True)
        self.assertEqual(self.settings(BOB), {**DEFAULTS, "ShowTipFrm": "0"})
        self.assert_options_are(DEFAULTS)
        self.assertEqual(self.pixels(self.list_place().place), empty)
        self.click(CHECK_BOXES["AutoHideBalloon"])
        self.wait_for_setting("AutoHideBalloon", "0", BOB)

        # The first again: what it had, and its tip, which it has not switched off; then the second without.
        self.sign_out()
        self.sign_in()
        self.dismiss(GETTING_STARTED)
        first = {**DEFAULTS, "AutoHideIdleChar": "1", "AutoCorrectText": "0", "IgnoredChars": "abc",
                 "AutoUpdate": "0", "ShowEmotTipFrm": "0", "ShowMinimizeFrm": "0"}
        self.assertEqual(self.settings(), first)
        self.assert_options_are(first)
        self.sign_out()
        self.sign_in(BOB, "Bob")
        self.assert_options_are({**DEFAULTS, "AutoHideBalloon": "0"})
        self.assertIsNone(self.window(GETTING_STARTED))
        self.assertEqual(len(self.own_icons()), 1)

    def assert_options_are(self, settings):
        self.activate_main()
        self.click(SHOW_OPTIONS)
        self.eventually("the options", self.options_shown)
        self.assertEqual({value: str(self.control(box).state) for value, box in CHECK_BOXES.items()},
                         {value: settings[value] for value in CHECK_BOXES})
        self.assertEqual(self.control("Edit").text, settings["IgnoredChars"])
        self.assertEqual(self.control("ComboBox").text, settings["CurrentSoundScheme"])

    def test_started_signed_out(self):
        self.start_messenger("/signedout")
        self.start_program()
        self.assertTrue(self.signed_out())
        self.assertEqual(self.inspector.ask(r"subkeys Software\Murmelix"), [])
        # What lies behind the panel is out of reach for keys and mouse.
        before = self.main().place
        self.activate_main()
        self.screen.key("alt+o", "alt+s", "alt+u", "Tab", "Tab", "Tab", "space")
        self.click(self.frame().children[0])
        self.assertEqual(self.main().place, before)
        self.assertTrue(self.signed_out())
        # Notices are not shown, and nothing is stored.
        self.click_close_box(self.main())
        self.wait_until_hidden()
        self.double_click_icon()
        self.wait_until_shown()
        self.double_click_icon()
        self.wait_until_hidden()
        self.assertEqual(self.screen.find("^Minimize Murmelix alert$"), [])
        self.double_click_icon()
        self.wait_until_shown()
        self.assertEqual(self.inspector.ask(r"subkeys Software\Murmelix"), [])
        self.click("Help")
        self.wait_for_page(PAGES + "help/signin.html")
        # The button brings the client's own sign-in.
        self.settle()
        self.client("window minimise")
        self.eventually("the hidden client", lambda: not self.screen.find("^Messenger$"))
        self.click("&Sign in", self.main())
        self.eventually("the client's sign-in", lambda: self.screen.find("^Messenger$"))
        self.activate("^Messenger$")
        self.screen.key("Return")
        self.eventually("the list", lambda: not self.signed_out() and self.control(START_SELECTED))
        self.eventually("the options", lambda: self.click(SHOW_OPTIONS) or self.options_shown())

    @thorough
    def test_a_failed_sign_in_stops_the_reading_and_shows_the_panel(self):
        self.settle()
        self.start_agent()
        self.start_messenger()
        self.start_program()
        self.open_conversation()
        self.start_reading_first_row()
        self.client("signin-fail 80048820")
        self.eventually("the panel", self.signed_out)
        self.eventually("no characters", lambda: not self.characters())
        self.assertEqual(len(self.own_icons()), 1)
        # All goes on after the next one.
        self.sign_in()
        self.open_conversation()
        self.start_reading_first_row()

    def main_size(self):
        left, top, right, bottom = self.main().place
        return right - left, bottom - top

    @thorough
    def test_captions_of_every_name_status_and_count(self):
        self.settle()
        self.start_messenger()
        self.start_program()
        for code, suffix in ((6, " - Invisible"), (10, " - Busy"), (14, " - Be right back"), (18, ""), (34, " - Away"),
                             (50, " -  On the Phone"), (66, " - Out to Lunch"), (2, " - Online")):
            self.client(f"status me {code}")
            self.wait_for_caption(f"You{suffix} (0 Unread)")
        for count, suffix in ((1, " (1 Unread)"), (0, " (0 Unread)"), (9999, " (9999 Unread)"), (-1, ""), (-7, ""),
                              (32767, " (32767 Unread)"), (2, " (2 Unread)")):
            self.client(f"unread {count}")
            self.wait_for_caption(f"You - Online{suffix}")
        self.client("unread 3")
        size = self.main_size()
        # A group in brackets is a part of the name, until a mail comes.
        for name, caption, after_mail in (
                ("Jo (at work) X", "Jo (at work) X - Online (3 Unread)", "Jo  X - Online (4 Unread)"),
                ("((", "(( - Online (3 Unread)", " (4 Unread)"),
                (")x(", ")x( - Online (3 Unread)", ")x (4 Unread)"),
                (":) :D ;)", " - Online (3 Unread)", "- Online (4 Unread)"),
                ("a :) b", "a   b - Online (3 Unread)", "a   b - Online (4 Unread)"),
                ("&Amp && Co", "&Amp && Co - Online (3 Unread)", "&Amp && Co - Online (4 Unread)"),
                ("Žofie 中 🎈", "Žofie 中 🎈 - Online (3 Unread)", "Žofie 中 🎈 - Online (4 Unread)"),
                ("n" * 10000, "n" * 10000 + " - Online (3 Unread)", "n" * 10000 + " - Online (4 Unread)"),
                ("(" * 5000 + ")" * 5000, None, None),
                ("You", "You - Online (3 Unread)", "You - Online (4 Unread)")):
            self.client(f"rename me {name}")
            if caption is not None:
                self.wait_for_caption(caption)
            self.picture(f"name-{name[:6].strip('():; ')}")
            self.client("unread 4")
            if after_mail is not None:
                self.wait_for_caption(after_mail)
            self.client("unread 3")
            # The window keeps its size whatever the name.
            self.assertEqual(self.main_size(), size)
        self.assertFalse(self.signed_out())

    def rows_below_the_first(self):
        """What the list shows there: the first row also tells whether it is selected and has the keyboard."""
        left, top, right, bottom = self.list_place().place
        return self.pixels((left, top + 60, right, bottom))

    @thorough
    def test_twenty_sign_ins_while_messages_arrive(self):
        self.settle(YOU)
        self.settle(BOB)
        self.start_agent(speed=100)
        self.start_messenger()
        self.start_program()
        empty = self.pixels(self.list_place().place)
        ann = self.open_conversation()
        self.eventually("the row", lambda: self.pixels(self.list_place().place) != empty)
        one_row = self.rows_below_the_first()
        caption = "You - Online (0 Unread)"
        for turn in range(20):
            if turn % 4 == 0:
                self.wait_for_caption(caption)
                self.start_reading_first_row()
            for message in range(3):
                self.client(f"say {ann} message {turn} {message}")
            self.client("signout")
            account, name = (YOU, "You") if turn % 2 else (BOB, "Bob")
            self.client(f"signin {account} {name}")
            self.open_conversation()
            self.client(f"say {ann} hello again")
            self.client(f"unread {turn + 1}")
            caption = f"{name} - Online ({turn + 1} Unread)"
        self.wait_for_caption(caption)
        self.assert_running("Murmelix.exe")
        self.assertEqual(len(self.own_icons()), 1)
        self.eventually("no characters", lambda: not self.characters())
        self.activate_main()
        self.xdotool("mousemove", 500, 800)
        self.eventually("one row", lambda: self.rows_below_the_first() == one_row)
        self.start_reading_first_row()
        self.client(f"say {ann} the last words")
        self.eventually("the last words", lambda: self.transcript.new() and any(
            act.of.strip() == "The Last Words" for act in self.transcript.acts))
        self.assertEqual(len(self.characters()), 1)


if __name__ == "__main__":
    main()
