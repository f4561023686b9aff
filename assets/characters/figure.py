"""Poses and the drawing of what all characters share: eyes, brows, mouths, arms, marks in the air, the way in.

A pose is a dict of the numbers in REST; a character is a class with the members that Figure uses. All lengths are
pixels of a 144 x 144 canvas, all angles degrees, "left" and "right" are the viewer's.
"""

import math

SIZE = 144
GROUND = 138.0

REST = {
    # The whole figure: offset, size about its feet, leaning about its feet.
    "dx": 0.0, "dy": 0.0, "sx": 1.0, "sy": 1.0, "lean": 0.0,
    # The head: offset and turn about the neck.
    "hx": 0.0, "hy": 0.0, "tilt": 0.0,
    # The hands, in arm lengths from the shoulder: outward and up.
    "lu": 0.15, "lv": -0.85, "ru": 0.15, "rv": -0.85,
    # The eyes: how far open (1 is at ease), where they look, laughing arcs, slant of the lids (above 0: sad).
    "open": 1.0, "gx": 0.0, "gy": 0.0, "happy": 0.0, "slant": 0.0, "pupil": 1.0,
    # The brows: raised by pixels, turned (above 0: angry), the right one raised further.
    "brow": 0.0, "frown": 0.0, "cock": 0.0,
    # The mouth: width, opening, curve (1 smiles, -1 droops).
    "mw": 1.0, "mo": 0.0, "mc": 0.7,
    "blush": 0.6,
    # What each character has of its own: ears, crest or tentacle tips, perked up or drooping.
    "perk": 0.0,
    # Things around the figure, each from 0 (absent) to 1.
    "tear": 0.0, "sweat": 0.0, "ask": 0.0, "call": 0.0, "doze": 0.0, "stars": 0.0, "thought": 0.0, "book": 0.0,
    # The way in: how far out of the ground, and how wide the opening is.
    "rise": 1.0, "hole": 0.0,
}

# The shapes of a speaking mouth, by their names in a manifest: width and opening.
MOUTHS = {
    "closed": (1.0, 0.0),
    "wide1": (0.50, 0.80),
    "wide2": (0.66, 0.86),
    "wide3": (0.82, 0.92),
    "wide4": (1.0, 1.0),
    "medium": (0.74, 0.48),
    "narrow": (0.66, 0.20),
}


def num(value):
    text = f"{value:.2f}".rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def blend(a, b, t):
    return {key: a[key] + (b[key] - a[key]) * t for key in a}


def ease(t):
    return t * t * (3 - 2 * t)


def distance(a, b):
    return sum(abs(a[key] - b[key]) for key in a)


def ellipse(cx, cy, rx, ry, fill, extra=""):
    return (f'<ellipse cx="{num(cx)}" cy="{num(cy)}" rx="{num(max(rx, 0))}" ry="{num(max(ry, 0))}" '
            f'fill="{fill}" {extra}/>')


def path(d, fill="none", extra=""):
    return f'<path d="{d}" fill="{fill}" {extra}/>'


def points(*values):
    return " ".join(num(value) for value in values)


def stroke(colour, width):
    return f'stroke="{colour}" stroke-width="{num(width)}" stroke-linecap="round" stroke-linejoin="round"'


def radial(name, light, middle, dark):
    return (f'<radialGradient id="{name}" cx="0.38" cy="0.28" r="0.85"><stop offset="0" stop-color="{light}"/>'
            f'<stop offset="0.5" stop-color="{middle}"/><stop offset="1" stop-color="{dark}"/></radialGradient>')


class Figure:
    """A character: give it colours, the places of its features, and defs(), behind(), body(), head()."""

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

    def svg(self, pose):
        figure = self.standing(pose)
        if pose["hole"] > 0:
            figure = self.fromTheGround(pose, figure)
        return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{SIZE}" height="{SIZE}" viewBox="0 0 {SIZE} {SIZE}">'
                f'<defs>{self.defs()}</defs>{figure}{self.air(pose)}</svg>')

    def standing(self, pose):
        turn = (f'translate({points(pose["dx"], pose["dy"] * self.hop)}) '
                f'rotate({points(pose["lean"], SIZE / 2, GROUND)}) '
                f'translate({points(SIZE / 2, GROUND)}) scale({points(pose["sx"], pose["sy"])}) '
                f'translate({points(-SIZE / 2, -GROUND)})')
        nod = (f'translate({points(pose["hx"], pose["hy"])}) '
               f'rotate({points(pose["tilt"], self.neck[0], self.neck[1])})')
        face = self.face(pose)
        # A raised hand is in front of the head, a hanging one behind its chin.
        arms = [(self.hand(pose, side), self.drawArm(pose, side)) for side in (0, 1)]
        low = "".join(drawn for (_, y), drawn in arms if y > self.neck[1])
        high = "".join(drawn for (_, y), drawn in arms if y <= self.neck[1])
        book = self.book(pose) if pose["book"] > 0 else ""
        return (f'<g transform="{turn}">{self.behind(pose)}{self.body(pose)}{low if not book else ""}'
                f'<g transform="{nod}">{self.head(pose)}{face}</g>{self.collar(pose)}{high}{book}'
                f'{low if book else ""}</g>')

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
            name = f"e{side}"
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
        return (f'<clipPath id="m">{path(d, "#000")}</clipPath>{path(d, self.mouth_colour)}<g clip-path="url(#m)">' +
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

    def fromTheGround(self, pose, figure):
        dark, darker, rim = self.ground_colours
        y, rx, ry = 129.0, 56.0 * pose["hole"], 10.0 * pose["hole"]
        cx = SIZE / 2
        sunk = (1 - pose["rise"]) * 140
        front = f"M{points(cx - rx, y)} A{points(rx, ry)} 0 0 0 {points(cx + rx, y)}"
        clip = (f'<clipPath id="g"><path d="M-20,-60 L164,-60 L164,{num(y)} L{points(cx + rx, y)} '
                f'A{points(rx, ry)} 0 0 1 {points(cx - rx, y)} L-20,{num(y)} Z"/></clipPath>')
        if pose["rise"] >= 1:
            return ellipse(cx, y, rx, ry, dark, stroke(rim, 3.4)) + figure
        return (clip + ellipse(cx, y, rx, ry, dark, stroke(rim, 3.4)) +
                ellipse(cx, y + ry * 0.2, rx * 0.86, ry * 0.7, darker) +
                f'<g clip-path="url(#g)"><g transform="translate(0 {num(sunk)})">{figure}</g></g>' +
                path(front, extra=stroke(rim, 4.4)))
