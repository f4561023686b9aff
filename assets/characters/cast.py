"""The three characters: Brindle the marmot, Ottoline the octopus, Plonk the frog."""

import math

from figure import Figure, ellipse, num, path, points, radial, stroke


class Brindle(Figure):
    """A marmot with round ears, a pale belly and a fine bushy tail."""

    description = "A marmot who sleeps all winter and talks all summer."
    guid = "{6B1D0F52-7C0A-4E0B-9C55-0E7B3A1F6C01}"
    voice = {"gender": "male", "speed": 165, "pitch": 118, "age": 30, "style": "Cheerful"}
    balloon = {"background": "#FFF3D6", "border": "#5A3218"}

    line = "#4a2712"
    lid = "#b97a43"
    brow_colour = None
    arm_fill = "#b97a43"
    hand_fill = "#8a5228"
    blush_colour = "#ef8a6a"
    eyes = ((57.0, 50.0), (87.0, 50.0))
    eye_size = (8.2, 10.0)
    mouth_at = (72.0, 73.5)
    mouth_size = (11.0, 11.0)
    cheeks = ((44.5, 66.0), (99.5, 66.0), (6.5, 4.2))
    neck = (72.0, 88.0)
    shoulders = ((49.0, 97.0), (95.0, 97.0))
    arm = (33.0, 9.5, 6.8)
    brows = (14.5, 6.5)
    book_colour = "#3f7fc4"

    def defs(self):
        return (radial("fur", "#dca468", "#c1824a", "#8f5729") + radial("dark", "#a96a39", "#8a5228", "#663a1a") +
                radial("belly", "#fff0d2", "#f6dcae", "#dcb27c") + radial("muzzle", "#fff6e2", "#fbe7c3", "#e4c08c"))

    def behind(self, pose):
        tip = pose["perk"] * 10
        d = (f"M92,130 C116,136 132,122 {points(130, 98 - tip)} C{points(129, 84 - tip, 116, 84 - tip, 113, 96 - tip)} "
             f"C111,110 104,116 92,116 Z")
        return (path(d, "url(#dark)", stroke(self.line, self.line_width)) +
                path(f"M118,{num(104 - tip)} C116,113 110,119 103,122", extra=stroke("#5c3417", 1.6)) +
                path(f"M125,{num(104 - tip)} C123,115 117,122 110,126", extra=stroke("#5c3417", 1.6)))

    def body(self, pose):
        line = stroke(self.line, self.line_width)
        feet = "".join(ellipse(x, 133, 13.5, 6.2, "url(#dark)", line) +
                       path(f"M{num(x - 4)},130 l0,4 M{num(x + 4)},130 l0,4",
                            extra=stroke(self.line, 1.3)) for x in (55, 89))
        return (path("M72,70 C98,70 108,100 106,116 C104,132 90,135 72,135 C54,135 40,132 38,116 C36,100 46,70 72,70 Z",
                     "url(#fur)", line) +
                ellipse(72, 112, 22, 20.5, "url(#belly)") + feet)

    def head(self, pose):
        line = stroke(self.line, self.line_width)
        perk = pose["perk"]
        ears = ""
        for side, x in ((-1, 45.0), (1, 99.0)):
            ex, ey = x + side * (2 - perk * 3), 31 - perk * 5
            ears += ellipse(ex, ey, 9.5, 9.8 + perk, "url(#dark)", line) + ellipse(ex - side, ey + 1.5, 5, 5.2,
                                                                                   "#e9a48a")
        skull = ("M72,22 C95,22 107,36 109,54 C112,60 113,66 108,71 C101,84 88,89 72,89 "
                 "C56,89 43,84 36,71 C31,66 32,60 35,54 C37,36 49,22 72,22 Z")
        crown = ("M72,23.2 C86,23.2 94,27 99,33 C90,34 82,38 78,45 C76,49 68,49 66,45 "
                 "C62,38 54,34 45,33 C50,27 58,23.2 72,23.2 Z")
        muzzle = "M72,58 C84,56 95,62 94,72 C93,82 83,86 72,86 C61,86 51,82 50,72 C49,62 60,56 72,58 Z"
        whiskers = path("M44,70 L33,67 M44,74.5 L34,76 M100,70 L111,67 M100,74.5 L110,76", extra=stroke(self.line, 1.2))
        nose = (path("M66,58.5 Q72,55.5 78,58.5 Q79,63 72,66.5 Q65,63 66,58.5 Z", "#3a1d14", stroke(self.line, 1.4)) +
                ellipse(69.8, 59.8, 2, 1.2, "#a07a70") + path("M72,66.5 L72,71", extra=stroke(self.line, 1.8)))
        return (ears + path(skull, "url(#fur)", line) + path(crown, "url(#dark)") + path(muzzle, "url(#muzzle)") +
                whiskers + nose)

    def teeth(self, pose, x, y):
        drop = 0 if pose["mo"] < 0.06 else 0.5
        if pose["mc"] < 0 and pose["mo"] < 0.06:
            return ""
        y += 1.2 - drop * 2
        return path(f"M{points(x - 4.4, y)} l8.8,0 l-0.5,6 q-1.8,1 -3.4,0 l-0.5,-1 l-0.5,1 q-1.8,1 -3.4,0 Z", "#fffdf4",
                    stroke(self.line, 1.3)) + path(f"M{points(x, y)} l0,5", extra=stroke(self.line, 1.0))


class Ottoline(Figure):
    """An octopus with a flower behind her ear, had she an ear."""

    description = "An octopus of good family, never short of a hand."
    guid = "{6B1D0F52-7C0A-4E0B-9C55-0E7B3A1F6C02}"
    voice = {"gender": "female", "speed": 170, "pitch": 215, "age": 25, "style": "Warm"}
    balloon = {"background": "#F4EAFF", "border": "#4B2A74"}

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


