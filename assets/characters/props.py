"""Things that characters hold and that hang in the air about them. Every one is drawn from a channel that goes from 0
(absent) to 1; (x, y) is where it is."""

import math

from draw import ellipse, num, path, points, radial, stroke

PROPS = {"tear": 0.0, "sweat": 0.0, "ask": 0.0, "call": 0.0, "doze": 0.0, "stars": 0.0, "thought": 0.0, "notes": 0.0,
         "book": 0.0, "page": 0.0, "paper": 0.0, "stroke": 0.0, "glass": 0.0, "idea": 0.0, "sound": 0.0}

DEFS = radial("lens", "#ffffff", "#d7f0fb", "#9fd0e8")


TEAR = "#6fc3f2"


def drop(x, y, size, colour=TEAR):
    r = size
    d = (f"M{points(x, y - r * 1.5)} c{points(r * 0.3, r * 0.9, r, r * 1.3, r, r * 1.8)} "
         f"a{points(r, r)} 0 0 1 {points(-2 * r, 0)} c{points(0, -r * 0.5, r * 0.7, -r * 0.9, r, -r * 1.8)} Z")
    return path(d, colour, stroke("#2a6f9e", 1.4)) + ellipse(x - r * 0.35, y + r * 0.35, r * 0.22, r * 0.34, "#ffffff")


def tears(sketch, x, y, apart, falls=22, sizes=(4.8, 4.2), second=0.45, colour=TEAR):
    """The channel "tear": a drop from each eye, `apart` from (x, y) of the head, the left one first and the other when the
    channel has reached `second`. They fall by `falls` while it goes on to 1."""
    for side, start, size in ((-1, 0.0, sizes[0]), (1, second, sizes[1])):
        fallen = sketch["tear"] - start
        if fallen > 0:
            at_x, at_y = sketch.at("head", x + side * apart, y)
            sketch.on(None, drop(at_x, at_y + fallen * falls, size * min(1.0, 0.4 + fallen), colour))


def sweat(sketch, x, y, aside=0, falls=10, size=5.4, above=0.0, colour=TEAR):
    """The channel "sweat": where it is above `above`, a drop beside (x, y) of the head, `aside` from it on the canvas."""
    amount = sketch["sweat"]
    if amount > above:
        at_x, at_y = sketch.at("head", x, y)
        sketch.on(None, drop(at_x + aside, at_y + amount * falls, size * min(1, amount + 0.3), colour))


def sound(sketch, x, y, turn, nearest=11.0, apart=6.5):
    """The channel "sound": waves that come to the ear at (x, y) of the canvas from the direction `turn`, in degrees from the
    right and downwards, the farthest first."""
    for index in range(3):
        shown = max(0.0, min(1.0, sketch["sound"] * 3 - index))
        if shown > 0:
            r, half = nearest + apart * (2 - index), math.radians(36 * shown)
            a, b = math.radians(turn) - half, math.radians(turn) + half
            d = (f"M{points(x + r * math.cos(a), y + r * math.sin(a))} "
                 f"A{points(r, r)} 0 0 1 {points(x + r * math.cos(b), y + r * math.sin(b))}")
            sketch.on(None, path(d, extra=stroke("#ffffff", 5.6)) + path(d, extra=stroke("#4a62b8", 2.8)))


def mark(x, y, size, d, colour):
    return (f'<g transform="translate({points(x, y)}) rotate(8) scale({num(size)})">' +
            path(d, extra=stroke("#3a2b22", 10.5)) + path(d, extra=stroke("#ffffff", 8)) +
            path(d, extra=stroke(colour, 4.6)) + "</g>")


def question(x, y, size):
    return mark(x, y, size, "M-6,-8 C-6,-17 8,-17 8,-8 C8,-1 0,-1 0,7 M0,15 L0,15.2", "#2f6fd0")


def exclamation(x, y, size):
    return mark(x, y, size, "M0,-14 L0,4 M0,14 L0,14.2", "#e2452f")


def star(x, y, size, colour):
    corners = [(math.sin(i * math.pi / 5), math.cos(i * math.pi / 5), size * (1 if i % 2 == 0 else 0.48))
               for i in range(10)]
    d = "M" + " L".join(points(x + u * r, y - v * r) for u, v, r in corners) + " Z"
    return path(d, colour, stroke("#6d4a1e", 1.5))


def stars(size, spin=0.0, places=((15, 40, 8), (129, 34, 9), (30, 12, 6), (114, 9, 6.5), (9, 72, 5), (136, 68, 5))):
    colours = ("#ffd23f", "#ffd23f", "#ff8a5c", "#66c7f4", "#7ddc7a", "#ff8a5c")
    grown = min(1.0, size)  # an overshoot drives none of them out of the canvas
    return "".join(star(x + (x - 72) * 0.12 * (grown - 1), max(y - 6 * (grown - 0.5), r + 2), r * min(1.0, size * 1.4), colour)
                   for (x, y, r), colour in zip(places, colours))


def dozing(x, y, amount):
    drawn = ""
    for index in range(3):
        shown = max(0.0, min(1.0, amount * 3 - index))
        if shown > 0:
            s = (0.45 + 0.25 * index) * shown
            d = "M" + " L".join(points(6 * s * u, 7 * s * v) for u, v in ((-1, -1), (1, -1), (-1, 1), (1, 1)))
            drawn += (f'<g transform="translate({points(x + index * 11, max(y - index * 12, 11))})">' +
                      path(d, extra=stroke("#ffffff", 5.6)) + path(d, extra=stroke("#4a62b8", 2.8)) + "</g>")
    return drawn


