#!/usr/bin/env python3
"""Draws one character: build_character.py NAME DIRECTORY RSVG-CONVERT writes DIRECTORY/NAME.json, the manifest that
acsbuild reads, and the sheets of pictures that it names. Many pictures stand on a sheet, since starting the converter
takes longer than drawing one of them. Sheets are named by their content: what has not changed is not drawn again."""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import subprocess
import sys

from cast import CAST
from draw import Sketch, num
from features import MOUTHS

SHEET = 8               # pictures in a row, and rows
MARGIN = 24             # pixels around the canvas that a layer may reach into before it is moved to its place


class Sheets:
    """Pictures, collected and then drawn many at once."""

    def __init__(self, defs, directory, converter):
        self.defs, self.directory, self.converter = defs, directory, converter
        self.places = {}    # (drawing, box) -> number of its picture
        self.pictures = []  # drawing, box

    def number(self, drawn, box):
        """The picture of the part of a drawing inside of the box [x, y, width, height]."""
        key = (drawn, tuple(box))
        if key not in self.places:
            self.places[key] = len(self.pictures)
            self.pictures.append(key)
        return self.places[key]

    def draw(self):
        """Draws all; returns of each picture its file and where it stands there."""
        self.directory.mkdir(parents=True, exist_ok=True)
        sheets, placed = {}, []
        for first in range(0, len(self.pictures), SHEET * SHEET):
            batch = self.pictures[first:first + SHEET * SHEET]
            svg, corners = self.sheet(batch)
            name = hashlib.sha256(svg.encode()).hexdigest()[:16]
            sheets[name] = svg
            placed += [(f"{name}.png", x, y) for x, y in corners]
        missing = [name for name in sheets if not (self.directory / f"{name}.png").exists()]
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count() or 1) as pool:
            list(pool.map(lambda name: self.convert(name, sheets[name]), missing))
        for old in self.directory.glob("*.png"):
            if old.stem not in sheets:
                old.unlink()
        return placed

    def sheet(self, batch):
        drawn, corners = "", []
        x = y = high = widest = 0
        for index, (drawing, (left, top, width, height)) in enumerate(batch):
            if index % SHEET == 0:
                x, y, high = 0, y + high, 0
            corners.append((x, y))
            drawn += (f'<svg x="{x}" y="{y}" width="{width}" height="{height}" viewBox="{left} {top} {width} {height}">'
                      f'{drawing.replace(Sketch.prefix, f"p{index}")}</svg>')
            x, high = x + width, max(high, height)
            widest = max(widest, x)
        return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{num(widest)}" height="{num(y + high)}">'
                f'<defs>{self.defs}</defs>{drawn}</svg>', corners)

    def convert(self, name, svg):
        unfinished = self.directory / f"{name}.part"
        subprocess.run([self.converter, "-o", str(unfinished)], input=svg.encode(), check=True)
        unfinished.rename(self.directory / f"{name}.png")


def manifest(character, directory, converter):
    size, animations = character.size, character.animations()
    whole, mouths = (Sheets(character.defs(), directory / folder, converter) for folder in ("layers", "mouths"))
    canvas = (-MARGIN, -MARGIN, size + 2 * MARGIN, size + 2 * MARGIN)
    for animation in animations:
        for frame in animation.frames:
            pose = frame["pose"]
            frame["layers"] = [(x, y, whole.number(drawn, canvas)) for x, y, drawn in character.sketch(pose).layers if drawn]
            # A speaking mouth is a rectangle cut from the pose with that mouth, so its edges are as smooth as what
            # surrounds it.
            if frame["mouths"]:
                box = character.mouthBox(pose)
                frame["mouths"] = {shape: (mouths.number(character.sketch(character.speaking(pose, shape)).flattened(), box),
                                           box) for shape in MOUTHS}
    figures, parts, images = whole.draw(), mouths.draw(), {}
    described = []
    for animation in animations:
        frames = []
        for frame in animation.frames:
            entry = {"duration": frame["duration"]}
            shown = []
            for left, top, number in reversed(frame["layers"]):
                file, x, y = figures[number]
                name = f"l{number}"
                images[name] = {"file": f"layers/{file}", "crop": [x, y, *canvas[2:]]}
                shown.append({"image": name, "x": left - MARGIN, "y": top - MARGIN})
            if shown:
                entry["images"] = shown
            if frame["exit"] is not None and animation.transition == "exits":
                entry["exit"] = frame["exit"]
            if frame["branches"]:
                entry["branches"] = [{"to": to, "percent": percent} for to, percent in frame["branches"]]
            if frame["mouths"]:
                entry["mouths"] = {}
                for shape, (number, box) in frame["mouths"].items():
                    file, x, y = parts[number]
                    name = f"m{number}"
                    images[name] = {"file": f"mouths/{file}", "crop": [x, y, *box[2:]]}
                    entry["mouths"][shape] = {"image": name, "x": box[0], "y": box[1]}
            frames.append(entry)
        entry = {"name": animation.name, "transition": animation.transition, "frames": frames}
        if animation.returns:
            entry["return"] = animation.returns
        described.append(entry)
    return {
        "names": [{"language": 0x0409, "name": character.name, "description": character.description, "extra": ""}],
        "guid": character.guid, "width": size, "height": size, "transparent": "#FF00FF",
        "colours": character.colours,
        "voice": {"language": 0x0409, **character.voice},
        "balloon": {"lines": 4, "charactersPerLine": 32, "text": "#000000", "font": "Tahoma", "height": -13,
                    **character.balloon},
        "states": character.states, "images": images, "animations": described,
    }


def main(arguments):
    if len(arguments) != 4 or arguments[1] not in CAST:
        sys.exit(f"usage: build_character.py {'|'.join(CAST)} DIRECTORY RSVG-CONVERT")
    name, directory = arguments[1], pathlib.Path(arguments[2])
    described = manifest(CAST[name](), directory, arguments[3])
    (directory / f"{name}.json").write_text(json.dumps(described, indent=1) + "\n")


if __name__ == "__main__":
    main(sys.argv)
