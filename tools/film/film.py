#!/usr/bin/env python3
"""Films a conversation that is read aloud, for the README: tools/film/film.py [-o docs/reading.gif]

The programs must have been built (`./run` does). Needs ImageMagick.
"""

import argparse
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))

from desk.prefix import ROOT  # noqa: E402
from desk.reading import Options, Reading, own_desk  # noqa: E402

CONVERSATION = """[09:00] <Ann> did you see the lake this morning?
[09:00] <Ann> did you see the lake this morning?
[09:01] <Bob> there was a swan on my boat :)
[09:02] <Carla> lol it waited for breakfast :D
[09:03] <Ann> that is so sad, it got only a biscuit :(
[09:04] <Bob> see you at noon (y)
"""
# Pixels of the screen: the conversation and the characters around it.
LEFT, TOP, WIDTH, HEIGHT = 300, 90, 830, 560
FRAMES_A_SECOND = 4
MOST_SECONDS = 26
SMALLER = 70  # percent
COLOURS = 64
TAIL_SECONDS = 1.5  # after the last word


class Film(Reading):
    """A reading of which pictures are taken as it goes."""

    def __init__(self, desk, options, frames):
        super().__init__(desk, options)
        self._frames, self.count, self._next = frames, 0, None

    def _take_picture(self):
        super()._take_picture()
        if any(act.moment == "start" and act.what == "Speak" for act in self.transcript.acts):
            self.take()

    def take(self):
        now = time.monotonic()
        if (self._next is not None and now < self._next) or self.count >= MOST_SECONDS * FRAMES_A_SECOND:
            return
        self._next = max(now, (self._next or now) + 1 / FRAMES_A_SECOND)
        subprocess.run(["import", "-window", "root", "-crop", f"{WIDTH}x{HEIGHT}+{LEFT}+{TOP}", "+repage",
                        self._frames / f"{self.count:04}.ppm"], env=self.desk.screen.environment(), check=True, timeout=60)
        self.count += 1


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("-o", "--output", type=Path, default=ROOT / "docs" / "reading.gif")
    output = parser.parse_args().output
    with tempfile.TemporaryDirectory() as folder:
        work = Path(folder)
        conversation = work / "conversation.txt"
        conversation.write_text(CONVERSATION, "utf-8")
        with own_desk("film", work) as desk:
            desk.set_up_all()
            film = Film(desk, Options(conversation, participants=3, speed=14, stage_speed=1, output=work), work)
            film.start_neighbours()
            film.start_program()
            film.start_reading()
            for window in (film.window, *desk.screen.find("Messenger$")):
                desk.screen.move(window, 10, 900)  # out of the picture
            film.follow()
            end = time.monotonic() + TAIL_SECONDS
            while time.monotonic() < end:
                film.take()
                time.sleep(0.02)
        subprocess.run(["convert", "-delay", str(round(100 / FRAMES_A_SECOND)), "-loop", "0", f"{work}/*.ppm", "-resize",
                        f"{SMALLER}%", "+dither", "-colors", str(COLOURS), "-layers", "Optimize", output], check=True, timeout=600)
    print(f"{film.count} pictures, {output.stat().st_size // 1024} KB")


if __name__ == "__main__":
    main()
