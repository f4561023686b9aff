"""A web browser that nobody sees, driven over the pipes that it offers to its debuggers."""

import base64
import contextlib
import fcntl
import itertools
import json
import os
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[3] / "tools"))

from desk.waiting import PATIENCE_SECONDS, wait_for  # noqa: E402

ARGUMENTS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-dev-shm-usage",
             "--disable-background-networking", "--disable-component-update", "--disable-sync", "--mute-audio",
             "--remote-debugging-pipe"]
START = 'exec "${@:3}" 3<&"$1" 4>&"$2"'  # by the shell: a program whose descriptors 3 and 4 are these two
FIRST_FREE = 10  # descriptors below may be the ones the browser reads and writes


class BrowserError(RuntimeError):
    """What the browser was told to do failed, or it has ended."""


class Browser:
    """Runs from the beginning of a `with` to its end. A message is a JSON object that a NUL ends."""

    def __enter__(self):
        self._numbers = itertools.count(1)
        self._unread = b""
        self._session = {}
        self._events = []
        # What is to be undone, each thing once, in the order of an end.
        self._ends = contextlib.ExitStack()
        own = Path(tempfile.mkdtemp(prefix="murmelix-browser."))
        self._ends.callback(shutil.rmtree, own, ignore_errors=True)
        self._said = own / "said.txt"
        commands, self._commands = _pipe()
        self._answers, answers = _pipe()
        self._ends.callback(os.close, self._commands)
        self._ends.callback(os.close, self._answers)
        with open(self._said, "wb") as output:
            self._process = subprocess.Popen(
                ["bash", "-c", START, "browser", str(commands), str(answers), "chromium", *ARGUMENTS,
                 f"--user-data-dir={own / 'profile'}", "about:blank"],
                stdin=subprocess.DEVNULL, stdout=output, stderr=output, pass_fds=(commands, answers),
                env=dict(os.environ, HOME=str(own)), start_new_session=True)
        self._ends.callback(self._end_group)
        os.close(commands)
        os.close(answers)
        try:
            page = wait_for("the browser's page", self._page)
            self._session = {"sessionId": self._do("Target.attachToTarget", targetId=page, flatten=True)["sessionId"]}
            self._do("Page.enable")
        except BaseException:
            self.kill()
            raise
        return self

    def __exit__(self, *_):
        self.kill()

    def kill(self):
        """Ends all that was started; a second time does nothing."""
        self._ends.close()

    def _end_group(self):
        with contextlib.suppress(ProcessLookupError):
            os.killpg(self._process.pid, signal.SIGKILL)
        self._process.wait()

    def _page(self):
        targets = self._do("Target.getTargets")["targetInfos"]
        return next((target["targetId"] for target in targets if target["type"] == "page"), None)

    def _do(self, command, **parameters):
        """What the browser answers to a command."""
        number = next(self._numbers)
        message = {"id": number, "method": command, "params": parameters, **self._session}
        self._write(json.dumps(message).encode() + b"\0")
        deadline = time.monotonic() + PATIENCE_SECONDS
        while True:
            message = self._read(command, deadline)
            if message.get("id") == number:
                break
            self._events.append(message.get("method"))
        if "error" in message:
            raise BrowserError(f"{command}: {message['error'].get('message')}")
        return message["result"]

    def _write(self, data):
        try:
            while data:
                data = data[os.write(self._commands, data):]
        except BrokenPipeError:
            raise self._ended() from None

    def _read(self, what, deadline):
        """The next message; events are among them."""
        while b"\0" not in self._unread:
            if not select.select([self._answers], [], [], max(0, deadline - time.monotonic()))[0]:
                raise BrowserError(f"{what}: not within {PATIENCE_SECONDS:g} s")
            data = os.read(self._answers, 1 << 16)
            if not data:
                raise self._ended()
            self._unread += data
        message, _, self._unread = self._unread.partition(b"\0")
        return json.loads(message)

    def _ended(self):
        return BrowserError("the browser has ended: " + self._said.read_text("utf-8", "replace"))

    def be(self, width, height, scheme="light", motion="reduce"):
        """The window's size in pixels of a page, and what its user prefers."""
        self._do("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=width < 600)
        self._do("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme},
                                                         {"name": "prefers-reduced-motion", "value": motion}])

    def go(self, address):
        """Returns when the page and its pictures are there."""
        self._events.clear()
        failed = self._do("Page.navigate", url=address).get("errorText")
        if failed:
            raise BrowserError(f"{address}: {failed}")
        deadline = time.monotonic() + PATIENCE_SECONDS
        while "Page.loadEventFired" not in self._events:
            self._events.append(self._read(address, deadline).get("method"))

    def run(self, script):
        """What a function with this body, run in the page, returns."""
        answer = self._do("Runtime.evaluate", expression=f"(() => {{{script}\n}})()", returnByValue=True)
        if "exceptionDetails" in answer:
            raise BrowserError(str(answer["exceptionDetails"]))
        return answer["result"].get("value")

    def wait_for(self, what, script):
        return wait_for(what, lambda: self.run(script))

    def picture(self, path, whole=True):
        """Of the whole page, or of what the window shows."""
        part = {}
        if whole:
            size = self._do("Page.getLayoutMetrics")["cssContentSize"]
            part = {"clip": {"x": 0, "y": 0, "width": size["width"], "height": size["height"], "scale": 1}}
        shot = self._do("Page.captureScreenshot", format="png", captureBeyondViewport=whole, **part)
        Path(path).write_bytes(base64.b64decode(shot["data"]))


def _pipe():
    """Both ends, for reading and for writing, out of the way of the browser's own."""
    ends = os.pipe()
    moved = tuple(fcntl.fcntl(end, fcntl.F_DUPFD_CLOEXEC, FIRST_FREE) for end in ends)
    for end in ends:
        os.close(end)
    return moved
