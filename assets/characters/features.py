"""Faces and limbs that characters share; each takes its look from the arguments. Lengths are pixels, and everything is
drawn where it is at rest: the sketch carries it with its joint."""

import math

from draw import ellipse, num, path, points, stroke
from rig import elbow

# Channels of a face, at rest.
FACE = {
    # How far open (above 1: wide), where they look (-1 to 1), laughing arcs, slant of the lids (above 0: sad), pupils;
    # one of them closed.
    "eye.open": 1.0, "eye.x": 0.0, "eye.y": 0.0, "eye.smile": 0.0, "eye.slant": 0.0, "eye.pupil": 1.0,
    "wink.L": 0.0, "wink.R": 0.0,
    # Raised by pixels, turned (above 0: angry, below: sorry), the right one raised further.
    "brow.y": 0.0, "brow.turn": 0.0, "brow.cock": 0.0,
    # Width, opening, curve (1 smiles, -1 droops).
    "mouth.wide": 1.0, "mouth.open": 0.0, "mouth.curve": 0.7,
    "blush": 0.5,
}

# Channels of two arms, at rest: the hand from the shoulder in arm lengths, outward and up; how far it is turned from
# the line of the forearm, closed to a fist, and pointing with one finger.
ARMS = {f"{channel}.{side}": value for side in "LR" for channel, value in
        (("hand.x", 0.15), ("hand.y", -0.85), ("hand.turn", 0.0), ("fist", 0.35), ("point", 0.0))}

# The shapes of a speaking mouth by their names in a manifest: width and opening.
MOUTHS = {
    "closed": (1.0, 0.0),
    "wide1": (0.50, 0.80),
    "wide2": (0.66, 0.86),
    "wide3": (0.82, 0.92),
    "wide4": (1.0, 1.0),
    "medium": (0.74, 0.48),
    "narrow": (0.66, 0.20),
}


class Eye:
    """An eye at (x, y); `side` is -1 for the viewer's left, 1 for the right."""

    def __init__(self, side, x, y, rx, ry, lid, line, iris=None, pupil=0.55, white="#ffffff", dark="#24160f",
                 width=2.0, skin=None):
        self.side, self.x, self.y, self.rx, self.ry = side, x, y, rx, ry
        self.lid, self.line, self.iris, self.pupil = lid, line, iris, pupil
        self.white, self.dark, self.width, self.skin = white, dark, width, skin

    def draw(self, sketch, x=None, y=None):
        x, y = self.x if x is None else x, self.y if y is None else y
        rx, ry, line = self.rx, self.ry, self.line
        opening = sketch["eye.open"] * (1 - sketch["wink.L" if self.side < 0 else "wink.R"])
        smile = sketch["eye.smile"]
        # A closed eye is a lid: where it covers a bulging eye it has the skin's colour.
        ground = ellipse(x, y, rx, ry, self.skin) if self.skin else ""
        if smile > 0.7:
            return ground + path(f"M{points(x - rx, y + ry * 0.42)} "
                                 f"C{points(x - rx * 0.7, y - ry * 0.75, x + rx * 0.7, y - ry * 0.75)} "
                                 f"{points(x + rx, y + ry * 0.42)}", extra=stroke(line, 3.2))
        if opening < 0.12:
            sag = 0.9 - 1.1 * max(0.0, sketch["eye.slant"])
            return ground + path(f"M{points(x - rx, y + ry * 0.2)} "
                                 f"Q{points(x, y + ry * sag, x + rx, y + ry * 0.2)}", extra=stroke(line, 3.0))
        grown = max(1.0, opening)
        ex, ey = rx * (1 + (grown - 1) * 0.5), ry * grown
        px, py = x + sketch["eye.x"] * rx * 0.42, y + sketch["eye.y"] * ry * 0.40
        size = rx * self.pupil * sketch["eye.pupil"]
        inside = ellipse(x, y - ey * 0.72, ex * 1.1, ey * 0.62, "#000000", 'opacity="0.10"')
        if self.iris:
            inside += ellipse(px, py, size * 1.55, size * 1.65, self.iris, stroke(line, 0.9))
        inside += (ellipse(px, py, size, size * 1.12, self.dark) +
                   ellipse(px - size * 0.42, py - size * 0.55, size * 0.46, size * 0.5, "#ffffff") +
                   ellipse(px + size * 0.45, py + size * 0.5, size * 0.22, size * 0.22, "#ffffff"))
        # The upper lid's edge slants with the mood; the lower one is pushed up by a smile.
        slant = sketch["eye.slant"] * ey * 0.75
        if opening < 0.97 or abs(slant) > 0.1:
            edge = y - ey + 2 * ey * max(0.0, 1.0 - opening) * 0.9 - ey * 0.04
            inner, outer = edge - min(slant, 0), edge + max(slant, 0)
            left, right = (outer, inner) if self.side < 0 else (inner, outer)
            inside += path(f"M{points(x - ex - 3, y - ey * 2)} L{points(x - ex - 3, left)} "
                           f"Q{points(x, (left + right) / 2 + ey * 0.12, x + ex + 3, right)} "
                           f"L{points(x + ex + 3, y - ey * 2)} Z", self.lid, stroke(line, 1.8))
        if smile > 0.05:
            edge = y + ey - ey * 1.1 * smile
            inside += path(f"M{points(x - ex - 3, y + ey * 2)} L{points(x - ex - 3, edge + ey * 0.35)} "
                           f"Q{points(x, edge - ey * 0.2, x + ex + 3, edge + ey * 0.35)} "
                           f"L{points(x + ex + 3, y + ey * 2)} Z", self.lid, stroke(line, 1.6))
        return (ellipse(x, y, ex, ey, self.white) +
                sketch.clip(f"e{self.side + 1}", ellipse(x, y, ex, ey, "#000"), inside) +
                ellipse(x, y, ex, ey, "none", stroke(line, self.width)))


