"""What is struck, plucked and blown."""

import math

from synthesis import (RATE, count, curve, decayed, driven, hiss, lowPass, mixed, noise, resonance, ringing, shaped,
                       sine, times)

# (ratio, loudness, part of the decay time)
BELL = ((1, 1.0, 1.0), (2.76, 0.5, 0.6), (5.40, 0.25, 0.35), (8.93, 0.12, 0.2))
SOFT_BELL = ((1, 1.0, 1.0), (2, 0.35, 0.7), (3, 0.12, 0.5), (4.2, 0.08, 0.3))
MARIMBA = ((1, 1.0, 1.0), (3.93, 0.35, 0.28), (9.5, 0.12, 0.10))      # hollowed bars: the second two octaves up
XYLOPHONE = ((1, 1.0, 1.0), (3.0, 0.5, 0.5), (6.1, 0.22, 0.3), (10.2, 0.1, 0.15))
MUSIC_BOX = ((1, 1.0, 1.0), (6.27, 0.22, 0.35), (17.5, 0.06, 0.1))    # the teeth of its comb: bars held at one end
TOY_PIANO = ((1, 1.0, 1.0), (2.01, 0.3, 0.8), (5.4, 0.30, 0.4), (8.8, 0.12, 0.2))  # struck rods
WOOD_BLOCK = ((1, 1.0, 1.0), (1.52, 0.6, 0.8), (2.41, 0.5, 0.6), (3.6, 0.3, 0.4))  # a slit box
TIN = ((1, 1.0, 1.0), (1.59, 0.8, 0.9), (2.14, 0.7, 0.8), (2.65, 0.6, 0.7), (3.60, 0.5, 0.5), (4.9, 0.35, 0.4))  # a lid


def bell(seconds, frequency, partials=BELL, decay=0.35):
    return ringing(seconds, frequency, partials, decay)


def struck(seconds, frequency, partials, decay, rng, hardness=0.3):
    """With the mallet's own short noise."""
    return mixed(ringing(seconds, frequency, partials, decay),
                 (0.0, burst(0.03, 0.004, min(7000, frequency * 4), min(6000, frequency * 4), rng), hardness))


def pluck(seconds, frequency, rng, bright=0.5, hold=0.996):
    """A plucked string: a burst of noise that runs round a line and is smoothed at each turn, half a sample later."""
    period = RATE / frequency
    line = lowPass([rng.uniform(-1, 1) for _ in range(max(2, int(period - 0.5)))], 2000 + 6000 * bright)
    middle = sum(line) / len(line)
    line = [value - middle for value in line]
    ratio = (len(line) + 0.5) / period  # from a whole number of samples to the note
    run, length = [], count(seconds)
    while len(run) < length * ratio + 2:
        run.extend(line)
        turned = [hold * 0.5 * (a + b) for a, b in zip(line, line[1:])]
        turned.append(hold * 0.5 * (line[-1] + turned[0]))
        line = turned
    result = []
    for i in range(length):
        at = i * ratio
        whole = int(at)
        result.append(run[whole] + (at - whole) * (run[whole + 1] - run[whole]))
    return shaped(result, [(0, 0), (0.001, 1), (seconds * 0.7, 0.8), (seconds, 0)])


def blown(seconds, frequency, overtones, vibrato=(0.0, 5.5), loudness=1.0):
    """A steady tone with these strengths of its overtones, from the first on."""
    length = count(seconds)
    depth, speed = vibrato
    depths = curve(depth, length)
    phase, turn, sin, result = 0.0, 2 * math.pi / RATE, math.sin, []
    overtones = list(enumerate(overtones, 2))
    for i, (f, d) in enumerate(zip(curve(frequency, length), depths)):
        phase += f * turn * (1 + d * sin(speed * turn * i))
        result.append(sin(phase) + sum([strength * sin(number * phase) for number, strength in overtones]))
    return shaped(result, loudness)


def horn(seconds, frequency, bright=1.0, vibrato=0.006):
    """A brass-like tone: the upper partials come with the loudness."""
    length = count(seconds)
    f0 = curve(frequency, length)
    rise = curve([(0, 0), (0.05, 1), (max(0.06, seconds * 0.6), 0.8), (seconds, 0)], length)
    phase, turn, sin, result = 0.0, 2 * math.pi / RATE, math.sin, []
    for i, (f, loudness) in enumerate(zip(f0, rise)):
        phase += turn * f * (1 + vibrato * sin(turn * 5.5 * i))
        level = loudness * bright
        result.append(loudness * (sin(phase) + level * (0.7 * sin(2 * phase) + 0.5 * level ** 0.5 * sin(3 * phase) +
                                                        level * (0.32 * sin(4 * phase) + 0.2 * sin(5 * phase)))))
    return result


