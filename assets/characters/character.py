"""What every character has: a rig to draw, a temper, a voice, and an act for every name. A character is a class
derived from Character, one module each below cast/; it gives its looks and overrides whatever acts it does in a way of
its own. The methods of the acts are called as the acts are, in small letters at the beginning."""

import math

from draw import Sketch, num
from features import ARMS, FACE, MOUTHS
from props import PROPS
from rig import BRISK, Act, Joints, bounce, easeIn, easeInOut, easeOut, inSteps, linear

EXITS, RETURNS, PLAIN = "exits", "returns", "none"
EVERYWHERE, HELD = "everywhere", "held"

# Every act: how it is left, and on which frames it has mouths. One that returns stays in its last pose, until its way
# back is asked for.
ACTS = {
    "RestPose": (PLAIN, EVERYWHERE), "Blink": (EXITS, EVERYWHERE), "Speak": (EXITS, EVERYWHERE),
    "Show": (PLAIN, None), "Hide": (PLAIN, None), "Greet": (EXITS, None), "Wave": (EXITS, None),
    "Pleased": (EXITS, HELD), "Sad": (EXITS, None), "Surprised": (EXITS, None), "Confused": (EXITS, None),
    "Uncertain": (EXITS, None), "Alert": (EXITS, None), "Explain": (EXITS, EVERYWHERE), "Congratulate": (EXITS, None),
    "Decline": (EXITS, None), "Acknowledge": (EXITS, None), "Announce": (EXITS, None), "Suggest": (EXITS, None),
    "GetAttention": (EXITS, None), "Think": (RETURNS, None), "Read": (RETURNS, None), "Write": (RETURNS, None),
    "Search": (EXITS, None), "Process": (EXITS, None), "StartListening": (RETURNS, None),
    "Hearing_1": (EXITS, None), "Hearing_2": (EXITS, None), "Hearing_3": (EXITS, None),
    "GestureUp": (RETURNS, HELD), "GestureDown": (RETURNS, HELD), "GestureLeft": (RETURNS, HELD),
    "GestureRight": (RETURNS, HELD),
    "LookUp": (RETURNS, None), "LookDown": (RETURNS, None), "LookLeft": (RETURNS, None), "LookRight": (RETURNS, None),
    "MoveUp": (RETURNS, None), "MoveDown": (RETURNS, None), "MoveLeft": (RETURNS, None), "MoveRight": (RETURNS, None),
    "Idle1_1": (EXITS, None), "Idle1_2": (EXITS, None), "Idle1_3": (EXITS, None), "Idle1_4": (EXITS, None),
    "Idle2_1": (EXITS, None), "Idle2_2": (EXITS, None), "Idle2_3": (EXITS, None),
    "Idle3_1": (EXITS, None), "Idle3_2": (EXITS, None),
}
WAY_BACK = {"StartListening": "StopListening"}  # the others' ends in Return

STATES = {
    "SHOWING": ["Show"], "HIDING": ["Hide"], "SPEAKING": ["Speak", "RestPose"], "LISTENING": ["StartListening"],
    "HEARING": ["Hearing_1", "Hearing_2", "Hearing_3"],
    "IDLINGLEVEL1": ["Idle1_1", "Idle1_2", "Idle1_3", "Idle1_4"],
    "IDLINGLEVEL2": ["Idle2_1", "Idle2_2", "Idle2_3"], "IDLINGLEVEL3": ["Idle3_1", "Idle3_2"],
    **{f"GESTURING{way.upper()}": [f"Gesture{way}"] for way in ("Up", "Down", "Left", "Right")},
    **{f"MOVING{way.upper()}": [f"Move{way}"] for way in ("Up", "Down", "Left", "Right")},
}

CROWN_ROOM, FLOOR_ROOM = 1.5, 2.0  # pixels above a crown, for its outline, and below the feet
HELD_FROM = 16  # 1/100 s from which on a frame counts as held