def thought(x, y, amount, phase=0.0):
    """A cloud whose middle is at (x, y), with dots that come one after another as phase goes from 0 to 3."""
    t = amount
    dots = "".join(ellipse(x + (i - 1) * 6.8, y, 2.1 * t, 2.1 * t, "#5b6b80" if phase > i else "#c3cedb")
                   for i in range(3))
    bubbles = "".join(ellipse(x - bx, y + by, r * t, r * t * 0.85, "#ffffff", stroke("#5b6b80", 1.8))
                      for bx, by, r in ((19, 21, 2.8), (12, 13.5, 4.2)))
    return bubbles + ellipse(x, y, 16 * t, 11 * t, "#ffffff", stroke("#5b6b80", 2.0)) + dots


def bulb(x, y, amount):
    if amount <= 0:
        return ""
    rays = "".join(path(f"M{points(math.cos(a) * 11, math.sin(a) * 11)} L{points(math.cos(a) * 15, math.sin(a) * 15)}",
                        extra=stroke("#c98a10", 2.2)) for a in (math.pi * k / 5 for k in range(5, 11)))
    return (f'<g transform="translate({points(x, y)}) scale({num(amount)})">{rays}' +
            path("M-4.5,6 C-5,2 -8,0 -8,-3 A8,8 0 0 1 8,-3 C8,0 5,2 4.5,6 Z", "#ffe05a", stroke("#7a5410", 1.8)) +
            path("M-4,6 h8 v4 q-4,3 -8,0 Z", "#b7bcc4", stroke("#5a5f68", 1.6)) + "</g>")


def notes(amount, places=((20, 40), (124, 34), (112, 14))):
    """Notes in the air, one after another."""
    drawn = ""
    for index, (x, y) in enumerate(places):
        shown = max(0.0, min(1.0, amount * 3 - index))
        if shown > 0:
            d = "M0,8 V-8 L8,-10 V-4 L0,-2"
            drawn += (f'<g transform="translate({points(x, max(y - 6 * shown, 14))}) scale({num(0.6 + 0.4 * shown)})">' +
                      path(d, extra=stroke("#ffffff", 6)) + ellipse(-2.6, 8, 5.6, 4.6, "#ffffff") +
                      path(d, "#b0338a", stroke("#b0338a", 2.4)) + ellipse(-2.6, 8, 3.6, 2.8, "#b0338a") + "</g>")
    return drawn


def book(x, y, colour, page=0.0):
    """An open book seen from behind, held at (x, y), a page of it turning while `page` goes from 0 to 1."""
    cover = f"M{points(x, y - 8)} l31,-6 v28 l-31,6 l-31,-6 v-28 Z"
    pages = f"M{points(x, y - 9)} q15,-11 28,-6 v3 l-28,6 l-28,-6 v-3 q13,-5 28,6 Z"
    turning = ""
    if 0 < page < 1:
        side = math.cos(page * math.pi)
        turning = path(f"M{points(x, y - 8)} q{points(side * 12, -14 - 6 * math.sin(page * math.pi))} "
                       f"{points(side * 27, -8 - 12 * math.sin(page * math.pi))} l0,6 q{points(-side * 14, -4)} "
                       f"{points(-side * 27, 6)} Z", "#fff6dd", stroke("#6b5330", 1.5))
    return (path(pages, "#fffaf0", stroke("#5a4630", 1.6)) + turning + path(cover, colour, stroke("#33261c", 2.2)) +
            path(f"M{points(x, y - 8)} v28", extra=stroke("#33261c", 1.8)) +
            path(f"M{points(x + 8, y + 1)} l16,-3 M{points(x + 8, y + 7)} l12,-2", extra=stroke("#ffffff", 2)))


def paper(x, y, written):
    """A pad at (x, y), seen from the reader's side, with `written` (0 to 1) of its lines."""
    drawn = (f'<g transform="translate({points(x, y)}) rotate(-6)">' +
             path("M-17,-20 h34 v40 h-34 Z", "#fffdf3", stroke("#4a3b2a", 2.2)) +
             path("M-17,-20 h34 v6 h-34 Z", "#d9784a", stroke("#4a3b2a", 1.8)))
    for line in range(4):
        length = max(0.0, min(1.0, written * 4 - line)) * (26 if line != 3 else 15)
        if length > 0.5:
            drawn += path(f"M-13,{num(-7 + line * 7)} h{num(length)}", extra=stroke("#47659c", 2.2))
    return drawn + "</g>"


def pencil(x, y, angle):
    return (f'<g transform="translate({points(x, y)}) rotate({num(angle)})">' +
            path("M0,0 L6,-2.6 H27 V2.6 H6 Z", "#f4b73c", stroke("#5a4420", 1.6)) +
            path("M0,0 L6,-2.6 V2.6 Z", "#f6dcb0", stroke("#5a4420", 1.4)) +
            path("M27,-2.6 h4 v5.2 h-4 Z", "#ea7f86", stroke("#5a4420", 1.4)) + "</g>")


def glass(x, y, angle, size=1.0):
    """A magnifying glass whose lens is at (x, y); its handle goes along the angle."""
    return (f'<g transform="translate({points(x, y)}) rotate({num(angle)}) scale({num(size)})">' +
            path("M14,0 H33", extra=stroke("#3a281c", 8.4)) + path("M15,0 H32", extra=stroke("#a8683a", 4.8)) +
            ellipse(0, 0, 14, 14, "url(#lens)", 'fill-opacity="0.3" ' + stroke("#3a281c", 5.4)) +
            ellipse(0, 0, 14, 14, "none", stroke("#e8b44c", 2.4)) +
            path("M-8,-3 A9,9 0 0 1 -1,-9", extra=stroke("#ffffff", 2.6)) + "</g>")
