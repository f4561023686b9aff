"""Tremolina, a toy accordion: young, theatrical, offended at once and soon friends again. She acts with her bellows:
they shoot up, bend, swell and lose their breath; three buttons on her head and a tassel say the rest. A curtain brings
her."""

import math

import props
from character import Character, hand, hands
from draw import Sketch, ellipse, mixed, num, path, points, radial, stroke
from features import Arm, Eye, Mouth, brow
from rig import BRISK, Joints, Swing, easeIn, easeInOut, easeOut

LINE = "#5e1430"
INNER = stroke(LINE, 2.2)
THIN = stroke(LINE, 1.5)
GOLD, GOLD_DARK = "#f4c04a", "#b97a1c"
CREAM, FLUSHED = "#ffefd2", "#ffab95"
LIGHT_FOLD, DARK_FOLD, VALLEY = "#fff2d6", "#edbb87", "#a9563f"
GLOVE = "#fff7ea"
VELVET = ("#2f4fa8", "#4468c8", "#243c86")

MIDDLE, CEILING, FLOOR = 80, 103, 131   # of the bellows: where they hang on the head, and stand on the base
FOLDS = 5
HALF_WIDTH = 41
FOLD = 6.0                              # pixels, half of a pleat laid flat
KEYS = 8


class Gloved(Arm):
    """A strap of an arm, and a white glove with a cuff."""

    margin = 19

    def place(self, sketch):
        x, y = super().place(sketch)
        seen = sketch.at("head", x, y)[0]
        return x + max(self.margin, min(sketch.size - self.margin, seen)) - seen, y

    def drawHand(self, sketch, x, y, angle):
        size = self.hand
        cuff = f"M{points(-size * 0.95, -size * 0.72)} L{points(-size * 0.95, size * 0.72)}"
        return (f'<g transform="translate({points(x, y)}) rotate({num(angle)})">' +
                path(cuff, extra=stroke(LINE, 7.0)) +
                path(cuff, extra=stroke(GOLD, 3.4)) + "</g>" + super().drawHand(sketch, x, y, angle))


class Lashed(Eye):
    """An eye with lashes at its outer corner."""

    def draw(self, sketch, x=None, y=None):
        side, opened = self.side, sketch["eye.open"] * (1 - sketch["wink.L" if self.side < 0 else "wink.R"])
        closed = opened < 0.12 and sketch["eye.smile"] <= 0.7
        x0, y0 = self.x + side * self.rx * 0.92, self.y + (3.0 if closed else -self.ry * 0.42 * min(1.0, opened))
        down = 2.5 if closed else -2.6
        lashes = (f"M{points(x0, y0)} l{points(side * 5.2, down)} "
                  f"M{points(x0 - side * 2.4, y0 - (-1.4 if closed else 3.6))} l{points(side * 4.2, down * 1.7)}")
        return path(lashes, extra=stroke(LINE, 2.0)) + super().draw(sketch, x, y)


def note(x, y, size, colour="#8c2a56"):
    return (f'<g transform="translate({points(x, y)}) scale({num(size)})">' +
            path("M0,7 V-8 L7,-10 V-5 L0,-3", extra=stroke("#fff7ea", 5.4)) +
            ellipse(-2.8, 7, 5.6, 4.6, "#fff7ea") + path("M0,7 V-8 L7,-10 V-5 L0,-3", colour, stroke(colour, 2.2)) +
            ellipse(-2.8, 7, 3.7, 2.9, colour) + "</g>")


def heart(x, y, size):
    d = "M0,9 C-14,-1 -9,-11 -4,-10 C-1.6,-9.6 0,-7 0,-5 C0,-7 1.6,-9.6 4,-10 C9,-11 14,-1 0,9 Z"
    return (f'<g transform="translate({points(x, y)}) scale({num(size)})">' +
            path(d, "#ff6f91", stroke("#8c1f45", 1.8)) +
            path("M-5,-5 q-1.6,2 -0.6,4", extra=stroke("#ffd3de", 1.8)) + "</g>")


def rose(x, y, size, turn):
    return (f'<g transform="translate({points(x, y)}) rotate({num(turn)}) scale({num(size)})">' +
            path("M0,3 Q2,9 0,15", extra=stroke("#2d6b34", 4.6)) +
            path("M0,3 Q2,9 0,15", extra=stroke("#63b25b", 2.2)) +
            path("M1,10 q6,-5 9,0 q-5,4 -9,0 Z", "#63b25b", stroke("#2d6b34", 1.4)) +
            ellipse(0, 0, 6.6, 6.0, "#f4506c", stroke("#8c1f45", 1.8)) +
            path("M-3.4,-1.4 q3.4,-3.6 6.4,-0.4 q0.4,3.4 -3,3.4 q-2,-0.6 -1,-2.2", extra=stroke("#8c1f45", 1.5)) +
            "</g>")


def cloud(x, y, size):
    d = "".join(ellipse(x + u * size, y + v * size, r * size, r * size, "{0}", "{1}") for u, v, r in
                ((-0.55, 0.15, 0.55), (0.5, 0.2, 0.5), (0.0, -0.25, 0.65)))
    return (d.replace("{0}", "#ffffff").replace("{1}", stroke("#9c7f8c", 3.0)) +
            d.replace("{0}", "#ffffff").replace("{1}", ""))


