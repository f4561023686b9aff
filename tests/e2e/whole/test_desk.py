"""What the tests themselves look through: a wrong answer here is a wrong answer everywhere."""

import subprocess
import threading
import unittest

import soak
from case import Screen, main, wait_for
from long_reading import Use


class Desk(unittest.TestCase):
    def shown(self, screen, name):
        window = subprocess.Popen(["xev", "-name", name], env=screen.environment(), stdin=subprocess.DEVNULL,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

        def end():
            window.kill()
            window.wait()
        self.addCleanup(end)
        return end

    def test_window_is_found_by_its_title_as_people_read_it_while_it_can_be_seen(self):
        with Screen.own(640, 480) as screen:
            self.shown(screen, "Zoë and \u05d9\u05e2\u05dc")
            window = wait_for("the window", lambda: screen.find("^zoË AND \u05d9\u05e2\u05dc$"))
            self.assertEqual(len(window), 1)
            self.assertIn("Zoë", "".join(screen.titles()))
            self.assertTrue(wait_for("the keyboard", lambda: screen.activate(window[0])))
            wait_for("the active window", lambda: screen.active() == window[0])
            screen.minimize(window[0])
            wait_for("its end in sight", lambda: screen.find("Zo") == [])

    def test_screen_that_has_ended_shows_nothing(self):
        with Screen.own(640, 480) as screen:
            self.shown(screen, "lasting")
            wait_for("the window", lambda: screen.find("lasting"))
            for process in reversed(screen._processes):
                process.kill()
                process.wait()
            self.assertEqual(screen.find("lasting"), [])
            self.assertEqual(screen.active(), "")

    def test_background_goes_from_one_colour_to_another(self):
        with Screen.own(64, 48) as screen:
            pixels = screen.pixels(0, 0, 64, 48)
            self.assertEqual(pixels[:3], bytes((0x86, 0xb4, 0xc9)))
            self.assertEqual(pixels[-3:], bytes((0x3d, 0x6a, 0x86)))
            middle = pixels[24 * 64 * 3:][:3]
            self.assertTrue(all(abs(a - b) <= 2 for a, b in zip(middle, (0x61, 0x8e, 0xa7))), middle)

    def test_window_is_found_while_others_vanish(self):
        with Screen.own(640, 480) as screen:
            done = threading.Event()

            def come_and_go():
                while not done.is_set():
                    end_passing = self.shown(screen, "passing")
                    done.wait(0.02)
                    end_passing()

            crowd = [threading.Thread(target=come_and_go) for _ in range(2)]
            end_lasting = self.shown(screen, "lasting")
            try:
                window = wait_for("the lasting window", lambda: screen.find("^lasting$"))
                for passing in crowd:
                    passing.start()
                for look in range(20):
                    self.assertEqual(screen.find("^lasting$"), window, look)
                self.assertEqual(screen.find("^another$"), [])
            finally:
                done.set()
                for passing in crowd:
                    if passing.is_alive():
                        passing.join()
                end_lasting()


class Soak(unittest.TestCase):
    """What a long reading may have grown by."""

    FIRST = {"memory": 40.0, "handles": 100, "graphics": 200, "windows": 50}

    def judged(self, program, text_mb=0.0, **grown):
        first, last = Use(**self.FIRST), Use(**{what: value + grown.get(what, 0) for what, value in self.FIRST.items()})
        lines, too_much = soak.judged({program: first}, {program: last}, text_mb)
        self.assertEqual([line for line in lines if line.endswith(" GROWN")], [line for line in lines if "GROWN" in line])
        self.assertEqual(len(lines), 4)
        return too_much

    def test_what_is_level_is_good(self):
        self.assertEqual(self.judged("Murmelix.exe"), [])
        self.assertEqual(self.judged("Murmelix.exe", memory=4, handles=12, graphics=20, windows=6), [])

    def test_each_thing_that_grows_is_told(self):
        for what, amount in {"memory": 4.1, "handles": 13, "graphics": 21, "windows": 7}.items():
            with self.subTest(what):
                self.assertEqual(self.judged("Murmelix.exe", **{what: amount}), [f"Murmelix.exe {what}"])

    def test_pictures_of_the_character_server_and_copies_of_the_text_are_no_growth(self):
        self.assertEqual(self.judged("AgentServer.exe", memory=10), [])
        self.assertEqual(self.judged("AgentServer.exe", memory=10.1), ["AgentServer.exe memory"])
        self.assertEqual(self.judged("MessengerClient.exe", text_mb=2.0, memory=20), [])
        self.assertEqual(self.judged("MessengerClient.exe", text_mb=2.0, memory=20.1), ["MessengerClient.exe memory"])

    def test_what_a_system_does_not_tell_is_not_judged(self):
        use = Use(**dict(self.FIRST, windows=None))
        lines, too_much = soak.judged({"Murmelix.exe": use}, {"Murmelix.exe": use}, 0)
        self.assertEqual(too_much, [])
        self.assertIn("   Murmelix.exe windows: this system does not tell", lines)


if __name__ == "__main__":
    main()
