"""The first minutes of a new user, on screens of several sizes and resolutions, with nothing placed beforehand."""

from case import MAIN_WINDOW, main, thorough
from shell import GETTING_STARTED, START_SELECTED, YOU, ShellTest

OTTO, MINA, THEO = (f"{name}@messenger.example" for name in ("otto", "mina", "theo"))
BOX = "All Characters Loaded!"


class FirstMinutes(ShellTest):
    """On the smallest screen."""

    SCREEN = (1024, 768)

    def sign_in_by_any_name(self):
        """In the client as it comes, by the keyboard."""
        self.desk.start("MessengerClient.exe", self.desk.program_directory / "MessengerClient.exe", "/orders",
                        "/signedout")
        self.eventually("the Messenger client", lambda: self.screen.find("^Messenger$"))
        self.activate("^Messenger$")
        self.screen.key("alt+n", "ctrl+a")
        self.xdotool("type", "robin")
        self.screen.key("Return")
        self.eventually("the contacts", lambda: self.screen.find("^robin - Messenger$"))

    def talk(self):
        self.settle("robin@messenger.example", AutoHideBalloon="0")
        # Three characters, so that the fourth friend finds none.
        for file in sorted((self.desk.prefix.windows / "msagent" / "chars").glob("*.acs"))[3:]:
            file.unlink()
        self.start_agent()
        self.sign_in_by_any_name()
        self.launch()
        self.eventually("the main window", lambda: self.screen.find(MAIN_WINDOW))
        self.eventually("the name", lambda: self.control(START_SELECTED) and self.caption() == "robin - Online (0 Unread)")
        # The keyboard alone: to the first contact, into a conversation with her, as whom the next words are typed.
        self.activate("robin - Messenger$")
        self.screen.key("Down", "Return")
        self.eventually("the conversation", lambda: self.screen.find("^Hazel - Conversation$"))
        self.wait_for_events()
        self.activate_main()
        self.screen.key("alt+s")
        self.eventually("the character", self.characters)
        self.activate("^Hazel - Conversation$")
        self.screen.key("alt+a", "Down", "Return")
        self.xdotool("type", "So you are there")
        self.screen.key("Return")
        self.assert_all_is_seen(1)
        self.picture("one")
        for signin in (OTTO, MINA):
            self.client(f"join {signin}")
        self.eventually("three characters", lambda: len(self.characters()) == 3)
        self.client(f"say {MINA} Here we all are")
        self.assert_all_is_seen(2)
        self.picture("three")
        self.fourth_comes()

    def assert_all_is_seen(self, spoken):
        """So many have said something: their balloons and all characters are on the screen, above the conversation."""
        def balloons():
            shown = [window for window in self.windows() if window.kind == "AgentServerBalloon" and window.visible]
            return shown if len(shown) == spoken else None
        shown = self.eventually(f"{spoken} balloons", balloons)
        conversation = self.conversation()
        for balloon in shown:
            # A line of letters, with what is around it, as large as the resolution wants it.
            self.assertGreater((balloon.place[3] - balloon.place[1]) * 96 / self.DPI, 30, balloon)
        for window in (*shown, *self.characters()):
            left, top, right, bottom = window.place
            self.assertTrue(0 <= left < right <= self.SCREEN[0] and 0 <= top < bottom <= self.SCREEN[1], window)
            self.assertLessEqual(bottom, conversation.place[1] + 2, window)
        self.assertLessEqual(conversation.place[3], self.SCREEN[1] + 2)

    def fourth_comes(self):
        """What the program has to say is in front of the conversation, which takes input all the while."""
        self.activate("Conversation$")
        self.client(f"join {THEO}")
        box = self.eventually(BOX, lambda: self.screen.find(f"^{BOX}$"))[-1]
        self.eventually("the box in front", lambda: self.screen.stacking()[-1] == box)
        self.picture("box")
        self.assertTrue(self.screen.type_into(self.screen.find("Conversation$")[-1], "alt+a", "Home", "Return"))
        self.xdotool("type", "still here")
        self.screen.key("Return")
        self.eventually("the message", lambda: any(
            "still here" in text for window in self.windows() if window.kind == "MessengerClientConversation"
            for text in window.texts()))
        self.answer(BOX, "alt+n")
        self.close_messenger()

    def close_messenger(self):
        """Closing the client's window puts it away, and the reading goes on."""
        self.assertTrue(self.screen.type_into(self.screen.find("^robin - Messenger$")[-1], "alt+F4"))
        self.eventually("the hidden client", lambda: not self.screen.find("^robin - Messenger$"))
        self.client(f"say {OTTO} And on it goes")
        self.assert_all_is_seen(3)
        self.assert_running("MessengerClient.exe")

    def test_the_welcome_is_in_front_of_the_messenger(self):
        """Which has the keyboard, as somebody has just signed in there."""
        self.start_agent()
        self.desk.start("MessengerClient.exe", self.desk.program_directory / "MessengerClient.exe", "/signedout")
        self.eventually("the Messenger client", lambda: self.screen.find("^Messenger$"))
        self.launch()
        self.eventually("the main window", lambda: self.screen.find(MAIN_WINDOW))
        # Where it can be covered.
        self.screen.move(self.screen.find(MAIN_WINDOW)[-1], 100, 100)
        self.activate("^Messenger$")
        self.screen.key("alt+s")
        welcome = self.eventually(GETTING_STARTED, lambda: self.screen.find(f"^{GETTING_STARTED}$"))[-1]
        self.eventually("the welcome in front", lambda: self.screen.stacking()[-1] == welcome)

    @thorough
    def test_everything_can_be_seen_on_a_small_screen(self):
        self.talk()


