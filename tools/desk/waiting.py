"""Waiting for things, never for ever."""

import time

# A wait ends with what is waited for. This ends one for what never comes, on the slowest and busiest machine.
PATIENCE_SECONDS = 300


class TimedOut(Exception):
    """Something did not happen in time; the message says what."""


def wait_for(what, condition, seconds=PATIENCE_SECONDS, interval=0.02):
    """The first true result of `condition`, looked at every `interval` seconds."""
    deadline = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() >= deadline:
            raise TimedOut(f"{what}: not within {seconds:g} s")
        time.sleep(interval)
