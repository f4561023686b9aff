"""The shell with a user before it: mouse and keyboard, windows and registry as Wine has them, pages that open."""

import itertools
import re
import subprocess
import threading

from case import MAIN_WINDOW, PROGRAM_DIRECTORY, TimedOut, WholeProgramTest, unescape, wait_for, windows_path
from desk.records import ClientLog, Transcript

# By the name of the value: what a new account has, and the check box whose click writes it.
DEFAULTS = {"AutoHideIdleChar": "0", "AutoAttachChar": "1", "AutoMinimize": "0", "AutoUpdate": "1",
            "AutoIgnoreChars": "1", "IgnoredChars": "^#$/\\()", "AutoCorrectText": "1", "AutoHideBalloon": "1",
            "PlayReadEmoticon": "1", "CurrentSoundScheme": "default", "ShowMinimizeFrm": "1", "ShowTipFrm": "1",
            "ShowEmotTipFrm": "1"}
CHECK_BOXES = {"AutoMinimize": "&Minimize to System Tray on Startup", "AutoUpdate": "A&uto Check for Updates",
               "AutoAttachChar": "Auto Attach to Con&versation Window",
               "AutoHideBalloon": "&Auto Hide Balloon After Reading",
               "AutoHideIdleChar": "Auto &Hide when Idle For a Short Time",
               "AutoCorrectText": "Auto Correct &Long Text (Recommended)",
               "AutoIgnoreChars": "Ignore Reading The &Following Characters:",
               "PlayReadEmoticon": "Enable Emotico&n Reading/Playing (Recommended)"}
OPTION_FRAMES = ("Characte&r Options", "&Text Reading Options", "Emoticon Read&ing")

SHOW_OPTIONS, HIDE_OPTIONS = "Show &Options ->", "<- Hide &Options"
START_SELECTED, START, STOP = ("&Start Reading Selected Conversation", "&Start Reading Conversation",
                               "&Stop Reading Conversation")
GETTING_STARTED, EMOTICONS, MINIMIZED, ABOUT = ("Getting Started", "Emoticons into Voice", "Minimize Murmelix alert",
                                                "About Murmelix")
UPDATES = "Murmelix Updates"
CLOSING = "Closing Murmelix"
TRAY = "Wine System Tray"
PAGES = "http://www.murmelix.example/Murmelix/"

YOU = "you@messenger.example"


class Mappings:
    """Top-level windows that appear on a screen, however briefly."""

    # The X server gives each program the numbers of its windows from a block of this size.
    _NUMBERS = 0x200000

    def __init__(self, screen):
        self._screen = screen
        self._process = subprocess.Popen(
            ["stdbuf", "-oL", "xev", "-root", "-event", "substructure", "-event", "property"],
            env=screen.environment(), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
            text=True)
        self._lines = []
        self._framed = {}
        self._programs = {}
        self._marks = itertools.count()
        self._thread = threading.Thread(target=self._listen, daemon=True)
        self._thread.start()
        self._settle()

    def _listen(self):
        for line in self._process.stdout:
            line = line.strip()
            if line.startswith("ReparentNotify"):
                if into := re.search(r"window (0x[0-9a-f]+), parent (0x[0-9a-f]+)", next(self._process.stdout, "")):
                    self._framed[into[2]] = into[1]
            elif line.startswith("MapNotify"):
                # What the window manager maps is the frame of another program's window.
                if mapped := re.search(r", window (0x[0-9a-f]+)", next(self._process.stdout, "")):
                    window = self._framed.get(mapped[1], mapped[1])
                    line = f"MapNotify {window} of {self._program(window)}"
            self._lines.append(line)

    def _program(self, window):
        """The name of the program whose window this is. Where the window is gone by now, others of its may have been asked."""
        block = int(window, 16) // self._NUMBERS
        if found := re.search(r'"([^"]*)"', self._screen.program_of(window)):
            self._programs[block] = found[1]
        return self._programs.get(block, "an unknown program")

    def _settle(self):
        """Sets a property of the screen until that has been noted: so has all that happened before."""
        mark = f"MURMELIX_MARK_{next(self._marks)}"

        def noted():
            self._screen.mark(mark)
            return any(mark in line for line in self._lines)
        wait_for("the events of the screen", noted)

    def forget(self):
        self._settle()
        self._lines.clear()

    def appeared(self, *but):
        """The windows that were mapped since the start, or since all was forgotten, but for those of these programs."""
        self._settle()
        return [line for line in self._lines if line.startswith("MapNotify") and not line.endswith(but)]

    def close(self):
        self._process.terminate()
        self._process.wait()
        self._thread.join()
        self._process.stdout.close()


