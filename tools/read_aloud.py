#!/usr/bin/env python3
"""Reads a conversation aloud, for ./run: whole programs in Wine, from their setup to the last word. Or starts them and
leaves the rest to the user. Or shows the maker's web site on this machine."""

import argparse
import contextlib
import os
import re
import signal
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from desk.lock import InUse, alone_with  # noqa: E402
from desk.prefix import Prefix, ROOT  # noqa: E402
from desk.reading import Desk, Failed, LiveReading, Options, Reading, own_desk  # noqa: E402
from desk.screen import Screen  # noqa: E402
from desk.waiting import TimedOut, wait_for  # noqa: E402
from desk.web_server import ServerFailed, WebServer  # noqa: E402

DEMO = ROOT / "companions" / "messenger" / "demo"
CHARACTERS = len(list((ROOT / "assets" / "characters" / "cast").glob("[!_]*.py")))  # that the build makes


def number(lowest, highest, kind):
    def parse(text):
        try:
            value = kind(text)
        except ValueError:
            raise argparse.ArgumentTypeError(f"{text!r} is not a number") from None
        if not lowest <= value <= highest:
            raise argparse.ArgumentTypeError(f"{text} is not between {lowest} and {highest}")
        return value
    return parse


def options_of(arguments):
    parser = argparse.ArgumentParser(
        prog="./run", allow_abbrev=False,
        description="Builds Murmelix and its neighbours and has characters read a conversation aloud. Writes "
                    "transcript.txt, speech.wav and stage.png; the exit status is 0 only if everything was read.")
    parser.add_argument("--headless", action="store_true",
                        help="on a screen that nobody sees; chosen by itself where there is no display")
    parser.add_argument("--conversation", metavar="FILE", type=Path,
                        help="a chat log (default: the conversation that comes with the repository)")
    parser.add_argument("--channel", metavar="ADDRESS",
                        help="read a live chat instead, until Ctrl-C or for --messages N: irc://server:port/channel, "
                             "ircs://server/channel or twitch:channel")
    parser.add_argument("--nick", metavar="NAME", default="",
                        help="the name to be known by there (default: one made up)")
    parser.add_argument("--participants", metavar="N", type=number(1, 100, int), default=CHARACTERS,
                        help="keep the N most frequent writers (default %(default)s: as many as there are characters)")
    parser.add_argument("--messages", metavar="N", type=number(1, 10**9, int), default=0,
                        help="end after N messages (default: all)")
    parser.add_argument("--speed", metavar="X", type=number(0.01, 1000, float), default=1.0,
                        help="the conversation runs X times as fast (default 1); headless the characters do so too, "
                             "while speech.wav keeps their natural pace")
    parser.add_argument("--out", metavar="DIR", type=Path, default=ROOT / "build" / "run",
                        help="where to write (default build/run)")
    parser.add_argument("--by-hand", action="store_true",
                        help="only start the Messenger client and Murmelix, on your display, and leave the rest to you; "
                             "accounts and settings are there again the next time")
    parser.add_argument("--site", action="store_true",
                        help="alone: show the maker's web site on this machine, to this machine, until Ctrl-C; with others "
                             "of these: have the programs open and fetch its pages meanwhile")
    parser.add_argument("--prefix", default="wine-by-hand", help=argparse.SUPPRESS)
    parser.add_argument("--check", action="store_true", help=argparse.SUPPRESS)
    chosen = parser.parse_args(arguments)
    chosen.nothing_but_site = [argument for argument in arguments if argument != "--check"] == ["--site"]
    conversation = chosen.conversation
    if conversation is None:
        conversation = next(iter(sorted(DEMO.glob("*.txt"))), None)
        if conversation is None:
            parser.error(f"there is no conversation in {DEMO}: name one with --conversation")
    if not conversation.is_file():
        parser.error(f"--conversation: there is no file {conversation}")
    try:
        with open(conversation, "rb"):
            pass
        chosen.out.mkdir(parents=True, exist_ok=True)
    except OSError as error:
        parser.error(f"{error.filename}: {error.strerror}")
    if not os.access(chosen.out, os.W_OK | os.X_OK):
        parser.error(f"--out: {chosen.out} cannot be written")
    headless = chosen.headless or not os.environ.get("DISPLAY")
    if chosen.by_hand and headless:
        parser.error("--by-hand needs a display: run it in a desktop session, without --headless")
    if chosen.channel is not None and not re.match(r"(ircs?://|twitch:)[^\s/]", chosen.channel, re.IGNORECASE):
        parser.error("--channel: an address is irc://server:port/channel, ircs://server/channel or twitch:channel, not "
                     f"{chosen.channel!r}")
    return chosen, Options(conversation.resolve(), chosen.participants, chosen.messages, chosen.speed,
                           chosen.out.resolve(), headless, channel=chosen.channel or "", nick=chosen.nick)


