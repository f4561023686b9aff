"""Ottoline, an octopus: of good family, unhurried, and never short of a hand. She comes out of a pool."""

import math

from character import Character
from draw import Sketch, ellipse, num, path, points, radial, stroke
from rig import Joints

SIZE = 144
GROUND = 138.0


class Figure:
    """What is drawn of her from the numbers of a pose, in the order of these methods."""

    line = "#402010"        # outlines
    line_width = 2.4
    lid = "#a06030"         # eyelids
    white = "#ffffff"
    pupil_colour = "#2a1a14"
    iris = None             # a ring round the pupil
    mouth_colour = "#7a1f2b"
    tongue = "#ee7d86"
    blush_colour = "#f2927f"
    eyes = ((58.0, 52.0), (86.0, 52.0))
    eye_size = (9.0, 11.0)
    pupil_size = 5.2
    brows = (16.0, 7.0)     # above the eye, half width
    brow_colour = None
    mouth_at = (72.0, 74.0)
    mouth_size = (12.0, 15.0)   # half width when wide, depth when wide open
    cheeks = ((47.0, 68.0), (97.0, 68.0), (6.5, 4.0))
    neck = (72.0, 84.0)
    shoulders = ((48.0, 96.0), (96.0, 96.0))
    arm = (34.0, 9.0, 7.0)  # length, thickness, hand
    spread = 0.0            # how far a raised hand keeps out of a wide head's way
    margin = 10.0           # how near to the sides a hand comes
    floor = 140.0           # how low
    hop = 1.0               # how high a jump goes
    arm_fill = "#b07040"
    hand_fill = "#b07040"
    above = (72.0, 14.0)    # where marks in the air hang
    ground_colours = ("#5b3a1e", "#2e1a0c", "#8a5c32")
    book_colour = "#3f7fc4"

    # What makes the character itself, from the back to the front.
    def defs(self):
        return ""

    def behind(self, pose):
        return ""

    def body(self, pose):
        return ""

    def head(self, pose):
        return ""

    def collar(self, pose):
        return ""

    def hand(self, pose, side):
        u, v = (pose["lu"], pose["lv"]) if side == 0 else (pose["ru"], pose["rv"])
        x, y = self.shoulders[side]
        outward = -1 if side == 0 else 1
        aside = self.spread * max(0.0, min(1.0, u * 4)) * max(0.0, min(1.0, v + 0.3))
        x += outward * (u * self.arm[0] + aside)
        y = min(self.floor, y - v * self.arm[0])
        leant = math.sin(math.radians(pose["lean"])) * (GROUND - y)
        return max(self.margin - leant, min(SIZE - self.margin - leant, x)), y

    def limb(self, pose, side):
        """The curve of an arm from shoulder to hand, its elbow outward and below."""
        x0, y0 = self.shoulders[side]
        x1, y1 = self.hand(pose, side)
        outward = -1 if side == 0 else 1
        reach = math.hypot(x1 - x0, y1 - y0)
        bend = max(4.0, math.sqrt(max(0.0, (self.arm[0] * 1.08) ** 2 - reach * reach)) * 0.62)
        length = reach or 1.0
        # Of the two ways to bend, the one that takes the elbow outward and down.
        nx, ny = -(y1 - y0) / length, (x1 - x0) / length
        if nx * outward + ny * 0.8 < 0:
            nx, ny = -nx, -ny
        return x0, y0, (x0 + x1) / 2 + nx * bend, (y0 + y1) / 2 + ny * bend, x1, y1

    def drawArm(self, pose, side):
        x0, y0, cx, cy, x1, y1 = self.limb(pose, side)
        d = f"M{points(x0, y0)} Q{points(cx, cy, x1, y1)}"
        _, width, hand = self.arm
        return (path(d, extra=stroke(self.line, width + 2 * self.line_width)) +
                ellipse(x1, y1, hand, hand * 0.94, self.hand_fill, stroke(self.line, self.line_width)) +
                path(d, extra=stroke(self.arm_fill, width)) + self.fingers(x1, y1, cx, cy))

    def fingers(self, x, y, from_x, from_y):
        angle = math.atan2(y - from_y, x - from_x)
        drawn = ""
        for turn in (-0.55, 0.0, 0.55):
            dx, dy = math.cos(angle + turn), math.sin(angle + turn)
            hand = self.arm[2]
            drawn += path(f"M{points(x + dx * hand * 0.35, y + dy * hand * 0.35)} "
                          f"L{points(x + dx * hand * 0.8, y + dy * hand * 0.8)}", extra=stroke(self.line, 1.2))
        return drawn

    def face(self, pose):
        return self.blush(pose) + "".join(self.eye(pose, side) for side in (0, 1)) + self.mouth(pose)

    def blush(self, pose):
        left, right, (rx, ry) = self.cheeks
        return "".join(ellipse(x, y, rx, ry, self.blush_colour, f'opacity="{num(pose["blush"])}"')
                       for x, y in (left, right))

    def eye(self, pose, side):
        x, y = self.eyes[side]
        rx, ry = self.eye_size
        outward = -1 if side == 0 else 1
        drawn = ""
        opening = pose["open"]
        if pose["happy"] > 0.5:
            drawn += path(f"M{points(x - rx, y + ry * 0.3)} Q{points(x, y - ry * 1.1, x + rx, y + ry * 0.3)}",
                          extra=stroke(self.line, 3.0))
        elif opening < 0.12:
            drawn += path(f"M{points(x - rx, y + ry * 0.15)} Q{points(x, y + ry * 0.8, x + rx, y + ry * 0.15)}",
                          extra=stroke(self.line, 2.8))
        else:
            grown = max(1.0, opening)
            ex, ey = rx * (1 + (grown - 1) * 0.6), ry * grown
            name = f"@e{side}"
            px, py = x + pose["gx"] * rx * 0.42, y + pose["gy"] * ry * 0.42
            size = self.pupil_size * pose["pupil"]
            iris = ellipse(px, py, size * 1.4, size * 1.5, self.iris) if self.iris else ""
            # The lid comes down from above; its edge slants with the mood and never leaves the eye.
            edge = y - ey + 2 * ey * max(0.0, 1.0 - opening) * 0.92 - ey * 0.06
            slant = pose["slant"] * ey * 0.75
            inner, outer = edge - min(slant, 0) * 1.0, edge + max(slant, 0) * 1.0
            left, right = (outer, inner) if outward < 0 else (inner, outer)
            lid = ""
            if opening < 1 or slant:
                lid = path(f"M{points(x - ex - 2, y - ey * 2)} L{points(x - ex - 2, left)} "
                           f"Q{points(x, (left + right) / 2 + ey * 0.16, x + ex + 2, right)} "
                           f"L{points(x + ex + 2, y - ey * 2)} Z", self.lid, stroke(self.line, 1.8))
            drawn += (f'<clipPath id="{name}">{ellipse(x, y, ex, ey, "#000")}</clipPath>' +
                      ellipse(x, y, ex, ey, self.white) + f'<g clip-path="url(#{name})">{iris}' +
                      ellipse(px, py, size, size * 1.12, self.pupil_colour) +
                      ellipse(px - size * 0.35, py - size * 0.45, size * 0.36, size * 0.4, "#ffffff") +
                      ellipse(px + size * 0.35, py + size * 0.4, size * 0.18, size * 0.18, "#ffffff") + lid + "</g>" +
                      ellipse(x, y, ex, ey, "none", stroke(self.line, 2.0)))
        return drawn + self.brow(pose, side)

    def brow(self, pose, side):
        if pose["brow"] == 0 and pose["frown"] == 0 and pose["cock"] == 0 and self.brow_colour is None:
            return ""
        x, y = self.eyes[side]
        above, half = self.brows
        outward = -1 if side == 0 else 1
        y -= above + pose["brow"] + (pose["cock"] if side == 1 else 0)
        inner, outer = y + pose["frown"] * 4.5, y - pose["frown"] * 3.0
        d = (f"M{points(x - outward * half, inner)} "
             f"Q{points(x, (inner + outer) / 2 - 3.2, x + outward * half, outer + 1)}")
        return path(d, extra=stroke(self.brow_colour or self.line, 3.0))

    def mouth(self, pose):
        x, y = self.mouth_at
        wide, deep = self.mouth_size
        half, opening, curve = wide * pose["mw"], pose["mo"], pose["mc"]
        corner = y - curve * wide * 0.16
        if opening < 0.06:
            return path(f"M{points(x - half, corner)} Q{points(x, y + curve * wide * 0.62, x + half, corner)}",
                        extra=stroke(self.line, 2.4)) + self.teeth(pose, x, y + curve * wide * 0.2)
        top = y + curve * wide * 0.34 - opening * deep * 0.5
        low = y + max(curve, -0.2) * wide * 0.4 + opening * deep * 1.55
        lip = low * 0.96 + corner * 0.04
        d = (f"M{points(x - half, corner)} Q{points(x, top, x + half, corner)} "
             f"C{points(x + half * 0.9, lip, x - half * 0.9, lip, x - half, corner)} Z")
        bottom = corner + (low - corner) * 0.75
        return (f'<clipPath id="@m">{path(d, "#000")}</clipPath>{path(d, self.mouth_colour)}<g clip-path="url(#@m)">' +
                ellipse(x, bottom + deep * 0.1, half * 0.68, deep * 0.72 * (0.4 + 0.6 * opening), self.tongue) +
                self.teeth(pose, x, (corner + top) / 2) + "</g>" + path(d, extra=stroke(self.line, 2.2)))

    def teeth(self, pose, x, y):
        return ""

    def book(self, pose):
        y = 108 + (1 - pose["book"]) * 44
        cover = f"M72,{num(y - 8)} l32,-6 v28 l-32,6 l-32,-6 v-28 Z"
        pages = (f"M72,{num(y - 9)} q16,-11 29,-6 v3 l-29,6 l-29,-6 v-3 q13,-5 29,6 Z")
        return (path(pages, "#fffaf0", stroke(self.line, 1.6)) + path(cover, self.book_colour, stroke(self.line, 2.2)) +
                path(f"M72,{num(y - 8)} L72,{num(y + 20)}", extra=stroke(self.line, 1.8)) +
                path(f"M80,{num(y + 1)} L96,{num(y - 2)} M80,{num(y + 7)} L92,{num(y + 5)}",
                     extra=stroke("#ffffff", 2)))

    def air(self, pose):
        """Tears, drops, marks, dreams: what hangs in the air about the head."""
        x, y = self.above
        head_x, head_y = pose["dx"] + pose["hx"], pose["dy"] * self.hop + pose["hy"]
        drawn = ""
        if pose["tear"] > 0:
            ex, ey = self.eyes[0][0] + head_x, self.eyes[0][1] + head_y
            drawn += self.drop(ex - 4, ey + 14 + pose["tear"] * 16, 5.0, "#6fc3f2")
            if pose["tear"] > 0.6:
                drawn += self.drop(self.eyes[1][0] + head_x + 4, ey + 8 + pose["tear"] * 12, 4.0, "#6fc3f2")
        if pose["sweat"] > 0:
            drawn += self.drop(x + 38 + head_x, y + 14 + pose["sweat"] * 8 + head_y, 5.5 * min(1, pose["sweat"] + 0.3),
                               "#8fd6f7")
        if pose["ask"] > 0:
            drawn += self.mark(x + 48, y + 14, pose["ask"], "M-6,-8 C-6,-17 8,-17 8,-8 C8,-1 0,-1 0,7 M0,15 L0,15.2",
                               "#2f6fd0")
        if pose["call"] > 0:
            drawn += self.mark(x + 48, y + 14, pose["call"], "M0,-14 L0,4 M0,14 L0,14.2", "#e2452f")
        for index in range(3):
            shown = max(0.0, min(1.0, pose["doze"] * 3 - index))
            if shown > 0:
                s = (0.45 + 0.25 * index) * shown
                d = "M" + " L".join(points(6 * s * u, 7 * s * v) for u, v in ((-1, -1), (1, -1), (-1, 1), (1, 1)))
                drawn += (f'<g transform="translate({points(x + 30 + index * 13, y + 22 - index * 13 + 6)})">' +
                          path(d, extra=stroke("#ffffff", 5.4)) + path(d, extra=stroke("#4a62b8", 2.8)) + "</g>")
        if pose["stars"] > 0:
            for sx, sy, size, colour in ((14, 34, 9, "#ffd23f"), (130, 28, 10, "#ffd23f"), (26, 10, 6, "#ff8a5c"),
                                         (116, 8, 6.5, "#66c7f4"), (8, 64, 5.5, "#7ddc7a"), (137, 60, 5.5, "#ff8a5c")):
                drawn += self.star(sx, sy, size * pose["stars"], colour)
        if pose["thought"] > 0:
            t = pose["thought"]
            drawn += "".join(ellipse(bx, by, r * t, r * t * 0.8, "#ffffff", stroke("#5b6b80", 1.8))
                             for bx, by, r in ((106, 34, 3), (115, 26, 4.6)))
            drawn += ellipse(127, 13, 15 * t, 10.5 * t, "#ffffff", stroke("#5b6b80", 1.8))
            drawn += "".join(ellipse(bx, 13, 1.9 * t, 1.9 * t, "#5b6b80") for bx in (120.5, 127, 133.5))
        return drawn

    def drop(self, x, y, size, colour):
        r = size
        d = (f"M{points(x, y - r * 1.5)} c{points(r * 0.3, r * 0.9, r, r * 1.3, r, r * 1.8)} "
             f"a{points(r, r)} 0 0 1 {points(-2 * r, 0)} c{points(0, -r * 0.5, r * 0.7, -r * 0.9, r, -r * 1.8)} Z")
        return path(d, colour, stroke("#2a6f9e", 1.4))

    def mark(self, x, y, size, d, colour):
        return (f'<g transform="translate({points(x, y)}) rotate(10) scale({num(size)})">' +
                path(d, extra=stroke("#ffffff", 9)) + path(d, extra=stroke(colour, 5)) + "</g>")

    def star(self, x, y, size, colour):
        corners = [(math.sin(i * math.pi / 5), math.cos(i * math.pi / 5), size * (1 if i % 2 == 0 else 0.45))
                   for i in range(10)]
        d = "M" + " L".join(points(x + u * r, y - v * r) for u, v, r in corners) + " Z"
        return path(d, colour, stroke("#5d4a1e", 1.4))


