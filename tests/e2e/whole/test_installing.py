"""The setup on a machine of its own: installed, upgraded, used and removed; what it leaves is looked for file by file and key
by key."""

import fcntl
import re
import shutil
import subprocess
import sys
import zipfile
from pathlib import Path

from case import MAIN_WINDOW, PATIENCE_SECONDS, PROGRAM_DIRECTORY, ROOT, VERSION, WholeProgramTest, main, thorough

OLDER = "0.0.9"
DATE = 1_700_000_000
UNINSTALL_KEY = r"Software\Microsoft\Windows\CurrentVersion\Uninstall\Murmelix"
RUN_KEY = r"Software\Microsoft\Windows\CurrentVersion\Run"
SETTINGS = ("Software\\Murmelix", "Software\\MurmelixWindows", "Software\\MurmelixUpdater",
            "Software\\Murmelix AgentServer", "Software\\MessengerClient")
CONVERSATION = "[09:00] <Ann> hello\n[09:01] <Bob> hello Ann\n[09:02] <Ann> all is installed\n"


def make_older(folder):
    """What an older version has brought: one program and one character are others, a sound and a character are no more."""
    shutil.copytree(PROGRAM_DIRECTORY, folder)
    characters = sorted((folder / "msagent" / "chars").glob("*.acs"))
    with open(characters[0], "ab") as changed:
        changed.write(b"older")
    shutil.copy(characters[1], folder / "msagent" / "chars" / "Gone.acs")
    shutil.copy(sorted((folder / "sounds" / "default").glob("*.wav"))[0], folder / "sounds" / "default" / "gone.wav")
    with open(folder / "updater.exe", "ab") as changed:
        changed.write(b"older")