def brow(sketch, side, x, y, half, colour, width=3.4):
    """A brow that rests at (x, y), its inner end turned down by anger and up by sorrow."""
    y -= sketch["brow.y"] + (sketch["brow.cock"] if side > 0 else 0)
    turn = sketch["brow.turn"]
    inner, outer = y + turn * 4.0, y - turn * 2.6
    return path(f"M{points(x - side * half, inner)} Q{points(x, (inner + outer) / 2 - 3.0)} "
                f"{points(x + side * half, outer + 1.4)}", extra=stroke(colour, width))


class Mouth:
    """A mouth at (x, y): half as wide as `wide`, open as deep as about `deep`."""

    def __init__(self, x, y, wide, deep, line, inside="#6d1a26", tongue="#ee7d86", width=2.4, teeth=None):
        self.x, self.y, self.wide, self.deep = x, y, wide, deep
        self.line, self.inside, self.tongue, self.width, self.teeth = line, inside, tongue, width, teeth

    def draw(self, sketch):
        x, y, deep = self.x, self.y, self.deep
        half = self.wide * sketch["mouth.wide"]
        opening, curve = sketch["mouth.open"], sketch["mouth.curve"]
        corner = y - curve * self.wide * 0.18
        dip = curve * self.wide * 0.62
        if opening < 0.06:
            drawn = path(f"M{points(x - half, corner)} Q{points(x, y + dip, x + half, corner)}",
                         extra=stroke(self.line, self.width))
            # The corners of a smile turn up, those of a pout down.
            drawn += "".join(path(f"M{points(x + side * half, corner)} q{points(side * 2.0, -curve * 0.6)} "
                                  f"{points(side * 2.6, -curve * 2.4)}", extra=stroke(self.line, self.width * 0.8))
                             for side in (-1, 1))
            return drawn + (self.teeth(sketch, x, y + curve * self.wide * 0.22) if self.teeth else "")
        top = y + curve * self.wide * 0.30 - opening * deep * 0.5
        low = y + max(curve, -0.2) * self.wide * 0.4 + opening * deep * 1.55
        d = (f"M{points(x - half, corner)} Q{points(x, top, x + half, corner)} "
             f"C{points(x + half * 0.92, low, x - half * 0.92, low, x - half, corner)} Z")
        bottom = corner + (low - corner) * 0.75
        inside = ellipse(x, bottom + deep * 0.14, half * 0.7, deep * 0.74 * (0.4 + 0.6 * opening), self.tongue)
        if self.teeth:
            inside += self.teeth(sketch, x, (corner + top) / 2)
        return path(d, self.inside) + sketch.clip("m", path(d, "#000"), inside) + path(d, extra=stroke(self.line, 2.2))

    def box(self):
        """Left, top, right and bottom of all that a speaking mouth covers, with what surrounds it."""
        corner = self.y - 0.9 * self.wide * 0.18
        return (self.x - self.wide - 5, corner - 5 - self.deep * 0.25, self.x + self.wide + 5,
                corner + (self.wide * 0.45 + self.deep * 1.6) * 0.76 + 4)


