"""What the characters do: every animation as a list of frames over poses, the same for each of them."""

from figure import MOUTHS, REST, distance, ease, blend

# Hands, in arm lengths from the shoulder.
RAISED = {"lu": 0.55, "lv": 0.80, "ru": 0.55, "rv": 0.80}


class Animation:
    """Collects frames from the rest pose on; after end() every frame knows where to leave when a stop is asked."""

    def __init__(self, name, start=None, transition="exits", returns="", mouths=False):
        self.name, self.transition, self.returns, self.mouths = name, transition, returns, mouths
        self.pose = {**REST, **(start or {})}
        self.trail = [self.pose]
        self.frames = []
        self.leaving = None

    def add(self, pose, duration):
        self.frames.append({"pose": dict(pose), "duration": duration, "branches": []})
        self.pose = dict(pose)
        return self

    def hold(self, duration):
        return self.add(self.pose, duration)

    def to(self, between, duration=6, stay=None, **changes):
        """Moves on to the present pose with changes, over some frames between; the last is held for stay."""
        start, goal = self.pose, {**self.pose, **changes}
        for step in range(1, between + 1):
            self.add(blend(start, goal, ease(step / (between + 1))), duration)
        self.trail.append(goal)
        return self.add(goal, stay if stay is not None else duration)

    def blink(self):
        pose = self.pose
        if pose["happy"] > 0.5 or pose["open"] < 0.3:
            return self
        self.add({**pose, "open": min(pose["open"], 0.45)}, 4)
        self.add({**pose, "open": 0.0}, 7)
        self.add({**pose, "open": min(pose["open"], 0.45)}, 4)
        return self.add(pose, 10)

    def again(self, frame, percent):
        self.frames[-1]["branches"].append((frame, percent))
        return self

    def back(self, between=2, duration=6, stay=10, goal=None):
        """The way to the end: the rest pose, or goal."""
        self.leaving = len(self.frames)
        start, goal = self.pose, {**REST, **(goal or {})}
        for step in range(1, between + 1):
            self.add(blend(goal, start, ease(1 - step / (between + 1))), duration)
        return self.add(goal, stay)

    def exits(self):
        """For every frame where it goes on when a stop is asked: into the way out, at the pose most like its own."""
        last = len(self.frames) - 1
        found = []
        for index, frame in enumerate(self.frames):
            if self.leaving is None or index >= self.leaving:
                found.append("end" if index == last else None)
                continue
            out = min(range(self.leaving, last + 1), key=lambda i: (distance(frame["pose"], self.frames[i]["pose"]), i))
            found.append(out)
        return found


def pair(name, returns, mouths=False, between=2, hold=60, **changes):
    """An animation that stays in its last pose, and the one that comes back from it."""
    there = Animation(name, transition="returns", returns=returns, mouths=mouths).to(between, 6, hold, **changes)
    goal = {**REST, **changes}
    back = Animation(returns, start=goal).back(between, 6, 8)
    return [there, back]