class ShellTest(WholeProgramTest):
    """The program is started by `start_program`."""

    def setUp(self):
        super().setUp()
        self.client_log = ClientLog(self.output / "logs" / "messenger.tsv")
        self.transcript = Transcript(self.output / "logs" / "agent.tsv")
        self._pages = self.output / "pages.txt"
        self._note_pages()
        self.icons_before = set()

    # The registry.

    def values(self, key):
        """The values of a key below HKEY_CURRENT_USER, by name, in their order."""
        found = {}
        for line in self.inspector.ask(f"values {key}"):
            name, _, data = line.split("\t")
            found[unescape(name)] = unescape(data).removesuffix("\0")
        return found

    def settings(self, account=YOU):
        return self.values(rf"Software\Murmelix\{account}")

    def store(self, settings, account=YOU):
        """Writes values as a user of another program might: (type, data) or a text by name."""
        for name, value in settings.items():
            kind, data = value if isinstance(value, tuple) else (1, value)
            data = data.replace("\\", "\\\\").replace("\n", "\\n").replace("\r", "\\r").replace("\t", "\\t").replace(
                "\0", "\\0") if kind == 1 else data
            self.assertEqual(self.inspector.ask(f"put Software\\Murmelix\\{account}\t{name}\t{kind}\t{data}"), [])

    def settle(self, account=YOU, **settings):
        """Stores settings of an account that has used the program before: no updates, tips and notices."""
        quiet = {"AutoUpdate": "0", "ShowTipFrm": "0", "ShowEmotTipFrm": "0", "ShowMinimizeFrm": "0"}
        self.store({**quiet, **settings}, account)

    def wait_for_setting(self, name, value, account=YOU):
        self.eventually(f"{name} = {value!r}", lambda: self.settings(account).get(name) == value)

    # Pages and mail, which Wine hands to programs of the host: here to one that writes their addresses down.

    def _note_pages(self):
        script = self.output / "open-page"
        script.write_text(f'#!/bin/sh\nprintf "%s\\n" "$*" >>"{self._pages}"\n', "utf-8")
        script.chmod(0o755)
        for kind in ("Browsers", "Mailers"):
            self.inspector.ask(f"put Software\\Wine\\WineBrowser\t{kind}\t1\t{script}")

    def opened_pages(self):
        return self._pages.read_text("utf-8").splitlines() if self._pages.exists() else []

    def wait_for_page(self, address):
        """Waits until the page has been opened as the last one, and forgets it."""
        self.eventually(f"the page {address}", lambda: self.opened_pages() == [address])
        self._pages.unlink()

    # Programs.

    def own_programs(self):
        """A program directory of the test's own, to be changed at will."""
        directory = self.output / "Murmelix"
        subprocess.run(["cp", "-al", PROGRAM_DIRECTORY, directory], check=True)
        self.desk.program_directory = directory
        return directory

    def start_agent(self, *arguments, speed=20):
        """Starts the character server, as its own user does: with an icon in the tray."""
        icons = self.tray_icons()
        self.desk.start("AgentServer.exe", self.desk.agent_server(), "/transcript",
                        windows_path(self.transcript.path), "/speed", speed, *arguments)
        self.eventually("the server's icon", lambda: len(self.tray_icons()) > len(icons))
        self.eventually("the character server", self.transcript.is_ready)

    def start_messenger(self, *arguments):
        """Starts the client with no contacts but those that the test adds, or as `arguments` say."""
        if not arguments:
            arguments = ("/signin", YOU, "/friendly", "You")
        self.desk.start("MessengerClient.exe", self.desk.program_directory / "MessengerClient.exe", "/orders", "/log",
                        windows_path(self.client_log.path), "/left", 700, "/top", 60, "/width", 420, "/height", 300,
                        *arguments)
        self.eventually("the Messenger client", lambda: self.messenger() and self.client_log.is_offered())

    def launch(self, *arguments):
        self.icons_before = set(self.tray_icons())
        directory = self.desk.program_directory
        self.program = self.desk.start("Murmelix.exe", directory / "Murmelix.exe", *arguments, directory=directory)

    def start_program(self, *arguments, shown=True):
        """Starts the program; its main window, moved to where nothing covers it. Or hidden, where it is to be."""
        self.launch(*arguments)
        if not shown:
            return self.eventually("the tray icon", self.own_icons) and self.main()
        self.eventually("the main window", lambda: self.screen.find(MAIN_WINDOW))
        self.eventually("the tray icon", self.own_icons)
        return self.place_main()

    def place_main(self, left=20, top=30):
        """Moves the main window, and what could cover it away from it."""
        window = self.screen.find(MAIN_WINDOW)[-1]
        self.screen.move(window, left, top)
        for other, place in ((r"Messenger$", (960, 440)), (f"^{TRAY}$", (700, 880))):
            for id_ in self.screen.find(other):
                self.screen.move(id_, *place)
        # Wine learns of it a moment later.
        return self.eventually("the main window at its place", lambda: (lambda main: main if
                               abs(main.place[0] - left) < 10 and abs(main.place[1] - top) < 40 else None)(self.main()))

    def end_program(self):
        """Ends the program by its menu, when nothing is read."""
        self.activate_main()
        self.screen.key("F10", "m", "x")
        self.wait_for_end()

    def wait_for_end(self):
        self.eventually("the program's end", lambda: self.program.poll() is not None)
        self.eventually("the icon's end", lambda: not self.own_icons())

    # Windows.

    def main(self):
        """The main window, shown or hidden; None where there is none or it does not answer."""
        return next((window for window in self.windows() if re.match(MAIN_WINDOW, window.text)), None)

    def client(self, command):
        answer = self.inspector.ask(f"client {command}")
        if answer != ["1"]:
            self.fail(f"{command[:200]}: {answer}")

    def wait_for_events(self):
        """Waits until the program has dealt with all that the client told it: captions can be ahead of it."""
        self.eventually("the events", lambda: self.inspector.ask("client delivered") == ["1"])

    def messenger(self):
        return next((window for window in self.windows() if window.kind == "MessengerClientMain"), None)

    def control(self, text, window=None):
        """A visible control of the window (the main window) by its text, or its kind."""
        window = window or self.main()
        return next((child for child in (window.all() if window else [])
                     if child.visible and text in (child.text, child.kind)), None)

    def frame(self):
        """The frame whose caption is the user's."""
        return next(child for child in self.main().children
                    if any(grandchild.text in (SHOW_OPTIONS, HIDE_OPTIONS) for grandchild in child.children))

    def caption(self):
        return self.frame().text

    def wait_for_caption(self, text):
        self.eventually(f"the caption {text[:80]!r}", lambda: self.caption() == text)

    def signed_out(self):
        """True while the panel that asks to sign in is over the window."""
        return bool(self.control("&Sign in"))

    def options_shown(self):
        window = self.main()
        frame = self.control(OPTION_FRAMES[0], window)
        return bool(self.control(HIDE_OPTIONS, window) and frame) and frame.place[2] <= window.place[2]

    def tray_icons(self):
        tray = next((window for window in self.windows() if window.text == TRAY and window.visible), None)
        return {icon.handle: icon for icon in tray.children} if tray else {}

    def characters(self):
        """The windows of the characters that can be seen."""
        return [window for window in self.windows() if window.kind == "AgentServerCharacter" and window.visible]

    def conversation(self):
        """The window of the only conversation; None where there is none."""
        return next((window for window in self.windows() if window.kind == "MessengerClientConversation"), None)

    def own_icons(self):
        """The icons that have come since the program was started."""
        return [icon for handle, icon in self.tray_icons().items() if handle not in self.icons_before]

    def popup(self):
        """The menu that is open, the last one opened first; None where there is none."""
        return next((window for window in self.windows() if window.kind == "#32768" and window.visible), None)

    def focus(self):
        """The control that has the keyboard."""
        handle = int(self.inspector.ask("focus")[0])
        return next((window for top in self.windows() for window in top.all() if window.handle == handle), None)

    def focus_in(self, window):
        focus = self.focus()
        return window is not None and focus is not None and any(part.handle == focus.handle for part in window.all())

    # Gestures.

    def open_menu_at(self, x, y):
        """The menu of what is there, asked for again where something has closed it at once."""
        for _ in range(10):
            self.click_at(x, y, button=3)
            try:
                return wait_for("the menu", self.popup, seconds=20)
            except TimedOut:
                continue
        return self.fail(f"no menu opens at {x}, {y}")

    def open_menu_of(self, icon):
        """The menu of an icon of the tray."""
        left, top, right, bottom = icon.place
        return self.open_menu_at((left + right) // 2, (top + bottom) // 2)

    def xdotool(self, *arguments):
        self.screen.xdotool(*map(str, arguments))

    def click_at(self, x, y, button=1, times=1):
        self.xdotool("mousemove", x, y, "click", "--repeat", times, "--delay", 60, button)

    def click(self, target, window=None, button=1, times=1):
        """Clicks a control, given itself or by its text, as a user does: where it shows its box or text."""
        if isinstance(target, str):
            text = target
            target = self.eventually(f"the control {text!r}", lambda: self.control(text, window))
        left, top, right, bottom = target.place
        self.click_at(min(left + 12, (left + right) // 2), (top + bottom) // 2, button, times)

    def activate_main(self):
        self.activate(MAIN_WINDOW)

    def bring_to_front(self, pattern):
        def in_front():
            windows = self.screen.find(pattern)
            return windows and self.screen.activate(windows[-1]) and self.screen.active() == windows[-1]
        self.eventually(f"{pattern} in front", in_front)

    def activate(self, pattern):
        """Gives a window the keyboard, which Wine hears of a moment after it is in front."""
        self.bring_to_front(pattern)
        self.eventually(f"the keyboard in {pattern}", lambda: any(
            self.focus_in(window) for window in self.windows() if re.search(pattern, window.text)))

    def open_menu(self, accelerator):
        """Opens a menu of the menu bar by the keyboard."""
        self.activate_main()
        self.screen.key("F10", accelerator)
        return self.eventually("the open menu", self.popup)

    def open_tray_menu(self):
        """Clicks the icon with the right button. Wine closes a menu when the program hears of having lost the keyboard:
        the tray has it before, and the program is given the time. Where it was too short the click is made again."""
        for seconds in (2, 3, 10):
            self.bring_to_front(f"^{TRAY}$")
            self.main()
            self.click(self.own_icons()[0], button=3)
            try:
                return wait_for("the tray's menu", self.popup, seconds, 0.05)
            except TimedOut:
                continue
        return self.fail("the tray's menu does not open")

    def click_menu(self, menu, item):
        """Clicks the first, the middle or the last item of an open menu: "middle" is one between its halves."""
        left, top, right, bottom = menu.place
        heights = {"first": top + 12, "middle": (top + bottom) // 2, "last": bottom - 12}
        self.click_at((left + right) // 2, heights[item])

    def leave_menu(self):
        """Clicks where no window is. A menu that has not the keyboard yet misses it: the click is made again."""
        for _ in range(10):
            self.click_at(500, 800)
            try:
                return wait_for("the end of the menu", lambda: not self.popup(), seconds=5)
            except TimedOut:
                self.bring_to_front(f"^{TRAY}$")
        return self.fail("the menu does not end")

    def double_click_icon(self):
        self.click(self.own_icons()[0], times=2)

    def click_close_box(self, window):
        """Clicks the close box, which the window manager draws at the right end of a window's title."""
        _, top, right, _ = window.place
        self.click_at(right - 13, top + 12)

    def shown(self):
        return bool(self.screen.find(MAIN_WINDOW))

    def wait_until_hidden(self):
        self.eventually("the hidden window", lambda: not self.shown() and not self.main().visible)

    def wait_until_shown(self):
        self.eventually("the window", lambda: self.shown() and self.main().visible)

    def dismiss(self, title, never=False):
        """Presses OK in a notice, with the box ticked where it is never to come again."""
        notice = self.eventually(title, lambda: self.window(title))
        if never:
            box = next(child for child in notice.children if child.text.startswith("&Never"))
            self.click(box)
            self.eventually("the ticked box", lambda: self.control(box.text, self.window(title)).state == 1)
        self.click(next(child for child in notice.children if child.text == "OK"))
        self.eventually(f"the end of {title}", lambda: not self.window(title))

    # Conversations.

    def list_place(self):
        """The conversation list, within its frame."""
        return next(child for child in self.frame().children if child.visible and child.children)

    def start_reading_first_row(self):
        """Selects the first conversation by a click, and presses the start button."""
        self.wait_for_events()
        self.activate_main()
        left, top, _, _ = self.list_place().place
        self.click_at(left + 80, top + 20)
        self.screen.key("alt+s")
        self.eventually("the reading", lambda: self.control(STOP) and self.characters())

    def open_conversation(self, name="Ann"):
        """Has the client open one with a contact of that name; the contact's sign-in name."""
        signin = f"{name.lower()}@messenger.example"
        self.client(f"add {signin} {name}")
        self.client(f"open {signin}")
        return signin

    # Pictures.

    def pixels(self, place):
        """What can be seen there, as it is compared with other pictures of the same place."""
        left, top, right, bottom = place
        return self.screen.pixels(left, top, right - left, bottom - top)

    def picture(self, name):
        self.screen.picture(self.output / f"{name}.png")

    def painted(self, place, moving=False):
        """The same when all has been painted: when it does not change any more. Where something moves, a bit later."""
        taken = []

        def done():
            taken.append(self.pixels(place))
            return len(taken) > 5 if moving else taken[-1] in taken[-2:-1]
        self.eventually(f"the painted window at {place}", done)
        return taken[-1]
