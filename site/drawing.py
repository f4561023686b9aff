"""Pictures of the pages: the characters in their poses and animations, the meadow, the burrow. Drawn by the sources of
the characters, as SVG; animated ones are put together as APNG."""

import random
import re
import struct
import subprocess
import sys
import zlib
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "assets" / "characters"))

from cast import CAST as CLASSES  # noqa: E402
from draw import ellipse, num, path, points, stroke  # noqa: E402
from rig import moves  # noqa: E402

CAST = {name: character() for name, character in CLASSES.items()}
SIZE = 144  # pixels of a moving picture of a character, whatever its own canvas measures

# How often a moving picture moves before it rests: nothing moves for ever beside what people read.
PLAYS = 4
LEAST = 12  # 1/100 s a picture of them stands at least

NIGHT = "@media (prefers-color-scheme: dark)"


def poses(character):
    """Animation by its name in small letters: the pose that it holds longest, of those that are furthest from rest."""
    def away(frame):
        return sum(abs(value - character.rest[channel]) * moves(channel) for channel, value in frame["pose"].items())

    held = {}
    for animation in character.animations():
        least = max(map(away, animation.frames)) / 2
        frames = [frame for frame in animation.frames if away(frame) >= least]
        held[animation.name.lower()] = max(frames, key=lambda frame: frame["duration"])["pose"]
    return held


POSES = {name: poses(character) for name, character in CAST.items()}


def still(character, pose_name):
    return CAST[character].svg(POSES[character][pose_name])


def placed(character, pose, x, y, size):
    """A character inside of another picture, its names made its own."""
    figure = CAST[character]
    svg = figure.svg(figure.pose(pose))
    svg = re.sub(r'(id="|url\(#)', rf"\1{character}-", svg)
    return svg.replace(f'width="{num(figure.size)}" height="{num(figure.size)}"',
                       f'x="{num(x)}" y="{num(y)}" width="{num(size)}" height="{num(size)}" overflow="visible"', 1)


# The meadow.

def flower(x, y, size, colour):
    petals = "".join(f'<ellipse cx="0" cy="{num(-size)}" rx="{num(size * 0.62)}" ry="{num(size)}" '
                     f'transform="rotate({72 * i})"/>' for i in range(5))
    return (f'<g transform="translate({points(x, y)})"><path d="M0,0 v{num(size * 5)}" class="stem"/>'
            f'<g fill="{colour}" stroke="#5a3218" stroke-width="1.2">{petals}</g>'
            f'<circle r="{num(size * 0.7)}" fill="#ffd84d" stroke="#5a3218" stroke-width="1.2"/></g>')


def tuft(x, y, size):
    return (f'<path class="tuft" d="M{points(x - size, y)} q{points(size * 0.2, -size, -size * 0.3, -size * 1.6)} '
            f'M{points(x, y)} v{num(-size * 2)} M{points(x + size, y)} '
            f'q{points(-size * 0.2, -size, size * 0.3, -size * 1.6)}"/>')


def cloud(x, y, size):
    return (f'<path class="cloud" transform="translate({points(x, y)}) scale({num(size)})" '
            'd="M-60,20 a22,22 0 0 1 6,-43 a34,34 0 0 1 62,-10 a26,26 0 0 1 40,22 a17,17 0 0 1 2,31 Z"/>')


