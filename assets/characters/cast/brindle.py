"""Brindle, a marmot: quick, eager and easily moved. He digs his way in, stands sentinel when something is up, and his
tail and scarf tell what he feels."""

import math

import props
from character import Character, hand, hands
from draw import Sketch, ellipse, num, path, points, radial, smooth, stroke
from features import Arm, Eye, Mouth, brow
from rig import BRISK, Joints, Swing, easeIn, easeInOut, easeOut

LINE = "#54290f"
INNER = stroke(LINE, 2.2)
EARTH, EARTH_DARK, EARTH_LIGHT = "#7a4f2a", "#4a2d15", "#a5713f"


def teeth(sketch, x, y):
    if sketch["mouth.curve"] < 0 and sketch["mouth.open"] < 0.06:
        return ""
    y += 0.2 if sketch["mouth.open"] < 0.06 else -1.5
    return (path(f"M{points(x - 4.8, y)} h9.6 l-0.6,6.2 q-1.9,1.2 -3.6,0 l-0.6,-1.2 l-0.6,1.2 q-1.7,1.2 -3.6,0 Z",
                 "#fffdf4", stroke(LINE, 1.3)) + path(f"M{points(x, y)} v5", extra=stroke(LINE, 1.0)))


class Brindle(Character):
    name = "Brindle"
    description = "A marmot who sleeps all winter and talks all summer."
    guid = "{6B1D0F52-7C0A-4E0B-9C55-0E7B3A1F6C01}"
    voice = {"gender": "male", "speed": 165, "pitch": 118, "age": 30, "style": "Cheerful"}
    balloon = {"background": "#FFF3D6", "border": "#5A3218"}
    tempo = 1.1
    amplitude = 1.0
    springiness = 1.0

    joints = Joints({
        "body": (None, 72.0, 135.0), "tail": ("body", 92.0, 126.0), "tip": ("tail", 118.0, 112.0),
        "scarf": ("body", 90.0, 95.0), "head": ("body", 72.0, 88.0),
        "earL": ("head", 47.0, 37.0), "earR": ("head", 97.0, 37.0), "tuft": ("head", 72.0, 22.0),
    })
    crowns = (("tuft", 70.0, 8.0), ("tuft", 81.0, 10.0))
    swings = {
        "tail.turn": Swing({"body.turn": 0.9, "body.x": 0.8, "body.y": -0.7, "head.turn": 0.5}, 0.7, 0.22),
        "tip.turn": Swing({"body.turn": 1.3, "body.x": 1.2, "body.y": -1.0, "head.turn": 0.7, "tail.turn": 0.4}, 0.55,
                          0.2),
        "scarf.turn": Swing({"body.turn": 1.6, "body.x": 2.0, "body.y": 2.0, "head.turn": 1.2}, 0.5, 0.24),
        "earL.turn": Swing({"head.turn": 1.0, "head.y": -1.4, "body.y": -1.4, "head.x": 1.2}, 0.36, 0.26),
        "earR.turn": Swing({"head.turn": 1.0, "head.y": 1.4, "body.y": 1.4, "head.x": 1.2}, 0.36, 0.26),
        "tuft.turn": Swing({"head.turn": 1.6, "head.x": 2.0, "body.x": 1.6, "body.turn": 1.5}, 0.4, 0.22),
    }
    own_channels = {"clods": 0.0, "nut": 0.0, "puff": 0.0, **hands(0.2, -0.62)}
    poses = {
        "tall": {"body.squash": 0.05, "head.y": -2.0, "perk": 1.0, "eye.open": 1.15, "brow.y": 3.0},
        "cower": {"body.squash": -0.08, "head.y": 5.0, "perk": -0.8},
        "paws": hands(-0.42, -0.2, 0.8),
    }

    arms = [Arm(side, 72 + side * 24, 99, 35, 10, 6.8, "#c4854c", "#e0ad74", LINE, palm="#f0c795",
                spread=16.0) for side in (-1, 1)]
    eyes = [Eye(side, 72 + side * 15.5, 52, 9.4, 11.4, "#c4854c", LINE, iris="#8a4a1c", pupil=0.5)
            for side in (-1, 1)]
    mouth = Mouth(72, 74.5, 11.5, 10.5, LINE, teeth=teeth)

    def defs(self):
        return (radial("fur", "#e3b078", "#c4854c", "#935a29") + radial("dark", "#b27442", "#8f5a2c", "#6a3d1a") +
                radial("belly", "#fff4dc", "#f8e2b6", "#dfb682") + radial("muzzle", "#fffaf0", "#fcebca", "#e6c795") +
                radial("cloth", "#5fd0bd", "#2b9d8d", "#176a60") + radial("earth", EARTH_LIGHT, EARTH, EARTH_DARK) +
                radial("nut", "#f0bd7c", "#c98443", "#8a5220") + props.DEFS)

    def derived(self, pose):
        perk, breath = pose["perk"], pose["breath"]
        droop = max(0.0, -perk)
        return {**pose, "head.y": pose["head.y"] - 1.3 * breath,
                "earL.turn": pose["earL.turn"] + 8 * max(0.0, perk) - 42 * droop, "earL.y": pose["earL.y"] + 3 * droop,
                "earR.turn": pose["earR.turn"] - 8 * max(0.0, perk) + 42 * droop, "earR.y": pose["earR.y"] + 3 * droop,
                "tail.turn": pose["tail.turn"] - 8 * perk + 6 * droop, "tail.x": pose["tail.x"] - 3 - 9 * droop}

    def draw(self, sketch):
        if sketch["rise"] >= 1:
            self.drawFigure(sketch)
        elif sketch["rise"] > 0:
            # He stands behind the mound, as deep in the ground as he has yet to rise.
            inner = Sketch(self.joints, sketch.pose, self.size)
            self.drawFigure(inner)
            sunk = f'<g transform="translate(0 {num((1 - sketch["rise"]) * 128)})">{inner.flattened()}</g>'
            sketch.on(None, sketch.clip("g", path("M-40,-60 H184 V133 H-40 Z", "#000"), sunk))
        if sketch["hole"] > 0:
            self.drawMound(sketch)
        self.drawAir(sketch)

    # The figure, from the back to the front.

    def drawFigure(self, sketch):
        breath = sketch["breath"]
        sketch.layer("body")
        self.drawTail(sketch)
        sketch.layer("body")
        self.drawBody(sketch, breath)
        high = [arm for arm in self.arms if arm.place(sketch)[1] <= 84]
        low = [arm for arm in self.arms if arm not in high]
        holding = sketch["book"] > 0 or sketch["paper"] > 0 or sketch["nut"] > 0
        sketch.layer("body")
        self.drawScarf(sketch)
        if not holding:
            sketch.layer("body")
            sketch.on("body", *(arm.draw(sketch) for arm in low))
        self.drawEars(sketch)
        self.drawHead(sketch)
        for arm in high:
            sketch.layer("body")
            sketch.on("body", arm.draw(sketch))
        if holding:
            sketch.layer("body")
            self.drawHeld(sketch)
            sketch.on("body", *(arm.draw(sketch) for arm in low))
            self.drawInHand(sketch)
        if sketch["glass"] > 0:
            sketch.layer()
            self.drawGlass(sketch)

    def drawTail(self, sketch):
        puff = 1 + 0.35 * sketch["puff"]
        base = smooth([(84, 130), (98, 133), (112, 128), (121 + puff * 3, 116), (119, 106), (111, 104 - puff),
                       (106, 112), (98, 118), (86, 117)])
        brush = ("M108,112 "
                 f"C{points(103 - 2 * puff, 98)} {points(105, 86)} {points(113, 80 - 3 * puff)} "
                 f"L{points(116, 86)} L{points(122, 77 - 4 * puff)} L{points(125, 86)} "
                 f"L{points(131 + 2 * puff, 84 - puff)} C{points(135 + 3 * puff, 96)} {points(132 + 2 * puff, 108)} "
                 f"{points(122, 117)} C118,119 111,117 108,112 Z")
        sketch.on("tip", path(brush, "url(#dark)", INNER),
                  path("M114,108 C112,99 114,92 117,88 M121,110 C124,103 125,96 124,91", extra=stroke("#5d3416", 1.5)))
        sketch.on("tail", path(base, "url(#dark)", INNER),
                  path("M107,113 C112,108 117,109 119,113", extra=stroke("#8f5a2c", 4.5)))

    def drawBody(self, sketch, breath):
        feet = "".join(ellipse(x, 132.5, 13.5, 6.4, "url(#dark)", INNER) +
                       path(f"M{num(x - 4.5)},130.5 v4 M{num(x + 4.5)},130.5 v4", extra=stroke(LINE, 1.3))
                       for x in (54, 90))
        wide = 1.2 * breath
        trunk = (f"M72,72 C92,72 {points(101 + wide, 92)} {points(105 + wide, 110)} C108,124 100,134 72,134 "
                 f"C44,134 36,124 {points(39 - wide, 110)} C{points(43 - wide, 92)} 52,72 72,72 Z")
        bib = (f"M72,90 L79,95 L84,93 C{points(93 + wide, 100)} 96,114 91,124 C86,132 58,132 53,124 "
               f"C48,114 {points(51 - wide, 100)} 60,93 L65,95 Z")
        sketch.on("body", path(trunk, "url(#fur)", INNER), path(bib, "url(#belly)"),
                  path("M66,112 l3,3 l3,-3 l3,3 l3,-3", extra=stroke("#cfa06a", 1.6)), feet)

    def drawScarf(self, sketch):
        edge = stroke("#0f4a43", 2.0)
        sketch.on("scarf", path("M86,93 C92,99 96,107 97,117 L91,115 L87,119 C87,109 84,101 80,96 Z", "url(#cloth)", edge),
                  path("M91,104 l5,-2 M92.5,110 l4.6,-1.4", extra=stroke("#bdf0e6", 2.0)))
        sketch.on("body", path("M46,88 C56,98 88,98 98,88 C101,92 100,96 97,98 C86,106 58,106 47,98 C44,96 43,92 46,88 Z",
                               "url(#cloth)", edge),
                  path("M52,97.5 l2,-4 M62,101 l1,-4.6 M73,102 l0,-4.6", extra=stroke("#bdf0e6", 2.0)),
                  ellipse(85, 97, 6, 5.4, "#2b9d8d", edge))

    def drawEars(self, sketch):
        for side, ear in ((-1, "earL"), (1, "earR")):
            x = 72 + side * 27
            sketch.layer("head")
            sketch.on(ear, ellipse(x + side * 1, 29, 10.2, 10.6, "url(#dark)", INNER),
                      ellipse(x + side * 0.4, 31, 5.6, 6.0, "#eba98e"))
        sketch.layer("head")
        sketch.on("tuft", path("M64,24 C62,16 65,11 70,9 C69,13 71,15 73,17 C74,13 77,11 81,11 C78,15 81,19 80,24 Z",
                               "url(#dark)", INNER))

    def drawHead(self, sketch):
        sketch.layer("head")
        puff = sketch["puff"] * 4
        half = [(86, 22.5), (99, 31), (106, 45)]
        right = (f"M72,20.5 C{points(82, 20.5)} {points(*half[0])} {points(90, 24)} "
                 f"C{points(101, 30, 106 + puff * 0.4, 41, 108 + puff * 0.5, 54)} "
                 f"L{points(115 + puff, 62)} L{points(110 + puff, 66)} L{points(115.5 + puff, 72)} "
                 f"L{points(108 + puff * 0.5, 75)} L{points(109.5 + puff, 81)} C{points(99, 89, 86, 91, 72, 91)}")
        left = (f"C{points(58, 91, 45, 89)} {points(34.5 - puff, 81)} L{points(36 - puff * 0.5, 75)} "
                f"L{points(28.5 - puff, 72)} L{points(34 - puff, 66)} L{points(29 - puff, 62)} "
                f"L{points(36 - puff * 0.5, 54)} C{points(38 - puff * 0.4, 41, 43, 30)} {points(54, 24)} "
                f"C{points(58, 22.5, 62, 20.5, 72, 20.5)} Z")
        cap = ("M72,21.8 C86,21.8 96,27 102,37 C93,33 84,36 79,44 C76,49 68,49 65,44 C60,36 51,33 42,37 "
               "C48,27 58,21.8 72,21.8 Z")
        muzzle = "M72,60 C84,56 97,62 96.5,74 C96,84 85,88.5 72,88.5 C59,88.5 48,84 47.5,74 C47,62 60,56 72,60 Z"
        whiskers = path("M43,71 L31,69 M43,75.5 L33,78 M101,71 L113,69 M101,75.5 L111,78", extra=stroke(LINE, 1.2))
        nose = (path("M65.5,60.5 Q72,56.5 78.5,60.5 Q79.5,65.5 72,68.6 Q64.5,65.5 65.5,60.5 Z", "#3a1d14",
                     stroke(LINE, 1.4)) + ellipse(69.6, 61.8, 2.4, 1.4, "#b48f86") +
                path("M72,68.6 L72,72.6", extra=stroke(LINE, 1.8)))
        blush = "".join(ellipse(72 + side * 30.5, 68, 6.6, 4.2, "#ef8260", f'opacity="{num(sketch["blush"] * 0.8)}"')
                        for side in (-1, 1))
        sketch.on("head", path(right + left, "url(#fur)", INNER), path(cap, "url(#dark)", 'opacity="0.85"'),
                  path(muzzle, "url(#muzzle)"), blush, whiskers, self.mouth.draw(sketch), nose)
        sketch.layer("head")
        sketch.on("head", *(eye.draw(sketch) for eye in self.eyes), *(brow(sketch, side, 72 + side * 15.5, 37.5, 7.5, "#4a230c", 3.8) for side in (-1, 1)))

    # What he holds.

    def drawHeld(self, sketch):
        if sketch["book"] > 0:
            sketch.on("body", props.book(72, 110 + (1 - sketch["book"]) * 46, "#3f7fc4", sketch["page"]))
        if sketch["paper"] > 0:
            sketch.on("body", props.paper(64, 113 + (1 - sketch["paper"]) * 46, sketch["stroke"]))
        if sketch["nut"] > 0:
            size = sketch["nut"]
            nut = (path("M72,106 C84,106 85,92 72,85 C59,92 60,106 72,106 Z", "url(#nut)", INNER) +
                   path("M62,94 C66,89 78,89 82,94 C79,87 77,85 72,84 C67,85 65,87 62,94 Z", "#7a4a20", stroke(LINE, 1.6)))
            sketch.on("body", f'<g transform="translate({points(72 * (1 - size), 94 * (1 - size))}) scale({num(size)})">'
                              f'{nut}</g>')

    def drawInHand(self, sketch):
        if sketch["paper"] > 0:
            x, y = self.arms[1].place(sketch)
            sketch.on("body", props.pencil(x - 8, y + 6, -48))

    def drawGlass(self, sketch):
        x, y = self.arms[1].place(sketch)
        lens = sketch.at("body", x - 12, y - 26)
        sketch.on(None, props.glass(lens[0], lens[1], 62, sketch["glass"]))

    def drawMound(self, sketch):
        sketch.layer()
        high = sketch["hole"]
        top = 139 - 17 * high
        d = (f"M{points(72 - 62 * high, 141)} C{points(72 - 56 * high, 130 + 4 * (1 - high))} "
             f"{points(72 - 46 * high, top + 4)} {points(72 - 38 * high, top + 3)} "
             f"C{points(72 - 30 * high, top - 4, 72 - 16 * high, top - 3, 72 - 10 * high, top + 1)} "
             f"C{points(72 - 2 * high, top - 4, 72 + 14 * high, top - 4, 72 + 22 * high, top + 2)} "
             f"C{points(72 + 34 * high, top - 2, 72 + 54 * high, 128 + 4 * (1 - high), 72 + 62 * high, 141)} Z")
        sketch.on(None, path(d, "url(#earth)", stroke("#3a220f", 2.4)),
                  *(ellipse(72 + x * high, 139 - y * high, 3.4 * high, 2.4 * high, EARTH_DARK)
                    for x, y in ((-34, 7), (-12, 11), (12, 6), (36, 9))))
        flying = sketch["clods"]
        if flying > 0:
            up = math.sin(flying * math.pi)
            for index, (x, y, size) in enumerate(((-44, 46, 5), (-22, 70, 4), (8, 84, 5.4), (30, 62, 4.4), (52, 40, 5))):
                sketch.on(None, ellipse(72 + x * (0.4 + 0.7 * flying), 128 - y * up, size, size * 0.8, EARTH,
                                        stroke("#3a220f", 1.6)))

    def drawAir(self, sketch):
        if sketch["rise"] < 1:
            return
        sketch.layer()
        props.tears(sketch, 72, 63, 20, falls=24)
        props.sweat(sketch, 104, 30, aside=6)
        props.sound(sketch, 118, 38, -40, apart=4.8)
        if sketch["ask"] > 0:
            sketch.on(None, props.question(122, 26, sketch["ask"]))
        if sketch["call"] > 0:
            sketch.on(None, props.exclamation(122, 26, sketch["call"]))
        if sketch["idea"] > 0:
            sketch.on(None, props.bulb(72, 21, sketch["idea"]))
        if sketch["doze"] > 0:
            sketch.on(None, props.dozing(108, 34, sketch["doze"]))
        if sketch["stars"] > 0:
            sketch.on(None, props.stars(sketch["stars"]))
        if sketch["notes"] > 0:
            sketch.on(None, props.notes(sketch["notes"]))
        if sketch["thought"] > 0:
            sketch.on(None, props.thought(124, 16, min(1.0, sketch["thought"] * 1.4), (sketch["thought"] - 0.4) * 5))

    # Coming and going: he digs, looks out, and jumps.

    def show(self, act):
        act.cut({"rise": 0.0})
        act.to(0.24, {"rise": 0.0, "hole": 1.0}, overshoot=0.08, step=BRISK)
        for clods in (0.25, 0.55, 0.85):
            act.also(0.06, {"clods": clods, "hole": 1.0 + 0.06 * math.sin(clods * 9)}, overshoot=0, step=BRISK)
        act.also(0.2, {"rise": 0.56, "clods": 0.0, "hole": 1.0}, overshoot=0.12, step=BRISK)
        act.also(0.16, {"eye.x": -0.9, "head.turn": -4.0}).hold(0.16)
        act.also(0.2, {"eye.x": 0.9, "head.turn": 4.0}).hold(0.16)
        act.to(0.12, {"rise": 0.46, "hole": 1.0, "eye.open": 0.5, "body.squash": -0.03}, overshoot=0, step=BRISK)
        act.to(0.2, self.glad, hands(0.5, 0.75, 0.0), {"rise": 1.0, "hole": 0.8, "body.y": -5.0, "body.squash": 0.07},
               ease=easeOut, step=BRISK)
        act.to(0.16, self.glad, hands(0.4, 0.1, 0.0), {"hole": 0.25, "body.squash": -0.09}, ease=easeIn, step=BRISK)
        act.to(0.32, overshoot=0.15)

    def hide(self, act):
        act.to(0.24, {"hole": 1.0, "eye.y": 0.9, "perk": 0.5, "head.y": 3.0}, hands(0.1, 0.2), overshoot=0.1)
        act.also(0.16, {"body.squash": 0.08, "body.y": -9.0, "eye.open": 0.1}, hands(-0.3, 0.9), ease=easeOut, step=BRISK)
        act.also(0.24, {"rise": 0.0, "body.y": 0.0, "body.squash": 0.0, "clods": 0.3}, ease=easeIn, step=BRISK)
        act.also(0.12, {"clods": 0.8}, overshoot=0, step=BRISK)
        act.to(0.2, {"rise": 0.0, "hole": 0.0}, ease=easeIn, step=BRISK)

    # What he feels.

    def pleased(self, act):
        clap = hands(-0.45, -0.05, 0.2)
        act.to(0.36, self.glad, hands(0.15, 0.1, 0.0), {"head.turn": -5.0}, anticipate=0.2)
        for turn in (5.0, -5.0, 5.0):
            act.also(0.12, clap, {"head.turn": turn, "body.y": 0.0, "body.squash": -0.04}, overshoot=0, step=BRISK)
            act.also(0.12, hands(0.15, 0.1, 0.0), {"body.y": -5.0, "body.squash": 0.03}, overshoot=0, step=BRISK)
        act.also(0.16, clap, {"body.y": 0.0, "body.squash": 0.0, "head.turn": -4.0, "blush": 1.0}).hold(0.9).rest()

    def sad(self, act):
        act.to(0.24, {"head.y": -3.0, "brow.turn": -0.6, "mouth.curve": 0.0, "eye.slant": 0.3}, overshoot=0)
        act.to(0.56, self.sorrow, hands(0.02, -0.75, 0.3), {"body.squash": -0.06, "head.y": 8.0}, ease=easeInOut)
        act.hold(0.4).also(0.56, {"tear": 1.0}, ease=easeIn).hold(0.3)
        wipe = hand("R", -0.38, 0.56, 0.9)
        act.also(0.32, wipe, {"head.turn": 5.0, "eye.open": 0.0, "tear": 0.55}, overshoot=0)
        for x in (-0.22, -0.38):
            act.also(0.16, {"hand.x.R": x}, overshoot=0)
        act.also(0.24, hand("R", 0.02, -0.75), {"eye.open": 0.7, "tear": 0.0, "eye.y": 0.7}, overshoot=0)
        act.hold(0.5).rest(0.48)

    def surprised(self, act):
        act.to(0.12, {"body.squash": -0.09, "eye.open": 0.4, "perk": -0.5}, step=BRISK, overshoot=0)
        act.to(0.18, self.shock, hands(0.5, 0.7, 0.0), {"body.y": -14.0, "puff": 1.0, "body.squash": 0.1}, step=BRISK,
               ease=easeOut)
        act.also(0.18, {"body.y": 0.0, "body.squash": -0.04}, ease=easeIn, step=BRISK)
        act.also(0.18, {"body.squash": 0.03}, hands(0.1, 0.5, 0.1), step=BRISK, overshoot=0.2).hold(0.9)
        act.also(0.24, {"puff": 0.3, "call": 0.0, "eye.open": 1.1, "mouth.open": 0.3}).hold(0.3).rest()

    def confused(self, act):
        # He scratches behind his ear.
        act.to(0.4, {"head.turn": 10.0, "eye.x": -0.5, "eye.y": -0.6, "brow.cock": 5.0, "brow.turn": 0.3, "ask": 1.0,
                     "mouth.curve": -0.35, "mouth.wide": 0.65, "perk": -0.3}, hand("R", 0.42, 1.35, 0.5, turn=-70.0),
               anticipate=0.1)
        for _ in range(3):
            act.also(0.1, {"hand.y.R": 1.2, "earR.y": 2.5}, overshoot=0, step=5)
            act.also(0.1, {"hand.y.R": 1.38, "earR.y": 0.0}, overshoot=0, step=5)
        act.hold(0.5).blink().hold(0.3).rest()

    def uncertain(self, act):
        # He chews at his paws.
        worried = {"brow.y": 2.5, "brow.turn": -0.8, "mouth.wide": 0.5, "mouth.curve": -0.2, "perk": -0.4, "sweat": 0.5}
        act.to(0.4, worried, hands(-0.55, 0.12, 0.9), {"eye.x": -0.8, "head.turn": -5.0, "body.squash": -0.03})
        for number in range(4):
            act.also(0.1, {"head.y": 1.5, "sweat": 0.5 + number * 0.1}, overshoot=0, step=5)
            act.also(0.1, {"head.y": 0.0}, overshoot=0, step=5)
        act.also(0.24, {"eye.x": 0.8, "head.turn": 4.0, "sweat": 1.0}).hold(0.6).rest()

    def alert(self, act):
        # The sentinel: bolt upright, paws at the chest, a look to either side.
        act.to(0.12, "cower", {"perk": 0.2}, step=BRISK, overshoot=0)
        act.to(0.2, "tall", "paws", {"call": 1.0, "mouth.wide": 0.5, "mouth.open": 0.25}, step=BRISK, overshoot=0.25).hold(0.3)
        act.also(0.16, {"eye.x": -0.9, "head.turn": -3.0, "head.x": -3.0}, step=BRISK, overshoot=0.1).hold(0.35)
        act.also(0.2, {"eye.x": 0.9, "head.turn": 3.0, "head.x": 3.0}, step=BRISK, overshoot=0.1).hold(0.35)
        act.rest()

    def congratulate(self, act):
        act.to(0.16, {"body.squash": -0.1, "eye.smile": 1.0}, hands(0.2, -0.7), step=BRISK, overshoot=0)
        for number in range(2):
            act.to(0.2, self.glad, hands(0.45, 1.0, 0.0), {"stars": 0.6 + 0.3 * number, "mouth.open": 0.9, "body.y": -15.0,
                                                          "body.squash": 0.09}, ease=easeOut, step=BRISK)
            act.also(0.2, {"body.y": 0.0, "body.squash": -0.05, "stars": 0.9}, hands(0.3, 0.55), ease=easeIn, step=BRISK)
        act.also(0.2, {"body.squash": 0.0, "stars": 1.0}, hands(0.5, 0.85), step=BRISK, overshoot=0.3).hold(0.8).rest()

    def decline(self, act):
        act.to(0.32, {"mouth.curve": -0.5, "mouth.wide": 0.7, "brow.turn": 0.8, "brow.y": -1.0, "eye.open": 0.0,
                      "head.y": -2.0}, hands(-0.35, 0.05, 0.2))
        for x in (-6.0, 6.0, -6.0, 6.0):
            act.also(0.18, {"head.x": x, "head.turn": x * 0.4}, hand("L", -0.35 - x * 0.02, 0.05),
                     hand("R", -0.35 + x * 0.02, 0.05), overshoot=0, ease=easeInOut, step=BRISK)
        act.also(0.16, {"head.x": 0.0, "head.turn": 0.0, "eye.open": 0.8}).hold(0.4).rest()

    def announce(self, act):
        # A whistle between two fingers.
        act.to(0.32, {"eye.open": 0.6, "head.y": 2.0}, hand("R", -0.75, 0.42, 0.9), overshoot=0)
        act.also(0.16, {"mouth.wide": 0.35, "mouth.open": 0.3, "mouth.curve": 0.1, "body.squash": 0.06, "head.turn": -6.0,
                        "eye.open": 0.0, "puff": 0.4, "perk": 1.0, "notes": 0.35}, step=BRISK, overshoot=0.2)
        act.also(0.48, {"notes": 1.0}, overshoot=0).hold(0.3)
        act.to(0.24, hand("R", 0.6, 0.35, 0.0), {"notes": 0.0, "mouth.curve": 1.0, "mouth.open": 0.5, "perk": 0.6}).hold(0.5)
        act.rest()

    def getAttention(self, act):
        act.to(0.16, {"body.squash": -0.08}, step=BRISK, overshoot=0)
        for _ in range(3):
            act.to(0.12, hands(0.35, 1.1, 0.0), {"body.y": -8.0, "mouth.open": 0.7, "mouth.curve": 0.8, "perk": 1.0,
                                                 "eye.open": 1.15, "brow.y": 3.0}, overshoot=0, step=BRISK)
            act.also(0.12, hands(0.8, 0.6, 0.0), {"body.y": 0.0, "body.squash": -0.04}, overshoot=0, step=BRISK)
        act.also(0.16, {"body.squash": 0.0, "head.turn": 4.0}).hold(0.5).rest()

    def greet(self, act):
        high, out = hand("R", 0.45, 1.0, 0.0), hand("R", 0.95, 0.62, 0.0)
        act.to(0.16, {"body.squash": -0.05}, step=BRISK, overshoot=0)
        act.to(0.24, self.glad, high, {"head.turn": 5.0, "body.turn": 2.0, "body.squash": 0.03}, overshoot=0.15)
        for number in range(5):
            act.also(0.12, high if number % 2 else out, {"head.turn": 5.0 - 3.0 * (number % 2)}, overshoot=0, step=BRISK)
        act.hold(0.3).rest()

    def wave(self, act):
        act.to(0.24, hand("L", 0.45, 1.0, 0.0), {"mouth.curve": 1.0, "mouth.open": 0.4, "head.turn": -4.0, "perk": 0.6})
        for number in range(5):
            act.also(0.12, hand("L", 0.45, 1.0) if number % 2 else hand("L", 0.95, 0.62), overshoot=0, step=BRISK)
        act.rest()

    # What he does.

    def think(self, act):
        act.to(0.4, {"eye.x": 0.6, "eye.y": -0.8, "mouth.wide": 0.55, "mouth.curve": 0.1, "head.turn": -6.0,
                     "brow.cock": 3.0, "thought": 0.4}, hand("R", -0.72, 0.3, 0.9), hand("L", -0.5, -0.45), overshoot=0.06)
        for number in range(1, 4):
            act.also(0.08, {"thought": 0.4 + number * 0.2}, overshoot=0).hold(0.32)
        act.hold(0.4)

    def search(self, act):
        # A paw over the brow, and a long look round.
        act.to(0.36, "tall", {"eye.x": -0.9, "head.turn": -5.0, "head.x": -3.0, "eye.open": 0.9},
               hand("R", -0.04, 1.66, 0.1, turn=-85.0))
        mark = act.mark()
        act.hold(0.4)
        act.also(0.48, {"eye.x": 0.9, "head.turn": 5.0, "head.x": 3.0, "hand.x.R": -0.01}, overshoot=0, ease=easeInOut)
        act.hold(0.4).blink()
        act.also(0.48, {"eye.x": -0.9, "head.turn": -5.0, "head.x": -3.0, "hand.x.R": -0.04}, overshoot=0, ease=easeInOut)
        act.again(mark, 70).rest()

    def process(self, act):
        # A nut, gnawed as fast as he can.
        held = hands(-0.2, 0.06, 0.6)
        act.to(0.32, held, {"nut": 1.0, "eye.y": 0.6, "brow.turn": 0.3, "head.y": 3.0, "mouth.wide": 0.6}, overshoot=0)
        mark = act.mark()
        for turn in (-3.0, 3.0):
            for _ in range(3):
                act.also(0.05, {"head.y": 6.0, "mouth.open": 0.35, "head.turn": turn, "blush": 0.9}, overshoot=0, step=5)
                act.also(0.05, {"head.y": 3.0, "mouth.open": 0.0}, overshoot=0, step=5)
            act.also(0.24, {"head.turn": turn, "eye.y": 0.2}, overshoot=0).hold(0.2)
        act.again(mark, 80).rest()

    def startListening(self, act):
        # A paw behind the ear, which comes up for it.
        act.to(0.36, {"head.turn": 9.0, "head.x": 3.0, "body.turn": 3.0, "eye.x": 0.6, "perk": 1.0, "eye.open": 1.1,
                      "brow.y": 2.5, "brow.cock": 1.5, "mouth.wide": 0.75}, hand("R", 0.42, 1.3, 0.0, turn=-60.0),
               anticipate=0.12)
        self.hearken(act)

    def hearing_2(self, act):
        for _ in range(2):
            act.to(0.14, {"head.y": 4.5, "perk": 0.6, "eye.open": 0.7, "mouth.curve": 1.0}, overshoot=0, step=BRISK)
            act.to(0.14, {"head.y": -1.0, "perk": 0.6}, overshoot=0, step=BRISK)
        act.rest(0.2)

    def hearing_3(self, act):
        # One ear, then the other.
        act.to(0.16, {"earL.turn": 14.0, "eye.x": -0.5, "head.turn": -4.0}, step=BRISK).hold(0.4)
        act.to(0.2, {"earR.turn": -14.0, "eye.x": 0.5, "head.turn": 4.0}, step=BRISK).hold(0.4).rest(0.24)

    # Passing the time.

    def idle1_3(self, act):
        # An ear twitches.
        act.hold(0.4)
        for turn in (16.0, -4.0, 12.0):
            act.to(0.05, {"earR.turn": -turn}, overshoot=0, step=5)
        act.rest(0.15, step=5).hold(0.8)

    def idle2_2(self, act):
        # He washes his whiskers.
        act.to(0.32, hands(-0.5, 0.55, 0.8), {"eye.open": 0.0, "head.y": 3.0, "head.turn": -4.0})
        for number in range(4):
            act.also(0.14, hands(-0.5, 0.55 - 0.2 * (number % 2)), {"head.turn": 4.0 - 8.0 * (number % 2)}, overshoot=0,
                     step=BRISK)
        act.hold(0.2).rest(0.32).hold(0.4)

    def idle2_3(self, act):
        # The tail swishes, and he looks what it does.
        act.to(0.24, {"eye.x": 0.9, "eye.y": 0.5, "head.turn": 5.0})
        for turn in (12.0, -8.0, 12.0, -6.0):
            act.also(0.24, {"tail.turn": turn * 0.6, "tip.turn": turn}, overshoot=0, ease=easeInOut)
        act.blink().rest(0.3)
