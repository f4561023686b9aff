"""A web browser that nobody sees, driven through its own driver by plain HTTP."""

import base64
import contextlib
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import urllib.error
import urllib.request
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[3] / "tools"))

from desk.waiting import PATIENCE_SECONDS, wait_for  # noqa: E402

ARGUMENTS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-dev-shm-usage",
             "--disable-background-networking", "--disable-component-update", "--disable-sync", "--mute-audio"]


class Browser:
    """Runs from the beginning of a `with` to its end."""

    def __enter__(self):
        self._own = Path(tempfile.mkdtemp(prefix="murmelix-browser."))
        self._session = None
        log = self._own / "driver.txt"
        with open(log, "wb") as output:
            # The driver chooses a free port and tells it; what it starts ends with its group.
            self._driver = subprocess.Popen(
                ["chromedriver", "--port=0"], stdin=subprocess.DEVNULL, stdout=output, stderr=output,
                env=dict(os.environ, HOME=str(self._own)), start_new_session=True)
        try:
            self._port = wait_for("the browser's driver", lambda: self._told_port(log))
            # On a busy machine the browser gives its first page up before the driver has met it: it is started again.
            self._session = wait_for("the browser", self._started)
        except BaseException:
            self.__exit__()
            raise
        return self

    def _started(self):
        profile = tempfile.mkdtemp(prefix="profile.", dir=self._own)
        try:
            answer = self._ask("POST", "/session", {"capabilities": {"alwaysMatch": {"goog:chromeOptions": {
                "args": [*ARGUMENTS, f"--user-data-dir={profile}"]}}}})
        except RuntimeError as error:
            if "unable to connect to renderer" not in str(error):
                raise
            return None
        return "/session/" + answer["sessionId"]

    def __exit__(self, *_):
        try:
            if self._session:
                self._ask("DELETE", self._session)
        finally:
            self.kill()

    def kill(self):
        """Ends the driver and all that it has started."""
        with contextlib.suppress(ProcessLookupError):
            os.killpg(self._driver.pid, signal.SIGKILL)
        self._driver.wait()
        shutil.rmtree(self._own, ignore_errors=True)

    def _told_port(self, log):
        if self._driver.poll() is not None:
            raise RuntimeError("the browser's driver has ended: " + log.read_text("utf-8", "replace"))
        told = re.search(r"started successfully on port (\d+)", log.read_text("utf-8", "replace"))
        return told and int(told[1])

    def _ask(self, method, path, content=None):
        request = urllib.request.Request(f"http://127.0.0.1:{self._port}{path}", method=method,
                                         data=None if content is None else json.dumps(content).encode())
        try:
            with urllib.request.urlopen(request, timeout=PATIENCE_SECONDS) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            raise RuntimeError(error.read().decode("utf-8", "replace")) from None

    def _do(self, command, **parameters):
        return self._ask("POST", self._session + "/goog/cdp/execute", {"cmd": command, "params": parameters})

    def be(self, width, height, scheme="light", motion="reduce"):
        """The window's size in pixels of a page, and what its user prefers."""
        self._do("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=width < 600)
        self._do("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme},
                                                         {"name": "prefers-reduced-motion", "value": motion}])

    def go(self, address):
        """Returns when the page and its pictures are there."""
        self._ask("POST", self._session + "/url", {"url": address})

    def run(self, script):
        """What a function with this body, run in the page, returns."""
        return self._ask("POST", self._session + "/execute/sync", {"script": script, "args": []})

    def wait_for(self, what, script):
        return wait_for(what, lambda: self.run(script))

    def picture(self, path, whole=True):
        """Of the whole page, or of what the window shows."""
        shot = self._do("Page.captureScreenshot", format="png", captureBeyondViewport=whole)
        if whole:
            size = self._do("Page.getLayoutMetrics")["cssContentSize"]
            shot = self._do("Page.captureScreenshot", format="png", captureBeyondViewport=True,
                            clip={"x": 0, "y": 0, "width": size["width"], "height": size["height"], "scale": 1})
        Path(path).write_bytes(base64.b64decode(shot["data"]))
