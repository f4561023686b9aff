"""The maker's web site: its pages, what the program opens and fetches there, and the server that shows it."""

import faulthandler
import html.parser
import http.client
import io
import itertools
import os
import re
import shutil
import signal
import socket
import struct
import subprocess
import sys
import threading
import unittest
import urllib.parse
import urllib.request
import wave
from pathlib import Path

from browser import Browser
from case import PATIENCE_SECONDS, ROOT, main, thorough, wait_for
from shell import ShellTest

from desk.web_server import SITE, WebServer

ASSETS = ROOT / "build" / "host" / "assets"
READ_ALOUD = ROOT / "tools" / "read_aloud.py"
WATCHDOG_SECONDS = 2 * PATIENCE_SECONDS
KINDS = {"wav": "audio/wav", "gif": "image/gif", "png": "image/png", "acs": "application/octet-stream",
         "svg": "image/svg+xml; charset=utf-8", "css": "text/css; charset=utf-8", "txt": "text/plain; charset=utf-8",
         "vtt": "text/vtt; charset=utf-8"}
PORTRAIT_PIXELS = 96
CHARACTERS = tuple(re.search(r"set\(MURMELIX_CHARACTERS ([\w ]+) CACHE",
                             (ROOT / "assets" / "CMakeLists.txt").read_text("utf-8"))[1].split())

# Every page that the program opens, and what it fetches; the same below "/murmelix/".
PAGES = (
    "/Murmelix/", "/Murmelix/help/", "/Murmelix/help/signin.html", "/Murmelix/help/tips.html",
    "/Murmelix/help/matchup.html", "/Murmelix/help/livedemo.html", "/Murmelix/help/emoticons.html", "/Murmelix/download/",
    "/Murmelix/download/d_characters.html", "/Murmelix/download/langauges.html", "/Murmelix/sendmail/",
)

# Emoticons and the sound of each, "" for those that are acted or spoken alone.
SOUNDS = {
    "(lol)": "laugh", "(run)": "run", "(whistle)": "whistle", "(haa)": "haa", "(ohh)": "ohhh", "(slap)": "slap",
    "(sniff)": "sniff", "(sigh)": "sigh", ":)": "", ":-)": "", ";)": "", ";-)": "", ":$": "ting", ":-$": "ting",
    ":-D": "evil-laugh", ":D": "evil-laugh", ":-P": "yawn", ":P": "yawn", ":(": "", ":-(": "", ":'(": "cry",
    ":-|": "chock", ":|": "chock", ":O": "gasp", ":-O": "gasp", ":-S": "", ":S": "", ":-@": "angry", ":@": "angry",
    "(a)": "angel", "(l)": "heart", "(u)": "broken_heart", "({)": "boy_hug", "(})": "girl_hug", "(d)": "drink", "(g)": "gift",
    "(f)": "flower", "(w)": "wilted-flower", "(h)": "yehaa", "(boo)": "boo", "(b)": "burp", "(^)": "birthday",
    "(birthday)": "birthday", "(e)": "email", "(k)": "kiss", "(@)": "cat", "(&)": "dog", "(c)": "coffee", "(t)": "ring",
    "(p)": "camera", "(S)": "snore", "(m)": "MSN", "(o)": "clock", "(*)": "star", "(i)": "light", ":-[": "bat", ":[": "bat",
    "(8)": "music-note", "(y)": "", "(n)": "", "(6)": "devil", "(r)": "", "(~)": "film_strip", "(x)": "", "(z)": "",
    "(?)": "", "(%)": "", "(#)": "",
}
SPOKEN = {"(r)": "rainbow", "(x)": "girl", "(z)": "boy", "(?)": "age-sex-language", "(%)": "chains", "(#)": "sunshine"}
ACTED = {":)", ";)", ":$", ":D", ":P", ":(", ":'(", ":|", ":O", ":S", "(sniff)", "(sigh)", "(l)", "(u)", "({)", "(})",
         "(g)", "(boo)", "(y)", "(n)"}

LANGUAGES = (
    "Arabic", "Basque", "Chinese (Simplified)", "Chinese (Traditional)", "Croation", "Czech", "Danish", "Dutch",
    "English (US)", "English (GB)", "Finnish", "French", "German", "Greek", "Hebrew", "Hungarian", "Italian", "Japanese",
    "Korean", "Norwegian", "Polish", "Portuguese", "Portuguese (Brazil)", "Romanian", "Russian", "Slovakian", "Slovenian",
    "Spanish", "Swedish", "Thai", "Turkish",
)

