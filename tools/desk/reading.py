"""One whole reading: the neighbours set up as an installer would, the program started, a conversation read aloud."""

import collections
import contextlib
import os
import shutil
import subprocess
import time
import wave
from dataclasses import dataclass
from pathlib import Path

from .described import Described, Trace
from .prefix import ROOT, Prefix, windows_path
from .records import ClientLog, Transcript
from .screen import Screen
from .waiting import PATIENCE_SECONDS, TimedOut, wait_for

# The build of the Windows programs: the preset's, staged as ./run and ./test do, or another one's own staging.
WIN64 = Path(os.environ.get("MURMELIX_WIN64", ROOT / "build" / "win64")).resolve()
PROGRAM_DIRECTORY = WIN64 / "staged" if "MURMELIX_WIN64" in os.environ else ROOT / "build" / "Murmelix"
TRACE = ROOT / "build" / "host" / "tools" / "trace"
MAIN_WINDOW = r"^Murmelix v[0-9]"

NEIGHBOURS = ("AgentServer.exe", "MessengerClient.exe", "Murmelix.exe")
# The windows that a new user is greeted with, and the key that closes each.
NOTICES = {"Getting Started": "Return", "Emoticons into Voice": "Return"}
GESTURE_SECONDS = 60   # for a gesture to show what it has done: a second one would undo it
FINAL_SECONDS = 60     # after the last event of all: what is missing by then does not come any more
ANSWER_SECONDS = 10    # from a message of a live chat to its character's being told: what has not come by then never does
RECORDING_SECONDS = 3  # the recording on disk is never further behind than that
PICTURE_DELAY = 0.8    # from the start of a speech to its picture, at natural speed: the balloon has words by then


class Failed(Exception):
    """The reading did not go as it should; the message says what and what was seen last."""


class Desk:
    """A screen and a Wine prefix with the programs that were started there; nothing of it outlives `close`."""

    def __init__(self, screen, prefix, output, program_directory=PROGRAM_DIRECTORY):
        self.screen, self.prefix, self.output = screen, prefix, Path(output)
        self.program_directory = Path(program_directory)
        self.programs = {}
        self._logs = self.output / "logs"
        self._logs.mkdir(parents=True, exist_ok=True)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        self.prefix.end()
        for process in self.programs.values():
            if process.poll() is None:
                process.kill()
            process.wait()
        self.screen.close()

    def environment(self):
        return self.prefix.environment(self.screen.environment())

    def start(self, name, program, *arguments, directory=None):
        """Starts a Windows program; its output goes to logs/NAME.txt."""
        with open(self._logs / f"{name}.txt", "ab") as log:
            process = subprocess.Popen([self.prefix.wine, str(program), *map(str, arguments)], env=self.environment(),
                                       cwd=directory, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                       start_new_session=True)
        self.programs[name] = process
        return process

    def run(self, name, program, *arguments, seconds=PATIENCE_SECONDS):
        """Runs a Windows program to its end; its exit status and what it printed."""
        (self._logs / f"{name}.txt").unlink(missing_ok=True)
        process = self.start(name, program, *arguments)
        try:
            status = process.wait(seconds)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
            raise TimedOut(f"{name} has not ended within {seconds} s; windows: {self.screen.titles()}") from None
        return status, self.printed(name)

    def printed(self, name):
        return (self._logs / f"{name}.txt").read_text("utf-8", "replace")

    def running(self, name):
        return name in self.programs and self.programs[name].poll() is None

    def state(self):
        """What every program is doing, for a message of failure."""
        lines = [f"windows: {', '.join(self.screen.titles()) or 'none'}"]
        for name, process in self.programs.items():
            status = process.poll()
            lines.append(f"{name}: " + ("running" if status is None else f"ended with status {status}"))
            lines += [f"    {line}" for line in self.printed(name).splitlines()[-5:]]
        return "\n".join(lines)

    # The installers, as the program itself would have the user run them.

    def set_up_agent(self):
        self._set_up("MSAGENT.exe", "/quiet")

    def set_up_voice(self):
        self._set_up("tv_enua.exe", "/quiet")

    def set_up_messenger(self):
        self._set_up("MessengerClient.exe", "/regserver")

    def set_up_all(self):
        self.set_up_agent()
        self.set_up_voice()
        self.set_up_messenger()

    def _set_up(self, program, switch):
        status, printed = self.run(program, self.program_directory / program, switch)
        if status != 0:
            raise Failed(f"{program} {switch} ended with status {status}:\n{printed}")

    @contextlib.contextmanager
    def using_site(self, host):
        """The programs have this one for the maker's web server; afterwards the one that they had before."""
        key = (r"HKLM\Software\Murmelix", "/v", "SiteHost")
        status, printed = self.run("reg", "reg.exe", "query", *key)
        before = printed.split("REG_SZ", 1)[1].split()[0] if status == 0 and "REG_SZ" in printed else None
        self._set_up_site(key, host)
        try:
            yield
        finally:
            self._set_up_site(key, before)

    def _set_up_site(self, key, host):
        arguments = ("delete", *key, "/f") if host is None else ("add", *key, "/d", host, "/f")
        status, printed = self.run("reg", "reg.exe", *arguments)
        if status != 0:
            raise Failed(f"the web server could not be set: reg {' '.join(arguments)}:\n{printed}")

    def agent_server(self):
        return self.prefix.windows / "msagent" / "AgentServer.exe"


