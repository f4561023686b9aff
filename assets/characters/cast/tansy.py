"""Tansy, a beekeeper: past seventy, warm, dry and quicker than she looks. A straw hat speaks for her as much as her
brows do; a braid, earrings and spectacles on a cord follow what she does, and so, in her own time, does a bee."""

import math

import props
from character import Character, hand, hands
from draw import Sketch, ellipse, num, path, points, radial, smooth, stroke
from features import Arm, Eye, Mouth, brow
from rig import BRISK, Joints, Swing, easeIn, easeInOut, easeOut, elbow, linear

LINE = "#532a2c"
INNER = stroke(LINE, 2.2)
FINE = stroke(LINE, 1.6)
SKIN, SKIN_LIGHT, SKIN_DARK = "#d2915f", "#e8b485", "#a56a45"
SILVER, SILVER_DARK = "#dddbe8", "#8d89a3"
STRAW_DARK = "#a97428"
GOLD = "#f2c14a"
PERCH = (104, 27)       # where the bee sits on the hat
SUNK = 99               # pixels by which she is in the ground when her hat lies on it


def between(a, b, t):
    return a[0] + (b[0] - a[0]) * t, a[1] + (b[1] - a[1]) * t


class BareArm(Arm):
    """A sleeve rolled up above the elbow's bend, a forearm, and a hand of four fingers."""

    cuff = 0.56  # share of the arm that the sleeve covers

    def draw(self, sketch):
        here, there = (self.x, self.y), self.place(sketch)
        bend = elbow(*here, *there, self.length * 0.52, self.length * 0.52, self.side)
        way = (2 * bend[0] - (here[0] + there[0]) / 2, 2 * bend[1] - (here[1] + there[1]) / 2)
        way = between(bend, way, 0.6)
        angle = (math.degrees(math.atan2(there[1] - way[1], there[0] - way[0])) +
                 self.side * sketch[f"hand.turn.{self.suffix}"])

        def part(begin, end):
            a, b = between(here, way, begin), between(way, there, begin)
            first = between(a, b, begin)
            last = between(between(here, way, end), between(way, there, end), end)
            return f"M{points(*first)} Q{points(*between(a, b, end), *last)}"
        bare, sleeve = part(self.cuff - 0.1, 1.0), part(0.0, self.cuff)

        def cut(colour, width):
            return stroke(colour, width).replace('linecap="round"', 'linecap="butt"')
        return (path(bare, extra=stroke(LINE, self.width + 2.0)) +
                path(bare, extra=stroke(self.fill, self.width - 2.4)) +
                path(part(self.cuff, 0.9), extra=f'transform="translate(-0.5 -1.1)" {stroke(self.light, 2.2)}') +
                self.drawHand(sketch, *there, angle) +
                ellipse(*here, self.width * 0.5 + 2.4, self.width * 0.5 + 2.4, LINE) +
                path(part(0.0, self.cuff + 0.025), extra=cut(LINE, self.width + 5.4)) +
                path(sleeve, extra=cut("#5d70b8", self.width + 1.0)) +
                ellipse(*here, self.width * 0.5 + 0.5, self.width * 0.5 + 0.5, "#5d70b8") +
                path(part(0.0, self.cuff - 0.12), extra=f'transform="translate(-0.8 -1.6)" {stroke("#8496d8", 3.2)}') +
                path(part(self.cuff - 0.11, self.cuff + 0.05), extra=cut(LINE, self.width + 7.2)) +
                path(part(self.cuff - 0.07, self.cuff + 0.015), extra=cut("#b3c1f2", self.width + 3.4)))

    def drawHand(self, sketch, x, y, angle):
        fist, point = sketch[f"fist.{self.suffix}"], sketch[f"point.{self.suffix}"]
        size, lines, fills = self.hand, "", ""
        for number in range(4):
            spread = (number - 1.5) * (0.40 - 0.14 * fist) * self.side
            length = size * (1.85 - 0.85 * fist - 0.12 * abs(number - 1.3))
            if point > 0:
                length += (size * (2.3 if number == 0 else 0.92) - length) * point
                spread *= 1 - 0.45 * point
            d = (f"M{points(size * 0.3, math.sin(spread) * size * 0.6)} "
                 f"L{points(math.cos(spread) * length, math.sin(spread) * length)}")
            lines += path(d, extra=stroke(LINE, size * 0.44 + 3.4))
            fills += path(d, extra=stroke(self.palm, size * 0.44))
        thumb = f"M{points(-size * 0.1, 0)} L{points(size * 0.62, -self.side * size * (1.2 - 0.35 * fist))}"
        return (f'<g transform="translate({points(x, y)}) rotate({num(angle)})">' +
                path(thumb, extra=stroke(LINE, size * 0.5 + 3.4)) +
                ellipse(0, 0, size, size * 0.92, self.palm, stroke(LINE, 3.4)) +
                lines + fills + path(thumb, extra=stroke(self.palm, size * 0.5)) +
                ellipse(0, 0, size * 0.95, size * 0.86, self.palm) + "</g>")


class Lips(Mouth):
    """A mouth close above a chin, whose line does not belong to what speaks."""

    def box(self):
        left, top, right, bottom = super().box()
        return left + 1, top, right - 1, bottom - 2.2


def flown(x, y, face=None):
    """The bee in the air, at a place of the canvas; it looks to the viewer's right where `face` is above 0."""
    there = {"fly": 1.0, "bee.x": float(x - PERCH[0]), "bee.y": float(y - PERCH[1])}
    return there if face is None else {**there, "face": face}