def animations():
    made = []

    def new(name, **options):
        made.append(Animation(name, **options))
        return made[-1]

    # At rest, and speaking: only hands and lids move, so that the mouth stays where it is.
    new("RestPose", transition="none", mouths=True).hold(10)
    new("Blink", mouths=True).blink()
    speak = new("Speak", mouths=True).hold(40).blink().hold(60)
    (speak
     .to(2, 7, 50, ru=0.45, rv=-0.35)
     .to(1, 7, 30, ru=0.5, rv=-0.15)
     .to(1, 7, 40, ru=0.45, rv=-0.35)
     .back(2, 7, 40))
    speak.hold(30)

    # Coming and going.
    sunk = {"rise": 0.0, "hole": 0.0}
    out = [{"rise": 0.0, "hole": 0.55}, {"rise": 0.0, "hole": 1.0}, {"rise": 0.3, "hole": 1.0},
           {"rise": 0.62, "hole": 1.0},
           {"rise": 0.9, "hole": 1.0, "sy": 1.04, "sx": 0.97},
           {"rise": 1.0, "hole": 0.9, "dy": -9.0, "sy": 1.05, "sx": 0.96, "happy": 1.0},
           {"rise": 1.0, "hole": 0.5, "sy": 0.92, "sx": 1.05, "happy": 1.0}, {"rise": 1.0, "hole": 0.0, "happy": 1.0}]
    show = new("Show", start=sunk, transition="none")
    for index, step in enumerate(out):
        show.add({**REST, **step}, 22 if index == 3 else 7)
    show.add(REST, 10)
    hide = new("Hide", transition="none").add({**REST, "open": 0.45}, 6)
    hide.add({**REST, "hole": 0.5, "sy": 0.92, "sx": 1.05, "open": 0.0}, 7)
    for step in reversed(out[:5]):
        hide.add({**REST, **step}, 7)

    # What emoticons call for.
    (new("Pleased")
     .to(2, 6, 20, happy=1.0, mo=0.55, mc=1.0, blush=1.0, perk=1.0, tilt=-4.0, lu=0.45, lv=-0.1, ru=0.45, rv=-0.1,
         sy=1.02)
     .to(0, 12, dy=-4.0, tilt=4.0)
     .to(0, 12, dy=0.0, tilt=-4.0)
     .to(0, 12, dy=-4.0, tilt=4.0)
     .to(0, 30, dy=0.0, tilt=-4.0)
     .back(2))
    (new("Uncertain")
     .to(2, 6, 40, tilt=-7.0, gx=0.8, gy=0.1, mc=-0.25, mw=0.6, brow=2.0, frown=-0.6, sweat=0.7, lu=-0.45, lv=-0.35,
         ru=-0.45, rv=-0.35)
     .to(1, 8, 40, gx=-0.8, sweat=1.0)
     .back(2))
    (new("Sad")
     .to(3, 7, 30, slant=0.6, open=0.72, mc=-0.85, mw=0.75, brow=2.0, frown=-1.0, perk=-1.0, hy=4.0, tilt=-4.0,
         sy=0.97, gy=0.4, blush=0.2, tear=0.1)
     .to(2, 10, 20, tear=1.0)
     .to(1, 10, 40, tilt=3.0, tear=0.6)
     .back(2, 7))
    (new("Surprised")
     .to(1, 4, 6, sy=0.94, sx=1.04, open=0.7)
     .to(1, 4, 60, open=1.32, pupil=0.75, mo=0.85, mw=0.55, mc=0.1, brow=5.0, perk=1.0, dy=-3.0, sy=1.05, sx=0.98,
         call=1.0, lu=0.4, lv=0.65, ru=0.4, rv=0.65)
     .to(1, 5, 40, dy=0.0, sy=1.0, sx=1.0)
     .back(2))
    (new("Confused")
     .to(2, 7, 30, tilt=9.0, gx=0.5, gy=-0.7, cock=4.5, brow=1.0, mc=-0.35, mw=0.7, ask=1.0, lu=-0.1, lv=0.62)
     .to(0, 8, lu=0.02, lv=0.72)
     .to(0, 8, lu=-0.1, lv=0.62)
     .to(0, 8, lu=0.02, lv=0.72)
     .to(0, 40, lu=-0.1, lv=0.62)
     .blink()
     .back(2, 7))
    (new("Alert")
     .to(1, 4, 5, sy=0.95, sx=1.03)
     .to(1, 4, 30, sy=1.06, sx=0.97, perk=1.0, open=1.2, brow=3.5, mc=0.9, ru=0.3, rv=0.95, call=0.8)
     .to(0, 8, dy=-5.0)
     .to(0, 45, dy=0.0, call=1.0)
     .back(2))
    (new("Explain", mouths=True)
     .to(2, 7, 50, lu=0.65, lv=-0.05, ru=0.65, rv=-0.05)
     .to(1, 7, 40, lu=0.3, lv=-0.4, ru=0.8, rv=0.25)
     .to(1, 7, 40, lu=0.8, lv=0.25, ru=0.3, rv=-0.4)
     .back(2, 7))
    congratulate = new("Congratulate").to(2, 6, 10, happy=1.0, mo=0.8, mc=1.0, blush=1.0, perk=1.0, stars=0.5, **RAISED)
    congratulate.to(0, 10, dy=-8.0, sy=1.05, stars=0.8, lu=0.35, ru=0.35, lv=0.92, rv=0.92)
    congratulate.to(0, 10, dy=0.0, sy=0.96, stars=1.0, **RAISED)
    congratulate.to(0, 10, dy=-8.0, sy=1.05, stars=0.8, lu=0.35, ru=0.35, lv=0.92, rv=0.92)
    congratulate.to(0, 10, dy=0.0, sy=0.96, stars=1.0, **RAISED).to(0, 30, sy=1.0).back(2)
    decline = new("Decline").to(2, 6, 10, mc=-0.55, mw=0.8, frown=0.7, brow=-1.0, open=0.8, ru=0.25, rv=0.55)
    for shake in (-5.0, 5.0, -5.0, 5.0):
        decline.to(0, 11, hx=shake, gx=shake * 0.1, ru=0.25 + shake * 0.035)
    decline.to(0, 20, hx=0.0, gx=0.0, ru=0.25).back(2)

    # Listening holds until the next thing to do; hearing goes by.
    made.extend(pair("StartListening", "StopListening", hold=80, tilt=6.0, gx=0.45, ru=0.22, rv=0.95, perk=0.6,
                     open=1.08,
                     brow=1.5))
    new("Hearing_1").to(1, 6, 60, tilt=5.0, gx=0.5, brow=1.5, perk=0.5).back(1)
    new("Hearing_2").to(1, 6, 12, hy=3.0, perk=0.3).to(0, 12, hy=0.0).to(0, 12, hy=3.0).back(1)

    # Pointing: in names the sides are the character's own.
    made.extend(pair("GestureUp", "GestureUpReturn", mouths=True, ru=0.2, rv=1.05, gy=-0.8))
    made.extend(pair("GestureDown", "GestureDownReturn", mouths=True, ru=0.62, rv=-0.85, gy=0.8))
    made.extend(pair("GestureRight", "GestureRightReturn", mouths=True, lu=0.95, lv=0.05, gx=-0.8))
    made.extend(pair("GestureLeft", "GestureLeftReturn", mouths=True, ru=0.95, rv=0.05, gx=0.8))

    # On the way: leaning into the motion.
    made.extend(pair("MoveUp", "MoveUpReturn", between=1, hold=10, sy=1.07, sx=0.95, gy=-0.8, lu=0.3, lv=-0.95, ru=0.3,
                     rv=-0.95, perk=-0.5))
    made.extend(pair("MoveDown", "MoveDownReturn", between=1, hold=10, sy=0.95, sx=1.03, gy=0.8, lu=0.75, lv=0.6,
                     ru=0.75,
                     rv=0.6, perk=1.0))
    made.extend(pair("MoveRight", "MoveRightReturn", between=1, hold=10, lean=-7.0, gx=-0.8, lu=0.85, lv=0.1, ru=0.5,
                     rv=-0.5))
    made.extend(pair("MoveLeft", "MoveLeftReturn", between=1, hold=10, lean=7.0, gx=0.8, ru=0.85, rv=0.1, lu=0.5,
                     lv=-0.5))

    # Passing the time.
    new("Idle1_1").hold(120).blink().hold(150)
    new("Idle1_2").to(1, 6, 90, gx=-0.85, tilt=-3.0).back(1, 6, 60)
    new("Idle1_3").to(1, 6, 90, gx=0.85, tilt=3.0).back(1, 6, 60)
    new("Idle1_4").hold(60).blink().hold(15).blink().hold(120)
    (new("Idle2_1")
     .to(1, 7, 60, gx=-0.85, tilt=-3.0)
     .to(1, 7, 60, gx=0.85, tilt=3.0)
     .to(1, 7, 40, gx=0.2, gy=-0.8, tilt=0.0)
     .back(1, 7, 60))
    (new("Idle2_2")
     .to(1, 8, 20, lean=4.0, tilt=-4.0, mc=0.9, mw=0.6)
     .to(1, 8, 20, lean=-4.0, tilt=4.0)
     .back(1, 8, 60))
    (new("Idle2_3")
     .to(1, 7, 20, gx=0.6, gy=0.6, rv=-0.6, ru=0.35)
     .to(0, 10, rv=-0.78)
     .to(0, 10, rv=-0.6)
     .to(0, 10, rv=-0.78)
     .to(0, 30, rv=-0.6)
     .blink()
     .back(1, 7, 60))
    yawn = new("Idle3_1").to(2, 9, 20, open=0.4, hy=-2.0, mo=0.4, mw=0.6, mc=0.1)
    yawn.to(1, 9, 90, open=0.0, mo=1.0, mw=0.8, hy=-4.0, ru=-0.3, rv=0.5, sy=1.03).back(3, 8, 60)
    doze = (new("Idle3_2")
            .to(2, 14, 30, open=0.4, hy=2.0, tilt=3.0, mc=0.3)
            .to(1, 14, 40, open=0.0, hy=4.0, tilt=7.0, mw=0.6))
    nap = len(doze.frames)
    (doze
     .to(1, 40, 70, doze=1.0, mo=0.12, sy=0.98, hy=5.0)
     .to(0, 60, sy=1.0, hy=4.0, doze=0.66)
     .again(nap, 75)
     .back(3, 8, 40))

    # Extras.
    (new("Greet")
     .to(2, 6, 14, ru=0.5, rv=0.85, happy=1.0, mo=0.5, mc=1.0, tilt=4.0, perk=0.6)
     .to(1, 5, ru=0.9, rv=0.6)
     .to(1, 5, ru=0.5, rv=0.85)
     .to(1, 5, ru=0.9, rv=0.6)
     .to(1, 5, 20, ru=0.5, rv=0.85)
     .back(2))
    (new("Wave")
     .to(2, 6, 9, lu=0.5, lv=0.85, mc=1.0)
     .to(1, 5, lu=0.9, lv=0.6)
     .to(1, 5, lu=0.5, lv=0.85)
     .to(1, 5, lu=0.9, lv=0.6)
     .to(1, 5, lu=0.5, lv=0.85)
     .back(2))
    made.extend(pair("Think", "ThinkReturn", hold=80, gx=0.6, gy=-0.7, thought=1.0, ru=-0.34, rv=0.28, mw=0.6, mc=0.2,
                     tilt=-3.0))
    reading = {"book": 1.0, "lu": -0.12, "lv": -0.42, "ru": -0.12, "rv": -0.42, "gy": 0.8, "open": 0.75, "hy": 2.0}
    read = Animation("Read", transition="returns", returns="ReadReturn").to(3, 7, 40, **reading)
    read.to(0, 40, gx=-0.5).to(0, 40, gx=0.0).to(0, 40, gx=0.5).to(0, 20, gx=0.0)
    made.append(read)
    made.append(Animation("ReadReturn", start=reading).back(3, 7, 8))
    return made


STATES = {
    "SHOWING": ["Show"],
    "HIDING": ["Hide"],
    "SPEAKING": ["Speak", "RestPose"],
    "LISTENING": ["StartListening"],
    "HEARING": ["Hearing_1", "Hearing_2"],
    "IDLINGLEVEL1": ["Idle1_1", "Idle1_2", "Idle1_3", "Idle1_4"],
    "IDLINGLEVEL2": ["Idle2_1", "Idle2_2", "Idle2_3"],
    "IDLINGLEVEL3": ["Idle3_1", "Idle3_2"],
    "GESTURINGUP": ["GestureUp"],
    "GESTURINGDOWN": ["GestureDown"],
    "GESTURINGLEFT": ["GestureLeft"],
    "GESTURINGRIGHT": ["GestureRight"],
    "MOVINGUP": ["MoveUp"],
    "MOVINGDOWN": ["MoveDown"],
    "MOVINGLEFT": ["MoveLeft"],
    "MOVINGRIGHT": ["MoveRight"],
}


def mouthPose(pose, shape):
    width, opening = MOUTHS[shape]
    return {**pose, "mw": width, "mo": opening}