def meadow(width, height, guests, seed):
    """The meadow with its guests: (character, pose, left, top, size) of each."""
    rng = random.Random(seed)
    top = height * 0.62  # where the front meadow begins
    peaks = "".join(
        f'<path class="far" d="M{points(x - w, top + 20)} L{points(x - w * 0.28, top - h * 0.78)} L{points(x, top - h)} '
        f'L{points(x + w * 0.24, top - h * 0.7)} L{points(x + w, top + 20)} Z"/>'
        f'<path class="snow" d="M{points(x, top - h)} l{points(w * 0.24, h * 0.3)} l{points(-w * 0.14, h * 0.07)} '
        f'l{points(-w * 0.1, -h * 0.09)} l{points(-w * 0.12, h * 0.12)} l{points(-w * 0.16, -h * 0.18)} Z"/>'
        for x, w, h in ((width * 0.14, height * 0.5, height * 0.40), (width * 0.86, height * 0.62, height * 0.48),
                        (width * 0.52, height * 0.42, height * 0.27)))
    stars = "".join(f'<circle cx="{num(rng.uniform(0, width))}" cy="{num(rng.uniform(0, height * 0.42))}" '
                    f'r="{num(rng.uniform(0.8, 2.2))}"/>' for _ in range(int(width / 16)))
    back = (f"M0,{num(top - 8)} C{points(width * 0.2, top - 58, width * 0.38, top + 4, width * 0.55, top - 14)} "
            f"S{points(width * 0.86, top - 56, width, top - 12)} V{num(height)} H0 Z")
    front = (f"M0,{num(top + 44)} C{points(width * 0.25, top + 4, width * 0.42, top + 46, width * 0.62, top + 34)} "
             f"S{points(width * 0.9, top + 6, width, top + 32)} V{num(height)} H0 Z")
    growing = ""
    for _ in range(int(width / 14)):
        x, y = rng.uniform(0, width), rng.uniform(top + 62, height - 8)
        growing += tuft(x, y, rng.uniform(3, 7))
    for _ in range(int(width / 40)):
        x, y = rng.uniform(8, width - 8), rng.uniform(top + 70, height - 34)
        # No flower grows out of a guest.
        if all(not left - 12 < x < left + size + 12 for _, _, left, _, size in guests):
            growing += flower(x, y, rng.uniform(3.2, 5.4), rng.choice(("#ffffff", "#f2708f", "#7f8ff0", "#ff9d3c")))
    sky = f'<g class="day"><circle cx="{num(width * 0.77)}" cy="{num(height * 0.17)}" r="{num(height * 0.1)}" ' \
          f'fill="#ffcf4a" stroke="#e89a1c" stroke-width="4"/>{cloud(width * 0.2, height * 0.16, height / 420)}' \
          f'{cloud(width * 0.93, height * 0.27, height / 560)}</g>'
    moon = f'<g class="night"><g fill="#fff4d0">{stars}</g><path ' \
           f'transform="translate({points(width * 0.77, height * 0.17)}) scale({num(height / 420)})" ' \
           'd="M14,-40 A42,42 0 1 0 38,24 A34,34 0 1 1 14,-40 Z" fill="#ffe9a8"/></g>'
    style = ("<style>.night{display:none}.far{fill:#a9b9c9}.snow{fill:#fdfdfb}.back{fill:#a6c766}.front{fill:#86b04e}"
             ".stem,.tuft{fill:none;stroke:#47702a;stroke-width:2;stroke-linecap:round}.cloud{fill:#fffdf6}"
             f"{NIGHT}{{.day{{display:none}}.night{{display:inline}}.far{{fill:#3a4470}}.snow{{fill:#8d9ac6}}"
             ".back{fill:#2b4636}.front{fill:#33503a}.stem,.tuft{stroke:#64906a}}"
             # They hop when the page opens, one after the other.
             "@media (prefers-reduced-motion: no-preference){.guest{animation:hop .7s ease-in-out 2}}"
             "@keyframes hop{40%{transform:translateY(-9px)}70%{transform:translateY(0)}85%{transform:translateY(-3px)}}"
             "</style>")
    people = "".join(f'<g class="guest" style="animation-delay:{0.5 + 0.25 * number:.2f}s">{placed(*guest)}</g>'
                     for number, guest in enumerate(guests))
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{num(width)}" height="{num(height)}" '
            f'viewBox="0 0 {num(width)} {num(height)}">{style}{sky}{moon}{peaks}<path class="back" d="{back}"/>'
            f'<path class="front" d="{front}"/>{growing}{people}</svg>')


OUT_OF_THE_POOL = {**POSES["Ottoline"]["pleased"], "rise": 0.8, "hole": 1.0, "head.turn": 0.0, "body.y": 0.0}


def wide_meadow():
    return meadow(1200, 420, (("Ottoline", OUT_OF_THE_POOL, 205, 222, 180), ("Brindle", POSES["Brindle"]["greet"], 500, 186, 200),
                              ("Plonk", POSES["Plonk"]["congratulate"], 815, 222, 180)), "meadow")


