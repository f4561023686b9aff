"""A Wine prefix for one session: copied from the bare one or another, ended and removed afterwards."""

import os
import shutil
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def windows_path(path):
    """The name that programs in Wine have for a file of this machine."""
    return "Z:" + str(Path(path).resolve()).replace("/", "\\")


def _library(command, **environment):
    """Runs a command with the functions of tools/lib.sh; what it prints."""
    answer = subprocess.run(
        ["bash", "-c", f'set -euo pipefail; . "$0/tools/lib.sh"; {command}', str(ROOT)],
        env=dict(os.environ, **environment), stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
    if answer.returncode != 0:
        raise RuntimeError(answer.stderr.strip() or f"{command}: status {answer.returncode}")
    return answer.stdout


class Prefix:
    def __init__(self, directory, keep=False, origin=None):
        """Makes the prefix at `directory`, which lies below build/ of the project, as a copy of the one at `origin` where
        that is given; what was there is removed, but for a prefix to `keep`, whose programs are ended alone."""
        self.directory = Path(directory).resolve()
        if self.directory.exists():
            self._end_server_of(self.directory)
            if not keep:
                shutil.rmtree(self.directory)
        lines = _library('wine_environment; make_prefix; printf "%s\\n" "$WINE" "$WINESERVER" "$WINEPREFIX"',
                         WINEPREFIX=str(self.directory), MURMELIX_ORIGIN=str(origin or "")).splitlines()
        self.wine, self._server = lines[:2]
        if lines[2] != str(self.directory):
            raise RuntimeError(f"{self.directory} is not below {ROOT}/build")

    @staticmethod
    def _end_server_of(directory):
        server = _library('find_wine; printf "%s" "$WINESERVER"')
        subprocess.run([server, "-k"], env=dict(os.environ, WINEPREFIX=str(directory)), stdin=subprocess.DEVNULL,
                       capture_output=True, timeout=20, check=False)

    def environment(self, base):
        result = dict(base, WINEPREFIX=str(self.directory), WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d")
        result.setdefault("WINEDEBUG", "-all")
        return result

    def set_resolution(self, dots_per_inch):
        """Of the screen, for programs that are started in it from now on; none may have been yet."""
        with open(self.directory / "user.reg", "a", encoding="ascii") as registry:
            registry.write(f'\n[Control Panel\\\\Desktop]\n"LogPixels"=dword:{dots_per_inch:08x}\n')

    @property
    def windows(self):
        """The Windows directory, as a directory of this machine."""
        return self.directory / "drive_c" / "windows"

    def end(self):
        """Ends every program in the prefix; returns when they are gone."""
        environment = self.environment(os.environ)
        for argument, seconds in (("-k", 20), ("-w", 20)):
            try:
                subprocess.run([self._server, argument], env=environment, stdin=subprocess.DEVNULL,
                               capture_output=True, timeout=seconds, check=False)
            except subprocess.TimeoutExpired:
                pass

    def remove(self):
        self.end()
        shutil.rmtree(self.directory, ignore_errors=True)
