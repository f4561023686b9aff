"""Pictures of every window in every state, in build/screens: what docs/screens.md shows, made anew by tests/screens."""

import subprocess

from case import PATIENCE_SECONDS, ROOT, main, thorough
from desk.chat_servers import StreamingServer
from publisher import Publisher, content
from shell import (ABOUT, CHECK_BOXES, CLOSING, EMOTICONS, GETTING_STARTED, MINIMIZED, SHOW_OPTIONS, START, STOP, TRAY,
                   UPDATES, ShellTest)

MATCHUPS = "Character Matchup"
PROPERTIES = "Character Properties"
QUICK_MESSAGE, LANGUAGES = "Quick Message", "Change Language"
SCREENS = ROOT / "build" / "screens"


class Screens(ShellTest):
    def setUp(self):
        super().setUp()
        SCREENS.mkdir(parents=True, exist_ok=True)

    def shot(self, name, *windows, room=0, moving=False):
        """Writes a picture of what holds these windows, once it has been painted: when it does not change any more. One
        of a window with something that moves is taken after a while."""
        places = [window.place for window in windows]
        place = (min(place[0] for place in places) + 2 - room, min(place[1] for place in places) + 2 - room,
                 max(place[2] for place in places) - 2 + room, max(place[3] for place in places) - 2 + room)
        place = (max(place[0], 0), max(place[1], 0), min(place[2], 1280), min(place[3], 960))
        left, top, right, bottom = place
        subprocess.run(["convert", "-size", f"{right - left}x{bottom - top}", "-depth", "8", "rgb:-", "-strip",
                        str(SCREENS / f"{name}.png")], input=self.painted(place, moving), check=True, timeout=PATIENCE_SECONDS)

    def shot_of(self, title, name, moving=False):
        """The same of a window that is awaited, which is then in front."""
        self.eventually(title, lambda: self.window(title))
        self.activate(f"^{title}")
        window = self.eventually(title, lambda: self.window(title))
        self.park()
        self.shot(name, window, moving=moving)
        return window

    def park(self):
        """Takes the mouse off everything."""
        self.xdotool("mousemove", 500, 930)

    @thorough
    def test_main_window_menus_and_notices(self):
        self.settle(ShowTipFrm="1", ShowEmotTipFrm="1", ShowMinimizeFrm="1")
        self.start_agent(speed=5)
        self.start_messenger("/signedout", "/width", 440, "/height", 340)
        self.start_program()
        self.park()
        self.activate_main()
        self.shot("main-signed-out", self.main())

        self.client("signin you@messenger.example Robin")
        self.shot_of(GETTING_STARTED, "notice-getting-started")
        self.dismiss(GETTING_STARTED)
        self.place_main()
        self.activate_main()
        self.park()
        self.shot("main-empty", self.main())
        for name in ("Ann", "Bob", "Carla"):
            self.open_conversation(name)
        self.client("use 2")
        self.client("join dora@messenger.example Dora")
        self.client("unread 3")
        self.wait_for_caption("Robin - Online (3 Unread)")
        self.activate_main()
        self.shot("main-conversations", self.main())
        left, top, _, _ = self.list_place().place
        self.click_at(left + 80, top + 60)
        self.park()
        self.shot("main-selected", self.main())

        for key, name in (("m", "menu-murmelix"), ("h", "menu-help")):
            self.shot(name, self.open_menu(key), self.main())
            self.screen.key("Escape", "Escape")
            self.eventually("the end of the menu", lambda: not self.popup())
        self.activate_main()
        self.click(SHOW_OPTIONS)
        self.eventually("the options", self.options_shown)
        self.park()
        self.shot("main-options", self.main())
        for value in ("AutoIgnoreChars", "PlayReadEmoticon"):
            self.click(CHECK_BOXES[value])
        self.park()
        self.shot("main-options-some-off", self.main())
        for value in ("AutoIgnoreChars", "PlayReadEmoticon"):
            self.click(CHECK_BOXES[value])
        self.matchups()
        self.tool_tip()
        self.screen.key("alt+o")

        self.client("rename me Robin with a name that is longer than the window of the program is wide, and longer")
        self.wait_for_caption("Robin with a name that is longer than the window of the program is wide, and longer"
                              " - Online (3 Unread)")
        self.activate_main()
        self.shot("main-long-name", self.main())
        self.client("rename me Robin")

        self.open_menu("h")
        self.screen.key("a")
        self.shot_of(ABOUT, "about")
        self.screen.key("Escape")
        self.eventually("the end of the about window", lambda: not self.window(ABOUT))

        self.click_menu_shot("menu-tray")
        self.read_aloud()

    def matchups(self):
        self.click("Chara&cter Matchup...")
        self.shot_of(MATCHUPS, "matchups-none")
        for tabs in (("Tab",), ("Tab", "Tab")):
            self.screen.key("ctrl+Up", "ctrl+x", *tabs, "ctrl+v", "alt+w")
        self.shot_of(MATCHUPS, "matchups")
        self.screen.key("alt+d")
        self.eventually("the end of the matchup window", lambda: not self.window(MATCHUPS))
        self.activate_main()

    def tool_tip(self):
        """The tip of the start button, for which the mouse rests on it."""
        button = self.control("&Start Reading Selected Conversation") or self.control(START)
        left, top, right, bottom = button.place
        self.xdotool("mousemove", (left + right) // 2 - 30, (top + bottom) // 2)
        self.xdotool("mousemove", (left + right) // 2, (top + bottom) // 2)
        tip = self.eventually("the tip", lambda: next(
            (window for window in self.windows() if window.kind == "tooltips_class32" and window.visible), None))
        self.shot("tool-tip", tip, button, room=12)
        self.park()

    def click_menu_shot(self, name):
        menu = self.open_tray_menu()
        self.shot(name, menu, self.window(TRAY))
        self.leave_menu()

    def read_aloud(self):
        # The conversation of two contacts in the middle, with room for them around it; the others out of the way.
        for name in ("Ann", "Carla"):
            self.screen.minimize(self.screen.find(f"^{name} - Conversation$")[-1])
        self.screen.cover(self.screen.find("^Bob, Dora - Conversation$")[-1], 505, 360)
        self.activate_main()
        left, top, _, _ = self.list_place().place
        self.click_at(left + 80, top + 60)
        self.screen.key("alt+s")
        self.eventually("the reading", lambda: self.control(STOP))
        self.shot_of(EMOTICONS, "notice-emoticons")
        self.dismiss(EMOTICONS, never=True)
        self.eventually("a character", self.characters)
        self.activate_main()
        self.park()
        self.shot("main-reading", self.main())
        self.character_windows()
        self.click_menu_shot("menu-tray-reading")
        self.server_windows()
        self.activate_main()
        self.open_menu("m")
        self.screen.key("x")
        self.shot_of(CLOSING, "box-closing")
        self.answer(CLOSING, "alt+n")
        self.desk_scene()
        self.click_close_box(self.main())
        self.wait_until_hidden()
        self.shot_of(MINIMIZED, "notice-minimized")

    def character_windows(self):
        """What a character itself opens: the quick message, its menu, its languages."""
        left, top, right, bottom = self.characters()[0].place
        middle = (left + right) // 2, (top + bottom) // 2
        self.click_at(*middle, times=2)
        self.shot_of(QUICK_MESSAGE, "quick-message")
        self.screen.key("Escape")
        self.eventually("the end of the quick message", lambda: not self.window(QUICK_MESSAGE))
        self.click_at(*middle, button=3)
        menu = self.eventually("the character's menu", self.popup)
        self.park()  # which ends the tip over the character
        self.eventually("the end of the tip", lambda: not [
            window for window in self.windows() if window.kind == "tooltips_class32" and window.visible])
        self.shot("menu-character", menu)
        # Its last entry but one, between two lines.
        left, top, right, bottom = menu.place
        self.click_at((left + right) // 2, top + (bottom - top) * 3 // 4)
        self.shot_of(LANGUAGES, "languages")
        self.screen.key("Escape")
        self.eventually("the end of the languages", lambda: not self.window(LANGUAGES))

    def server_windows(self):
        """The menu of the character server's icon, and the pages of its window."""
        icon = self.tray_icons()[next(iter(self.icons_before))]
        self.bring_to_front(f"^{TRAY}$")
        menu = self.open_menu_of(icon)
        self.shot("menu-tray-agent", menu, self.window(TRAY))
        left, top, _, bottom = menu.place
        for item, name in enumerate(("silence", "volume", "speed"), 2):
            self.xdotool("mousemove", left + 30, top + round((item + 0.5) * (bottom - top) / 10))
            below = self.eventually("the menu below", lambda: [
                window for window in self.windows() if window.kind == "#32768" and window.visible and window.place != menu.place
                and abs(window.place[1] - self.pointer_row(menu, item)) < 12])
            self.shot(f"menu-tray-agent-{name}", menu, *below)
        self.leave_menu()
        self.click(icon, times=2)
        self.eventually("the server's window", lambda: self.screen.find(f"^{PROPERTIES}$"))
        self.screen.move(self.screen.find(f"^{PROPERTIES}$")[-1], 60, 500)  # away from the characters
        for page in ("speech", "output", "listening", "balloons", "voices", "keys"):
            if page != "speech":
                self.screen.key("ctrl+Tab")
            self.shot_of(PROPERTIES, f"agent-{page}")
        self.screen.key("Escape")
        self.eventually("the end of the server's window", lambda: not self.window(PROPERTIES))

    @staticmethod
    def pointer_row(menu, item):
        """Where an item of the server's menu begins: of nine, and two lines half as high."""
        return menu.place[1] + round(item * (menu.place[3] - menu.place[1]) / 10)

    def desk_scene(self):
        """Everything together: the conversation, its character speaking, the program that listens."""
        self.client("say dora@messenger.example Who brings the towels?")
        self.client("say bob@messenger.example Have you heard that the lake is open again? I will be there at noon!")
        self.activate_main()
        self.park()

        def has_spoken():
            """Keeps the last picture that was taken before Bob's character had spoken."""
            self.screen.picture(SCREENS / "desk.new.png")
            self.transcript.new()
            spoken = any(act.moment == "end" and "Lake" in act.of for act in self.transcript.acts)
            if not spoken:
                (SCREENS / "desk.new.png").replace(SCREENS / "desk.png")
            return spoken
        self.eventually("the end of the words", has_spoken)
        (SCREENS / "desk.new.png").unlink()

    def told(self, words):
        def found():
            self.client_log.new()
            return any(words in event.text for event in self.client_log.of_kind("message"))
        self.eventually(f"{words!r} in the history", found)

    @thorough
    def test_live_chat(self):
        with StreamingServer() as server:
            self.reg("add", r"HKCU\Software\MessengerClient", "/v", "StreamingServer", "/d",
                     f"irc://127.0.0.1:{server.port}", "/f")
            self.start_messenger("/signedout", "/width", 620, "/height", 400)
            self.shot_of("Messenger", "messenger-sign-in-local")
            self.screen.key("alt+k", "Down")
            self.shot_of("Messenger", "messenger-sign-in-irc")
            self.activate("^Messenger$")
            self.screen.key("alt+k", "End")
            self.shot_of("Messenger", "messenger-sign-in-streaming")
            self.activate("^Messenger$")
            self.screen.key("alt+k", "End", "Tab", *"lake", "Return")
            server.wait_for_viewers("#lake")
            server.say("#lake", "ann", "Good morning, everybody! The water is warm.", "Ann", "moderator/1")
            self.told("warm")
            server.say("#lake", "bob", "!weather", "Bob")
            server.say("#lake", "dora", "see https://example.org/lake for the pictures of yesterday", "Dora", "subscriber/3")
            server.say("#lake", "cid", "who brings the towels?", "Cid")
            self.told("towels")
            self.shot_of("#lake - Conversation", "live-conversation")
            self.activate("^#lake - Conversation$")
            self.screen.key("alt+w")
            page = self.eventually("the page", lambda: next(
                (window for window in self.windows() if window.visible and "#lake" in window.text
                 and window.text != "#lake - Conversation"), None))
            self.shot_of(page.text, "live-what-is-read")

    @thorough
    def test_boxes_and_neighbours(self):
        self.settle()
        self.start_agent(speed=5)
        self.start_messenger("/signedout", "/connect", "hold", "/width", 460, "/height", 360)
        self.screen.move(self.screen.find("^Messenger$")[-1], 400, 200)
        self.shot_of("Messenger", "messenger-sign-in")
        self.client("connect you@messenger.example Robin")
        self.shot_of("Signing in - Messenger", "messenger-signing-in", moving=True)
        self.client("signing finish")
        for name, status in (("Ann", 2), ("Bob", 34), ("Carla", 10), ("Dora", 1)):
            self.client(f"add {name.lower()}@messenger.example {name}")
            self.client(f"status {name.lower()}@messenger.example {status}")
        self.client("unread 3")
        self.shot_of("Robin - Messenger", "messenger")
        self.open_conversation("Ann")
        for line in ("ann@messenger.example Have you heard? The lake is open again!", "me Since when? :)",
                     "ann@messenger.example Since Sunday. Bring your towel."):
            self.client(f"say {line}")
        self.shot_of("Ann - Conversation", "messenger-conversation")
        self.client("close")

        self.start_program()
        second = self.desk.start("second", self.desk.program_directory / "Murmelix.exe")
        self.shot_of("Murmelix already running!", "box-already-running")
        self.answer("Murmelix already running!")
        self.eventually("the second one's end", lambda: second.poll() is not None)
        icon = self.tray_icons()[next(iter(self.icons_before))]
        self.click(icon, times=2)
        properties = self.eventually("the server's window", lambda: next(
            (window for window in self.windows() if window.kind == "AgentServerProperties" and window.visible), None))
        self.shot("agent-properties", properties)
        # A window that comes to the front closes a menu that is open.
        self.eventually("the keyboard in the server's window", lambda: self.focus_in(properties))
        self.click_menu(self.open_menu_of(icon), "last")
        self.shot_of("MSAgent Shutdown Alert!", "box-agent-shut-down")
        self.answer("MSAgent Shutdown Alert!")
        self.wait_for_end()

        characters = self.desk.prefix.windows / "msagent" / "chars"
        characters.rename(characters.with_name("elsewhere"))
        self.launch()
        self.shot_of("Character Directory not found!", "box-no-character-directory")
        self.answer("Character Directory not found!")
        self.wait_for_end()
        characters.with_name("elsewhere").rename(characters)
        # The server that was started for it looks at its settings when it starts.
        self.eventually("the server's end", lambda: not [
            window for window in self.windows() if window.kind == "AgentServerMessages"])
        self.inspector.ask("put Software\\Murmelix AgentServer\tSoundEnabled\t4\t00000000")
        self.launch()
        title = "Speech Engine NOT Installed Or Disabled"
        self.shot_of(title, "box-no-speech")
        self.answer(title, "alt+n")
        self.wait_for_end()
        news = b"Characters listen to one another.\nNew sounds: rain, and a kettle.\n"
        publisher = Publisher(content(b"65535.0.0\n" + news))
        self.addCleanup(publisher.close)
        self.desk.start("updater", self.desk.program_directory / "updater.exe", publisher.page)
        self.shot_of(UPDATES, "box-updates")
        self.answer(UPDATES, "alt+n")


if __name__ == "__main__":
    main()