def narrow_meadow():
    return meadow(480, 330, (("Ottoline", OUT_OF_THE_POOL, 12, 186, 136), ("Brindle", POSES["Brindle"]["greet"], 165, 166, 150),
                             ("Plonk", POSES["Plonk"]["congratulate"], 332, 186, 136)), "narrow meadow")


# The burrow.

def burrow():
    width, height, ground = 1200, 300, 52
    rng = random.Random("burrow")
    stones = ""
    for _ in range(60):
        x, y = rng.uniform(0, width), rng.uniform(ground + 50, height - 6)
        if not (200 < x < 320 or 460 < x < 850 or 890 < x < 950):  # the worm, the burrow, the note
            stones += ellipse(x, y, rng.uniform(5, 17), rng.uniform(4, 10), "#6d4a2e", 'class="stone"')
    grass = "".join(tuft(x + rng.uniform(-6, 6), ground + 4, rng.uniform(5, 10)) for x in range(8, width, 17)
                    if not 748 < x < 846)  # where the tunnel comes out
    roots = "".join(f'<path class="root" d="M{num(x)},{num(ground + 8)} c{points(rng.uniform(-14, 14), 24)} '
                    f'{points(rng.uniform(-14, 14), 30)} {points(rng.uniform(-10, 10), rng.uniform(40, 74))}"/>'
                    for x in (60, 148, 240, 905, 1010, 1130))
    bends = "M212,212 q14,-22 28,0 t28,0 t28,-4"
    worm = (path(bends, extra=stroke("#5a2a20", 15)) + path(bends, extra=stroke("#e58f83", 10)) +
            ellipse(297, 206, 1.8, 1.8, "#3a1d14"))
    note = (path("M916,236 v-34 l22,-6 v34", extra=stroke("#c9a983", 3)) + ellipse(909, 237, 8.5, 6.5, "#c9a983") +
            ellipse(931, 231, 8.5, 6.5, "#c9a983"))
    tunnel = "M640,168 C720,176 742,120 770,52 L824,52 C800,150 772,226 660,224 Z"
    style = ("<style>.grass{fill:#86b04e}.tuft{fill:none;stroke:#47702a;stroke-width:2.4;stroke-linecap:round}"
             ".stone{fill:#6d4a2e;stroke:#3a2110;stroke-width:2}"
             ".root{fill:none;stroke:#7a5331;stroke-width:4;stroke-linecap:round}"
             f".soil{{fill:#4a2c17}}.hollow{{fill:#2b180b}}{NIGHT}{{.grass{{fill:#33503a}}.tuft{{stroke:#64906a}}"
             ".stone{fill:#38261a;stroke:#150c06}.root{stroke:#463020}.soil{fill:#1f140d}.hollow{fill:#0f0804}}</style>")
    doze = {**POSES["Brindle"]["idle3_2"], "doze": 1.0, "mouth.open": 0.1}
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" viewBox="0 0 {width} {height}" '
            f'preserveAspectRatio="xMidYMid slice">{style}'
            f'<path class="soil" d="M0,{ground} H{width} V{height} H0 Z"/>'
            + stones + roots + worm + note
            + f'<path class="hollow" d="{tunnel}"/><ellipse class="hollow" cx="600" cy="196" rx="122" ry="88"/>'
            + path("M500,262 q100,34 200,0 q-30,-26 -100,-26 t-100,26 Z", "#c99a4c", stroke("#6d4a1e", 3))
            + placed("Brindle", doze, 518, 112, 158)
            + f'<path class="grass" d="M0,{ground + 14} V{ground - 6} Q300,{ground - 16} 600,{ground - 6} L764,{ground - 8} '
              f'L770,{ground + 12} Z M826,{ground + 12} L832,{ground - 8} Q1000,{ground - 16} {width},{ground - 6} '
              f'V{ground + 14} Z"/>'
            + grass + "</svg>")


# Moving pictures.

