"""The rig: joints that carry parts, poses, and acts that move from pose to pose in time.

A pose is a dict of channels (numbers by name). Every joint J has the channels J.x, J.y (pixels), J.turn (degrees,
clockwise) and J.squash (above 0 taller and thinner, below 0 flatter and broader, of the same volume); a character adds
channels of its own. An act is written in seconds and becomes frames of whole hundredths of a second. "L" and "R" in
channels and x in pixels are the viewer's; in the names of acts left and right are the character's own.
"""

import math

STEP = 8            # 1/100 s a frame of motion is shown: 12.5 a second
BRISK = 6           # where something is fast
LONGEST_SWING = 4   # frames that what dangles may swing on after a movement, before it is still
STILL = 0.8         # pixels or degrees of swing that nobody sees


# Easing: from 0 to 1 while t goes from 0 to 1.

def linear(t):
    return t


def easeIn(t):
    return t * t


def easeOut(t):
    return 1 - (1 - t) * (1 - t)


def easeInOut(t):
    return t * t * (3 - 2 * t)


def arc(anticipation=0.0, overshoot=0.0):
    """An ease that first draws back by a share of the way, then shoots over the goal by another, and settles."""
    back = 0.28 if anticipation > 0 else 0.0
    peak = 0.72 if overshoot > 0 else 1.0

    def ease(t):
        if t < back:
            return -anticipation * easeInOut(t / back)
        if t < peak:
            return -anticipation + (1 + anticipation + overshoot) * easeInOut((t - back) / (peak - back))
        return 1 + overshoot * (1 - easeInOut((t - peak) / (1 - peak))) if peak < 1 else 1.0
    return ease


def bounce(t):
    """A fall that ends with a small hop."""
    if t < 0.6:
        return easeIn(t / 0.6)
    return 1 - 0.18 * math.sin((t - 0.6) / 0.4 * math.pi)


def blend(a, b, t):
    return {key: a[key] + (b[key] - a[key]) * t for key in a}


def distance(a, b):
    return sum(abs(a[key] - b[key]) for key in a)


# Joints.

def times(m, n):
    """The matrix (a, b, c, d, e, f) that first does n, then m."""
    a, b, c, d, e, f = m
    g, h, i, j, k, l = n
    return (a * g + c * h, b * g + d * h, a * i + c * j, b * i + d * j, a * k + c * l + e, b * k + d * l + f)


def moved(m, x, y):
    a, b, c, d, e, f = m
    return a * x + c * y + e, b * x + d * y + f


UNMOVED = (1.0, 0.0, 0.0, 1.0, 0.0, 0.0)


class Joints:
    """The joints of a figure: name -> (the joint that carries it or None, x, y of its pivot at rest). The pivots of
    those named in `whole` are moved by whole pixels alone, so that what they carry looks the same elsewhere."""

    def __init__(self, joints, whole=("body", "head")):
        self.joints, self.whole = joints, whole

    def rest(self):
        return {f"{name}.{channel}": 0.0 for name in self.joints for channel in ("x", "y", "turn", "squash")}

    def matrices(self, pose):
        """Of each joint where it takes what was drawn at rest."""
        found = {}
        for name, (carrier, x, y) in self.joints.items():
            turn = math.radians(pose[f"{name}.turn"])
            tall = math.exp(pose[f"{name}.squash"])
            cos, sin = math.cos(turn), math.sin(turn)
            a, b, c, d = cos / tall, sin / tall, -sin * tall, cos * tall
            own = (a, b, c, d, x + pose[f"{name}.x"] - a * x - c * y, y + pose[f"{name}.y"] - b * x - d * y)
            matrix = times(found[carrier], own) if carrier else own
            if name in self.whole:
                left, down = self.displaced(matrix, x, y)
                matrix = times((1.0, 0.0, 0.0, 1.0, round(left) - left, round(down) - down), matrix)
            found[name] = matrix
        return found

    @staticmethod
    def displaced(matrix, x, y):
        there = moved(matrix, x, y)
        return there[0] - x, there[1] - y

    def shift(self, matrices, name):
        """By how many whole pixels the pivot of a joint is moved."""
        left, down = self.displaced(matrices[name], *self.joints[name][1:])
        return round(left), round(down)


SLACK = 0.16  # of its length, by which even a stretched arm is bent: a straight one looks like a stick


