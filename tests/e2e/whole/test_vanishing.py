"""A neighbour that is gone from one moment to the next: the program notices it without being used."""

from case import PROGRAM_DIRECTORY, WholeProgramTest, main, thorough

ANN = "ann@messenger.example"
LOG = "".join(f"[09:{minute:02d}] <Ann> message number {minute}\n" for minute in range(30))


class Vanishing(WholeProgramTest):
    def read_some(self, messages):
        self.start_reading(self.conversation(LOG), participants=1, speed=30)
        self.eventually(f"{messages} messages", lambda: len(self.said(ANN)) >= messages)

    def assert_alive(self):
        self.assert_running("Murmelix.exe")
        return self.assert_responsive()

    def panel_is_shown(self):
        """Whether the main window asks to sign in."""
        window = self.assert_alive()
        return any(child.text == "&Sign in" and child.visible for child in window.all())

    def wait_for_panel(self):
        self.eventually("the panel", self.panel_is_shown)
        self.screen.picture(self.output / "signed-out.png")

    def characters(self):
        """The windows of the characters on the screen."""
        return [window for window in self.windows() if window.kind == "AgentServerCharacter" and window.visible]

    def wait_for_shutdown_alert(self):
        """The character server's end is told, and the program ends after it."""
        self.assertEqual(self.message_box("MSAgent Shutdown Alert!"),
                         "Microsoft Agent was shutdown! Murmelix will now close!")
        self.answer("MSAgent Shutdown Alert!")
        self.eventually("the program's end", lambda: not self.desk.running("Murmelix.exe"))

    def kill(self, name):
        process = self.desk.programs[name]
        process.kill()
        process.wait()

    @thorough
    def test_messenger_is_killed_before_reading(self):
        self.open_program(self.conversation(LOG), participants=1)
        self.kill("MessengerClient.exe")
        self.wait_for_panel()

    def test_messenger_is_killed_while_reading(self):
        self.read_some(3)
        self.assertTrue(self.characters())
        self.kill("MessengerClient.exe")
        self.wait_for_panel()
        self.eventually("the end of the characters", lambda: not self.characters())

    @thorough
    def test_sign_in_starts_a_killed_messenger_again(self):
        self.read_some(1)
        self.kill("MessengerClient.exe")
        self.wait_for_panel()
        self.screen.activate(self.reading.window)
        self.screen.key("alt+s")
        self.eventually("the client's window", lambda: self.screen.find("Messenger$"))
        self.eventually("the end of the panel", lambda: self.sign_in_to_client() or not self.panel_is_shown())

    def sign_in_to_client(self):
        """Presses Enter in the client's window where it asks who signs in."""
        for window in self.screen.find("^Messenger$"):
            if self.screen.activate(window):
                self.screen.key("Return")

    @thorough
    def test_messenger_that_comes_back_by_itself_is_joined(self):
        self.read_some(1)
        self.kill("MessengerClient.exe")
        self.wait_for_panel()
        client = PROGRAM_DIRECTORY / "MessengerClient.exe"
        self.desk.start("MessengerClient.exe", client, "/signin", "back@messenger.example", "/friendly", "Back")
        self.eventually("the end of the panel", lambda: not self.panel_is_shown())
        self.eventually("the new name", lambda: any(
            text.startswith("Back - ") for text in self.assert_alive().texts()))

    @thorough
    def test_messenger_vanishes_in_the_middle_of_a_call_of_history(self):
        self.read_some(2)
        self.client("vanish History")
        self.eventually("the client's end", lambda: not self.desk.running("MessengerClient.exe"))
        self.assert_alive()

    @thorough
    def test_messenger_hangs_in_a_call_and_comes_back(self):
        self.read_some(2)
        self.client("hang 3000 History")
        said = len(self.said(ANN))
        self.eventually("more messages", lambda: len(self.said(ANN)) > said + 1)
        self.reading.follow()

    @thorough
    def test_messenger_rejects_calls_for_a_while(self):
        self.read_some(2)
        self.client("fail 80010001 20 History")
        self.reading.follow()

    def test_agent_is_killed_while_reading(self):
        self.read_some(3)
        self.kill("AgentServer.exe")
        self.wait_for_shutdown_alert()

    @thorough
    def test_agent_is_killed_before_reading(self):
        self.open_program(self.conversation(LOG), participants=1)
        self.kill("AgentServer.exe")
        self.wait_for_shutdown_alert()

    @thorough
    def test_both_are_killed_at_once(self):
        self.read_some(3)
        self.kill("AgentServer.exe")
        self.kill("MessengerClient.exe")
        self.wait_for_shutdown_alert()


if __name__ == "__main__":
    main()
