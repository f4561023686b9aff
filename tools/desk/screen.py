"""A screen with a window manager: one of its own (Xvfb, openbox), or the user's."""

import os
import re
import shutil
import subprocess
import tempfile

from .waiting import PATIENCE_SECONDS, TimedOut, wait_for
from .x_display import XDisplay

WINDOW_MANAGER_SETTINGS = """<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <theme><name>Clearlooks</name></theme>
  <desktops><number>1</number></desktops>
  <focus><focusNew>yes</focusNew></focus>
  <applications>
    <!-- It comes when the first icon does, and would take the keyboard from whoever is typing then. -->
    <application title="Wine System Tray"><focus>no</focus></application>
  </applications>
</openbox_config>
"""

BACKGROUND = ((0x86, 0xb4, 0xc9), (0x3d, 0x6a, 0x86))  # from top to bottom


class Screen:
    """The windows on a display: finding them, typing and clicking into them, taking pictures."""

    def __init__(self, display):
        self.display = display
        self.is_own = False
        self._processes = []
        self._connection = None

    @classmethod
    def own(cls, width=1280, height=960, log=subprocess.DEVNULL):
        """Starts an X server on a free display, and a window manager. Another server may take the same display at the
        same moment: then it is tried again."""
        for attempts_left in (2, 1, 0):
            screen = cls(None)
            try:
                screen._start(width, height, log)
                return screen
            except (RuntimeError, TimedOut):
                screen.close()
                if attempts_left == 0:
                    raise
            except BaseException:
                screen.close()
                raise

    def _start(self, width, height, log):
        self.is_own = True
        reading, writing = os.pipe()
        self._processes.append(subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{width}x{height}x24", "-nolisten", "tcp",
             "-noreset", "-r"],  # no key repeats itself because a busy machine lets go of it late
            pass_fds=[writing], stdin=subprocess.DEVNULL, stdout=log, stderr=log, start_new_session=True))
        os.close(writing)
        with os.fdopen(reading) as answer:
            number = answer.readline().strip()  # empty when the server ends without one
        if not number:
            raise RuntimeError("Xvfb has ended without a display")
        self.display = f":{number}"
        with tempfile.NamedTemporaryFile("w", suffix=".xml", delete=False) as settings:
            settings.write(WINDOW_MANAGER_SETTINGS)
        self._settings = settings.name
        self._processes.append(subprocess.Popen(
            ["openbox", "--sm-disable", "--config-file", self._settings], env=self.environment(),
            stdin=subprocess.DEVNULL, stdout=log, stderr=log, start_new_session=True))
        wait_for("the window manager", self._managed)
        self._x.paint(height, *BACKGROUND)

    def _managed(self):
        if any(process.poll() is not None for process in self._processes):
            raise RuntimeError("the X server or the window manager has ended")
        return self._x.window_of_root("_NET_SUPPORTING_WM_CHECK") and self._x.shows_new_windows()

    @property
    def _x(self):
        if self._connection is None:
            self._connection = XDisplay(self.display)
        return self._connection

    def environment(self):
        return dict(os.environ, DISPLAY=self.display)

    def close(self):
        if self._connection is not None:
            self._connection.close()
        for process in reversed(self._processes):
            if process.poll() is None:
                process.terminate()
                try:
                    process.wait(5)
                except subprocess.TimeoutExpired:
                    process.kill()
                    process.wait()
        self._processes = []
        if hasattr(self, "_settings"):
            os.unlink(self._settings)
            del self._settings

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def _run(self, *command, seconds=PATIENCE_SECONDS):
        return subprocess.run(command, env=self.environment(), stdin=subprocess.DEVNULL, capture_output=True,
                              text=True, errors="replace", timeout=seconds, check=False)

    def find(self, title_pattern):
        """Ids of the visible windows whose title matches the pattern, oldest first."""
        return [str(window) for window in self._x.visible(title_pattern)]

    def wait_for_window(self, title_pattern):
        try:
            return wait_for(f"a window titled {title_pattern!r}", lambda: self.find(title_pattern))[-1]
        except TimedOut as error:
            raise TimedOut(f"{error}; windows: {', '.join(self.titles()) or 'none'}") from None

    def titles(self):
        """Titles of all windows that have one, as the X server lists them."""
        answer = self._run("xwininfo", "-root", "-tree")
        titles = []
        for line in answer.stdout.splitlines():
            name = line.strip().split('"')
            if len(name) > 1 and name[0].startswith("0x") and "openbox" not in name[1].lower():
                titles.append(name[1])
        return titles

    def stacking(self):
        """Ids of the windows that the window manager has, the frontmost last, as `find` tells them."""
        answer = self._run("xprop", "-root", "_NET_CLIENT_LIST_STACKING").stdout
        return [str(int(id_, 16)) for id_ in re.findall("0x[0-9a-f]+", answer)]

    def move(self, window, left, top):
        self._run("xdotool", "windowmove", "--sync", window, str(left), str(top))

    def resize(self, window, width, height):
        self._run("xdotool", "windowsize", "--sync", window, str(width), str(height))

    def cover(self, window, left, top):
        """Moves a window there, in front of the others, without giving it the keyboard."""
        self.move(window, left, top)
        self._run("xdotool", "windowraise", window)

    def minimize(self, window):
        self._run("xdotool", "windowminimize", window)

    def activate(self, window):
        """Gives the window the keyboard; False where the window manager does not."""
        try:
            return self._run("xdotool", "windowactivate", "--sync", window, seconds=5).returncode == 0
        except subprocess.TimeoutExpired:
            return False

    def active(self):
        return str(self._x.window_of_root("_NET_ACTIVE_WINDOW") or "")

    def key(self, *keys):
        """Presses keys or chords ("alt+s") where the keyboard is."""
        self._run("xdotool", "key", "--clearmodifiers", *keys)

    def type_into(self, window, *keys):
        """Gives a window the keyboard and presses the keys there; False, with nothing pressed, where it cannot have it."""
        if not self.activate(window) or self.active() != window:
            return False
        self.key(*keys)
        return True

    def xdotool(self, *arguments):
        """Carries out any command of xdotool's."""
        self._run("xdotool", *arguments)

    def mark(self, name):
        """Sets a property of that name on the screen, for those who note the events of the display."""
        self._run("xprop", "-root", "-f", name, "8s", "-set", name, "here")

    def program_of(self, window):
        """Which program's window this is, as X tells it (`WM_CLASS`); empty where it is gone."""
        return subprocess.run(["xprop", "-id", window, "WM_CLASS"], env=self.environment(), stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=PATIENCE_SECONDS, check=False).stdout

    def pixels(self, left, top, width, height):
        """The colours of a rectangle, three bytes a pixel."""
        return subprocess.run(
            ["import", "-window", "root", "-crop", f"{width}x{height}+{left}+{top}", "-depth", "8", "rgb:-"],
            env=self.environment(), stdin=subprocess.DEVNULL, capture_output=True, timeout=PATIENCE_SECONDS, check=True).stdout

    def picture(self, file):
        """Writes what is on the screen as a PNG file; False where that fails."""
        if not shutil.which("import"):
            return False
        half_done = f"{file}.new.png"
        answer = self._run("import", "-window", "root", half_done)
        if answer.returncode != 0:
            return False
        os.replace(half_done, file)
        return True
