"""What the program finds can be anything: nonsense for settings, sound folders of any kind, neighbours that hang."""

import contextlib
import shutil
import signal

from case import main, thorough
from shell import CHECK_BOXES, DEFAULTS, SHOW_OPTIONS, STOP, ShellTest

FLAGS = [name for name in DEFAULTS if name not in ("IgnoredChars", "CurrentSoundScheme")]
SIX_OF_BINARY = (3, "0600ffff")


class BadInput(ShellTest):
    def open_options(self):
        self.activate_main()
        self.click(SHOW_OPTIONS)
        self.eventually("the options", self.options_shown)

    def boxes(self):
        return {value: self.control(box).state for value, box in CHECK_BOXES.items()}

    @thorough
    def test_settings_that_are_nonsense(self):
        """For each kind: what is stored, what a box then shows, and what lies in the registry after the start."""
        quiet = {"AutoUpdate": "0", "ShowTipFrm": "0", "ShowEmotTipFrm": "0", "ShowMinimizeFrm": "0",
                 "AutoMinimize": "0"}
        long_text = "x" * 100_000
        self.start_messenger("/signedout")
        started = False
        for number, (stored, flag, kept) in enumerate((
                ("abc", 0, True), (long_text, 0, True), ("\t\r\n", 0, True), ("\\\0" * 3, 0, True),
                ("99999999999999999999", 1, False), ("-5 and more", 1, False),
                (SIX_OF_BINARY, 1, False), ((4, "07000000"), None, None), ((3, ""), None, None))):
            account = f"odd{number}@messenger.example"
            values = {name: stored for name in DEFAULTS if name not in quiet}
            self.store({**quiet, **values}, account)
            self.client(f"signin {account} Odd {number}")
            if not started:
                self.start_program()
                started = True
            self.wait_for_caption(f"Odd {number} - Online (0 Unread)")
            self.open_options()
            wanted = {name: int(DEFAULTS[name]) if flag is None else flag for name in CHECK_BOXES}
            wanted.update({name: 0 for name in quiet if name in CHECK_BOXES})
            with self.subTest(stored=str(stored)[:20]):
                self.assertEqual(self.boxes(), wanted)
                # Schemes that are not there give way to the first; characters stay what they are.
                self.assertEqual(self.settings(account)["CurrentSoundScheme"], "default")
                if kept and "\0" not in stored:
                    self.assertEqual(self.settings(account)["IgnoredChars"], stored)
                for name in CHECK_BOXES:
                    if name not in quiet and kept and "\0" not in stored:
                        self.assertIn(self.settings(account)[name], (stored, "0"))
                self.assertEqual(len(self.settings(account)), 13)
            self.client("signout")
            self.eventually("the panel", self.signed_out)
        self.assert_running("Murmelix.exe")

    @thorough
    def test_sound_folders_of_any_kind(self):
        sounds = self.own_programs() / "sounds"
        shutil.move(sounds, sounds.with_name("kept"))
        self.settle()
        self.start_messenger()
        self.start_program()
        self.open_options()
        # Missing: nothing to choose, and what was chosen stays chosen.
        self.assertEqual(self.control("ComboBox").state, -1)
        self.assertEqual(self.settings()["CurrentSoundScheme"], "default")
        for fill in (lambda: sounds.mkdir(), lambda: (sounds / "a file").write_text("no scheme", "utf-8")):
            fill()
            self.come_to_schemes()
            self.assertEqual(self.control("ComboBox").state, -1)
        # 5000 of them, and the one that was chosen among them.
        for number in range(4999):
            (sounds / f"scheme {number:04d}").mkdir()
        (sounds / "default").mkdir()
        self.come_to_schemes()
        self.eventually("the scheme", lambda: self.control("ComboBox").text == "default")
        self.screen.key("End")
        self.wait_for_setting("CurrentSoundScheme", "scheme 4998")
        # The chosen one goes: the first takes its place.
        (sounds / "scheme 4998").rmdir()
        (sounds / "sch\u00e9ma").mkdir()
        self.come_to_schemes()
        self.wait_for_setting("CurrentSoundScheme", "default")
        self.assert_running("Murmelix.exe")
        shutil.rmtree(sounds)

    def come_to_schemes(self):
        """Gives the list of schemes the keyboard anew."""
        self.activate_main()
        self.click("Enable Emotico&n Reading/Playing (Recommended)", times=2)
        self.eventually("the keyboard in the box", lambda: self.focus().kind == "Button")
        self.screen.key("Tab")
        self.eventually("the keyboard in the list", lambda: self.focus().kind == "ComboBox")

    def read_ann(self):
        """A conversation with Ann that is being read; her sign-in name."""
        self.settle()
        self.start_agent()
        self.start_messenger()
        self.start_program()
        ann = self.open_conversation()
        self.start_reading_first_row()
        return ann

    @contextlib.contextmanager
    def hanging(self, program):
        """The program answers nobody in the block, whatever is asked of it."""
        process = self.desk.programs[program]
        process.send_signal(signal.SIGSTOP)
        try:
            yield
        finally:
            process.send_signal(signal.SIGCONT)

    def test_messenger_hangs_and_the_window_lives(self):
        ann = self.read_ann()
        paints = self.watch_painting()
        with self.hanging("MessengerClient.exe"):
            paints()
        # What came meanwhile is read once, and ticks that were missed are not made up for.
        self.client(f"say {ann} after the pause")
        self.client(f"say {ann} and on")
        self.eventually("the words", lambda: self.words(ann)[-1:] == ["And On"])
        self.assertEqual(self.words(ann), ["After The Pause", "And On"])
        self.activate_main()
        self.screen.key("alt+s")
        self.eventually("the end of reading", lambda: not self.control(STOP))
        self.assertEqual(self.boxes_that_came_up(), [])

    @thorough
    def test_the_character_server_hangs_and_the_window_lives(self):
        ann = self.read_ann()
        paints = self.watch_painting("AgentServerMessages")
        with self.hanging("AgentServer.exe"):
            self.client(f"say {ann} into the pause")
            paints()
            self.client(f"say {ann} and on")
        self.eventually("the words", lambda: self.words(ann)[-1:] == ["And On"])
        self.assertEqual(self.words(ann), ["Into The Pause", "And On"])
        self.assertEqual(self.boxes_that_came_up(), [])

    def words(self, signin):
        self.transcript.new()
        return [act.of.strip() for act in self.transcript.acts
                if act.moment == "call" and act.what == "Speak" and act.key == signin]

    def boxes_that_came_up(self):
        return [window.text for window in self.windows() if window.kind == "#32770" and window.visible]

    def watch_painting(self, neighbour="MessengerClientMain"):
        """What tells that the main window paints while the neighbour hangs: it is covered with another one and uncovered,
        and comes back as it was."""
        place = self.main().place
        inside = (place[0] + 8, place[1] + 60, place[2] - 8, place[3] - 8)
        whole = self.painted(inside)
        tray = self.screen.find("^Wine System Tray$")[-1]

        def paints():
            for _ in range(3):
                self.screen.cover(tray, place[0] + 60, place[1] + 150)
                self.eventually("the cover", lambda: self.pixels(inside) != whole)
                self.screen.move(tray, 700, 880)
                self.eventually("the window painted again", lambda: self.pixels(inside) == whole)
            # It answers, and the neighbour does not yet.
            windows = {window.kind: window for window in self.windows()}
            self.assertEqual(windows[neighbour].text, "")
            self.assertTrue(self.main().text)
        return paints

    @thorough
    def test_messenger_hangs_while_the_program_is_at_rest(self):
        self.settle()
        self.start_messenger()
        self.start_program()
        paints = self.watch_painting()
        self.client("hang 5000 MyFriendlyName")
        self.client("status me 10")
        with self.hanging("MessengerClient.exe"):
            paints()
        self.client("unread 1")
        self.wait_for_caption("You - Busy (1 Unread)")
        self.assertEqual(self.boxes_that_came_up(), [])


if __name__ == "__main__":
    main()
