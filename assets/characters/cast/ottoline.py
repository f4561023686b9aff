"""Ottoline, an octopus of good family: unhurried, amused, and never short of a hand. Her arms and legs are springs that
lag behind her and curl, her skin takes the colour of what she feels, and where others are startled she inks. Hat, pearls,
fan, lorgnette, ear trumpet and tea are hers."""

import math

import props
from character import Character, hand, hands
from draw import Sketch, ellipse, mixed, num, path, points, radial, smooth, stroke
from features import Arm, Eye, Mouth, brow
from rig import BRISK, Joints, Swing, easeIn, easeInOut, easeOut, linear

LINE = "#3b1f5e"
INNER = stroke(LINE, 2.2)
GOLD, GOLD_LINE = "#f0be4a", "#6d4a12"
CUP = "#ffd9ee"
FLOOR = 132.0

# Her skin when she is sad, at rest and flattered; between them it is mixed. Light, middle, dark.
SKINS = (("#c6d2f2", "#8595cf", "#56639f"), ("#dcc2fb", "#a97bdc", "#7446b0"), ("#ffc9e6", "#d97fc0", "#a14a92"))
TINTS = 5


def skin(tint):
    """The colours of a tint from -1 (sad) to 1 (flattered)."""
    number = round((max(-1.0, min(1.0, tint)) + 1) / 2 * (TINTS - 1)) / (TINTS - 1) * 2
    low = min(1, int(number))
    return tuple(mixed(a, b, number - low) for a, b in zip(SKINS[low], SKINS[low + 1]))


def limb(spine, thick, thin, fill, light, cups=0, first=0.35):
    """A tapering arm along its spine, with suckers on the side `cups` (-1, 1 or 0 for none) from the share `first` on."""
    count = len(spine)
    normals = []
    for number in range(count):
        before, after = spine[max(0, number - 1)], spine[min(count - 1, number + 1)]
        dx, dy = after[0] - before[0], after[1] - before[1]
        length = math.hypot(dx, dy) or 1e-6
        normals.append((-dy / length, dx / length))
    wide = [thick + (thin - thick) * number / (count - 1) for number in range(count)]

    def beside(number, share):
        (x, y), (nx, ny) = spine[number], normals[number]
        return x + nx * wide[number] * share, y + ny * wide[number] * share
    (x, y), (nx, ny) = spine[-1], normals[-1]
    tip = (x + ny * thin * 0.55, y - nx * thin * 0.55)
    edge = [beside(number, 0.5) for number in range(count)] + [tip] + [beside(number, -0.5) for number in range(count - 1, -1, -1)]
    shine = [beside(number, -0.2 * (cups or 1)) for number in range(1, round(count * 0.7))]
    suckers = ""
    if cups:
        for number in range(round(count * first), count - 1, 2):
            x, y = beside(number, 0.2 * cups)
            suckers += ellipse(x, y, wide[number] * 0.19, wide[number] * 0.19, CUP)
    return path(smooth(edge, closed=False), fill, INNER) + path(smooth(shine, closed=False), extra=stroke(light, thick * 0.2)) + suckers


class Smile(Mouth):
    """A mouth so near to the chin that little lies between."""

    def box(self):
        left, top, right, bottom = super().box()
        return left, top, right, bottom - 1.8


class Tentacle(Arm):
    """An arm without bones: from the shoulder in a bow to where a hand would be, and on from there in a tip that curls
    (`fist`), stretches (`point`), and hangs back behind every movement."""

    margin = 24
    tip = 21.0

    def __init__(self, side, key, x, y, length, width, spread):
        super().__init__(side, x, y, length, width, 0, "", "", LINE, spread=spread)
        self.key = key

    @property
    def suffix(self):
        return self.key

    def spine(self, sketch):
        x0, y0 = self.x, self.y
        x1, y1 = self.place(sketch)
        out = sketch[f"out.{self.key}"] if self.key in "AB" else 1.0
        x1, y1 = x0 + (x1 - x0) * out, y0 + (y1 - y0) * out
        dx, dy = x1 - x0, y1 - y0
        reach = math.hypot(dx, dy) or 1e-6
        bow = max(reach * 0.22, (self.length - reach) * 0.55)
        nx, ny = -dy / reach, dx / reach
        if nx * self.side + ny * 0.8 < 0:
            nx, ny = -nx, -ny
        cx, cy = (x0 + x1) / 2 + nx * bow, (y0 + y1) / 2 + ny * bow
        found = []
        for number in range(8):
            t = number / 7
            found.append(((1 - t) ** 2 * x0 + 2 * t * (1 - t) * cx + t * t * x1, (1 - t) ** 2 * y0 + 2 * t * (1 - t) * cy + t * t * y1))
        fist, point = sketch[f"fist.{self.key}"], sketch[f"point.{self.key}"]
        angle = math.atan2(y1 - cy, x1 - cx) + self.side * math.radians(sketch[f"hand.turn.{self.key}"])
        # What points down or aside curls up, what points up curls outward; between the two it is straight.
        way = -self.side * max(-1.0, min(1.0, (math.sin(angle) + 0.88) / 0.2))
        total = way * math.radians(70 + 260 * fist) * (1 - point)
        lag = (sketch[f"lag.x.{self.key}"] * self.side * self.length, -sketch[f"lag.y.{self.key}"] * self.length)
        total += max(-1.9, min(1.9, (-math.sin(angle) * lag[0] + math.cos(angle) * lag[1]) / self.tip * 1.6))
        steps = 9
        length = self.tip * (1 + 0.15 * fist + 0.1 * point) * (0.3 + 0.7 * out)
        x, y = x1, y1
        for number in range(steps):
            angle += total / steps * (0.5 + number / steps)
            x, y = x + math.cos(angle) * length / steps, y + math.sin(angle) * length / steps
            found.append((x, y))
        return found

    def drawn(self, sketch, tint, dark=0.0):
        light, middle, deep = tint
        return limb(self.spine(sketch), self.width, 3.4, mixed(middle, deep, dark), mixed(light, middle, 0.3 + dark), self.side, 0.3)


def leg(side, x, y, length, start, bow, curl, sway, lift, jet):
    """The spine of a leg: `start` degrees outward from straight down, bowing and curling outward and up; swaying to the
    viewer's right, lifted, or streaming down behind her."""
    found, steps = [(x, y)], 11
    length *= 1 - 0.45 * jet
    for number in range(steps):
        t = (number + 0.5) / steps
        outward = (start + bow * t + curl * t ** 4) * (1 - jet) + (8 + 6 * t) * jet + lift * t * t * 30
        angle = math.radians(90 - side * outward - sway * t * t * 30)
        x, y = x + math.cos(angle) * length / steps, y + math.sin(angle) * length / steps
        found.append((x, y))
    return found


# The legs of one side from the back to the front: base beside the middle and height, length, start, bow, curl.
LEGS = ((26, 106, 50, 42, 50, 190), (17, 108, 44, 22, 66, 200), (7, 108, 34, 8, 66, 230))


def bubble(x, y, r):
    return (ellipse(x, y, r, r, "#dff3ff", stroke("#5577b5", 1.6)) +
            (path(f"M{points(x - r * 0.55, y - r * 0.1)} Q{points(x - r * 0.5, y - r * 0.55, x - r * 0.05, y - r * 0.58)}",
                  extra=stroke("#ffffff", max(1.4, r * 0.22))) if r > 2.5 else ""))


def fan(x, y, angle, opened):
    """A fan, held at (x, y), whose middle goes along the angle (degrees clockwise from straight up)."""
    half = 66 * opened + 3
    r = 29
    edge, ribs = "", ""
    count = 6
    for number in range(count + 1):
        a = math.radians(-half + 2 * half * number / count)
        px, py = math.sin(a) * r, -math.cos(a) * r
        if number:
            b = math.radians(-half + 2 * half * (number - 0.5) / count)
            edge += f" Q{points(math.sin(b) * r * 1.13, -math.cos(b) * r * 1.13, px, py)}"
            ribs += path(f"M0,0 L{points(math.sin(b) * r * 0.95, -math.cos(b) * r * 0.95)}", extra=stroke("#b8304f", 1.3))
        else:
            edge = f"M0,0 L{points(px, py)}"
    lace = "M" + " L".join(points(math.sin(math.radians(-half + 2 * half * n / 12)) * r * 0.74,
                                  -math.cos(math.radians(-half + 2 * half * n / 12)) * r * 0.74) for n in range(13))
    return (f'<g transform="translate({points(x, y)}) rotate({num(angle)})">' + path(edge + " Z", "#f2647f", stroke("#6e1730", 2.0)) +
            (ribs + path(lace, extra=stroke("#ffe3c2", 2.4)) if opened > 0.25 else "") + ellipse(0, 0, 2.6, 2.6, GOLD,
                                                                                                 stroke(GOLD_LINE, 1.3)) +
            "</g>")


