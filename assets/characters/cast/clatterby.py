"""Clatterby, a typewriter on two legs: old, a little pompous, and kind. His nose is the bell, his moustache the type
guide; his head stands on bellows, and what he feels he types on the sheet above it. He starts stiffly and rattles on."""

import math

import props
from character import Character, hand, hands
from draw import Sketch, ellipse, num, path, points, radial, stroke
from features import Arm, Eye, Mouth
from rig import BRISK, Act, Joints, Swing, easeIn, easeInOut, easeOut, elbow, linear

LINE = "#22345c"
INNER = stroke(LINE, 2.2)
THIN = stroke(LINE, 1.5)
BRASS, BRASS_LIGHT, BRASS_DARK, BRASS_LINE = "#e3ab3f", "#f9d67c", "#b67a22", "#6b4412"
STEEL, STEEL_LIGHT, STEEL_LINE = "#9aa8bb", "#d5dee8", "#3c4a63"
CREAM, PAPER, INK = "#fff4d6", "#fffdf5", "#34508c"
SHEET = 38.0            # pixels of a sheet that stands wholly above the platen
TOP = 46.0              # where it comes out
ASIDE, DOWN = 8.0, 17.0  # the parts are drawn about x = 72 with the ground at 138; they stand on the canvas so much further

PALE_TEAR = "#c4ecff"  # seen before the dark of his keys

# What he types: path about the middle, colour.
MARKS = {
    "heart": ("M0,9 C-15,-1 -12,-12 -5,-11 C-2,-11 0,-8 0,-6 C0,-8 2,-11 5,-11 C12,-12 15,-1 0,9 Z", "#e0384a"),
    "tick": ("M-10,0 L-3,8 L11,-9", "#2f9a4a"),
    "cross": ("M-9,-9 L9,9 M9,-9 L-9,9", "#d93a30"),
    "ask": ("M-6,-6 C-6,-13 7,-13 7,-6 C7,0 0,0 0,5 M0,11 V11.2", "#2f6fd0"),
    "call": ("M0,-11 V3 M0,10.6 V10.8", "#d93a30"),
    "zed": ("M-14,-10 h7 l-7,8 h7 M-2,-4 h8 l-8,9 h8", "#4a62b8"),
    "tune": ("M-7,8 V-8 L7,-11 V5", "#b0338a"),
    "up": ("M0,10 V-10 M-7,-3 L0,-10.5 L7,-3", INK), "down": ("M0,-10 V10 M-7,3 L0,10.5 L7,3", INK),
    "left": ("M11,0 H-11 M-4,-7 L-11.5,0 L-4,7", INK), "right": ("M-11,0 H11 M4,-7 L11.5,0 L4,7", INK),
}


def typebars(sketch, x, y):
    """The upper teeth: types in their basket."""
    if sketch["mouth.open"] < 0.06:
        return ""
    return "".join(path(f"M{points(x + i * 4.2, y - 5)} v{num(7.4 - abs(i) * 0.6)}", extra=stroke("#e6edf4", 2.8))
                   for i in (-2, -1, 0, 1, 2))


class Lips(Mouth):
    """A mouth below a moustache, which hides its corners."""

    def draw(self, sketch):
        if sketch["mouth.open"] >= 0.06:
            return super().draw(sketch)
        half, curve = self.wide * sketch["mouth.wide"], sketch["mouth.curve"]
        corner = self.y - curve * self.wide * 0.18
        return path(f"M{points(self.x - half, corner)} Q{points(self.x, self.y + curve * self.wide * 0.62, self.x + half, corner)}",
                    extra=stroke(self.line, self.width))

    def box(self):
        """Between the moustache and the lower edge of the head."""
        return (self.x - self.wide - 2, self.y - 2.6, self.x + self.wide + 2, self.y + 11.4)


class Lever(Arm):
    """Two straight rods with bolts, and fingers that end in keys."""

    reach, low = 59.0, 127.0  # pixels: how far from the middle, and down to where, a hand goes

    def place(self, sketch):
        out, up = sketch[f"hand.x.{self.suffix}"], sketch[f"hand.y.{self.suffix}"]
        return self.held(out, up)

    def held(self, out, up):
        """Neither into the ground nor to the sides of the canvas."""
        x, y = self.x + self.side * out * self.length, self.y - up * self.length
        return max(72.0 - self.reach, min(72.0 + self.reach, x)), min(self.low, y)

    def aimed(self, out, up, degrees):
        """The channels of a hand that points that way: 0 outward, 90 down."""
        x, y = self.held(out, up)
        ex, ey = elbow(self.x, self.y, x, y, self.length * 0.54, self.length * 0.54, self.side)
        forearm = math.degrees(math.atan2(y - ey, self.side * (x - ex)))
        return hand(self.suffix, out, up, 0.6, 1.0, turn=degrees - forearm)

    def draw(self, sketch):
        x, y = self.place(sketch)
        ex, ey = elbow(self.x, self.y, x, y, self.length * 0.54, self.length * 0.54, self.side)
        rods = f"M{points(self.x, self.y)} L{points(ex, ey)} L{points(x, y)}"
        angle = math.degrees(math.atan2(y - ey, x - ex)) + self.side * sketch[f"hand.turn.{self.suffix}"]
        return (path(rods, extra=stroke(STEEL_LINE, self.width + 3.6)) + path(rods, extra=stroke(self.fill, self.width)) +
                path(f"M{points(self.x - 0.8, self.y - 0.8)} L{points(ex - 0.8, ey - 0.8)} L{points(x - 0.8, y - 0.8)}",
                     extra=stroke(self.light, self.width * 0.34)) +
                "".join(ellipse(bx, by, r, r, BRASS, stroke(BRASS_LINE, 1.7)) +
                        ellipse(bx - 0.8, by - 0.9, r * 0.36, r * 0.36, BRASS_LIGHT)
                        for bx, by, r in ((self.x, self.y, 5.4), (ex, ey, 4.2))) + self.drawHand(sketch, x, y, angle))

    def drawHand(self, sketch, x, y, angle):
        fist, point = sketch[f"fist.{self.suffix}"], sketch[f"point.{self.suffix}"]
        size, rods, keys = self.hand, "", ""
        for number in (-1, 1, 0):
            spread = number * (0.84 - 0.34 * fist)
            length = size * (1.75 - 0.75 * fist)
            if point > 0:
                length += (size * (2.5 if number == 0 else 1.0) - length) * point
            tx, ty = math.cos(spread) * length, math.sin(spread) * length
            rods += path(f"M0,0 L{points(tx, ty)}", extra=stroke(STEEL_LINE, 5.4))
            keys += (path(f"M0,0 L{points(tx, ty)}", extra=stroke(STEEL_LIGHT, 2.4)) +
                     ellipse(tx, ty, 3.9, 3.9, CREAM, stroke(LINE, 1.8)))
        thumb = f"M0,0 L{points(size * 0.4, -self.side * size * (1.15 - 0.25 * fist))}"
        return (f'<g transform="translate({points(x, y)}) rotate({num(angle)})">' + path(thumb, extra=stroke(STEEL_LINE, 5.4)) +
                path(thumb, extra=stroke(STEEL_LIGHT, 2.4)) + rods + keys +
                ellipse(0, 0, size * 0.86, size * 0.86, BRASS, stroke(BRASS_LINE, 1.9)) +
                ellipse(-size * 0.2, -size * 0.25, size * 0.3, size * 0.26, BRASS_LIGHT) + "</g>")


