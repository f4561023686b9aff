"""./run as its user sees it: its options, its results, and that it leaves nothing running."""

import os
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from case import MAIN_WINDOW, PATIENCE_SECONDS, ROOT, Screen, main, thorough, wait_for

from desk.chat_servers import NgIrcd, Person

READ_ALOUD = ROOT / "tools" / "read_aloud.py"
CONVERSATION = "".join(f"[09:{minute:02d}] <Ann> message {minute}\n" for minute in range(60))


def running_with(variable):
    """Processes whose environment holds the variable with its value."""
    found = []
    for process in Path("/proc").glob("[0-9]*"):
        try:
            if variable.encode() in (process / "environ").read_bytes().split(b"\0"):
                found.append((process / "comm").read_text().strip())
        except OSError:
            continue
    return found


class Run(unittest.TestCase):
    def read_aloud(self, *arguments, directory=None, environment=None):
        return subprocess.run([sys.executable, "-B", READ_ALOUD, *arguments], cwd=directory, capture_output=True,
                              env={**os.environ, **(environment or {})}, text=True, stdin=subprocess.DEVNULL,
                              timeout=2 * PATIENCE_SECONDS, check=False)

    def refused(self, *arguments):
        answer = self.read_aloud("--check", *arguments)
        self.assertEqual(answer.returncode, 2, answer.stderr)
        return answer.stderr

    def test_wrong_options_are_refused_with_the_reason(self):
        self.assertIn("there is no file missing.txt", self.refused("--conversation", "missing.txt"))
        self.assertIn("0 is not between 1 and", self.refused("--participants", "0"))
        self.assertIn("'many' is not a number", self.refused("--messages", "many"))
        self.assertIn("-1 is not between", self.refused("--speed=-1"))
        self.assertIn("unrecognized arguments: --sped", self.refused("--sped", "2"))

    @thorough
    def test_paths_are_those_of_the_callers_directory(self):
        with tempfile.TemporaryDirectory() as directory:
            Path(directory, "chat.txt").write_text("[09:00] <Ann> hello\n", "utf-8")
            answer = self.read_aloud("--headless", "--conversation", "chat.txt", "--out", "there", "--speed", "10",
                                     directory=directory, environment={"MURMELIX_TEST": directory})
            self.assertEqual(answer.returncode, 0, answer.stdout + answer.stderr)
            there = Path(directory, "there")
            self.assertIn("speaks  Hello", (there / "transcript.txt").read_text("utf-8"))
            self.assertTrue((there / "speech.wav").is_file())
            self.assertTrue((there / "stage.png").is_file())
            self.assertIn("All 1 messages were read", answer.stdout)
        self.assertEqual(running_with(f"MURMELIX_TEST={directory}"), [])

    @thorough
    def test_a_reading_leaves_another_one_alone(self):
        with tempfile.TemporaryDirectory() as directory:
            conversation = Path(directory, "chat.txt")
            conversation.write_text(CONVERSATION, "utf-8")
            short = Path(directory, "short.txt")
            short.write_text(CONVERSATION.splitlines(True)[0], "utf-8")
            transcript = Path(directory, "transcript.txt")
            first = subprocess.Popen([sys.executable, "-B", READ_ALOUD, "--headless", "--speed", "4", "--conversation",
                                      conversation, "--out", directory], stdin=subprocess.DEVNULL,
                                     stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)

            def spoken():
                self.assertIsNone(first.poll(), first.poll() is not None and first.stderr.read())
                return transcript.is_file() and transcript.read_text("utf-8").count("speaks")

            try:
                wait_for("the first words", spoken)
                refused = self.read_aloud("--headless", "--conversation", str(short), "--out", directory)
                self.assertEqual((refused.returncode, refused.stdout, refused.stderr), (
                    1, "", f"./run: another reading writes to {directory}: wait for its end, or name another folder "
                           "with --out\n"))
                second = self.read_aloud("--headless", "--conversation", str(short), "--out", f"{directory}/other")
                self.assertEqual(second.returncode, 0, second.stdout + second.stderr)
                before = spoken()
                wait_for("more words", lambda: spoken() > before)
                first.send_signal(signal.SIGINT)
                self.assertIn("Ended before everything was read", first.communicate(timeout=PATIENCE_SECONDS)[1])
                self.assertEqual(first.returncode, 130)
            finally:
                first.kill()
                first.wait()

    def test_a_channel_is_read_that_somebody_writes_in(self):
        with tempfile.TemporaryDirectory() as directory, NgIrcd() as server, Person("Ann", server.port) as ann:
            ann.join("#room")
            run = subprocess.Popen([sys.executable, "-B", READ_ALOUD, "--headless", "--channel",
                                    f"irc://127.0.0.1:{server.port}/room", "--nick", "mia", "--messages", "2", "--out",
                                    directory], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                   text=True)
            try:
                log = Path(directory, "logs", "messenger.tsv")
                wait_for("the reading", lambda: run.poll() is not None or log.is_file() and "\tread\t" in log.read_text("utf-8"))
                ann.say("#room", "hello from a real server")
                ann.say("#room", "and a second line of mine")
                printed = run.communicate(timeout=PATIENCE_SECONDS)[0]
            finally:
                run.kill()
                run.wait()
            self.assertEqual(run.returncode, 0, printed)
            self.assertIn("== All 2 messages were read", printed)
            transcript = Path(directory, "transcript.txt").read_text("utf-8")
            self.assertIn("Hello From A Real Server", transcript)
            self.assertIn("And A Second Line Of Mine", transcript)

    def test_what_is_no_channel_is_refused(self):
        for address in ("room", "http://example.org/", "irc:///room", "twitch:"):
            self.assertIn("--channel: an address is irc://server:port/channel", self.refused("--channel", address))

    @thorough
    def test_a_channel_that_cannot_be_entered_is_told(self):
        with tempfile.TemporaryDirectory() as directory:
            run = self.read_aloud("--headless", "--channel", "irc://127.0.0.1:1/room", "--out", directory)
            self.assertEqual((run.returncode, run.stderr), (
                1, "./run: The Messenger client could not sign in: Nobody answers at port 1 of 127.0.0.1.\n"))

    def test_by_hand_needs_a_display(self):
        self.assertIn("--by-hand needs a display", self.refused("--by-hand", "--headless"))

    @thorough
    def test_what_was_set_by_hand_is_there_the_next_time(self):
        prefix = ROOT / "build" / f"wine-by-hand-{os.getpid()}"
        registry = prefix / "user.reg"
        with tempfile.TemporaryDirectory() as directory, Screen.own() as screen:
            def start():
                return subprocess.Popen([sys.executable, "-B", READ_ALOUD, "--by-hand", "--out", directory,
                                         "--prefix", prefix.name], stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, env=screen.environment())

            def found(run, title):
                self.assertIsNone(run.poll(), screen.titles())
                return (screen.find(title) or [None])[-1]

            def press(run, title, *keys):
                wait_for(title, lambda: found(run, title) and screen.type_into(found(run, title), *keys), interval=0.2)

            def leave(run):
                def gone():
                    for title, keys in ((MAIN_WINDOW, ("alt+m", "x")), ("Messenger$", ("ctrl+q",))):
                        for window in screen.find(title):
                            screen.type_into(window, *keys)
                    return run.poll() is not None
                wait_for("the end", gone, interval=0.5)
                self.assertEqual(run.returncode, 0)

            runs = [start()]
            try:
                wait_for("the program", lambda: found(runs[0], MAIN_WINDOW), interval=0.2)
                second = self.read_aloud("--by-hand", "--out", f"{directory}/other", "--prefix", prefix.name,
                                         environment=screen.environment())
                self.assertEqual((second.returncode, second.stderr),
                                 (1, "./run: it runs by hand already, with these accounts\n"))
                press(runs[0], "^Messenger$", "alt+n", "ctrl+a", *"nora", "at", *"home", "alt+d", "ctrl+a", *"Nora",
                      "alt+a", "Return")
                press(runs[0], "^Getting Started$", "alt+n", "Return")
                leave(runs[0])
                self.assertIn('"ShowTipFrm"="0"', registry.read_text("utf-8", "replace"))
                runs.append(start())
                wait_for("the same account", lambda: found(runs[1], "^Nora - Messenger$"), interval=0.2)
                wait_for("the program again", lambda: found(runs[1], MAIN_WINDOW), interval=0.2)
                leave(runs[1])
            finally:
                screen.picture(Path(ROOT, "build", "e2e", "by-hand.png"))
                for run in runs:
                    run.terminate()
                    run.wait(PATIENCE_SECONDS)
                shutil.rmtree(prefix, ignore_errors=True)
                prefix.with_suffix(".lock").unlink(missing_ok=True)
            self.assertEqual(running_with(f"WINEPREFIX={prefix}"), [])

    @thorough
    def test_interrupting_ends_everything_that_was_started(self):
        with tempfile.TemporaryDirectory() as directory:
            conversation = Path(directory, "chat.txt")
            conversation.write_text(CONVERSATION, "utf-8")
            run = subprocess.Popen([sys.executable, "-B", READ_ALOUD, "--headless", "--conversation", conversation,
                                    "--out", directory], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL, env=dict(os.environ, MURMELIX_TEST=directory))
            try:
                transcript = Path(directory, "transcript.txt")
                wait_for("the first words", lambda: run.poll() is not None or (
                    transcript.is_file() and "speaks" in transcript.read_text("utf-8")))
                run.send_signal(signal.SIGINT)
                self.assertEqual(run.wait(PATIENCE_SECONDS), 130)
            finally:
                run.kill()
                run.wait()
            # The X server, the window manager and all that ran in Wine had inherited the environment.
            self.assertEqual(running_with(f"MURMELIX_TEST={directory}"), [])


if __name__ == "__main__":
    main()
