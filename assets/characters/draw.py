"""SVG, as text: shapes, paints and the sketch on which a character draws one pose."""

from rig import UNMOVED, moved, times


def num(value):
    text = f"{value:.2f}".rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def points(*values):
    return " ".join(num(value) for value in values)


def stroke(colour, width):
    return f'stroke="{colour}" stroke-width="{num(width)}" stroke-linecap="round" stroke-linejoin="round"'


def ellipse(cx, cy, rx, ry, fill, extra=""):
    return (f'<ellipse cx="{num(cx)}" cy="{num(cy)}" rx="{num(max(rx, 0))}" ry="{num(max(ry, 0))}" '
            f'fill="{fill}" {extra}/>')


def path(d, fill="none", extra=""):
    return f'<path d="{d}" fill="{fill}" {extra}/>'


def mixed(a, b, t):
    """The colour between two of the form #rrggbb."""
    parts = ((int(a[i:i + 2], 16), int(b[i:i + 2], 16)) for i in (1, 3, 5))
    return "#" + "".join(f"{round(x + (y - x) * t):02x}" for x, y in parts)


def radial(name, light, middle, dark, cx=0.36, cy=0.26, r=0.9):
    """A shading of five flat tones round a light: edges between tones cost far less in a character file than a smooth
    run of colours."""
    tones = (light, mixed(light, middle, 0.5), middle, mixed(middle, dark, 0.5), dark)
    ends = (0.22, 0.40, 0.66, 0.86, 1.0)
    stops, begin = "", 0.0
    for tone, end in zip(tones, ends):
        stops += f'<stop offset="{num(begin)}" stop-color="{tone}"/><stop offset="{num(end)}" stop-color="{tone}"/>'
        begin = end
    return f'<radialGradient id="{name}" cx="{num(cx)}" cy="{num(cy)}" r="{num(r)}">{stops}</radialGradient>'


def smooth(corners, closed=True):
    """The data of a path through the corners without a kink."""
    count = len(corners)
    d = f"M{points(*corners[0])}"
    for i in range(count if closed else count - 1):
        before, here = corners[i - 1 if closed or i > 0 else 0], corners[i]
        there = corners[(i + 1) % count]
        behind = corners[(i + 2) % count if closed else min(i + 2, count - 1)]
        d += (f" C{points(here[0] + (there[0] - before[0]) / 6, here[1] + (there[1] - before[1]) / 6)} "
              f"{points(there[0] - (behind[0] - here[0]) / 6, there[1] - (behind[1] - here[1]) / 6)} {points(*there)}")
    return d + (" Z" if closed else "")


class Sketch:
    """One pose being drawn, in layers: what is drawn first lies behind. Parts of one layer meet with smooth edges; a
    layer has a hard one, and is stored once for all poses in which it looks the same, wherever it is then."""

    prefix = "@"  # before the names that it makes; replaced by one of its own where several are put together

    def __init__(self, joints, pose, size):
        self.joints, self.pose, self.size = joints, pose, size
        self.matrices = joints.matrices(pose)
        self.layers = []  # [x, y, drawn]

    def __getitem__(self, channel):
        return self.pose[channel]

    def layer(self, joint=None):
        """What is drawn from here on lies in front of all before, and is moved with the joint."""
        self.layers.append([*(self.joints.shift(self.matrices, joint) if joint else (0, 0)), ""])

    def on(self, joint, *drawn):
        """Draws what moves with the joint; with None, what stays where it is."""
        if not self.layers:
            self.layer()
        self.layers[-1][2] += self.carried(joint, "".join(drawn))

    def carried(self, joint, drawn):
        x, y = self.layers[-1][:2] if self.layers else (0, 0)
        matrix = times((1.0, 0.0, 0.0, 1.0, -x, -y), self.matrices[joint] if joint else UNMOVED)
        if not drawn or all(abs(a - b) < 1e-6 for a, b in zip(matrix, UNMOVED)):
            return drawn
        entries = " ".join(f"{value + 0.0:.3f}".rstrip("0").rstrip(".").replace("-0", "0") if abs(value) < 5e-4
                           else f"{value:.3f}".rstrip("0").rstrip(".") for value in matrix)
        return f'<g transform="matrix({entries})">{drawn}</g>'

    def at(self, joint, x, y):
        """Where the joint takes a point."""
        return moved(self.matrices[joint], x, y)

    def clip(self, name, shape, drawn):
        """What is drawn, inside of the shape alone."""
        return (f'<clipPath id="{self.prefix}{name}">{shape}</clipPath>'
                f'<g clip-path="url(#{self.prefix}{name})">{drawn}</g>')

    def flattened(self):
        """All layers as one drawing."""
        return "".join(f'<g transform="translate({x} {y})">{drawn}</g>' if x or y else drawn
                       for x, y, drawn in self.layers)
