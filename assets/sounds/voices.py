"""Voices: the folds' pulses and the breath's noise, through the resonances of a mouth."""

import math

from synthesis import CONTROL, RATE, count, curve, formant, highPass, hiss, lowPass, mixed, noise, notch, shaped, times

# Formants in hertz of a grown man's vowels; "m" is the hum behind closed lips.
VOWELS = {
    "a": (750, 1180, 2550, 3500, 4400, 5350, 6300),
    "ae": (680, 1700, 2450, 3500, 4400, 5350, 6300),
    "e": (500, 1850, 2500, 3500, 4400, 5350, 6300),
    "i": (285, 2250, 2950, 3600, 4500, 5350, 6300),
    "o": (480, 860, 2500, 3400, 4300, 5350, 6300),
    "u": (310, 760, 2300, 3300, 4200, 5350, 6300),
    "uh": (560, 1250, 2450, 3400, 4300, 5350, 6300),
    "er": (480, 1250, 1700, 3300, 4300, 5350, 6300),
    "m": (250, 1000, 2150, 3250, 4300, 5350, 6300),
}
WIDTHS = (75, 95, 140, 220, 300, 420, 550)
LAG = 0.015    # seconds that the pitch takes on its way to another
DRIFT = 0.002  # of the pitch, a step of its slow wandering
HIGHEST_FORMANT = 8500  # hertz; what lies above it in a small head is left out


class Line:
    """A curve that is asked for one moment after another."""

    def __init__(self, points):
        self.points = [(0.0, points)] if isinstance(points, (int, float)) else points
        self.at = 0

    def __call__(self, t):
        points = self.points
        while self.at + 1 < len(points) and points[self.at + 1][0] <= t:
            self.at += 1
        t0, v0 = points[self.at]
        if t <= t0 or self.at + 1 == len(points):
            return v0
        t1, v1 = points[self.at + 1]
        return v0 + (v1 - v0) * (t - t0) / (t1 - t0)


def folds(length, pitch, breath, tension, rng, jitter, shimmer, vibrato, rough):
    """The change of the air's flow, period by period, as (pulses, breath's noise).

    While the folds are open the flow rises slowly and breaks off suddenly: 2x - 3x2 over the open part, which is the
    longer the slacker they are. Periods differ a little in length (jitter) and strength (shimmer), and every other one
    where the voice is rough. The noise is strongest while they are open."""
    pitch, breath, tension, rough = Line(pitch), Line(breath), Line(tension), Line(rough)
    depth, speed = vibrato
    depth = Line(depth)
    pulses, air = [0.0] * (length + 2), [0.0] * (length + 2)
    draw, gauss = rng.random, rng.gauss
    start, number = draw() * 40, 0
    tone, drift = pitch(0), 0.0
    while start < length:
        t = start / RATE
        roughness = rough(t)
        # A larynx turns no corners, and nobody's holds a note exactly.
        tone += (pitch(t) - tone) * (1 - math.exp(-1 / (tone * LAG)))
        drift = 0.93 * drift + DRIFT * gauss(0, 1)
        f = tone * (1 + drift + depth(t) * math.sin(2 * math.pi * speed * t))
        uneven = 1 + (0.5 if number % 2 else -0.5) * 0.25 * roughness + roughness * 0.10 * gauss(0, 1)
        period = RATE / max(30.0, f) * max(0.5, (1 + jitter * max(-2.5, min(2.5, gauss(0, 1)))) * uneven)
        voiced = max(0.0, 1 - breath(t))
        strength = voiced * (1 + shimmer * (2 * draw() - 1)) * (1 - 0.75 * roughness * (number % 2))
        opened = period * (0.72 - 0.27 * tension(t))
        end, close = start + period, start + opened
        first, shut, last = math.ceil(start), math.ceil(close), math.ceil(end)
        if strength > 0:
            k = 1 / opened
            for n in range(first, min(shut, length)):
                x = (n - start) * k
                pulses[n] += strength * x * (2 - 3 * x)
            # The break lies between two samples: their share of it.
            if shut <= length:
                d = shut - close
                pulses[shut] -= strength * (1 - d) ** 2 / 2
                pulses[shut - 1] += strength * d * d / 2
        blown = 1 - voiced
        if blown > 0:
            low = 1 - 0.75 * voiced
            for n in range(first, min(shut, length)):
                air[n] = (draw() * 2 - 1) * blown
            for n in range(shut, min(last, length)):
                air[n] = (draw() * 2 - 1) * blown * low
        start, number = end, number + 1
    return pulses[:length], air[:length]