def chunks(png):
    at = 8
    while at < len(png):
        length, kind = struct.unpack(">I4s", png[at:at + 8])
        yield kind, png[at + 8:at + 8 + length]
        at += 12 + length


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def moving(frames, plays=PLAYS):
    """An APNG of frames: PNG bytes, 1/100 s, and where it stands on the first one, which has the size of all."""
    result = b"\x89PNG\r\n\x1a\n"
    first = None
    number = 0
    for png, duration, x, y in frames:
        parts = list(chunks(png))
        header = parts[0][1]
        data = b"".join(content for kind, content in parts if kind == b"IDAT")
        if first is None:
            first = header
            result += chunk(b"IHDR", header) + chunk(b"acTL", struct.pack(">II", len(frames), plays))
        # Frames share depth and kind of colour with the first one; it is its size alone that may differ.
        if header[8:] != first[8:]:
            raise ValueError("frames of different kinds")
        width, height = struct.unpack(">II", header[:8])
        result += chunk(b"fcTL", struct.pack(">IIIIIHHBB", number, width, height, x, y, duration, 100, 0, 0))
        number += 1
        if number == 1:
            result += chunk(b"IDAT", data)
        else:
            result += chunk(b"fdAT", struct.pack(">I", number) + data)
            number += 1
    return result + chunk(b"IEND", b"")


class Frames:
    """The frames of a character's animations as pictures."""

    BATCH = 60  # frames that are drawn at once

    def __init__(self, character, rsvg_convert):
        self._character, self._converter = CAST[character], rsvg_convert
        self._animations = {animation.name.lower(): animation for animation in self._character.animations()}
        self._drawn = {}

    def _draw(self, poses):
        """Draws what is not drawn yet: many below one another, with an empty row before each. A row of a PNG tells how
        it differs from the one above, so that the rows of each can be taken out as they are."""
        missing = {self._key(pose): pose for pose in poses if self._key(pose) not in self._drawn}
        keys = list(missing)
        for first in range(0, len(keys), self.BATCH):
            batch = keys[first:first + self.BATCH]
            high, own = len(batch) * (SIZE + 1), self._character.size
            cells = "".join(
                f'<svg y="{number * (SIZE + 1) + 1}" width="{SIZE}" height="{SIZE}" viewBox="0 0 {own} {own}">'
                f'{self._character.drawn(missing[key], f"p{number}")}</svg>' for number, key in enumerate(batch))
            svg = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{SIZE}" height="{high}">'
                   f'<defs>{self._character.defs()}</defs>{cells}</svg>')
            png = subprocess.run([self._converter], input=svg.encode(), stdout=subprocess.PIPE, check=True).stdout
            parts = list(chunks(png))
            rows = zlib.decompress(b"".join(content for kind, content in parts if kind == b"IDAT"))
            header = struct.pack(">II", SIZE, SIZE) + parts[0][1][8:]
            length = 1 + 4 * SIZE
            for number, key in enumerate(batch):
                begin = (number * (SIZE + 1) + 1) * length
                self._drawn[key] = (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) +
                                    chunk(b"IDAT", zlib.compress(rows[begin:begin + SIZE * length], 9)) + chunk(b"IEND", b""))

    @staticmethod
    def _key(pose):
        return tuple(sorted(pose.items()))

    def rest(self, duration, x=0, y=0):
        self._draw([self._character.rest])
        return [(self._drawn[self._key(self._character.rest)], duration, x, y)]

    def of(self, name, x=0, y=0):
        """The frames of an animation, with those of the way back where it has one."""
        animation = self._animations[name]
        shown = []
        for frame in animation.frames:
            pose = frame["pose"]
            if pose["rise"] <= 0 and pose["hole"] <= 0:
                continue
            # A page is looked at from further away than a desktop, and has to be fetched: every other picture will do.
            if shown and shown[-1][1] < LEAST:
                shown[-1][1] += frame["duration"]
            else:
                shown.append([pose, frame["duration"]])
        shown[-1][0] = animation.frames[-1]["pose"] if animation.name != "Hide" else shown[-1][0]
        self._draw([pose for pose, _ in shown])
        played = [(self._drawn[self._key(pose)], duration, x, y) for pose, duration in shown]
        return played + (self.of(animation.returns.lower(), x, y) if animation.returns else [])

    def act(self, name):
        """A moving picture: at rest, the animation, at rest again with a blink."""
        return moving(self.rest(60) + self.of(name) + self.rest(160) + self.of("blink") + self.rest(120))
