"""Plonk, a frog: slow, content and deep of voice. Nothing hurries him but a fly; his throat tells what he feels, and his
eyes go where they like, even one at a time. He comes up from a pond, eyes first."""

import math

import props
from character import Character, hand, hands
from draw import Sketch, ellipse, num, path, points, radial, stroke
from features import Arm, Eye, Mouth, brow
from rig import BRISK, Joints, Swing, easeIn, easeInOut, easeOut, linear

LINE = "#1f5426"
INNER = stroke(LINE, 2.2)
TIE = stroke("#7a1d1a", 1.9)


class Hand(Arm):
    """Three long fingers with round tips."""

    def drawHand(self, sketch, x, y, angle):
        fist, point = sketch[f"fist.{self.suffix}"], sketch[f"point.{self.suffix}"]
        size, drawn = self.hand, ""
        for number in (-1, 0, 1):
            spread = number * (0.85 - 0.45 * fist)
            length = size * (1.75 - 0.7 * fist)
            if point > 0:
                length += (size * (2.4 if number == 0 else 0.95) - length) * point
            tx, ty = math.cos(spread) * length, math.sin(spread) * length
            d = f"M0,0 L{points(tx, ty)}"
            drawn += (path(d, extra=stroke(LINE, size * 0.55 + 3.2)) + ellipse(tx, ty, 3.7, 3.7, "#a6e67e", stroke(LINE, 1.7)) +
                      path(d, extra=stroke(self.fill, size * 0.55)))
        return (f'<g transform="translate({points(x, y)}) rotate({num(angle)})">' +
                ellipse(0, 0, size * 0.9, size * 0.85, self.fill, INNER) + drawn +
                ellipse(0, 0, size * 0.72, size * 0.68, self.fill) + "</g>")


