"""What every test of whole programs shares: a screen and a prefix of its own, a watchdog, and an end to everything."""

import faulthandler
import functools
import os
import re
import shutil
import subprocess
import sys
import threading
import unittest
from dataclasses import dataclass, field
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "tools"))

from desk.prefix import Prefix, windows_path  # noqa: E402
from desk.reading import MAIN_WINDOW, PROGRAM_DIRECTORY, Desk, Options, Reading  # noqa: E402
from desk.records import unescape  # noqa: E402
from desk.screen import Screen  # noqa: E402
from desk.waiting import PATIENCE_SECONDS, TimedOut, wait_for  # noqa: E402
from inspector import Inspector  # noqa: E402
from neighbours import set_up_once  # noqa: E402

__all__ = ["MAIN_WINDOW", "PATIENCE_SECONDS", "PROGRAM_DIRECTORY", "ROOT", "TimedOut", "VERSION", "WholeProgramTest", "Window",
           "main", "thorough", "unescape", "wait_for", "windows_path"]

WATCHDOG_SECONDS = 2 * PATIENCE_SECONDS
SETTINGS_KEY = r"HKCU\Software\Murmelix"
VERSION = re.search(r"^project\(Murmelix VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text("utf-8"), re.M)[1]


def thorough(test):
    """Marks a test that takes long, or shows again in whole programs what tests of their parts show; ./test --all runs it
    and ./test does not."""
    return test


@dataclass
class Window:
    kind: str
    visible: bool
    enabled: bool
    text: str
    handle: int
    place: tuple = (0, 0, 0, 0)  # left, top, right and bottom, in pixels of the screen
    state: int = 0               # the check of a button, the selected entry of a drop-down list
    children: list = field(default_factory=list)

    def all(self):
        yield self
        for child in self.children:
            yield from child.all()

    def texts(self):
        return [window.text for window in self.all() if window.text]


def windows_of(lines):
    """The top-level windows, with their children, that the probe's lines describe."""
    top, stack = [], []
    for line in lines:
        fields = line.split("\t")
        if len(fields) != 11 or not fields[0].isdigit():
            continue
        window = Window(fields[1], fields[2] == "1", fields[3] == "1", unescape(fields[4]), int(fields[5]),
                        tuple(map(int, fields[6:10])), int(fields[10]))
        depth = int(fields[0])
        del stack[depth:]
        (stack[-1].children if stack else top).append(window)
        stack.append(window)
    return top


class WholeProgramTest(unittest.TestCase):
    """One desk a test. What it leaves under build/e2e/NAME: the logs, and pictures of the screen."""

    maxDiff = None
    SCREEN = (1280, 960)
    DPI = 96
    SET_UP = True  # the neighbours, before the test begins
    WATCHDOG = WATCHDOG_SECONDS

    def setUp(self):
        name = self.id().rsplit(".", 1)[-1]
        self.output = ROOT / "build" / "e2e" / name
        shutil.rmtree(self.output, ignore_errors=True)
        self.output.mkdir(parents=True)
        self._run = ROOT / "build" / "wine-runs" / f"{os.getpid()}.{name}"
        origin = set_up_once() if self.SET_UP else None
        screen = Screen.own(*self.SCREEN)
        try:
            prefix = Prefix(self._run / "prefix", origin=origin)
            prefix.set_resolution(self.DPI)
        except BaseException:
            screen.close()
            raise
        self.desk = Desk(screen, prefix, self.output)
        self.screen = screen
        self.reading = None
        self._watchdog = threading.Timer(self.WATCHDOG, self._give_up)
        self._watchdog.daemon = True
        self._watchdog.start()
        self.addCleanup(self._end)

    def _end(self):
        self._watchdog.cancel()
        self.desk.close()
        shutil.rmtree(self._run, ignore_errors=True)
        for lock in self._run.parent.glob(self._run.name + "*.lock"):
            lock.unlink()

    def _give_up(self):
        print(f"\n{self.id()} has not ended within {self.WATCHDOG} s.\n{self.report()}", flush=True)
        faulthandler.dump_traceback()
        self.desk.close()
        os._exit(1)

    def report(self):
        """What everybody is doing, with a picture of the screen."""
        lines = [self.desk.state()]
        if self.reading:
            self.reading.transcript.new()
            lines += ["last lines of the transcript:"]
            lines += [f"    {act.seconds:.3f} {act.moment} {act.key} {act.what} {act.of!r} {act.outcome}"
                      for act in self.reading.transcript.acts[-10:]]
        if self.screen.picture(self.output / "given-up.png"):
            lines.append(f"picture: {self.output / 'given-up.png'}")
        return "\n".join(lines)

    def fail(self, msg=None):
        raise self.failureException(f"{msg}\n{self.report()}")

    def eventually(self, what, condition):
        """The first true result of the condition; the test fails, telling what goes on, where there is none in time."""
        try:
            return wait_for(what, condition, interval=0.05)
        except TimedOut as error:
            self.fail(str(error))

    def picture_of(self, window, name):
        """Keeps a picture of the window alone in build/screens, for docs/screens.md."""
        whole, screens = self.output / f"{name}.png", ROOT / "build" / "screens"
        screens.mkdir(parents=True, exist_ok=True)
        self.screen.picture(whole)
        left, top, right, bottom = window.place
        subprocess.run(["convert", whole, "-crop", f"{right - left}x{bottom - top}+{left}+{top}", "+repage", "-strip",
                        screens / f"{name}.png"], check=True, timeout=PATIENCE_SECONDS)

    # Windows, as they are inside Wine.

    @functools.cached_property
    def inspector(self):
        inspector = Inspector(self.desk)
        self.addCleanup(inspector.close)
        return inspector

    def windows(self):
        """All top-level windows with their children."""
        return windows_of(self.inspector.ask("windows"))

    def window(self, title):
        """The visible top-level window of that title, or None."""
        return next((window for window in self.windows() if window.visible and window.text == title), None)

    def message_box(self, title):
        """Waits for a message box of that title; its text."""
        self.eventually(f"a message box titled {title!r}", lambda: self.screen.find("^" + re.escape(title) + "$"))
        box = self.eventually(f"the text of {title!r}", lambda: self.window(title))
        self.screen.picture(self.output / (re.sub(r"\W+", "-", title) + ".png"))
        return "\n".join(window.text for window in box.children if window.kind == "Static" and window.text)

    def answer(self, title, key="Return"):
        """Presses a key in the message box of that title, until it is gone."""
        def gone():
            windows = self.screen.find("^" + re.escape(title) + "$")
            if not windows:
                return True
            if self.screen.activate(windows[-1]):
                self.screen.key(key)
            return False
        self.eventually(f"the end of {title!r}", gone)

    # The registry.

    def reg(self, *arguments):
        status, printed = self.desk.run("reg", "reg.exe", *arguments)
        self.assertEqual(status, 0, printed)

    # Readings.

    def conversation(self, text):
        """A chat log of the test's own."""
        file = self.output / "conversation.txt"
        file.write_text(text, "utf-8")
        return file

    def start_reading(self, conversation, **options):
        """Neighbours and program started, and the reading begun by its accelerator."""
        self.open_program(conversation, **options)
        self.reading.start_reading()
        return self.reading

    def open_program(self, conversation, **options):
        """Neighbours and program started; the conversation is listed."""
        options.setdefault("speed", 10)
        options.setdefault("orders", True)
        self.reading = Reading(self.desk, Options(conversation, output=self.output, headless=True, **options))
        self.reading.start_neighbours()
        self.reading.start_program()
        return self.reading

    def client(self, command):
        """Has the Messenger client carry out a command."""
        status, printed = self.desk.run("send", PROGRAM_DIRECTORY / "MessengerClient.exe", "/send", command)
        self.assertEqual(status, 0, f"{command}: {printed}")

    def acts(self, **wanted):
        """Acts of the transcript up to now whose fields have the wanted values."""
        self.reading.transcript.new()
        return [act for act in self.reading.transcript.acts
                if all(getattr(act, name) == value for name, value in wanted.items())]

    def said(self, key):
        """The words that the character of `key` was told to speak, in order."""
        return [act.of for act in self.acts(moment="call", key=key, what="Speak")]

    def assert_responsive(self):
        """The main window answers: its texts can be read, which the window procedure itself does."""
        window = next((window for window in self.windows() if re.match(MAIN_WINDOW, window.text)), None)
        if window is None:
            self.fail("the main window does not answer")
        return window

    def assert_running(self, name):
        if not self.desk.running(name):
            self.fail(f"{name} has ended")


def main():
    unittest.main(verbosity=2)