class Drawing(Figure):
    """An octopus with a flower behind her ear, had she an ear."""


    line = "#44246b"
    lid = "#a97ae0"
    arm_fill = "#a174dc"
    hand_fill = "#a174dc"
    blush_colour = "#ff8fb0"
    iris = "#3fa7a0"
    eyes = ((55.0, 62.0), (89.0, 62.0))
    eye_size = (11.0, 12.5)
    pupil_size = 5.4
    mouth_at = (72.0, 83.0)
    mouth_size = (10.0, 10.0)
    cheeks = ((43.0, 79.0), (101.0, 79.0), (6.5, 4.0))
    neck = (72.0, 96.0)
    shoulders = ((46.0, 101.0), (98.0, 101.0))
    arm = (36.0, 10.0, 0.0)
    spread = 15.0
    margin = 18.0
    floor = 125.0
    hop = 0.5
    brows = (17.0, 8.0)
    above = (72.0, 12.0)
    ground_colours = ("#3b8fc9", "#1d5f99", "#a8e0fb")
    book_colour = "#d9618a"

    def defs(self):
        return (radial("skin", "#d9b8ff", "#a97ae0", "#7446b4") + radial("leg", "#b98cf0", "#9566d2", "#6a3da6"))

    def behind(self, pose):
        drawn = ""
        lift = pose["perk"] * 4
        for side in (-1, 1):
            for start, out, curl in ((18, 50, 7), (10, 33, 6)):
                x0, x1 = 72 + side * start, 72 + side * out
                d = (f"M{points(x0, 104)} C{points(x0 + side * 8, 126, x1 - side * 12, 137 - lift, x1, 131 - lift)} "
                     f"C{points(x1 + side * 7, 127 - lift, x1 + side * 5, 119 - lift, x1 - side * 1, 121.5 - lift)}")
                drawn += path(d, extra=stroke(self.line,
                                              11 + 2 * self.line_width)) + path(d, extra=stroke("#8656c2", 11))
        return drawn

    def body(self, pose):
        drawn = ""
        for side in (-1, 1):
            x0, x1 = 72 + side * 7, 72 + side * 13
            d = f"M{points(x0, 102)} C{points(x0, 122, x1 - side * 4, 136, x1 + side * 5, 133)}"
            drawn += path(d, extra=stroke(self.line, 11 + 2 * self.line_width)) + path(d, extra=stroke("#9f71da", 11))
            drawn += "".join(ellipse(72 + side * x, y, 1.7, 1.7, "#f3d9ff") for x,
                             y in ((8, 115), (9.5, 122), (12, 128)))
        return drawn

    def head(self, pose):
        line = stroke(self.line, self.line_width)
        dome = ("M72,12 C98,12 114,34 113,60 C112.5,74 108,82 107,92 C106,104 92,111 72,111 "
                "C52,111 38,104 37,92 C36,82 31.5,74 31,60 C30,34 46,12 72,12 Z")
        spots = "".join(ellipse(x, y, rx, ry, "#8a5bc9", 'opacity="0.65"')
                        for x, y, rx, ry in ((50, 32, 6, 4.6), (62, 23, 3.6, 2.8), (42, 43, 3, 3.4),
                                             (84, 28, 3.2, 2.4)))
        shine = path("M44,52 C44,38 52,26 62,21", extra=stroke("#efdcff", 3.4) + ' opacity="0.75"')
        flower = ""
        turn = pose["perk"] * 12
        for i in range(5):
            a = math.radians(i * 72 + turn)
            flower += ellipse(101 + math.cos(a) * 6, 34 + math.sin(a) * 6, 4.6, 4.6, "#ffd84d", stroke("#9a6a10", 1.3))
        flower += ellipse(101, 34, 4.0, 4.0, "#ff8a3c", stroke("#9a6a10", 1.2))
        return path(dome, "url(#skin)", line) + spots + shine + flower

    def drawArm(self, pose, side):
        x0, y0, cx, cy, x1, y1 = self.limb(pose, side)
        outward = -1 if side == 0 else 1
        # The tip goes on from the hand and curls up.
        dx, dy = x1 - cx, y1 - cy
        length = math.hypot(dx, dy) or 1
        dx, dy = dx / length * 8, dy / length * 8
        qx, qy = (dy, -dx) if outward > 0 else (-dy, dx)
        d = (f"M{points(x0, y0)} Q{points(cx, cy, x1, y1)} "
             f"q{points(dx * 0.8, dy * 0.8, dx * 0.4 + qx * 0.9, dy * 0.4 + qy * 0.9)}")
        cups = ""
        for t in (0.55, 0.75, 0.95):
            bx = (1 - t) ** 2 * x0 + 2 * t * (1 - t) * cx + t * t * x1
            by = (1 - t) ** 2 * y0 + 2 * t * (1 - t) * cy + t * t * y1
            cups += ellipse(bx - qx * 0.18, by - qy * 0.18, 1.8, 1.8, "#f3d9ff")
        return (path(d, extra=stroke(self.line, self.arm[1] + 2 * self.line_width)) +
                path(d, extra=stroke(self.arm_fill, self.arm[1])) + cups)


