"""The real chat servers that other tests talk to, and the other people on them."""

import faulthandler
import os
import tempfile
import threading
import unittest
from pathlib import Path

from case import WATCHDOG_SECONDS, main, thorough

from desk.certificates import Issuer
from desk.chat_servers import InspIrcd, NgIrcd, Person


def give_up():
    faulthandler.dump_traceback()
    os._exit(1)


class ChatServers(unittest.TestCase):
    def setUp(self):
        watchdog = threading.Timer(WATCHDOG_SECONDS, give_up)
        watchdog.daemon = True
        watchdog.start()
        self.addCleanup(watchdog.cancel)
        self.issuer = Issuer(Path(self.enterContext(tempfile.TemporaryDirectory())), "Murmelix Test Issuer")

    def talk(self, kind):
        with kind(self.issuer.certificate("localhost")) as server:
            ann = self.enterContext(Person("Ann", server.port))
            bob = self.enterContext(Person("Bob", server.tls_port, self.issuer.certificate_pem))
            ann.join("#murmelix")
            bob.join("#murmelix")
            ann.wait_for_line("Bob's coming", lambda line: line.startswith(":Bob!") and " JOIN " in line)
            ann.say("#murmelix", "hello")
            self.assertTrue(bob.wait_for_text("hello", "#murmelix").startswith(":Ann!"))
            bob.act("#murmelix", "waves")
            ann.wait_for_text("\x01ACTION waves\x01", "#murmelix")
            bob.say("Ann", "just us")
            ann.wait_for_text("just us", "Ann")
            bob.rename("Robert")
            ann.wait_for_line("the new name", lambda line: line.startswith(":Bob!") and " NICK " in line)
            bob.part("#murmelix", "enough")
            ann.wait_for_line("the parting", lambda line: line.startswith(":Robert!") and " PART #murmelix" in line)
            bob.quit()
            # The same server, gone and back.
            server.stop()
            ann.wait_for_end()
            server.start()
            with Person("Cid", server.port) as cid:
                cid.join("#murmelix")
                self.assertFalse([line for line in cid.lines() if " 353 " in line and "Ann" in line])
        self.assertFalse(server.folder.exists())

    def test_ngircd_lets_people_talk(self):
        self.talk(NgIrcd)

    @thorough
    def test_inspircd_lets_people_talk(self):
        self.talk(InspIrcd)

    @thorough
    def test_inspircd_knows_what_modern_clients_ask_for(self):
        wanted = ("message-tags", "server-time", "echo-message", "multi-prefix", "away-notify", "account-notify", "extended-join",
                  "userhost-in-names", "chghost", "setname", "batch", "cap-notify")
        with InspIrcd() as server, Person("Ann", server.port, capabilities=wanted) as ann:
            ann.join("#murmelix")
            ann.say("#murmelix", "hello")
            line = ann.wait_for_text("hello", "#murmelix")  # its echo
            self.assertRegex(line, r"^@.*\btime=\d{4}-\d\d-\d\dT")


if __name__ == "__main__":
    main()
