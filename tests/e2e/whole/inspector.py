"""What windows there are inside Wine, and how they are, as a program there sees it."""

import queue
import subprocess
import threading

from desk.reading import WIN64
from desk.waiting import PATIENCE_SECONDS

PROBE = WIN64 / "tests" / "e2e" / "probe" / "e2e_probe.exe"


class Inspector:
    """The probe, kept running: it answers without a start each time."""

    def __init__(self, desk):
        self._process = subprocess.Popen(
            [desk.prefix.wine, str(PROBE)], env=desk.environment(), stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, start_new_session=True)
        desk.programs["inspector"] = self._process
        (desk.output / "logs" / "inspector.txt").touch()
        self._lines = queue.Queue()
        threading.Thread(target=self._listen, daemon=True).start()

    def _listen(self):
        for line in self._process.stdout:
            self._lines.put(line.decode("utf-8", "replace").rstrip("\r\n"))
        self._lines.put(None)

    def ask(self, command):
        """The lines of the answer."""
        self._process.stdin.write(command.encode("utf-8") + b"\n")
        self._process.stdin.flush()
        answer = []
        while (line := self._lines.get(timeout=PATIENCE_SECONDS)) != ".":
            if line is None:
                raise RuntimeError("the probe has ended")
            answer.append(line)
        return answer

    def close(self):
        self._process.stdin.close()
