"""The matchup window with a user before it."""

from case import TimedOut, wait_for
from shell import SHOW_OPTIONS, STOP, YOU, ShellTest

ANN, BOB = "ann@messenger.example", "bob@messenger.example"
MATCHUPS, DOWNLOAD = "Character Matchup", "Downloading Character Image"
CONTACTS, OPEN = "Contacts &without a character:", "Chara&cter Matchup..."
ROW_HEIGHT = 20  # pixels, about


class MatchupTest(ShellTest):
    def start(self):
        self.settle()
        self.start_agent()
        self.start_messenger()
        for account, name in ((ANN, "Ann"), (BOB, "Bob (at work)")):
            self.client(f"add {account} {name}")
        self.start_program()

    def open_matchups(self):
        """Presses the button; the window, in which the contacts are listed."""
        self.activate_main()
        if not self.options_shown():
            self.click(SHOW_OPTIONS)
            self.eventually("the options", self.options_shown)
        self.click(OPEN)
        window = self.eventually("the matchup window", lambda: self.window(MATCHUPS))
        self.painted(window.place)
        return window

    def contact_row(self, number):
        """Where a row of the contacts is, the first one at 0."""
        left, _, _, bottom = self.control(CONTACTS, self.window(MATCHUPS)).place
        return left + 30, bottom + 5 + number * ROW_HEIGHT + ROW_HEIGHT // 2

    def panels(self):
        """The characters whose panels can be seen, from the top, by name."""
        window = self.window(MATCHUPS)
        strip = next(part for part in window.all() if any(child.text in self.characters_installed()
                                                          for child in part.children))
        frames = [frame for frame in strip.children if frame.visible and frame.text]
        return {frame.text: frame for frame in sorted(frames, key=lambda frame: frame.place[1])}

    def characters_installed(self):
        return {file.stem for file in (self.desk.prefix.windows / "msagent" / "chars").glob("*.acs")}

    def list_of(self, character):
        """The middle of a character's list."""
        left, top, right, bottom = self.panels()[character].place
        return left + (right - left) * 2 // 3, (top + bottom) // 2

    def first_row_of(self, character):
        left, top, right, _ = self.panels()[character].place
        return left + (right - left) * 2 // 3, top + 30

    def stored(self, account=YOU):
        """Characters by contact, as the registry has them."""
        def plain(name):
            return "".join(chr((code - 10) % 256) for code in name.encode("cp1252"))
        return {plain(name): character
                for name, character in self.values(rf"Software\Murmelix\{account}\Matchup").items()}

    def pull(self, start):
        """Presses the button there and moves a little: a drag begins."""
        self.xdotool("mousemove", *start)
        self.xdotool("mousedown", 1)
        for step in range(1, 4):
            self.xdotool("mousemove", start[0] + 6 * step, start[1] + step)

    def drag(self, start, end, done):
        """Drags from one place to another until it is done: a drag that begins late has not seen the button let go."""
        for _ in range(10):
            self.pull(start)
            self.xdotool("mousemove", end[0] - 5, end[1])
            self.xdotool("mousemove", *end)
            self.xdotool("mouseup", 1)
            try:
                return wait_for("the drop", done, 10, 0.1)
            except TimedOut:
                self.screen.key("Escape")
        return self.fail(f"nothing was dropped at {end}")

    def leave_matchups(self):
        self.screen.key("alt+d")
        self.eventually("the end of the matchup window", lambda: not self.window(MATCHUPS))
        self.assertTrue(self.main().enabled)

    def character_of(self, contact):
        self.transcript.new()
        return next((act.name for act in reversed(self.transcript.acts) if act.key == contact and act.what == "Show"),
                    None)

    def read(self, contact):
        """The character that speaks for a contact in a reading begun and ended for it."""
        self.client(f"open {contact}")
        self.start_reading_first_row()
        self.client(f"say {contact} Hello")
        self.transcript.new()
        self.eventually("the words", lambda: (self.transcript.new(), any(
            act.key == contact and act.what == "Speak" for act in self.transcript.acts))[1])
        character = self.character_of(contact)
        self.activate_main()
        self.screen.key("alt+s")
        self.eventually("the end of reading", lambda: not self.control(STOP))
        self.client("close")
        return character

    def portrait(self, character):
        """The picture on a character's panel; one that is blank can be clicked, and no other is enabled."""
        return min(self.panels()[character].children, key=lambda child: child.place[0])

    def click_portrait(self, character):
        left, top, right, bottom = self.portrait(character).place
        self.click_at((left + right) // 2, (top + bottom) // 2)
