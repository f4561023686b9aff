#!/usr/bin/env python3
"""Shows what a character does, as it stands on the screen, from what build_character.py has drawn:

    contact_sheet.py sheet DIRECTORY NAME OUT.png [ANIMATION …]   the frames of each, in rows, on light and dark
    contact_sheet.py cast DIRECTORY NAME OUT.png                  one telling picture of every animation
    contact_sheet.py moving DIRECTORY NAME OUT.gif ANIMATION …    one after another, on light and dark in turn; of
                                                                  Sad:1-2.5 what is between these seconds

DIRECTORY holds NAME.json. With `--zoom N` pictures are N times as large. The file of a moving one is smaller with fewer
pictures (`--tick 12`, in 1/100 s) and with fewer `--colours`. Needs ImageMagick's convert."""

import argparse
import json
import math
import pathlib
import subprocess
import tempfile

GROUNDS = ((0xF4, 0xF3, 0xEE), (0x22, 0x27, 0x31))
TICK = 8  # 1/100 s a picture of a moving one stands


class Film:
    """Composes frames just as the stage does: a pixel less than half covered is not there."""

    def __init__(self, directory, name):
        self.directory = pathlib.Path(directory)
        self.manifest = json.loads((self.directory / f"{name}.json").read_text("utf-8"))
        self.size = self.manifest["width"]
        self.animations = {animation["name"]: animation for animation in self.manifest["animations"]}
        self.sheets, self.spans = {}, {}

    def sheet(self, file):
        if file not in self.sheets:
            png = (self.directory / file).read_bytes()
            width = int.from_bytes(png[16:20], "big")
            raw = subprocess.run(["convert", "png:-", "-depth", "8", "rgba:-"], input=png, stdout=subprocess.PIPE,
                                 check=True).stdout
            self.sheets[file] = (width, raw)
        return self.sheets[file]

    def image(self, name):
        """[(row, column, pixels as RGB)] of what can be seen of an image."""
        if name not in self.spans:
            entry = self.manifest["images"][name]
            width, raw = self.sheet(entry["file"])
            left, top, columns, rows = entry["crop"]
            seen = []
            for row in range(rows):
                begin = ((top + row) * width + left) * 4
                line = raw[begin:begin + columns * 4]
                there = line[3::4].translate(bytes(int(value >= 128) for value in range(256)))
                at = there.find(1)
                while at >= 0:
                    end = there.find(0, at)
                    end = columns if end < 0 else end
                    pixels = bytearray((end - at) * 3)
                    for channel in range(3):
                        pixels[channel::3] = line[at * 4 + channel:end * 4:4]
                    seen.append((row, at, bytes(pixels)))
                    at = there.find(1, end)
            self.spans[name] = seen
        return self.spans[name]

    def picture(self, frame, ground):
        size = self.size
        pixels = bytearray(bytes(ground) * (size * size))
        for shown in reversed(frame.get("images", [])):
            for row, column, line in self.image(shown["image"]):
                y, x = row + shown["y"], column + shown["x"]
                if 0 <= y < size:
                    if x < 0:
                        line, x = line[-x * 3:], 0
                    line = line[:max(0, size - x) * 3]
                    begin = (y * size + x) * 3
                    pixels[begin:begin + len(line)] = line
        return pixels

    def played(self, name):
        animation = self.animations[name]
        return animation["frames"] + (self.animations[animation["return"]]["frames"] if "return" in animation else [])


def joined(rows, size, ground):
    """Pictures in rows as one: width, height, pixels."""
    columns = max(len(row) for row in rows)
    result = bytearray()
    for row in rows:
        blank = bytes(ground) * (size * size)
        for line in range(size):
            for number in range(columns):
                picture = row[number] if number < len(row) else blank
                result += picture[line * size * 3:(line + 1) * size * 3]
    return columns * size, len(rows) * size, bytes(result)


def write(width, height, pixels, out, zoom, *options):
    subprocess.run(["convert", "-size", f"{width}x{height}", "-depth", "8", *options[:2], "rgb:-", "-filter", "point", "-resize",
                    f"{zoom * 100}%", *options[2:], out], input=pixels, check=True)


def telling(frames, rest):
    """The frame whose picture is seen longest, of those that differ from the rest pose."""
    seen = {}
    for frame in frames:
        picture = json.dumps(frame.get("images"))
        if picture != json.dumps(rest.get("images")) and "images" in frame:
            seen.setdefault(picture, [frame, 0])[1] += frame["duration"]
    return max(seen.values(), key=lambda entry: entry[1])[0] if seen else rest


def animated(pixels, size, chosen):
    """Writes a GIF. All its pictures have one palette, so that what does not move is the same in each and costs nothing."""
    raw = ["-size", f"{size}x{size}", "-depth", "8", "rgb:-"]
    picture = size * size * 3
    some = b"".join(pixels[at:at + picture] for at in range(0, len(pixels), picture * 8))
    with tempfile.TemporaryDirectory() as folder:
        palette = f"{folder}/palette.png"
        subprocess.run(["convert", *raw, "+append", "+dither", "-colors", str(chosen.colours), "-unique-colors", palette], input=some, check=True)
        subprocess.run(["convert", "-delay", str(chosen.tick), "-loop", "0", *raw, "-filter", "point", "-resize", f"{chosen.zoom * 100}%",
                        "+dither", "-remap", palette, "-layers", "optimize", chosen.out], input=pixels, check=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kind", choices=("sheet", "cast", "moving"))
    parser.add_argument("directory")
    parser.add_argument("name")
    parser.add_argument("out")
    parser.add_argument("animations", nargs="*")
    parser.add_argument("--zoom", type=int, default=1)
    parser.add_argument("--columns", type=int, default=12)
    parser.add_argument("--tick", type=int, default=TICK)
    parser.add_argument("--colours", type=int, default=24)
    chosen = parser.parse_args()
    film = Film(chosen.directory, chosen.name)
    small = ("+dither", "-colors", "128", "-strip")
    if chosen.kind == "cast":
        frames = [telling(animation["frames"], film.animations["RestPose"]["frames"][0]) for name, animation in film.animations.items()
                  if not name.endswith("Return") and name != "StopListening"]
        rows = [[film.picture(frame, GROUNDS[(first // chosen.columns) % 2]) for frame in frames[first:first + chosen.columns]]
                for first in range(0, len(frames), chosen.columns)]
        write(*joined(rows, film.size, GROUNDS[0]), chosen.out, chosen.zoom, "-strip", "-strip", *small)
    elif chosen.kind == "sheet":
        rows = []
        for number, name in enumerate(chosen.animations or film.animations):
            frames = film.played(name)
            for first in range(0, len(frames), chosen.columns):
                rows.append([film.picture(frame, GROUNDS[number % 2]) for frame in frames[first:first + chosen.columns]])
        write(*joined(rows, film.size, GROUNDS[0]), chosen.out, chosen.zoom, "-strip", "-strip")
    else:
        rest = film.animations["RestPose"]["frames"][0]
        pixels = bytearray()
        for number, asked in enumerate(chosen.animations):
            name, _, part = asked.partition(":")
            first, last = (round(float(second) * 100) for second in part.split("-")) if part else (0, math.inf)
            clock, shown = 0, 0
            for frame in film.played(name) + [{**rest, "duration": 40}]:
                clock += frame["duration"]
                while shown + chosen.tick <= clock:
                    shown += chosen.tick
                    if first < shown <= last:
                        pixels += film.picture(frame, GROUNDS[number % 2])
        animated(bytes(pixels), film.size, chosen)


if __name__ == "__main__":
    main()