class Tansy(Character):
    name = "Tansy"
    description = "A beekeeper of seventy-one. She has been stung by better jokes than yours."
    guid = "{6B1D0F52-7C0A-4E0B-9C55-0E7B3A1F6C04}"
    voice = {"gender": "female", "language": 0x0809, "speed": 175, "pitch": 168, "age": 71, "style": "Dry"}
    balloon = {"background": "#F3EEFF", "border": "#4B3A78"}
    size = 160
    colours = 84
    tempo = 0.95
    amplitude = 0.8
    springiness = 0.75

    joints = Joints({
        "body": (None, 80.0, 150.0), "specs": ("body", 80.0, 98.0), "head": ("body", 80.0, 95.0),
        "braid": ("head", 104.0, 82.0), "plait": ("braid", 106.0, 101.0),
        "ringL": ("head", 52.5, 79.0), "ringR": ("head", 107.5, 79.0), "hat": ("head", 80.0, 46.0),
        "sprig": ("hat", 60.0, 38.0), "bee": (None, float(PERCH[0]), float(PERCH[1])),
    }, whole=("body", "head", "hat", "bee"))
    swings = {
        "braid.turn": Swing({"head.turn": 1.1, "head.x": 1.2, "body.turn": 1.2, "body.x": 1.2}, 0.6, 0.24),
        "plait.turn": Swing({"head.turn": 0.8, "head.x": 1.4, "body.turn": 1.2, "body.x": 1.4, "body.y": 0.8}, 0.5,
                            0.2),
        "ringL.turn": Swing({"head.turn": 2.4, "head.x": 3.0, "body.turn": 2.0, "body.x": 2.0}, 0.36, 0.2),
        "ringR.turn": Swing({"head.turn": 2.4, "head.x": 3.0, "body.turn": 2.0, "body.x": 2.0}, 0.36, 0.2),
        "specs.turn": Swing({"body.turn": 1.8, "body.x": 2.0, "head.turn": 0.5}, 0.5, 0.22),
        "sprig.turn": Swing({"hat.turn": 1.4, "hat.y": 1.2, "head.turn": 1.2, "body.y": 1.2}, 0.4, 0.22),
        "hem": Swing({"body.turn": 0.08, "body.x": 0.08}, 0.55, 0.3),
    }
    own_channels = {
        "eye.open": 0.88, "there": 1.0, "droop": 0.0, "veil": 0.0, "worn": 0.0, "hem": 0.0, "dipper": 0.0, "drip": 0.0,
        "smoker": 0.0, "pump": 0.0, "puff": 0.0, "gong": 0.0, "gong.turn": 0.0, "beater": 0.0, "ring": 0.0, "jar": 0.0,
        "fly": 0.0, "sit": 0.0, "face": -1.0, "bee.size": 1.0, "near": 1.0, "swarm": 0.0, "swarm.angle": 0.0,
                    "cross": 0.0,
        **hand("L", 0.2, -0.8, 0.3), **hand("R", 0.3, -0.5, 0.6, turn=20.0),
    }
    poses = {
        "dry": {"eye.open": 0.62, "brow.cock": 4.0, "mouth.curve": 0.45, "mouth.wide": 0.85},
        "beam": {"eye.smile": 1.0, "mouth.open": 0.5, "mouth.curve": 1.0, "blush": 1.0, "droop": -0.5, "brow.y": 1.5},
    }

    arms = [BareArm(side, 80 + side * 21, 106, 40, 9.4, 5.6, SKIN, SKIN_LIGHT, LINE, palm=SKIN_LIGHT, spread=6.0)
            for side in (-1, 1)]
    eyes = [Eye(side, 80 + side * 12.4, 68, 9.0, 8.8, "#c4865a", LINE, iris="#3f7a63", pupil=0.455, width=1.8)
            for side in (-1, 1)]
    mouth = Lips(80, 85, 9.6, 6.8, "#8a2c34", inside="#6d1a26")

    def defs(self):
        return (radial("skin", "#f0c396", "#d99c6c", "#b27549", cy=0.4) +
                radial("hair", "#ffffff", "#dddbe8", "#aaa6bf") +
                radial("straw", "#fff0b8", "#f3cd6e", "#cf9c42") + radial("dress", "#8496d8", "#5d70b8", "#3f4c8a") +
                radial("apron", "#fffdf6", "#f8eeda", "#dfcdaa") + radial("boot", "#98aa6e", "#6c8049", "#4a5a32") +
                radial("tin", "#eef3f6", "#b9c4cc", "#7d8a95") + radial("honey", "#ffe27a", "#f4ab2b", "#c97612") +
                props.DEFS)

    def derived(self, pose):
        breath = pose["breath"]
        pose = {**pose, "head.y": pose["head.y"] - 1.2 * breath}
        # The bee goes where the hat goes while it sits there.
        matrix = self.joints.matrices(pose)["hat"]
        sitting = 1 - min(1.0, max(0.0, pose["fly"]))
        x, y = PERCH
        there = matrix[0] * x + matrix[2] * y + matrix[4], matrix[1] * x + matrix[3] * y + matrix[5]
        sunk = (1 - pose["rise"]) * SUNK
        return {**pose, "bee.x": pose["bee.x"] + round(sitting * (there[0] - x)),
                "bee.y": pose["bee.y"] + round(sitting * (there[1] - y + sunk))}

    def draw(self, sketch):
        rise = sketch["rise"]
        if sketch["there"] <= 0.5:
            return
        if sketch["hole"] > 0:
            sketch.layer()
            sketch.on(None, ellipse(80, 151, 47 * sketch["hole"], 4.6 * sketch["hole"], "#452a3d", stroke(LINE, 2.2)))
        if rise >= 1:
            self.drawFigure(sketch)
        else:
            # She stands in the ground as if her hat had no bottom.
            inner = Sketch(self.joints, sketch.pose, self.size)
            sketch.layer()
            if rise > 0:
                self.drawFigure(inner)
                sunk = f'<g transform="translate(0 {num((1 - rise) * SUNK)})">{inner.flattened()}</g>'
                sketch.on(None, sketch.clip("g", path("M-40,-80 H200 V151 H127 Q80,159 33,151 H-40 Z", "#000"), sunk),
                          path("M33,151 Q80,159 127,151", extra=stroke(LINE, 2.4)))
            elif sketch["near"] > 0.1:
                # The hat alone, as near as it is.
                self.drawHat(inner)
                x, y = inner.at("hat", 80, 46)
                near = sketch["near"]
                sketch.on(None, f'<g transform="translate({points(x * (1 - near), SUNK + y * (1 - near))}) '
                                f'scale({num(near)})">'
                                f'{inner.flattened()}</g>')
        self.drawAir(sketch)
        self.drawBee(sketch)

    # The figure, from the back to the front.

    def drawFigure(self, sketch):
        sketch.layer("head")
        self.drawHairBehind(sketch)
        sketch.layer("body")
        self.drawBody(sketch)
        high = [arm for arm in self.arms if arm.place(sketch)[1] <= 92]
        low = [arm for arm in self.arms if arm not in high]
        filled = [arm for arm in low
                  if arm.side > 0 and any(sketch[thing] > 0 for thing in ("dipper", "jar", "beater"))]
        holding = any(sketch[thing] > 0 for thing in ("book", "paper", "smoker"))
        if sketch["worn"] < 0.5:
            sketch.layer("body")
            self.drawHangingSpectacles(sketch)
        for arm in low:
            if not holding and arm not in filled:
                sketch.layer("body")
                sketch.on("body", arm.draw(sketch))
        sketch.layer("head")
        self.drawBraid(sketch)
        self.drawHead(sketch)
        self.drawHat(sketch)
        for arm in high:
            sketch.layer("body")
            self.drawBehindHand(sketch, arm)
            sketch.on("body", arm.draw(sketch))
            if arm.side > 0 and sketch["dipper"] > 0:
                self.drawDipper(sketch, *arm.place(sketch))
        if holding:
            sketch.layer("body")
            self.drawHeld(sketch)
            sketch.on("body", *(arm.draw(sketch) for arm in low))
            if sketch["paper"] > 0:
                x, y = self.arms[1].place(sketch)
                sketch.on("body", props.pencil(x - 8, y + 6, -48))
        for arm in filled:
            sketch.layer("body")
            self.drawBehindHand(sketch, arm)
            sketch.on("body", arm.draw(sketch))
            if sketch["dipper"] > 0:
                self.drawDipper(sketch, *arm.place(sketch))
        if sketch["glass"] > 0:
            sketch.layer()
            x, y = self.arms[1].place(sketch)
            x, y = sketch.at("body", x - 12, y - 26)
            sketch.on(None, props.glass(x, y, 62, sketch["glass"]))
            if sketch["glass"] > 0.9:
                px, py = x + 5 * sketch["eye.x"], y + 2
                sketch.on(None, ellipse(x, y, 11.4, 11.4, "#fbfdff"),
                          ellipse(px, py, 7.4, 7.8, "#3f7a63", stroke(LINE, 1.2)), ellipse(px, py, 4.6, 5.2, "#24160f"),
                          ellipse(px - 2.2, py - 2.8, 2.0, 2.2, "#ffffff"))

    def drawHairBehind(self, sketch):
        sketch.on("head", path("M80,34 C104,34 113,50 112,68 C112,80 109,90 102,95 L58,95 C51,90 48,80 48,68 C47,50 "
                               "56,34 80,34 Z",
                               "url(#hair)", INNER))

    def drawBody(self, sketch):
        hem, wide = 8 * sketch["hem"], 0.9 * sketch["breath"]
        boots = "".join(path(f"M{points(x - 7, 134)} h14 v10 q{points(4 + side * 3, 1, 5 + side * 2, 6)} q0,3 -3,3 "
                             f"h-16 q-4,0 -4,-4 "
                             f"q0,-4 4,-5 Z", "url(#boot)", INNER) for side, x in ((-1, 68), (1, 91)))
        dress = (f"M80,90 C91,90 100,95 {points(103 + wide, 104)} C105,114 "
                 f"{points(110 + hem * 0.5, 128, 114 + hem, 141)} "
                 f"C{points(104 + hem, 147, 92 + hem, 144, 80 + hem, 146)} "
                 f"C{points(68 + hem, 144, 56 + hem, 147, 46 + hem, 141)} "
                 f"C{points(50 + hem * 0.5, 128)} 55,114 {points(57 - wide, 104)} C60,95 69,90 80,90 Z")
        apron = (f"M68,103 Q80,106 92,103 L94,117 C{points(101, 124, 103 + hem * 0.6, 131, 104 + hem * 0.9, 138)} "
                 f"Q{points(80 + hem, 145, 56 + hem * 0.9, 138)} C{points(57 + hem * 0.6, 131, 59, 124)} 66,117 Z")
        straps = path("M69,104 C67,100 66,97 66,94 M91,104 C93,100 94,97 94,94", extra=stroke(LINE, 5.4))
        straps += path("M69,104 C67,100 66,97 66,94 M91,104 C93,100 94,97 94,94", extra=stroke("#f8eeda", 2.6))
        stick = (path("M92,129 L96,114", extra=stroke(LINE, 4.6)) +
                 path("M92,129 L96,114", extra=stroke("#c98f4e", 2.2)) +
                 ellipse(96.6, 112, 3.4, 4.6, "#e0ab66", FINE) +
                 path("M93.6,111 h6 M93.6,113.4 h6", extra=stroke(LINE, 1.0)))
        pocket = (path("M68,123 h28 q0,11 -5,12 h-18 q-5,-1 -5,-12 Z", "#fffaf0", FINE) +
                  path("M79.5,126 l3.4,2 v3.6 l-3.4,2 l-3.4,-2 v-3.6 Z", GOLD, stroke(STRAW_DARK, 1.3)))
        collar = "".join(path(f"M80,101 L{points(80 + side * 4, 92)} L{points(80 + side * 15, 94)} "
                              f"Q{points(80 + side * 13, 102, 80 + side * 9, 103)} Z",
                              "#fffdf6", FINE) for side in (-1, 1))
        neck = path("M73,88 h14 v7 l-7,6 l-7,-6 Z", SKIN_DARK)
        sketch.on("body", boots, path(dress, "url(#dress)", INNER), straps, stick, path(apron, "url(#apron)", INNER),
                  pocket, neck,
                  collar, path("M66,118 Q80,121 94,118", extra=stroke(LINE, 1.6)))

    def drawHangingSpectacles(self, sketch):
        frame = stroke("#6b4a16", 3.4)
        gold = stroke(GOLD, 1.5)
        lenses = ((75.2, 111.5), (84.8, 111.5))
        cord = "M70,97 Q70,105 71,111 M90,97 Q90,105 89,111"
        sketch.on("specs", path(cord, extra=stroke("#6b4a16", 1.4)),
                  *(ellipse(x, y, 3.7, 3.4, "#e6f4fa", frame) + ellipse(x, y, 3.7, 3.4, "none", gold)
                    for x, y in lenses))

    def drawBraid(self, sketch):
        def strands(places):
            return "".join(path(f"M{points(x, y)} q{points(-6.5, 1.5, -5.5, 8)} q{points(6, 4, 6, 4)} "
                                f"q{points(6, -1, 6.4, -8)} q{points(-2, -5, -6.9, -4)} Z",
                                "url(#hair)", FINE) +
                           path(f"M{points(x - 3, y + 4)} q3,4 5,6", extra=stroke(SILVER_DARK, 1.2))
                           for x, y in places)
        tuft = path("M102.5,119 q-3,7 -1,12 q3,-1 4,-3 q1,3 4,4 q1,-7 -1,-13 Z", "url(#hair)", FINE)
        tie = path("M101.5,117 h8.4 v4.4 h-8.4 Z", "#b0509a", FINE)
        sketch.on("plait", tuft, strands(((105.5, 107),)), tie)
        sketch.on("braid", strands(((106, 97), (106, 88), (104.5, 79))))

    def drawHead(self, sketch):
        rings = ""
        for side, joint in ((-1, "ringL"), (1, "ringR")):
            x = 80 + side * 27.5
            ear = ellipse(x, 71, 4.8, 6.6, SKIN, INNER) + ellipse(x + side * 0.6, 71, 2.2, 3.6, SKIN_DARK)
            sketch.on("head", ear)
            rings += sketch.carried(joint, path(f"M{points(x, 77)} v3", extra=stroke(LINE, 1.4)) +
                                    path(f"M{points(x, 79)} q4,5 0,8 q-4,-3 0,-8 Z", "#f4ab2b", stroke("#7a4a12", 1.4)))
        sketch.layers[-1][2] += rings
        sketch.layer("head")
        face = ("M80,38 C99,38 108,52 108,67 C108,77 106.5,84.5 101,90 C95.5,95.5 88,98.4 80,98.4 C72,98.4 64.5,95.5 "
                "59,90 "
                "C53.5,84.5 52,77 52,67 C52,52 61,38 80,38 Z")
        shade = ellipse(80, 49, 30, 10.5, "#7a3f24", 'opacity="0.38"')
        blush = "".join(ellipse(80 + side * 18.5, 80.5, 6.4, 4.2, "#e2553f", f'opacity="{num(sketch["blush"] * 0.62)}"')
                        for side in (-1, 1))
        lines = "".join(path(f"M{points(80 + side * 11.4, 79.4)} q{points(side * 2.8, 2.6, side * 2.9, 5.6)}",
                             extra=stroke("#b4774f", 1.3)) +
                        path(f"M{points(80 + side * 24, 66)} l{points(side * 2.4, -1.2)} "
                             f"M{points(80 + side * 24, 69)} l{points(side * 2.4, 0.8)}",
                             extra=stroke(SKIN_DARK, 1.3)) for side in (-1, 1))
        chin = path("M77.5,94.6 Q80,95.6 82.5,94.6", extra=stroke("#b4774f", 1.2))
        nose = (path("M76,70 C75,74 73.4,76.6 75.6,78.4 Q80,81 84.4,78.4 C86.6,76.6 85,74 84,70 Z", "#d98d62") +
                ellipse(80, 76.4, 3.8, 2.8, "#e59a70") + ellipse(79, 75.2, 1.5, 1.1, "#f7cda6") +
                path("M75.2,76 Q74,78.6 77,79 Q80,80.6 83,79 Q86,78.6 84.8,76", extra=stroke(LINE, 1.7)))
        sketch.on("head", path(face, "url(#skin)", INNER), sketch.clip("f", path(face, "#000"), shade), blush, lines,
                  chin,
                  self.mouth.draw(sketch), nose, self.drawFringe())
        sketch.layer("head")
        crossed = sketch["cross"]
        for eye in self.eyes:
            look = {**sketch.pose, "eye.x": sketch["eye.x"] - eye.side * crossed,
                    "eye.y": sketch["eye.y"] + 0.4 * crossed}
            inner = Sketch(self.joints, look, self.size)
            inner.layers = sketch.layers
            sketch.on("head", eye.draw(inner), self.drawLashes(sketch, eye))
        for colour, width in ((LINE, 5.0), ("#f4f2f8", 2.7)):
            sketch.on("head", *(brow(sketch, side, 80 + side * 13.2, 56.4, 6.6, colour, width) for side in (-1, 1)))
        if sketch["worn"] >= 0.5:
            self.drawWornSpectacles(sketch)
        if sketch["veil"] > 0:
            sketch.layer("head")
            self.drawVeil(sketch)

    @staticmethod
    def drawFringe():
        drawn = ""
        for side in (-1, 1):
            x = 80 + side * 2
            drawn += path(f"M{points(x, 42)} C{points(x + side * 10, 50, x + side * 20, 52, 80 + side * 23.5, 66)} "
                          f"C{points(80 + side * 24.5, 70, 80 + side * 26.5, 71, 80 + side * 29, 70)} "
                          f"C{points(80 + side * 31, 58, 80 + side * 28, 42, 80 + side * 18, 38)} Z", "url(#hair)",
                          FINE)
            drawn += path(f"M{points(80 + side * 13, 46)} "
                          f"C{points(80 + side * 22, 50, 80 + side * 25.5, 57, 80 + side * 26.6, 66)}",
                          extra=stroke(SILVER_DARK, 1.3))
        return drawn

    @staticmethod
    def drawLashes(sketch, eye):
        if sketch["eye.smile"] > 0.7:
            return ""
        opening = sketch["eye.open"] * (1 - sketch["wink.L" if eye.side < 0 else "wink.R"])
        y = eye.y - (eye.ry * (0.42 if opening >= 0.6 else -0.05))
        x = eye.x + eye.side * eye.rx * 0.92
        lid = ""
        if opening > 0.95:
            rx, ry = eye.rx * (1 + (max(1.0, opening) - 1) * 0.5), eye.ry * max(1.0, opening)
            lid = path(f"M{points(eye.x - rx, eye.y - ry * 0.1)} A{points(rx, ry)} 0 0 1 "
                       f"{points(eye.x + rx, eye.y - ry * 0.1)}",
                       extra=stroke(LINE, 2.4))
        return lid + path(f"M{points(x, y)} l{points(eye.side * 3.2, -2.0)} M{points(x + eye.side * 0.4, y + 2.4)} "
                          f"l{points(eye.side * 3.0, -0.6)}",
                    extra=stroke(LINE, 1.7))

    @staticmethod
    def drawWornSpectacles(sketch):
        lenses = ((69.4, 74.5), (90.6, 74.5))
        rims = "".join(path(f"M{points(x - 9, y - 3.6)} h18 C{points(x + 9, y + 4, x + 5, y + 6.4, x, y + 6.4)} "
                            f"C{points(x - 5, y + 6.4, x - 9, y + 4, x - 9, y - 3.6)} Z", "none", stroke(colour, width))
                       for colour, width in (("#6b4a16", 3.6), (GOLD, 1.7)) for x, y in lenses)
        sketch.on("head", path("M78.4,72.4 Q80,70.8 81.6,72.4 M60.4,71 L53,69.4 M99.6,71 L107,69.4",
                               extra=stroke("#6b4a16", 1.8)), rims,
                  path("M64,73.6 l2.6,0 M85.2,73.6 l2.6,0", extra=stroke("#ffffff", 1.6)))

    def drawVeil(self, sketch):
        low = 50 + 54 * sketch["veil"]
        shape = (f"M40,47 Q80,58 120,47 C{points(121, 60, 116, low - 14, 113, low - 4)} "
                 f"Q{points(80, low + 7, 47, low - 4)} "
                 f"C{points(44, low - 14, 39, 60)} 40,47 Z")
        net = "".join(f"M{points(28 + step * 6.4, 40)} l{points(70, 70)} M{points(132 - step * 6.4, 40)} "
                      f"l{points(-70, 70)} "
                      for step in range(-10, 17))
        sketch.on("hat", sketch.clip("v", path(shape, "#000"), path(net, extra=stroke("#9a93ad", 1.25))),
                  path(shape, "none", stroke("#7b7391", 1.8)))

    def drawHat(self, sketch):
        if sketch["hat.y"] < -5 and sketch["rise"] > 0:
            sketch.layer("head")
            sketch.on("head", path("M52,54 C52,40 64,33 80,33 C96,33 108,40 108,54 C100,46 90,43 80,47 C70,43 60,46 "
                                   "52,54 Z",
                                   "url(#hair)", INNER), ellipse(80, 31, 12, 9, "url(#hair)", INNER),
                      path("M72,30 Q80,24 87,30 M74,34 Q80,29 86,35", extra=stroke(SILVER_DARK, 1.4)))
        sketch.layer("hat")
        sag = 9 * sketch["droop"]
        y = 46 + sag
        back = (f"M{points(35, y)} C{points(44, 36 + sag * 0.3)} 62,35 80,35 C98,35 "
                f"{points(116, 36 + sag * 0.3, 125, y)} "
                f"C{points(114, 55 + sag * 0.5)} 97,54 80,54 C63,54 {points(46, 55 + sag * 0.5, 35, y)} Z")
        weave = (f"M{points(43, y - 0.6)} C{points(56, 50.5 + sag * 0.35)} 68,50 80,50 C92,50 "
                 f"{points(104, 50.5 + sag * 0.35, 117, y - 0.6)} "
                 f"M{points(51, 44 + sag * 0.5)} q2,3 6,3.6 M{points(109, 44 + sag * 0.5)} q-2,3 -6,3.6")
        crown = "M56,44 C56,30 62,18.5 80,18.5 C98,18.5 104,30 104,44 Q80,50 56,44 Z"
        band = "M55.6,38 Q80,45 104.4,38 L104.6,45 Q80,51.4 55.4,45 Z"
        sketch.on("hat", path(back, "url(#straw)", INNER), path(weave, extra=stroke(STRAW_DARK, 1.4)),
                  path(crown, "url(#straw)", INNER),
                  path("M62,30 Q80,35 98,30 M67,24.4 Q80,28 93,24.4", extra=stroke(STRAW_DARK, 1.4)),
                  path(band, "#a24a92", stroke(LINE, 1.9)),
                  path("M60,41.6 Q80,47 96,42.4", extra=stroke("#cf7cc0", 1.6)))
        buds = "".join(ellipse(x, y, 2.5, 2.2, colour, stroke("#4b3a78", 1.2)) for x, y, colour in
                       ((51.5, 22, "#b7a4f0"), (54.5, 24.4, "#8d77d8"), (52.6, 26.4, "#b7a4f0"),
                        (56.4, 28.4, "#8d77d8"), (54.4, 30.6, "#b7a4f0")))
        sketch.layer("hat")
        sketch.on("sprig", path("M61,42 Q58,34 52,24", extra=stroke("#3f6a35", 2.6)), buds)

    # What she holds.

    def drawBehindHand(self, sketch, arm):
        x, y = arm.place(sketch)
        if arm.side < 0:
            if sketch["gong"] > 0:
                self.drawGong(sketch, x, y)
            return
        if sketch["beater"] > 0:
            aside = min(1.0, max(0.0, (x - 66) / 44))
            rod = f"M{points(x + 5 - 5 * aside, y + 5)} L{points(x - 20 + 24 * aside, y - 10 - 11 * aside)}"
            sketch.on("body", path(rod, extra=stroke(LINE, 5.0)), path(rod, extra=stroke("#b9c4cc", 2.4)))
        if sketch["jar"] > 0:
            sketch.on("body", self.jar(x, y - 12, sketch["jar"]))

    def drawDipper(self, sketch, x, y):
        """A stick of wood with a head that holds honey, which runs down from it in a thread."""
        hx, hy = x - 14, y - 9
        thread = sketch["drip"]
        sketch.on("body", path(f"M{points(x + 7, y + 5)} L{points(hx, hy)}", extra=stroke(LINE, 5.2)),
                  path(f"M{points(x + 7, y + 5)} L{points(hx, hy)}", extra=stroke("#c98f4e", 2.6)))
        if thread > 0.05:
            for colour, width in (("#7a4a12", 4.6), ("#f4ab2b", 2.2)):
                sketch.on("body", path(f"M{points(hx - 1, hy + 4)} q1,{num(5 * thread)} 0,{num(12 * thread)}",
                                       extra=stroke(colour, width)))
            sketch.on("body", ellipse(hx - 1, hy + 4 + 12 * thread, 2.2 + thread, 2.8 + thread, "#f4ab2b",
                                      stroke("#7a4a12", 1.4)))
        sketch.on("body", f'<g transform="translate({points(hx, hy)}) rotate(-57)">' +
                  ellipse(0, 0, 6.4, 7.6, "url(#honey)", FINE) + path("M-5.6,-2.8 H5.6 M-6,0.6 H6 M-5.2,4 H5.2",
                                                                      extra=stroke("#a45e0e", 1.3)) +
                  ellipse(-2, -3, 1.4, 2.0, "#fff3bd") + "</g>")

    @staticmethod
    def jar(x, y, size):
        rays = "".join(path(f"M{points(math.cos(a) * 13, math.sin(a) * 14)} "
                            f"L{points(math.cos(a) * 18, math.sin(a) * 19)}", extra=stroke(colour, width))
                       for colour, width in (("#8a5a10", 4.2), ("#ffd75e", 2.2))
                       for a in (math.pi * k / 6 for k in range(6, 13)))
        return (f'<g transform="translate({points(x, y)}) scale({num(size)})">{rays}' +
                path("M-8,-7 h16 q2,2 2,5 v8 q0,4 -4,4 h-12 q-4,0 -4,-4 v-8 q0,-3 2,-5 Z", "url(#honey)", FINE) +
                path("M-8.5,-11 h17 v4.4 h-17 Z", "#b0509a", FINE) + path("M-6.6,-3 v7", extra=stroke("#fff3bd", 2.2)) +
                "</g>")

    def drawGong(self, sketch, x, y):
        """A dinner bell: a steel triangle that hangs from her hand."""
        d = "M0,9 L-14,33 H12"
        turn = num(sketch["gong.turn"])
        sketch.on("body", f'<g transform="translate({points(x, y)}) rotate({turn})">' +
                  path("M0,0 V9", extra=stroke(LINE, 2.2)) +
                  path(d + " L3,13", extra=stroke(LINE, 6.4)) + path(d + " L3,13", extra=stroke("#d5dde3", 3.0)) +
                  "</g>")
        ring = sketch["ring"]
        for number in range(3):
            grown = ring * 1.5 - number * 0.25
            if 0 < grown < 1:
                r = 7 + 6 * number
                sketch.on("body", path(f"M{points(x - 15 - r * 0.3, y + 8 + r * 0.5)} "
                                       f"q{points(-r * 0.45, -r * 0.55, 0, -r * 1.1)}",
                                       extra=stroke("#c98a10", 2.6)))

    def drawHeld(self, sketch):
        # All of it comes out of the pocket.
        def drawn(amount, what):
            sketch.on("body", f'<g transform="translate({points(80 * (1 - amount), 130 * (1 - amount))}) '
                              f'scale({num(amount)})">{what}</g>')
        if sketch["book"] > 0:
            drawn(sketch["book"], props.book(80, 119, "#7a4a96", sketch["page"]))
        if sketch["paper"] > 0:
            drawn(sketch["paper"], props.paper(70, 121, sketch["stroke"]))
        if sketch["smoker"] > 0:
            pump = sketch["pump"]
            drawn(sketch["smoker"], '<g transform="translate(80 117)">' +
                  path(f"M{points(-18 + 7 * pump, -8)} L-3,-10 V10 L{points(-18 + 7 * pump, 12)} Z", "#a5673a", INNER) +
                  path(f"M{points(-14 + 5 * pump, -7)} V11 M{points(-9 + 3 * pump, -8)} V10", extra=stroke(LINE, 1.6)) +
                  path("M-2,-9 h20 v21 q-10,3 -20,0 Z", "url(#tin)", INNER) +
                  path("M-2,-2 h20 M-2,6 h20", extra=stroke("#7d8a95", 1.6)) +
                  path("M-2,-9 C0,-16 12,-18 22,-25 L28,-20 C22,-14 19,-12 18,-9 Z", "url(#tin)", INNER) + "</g>")

    # What is about her.

    def drawSmoke(self, sketch):
        puff = sketch["puff"]
        for number in range(4):
            age = puff - number * 0.28
            if 0 < age < 1:
                r = 3.5 + 6.0 * age * (1 - max(0.0, age - 0.7) * 1.8)
                x, y = 108 + 24 * age + 3 * (number % 2), 91 - 46 * age
                sketch.on(None, ellipse(x, y, r, r * 0.88, "#e6e8f0", stroke("#7f86a0", 1.8)),
                          ellipse(x - r * 0.25, y - r * 0.25, r * 0.4, r * 0.3, "#ffffff"))

    def drawAir(self, sketch):
        if sketch["rise"] < 1:
            return
        sketch.layer()
        if sketch["puff"] > 0:
            self.drawSmoke(sketch)
        props.tears(sketch, 80, 78, 15.5, falls=16, sizes=(4.6, 4.0))
        props.sweat(sketch, 116, 60, falls=8, size=5.0)
        props.sound(sketch, 122, 70, -4)
        if sketch["ask"] > 0:
            sketch.on(None, props.question(142, 30, sketch["ask"]))
        if sketch["call"] > 0:
            sketch.on(None, props.exclamation(142, 30, sketch["call"]))
        if sketch["doze"] > 0:
            sketch.on(None, props.dozing(127, 37, sketch["doze"] * 0.99))
        if sketch["stars"] > 0.2:
            sketch.on(None, props.stars(sketch["stars"], places=((18, 44, 8), (143, 40, 9), (30, 20, 6), (130, 16, 6.5),
                                                                 (14, 76, 5),
                                                                 (147, 76, 5.5))))
        if sketch["notes"] > 0:
            sketch.on(None, props.notes(sketch["notes"], ((18, 40), (142, 44), (132, 22))))
        if sketch["thought"] > 0:
            sketch.on(None, props.thought(138, 17, min(1.0, sketch["thought"] * 1.4), (sketch["thought"] - 0.4) * 5))
        self.drawSwarm(sketch)

    def drawSwarm(self, sketch):
        """A few more bees, which go round her hat."""
        size = sketch["swarm"]
        if size < 0.35:
            return
        sketch.layer()
        for number in range(5):
            angle = sketch["swarm.angle"] * 2 * math.pi + number * 2 * math.pi / 5
            x, y = 80 + 54 * math.cos(angle), 30 + 15 * math.sin(angle) + 3 * math.sin(3 * angle)
            sketch.on(None, f'<g transform="translate({points(x, y)}) '
                            f'scale({num(0.62 * size * (1 if math.sin(angle) < 0 else -1))} {num(0.62 * size)})">' +
                      self.bee(number % 2 == 0, True) + "</g>")

    @staticmethod
    def bee(raised, flying):
        """About (0, 0), looking to the left; as it sits its wings are laid back."""
        wing = stroke("#5b6b8c", 1.3)
        if flying:
            wings = (ellipse(0.5, -7.5, 3.4, 5.0, "#e8f4ff", f'transform="rotate({-16 if raised else 34})" {wing}') +
                     ellipse(4.5, -6.5, 2.8, 4.4, "#d5e9fb", f'transform="rotate({14 if raised else 58})" {wing}'))
        else:
            wings = ellipse(4.5, -4.4, 5.4, 2.6, "#e8f4ff", f'transform="rotate(14)" {wing}')
        return (path("M6,1 l4,1.4 l-4,1.4 Z", "#3a2420") + ellipse(0, 0, 7.0, 5.2, "#ffcf3d", stroke("#3a2420", 1.7)) +
                path("M0,-4.6 Q1.8,0 0,4.6 M3.8,-3.8 Q5.2,0 3.8,3.8", extra=stroke("#3a2420", 2.2)) +
                path("M-5.6,-3.6 q-1,-3 -3.4,-3.4 M-3.8,-4.4 q0,-3 -2,-4.4", extra=stroke("#3a2420", 1.3)) +
                ellipse(-4.2, -0.8, 1.7, 2.0, "#ffffff", stroke("#3a2420", 1.0)) +
                ellipse(-4.6, -0.6, 0.9, 1.2, "#3a2420") + wings)

    def drawBee(self, sketch):
        if sketch["bee.size"] < 0.15:
            return
        sketch.layer("bee")
        flying = sketch["fly"] > 0.5 > sketch["sit"]
        raised = round(sketch["bee.x"] + sketch["bee.y"]) % 2 == 0
        x, y = PERCH
        face = -1 if sketch["face"] > 0 else 1
        sketch.on("bee", f'<g transform="translate({points(x, y - (0 if flying else 5))}) '
                         f'scale({points(face * sketch["bee.size"], sketch["bee.size"])})">'
                         f'{self.bee(raised, flying)}</g>')

    # Coming and going: a hat falls from the sky, a bee tries it, and it has her under it.

    def show(self, act):
        lying = {"rise": 0.0}
        away = {**flown(12, 62, 1.0), "bee.size": 0.1}
        act.cut(lying, away, {"hat.y": -112.0, "hat.x": -34.0, "hat.turn": -60.0, "near": 0.08})
        act.to(0.4, lying, away, {"hat.turn": 9.0}, ease=easeIn, step=BRISK)
        act.to(0.12, lying, away, {"hat.y": -9.0, "hat.turn": -8.0}, ease=easeOut, step=BRISK)
        act.to(0.12, lying, away, ease=easeIn, step=BRISK)
        for number, (x, y) in enumerate(((18, 74), (36, 62), (58, 84), (84, 76), (108, 96), (104, 112))):
            act.also(0.08, flown(x, y, 1.0 if number < 4 else -1.0), {"bee.size": min(1.0, 0.4 + 0.25 * number)},
                     overshoot=0)
        act.to(0.16, lying, overshoot=0)
        act.also(0.08, {"rise": 0.05, "hat.turn": 3.0, "hole": 0.9}, overshoot=0)
        act.also(0.08, {"rise": 0.0, "hat.turn": 0.0}, overshoot=0)
        act.also(0.24, {"rise": 0.40, "hole": 1.0, "hat.turn": -5.0, "eye.x": -0.8}, overshoot=0.1).hold(0.2)
        act.also(0.24, {"eye.x": 0.8, "hat.turn": 5.0, "brow.cock": 4.0}, overshoot=0).hold(0.2)
        act.also(0.1, {"rise": 0.34, "eye.x": 0.0, "hat.turn": 0.0, "eye.open": 0.4}, overshoot=0, step=BRISK)
        act.to(0.24, "beam", hand("R", 0.42, 1.25, 0.2), hand("L", 0.4, -0.5, 0.1),
               {"rise": 1.0, "hole": 1.0, "body.squash": 0.04, "hem": -0.62},
               ease=easeOut, step=BRISK)
        act.also(0.16, {"body.squash": -0.05, "hem": 0.62, "hat.turn": 3.0, "hole": 0.5}, ease=easeInOut, step=BRISK)
        act.also(0.16, {"body.squash": 0.0, "hat.turn": 0.0, "hem": 0.0, "hole": 0.0}, overshoot=0).hold(0.24)
        act.to(0.32)

    def hide(self, act):
        # She takes her leave, lets herself down, and the bee carries the hat away.
        act.to(0.32, {"hat.y": -7.0, "hat.turn": 8.0, "mouth.curve": 1.0, "head.y": 2.0, "wink.L": 1.0},
               hand("R", 0.42, 1.3, 0.3))
        act.hold(0.2)
        act.also(0.16, {"hat.y": 0.0, "hat.turn": 0.0, "wink.L": 0.0, "body.squash": 0.03, "hole": 1.0}, overshoot=0)
        act.also(0.28, {"rise": 0.36, "eye.y": 0.6, "hem": 0.75}, ease=easeIn, step=BRISK)
        act.also(0.12, {"eye.y": 0.0, "body.squash": 0.0}, overshoot=0).hold(0.2).blink()
        act.also(0.16, {"rise": 0.0, "eye.open": 0.3, "hole": 0.8}, ease=easeIn)
        lying = {"rise": 0.0}
        act.to(0.08, lying, {"hat.turn": 5.0}, overshoot=0).to(0.08, lying, overshoot=0)
        # Its place on the canvas is that of its perch, from where it lifts the hat.
        act.also(0.16, flown(98, 112), overshoot=0)
        for number in range(4):
            act.also(0.08, flown(98, 110 + number % 2), {"hat.turn": 3.0 * (number % 2)}, overshoot=0)
        for number in range(10):
            t = (number + 1) / 10
            near, up = 1 - 0.92 * t * t, 112.0 * t * t + 3.0
            act.also(0.08, {"hat.y": -up, "hat.x": 40.0 * t * t, "hat.turn": 5.0 * (-1) ** number, "near": near},
                     flown(80 + 40 * t * t + 18 * near, 145 - up - 35 * near), {"bee.size": near}, overshoot=0,
                     ease=linear)
        act.cut({"there": 0.0, "rise": 0.0})

    # What she feels.

    def pleased(self, act):
        # A laugh that goes down into the apron; both hands go after it.
        act.to(0.36, "beam", hands(-0.25, -0.22, 0.2), {"head.turn": -5.0, "head.y": -2.0}, anticipate=0.15)
        for number in range(6):
            up = number % 2
            act.also(0.12, {"body.y": -3.0 if up else 0.0, "body.squash": 0.015 if up else -0.03,
                            "head.turn": -5.0 + 1.6 * number,
                            "mouth.open": 0.75 if up else 0.45, "hat.turn": 3.0 if up else -3.0}, overshoot=0,
                     step=BRISK)
        act.also(0.2, {"body.y": 0.0, "body.squash": 0.0, "hat.turn": 0.0, "head.turn": 5.0,
                       "mouth.open": 0.4}).hold(0.9)
        act.rest(0.4)

    def sad(self, act):
        # The brim hangs, and so does everything; then it is pulled down over it.
        act.to(0.4, {"brow.turn": -0.8, "mouth.curve": -0.2, "eye.slant": 0.4, "droop": 0.4, "head.y": 1.0},
               overshoot=0)
        act.to(0.6, self.sorrow, hands(0.12, -0.92, 0.2), {"droop": 1.0, "head.y": 5.0, "head.turn": -6.0,
                                                           "body.squash": -0.03,
                                                          "eye.open": 0.7}, ease=easeInOut, overshoot=0)
        act.hold(0.3).also(0.6, {"tear": 1.0}, ease=easeIn).hold(0.7)
        act.also(0.36, hands(0.24, 0.92, 0.8), {"eye.open": 0.0, "head.turn": 0.0}, overshoot=0)
        act.also(0.24, hands(0.24, 0.74), {"hat.y": 13.0, "head.y": 7.0, "tear": 0.6}, overshoot=0)
        for turn in (2.0, -2.0, 2.0, -2.0):
            act.also(0.12, {"head.turn": turn, "body.squash": -0.03 - 0.004 * turn}, overshoot=0, step=BRISK)
        act.also(0.2, {"head.turn": 0.0, "tear": 0.0}, overshoot=0).hold(0.2)
        act.also(0.4, hands(0.26, 0.9), {"hat.y": 0.0, "eye.open": 0.66, "eye.y": -0.2, "head.y": 3.0},
                 overshoot=0).hold(0.3).rest(0.5)

    def surprised(self, act):
        # The hat goes up, and the bee with it; it comes down where it likes.
        act.to(0.12, {"body.squash": -0.06, "eye.open": 0.5, "droop": 0.3}, hands(0.3, -0.6), step=BRISK, overshoot=0)
        act.to(0.18, self.shock, hands(0.14, 0.6, 0.0), flown(22, 26, 1.0),
               {"body.squash": 0.02, "hat.y": -11.0, "hat.turn": -9.0, "droop": -0.6, "eye.open": 1.18}, step=BRISK,
               ease=easeOut)
        for number in range(3):
            act.also(0.08, {"hat.turn": -6.0 + 3.0 * number, "bee.y": -1.0 + number % 2}, overshoot=0)
        act.also(0.16, {"hat.y": -2.0, "hat.turn": 9.0, "droop": 0.3, "body.squash": -0.02, "bee.y": -1.0}, ease=easeIn,
                 step=BRISK)
        act.also(0.24, {"droop": 0.0, "body.squash": 0.0, "fly": 0.0, "bee.x": 0.0, "bee.y": 0.0, "face": -1.0},
                 overshoot=0).hold(0.8)
        act.also(0.24, {"call": 0.0, "eye.open": 1.0, "eye.pupil": 1.0, "mouth.open": 0.0, "mouth.wide": 0.7,
                        "brow.y": 1.0, "eye.y": -0.7,
                        "hat.turn": 4.0}, hand("R", 0.3, 1.3, 0.3), hand("L", 0.2, -0.8, 0.3)).hold(0.3).rest(0.3)

    def confused(self, act):
        # She scratches under the hat; the bee has no idea either.
        act.to(0.4, {"head.turn": 6.0, "eye.x": -0.5, "eye.y": -0.6, "brow.cock": 5.0, "mouth.curve": -0.35,
                     "mouth.wide": 0.7,
                     "ask": 1.0, "hat.turn": -9.0, "hat.y": -3.0}, hand("R", 0.22, 1.02, 0.6, turn=-30.0),
               anticipate=0.1)
        for number, (x, y) in enumerate(((94, 20), (80, 16), (66, 20), (74, 26), (90, 18), (100, 24))):
            act.also(0.12, flown(x, y, -1.0 if number < 3 else 1.0),
                     {"hand.y.R": 1.02 - 0.1 * (number % 2), "hat.turn": -9.0 + 3.0 * (number % 2)}, overshoot=0,
                     step=BRISK)
        act.also(0.16, {"fly": 0.0, "bee.x": 0.0, "bee.y": 0.0, "face": -1.0},
                 overshoot=0).hold(0.5).blink().hold(0.2).rest()

    def uncertain(self, act):
        # She twists the end of her braid.
        act.to(0.44, {"head.turn": 5.0, "eye.x": -0.8, "mouth.curve": -0.2, "mouth.wide": 0.55, "brow.y": 2.0,
                      "brow.turn": -0.8,
                      "sweat": 0.6, "droop": 0.4}, hand("R", 0.0, -0.2, 0.8), hand("L", -0.75, -0.3, 0.7))
        for turn in (10.0, -8.0, 10.0, -6.0):
            act.also(0.18, {"plait.turn": turn, "hand.x.R": turn * 0.006, "sweat": 0.8}, overshoot=0, ease=easeInOut)
        act.also(0.3, {"eye.x": 0.8, "head.turn": -3.0, "sweat": 1.0, "plait.turn": 0.0}).hold(0.5).rest()

    def alert(self, act):
        # A finger up, and the bee stands to attention over it.
        act.to(0.12, {"body.squash": -0.05, "eye.open": 0.7}, step=BRISK, overshoot=0)
        act.to(0.24, hand("R", 0.34, 0.72, 0.6, 1.0), flown(132, 30, -1.0),
               {"body.squash": 0.03, "eye.open": 1.16, "brow.y": 2.5, "mouth.wide": 0.6, "mouth.open": 0.3,
                "droop": -0.6, "hat.y": -2.0},
               step=BRISK, overshoot=0.15)
        for number in range(4):
            act.also(0.08, {"bee.y": 3.0 + number % 2, "bee.x": 28.0 + (number // 2) % 2}, overshoot=0)
        act.also(0.16, {"eye.x": -0.8, "head.turn": -4.0, "bee.y": 3.0}, overshoot=0.1)
        for number in range(4):
            act.also(0.08, {"bee.y": 4.0 - number % 2}, overshoot=0)
        act.also(0.16, {"eye.x": 0.6, "head.turn": 4.0}, overshoot=0.1)
        for number in range(4):
            act.also(0.08, {"bee.y": 4.0 - number % 2}, overshoot=0)
        act.rest(0.4)

    def explain(self, act):
        # On the one hand; on the other; and so.
        act.to(0.36, hand("L", 0.62, -0.05, 0.0, turn=-30.0),
               {"head.turn": -4.0, "eye.x": -0.4, "brow.y": 1.5}).hold(0.5)
        act.also(0.36, hand("R", 0.62, -0.05, 0.0, turn=-30.0), hand("L", 0.3, -0.5, 0.2),
                 {"head.turn": 4.0, "eye.x": 0.4}).hold(0.5)
        act.also(0.36, hands(0.7, -0.15, 0.0, **{"hand.turn.L": -40.0, "hand.turn.R": -40.0}),
                 {"head.turn": 0.0, "eye.x": 0.0, "brow.cock": 4.0, "brow.y": 1.0, "head.y": 1.0,
                  "hat.turn": 3.0}).hold(0.6).rest()

    def congratulate(self, act):
        # Hat off to that, with all the bees that were under it.
        act.to(0.2, {"body.squash": -0.06, "eye.smile": 1.0}, hand("R", 0.34, 1.25, 0.4), hand("L", 0.2, -0.6),
               step=BRISK, overshoot=0)
        act.to(0.24, "beam", hand("R", 0.36, 1.42, 0.3), hand("L", 0.6, 0.7, 0.0),
               {"hat.y": -10.0, "hat.turn": 10.0, "mouth.open": 0.8, "swarm": 0.8, "stars": 0.5}, ease=easeOut,
               step=BRISK)
        for number in range(16):
            high = number % 4 < 2
            act.also(0.08, {"swarm": 1.0, "swarm.angle": 0.05 * number, "stars": min(1.0, 0.6 + 0.1 * number),
                            "hat.turn": 10.0 if high else -6.0, "hand.x.L": 0.6 if high else 0.85,
                            "hand.y.L": 0.7 if high else 0.45,
                            "body.squash": -0.03 if high else 0.0}, overshoot=0)
        act.also(0.16, {"swarm": 0.3, "hat.turn": 8.0, "body.squash": 0.0}, hand("L", 0.62, 0.68)).hold(0.6)
        act.also(0.24, {"hat.y": 0.0, "hat.turn": 0.0, "body.squash": 0.0, "swarm": 0.0, "stars": 0.3, "hand.y.R": 1.2},
                 overshoot=0.2)
        act.rest(0.32)

    def decline(self, act):
        # Thank you, no: down comes the veil.
        no = {"mouth.curve": -0.3, "mouth.wide": 0.8, "eye.open": 0.55, "brow.cock": 4.0, "brow.turn": 0.3}
        act.to(0.32, no, hand("R", 0.3, 0.35, 0.6, 1.0))
        for x in (-4.0, 4.0, -4.0, 4.0):
            act.also(0.18, {"head.x": x, "hand.x.R": 0.3 - x * 0.035, "head.turn": x * 0.4}, overshoot=0,
                     ease=easeInOut)
        act.to(0.28, no, hand("R", 0.28, 1.12, 0.6), {"eye.open": 0.4}, overshoot=0)
        act.also(0.2, hand("R", 0.2, 0.1), {"veil": 1.0, "hat.y": 1.0}, ease=easeIn, overshoot=0)
        act.also(0.24, hand("R", 0.3, -0.5), {"eye.open": 0.0, "head.turn": -5.0, "head.y": -2.0,
                                              "hat.y": 0.0}).hold(0.7)
        act.rest(0.48)

    def acknowledge(self, act):
        # Two fingers to the brim.
        act.to(0.28, hand("R", 0.3, 1.05, 0.3), {"mouth.curve": 1.0, "brow.y": 1.0})
        act.also(0.2, {"head.y": 4.0, "hat.turn": 5.0, "eye.open": 0.3}, overshoot=0).hold(0.2)
        act.also(0.2, hand("R", 0.55, 0.85, 0.0),
                 {"head.y": 0.0, "hat.turn": 0.0, "eye.open": 1.0}).hold(0.24).rest(0.32)

    def announce(self, act):
        # The dinner bell.
        held = hand("L", 0.62, 0.42, 0.8)
        act.to(0.4, held, hand("R", -0.3, -0.15, 0.8), {"gong": 1.0, "beater": 1.0, "eye.x": -0.6, "head.turn": -3.0},
               anticipate=0.1)
        for number in range(3):
            act.also(0.12, hand("R", -0.15, -0.05), {"gong.turn": 0.0}, overshoot=0, step=BRISK)
            act.also(0.06, hand("R", -0.95, 0.02), {"ring": 0.2}, overshoot=0, step=BRISK)
            act.also(0.18, hand("R", -0.45, -0.15), {"gong.turn": 13.0, "ring": 0.9, "notes": 0.33 * (number + 1),
                                                     "head.turn": -3.0 + 2.0 * number,
                                                  "eye.x": 0.0, "mouth.curve": 1.0}, overshoot=0, step=BRISK)
            act.also(0.12, {"gong.turn": -9.0, "ring": 0.0}, overshoot=0, step=BRISK)
        for turn in (7.0, -4.0, 0.0):
            act.also(0.14, hand("R", 0.42, -0.1), {"gong.turn": turn, "mouth.open": 0.7, "eye.open": 1.08,
                                                   "brow.y": 2.0}, overshoot=0, ease=easeInOut)
        act.hold(0.5).rest()

    def suggest(self, act):
        # A jar of light: this year's best.
        act.to(0.32, {"eye.y": -0.7, "eye.x": -0.5, "head.turn": -4.0, "mouth.wide": 0.7, "brow.cock": 3.0}).hold(0.3)
        act.to(0.16, {"eye.x": 0.7, "eye.y": 0.5, "head.turn": 3.0}, hand("R", 0.2, -0.75, 0.7), overshoot=0)
        act.to(0.32, hand("R", 0.62, 0.28, 0.7), {"jar": 1.0, "eye.x": 0.6, "brow.y": 2.0, "mouth.curve": 1.0,
                                                  "mouth.open": 0.35, "blush": 0.9,
                                                 "head.turn": 3.0, "droop": -0.5}, overshoot=0.15).hold(0.24)
        for size in (1.12, 1.0, 1.12, 1.0):
            act.also(0.16, {"jar": size, "eye.x": 0.0}, overshoot=0, ease=easeInOut)
        act.hold(0.4).rest()

    def getAttention(self, act):
        # A rap on the glass from within.
        act.to(0.28, hand("R", 0.42, 0.1, 1.0), {"eye.open": 0.7, "mouth.wide": 0.7, "brow.cock": 3.0, "head.turn": 4.0,
                                                 "head.y": 2.0},
               anticipate=0.15)
        for number in range(3):
            act.also(0.06, hand("R", 0.48, -0.04), {"call": 0.0, "body.squash": 0.0}, overshoot=0, step=BRISK)
            act.also(0.06, hand("R", 0.38, 0.22), {"call": 0.7 + 0.1 * number, "body.squash": -0.02, "hat.turn": 3.0},
                     overshoot=0, step=BRISK)
            act.also(0.12, {"hat.turn": 0.0, "body.squash": 0.0}, overshoot=0, step=BRISK)
        act.also(0.24, hand("R", 0.6, 0.35, 0.0), {"mouth.open": 0.5, "mouth.curve": 0.8, "eye.open": 1.1,
                                                   "brow.y": 2.0, "call": 1.0}).hold(0.5)
        act.rest()

    def greet(self, act):
        # The hat is lifted; the bee, not having been asked, hovers until it is back.
        act.to(0.28, hand("R", 0.3, 1.12, 0.5), {"mouth.curve": 1.0, "head.turn": 2.0})
        act.also(0.24, hand("R", 0.42, 1.4, 0.5), flown(104, 17), {"hat.y": -11.0, "hat.x": 4.0, "hat.turn": 14.0,
                                                                   "eye.smile": 1.0,
                                                                  "mouth.open": 0.35, "blush": 0.9}, ease=easeOut)
        for number in range(5):
            act.also(0.08, {"body.turn": -0.6 * number, "head.y": 0.8 * number,
                            "bee.y": -10.0 + 2.0 * number - number % 2, "bee.x": -2.0},
                     overshoot=0)
        for number in range(4):
            act.also(0.08, {"bee.y": -4.0 + number % 2}, overshoot=0)
        act.also(0.28, hand("R", 0.3, 1.12, 0.5), {"fly": 0.0, "bee.x": 0.0, "bee.y": 0.0, "hat.y": 0.0, "hat.x": 0.0,
                                                   "hat.turn": 0.0, "body.turn": 0.0,
                                                   "head.y": 0.0, "eye.smile": 0.0, "eye.open": 1.0},
                 overshoot=0.2)
        act.also(0.2, {"wink.R": 1.0, "mouth.open": 0.0}, overshoot=0).hold(0.24).rest(0.36)

    def wave(self, act):
        # As queens do it: from the wrist.
        act.to(0.36, hand("L", 0.5, 0.55, 0.1), {"mouth.curve": 1.0, "head.turn": -4.0, "eye.open": 0.8, "blush": 0.8})
        for turn in (28.0, -28.0, 28.0, -28.0):
            act.also(0.24, {"hand.turn.L": turn, "head.turn": -4.0 + turn * 0.05}, overshoot=0, ease=easeInOut)
        act.rest(0.36)

    # At work.

    def think(self, act):
        # The bee goes the way the thought goes: round and round.
        act.to(0.44, hand("R", -0.30, 0.42, 0.9), hand("L", -0.5, -0.35, 0.6),
               {"eye.x": 0.6, "eye.y": -0.8, "mouth.wide": 0.55, "mouth.curve": 0.1, "head.turn": -5.0,
                "brow.cock": 4.0, "thought": 0.4},
               overshoot=0.05)
        for number in range(12):
            angle = number / 6 * 2 * math.pi
            act.also(0.08, flown(74 + 20 * math.cos(angle), 21 + 5 * math.sin(angle),
                                 -1.0 if math.sin(angle) < 0 else 1.0),
                     {"thought": 0.4 + 0.2 * (number // 4 + 1)}, overshoot=0, ease=linear)
        act.also(0.24, {"fly": 0.0, "bee.x": 0.0, "bee.y": 0.0, "face": -1.0}, overshoot=0).hold(0.6)

    spectacles = {"worn": 1.0, "eye.y": 0.75, "eye.open": 0.82, "head.y": 2.0}

    def puttingOn(self, act):
        act.to(0.24, {"eye.y": 0.8, "head.y": 2.0}, hand("R", -0.5, -0.15, 0.7), overshoot=0)
        act.to(0.2, self.spectacles, {"eye.open": 0.4}, hand("R", -0.1, 0.62, 0.7), overshoot=0).hold(0.16)

    def read(self, act):
        self.puttingOn(act)
        reading = hands(-0.12, -0.36, 0.6)
        act.to(0.4, self.spectacles, reading, {"book": 1.0, "eye.x": -0.6}, overshoot=0).hold(0.3)
        act.also(0.4, {"eye.x": 0.6}, ease=linear).hold(0.16)
        act.also(0.16, hand("R", -0.38, 0.32, 0.6, 1.0), {"mouth.open": 0.2, "mouth.wide": 0.5}, overshoot=0).hold(0.1)
        act.also(0.16, hand("R", -0.12, -0.36, 0.6, 0.0), {"mouth.open": 0.0, "mouth.wide": 1.0, "eye.x": -0.6},
                 overshoot=0)
        act.also(0.4, {"page": 1.0, "eye.x": 0.0}, ease=linear, overshoot=0)
        act.also(0.24, {"eye.y": 0.0, "eye.open": 0.7, "brow.cock": 4.0, "mouth.curve": 0.9,
                        "head.turn": -3.0}).hold(0.6)
        act.also(0.2, {"eye.y": 0.75, "eye.open": 0.82, "brow.cock": 0.0, "mouth.curve": 0.7,
                       "head.turn": 0.0}).hold(0.4)

    def write(self, act):
        self.puttingOn(act)
        act.to(0.4, self.spectacles, {"paper": 1.0, "head.turn": 3.0}, hand("L", -0.15, -0.45, 0.5),
               hand("R", -0.2, -0.28, 1.0), overshoot=0)
        for line in range(1, 4):
            act.also(0.36, {"stroke": line / 3, "hand.x.R": 0.02, "hand.y.R": -0.3 - 0.06 * line, "head.turn": 5.0},
                     overshoot=0)
            if line < 3:
                act.also(0.16, {"hand.x.R": -0.25, "head.turn": 3.0}, overshoot=0)
        act.also(0.24, {"eye.y": -0.2, "eye.x": -0.5, "mouth.wide": 0.6, "head.turn": -2.0}).hold(0.4)
        act.also(0.2, {"eye.y": 0.75, "eye.x": 0.0, "mouth.wide": 1.0}).hold(0.3)

    def search(self, act):
        # She looks for the bee; it is behind her, every time.
        act.to(0.36, hand("R", -0.25, 0.2, 0.8), flown(134, 40, -1.0), {"glass": 1.0, "eye.x": -0.9, "head.turn": -5.0},
               overshoot=0)
        mark = act.mark()
        for number in range(4):
            act.also(0.08, {"bee.y": 12.0 + number % 2}, overshoot=0)
        for number in range(7):
            t = (number + 1) / 7
            act.also(0.08, flown(134 - 108 * t, 40 - 23 * math.sin(t * math.pi), -1.0),
                     {"hand.x.R": -0.25 + 0.75 * t, "eye.x": -0.9 + 1.8 * t, "head.turn": -5.0 + 10.0 * t}, overshoot=0,
                     ease=linear)
        for number in range(4):
            act.also(0.08, {"bee.y": 14.0 + number % 2, "face": 1.0}, overshoot=0)
        act.blink()
        for number in range(7):
            t = (number + 1) / 7
            act.also(0.08, flown(26 + 108 * t, 40 - 23 * math.sin(t * math.pi), 1.0),
                     {"hand.x.R": 0.5 - 0.75 * t, "eye.x": 0.9 - 1.8 * t, "head.turn": 5.0 - 10.0 * t}, overshoot=0,
                     ease=linear)
        act.again(mark, 70).rest(0.4)

    def process(self, act):
        # The smoker.
        held = {**hand("L", -0.08, -0.26, 0.8), **hand("R", -0.02, -0.42, 0.8)}
        act.to(0.36, held, {"smoker": 1.0, "eye.x": 0.4, "eye.y": 0.3, "mouth.wide": 0.7}, overshoot=0)
        mark = act.mark()
        for number in range(4):
            act.also(0.16, {"pump": 1.0, "hand.x.L": -0.26, "puff": 0.22 + 0.24 * number, "head.y": 1.5,
                            "brow.turn": 0.3}, overshoot=0)
            act.also(0.16, {"pump": 0.0, "hand.x.L": -0.08, "puff": 0.34 + 0.24 * number, "head.y": 0.0,
                            "brow.turn": 0.0}, overshoot=0)
        act.also(0.24, {"puff": 1.3, "eye.x": 0.7, "eye.y": -0.8, "head.turn": 4.0, "mouth.curve": 1.0}, overshoot=0,
                 ease=linear).hold(0.24)
        act.also(0.48, {"puff": 1.9}, overshoot=0, ease=linear)
        act.also(0.24, {"puff": 0.0, "eye.x": 0.4, "eye.y": 0.3, "head.turn": 0.0}, overshoot=0)
        act.again(mark, 75).rest(0.32)

    # Listening and hearing.

    def startListening(self, act):
        # A hand behind the ear; the brim goes up so as not to be in the way, and the bee leans in as well.
        act.to(0.4, hand("R", 0.42, 0.8, 0.15, turn=-45.0), hand("L", 0.2, -0.6, 0.4),
               {"head.turn": 8.0, "head.x": 3.0, "body.turn": 2.0, "eye.x": 0.6, "eye.open": 1.06, "brow.y": 2.0,
                "mouth.wide": 0.75,
                "droop": -0.9, "hat.turn": -5.0}, anticipate=0.12)
        act.also(0.16, {"face": 1.0}, overshoot=0)
        self.hearken(act)

    def hearing_1(self, act):
        # Mm-hm.
        for _ in range(2):
            act.to(0.24, {"head.y": 3.5, "eye.open": 0.0, "mouth.curve": 1.0, "hat.turn": 2.0}, overshoot=0)
            act.hold(0.1).to(0.2, {"mouth.curve": 1.0})
        act.rest(0.16)

    def hearing_2(self, act):
        # Is that so.
        act.to(0.24, "dry", {"head.turn": -5.0, "brow.cock": 5.5, "eye.x": 0.3}).hold(0.8).rest(0.28)

    def hearing_3(self, act):
        # Even the bee turns round.
        act.to(0.24, {"head.turn": 6.0, "eye.x": 0.6, "brow.y": 2.0, "face": 1.0, "droop": -0.5, "mouth.open": 0.2,
                      "mouth.wide": 0.7}).hold(0.7)
        act.rest(0.28)

    # Pointing, looking and going; right is the viewer's left.

    def gestureUp(self, act):
        # The bee settles on the finger's tip.
        act.to(0.4, hand("R", 0.55, 0.9, 0.6, 1.0), {"eye.y": -0.7, "eye.x": 0.5, "head.turn": 3.0, "droop": -0.4},
               flown(129, 30, -1.0),
               anticipate=0.1)
        act.also(0.16, flown(135, 53, -1.0), overshoot=0).also(0.08, {"sit": 1.0}, overshoot=0).hold(0.6)

    def gestureDown(self, act):
        act.to(0.4, hand("R", 0.72, -0.62, 0.6, 1.0), {"eye.y": 0.85, "eye.x": 0.4, "head.y": 3.0, "head.turn": 4.0,
                                                       "body.turn": 1.5,
                                                      "droop": 0.4}, anticipate=0.12).hold(0.6)

    def gestureRight(self, act):
        act.to(0.4, hand("L", 0.9, 0.1, 0.6, 1.0), {"eye.x": -0.8, "head.turn": -4.0, "head.x": -2.0, "brow.cock": 3.0},
               anticipate=0.15).hold(0.6)

    def gestureLeft(self, act):
        act.to(0.4, hand("R", 0.9, 0.1, 0.6, 1.0), {"eye.x": 0.8, "head.turn": 4.0, "head.x": 2.0, "face": 1.0},
               anticipate=0.15).hold(0.6)

    def lookUp(self, act):
        act.to(0.28, hand("R", 0.3, 1.12, 0.5), {"eye.y": -0.95, "head.y": -2.0, "brow.y": 2.0, "droop": -0.9,
                                                 "hat.y": -2.0}).hold(0.5)

    def lookDown(self, act):
        act.to(0.28, {"eye.y": 0.95, "head.y": 4.0, "eye.open": 0.85, "droop": 0.5, "hat.y": 2.0}).hold(0.5)

    def lookRight(self, act):
        act.to(0.28, {"eye.x": -0.95, "head.turn": -4.0, "head.x": -3.0, "brow.cock": 2.5}).hold(0.5)

    def lookLeft(self, act):
        act.to(0.28, {"eye.x": 0.95, "head.turn": 4.0, "head.x": 3.0, "face": 1.0}).hold(0.5)

    def moveUp(self, act):
        # Held by the brim, and the bees see to the rest.
        act.to(0.3, hands(0.26, 1.2, 0.8), {"body.squash": 0.03, "eye.y": -0.7, "swarm": 1.0, "droop": -0.8,
                                            "hem": 0.38, "mouth.wide": 0.7},
               anticipate=0.05)
        for number in range(4):
            act.also(0.08, {"swarm.angle": 0.05 * (number + 1), "hem": 0.4 - 0.25 * number}, overshoot=0)
        act.hold(0.16)

    def moveDown(self, act):
        # The hat is a parachute.
        act.to(0.3, hands(0.3, 1.28, 0.8), {"hat.y": -9.0, "droop": 1.0, "eye.y": 0.85, "head.y": 2.0,
                                            "mouth.wide": 0.5, "mouth.open": 0.3},
               flown(128, 22, -1.0))
        for number in range(3):
            act.also(0.08, {"bee.y": -6.0 + number % 2}, overshoot=0)

    def moveRight(self, act):
        # One hand for the hat.
        act.to(0.3, hand("R", 0.28, 1.15, 0.6), hand("L", 0.5, -0.35, 0.1),
               {"body.turn": -6.0, "eye.x": -0.8, "hat.turn": 5.0, "hem": 0.75,
                "braid.turn": -12.0},
               anticipate=0.08).hold(0.1)

    def moveLeft(self, act):
        act.to(0.3, hand("L", 0.28, 1.15, 0.6), hand("R", 0.5, -0.35, 0.1),
               {"body.turn": 6.0, "eye.x": 0.8, "hat.turn": -5.0, "hem": -0.75,
                "braid.turn": 12.0, "face": 1.0},
               anticipate=0.08).hold(0.1)

    # At rest and passing the time.

    def blink(self, act):
        # She has seen it before.
        act.blink(long=True)

    def idle1_1(self, act):
        # A breath; the bee shifts its feet.
        act.breathe(1).to(0.08, {"bee.y": -2.0, "face": 1.0}, overshoot=0)
        act.to(0.08, {"face": 1.0}, overshoot=0).blink().hold(0.3)
        act.to(0.08, {"bee.y": -2.0}, overshoot=0).to(0.08, overshoot=0).breathe(1).rest(0.08)

    def speak(self, act):
        act.hold(0.4).to(0.36, hand("R", 0.5, -0.25, 0.0, turn=-20.0), {"head.turn": 3.0}).hold(0.6).blink()
        act.also(0.32, hand("R", 0.4, -0.42), {"head.turn": -2.0, "brow.cock": 3.0}).hold(0.6).rest(0.32).hold(0.5)

    def idle1_2(self, act):
        # The bee turns round on the hat, and again.
        act.hold(0.4).to(0.16, {"face": 1.0}, overshoot=0).hold(0.7)
        act.also(0.16, {"eye.y": -0.8, "eye.x": 0.6}).hold(0.5).rest(0.2).hold(0.3)

    def idle1_3(self, act):
        # One brow asks, the other waits.
        act.hold(0.3).to(0.24, "dry", {"eye.x": -0.7}).hold(0.7)
        act.also(0.2, {"eye.x": 0.6}).hold(0.5).rest(0.28).hold(0.3)

    def idle1_4(self, act):
        # The braid goes back over the shoulder, where it does not stay.
        act.to(0.3, hand("R", 0.05, -0.15, 0.5), {"head.turn": -3.0}, overshoot=0)
        act.also(0.16, {"braid.turn": -14.0, "head.turn": 3.0}, hand("R", 0.35, -0.1), overshoot=0)
        act.also(0.24, {"braid.turn": 0.0, "head.turn": 0.0}, hand("R", 0.3, -0.5),
                 overshoot=0.2).blink().hold(0.3).rest(0.24)

    def idle2_1(self, act):
        # This year's honey, tried for the customers' sake.
        act.to(0.3, hand("R", 0.05, -0.5, 0.7), {"eye.y": 0.8, "eye.x": 0.2, "head.y": 1.0}, overshoot=0)
        act.also(0.36, hand("R", 0.45, -0.12, 0.8), {"dipper": 1.0, "eye.x": 0.5, "eye.y": 0.5, "brow.y": 1.5},
                 overshoot=0)
        for drip in (0.3, 0.6, 0.85, 1.0):
            act.also(0.16, {"drip": drip}, overshoot=0, ease=easeInOut)
        act.hold(0.3)
        act.also(0.36, hand("R", 0.06, 0.32, 0.8), {"drip": 0.0, "eye.open": 0.0, "mouth.wide": 0.6, "mouth.open": 0.5,
                                                    "head.y": 1.0, "eye.y": 0.0}, overshoot=0)
        act.hold(0.3)
        act.also(0.32, hand("R", 0.4, -0.3), {"mouth.open": 0.0, "mouth.wide": 0.8, "mouth.curve": 1.0,
                                              "eye.smile": 1.0, "blush": 1.0,
                                             "head.turn": -4.0}, overshoot=0)
        for turn in (4.0, -4.0, 3.0):
            act.also(0.24, {"head.turn": turn, "hat.turn": turn * 0.5}, overshoot=0, ease=easeInOut)
        act.hold(0.3).rest(0.4)

    def idle2_2(self, act):
        # On the nose, of all places.
        for number, (x, y) in enumerate(((116, 40), (124, 60), (112, 76), (96, 66), (84, 72))):
            act.also(0.12, flown(x, y), {"eye.x": (x - 80) / 50, "eye.y": (y - 68) / 40}, overshoot=0)
        act.also(0.12, flown(80, 74), {"sit": 1.0, "cross": 1.0, "eye.x": 0.0, "eye.y": 0.3, "brow.y": 2.0,
                                       "mouth.wide": 0.5}, overshoot=0)
        act.hold(0.8)
        act.also(0.16, {"mouth.wide": 0.35, "mouth.open": 0.35, "mouth.curve": 0.0, "head.y": -1.0, "blush": 0.9},
                 overshoot=0)
        act.also(0.24, flown(60, 40), {"sit": 0.0, "cross": 0.0, "eye.y": -0.4, "eye.x": -0.5}, overshoot=0)
        act.also(0.32, {"fly": 0.0, "bee.x": 0.0, "bee.y": 0.0, "eye.x": 0.4, "eye.y": -0.7, "mouth.open": 0.0},
                 overshoot=0).hold(0.3).rest(0.32)

    def idle2_3(self, act):
        # The spectacles are polished on the apron, held up, and let go.
        act.to(0.36, hands(-0.42, -0.3, 0.8), {"eye.y": 0.8, "head.y": 2.0}, overshoot=0)
        for number in range(6):
            act.also(0.12, {"hand.x.R": -0.42 + 0.1 * (number % 2), "hand.y.R": -0.3 - 0.06 * (number % 2)},
                     overshoot=0, step=BRISK)
        act.also(0.28, {"worn": 1.0, "eye.y": 0.0, "eye.open": 0.7, "head.y": -1.0}, hand("R", -0.05, 0.6, 0.7),
                 hand("L", 0.2, -0.7, 0.3),
                 overshoot=0).hold(0.5)
        act.also(0.24, {"worn": 0.0, "eye.open": 1.0}, hand("R", -0.45, -0.05, 0.6), overshoot=0)
        act.also(0.2, {"specs.turn": 10.0}, hand("R", 0.3, -0.5, 0.6), overshoot=0)
        act.also(0.16, {"specs.turn": -6.0}, overshoot=0).rest(0.24)

    def idle3_1(self, act):
        # A yawn, and the hat for a fan.
        act.to(0.6, {"eye.open": 0.4, "mouth.open": 0.4, "mouth.wide": 0.6, "mouth.curve": 0.1})
        act.also(0.44, {"eye.open": 0.0, "mouth.open": 1.0, "mouth.wide": 0.8, "head.y": -3.0, "body.squash": 0.02,
                        "brow.y": 2.0, "droop": -0.5},
                 hand("L", -0.16, 0.44, 0.1), ease=easeInOut).hold(0.7)
        act.also(0.4, {"mouth.open": 0.0, "mouth.curve": 0.7, "mouth.wide": 1.0, "eye.open": 0.5, "head.y": 2.0,
                       "body.squash": 0.0, "droop": 0.3},
                 hand("L", 0.2, -0.8, 0.3), overshoot=0).hold(0.3).rest(0.5)

    def idle3_2(self, act):
        # The hat over the eyes.
        act.to(0.6, {"eye.open": 0.4, "head.y": 1.0, "mouth.curve": 0.4}, ease=easeInOut)
        act.also(0.36, hand("R", 0.28, 1.05, 0.6), {"eye.open": 0.3}, overshoot=0)
        act.also(0.32, {"hat.y": 15.0, "eye.open": 0.0, "hand.y.R": 0.8}, overshoot=0)
        act.also(0.5, hands(-0.42, -0.42, 0.5), {"head.y": 4.0, "head.turn": 4.0, "mouth.wide": 0.6}, ease=easeInOut,
                 overshoot=0)
        mark = act.mark()
        for breath, doze in ((0.5, 0.3), (1.0, 0.66), (0.5, 1.0)):
            act.also(0.4, {"breath": breath, "doze": doze, "mouth.open": 0.2 * breath, "hat.y": 15.0 - breath},
                     ease=easeInOut, overshoot=0)
            act.hold(0.2)
        act.also(0.4, {"breath": 0.0, "doze": 0.0, "mouth.open": 0.0, "hat.y": 15.0}, ease=easeInOut,
                 overshoot=0).hold(0.4)
        act.again(mark, 75).rest(0.5)
