"""A Wine prefix in which the neighbours are set up already, for the tests to be copied from."""

import fcntl
import shutil
from pathlib import Path

from desk.prefix import ROOT, Prefix
from desk.reading import PROGRAM_DIRECTORY, Desk
from desk.screen import Screen
from desk.waiting import wait_for

_PREFIX = ROOT / "build" / "wine-neighbours"
_BARE = ROOT / "build" / "wine-bare"


def _made_of():
    """Which programs and characters are set up in it, and which prefix it is a copy of."""
    files = [_BARE / ".ready", *PROGRAM_DIRECTORY.glob("*.exe"), *PROGRAM_DIRECTORY.glob("msagent/**/*")]
    return "\n".join(f"{file} {file.stat().st_size} {file.stat().st_mtime_ns}" for file in sorted(files) if file.exists())


def set_up_once():
    """Where it lies. It is made by whoever needs it first, and again where the programs are others."""
    stamp = Path(f"{_PREFIX}.made-of")
    with open(f"{_PREFIX}.making", "w", encoding="ascii") as making:
        def taken():
            try:
                fcntl.flock(making, fcntl.LOCK_EX | fcntl.LOCK_NB)
                return True
            except BlockingIOError:
                return False

        wait_for("the prefix with the neighbours", taken)
        if not stamp.exists() or stamp.read_text("utf-8") != _made_of():
            stamp.unlink(missing_ok=True)
            output = ROOT / "build" / "e2e" / "neighbours"
            shutil.rmtree(output, ignore_errors=True)
            with Screen.own() as screen, Desk(screen, Prefix(_PREFIX), output) as desk:
                desk.set_up_all()
            stamp.write_text(_made_of(), "utf-8")
    return _PREFIX