@contextlib.contextmanager
def own_desk(name, output, screen=None):
    """A desk in a prefix of its own, which is removed in the end; on the screen, or on one of its own."""
    run = ROOT / "build" / "wine-runs" / f"{os.getpid()}.{name}"
    screen = screen or Screen.own()
    try:
        with Desk(screen, Prefix(run / "prefix"), output) as desk:
            yield desk
    finally:
        screen.close()
        shutil.rmtree(run, ignore_errors=True)


@dataclass
class Options:
    conversation: Path
    participants: int = 3
    messages: int = 0  # 0: all
    speed: float = 1.0
    output: Path = ROOT / "build" / "run"
    headless: bool = True
    stage_speed: float = 0  # how much faster the characters act; 0: headless like the conversation, else naturally
    orders: bool = False  # the Messenger client takes orders
    channel: str = ""  # an address of a live chat, instead of the conversation
    nick: str = ""     # to be asked for there; empty: any

    def speed_of_stage(self):
        return self.stage_speed or (max(self.speed, 1) if self.headless else 1)


class Reading:
    """Reads one conversation aloud on a desk."""

    def __init__(self, desk, options, tell=lambda line: None):
        self.desk, self.options, self.tell = desk, options, tell
        work = desk.output / "logs"
        self.transcript = Transcript(work / "agent.tsv")
        self.log = ClientLog(work / "messenger.tsv")
        self.window = None
        self._told = 0  # acts
        self._spoken = 0
        self._pictured = 0
        self._picture = None  # when the next is due, and the words it is to show

    def start_character_server(self):
        options = self.options
        self.desk.start("AgentServer.exe", self.desk.agent_server(),
                        "/record", windows_path(options.output / "speech.wav"),
                        "/transcript", windows_path(self.transcript.path),
                        *(["/speed", f"{options.speed_of_stage():g}"] if options.speed_of_stage() != 1 else []))

    def start_neighbours(self):
        options = self.options
        self.start_character_server()
        arguments = [*self._conversation(), "/log", windows_path(self.log.path)]
        if options.orders:
            arguments.append("/orders")
        if self.desk.screen.is_own:
            arguments += ["/left", 420, "/top", 330, "/width", 600, "/height", 420]  # with room for the characters
        self.desk.start("MessengerClient.exe", self.desk.program_directory / "MessengerClient.exe", *arguments)
        # A program that asks for a neighbour before it can be found is given another one.
        self._until("the character server", self.transcript.is_ready)
        self._until("the conversation", self._conversation_is_open)

    def _conversation_is_open(self):
        offered = self.log.is_offered()
        for fault in self.log.of_kind("fault"):
            raise Failed(f"The Messenger client could not sign in: {fault.text}")
        return offered and any(event.text == "opened" for event in self.log.of_kind("window"))

    def _conversation(self):
        """Arguments of the Messenger client."""
        options = self.options
        arguments = ["/conversation", windows_path(options.conversation), "/participants", options.participants,
                     "/speed", f"{options.speed:g}", "/wait"]
        return arguments + (["/messages", options.messages] if options.messages else [])

    def start_program(self):
        directory, screen = self.desk.program_directory, self.desk.screen
        self.desk.start("Murmelix.exe", directory / "Murmelix.exe", directory=directory)
        self.window = self._until("the main window", lambda: (screen.find(MAIN_WINDOW) or [None])[-1])
        if screen.is_own:
            screen.move(self.window, 10, 500)  # nothing covers anything
            for tray in screen.find("^Wine System Tray$"):
                screen.move(tray, 1100, 900)

    def start_reading(self):
        """Presses the accelerator of "&Start Reading Selected Conversation" until the reading has begun."""
        pressed = None

        def begun():
            nonlocal pressed
            if self.has_begun():
                return True
            now = time.monotonic()
            if self.dismiss_notices() and (pressed is None or now - pressed > GESTURE_SECONDS) \
                    and self.desk.screen.type_into(self.window, "alt+s"):
                pressed = now
            return False

        self._until("the beginning of the reading", begun)

    def has_begun(self):
        """The client replays the conversation once its text was read; a character on the stage tells it as well."""
        self.log.new()
        self.transcript.new()
        return bool(self.log.of_kind("message")) or any(act.moment == "call" for act in self.transcript.acts)

    def dismiss_notices(self):
        """Closes the windows that the program greets a new user with; True when there is none."""
        for title, key in NOTICES.items():
            for window in self.desk.screen.find(f"^{title}$"):
                self.desk.screen.type_into(window, key)
                return False
        return True

    def _until(self, what, condition):
        """Waits for the condition, as long as the programs run that were started."""
        def looked_at():
            for name in NEIGHBOURS:
                if name in self.desk.programs and not self.desk.running(name):
                    raise Failed(f"{name} has ended while {what} was awaited\n{self.desk.state()}")
            return condition()

        try:
            return wait_for(what, looked_at, PATIENCE_SECONDS)
        except TimedOut as error:
            raise Failed(f"{error}\n{self.desk.state()}") from None

    def follow(self):
        """Follows the reading until the conversation is done and everything has been spoken; Failed otherwise."""
        last_news = looked = time.monotonic()
        faults = None
        while True:
            if time.monotonic() - looked > 1:
                self.dismiss_notices()
                looked = time.monotonic()
            events, acts = self.log.new(), self.transcript.new()
            if events or acts:
                last_news, faults = time.monotonic(), None
            for act in self.transcript.acts[self._told:]:
                self._tell(act)
            self._told = len(self.transcript.acts)
            self._take_picture()
            done = bool(self.log.of_kind("done"))
            if done and not self._being_spoken():
                if faults is None:
                    faults = self.faults()
                if not faults:
                    return
            silence = time.monotonic() - last_news
            if done and faults and silence > FINAL_SECONDS:
                raise Failed("Not everything was read:\n" + "\n".join(faults) + "\n" + self.desk.state())
            if silence > PATIENCE_SECONDS:
                under_way = [f"{act.name}: {act.what} {act.of!r}" for act in self.transcript.under_way()]
                raise Failed(f"Nothing has happened for {PATIENCE_SECONDS} s; under way: {under_way}\n"
                             + self.desk.state())
            self.check_programs()
            time.sleep(0.02)

    def messages(self):
        return self.log.of_kind("message")

    def finish(self):
        """Waits for the recording to hold the last sound, and sees that all that was promised is there."""
        sound, picture = self.options.output / "speech.wav", self.options.output / "stage.png"
        spoken = time.time()
        try:
            wait_for("the recording", lambda: sound.stat().st_mtime > spoken, RECORDING_SECONDS)
        except (TimedOut, OSError):
            pass  # nothing has sounded since
        try:
            with wave.open(str(sound), "rb") as recording:
                frames = recording.getnframes()
        except (OSError, EOFError, wave.Error) as error:
            raise Failed(f"{sound} is no recording: {error}\n{self.desk.state()}") from None
        if frames == 0:
            raise Failed(f"{sound} holds no sound\n{self.desk.state()}")
        # Of a reading that was over in a moment it is the last of it.
        if not picture.is_file() and not self.desk.screen.picture(picture):
            raise Failed(f"{picture} could not be taken\n{self.desk.state()}")

    def faults(self):
        """What was not read as it should have been, for people; empty: all was."""
        gone = {event.signin for event in self.log.of_kind("leave")}
        with Trace(TRACE) as trace:
            fault = Described(self.log.events, self.transcript.acts, trace).fault()
        return ([fault] if fault else []) + [
            f"{act.name} could not say {act.of!r}: {act.outcome}" for act in self.transcript.acts
            if act.moment == "end" and act.what == "Speak" and act.outcome != "complete" and act.key not in gone]

    def check_programs(self):
        for name in NEIGHBOURS:
            if name in self.desk.programs and not self.desk.running(name):
                raise Failed(f"{name} has ended in the middle of the reading\n{self.desk.state()}")

    def _being_spoken(self):
        """Calls still to be carried out; a character that has left the stage carries nothing out any more."""
        gone = {event.signin for event in self.log.of_kind("leave")}
        return [act for act in self.transcript.under_way() if act.key not in gone]

    def _tell(self, act):
        line = for_people(act)
        if line:
            self.tell(line)
        if act.moment == "start" and act.what == "Speak" and act.of.strip() and not act.of.startswith("file:"):
            self._spoken += 1
            if self._spoken >= 2 * self._pictured:
                self._picture = (time.monotonic() + PICTURE_DELAY / max(self.options.speed_of_stage(), 1), act)

    def _take_picture(self):
        """The last picture is one of the second half: another is taken whenever twice as much has been spoken."""
        if not self._picture or time.monotonic() < self._picture[0]:
            return
        act, self._picture = self._picture[1], None
        good = any((call.key, call.of) == (act.key, act.of) for call in self.transcript.under_way())
        # One whose words were over already is better than none, until there is a good one.
        if (good or not self._pictured) and self.desk.screen.picture(self.options.output / "stage.png") and good:
            self._pictured = self._spoken