def elbow(x0, y0, x1, y1, upper, fore, outward):
    """Where two bones from a shoulder to a hand meet: on the outer, lower side. A hand out of reach stretches them."""
    dx, dy = x1 - x0, y1 - y0
    reach = math.hypot(dx, dy) or 1e-6
    along = max(-upper, min(upper, (upper * upper - fore * fore + reach * reach) / (2 * reach)))
    aside = math.sqrt(max(0.0, upper * upper - along * along))
    if reach >= upper + fore:
        along = reach * upper / (upper + fore)
    aside = max(aside, SLACK * reach)
    nx, ny = -dy / reach, dx / reach
    if nx * outward + ny * 0.7 < 0:
        nx, ny = -nx, -ny
    return x0 + dx / reach * along + nx * aside, y0 + dy / reach * along + ny * aside


class Swing:
    """Follow-through: a channel that lags behind what others do and swings out. `of` says what drags it: channel ->
    how much of it; `period` (seconds) and `damping` (1 does not swing) are those of the spring."""

    def __init__(self, of, period=0.55, damping=0.3):
        self.of, self.period, self.damping = of, period, damping

    def source(self, pose):
        return sum(share * pose[channel] for channel, share in self.of.items())


class Swings:
    """The springs of a figure while an act plays."""

    def __init__(self, swings, amount, pose):
        self.swings, self.amount = swings, amount
        self.state = {name: [swing.source(pose), 0.0] for name, swing in swings.items()}

    def advance(self, pose, hundredths):
        for name, swing in self.swings.items():
            goal = swing.source(pose)
            place, speed = self.state[name]
            pull = (2 * math.pi / swing.period) ** 2
            drag = 2 * swing.damping * 2 * math.pi / swing.period
            for _ in range(hundredths * 2):
                speed += (pull * (goal - place) - drag * speed) * 0.005
                place += speed * 0.005
            self.state[name] = [place, speed]

    def shown(self, pose, share=1.0):
        result = dict(pose)
        for name, swing in self.swings.items():
            result[name] += (self.state[name][0] - swing.source(pose)) * self.amount * share
        return result

    def still(self, pose):
        return all(abs(place - swing.source(pose)) + abs(speed) * swing.period / 6 < STILL
                   for swing, (place, speed) in ((self.swings[name], state) for name, state in self.state.items()))


# Steps in which channels change: what moves less is not seen, and parts that are in the same place share a picture.

# Pixels, about, by which a channel that goes up by 1 moves what it moves. Of the channels X.y and X.L the part before
# the dot counts as well; those not named move 25.
MOVES = {"turn": 0.7, "x": 1.0, "y": 1.0, "squash": 70.0, "hand.x": 25.0, "hand.y": 25.0, "hand.turn": 0.1, "fist": 6.0,
         "point": 8.0, "eye.open": 10.0, "eye.x": 5.0, "eye.y": 5.0, "eye.smile": 8.0, "eye.slant": 5.0,
         "eye.pupil": 5.0, "wink": 10.0, "brow.y": 0.8, "brow.turn": 4.0, "brow.cock": 0.8, "mouth.wide": 8.0,
         "mouth.open": 10.0, "mouth.curve": 5.0, "blush": 2.0, "breath": 4.0, "perk": 6.0, "rise": 60.0, "hole": 20.0,
         "call": 8.0, "ask": 8.0, "stars": 10.0, "thought": 12.0, "notes": 12.0, "idea": 10.0}


def moves(channel):
    for name in (channel, channel.rpartition(".")[0], channel.rpartition(".")[2]):
        if name in MOVES:
            return MOVES[name]
    return 25.0


LOOSE = 0.4  # of what dangles nobody sees smaller steps


def inSteps(pose, rest, tolerance, loose=()):
    """The pose with each channel moved to the nearest step from rest, a step being `tolerance` pixels; the channels in
    `loose` take longer ones."""
    result = {}
    for name, value in pose.items():
        step = tolerance / (moves(name) * (LOOSE if name in loose else 1.0))
        result[name] = round(rest[name] + round((value - rest[name]) / step) * step, 4) + 0.0
    return result


# Acts.