# Of each text on its ground, as far as that has one colour: 4.5 to 1, or 3 to 1 for large letters, is well read.
POOR_CONTRAST = """
const parts = colour => (colour.match(/[\\d.]+/g) || []).map(Number);
const light = ([r, g, b]) => [r, g, b].map(v => v / 255).map(v => v <= 0.04045 ? v / 12.92 : ((v + 0.055) / 1.055) ** 2.4)
  .reduce((sum, v, i) => sum + v * [0.2126, 0.7152, 0.0722][i], 0);
const found = [];
for (const element of document.querySelectorAll("body *")) {
  const written = [...element.childNodes].some(node => node.nodeType === 3 && node.data.trim());
  if (!written || !element.checkVisibility()) continue;
  let ground = element;
  let colour = null;
  for (; ground; ground = ground.parentElement) {
    const style = getComputedStyle(ground);
    if (style.backgroundImage !== "none") break;
    const values = parts(style.backgroundColor);
    if (values.length === 3 || values[3] === 1) { colour = values; break; }
  }
  if (!colour) continue;
  const style = getComputedStyle(element);
  const [low, high] = [light(parts(style.color)), light(colour)].sort((a, b) => a - b);
  const large = parseFloat(style.fontSize) >= 24 || (parseFloat(style.fontSize) >= 18.66 && style.fontWeight >= 700);
  const ratio = (high + 0.05) / (low + 0.05);
  const words = element.textContent.trim().slice(0, 30);
  if (ratio < (large ? 3 : 4.5)) found.push(`${element.tagName} "${words}" ${ratio.toFixed(2)}`);
}
return found;
"""
# What makes a page wider than its window.
WIDER_THAN_WINDOW = """
const width = document.documentElement.clientWidth;
if (document.documentElement.scrollWidth <= width) return [];
return [...document.querySelectorAll("body *")].filter(element => element.getBoundingClientRect().right > width + 0.5)
  .map(element => element.tagName + "." + element.className + " to " + element.getBoundingClientRect().right);
"""
PICTURES_THERE = """
for (const image of document.images) image.loading = "eager";
return [...document.images].every(image => image.complete);
"""
BROKEN_PICTURES = "return [...document.images].filter(image => !image.naturalWidth).map(image => image.currentSrc);"
GROUND = "return getComputedStyle(document.body).backgroundColor;"
DEMO_LOADED = """
const video = document.querySelector("video");
return video.error ? "error" : video.readyState > 0 && video.textTracks[0].cues && video.textTracks[0].cues.length > 0 &&
  [video.duration, video.textTracks[0].cues[video.textTracks[0].cues.length - 1].endTime];
"""

VOID = {"area", "base", "br", "col", "embed", "hr", "img", "input", "link", "meta", "source", "track", "wbr"}


class Page(html.parser.HTMLParser):
    """What a page holds. Problems are what a reader of the page, or a strict reader of HTML, would stumble over."""

    def __init__(self, text):
        super().__init__(convert_charrefs=True)
        self.links, self.ids, self.problems, self.headings, self.landmarks = [], [], [], [], []
        self.cards = []     # of emoticons: spellings, audio files, pictures
        self.language_names = []
        self._open, self._heading, self._words = [], False, ""
        self.feed(text)
        self.close()
        self.problems += [f"<{tag}> stays open" for tag in self._open]

    def problem(self, what):
        self.problems.append(f"line {self.getpos()[0]}: {what}")

    def handle_starttag(self, tag, pairs):
        values = dict(pairs)
        if len(values) != len(pairs):
            self.problem(f"<{tag}> has a value twice")
        if tag in ("script", "iframe", "object", "form") or any(name.startswith("on") for name in values):
            self.problem(f"<{tag}> is more than a page")
        if "id" in values:
            if values["id"] in self.ids:
                self.problem(f"{values['id']} is there twice")
            self.ids.append(values["id"])
        if tag == "img" and "alt" not in values:
            self.problem(f"{values.get('src')} has no words for who cannot see it")
        if tag == "img" and not {"width", "height"} <= set(values):
            self.problem(f"{values.get('src')} has no size: the page would jump")
        if tag in ("audio", "video") and "aria-label" not in values:
            self.problem(f"{values.get('src')} has no name")
        for name in ("href", "src", "srcset", "poster"):
            if name in values:
                self.links.append(values[name])
        if re.fullmatch("h[1-6]", tag):
            level = int(tag[1])
            if level > (self.headings[-1] if self.headings else 0) + 1:
                self.problem(f"<{tag}> comes after <h{self.headings[-1] if self.headings else 0}>")
            self.headings.append(level)
        if tag in ("header", "nav", "main", "footer"):
            self.landmarks.append(tag)
        if tag == "li" and values.get("class") == "card":
            self.cards.append({"spellings": [], "sounds": [], "pictures": []})
        if self.cards and "footer" not in self.landmarks:
            if tag == "audio":
                self.cards[-1]["sounds"].append(values["src"])
            if tag == "img":
                self.cards[-1]["pictures"].append(values["src"])
        self._words = ""
        if tag not in VOID:
            self._open.append(tag)

    def handle_endtag(self, tag):
        if tag == "kbd" and self.cards and "li" in self._open:
            self.cards[-1]["spellings"].append(self._words)
        if not self._open or self._open[-1] != tag:
            self.problem(f"</{tag}> ends <{self._open[-1] if self._open else 'nothing'}>")
        else:
            self._open.pop()

    def handle_data(self, data):
        if self._open and self._open[-1] == "h3" and not self._words and data.strip():
            self.language_names.append(data.strip())
        self._words += data