def cup(x, y, size, steam):
    drawn = ""
    if steam > 0 and size > 0.9:
        for dx, phase in ((-3, 0.0), (4, 0.5)):
            rise = (steam + phase) % 1.0
            d = f"M{points(dx, -9 - 4 * rise)} q{points(3.5, -3)} 0,-6 q{points(-3.5, -3)} 0,-6"
            drawn += path(d, extra=stroke("#8793ad", 4.0)) + path(d, extra=stroke("#ffffff", 2.2))
    return (f'<g transform="translate({points(x, y)}) scale({num(size)})">{drawn}' +
            path("M8,-4 c8,-2 8,9 -1,7", extra=stroke("#4a3f66", 4.6)) + path("M8,-4 c8,-2 8,9 -1,7", extra=stroke("#fffaf2", 1.8)) +
            path("M-10,-7 h20 c0,9 -3,14 -10,14 c-7,0 -10,-5 -10,-14 Z", "#fffaf2", stroke("#4a3f66", 2.0)) +
            path("M-8.6,-1 q8.6,4 17.2,0", extra=stroke("#e2718f", 2.0)) + ellipse(0, -7, 10, 2.6, "#9a5a2a",
                                                                                   stroke("#4a3f66", 1.8)) + "</g>")


def quill(x, y):
    return (f'<g transform="translate({points(x, y)}) rotate(28)">' +
            path("M0,0 L1.5,-9 C-6,-18 -3,-32 6,-40 C10,-30 11,-18 3.5,-9 Z", "#fff6de", stroke("#6a5330", 1.8)) +
            path("M0,0 C2,-14 3,-26 6,-37", extra=stroke("#6a5330", 1.3)) + "</g>")


def handkerchief(x, y, angle, size):
    return (f'<g transform="translate({points(x, y)}) rotate({num(angle)}) scale({num(1.35 * size)})">' +
            path("M0,-3 L11,2 q-2,4 1,8 q-5,0 -6,5 q-4,-3 -7,1 q-1,-5 -6,-5 q4,-3 1,-8 Z", "#ffffff", stroke("#6a6f96", 1.8)) +
            path("M1,1 l4,8 M-1,2 l-2,8", extra=stroke("#c3c8e2", 1.4)) + "</g>")


def trumpet(size):
    """Of brass, at the right side of her head."""
    return (f'<g transform="translate(102 66) scale({num(size * 0.84)})">' +
            path("M-1,-2.4 C10,-4 16,-10 21,-24 L36,-8 C24,-4 14,2 0,3.4 Z", GOLD, stroke(GOLD_LINE, 2.0)) +
            path("M4,-1 C13,-3 19,-9 24,-18", extra=stroke("#fff0b8", 2.0)) +
            f'<g transform="rotate(47 28.5 -16)">{ellipse(28.5, -16, 12.5, 5.4, "#8a5f1c", stroke(GOLD_LINE, 2.2))}'
            f'{ellipse(28.5, -16, 12.5, 5.4, "none", stroke(GOLD, 1.2))}</g>' + "</g>")