def setups():
    """The setups of an older version and of this one, packed by whoever comes first; quickly, not small."""
    folder = ROOT / "build" / "e2e-setups"
    folder.mkdir(parents=True, exist_ok=True)
    stamp = folder / "made-of"
    sources = [*(ROOT / "packaging").rglob("*"), ROOT / "CMakeLists.txt", *PROGRAM_DIRECTORY.rglob("*")]
    made_of = "\n".join(f"{file} {file.stat().st_size} {file.stat().st_mtime_ns}" for file in sorted(sources) if file.is_file())
    files = [folder / f"MurmelixSetup-{version}-win64.exe" for version in (OLDER, VERSION)]
    with open(folder / "lock", "w", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if not stamp.exists() or stamp.read_text("utf-8") != made_of:
            stamp.unlink(missing_ok=True)
            older = folder / "older"
            shutil.rmtree(older, ignore_errors=True)
            make_older(older)
            for version, staged in ((OLDER, older), (VERSION, PROGRAM_DIRECTORY)):
                subprocess.run([sys.executable, "-B", ROOT / "packaging" / "pack.py", "--staged", staged, "--bits", "64",
                                "--date", str(DATE), "--out", folder, "--version", version, "--compression", "zlib",
                                "--only", "setup"], check=True, timeout=300)
            shutil.rmtree(older)
            stamp.write_text(made_of, "utf-8")
    return files


def contents(folder):
    """The bytes of each file below a folder, by its relative name."""
    return {path.relative_to(folder).as_posix(): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


class Machine(WholeProgramTest):
    """A bare one, whose files and keys are compared."""

    SET_UP = False
    # What Wine itself notes as its programs start: sessions, fonts, and which devices it has found.
    NOISE = (r"HKCU\\Software\\Wine", r"HKLM\\Software\\Wine", r"HKCU\\Volatile Environment", r"HKCU\\Control Panel",
             r"HKLM\\System\\", r"HKLM\\Software\\Microsoft\\Windows NT\\CurrentVersion\\(Fonts|NetworkCards)",
             r"HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\")

    def snapshot(self):
        """What there is. Wine writes its registry to the disk when the last program has ended."""
        self.desk.prefix.end()
        drive = self.desk.prefix.directory / "drive_c"
        files = {path.relative_to(drive).as_posix() for path in drive.rglob("*") if not path.is_dir() or path.is_symlink()}
        folders = {path.relative_to(drive).as_posix() + "/" for path in drive.rglob("*") if path.is_dir()}
        keys = {}
        for hive, name in (("HKLM", "system.reg"), ("HKCU", "user.reg")):
            key = None
            for line in (self.desk.prefix.directory / name).read_text("utf-8", "replace").splitlines():
                if line.startswith("["):
                    key = hive + "\\" + line[1:line.rindex("]")].replace("\\\\", "\\")
                    keys[key] = []
                elif key and line and not line.startswith("#"):
                    keys[key].append(line)
        return files | folders, keys

    def compare(self, before, after):
        """Files and keys that are different now, but for temporary files, and what Wine notes by itself."""
        files = sorted(name for name in before[0] ^ after[0] if not re.search(r"/(Temp|TEMP)/|^windows/temp/", name))
        keys = sorted(key for key in before[1].keys() | after[1].keys() if before[1].get(key) != after[1].get(key))
        return files, [key for key in keys if not any(re.match(noise, key) for noise in self.NOISE)]


class Installing(Machine):
    def setUp(self):
        super().setUp()
        self.older, self.newer = setups()
        self.users = next(path for path in (self.desk.prefix.directory / "drive_c" / "users").iterdir()
                          if path.name != "Public")
        self.installed = self.users / "AppData" / "Local" / "Programs" / "Murmelix"
        self.menu = self.users / "AppData" / "Roaming" / "Microsoft" / "Windows" / "Start Menu" / "Programs" / "Murmelix"

    # Programs.

    def set_up(self, setup, *switches, status=0):
        ended, printed = self.desk.run("setup", setup, "/S", *switches)
        self.assertEqual(ended, status, printed)

    def remove(self, *switches):
        """An uninstaller goes on as a copy of itself, lest it stands in its own way."""
        self.desk.run("uninstall", self.installed / "Uninstall.exe", "/S", *switches)
        self.eventually("the end of the uninstallation", lambda: not (self.installed / "Uninstall.exe").exists() and
                        not self.copies_of_uninstaller())

    def copies_of_uninstaller(self):
        """Processes of this prefix that are an uninstaller."""
        mark = f"WINEPREFIX={self.desk.prefix.directory}".encode()
        found = []
        for process in Path("/proc").iterdir():
            try:
                if re.search(rb"\\(Un|Uninstall|Un_[A-Z])\.exe", (process / "cmdline").read_bytes()) and \
                        mark in (process / "environ").read_bytes().split(b"\0"):
                    found.append(process.name)
            except OSError:
                pass  # another user's, or one that has ended meanwhile
        return found

    def registered(self, key, value):
        status, printed = self.desk.run("query", "reg.exe", "query", rf"HKCU\{key}", "/v", value)
        return printed.split("REG_SZ", 1)[1].strip() if status == 0 else None

    def use_installed(self):
        """The programs are those of the setup from now on."""
        self.desk.program_directory = self.installed

    def test_what_is_installed_upgraded_used_and_removed(self):
        before = self.snapshot()
        self.set_up(self.older)
        self.assertEqual(self.registered(UNINSTALL_KEY, "DisplayVersion"), OLDER)
        self.assertIsNone(self.registered(RUN_KEY, "Murmelix"))
        server = self.desk.prefix.windows / "msagent"
        self.assertTrue((server / "chars" / "Gone.acs").is_file())
        # A newer one takes its place while all of its programs run.
        self.use_installed()
        (self.installed / "CharPics" / "Fetched.gif").write_bytes(b"GIF89a")
        self.open_program(self.conversation(CONVERSATION), participants=2)
        self.assert_running("Murmelix.exe")
        self.set_up(self.newer, "/logon=1")
        for name in ("Murmelix.exe", "MessengerClient.exe", "AgentServer.exe"):
            self.eventually(f"the end of {name}", lambda: not self.desk.running(name))
            self.desk.programs.pop(name).wait()
        self.reading.log.new()
        self.assertTrue(self.reading.log.of_kind("shutdown"), "the Messenger client was killed, not told to end")
        self.assertEqual(self.registered(UNINSTALL_KEY, "DisplayVersion"), VERSION)
        self.assertRegex(self.registered(RUN_KEY, "Murmelix"), r'^"C:\\users\\.*\\Murmelix\\Murmelix.exe" /Min$')
        self.assert_installed()
        # It reads.
        for log in (self.output / "logs").glob("*.tsv"):
            log.unlink()
        reading = self.start_reading(self.conversation(CONVERSATION), participants=2)
        reading.follow()
        self.assertIn("All Is Installed", self.said("ann@messenger.example"))
        self.check_removal(before)

    def assert_installed(self):
        """Every file of this version and no other one, dated as the release is."""
        found = contents(self.installed)
        found.pop("Uninstall.exe")
        self.assertEqual(found.pop("CharPics/Fetched.gif"), b"GIF89a")
        wanted = contents(PROGRAM_DIRECTORY)
        self.assertEqual(sorted(found), sorted(wanted))
        self.assertEqual([name for name in wanted if found[name] != wanted[name]], [])
        self.assertEqual((self.installed / "Murmelix.exe").stat().st_mtime, DATE)
        self.assertEqual(contents(self.desk.prefix.windows / "msagent"), contents(PROGRAM_DIRECTORY / "msagent"))
        self.assertEqual(sorted(path.name for path in self.menu.iterdir()),
                         ["Messenger Client.lnk", "Murmelix.lnk", "Voices.lnk"])

    def check_removal(self, before):
        own = self.installed / "sounds" / "mine" / "hello.wav"
        own.parent.mkdir()
        own.write_bytes(b"RIFF")
        self.remove()
        files, keys = self.compare(before, self.snapshot())
        below = self.installed.relative_to(self.desk.prefix.directory / "drive_c").as_posix()
        self.assertEqual(files, [below.removesuffix("Murmelix"), f"{below}/", f"{below}/sounds/", f"{below}/sounds/mine/",
                                 f"{below}/sounds/mine/hello.wav"])
        self.assertTrue(keys)
        self.assertEqual([key for key in keys if not key.removeprefix("HKCU\\").startswith(SETTINGS)], [])
        # Again, and this time with the settings; a file of somebody's own goes with whoever has put it there.
        shutil.rmtree(self.installed)
        self.set_up(self.newer, "/messenger=0", "/menu=0")
        self.assertFalse((self.installed / "MessengerClient.exe").exists() or self.menu.exists())
        self.remove("/removesettings")
        self.assertEqual(self.compare(before, self.snapshot()), ([], []))

    @thorough
    def test_characters_that_cannot_be_installed_and_an_agent_of_somebody_else_are_told_apart(self):
        server = self.desk.prefix.windows / "msagent"
        server.write_bytes(b"a file where the folder should be")
        self.set_up(self.newer, status=3)
        self.assertTrue((self.installed / "Murmelix.exe").is_file())
        # Installed again elsewhere, where another Agent is: nothing stays at the first place.
        other = "{11111111-2222-3333-4444-555555555555}"
        key = r"HKLM\Software\Classes"
        self.reg("add", rf"{key}\Agent.Control.2\CLSID", "/ve", "/d", other, "/f")
        self.reg("add", rf"{key}\CLSID\{other}\InprocServer32", "/ve", "/d", r"C:\other\agent.dll", "/f")
        (self.installed / "CharPics" / "Fetched.gif").write_bytes(b"GIF89a")
        self.set_up(self.newer, r"/D=C:\Other\Place")
        self.assertTrue((self.desk.prefix.directory / "drive_c" / "Other" / "Place" / "Murmelix.exe").is_file())
        self.assertFalse(self.installed.exists())
        self.assertTrue(server.is_file())
        status, printed = self.desk.run("query", "reg.exe", "query", rf"{key}\Agent.Control.2\CLSID", "/ve")
        self.assertIn(other, printed)

    # Its windows.

    def page(self, title, text, *keys, name=None):
        """Waits for the page with this text, pictures it, and presses the keys until it is another one."""
        def shown():
            return next((window for window in self.windows() if window.visible and window.text.strip() == title and
                         any(text in part.text for part in window.all() if part.visible)), None)
        window = self.eventually(f"the page {text!r}", shown)
        self.picture_of(window, name) if name else self.screen.picture(self.output / (re.sub(r"\W+", "-", text) + ".png"))

        def left():
            if not shown():
                return True
            windows = self.screen.find(f"^{title} ?$")
            if windows and self.screen.activate(windows[-1]):
                self.screen.key(*keys)
            return not shown()
        self.eventually(f"what comes after {text!r}", left)

    @thorough
    def test_wizard_leads_to_a_running_program_and_back(self):
        setup = self.desk.start("setup", self.newer)
        self.page("Murmelix Setup", f"Welcome to Murmelix {VERSION}", "alt+n", name="setup")
        self.page("Murmelix Setup", "Please review the license", "alt+a")
        self.page("Murmelix Setup", "Choose which features", "alt+n", name="setup-features")
        self.page("Murmelix Setup", "Destination Folder", "alt+i")
        self.page("Murmelix Setup", "Murmelix is installed", "alt+f")
        self.assertEqual(setup.wait(PATIENCE_SECONDS), 0)
        self.eventually("the main window", lambda: self.screen.find(MAIN_WINDOW))
        self.refuse_to_close()
        self.desk.start("uninstall", self.installed / "Uninstall.exe")
        self.page("Murmelix Uninstall", "Remove Murmelix from your computer", "alt+n")
        self.page("Murmelix Uninstall", "Your settings are kept", "alt+u")
        self.assertIn("Murmelix.exe", self.message_box("Murmelix Uninstall"))
        self.answer("Murmelix Uninstall")
        self.eventually("the end of the uninstallation", lambda: not self.installed.exists())
        self.assertEqual(self.screen.find(MAIN_WINDOW), [])

    def refuse_to_close(self):
        """Who does not want the running program to be closed has it as it was."""
        setup = self.desk.start("again", self.newer)
        for text, key in (("Welcome", "alt+n"), ("Please review", "alt+a"), ("Choose which", "alt+n"), ("Destination", "alt+i")):
            self.page("Murmelix Setup", text, key)
        self.assertIn("Murmelix.exe", self.message_box("Murmelix Setup"))
        self.answer("Murmelix Setup", "Escape")
        self.page("Murmelix Setup", "Installation Aborted", "Escape")
        self.assertEqual(setup.wait(PATIENCE_SECONDS), 2)
        self.assertTrue(self.screen.find(MAIN_WINDOW))


class Portable(Machine):
    @thorough
    def test_unpacked_folder_is_started_and_writes_settings_alone(self):
        subprocess.run([sys.executable, "-B", ROOT / "packaging" / "pack.py", "--staged", PROGRAM_DIRECTORY, "--bits", "64",
                        "--date", str(DATE), "--out", self.output / "packed", "--only", "zip"], check=True, timeout=300,
                       capture_output=True)
        drive = self.desk.prefix.directory / "drive_c"
        with zipfile.ZipFile(self.output / "packed" / f"Murmelix-{VERSION}-win64-portable.zip") as archive:
            archive.extractall(drive)
        self.desk.program_directory = drive / "Murmelix"
        self.assertIn(b"MSAGENT.exe /uninstall\r\n", (drive / "Murmelix" / "READ ME.txt").read_bytes())
        # What a start on a bare machine offers, and the Messenger does by itself.
        self.desk.set_up_all()
        before = self.snapshot()
        reading = self.start_reading(self.conversation(CONVERSATION), participants=2)
        reading.follow()
        self.assertIn("All Is Installed", self.said("ann@messenger.example"))
        files, keys = self.compare(before, self.snapshot())
        self.assertEqual(files, [])
        self.assertTrue(keys)
        self.assertEqual([key for key in keys if not key.removeprefix("HKCU\\").startswith(SETTINGS)], [])


if __name__ == "__main__":
    main()
