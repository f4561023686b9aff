#!/usr/bin/env python3
"""Draws one character: build_character.py NAME DIRECTORY RSVG-CONVERT writes DIRECTORY/NAME.json, the manifest that
acsbuild reads, and the pictures that it names. Pictures are named by their content: what has not changed is not drawn
again."""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import subprocess
import sys

from cast import CAST
from choreography import STATES, animations, mouthPose
from figure import MOUTHS, REST, SIZE


class Drawings:
    def __init__(self, figure, directory, converter):
        self.figure, self.directory, self.converter = figure, directory, converter
        self.wanted, self.images = {}, {}

    def file(self, pose):
        svg = self.figure.svg(pose)
        name = hashlib.sha256(svg.encode()).hexdigest()[:16]
        self.wanted[name] = svg
        return name

    def whole(self, pose):
        name = self.file(pose)
        self.images[name] = {"file": f"{name}.png"}
        return name

    def part(self, pose, box):
        name = self.file(pose)
        identifier = f"{name}:{box[0]},{box[1]},{box[2]},{box[3]}"
        self.images[identifier] = {"file": f"{name}.png", "crop": box}
        return identifier

    def draw(self):
        self.directory.mkdir(parents=True, exist_ok=True)
        missing = [name for name in self.wanted if not (self.directory / f"{name}.png").exists()]
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count() or 1) as pool:
            list(pool.map(self.drawOne, missing))
        for old in self.directory.glob("*.png"):
            if old.stem not in self.wanted:
                old.unlink()

    def drawOne(self, name):
        unfinished = self.directory / f"{name}.part"
        subprocess.run([self.converter, "-o", str(unfinished)], input=self.wanted[name].encode(), check=True)
        unfinished.rename(self.directory / f"{name}.png")


def mouthBox(figure):
    """The rectangle in which every shape of the mouth fits, on the resting head."""
    x, y = figure.mouth_at
    wide, deep = figure.mouth_size
    corner = y - REST["mc"] * wide * 0.16
    left, top, bottom = int(x - wide - 3), int(corner - 4), int(corner + (wide * 0.4 + deep * 1.55) * 0.75 + 3)
    return [left, top, int(x + wide + 4) - left, bottom - top]


def manifest(name, figure, drawings):
    box = mouthBox(figure)
    described = []
    for animation in animations():
        frames = []
        for frame, leave in zip(animation.frames, animation.exits()):
            pose = frame["pose"]
            entry = {"duration": frame["duration"]}
            if pose["rise"] > 0 or pose["hole"] > 0:
                entry["images"] = [{"image": drawings.whole(pose)}]
            if leave is not None and animation.transition == "exits":
                entry["exit"] = leave
            if frame["branches"]:
                entry["branches"] = [{"to": to, "percent": percent} for to, percent in frame["branches"]]
            speaks = animation.mouths and (animation.transition != "returns" or frame is animation.frames[-1])
            if speaks and pose["tilt"] == 0 and pose["hx"] == 0 and pose["hy"] == 0:
                entry["mouths"] = {shape: {"image": drawings.part(mouthPose(pose, shape), box), "x": box[0],
                                           "y": box[1]}
                                   for shape in MOUTHS}
            frames.append(entry)
        entry = {"name": animation.name, "transition": animation.transition, "frames": frames}
        if animation.returns:
            entry["return"] = animation.returns
        described.append(entry)
    return {
        "names": [{"language": 0x0409, "name": name, "description": figure.description, "extra": ""}],
        "guid": figure.guid, "width": SIZE, "height": SIZE, "transparent": "#FF00FF",
        "voice": {"language": 0x0409, **figure.voice},
        "balloon": {"lines": 4, "charactersPerLine": 32, "text": "#000000", "font": "Tahoma", "height": -13,
                    **figure.balloon},
        "states": STATES, "images": drawings.images, "animations": described,
    }


def main(arguments):
    if len(arguments) != 4 or arguments[1] not in CAST:
        sys.exit(f"usage: build_character.py {'|'.join(CAST)} DIRECTORY RSVG-CONVERT")
    name, directory = arguments[1], pathlib.Path(arguments[2])
    figure = CAST[name]()
    drawings = Drawings(figure, directory, arguments[3])
    described = manifest(name, figure, drawings)
    drawings.draw()
    (directory / f"{name}.json").write_text(json.dumps(described, indent=1) + "\n")


if __name__ == "__main__":
    main(sys.argv)
