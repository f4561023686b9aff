"""What only one reading at a time may use."""

import contextlib
import fcntl
import hashlib

from .prefix import ROOT


class InUse(Exception):
    """Another reading has it; the message says what to do."""


@contextlib.contextmanager
def alone_with(what, otherwise):
    """Holds what is named for this process as long as the block lasts, or until it ends in whatever way."""
    folder = ROOT / "build" / "locks"
    folder.mkdir(parents=True, exist_ok=True)
    with open(folder / hashlib.sha256(what.encode("utf-8", "surrogateescape")).hexdigest()[:16], "w") as file:
        try:
            fcntl.flock(file, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            raise InUse(otherwise) from None
        yield