class Ottoline(Character):
    name = "Ottoline"
    description = "An octopus of good family, never short of a hand."
    guid = "{6B1D0F52-7C0A-4E0B-9C55-0E7B3A1F6C02}"
    voice = {"gender": "female", "speed": 155, "pitch": 215, "age": 45, "style": "Warm"}
    balloon = {"background": "#F4EAFF", "border": "#4B2A74"}
    colours = 128
    tolerance = 1.15
    tempo = 0.9
    amplitude = 0.9
    springiness = 0.8

    joints = Joints({
        "body": (None, 72.0, 136.0), "pearls": ("body", 72.0, 84.0), "head": ("body", 72.0, 90.0),
        "hat": ("head", 90.0, 33.0), "feather": ("hat", 98.0, 29.0),
    })
    crowns = (("head", 92.0, 7.0),)
    swings = {
        "bulb.x": Swing({"head.turn": 0.7, "head.x": 0.9, "body.turn": 0.9, "body.x": 0.8}, 0.55, 0.22),
        "hat.turn": Swing({"head.turn": 0.5, "body.turn": 0.6, "body.y": 0.5, "head.y": 0.4}, 0.45, 0.25),
        "feather.turn": Swing({"head.turn": 2.2, "head.x": 2.0, "body.turn": 2.0, "body.x": 2.0, "head.y": 1.6, "body.y": 1.6,
                               "hat.y": 2.0},
                              0.6, 0.18),
        "pearls.turn": Swing({"body.turn": 1.0, "body.x": 1.2, "head.turn": 0.8, "head.x": 0.8}, 0.5, 0.2),
        "sway": Swing({"body.x": 0.09, "body.turn": 0.09}, 0.7, 0.2),
        "lift": Swing({"body.y": -0.08, "body.squash": 3.0}, 0.6, 0.22),
        **{f"lag.{axis}.{key}": Swing({f"hand.{axis}.{key}": 1.0, **more}, 0.34 + 0.03 * number, 0.3)
           for number, (key, side) in enumerate((("L", -1), ("R", 1), ("A", -1), ("B", 1)))
           for axis, more in (("x", {"body.x": side * 0.026}), ("y", {"body.y": -0.026}))},
    }
    own_channels = {
        "tint": 0.0, "bulb.x": 0.0, "sway": 0.0, "lift": 0.0, "jet": 0.0, "ripple": 0.0,
        **{f"lag.{axis}.{key}": 0.0 for axis in "xy" for key in "LRAB"},
        **{f"{channel}.{key}": value for key in "AB" for channel, value in
           (("hand.x", 0.3), ("hand.y", -0.3), ("hand.turn", 0.0), ("fist", 0.3), ("point", 0.0), ("out", 0.0))},
        "fan": 0.0, "fan.turn": 0.0, "cup": 0.0, "steam": 0.0, "spoon": 0.0, "ting": 0.0, "lorgnette": 0.0, "trumpet": 0.0, "hanky": 0.0,
        "juggle": 0.0, "juggle.turn": 0.0, "bubbles": 0.0, "snore": 0.0, "ink": 0.0, "cloud": 0.0,
        "feeler": 0.0, "feeler.bend": 0.0, "feeler.hat": 0.0, "lone": 0.0, "lone.y": 0.0,
        **hand("L", 0.5, -0.24, 0.55), **hand("R", 0.56, -0.1, 0.5), "eye.open": 0.84, "brow.cock": 1.2, "mouth.curve": 0.6,
    }
    poses = {
        "tall": {"body.squash": 0.06, "head.y": -2.0, "perk": 1.0, "eye.open": 1.12, "brow.y": 3.0},
        "at the chest": hand("R", -0.55, -0.05, 0.6),
        "closed": {"eye.open": 0.0},
        "fanning": hand("R", 0.2, 0.02, 0.7) | {"fan": 1.0, "fan.turn": 24.0},
    }

    arms = [Tentacle(side, key, 72 + side * 23, 101, 37, 9.5, 13.0) for side, key in ((-1, "L"), (1, "R"))]
    more_arms = [Tentacle(side, key, 72 + side * 20, 99, 40, 9.0, 17.0) for side, key in ((-1, "A"), (1, "B"))]
    eyes = [Eye(side, 72 + side * 16.5, 63, 10.8, 12.0, "#8d5cc4", LINE, iris="#2fa79b", pupil=0.5, dark="#22123a")
            for side in (-1, 1)]
    mouth = Smile(72, 79.5, 9.5, 7.8, LINE, inside="#6d1a3c", tongue="#f07f9b")

    def defs(self):
        tints = [-1 + 2 * number / (TINTS - 1) for number in range(TINTS)]
        return ("".join(radial(f"skin{number}", *skin(tint)) for number, tint in enumerate(tints)) +
                radial("ink", "#6a4a9a", "#3a2166", "#22123f") + radial("hat", "#3d9aa0", "#1f6e78", "#114a55") + props.DEFS)

    def derived(self, pose):
        breath, perk = pose["breath"], pose["perk"]
        droop = max(0.0, -perk)
        return {**pose, "head.y": pose["head.y"] - 1.2 * breath, "lift": pose["lift"] + 0.5 * breath + 0.35 * max(0.0, perk) - 0.4 * droop,
                "hat.x": pose["hat.x"] + 0.7 * pose["bulb.x"],
                "hat.turn": pose["hat.turn"] + 10 * droop, "hat.y": pose["hat.y"] - 1.5 * max(0.0, perk) + 4 * droop,
                "feather.turn": pose["feather.turn"] - 12 * max(0.0, perk) + 55 * droop}

    def tint(self, sketch):
        return skin(sketch["tint"])

    def draw(self, sketch):
        hole, rise = sketch["hole"], sketch["rise"]
        if hole > 0:
            sketch.layer()
            sketch.on(None, ellipse(72, FLOOR, 52 * hole, 9.5 * hole, "url(#ink)", stroke("#8a68bd", 2.4)))
        if sketch["feeler"] > 0:
            self.drawFeeler(sketch)
        if sketch["ink"] > 0:
            self.drawInk(sketch)
        if rise >= 1:
            self.drawFigure(sketch)
        elif rise > 0:
            inner = Sketch(self.joints, sketch.pose, self.size)
            self.drawFigure(inner)
            sunk = f'<g transform="translate(0 {num((1 - rise) * 126)})">{inner.flattened()}</g>'
            sketch.on(None, sketch.clip("g", path(f"M-40,-60 H184 V{num(FLOOR - 3)} H122 Q72,{num(FLOOR + 14)} 22,{num(FLOOR - 3)} H-40 Z",
                                                  "#000"), sunk))
        if sketch["lone"] > 0:
            sketch.layer()
            sketch.on(None, f'<g transform="translate(0 {num(sketch["lone.y"])})">{self.hat()}{self.feather()}</g>')
        if hole > 0 and rise < 1:
            sketch.layer()
            sketch.on(None, path(f"M{points(72 - 36 * hole, FLOOR + 3)} Q{points(72, FLOOR + 3 + 7 * hole, 72 + 36 * hole, FLOOR + 3)}",
                                 extra=stroke("#a58ad0", 2.6)))
        self.drawAir(sketch)

    # The figure, from the back to the front.

    def drawFigure(self, sketch):
        tint = self.tint(sketch)
        for arm in self.more_arms:
            if sketch[f"out.{arm.key}"] > 0 and arm.place(sketch)[1] > 62:
                sketch.layer("body")
                sketch.on("body", arm.drawn(sketch, tint, 0.35))
        sketch.layer("body")
        self.drawLegs(sketch, tint)
        self.drawBody(sketch, tint)
        held = sketch["book"] > 0 or sketch["paper"] > 0
        raised = {"R": max(sketch["fan"], sketch["hanky"], sketch["spoon"]), "L": sketch["cup"]}
        high = [arm for arm in self.arms if arm.place(sketch)[1] <= 93 or raised[arm.key] > 0]
        low = [arm for arm in self.arms if arm not in high]
        sketch.layer("body")
        self.drawPearls(sketch)
        if not held:
            sketch.layer("body")
            for arm in low:
                self.drawArm(sketch, arm, tint)
        self.drawHead(sketch, tint)
        for arm in self.more_arms:
            if sketch[f"out.{arm.key}"] > 0 and arm.place(sketch)[1] <= 62:
                sketch.layer("body")
                sketch.on("body", arm.drawn(sketch, tint, 0.35))
        for arm in high:
            sketch.layer("body")
            self.drawArm(sketch, arm, tint)
        if held:
            sketch.layer("body")
            if sketch["book"] > 0:
                sketch.on("body", props.book(72, 112 + (1 - sketch["book"]) * 44, "#1f6e78", sketch["page"]))
            if sketch["paper"] > 0:
                sketch.on("body", props.paper(62, 114 + (1 - sketch["paper"]) * 44, sketch["stroke"]))
            if sketch["paper"] > 0:
                x, y = self.arms[1].place(sketch)
                sketch.on("body", quill(x - 9, y + 8))
            sketch.on("body", *(arm.drawn(sketch, tint) for arm in low))

    def drawArm(self, sketch, arm, tint):
        """An arm, with what it holds."""
        x, y = arm.place(sketch)
        if arm.key == "R":
            if sketch["fan"] > 0:
                sketch.on("body", fan(x + 3, y - 1, sketch["fan.turn"], min(1.0, sketch["fan"])))
            if sketch["spoon"] > 0:
                sketch.on("body", path(f"M{points(x - 14, y + 8)} L{points(x + 4, y - 2)}", extra=stroke("#5a5f74", 4.2)),
                          path(f"M{points(x - 14, y + 8)} L{points(x + 4, y - 2)}", extra=stroke("#e6eaf4", 2.0)),
                          ellipse(x - 15, y + 8.5, 4.0, 3.0, "#e6eaf4", stroke("#5a5f74", 1.5)))
        sketch.on("body", arm.drawn(sketch, tint))
        if arm.key == "L" and sketch["cup"] > 0:
            sketch.on("body", cup(x, y - 6, sketch["cup"], sketch["steam"]))
        if arm.key == "R" and sketch["hanky"] > 0:
            sketch.on("body", handkerchief(x - 3, y - 3, sketch["head.turn"] * 2, sketch["hanky"]))

    def drawLegs(self, sketch, tint):
        light, middle, dark = tint
        for number, (beside, y, length, start, bow, curl) in enumerate(LEGS):
            shade = (0.55, 0.28, 0.0)[number]
            fill = mixed(middle, dark, shade)
            for side in (-1, 1):
                # Tips curl one after another when she lets a ripple go through them.
                later = (side + 1) * 0.4 + (number if side > 0 else 2 - number) * 0.2
                wave = math.sin(max(0.0, min(1.0, sketch["ripple"] * 2.2 - later)) * math.pi)
                spine = leg(side, 72 + side * beside, y, length, start, bow, curl * (1 + 0.25 * wave),
                            sketch["sway"] * (1.2 - number * 0.25),
                            sketch["lift"] * (1 - number * 0.2) + wave * 0.5, sketch["jet"])
                sketch.on("body", limb(spine, 11.5, 3.6, fill, mixed(light, middle, 0.35 + shade), side if number else 0, 0.2))

    def drawBody(self, sketch, tint):
        light, middle, dark = tint
        wide = 1.2 * sketch["breath"]
        bell = (f"M72,80 C88,80 {points(97 + wide, 90)} {points(101 + wide, 104)} C{points(104 + wide, 111, 100, 115, 95, 113)} "
                f"Q90,121 82,115 Q77,122 72,116 Q67,122 62,115 Q54,121 49,113 "
                f"C{points(44, 115, 40 - wide, 111)} {points(43 - wide, 104)} C{points(47 - wide, 90)} 56,80 72,80 Z")
        sketch.on("body", path(bell, mixed(middle, dark, 0.1), INNER),
                  path("M50,107 C51,101 53,97 56,94", extra=stroke(mixed(light, middle, 0.4), 2.6)))

    def drawPearls(self, sketch):
        drawn = ""
        for number in range(9):
            a = math.radians(18 + 18 * number)
            x, y = 72 - math.cos(a) * 25, 87 + math.sin(a) * 15.5
            drawn += ellipse(x, y, 3.6, 3.6, "#fff6e6", stroke("#6b5a7d", 1.5)) + ellipse(x - 1, y - 1, 1.1, 1.1, "#ffffff")
        sketch.on("pearls", drawn)

    def drawHead(self, sketch, tint):
        light, middle, dark = tint
        number = round((max(-1.0, min(1.0, sketch["tint"])) + 1) / 2 * (TINTS - 1))
        bulb = max(-9.0, min(9.0, sketch["bulb.x"]))
        swelling = 1.5 * sketch["breath"]
        sketch.layer("head")
        dome = (f"M72,95 C89,95 105,92 107,78 C108,71 104.5,68 105.5,60 C107,52 {points(111 + swelling + bulb * 0.7, 45)} "
                f"{points(105.5 + swelling + bulb * 0.9, 34)} C{points(99 + bulb, 22, 86 + bulb, 17, 71 + bulb, 17)} "
                f"C{points(56 + bulb, 17, 44 + bulb, 22, 38 - swelling + bulb * 0.9, 34)} "
                f"C{points(33 - swelling + bulb * 0.7, 45)} 37,52 38.5,60 C39.5,68 36,71 37,78 C39,92 55,95 72,95 Z")
        spots = "".join(ellipse(x + bulb * 0.8, y, rx, ry, mixed(middle, dark, 0.55))
                        for x, y, rx, ry in ((48, 42, 5.4, 4.2), (58, 32, 3.6, 2.8), (44, 51, 2.4, 2.6), (69, 39, 2.4, 2.0)))
        shine = path(f"M{points(42 + bulb * 0.6, 47)} C{points(39 + bulb * 0.8, 38, 46 + bulb, 28, 57 + bulb, 25)}",
                     extra=stroke("#f6ebff", 3.0))
        blush = "".join(ellipse(72 + side * 25.5, 78.5, 6.4, 3.9, "#f5739f", f'opacity="{num(sketch["blush"] * 0.85)}"') for side in (-1,
                                                                                                                                      1))
        sketch.on("head", path(dome, f"url(#skin{number})", INNER), spots, shine, blush, self.mouth.draw(sketch))
        self.drawHat(sketch)
        sketch.layer("head")
        sketch.on("head", *(eye.draw(sketch) + self.lashes(sketch, eye) for eye in self.eyes),
                  *(brow(sketch, side, 72 + side * 17, 45.5, 7.5, LINE, 2.8) for side in (-1, 1)))
        if sketch["lorgnette"] > 0.1:
            sketch.layer("head")
            sketch.on("head", self.lorgnette(sketch["lorgnette"]))
        if sketch["trumpet"] > 0:
            sketch.layer("head")
            sketch.on("head", trumpet(sketch["trumpet"]))

    def lashes(self, sketch, eye):
        """Two at the outer corner of an eye, which go with its lid."""
        side, rx, ry = eye.side, eye.rx, eye.ry
        opening = sketch["eye.open"] * (1 - sketch["wink.L" if side < 0 else "wink.R"])
        if sketch["eye.smile"] > 0.7:
            y, dip = eye.y + ry * 0.3, 2.6
        elif opening < 0.12:
            y, dip = eye.y + ry * 0.25, 3.4
        else:
            y, dip = eye.y + ry * (0.1 - 0.45 * min(1.15, opening)) + ry * 0.45 * max(0.0, sketch["eye.slant"]), -2.6
        x = eye.x + side * rx * 0.93
        return path(f"M{points(x, y)} l{points(side * 4.6, dip)} M{points(x - side * 1.2, y - 3.4 * (1 if dip < 0 else -0.6))} "
                    f"l{points(side * 4.2, dip * 1.35 - (1.0 if dip < 0 else -1.0))}", extra=stroke(LINE, 2.0))

    def lorgnette(self, amount):
        x, y = 0.0, (1 - amount) * 30
        drawn = path("M99,72 L117,101", extra=stroke(GOLD_LINE, 5.0)) + path("M99,72 L117,101", extra=stroke(GOLD, 2.6))
        for side in (-1, 1):
            cx = 72 + side * 16.5
            drawn += ellipse(cx, 63, 14, 14.5, "none", stroke(GOLD_LINE, 4.6)) + ellipse(cx, 63, 14, 14.5, "none", stroke(GOLD, 2.4))
            drawn += path(f"M{points(cx - 9, 57)} q2,-5 6,-6", extra=stroke("#ffffff", 2.0))
        return f'<g transform="translate({points(x, y)})">{drawn}</g>'

    def hat(self):
        edge = stroke("#0c3640", 2.0)
        return ('<g transform="translate(0 3) rotate(16 90 30)">' + ellipse(90, 30, 17, 4.6, "url(#hat)", edge) +
                path("M80.5,29 L78.5,13 Q90,9.5 101.5,13 L99.5,29 Q90,32.5 80.5,29 Z", "url(#hat)", edge) +
                path("M80.2,25.5 Q90,29 99.8,25.5 L99.4,29 Q90,32.5 80.6,29 Z", GOLD, stroke(GOLD_LINE, 1.3)) + "</g>")

    def feather(self):
        return ('<g transform="translate(0 3)">' +
                path("M97,30 C101,22 107,13 117,13 C123,13 126,18 124,23 C121,20 117,20 114,22 C117,23 118,26 117,28 "
                     "C111,25 104,27 100,33 Z",
                     "#fff3dc", stroke("#7a5a3a", 1.8)) + path("M99,30 C104,22 110,17 118,17", extra=stroke("#d9b98c", 1.5)) + "</g>")

    def drawHat(self, sketch):
        sketch.layer("head")
        sketch.on("feather", self.feather())
        sketch.on("hat", self.hat())

    # What she makes of ink, and what hangs in the air.

    def drawFeeler(self, sketch):
        """One arm alone, out of the pool; it may have her hat on its tip."""
        shown, aside = sketch["feeler"], sketch["feeler.bend"]
        light, middle, dark = skin(0.0)
        spine, steps = [(72.0 - 6.0, FLOOR + 6)], 12
        length, (x, y) = 88.0 * shown + 8, (66.0, FLOOR + 6)
        for number in range(steps):
            t = (number + 0.5) / steps
            angle = math.radians(-90 + 34 * math.sin(t * 5.2) * (1 - 0.3 * aside) + 70 * aside * t)
            x, y = x + math.cos(angle) * length / steps, y + math.sin(angle) * length / steps
            spine.append((x, y))
        sketch.layer()
        drawn = limb(spine, 12, 5, middle, mixed(light, middle, 0.3), 1, 0.2)
        if sketch["feeler.hat"] > 0:
            drawn += (f'<g transform="translate({points(x - 90, y - 31)}) rotate({num(-10 + 22 * aside)} 90 33)">'
                      f'{self.feather()}{self.hat()}</g>')
        sketch.on(None, sketch.clip("f", path(f"M-40,-60 H184 V{num(FLOOR + 2)} H-40 Z", "#000"), drawn))

    def drawInk(self, sketch):
        """A puff to either side, which grows, drifts and is gone."""
        amount = sketch["ink"]
        size = math.sin(min(1.0, amount) ** 0.7 * math.pi)
        if size < 0.08:
            return
        sketch.layer()
        for x, y, r in ((-36, 122, 12), (36, 122, 12), (-50, 112, 9), (50, 112, 9), (-22, 130, 10), (22, 130, 10), (-58, 126, 7),
                        (58, 126, 7)):
            sketch.on(None, ellipse(72 + x * (0.75 + 0.25 * amount), y - 14 * amount, r * size, r * size, "#3a2166",
                                    stroke("#6a4a9a", 1.8)))

    def drawCloud(self, sketch):
        amount = sketch["cloud"]
        puffs = ((72, 112, 28), (40, 112, 24), (104, 112, 24), (30, 84, 22), (114, 84, 22), (52, 58, 28), (92, 58, 28), (72, 88, 38),
                 (62, 30, 22),
                 (88, 32, 21), (108, 28, 15), (40, 38, 15))
        sketch.layer()
        shown = [(72 + (x - 72) * (0.35 + 0.65 * amount), FLOOR - (FLOOR - y) * (0.25 + 0.75 * amount), r * amount) for x, y,
                 r in puffs if r * amount > 3]
        sketch.on(None, *(ellipse(x, y, r, r, "#3a2166", stroke("#7d5bb0", 1 + 3 * amount)) for x, y, r in shown),
                  *(ellipse(x, y, r - 1, r - 1, "#3a2166") for x, y, r in shown if r > 2),
                  *(path(f"M{points(x - r * 0.6, y - r * 0.1)} Q{points(x - r * 0.5, y - r * 0.6, x, y - r * 0.62)}",
                         extra=stroke("#5b3d8c", 3.0))
                    for x, y, r in shown if r > 6))

    def drawAir(self, sketch):
        if sketch["cloud"] > 0:
            self.drawCloud(sketch)
        if sketch["rise"] < 1:
            return
        sketch.layer()
        props.tears(sketch, 72, 75, 21)
        props.sweat(sketch, 36, 36, aside=-5, size=5.2)
        props.sound(sketch, 117, 58, -30, apart=4.8)
        if sketch["ask"] > 0:
            sketch.on(None, props.question(20, 30, sketch["ask"]))
        if sketch["call"] > 0:
            sketch.on(None, props.exclamation(20, 28, sketch["call"]))
        if sketch["idea"] > 0:
            size = sketch["idea"]
            sketch.on(None, bubble(22, 26, 18.5 * size), props.bulb(22, 28, size * 0.85))
        if sketch["doze"] > 0:
            sketch.on(None, props.dozing(108, 46, sketch["doze"]))
        if sketch["snore"] > 0:
            x, y = sketch.at("head", 76, 82)
            sketch.on(None, bubble(x + 5 * sketch["snore"], y + 5 * sketch["snore"], 2 + 7.5 * sketch["snore"]))
        if sketch["stars"] > 0:
            sketch.on(None, props.stars(sketch["stars"], places=((12, 34, 8), (132, 40, 9), (30, 11, 6), (128, 12, 6.5), (8, 72, 5),
                                                                 (137, 72, 5),
                                                                 (62, 9, 5))))
        if sketch["notes"] > 0:
            sketch.on(None, props.notes(sketch["notes"], ((16, 44), (130, 52), (30, 20))))
        if sketch["thought"] > 0:
            self.drawThought(sketch)
        if sketch["bubbles"] > 0:
            for x, size, start in ((16, 4.5, 0.0), (28, 6.0, 0.25), (124, 5.0, 0.12), (134, 3.6, 0.4), (112, 3.4, 0.5)):
                up = sketch["bubbles"] * 1.5 - start
                if 0 < up < 1:
                    sketch.on(None, bubble(x + 3 * math.sin(up * 9), 112 - 96 * up, size * min(1.0, up * 5)))
        if sketch["juggle"] > 0.4:
            for number in range(3):
                t = (sketch["juggle.turn"] / 360 + number / 3) % 1.0
                # High from one hand to the other, low and quickly back.
                x, y = ((18 + 108 * t / 0.72, 74 - 66 * math.sin(t / 0.72 * math.pi)) if t < 0.72 else
                        (126 - 108 * (t - 0.72) / 0.28, 84 + 22 * math.sin((t - 0.72) / 0.28 * math.pi)))
                sketch.on(None, ellipse(x, y, 6.6 * sketch["juggle"], 6.6 * sketch["juggle"], ("#fff6e6", "#f2647f", GOLD)[number],
                                        stroke("#5a4468", 1.8)), ellipse(x - 2, y - 2.2, 1.8, 1.8, "#ffffff"))
        if sketch["ting"] > 0:
            x, y = sketch.at("body", 40, 84)
            for a in (-165, -125, -85):
                c, s = math.cos(math.radians(a)), math.sin(math.radians(a))
                d = f"M{points(x + c * 12, y + s * 12)} L{points(x + c * (12 + 9 * sketch['ting']), y + s * (12 + 9 * sketch['ting']))}"
                sketch.on(None, path(d, extra=stroke("#7a4f10", 4.6)), path(d, extra=stroke("#ffd95a", 2.6)))

    def drawThought(self, sketch):
        shown = min(1.0, sketch["thought"] * 1.4)
        phase = (sketch["thought"] - 0.4) * 5
        sketch.on(None, bubble(37, 40, 3.2 * shown), bubble(29, 33, 4.8 * shown), bubble(19, 17, 15.5 * shown),
                  *(ellipse(19 + (number - 1) * 8, 17.5, 2.4 * shown, 2.4 * shown, "#3b5590") for number in range(3) if phase > number))

    # Coming and going: out of a pool of ink, an arm first, with the hat; and away in a cloud of it, hat last.

    def show(self, act):
        act.cut({"rise": 0.0})
        act.to(0.3, {"rise": 0.0, "hole": 1.0}, overshoot=0)
        act.also(0.48, {"feeler": 0.9, "feeler.hat": 1.0}, overshoot=0.1)
        act.also(0.24, {"feeler.bend": -1.0}, overshoot=0.1).hold(0.2)
        act.also(0.32, {"feeler.bend": 0.48}, overshoot=0.1).hold(0.24)
        act.also(0.2, {"feeler.bend": 0.1}, overshoot=0)
        act.also(0.24, {"feeler": 0.42}, overshoot=0, ease=easeIn)
        act.also(0.04, {"feeler": 0.0, "feeler.hat": 0.0, "rise": 0.5, "eye.open": 0.0}, overshoot=0)
        act.also(0.24, {"rise": 0.62, "jet": 1.0}, overshoot=0.2).hold(0.24)
        act.also(0.16, {"eye.open": 1.0, "wink.L": 1.0, "brow.cock": 4.0}, overshoot=0).hold(0.3)
        act.also(0.12, {"wink.L": 0.0}, overshoot=0)
        act.to(0.32, {"rise": 1.0, "hole": 0.7, "body.y": -5.0, "body.squash": 0.02, "jet": 0.9, "eye.open": 0.9},
               hands(0.75, 0.35, 0.1), ease=easeOut)
        act.to(0.2, {"hole": 0.2, "body.squash": -0.07, "eye.open": 0.0}, hands(0.8, 0.1, 0.2), ease=easeIn)
        act.to(0.4, overshoot=0.15)

    def hide(self, act):
        act.to(0.32, {"head.y": 6.0, "eye.open": 0.0, "mouth.curve": 1.0}, hand("R", -0.55, -0.1, 0.6), overshoot=0).hold(0.16)
        act.to(0.2, {"body.squash": -0.08, "eye.open": 1.0, "eye.x": -0.9, "cloud": 0.3}, overshoot=0, ease=easeIn)
        act.also(0.24, {"cloud": 1.0, "body.squash": 0.0}, overshoot=0, step=BRISK)
        act.to(0.08, {"cloud": 1.0, "rise": 0.0, "lone": 1.0}, overshoot=0)
        act.also(0.32, {"cloud": 0.0}, overshoot=0, ease=easeInOut).hold(0.3)
        act.also(0.08, {"lone.y": -3.0}, overshoot=0)
        act.also(0.3, {"lone.y": 100.0, "hole": 0.5}, ease=easeIn, step=BRISK)
        act.also(0.12, {"lone.y": 94.0, "hole": 0.8}, overshoot=0, step=BRISK).also(0.12, {"lone.y": 100.0}, ease=easeIn, overshoot=0,
                                                                                    step=BRISK)
        act.hold(0.24)
        act.also(0.32, {"feeler": 0.42, "feeler.bend": 1.1, "hole": 0.9}, overshoot=0).hold(0.16)
        act.also(0.06, {"lone": 0.0, "feeler.hat": 1.0}, overshoot=0)
        act.also(0.24, {"feeler.bend": -0.2, "feeler": 0.5}, overshoot=0).hold(0.1)
        act.also(0.2, {"feeler": 0.0}, overshoot=0, ease=easeIn)
        act.to(0.2, {"rise": 0.0, "hole": 0.0}, overshoot=0)

    # What she feels.

    def pleased(self, act):
        # Flattered: she turns pink, and fans herself.
        act.to(0.4, self.glad, "fanning", {"tint": 1.0, "head.turn": -4.0, "mouth.open": 0.4}, hand("L", -0.3, -0.05, 0.6),
               anticipate=0.12)
        for turn in (5.0, 40.0, 8.0, 40.0, 8.0, 24.0):
            act.also(0.16, {"fan.turn": turn, "head.turn": -4.0 + turn * 0.08, "head.y": -1.0 if turn > 20 else 0.5}, overshoot=0,
                     ease=easeInOut)
        act.also(0.24, {"head.turn": 3.0, "mouth.open": 0.5}).hold(0.8).rest()

    def sad(self, act):
        # She loses her colour, then her bearing; and finds a handkerchief.
        act.to(0.4, {"tint": -0.5, "brow.turn": -0.7, "mouth.curve": -0.2, "eye.slant": 0.3, "blush": 0.0}, overshoot=0)
        act.to(0.72, self.sorrow, {"tint": -1.0, "head.y": 7.0, "body.squash": -0.07, "blush": 0.0, "lift": -0.5, "brow.cock": 0.0},
               hands(0.55, -0.62, 0.15), ease=easeInOut, overshoot=0).hold(0.4)
        act.also(0.64, {"tear": 1.0}, ease=easeIn).hold(0.3)
        dab = hand("R", -0.02, 0.52, 0.7)
        act.also(0.4, dab, {"hanky": 1.0, "head.turn": 4.0, "eye.open": 0.0, "tear": 0.6}, overshoot=0)
        for y in (0.62, 0.5, 0.62):
            act.also(0.16, {"hand.y.R": y}, overshoot=0)
        act.also(0.32, hand("R", 0.3, 0.0), {"tear": 0.0, "eye.open": 0.7, "head.turn": -3.0}, overshoot=0).hold(0.8)
        act.rest(0.5)

    def surprised(self, act):
        # The ink escapes her. How embarrassing.
        act.to(0.12, {"body.squash": -0.08, "eye.open": 0.4}, step=BRISK, overshoot=0)
        act.to(0.18, self.shock, hands(0.75, 0.55, 0.0), hand("A", 0.55, 1.05, 0.1), hand("B", 0.55, 1.05, 0.1),
               {"out.A": 1.0, "out.B": 1.0, "body.y": -5.0, "body.squash": 0.05, "hat.y": -3.0, "ink": 0.3, "tint": -0.5}, step=BRISK,
               ease=easeOut)
        act.also(0.18, {"body.y": 0.0, "body.squash": 0.02, "hat.y": 0.0, "ink": 0.5}, ease=easeIn, step=BRISK)
        act.also(0.24, {"ink": 0.7}, overshoot=0).hold(0.9)
        act.also(0.4, {"ink": 1.0, "call": 0.0, "out.A": 0.0, "out.B": 0.0, "tint": 1.0, "eye.open": 0.9, "eye.pupil": 1.0, "blush": 1.0,
                       "mouth.open": 0.0, "mouth.curve": 0.3, "eye.x": -0.9, "brow.y": 2.0},
                 hand("A", 0.3, -0.3), hand("B", 0.3, -0.3), hand("R", -0.66, 0.22, 0.5), hand("L", 0.5, -0.24), overshoot=0)
        act.also(0.08, {"ink": 0.0}, overshoot=0).hold(0.5).rest()

    def confused(self, act):
        # She counts on her arms, and comes to another number.
        act.to(0.4, {"eye.x": -0.7, "head.turn": -6.0, "mouth.wide": 0.6, "mouth.curve": -0.2, "brow.cock": 4.0, "ask": 0.6},
               hand("L", 0.75, 0.45, 0.2, 0.6), overshoot=0).hold(0.16)
        act.also(0.24, {"eye.x": 0.7, "head.turn": 5.0}, hand("R", 0.75, 0.45, 0.2, 0.6)).hold(0.16)
        act.also(0.24, {"eye.x": -0.5, "eye.y": -0.6, "head.turn": -4.0, "out.A": 1.0}, hand("A", 0.45, 1.1, 0.1, 0.6)).hold(0.16)
        act.also(0.24, {"eye.x": 0.6, "head.turn": 4.0, "out.B": 1.0, "ask": 1.0}, hand("B", 0.45, 1.1, 0.1, 0.6)).hold(0.2)
        act.also(0.3, {"eye.x": 0.0, "eye.y": 0.0, "head.turn": 9.0, "mouth.curve": -0.5}).blink().hold(0.5)
        act.rest(0.5, overshoot=0)

    def uncertain(self, act):
        # Behind the fan, from where one sees without being seen.
        act.to(0.4, hand("R", -0.6, -0.05, 0.7), {"fan": 1.0, "fan.turn": -6.0, "eye.x": 0.8, "brow.y": 2.0, "brow.turn": -0.6,
                                                  "head.turn": -4.0,
                                                  "sweat": 0.5}).hold(0.5)
        act.also(0.24, {"eye.x": -0.9, "head.turn": 3.0, "sweat": 0.8}).hold(0.4)
        act.also(0.24, hand("R", -0.6, 0.1), {"eye.x": 0.2, "sweat": 1.0, "head.y": 2.0}).blink().hold(0.4).rest()

    def alert(self, act):
        # Up on her toes, and the hat still higher.
        act.to(0.16, {"body.squash": -0.07, "eye.open": 0.5}, step=BRISK, overshoot=0)
        act.to(0.24, "tall", {"call": 1.0, "jet": 0.35, "body.squash": 0.03, "hat.y": -2.0, "mouth.wide": 0.6},
               hand("R", 0.5, 0.85, 0.2, 1.0),
               hand("L", -0.5, -0.1, 0.5), step=BRISK, overshoot=0.2)
        act.also(0.12, {"hat.y": 0.0}, ease=easeIn).hold(0.8).rest()

    def congratulate(self, act):
        # A curtsy, then applause of four hands.
        act.to(0.4, {"body.squash": -0.1, "head.y": 6.0, "eye.open": 0.0, "mouth.curve": 1.0}, hands(0.85, -0.2, 0.1),
               overshoot=0).hold(0.24)
        act.to(0.32, self.glad, hands(0.5, 0.35, 0.2), hand("A", 0.5, 1.15, 0.1), hand("B", 0.5, 1.15, 0.1),
               {"out.A": 1.0, "out.B": 1.0, "tint": 0.5, "stars": 0.5, "body.squash": 0.04}, overshoot=0.1)
        for number in range(3):
            act.also(0.12, hands(-0.42, 0.0), hand("A", 0.85, 0.9), hand("B", 0.85, 0.9), {"body.y": 0.0, "stars": 0.7 + 0.1 * number},
                     overshoot=0)
            act.also(0.12, hands(0.4, 0.2), hand("A", 0.5, 1.15), hand("B", 0.5, 1.15), {"body.y": -4.0}, overshoot=0)
        act.also(0.2, {"body.y": 0.0, "stars": 1.0}).hold(0.8).rest(0.48, overshoot=0)

    def decline(self, act):
        # One does not.
        act.to(0.4, {"head.turn": -7.0, "head.x": -3.0, "head.y": -3.0, "eye.open": 0.0, "mouth.curve": -0.4, "mouth.wide": 0.6,
                     "brow.y": 3.0,
                     "brow.cock": 0.0}, hand("R", 0.55, 0.62, 0.2, 1.0), hand("L", -0.4, -0.1, 0.5))
        for x in (0.85, 0.4, 0.85, 0.4):
            act.also(0.24, {"hand.x.R": x, "head.x": -3.0 + (x - 0.6) * 4}, overshoot=0, ease=easeInOut)
        act.hold(0.2)
        act.also(0.2, {"eye.open": 0.6, "eye.x": 0.9, "wink.L": 1.0}, overshoot=0).hold(0.4).rest()

    def acknowledge(self, act):
        act.to(0.32, {"head.y": 7.0, "head.turn": 3.0, "eye.open": 0.0, "mouth.curve": 1.0}, hand("R", -0.6, -0.12, 0.6), overshoot=0)
        act.hold(0.24).rest(0.4)

    def announce(self, act):
        # An aria.
        act.to(0.4, {"eye.open": 0.0, "head.y": 3.0, "mouth.wide": 0.5}, hands(-0.55, -0.2, 0.5), overshoot=0).hold(0.16)
        act.also(0.24, {"head.y": -4.0, "body.squash": 0.05, "mouth.wide": 0.8, "mouth.open": 1.0, "mouth.curve": 0.3, "brow.y": 4.0,
                        "notes": 0.35,
                        "brow.turn": -0.5}, hand("R", 0.8, 0.5, 0.0), hand("L", -0.5, -0.1), overshoot=0.1)
        for turn, amount in ((3.0, 0.6), (-3.0, 0.8), (3.0, 1.0)):
            act.also(0.32, {"head.turn": turn, "notes": amount, "mouth.open": 0.8 + turn * 0.06}, hand("R", 0.8 + turn * 0.02, 0.5),
                     overshoot=0, ease=easeInOut)
        act.also(0.24, {"head.turn": 0.0, "mouth.open": 1.0}, hand("L", 0.8, 0.5, 0.0)).hold(0.5).rest(0.48)

    def suggest(self, act):
        # She blows a bubble; there is an idea in it.
        act.to(0.32, {"eye.x": -0.5, "eye.y": -0.4, "mouth.wide": 0.3, "mouth.open": 0.25, "mouth.curve": 0.0, "blush": 0.9,
                      "head.turn": -3.0},
               hand("L", -0.2, 0.1, 0.6), overshoot=0)
        act.also(0.48, {"idea": 1.0, "mouth.open": 0.15}, overshoot=0.1)
        act.also(0.24, {"mouth.open": 0.0, "mouth.wide": 1.0, "mouth.curve": 1.0, "eye.open": 1.0, "brow.y": 2.5, "head.turn": 3.0},
                 hand("L", 0.6, 0.62, 0.2, 0.8)).hold(1.0).rest()

    def getAttention(self, act):
        # A spoon against a cup.
        act.to(0.48, {"cup": 1.0, "spoon": 1.0, "brow.y": 2.0, "eye.open": 1.0}, hand("L", 0.3, 0.2, 0.7), hand("R", -0.55, 0.25, 0.6),
               overshoot=0)
        for number in range(3):
            act.also(0.1, {"hand.x.R": -0.88, "hand.y.R": 0.2, "ting": 0.4, "head.turn": -3.0}, overshoot=0, step=5)
            act.also(0.1, {"ting": 1.0}, overshoot=0, step=5)
            act.also(0.14, {"hand.x.R": -0.62, "hand.y.R": 0.3, "ting": 0.0, "head.turn": 1.0}, overshoot=0)
        act.also(0.24, {"mouth.open": 0.4, "mouth.curve": 0.9}).hold(0.6).rest(0.4, overshoot=0)

    def greet(self, act):
        # She lifts her hat.
        brim = hand("R", 0.02, 1.72, 0.6)
        act.to(0.48, brim, {"mouth.curve": 1.0, "brow.y": 2.0, "eye.open": 0.9}, overshoot=0)
        act.also(0.24, hand("R", 0.16, 1.98), {"hat.y": -8.0, "hat.x": 4.0, "hat.turn": 12.0, "head.y": 6.0, "head.turn": -5.0,
                                               "eye.smile": 1.0,
                                             "tint": 0.5}, hand("L", 0.75, -0.1, 0.2))
        act.hold(0.6)
        act.also(0.24, brim, {"hat.y": 0.0, "hat.x": 0.0, "hat.turn": 0.0, "head.y": 0.0, "head.turn": 0.0, "eye.smile": 0.0}, overshoot=0)
        act.rest(0.4)

    def wave(self, act):
        # As from a carriage.
        act.to(0.4, hand("L", 0.6, 0.75, 0.1), {"mouth.curve": 0.9, "head.turn": -3.0, "eye.open": 0.75})
        for turn in (-45.0, 35.0, -45.0, 35.0):
            act.also(0.24, {"hand.turn.L": turn, "hand.x.L": 0.6 - turn * 0.002}, overshoot=0, ease=easeInOut)
        act.rest()

    def explain(self, act):
        act.to(0.4, hand("R", 0.75, 0.1, 0.1), hand("L", -0.45, -0.1, 0.5), {"brow.cock": 3.0}).hold(0.4)
        act.also(0.4, hand("R", 0.3, -0.3, 0.6), hand("L", 0.75, 0.2, 0.1)).hold(0.4)
        act.also(0.4, hand("R", 0.8, 0.25, 0.1), {"brow.y": 2.0}).hold(0.4).rest()

    def speak(self, act):
        act.hold(0.4).to(0.4, hand("R", 0.7, 0.1, 0.2), {"brow.cock": 3.0}).hold(0.6).blink().hold(0.4)
        act.to(0.32, hand("L", 0.65, 0.0, 0.2)).hold(0.6).rest(0.32).hold(0.5)

    # What she does.

    def think(self, act):
        act.to(0.5, {"eye.x": -0.7, "eye.y": -0.8, "mouth.wide": 0.55, "mouth.curve": 0.1, "head.turn": 4.0, "brow.cock": 3.5,
                     "thought": 0.4},
               hand("R", -0.3, 0.28, 0.3, 0.6), hand("L", -0.35, -0.4, 0.4), overshoot=0.05)
        for number in range(1, 4):
            act.also(0.08, {"thought": 0.4 + number * 0.2}, overshoot=0).hold(0.12)
            act.also(0.1, {"hand.y.R": 0.34}, overshoot=0).also(0.1, {"hand.y.R": 0.28}, overshoot=0).hold(0.16)
        act.hold(0.4)

    def read(self, act):
        act.to(0.5, {"book": 1.0, "eye.y": 0.7, "eye.x": -0.6, "head.y": -2.0, "lorgnette": 1.0, "out.B": 1.0}, hands(-0.12, -0.42),
               hand("B", 0.6, -0.05, 0.7), overshoot=0).hold(0.4)
        act.also(0.48, {"eye.x": 0.6}, ease=linear, overshoot=0).hold(0.16).also(0.16, {"eye.x": -0.6}, overshoot=0)
        act.also(0.48, {"eye.x": 0.6, "brow.cock": 4.0}, ease=linear, overshoot=0)
        act.also(0.4, {"page": 1.0, "eye.x": 0.0, "brow.cock": 1.2}, ease=linear, overshoot=0).hold(0.8)

    def write(self, act):
        # With her own ink; and there is still an arm for the tea.
        act.to(0.5, {"paper": 1.0, "eye.y": 0.8, "eye.open": 0.8, "head.y": 2.0, "head.turn": 3.0},
               hand("L", -0.15, -0.45), hand("R", -0.2, -0.3, 0.8), overshoot=0)
        for line in range(1, 4):
            act.also(0.4, {"stroke": line / 3, "hand.x.R": 0.04, "hand.y.R": -0.34 - 0.05 * line}, overshoot=0)
            if line < 3:
                act.also(0.2, {"hand.x.R": -0.25, "head.turn": 3.0 - line}, overshoot=0)
        act.also(0.24, hand("R", 0.35, -0.05), {"eye.y": 0.4, "head.turn": -4.0, "brow.cock": 4.0, "mouth.curve": 0.9}).hold(0.6)

    def search(self, act):
        # Through the lorgnette, and at last under the hat.
        act.to(0.4, {"lorgnette": 1.0, "eye.x": -0.9, "head.turn": -4.0, "eye.open": 1.0}, hand("R", 0.56, -0.02, 0.7), overshoot=0)
        mark = act.mark()
        act.hold(0.3)
        act.also(0.64, {"eye.x": 0.9, "head.turn": 4.0}, overshoot=0, ease=easeInOut).hold(0.4)
        act.also(0.32, {"eye.x": 0.5, "eye.y": -0.9, "head.turn": 0.0, "out.B": 1.0}, hand("B", 0.25, 1.55, 0.5), overshoot=0)
        act.also(0.24, {"hat.y": -8.0, "hat.turn": 20.0}, hand("B", 0.35, 1.72), overshoot=0.1).hold(0.5)
        act.also(0.24, {"hat.y": 0.0, "hat.turn": 0.0}, hand("B", 0.25, 1.55), overshoot=0)
        act.also(0.4, {"eye.x": -0.9, "eye.y": 0.0, "head.turn": -4.0, "out.B": 0.0}, hand("B", 0.3, -0.3, 0.3), overshoot=0)
        act.again(mark, 60).rest()

    def process(self, act):
        # She juggles, and thinks of something else.
        def thrown(turn):
            left, right = math.sin(turn * 6 * math.pi), math.sin(turn * 6 * math.pi + 1.6)
            return {"juggle.turn": turn * 360, "head.turn": 2.0 * math.sin(turn * 2 * math.pi), **hand("L", 0.8, 0.32 + 0.12 * left),
                    **hand("R", 0.8, 0.32 + 0.12 * right)}
        act.to(0.4, thrown(0.0), {"juggle": 1.0, "eye.open": 0.55, "eye.x": 0.6, "eye.y": -0.4, "mouth.wide": 0.7}, overshoot=0)
        mark = act.mark()
        for number in range(1, 19):
            act.also(0.07, thrown(number / 18), {"eye.open": 0.1 if number in (9, 10) else 0.55}, overshoot=0, ease=linear)
        act.again(mark, 80)
        act.rest(0.4, overshoot=0)

    # Listening and hearing.

    def startListening(self, act):
        # An ear trumpet, for want of an ear.
        act.to(0.48, {"trumpet": 1.0, "head.turn": 5.0, "head.x": -3.0, "eye.x": 0.6, "eye.open": 1.06, "brow.y": 2.5, "brow.cock": 3.0,
                      "mouth.wide": 0.7, "perk": 0.6}, hand("R", 0.28, 0.8, 0.6), hand("L", -0.3, -0.2, 0.5), anticipate=0.08)
        self.hearken(act)

    def hearing_1(self, act):
        # Oh? Do go on.
        act.to(0.32, {"brow.cock": 5.0, "head.turn": 5.0, "eye.x": 0.4, "eye.open": 1.0}, hand("R", -0.4, 0.1, 0.5)).hold(0.6).rest(0.32)

    def hearing_2(self, act):
        act.to(0.32, {"head.y": 5.0, "eye.open": 0.3, "mouth.curve": 1.0, "head.turn": -3.0}, overshoot=0).hold(0.2).rest(0.4)

    def hearing_3(self, act):
        act.to(0.32, {"eye.x": -0.5, "head.turn": -5.0, "mouth.curve": 0.9, "ripple": 0.5}).also(0.3, {"ripple": 1.0},
                                                                                                 overshoot=0).hold(0.2)
        act.rest(0.3, {"ripple": 1.0}).to(0.08)

    # Pointing, looking and gliding; right is the viewer's left.

    def gestureUp(self, act):
        act.to(0.4, hand("R", 0.45, 1.0, 0.1, 1.0), hand("L", -0.35, -0.2, 0.6),
               {"eye.y": -0.8, "eye.x": 0.3, "head.turn": 2.0, "brow.y": 1.5},
               anticipate=0.1).hold(0.5)

    def gestureDown(self, act):
        act.to(0.4, hand("R", 0.58, -0.3, 0.1, 1.0), hand("L", -0.35, -0.2, 0.6),
               {"eye.y": 0.9, "eye.x": 0.4, "head.y": 2.0, "head.turn": 4.0},
               anticipate=0.1).hold(0.5)

    def gestureRight(self, act):
        act.to(0.4, hand("L", 0.9, 0.2, 0.1, 1.0), hand("R", -0.35, -0.2, 0.6), {"eye.x": -0.85, "head.turn": -4.0},
               anticipate=0.1).hold(0.5)

    def gestureLeft(self, act):
        act.to(0.4, hand("R", 0.9, 0.2, 0.1, 1.0), hand("L", -0.35, -0.2, 0.6), {"eye.x": 0.85, "head.turn": 4.0},
               anticipate=0.1).hold(0.5)

    def lookDown(self, act):
        act.to(0.32, {"eye.y": 0.95, "head.y": 2.0, "brow.cock": 3.0}).hold(0.5)

    def moveUp(self, act):
        act.to(0.16, {"body.squash": -0.08, "eye.y": -0.5}, overshoot=0)
        act.to(0.24, {"body.squash": 0.03, "body.y": -6.0, "jet": 0.9, "eye.y": -0.8, "bubbles": 0.4}, hands(0.35, -0.45, 0.1),
               overshoot=0.1).hold(0.1)

    def moveDown(self, act):
        # As a parachute.
        act.to(0.32, {"body.squash": -0.05, "body.y": -4.0, "eye.y": 0.8, "lift": 0.9, "hat.y": -5.0, "perk": 1.0},
               hands(0.8, 0.4, 0.1)).hold(0.1)

    def moveRight(self, act):
        act.to(0.32, {"body.turn": -5.5, "body.y": -4.0, "eye.x": -0.85, "head.turn": -3.0, "jet": 0.5, "sway": 1.3},
               hand("L", 0.36, 0.45, 0.1, 0.6),
               hand("R", 0.8, -0.1, 0.1), anticipate=0.15).hold(0.1)

    def moveLeft(self, act):
        act.to(0.32, {"body.turn": 5.5, "body.y": -4.0, "eye.x": 0.85, "head.turn": 3.0, "jet": 0.5, "sway": -1.3},
               hand("R", 0.36, 0.45, 0.1, 0.6),
               hand("L", 0.8, -0.1, 0.1), anticipate=0.15).hold(0.1)

    # Passing the time.

    def idle1_2(self, act):
        act.to(0.32, {"eye.x": -0.85, "head.turn": -3.0, "brow.cock": 4.0}).hold(0.9).blink().rest(0.32).hold(0.4)

    def idle1_3(self, act):
        # The feather is in her eye; she blows it away.
        act.to(0.3, {"feather.turn": -30.0, "eye.x": 0.7, "eye.y": -0.9}, overshoot=0).hold(0.3)
        act.also(0.16, {"mouth.wide": 0.35, "mouth.open": 0.2, "mouth.curve": 0.0, "blush": 0.9}, overshoot=0)
        act.also(0.12, {"feather.turn": 35.0, "head.y": -2.0}, overshoot=0, step=BRISK)
        act.rest(0.32).hold(0.5)

    def idle1_4(self, act):
        act.hold(0.3).to(0.5, {"ripple": 1.0}, ease=linear, overshoot=0).rest(0.08).hold(0.4)

    def idle2_1(self, act):
        # An arm from behind sets the hat straight.
        act.to(0.24, {"hat.turn": 14.0, "hat.x": 3.0, "eye.y": -0.8, "eye.x": 0.7}).hold(0.3)
        act.also(0.4, {"out.B": 1.0}, hand("B", 0.28, 1.5, 0.5), overshoot=0)
        act.also(0.2, {"hat.turn": -4.0, "hat.x": 0.0}, overshoot=0.1).also(0.16, {"hat.turn": 0.0, "mouth.curve": 1.0},
                                                                            overshoot=0).hold(0.2)
        act.rest(0.48, overshoot=0).hold(0.3)

    def idle2_2(self, act):
        # Tea.
        act.to(0.5, {"cup": 1.0, "eye.y": 0.4, "eye.x": -0.4}, hand("L", 0.1, 0.15, 0.7), overshoot=0)
        for steam in (0.25, 0.5, 0.75, 1.0):
            act.also(0.16, {"steam": steam}, overshoot=0, ease=linear)
        act.also(0.32, {"eye.open": 0.0, "mouth.wide": 0.5, "steam": 0.0}, hand("L", -0.52, 0.36, 0.7), overshoot=0).hold(0.5)
        act.also(0.32, {"mouth.wide": 1.0, "mouth.curve": 1.0, "blush": 1.0, "tint": 0.5}, hand("L", 0.1, 0.15), overshoot=0).hold(0.4)
        act.also(0.16, {"eye.open": 0.84}, overshoot=0).rest(0.5, overshoot=0)

    def idle2_3(self, act):
        act.to(0.4, "fanning", {"eye.open": 0.4, "head.turn": 2.0}, overshoot=0)
        for turn in (8.0, 34.0, 8.0, 34.0, 8.0):
            act.also(0.32, {"fan.turn": turn, "feather.turn": turn * 0.3 - 6.0}, overshoot=0, ease=easeInOut)
        act.rest(0.4, overshoot=0)

    def idle3_1(self, act):
        # A yawn, behind the fan.
        act.to(0.56, {"eye.open": 0.4, "head.y": -1.0, "mouth.open": 0.3, "mouth.wide": 0.6, "mouth.curve": 0.1}, overshoot=0)
        act.also(0.4, hand("R", -0.6, -0.15, 0.7), {"fan": 1.0, "fan.turn": -4.0, "eye.open": 0.0, "mouth.open": 1.0, "head.y": -4.0,
                                                    "body.squash": 0.04, "brow.y": 3.0}, overshoot=0, ease=easeInOut).hold(0.5)
        act.also(0.4, {"mouth.open": 0.0, "head.y": 2.0, "body.squash": 0.0, "brow.y": 0.0}, overshoot=0).also(0.2,
                                                                                                               {"eye.open": 0.6}).hold(0.3)
        act.rest(0.5, overshoot=0)

    def idle3_2(self, act):
        # The hat slides over her eyes; a bubble comes and goes.
        act.to(0.8, {"eye.open": 0.4, "head.y": 2.0, "head.turn": 3.0, "mouth.curve": 0.3}, ease=easeInOut, overshoot=0).hold(0.3)
        act.also(0.5, {"eye.open": 0.0, "head.y": 5.0, "head.turn": 7.0, "mouth.wide": 0.5}, hands(0.5, -0.55, 0.4), ease=easeInOut,
                 overshoot=0)
        act.also(0.4, {"hat.y": 9.0, "hat.x": -3.0, "hat.turn": -6.0}, overshoot=0.1)
        mark = act.mark()
        for snore, doze in ((0.5, 0.33), (1.0, 0.66)):
            act.also(0.4, {"breath": snore, "snore": snore, "doze": doze}, ease=easeInOut, overshoot=0)
        act.hold(0.2)
        act.also(0.4, {"breath": 0.5, "snore": 0.5, "doze": 1.0}, ease=easeInOut, overshoot=0)
        act.also(0.4, {"breath": 0.0, "snore": 0.15, "doze": 0.0}, ease=easeInOut, overshoot=0).hold(0.3)
        act.again(mark, 75).rest(0.5)