class Tremolina(Character):
    name = "Tremolina"
    description = "A toy accordion of the first rank. She forgives you, and will say so, with music."
    guid = "{6B1D0F52-7C0A-4E0B-9C55-0E7B3A1F6C07}"
    voice = {"gender": "female", "speed": 188, "pitch": 272, "age": 16, "style": "Theatrical", "language": 0x0809}
    balloon = {"background": "#FFEAEF", "border": "#7A1A3C"}
    size = 160
    colours = 128
    tolerance = 1.15
    tempo = 1.15
    amplitude = 1.2
    springiness = 1.25

    joints = Joints({
        "body": (None, 80.0, 157.0), "head": ("body", 80.0, float(CEILING)), "cord": ("head", 123.0, 70.0),
        "key1": ("head", 59.0, 47.0), "key2": ("head", 80.0, 45.0), "key3": ("head", 101.0, 47.0),
    })
    swings = {
        "cord.turn": Swing({"head.x": 2.2, "body.x": 2.2, "head.turn": -1.0, "head.y": 0.9}, 0.6, 0.18),
        "key1.y": Swing({"head.y": 0.22, "body.y": 0.4}, 0.32, 0.24),
        "key2.y": Swing({"head.y": 0.22, "body.y": 0.4}, 0.36, 0.24),
        "key3.y": Swing({"head.y": 0.22, "body.y": 0.4}, 0.40, 0.24),
        "flutter.turn": Swing({"hand.x.L": 100.0, "hand.y.L": 20.0}, 0.5, 0.3),
    }
    own_channels = {"swell": 0.0, "huff": 0.0, "temper": 0.0, "play": 0.0, "roses": 0.0, "bloom": 0.0, "heart": 0.0,
                    "hanky": 0.0, "flutter.turn": 0.0, "baton": 0.0, "rod": 0.0, "curtain": 0.0, "part": 0.0,
                    "peep": 0.0, "bye": 0.0, "bye.turn": 0.0, **hands(-0.06, -0.83, 0.55)}
    poses = {
        "to the cheeks": hands(-0.32, 0.16, 0.5),
        "flung out": hands(0.62, 0.5, 0.0),
        "folded": hands(-1.12, -0.42, 0.6),
        "limp": hands(0.22, -0.7, 0.1),
        "tall": {"head.y": -22.0, "perk": 1.0, "swell": -3.0},
        "flat": {"head.y": 17.0, "perk": -0.6, "swell": 3.0},
    }

    arms = [Gloved(side, 80 + side * 42, 95, 38, 7.4, 6.6, "#a0385f", "#d06d8f", LINE, palm=GLOVE, line_width=2.0)
            for side in (-1, 1)]
    eyes = [Lashed(side, 80 + side * 16.5, 70, 10.2, 12.2, "#e58fa8", LINE, iris="#27998f", pupil=0.5)
            for side in (-1, 1)]
    mouth = Mouth(80, 87, 11.5, 8.6, LINE)

    def defs(self):
        return (radial("lacquer", "#ff8a86", "#e23d55", "#a81f40") + radial("base", "#f2606a", "#d5344f", "#9c1c3c") +
                radial("cap", "#a8f0e2", "#35b5a6", "#1b7c78") + radial("tassel", "#ffe08a", GOLD, GOLD_DARK) +
                props.DEFS)

    def derived(self, pose):
        perk, breath = pose["perk"], pose["breath"]
        # A bent head comes to rest on the corner of the base.
        lowest = FLOOR - CEILING - 4 - 43 * abs(math.sin(math.radians(pose["head.turn"])))
        rise = -3.4 * perk if perk > 0 else -4.0 * perk
        return {**pose, "head.y": min(pose["head.y"] - 2.4 * breath, lowest), "swell": pose["swell"] + 2.0 * breath,
                "cord.turn": pose["cord.turn"] - pose["head.turn"] - pose["body.turn"],
                **{f"key{i}.y": pose[f"key{i}.y"] + rise for i in (1, 2, 3)}}

    # From the back to the front.

    def draw(self, sketch):
        # She steps out before a curtain that is open.
        before = sketch["part"] >= 0.95
        if sketch["rod"] > 0 and before:
            self.drawCurtain(sketch)
        if sketch["rise"] >= 1:
            self.drawFigure(sketch)
            self.drawAir(sketch)
        if sketch["rod"] > 0 and not before:
            self.drawCurtain(sketch)

    def drawFigure(self, sketch):
        sketch.layer("body")
        self.drawBase(sketch)
        sketch.layer()
        self.drawBellows(sketch)
        high = [arm for arm in self.arms if arm.place(sketch)[1] <= 92]
        low = [arm for arm in self.arms if arm not in high]
        for number in (1, 2, 3):
            sketch.layer("head")
            self.drawKey(sketch, number)
        self.drawHead(sketch)
        sketch.layer("head")
        self.drawTassel(sketch)
        holding = sketch["book"] > 0 or sketch["paper"] > 0
        if holding:
            sketch.layer("head")
            if sketch["book"] > 0:
                self.drawScore(sketch)
            if sketch["paper"] > 0:
                sketch.on("head", props.paper(66, 122 + (1 - sketch["paper"]) * 50, sketch["stroke"]))
        if sketch["glass"] > 0:
            sketch.layer("head")
            self.drawGlasses(sketch)
        if sketch["hanky"] > 0 or sketch["baton"] > 0:
            sketch.layer("head")
            self.drawInHand(sketch)
        for arm in low + high:
            sketch.layer("head")
            sketch.on("head", arm.draw(sketch))
        if sketch["paper"] > 0:
            sketch.layer("head")
            self.drawQuill(sketch)

    def drawBase(self, sketch):
        feet = "".join(path(f"M{num(80 + side * 33 - 6)},153 h12 l-2,5 h-8 Z", GOLD_DARK, THIN) for side in (-1, 1))
        box = "M37,131 H123 Q126,131 126,135 V149 Q126,155 120,155 H40 Q34,155 34,149 V135 Q34,131 37,131 Z"
        bed = path("M41,138 H119 V152 H41 Z", LINE, stroke(LINE, 2.0))
        wide = 77 / KEYS
        white, black = "", ""
        for number in range(KEYS):
            down = max(0.0, 1 - abs(sketch["play"] - number - 1)) if sketch["play"] > 0 else 0.0
            x = 41.5 + number * wide
            white += path(f"M{num(x + 0.6)},138.5 h{num(wide - 1.2)} v{num(12.4 - 3.4 * down)} q0,1.6 -1.6,1.6 "
                          f"h{num(4.4 - wide)} q-1.6,0 -1.6,-1.6 Z", mixed("#fffdf6", GOLD, down))
            if number in (0, 1, 3, 4, 5):
                black += path(f"M{num(x + wide - 2.4)},137.6 h4.8 v7.4 h-4.8 Z", "#4a2140")
        sketch.on("body", feet, path(box, "url(#base)", INNER), bed, white, black,
                  path("M36,131 H124", extra=stroke(LINE, 6.6)), path("M36,131 H124", extra=stroke(GOLD, 3.0)))

    def drawBellows(self, sketch):
        """A ribbon of folds between base and head; a fold that is pulled flat is less deep."""
        def axes(joint, y):
            x0, y0 = sketch.at(joint, MIDDLE, y)
            x1, y1 = sketch.at(joint, MIDDLE + 1, y)
            x2, y2 = sketch.at(joint, MIDDLE, y - 1)
            return x0, y0, x1 - x0, y1 - y0, x2 - x0, y2 - y0
        bx, by, bu, bv, bp, bq = axes("body", FLOOR)
        hx, hy, hu, hv, hp, hq = axes("head", CEILING)
        length = math.hypot(hx - bx, hy - by)
        reach = 0.36 * length
        curve = ((bx, by), (bx + bp * reach, by + bq * reach), (hx - hp * reach, hy - hq * reach), (hx, hy))
        spacing = length / (2 * FOLDS)
        depth = math.sqrt(max(3.0, FOLD * FOLD - spacing * spacing))
        pinch = 0.14 * max(0.0, length - 30)
        left, right, sags = [], [], []
        for index in range(2 * FOLDS + 1):
            t = index / (2 * FOLDS)
            share = ((1 - t) ** 3, 3 * t * (1 - t) ** 2, 3 * t * t * (1 - t), t ** 3)
            x, y = (sum(s * p[i] for s, p in zip(share, curve)) for i in (0, 1))
            u, v = bu + (hu - bu) * t, bv + (hv - bv) * t
            half = HALF_WIDTH + (sketch["swell"] - pinch) * math.sin(math.pi * t)
            if index % 2 == 0 and t not in (0, 1):
                half -= depth
            left.append((x - u * half, y - v * half))
            right.append((x + u * half, y + v * half))
            sag = 0.0 if t in (0, 1) else 3.0
            sags.append((x - (bp + (hp - bp) * t) * sag, y - (bq + (hq - bq) * t) * sag))
        across = [f"{points(*l)} Q{points(2 * s[0] - (l[0] + r[0]) / 2, 2 * s[1] - (l[1] + r[1]) / 2, *r)}"
                  for l, r, s in zip(left, right, sags)]
        drawn = ""
        for index in range(2 * FOLDS):
            l, r, s = left[index + 1], right[index + 1], sags[index + 1]
            back = f"L{points(*r)} Q{points(2 * s[0] - (l[0] + r[0]) / 2, 2 * s[1] - (l[1] + r[1]) / 2, *l)} Z"
            drawn += path(f"M{across[index]} {back}", DARK_FOLD if index % 2 == 0 else LIGHT_FOLD,
                          stroke(DARK_FOLD if index % 2 == 0 else LIGHT_FOLD, 0.8))
        for index in range(2, 2 * FOLDS, 2):
            drawn += path(f"M{across[index]}", extra=stroke(VALLEY, 1.3))
        edges = "M" + " L".join(points(*p) for p in left) + " M" + " L".join(points(*p) for p in right)
        caps = "".join(ellipse(x, y, 2.3, 2.3, GOLD, stroke(LINE, 1.1)) for i in range(1, 2 * FOLDS, 2)
                       for x, y in (left[i], right[i]))
        sketch.on(None, drawn, path(edges, extra=INNER), caps)

    def drawKey(self, sketch, number):
        joint, x = f"key{number}", (59, 80, 101)[number - 1]
        y = 44 if number == 2 else 46
        turn = (-8, 0, 8)[number - 1]
        spring = ""
        up = -sketch[f"{joint}.y"]
        if up > 6:
            # It hangs on a spring.
            coils = 6
            d = f"M{points(x, y + up + 3)} " + " ".join(
                f"L{points(x + (4 if i % 2 else -4), y + up + 1 - (up - 3) * (i + 0.5) / coils)}"
                for i in range(coils)) + f" L{points(x, y)}"
            spring = path(d, extra=stroke(LINE, 3.6)) + path(d, extra=stroke("#d7dbe4", 1.7))
        cap = (f'<g transform="rotate({turn} {x} {y})">' +
               path(f"M{x - 3.6},{y - 2} h7.2 v{6 if spring else 14} h-7.2 Z", GOLD, stroke(LINE, 1.8)) +
               path(f"M{x - 7.4},{y - 2} v-2.4 q0,-4.4 4.6,-4.4 h5.6 q4.6,0 4.6,4.4 v2.4 q0,1.6 -1.6,1.6 h-11.6 "
                    "q-1.6,0 -1.6,-1.6 Z",
                    "url(#cap)", stroke(LINE, 2.0)) + "</g>")
        sketch.on(joint, spring, cap)

    def drawHead(self, sketch):
        sketch.layer("head")
        box = "M37,103 V68 C37,51 56,45 80,45 C104,45 123,51 123,68 V103 Z"
        panel = "M46,97 V70 C46,58 61,53 80,53 C99,53 114,58 114,70 V97 Z"
        blush = "".join(ellipse(80 + side * 26.5, 83, 6.6, 4.4, "#f4748c", f'opacity="{num(sketch["blush"] * 0.9)}"')
                        for side in (-1, 1))
        rivets = "".join(ellipse(x, y, 1.7, 1.7, GOLD, stroke(GOLD_DARK, 0.8)) for x, y in ((41.6, 92), (118.4, 92)))
        sketch.on("head", path(box, "url(#lacquer)", INNER),
                  path("M50,56 C56,51.5 63,50 70,49.4", extra=stroke("#ffc2bb", 2.6)),
                  path(panel, mixed(CREAM, FLUSHED, sketch["temper"]), stroke(GOLD_DARK, 2.0)), rivets, blush,
                  path("M36,100.5 H124", extra=stroke(LINE, 6.8)), path("M36,100.5 H124", extra=stroke(GOLD, 3.2)),
                  self.mouth.draw(sketch))
        sketch.layer("head")
        sketch.on("head", *(eye.draw(sketch) for eye in self.eyes),
                  *(brow(sketch, side, 80 + side * 17, 53.5, 7.6, LINE, 3.4) for side in (-1, 1)))

    def drawTassel(self, sketch):
        sketch.on("cord", path("M123,70 Q127,74 127.5,82", extra=stroke(LINE, 3.8)),
                  path("M123,70 Q127,74 127.5,82", extra=stroke(GOLD, 1.8)),
                  path("M124.5,85 L121.5,101 q6,2.6 12.4,0 L130.5,85 Z", "url(#tassel)", stroke(LINE, 1.7)),
                  path("M126,90 l-1,10 M129,90 l1,10", extra=stroke(GOLD_DARK, 1.2)),
                  ellipse(127.5, 84, 4.2, 3.8, GOLD, stroke(LINE, 1.7)),
                  ellipse(123, 70, 2.4, 2.4, GOLD, stroke(LINE, 1.3)))

    # What she holds.

    def drawScore(self, sketch):
        y = 117 + (1 - sketch["book"]) * 52
        sketch.on("head", props.book(80, y, "#3f6fc4", sketch["page"]),
                  note(62, y + 6, 0.8, "#ffffff").replace("#fff7ea", "#3f6fc4"))

    def drawGlasses(self, sketch):
        """Opera glasses, on a handle."""
        x1, y1 = self.arms[1].place(sketch)
        drop = (1 - sketch["glass"]) * 30
        rim = ""
        for side in (-1, 1):
            x, y = 80 + side * 16.5, 70 + drop
            rim += (ellipse(x, y, 14.5, 14.5, "#bfe6f5", 'fill-opacity="0.3" ' + stroke(LINE, 5.6)) +
                    ellipse(x, y, 14.5, 14.5, "none", stroke(GOLD, 2.8)) +
                    path(f"M{points(x - 8, y - 4)} a9,9 0 0 1 6,-6", extra=stroke("#ffffff", 2.4)))
        handle = f"M{points(108, 79 + drop)} L{points(x1, y1)}"
        sketch.on("head", path(handle, extra=stroke(LINE, 6.6)), path(handle, extra=stroke(GOLD, 3.0)), rim)

    def drawInHand(self, sketch):
        if sketch["hanky"] > 0:
            x, y = self.arms[0].place(sketch)
            size, turn = sketch["hanky"], sketch["flutter.turn"]
            d = "M0,-2 C-4,4 -11,12 -14,22 q3,-2 5,2 q3,-3 5,1 q3,-3 5,1 q3,-4 6,0 q2,-3 5,-2 C11,14 5,5 0,-2 Z"
            sketch.on("head",
                      f'<g transform="translate({points(x - 3, y - 4)}) rotate({num(turn)}) '
                      f'scale({num(1.3 * size)})">' +
                      path(d, "#ffd3e0", stroke("#8c2a56", 1.8)) +
                      path("M-2,6 L-7,19 M1,7 L3,20", extra=stroke("#e78fae", 1.5)) + "</g>")
        if sketch["baton"] > 0:
            x, y = self.arms[1].place(sketch)
            length, angle = 25 * sketch["baton"], math.radians(-62 + 40 * (0.5 - sketch["hand.y.R"]))
            d = (f"M{points(x - math.cos(angle) * 7, y - math.sin(angle) * 7)} "
                 f"L{points(x + math.cos(angle) * length, y + math.sin(angle) * length)}")
            sketch.on("head", path(d, extra=stroke(LINE, 5.0)), path(d, extra=stroke("#fffdf3", 2.2)))

    def drawQuill(self, sketch):
        x, y = self.arms[1].place(sketch)
        sketch.on("head", f'<g transform="translate({points(x - 8, y + 7)}) rotate(38)">' +
                  path("M0,0 L1.6,-8 C-5,-20 -3,-32 5,-40 C11,-31 11,-18 4.4,-8 Z", "#7fd6cf", stroke("#1f6f70", 1.8)) +
                  path("M0,0 C2,-14 3,-26 4.6,-36 M2,-14 l5,-4 M2.6,-21 l4.6,-4", extra=stroke("#1f6f70", 1.4)) +
                  "</g>")

    # What hangs in the air.

    def drawAir(self, sketch):
        sketch.layer()
        props.tears(sketch, 80, 82, 20, sizes=(5.0, 4.6), second=0.4)
        huff = sketch["huff"]
        if huff > 0.2:
            x, y = sketch.at("head", MIDDLE, CEILING)
            x0, y0 = sketch.at("body", MIDDLE, FLOOR)
            for side in (-1, 1):
                sketch.on(None, cloud((x + x0) / 2 + side * (48 + 15 * huff), (y + y0) / 2 - 5 * huff,
                                      4.0 + 5.5 * huff))
        props.sweat(sketch, 118, 50, aside=7, size=5.6, above=0.3)
        props.sound(sketch, 131, 44, -48)
        if sketch["ask"] > 0.3:
            sketch.on(None, props.question(143, 28, sketch["ask"]))
        if sketch["call"] > 0.3:
            sketch.on(None, props.exclamation(144, 26, sketch["call"]))
        if sketch["idea"] > 0.3:
            sketch.on(None, props.bulb(*sketch.at("head", 80, 28), sketch["idea"]))
        if sketch["doze"] > 0:
            sketch.on(None, props.dozing(124, 52, round(sketch["doze"] * 3) / 3))
        if sketch["thought"] > 0.25:
            sketch.on(None, props.thought(137, 22, min(1.0, sketch["thought"] * 1.4), (sketch["thought"] - 0.4) * 5))
        for index, (x, y) in enumerate(((20, 56), (142, 46), (15, 26), (146, 18))):
            shown = max(0.0, min(1.0, sketch["notes"] * 4 - index))
            if shown > 0.3:
                sketch.on(None, note(x, y + 8 - 8 * shown, 0.55 + 0.45 * shown, ("#8c2a56", "#b97a1c")[index % 2]))
        if sketch["heart"] > 0:
            far = sketch["heart"]
            x, y = sketch.at("head", 98, 84)
            sketch.on(None, heart(x + 40 * far, y - 44 * far * far - 8 * far, 0.5 + 0.6 * far))
        for index, (x, start, turn) in enumerate(((17, 0.0, -84), (143, 0.12, 80), (47, 0.3, 96), (116, 0.34, -98),
                                                  (30, 0.42, 84))):
            fallen = max(0.0, min(1.0, (sketch["roses"] - start) / 0.58))
            if fallen > 0 and sketch["bloom"] > 0.3:
                y = -14 + 162 * fallen
                sketch.on(None, rose(x, y, 0.95 * sketch["bloom"], turn + 90 * (1 - fallen)))

    def drawCurtain(self, sketch):
        sketch.layer()
        rod, low, part, peep = sketch["rod"], sketch["curtain"], sketch["part"], sketch["peep"]
        top, bottom = 9, 9 + 145 * low
        drawn = ""
        for side in (1, -1) if low > 0 else ():
            if side < 0 and sketch["bye"] > 0:
                drawn += self.drawBye(sketch)
            outer, inner = 80 + side * 68, 80 + side * (68 - 69 * (1 - 0.78 * part))
            folds, scallop = 6, 5.0
            # Where somebody pulls at the inner edge, all folds give way, the next one most.
            height, pull = 76.0, side * 25 * peep

            def edge(index):
                x, pulled = outer + (inner - outer) * index / folds, pull * (index / folds) ** 1.4
                return ((x, top), (x + pulled * 0.8, height - 42), (x + pulled, height),
                        (x + pulled * 0.6, height + 40), (x, bottom))
            for index in range(folds):
                left, right = edge(index), edge(index + 1)
                foot = points((left[4][0] + right[4][0]) / 2, bottom + scallop)
                if pull:
                    shape = (f"M{points(*right[0])} Q{points(*right[1], *right[2])} Q{points(*right[3], *right[4])} "
                             f"Q{foot} {points(*left[4])} Q{points(*left[3], *left[2])} "
                             f"Q{points(*left[1], *left[0])} Z")
                else:
                    shape = (f"M{points(*right[0])} L{points(*right[4])} Q{foot} {points(*left[4])} "
                             f"L{points(*left[0])} Z")
                drawn += path(shape, VELVET[(1, 0, 2)[index % 3]], stroke("#1b2c66", 1.2))
                hem = points((left[4][0] + right[4][0]) / 2, bottom + scallop - 4)
                fringe = f"M{points(left[4][0], bottom - 4)} Q{hem} {points(right[4][0], bottom - 4)}"
                drawn += path(fringe, extra=stroke(GOLD_DARK, 5.4)) + path(fringe, extra=stroke(GOLD, 3.0))
            drawn += path(f"M{points(outer, top)} L{points(outer, bottom)}", extra=stroke("#1b2c66", 2.4))
            if peep > 0.3:
                # Fingers hold the edge.
                x = inner + pull * 0.94
                drawn += "".join(ellipse(x + side * 2.2, height + 5 + 5.6 * i, 5.0, 3.2, GLOVE, stroke(LINE, 1.7))
                                 for i in range(4))
        if low > 0:
            pelmet = f"M10,8 H150 V19 " + " ".join(f"q{points(-8.75, 9, -17.5, 0)}" for _ in range(8)) + " Z"
            drawn += path(pelmet, VELVET[1], stroke("#1b2c66", 2.2))
            trim = "M150,19 " + " ".join(f"q{points(-8.75, 9, -17.5, 0)}" for _ in range(8))
            drawn += path(trim, extra=stroke(GOLD_DARK, 4.6)) + path(trim, extra=stroke(GOLD, 2.4))
        d = f"M{points(80 - 70 * rod, 7)} H{num(80 + 70 * rod)}"
        drawn += path(d, extra=stroke(LINE, 7.0)) + path(d, extra=stroke(GOLD, 3.6))
        drawn += "".join(ellipse(80 + side * 71 * rod, 7, 4.6, 4.6, GOLD, stroke(LINE, 1.8)) for side in (-1, 1))
        sketch.on(None, drawn)

    def drawBye(self, sketch):
        """A hand from behind the curtain."""
        far = sketch["bye"]
        x, y = 76 + 26 * far, 84 - 10 * far
        d = f"M{points(72, 92)} Q{points(80 + 8 * far, 96, x, y)}"
        arm = self.arms[1]
        return (path(d, extra=stroke(LINE, arm.width + 4)) + path(d, extra=stroke(arm.fill, arm.width)) +
                arm.drawHand(sketch, x, y, -62 + sketch["bye.turn"]))

    # Coming and going: it is always an entrance.

    def show(self, act):
        shut = {"rod": 1.0, "curtain": 1.0}
        act.cut({"rise": 0.0})
        act.to(0.2, {"rise": 0.0, "rod": 1.0}, overshoot=0)
        act.to(0.28, {"rise": 0.0}, shut, ease=easeIn, overshoot=0)
        act.also(0.08, {"curtain": 0.95}, overshoot=0).also(0.08, {"curtain": 1.0, "rise": 1.0}, overshoot=0).hold(0.2)
        act.also(0.2, {"peep": 1.0, "eye.x": -0.9, "mouth.wide": 0.5}, overshoot=0).hold(0.3)
        act.also(0.16, {"eye.x": 0.9}, overshoot=0).hold(0.25)
        act.also(0.12, {"peep": 0.0, "eye.open": 1.2, "eye.x": 0.0}, overshoot=0).hold(0.16)
        act.also(0.1, {"head.y": 14.0, "eye.open": 0.3}, hands(-0.5, -0.4), overshoot=0, step=BRISK)
        act.to(0.24, shut, self.glad, "flung out", {"part": 1.0, "head.y": -20.0, "swell": -2.0, "notes": 0.5},
               ease=easeOut, step=BRISK)
        act.also(0.2, {"head.y": -8.0, "notes": 1.0}, hands(0.75, 0.25), overshoot=0.2).hold(0.5)
        act.also(0.24, {"curtain": 0.0, "notes": 0.0, "head.y": 2.0}, ease=easeIn, overshoot=0)
        act.to(0.24, {"rod": 0.0}, overshoot=0.1)

    def hide(self, act):
        # A bow, a kiss, the curtain. A hand comes out once more. Then nobody is there.
        stage = {"rod": 1.0, "part": 1.0}
        act.to(0.24, self.glad, "flung out", {"head.y": -12.0}, stage, overshoot=0)
        act.also(0.24, {"head.y": 14.0, "head.turn": 9.0, "head.x": 6.0, "eye.open": 0.0, "eye.smile": 0.0,
                        "mouth.open": 0.0}, hand("R", -0.9, -0.2, 0.2), hand("L", 0.7, -0.1, 0.0), overshoot=0)
        act.hold(0.25)
        act.to(0.24, stage, hand("R", -0.62, 0.06, 0.1), {"eye.open": 0.0, "mouth.wide": 0.4, "head.y": -4.0},
               overshoot=0)
        act.to(0.2, stage, hand("R", 0.6, 0.35, 0.0),
               {"heart": 0.5, "mouth.curve": 1.0, "wink.L": 1.0, "head.turn": 4.0}, overshoot=0)
        act.also(0.24, {"heart": 1.0, "curtain": 1.0}, overshoot=0, ease=easeOut).hold(0.1)
        act.also(0.32, {"part": 0.0}, hand("R", -0.1, 0.0), overshoot=0, ease=easeIn).hold(0.16)
        shut = {"rise": 0.0, "rod": 1.0, "curtain": 1.0}
        act.to(0.16, shut, {"bye": 1.0, "bye.turn": -10.0, "fist.R": 0.0}, overshoot=0)
        for turn in (32.0, -14.0, 32.0):
            act.also(0.12, {"bye.turn": turn}, overshoot=0, step=BRISK)
        act.also(0.12, {"bye": 0.0, "fist.R": 0.5}, overshoot=0).hold(0.1)
        act.to(0.28, shut, {"curtain": 0.0}, overshoot=0, ease=easeIn)
        act.to(0.16, {"rise": 0.0}, overshoot=0, ease=easeIn)

    # At rest and speaking.

    def speak(self, act):
        act.hold(0.3)
        act.to(0.28, hand("R", 0.55, 0.0, 0.0), {"head.y": -3.0, "head.turn": 2.0}).hold(0.4).blink()
        act.to(0.28, hand("L", 0.55, 0.0, 0.0), {"head.y": -3.0, "head.turn": -2.0}).hold(0.4).rest(0.28).hold(0.4)

    # What she feels.

    def pleased(self, act):
        # She melts, and plays.
        act.to(0.12, {"head.y": 8.0, "eye.smile": 1.0}, step=BRISK, overshoot=0)
        act.to(0.28, self.glad, "to the cheeks", {"head.y": -8.0, "notes": 0.3, "heart": 0.3}, overshoot=0.15)
        for number, side in enumerate((1, -1, 1, -1)):
            key = f"key{(1, 3, 2, 1)[number]}.y"
            act.also(0.2, {"head.x": 6.0 * side, "head.turn": 7.0 * side, "head.y": 2.0, "notes": 0.4 + 0.2 * number,
                           key: 5.0, "heart": 0.3 + 0.14 * number}, overshoot=0, ease=easeInOut)
            act.also(0.12, {"head.y": -6.0, key: 0.0}, overshoot=0)
        act.also(0.16, {"head.x": 0.0, "head.turn": 4.0, "head.y": -4.0, "heart": 1.0, "notes": 1.0}).hold(0.8)
        act.also(0.05, {"heart": 0.0}).rest()

    def sad(self, act):
        # First the gesture, then, truly, no breath any more.
        act.to(0.4, {"head.y": -12.0, "head.turn": -9.0, "head.x": -4.0, "eye.open": 0.0, "eye.slant": 0.6,
                     "brow.turn": -1.0, "brow.y": 3.0, "mouth.curve": -0.5, "mouth.wide": 0.7, "mouth.open": 0.0},
               hand("R", -0.86, 0.98, 0.1, turn=30.0), hand("L", 0.4, -0.5, 0.1)).hold(0.4)
        act.to(0.64, self.sorrow, "limp", {"head.y": 19.0, "head.turn": 9.0, "head.x": 5.0, "swell": 2.0, "huff": 0.6,
                                           "perk": -1.0, "body.squash": 0.0, "eye.open": 0.6, "mouth.curve": -1.0},
               ease=easeIn, overshoot=0)
        act.also(0.12, {"huff": 0.0}, overshoot=0).also(0.4, {"tear": 0.7}, ease=easeIn)
        for _ in range(2):
            act.also(0.1, {"head.y": 12.0, "mouth.open": 0.25, "eye.open": 0.1, "tear": 0.85}, overshoot=0, step=BRISK)
            act.also(0.24, {"head.y": 19.0, "mouth.open": 0.0, "eye.open": 0.6, "tear": 1.0}, overshoot=0)
        act.hold(0.8).also(0.05, {"tear": 0.0}).rest(0.5)

    def surprised(self, act):
        # Off goes the bellows, off go the buttons.
        act.to(0.12, "flat", {"eye.open": 0.3, "mouth.wide": 0.5}, step=BRISK, overshoot=0)
        act.to(0.18, self.shock, hands(0.5, 0.45, 0.0), {"head.y": -19.0, "body.squash": 0.0, "body.y": -4.0,
                                                         "swell": -3.0, "key1.y": 2.0, "key2.y": 2.0, "key3.y": 2.0},
               step=BRISK, ease=easeOut)
        act.also(0.12, {"key1.y": -10.0, "key2.y": -11.5, "key3.y": -10.0, "body.y": 0.0, "head.y": -14.0}, step=BRISK,
                 ease=easeOut)
        for turn in (2.0, -2.0, 2.0, 0.0):
            act.also(0.06, {"head.turn": turn}, overshoot=0, step=BRISK)
        act.hold(1.0)
        for number in (1, 3, 2):
            act.also(0.06, {f"key{number}.y": 0.0}, overshoot=0, step=BRISK).also(0.06, overshoot=0)
        act.also(0.12, {"head.y": -8.0, "mouth.open": 0.4, "call": 0.0}, hands(-0.3, 0.0, 0.3)).hold(0.3).rest()

    def confused(self, act):
        # She presses one button, and another one comes up.
        puzzled = {"head.x": 9.0, "head.turn": -9.0, "head.y": -6.0, "eye.x": 0.5, "eye.y": -0.8, "brow.cock": 4.0,
                   "brow.turn": 0.3, "mouth.curve": -0.35, "mouth.wide": 0.65, "ask": 1.0}
        act.to(0.36, puzzled, hand("R", -0.32, 1.42, 0.7, 1.0, turn=-30.0), anticipate=0.1).hold(0.2)
        for key, other in (("key3.y", "key1.y"), ("key3.y", "key2.y")):
            act.also(0.1, {key: 5.0, "hand.y.R": 1.32, other: -9.0, "eye.x": -0.7}, step=BRISK, overshoot=0).hold(0.25)
            act.also(0.1, {key: 0.0, "hand.y.R": 1.42, other: 0.0, "eye.x": 0.5}, step=BRISK, overshoot=0).hold(0.12)
        act.to(0.24, puzzled, {"head.x": -6.0, "head.turn": 8.0, "eye.x": 0.0}, hands(0.55, -0.05, 0.0)).hold(0.4)
        act.blink().rest()

    def uncertain(self, act):
        # Small as a box, fingers that cannot be still.
        worried = {"head.y": 11.0, "brow.y": 2.0, "brow.turn": -0.9, "mouth.wide": 0.5, "mouth.curve": -0.25,
                   "perk": -0.5, "sweat": 0.4, "eye.pupil": 0.85, "blush": 0.9}
        act.to(0.36, worried, hands(-0.88, -0.42, 0.5), {"eye.x": -0.9, "head.turn": -4.0, "head.x": -3.0},
               overshoot=0.05)
        for number in range(3):
            act.also(0.12, {"hand.y.L": -0.32, "hand.y.R": -0.52, "sweat": 0.5 + 0.15 * number}, overshoot=0,
                     step=BRISK)
            act.also(0.12, {"hand.y.L": -0.52, "hand.y.R": -0.32}, overshoot=0, step=BRISK)
        act.also(0.28, {"eye.x": 0.9, "head.turn": 4.0, "head.x": 3.0, "sweat": 1.0}).hold(0.3)
        act.also(0.16, {"mouth.curve": -0.5, "head.y": 13.0}).also(0.16, {"mouth.curve": -0.1}).hold(0.4).rest()

    def alert(self, act):
        # The buttons ring.
        act.to(0.12, "flat", step=BRISK, overshoot=0)
        act.to(0.18, "tall", hand("L", 0.36, 0.95, 0.6, 1.0),
               {"head.y": -16.0, "call": 1.0, "eye.open": 1.2, "brow.y": 3.0, "mouth.wide": 0.6, "mouth.open": 0.35},
               step=BRISK, ease=easeOut)
        for number in range(4):
            act.also(0.06, {"key1.y": -5.0, "key2.y": 4.0, "key3.y": -5.0, "head.turn": 2.0}, overshoot=0, step=BRISK)
            act.also(0.06, {"key1.y": 4.0, "key2.y": -5.0, "key3.y": 4.0, "head.turn": -2.0}, overshoot=0, step=BRISK)
        act.also(0.08, {"key1.y": 0.0, "key2.y": 0.0, "key3.y": 0.0, "head.turn": 0.0}, overshoot=0).hold(0.7).rest()

    def explain(self, act):
        # She conducts what she says.
        act.to(0.24, hand("R", 0.3, 0.75, 0.8), hand("L", 0.5, 0.0, 0.0), {"baton": 1.0, "head.y": -5.0}).hold(0.3)
        act.also(0.2, hand("R", 0.25, 0.1), {"head.y": 3.0}, overshoot=0.1)
        act.also(0.24, hand("R", 0.42, 0.35), hand("L", 0.5, 0.25), {"head.x": 4.0, "head.turn": 4.0, "head.y": -2.0},
                 overshoot=0.1).hold(0.3)
        act.also(0.24, hand("R", 0.2, 0.6), hand("L", 0.4, -0.2), {"head.x": -3.0, "head.turn": -3.0, "head.y": -5.0},
                 overshoot=0.1).hold(0.3).rest()

    def congratulate(self, act):
        # Roses, for once not for her.
        act.to(0.16, "flat", {"eye.smile": 1.0}, hands(-0.2, -0.3, 0.0), step=BRISK, overshoot=0)
        act.to(0.18, self.glad, hands(0.3, 0.9, 0.0), {"head.y": -18.0, "mouth.open": 0.9, "roses": 0.1, "bloom": 1.0},
               ease=easeOut, step=BRISK)
        for number in range(4):
            act.also(0.1, hands(-0.94, -0.22, 0.2), {"head.y": -6.0, "roses": 0.2 + 0.2 * number}, overshoot=0, step=5)
            act.also(0.1, hands(-0.35, -0.12, 0.0), {"head.y": -10.0, "roses": 0.3 + 0.2 * number}, overshoot=0, step=5)
        act.also(0.2, hands(0.6, 0.6, 0.0), {"head.y": -14.0, "roses": 1.0}, overshoot=0.2).hold(0.9)
        act.also(0.16, {"bloom": 0.0}, overshoot=0).rest()

    def decline(self, act):
        # Offended; but one eye looks whether it is seen.
        cross = {"temper": 1.0, "brow.turn": 0.9, "brow.y": -1.0, "mouth.curve": -0.7, "mouth.wide": 0.7,
                 "eye.open": 0.0, "blush": 1.0}
        act.to(0.28, cross, "folded", {"head.y": -8.0, "head.x": -8.0, "head.turn": -12.0, "swell": 4.0},
               anticipate=0.2).hold(0.2)
        act.also(0.12, {"head.y": 4.0, "huff": 0.5, "swell": -2.0}, overshoot=0, step=BRISK)
        act.also(0.16, {"huff": 1.0}, overshoot=0)
        act.also(0.08, {"huff": 0.0}, overshoot=0)
        for turn in (-5.0, -15.0, -5.0, -13.0):
            act.also(0.16, {"head.turn": turn, "head.x": turn * 0.6}, overshoot=0, ease=easeInOut)
        act.also(0.12, {"eye.open": 1.0, "wink.L": 1.0, "eye.x": 0.9, "brow.cock": 4.0}, overshoot=0).hold(0.5)
        act.also(0.08, {"eye.open": 0.0, "brow.cock": 0.0, "wink.L": 0.0}, overshoot=0).hold(0.3).rest()

    def acknowledge(self, act):
        # A curtsey.
        act.to(0.16, {"head.y": -5.0, "mouth.curve": 1.0}, hands(0.4, -0.2, 0.2), overshoot=0)
        act.to(0.24, {"head.y": 13.0, "head.turn": 5.0, "eye.open": 0.0, "mouth.curve": 1.0, "blush": 1.0},
               hands(0.5, 0.1, 0.2), overshoot=0)
        act.hold(0.4).rest(0.32)

    def announce(self, act):
        # A breath from the very bottom, and a fanfare.
        act.to(0.4, {"head.y": -18.0, "swell": 9.0, "eye.open": 0.0, "mouth.wide": 0.4, "brow.y": 3.0, "perk": 1.0},
               hands(-0.3, -0.2, 0.5), anticipate=0.25)
        act.hold(0.16)
        act.to(0.16, {"head.y": 9.0, "swell": -4.0, "mouth.open": 1.0, "mouth.curve": 0.6, "eye.open": 0.0,
                      "brow.y": 4.0, "notes": 0.25, "perk": 1.0, "huff": 0.5}, hands(0.7, 0.35, 0.0), step=BRISK,
               ease=easeOut)
        for number in range(3):
            act.also(0.1, {f"key{number + 1}.y": 5.0, "notes": 0.5 + 0.25 * number,
                           "head.turn": (-3.0, 3.0, 0.0)[number], "huff": 0.0}, overshoot=0)
            act.also(0.08, {f"key{number + 1}.y": 0.0}, overshoot=0)
        act.hold(0.4).also(0.2, {"mouth.open": 0.0, "mouth.curve": 1.0, "eye.open": 1.0, "head.y": -6.0}).hold(0.3)
        act.rest()

    def suggest(self, act):
        # An aside, for you alone.
        act.to(0.24, {"eye.x": -0.9, "head.turn": -3.0, "head.y": 4.0}).hold(0.25)
        act.also(0.2, {"eye.x": 0.9, "head.turn": 3.0}).hold(0.2)
        act.to(0.28, {"head.x": 6.0, "head.turn": 7.0, "head.y": -7.0, "eye.x": -0.3, "mouth.curve": 1.0,
                      "mouth.open": 0.4, "mouth.wide": 0.7, "idea": 1.0, "key2.y": 4.0, "brow.cock": 2.0},
               hand("L", -0.32, -0.02, 0.0, turn=60.0), hand("R", 0.34, 0.8, 0.7, 1.0), overshoot=0.15).hold(0.3)
        act.also(0.08, {"wink.R": 1.0}, overshoot=0).hold(0.3).also(0.08, {"wink.R": 0.0}, overshoot=0).hold(0.4).rest()

    def getAttention(self, act):
        # Two honks, and who is meant.
        for _ in range(2):
            act.to(0.14, {"head.y": -13.0, "eye.open": 1.1, "swell": 3.0, "mouth.open": 0.3, "perk": 1.0},
                   hands(0.5, 0.5, 0.0), overshoot=0, step=BRISK)
            act.to(0.1, {"head.y": 14.0, "swell": 4.0, "mouth.open": 0.9, "mouth.curve": 0.5, "eye.smile": 0.0,
                         "eye.open": 0.0, "huff": 0.5}, hands(0.25, 0.0, 0.6), overshoot=0, step=5)
            act.also(0.1, {"huff": 1.0}, overshoot=0, step=5).also(0.06, {"huff": 0.0}, overshoot=0, step=BRISK)
        act.to(0.2, {"head.y": -10.0, "mouth.open": 0.6, "mouth.curve": 1.0, "eye.open": 1.1, "perk": 1.0},
               hand("R", 0.4, 0.95, 0.0), hand("L", -0.06, -0.6, 0.5))
        for number in range(3):
            act.also(0.1, hand("R", 0.75, 0.75) if number % 2 == 0 else hand("R", 0.35, 0.95), overshoot=0, step=5)
        act.hold(0.3).rest()

    def greet(self, act):
        # A bow as for a full house.
        act.to(0.24, self.glad, hands(0.5, 0.75, 0.0), {"head.y": -12.0, "perk": 1.0}, anticipate=0.15).hold(0.16)
        act.to(0.28, hand("R", -0.95, -0.15, 0.2), hand("L", 0.75, 0.2, 0.0),
               {"head.x": -9.0, "head.turn": -12.0, "head.y": 10.0, "eye.open": 0.0, "mouth.curve": 1.0, "blush": 1.0},
               overshoot=0).hold(0.35)
        act.to(0.24, self.glad, hand("R", 0.5, 0.85, 0.0), {"head.y": -6.0, "head.turn": 4.0}, overshoot=0.15)
        for number in range(3):
            act.also(0.12, hand("R", 0.85, 0.6) if number % 2 == 0 else hand("R", 0.45, 0.9), overshoot=0, step=BRISK)
        act.hold(0.2).rest()

    def wave(self, act):
        # With a handkerchief, as from a ship.
        act.to(0.28, hand("L", -0.05, 1.1, 0.7), hand("R", -0.6, -0.1, 0.3),
               {"hanky": 1.0, "head.turn": 4.0, "head.x": 4.0, "head.y": -6.0, "mouth.curve": 1.0, "mouth.open": 0.4,
                "brow.turn": -0.4})
        for number in range(5):
            far = number % 2 == 0
            act.also(0.16, hand("L", 0.12, 0.95) if far else hand("L", -0.16, 1.25),
                     {"head.turn": 2.0 if far else 6.0}, overshoot=0)
        act.hold(0.2).rest()

    # What she does.

    def think(self, act):
        # She tries the buttons one by one.
        act.to(0.4, {"eye.x": 0.7, "eye.y": -0.8, "mouth.wide": 0.5, "mouth.curve": 0.1, "head.turn": -7.0,
                     "head.x": -4.0, "brow.cock": 3.0, "thought": 0.4}, hand("R", -0.6, -0.12, 0.8),
               hand("L", -0.7, -0.6, 0.5), overshoot=0.06)
        for number in (1, 2, 3):
            act.also(0.08, {"thought": 0.4 + number * 0.2, f"key{number}.y": 5.0}, overshoot=0).hold(0.16)
            act.also(0.12, {f"key{number}.y": 0.0}, overshoot=0).hold(0.16)
        act.hold(0.4)

    def read(self, act):
        # A score; she hums it.
        act.to(0.4, {"book": 1.0, "eye.y": 0.85, "eye.open": 0.8, "eye.x": -0.7, "head.y": -4.0},
               hands(-0.42, -0.66, 0.5), overshoot=0)
        for x, turn in ((-0.2, -2.0), (0.3, 2.0), (0.7, -2.0)):
            act.also(0.2, {"eye.x": x, "head.turn": turn, "head.y": -1.0}, overshoot=0)
            act.also(0.12, {"head.y": -4.0}, overshoot=0)
        act.also(0.16, {"eye.x": -0.6, "head.turn": 0.0}, overshoot=0)
        act.also(0.36, {"page": 1.0, "eye.x": 0.2}, overshoot=0)
        act.also(0.16, {"brow.y": 3.0, "mouth.wide": 0.5, "mouth.open": 0.25, "notes": 0.25}, overshoot=0).hold(0.6)

    def write(self, act):
        # A quill, and a flourish at the end.
        act.to(0.4, {"paper": 1.0, "eye.y": 0.85, "eye.open": 0.8, "head.turn": -3.0, "head.y": -3.0},
               hand("L", -0.35, -0.75, 0.4), hand("R", -0.95, -0.42, 0.9), overshoot=0)
        for line in range(1, 4):
            act.also(0.32, {"stroke": line / 3, "hand.x.R": -0.66, "hand.y.R": -0.46 - 0.07 * line, "eye.x": 0.3},
                     overshoot=0)
            if line < 3:
                act.also(0.14, {"hand.x.R": -0.98, "eye.x": -0.3}, overshoot=0)
        act.also(0.2, {"hand.x.R": -0.1, "hand.y.R": 0.1, "head.turn": 4.0, "mouth.curve": 1.0, "eye.y": 0.5},
                 overshoot=0.3).hold(0.6)

    def search(self, act):
        # Opera glasses, from the box.
        act.to(0.36, {"glass": 1.0, "eye.x": -0.6, "eye.open": 1.15, "head.y": -8.0, "head.x": -10.0, "head.turn": -7.0,
                      "mouth.wide": 0.5}, hand("R", -0.16, 0.1, 0.8), hand("L", 0.05, -0.6, 0.5), overshoot=0)
        mark = act.mark()
        act.hold(0.4)
        act.also(0.48, {"eye.x": 0.6, "head.x": 10.0, "head.turn": 7.0}, overshoot=0, ease=easeInOut).hold(0.24)
        act.also(0.12, {"head.y": -14.0, "eye.open": 1.3, "mouth.open": 0.3}, overshoot=0).hold(0.4)
        act.also(0.48, {"eye.x": -0.6, "head.x": -10.0, "head.turn": -7.0, "head.y": -8.0, "eye.open": 1.15,
                        "mouth.open": 0.0}, overshoot=0, ease=easeInOut)
        act.again(mark, 70).rest()

    def process(self, act):
        # She plays herself: to and fro, with both ends.
        playing = {"eye.smile": 0.0, "eye.open": 0.0, "mouth.curve": 1.0, "blush": 0.9}
        act.to(0.28, playing, hands(0.3, -0.1, 0.3), {"head.y": -4.0}, overshoot=0)
        mark = act.mark()
        for side, tones in ((1, (2.0, 5.0)), (-1, (7.0, 4.0))):
            for number, tone in enumerate(tones):
                act.also(0.16, {"head.x": 9.0 * side, "head.turn": 9.0 * side, "head.y": -12.0 if number == 0 else 4.0,
                                "play": tone, "notes": (0.25, 0.5)[number] + (0.5 if side < 0 else 0.0),
                                f"key{number * 2 + 1}.y": 5.0, f"key{3 - number * 2}.y": 0.0},
                         hands(0.45 if number == 0 else 0.2, 0.0), overshoot=0, ease=easeInOut)
                act.hold(0.04)
        act.also(0.08, {"play": 0.0, "notes": 0.0, "key1.y": 0.0, "key3.y": 0.0}, overshoot=0).again(mark, 80).rest()

    def startListening(self, act):
        act.to(0.32, {"head.turn": 9.0, "head.x": 9.0, "head.y": -4.0, "eye.x": 0.7, "eye.y": 0.1, "eye.open": 1.12,
                      "brow.y": 2.5, "brow.cock": 1.5, "perk": 1.0, "mouth.wide": 0.5, "mouth.curve": 0.4},
               hand("R", 0.08, 0.72, 0.0, turn=-75.0), hand("L", -0.2, -0.7, 0.5), anticipate=0.12,
               overshoot=0.08)
        self.hearken(act)

    def stopListening(self, act):
        act.also(0.1, {"head.y": 2.0, "eye.open": 0.4}, overshoot=0, step=BRISK).rest(0.28)

    def hearing_1(self, act):
        act.to(0.24,
               {"head.turn": -7.0, "head.x": -6.0, "eye.x": -0.5, "brow.y": 2.0, "key1.y": -5.0, "mouth.wide": 0.7})
        act.hold(0.6).rest(0.24)

    def hearing_2(self, act):
        # Each word is a note.
        for number in (1, 2, 3):
            act.to(0.12, {"head.y": 4.0, f"key{number}.y": 5.0, "mouth.curve": 1.0, "eye.open": 0.75}, overshoot=0,
                   step=BRISK)
            act.to(0.12, {"head.y": -2.0, "mouth.curve": 1.0}, overshoot=0, step=BRISK)
        act.rest(0.12)

    def hearing_3(self, act):
        # No! Really?
        act.to(0.2, {"head.y": -9.0, "head.turn": 4.0, "eye.open": 1.2, "mouth.open": 0.4, "mouth.wide": 0.5,
                     "brow.y": 4.0, "perk": 1.0}, hand("R", -0.9, -0.05, 0.1), overshoot=0.15).hold(0.6).rest(0.28)

    # Pointing, looking and going; right is the viewer's left.

    def gestureUp(self, act):
        act.to(0.36, "tall", hand("R", 0.1, 1.1, 0.6, 1.0),
               {"head.y": -14.0, "eye.y": -0.9, "head.turn": 3.0, "brow.y": 2.0}, anticipate=0.12).hold(0.5)

    def gestureDown(self, act):
        act.to(0.36, hand("R", 0.5, -0.62, 0.6, 1.0),
               {"eye.y": 0.9, "eye.x": 0.3, "head.y": 10.0, "head.turn": 6.0, "head.x": 5.0}, anticipate=0.2).hold(0.5)

    def gestureRight(self, act):
        act.to(0.36, hand("L", 0.36, 0.06, 0.6, 1.0, turn=78.0), hand("R", -0.1, -0.7, 0.5),
               {"eye.x": -0.9, "head.x": -4.0, "head.turn": -7.0, "head.y": -5.0}, anticipate=0.2, overshoot=0.05)
        act.hold(0.5)

    def gestureLeft(self, act):
        act.to(0.36, hand("R", 0.36, 0.06, 0.6, 1.0, turn=78.0), hand("L", -0.1, -0.7, 0.5),
               {"eye.x": 0.9, "head.x": 4.0, "head.turn": 7.0, "head.y": -5.0}, anticipate=0.2, overshoot=0.05)
        act.hold(0.5)

    def lookUp(self, act):
        act.to(0.24, {"eye.y": -0.95, "head.y": -12.0, "brow.y": 2.5, "perk": 0.6, "mouth.wide": 0.8}).hold(0.5)

    def lookDown(self, act):
        act.to(0.24, {"eye.y": 0.95, "head.y": 9.0, "eye.open": 0.85, "perk": -0.3}).hold(0.5)

    def lookRight(self, act):
        act.to(0.24, {"eye.x": -0.95, "head.turn": -6.0, "head.x": -9.0, "head.y": -2.0}).hold(0.5)

    def lookLeft(self, act):
        act.to(0.24, {"eye.x": 0.95, "head.turn": 6.0, "head.x": 9.0, "head.y": -2.0}).hold(0.5)

    def moveUp(self, act):
        act.to(0.16, "flat", {"eye.y": -0.8}, overshoot=0, step=BRISK)
        act.to(0.2, "tall", hands(-0.1, 0.95, 0.6), {"head.y": -13.0, "eye.y": -0.9, "swell": -4.0, "body.y": -3.0},
               overshoot=0).hold(0.1)

    def moveDown(self, act):
        # Full of air she sinks.
        act.to(0.32, hands(0.55, 0.6, 0.0),
               {"swell": 9.0, "head.y": -8.0, "eye.y": 0.9, "perk": 1.0, "mouth.wide": 0.5, "blush": 1.0}).hold(0.1)

    def moveRight(self, act):
        act.to(0.3, hand("L", 0.25, 0.3, 0.6, 1.0, turn=70.0), hand("R", 0.4, -0.3, 0.0),
               {"head.x": -9.0, "head.turn": -9.0, "head.y": -5.0, "eye.x": -0.9}, anticipate=0.25, overshoot=0)
        act.hold(0.1)

    def moveLeft(self, act):
        act.to(0.3, hand("R", 0.25, 0.3, 0.6, 1.0, turn=70.0), hand("L", 0.4, -0.3, 0.0),
               {"head.x": 9.0, "head.turn": 9.0, "head.y": -5.0, "eye.x": 0.9}, anticipate=0.25, overshoot=0).hold(0.1)

    # Passing the time.

    def idle1_2(self, act):
        # The tassel is looked at, and set swinging.
        act.to(0.24, {"eye.x": 0.95, "eye.y": 0.3, "head.turn": 3.0, "head.x": 3.0}).hold(0.3)
        for turn in (-16.0, 14.0, -10.0, 6.0):
            act.also(0.16, {"cord.turn": turn}, overshoot=0, ease=easeInOut)
        act.blink().rest(0.24).hold(0.4)

    def idle1_3(self, act):
        # A button comes up by itself, and is put in its place.
        act.hold(0.3).to(0.08, {"key3.y": -8.0}, overshoot=0).hold(0.24)
        act.also(0.16, {"eye.x": 0.7, "eye.y": -0.9, "brow.cock": 3.0}).hold(0.3)
        act.also(0.24, hand("R", -0.3, 1.62, 0.8), overshoot=0)
        act.also(0.1, {"key3.y": 5.0, "hand.y.R": 1.36, "head.y": 3.0}, overshoot=0, step=5).hold(0.1)
        act.also(0.16, {"key3.y": 0.0, "head.y": 0.0}, overshoot=0).rest(0.32).hold(0.3)

    def idle1_4(self, act):
        act.hold(0.4).blink()
        act.to(0.24, {"mouth.curve": 1.0, "head.turn": -3.0, "head.y": -3.0, "brow.y": 1.5}).hold(0.4).blink()
        act.rest(0.24).hold(0.4)

    def idle2_1(self, act):
        # Nobody speaks to her: she sulks. Is she seen? She forgives.
        sulk = {"temper": 0.5, "head.x": 7.0, "head.turn": 9.0, "head.y": 3.0, "brow.turn": 0.8, "mouth.curve": -0.6,
                "mouth.wide": 0.7, "blush": 0.9}
        act.to(0.28, sulk, "folded", {"eye.open": 0.0}, anticipate=0.2).hold(0.5)
        act.also(0.12, {"head.y": 8.0, "huff": 0.6}, overshoot=0).also(0.08, {"huff": 1.0}, overshoot=0)
        act.also(0.06, {"huff": 0.0}, overshoot=0).hold(0.3)
        act.also(0.12, {"eye.open": 1.0, "eye.x": -1.0, "wink.R": 1.0}, overshoot=0).hold(0.5)
        act.to(0.28, {"mouth.curve": 1.0, "blush": 1.0, "head.turn": -3.0, "head.y": -4.0, "brow.turn": -0.3},
               hands(0.2, -0.4, 0.1)).hold(0.5).rest()

    def idle2_2(self, act):
        # Scales.
        act.to(0.24, {"eye.y": 0.6, "head.y": -4.0, "mouth.wide": 0.7}, hands(0.1, -0.55, 0.4), overshoot=0)
        for tone in range(1, KEYS + 1):
            up = tone % 2
            act.also(0.12, {"play": float(tone), "head.y": -10.0 + 8.0 * up, "head.x": tone - 4.5,
                            "eye.x": (tone - 4.5) / 4, "notes": 0.25 * (tone // 2)}, overshoot=0, step=BRISK)
        act.also(0.16, {"play": 0.0, "head.x": 0.0, "eye.x": 0.0, "eye.y": 0.0, "mouth.curve": 1.0, "eye.smile": 1.0,
                        "head.y": -6.0}).hold(0.4).rest().hold(0.2)

    def idle2_3(self, act):
        # She sets her buttons straight, as others do their hair.
        act.to(0.32, hand("R", -0.28, 1.38, 0.2, turn=-40.0),
               {"head.turn": 6.0, "eye.x": -0.6, "eye.y": -0.5, "head.y": -3.0})
        for _ in range(2):
            act.also(0.12, {"hand.y.R": 1.28, "key3.y": 3.0}, overshoot=0)
            act.also(0.12, {"hand.y.R": 1.4, "key3.y": 0.0}, overshoot=0)
        act.to(0.24, {"head.turn": -4.0, "eye.open": 0.0, "mouth.curve": 1.0, "perk": 1.0, "head.y": -6.0},
               hand("R", 0.35, 0.3, 0.0)).hold(0.4).rest()

    def idle3_1(self, act):
        # A yawn up to the ceiling, and all the air out again.
        act.to(0.56, {"head.y": -8.0, "eye.open": 0.4, "mouth.open": 0.4, "mouth.wide": 0.6, "mouth.curve": 0.1,
                      "swell": 4.0}, overshoot=0)
        act.also(0.4, {"head.y": -20.0, "eye.open": 0.0, "mouth.open": 1.0, "mouth.wide": 0.8, "brow.y": 3.0},
                 hand("L", 0.5, 0.9, 0.6), hand("R", -0.4, 0.05, 0.1), ease=easeInOut).hold(0.4)
        act.to(0.4, "flat", "limp", {"eye.open": 0.3, "huff": 0.5, "mouth.wide": 0.6}, overshoot=0, ease=easeIn)
        act.also(0.16, {"huff": 0.0}, overshoot=0).hold(0.4).blink().rest(0.5)

    def idle3_2(self, act):
        # Asleep, she breathes music.
        act.to(0.56, {"eye.open": 0.4, "head.y": 4.0, "head.turn": 4.0, "mouth.curve": 0.3}, ease=easeInOut).hold(0.2)
        act.also(0.48, "limp",
                 {"eye.open": 0.0, "head.y": 15.0, "head.turn": 8.0, "head.x": 5.0, "mouth.wide": 0.5, "perk": -0.6},
                 ease=easeInOut, overshoot=0)
        mark = act.mark()
        for height, doze in ((6.0, 0.4), (0.0, 0.7)):
            act.also(0.4, {"head.y": height, "doze": doze, "swell": 6.0 - height, "mouth.open": 0.0}, ease=easeInOut,
                     overshoot=0)
        act.hold(0.2)
        act.also(0.4, {"head.y": 8.0, "doze": 1.0, "swell": 2.0, "mouth.open": 0.25}, ease=easeInOut, overshoot=0)
        act.also(0.4, {"head.y": 15.0, "doze": 0.0, "swell": 0.0, "mouth.open": 0.0}, ease=easeInOut, overshoot=0)
        act.hold(0.2)
        act.again(mark, 75).rest(0.4)