class Arm:
    """An arm from the shoulder (x, y), of two bones of half its length each."""

    margin = 20  # pixels that the hand keeps from the sides of the canvas

    def __init__(self, side, x, y, length, width, hand, fill, light, line, palm=None, fingers=3, line_width=2.2, spread=0.0):
        self.side, self.x, self.y, self.length, self.width = side, x, y, length, width
        self.hand, self.fill, self.light, self.line = hand, fill, light, line
        self.palm, self.fingers, self.line_width = palm or fill, fingers, line_width
        self.spread = spread  # pixels by which a raised hand keeps out of a wide head's way

    @property
    def suffix(self):
        return "L" if self.side < 0 else "R"

    def place(self, sketch):
        """Where the hand is, on the joint that carries the shoulder."""
        out, up = sketch[f"hand.x.{self.suffix}"], sketch[f"hand.y.{self.suffix}"]
        aside = self.spread * max(0.0, min(1.0, out * 4)) * max(0.0, min(1.0, up + 0.3))
        x = self.x + self.side * (out * self.length + aside)
        return (max(self.margin, min(sketch.size - self.margin, x)), self.y - up * self.length)

    def draw(self, sketch):
        x1, y1 = self.place(sketch)
        ex, ey = elbow(self.x, self.y, x1, y1, self.length * 0.52, self.length * 0.52, self.side)
        cx, cy = 2 * ex - (self.x + x1) / 2, 2 * ey - (self.y + y1) / 2
        cx, cy = ex + (cx - ex) * 0.6, ey + (cy - ey) * 0.6
        d = f"M{points(self.x, self.y)} Q{points(cx, cy, x1, y1)}"
        angle = math.degrees(math.atan2(y1 - cy, x1 - cx)) + self.side * sketch[f"hand.turn.{self.suffix}"]
        shade = (f"M{points(self.x + 1.2, self.y - self.width * 0.18)} "
                 f"Q{points(cx - 0.6, cy - self.width * 0.2, x1 - 0.6, y1 - self.width * 0.2)}")
        return (path(d, extra=stroke(self.line, self.width + 2 * self.line_width)) +
                path(d, extra=stroke(self.fill, self.width)) + path(shade, extra=stroke(self.light, self.width * 0.32)) +
                self.drawHand(sketch, x1, y1, angle))

    def drawHand(self, sketch, x, y, angle):
        """A palm and fingers; a pointing hand stretches the first of them."""
        fist, point = sketch[f"fist.{self.suffix}"], sketch[f"point.{self.suffix}"]
        size, middle = self.hand, (self.fingers - 1) / 2
        fingers = ""
        for number in range(self.fingers):
            spread = (number - middle) * (0.62 - 0.3 * fist)
            length = size * (1.62 - 0.62 * fist)
            if point > 0:
                length += (size * (2.15 if number == int(middle) else 0.95) - length) * point
                spread *= 1 - 0.4 * point
            tx, ty = math.cos(spread) * length, math.sin(spread) * length
            d = f"M{points(size * 0.3, math.sin(spread) * size * 0.5)} L{points(tx, ty)}"
            fingers += path(d, extra=stroke(self.line, size * 0.62 + 2 * self.line_width * 0.8))
            fingers += path(d, extra=stroke(self.palm, size * 0.62))
        thumb = f"M0,0 L{points(size * 0.55, -self.side * size * (1.12 - 0.3 * fist))}"
        return (f'<g transform="translate({points(x, y)}) rotate({num(angle)})">' +
                path(thumb, extra=stroke(self.line, size * 0.62 + 2 * self.line_width * 0.8)) +
                ellipse(0, 0, size, size * 0.9, self.palm, stroke(self.line, self.line_width)) + fingers +
                path(thumb, extra=stroke(self.palm, size * 0.62)) +
                ellipse(size * 0.05, 0, size * 0.82, size * 0.72, self.palm) + "</g>")
