"""The server that speaks the dialect of the streaming chat does what its clients may rely on."""

import faulthandler
import os
import re
import socket
import sys
import tempfile
import threading
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "tools"))

from desk.certificates import Issuer  # noqa: E402
from desk.chat_servers import ADDRESS, Person, StreamingServer  # noqa: E402

WATCHDOG_SECONDS = 280
TAGS = ("twitch.tv/tags", "twitch.tv/commands")
TOKEN = "oauth:0123456789abcdefghijklmnopqrst"


def give_up():
    faulthandler.dump_traceback()
    os._exit(1)


def tags_of(line):
    pairs = (pair.split("=", 1) for pair in line[1:].split(" ", 1)[0].split(";"))
    escapes = {":": ";", "s": " ", "\\": "\\", "r": "\r", "n": "\n"}
    return {name: re.sub(r"\\(.)", lambda found: escapes[found[1]], value) for name, value in pairs}


class Streaming(unittest.TestCase):
    def setUp(self):
        watchdog = threading.Timer(WATCHDOG_SECONDS, give_up)
        watchdog.daemon = True
        watchdog.start()
        self.addCleanup(watchdog.cancel)
        self.server = self.enterContext(StreamingServer(accounts={TOKEN: "ann"}))

    def viewer(self, nick="justinfan4711", capabilities=TAGS, **more):
        viewer = self.enterContext(Person(nick, self.server.port, capabilities=capabilities, **more))
        viewer.join("#channel")
        self.server.wait_for_viewers("#channel")
        return viewer

    def test_lines_carry_their_tags(self):
        viewer = self.viewer()
        identity = self.server.say("#channel", "bob", "hello Kappa; there", display="B ob", badges="moderator/1",
                                   emotes="25:6-10")
        line = viewer.wait_for_text("hello Kappa; there", "#channel")
        tags = tags_of(line)
        self.assertEqual((tags["display-name"], tags["id"], tags["mod"], tags["emotes"]), ("B ob", identity, "1", "25:6-10"))
        self.assertIn(" :bob!bob@bob.tmi.twitch.tv PRIVMSG #channel :", line)
        self.server.say("#channel", "bob", "again")
        self.assertEqual(tags_of(viewer.wait_for_text("again"))["user-id"], tags["user-id"])
        self.server.reply("#channel", "cid", "yes", ("bob", identity, "hello Kappa; there"))
        self.assertEqual(tags_of(viewer.wait_for_text("@bob yes"))["reply-parent-msg-body"], "hello Kappa; there")

    def test_who_asks_for_no_tags_has_none(self):
        viewer = self.viewer(capabilities=())
        self.server.clear_chat("#channel")
        self.server.say("#channel", "bob", "plain")
        viewer.wait_for_line("the plain line", lambda line: line == ":bob!bob@bob.tmi.twitch.tv PRIVMSG #channel :plain")
        self.assertFalse([line for line in viewer.lines() if "CLEARCHAT" in line or line.startswith("@")])

    def test_moderators_and_notices_are_told(self):
        viewer = self.viewer()
        self.assertIn("room-id", tags_of(viewer.wait_for_line("the room", lambda line: " ROOMSTATE " in line)))
        self.server.clear_chat("#channel", "bob", seconds=600)
        line = viewer.wait_for_line("the timeout", lambda line: line.endswith(" CLEARCHAT #channel :bob"))
        self.assertEqual(tags_of(line)["ban-duration"], "600")
        self.server.clear_chat("#channel")
        viewer.wait_for_line("the clearing", lambda line: line.endswith(" CLEARCHAT #channel"))
        self.server.clear_message("#channel", "an-id", "bob", "bad words")
        line = viewer.wait_for_line("the deletion", lambda line: line.endswith(" CLEARMSG #channel :bad words"))
        self.assertEqual(tags_of(line)["target-msg-id"], "an-id")
        self.server.user_notice("#channel", "resub", "bob", "bob subscribed; 3 months", "Great!")
        line = viewer.wait_for_line("the subscription", lambda line: line.endswith(" USERNOTICE #channel :Great!"))
        self.assertEqual((tags_of(line)["msg-id"], tags_of(line)["system-msg"]), ("resub", "bob subscribed; 3 months"))
        self.server.user_notice("#channel", "raid", "bob", "15 raiders")
        viewer.wait_for_line("the raid", lambda line: line.endswith(" USERNOTICE #channel"))
        self.server.notice("#channel", "slow_on", "This room is now in slow mode.")
        line = viewer.wait_for_line("the notice", lambda line: line.endswith(":This room is now in slow mode."))
        self.assertEqual(tags_of(line)["msg-id"], "slow_on")
        self.server.reconnect()
        viewer.wait_for_line("the wish", lambda line: line == ":tmi.twitch.tv RECONNECT")

    def test_a_token_lets_write(self):
        reader = self.viewer()
        writer = self.enterContext(Person("ann", self.server.port, capabilities=TAGS, password=TOKEN))
        writer.wait_for_line("its own state", lambda line: line.endswith("GLOBALUSERSTATE"))
        writer.join("#channel")
        reader.say("#channel", "nobody hears this")
        writer.say("#channel", "hello")
        self.assertIn(":ann!ann@ann", reader.wait_for_text("hello"))
        writer.wait_for_line("its state", lambda line: line.endswith("USERSTATE #channel") and "id=" in line)
        writer.send("PING :end")
        writer.wait_for_line("the answer", lambda line: line.endswith("PONG tmi.twitch.tv :end"))
        # It is not told its own line, nor that of who may not write.
        self.assertFalse([line for line in writer.lines() if " PRIVMSG " in line])

    def test_a_wrong_token_is_refused(self):
        for password, answer in (("oauth:wrong", "Login authentication failed"), ("secret", "Improperly formatted auth")):
            with socket.create_connection((ADDRESS, self.server.port)) as connection:
                connection.sendall(f"PASS {password}\r\nNICK ann\r\n".encode())
                self.assertEqual(connection.makefile("rb").read().decode(), f":tmi.twitch.tv NOTICE * :{answer}\r\n")

    def test_it_stops_and_starts_again(self):
        viewer = self.viewer()
        port = self.server.port
        self.server.stop()
        viewer.wait_for_end()
        with self.assertRaises(OSError):
            socket.create_connection((ADDRESS, port))
        self.server.start()
        self.assertEqual(self.server.port, port)
        again = self.viewer()
        self.server.say("#channel", "bob", "back")
        again.wait_for_text("back")
        self.server.drop(rudely=True)
        again.wait_for_end()
        third = self.viewer()
        self.server.say("#channel", "bob", "third")
        third.wait_for_text("third")

    def test_many_lines_come_in_one_burst(self):
        viewer = self.viewer()
        self.server.burst("#channel", [(f"writer{number % 100}", f"line {number}") for number in range(10_000)])
        viewer.wait_for_text("line 9999")
        said = [line.rsplit(" ", 1)[1] for line in viewer.lines() if " PRIVMSG #channel :line " in line]
        self.assertEqual(said, [str(number) for number in range(10_000)])

    def test_it_speaks_tls(self):
        with tempfile.TemporaryDirectory() as folder:
            issuer = Issuer(Path(folder), "Test")
            with StreamingServer(certificate=issuer.certificate("localhost")) as server:
                with Person("justinfan1", server.port, issuer.certificate_pem, capabilities=TAGS) as viewer:
                    viewer.join("#channel")
                    server.say("#channel", "bob", "secret")
                    viewer.wait_for_text("secret")


if __name__ == "__main__":
    unittest.main(verbosity=2)
