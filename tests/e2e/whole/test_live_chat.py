"""Live chat from real servers and from one that speaks the streaming chat's dialect, read aloud by the whole programs."""

import tempfile
from pathlib import Path

from case import WholeProgramTest, main, thorough, windows_path

from desk.certificates import Issuer, trust
from desk.chat_servers import InspIrcd, NgIrcd, Person, StreamingServer
from desk.reading import LiveReading, Options

NETWORK = "MurmelixNet"


class LiveChat(WholeProgramTest):
    def open(self, address, **options):
        """The client in the channel, the program and the reading of the channel begun."""
        self.reading = LiveReading(self.desk, Options(Path(), output=self.output, channel=address, nick="mia",
                                                      stage_speed=10, **options))
        self.reading.start_neighbours()
        self.reading.start_program()
        self.reading.start_reading()

    def channel(self, server, name="room"):
        return f"irc://127.0.0.1:{server.port}/{name}"

    def person(self, server, nick):
        person = self.enterContext(Person(nick, server.port))
        person.join("#room")
        return person

    def spoken(self, words):
        """Who speaks them, once they are spoken."""
        def found():
            return next((act for act in self.acts(moment="end", what="Speak") if words.lower() in act.of.lower()), None)
        act = self.eventually(f"{words!r} to be spoken", found)
        self.assertEqual(act.outcome, "complete")
        return act.key

    def events(self):
        self.reading.log.new()
        return self.reading.log.events

    def window_of(self, title):
        return self.eventually(title, lambda: (self.screen.find(title) or [None])[-1])

    def test_a_channel_is_read_aloud_from_end_to_end(self):
        with InspIrcd() as server:
            ann, bob = self.person(server, "Ann"), self.person(server, "Bob")
            self.open(self.channel(server))
            ann.say("#room", "good morning everybody")
            self.assertEqual(self.spoken("good morning everybody"), f"Ann@{NETWORK}")
            bob.act("#room", "waves to all")
            self.assertEqual(self.spoken("waves to all"), f"Bob@{NETWORK}")
            ann.say("#room", "\x0304red\x03 and \x02bold\x02 words")
            self.assertEqual(self.spoken("red and bold words"), f"Ann@{NETWORK}")
            self.screen.picture(self.output / "channel.png")
            # What the user types reaches the others, and is told as the user's own.
            window = self.window_of("^#room - Conversation$")
            self.eventually("the typing", lambda: self.screen.type_into(window, *"hello", "Return"))
            ann.wait_for_text("hello", "#room")
            self.eventually("the own line", lambda: [event for event in self.events()
                                                     if (event.kind, event.signin, event.text)
                                                     == ("message", f"mia@{NETWORK}", "hello")])

    def test_an_encrypted_channel_is_read_where_the_issuer_is_known(self):
        issuer = Issuer(Path(self.enterContext(tempfile.TemporaryDirectory())), "Murmelix Test Issuer")
        with NgIrcd(issuer.certificate("127.0.0.1")) as server:
            address = f"ircs://127.0.0.1:{server.tls_port}/room"
            self.reading = LiveReading(self.desk, Options(Path(), output=self.output, channel=address, nick="mia"))
            with self.assertRaisesRegex(Exception, "issued by somebody whom this computer does not know"):
                self.reading.start_neighbours()
            for name in ("MessengerClient.exe", "AgentServer.exe"):
                self.desk.programs[name].kill()
                self.desk.programs[name].wait()
            self.desk.prefix.end()
            self.reading.log.path.unlink()
            self.reading.transcript.path.unlink()
            trust(self.desk, issuer)
            ann = self.person(server, "Ann")
            self.open(address)
            ann.say("#room", "nobody listens in")
            self.assertEqual(self.spoken("nobody listens in"), f"Ann@{NETWORK}")

    @thorough
    def test_seats_change_before_the_line(self):
        with InspIrcd() as server:
            people = [self.person(server, f"Guest{number}") for number in range(1, 8)]
            self.open(self.channel(server))
            lines = ["apples are red", "bananas bend", "cherries have stones", "dates come dried", "eggs break",
                     "figs grow on trees", "grapes make wine"]
            for person, line in zip(people, lines):
                person.say("#room", line)
                self.assertEqual(self.spoken(line), f"{person.nick}@{NETWORK}")
            # There are as many seats as characters, six at most.
            seats = min(6, len(list((self.desk.prefix.windows / "msagent" / "chars").glob("*.acs"))))
            order = [(event.kind, event.signin) for event in self.events() if event.kind in ("join", "leave", "message")]
            self.assertEqual(order[-3:], [("leave", f"Guest{7 - seats}@{NETWORK}"), ("join", f"Guest7@{NETWORK}"),
                                          ("message", f"Guest7@{NETWORK}")])

    def streams_come_from(self, server):
        self.reg("add", r"HKCU\Software\MessengerClient", "/v", "StreamingServer", "/d",
                 f"irc://127.0.0.1:{server.port}", "/f")

    @thorough
    def test_who_knows_a_channels_name_signs_in_and_hears_it(self):
        with StreamingServer() as server:
            self.streams_come_from(server)
            self.reading = LiveReading(self.desk, Options(Path(), output=self.output, stage_speed=10))
            self.reading.start_character_server()
            self.desk.start("MessengerClient.exe", self.desk.program_directory / "MessengerClient.exe", "/signedout", "/log",
                            windows_path(self.reading.log.path), "/left", 420, "/top", 330)
            messenger = self.window_of("^Messenger$")
            # The kind of account, the channel, and the button that Enter presses.
            self.eventually("the keyboard", lambda: self.screen.type_into(messenger, "alt+k", "End", "Tab", *"room", "Return"))
            server.wait_for_viewers("#room")
            self.window_of("^#room - Conversation$")
            self.reading.start_program()
            self.reading.start_reading()
            server.say("#room", "ann", "hello from a stream", display="Ann")
            self.assertEqual(self.spoken("hello from a stream"), f"{server.user_id('ann')}@twitch")

    @thorough
    def test_a_deleted_line_is_not_spoken(self):
        with StreamingServer() as server:
            self.streams_come_from(server)
            self.open("twitch:room")
            server.wait_for_viewers("#room")
            server.say("#room", "ann", "a long first line that takes its time to be spoken by whoever speaks it here")
            nasty = server.say("#room", "bob", "something nasty that nobody wants to hear")
            server.say("#room", "cid", "and something nice")
            server.clear_message("#room", nasty, "bob", "something nasty that nobody wants to hear")
            self.assertEqual(self.spoken("something nice"), f"{server.user_id('cid')}@twitch")
            self.assertEqual([act.of for act in self.acts(moment="call", what="Speak") if "nasty" in act.of.lower()], [])
            self.assertEqual(self.spoken("a long first line"), f"{server.user_id('ann')}@twitch")

    @thorough
    def test_a_server_that_goes_and_comes_back_is_found_again(self):
        with NgIrcd() as server:
            with Person("Ann", server.port) as ann:
                ann.join("#room")
                self.open(self.channel(server))
                ann.say("#room", "before the end")
                self.spoken("before the end")
                server.stop()
                ann.wait_for_end()
            server.start()
            ann = self.person(server, "Ann")
            ann.wait_for_line("mia's return", lambda line: line.startswith(":mia!") and " JOIN " in line)
            ann.say("#room", "after the end")
            self.assertEqual(self.spoken("after the end"), f"Ann@{NETWORK}")
            windows = [event for event in self.events() if event.kind == "window"]
            self.assertEqual([event.text for event in windows], ["opened"], "it is the same window")


if __name__ == "__main__":
    main()