def thump(seconds, start, end, decay):
    """A drum-like blow: a sine that sinks and fades."""
    sound = decayed(sine(seconds, [(0, start), (seconds * 0.4, end), (seconds, end)]), decay)
    return [s * min(1, i / 40) for i, s in enumerate(sound)]


def burst(seconds, decay, frequency, width, rng):
    """A short blow of noise about a frequency."""
    return decayed(resonance(noise(seconds, rng), frequency, width), decay)


def bubble(seconds, start, end, loudness=1.0):
    return shaped(sine(seconds, [(0, start), (seconds, end)]), [(0, 0), (seconds * 0.15, loudness), (seconds, 0)])


def slideWhistle(seconds, frequency, rng, loudness=1.0, vibrato=(0.0, 6.0)):
    """A whistle with a plunger: nearly a sine, its odd overtones, and the air at its edge."""
    tone = blown(seconds, frequency, (0.04, 0.10, 0.01, 0.03), vibrato)
    return shaped(mixed(tone, (0.0, hiss(seconds, frequency, 350, rng), 0.30),
                        (0.0, hiss(seconds, 5200, 3000, rng), 0.05)), loudness)


def kazoo(seconds, frequency, rng, loudness=1.0, vibrato=(0.01, 6.0)):
    """A hummed tone that makes a skin rattle."""
    hum = blown(seconds, frequency, (0.7, 0.5, 0.4, 0.3, 0.25, 0.2), vibrato)
    rattled = [math.tanh(3 * s) + 0.5 * abs(s) for s in hum]
    skin = hiss(seconds, 3000, 2500, rng)
    buzz = mixed((0.0, resonance(rattled, 850, 500), 0.9), (0.0, resonance(rattled, 2300, 1200), 0.9),
                 (0.0, [a * max(0.0, s) for a, s in zip(skin, hum)], 0.12))
    return shaped(lowPass(buzz, 5000), loudness)


def squeaker(seconds, frequency, rng, loudness=1.0):
    """The reed in a rubber toy that is pressed."""
    reed = blown(seconds, frequency, (0.7, 0.55, 0.35, 0.3, 0.15), (0.015, 27.0))
    return shaped(mixed((0.0, resonance(driven(reed, 1.5), times(frequency, 2.0), 1800), 0.8),
                        (0.0, hiss(seconds, 3600, 2500, rng), 0.18)), loudness)


def reedPipe(seconds, frequency, rng, loudness=1.0):
    """A party blower's squawk."""
    reed = blown(seconds, frequency, (0.8, 0.9, 0.7, 0.6, 0.5, 0.3), (0.02, 31.0))
    return shaped(mixed((0.0, driven(reed, 1.2), 0.7), (0.0, hiss(seconds, 4000, 3000, rng), 0.15)), loudness)


def panPipe(seconds, frequency, rng, loudness=1.0, vibrato=(0.0, 5.0)):
    """A stopped wooden pipe: odd overtones and a breathy start."""
    air = shaped(hiss(seconds, frequency, 260, rng), [(0, 1), (0.06, 0.35), (seconds, 0.3)])
    return shaped(mixed((0.0, blown(seconds, frequency, (0.03, 0.22, 0.02, 0.07), vibrato), 1.0), (0.0, air, 0.4),
                        (0.0, hiss(seconds, 5000, 3500, rng), 0.05)), loudness)


def clattering(seconds, click, rate, rng, loudness=1.0):
    """The same click again and again, so many a second (a curve)."""
    parts, t, length = [], 0.0, count(seconds)
    rates = curve(rate, length)
    while count(t) < length:
        parts.append((t, click, 0.85 + 0.3 * rng.random()))
        t += (0.96 + 0.08 * rng.random()) / rates[min(length - 1, count(t))]
    return shaped(mixed(*parts, (seconds, [0.0]))[:length], loudness)


def boing(seconds, frequency, rng, depth=0.35, speed=9.0):
    """A spring that is let go."""
    length = count(seconds)
    swing = [(i / 200, frequency * (1 + depth * math.exp(-i / 200 / (seconds * 0.4)) *
                                    math.sin(2 * math.pi * speed * (i / 200) * (1 + 0.3 * i / 200))))
             for i in range(int(seconds * 200) + 1)]
    tone = blown(seconds, swing, (0.5, 0.4, 0.3, 0.22, 0.15))
    return decayed(mixed(tone[:length], (0.0, burst(0.03, 0.006, 2500, 2000, rng), 0.6)), seconds * 0.3)