class Face:
    """Where the mouth moves."""

    @staticmethod
    def box():
        return (59, 78, 86, 103)


class Ottoline(Character):
    name = "Ottoline"
    description = "An octopus of good family, never short of a hand."
    guid = "{6B1D0F52-7C0A-4E0B-9C55-0E7B3A1F6C02}"
    voice = {"gender": "female", "speed": 170, "pitch": 215, "age": 25, "style": "Warm"}
    balloon = {"background": "#F4EAFF", "border": "#4B2A74"}
    tempo = 0.9
    springiness = 0.6

    joints = Joints({"body": (None, 72.0, 138.0), "head": ("body", 72.0, 96.0)})
    mouth = Face()
    drawing = Drawing()

    # The numbers of a pose as the drawing calls them.
    NUMBERS = {"dx": "body.x", "dy": "body.y", "lean": "body.turn", "hx": "head.x", "hy": "head.y", "tilt": "head.turn",
               "lu": "hand.x.L", "lv": "hand.y.L", "ru": "hand.x.R", "rv": "hand.y.R", "open": "eye.open", "gx": "eye.x",
               "gy": "eye.y", "happy": "eye.smile", "slant": "eye.slant", "pupil": "eye.pupil", "brow": "brow.y",
               "frown": "brow.turn", "cock": "brow.cock", "mw": "mouth.wide", "mo": "mouth.open", "mc": "mouth.curve",
               "blush": "blush", "perk": "perk", "tear": "tear", "sweat": "sweat", "ask": "ask", "call": "call",
               "doze": "doze", "stars": "stars", "thought": "thought", "book": "book"}

    def defs(self):
        return self.drawing.defs()

    def draw(self, sketch):
        numbers = {number: sketch[channel] for number, channel in self.NUMBERS.items()}
        numbers["book"] = max(numbers["book"], sketch["paper"])
        hole, rise = sketch["hole"], sketch["rise"]
        dark, darker, rim = self.drawing.ground_colours
        y, rx, ry, cx = 129.0, 56.0 * hole, 10.0 * hole, SIZE / 2
        if hole > 0:
            sketch.layer()
            sketch.on(None, ellipse(cx, y, rx, ry, dark, stroke(rim, 3.4)))
        if rise >= 1:
            self.drawFigure(sketch, numbers)
        elif rise > 0:
            inner = Sketch(self.joints, sketch.pose, self.size)
            self.drawFigure(inner, numbers)
            water = (f'<path d="M-20,-60 L164,-60 L164,{num(y)} L{points(cx + rx, y)} '
                     f'A{points(rx, ry)} 0 0 1 {points(cx - rx, y)} L-20,{num(y)} Z"/>')
            sketch.on(None, ellipse(cx, y + ry * 0.2, rx * 0.86, ry * 0.7, darker), sketch.clip("g", water,
                      f'<g transform="translate(0 {num((1 - rise) * 140)})">{inner.flattened()}</g>'))
        if 0 < hole and rise < 1:
            sketch.on(None, path(f"M{points(cx - rx, y)} A{points(rx, ry)} 0 0 0 {points(cx + rx, y)}",
                                 extra=stroke(rim, 4.4)))
        sketch.layer()
        sketch.on(None, self.drawing.air({**numbers, "dx": 0.0, "dy": 0.0} if rise >= 1 else
                                         {key: 0.0 for key in numbers}))

    def drawFigure(self, sketch, numbers):
        drawing = self.drawing
        arms = [(drawing.hand(numbers, side), drawing.drawArm(numbers, side)) for side in (0, 1)]
        low = "".join(drawn for (_, y), drawn in arms if y > drawing.neck[1])
        high = "".join(drawn for (_, y), drawn in arms if y <= drawing.neck[1])
        book = drawing.book(numbers) if numbers["book"] > 0 else ""
        for joint, drawn in (("body", drawing.behind(numbers)), ("body", drawing.body(numbers)),
                             ("body", "" if book else low), ("head", drawing.head(numbers) + drawing.face(numbers)),
 ("body", high), ("body", book + low if book else "")):
            if drawn:
                sketch.layer(joint)
                sketch.on(joint, drawn)
