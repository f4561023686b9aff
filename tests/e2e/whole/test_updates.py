"""The updater asks servers of the test's own: it says that a newer version is published, and nothing else ever."""

import socket
import time
from pathlib import Path

from case import PATIENCE_SECONDS, VERSION, main, thorough
from publisher import Publisher, chunks, content, redirect
from shell import GETTING_STARTED, TRAY, UPDATES, YOU, ShellTest

NEWER, OLDER = "65535.0.0", "0.0.9"
MACHINE_KEY, KEY = r"HKLM\Software\Murmelix", r"Software\MurmelixUpdater"

# The exit statuses, by what they mean.
(OFFERED, NO_ADDRESS, NO_PROGRAM, ASKED_LATELY, NONE_NEWER, UNREACHABLE, TIMED_OUT, REFUSED, REDIRECTED,
 NOT_AS_EXPECTED) = 0, 2, 3, 4, 6, 7, 10, 11, 12, 13


class Updates(ShellTest):
    def publisher(self, answer):
        publisher = Publisher(answer)
        self.addCleanup(publisher.close)
        return publisher

    def forget_asking(self):
        """Has it asked long ago."""
        self.assertEqual(self.inspector.ask(f"put {KEY}\tLastAsked\t1\t0"), [])

    def start_updater(self, *arguments, name="updater"):
        return self.desk.start(name, self.desk.program_directory / "updater.exe", *arguments)

    def status_for(self, publisher):
        """How the updater ends by itself, once it has asked; what it says, where it does not. On a machine so busy that
        it gives up, it asks again, a few times."""
        for _ in range(5):
            publisher.requests.clear()
            self.forget_asking()
            updater = self.start_updater(publisher.page)
            self.eventually("the updater's end", lambda: updater.poll() is not None or self.screen.find(f"^{UPDATES}$"))
            if updater.poll() is None:
                text = self.message_box(UPDATES)
                self.answer(UPDATES, "alt+n")
                return text
            if updater.poll() != TIMED_OUT:
                break
        return updater.poll()

    def offer(self, publisher):
        """Starts the updater, as often as it takes, until it shows its box; the text."""
        def shown():
            if updater.poll() is not None:
                self.assertEqual(updater.poll(), TIMED_OUT)
                self.forget_asking()
                return "again"
            return self.screen.find(f"^{UPDATES}$")
        while True:
            self.forget_asking()
            updater = self.start_updater(publisher.page)
            if self.eventually("the updater's box", shown) != "again":
                return updater, self.message_box(UPDATES).replace("\r\n", "\n")

    def test_newer_version_is_shown_and_its_page_opened_on_yes_alone(self):
        file = f"\ufeff{NEWER}\r\nSounds & pictures \u263a\r\n\r\nWeird\u202e signs\r\n"
        publisher = self.publisher(content(file.encode()))
        expected = (f"Murmelix {NEWER} has been published. Version {VERSION} is installed.\n\nWhat is new:\n"
                    f"Sounds & pictures \u263a\n\nWeird signs\n\nWould you like to open the download page?\n"
                    f"{publisher.page}")
        for key, pages in (("alt+n", []), ("alt+y", [publisher.page])):
            updater, text = self.offer(publisher)
            self.assertEqual(text, expected)
            self.answer(UPDATES, key)
            self.assertEqual(updater.wait(PATIENCE_SECONDS), OFFERED)
            self.eventually(f"the pages {pages}", lambda: self.opened_pages() == pages)
        # Nothing is told but who asks.
        for request in publisher.requests:
            first, *headers = request.strip().split("\r\n")
            self.assertEqual(first, "GET /Murmelix/download/version.txt HTTP/1.1")
            names = dict(header.split(": ", 1) for header in headers)
            self.assertEqual((names["Host"], names["User-Agent"]), (publisher.host, f"Murmelix/{VERSION}"))
            self.assertLessEqual(names.keys(), {"Host", "User-Agent", "Connection"})

    @thorough
    def test_everything_else_is_silent(self):
        newer = f"{NEWER}\nNews\n".encode()
        publisher = self.publisher(None)

        def announced():
            yield b"HTTP/1.1 200 OK\r\nContent-Length: 10000000\r\n\r\n" + newer
            publisher.closing.wait()

        for what, answer, status in (
                ("the same version", content(VERSION.encode()), NONE_NEWER),
                ("an older version", content(OLDER.encode()), NONE_NEWER),
                ("an older version in chunks", chunks(OLDER.encode()[:2], OLDER.encode()[2:], b"\nnews"), NONE_NEWER),
                ("no such page", content(newer, "404 Not Found"), REFUSED),
                ("a fault of the server", content(newer, "500 Internal Server Error"), REFUSED),
                ("a question for a password", content(b"", "401 Unauthorized", "WWW-Authenticate: NTLM",
                                                      'WWW-Authenticate: Basic realm="x"'), REFUSED),
                ("a redirect elsewhere", redirect("ftp://example.org/version.txt"), REDIRECTED),
                ("a redirect to a file", redirect("file:///C:/version.txt"), REDIRECTED),
                ("a redirect to nowhere", redirect(""), REDIRECTED),
                ("redirects without end", redirect("/Murmelix/download/version.txt"), REDIRECTED),
                ("no length", b"HTTP/1.1 200 OK\r\n\r\n" + newer, NOT_AS_EXPECTED),
                ("less than its length", b"HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n" + newer, UNREACHABLE),
                ("more than its length", b"HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\n" + newer, NOT_AS_EXPECTED),
                ("a length below zero", b"HTTP/1.1 200 OK\r\nContent-Length: -1\r\n\r\n" + newer, NOT_AS_EXPECTED),
                ("a length of letters", b"HTTP/1.1 200 OK\r\nContent-Length: ten\r\n\r\n" + newer, NOT_AS_EXPECTED),
                ("nothing", content(b""), NOT_AS_EXPECTED),
                ("zeros", content(bytes(5000)), NOT_AS_EXPECTED),
                ("a page for people", content(b"<!doctype html><title>2.0.0</title>"), NOT_AS_EXPECTED),
                ("10 MB", content(newer + b"x" * 10_000_000), NOT_AS_EXPECTED),
                ("10 MB that do not come", announced, NOT_AS_EXPECTED),
                ("10 MB in chunks", chunks(newer, *[b"x" * 100_000] * 100), NOT_AS_EXPECTED),
                ("nothing in chunks", chunks(), NOT_AS_EXPECTED),
                ("an end in a chunk", chunks(NEWER.encode())[:-9], None),
                ("an end before the last chunk", chunks(NEWER.encode())[:-5], None),
                ("chunks of no length", chunks(newer).replace(b"\r\n\r\n", b"\r\n\r\nzz\r\n", 1), None),
                ("10 MB without a length", b"HTTP/1.1 200 OK\r\n\r\n" + newer + b"x" * 10_000_000, NOT_AS_EXPECTED),
                ("an end behind the head", b"HTTP/1.1 200 OK\r\nContent-Length: 20\r\n\r\n", UNREACHABLE),
                ("an end in the head", b"HTTP/1.1 200 OK\r\nContent-Le", None),
                ("an end at once", b"", None),
                ("zeros for an answer", bytes(5000), None),
                ("another protocol", b"220 mail.example.org ESMTP\r\n", None)):
            with self.subTest(what):
                publisher.answer = answer
                # What is no answer may as well be none at all.
                self.assertIn(self.status_for(publisher), (status,) if status else (UNREACHABLE, NOT_AS_EXPECTED))
                self.assertTrue(publisher.requests)
                self.assertNotRegex("".join(publisher.requests), "(?i)authorization|cookie")
        self.assertEqual(self.opened_pages(), [])

    @thorough
    def test_redirect_is_followed(self):
        target = self.publisher(content(VERSION.encode()))
        publisher = self.publisher(redirect(target.page + "there?x=1"))
        self.assertEqual(self.status_for(publisher), NONE_NEWER)
        self.assertTrue(target.requests[-1].startswith("GET /Murmelix/download/there?x=1 HTTP/1.1\r\n"))

    @thorough
    def test_a_server_that_takes_its_time_is_given_up(self):
        publishers = [self.publisher(None) for _ in range(3)]
        silent, slow, talking = publishers
        head = b"HTTP/1.1 200 OK\r\n"
        slow.answer = lambda: slow.drops(head + b"Content-Length: 9000\r\n\r\n", f"{NEWER}\n".encode(), b"x")
        talking.answer = lambda: talking.drops(head, b"X-More: and more\r\n")
        updaters = []
        for index, publisher in enumerate(publishers):
            self.forget_asking()
            updaters.append(self.start_updater(publisher.page, name=f"updater{index}"))
            self.eventually("the question", lambda: publisher.requests or updaters[-1].poll() is not None)
        self.assertEqual([updater.wait(PATIENCE_SECONDS) for updater in updaters], [TIMED_OUT] * 3)

    def test_nobody_there(self):
        with socket.create_server(("127.0.0.1", 0)) as taken:
            port = taken.getsockname()[1]  # nobody listens there any more
        self.forget_asking()
        self.assertIn(self.start_updater(f"http://127.0.0.1:{port}/").wait(PATIENCE_SECONDS), (UNREACHABLE, TIMED_OUT))

    def test_asks_once_a_day_and_not_without_a_program(self):
        publisher = self.publisher(content(VERSION.encode()))
        before = int(time.time())
        self.assertEqual(self.status_for(publisher), NONE_NEWER)
        asked = int(self.values(KEY)["LastAsked"])
        self.assertIn(asked, range(before, int(time.time()) + 1))
        publisher.requests.clear()
        for _ in range(2):
            self.assertEqual(self.start_updater(publisher.page).wait(PATIENCE_SECONDS), ASKED_LATELY)
        self.assertEqual(int(self.values(KEY)["LastAsked"]), asked)
        self.forget_asking()
        alone = self.output / "updater.exe"
        alone.write_bytes((self.desk.program_directory / "updater.exe").read_bytes())
        self.assertEqual(self.desk.start("updater", alone, publisher.page).wait(PATIENCE_SECONDS), NO_PROGRAM)
        self.assertEqual(publisher.requests, [])
        self.assertEqual(self.values(KEY)["LastAsked"], "0")

    def test_who_starts_it_by_hand_is_told_what_is_missing(self):
        for arguments in ((), ("http://example.org/?x",)):
            updater = self.start_updater(*arguments)
            self.assertIn("updater.exe http://", self.message_box(UPDATES))
            self.answer(UPDATES)
            self.assertEqual(updater.wait(PATIENCE_SECONDS), NO_ADDRESS)

    def test_program_has_it_ask_at_its_start(self):
        publisher = self.publisher(content(f"{NEWER}\nNews".encode()))
        self.reg("add", MACHINE_KEY, "/v", "SiteHost", "/d", publisher.host, "/f")
        self.settle(AutoUpdate="1")
        self.start_messenger()
        self.start_program()
        self.assertIn(publisher.page, self.message_box(UPDATES))
        self.assertTrue(publisher.requests[0].startswith("GET /Murmelix/download/version.txt "))
        self.answer(UPDATES, "alt+y")
        self.wait_for_page(publisher.page)

    def updaters(self):
        """The processes of this test's prefix that are updaters."""
        prefix = f"WINEPREFIX={self.desk.prefix.directory}".encode()
        found = []
        for process in Path("/proc").iterdir():
            try:
                if b"updater.exe" in (process / "cmdline").read_bytes() and \
                        prefix in (process / "environ").read_bytes().split(b"\0"):
                    found.append(process.name)
            except OSError:
                pass  # another user's, or one that has ended meanwhile
        return found

    @thorough
    def test_welcome_is_the_first_and_only_box_of_a_new_user(self):
        self.start_messenger()
        before = {window.handle for window in self.windows()}
        self.start_program()
        self.eventually("the welcome", lambda: self.window(GETTING_STARTED))
        self.assertEqual(self.settings(YOU)["AutoUpdate"], "1")
        # The updater has begun to ask, for a host that there is not, and given up.
        self.eventually("the asking", lambda: self.values(KEY).get("LastAsked"))
        self.eventually("the updater's end", lambda: not self.updaters() or self.window(UPDATES))
        shown = {window.text for window in self.windows()
                 if window.visible and window.handle not in before and window.kind != "tooltips_class32"}
        self.assertEqual({text for text in shown if not text.startswith("Murmelix v")} - {TRAY}, {GETTING_STARTED})


if __name__ == "__main__":
    main()
