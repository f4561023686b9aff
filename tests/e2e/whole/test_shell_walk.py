"""A user walks through the shell with mouse and keyboard: every option, the tray, the menus, the notices, the pages."""

from case import VERSION, main, thorough
from shell import (ABOUT, CHECK_BOXES, DEFAULTS, EMOTICONS, GETTING_STARTED, HIDE_OPTIONS, MINIMIZED, OPTION_FRAMES,
                   PAGES, SHOW_OPTIONS, START, START_SELECTED, ShellTest)

ANN = "ann@messenger.example"


class ShellWalk(ShellTest):
    def test_every_option_is_stored_at_its_click_and_found_again(self):
        (self.own_programs() / "sounds" / "my scheme").mkdir()
        self.start_messenger()
        self.start_program()
        self.dismiss(GETTING_STARTED, never=True)
        expected = {**DEFAULTS, "ShowTipFrm": "0"}
        self.assertEqual(self.settings(), expected)

        self.assertFalse(self.options_shown())
        self.click(SHOW_OPTIONS)
        self.eventually("the options", self.options_shown)
        self.assertTrue(all(self.control(frame).enabled for frame in OPTION_FRAMES))
        for value, box in CHECK_BOXES.items():
            for wanted in ("0", "1") if expected[value] == "1" else ("1", "0"):
                self.click(box)
                expected[value] = wanted
                self.wait_for_setting(value, wanted)
                self.assertEqual(self.settings(), expected)
                self.assertEqual(self.control(box).state, int(wanted))
                self.assertEqual(self.control("Edit").enabled, expected["AutoIgnoreChars"] == "1")
                self.assertEqual(self.control("ComboBox").enabled, expected["PlayReadEmoticon"] == "1")
        # Then every option is given a value that a new account does not have.
        self.type_ignored_characters(expected)
        self.choose_a_new_scheme(expected)
        for value, box in CHECK_BOXES.items():
            self.click(box)
            expected[value] = "1" if DEFAULTS[value] == "0" else "0"
            self.wait_for_setting(value, expected[value])
        self.assertEqual(self.settings(), expected)
        self.end_program()

        # "AutoMinimize" is one of them.
        self.start_program(shown=False)
        self.double_click_icon()
        self.wait_until_shown()
        self.place_main()
        self.click(SHOW_OPTIONS)
        self.eventually("the options", self.options_shown)
        self.assertEqual({value: str(self.control(box).state) for value, box in CHECK_BOXES.items()},
                         {value: expected[value] for value in CHECK_BOXES})
        self.assertEqual(self.control("Edit").text, expected["IgnoredChars"])
        self.assertEqual(self.control("ComboBox").text, "new one")
        self.assertFalse(self.control("Edit").enabled or self.control("ComboBox").enabled)
        self.assertEqual(self.settings(), expected)

    def type_ignored_characters(self, expected):
        self.click("Edit")
        self.screen.key("End")
        for typed, key in (("*", "asterisk"), ("~", "asciitilde"), (" ", "space"), ("x", "x")):
            self.screen.key(key)
            expected["IgnoredChars"] += typed
            self.wait_for_setting("IgnoredChars", expected["IgnoredChars"])
        self.screen.key("BackSpace", "Left", "Delete")
        expected["IgnoredChars"] = expected["IgnoredChars"][:-2]
        self.wait_for_setting("IgnoredChars", expected["IgnoredChars"])

    def choose_a_new_scheme(self, expected):
        """One that has come while the program ran is there when the list is come to again."""
        (self.desk.program_directory / "sounds" / "new one").mkdir()
        self.screen.key("Tab", "Tab")
        self.eventually("the keyboard in the list", lambda: self.focus().kind == "ComboBox")
        for scheme in ("my scheme", "new one"):
            self.screen.key("Down")
            self.wait_for_setting("CurrentSoundScheme", scheme)
        expected["CurrentSoundScheme"] = "new one"

    def test_the_keyboard_reaches_everything(self):
        self.settle()
        self.start_messenger()
        self.start_program()
        self.activate_main()
        # Without the options, theirs are passed over, and so is the start without a conversation.
        self.eventually("the keyboard", self.focus)
        self.assertEqual(self.walk(2), [SHOW_OPTIONS, "MurmelixControl"])
        self.screen.key("alt+o")
        self.eventually("the options", self.options_shown)
        self.assertEqual(self.focus().text, HIDE_OPTIONS)
        around = ["&Minimize to System Tray on Startup", "A&uto Check for Updates", "Chara&cter Matchup...",
                  "Auto Attach to Con&versation Window", "&Auto Hide Balloon After Reading",
                  "Auto &Hide when Idle For a Short Time", "Auto Correct &Long Text (Recommended)",
                  "Ignore Reading The &Following Characters:", "Edit",
                  "Enable Emotico&n Reading/Playing (Recommended)", "ComboBox",
                  "MurmelixControl", HIDE_OPTIONS]
        self.assertEqual(self.walk(len(around)), around)
        self.assertEqual(self.walk(len(around), "shift+Tab"), around[-2::-1] + [HIDE_OPTIONS])

        # The accelerators of the options; those of the letters that no menu has, too.
        for letter, value in (("u", "AutoUpdate"), ("v", "AutoAttachChar"), ("a", "AutoHideBalloon"),
                              ("l", "AutoCorrectText"), ("f", "AutoIgnoreChars"), ("n", "PlayReadEmoticon")):
            before = self.settings()[value]
            self.screen.key(f"alt+{letter}")
            self.wait_for_setting(value, "0" if before == "1" else "1")
        # What is ticked off is passed over.
        self.click("Auto Correct &Long Text (Recommended)")
        self.assertEqual(self.walk(3), ["Ignore Reading The &Following Characters:",
                                        "Enable Emotico&n Reading/Playing (Recommended)", "MurmelixControl"])
        # The blank ticks a box, Escape and Enter end nothing.
        self.walk(3)
        self.screen.key("space")
        self.eventually("the ticked box", lambda: self.settings()["AutoUpdate"] == "0")
        self.screen.key("Escape", "Return", "alt+o")
        self.eventually("no options", lambda: not self.options_shown())
        for frame in OPTION_FRAMES:
            self.assertFalse(self.control(frame).enabled)

    def walk(self, steps, key="Tab"):
        """Presses the key so many times; the texts, or kinds, of the controls that are come to."""
        passed = []
        for _ in range(steps):
            before = self.focus().handle
            self.screen.key(key)
            control = self.eventually("the next control", lambda: (lambda now: now if now and now.handle != before
                                                                   else None)(self.focus()))
            passed.append(control.kind if control.kind in ("Edit", "ComboBox") else control.text or control.kind)
        return passed

    @thorough
    def test_what_is_told_on_the_way_to_the_tray_is_in_front(self):
        self.settle(ShowMinimizeFrm="1")
        self.start_agent()
        self.start_messenger()
        self.open_conversation()
        self.start_program()
        self.start_reading_first_row()
        self.activate("Conversation$")
        self.screen.cover(self.screen.find("Conversation$")[-1], 420, 380)
        self.activate_main()
        self.open_menu("m")
        self.screen.key("m")
        self.wait_until_hidden()
        self.eventually("the notice in front", lambda: self.screen.find(MINIMIZED)
                        and self.screen.stacking()[-1] == self.screen.find(MINIMIZED)[-1])
        # Not before those that the user turns to.
        self.activate("Conversation$")
        self.eventually("the conversation in front",
                        lambda: self.screen.stacking()[-1] == self.screen.find("Conversation$")[-1])

    def test_to_the_tray_and_back(self):
        self.settle(ShowMinimizeFrm="1")
        self.start_messenger()
        self.start_program()
        self.open_menu("m")
        self.screen.key("m")
        self.wait_until_hidden()
        self.dismiss(MINIMIZED)
        self.assertEqual(self.settings()["ShowMinimizeFrm"], "1")

        icon = self.own_icons()[0]
        self.click(icon)
        self.click(icon, button=2)
        self.assertFalse(self.shown())
        self.double_click_icon()
        self.wait_until_shown()
        self.double_click_icon()
        self.wait_until_hidden()
        notice = self.eventually(MINIMIZED, lambda: self.window(MINIMIZED))
        # Its close box is refused: OK alone closes it.
        self.click_close_box(notice)
        self.activate(MINIMIZED)
        self.assertTrue(self.window(MINIMIZED).visible)
        self.dismiss(MINIMIZED, never=True)
        self.wait_for_setting("ShowMinimizeFrm", "0")

        # By the tray's menu, whose first item is the one for the double click.
        self.click_menu(self.open_tray_menu(), "first")
        self.wait_until_shown()
        self.click_close_box(self.main())
        self.wait_until_hidden()
        self.assertIsNone(self.popup())
        self.assertIsNone(self.window(MINIMIZED))
        self.assert_running("Murmelix.exe")
        # Nothing is read, so the item in the middle is grey: a click there does nothing.
        self.click_menu(self.open_tray_menu(), "middle")
        self.leave_menu()
        self.double_click_icon()
        self.wait_until_shown()
        self.assertTrue(self.control(START_SELECTED))
        self.assertEqual(len(self.own_icons()), 1)

    @thorough
    def test_about_window_is_modal_and_closes_on_a_click_and_on_escape(self):
        self.settle()
        self.start_messenger()
        self.start_program()
        for close in ("click", "Escape", "link"):
            self.open_menu("h")
            self.screen.key("a")
            about = self.eventually(ABOUT, lambda: self.window(ABOUT))
            self.assertFalse(self.main().enabled)
            self.assertIn(VERSION, about.texts())
            self.double_click_icon()
            self.assertTrue(self.shown())
            left, top, right, bottom = about.place
            if close == "click":
                self.click_at(left + 60, bottom - 20)
            elif close == "Escape":
                self.activate(ABOUT)
                self.screen.key("Escape")
            else:
                self.click("http://www.murmelix.example/Murmelix/", about)
                self.wait_for_page(PAGES)
                self.click("support@murmelix.example", self.window(ABOUT))
                self.wait_for_page("mailto:support@murmelix.example")
                self.assertTrue(self.window(ABOUT))
                self.click_close_box(self.window(ABOUT))
            self.eventually("the end of the about window", lambda: not self.window(ABOUT))
            self.assertTrue(self.main().enabled)
            self.assertTrue(self.shown())

    @thorough
    def test_pages_open_where_the_site_is(self):
        self.settle(ShowTipFrm="1", ShowEmotTipFrm="1")
        self.start_messenger()
        self.start_program()
        tip = self.eventually("the tip", lambda: self.window(GETTING_STARTED))
        self.click("Click here to see a live demo", tip)
        self.wait_for_page(PAGES + "help/livedemo.html")
        self.dismiss(GETTING_STARTED)
        for menu, item, path in (("m", "g", "download/d_characters.html"), ("m", "l", "download/langauges.html"),
                                 ("h", "l", "help/tips.html"), ("h", "p", "help/"), ("h", "t", "sendmail/")):
            self.open_menu(menu)
            self.screen.key(item)
            self.wait_for_page(PAGES + path)
        self.client(f"add {ANN} Ann")
        self.client(f"open {ANN}")
        self.start_reading_first_row()
        self.click("Click here to hear fun sounds", self.eventually("the tip", lambda: self.window(EMOTICONS)))
        self.wait_for_page(PAGES + "help/emoticons.html")
        self.dismiss(EMOTICONS, never=True)
        self.wait_for_setting("ShowEmotTipFrm", "0")
        # Another machine's site, from its registry.
        self.reg("add", r"HKLM\Software\Murmelix", "/v", "SiteHost", "/d", "pages.example:8080", "/f")
        self.client("signout")
        self.eventually("the panel", self.signed_out)
        self.click("Help")
        self.wait_for_page("http://pages.example:8080/Murmelix/help/signin.html")

    def test_reading_is_started_and_stopped_from_everywhere(self):
        self.settle()
        self.start_messenger()
        self.start_program()
        # There is nothing to be read.
        self.assertFalse(self.control(START_SELECTED).enabled)
        for name in ("Ann", "Bob"):
            signin = f"{name.lower()}@messenger.example"
            self.client(f"add {signin} {name}")
            self.client(f"open {signin}")
        self.start_reading_first_row()
        # From the tray's menu, whose item in the middle is not grey now.
        self.click_menu(self.open_tray_menu(), "middle")
        self.eventually("the end of reading", lambda: self.control(START))
        self.start_reading_first_row()
        self.activate_main()
        self.screen.key("alt+s")
        self.eventually("the end of reading", lambda: self.control(START))
        # The window of the conversation goes: with it the reading, whether the characters follow it or not.
        for attached in ("1", "0"):
            self.start_reading_first_row()
            if self.settings()["AutoAttachChar"] != attached:
                self.activate_main()
                self.click(SHOW_OPTIONS)
                self.click(CHECK_BOXES["AutoAttachChar"])
                self.wait_for_setting("AutoAttachChar", attached)
            self.client("use 1")
            self.client("close")
            self.eventually("the end of reading", lambda: self.control(START))
        self.assertTrue(self.control(HIDE_OPTIONS))


if __name__ == "__main__":
    main()