class Act:
    """What a character does under one name. Its methods add to it in the order in which they are called; poses are
    names of the character's poses or dicts of channels, later ones over earlier ones."""

    def __init__(self, character, name, start=()):
        self.character, self.name = character, name
        self.pose = character.pose(*start)
        self.start = self.pose
        self.steps = []
        self.leaving = None

    # From here on every method returns the act.

    def to(self, seconds, *poses, ease=None, anticipate=0.0, overshoot=None, step=STEP):
        """Moves to rest changed by the poses."""
        return self._move(seconds, self.character.pose(*poses), ease, anticipate, overshoot, step)

    def also(self, seconds, *poses, ease=None, anticipate=0.0, overshoot=None, step=STEP):
        """Moves to where it is, changed by the poses."""
        goal = {**self.pose, **self.character.changes(*poses)}
        return self._move(seconds, goal, ease, anticipate, overshoot, step)

    def cut(self, *poses, hundredths=STEP):
        """Shows rest changed by the poses at once, for one frame."""
        return self._add(self.character.pose(*poses), hundredths)

    def hold(self, seconds):
        return self._add(self.pose, max(1, round(seconds * 100 / self.character.tempo)))

    def blink(self, long=False):
        """Closes the eyes for a moment, whatever else the pose is."""
        pose = self.pose
        if pose["eye.open"] < 0.3 or pose["eye.smile"] > 0.7:
            return self
        half = {**pose, "eye.open": pose["eye.open"] * 0.45}
        self._add(half, 4)
        self._add({**pose, "eye.open": 0.0}, 14 if long else 6)
        self._add(half, 5)
        return self._add(pose, STEP)

    def breathe(self, times=1):
        """Breath after breath, of which each has the same pictures."""
        pose = self.pose
        for _ in range(times):
            for share in (1, 2, 3, 4, 5):
                self._add({**pose, "breath": easeInOut(share / 6)}, STEP)
            self._add({**pose, "breath": 1.0}, 28)
            for share in (5, 4, 3, 2, 1):
                self._add({**pose, "breath": easeInOut(share / 6)}, STEP)
            self._add(pose, 44)
        return self

    def again(self, mark, percent):
        """Goes back to the mark in so many of a hundred cases."""
        self.steps[-1]["branches"].append((mark, percent))
        return self

    def rest(self, seconds=0.4, *poses, ease=None, overshoot=None, step=STEP):
        """The way out: the end, to which an interrupted act goes as well."""
        self.leaving = len(self.steps)
        self.to(seconds, *poses, ease=ease, overshoot=overshoot, step=step)
        self.steps[-1]["duration"] = 10
        return self

    def mark(self):
        """What again() goes back to: the next frame."""
        return len(self.steps)

    def _add(self, pose, hundredths):
        self.steps.append({"pose": dict(pose), "duration": hundredths, "branches": []})
        self.pose = dict(pose)
        return self

    def _move(self, seconds, goal, ease, anticipate, overshoot, step):
        character = self.character
        if ease is None:
            over = character.springiness * 0.12 if overshoot is None else overshoot
            ease = arc(anticipate * character.amplitude, over * character.amplitude)
        start = self.pose
        count = max(1, round(seconds * 100 / character.tempo / step))
        for number in range(1, count):
            self._add(blend(start, goal, ease(number / count)), step)
        return self._add(goal, step)

    def frames(self):
        """The frames: pose, duration in 1/100 s, branches (frame, percent), exit (a frame, "end" or None)."""
        swings = Swings(self.character.swings, self.character.springiness * self.character.amplitude, self.start)
        found, first = [], []
        for number, step in enumerate(self.steps):
            first.append(len(found))
            pose, left = step["pose"], step["duration"]
            last = number + 1 == len(self.steps)
            swinging = 0
            while (last or left > STEP) and swinging < LONGEST_SWING and not swings.still(pose):
                swinging += 1
                swings.advance(pose, STEP)
                found.append({"pose": swings.shown(pose, 1 - swinging / (LONGEST_SWING + 1)), "duration": STEP,
                              "branches": []})
                left -= STEP
            swings.advance(pose, max(0, left))
            # What is held, and the end, is just the pose: others begin there.
            shown = pose if last or step["duration"] > STEP else swings.shown(pose)
            if left > 0 or last:
                found.append({"pose": shown, "duration": max(left, STEP), "branches": []})
            found[-1]["branches"] = [(first[mark], percent) for mark, percent in step["branches"]]
        leaving = None if self.leaving is None else first[self.leaving]
        for number, frame in enumerate(found):
            frame["exit"] = self._exit(found, number, leaving)
        return found

    @staticmethod
    def _exit(frames, number, leaving):
        """Into the way out, at the pose most like this one."""
        if leaving is None or number >= leaving:
            return "end" if number + 1 == len(frames) else None
        pose = frames[number]["pose"]
        return min(range(leaving, len(frames)), key=lambda i: (round(distance(pose, frames[i]["pose"]), 3), i))