class Animation:
    """One animation as it goes into the file."""

    def __init__(self, name, transition, returns, mouths, frames):
        self.name, self.transition, self.returns, self.frames = name, transition, returns, frames
        self.mouths = mouths
        for number, frame in enumerate(frames):
            last = number + 1 == len(frames)
            frame["mouths"] = mouths == EVERYWHERE or (mouths == HELD and (last or frame["duration"] >= HELD_FROM))


def hands(x, y, fist=None, **more):
    """Both hands alike."""
    both = {f"hand.{axis}.{side}": value for side in "LR" for axis, value in (("x", x), ("y", y))}
    if fist is not None:
        both |= {"fist.L": fist, "fist.R": fist}
    return both | more


def hand(side, x, y, fist=None, point=None, turn=None):
    result = {f"hand.x.{side}": x, f"hand.y.{side}": y}
    for channel, value in (("fist", fist), ("point", point), ("hand.turn", turn)):
        if value is not None:
            result[f"{channel}.{side}"] = value
    return result


class Character:
    name = ""
    description = ""
    guid = ""
    voice = {}              # gender, speed (words a minute), pitch (hertz), age, style, language (English where absent)
    balloon = {}            # background, border
    size = 144              # pixels of the canvas, square
    colours = 96            # in its file, at most 255
    tolerance = 1.0         # pixels: the step in which parts move
    tempo = 1.0             # above 1 is quicker
    amplitude = 1.0         # how far it draws back, shoots over and swings
    springiness = 1.0       # 0 moves without any overshoot

    joints = Joints({"body": (None, 72.0, 136.0), "head": ("body", 72.0, 88.0)})
    crowns = ()             # (joint, x, y) of its highest points at rest: it does not jump or stretch out of the canvas
    swings = {}             # channel -> Swing
    own_channels = {}       # channel -> its value at rest, besides those of joints, face, arms and props
    poses = {}              # name -> channels
    states = STATES
    mouth = None            # features.Mouth, or anything with its box()
    mouth_joint = "head"

    def __init__(self):
        self.rest = {**self.joints.rest(), **FACE, **ARMS, **PROPS, "breath": 0.0, "perk": 0.0, "rise": 1.0, "hole": 0.0,
                     **self.own_channels}

    # Poses.

    def changes(self, *poses):
        result = {}
        for pose in poses:
            result |= self.poses[pose] if isinstance(pose, str) else pose
        unknown = set(result) - set(self.rest)
        if unknown:
            raise KeyError(f"{self.name} has no channel {', '.join(sorted(unknown))}")
        return result

    def pose(self, *poses):
        return {**self.rest, **self.changes(*poses)}

    def speaking(self, pose, shape):
        """The pose with a mouth of the shape."""
        wide, opening = MOUTHS[shape]
        return {**pose, "mouth.wide": wide, "mouth.open": opening}

    # Drawing.

    def defs(self):
        """Paints, by names that the parts use."""
        return ""

    def draw(self, sketch):
        raise NotImplementedError

    def derived(self, pose):
        """The pose with what follows from other channels: breath lifts the head."""
        return {**pose, "head.y": pose["head.y"] - 1.2 * pose["breath"]}

    def posed(self, pose):
        """A sketch of the pose on which nothing is drawn yet: jumping less high, then less tall, where its crowns would
        not be on the canvas."""
        sketch = Sketch(self.joints, self.derived(pose), self.size)

        def above():
            return max((CROWN_ROOM - sketch.at(*crown)[1] for crown in self.crowns), default=0.0)

        while above() > 0 and pose["rise"] >= 1:
            changed = dict(sketch.pose)
            if changed["body.y"] < FLOOR_ROOM:
                changed["body.y"] = min(FLOOR_ROOM, changed["body.y"] + math.ceil(above()))
            elif changed["body.squash"] > 0:
                changed["body.squash"] = max(0.0, changed["body.squash"] - 0.01)
            else:
                break
            sketch = Sketch(self.joints, changed, self.size)
        return sketch

    def sketch(self, pose):
        sketch = self.posed(pose)
        self.draw(sketch)
        return sketch

    def drawn(self, pose, prefix=""):
        return self.sketch(pose).flattened().replace(Sketch.prefix, prefix)

    def svg(self, pose):
        size = num(self.size)
        return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{size}" height="{size}" viewBox="0 0 {size} {size}">'
                f'<defs>{self.defs()}</defs>{self.drawn(pose)}</svg>')

    def mouthBox(self, pose):
        """[x, y, width, height] of whole pixels in which the mouth of the pose moves when it speaks."""
        left, top, right, bottom = self.mouth.box()
        sketch = self.posed(pose)
        corners = [sketch.at(self.mouth_joint, x, y) for x in (left, right) for y in (top, bottom)]
        x0, y0 = (max(0, math.floor(min(corner[i] for corner in corners))) for i in (0, 1))
        x1, y1 = (min(self.size, math.ceil(max(corner[i] for corner in corners))) for i in (0, 1))
        return [x0, y0, x1 - x0, y1 - y0]

    # Acts.

    def act(self, name):
        act = Act(self, name)
        getattr(self, name[0].lower() + name[1:])(act)
        return act

    def animations(self, names=None):
        """Those named, or all, each with its way back."""
        made = []
        for name, (transition, mouths) in ACTS.items():
            if names is not None and name not in names:
                continue
            act = self.act(name)
            frames = act.frames()
            back_name = WAY_BACK.get(name, f"{name}Return") if transition == RETURNS else ""
            made.append(Animation(name, transition, back_name, mouths, frames))
            if back_name:
                made.append(Animation(back_name, EXITS, "", None, self.wayBack(back_name, act)))
        for animation in made:
            for frame in animation.frames:
                frame["pose"] = inSteps(frame["pose"], self.rest, self.tolerance, self.swings)
        return made

    def wayBack(self, name, act):
        """The frames of the way back from the last pose of an act: of the method of that name, or the pictures of the way
        there from behind."""
        method = getattr(self, name[0].lower() + name[1:], None)
        back = Act(self, name)
        back.pose = back.start = act.pose
        if method:
            method(back)
        else:
            back.rest(0.32)
        return back.frames()

    # At rest and speaking.

    def restPose(self, act):
        act.hold(0.1)

    def blink(self, act):
        Act.blink(act)

    def speak(self, act):
        (act.hold(0.4)
         .to(0.32, hand("R", 0.45, -0.3, 0.1)).hold(0.6).blink().hold(0.4)
         .to(0.24, hand("R", 0.3, -0.55)).hold(0.5).rest(0.24).hold(0.5))

    # What emoticons call for.

    glad = {"eye.smile": 1.0, "mouth.open": 0.55, "mouth.curve": 1.0, "blush": 1.0, "perk": 1.0}

    def pleased(self, act):
        act.to(0.4, self.glad, hands(0.4, -0.15), {"head.turn": -4.0}, anticipate=0.15).hold(0.25)
        for turn in (4.0, -4.0, 4.0):
            act.also(0.24, {"head.turn": turn, "body.y": -2.0 if turn > 0 else 0.0}).hold(0.08)
        act.hold(0.6).rest()

    sorrow = {"eye.slant": 0.6, "eye.open": 0.74, "mouth.curve": -0.85, "mouth.wide": 0.75, "brow.y": 2.0,
              "brow.turn": -1.0, "perk": -1.0, "head.y": 5.0, "head.turn": -5.0, "body.squash": -0.03, "eye.y": 0.5,
              "blush": 0.1}

    def sad(self, act):
        (act.to(0.7, self.sorrow, overshoot=0.0, ease=easeInOut).hold(0.3)
         .also(0.8, {"tear": 1.0}, ease=easeIn).hold(0.4).also(0.5, {"head.turn": 4.0, "tear": 0.6}).hold(0.6)
         .rest(0.5))

    shock = {"eye.open": 1.3, "eye.pupil": 0.72, "mouth.open": 0.85, "mouth.wide": 0.55, "mouth.curve": 0.1,
             "brow.y": 5.0, "perk": 1.0, "body.squash": 0.06, "call": 1.0}

    def surprised(self, act):
        (act.to(0.16, {"body.squash": -0.07, "eye.open": 0.5}, step=BRISK, overshoot=0)
         .to(0.24, self.shock, hands(0.4, 0.6, 0.0), {"body.y": -7.0}, step=BRISK, overshoot=0)
         .also(0.24, {"body.y": 0.0}, ease=bounce, step=BRISK).hold(0.7).rest())

    def confused(self, act):
        act.to(0.5, {"head.turn": 9.0, "eye.x": 0.5, "eye.y": -0.7, "brow.cock": 4.5, "brow.y": 1.0,
                     "mouth.curve": -0.35, "mouth.wide": 0.7, "ask": 1.0}, hand("L", -0.1, 0.62)).hold(0.3)
        for x in (0.02, -0.1, 0.02, -0.1):
            act.also(0.12, {"hand.x.L": x}, overshoot=0, step=BRISK)
        act.hold(0.5).blink().hold(0.2).rest()

    def uncertain(self, act):
        (act.to(0.4, {"head.turn": -7.0, "eye.x": 0.8, "mouth.curve": -0.25, "mouth.wide": 0.6, "brow.y": 2.0,
                      "brow.turn": -0.6, "sweat": 0.7}, hands(-0.45, -0.35)).hold(0.4)
         .also(0.3, {"eye.x": -0.8, "sweat": 1.0, "head.turn": 3.0}).hold(0.5).rest())

    def alert(self, act):
        (act.to(0.16, {"body.squash": -0.05}, step=BRISK, overshoot=0)
         .to(0.24, {"body.squash": 0.07, "perk": 1.0, "eye.open": 1.2, "brow.y": 3.5, "mouth.curve": 0.9, "call": 1.0},
             hand("R", 0.3, 0.95, 0.2, 1.0), step=BRISK).hold(0.7).rest())

    def explain(self, act):
        (act.to(0.32, hands(0.6, -0.1, 0.0)).hold(0.4)
         .also(0.32, hand("L", 0.3, -0.45), hand("R", 0.8, 0.2)).hold(0.4)
         .also(0.32, hand("L", 0.8, 0.2), hand("R", 0.3, -0.45)).hold(0.4).rest())

    def congratulate(self, act):
        act.to(0.32, self.glad, hands(0.55, 0.8, 0.0), {"stars": 0.4, "mouth.open": 0.8}, anticipate=0.2)
        for _ in range(2):
            act.also(0.16, {"body.y": -9.0, "body.squash": 0.05, "stars": 1.0}, overshoot=0, ease=easeOut)
            act.also(0.16, {"body.y": 0.0, "body.squash": -0.06, "stars": 0.8}, overshoot=0, ease=easeIn)
        act.also(0.16, {"body.squash": 0.0, "stars": 1.0}).hold(0.7).rest()

    def decline(self, act):
        act.to(0.4, {"mouth.curve": -0.55, "mouth.wide": 0.8, "brow.turn": 0.7, "brow.y": -1.0, "eye.open": 0.8},
               hand("R", 0.25, 0.55, 0.0))
        for x in (-5.0, 5.0, -5.0, 5.0):
            act.also(0.2, {"head.x": x, "eye.x": x * 0.1, "hand.x.R": 0.25 + x * 0.035}, overshoot=0, ease=easeInOut)
        act.also(0.16, {"head.x": 0.0, "eye.x": 0.0}).hold(0.3).rest()

    def acknowledge(self, act):
        for _ in range(2):
            act.to(0.16, {"head.y": 6.0, "eye.open": 0.5, "mouth.curve": 1.0}, overshoot=0).to(0.16, {"head.y": -2.0})
        act.rest(0.24)

    def announce(self, act):
        (act.to(0.4, {"perk": 1.0, "body.squash": 0.04, "mouth.open": 0.9, "mouth.curve": 0.6, "eye.open": 1.1,
                      "notes": 0.4}, hands(-0.55, 0.35, 0.3), anticipate=0.2).hold(0.2)
         .also(0.4, {"notes": 1.0, "head.turn": -4.0}).hold(0.5).rest())

    def suggest(self, act):
        (act.to(0.32, {"eye.y": -0.6, "eye.x": 0.4, "head.turn": 4.0}).hold(0.3)
         .to(0.32, {"idea": 1.0, "eye.open": 1.15, "brow.y": 3.0, "mouth.curve": 1.0, "perk": 1.0},
             hand("R", 0.3, 0.9, 0.6, 1.0), overshoot=0.2).hold(1.0).rest())

    def getAttention(self, act):
        act.to(0.24, {"mouth.open": 0.6, "mouth.curve": 0.8, "perk": 1.0, "eye.open": 1.1}, hands(0.5, 0.8, 0.0))
        for _ in range(3):
            act.also(0.12, hands(0.85, 0.55), {"body.y": -4.0}, overshoot=0, step=BRISK)
            act.also(0.12, hands(0.45, 0.85), {"body.y": 0.0}, overshoot=0, step=BRISK)
        act.hold(0.3).rest()

    def greet(self, act):
        act.to(0.4, self.glad, hand("R", 0.5, 0.85, 0.0), {"head.turn": 4.0}, anticipate=0.1)
        for x, y in ((0.9, 0.6), (0.5, 0.85), (0.9, 0.6), (0.5, 0.85)):
            act.also(0.16, hand("R", x, y), overshoot=0)
        act.hold(0.2).rest()

    def wave(self, act):
        act.to(0.32, hand("L", 0.5, 0.85, 0.0), {"mouth.curve": 1.0, "head.turn": -3.0})
        for x, y in ((0.9, 0.6), (0.5, 0.85), (0.9, 0.6), (0.5, 0.85)):
            act.also(0.16, hand("L", x, y), overshoot=0)
        act.rest()

    # At work.

    def think(self, act):
        (act.to(0.48, {"eye.x": 0.6, "eye.y": -0.7, "mouth.wide": 0.6, "mouth.curve": 0.2, "head.turn": -4.0,
                       "thought": 0.6}, hand("R", -0.3, 0.28, 0.6)).also(0.16, {"thought": 1.0}).hold(0.8))

    def read(self, act):
        (act.to(0.5, {"book": 1.0, "eye.y": 0.8, "eye.open": 0.75, "head.y": 2.0, "eye.x": -0.6}, hands(-0.12, -0.42))
         .hold(0.4).also(0.4, {"eye.x": 0.6}, ease=linear).hold(0.2).also(0.16, {"eye.x": -0.6})
         .also(0.4, {"page": 1.0, "eye.x": 0.0}, ease=linear, overshoot=0).hold(0.8))

    def write(self, act):
        act.to(0.5, {"paper": 1.0, "eye.y": 0.8, "eye.open": 0.75, "head.y": 2.0, "head.turn": 3.0},
               hand("L", -0.15, -0.45), hand("R", -0.2, -0.4, 1.0), overshoot=0)
        for line in range(1, 4):
            act.also(0.4, {"stroke": line / 3, "hand.x.R": 0.02, "hand.y.R": -0.42 - 0.05 * line}, overshoot=0)
            if line < 3:
                act.also(0.16, {"hand.x.R": -0.25}, overshoot=0)
        act.hold(0.6)

    def search(self, act):
        act.to(0.4, {"glass": 1.0, "eye.x": -0.8, "head.turn": -5.0}, hand("R", -0.1, 0.3, 0.8), overshoot=0)
        mark = act.mark()
        (act.hold(0.3).also(0.56, {"eye.x": 0.8, "head.turn": 5.0, "hand.x.R": 0.5}, overshoot=0, ease=easeInOut)
         .hold(0.3).also(0.56, {"eye.x": -0.8, "head.turn": -5.0, "hand.x.R": -0.1}, overshoot=0, ease=easeInOut)
         .again(mark, 70).rest())

    def process(self, act):
        act.to(0.3, {"eye.y": 0.4, "brow.turn": 0.4, "mouth.wide": 0.6}, hands(0.2, -0.2), overshoot=0)
        mark = act.mark()
        for a in range(1, 9):
            s, c = math.sin(a * math.pi / 4) * 0.2, math.cos(a * math.pi / 4) * 0.2
            act.also(0.08, hand("L", 0.1 + s, -0.2 + c), hand("R", 0.1 - s, -0.2 - c), overshoot=0)
        act.again(mark, 80).rest()

    # Listening and hearing.

    def startListening(self, act):
        act.to(0.4, {"head.turn": 7.0, "eye.x": 0.45, "perk": 0.8, "eye.open": 1.08, "brow.y": 2.0},
               hand("R", 0.2, 0.95, 0.0))
        self.hearken(act)

    def hearken(self, act):
        """Sound comes, and comes again; it is still there in the picture that stays."""
        act.hold(0.1).also(0.32, {"sound": 1.0}, overshoot=0).hold(0.16).also(0.08, {"sound": 0.0}, overshoot=0)
        act.also(0.32, {"sound": 1.0}, overshoot=0).hold(0.2)

    def hearing_1(self, act):
        act.to(0.24, {"head.turn": 5.0, "eye.x": 0.5, "brow.y": 1.5, "perk": 0.5}).hold(0.6).rest(0.24)

    def hearing_2(self, act):
        for _ in range(2):
            act.to(0.2, {"head.y": 3.5, "perk": 0.3, "eye.open": 0.85}, overshoot=0).to(0.2)
        act.rest(0.08)

    def hearing_3(self, act):
        act.to(0.24, {"head.turn": -5.0, "eye.x": -0.4, "mouth.curve": 1.0, "brow.cock": 3.0}).hold(0.7).rest(0.24)

    # Pointing and looking; right is the viewer's left.

    def gestureUp(self, act):
        act.to(0.4, hand("R", 0.2, 1.05, 0.6, 1.0), {"eye.y": -0.8, "head.turn": 2.0}, anticipate=0.1).hold(0.5)

    def gestureDown(self, act):
        act.to(0.4, hand("R", 0.72, -0.5, 0.6, 1.0), {"eye.y": 0.8, "head.y": 2.0}, anticipate=0.1).hold(0.5)

    def gestureRight(self, act):
        act.to(0.4, hand("L", 0.95, 0.05, 0.6, 1.0), {"eye.x": -0.8, "head.turn": -3.0}, anticipate=0.1).hold(0.5)

    def gestureLeft(self, act):
        act.to(0.4, hand("R", 0.95, 0.05, 0.6, 1.0), {"eye.x": 0.8, "head.turn": 3.0}, anticipate=0.1).hold(0.5)

    def lookUp(self, act):
        act.to(0.24, {"eye.y": -0.95, "head.y": -3.0, "brow.y": 2.0, "perk": 0.4}).hold(0.5)

    def lookDown(self, act):
        act.to(0.24, {"eye.y": 0.95, "head.y": 3.0, "eye.open": 0.85}).hold(0.5)

    def lookRight(self, act):
        act.to(0.24, {"eye.x": -0.95, "head.turn": -4.0, "head.x": -2.0}).hold(0.5)

    def lookLeft(self, act):
        act.to(0.24, {"eye.x": 0.95, "head.turn": 4.0, "head.x": 2.0}).hold(0.5)

    def moveUp(self, act):
        act.to(0.3, {"body.squash": 0.07, "eye.y": -0.8, "perk": -0.5}, hands(0.3, -0.7), anticipate=0.3).hold(0.1)

    def moveDown(self, act):
        act.to(0.3, {"body.squash": -0.04, "eye.y": 0.8, "perk": 1.0}, hands(0.75, 0.6, 0.0)).hold(0.1)

    def moveRight(self, act):
        (act.to(0.3, {"body.turn": -6.0, "eye.x": -0.8}, hand("L", 0.55, 0.1), hand("R", 0.5, -0.5), anticipate=0.2)
         .hold(0.1))

    def moveLeft(self, act):
        (act.to(0.3, {"body.turn": 6.0, "eye.x": 0.8}, hand("R", 0.55, 0.1), hand("L", 0.5, -0.5), anticipate=0.2)
         .hold(0.1))

    # Passing the time.

    def idle1_1(self, act):
        act.breathe(1).blink().breathe(1).rest(0.08)

    def idle1_2(self, act):
        act.to(0.24, {"eye.x": -0.85, "head.turn": -3.0}).hold(0.9).blink().rest(0.24).hold(0.4)

    def idle1_3(self, act):
        act.to(0.24, {"eye.x": 0.85, "head.turn": 3.0}).hold(0.9).rest(0.24).hold(0.4)

    def idle1_4(self, act):
        act.hold(0.5).blink().hold(0.15).blink().breathe(1).rest(0.08)

    def idle2_1(self, act):
        (act.to(0.24, {"eye.x": -0.85, "head.turn": -3.0}).hold(0.6).also(0.32, {"eye.x": 0.85, "head.turn": 3.0})
         .hold(0.6).also(0.3, {"eye.x": 0.2, "eye.y": -0.8, "head.turn": 0.0}).hold(0.4).rest(0.24).hold(0.4))

    def idle2_2(self, act):
        for turn in (4.0, -4.0, 4.0, -4.0):
            act.to(0.48, {"body.turn": turn, "head.turn": -turn, "mouth.wide": 0.7}, ease=easeInOut)
        act.rest(0.32)

    def idle2_3(self, act):
        act.to(0.3, {"eye.x": 0.6, "eye.y": 0.6}, hand("R", 0.35, -0.6)).hold(0.2)
        for y in (-0.78, -0.6, -0.78, -0.6):
            act.also(0.12, {"hand.y.R": y}, overshoot=0, step=BRISK)
        act.hold(0.4).blink().rest(0.24)

    def idle3_1(self, act):
        """A yawn."""
        (act.to(0.6, {"eye.open": 0.4, "head.y": -2.0, "mouth.open": 0.4, "mouth.wide": 0.6, "mouth.curve": 0.1})
         .also(0.4, {"eye.open": 0.0, "mouth.open": 1.0, "mouth.wide": 0.8, "head.y": -4.0, "body.squash": 0.03},
               hand("R", -0.3, 0.4, 0.1), ease=easeInOut).hold(0.7).rest(0.6))

    def idle3_2(self, act):
        """A nap."""
        act.to(0.8, {"eye.open": 0.4, "head.y": 2.0, "head.turn": 3.0, "mouth.curve": 0.3}, ease=easeInOut).hold(0.3)
        act.also(0.5, {"eye.open": 0.0, "head.y": 5.0, "head.turn": 7.0, "mouth.wide": 0.6}, ease=easeInOut)
        mark = act.mark()
        for breath, doze in ((0.5, 0.3), (1.0, 0.66), (0.5, 1.0)):
            act.also(0.4, {"breath": breath, "doze": doze, "mouth.open": 0.1 * breath}, ease=easeInOut, overshoot=0)
            act.hold(0.2)
        act.also(0.4, {"breath": 0.0, "doze": 0.0, "mouth.open": 0.0}, ease=easeInOut, overshoot=0).hold(0.4)
        act.again(mark, 75).rest(0.5)

    # Coming and going: out of the ground and back.

    def show(self, act):
        (act.cut({"rise": 0.0}).to(0.24, {"rise": 0.0, "hole": 1.0}, overshoot=0)
         .to(0.24, {"rise": 0.4, "hole": 1.0}, overshoot=0).hold(0.2)
         .to(0.24, {"rise": 1.0, "hole": 1.0, "body.y": -8.0, "body.squash": 0.06, "eye.smile": 1.0}, overshoot=0)
         .to(0.16, {"hole": 0.5, "body.squash": -0.07, "eye.smile": 1.0}, overshoot=0).to(0.3))

    def hide(self, act):
        (act.to(0.16, {"hole": 0.6, "body.squash": -0.07, "eye.open": 0.1}, overshoot=0)
         .to(0.24, {"rise": 0.8, "hole": 1.0, "body.squash": 0.05, "eye.open": 0.1}, overshoot=0)
         .to(0.32, {"rise": 0.0, "hole": 1.0}, overshoot=0, ease=easeIn)
         .to(0.16, {"rise": 0.0, "hole": 0.0}, overshoot=0))