def clear(output):
    """Removes what an earlier reading has left, so that nothing old is taken for new."""
    logs = output / "logs"
    for file in [output / "transcript.txt", output / "speech.wav", output / "stage.png",
                 *(logs.glob("*") if logs.is_dir() else [])]:
        if file.is_file():
            file.unlink()


def announced(server):
    print(f"== The web site is at {server.address}", flush=True)


def show_site():
    with WebServer() as server:
        announced(server)
        print("== until Ctrl-C here", flush=True)
        while True:
            time.sleep(0.5)
            server.check()


@contextlib.contextmanager
def site_for(desk, wanted):
    """Where it is wanted, the programs on the desk have the maker's web site on this machine."""
    if not wanted:
        yield
        return
    with WebServer() as server, desk.using_site(server.host):
        announced(server)
        yield


def read_aloud(options, with_site):
    clear(options.output)
    print("== Setting the neighbours up", flush=True)
    screen = None if options.headless else Screen(os.environ["DISPLAY"])
    with own_desk("run", options.output, screen) as desk, \
            open(options.output / "transcript.txt", "w", encoding="utf-8") as transcript:

        def tell(line):
            print(line, flush=True)
            transcript.write(line + "\n")
            transcript.flush()

        try:
            desk.set_up_all()
            with site_for(desk, with_site):
                read_to_the_end(desk, options, tell)
        except (Failed, TimedOut):
            desk.screen.picture(options.output / "logs" / "failed.png")
            raise


def read_to_the_end(desk, options, tell):
    print(f"== Reading {options.channel or options.conversation.name}", flush=True)
    reading = (LiveReading if options.channel else Reading)(desk, options, tell)
    reading.start_neighbours()
    reading.start_program()
    reading.start_reading()
    reading.follow()
    reading.finish()
    print(f"== All {len(reading.messages())} messages were read; see {options.output}", flush=True)
    if not options.headless:
        print("== Murmelix stays open until you leave it: Murmelix, Exit Murmelix, or Ctrl-C here", flush=True)
        desk.programs["Murmelix.exe"].wait()


def start_by_hand(options, name, with_site):
    """Both neighbours and the program, until the user has ended the program and the Messenger client."""
    directory = ROOT / "build" / name
    first = not directory.exists()
    print("== Setting the neighbours up", flush=True)
    with Desk(Screen(os.environ["DISPLAY"]), Prefix(directory, keep=True), options.output) as desk:
        desk.set_up_all()
        with site_for(desk, with_site):
            client = desk.program_directory / "MessengerClient.exe"
            # A new user signs in; later the client does what its user has chosen there.
            desk.start("MessengerClient.exe", client, *(["/signedout"] if first else []),
                       directory=desk.program_directory)
            desk.screen.wait_for_window("Messenger$")
            desk.start("Murmelix.exe", desk.program_directory / "Murmelix.exe", directory=desk.program_directory)
            print("== Messenger and Murmelix run until you leave them: File, Exit and Murmelix, Exit Murmelix, or Ctrl-C "
                  "here", flush=True)
            wait_for("the user",
                     lambda: not any(desk.running(name) for name in ("MessengerClient.exe", "Murmelix.exe")),
                     float("inf"), 0.5)


@contextlib.contextmanager
def alone(chosen, options):
    """Keeps other readings from what this one uses: the folder it writes to, the display whose windows it finds by their
    titles, the accounts of --by-hand."""
    with contextlib.ExitStack() as held:
        if chosen.by_hand:
            held.enter_context(alone_with(f"prefix {chosen.prefix}", "it runs by hand already, with these accounts"))
        held.enter_context(alone_with(
            f"output {options.output}",
            f"another reading writes to {options.output}: wait for its end, or name another folder with --out"))
        if not options.headless:
            held.enter_context(alone_with(
                f"display {os.environ['DISPLAY']}",
                f"another one runs on the display {os.environ['DISPLAY']}: leave it, or read with --headless"))
        yield


def interrupted(*_):
    raise KeyboardInterrupt


def main():
    chosen, options = options_of(sys.argv[1:])
    if chosen.check:
        return 0
    # A signal ends the reading, and what was started for it, also where a shell in the background has SIGINT ignored.
    for number_of_signal in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number_of_signal, interrupted)
    try:
        if chosen.nothing_but_site:
            show_site()
        with alone(chosen, options):
            if chosen.by_hand:
                start_by_hand(options, chosen.prefix, chosen.site)
            else:
                read_aloud(options, chosen.site)
        return 0
    except KeyboardInterrupt:
        has_no_end = chosen.by_hand or chosen.nothing_but_site or options.channel and not options.messages
        print("\n== Ended" if has_no_end else "\n== Ended before everything was read", file=sys.stderr)
        return 130
    except (Failed, InUse, ServerFailed, TimedOut, RuntimeError, OSError, ValueError) as error:
        print(f"./run: {error}", file=sys.stderr)
        return 1


if __name__ == "__main__":
    sys.exit(main())
