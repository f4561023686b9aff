"""Waiting for things, never for ever."""

import time


class TimedOut(Exception):
    """Something did not happen in time; the message says what."""


def wait_for(what, condition, seconds, interval=0.02):
    """The first true result of `condition`, looked at every `interval` seconds."""
    deadline = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() >= deadline:
            raise TimedOut(f"{what}: not within {seconds:g} s")
        time.sleep(interval)
