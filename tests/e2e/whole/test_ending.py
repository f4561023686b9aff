"""The four ways to end, each seen: nothing flashes, the icon is gone, no process is left, the neighbours stay."""

from case import main, thorough
from shell import CLOSING, MINIMIZED, START_SELECTED, STOP, Mappings, ShellTest

ANN = "ann@messenger.example"
QUESTION = "There is a conversation currently being monitered for reading. Close Murmelix anyway?"


class Ending(ShellTest):
    def start_all(self, conversation=False, **settings):
        self.settle(**settings)
        self.start_agent()
        self.start_messenger()
        if conversation:
            self.client(f"add {ANN} Ann")
            self.client(f"open {ANN}")
        self.start_program()
        self.watch_screen()

    def watch_screen(self):
        self.mappings = Mappings(self.screen)
        self.addCleanup(self.mappings.close)

    def restart(self):
        self.start_program()
        self.mappings.forget()

    def assert_ended_quietly(self, *neighbours):
        """The program has ended, its icon is gone, no window has appeared on the way; those named are still there."""
        self.wait_for_end()
        self.assertEqual(self.program.returncode, 0)
        # Wine makes the topmost window the active one when another ends, and maps a character anew for that.
        self.assertEqual(self.mappings.appeared("agentserver.exe"), [])
        self.assertIsNone(self.main())
        # The neighbours' windows are of the same toolkit; hidden ones among them own their icons.
        self.assertFalse([window.text for window in self.windows()
                          if window.visible and window.kind.startswith("Murmelix")])
        for neighbour in neighbours:
            self.assert_running(neighbour)

    def test_by_the_menus_when_nothing_is_read(self):
        self.start_all()
        menu = self.open_menu("m")
        self.assertRegex(" ".join(self.mappings.appeared()), "of murmelix.exe")
        self.mappings.forget()
        self.click_menu(menu, "last")
        self.assert_ended_quietly("MessengerClient.exe", "AgentServer.exe")

        # From the tray, with the window hidden: it does not come back for it.
        self.restart()
        self.click_close_box(self.main())
        self.wait_until_hidden()
        menu = self.open_tray_menu()
        self.mappings.forget()
        self.click_menu(menu, "last")
        self.assert_ended_quietly("MessengerClient.exe", "AgentServer.exe")

        # By the accelerator.
        self.restart()
        self.open_menu("m")
        self.mappings.forget()
        self.screen.key("x")
        self.assert_ended_quietly("MessengerClient.exe", "AgentServer.exe")

    @thorough
    def test_by_the_menus_while_reading_after_a_question(self):
        self.start_all(conversation=True)
        self.start_reading_first_row()
        self.open_menu("m")
        self.screen.key("x")
        self.assertEqual(self.message_box(CLOSING), QUESTION)
        self.answer(CLOSING, "alt+n")
        self.assert_running("Murmelix.exe")
        self.assertTrue(self.control(STOP))
        self.client(f"say {ANN} are you there")
        self.eventually("the end of Ann's words", lambda: self.transcript.new() and any(
            act.moment == "end" and act.of.strip() == "Are You There" for act in self.transcript.acts))

        self.click_close_box(self.main())
        self.wait_until_hidden()
        self.click_menu(self.open_tray_menu(), "last")
        self.assertEqual(self.message_box(CLOSING), QUESTION)
        self.mappings.forget()
        self.answer(CLOSING, "alt+y")
        self.wait_for_end()
        self.eventually("the character's leave", lambda: not [
            window for window in self.windows() if window.visible and "Character" in window.kind])
        self.assert_ended_quietly("MessengerClient.exe", "AgentServer.exe")

    @thorough
    def test_with_the_messenger_client(self):
        self.start_all(conversation=True)
        self.start_reading_first_row()
        self.open_menu("h")
        self.screen.key("a")
        self.eventually("the about window", lambda: self.window("About Murmelix"))
        self.mappings.forget()
        self.client("shutdown")
        self.assert_ended_quietly("AgentServer.exe")
        self.eventually("the client's end", lambda: not self.desk.running("MessengerClient.exe"))

    @thorough
    def test_with_the_messenger_client_from_the_tray(self):
        self.start_all(ShowMinimizeFrm="1")
        self.click_close_box(self.main())
        self.wait_until_hidden()
        self.eventually(MINIMIZED, lambda: self.window(MINIMIZED))
        self.mappings.forget()
        self.client("shutdown")
        self.assert_ended_quietly("AgentServer.exe")

    def test_with_the_character_server(self):
        self.start_all(conversation=True)
        self.start_reading_first_row()
        servers_icon = next(iter(self.icons_before))
        self.click(self.tray_icons()[servers_icon], button=3)
        self.click_menu(self.eventually("the server's menu", self.popup), "last")
        title = "MSAgent Shutdown Alert!"
        self.assertEqual(self.message_box(title), "Microsoft Agent was shutdown! Murmelix will now close!")
        self.mappings.forget()
        self.answer(title)
        self.assert_ended_quietly("MessengerClient.exe")
        self.eventually("the server's end", lambda: not self.desk.running("AgentServer.exe"))

    @thorough
    def test_neighbours_that_were_started_for_it_end_with_it(self):
        self.settle()
        self.start_program()
        self.assertTrue(self.messenger())
        self.assertTrue(self.agent())
        self.eventually("the panel or the list", lambda: self.signed_out() or self.control(START_SELECTED))
        self.end_program()
        self.eventually("the end of the server", lambda: not self.agent())
        self.eventually("the end of the client", lambda: not self.messenger())

    def agent(self):
        return next((window for window in self.windows() if window.kind == "AgentServerMessages"), None)

    @thorough
    def test_sound_switched_off_ends_it_at_once(self):
        self.settle()
        self.start_messenger()
        self.inspector.ask("put Software\\Murmelix AgentServer\tSoundEnabled\t4\t00000000")
        title = "Speech Engine NOT Installed Or Disabled"
        self.launch()
        self.assertIn("Would you like to view the 'Character Options' window now?", self.message_box(title))
        self.watch_screen()
        self.answer(title, "alt+n")
        self.assert_ended_quietly("MessengerClient.exe")

    @thorough
    def test_a_prerequisite_lost_by_the_next_sign_in(self):
        self.start_all()
        characters = self.desk.prefix.windows / "msagent" / "chars"
        characters.rename(characters.with_name("elsewhere"))
        self.client("signout")
        self.eventually("the panel", self.signed_out)
        self.client("signin you@messenger.example You")
        title = "Character Directory not found!"
        self.message_box(title)
        self.mappings.forget()
        self.answer(title)
        self.assert_ended_quietly("MessengerClient.exe", "AgentServer.exe")


if __name__ == "__main__":
    main()