class Plonk(Character):
    name = "Plonk"
    description = "A frog of few thoughts and many words."
    guid = "{6B1D0F52-7C0A-4E0B-9C55-0E7B3A1F6C03}"
    voice = {"gender": "male", "speed": 150, "pitch": 82, "age": 45, "style": "Deep"}
    balloon = {"background": "#E9FBD8", "border": "#1E5A24"}
    tempo = 0.85
    amplitude = 0.9
    springiness = 0.9

    joints = Joints({
        "body": (None, 72.0, 136.0), "tie": ("body", 72.0, 100.0), "head": ("body", 72.0, 96.0),
        "eyeL": ("head", 47.0, 54.0), "eyeR": ("head", 97.0, 54.0),
    })
    crowns = (("eyeL", 47.0, 23.0), ("eyeR", 97.0, 23.0))
    swings = {
        "tie.turn": Swing({"body.turn": 1.6, "body.x": 1.6, "head.turn": 1.6, "head.x": 1.4}, 0.45, 0.22),
        "eyeL.squash": Swing({"body.y": 0.012, "head.y": 0.02, "body.squash": -0.5}, 0.4, 0.22),
        "eyeR.squash": Swing({"body.y": 0.012, "head.y": 0.02, "body.squash": -0.5}, 0.42, 0.22),
        "throat": Swing({"body.y": 0.02, "head.y": 0.03}, 0.5, 0.25),
    }
    own_channels = {"throat": 0.0, "tongue": 0.0, "fly": 0.0, "fly.x": 20.0, "fly.y": 20.0, "splash": 0.0, "bubble": 0.0,
                    "roll": 0.0, **hands(0.18, -0.62, 0.1)}
    poses = {
        "melted": {"body.squash": -0.14, "head.y": 7.0, "eye.open": 0.6, "mouth.curve": -0.7},
        "on the belly": hands(-0.42, -0.42, 0.4),
    }

    arms = [Hand(side, 72 + side * 27, 101, 32, 9, 6.2, "#74c755", "#a9e386", LINE, spread=12.0) for side in (-1, 1)]
    eyes = [Eye(side, 72 + side * 25, 40, 12.0, 12.6, "#8bd567", LINE, iris="#f0b429", pupil=0.5, white="#fffbe6",
                skin="#8bd567") for side in (-1, 1)]
    mouth = Mouth(72, 74, 25, 11, LINE)

    def defs(self):
        return (radial("skin", "#c2f096", "#7ccd5b", "#459a3c") + radial("leg", "#9be074", "#64b94a", "#37833a") +
                radial("belly", "#fffee6", "#f6f2b6", "#d8d384") + radial("pond", "#7fd0dd", "#3f9bb0", "#226a80") +
                props.DEFS)

    def derived(self, pose):
        breath = pose["breath"]
        return {**pose, "throat": max(0.0, pose["throat"] + 0.25 * breath), "head.y": pose["head.y"] - 0.6 * breath,
                "eyeL.y": pose["eyeL.y"] - 2.0 * pose["perk"], "eyeR.y": pose["eyeR.y"] - 2.0 * pose["perk"]}

    def draw(self, sketch):
        hole, rise = sketch["hole"], sketch["rise"]
        if hole > 0:
            sketch.layer()
            self.drawPond(sketch, hole)
        if rise >= 1:
            self.drawFigure(sketch)
        elif rise > 0:
            inner = Sketch(self.joints, sketch.pose, self.size)
            self.drawFigure(inner)
            sunk = f'<g transform="translate(0 {num((1 - rise) * 118)})">{inner.flattened()}</g>'
            sketch.on(None, sketch.clip("g", path("M-40,-60 H184 V130 Q72,140 -40,130 Z", "#000"), sunk))
        if hole > 0:
            self.drawWater(sketch, hole)
        self.drawAir(sketch)

    def drawPond(self, sketch, hole):
        sketch.on(None, ellipse(72, 130, 62 * hole, 11.5 * hole, "url(#pond)", stroke("#1c5668", 2.4)))

    def drawWater(self, sketch, hole):
        sketch.layer()
        if sketch["rise"] < 1:
            sketch.on(None, path(f"M{points(72 - 46 * hole, 133)} Q{points(72, 133 + 8 * hole, 72 + 46 * hole, 133)}",
                                 extra=stroke("#c9f1f2", 3.0)))
        splash = sketch["splash"]
        if splash > 0:
            up = math.sin(min(1.0, splash) * math.pi)
            for x, y, size in ((-50, 34, 4.4), (-32, 52, 5.0), (34, 54, 4.8), (52, 32, 4.2), (-14, 30, 3.4), (16, 32, 3.4)):
                sketch.on(None, props.drop(72 + x * (0.6 + 0.5 * splash), 130 - y * up, size, "#9fe0ea"))
        for number in range(3):
            grown = sketch["bubble"] * 1.6 - number * 0.3
            if 0 < grown < 1:
                sketch.on(None, ellipse(58 + number * 14, 126 - 22 * grown, 2.5 + 2.5 * grown, 2.5 + 2.5 * grown, "#d9f6f8",
                                        stroke("#2f7f93", 1.5)))

    # The figure, from the back to the front.

    def drawFigure(self, sketch):
        sketch.layer("body")
        self.drawLegs(sketch)
        self.drawBody(sketch)
        high = [arm for arm in self.arms if arm.place(sketch)[1] <= 88]
        low = [arm for arm in self.arms if arm not in high]
        holding = sketch["book"] > 0 or sketch["paper"] > 0
        if not holding:
            sketch.layer("body")
            sketch.on("body", *(arm.draw(sketch) for arm in low))
        self.drawHead(sketch)
        sketch.layer("body")
        self.drawTie(sketch)
        for arm in high:
            sketch.layer("body")
            sketch.on("body", arm.draw(sketch))
        if holding:
            sketch.layer("body")
            if sketch["book"] > 0:
                sketch.on("body", props.book(72, 111 + (1 - sketch["book"]) * 46, "#c9453b", sketch["page"]))
            if sketch["paper"] > 0:
                sketch.on("body", props.paper(62, 114 + (1 - sketch["paper"]) * 46, sketch["stroke"]))
            sketch.on("body", *(arm.draw(sketch) for arm in low))
            if sketch["paper"] > 0:
                x, y = self.arms[1].place(sketch)
                sketch.on("body", props.pencil(x - 8, y + 6, -48))
        if sketch["glass"] > 0:
            x, y = self.arms[1].place(sketch)
            sketch.layer()
            x, y = sketch.at("body", x - 12, y - 26)
            sketch.on(None, props.glass(x, y, 62, sketch["glass"]))
        if sketch["tongue"] > 0:
            sketch.layer()
            x, y = sketch.at("head", 72, 79)
            reach = sketch["tongue"]
            tx, ty = x + (sketch["fly.x"] - x) * reach, y + (sketch["fly.y"] - y) * reach
            d = f"M{points(x, y)} Q{points((x + tx) / 2, (y + ty) / 2 + 8 * (1 - reach), tx, ty)}"
            sketch.on(None, path(d, extra=stroke("#9c3644", 7.4)), path(d, extra=stroke("#ee7d86", 4.2)),
                      ellipse(tx, ty, 4.8, 4.4, "#ee7d86", stroke("#9c3644", 1.7)))

    def drawLegs(self, sketch):
        drawn = ""
        for side in (-1, 1):
            x = 72 + side * 42
            drawn += ellipse(72 + side * 36, 117, 17.5, 17, "url(#leg)", INNER)
            drawn += path(f"M{points(72 + side * 44, 108)} q{points(side * 8, 6)} {points(side * 3, 16)}",
                          extra=stroke("#37833a", 1.8))
            drawn += path(f"M{points(x - side * 22, 132)} Q{points(x - side * 6, 125, x + side * 13, 129)} "
                          f"q{points(side * 7, 2, side * 2, 6)} q{points(-side * 4, 2, -side * 8, -0.5)} "
                          f"q{points(-side, 4, -side * 8, 2.4)} q{points(-side * 5, 2, -side * 8, -1.6)} "
                          f"Q{points(x - side * 18, 138.5, x - side * 22, 136)} Z", "#7ccd5b", INNER)
        sketch.on("body", drawn)

    def drawBody(self, sketch):
        wide = 1.4 * sketch["breath"]
        sketch.on("body", path(f"M72,76 C94,76 {points(104 + wide, 98)} {points(103 + wide, 114)} C102,130 90,136 72,136 "
                               f"C54,136 42,130 {points(41 - wide, 114)} C{points(40 - wide, 98)} 50,76 72,76 Z", "url(#skin)",
                               INNER), ellipse(72, 116, 22.5 + wide, 17.5, "url(#belly)"))

    def drawHead(self, sketch):
        sketch.layer("head")
        for side, joint in ((-1, "eyeL"), (1, "eyeR")):
            sketch.on(joint, ellipse(72 + side * 25, 42, 17, 18, "url(#skin)", INNER))
        sketch.layer("head")
        skull = "M72,42 C103,42 123,54 123,72 C123,90 101,98 72,98 C43,98 21,90 21,72 C21,54 41,42 72,42 Z"
        blush = "".join(ellipse(72 + side * 37.5, 70, 7, 4.6, "#f59a6d", f'opacity="{num(sketch["blush"] * 0.9)}"')
                        for side in (-1, 1))
        spots = "".join(ellipse(x, y, r, r * 0.75, "#4fa03f") for x, y, r in ((72, 49.5, 3.6), (63.5, 53, 2.3), (80.5, 52.5, 2.5)))
        nostrils = ellipse(66.5, 61, 1.5, 1.9, LINE) + ellipse(77.5, 61, 1.5, 1.9, LINE)
        sketch.on("head", path(skull, "url(#skin)", INNER), self.drawThroat(sketch), blush, spots, nostrils,
                  self.mouth.draw(sketch))
        sketch.layer("head")
        for side, joint, eye in zip((-1, 1), ("eyeL", "eyeR"), self.eyes):
            sketch.on(joint, ellipse(72 + side * 25, 47, 15, 13.5, "#8bd567"), eye.draw(sketch))
        if any(abs(sketch[channel]) > 0.05 for channel in ("brow.y", "brow.turn", "brow.cock")):
            for side, joint in ((-1, "eyeL"), (1, "eyeR")):
                sketch.on(joint, brow(sketch, side, 72 + side * 25, 28, 8, LINE, 3.4))

    def drawThroat(self, sketch):
        full = sketch["throat"]
        jaw = path("M30,82 C44,97 100,97 114,82 C109,92.5 92,97 72,97 C52,97 35,92.5 30,82 Z", "#e9f0a4")
        if full < 0.08:
            return jaw
        return jaw + (ellipse(72, 90 + 5 * full, 22 + 13 * full, 6 + 13 * full, "url(#belly)", stroke(LINE, 2.0)) +
                      ellipse(64, 87 + 3 * full, 5 + 3 * full, 1 + 2.6 * full, "#fffef2"))

    def drawTie(self, sketch):
        drop = 11 * sketch["throat"] + 0.4 * sketch["head.y"]
        flare = sketch["perk"] * 2.5
        x, y = 72, 101 + drop
        wings = "".join(path(f"M{points(x, y)} L{points(x + side * 14.5, y - 7.5 - flare)} "
                             f"Q{points(x + side * 18, y, x + side * 14.5, y + 7.5)} Z", "#e0483e", TIE) +
                        path(f"M{points(x + side * 6, y - 0.5)} L{points(x + side * 12, y - 3 - flare * 0.6)}",
                             extra=stroke("#ff8f80", 1.8)) for side in (-1, 1))
        sketch.on("tie", wings, ellipse(x, y, 4.3, 4.8, "#f4675a", TIE))

    def drawAir(self, sketch):
        if sketch["rise"] < 1:
            return
        sketch.layer()
        props.tears(sketch, 72, 57, 31, falls=26, sizes=(5.0, 4.2))
        props.sweat(sketch, 116, 38, aside=4)
        props.sound(sketch, 121, 64, -8, nearest=8.0, apart=4.8)
        if sketch["ask"] > 0:
            sketch.on(None, props.question(128, 22, sketch["ask"] * 0.9))
        if sketch["call"] > 0:
            sketch.on(None, props.exclamation(72, 20, sketch["call"] * 0.9))
        if sketch["idea"] > 0:
            sketch.on(None, props.bulb(72, 22, sketch["idea"]))
        if sketch["doze"] > 0:
            sketch.on(None, props.dozing(110, 28, sketch["doze"]))
        if sketch["stars"] > 0:
            sketch.on(None, props.stars(sketch["stars"], places=((12, 34, 8), (131, 30, 9), (30, 9, 6), (114, 8, 6.5), (72, 14, 6),
                                                                 (136, 62, 5))))
        if sketch["notes"] > 0:
            sketch.on(None, props.notes(sketch["notes"], ((16, 34), (128, 34), (72, 18))))
        if sketch["thought"] > 0:
            sketch.on(None, props.thought(125, 14, min(1.0, sketch["thought"] * 1.4), (sketch["thought"] - 0.4) * 5))
        if sketch["fly"] > 0:
            x, y = sketch["fly.x"], sketch["fly.y"]
            sketch.on(None, ellipse(x - 3.4, y - 3.6, 4.4, 2.6, "#dff0ff", stroke("#47525c", 1.1)),
                      ellipse(x + 3.4, y - 3.6, 4.4, 2.6, "#dff0ff", stroke("#47525c", 1.1)),
                      ellipse(x, y, 3.6, 3.2, "#333a40", stroke("#171b1f", 1.0)))

    # Coming and going.

    def show(self, act):
        act.cut({"rise": 0.0})
        act.to(0.3, {"rise": 0.0, "hole": 1.0}, overshoot=0.02)
        act.also(0.32, {"bubble": 0.9}, overshoot=0)
        act.also(0.24, {"rise": 0.36, "bubble": 0.0, "eye.open": 0.7}, overshoot=0).hold(0.2)
        act.also(0.16, {"eye.x": -1.0}).hold(0.2).also(0.16, {"eye.x": 1.0}).hold(0.2)
        act.also(0.1, {"eye.x": 0.0, "rise": 0.28}, overshoot=0)
        act.to(0.2, self.glad, hands(0.5, 0.5, 0.0), {"rise": 1.0, "hole": 1.0, "body.y": -12.0, "body.squash": 0.08,
                                                     "splash": 0.45}, ease=easeOut, step=BRISK)
        act.to(0.16, self.glad, {"hole": 0.5, "body.squash": -0.12, "splash": 0.85}, ease=easeIn, step=BRISK)
        act.to(0.3, overshoot=0.2)

    def hide(self, act):
        act.to(0.3, {"hole": 1.0, "eye.y": 0.9}, overshoot=0.02)
        act.also(0.2, {"body.y": -8.0, "body.squash": 0.06, "eye.open": 0.0, "throat": 0.8}, hands(-0.1, 0.7), ease=easeOut)
        act.also(0.2, {"rise": 0.34, "body.y": 0.0, "body.squash": 0.0, "throat": 0.0, "splash": 0.5}, ease=easeIn)
        act.also(0.16, {"splash": 0.0, "eye.open": 0.9, "eye.y": 0.0}, overshoot=0).hold(0.2).blink()
        act.also(0.24, {"rise": 0.0}, overshoot=0, ease=easeIn).also(0.24, {"bubble": 0.8}, overshoot=0)
        act.to(0.2, {"rise": 0.0, "hole": 0.0}, overshoot=0)

    # What he feels.

    def pleased(self, act):
        # The throat fills with contentment, and he rocks on it.
        act.to(0.4, "on the belly", {"mouth.curve": 1.0, "eye.open": 0.5, "blush": 0.9, "throat": 0.3})
        act.also(0.32, {"eye.smile": 1.0, "eye.open": 1.0, "throat": 1.0, "head.y": -3.0, "blush": 1.0}, overshoot=0.1)
        for turn in (4.0, -4.0, 4.0):
            act.also(0.4, {"body.turn": turn, "head.turn": turn * 0.8}, overshoot=0, ease=easeInOut)
        act.also(0.24, {"body.turn": 0.0, "head.turn": 0.0, "throat": 0.5, "mouth.open": 0.5}).hold(0.6).rest()

    def sad(self, act):
        # He melts.
        act.to(0.4, {"eye.slant": 0.5, "brow.turn": -0.9, "brow.y": 1.0, "mouth.curve": -0.3, "blush": 0.1}, overshoot=0)
        act.also(0.8, "melted", {"eye.slant": 0.65, "head.turn": -5.0, "mouth.curve": -0.8, "eye.y": 0.5, "perk": -1.0},
                 hands(0.42, -0.8, 0.0), overshoot=0, ease=easeInOut).hold(0.3)
        act.also(0.64, {"tear": 1.0}, ease=easeIn).hold(0.4)
        act.also(0.4, {"throat": 0.5, "tear": 0.7}, ease=easeInOut).also(0.32, {"throat": 0.0, "head.turn": 3.0, "tear": 0.5})
        act.hold(0.6).rest(0.6)

    def surprised(self, act):
        # The eyes jump first, the rest of him follows.
        act.to(0.12, {"body.squash": -0.08, "eye.open": 0.5}, step=BRISK, overshoot=0)
        act.to(0.12, {"eyeL.y": -9.0, "eyeR.y": -9.0, "eyeL.squash": 0.2, "eyeR.squash": 0.2, "eye.open": 1.15, "eye.pupil": 0.6},
               step=BRISK, overshoot=0)
        act.also(0.18, self.shock, hands(0.5, 0.35, 0.0), {"body.y": -12.0, "body.squash": 0.1, "eye.open": 1.15,
                                                          "mouth.wide": 0.4, "brow.y": 0.0}, step=BRISK, ease=easeOut)
        act.also(0.18, {"body.y": 0.0, "body.squash": -0.04}, ease=easeIn, step=BRISK)
        act.also(0.16, {"body.squash": 0.0, "eyeL.y": -4.0, "eyeR.y": -4.0, "eyeL.squash": 0.1, "eyeR.squash": 0.1}, overshoot=0.2)
        act.hold(0.8).rest()

    def confused(self, act):
        # One eye looks here, the other goes out.
        act.to(0.5, {"head.turn": 8.0, "mouth.curve": -0.3, "mouth.wide": 0.6, "ask": 1.0, "eye.x": 0.6, "eye.y": -0.7,
                     "eyeR.y": -3.0, "eyeL.y": 2.0}, hand("R", 0.3, 0.72, 0.3, turn=-40.0))
        act.also(0.16, {"wink.L": 0.7}).hold(0.4)
        act.also(0.2, {"wink.L": 0.0, "wink.R": 0.7, "head.turn": 4.0, "eye.x": -0.4}).hold(0.5)
        act.also(0.16, {"wink.R": 0.0}).blink().hold(0.2).rest()

    def uncertain(self, act):
        # He pulls at his tie.
        act.to(0.48, {"eye.x": 0.8, "head.turn": -5.0, "mouth.wide": 0.5, "mouth.curve": -0.2, "brow.turn": -0.6, "brow.y": 1.0,
                      "sweat": 0.6}, hand("R", -0.68, 0.02, 0.8))
        for turn in (8.0, -8.0, 6.0):
            act.also(0.16, {"tie.turn": turn, "hand.x.R": -0.68 + turn * 0.01, "sweat": 0.8}, overshoot=0)
        act.also(0.3, {"eye.x": -0.8, "sweat": 1.0, "throat": 0.5}).also(0.24, {"throat": 0.0}).hold(0.4).rest()

    def alert(self, act):
        act.to(0.12, {"body.squash": -0.08, "eye.open": 0.6}, step=BRISK, overshoot=0)
        act.to(0.18, {"body.squash": 0.08, "perk": 1.0, "eye.open": 1.1, "eyeL.y": -3.0, "eyeR.y": -3.0, "call": 1.0,
                      "mouth.wide": 0.7}, hand("R", 0.35, 0.9, 0.6, 1.0), step=BRISK, overshoot=0.2).hold(0.3)
        act.also(0.16, {"throat": 0.8}).also(0.2, {"throat": 0.0}).hold(0.4).rest()

    def congratulate(self, act):
        act.to(0.24, {"body.squash": -0.16, "eye.smile": 1.0, "head.y": 3.0}, hands(0.3, -0.75), overshoot=0)
        act.to(0.24, self.glad, hands(0.75, 0.75, 0.0), {"body.y": -20.0, "body.squash": 0.13, "stars": 0.8, "mouth.open": 0.9},
               ease=easeOut, step=BRISK).hold(0.08)
        act.also(0.24, hands(0.4, 0.3), {"body.y": 0.0, "body.squash": -0.12, "stars": 1.0}, ease=easeIn, step=BRISK)
        act.also(0.24, {"body.squash": 0.0, "throat": 0.7}, hands(0.5, 0.5), overshoot=0.3).hold(0.9).rest()

    def decline(self, act):
        act.to(0.5, {"mouth.curve": -0.6, "eye.open": 0.45, "head.y": 2.0, "throat": 0.3}, hand("R", 0.3, 0.45, 0.0, turn=-30.0))
        for x in (-6.0, 6.0, -6.0, 6.0):
            act.also(0.28, {"head.x": x, "head.turn": x * 0.5, "hand.x.R": 0.3 + x * 0.02}, overshoot=0, ease=easeInOut)
        act.also(0.2, {"head.x": 0.0, "head.turn": 0.0}).hold(0.4).rest()

    def acknowledge(self, act):
        act.to(0.32, {"head.y": 6.0, "eye.open": 0.15, "mouth.curve": 1.0, "body.squash": -0.03}, overshoot=0).hold(0.2).rest(0.4)

    def announce(self, act):
        # A croak: the sack fills, and out it comes.
        act.to(0.48, {"throat": 1.0, "eye.open": 0.2, "head.y": -4.0, "body.squash": 0.04}, hands(0.35, -0.3, 0.1), anticipate=0.1)
        act.hold(0.16)
        act.also(0.16, {"throat": 0.15, "mouth.open": 1.0, "mouth.curve": 0.5, "eye.open": 1.1, "body.squash": -0.04, "notes": 0.4},
                 hands(0.75, 0.15, 0.0), step=BRISK, overshoot=0.2)
        act.also(0.48, {"notes": 1.0}, overshoot=0).hold(0.4).rest()

    def greet(self, act):
        # A hand, a bow, and a word.
        act.to(0.48, hand("R", 0.6, 0.7, 0.0), {"mouth.curve": 1.0, "mouth.open": 0.35, "perk": 1.0, "head.turn": 3.0}).hold(0.16)
        act.also(0.4, {"head.y": 7.0, "body.turn": 3.0, "eye.open": 0.0, "head.turn": 6.0},
                 hand("R", -0.5, -0.05), hand("L", 0.6, -0.3), overshoot=0).hold(0.3)
        act.also(0.32, {"head.y": -1.0, "eye.open": 1.0, "head.turn": 0.0, "body.turn": 0.0}, hand("R", 0.6, 0.7)).hold(0.3).rest()

    # What he does.

    def think(self, act):
        act.to(0.5, {"eye.x": 0.7, "eye.y": -0.9, "mouth.wide": 0.6, "mouth.curve": 0.0, "head.turn": -4.0, "thought": 0.4},
               hand("R", -0.5, 0.12, 0.7), hand("L", -0.5, -0.5), overshoot=0.05)
        for number in range(1, 4):
            act.also(0.08, {"thought": 0.4 + number * 0.2}, overshoot=0).hold(0.3)
            act.also(0.08, {"wink.R" if number % 2 else "wink.L": 1.0}, overshoot=0).hold(0.1)
            act.also(0.08, {"wink.L": 0.0, "wink.R": 0.0}, overshoot=0)
        act.hold(0.4)

    def search(self, act):
        # Each eye looks on its own side.
        act.to(0.4, {"glass": 1.0, "eye.x": -0.9, "head.turn": -5.0, "head.x": -2.0}, hand("R", -0.35, 0.35, 0.8), overshoot=0)
        mark = act.mark()
        act.hold(0.3)
        act.also(0.72, {"eye.x": 0.9, "head.turn": 5.0, "head.x": 2.0, "hand.x.R": 0.45}, overshoot=0, ease=easeInOut).hold(0.3)
        act.blink()
        act.also(0.72, {"eye.x": -0.9, "head.turn": -5.0, "head.x": -2.0, "hand.x.R": -0.35}, overshoot=0, ease=easeInOut)
        act.again(mark, 70).rest()

    def process(self, act):
        # A fly goes round his head, and his eyes with it.
        def around(turn):
            angle = turn * 2 * math.pi
            return {"fly.x": 72 + 58 * math.sin(angle), "fly.y": 30 - 16 * math.cos(angle), "eye.x": math.sin(angle),
                    "eye.y": -0.3 - 0.6 * math.cos(angle), "head.turn": 4 * math.sin(angle)}
        act.to(0.3, "on the belly", around(0.0), {"fly": 1.0, "mouth.wide": 0.7}, overshoot=0)
        mark = act.mark()
        for number in range(1, 17):
            act.also(0.07, around(number / 16), overshoot=0, ease=linear)
        act.again(mark, 80)
        act.rest(0.4, {"fly.x": 72.0, "fly.y": 14.0})
        act.to(0.08)

    def moveRight(self, act):
        # A leap: he is broad, and stretches rather than leans.
        act.to(0.2, {"body.squash": -0.1, "eye.x": -0.9}, overshoot=0)
        act.also(0.24, {"body.squash": 0.08, "body.turn": -3.0, "head.x": -4.0}, hands(0.6, 0.4, 0.0), overshoot=0).hold(0.1)

    def moveLeft(self, act):
        act.to(0.2, {"body.squash": -0.1, "eye.x": 0.9}, overshoot=0)
        act.also(0.24, {"body.squash": 0.08, "body.turn": 3.0, "head.x": 4.0}, hands(0.6, 0.4, 0.0), overshoot=0).hold(0.1)

    def startListening(self, act):
        # A hand where an ear would be, and the eyes shut, to hear better; then wide open.
        act.to(0.48, {"head.turn": 8.0, "head.x": 3.0, "body.turn": 3.0, "eye.x": 0.6, "perk": 1.0, "eye.open": 1.08,
                      "mouth.wide": 0.7, "eyeR.y": -3.0}, hand("R", 0.62, 0.72, 0.0, turn=-50.0), anticipate=0.1)
        self.hearken(act)

    def hearing_1(self, act):
        act.to(0.32, {"head.turn": 6.0, "eye.x": 0.5, "throat": 0.5}).also(0.24, {"throat": 0.0}).hold(0.4).rest(0.3)

    def hearing_2(self, act):
        act.to(0.32, {"head.y": 4.5, "eye.open": 0.3, "mouth.curve": 1.0}, overshoot=0).hold(0.2).rest(0.32)

    # Passing the time.

    def idle1_3(self, act):
        act.hold(0.3)
        for _ in range(2):
            act.to(0.16, {"throat": 0.6}, overshoot=0).to(0.24, overshoot=0).hold(0.3)
        act.rest(0.08)

    def idle1_4(self, act):
        # One eye, then the other.
        act.hold(0.4)
        for eye in ("wink.L", "wink.R"):
            act.to(0.08, {eye: 0.6}, overshoot=0).to(0.08, {eye: 1.0}, overshoot=0).hold(0.1).to(0.12, overshoot=0).hold(0.2)
        act.rest(0.08).hold(0.3)

    def idle2_2(self, act):
        # A fly comes by; it does not leave.
        act.to(0.1, {"fly": 1.0, "fly.x": 10.0, "fly.y": 40.0, "eye.x": -0.9}, overshoot=0)
        for x, y in ((22, 22), (40, 30), (58, 12), (82, 22), (104, 10), (122, 24)):
            act.also(0.14, {"fly.x": float(x), "fly.y": float(y), "eye.x": (x - 72) / 55, "eye.y": -0.8, "head.turn": (x - 72) / 16},
                     overshoot=0, ease=linear)
        act.hold(0.2)
        act.also(0.08, {"mouth.open": 0.8, "mouth.wide": 0.5, "tongue": 0.5, "eye.open": 1.1}, overshoot=0, step=4)
        act.also(0.04, {"tongue": 1.0}, overshoot=0, step=4)
        act.also(0.08, {"tongue": 0.2, "fly": 0.0}, overshoot=0, step=4)
        act.to(0.08, {"eye.open": 0.0, "mouth.curve": 1.0, "blush": 1.0, "throat": 0.3}, overshoot=0)
        for _ in range(2):
            act.also(0.16, {"throat": 0.6, "head.y": 1.5}, overshoot=0).also(0.16, {"throat": 0.2, "head.y": 0.0}, overshoot=0)
        act.hold(0.3).rest()

    def idle2_3(self, act):
        # He puts his tie straight.
        act.to(0.4, hands(-0.5, -0.05, 0.6), {"eye.y": 0.9, "head.y": -2.0}, overshoot=0)
        for turn in (9.0, -7.0, 4.0):
            act.also(0.16, {"tie.turn": turn}, overshoot=0)
        act.also(0.16, {"tie.turn": 0.0, "perk": 1.0, "eye.y": 0.0, "mouth.curve": 1.0}).hold(0.5).rest()
