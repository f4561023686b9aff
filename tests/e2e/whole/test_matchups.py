"""Matchups: contacts dragged onto characters and back, found again after a restart, and what ends it all in between."""

from case import ROOT, main, thorough
from matchups import ANN, BOB, DOWNLOAD, MATCHUPS, OPEN, MatchupTest
from publisher import Publisher
from shell import SHOW_OPTIONS, START_SELECTED, STOP, YOU

from desk.web_server import WebServer


class Matchups(MatchupTest):
    def test_dragged_contact_has_its_character_after_a_restart_and_can_be_taken_back(self):
        self.start()
        first_free = self.read(ANN)
        self.open_matchups()
        self.assertFalse(self.main().enabled)
        self.double_click_icon()
        self.assertTrue(self.shown())
        last = list(self.panels())[-1]
        self.assertNotEqual(last, first_free)
        self.drag(self.contact_row(0), self.list_of(last), lambda: self.stored() == {ANN: last})
        self.picture("matched")

        # Neither the close box nor Escape leaves it.
        self.click_close_box(self.window(MATCHUPS))
        self.screen.key("Escape")
        self.eventually("how to leave", lambda: self.control(
            "Press Done to close this window. Every change is stored already.", self.window(MATCHUPS)))
        self.leave_matchups()
        self.end_program()

        self.start_program()
        self.assertEqual(self.read(ANN), last)
        self.open_matchups()
        self.drag(self.first_row_of(last), self.contact_row(5), lambda: self.stored() == {})
        self.leave_matchups()
        self.assertEqual(self.read(ANN), first_free)

    def test_keys_do_what_dragging_does(self):
        self.start()
        self.open_matchups()
        first = next(iter(self.panels()))
        self.screen.key("ctrl+Down", "ctrl+x")
        for _ in range(6):
            self.screen.key("Tab", "ctrl+v")
            if self.stored():
                break
        self.assertEqual(self.stored(), {BOB: first})
        self.screen.key("ctrl+Down", "Delete")
        self.eventually("the end of the matchup", lambda: self.stored() == {})
        self.leave_matchups()

    @thorough
    def test_refused_while_reading(self):
        self.start()
        self.client(f"open {ANN}")
        self.start_reading_first_row()
        self.activate_main()
        self.click(SHOW_OPTIONS)
        self.eventually("the options", self.options_shown)
        self.click(OPEN)
        title = "Can't Add/Edit Matchup While In Conversation!"
        self.assertIn("There is a conversation currently being monitered for reading!", self.message_box(title))
        self.answer(title)
        self.assertIsNone(self.window(MATCHUPS))

    def sign_out(self):
        """Has the client sign out; everything that was open goes."""
        self.client("signout")
        self.eventually("the panel", self.signed_out)
        for title in (MATCHUPS, DOWNLOAD):
            self.eventually(f"the end of {title}", lambda wanted=title: not self.window(wanted))
        self.eventually("the enabled window", lambda: self.main().enabled)

    def sign_in(self):
        self.client(f"signin {YOU} You")
        self.eventually("the list", lambda: not self.signed_out() and self.control(START_SELECTED))

    @thorough
    def test_sign_out_ends_it_in_the_middle_of_everything(self):
        publisher = Publisher(None)  # which accepts, and says nothing
        self.addCleanup(publisher.close)
        pictures = self.own_programs() / "CharPics"
        for file in pictures.glob("*.gif"):
            file.unlink()
        self.reg("add", r"HKLM\Software\Murmelix", "/v", "SiteHost", "/d", publisher.host, "/f")
        self.start()
        self.open_matchups()
        self.sign_out()

        self.sign_in()
        self.open_matchups()
        first = next(iter(self.panels()))
        target = self.list_of(first)
        self.pull(self.contact_row(0))
        self.xdotool("mousemove", *target)
        self.xdotool("mousemove", target[0] + 5, target[1])
        self.picture("dragged")
        self.sign_out()
        self.xdotool("mouseup", 1)
        self.assertEqual(self.stored(), {})

        self.sign_in()
        self.open_matchups()
        left, top, _, bottom = self.panels()[first].place
        self.click_at(left + 60, (top + bottom) // 2)
        self.eventually("the download window", lambda: self.window(DOWNLOAD))
        self.eventually("the request", lambda: publisher.requests)
        self.sign_out()

        # All is as it was: the window opens again, and what is dropped is stored.
        self.sign_in()
        self.open_matchups()
        self.drag(self.contact_row(0), self.list_of(first), lambda: self.stored() == {ANN: first})
        self.leave_matchups()

    def fail_to_fetch(self, character):
        """Clicks the blank picture while nobody serves it."""
        self.click_portrait(character)
        title = "Error Downloading Image!"
        self.assertIn("Error downloading character image from server!", self.message_box(title))
        self.answer(title)
        self.eventually("the end of the download window", lambda: not self.window(DOWNLOAD))
        self.eventually("the enabled window", lambda: self.window(MATCHUPS).enabled)
        self.assertTrue(self.portrait(character).enabled)

    @thorough
    def test_missing_picture_is_fetched_from_the_site_by_a_click_and_there_after_a_restart(self):
        pictures = self.own_programs() / "CharPics"
        with WebServer(ports=()) as server, self.desk.using_site(server.host):
            self.start()
            self.open_matchups()
            blank = [name for name in self.panels() if self.portrait(name).enabled]
            self.assertEqual(set(self.panels()) - set(blank), set(self.panels()) & {file.stem for file in pictures.glob("*.gif")})
            missing = blank[-1]
            cached = pictures / f"{missing}.gif"
            server.close()
            self.fail_to_fetch(missing)
            self.fail_to_fetch(missing)
            self.assertFalse(cached.exists())
            self.leave_matchups()
            self.end_program()

        with WebServer(ports=()) as server, self.desk.using_site(server.host):
            self.start_program()
            self.open_matchups()
            self.click_portrait(missing)
            self.eventually("the picture", lambda: not self.portrait(missing).enabled)
            self.eventually("the enabled window", lambda: self.window(MATCHUPS).enabled)
            self.assertEqual(cached.read_bytes(), (ROOT / "build" / "host" / "assets" / "portraits" /
                                                   f"{missing}.gif").read_bytes())
            self.picture("fetched")
            self.leave_matchups()
            self.end_program()

        self.start_program()  # no site any more
        self.open_matchups()
        self.assertFalse(self.portrait(missing).enabled)
        self.leave_matchups()


if __name__ == "__main__":
    main()