def softened(pulses, tension):
    """A slack voice has few overtones, a tense one many."""
    y, result = 0.0, []
    for number, value in enumerate(curve(tension, -(-len(pulses) // CONTROL), CONTROL)):
        a = 1 - math.exp(-2 * math.pi * 700 * 12 ** max(0.0, value) / RATE)
        for x in pulses[number * CONTROL:(number + 1) * CONTROL]:
            y += a * (x - y)
            result.append(y)
    return result


def voice(seconds, pitch, vowels, rng, breath=0.04, loudness=1.0, size=1.0, tension=0.5, jitter=0.008, shimmer=0.06,
          vibrato=(0.0, 5.5), rough=0.0, nose=0.0):
    """What a mouth utters. pitch: hertz. vowels: a name, or [(seconds, name)...] glided through. breath: 0 voice alone to
    1 breath alone. tension of the folds: 0 soft to 1 pressed. size scales the formants (above 1 a smaller head).
    vibrato: depth as a part of the pitch, and hertz. rough: 0 to 1, every other period weaker and longer. nose: 0 to 1,
    how open the way through the nose is. pitch, breath, loudness, size, tension, depth, rough and nose are curves."""
    length = count(seconds)
    if isinstance(vowels, str):
        vowels = [(0.0, vowels)]
    pulses, air = folds(length, pitch, breath, tension, rng, jitter, shimmer, vibrato, rough)
    source = [p + 0.55 * a for p, a in zip(softened(pulses, tension), highPass(air, 500))]
    # An open glottis damps the lowest resonance.
    damped = [(t, 1 + 1.5 * b) for t, b in (breath if isinstance(breath, list) else [(0.0, breath)])]
    factor = size if isinstance(size, (int, float)) else size[0][1]
    for number, width in enumerate(WIDTHS):
        points = [(t, VOWELS[name][number]) for t, name in vowels]
        if isinstance(size, (int, float)):
            points = times(points, size)
        else:
            vowel, sizes = Line(points), Line(size)
            points = [(t, vowel(t) * sizes(t)) for t in sorted({t for t, _ in points} | {t for t, _ in size})]
        if min(f for _, f in points) < HIGHEST_FORMANT:
            source = formant(source, points, times(damped, width * factor) if number == 0 else width * factor)
    if nose:
        # Beside the mouth's resonances the nose has one of its own and takes away what lies above it.
        source = formant(source, 270 * factor, 110)
        source = notch(source, [(t, (270 + 560 * v) * factor) for t, v in
                                ([(0.0, nose)] if isinstance(nose, (int, float)) else nose)], 110)
    # The teeth's and lips' own noise, which no formant shapes.
    return shaped([s + 0.05 * a for s, a in zip(source, air)], loudness)


def breathOf(seconds, vowels, rng, loudness=1.0, size=1.0):
    """Breath without voice."""
    return voice(seconds, 120, vowels, rng, breath=1.0, loudness=loudness, size=size)


def sniffed(seconds, rng, loudness, size=1.0, wet=0.3):
    """Air drawn up a nose: the hiss of its narrow passage over the resonances behind, and a rattle of what is in it."""
    rattle = curve([(0, 0), (seconds * 0.3, wet), (seconds, wet)], count(seconds))
    phase, gate = 0.0, []
    for share in rattle:
        phase += (38 + 20 * rng.random()) / RATE
        gate.append(1 - share * (0.5 + 0.5 * math.cos(2 * math.pi * phase)))
    passage = mixed((0, hiss(seconds, [(0, 1050 * size), (seconds, 1350 * size)], 260, rng), 0.8),
                    (0, hiss(seconds, [(0, 2200 * size), (seconds, 2750 * size)], 500, rng), 1.0),
                    (0, hiss(seconds, [(0, 3600 * size), (seconds, 4300 * size)], 1100, rng), 0.7),
                    (0, hiss(seconds, 6200, 2500, rng), 0.25))
    return shaped([p * g for p, g in zip(passage, gate)], loudness)


def smack(rng, size=1.0):
    """Lips that part from a kiss: drawn-in air, ever higher, and the pop in the mouth behind them."""
    drawn = hiss(0.16, [(0, 1700 * size), (0.13, 2600 * size), (0.16, 3600 * size)], 420, rng,
                 [(0, 0), (0.05, 0.4), (0.13, 0.8), (0.15, 1.0), (0.16, 0)])
    squeak = voice(0.13, [(0, 420), (0.13, 980)], [(0, "u"), (0.13, "i")], rng, size=size * 1.1, breath=0.35,
                   tension=0.7, jitter=0.03, loudness=[(0, 0), (0.1, 0.35), (0.13, 0)])
    pop = formant(formant(shaped(noise(0.05, rng), [(0, 0), (0.001, 1), (0.012, 0.15), (0.05, 0)]), 950 * size, 220),
                  2300 * size, 300)
    return mixed(drawn, (0.03, squeak, 0.5), (0.155, lowPass(pop, 6000), 0.9))
