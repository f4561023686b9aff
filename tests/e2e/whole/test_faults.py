"""What can happen to programs on any day: they are suspended, killed, have a full disk or another screen, or the session
ends. Nothing of it costs a word or a setting."""

import contextlib
import resource
import shutil
import signal
import time

from case import ROOT, main, thorough
from desk.measuring import pid_of
from desk.resolutions import offer
from disasters import ALERT, LATEST, ROUNDS, SEED, Disasters
from long_reading import LongReading
from matchups import ANN, BOB, DOWNLOAD, MATCHUPS, MatchupTest
from publisher import Publisher, content
from shell import DEFAULTS, SHOW_OPTIONS

SUSPENDED_SECONDS = 10
HALF = max(1, ROUNDS // 2)  # of rounds that begin with a whole start of the program
DPI_CHANGED = 0x2E0
MISSING = {"Agent NOT installed", "Speech Engine NOT Installed Or Disabled"}


class LongReadings(Disasters):
    SCREEN = (1280, 960)

    @contextlib.contextmanager
    def suspended(self, program):
        process = self.desk.programs[program]
        process.send_signal(signal.SIGSTOP)
        try:
            time.sleep(SUSPENDED_SECONDS)
            yield
        finally:
            process.send_signal(signal.SIGCONT)

    def assert_on_screen(self, width, height):
        def all_there():
            windows = [window for window in self.windows() if window.visible and (
                window.kind in ("AgentServerCharacter", "MurmelixForm") or window.kind.startswith("MessengerClient"))]
            return windows and not [
                window for window in windows if window.place[0] < -1 or window.place[1] < -1
                or window.place[2] > width + 1 and window.place[2] - window.place[0] <= width
                or window.place[3] > height + 1 and window.place[3] - window.place[1] <= height]
        self.eventually(f"all windows on {width} by {height}", all_there)

    @thorough
    def test_every_message_is_read_whatever_happens_meanwhile(self):
        sounds = self.own_programs() / "sounds"
        offer(self.screen.display, 800, 600)
        reading = LongReading(self.desk, 100, SEED)
        self.addCleanup(reading.end)
        reading.begin()
        self.reading = reading.reading
        reading.write_and_hear(20)
        with self.suspended("MessengerClient.exe"):
            pass
        reading.write_and_hear(10)
        with self.suspended("AgentServer.exe"):
            reading.write(5)
        reading.write_and_hear(10)

        shutil.rmtree(sounds)
        reading.has_sounds = False
        reading.write_and_hear(20)

        self.assertEqual(self.inspector.ask("resolution 800 600"), [])
        self.assert_on_screen(800, 600)
        self.screen.picture(self.output / "small.png")
        reading.write_and_hear(5)
        self.assertEqual(self.inspector.ask("resolution 1280 960"), [])
        self.inspector.ask(f"tell {DPI_CHANGED} {144 << 16 | 144}")
        reading.write_and_hear(5)
        self.screen.picture(self.output / "scaled.png")
        self.assert_on_screen(1280, 960)
        self.inspector.ask(f"tell {DPI_CHANGED} {96 << 16 | 96}")
        reading.write_and_hear(5)


class Killed(Disasters):
    def start_neighbours(self):
        self.start_agent()
        self.wait_for_client(self.start_client())

    def start_three(self):
        self.start_neighbours()
        self.launch()
        self.eventually("the main window", lambda: self.main() and not self.signed_out())

    @thorough
    def test_messenger_at_any_moment(self):
        """Of a start, a sign-in, the beginning of a reading, or in its middle."""
        self.settle()
        self.start_three()
        for moment in self.moments():
            self.until(moment, self.begin_reading)
            self.kill("MessengerClient.exe")
            self.desk.programs["MessengerClient.exe"].wait()
            self.eventually("the panel", self.signed_out)
            self.eventually("the end of the characters", lambda: not self.characters())
            self.assert_running("Murmelix.exe")
            self.assertEqual(self.boxes(), [])
            self.start_client()
        self.assert_reads()

    @thorough
    def test_character_server_at_any_moment(self):
        """The program says so and ends; or it has not used the server yet, and gets another one; or it was just asking
        whether there is one, and wants to install it."""
        self.settle()
        self.start_neighbours()
        for moment in self.moments():
            if not self.program_runs():
                self.launch()
            self.until(moment, self.begin_reading)
            self.kill("AgentServer.exe")
            told = []

            def over():
                boxes = self.boxes()
                if "" in boxes:  # it is being made, and has no title yet
                    return False
                if set(boxes) & MISSING:  # it died while it was asked whether it is there
                    self.kill("Murmelix.exe")
                    self.program.wait()
                    told.extend(boxes)
                    return True
                if boxes == [ALERT]:
                    self.answer(ALERT)
                    return False
                self.assertEqual(boxes, [])
                return not self.program_runs() or self.main() and pid_of(self.desk, "AgentServer.exe")
            self.eventually("the program's end, or another server", over)
            if not self.program_runs() and not told:
                self.assertEqual(self.program.wait(), 0)
        for program in ("Murmelix.exe", "MessengerClient.exe", "AgentServer.exe"):
            self.kill(program)
        self.program.wait()
        self.desk.programs["MessengerClient.exe"].wait()
        self.start_three()
        self.assert_reads()


class Stored(Disasters, MatchupTest):
    def die(self):
        self.kill("Murmelix.exe")
        self.program.wait()

    @thorough
    def test_settings_are_whole_after_a_kill_while_one_is_written(self):
        typed = "abcdefghijklmnopqrstuvwxyz" * 8
        self.start_messenger()
        for moment in self.moments(HALF):
            self.settle(IgnoredChars="!")
            self.start_program()
            self.activate_main()
            self.click(SHOW_OPTIONS)
            self.eventually("the options", self.options_shown)
            self.click("Edit")
            self.screen.key("End")
            # Each letter is written at once: the program ends in the middle of some of them.
            self.screen.xdotool("type", "--delay", "1", typed[:1 + int(len(typed) * moment / LATEST)])
            self.die()
            settings = self.settings()
            self.assertEqual(set(settings), set(DEFAULTS))
            self.assertTrue(("!" + typed).startswith(settings["IgnoredChars"]), settings["IgnoredChars"])
            self.start_program()
            self.assertEqual(self.settings(), settings)
            self.die()

    @thorough
    def test_matchups_are_whole_after_a_kill_while_one_is_written(self):
        self.start()
        for moment in self.moments(HALF):
            window = self.open_matchups()
            self.assertTrue(window)
            before = self.stored()
            first = next(iter(self.panels()))
            self.screen.key("ctrl+Down", "ctrl+x", "Tab", "ctrl+v", "Tab", "ctrl+v")
            self.until(moment / 20, lambda: None)
            self.die()
            after = self.stored()
            self.assertLessEqual(set(before.items()), set(after.items()))
            self.assertLessEqual(set(after.values()), {first})
            self.assertLessEqual(set(after), {ANN, BOB})
            self.start_program()
            self.assertEqual(self.stored(), after)
        self.read(ANN)

    @contextlib.contextmanager
    def nothing_grows(self, most):
        """Files of the program can have so many bytes, as on a disk that is full then."""
        pid = pid_of(self.desk, "Murmelix.exe")
        before = resource.prlimit(pid, resource.RLIMIT_FSIZE, (most, resource.RLIM_INFINITY))
        try:
            yield
        finally:
            resource.prlimit(pid, resource.RLIMIT_FSIZE, before)

    @thorough
    def test_no_picture_is_left_where_the_disk_is_full(self):
        pictures = self.own_programs() / "CharPics"
        picture = (ROOT / "build" / "host" / "assets" / "portraits" / "Plonk.gif").read_bytes()
        # Who writes too much is told so by a failure alone, not by the signal that would end it.
        wine = self.output / "wine"
        wine.write_text(f'#!/bin/sh\ntrap "" XFSZ\nexec "{self.desk.prefix.wine}" "$@"\n', "utf-8")
        wine.chmod(0o755)
        self.desk.prefix.wine = str(wine)
        publisher = Publisher(content(picture))
        self.addCleanup(publisher.close)
        with self.desk.using_site(publisher.host):
            self.start()
            self.open_matchups()
            missing = next(name for name in self.panels() if self.portrait(name).enabled)
            cached = pictures / f"{missing}.gif"
            with self.nothing_grows(len(picture) // 2):
                self.click_portrait(missing)
                title = self.eventually("the message", lambda: next(iter(self.boxes()), None))
                self.assertRegex(title, "^Error #[0-9]+$")
                self.assertIn("An Error has occured while getting/saving character image!", self.message_box(title))
                self.answer(title)
                self.eventually("the end of the download window", lambda: not self.window(DOWNLOAD))
                self.assertFalse(cached.exists())
            # There is room again: it is fetched.
            self.eventually("the enabled window", lambda: self.window(MATCHUPS).enabled)
            self.click_portrait(missing)
            self.eventually("the picture", lambda: not self.portrait(missing).enabled)
            self.assertEqual(cached.read_bytes(), picture)

    def test_the_end_of_the_session_ends_all_three_while_they_read(self):
        self.settle(AutoMinimize="0")
        self.start_agent()
        self.wait_for_client(self.start_client())
        self.launch()
        self.eventually("a reading", lambda: (self.begin_reading(), len(self.words()) > 3)[1])
        settings = self.settings()
        boxes = []
        session = self.desk.start("wineboot", "wineboot.exe", "--end-session")

        def ended():
            boxes.extend(self.screen.find("Shutdown Alert"))
            return session.poll() is not None and not any(
                self.desk.running(name) for name in ("Murmelix.exe", "AgentServer.exe", "MessengerClient.exe"))
        self.eventually("the end of all programs", ended)
        self.assertEqual(boxes, [])
        del self.inspector  # it has ended with the session
        self.assertEqual(self.settings(), settings)


if __name__ == "__main__":
    main()