class FirstMinutesOnAFineScreen(FirstMinutes):
    """On one of many dots an inch."""

    SCREEN = (1920, 1200)
    DPI = 192

    @thorough
    def test_everything_can_be_seen_on_a_fine_screen(self):
        self.talk()


class Places(ShellTest):
    def launch_and_wait(self):
        self.launch()
        self.eventually("the main window", lambda: self.screen.find(MAIN_WINDOW))
        self.eventually("the tray icon", self.own_icons)

    def wait_for_place(self, place):
        self.eventually("its place", lambda: self.main().place == place)

    def show_options(self):
        self.activate_main()
        self.screen.key("alt+o")
        self.eventually("the options", self.options_shown)

    @thorough
    def test_windows_come_back_to_where_they_were(self):
        self.settle()
        self.desk.start("MessengerClient.exe", self.desk.program_directory / "MessengerClient.exe", "/orders", "/signin",
                        YOU, "/friendly", "You")
        self.eventually("the Messenger client", lambda: self.screen.find("^You - Messenger$"))
        self.launch_and_wait()
        self.screen.move(self.screen.find(MAIN_WINDOW)[-1], 700, 300)
        there = self.eventually("the moved window", lambda: (lambda place: place if place[0] > 600 else None)(
            self.main().place))
        # The options have no room beside it: it gives way to them, and comes back.
        self.show_options()
        self.assertLess(self.main().place[0], there[0])
        self.assertLessEqual(self.main().place[2], self.SCREEN[0])
        self.screen.key("alt+o")
        self.wait_for_place(there)
        self.show_options()
        self.end_program()
        self.launch_and_wait()
        self.wait_for_place(there)
        # One that is off every screen by now.
        self.end_program()
        lines = "\0".join(["90000", "-60000", "5000", "5000"]) + "\0\0"
        self.inspector.ask("put Software\\MurmelixWindows\tMainFrm\t7\t" + lines.encode("utf-16-le").hex())
        self.launch_and_wait()
        left, top, right, bottom = self.main().place
        self.assertTrue(0 <= left < right <= self.SCREEN[0] and 0 <= top < bottom <= self.SCREEN[1], self.main())
        self.place_of_a_conversation()

    def place_of_a_conversation(self):
        """The next one opens where the last one was left; where it was not touched, always at the same place."""
        hazel = "hazel@messenger.example"
        self.client(f"add {hazel} Hazel")
        for _ in range(2):
            self.client(f"open {hazel}")
            first = self.eventually("the conversation", self.conversation).place
            self.client("close")
            self.eventually("its end", lambda: not self.conversation())
        self.assertNotIn("ConversationPlace", self.values(r"Software\MessengerClient"))
        self.client(f"open {hazel}")
        window = self.eventually("the conversation", lambda: self.screen.find("^Hazel - Conversation$"))[-1]
        self.screen.move(window, 90, 420)
        self.screen.resize(window, 500, 400)
        there = self.eventually("the other size", lambda: (lambda place: place if place[0] < 100 and
                                place[2] - place[0] < first[2] - first[0] else None)(self.conversation().place))
        self.client("close")
        self.eventually("its end", lambda: not self.conversation())
        self.client(f"open {hazel}")
        self.eventually("the place of the last one", lambda: (lambda window: window and window.place == there)(
            self.conversation()))


if __name__ == "__main__":
    main()