def gif_blocks(data):
    """Width, height, whether a ground shows through, and how many pictures; ValueError for what is no GIF."""
    if data[:6] != b"GIF89a":
        raise ValueError("no GIF")
    width, height, flags = struct.unpack("<HHB", data[6:11])
    at = 13 + (3 << (flags & 7) + 1 if flags & 0x80 else 0)
    transparent, pictures = False, 0

    def skip_sub_blocks(at):
        while data[at]:
            at += 1 + data[at]
        return at + 1

    while data[at] != 0x3B:
        if data[at] == 0x21:
            if data[at + 1] == 0xF9:
                transparent = bool(data[at + 3] & 1)
            at = skip_sub_blocks(at + 2)
        elif data[at] == 0x2C:
            pictures += 1
            local = data[at + 9]
            at = skip_sub_blocks(at + 11 + (3 << (local & 7) + 1 if local & 0x80 else 0))
        else:
            raise ValueError(f"no block at {at}")
    if at != len(data) - 1:
        raise ValueError("something behind the end")
    return width, height, transparent, pictures


class Site(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.output = ROOT / "build" / "e2e" / self.id().rsplit(".", 1)[-1]
        shutil.rmtree(self.output, ignore_errors=True)
        self.output.mkdir(parents=True)
        self.started = []
        watchdog = threading.Timer(WATCHDOG_SECONDS, self._give_up)
        watchdog.daemon = True
        watchdog.start()
        self.addCleanup(watchdog.cancel)
        # Not the usual port: a user's own web server, or ./run --site, may have it.
        self.server = self.enterContext(WebServer(ports=()))

    def _give_up(self):
        print(f"\n{self.id()} has not ended within {WATCHDOG_SECONDS} s.", flush=True)
        faulthandler.dump_traceback()
        for thing in self.started:
            thing.kill()  # a process, or the browser
        self.server.close()
        os._exit(1)

    def get(self, path, method="GET"):
        connection = http.client.HTTPConnection(self.server.host, timeout=PATIENCE_SECONDS)
        try:
            connection.request(method, path)
            answer = connection.getresponse()
            return answer, answer.read()
        finally:
            connection.close()

    def page(self, path):
        answer, body = self.get(path)
        self.assertEqual((answer.status, answer.headers["Content-Type"]), (200, "text/html; charset=utf-8"), path)
        return Page(body.decode("utf-8"))

    def test_every_page_the_program_names_is_there_in_both_spellings(self):
        named = set()
        for folder in {file.parent for file in ROOT.glob("*/CMakeLists.txt")} - {ROOT / "build", ROOT / "tests"}:
            for file in folder.rglob("*.cpp"):
                named |= set(re.findall(r'"(/Murmelix/[^"]*)"', file.read_text("utf-8")))
        self.assertEqual(named - set(PAGES), set())
        for path in (*PAGES, "/Murmelix/download/version.txt",
                     *(f"/Murmelix/download/charimgs/{name.lower()}.gif" for name in CHARACTERS)):
            bodies = set()
            for spelling in (path, path.replace("/Murmelix/", "/murmelix/"), path.upper()):
                with self.subTest(path=spelling):
                    answer, body = self.get(spelling)
                    self.assertEqual(answer.status, 200)
                    bodies.add(body)
            self.assertEqual(len(bodies), 1, path)

    def test_every_link_leads_somewhere(self):
        root = f"http://{self.server.host}/"
        pages, others, fragments = {}, set(), []
        waiting = [root + "Murmelix/index.html", root + "Murmelix/nothing-is-here"]
        while waiting:
            address = waiting.pop()
            if address in pages:
                continue
            answer, body = self.get(urllib.parse.urlsplit(address).path)
            if address.endswith("nothing-is-here"):
                self.assertEqual(answer.status, 404)
            else:
                self.assertEqual(answer.status, 200, address)
            page = pages[address] = Page(body.decode("utf-8"))
            with self.subTest(page=address):
                self.assertEqual(page.problems, [])
                self.assertEqual(page.headings.count(1), 1)
                self.assertEqual(set(page.landmarks), {"header", "nav", "main", "footer"})
                for link in page.links:
                    if link.startswith("mailto:"):
                        continue
                    target, fragment = urllib.parse.urldefrag(urllib.parse.urljoin(address, link))
                    # Nothing leads away, or is fetched from elsewhere.
                    self.assertTrue(target.startswith(root + "Murmelix/"), link)
                    if fragment:
                        fragments.append((target, fragment))
                    if target == address:
                        continue
                    if target.endswith(".html"):
                        waiting.append(target)
                    else:
                        others.add(target)
        for address in sorted(others):
            with self.subTest(file=address):
                answer, body = self.get(urllib.parse.urlsplit(address).path)
                self.assertEqual(answer.status, 200)
                self.assertEqual(answer.headers["Content-Type"], KINDS[address.rsplit(".", 1)[-1]])
                self.assertGreater(len(body), 0)
        for address in sorted(others | {page for page in pages if not page.endswith("nothing-is-here")}):
            path = urllib.parse.urlsplit(address).path
            with self.subTest(other_spelling=path):
                other, body = self.get(path.replace("/Murmelix/", "/murmelix/", 1))
                self.assertEqual(other.status, 200)
                self.assertEqual(body, self.get(path)[1])
        for target, fragment in fragments:
            self.assertIn(fragment, pages[target].ids, target)
        # No page is lost: each can be reached from the first one.
        written = {root + "Murmelix/" + file.relative_to(SITE / "murmelix").as_posix()
                   for file in (SITE / "murmelix").rglob("*.html")} - {root + "Murmelix/404.html"}
        self.assertEqual(written - set(pages), set())

    def test_folders_are_not_listed_and_nothing_else_is_shown(self):
        for path in ("/Murmelix/pictures/", "/murmelix/download/charimgs/", "/murmelix/download/chars/", "/server-status",
                     "/murmelix/%2e%2e/%2e%2e/server.conf", "/../errors.log", "/index.html"):
            with self.subTest(path=path):
                answer, body = self.get(path)
                self.assertIn(answer.status, (400, 403, 404))
                self.assertNotIn(b"plonk.gif", body)
        answer, body = self.get("/Murmelix/no/such/page.html")
        self.assertEqual(answer.status, 404)
        self.assertIn(b"Nobody lives in this hole", body)

    def test_picture_is_given_to_the_request_of_the_program(self):
        for name, status in (*((name.lower(), "200") for name in CHARACTERS), ("nobody", "404")):
            address = ("127.0.0.1", self.server.port)
            with self.subTest(name=name), socket.create_connection(address, PATIENCE_SECONDS) as connection:
                connection.sendall(f"GET /murmelix/download/charimgs/{name}.gif HTTP/1.0\r\n".encode() +
                                   b"Accept: */*\r\nAccept: image/gif\r\n\r\n")
                answer = b""
                while data := connection.recv(65536):  # to the end that the server makes
                    answer += data
                head, _, body = answer.partition(b"\r\n\r\n")
                lines = head.decode("ascii").split("\r\n")
                self.assertEqual(lines[0].split()[1], status)
                if status == "200":
                    self.assertIn("200 OK\r\n", head.decode("ascii"))
                    self.assertIn(f"Content-Length: {len(body)}", lines)
                    self.assertIn("Content-Type: image/gif", lines)
                    self.assertEqual(body, (ASSETS / "portraits" / f"{name.capitalize()}.gif").read_bytes())

    def test_characters_and_their_pictures_are_whole(self):
        for name in CHARACTERS:
            with self.subTest(name=name):
                answer, body = self.get(f"/Murmelix/download/chars/{name}.acs")
                self.assertEqual((answer.status, body), (200, (ASSETS / "chars" / f"{name}.acs").read_bytes()))
                picture = self.get(f"/murmelix/download/charimgs/{name.lower()}.gif")[1]
                self.assertEqual(gif_blocks(picture), (PORTRAIT_PIXELS, PORTRAIT_PIXELS, True, 1))
                # Seen on its ground: through the corner, not through the middle.
                shown = subprocess.run(["convert", "gif:-", "-depth", "8", "rgba:-"], input=picture, capture_output=True,
                                       check=True, timeout=PATIENCE_SECONDS).stdout
                self.assertEqual(len(shown), PORTRAIT_PIXELS * PORTRAIT_PIXELS * 4)
                middle = (PORTRAIT_PIXELS // 2 * PORTRAIT_PIXELS + PORTRAIT_PIXELS // 2) * 4
                self.assertEqual((shown[3], shown[middle + 3]), (0, 255))

    def test_two_characters_have_their_picture_beside_the_program(self):
        pictures = ROOT / "build" / "Murmelix" / "CharPics"
        for name in ("Brindle", "Ottoline"):
            self.assertEqual((pictures / f"{name}.gif").read_bytes(),
                             (ASSETS / "portraits" / f"{name}.gif").read_bytes())

    def test_published_version_is_that_of_the_build(self):
        answer, body = self.get("/Murmelix/download/version.txt")
        version = re.search(r"project\(Murmelix VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text("utf-8"))[1]
        lines = body.decode("utf-8").splitlines()
        self.assertEqual(lines[0], version)
        self.assertRegex(lines[0], r"^\d+\.\d+\.\d+$")
        self.assertTrue(all(0 < len(line) <= 64 for line in lines[1:]), lines)  # as wide as the program shows it
        self.assertIn(f"Murmelix {version}".encode(), self.get("/Murmelix/download/")[1])

    def test_every_emoticon_is_shown_with_what_it_does(self):
        page = self.page("/Murmelix/help/emoticons.html")
        shown = {}
        for card in page.cards:
            for spelling in card["spellings"]:
                self.assertNotIn(spelling, shown)
                shown[spelling] = card
        self.assertEqual(set(shown), set(SOUNDS))
        # All that the program looks for in a message, in its lists of them.
        lists = re.findall(r"list_\d =\s*((?:u\"[^\"]*\"\s*)+);", (ROOT / "characters/emoticons.cpp").read_text("utf-8"))
        self.assertEqual(len(lists), 3)
        known = ",".join("".join(re.findall(r'u"([^"]*)"', quoted)) for quoted in lists).lower().split(",")
        self.assertEqual({spelling.lower() for spelling in shown}, set(known))
        for spelling, sound in SOUNDS.items():
            with self.subTest(emoticon=spelling):
                card = shown[spelling]
                name = f"sounds/{sound.lower()}.wav" if sound else None
                if spelling in SPOKEN:
                    name = f"voices/{SPOKEN[spelling]}.wav"
                self.assertEqual(card["sounds"], [f"../{name}"] if name else [])
                if name:
                    answer, body = self.get(f"/Murmelix/{name}")
                    self.assertEqual(answer.status, 200)
                    with wave.open(io.BytesIO(body)) as recording:
                        self.assertGreater(recording.getnframes(), 0)
                        self.assertTrue(any(recording.readframes(recording.getnframes())))
        for spelling in ACTED:
            self.assertEqual(len(shown[spelling]["pictures"]), 1, spelling)

    def test_every_language_says_hello(self):
        page = self.page("/Murmelix/download/langauges.html")
        self.assertEqual(tuple(name for name in page.language_names if name in LANGUAGES), LANGUAGES)
        greetings = [link for link in page.links if "voices/hello-" in link]
        self.assertEqual(len(set(greetings)), len(LANGUAGES))

    @thorough
    def test_pages_fit_a_phone_and_a_desk_by_day_and_by_night(self):
        grounds = set()
        with Browser() as browser:
            self.started.append(browser)
            for width, scheme in itertools.product((360, 1280), ("light", "dark")):
                browser.be(width, 800, scheme)
                for path in (*PAGES, "/Murmelix/nothing-is-here"):
                    with self.subTest(page=path, width=width, scheme=scheme):
                        browser.go(f"http://{self.server.host}{path}")
                        browser.wait_for("the pictures", PICTURES_THERE)
                        name = path.removeprefix("/Murmelix/").replace("/", "_").removesuffix(".html") or "welcome"
                        browser.picture(self.output / f"{name}-{width}-{scheme}.png")
                        self.assertEqual(browser.run(BROKEN_PICTURES), [])
                        self.assertEqual(browser.run(WIDER_THAN_WINDOW), [])
                        self.assertEqual(browser.run(POOR_CONTRAST), [])
                        grounds.add((scheme, browser.run(GROUND)))
            self.assertEqual(len(grounds), 2, "day and night have a ground each")
            browser.go(f"http://{self.server.host}/Murmelix/help/livedemo.html")
            browser.run("document.querySelector('video').load();")
            seconds, last_caption = browser.wait_for("the live demo", DEMO_LOADED)
            self.assertGreater(seconds, 10)
            self.assertLess(abs(seconds - last_caption), 2)

    def site_alone(self):
        """./run --site, and the port that it tells."""
        process = subprocess.Popen([sys.executable, "-B", READ_ALOUD, "--site"], stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, text=True)
        self.started.append(process)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        told = re.search(r"http://127\.0\.0\.1(?::(\d+))?/Murmelix/", process.stdout.readline())
        self.assertTrue(told)
        return process, int(told[1] or 80)

    @staticmethod
    def answers(port):
        connection = http.client.HTTPConnection("127.0.0.1", port, timeout=PATIENCE_SECONDS)
        try:
            connection.request("GET", "/Murmelix/")
            return connection.getresponse().status == 200
        except (OSError, http.client.HTTPException):
            return False
        finally:
            connection.close()

    def test_site_is_shown_until_it_is_ended_and_no_longer(self):
        first, port = self.site_alone()
        second, other_port = self.site_alone()
        self.assertNotEqual(port, other_port)
        self.assertTrue(self.answers(port) and self.answers(other_port))
        first.send_signal(signal.SIGINT)
        self.assertEqual(first.wait(PATIENCE_SECONDS), 130)
        self.assertFalse(self.answers(port))
        second.kill()
        wait_for("the end of the server whose owner was killed", lambda: not self.answers(other_port))


class SiteAndPrograms(ShellTest):
    KEY = r"HKLM\Software\Murmelix"
    NONE_NEWER, TIMED_OUT = 6, 10  # exit statuses of the updater

    def site_host(self):
        status, printed = self.desk.run("reg", "reg.exe", "query", self.KEY, "/v", "SiteHost")
        return printed.split("REG_SZ", 1)[1].strip() if status == 0 else None

    def ask_for_updates(self, page):
        """How the updater ends; it has a time limit, and asks again where the machine was too busy."""
        for _ in range(5):
            status = self.desk.start("updater", self.desk.program_directory / "updater.exe", page).wait(PATIENCE_SECONDS)
            if status != self.TIMED_OUT:
                break
            self.reg("delete", r"HKCU\Software\MurmelixUpdater", "/f")  # when it has asked
        return status

    def test_programs_use_the_site_while_it_is_shown(self):
        with WebServer(ports=()) as server:
            with self.desk.using_site(server.host):
                self.assertEqual(self.site_host(), server.host)
                self.assertEqual(self.ask_for_updates(server.address + "download/"), self.NONE_NEWER)
                self.settle(AutoUpdate="0")
                self.start_messenger("/signedout")
                self.start_program()
                self.eventually("the panel", self.signed_out)
                self.click("Help")
                page = server.address + "help/signin.html"
                self.wait_for_page(page)
                with urllib.request.urlopen(page, timeout=PATIENCE_SECONDS) as answer:
                    self.assertIn(b"You are not currently signed in", answer.read())
            self.assertIsNone(self.site_host())
            self.reg("add", self.KEY, "/v", "SiteHost", "/d", "pages.example:8080", "/f")
            with self.desk.using_site(server.host):
                self.assertEqual(self.site_host(), server.host)
            self.assertEqual(self.site_host(), "pages.example:8080")


if __name__ == "__main__":
    main()
