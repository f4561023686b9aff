"""The setup programs: what they install, what they leave alone, and how they say that something cannot be done."""

import os
import shutil
from unittest import mock

from case import PATIENCE_SECONDS, PROGRAM_DIRECTORY, WholeProgramTest, main, thorough

OTHER = "{11111111-2222-3333-4444-555555555555}"


class Setup(WholeProgramTest):
    SET_UP = False

    def set_up(self, *switches):
        return self.desk.run("MSAGENT.exe", PROGRAM_DIRECTORY / "MSAGENT.exe", "/quiet", *switches)

    def installed(self):
        return self.desk.prefix.windows / "msagent"

    def test_second_setup_finds_everything_there(self):
        status, printed = self.set_up()
        self.assertEqual(status, 0, printed)
        status, printed = self.set_up()
        self.assertEqual(status, 0, printed)
        self.assertIn("AgentServer.exe is there already.", printed)
        self.assertNotIn("is installed.", printed)

    def test_an_agent_of_somebody_else_is_left_alone(self):
        key = r"HKLM\Software\Classes"
        self.reg("add", rf"{key}\Agent.Control.2\CLSID", "/ve", "/d", OTHER, "/f")
        self.reg("add", rf"{key}\CLSID\{OTHER}\InprocServer32", "/ve", "/d", r"C:\other\agent.dll", "/f")
        status, printed = self.set_up()
        self.assertEqual(status, 0, printed)
        self.assertIn(r"Left alone: an Agent is installed on this computer already (C:\other\agent.dll).", printed)
        self.assertFalse((self.installed() / "AgentServer.exe").exists())
        status, printed = self.desk.run("query", "reg.exe", "query", rf"{key}\Agent.Control.2\CLSID", "/ve")
        self.assertIn(OTHER, printed)

    def test_a_character_of_the_same_name_is_left_alone(self):
        characters = self.installed() / "chars"
        characters.mkdir(parents=True)
        bundled = sorted((PROGRAM_DIRECTORY / "msagent" / "chars").glob("*.acs"))
        (characters / bundled[0].name).write_bytes(b"mine")
        status, printed = self.set_up()
        self.assertEqual(status, 0, printed)
        self.assertIn(f"{bundled[0].name} is another file of this name and is left as it is.", printed)
        self.assertEqual((characters / bundled[0].name).read_bytes(), b"mine")
        self.assertEqual((characters / bundled[1].name).read_bytes(), bundled[1].read_bytes())

    def test_what_cannot_be_written_is_said_and_told_by_the_status(self):
        self.installed().write_bytes(b"a file where the folder should be")
        status, printed = self.set_up()
        self.assertEqual(status, 1, printed)
        self.assertIn(r"Failed: C:\windows\msagent cannot be made:", printed)
        self.assertIn("Not everything could be done.", printed)

    def test_removal_takes_away_what_was_installed_and_no_more(self):
        status, printed = self.set_up()
        self.assertEqual(status, 0, printed)
        own = self.installed() / "chars" / "own.acs"
        own.write_bytes(b"mine")
        status, printed = self.set_up("/uninstall")
        self.assertEqual(status, 0, printed)
        self.assertEqual([file.name for file in (self.installed() / "chars").iterdir()], ["own.acs"])
        self.assertFalse((self.installed() / "AgentServer.exe").exists())
        status, _ = self.desk.run("query", "reg.exe", "query", r"HKLM\Software\Classes\Agent.Control.2")
        self.assertNotEqual(status, 0)

    def test_unknown_switches_are_refused(self):
        status, printed = self.set_up("/everything")
        self.assertEqual(status, 2)
        self.assertIn('"/everything" is not understood.', printed)


class Voices(WholeProgramTest):
    SET_UP = False

    def voice_setup(self, *switches):
        return self.desk.start("tv_enua.exe", PROGRAM_DIRECTORY / "tv_enua.exe", *switches)

    def texts(self):
        window = self.window("Voice setup")
        return "\n".join(part.text for part in window.all() if part.visible) if window else ""

    def press(self, *keys):
        self.assertTrue(self.screen.type_into(self.screen.find("^Voice setup$")[-1], *keys))

    def test_a_voice_is_listened_to_and_made_the_default(self):
        voices = self.voice_setup()
        self.eventually("the voices", lambda: "The characters have a voice." in self.texts())
        self.press("alt+v", "Down", "alt+l")
        self.eventually("the end of the sample", lambda: "Woman 1 has spoken." in self.texts())
        self.press("alt+u")
        self.eventually("the choice", lambda: "is spoken by Woman 1 from now on." in self.texts())
        self.picture_of(self.window("Voice setup"), "voices")
        self.press("Escape")
        self.assertEqual(voices.wait(PATIENCE_SECONDS), 0)
        status, printed = self.desk.run("query", "reg.exe", "query", r"HKCU\Software\Murmelix AgentServer\DefaultVoices")
        self.assertEqual(status, 0)
        self.assertRegex(printed, r"1033\s+REG_MULTI_SZ\s+Woman 1")

    @thorough
    def test_without_any_voice_it_is_said_how_to_get_one(self):
        # What starts espeak-ng is there, and espeak-ng is not.
        found = self.output / "programs"
        found.mkdir()
        (found / "timeout").symlink_to(shutil.which("timeout"))
        with mock.patch.dict(os.environ, PATH=str(found)):
            status, printed = self.desk.run("quiet", PROGRAM_DIRECTORY / "tv_enua.exe", "/quiet")
            self.assertEqual(status, 1)
            self.assertIn("there is no voice on this computer. Voices of Windows: not installed; espeak-ng: not installed.",
                          printed)
            voices = self.voice_setup()
        self.eventually("the advice", lambda: "There is no voice on this computer." in self.texts())
        self.assertIn("add a language that has text-to-speech", self.texts())
        self.assertIn("install espeak-ng", self.texts())
        self.screen.picture(self.output / "no-voice.png")
        self.press("Return")
        self.assertEqual(voices.wait(PATIENCE_SECONDS), 1)


if __name__ == "__main__":
    main()