class Clatterby(Character):
    name = "Clatterby"
    description = "A typewriter of the old school, who has something to say and rings when he has said it."
    guid = "{6B1D0F52-7C0A-4E0B-9C55-0E7B3A1F6C0C}"
    voice = {"gender": "male", "speed": 138, "pitch": 97, "age": 80, "style": "Dignified", "language": 0x0809}
    balloon = {"background": "#FFFDF2", "border": "#22345C"}
    size = 160
    tempo = 0.95
    amplitude = 1.1
    springiness = 1.35

    joints = Joints({
        "floor": (None, 0.0, 0.0), "body": ("floor", 72.0, 136.0), "footL": ("body", 52.0, 131.0), "footR": ("body", 92.0, 131.0),
        "head": ("body", 72.0, 106.0), "carriage": ("head", 72.0, 50.0), "paper": ("carriage", 72.0, 48.0),
        "crank": ("carriage", 30.0, 48.0), "bell": ("head", 72.0, 76.0),
        "tashL": ("head", 72.0, 88.0), "tashR": ("head", 72.0, 88.0),
    }, whole=("body", "footL", "footR", "head", "carriage"))
    swings = {
        "paper.turn": Swing({"carriage.x": -0.9, "body.x": 1.2, "body.turn": 1.2, "head.turn": 0.9}, 0.42, 0.2),
        "crank.turn": Swing({"carriage.x": 2.2, "head.y": 1.6, "body.y": 1.6, "body.x": 3.0}, 0.3, 0.2),
        "bell.turn": Swing({"body.x": 5.0, "body.y": 1.6, "head.x": 3.0, "head.turn": 2.0}, 0.26, 0.16),
        "cord": Swing({"head.turn": 0.05, "head.y": 0.05, "body.x": 0.2}, 0.5, 0.2),
        "tashL.turn": Swing({"head.y": -1.6, "body.y": -1.6, "head.turn": 0.8}, 0.32, 0.2),
        "tashR.turn": Swing({"head.y": 1.6, "body.y": 1.6, "head.turn": 0.8}, 0.32, 0.2),
    }
    own_channels = {
        "sheet": 0.34, "limp": 0.0, "typed": 0.6, "keys": 0.0, "wind": 0.0, "ring": 0.0, "dust": 0.0, "confetti": 0.0,
        "receiver": 0.0, "cord": 0.0, "loupe": 0.0, "news": 0.0, "lid": 0.0, "dots": 0.0,
        **{name: 0.0 for name in MARKS if name not in ("ask", "call")}, **hands(0.16, -0.42, 0.5),
    }
    poses = {
        "on the keys": {**hands(-0.42, -0.16, 0.5), "eye.y": 0.8, "eye.open": 0.8, "head.y": 1.0},
        "drawn up": {"head.y": -6.0, "brow.y": 3.0, "eye.open": 0.85, "mouth.curve": 0.2},
        "proud": {"head.y": -5.0, "eye.open": 0.55, "brow.y": 2.0, "mouth.curve": 1.0},
    }
    glad = {"eye.smile": 1.0, "mouth.open": 0.55, "mouth.curve": 1.0, "blush": 1.0}
    shock = {"eye.open": 1.25, "eye.pupil": 0.62, "mouth.open": 0.9, "mouth.wide": 0.6, "mouth.curve": 0.1, "brow.y": 6.0}

    arms = [Lever(side, 72 + side * 42, 111, 36, 5.0, 5.6, STEEL, STEEL_LIGHT, STEEL_LINE) for side in (-1, 1)]
    eyes = [Eye(side, 72 + side * 19.5, 74, 11.0, 11.4, BRASS, LINE, iris="#4f97c9", pupil=0.46, white="#fffdf2",
                skin=BRASS_LIGHT) for side in (-1, 1)]
    mouth = Lips(72, 96.6, 12.0, 6.2, "#16223f", width=3.0, inside="#1c2440", tongue="#e0384a", teeth=typebars)

    def defs(self):
        return (radial("enamel", "#8fc0ea", "#4f86c6", "#2d5a9c") + radial("deck", "#77abdc", "#427ab8", "#26508e") +
                radial("brass", "#ffeaa8", BRASS, BRASS_DARK) + radial("leather", "#c98a55", "#9a5d33", "#6c3d1f") + props.DEFS)

    def derived(self, pose):
        lift = (pose["mouth.curve"] - 0.7) * 24
        return {**pose, "floor.x": ASIDE, "floor.y": DOWN, "head.y": pose["head.y"] - 1.6 * pose["breath"],
                "tashL.turn": pose["tashL.turn"] + lift, "tashR.turn": pose["tashR.turn"] - lift}

    def draw(self, sketch):
        if sketch["hole"] > 0:
            self.drawLid(sketch)
        if sketch["rise"] >= 1:
            self.drawFigure(sketch)
        elif sketch["rise"] > 0:
            inner = Sketch(self.joints, sketch.pose, self.size)
            self.drawFigure(inner)
            sunk = f'<g transform="translate(0 {num((1 - sketch["rise"]) * 96)})">{inner.flattened()}</g>'
            sketch.on(None, sketch.clip("g", path(f"M-40,-60 H200 V{num(135 + DOWN)} H-40 Z", "#000"), sunk))
        if sketch["hole"] > 0:
            self.drawCase(sketch)
        self.drawAir(sketch)

    # The figure, from the back to the front.

    def drawFigure(self, sketch):
        if sketch["head.y"] < 3:
            sketch.layer("body")
            self.drawBellows(sketch)
        sketch.layer("body")
        self.drawDeck(sketch)
        for side, foot in ((-1, "footL"), (1, "footR")):
            sketch.layer(foot)
            self.drawFoot(sketch, side, foot)
        sketch.layer("head")
        self.drawWinder(sketch)
        standing = self.standing(sketch)
        if standing > 0:
            sketch.layer("carriage")
            self.drawSheet(sketch, standing)
        sketch.layer("carriage")
        self.drawCarriage(sketch)
        sketch.layer("head")
        self.drawHead(sketch)
        sketch.layer("head")
        self.drawEyes(sketch)
        sketch.layer("head")
        self.drawNose(sketch)
        if standing <= 0:
            sketch.layer("carriage")
            self.drawFlap(sketch, -standing)
        if sketch["news"] > 0:
            sketch.layer("body")
            self.drawNews(sketch)
        if sketch["receiver"] > 0:
            sketch.layer()
            self.drawReceiver(sketch)
        for arm in self.arms:
            sketch.layer("body")
            sketch.on("body", arm.draw(sketch))

    def drawFoot(self, sketch, side, foot):
        x = 72 + side * 23
        sketch.on(foot, path(f"M{points(x - 9, 138.5)} C{points(x - 16, 138.5, x - 14, 127)} {points(x, 126.5)} "
                             f"C{points(x + 14, 127, x + 16, 138.5)} {points(x + 9, 138.5)} Z", "url(#brass)",
                             stroke(BRASS_LINE, 2.0)),
                  path(f"M{points(x - 8, 134.5)} Q{points(x, 132, x + 8, 134.5)}", extra=stroke(BRASS_DARK, 1.8)))

    def drawBellows(self, sketch):
        """Folds of leather from the deck to the head; as many pixels high as the head is lifted."""
        low, high = 112.0, 103.0 + sketch["head.y"]
        folds = max(2, round((low - high) / 5))
        lean = sketch["head.turn"] * 0.25
        step, left, right = (low - high) / folds, [], []
        for number in range(2 * folds + 1):
            y = low - step * number / 2
            x = 72 + sketch["head.x"] * number / (2 * folds) + lean * number / (2 * folds)
            out = 33 if number % 2 else 27
            left.append(points(x - out, y))
            right.append(points(x + out, y))
        creases = "".join(path(f"M{left[number]} L{right[number]}", extra=stroke("#4c2b16", 1.6))
                          for number in range(2, 2 * folds, 2))
        sketch.on("body", path(f"M{' L'.join(left + right[::-1])} Z", "#9a5d33", stroke("#4c2b16", 2.0)), creases)

    def drawDeck(self, sketch):
        deck = ("M40,104 H104 C108,104 110,107 111,110 L117,126 C118,130 116,132 112,132 H32 C28,132 26,130 27,126 "
                "L33,110 C34,107 36,104 40,104 Z")
        drawn = (path(deck, "url(#deck)", INNER) +
                 path("M29,127.5 H115", extra=stroke(BRASS_LINE, 4.6)) + path("M29.5,127.5 H114.5", extra=stroke(BRASS, 2.4)))
        # Which keys are down, changes with every whole number.
        beat = round(sketch["keys"])
        for row, (count, gap, y) in enumerate(((6, 11.0, 112.0), (7, 11.2, 120.0))):
            for number in range(count):
                x = 72 + (number - (count - 1) / 2) * gap
                down = beat > 0 and (number * 5 + row * 3 + beat * 4) % 7 < 2
                popped = beat < 0
                dy = 2.2 if down else -2.6 * (1 + (number + row) % 2) if popped else 0.0
                if popped:
                    drawn += path(f"M{points(x, y + dy)} L{points(x, y + 2)}", extra=stroke(STEEL_LINE, 3.2))
                drawn += (ellipse(x, y + dy, 4.7, 4.2, STEEL_LIGHT if down else CREAM, stroke(LINE, 1.9)) +
                          ellipse(x - 0.8, y + dy - 0.8, 1.9, 1.4, "#ffffff" if not down else CREAM))
        sketch.on("body", drawn)

    def drawWinder(self, sketch):
        """The key of the clockwork, on its side; `wind` counts its turns."""
        wide = math.cos(sketch["wind"] * 2 * math.pi)
        edge = stroke(BRASS_LINE, 2.0)
        high = 3.0 + 8.0 * abs(wide)
        wings = "".join(ellipse(124, 80 + side * high * 0.62, 4.6, max(2.4, high * 0.62),
                                "url(#brass)" if side * wide < 0 else BRASS, edge)
                        for side in (-1, 1))
        holes = "".join(ellipse(124, 80 + side * high * 0.66, 1.6, high * 0.24, BRASS_LINE) for side in (-1, 1)) if high > 7 else ""
        sketch.on("head", path("M110,80 H122", extra=stroke(BRASS_LINE, 7.0)), path("M110,80 H122", extra=stroke(BRASS, 3.4)),
                  wings, holes, ellipse(121, 80, 3.0, 4.4, BRASS, edge))

    # The sheet and the carriage.

    def standing(self, sketch):
        """How far the sheet stands above the platen; below 0 it hangs down in front of it."""
        return SHEET * sketch["sheet"] * (1 - 2 * sketch["limp"])

    def drawSheet(self, sketch, high):
        top, half = TOP - high, 21.0
        bend = min(3.0, high * 0.1)
        edge = f"C{points(72 - 10, top - bend, 72 + 8, top + bend)} {points(72 + half, top)}"
        drawn = path(f"M{points(72 - half, TOP + 4)} V{num(top)} {edge} V{num(TOP + 4)} Z", PAPER, INNER)
        drawn += path(f"M{points(72 + half - 3.4, top + 3)} V{num(TOP)}", extra=stroke("#dfe3e4", 2.6))
        shown = [name for name in MARKS if sketch[name] > 0.3]
        if shown:
            d, colour = MARKS[shown[0]]
            y = top + 16.0
            filled = colour if shown[0] == "heart" else "none"
            drawn += f'<g transform="translate({points(71, y)})">{path(d, filled, stroke(colour, 5.0))}'
            if shown[0] == "tune":
                drawn += ellipse(-9.6, 8.4, 4.6, 3.8, colour) + ellipse(4.4, 5.4, 4.6, 3.8, colour)
            drawn += "</g>"
        elif sketch["idea"] > 0.3:
            drawn += (f'<g transform="translate({points(71, top + 20)})">' +
                      "".join(path(f"M{points(math.cos(a) * 12.5, -3 + math.sin(a) * 12.5)} "
                                   f"L{points(math.cos(a) * 15.5, -3 + math.sin(a) * 15.5)}", extra=stroke("#d08a10", 2.6))
                              for a in (math.pi * k / 5 for k in range(5, 11))) +
                      path("M-4.5,7 C-5,3 -8.5,1 -8.5,-3 A8.5,8.5 0 0 1 8.5,-3 C8.5,1 5,3 4.5,7 Z", "#ffdf4d", stroke(INK, 2.4)) +
                      path("M-3.4,11 h6.8", extra=stroke(INK, 3.0)) + "</g>")
        elif sketch["dots"] > 0:
            drawn += "".join(ellipse(59 + number * 12, top + 16, 3.9, 3.9, INK) for number in range(3)
                             if sketch["dots"] * 3 > number + 0.5)
        else:
            # What was typed: whole lines, and one unfinished.
            lines = max(0.0, sketch["typed"]) * 5
            for number in range(math.ceil(lines)):
                length = min(1.0, lines - number) * (31 if number % 3 else 25)
                y = top + 7 + number * 6.2
                if y < TOP and length > 1:
                    drawn += path(f"M{points(56, y)} h{num(length)}", extra=stroke("#7f93b8", 2.2))
        sketch.on("paper", drawn)

    def drawFlap(self, sketch, low):
        """The sheet hanging over the platen, limp: its back is seen."""
        bottom = 50 + low
        sketch.on("paper", path(f"M50,46 C50,39 94,39 94,46 L{points(95.5, bottom - 3)} "
                                f"C{points(90, bottom + 3, 82, bottom - 3, 74, bottom + 1)} "
                                f"C{points(66, bottom + 5, 56, bottom - 2, 49, bottom + 2)} Z", "#eef0ea", INNER),
                  path(f"M56,46 L{points(55.4, bottom - 4)}", extra=stroke("#ffffff", 3.2)))

    def drawCarriage(self, sketch):
        knobs = "".join(path(f"M{points(72 + side * 42, 50)} h{num(side * 6)}", extra=stroke(STEEL_LINE, 7.0)) +
                        path(f"M{points(72 + side * 46 - 4.2, 43.4)} h8.4 q1.6,6.6 0,13.2 h-8.4 q-1.6,-6.6 0,-13.2 Z",
                             "url(#brass)", stroke(BRASS_LINE, 2.0)) +
                        path(f"M{points(72 + side * 46 - 1.4, 46)} v8 m3,-8 v8", extra=stroke(BRASS_DARK, 1.2))
                        for side in (-1, 1))
        frames = "".join(path(f"M{points(72 + side * 39 - 4, 42)} h8 v17 h-8 Z", "#5c93d0", stroke(LINE, 2.0)) for side in (-1, 1))
        crank = (path("M33,48 L25,33", extra=stroke(STEEL_LINE, 6.4)) + path("M33,48 L25,33", extra=stroke(STEEL_LIGHT, 2.8)) +
                 ellipse(24.6, 31.6, 4.6, 4.4, "#e0483e", stroke("#7a1d1a", 1.8)) + ellipse(23.4, 30.4, 1.4, 1.2, "#ffb3a6"))
        sketch.on("crank", crank)
        sketch.on("carriage", knobs, path("M36,45 H108 V57 H36 Z", "#4a5162", INNER),
                  path("M39,48 H105", extra=stroke("#848da0", 2.2)), frames,
                  path("M48,44.6 h6 m36,0 h6", extra=stroke(STEEL_LIGHT, 3.4)))

    # The face.

    def drawHead(self, sketch):
        head = ("M48,55 H96 C107,55 111,61 112,69 L114,97 C114.5,104 110,108 103,108 H41 C34,108 29.5,104 30,97 "
                "L32,69 C33,61 37,55 48,55 Z")
        glow = sketch["blush"]
        lamps = ""
        for side in (-1, 1):
            x, y = 72 + side * 33.0, 95.5
            if glow > 0.75:
                lamps += ellipse(x, y, 7.4, 6.8, "#ffb04a", 'opacity="0.55"')
            lamps += ellipse(x, y, 4.6, 4.4, "#ff7a3c" if glow > 0.75 else "#d9884f" if glow > 0.3 else "#5a5f74",
                             stroke(BRASS_LINE, 1.8))
            if glow > 0.3:
                lamps += ellipse(x - 1.2, y - 1.4, 1.5, 1.2, "#ffe3b8")
        sketch.on("head", path(head, "url(#enamel)", INNER), path("M47,59.5 H97", extra=stroke("#b5d8f5", 2.2)),
                  path("M38,103.5 H106", extra=stroke("#26508e", 1.8)), lamps, self.mouth.draw(sketch))

    def drawEyes(self, sketch):
        drawn = ""
        for eye in self.eyes:
            grown = 1.0 + 0.5 * max(0.0, sketch["eye.open"] - 1.0)
            drawn += ellipse(eye.x, eye.y, 14.6 * grown, 14.8 * grown, "url(#brass)", stroke(BRASS_LINE, 2.0)) + eye.draw(sketch)
        for side in (-1, 1):
            x = 72 + side * 19.5
            y = 58.5 - sketch["brow.y"] - (sketch["brow.cock"] if side > 0 else 0)
            turn = sketch["brow.turn"]
            d = f"M{points(x - side * 9, y + turn * 4.6)} L{points(x + side * 10, y - turn * 3.4 + 1)}"
            drawn += path(d, extra=stroke(LINE, 8.4)) + path(d, extra=stroke(CREAM, 4.4))
        loupe = sketch["loupe"]
        if loupe > 0:
            x, y = 118 - 26.5 * loupe, 46 + 28 * loupe
            d = f"M113,68 L{points(x + 14 * loupe, y - 6 * loupe)}"
            lens = Eye(1, x, y, 14.5, 14.5, BRASS, BRASS_LINE, iris="#4f97c9", pupil=0.46, white="#eaf7fd", skin=BRASS).draw(sketch)
            drawn += (path(d, extra=stroke(BRASS_LINE, 6.0)) + path(d, extra=stroke(BRASS, 3.0)) +
                      (lens if loupe > 0.9 else ellipse(x, y, 14.5, 14.5, "url(#lens)", 'fill-opacity="0.8"')) +
                      ellipse(x, y, 16, 16, "none", stroke(BRASS_LINE, 5.4)) + ellipse(x, y, 16, 16, "none",
                                                                                       stroke(BRASS_LIGHT, 2.2)) +
                      path(f"M{points(x - 9, y - 6)} q2,-5 7,-6", extra=stroke("#ffffff", 2.4)))
        sketch.on("head", drawn)

    def drawNose(self, sketch):
        for side, joint in ((-1, "tashL"), (1, "tashR")):
            d = (f"M72,86 C{points(72 + side * 6, 84, 72 + side * 15, 85.6, 72 + side * 20, 87.4)} "
                 f"C{points(72 + side * 24, 88.6, 72 + side * 27, 86, 72 + side * 27.4, 82)} "
                 f"C{points(72 + side * 31.4, 87, 72 + side * 28, 93.4, 72 + side * 21, 93.6)} "
                 f"C{points(72 + side * 12, 94, 72 + side * 5, 92.6, 72, 90.4)} Z")
            sketch.on(joint, path(d, CREAM, stroke(LINE, 2.0)),
                      path(f"M{points(72 + side * 12, 88.6)} q{points(side * 6, 0.4, side * 9, 1.8)}",
                           extra=stroke("#d9c9a0", 1.6)))
        sketch.on("bell", path("M72,71.5 v4", extra=stroke(BRASS_LINE, 5.4)), path("M72,72 v4", extra=stroke(BRASS_LIGHT, 2.0)),
                  path("M62.5,87.5 C62.5,79 66,75 72,75 C78,75 81.5,79 81.5,87.5 Z", "url(#brass)", stroke(BRASS_LINE, 2.0)),
                  path("M61,88 H83", extra=stroke(BRASS_LINE, 4.2)), path("M61.5,88 H82.5", extra=stroke(BRASS_LIGHT, 1.8)))

    # What he has at hand.

    def drawNews(self, sketch):
        y, page = 93.0, sketch["page"]
        drawn = path(f"M{points(72, y + 3)} L{points(104, y - 2)} L{points(107, y + 38)} L{points(72, y + 42)} "
                     f"L{points(37, y + 38)} L{points(40, y - 2)} Z", PAPER, INNER)
        drawn += path(f"M{points(72, y + 3)} V{num(y + 42)}", extra=stroke("#c6ccd6", 2.0))
        drawn += path(f"M{points(78, y + 9)} l20,-3", extra=stroke(INK, 4.0))
        drawn += path(f"M{points(45, y + 7)} l20,3 v12 l-20,-2 Z", "#a9c6e4", stroke("#7f93b8", 1.6))
        for number in range(4):
            drawn += path(f"M{points(79, y + 16 + number * 5.4)} l{points(19 - number % 2 * 5, -1.6)}",
                          extra=stroke("#8fa0bf", 1.9))
            if number < 2:
                drawn += path(f"M{points(46, y + 27 + number * 5.4)} l{points(19, 1.6)}", extra=stroke("#8fa0bf", 1.9))
        if 0 < page < 1:
            side = math.cos(page * math.pi)
            lift = 9 * math.sin(page * math.pi)
            drawn += path(f"M{points(72, y + 3)} Q{points(72 + side * 18, y - lift - 4, 72 + side * 33, y - 3 - lift)} "
                          f"L{points(72 + side * 34, y + 36 - lift)} Q{points(72 + side * 18, y + 38, 72, y + 42)} Z", "#f4f1e4",
                          INNER)
        wide = sketch["news"]
        sketch.on("body", f'<g transform="translate({points(72 * (1 - wide), 0)}) scale({num(wide)} 1)">{drawn}</g>')

    def drawReceiver(self, sketch):
        """The receiver of a telephone, whose cord comes out of the deck; taken up to the side of the head."""
        up, turn = sketch["receiver"], -16 * sketch["receiver"]
        ear, hook = sketch.at("head", 112, 84), sketch.at("body", 108, 120)
        x, y = (there * up + here * (1 - up) for here, there in zip(hook, ear))
        end = (x + 31 * math.cos(math.radians(turn)), y + 31 * math.sin(math.radians(turn)))
        deck = sketch.at("body", 112, 127)
        sag = 18 + 14 * up
        cord = (f"M{points(*end)} C{points(end[0] + 6, end[1] + 4, end[0] + 4 + 12 * sketch['cord'], end[1] + sag + 12)} "
                f"{points(deck[0] + 8 + 12 * sketch['cord'], deck[1] + 4, *deck)}")
        receiver = (path("M27,-3.4 h5 v6.8 h-5 Z", BRASS, stroke(BRASS_LINE, 1.8)) +
                    path("M-2,-12.5 L2.5,-12.5 C6,-6 10,-5.2 15,-5.2 H27 V5.2 H15 C10,5.2 6,6 2.5,12.5 L-2,12.5 Z", "#5a6377",
                         INNER) +
                    path("M7,-3.4 C11,-2.4 14,-2.2 24,-2.2", extra=stroke("#a9b4c8", 2.0)) +
                    path("M-3,-12.5 V12.5", extra=stroke(BRASS_LINE, 5.0)) + path("M-3,-12 V12", extra=stroke(BRASS_LIGHT, 2.2)))
        sketch.on(None, path(cord, extra=stroke("#4c2b16", 4.6)), path(cord, extra=stroke("#c98a55", 2.0)),
                  f'<g transform="translate({points(x, y)}) rotate({num(turn)})">{receiver}</g>')

    def drawLid(self, sketch):
        """What of his case stands behind him: its inside and the open lid."""
        size, lid = sketch["hole"], sketch["lid"]
        wide, rim = 58 * size, 138 - 40 * size
        sketch.layer()
        edge = stroke("#43240f", 2.4)
        if lid > 0:
            top = rim - 26 * lid * size
            sketch.on("floor", path(f"M{points(72 - wide, rim)} L{points(72 - wide + 5 * lid, top)} H{num(72 + wide - 5 * lid)} "
                                 f"L{points(72 + wide, rim)} Z", "#b23a48", edge),
                      path(f"M{points(72 - wide + 8, rim)} L{points(72 - wide + 11, top + 5 * lid)} "
                           f"H{num(72 + wide - 11)} L{points(72 + wide - 8, rim)}", extra=stroke("#d9737c", 1.8)))

    def drawCase(self, sketch):
        size, lid = sketch["hole"], sketch["lid"]
        wide, rim = 58 * size, 138 - 40 * size
        sketch.layer()
        edge = stroke("#43240f", 2.4)
        if lid <= 0:
            handle = f"M{points(72 - 13 * size, rim)} v{num(-8 * size)} h{num(26 * size)} v{num(8 * size)}"
            sketch.on("floor", path(handle, extra=stroke("#43240f", 6.4 * size + 0.6)),
                      path(handle, extra=stroke("#c98a55", 2.6 * size)))
        box = f"M{points(72 - wide, rim)} H{num(72 + wide)} V138.5 H{num(72 - wide)} Z"
        drawn = path(box, "url(#leather)", edge)
        if lid <= 0:
            drawn += path(f"M{points(72 - wide, rim + 11 * size)} H{num(72 + wide)}", extra=stroke("#43240f", 1.8))
        drawn += "".join(path(f"M{points(72 + side * wide, 138.5 - 11 * size)} V138.5 h{num(-side * 11 * size)} Z", BRASS,
                              stroke(BRASS_LINE, 1.8)) +
                         path(f"M{points(72 + side * wide, rim + 9 * size)} v{num(-9 * size)} h{num(-side * 9 * size)} Z", BRASS,
                              stroke(BRASS_LINE, 1.8)) +
                         path(f"M{points(72 + side * 30 * size - 4 * size, rim + 6 * size)} h{num(8 * size)} v{num(9 * size)} "
                              f"h{num(-8 * size)} Z", BRASS, stroke(BRASS_LINE, 1.7)) for side in (-1, 1))
        drawn += path(f"M{points(72 - 10 * size, rim + 19 * size)} h{num(20 * size)} v{num(12 * size)} h{num(-20 * size)} Z", CREAM,
                      stroke("#43240f", 1.6))
        sketch.on("floor", drawn)

    def drawAir(self, sketch):
        if 0 < sketch["dust"] < 1:
            sketch.layer()
            self.drawDust(sketch)
        if sketch["rise"] < 1:
            return
        sketch.layer()
        props.tears(sketch, 72, 86, 27, falls=26, colour=PALE_TEAR)
        props.sweat(sketch, 116, 60, aside=3, size=5.2, colour=PALE_TEAR)
        props.sound(sketch, 129, 70, -32)
        if sketch["ring"] > 0:
            x, y = sketch.at("head", 72, 84)
            for side in (-1, 1):
                for number in range(2):
                    shown = sketch["ring"] * 2 - number
                    if shown > 0.2:
                        d = (f"M{points(x + side * (51 + number * 7), y - 10 - number * 4)} "
                             f"q{points(side * 7, 10 + number * 4, 0, 20 + number * 8)}")
                        sketch.on(None, path(d, extra=stroke(BRASS_LINE, 6.2)), path(d, extra=stroke("#ffd65a", 3.2)))
        if sketch["confetti"] > 0:
            self.drawConfetti(sketch)

    def drawDust(self, sketch):
        grown = sketch["dust"]
        for side in (-1, 1):
            for x, y, size in ((30, 4, 7), (43, 6, 9), (54, 3, 6)):
                shrunk = size * math.sin(grown * math.pi)
                if shrunk < 2:
                    continue
                sketch.on("floor", ellipse(72 + side * (x + 8 * grown), 134 - y * grown - shrunk * 0.4, shrunk, shrunk * 0.8,
                                           "#f1e9da", stroke("#a5977c", 1.7)))

    def drawConfetti(self, sketch):
        t = sketch["confetti"]
        colours = ("#ffd23f", "#ff6b5c", "#66c7f4", "#7ddc7a", "#ff9ad0", PAPER)
        for number in range(20):
            aside, high = (number * 7 % 20 - 9.5) / 9.5, (number * number + 3 * number) % 20 / 20
            x = 72 + aside * (16 + 50 * easeOut(t))
            y = 44 - (24 + 30 * high) * easeOut(min(1.0, t * 1.6)) + max(0.0, t - 0.4) * (20 + 70 * (1 - high))
            x, y = max(2.0, min(142.0, x)), max(-9.0, y)
            sketch.on("floor", f'<g transform="translate({points(x, y)}) rotate({num(number * 50 + t * 260)})">' +
                      path("M-3.6,-2.2 h7.2 v4.4 h-7.2 Z", colours[number % 6], stroke("#59616f", 1.3)) + "</g>")

    # His ways of moving.

    @staticmethod
    def rattle(act, times=2, size=1.0):
        """Shaken by his own stop."""
        for number in range(times):
            act.also(0.05, {"body.x": size if number % 2 == 0 else -size}, overshoot=0, step=5)
        return act.also(0.05, {"body.x": 0.0}, overshoot=0, step=5)

    @staticmethod
    def clack(act, beats, *poses, first=1, pause=0.0):
        """Types: keys go down one after another, and the carriage moves on."""
        for number in range(beats):
            act.also(0.05, {"keys": float(first + number)}, *poses, overshoot=0, step=5)
            if pause:
                act.hold(pause)
        return act

    def types(self, act, mark, *poses, seconds=0.24, sheet=1.0):
        """The sheet goes in, and comes out with a mark."""
        act.also(0.12, {"sheet": 0.06, "keys": 1.0}, overshoot=0, step=BRISK)
        act.also(0.05, {mark: 1.0, "keys": 2.0, "head.y": act.pose["head.y"] + 2.0}, overshoot=0, step=5)
        act.also(0.05, {"keys": 3.0}, overshoot=0, step=5)
        return act.also(seconds, {"sheet": sheet, "keys": 0.0}, *poses, overshoot=0.18, step=BRISK)

    @staticmethod
    def rings(act, times=1, size=12.0):
        for _ in range(times):
            act.also(0.05, {"bell.turn": size, "ring": 0.5}, overshoot=0, step=5)
            act.also(0.05, {"bell.turn": -size, "ring": 1.0}, overshoot=0, step=5)
            act.also(0.05, {"bell.turn": size * 0.5, "ring": 1.0}, overshoot=0, step=5)
        return act.also(0.05, {"bell.turn": 0.0}, overshoot=0, step=5)

    # Coming and going: he travels in a case.

    def show(self, act):
        tucked = hands(-0.3, -0.2)
        act.cut({"rise": 0.0})
        for size in (0.3, 0.62, 1.0):
            act.to(0.1, {"rise": 0.0, "hole": size + 0.05}, overshoot=0, step=5).also(0.05, {"hole": size}, overshoot=0,
                                                                                      step=5).hold(0.1)
        act.also(0.1, {"dust": 0.6}, overshoot=0, step=5).also(0.1, {"dust": 1.0}, overshoot=0, step=5)
        act.also(0.05, {"dust": 0.0, "lid": 0.0}, overshoot=0, step=5)
        act.also(0.12, {"lid": 1.0}, overshoot=0.2, step=BRISK)
        act.also(0.2, tucked, {"rise": 0.62, "sheet": 0.5}, overshoot=0.1, step=BRISK).hold(0.16)
        act.also(0.16, {"rise": 0.83, "brow.y": 3.0}, overshoot=0.1, step=BRISK)
        act.also(0.12, {"eye.x": -1.0, "carriage.x": -6.0}, overshoot=0).hold(0.22)
        act.also(0.16, {"eye.x": 1.0, "carriage.x": 6.0}, overshoot=0).hold(0.22)
        act.also(0.12, {"eye.x": 0.0, "carriage.x": 0.0, "rise": 0.7, "eye.open": 0.4}, overshoot=0, step=BRISK)
        act.to(0.2, self.glad, hands(0.4, 0.6, 0.0), {"rise": 1.0, "hole": 0.9, "body.y": -10.0, "head.y": -4.0, "footL.y": 3.0,
                                                      "footR.y": 3.0, "sheet": 0.6}, ease=easeOut, overshoot=0, step=BRISK)
        act.also(0.16, hands(0.3, -0.1, 0.0), {"hole": 0.0, "body.y": 0.0, "head.y": 5.0, "footL.y": 0.0, "footR.y": 0.0,
                                               "dust": 0.5}, ease=easeIn, step=BRISK)
        act.also(0.1, {"dust": 1.0, "head.y": -3.0}, overshoot=0, step=5)
        act.also(0.05, {"dust": 0.0}, overshoot=0, step=5)
        self.rings(act).hold(0.1)
        act.to(0.24)

    def hide(self, act):
        act.to(0.16, {"carriage.x": 9.0, "eye.open": 0.6, "mouth.curve": 1.0}, overshoot=0.2, step=BRISK)
        act.also(0.12, {"carriage.x": -9.0, "sheet": 0.1}, overshoot=0, step=BRISK)
        self.rings(act)
        act.also(0.2, hands(-0.3, -0.2), {"ring": 0.0, "carriage.x": 0.0, "body.y": -8.0, "footL.y": 3.0, "footR.y": 3.0,
                                          "hole": 0.35, "eye.open": 0.3}, overshoot=0, step=BRISK)
        act.also(0.05, {"rise": 0.99, "lid": 1.0, "hole": 0.9}, overshoot=0, step=5)
        act.also(0.16, {"body.y": 0.0, "rise": 0.83, "hole": 1.0}, ease=easeIn, overshoot=0, step=BRISK)
        act.also(0.1, {"eye.open": 1.0, "eye.y": 0.0}, overshoot=0).hold(0.3)
        act.also(0.1, {"wink.R": 1.0}, overshoot=0, step=5).hold(0.12)
        act.also(0.16, {"rise": 0.0}, ease=easeIn, step=BRISK)
        act.also(0.12, {"lid": 0.0}, overshoot=0, step=BRISK)
        for size in (0.6, 0.3):
            act.hold(0.1).also(0.1, {"hole": size}, overshoot=0, step=5)
        act.also(0.05, {"dust": 0.4}, overshoot=0, step=5)
        act.to(0.1, {"rise": 0.0, "dust": 1.0}, overshoot=0, step=5)
        act.to(0.05, {"rise": 0.0}, overshoot=0, step=5)

    # What he feels.

    def pleased(self, act):
        # A heart, and a dance on stiff legs.
        self.types(act, "heart", self.glad, hands(0.35, 0.1, 0.0), {"head.y": -4.0})
        self.rings(act)
        for number in range(4):
            foot = "footL.y" if number % 2 else "footR.y"
            act.also(0.14, {"body.turn": 4.0 if number % 2 else -4.0, foot: -5.0, "wind": 0.25 * (number + 1), "blush": 1.0,
                            "carriage.x": -5.0 if number % 2 else 5.0, "ring": 0.0}, overshoot=0, step=BRISK)
            act.also(0.1, {"body.turn": 0.0, foot: 0.0, "head.y": -1.0 if number % 2 else -4.0}, overshoot=0, step=BRISK)
        self.rattle(act.also(0.12, {"carriage.x": 0.0, "head.y": -3.0}, overshoot=0, step=BRISK)).hold(0.9).rest()

    def sad(self, act):
        # The clockwork runs down, and the sheet hangs over his brow.
        down = {"eye.slant": 0.6, "eye.open": 0.78, "mouth.curve": -0.9, "brow.turn": -1.0, "brow.y": -1.0, "eye.y": 0.6,
                "blush": 0.1}
        act.to(0.24, {"head.y": -4.0, "sheet": 0.5, "brow.turn": -0.6, "mouth.curve": 0.0, "eye.slant": 0.3}, overshoot=0)
        for number in range(1, 4):
            act.also(0.24, {"head.y": -4.0 + number * 4.0, "wind": -0.25 * number, "limp": 0.3 * number,
                            "mouth.curve": -0.3 * number, "head.turn": -1.4 * number}, overshoot=0, ease=easeOut)
            act.hold(0.1)
        act.also(0.4, down, hands(0.02, -0.5, 0.2), {"limp": 0.9, "sheet": 0.46}, overshoot=0, ease=easeInOut).hold(0.3)
        act.also(0.56, {"tear": 1.0}, ease=easeIn, overshoot=0).hold(0.4)
        act.also(0.4, {"head.turn": 1.4, "tear": 0.6, "eye.x": 0.4}, overshoot=0, ease=easeInOut).hold(0.7)
        act.rest(0.56, overshoot=0.06)

    def surprised(self, act):
        # The head is shot up by its bellows, every key jumps, and the carriage goes to the end of its rail.
        act.to(0.1, {"head.y": 6.0, "eye.open": 0.3, "sheet": 0.05, "call": 1.0}, step=5, overshoot=0)
        act.also(0.16, self.shock, hands(0.35, 0.75, 0.0), {"head.y": -15.0, "sheet": 0.95, "keys": -1.0, "carriage.x": 10.0,
                                                            "blush": 0.0, "body.y": -4.0}, step=5, overshoot=0, ease=easeOut)
        act.also(0.1, {"body.y": 0.0, "head.y": -10.0, "ring": 0.6}, step=5, overshoot=0)
        act.also(0.1, {"head.y": -14.0, "ring": 1.0}, step=5, overshoot=0)
        self.rattle(act, 4).also(0.05, {"ring": 0.0}, overshoot=0, step=5).hold(0.8)
        act.also(0.24, {"keys": 0.0, "head.y": -4.0, "eye.open": 1.1, "mouth.open": 0.3}, hands(0.2, 0.3)).hold(0.2)
        act.also(0.16, {"carriage.x": 0.0}, overshoot=0).rest()

    def confused(self, act):
        # The carriage tries this side and that, and what comes out is no answer.
        self.types(act, "ask", {"head.turn": 7.0, "eye.x": -0.6, "eye.y": -0.6, "brow.cock": 5.0, "brow.turn": 0.3,
                                "mouth.curve": -0.3, "mouth.wide": 0.65}, hand("R", 0.05, 0.62, 0.4, turn=-30.0))
        for x in (-8.0, 8.0, -5.0):
            act.also(0.2, {"carriage.x": x, "eye.x": 0.6 if x > 0 else -0.6}, overshoot=0, ease=easeInOut).hold(0.16)
        act.also(0.1, {"wink.L": 0.8}, overshoot=0, step=5).hold(0.3).also(0.1, {"wink.L": 0.0, "wink.R": 0.8}, overshoot=0, step=5)
        act.hold(0.3).also(0.1, {"wink.R": 0.0, "carriage.x": 0.0}, overshoot=0, step=5).hold(0.2).rest()

    def uncertain(self, act):
        # He draws in his head, and pushes the sheet out and in again.
        act.to(0.4, {"head.y": 5.0, "eye.x": 0.8, "mouth.wide": 0.5, "mouth.curve": -0.25, "brow.turn": -0.8, "brow.y": 1.0,
                     "sweat": 0.5}, hands(-0.72, -0.02, 0.8), overshoot=0)
        for number in range(3):
            act.also(0.12, hand("L", -0.78, 0.08), hand("R", -0.66, -0.08), {"sheet": 0.6, "sweat": 0.6 + 0.13 * number},
                     overshoot=0, step=BRISK)
            act.also(0.12, hand("L", -0.66, -0.08), hand("R", -0.78, 0.08), {"sheet": 0.3}, overshoot=0, step=BRISK).hold(0.12)
        act.also(0.24, {"eye.x": -0.8, "head.turn": -4.0, "sweat": 1.0}, overshoot=0).hold(0.7).rest()

    def alert(self, act):
        # The head goes up like a periscope, looks round, and rings.
        act.to(0.12, {"head.y": 4.0, "eye.open": 0.5}, overshoot=0, step=BRISK)
        act.also(0.3, {"head.y": -14.0, "eye.open": 1.12, "brow.y": 4.0, "mouth.wide": 0.6, "mouth.curve": 0.2, "sheet": 0.2},
                 hand("R", 0.28, 0.85, 0.2, 1.0), overshoot=0.1)
        act.also(0.1, {"head.x": -5.0, "eye.x": -0.9, "carriage.x": -6.0}, overshoot=0, step=5).hold(0.22)
        act.also(0.12, {"head.x": 5.0, "eye.x": 0.9, "carriage.x": 6.0}, overshoot=0, step=BRISK).hold(0.22)
        act.also(0.1, {"head.x": 0.0, "eye.x": 0.0, "carriage.x": 0.0}, overshoot=0, step=5)
        self.rings(act, 2, 16.0).hold(0.5).rest()

    def congratulate(self, act):
        # Tape, cut small, from the machine.
        act.to(0.2, {"head.y": 6.0, "eye.smile": 1.0, "sheet": 0.0, "keys": 2.0}, hands(0.1, -0.45), overshoot=0)
        self.rattle(act, 4, 1.4)
        act.to(0.18, self.glad, hands(0.5, 0.85, 0.0), {"head.y": -8.0, "body.y": -9.0, "footL.y": 4.0, "footR.y": 4.0,
                                                        "confetti": 0.3,
                                                        "sheet": 0.1, "mouth.open": 0.9}, ease=easeOut, step=BRISK, overshoot=0)
        act.also(0.16, {"body.y": 0.0, "footL.y": 0.0, "footR.y": 0.0, "head.y": 3.0, "confetti": 0.5}, hands(0.62, 0.5),
                 ease=easeIn, step=BRISK, overshoot=0)
        self.rings(act.also(0.12, {"head.y": -3.0, "confetti": 0.6}, overshoot=0, step=BRISK))
        act.also(0.48, {"confetti": 0.85, "wind": 1.0, "ring": 0.0, "blush": 1.0}, hands(0.5, 0.85), overshoot=0,
                 ease=linear).hold(0.7).rest()

    def decline(self, act):
        # He crosses it out, and shakes his carriage.
        self.types(act, "cross", {"eye.open": 0.4, "mouth.curve": -0.6, "mouth.wide": 0.8, "brow.turn": 0.8, "brow.y": -1.0,
                                  "head.y": -3.0}, hand("R", 0.46, 0.62, 0.0))
        for number in range(4):
            side = -1 if number % 2 else 1
            act.also(0.16, {"carriage.x": side * 9.0, "head.x": side * -3.0, "eye.open": 0.0, "hand.x.R": 0.46 + side * 0.1},
                     overshoot=0, ease=easeInOut)
        act.also(0.12, {"carriage.x": 0.0, "head.x": 0.0, "eye.open": 0.6, "hand.x.R": 0.46}, overshoot=0)
        self.rattle(act).hold(0.5).rest()

    def acknowledge(self, act):
        # Ticked off.
        act.to(0.1, {"head.y": -4.0}, overshoot=0, step=5)
        self.types(act, "tick", {"head.y": 6.0, "eye.open": 0.15, "mouth.curve": 1.0}, seconds=0.16)
        act.also(0.12, {"head.y": -2.0, "eye.open": 0.9}, overshoot=0).hold(0.5).rest(0.32)

    def announce(self, act):
        # He strikes the bell with a finger, clears his throat, and the tune comes out.
        press = hand("R", -0.8, 0.84, 0.7, 0.6, turn=30.0)
        act.to(0.32, "proud", hand("R", -0.5, 1.0, 0.7, 0.6), overshoot=0)
        for _ in range(2):
            act.also(0.1, press, {"head.y": -3.0, "eye.open": 0.0}, overshoot=0, step=5)
            self.rings(act, 1, 16.0).also(0.1, hand("R", -0.5, 1.0), {"ring": 0.0, "head.y": -5.0}, overshoot=0, step=5)
        self.types(act, "tune", hands(0.55, 0.2, 0.0),
                   {"eye.open": 1.1, "mouth.open": 1.0, "mouth.curve": 0.6, "head.y": -8.0, "brow.y": 2.0},
                   sheet=0.9).hold(0.7).rest()

    def suggest(self, act):
        act.to(0.32, {"eye.y": -0.7, "eye.x": 0.6, "head.turn": 4.0, "brow.cock": 3.0}, hand("R", -0.42, 0.66, 0.8), overshoot=0)
        act.also(0.1, {"tashR.turn": -10.0}, overshoot=0, step=5).also(0.1, {"tashR.turn": 6.0}, overshoot=0, step=5).hold(0.1)
        self.types(act, "idea", {"eye.x": 0.0, "eye.y": 0.0, "eye.open": 1.15, "head.turn": 0.0, "tashR.turn": 0.0,
                                 "mouth.curve": 1.0,
                                 "mouth.open": 0.3, "head.y": -5.0, "brow.y": 3.0, "brow.cock": 0.0, "blush": 1.0},
                   hand("R", 0.3, 0.9, 0.6, 1.0))
        self.rings(act).also(0.08, {"ring": 0.0}, overshoot=0).hold(0.9).rest()

    def getAttention(self, act):
        # An alarm clock could do no better.
        act.to(0.12, {"head.y": 5.0}, overshoot=0, step=BRISK)
        for number in range(3):
            act.also(0.1, hands(0.3, 1.0, 0.0), {"body.y": -6.0, "head.y": -6.0, "mouth.open": 0.6, "mouth.curve": 0.8,
                                                 "eye.open": 1.12,
                                                 "brow.y": 4.0, "footL.y": 3.0, "footR.y": 3.0, "bell.turn": 16.0, "ring": 0.6,
                                                 "carriage.x": 7.0 if number % 2 else -7.0}, overshoot=0, step=5)
            act.also(0.05, {"bell.turn": -16.0, "ring": 1.0}, overshoot=0, step=5)
            act.also(0.1, hands(0.48, 0.7, 0.0), {"body.y": 0.0, "head.y": 0.0, "footL.y": 0.0, "footR.y": 0.0, "bell.turn": 8.0},
                     overshoot=0, step=5)
        act.also(0.1, {"bell.turn": 0.0, "carriage.x": 0.0}, overshoot=0, step=5)
        self.rattle(act, 4).hold(0.5).rest()

    def greet(self, act):
        # He lifts his carriage as others lift their hats.
        under = hand("R", 0.1, 1.12, 0.3, turn=-20.0)
        act.to(0.3, under, {"mouth.curve": 1.0, "mouth.open": 0.3, "head.turn": -3.0}, overshoot=0)
        act.also(0.2, hand("R", 0.12, 1.45), {"carriage.y": -9.0, "carriage.turn": -11.0, "brow.y": 3.0, "sheet": 0.2},
                 overshoot=0.12, step=BRISK).hold(0.1)
        act.also(0.3, {"head.turn": 5.0, "head.y": 5.0, "eye.open": 0.0, "body.turn": 2.0}, hand("L", -0.5, -0.1),
                 overshoot=0).hold(0.3)
        act.also(0.24, {"head.turn": -3.0, "head.y": 0.0, "eye.open": 1.0, "body.turn": 0.0, "blush": 1.0}, overshoot=0)
        act.also(0.12, under, {"carriage.y": 0.0, "carriage.turn": 0.0, "head.y": 2.0}, ease=easeIn, overshoot=0, step=BRISK)
        self.rings(act).also(0.05, {"ring": 0.0}, overshoot=0, step=5).hold(0.3).rest()

    def wave(self, act):
        # As even as a metronome, and the carriage keeps time.
        act.to(0.24, hand("L", 0.14, 1.05, 0.0), {"mouth.curve": 1.0, "mouth.open": 0.4, "head.turn": -3.0}, overshoot=0.1)
        for number in range(5):
            act.also(0.14, hand("L", 0.14, 1.05) if number % 2 else hand("L", 0.56, 0.86),
                     {"carriage.x": 5.0 if number % 2 else -5.0}, overshoot=0, step=BRISK).hold(0.06)
        act.rest()

    def explain(self, act):
        # Point by point, and each is typed.
        act.to(0.32, hand("L", 0.4, 0.0, 0.1), hand("R", 0.34, 0.72, 0.6, 1.0), {"sheet": 0.9, "typed": 0.2, "eye.y": -0.3},
               overshoot=0.1)
        for number in range(2, 5):
            act.hold(0.3).also(0.12, hand("R", 0.34, 0.6), {"carriage.x": -3.0 * number}, overshoot=0, step=BRISK)
            act.also(0.12, hand("R", 0.34, 0.74), {"typed": 0.22 * number, "eye.y": 0.0}, overshoot=0, step=BRISK)
        act.hold(0.3).also(0.2, {"carriage.x": 0.0}, hands(0.5, 0.1, 0.0), overshoot=0).hold(0.4).rest()

    # At rest and speaking.

    def blink(self, act):
        # Shutters: down with a clack, a jolt, and up.
        pose = {"eye.open": 0.0}
        act.to(0.04, {"eye.open": 0.4}, overshoot=0, step=4).also(0.04, pose, {"carriage.y": 1.0}, overshoot=0, step=4)
        act.also(0.06, {"carriage.y": 0.0}, overshoot=0, step=6).also(0.05, {"eye.open": 0.5}, overshoot=0, step=5).rest(0.08)

    def speak(self, act):
        # As far as the line goes; then back, with a finger raised.
        act.hold(0.3)
        for x in (-3.0, -6.0, -9.0):
            act.also(0.1, {"carriage.x": x}, overshoot=0, step=5).hold(0.4)
        act.also(0.24, {"carriage.x": 0.0}, hand("R", 0.4, 0.5, 0.4, 1.0), overshoot=0).hold(0.6)
        act.also(0.16, hand("R", 0.4, 0.3), overshoot=0).also(0.16, hand("R", 0.4, 0.5), overshoot=0).hold(0.4).rest(0.32)

    # At work.

    def think(self, act):
        # He twirls his moustache; meanwhile a finger drums on the keys, and what comes out are dots.
        act.to(0.4, {"eye.x": -0.5, "eye.y": -0.8, "mouth.wide": 0.6, "mouth.curve": 0.1, "brow.cock": 3.0, "sheet": 0.06,
                     "head.turn": 4.0}, hand("R", -0.42, 0.64, 0.8), hand("L", -0.42, -0.12, 0.4), overshoot=0)
        act.also(0.05, {"dots": 0.01}, overshoot=0, step=5)
        for number in range(1, 4):
            act.also(0.1, {"tashR.turn": -12.0, "keys": float(number), "hand.y.L": -0.16}, overshoot=0, step=5)
            act.also(0.1, {"tashR.turn": 4.0, "keys": 0.0, "hand.y.L": -0.08, "sheet": 0.06 + 0.25 * number, "dots": number / 3},
                     overshoot=0, step=5).hold(0.3)
        act.hold(0.3)

    def read(self, act):
        # The newspaper: only his eyes and the moustache's tips are seen, and the carriage goes along the lines.
        act.to(0.4, hands(-0.14, -0.3, 0.8), {"sheet": 0.2, "eye.y": 0.5}, overshoot=0)
        act.also(0.3, {"news": 1.0, "eye.y": 0.8, "eye.x": -0.7, "eye.open": 0.85, "carriage.x": 6.0}, overshoot=0.1)
        for _ in range(2):
            act.also(0.48, {"eye.x": 0.7, "carriage.x": -6.0}, overshoot=0, ease=linear)
            act.also(0.12, {"eye.x": -0.7, "carriage.x": 6.0, "eye.y": 0.9}, overshoot=0, step=BRISK).hold(0.1)
        act.also(0.4, {"page": 1.0, "eye.x": 0.0, "carriage.x": 0.0, "brow.y": 2.0}, overshoot=0, ease=linear)
        act.also(0.08, {"page": 0.0}, overshoot=0).hold(0.6)

    def readReturn(self, act):
        act.also(0.2, {"news": 0.0, "eye.y": 0.0}, ease=easeIn, overshoot=0).rest(0.24)

    def write(self, act):
        # What he was made for.
        act.to(0.3, "on the keys", {"sheet": 0.2, "typed": 0.0, "carriage.x": 9.0}, overshoot=0)
        beat = 0
        for line in range(1, 4):
            for number in range(1, 7):
                beat += 1
                left, right = (-0.02, -0.2) if number % 2 else (-0.2, -0.02)
                act.also(0.07, {"keys": float(beat % 3 + 1), "hand.y.L": left, "hand.y.R": right, "carriage.x": 9.0 - number * 3.0,
                                "head.y": 1.0 + number % 2, "typed": (line - 1 + number / 6) / 5}, overshoot=0, step=7)
            if line < 3:
                act.also(0.1, {"keys": 0.0, "crank.turn": 24.0, "bell.turn": 12.0, "eye.y": 0.2}, hand("L", -0.3, 0.1), overshoot=0,
                         step=5)
                act.also(0.14, {"carriage.x": 9.0, "crank.turn": 0.0, "bell.turn": 0.0, "sheet": 0.2 + 0.16 * line, "eye.y": 0.8},
                         hand("L", -0.42, -0.16), overshoot=0, step=7)
        act.also(0.16, {"keys": 0.0, "sheet": 0.62, "carriage.x": 0.0, "eye.y": 0.0, "eye.open": 1.0, "mouth.curve": 1.0},
                 hands(-0.42, -0.16), overshoot=0).hold(0.5)

    def writeReturn(self, act):
        self.rings(act).also(0.05, {"ring": 0.0}, overshoot=0, step=5).rest(0.24)

    def search(self, act):
        # A loupe swings down before his eye.
        act.to(0.3, {"loupe": 0.4, "wink.L": 0.3, "head.y": -4.0}, hand("R", 0.05, 0.9, 0.8), overshoot=0)
        act.also(0.16, {"loupe": 1.0, "eye.x": -0.9, "head.turn": -4.0, "head.x": -4.0, "mouth.wide": 0.7},
                 hand("R", 0.16, -0.42, 0.5), overshoot=0, step=BRISK)
        mark = act.mark()
        act.hold(0.4)
        for x in (0.0, 4.0):
            act.also(0.24, {"eye.x": x * 0.225, "head.turn": x, "head.x": x, "carriage.x": -x}, overshoot=0,
                     ease=easeInOut).hold(0.3)
        act.also(0.32, {"eye.x": -0.9, "head.turn": -4.0, "head.x": -4.0, "carriage.x": 4.0}, overshoot=0, ease=easeInOut)
        act.again(mark, 70).rest()

    def process(self, act):
        # Under full spring: the key whirls, keys and sheet go by themselves, and all of him shakes.
        act.to(0.24, hands(0.34, 0.1, 0.9), {"head.y": 2.0, "eye.y": 0.5, "eye.x": 0.5, "mouth.wide": 0.6, "brow.turn": 0.5,
                                             "sheet": 0.3, "typed": 0.4}, overshoot=0)
        mark = act.mark()
        for number in range(1, 10):
            act.also(0.07, {"keys": float(number % 3 + 1), "wind": number / 4, "body.x": float(number % 2),
                            "carriage.x": -float(number),
                            "head.y": 1.0 + number % 2, "sheet": 0.3 + number * 0.066, "typed": 0.4 + 0.06 * number,
                            "eye.x": 0.5 - number * 0.11}, overshoot=0, step=7)
        for number in range(1, 4):
            act.also(0.07, {"keys": 0.0, "wind": 2.25 + number / 4, "body.x": 0.0, "carriage.x": -9.0 + number * 3.0,
                            "sheet": 0.9 - 0.2 * number, "typed": 0.94 - 0.18 * number, "eye.x": -0.5 + number / 3}, overshoot=0,
                     step=7)
        act.again(mark, 80).rest()

    # Listening and hearing.

    def startListening(self, act):
        # The receiver is taken up, a fresh sheet stands ready.
        act.to(0.24, {"head.y": 2.0, "eye.y": 0.7, "eye.x": 0.7}, hand("R", 0.2, -0.24, 0.9), anticipate=0.1)
        act.also(0.06, {"receiver": 0.05}, overshoot=0, step=BRISK)
        act.also(0.24, {"receiver": 1.0, "eye.x": 0.8, "eye.y": -0.1, "eye.open": 1.12, "brow.y": 2.0, "brow.cock": 3.0,
                        "head.turn": 6.0, "head.x": -2.0, "head.y": -3.0, "body.turn": 2.0, "mouth.wide": 0.7, "sheet": 0.8,
                        "typed": 0.0}, hand("R", 0.36, 0.68, 0.9), overshoot=0.1)
        self.hearken(self.rattle(act))

    def stopListening(self, act):
        # Hung up, and the bell says so.
        act.also(0.24, {"receiver": 0.05, "head.turn": 0.0, "head.y": 2.0, "eye.y": 0.7}, hand("R", 0.2, -0.24), overshoot=0)
        act.also(0.06, {"receiver": 0.0, "head.x": 0.0, "body.turn": 0.0}, overshoot=0, step=BRISK)
        self.rings(act, 1, 8.0).also(0.05, {"ring": 0.0}, overshoot=0, step=5).rest(0.24)

    def hearing_1(self, act):
        # He takes it down.
        act.to(0.24, "on the keys", {"eye.y": 0.2, "carriage.x": 4.0}, overshoot=0)
        self.clack(act, 3, pause=0.08).also(0.1, {"keys": 0.0, "carriage.x": -4.0}, overshoot=0).hold(0.2).rest(0.24)

    def hearing_2(self, act):
        for _ in range(2):
            act.to(0.12, {"head.y": 5.0, "eye.open": 0.6, "mouth.curve": 1.0}, overshoot=0, step=BRISK).hold(0.1)
            act.to(0.12, {"head.y": -2.0, "brow.y": 1.0}, overshoot=0, step=BRISK).hold(0.06)
        act.rest(0.2)

    def hearing_3(self, act):
        # One brow, and the bell gives a small sound.
        act.to(0.16, {"head.turn": -4.0, "eye.x": -0.5, "brow.cock": 5.0, "mouth.curve": 1.0}, overshoot=0.1)
        self.rings(act, 1, 8.0).also(0.08, {"ring": 0.0}, overshoot=0).hold(0.6).rest(0.24)

    # Pointing and looking, with an arrow on the sheet; right is the viewer's left.

    def gestureUp(self, act):
        self.types(act, "up", self.arms[1].aimed(0.42, 0.9, -88.0), hand("L", 0.3, -0.3), {"eye.y": -0.8, "head.y": -4.0},
                   seconds=0.2)
        self.rattle(act).hold(0.5)

    def gestureDown(self, act):
        self.types(act, "down", self.arms[1].aimed(0.36, -0.1, 84.0), hand("L", 0.3, -0.3),
                   {"eye.y": 0.85, "head.y": 4.0, "eye.open": 0.9}, seconds=0.2)
        self.rattle(act).hold(0.5)

    def gestureRight(self, act):
        self.types(act, "left", self.arms[0].aimed(0.46, 0.2, 0.0), {"eye.x": -0.85, "head.turn": -3.0, "carriage.x": -8.0},
                   seconds=0.2)
        self.rattle(act).hold(0.5)

    def gestureLeft(self, act):
        self.types(act, "right", self.arms[1].aimed(0.46, 0.2, 0.0), {"eye.x": 0.85, "head.turn": 3.0, "carriage.x": 8.0},
                   seconds=0.2)
        self.rattle(act).hold(0.5)

    def lookUp(self, act):
        act.to(0.24, {"eye.y": -0.95, "head.y": -8.0, "brow.y": 2.0, "sheet": 0.2}, overshoot=0.1).hold(0.5)

    def lookDown(self, act):
        act.to(0.24, {"eye.y": 0.95, "head.y": 5.0, "eye.open": 0.85, "sheet": 0.5}, overshoot=0.1).hold(0.5)

    def lookRight(self, act):
        act.to(0.1, {"eye.x": -0.95}, overshoot=0).also(0.2, {"head.x": -4.0, "head.turn": -2.9, "carriage.x": -7.0},
                                                        overshoot=0.1).hold(0.5)

    def lookLeft(self, act):
        act.to(0.1, {"eye.x": 0.95}, overshoot=0).also(0.2, {"head.x": 4.0, "head.turn": 2.9, "carriage.x": 7.0},
                                                       overshoot=0.1).hold(0.5)

    # Going: he marches, and the carriage is late.

    def moveUp(self, act):
        # Blown up by his own bellows.
        act.to(0.16, {"head.y": 6.0, "body.squash": -0.05}, hands(0.1, -0.45), overshoot=0)
        act.also(0.16, {"head.y": -13.0, "body.squash": 0.0, "eye.y": -0.8, "sheet": 0.5, "footL.y": 4.0, "footR.y": 2.0,
                        "body.y": -5.0}, hands(0.3, 0.5, 0.0), overshoot=0, step=BRISK).hold(0.1)

    def moveDown(self, act):
        # The sheet as a parachute.
        act.to(0.16, {"head.y": -6.0, "eye.y": 0.85, "brow.y": 3.0}, hands(0.2, 0.7, 0.6), overshoot=0)
        act.also(0.2, {"sheet": 1.0, "typed": 0.0, "footL.y": 4.0, "footR.y": 1.0, "footL.x": -3.0, "footR.x": 3.0, "body.y": -4.0,
                       "mouth.open": 0.3, "mouth.wide": 0.5}, hands(0.15, 0.85, 0.9), overshoot=0.1).hold(0.1)

    def moveRight(self, act):
        act.to(0.16, {"body.turn": 2.0, "eye.x": -0.9}, overshoot=0)
        act.also(0.2, {"body.turn": -5.0, "head.x": -4.0, "carriage.x": 8.0, "footL.y": -5.0, "footL.x": -5.0, "wind": 0.5,
                       "eye.open": 0.85}, hand("L", 0.42, 0.15), hand("R", 0.3, -0.3), overshoot=0, step=BRISK).hold(0.1)

    def moveLeft(self, act):
        act.to(0.16, {"body.turn": -2.0, "eye.x": 0.9}, overshoot=0)
        act.also(0.2, {"body.turn": 5.0, "head.x": 4.0, "carriage.x": -8.0, "footR.y": -5.0, "footR.x": 5.0, "wind": 0.5,
                       "eye.open": 0.85}, hand("R", 0.42, 0.15), hand("L", 0.3, -0.3), overshoot=0, step=BRISK).hold(0.1)

    # Passing the time.

    def idle1_1(self, act):
        # The bellows breathe.
        act.breathe(1)
        Act.blink(act)
        act.breathe(1).rest(0.16)

    def idle1_2(self, act):
        # The carriage wanders off by itself; he fetches it back.
        for x in (-3.0, -6.0, -9.0):
            act.also(0.1, {"carriage.x": x}, overshoot=0, step=5).hold(0.3)
        act.also(0.1, {"eye.x": -0.6, "eye.y": -0.8}, overshoot=0).hold(0.5)
        act.also(0.16, {"carriage.x": 2.0, "crank.turn": 18.0}, overshoot=0,
                 step=BRISK).also(0.1, {"carriage.x": 0.0, "crank.turn": 0.0}, overshoot=0)
        act.rest(0.24).hold(0.4)

    def idle1_3(self, act):
        # The moustache twitches.
        act.hold(0.4)
        for turn in (9.0, -3.0, 9.0):
            act.to(0.06, {"tashL.turn": turn, "tashR.turn": -turn}, overshoot=0, step=BRISK)
        act.rest(0.18).hold(0.6)

    def idle1_4(self, act):
        # A turn of the key.
        act.to(0.16, {"eye.x": 0.8}, overshoot=0)
        for number in range(1, 5):
            act.also(0.08, {"wind": number / 8}, overshoot=0).hold(0.12)
        Act.blink(act)
        act.rest(0.24).hold(0.3)

    def idle2_1(self, act):
        # He winds himself up.
        act.to(0.4, {"eye.x": 0.9, "head.x": -3.0, "mouth.wide": 0.7}, hand("R", 0.2, 0.7, 0.9), overshoot=0)
        for number in range(1, 5):
            act.also(0.1, hand("R", 0.3, 0.9), {"wind": number * 0.5 - 0.25, "head.y": -float(number)}, overshoot=0, step=5)
            act.also(0.1, hand("R", 0.2, 0.7), {"wind": number * 0.5}, overshoot=0, step=5).hold(0.1)
        act.also(0.2, hand("R", 0.16, -0.42, 0.5), {"eye.open": 1.15, "brow.y": 3.0, "eye.x": 0.0, "mouth.curve": 1.0}, overshoot=0)
        self.rattle(act, 4).hold(0.3).rest()

    def idle2_2(self, act):
        # He polishes his bell, and tries it.
        act.to(0.4, {"eye.y": 0.7, "head.y": 2.0, "eye.open": 0.8}, hand("R", -0.8, 0.7, 0.8), overshoot=0)
        for number in range(4):
            act.also(0.12, {"bell.turn": -6.0 if number % 2 else 6.0, "hand.x.R": -0.7 if number % 2 else -0.9}, overshoot=0,
                     step=BRISK)
        act.also(0.2, hand("R", 0.16, -0.42, 0.5), {"bell.turn": 0.0, "head.y": -3.0, "eye.y": 0.0, "eye.open": 1.0}, overshoot=0)
        self.rings(act).also(0.08, {"ring": 0.0, "mouth.curve": 1.0, "blush": 1.0}, overshoot=0).hold(0.6).rest()

    def idle2_3(self, act):
        # Dust between the keys: a deep breath, and away with it.
        act.to(0.3, {"eye.y": 0.95, "head.y": 2.0, "brow.turn": 0.4}, overshoot=0).hold(0.3)
        act.also(0.4, {"head.y": -10.0, "mouth.open": 0.3, "mouth.wide": 0.5, "eye.open": 0.5}, overshoot=0,
                 ease=easeInOut).hold(0.1)
        act.also(0.12, {"head.y": 5.0, "mouth.open": 0.2, "mouth.wide": 0.35, "eye.open": 0.0, "dust": 0.4, "keys": 2.0},
                 overshoot=0, step=BRISK)
        act.also(0.12, {"dust": 0.7, "keys": 0.0}, overshoot=0, step=BRISK).also(0.16, {"dust": 1.0}, overshoot=0)
        act.also(0.08, {"dust": 0.0}, overshoot=0)
        act.also(0.2, {"head.y": 0.0, "eye.open": 1.0, "eye.y": 0.6, "mouth.open": 0.0, "mouth.wide": 1.0,
                       "mouth.curve": 1.0}).hold(0.4).rest()

    def idle3_1(self, act):
        # A yawn, as long as the bellows are.
        act.to(0.5, {"eye.open": 0.4, "head.y": 3.0, "mouth.open": 0.2, "mouth.wide": 0.6, "mouth.curve": 0.1}, overshoot=0)
        act.also(0.7, {"eye.open": 0.0, "mouth.open": 1.0, "mouth.wide": 0.85, "head.y": -12.0, "sheet": 0.7, "brow.y": 2.0},
                 hand("R", -0.36, 0.62, 0.1), hand("L", 0.4, 0.5, 0.0), ease=easeInOut, overshoot=0)
        self.rattle(act).hold(0.5)
        act.also(0.4, {"head.y": 3.0, "mouth.open": 0.0, "sheet": 0.3, "eye.open": 0.3}, ease=easeIn,
                 overshoot=0).hold(0.3).rest(0.5)

    def idle3_2(self, act):
        # He runs down, and types in his sleep.
        for number in range(1, 5):
            act.also(0.3, {"eye.open": 1.0 - 0.25 * number, "head.y": 1.6 * number, "wind": -0.125 * number,
                           "carriage.x": -2.0 * number}, overshoot=0, ease=easeOut).hold(0.16)
        act.also(0.3, {"head.turn": 5.0, "brow.y": -1.0, "mouth.wide": 0.6, "sheet": 0.06}, overshoot=0).also(0.08, {"zed": 1.0},
                                                                                                              overshoot=0)
        mark = act.mark()
        act.also(0.7, {"sheet": 0.9, "head.y": 3.0, "mouth.open": 0.16}, overshoot=0, ease=easeInOut).hold(0.4)
        act.also(0.7, {"sheet": 0.3, "head.y": 7.0, "mouth.open": 0.0}, overshoot=0, ease=easeInOut).hold(0.4)
        act.again(mark, 75).rest(0.5)