class Plonk(Figure):
    """A frog with a wide mouth and a bow tie."""

    description = "A frog of few thoughts and many words."
    guid = "{6B1D0F52-7C0A-4E0B-9C55-0E7B3A1F6C03}"
    voice = {"gender": "male", "speed": 150, "pitch": 82, "age": 45, "style": "Deep"}
    balloon = {"background": "#E9FBD8", "border": "#1E5A24"}

    line = "#1d4d22"
    lid = "#6cc14e"
    white = "#fffbe6"
    iris = "#f0b429"
    arm_fill = "#6cc14e"
    hand_fill = "#6cc14e"
    blush_colour = "#f59a6d"
    eyes = ((47.0, 40.0), (97.0, 40.0))
    eye_size = (11.5, 12.0)
    pupil_size = 5.6
    mouth_at = (72.0, 74.0)
    mouth_size = (25.0, 11.0)
    cheeks = ((36.5, 68.0), (107.5, 68.0), (6.5, 4.2))
    neck = (72.0, 92.0)
    shoulders = ((46.0, 100.0), (98.0, 100.0))
    arm = (33.0, 9.0, 6.4)
    spread = 12.0
    margin = 14.0
    brows = (19.0, 8.0)
    above = (72.0, 16.0)
    ground_colours = ("#4aa9b8", "#236a80", "#b9ecd9")
    book_colour = "#c9453b"

    def defs(self):
        return (radial("skin", "#b8ec8b", "#74c755", "#3f8f37") + radial("leg", "#93d96c", "#5fb345", "#347c30") +
                radial("belly", "#fffde0", "#f4f0ae", "#d3cf78"))

    def behind(self, pose):
        line = stroke(self.line, self.line_width)
        drawn = ""
        for side in (-1, 1):
            drawn += ellipse(72 + side * 37, 117, 17, 16.5, "url(#leg)", line)
            x = 72 + side * 43
            drawn += path(f"M{points(x - side * 20, 131)} Q{points(x - side * 6, 126, x + side * 14, 131)} "
                          f"q{points(side * 6, 2, side, 5)} q{points(-side * 6, 0.5, -side * 7, -1.5)} "
                          f"q{points(-side, 3, -side * 7, 2.5)} "
                          f"q{points(-side * 6, 0, -side * 6, -2)} Q{points(x - side * 16, 138, x - side * 20, 136)} Z",
                          "#74c755", line)
        return drawn

    def body(self, pose):
        line = stroke(self.line, self.line_width)
        return (path("M72,78 C96,78 106,98 104,114 C102,130 90,135 72,135 C54,135 42,130 40,114 C38,98 48,78 72,78 Z",
                     "url(#skin)", line) + ellipse(72, 115, 23, 18, "url(#belly)"))

    def head(self, pose):
        line = stroke(self.line, self.line_width)
        bumps = "".join(ellipse(x, 42, 16.5, 17, "url(#skin)", line) for x in (47, 97))
        skull = ("M72,38 C102,38 122,52 122,70 C122,88 100,96 72,96 C44,96 22,88 22,70 C22,52 42,38 72,38 Z")
        cover = "".join(ellipse(x, 46, 14.5, 13, "#8bd567") for x in (48, 96))
        nostrils = ellipse(66.5, 59, 1.5, 1.9, self.line) + ellipse(77.5, 59, 1.5, 1.9, self.line)
        jaw = path("M31,80 C44,94 100,94 113,80 C108,90 92,94.8 72,94.8 C52,94.8 36,90 31,80 Z", "#e9f0a4",
                   'opacity="0.85"')
        spots = "".join(ellipse(x, y, r, r * 0.75, "#4fa03f", 'opacity="0.7"') for x, y,
                        r in ((72, 45.5, 3.4), (64, 49.5, 2.2), (80, 49, 2.4)))
        return bumps + path(skull, "url(#skin)", line) + jaw + cover + spots + nostrils

    def collar(self, pose):
        x, y = 72 + pose["hx"] * 0.6, 99.5 + pose["hy"] * 0.4
        flare = pose["perk"] * 2.5
        knot = (path(f"M{points(x, y)} L{points(x - 14, y - 7 - flare)} Q{points(x - 17, y, x - 14, y + 7)} Z "
                     f"M{points(x, y)} L{points(x + 14, y - 7 - flare)} Q{points(x + 17, y, x + 14, y + 7)} Z",
                     "#e0483e", stroke("#7a1d1a", 1.8)) +
                ellipse(x, y, 4, 4.4, "#f4675a", stroke("#7a1d1a", 1.8)))
        return knot

    def fingers(self, x, y, from_x, from_y):
        angle = math.atan2(y - from_y, x - from_x)
        drawn = ""
        for turn in (-0.8, 0.0, 0.8):
            dx, dy = math.cos(angle + turn), math.sin(angle + turn)
            tip_x, tip_y = x + dx * 8.4, y + dy * 8.4
            d = f"M{points(x + dx * 3, y + dy * 3)} L{points(tip_x, tip_y)}"
            drawn += (path(d, extra=stroke(self.line, 6.8)) + ellipse(tip_x, tip_y, 3.4, 3.4, "#9be074",
                                                                      stroke(self.line, 1.5)) +
                      path(d, extra=stroke(self.hand_fill, 3.4)))
        return drawn + ellipse(x, y, 4.6, 4.6, self.hand_fill)


CAST = {"Brindle": Brindle, "Ottoline": Ottoline, "Plonk": Plonk}