class LiveReading(Reading):
    """Reads a channel of a live chat aloud, as many messages as are wanted."""

    def _conversation(self):
        return ["/connect", self.options.channel, *(["/nick", self.options.nick] if self.options.nick else [])]

    def has_begun(self):
        self.log.new()
        self.transcript.new()
        return bool(self.log.of_kind("read"))

    def follow(self):
        """Until so many messages were spoken; without end where their number is not limited."""
        looked = time.monotonic()
        while True:
            if time.monotonic() - looked > 1:
                self.dismiss_notices()
                looked = time.monotonic()
            self.log.new()
            self.transcript.new()
            for act in self.transcript.acts[self._told:]:
                self._tell(act)
            self._told = len(self.transcript.acts)
            self._take_picture()
            if self.options.messages and len(self.messages()) >= self.options.messages and not self._being_spoken() \
                    and not self._unanswered():
                return
            self.check_programs()
            time.sleep(0.02)

    def _unanswered(self):
        """Messages that their writer's character was not told to speak yet. Who has no character never is."""
        calls = collections.defaultdict(list)
        for act in self.transcript.acts:
            if act.moment == "call" and act.what == "Speak":
                calls[act.key].append(act.microseconds)
        waiting = []
        for event in self.messages():
            after = next((moment for moment in calls[event.signin] if moment > event.microseconds), None)
            if after is not None:
                calls[event.signin].remove(after)
            elif self.log.age(event) < ANSWER_SECONDS:
                waiting.append(event)
        return waiting

    def messages(self):
        """What was to be read since the reading has begun."""
        began = self.log.of_kind("read")[0].microseconds
        return [event for event in self.log.of_kind("message") if event.microseconds > began]


def for_people(act):
    """The line of transcript.txt for something that a character begins; None for what nobody sees or hears."""
    if act.moment != "start":
        return None
    if act.what == "Speak" and act.of.startswith("file:"):
        deed = "sounds  " + act.of.replace("/", "\\").rsplit("\\", 1)[-1]
    elif act.what in ("Speak", "Think"):
        if not act.of.strip():
            return None
        deed = ("speaks  " if act.what == "Speak" else "thinks  ") + " ".join(act.of.split())
    elif act.what == "Play":
        deed = f"plays   {act.of}"
    elif act.what == "Show":
        deed = "appears"
    elif act.what == "Hide":
        deed = "leaves"
    else:
        return None
    minutes, seconds = divmod(act.seconds, 60)
    return f"{int(minutes):02d}:{seconds:06.3f}  {act.name:<10}  {deed}"
