"""How the program starts, and how it refuses to."""

from case import MAIN_WINDOW, PROGRAM_DIRECTORY, WholeProgramTest, main, thorough

HEADER = "[09:00] <Ann> hello\n[09:01] <Bob> hello Ann\n"


class StartTest(WholeProgramTest):
    def start_program(self, *arguments, name="Murmelix.exe"):
        return self.desk.start(name, PROGRAM_DIRECTORY / "Murmelix.exe", *arguments, directory=PROGRAM_DIRECTORY)

    def wait_for_main_window(self):
        self.eventually("the main window", lambda: self.screen.find(MAIN_WINDOW))

    def finish_setup(self, title):
        """Presses Done in a setup program as soon as it can be pressed."""
        self.eventually(title, lambda: self.screen.find(f"^{title}$"))
        self.eventually(f"the end of {title}", lambda: any(
            window.text == "&Done" and window.enabled
            for window in (self.window(title).all() if self.window(title) else [])))
        self.screen.picture(self.output / f"{title.replace(' ', '-')}.png")
        lines = self.window(title).texts()
        self.answer(title)
        return "\n".join(lines)


class BareMachine(StartTest):
    SET_UP = False

    def test_first_start_on_a_bare_machine_ends_in_a_working_one(self):
        self.desk.set_up_messenger()
        program = self.start_program()
        self.assertEqual(
            self.message_box("Agent NOT installed"),
            "Agent is not installed. Murmelix will now install it after you press the 'Ok' button. "
            "Please follow the setup.")
        self.answer("Agent NOT installed")
        self.assertEqual(
            self.message_box("Speech Engine NOT installed"),
            "Speech Input will now be installed. Murmelix will install it after you press the 'Ok' button. "
            "Please follow the setup.")
        self.answer("Speech Engine NOT installed")
        self.assertEqual(
            self.message_box("Please Restart"),
            "Please make sure you restart your computer after both files are installed.")
        self.answer("Please Restart")
        self.eventually("the program's end", lambda: program.poll() is not None)
        self.assertIn("The character server is ready.", self.finish_setup("Character server setup"))
        self.assertIn("The characters have a voice.", self.finish_setup("Voice setup"))

        installed = self.desk.prefix.windows / "msagent"
        self.assertTrue((installed / "AgentServer.exe").is_file())
        bundled = sorted(file.name for file in (PROGRAM_DIRECTORY / "msagent" / "chars").glob("*.acs"))
        self.assertEqual(sorted(file.name for file in (installed / "chars").glob("*.acs")), bundled)

        self.start_program(name="second")
        self.wait_for_main_window()


class Start(StartTest):
    def test_second_instance_says_so_and_ends(self):
        self.start_program()
        self.wait_for_main_window()
        second = self.start_program(name="second")
        self.assertEqual(
            self.message_box("Murmelix already running!"),
            "Another copy of Murmelix is currently running.\r\n"
            "Murmelix could be minimized to your system tray (beside your Windows' clock icon). "
            "Double click on the Murmelix icon there to restore it")
        self.answer("Murmelix already running!")
        self.eventually("the second instance's end", lambda: second.poll() is not None)
        self.assert_running("Murmelix.exe")

    @thorough
    def test_missing_character_directory_ends_the_program(self):
        characters = self.desk.prefix.windows / "msagent" / "chars"
        characters.rename(characters.with_name("elsewhere"))
        program = self.start_program()
        self.assertEqual(
            self.message_box("Character Directory not found!"),
            "The character directory is not avaiable! Please reinstall Murmelix to fix this problem!\r\n"
            "Please restart your computer after the installation")
        self.answer("Character Directory not found!")
        self.eventually("the program's end", lambda: program.poll() is not None)

    @thorough
    def test_no_characters_is_said_once_for_each_contact_and_reading_goes_on(self):
        for file in (self.desk.prefix.windows / "msagent" / "chars").glob("*.acs"):
            file.unlink()
        reading = self.open_program(self.conversation(HEADER), participants=2)
        self.begin_without_character()
        for _ in ("Ann", "Bob"):
            text = self.message_box("No Characters To Use!")
            self.assertTrue(text.startswith(
                "You have no character files on your computer! You must have at least one character to use this "
                "application!"), text)
            self.press_no("No Characters To Use!")
        self.eventually("the end of the conversation", lambda: reading.log.new() and reading.log.of_kind("done"))
        self.assert_responsive()
        self.assertEqual(self.acts(what="Speak"), [])

    @thorough
    def test_all_characters_in_use_is_said_and_the_others_are_read(self):
        characters = sorted((self.desk.prefix.windows / "msagent" / "chars").glob("*.acs"))
        for file in characters[1:]:
            file.unlink()
        reading = self.open_program(self.conversation(HEADER), participants=2)
        self.begin_without_character()
        self.assertTrue(self.message_box("All Characters Loaded!").startswith(
            "All characters have been loaded and used. You need at least one more character!"))
        self.press_no("All Characters Loaded!")
        self.eventually("the first one's message",
                        lambda: self.said("ann@messenger.example") == ["Hello"])
        self.eventually("the end of the conversation", lambda: reading.log.new() or reading.log.of_kind("done"))
        self.assertEqual(self.said("bob@messenger.example"), [])
        self.assert_responsive()

    @thorough
    def test_unwritable_registry_lets_the_program_read_all_the_same(self):
        # A value where the program wants to make its key: nothing can be stored below it.
        self.reg("add", r"HKCU\Software", "/v", "Murmelix", "/d", "not a key", "/f")
        reading = self.start_reading(self.conversation(HEADER), participants=2)
        reading.follow()

    def test_minimised_start_shows_no_window(self):
        self.desk.start("MessengerClient.exe", PROGRAM_DIRECTORY / "MessengerClient.exe", "/signedout")
        self.eventually("the client's window", lambda: any("Messenger" in text for text in self.screen.titles()))
        self.start_program("/Min")
        hidden = self.eventually("the hidden main window", lambda: next(
            (window for window in self.windows() if window.text.startswith("Murmelix v")), None))
        self.assertFalse(hidden.visible)
        self.assertEqual(self.screen.find(MAIN_WINDOW), [])

    def begin_without_character(self):
        """Presses the start button's accelerator; no character will come on to tell that it was heard."""
        def pressed():
            windows = self.screen.find(MAIN_WINDOW)
            return windows and self.screen.activate(windows[-1]) and self.screen.active() == windows[-1]
        self.eventually("the main window in front", pressed)
        self.screen.key("alt+s")

    def press_no(self, title):
        """Answers a Yes/No box with No, once: another of the same title may follow."""
        windows = self.screen.find(f"^{title}$")
        self.eventually("the box in front", lambda: self.screen.activate(windows[-1]))
        self.screen.key("alt+n")
        self.eventually(f"the end of {title!r}", lambda: windows[-1] not in self.screen.find(f"^{title}$"))


if __name__ == "__main__":
    main()
