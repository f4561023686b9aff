"""Sound from numbers: sources, filters, voices and instruments. A sound is a list of floats at RATE samples a second.

A curve is a number, or a list of (seconds, value) points joined by straight lines.
"""

import math
import random

RATE = 22050

# Formants in hertz of a grown man's vowels.
VOWELS = {
    "a": (760, 1180, 2600, 3500),
    "ae": (660, 1720, 2410, 3500),
    "e": (480, 1850, 2500, 3500),
    "i": (290, 2250, 2950, 3600),
    "o": (470, 850, 2600, 3400),
    "u": (320, 760, 2350, 3300),
    "uh": (560, 1250, 2450, 3400),
    "er": (470, 1250, 1700, 3300),
    "m": (260, 1050, 2150, 3200),
}
FORMANT_WIDTHS = (80, 100, 140, 220)
FORMANT_GAINS = (1.0, 0.55, 0.3, 0.16)


def count(seconds):
    return max(0, int(round(seconds * RATE)))


def curve(points, length):
    """The curve's value at every one of length samples."""
    if isinstance(points, (int, float)):
        return [float(points)] * length
    values = []
    for (t0, v0), (t1, v1) in zip(points, points[1:]):
        first, last = count(t0), count(t1)
        step = (v1 - v0) / max(1, last - first)
        values.extend(v0 + step * i for i in range(last - first))
    values.extend([float(points[-1][1])] * max(0, length - len(values)))
    return values[:length]


def shaped(sound, points):
    return [s * v for s, v in zip(sound, curve(points, len(sound)))]


def scaled(sound, factor):
    return [s * factor for s in sound]


def mixed(*parts):
    """Sounds laid over one another: a part is a sound, or (seconds, sound), or (seconds, sound, gain)."""
    placed = []
    for part in parts:
        if isinstance(part, tuple):
            placed.append((count(part[0]), part[1], part[2] if len(part) > 2 else 1.0))
        else:
            placed.append((0, part, 1.0))
    result = [0.0] * max(at + len(sound) for at, sound, _ in placed)
    for at, sound, gain in placed:
        for i, value in enumerate(sound, at):
            result[i] += value * gain
    return result


def joined(*sounds):
    return [value for sound in sounds for value in sound]


def silence(seconds):
    return [0.0] * count(seconds)


def noise(seconds, rng):
    draw = rng.random
    return [draw() * 2 - 1 for _ in range(count(seconds))]


def sine(seconds, frequency, phase=0.0):
    result = []
    turn = 2 * math.pi / RATE
    for f in curve(frequency, count(seconds)):
        result.append(math.sin(phase))
        phase += f * turn
    return result


def lowPass(sound, frequency):
    a = 1 - math.exp(-2 * math.pi * frequency / RATE)
    y, result = 0.0, []
    for x in sound:
        y += a * (x - y)
        result.append(y)
    return result


def highPass(sound, frequency):
    return [x - y for x, y in zip(sound, lowPass(sound, frequency))]


def resonance(sound, frequency, width):
    """A two-pole filter at the (moving) frequency; its gain there is about 1."""
    length = len(sound)
    frequencies, widths = curve(frequency, length), curve(width, length)
    y1 = y2 = 0.0
    result = []
    b1 = b2 = gain = 0.0
    for i, x in enumerate(sound):
        if i % 32 == 0:
            r = math.exp(-math.pi * widths[i] / RATE)
            b1, b2 = 2 * r * math.cos(2 * math.pi * min(frequencies[i], RATE * 0.45) / RATE), -r * r
            gain = (1 - r) * 2 * abs(math.sin(2 * math.pi * min(frequencies[i], RATE * 0.45) / RATE)) ** 0.5
        y = gain * x + b1 * y1 + b2 * y2
        y2, y1 = y1, y
        result.append(y)
    return result


def glottis(seconds, pitch, rng, jitter=0.01):
    """The buzz of a voice: a soft opening and a quicker closing of the folds, as the flow's change."""
    result, phase, before, shake = [], 0.0, 0.0, 0.0
    for f in curve(pitch, count(seconds)):
        phase += f * (1 + shake) / RATE
        if phase >= 1:
            phase -= 1
            shake = rng.uniform(-jitter, jitter)
        if phase < 0.56:
            flow = 0.5 - 0.5 * math.cos(math.pi * phase / 0.56)
        elif phase < 0.80:
            flow = math.cos(math.pi / 2 * (phase - 0.56) / 0.24)
        else:
            flow = 0.0
        result.append((flow - before) * 8)
        before = flow
    return result


def voice(seconds, pitch, vowels, rng, breath=0.04, loudness=1.0, size=1.0, jitter=0.01, vibrato=(0.0, 5.5)):
    """A sung or spoken sound. vowels: a name, or [(seconds, name)…] glided through; size scales the formants (above 1
    a smaller head); breath and loudness are curves; vibrato is depth (as a part of the pitch) and hertz."""
    length = count(seconds)
    depth, rate = vibrato
    f0 = curve(pitch, length)
    if depth:
        f0 = [f * (1 + depth * math.sin(2 * math.pi * rate * i / RATE)) for i, f in enumerate(f0)]
    points = [(i / RATE, f) for i, f in enumerate(f0[::16])]
    buzz = glottis(seconds, [(t * 16, f) for t, f in points], rng, jitter)
    breaths = curve(breath, length)
    source = [b * (1 - min(1, h)) + n * h for b, n, h in zip(buzz, highPass(noise(seconds, rng), 300), breaths)]
    if isinstance(vowels, str):
        vowels = [(0.0, vowels)]
    result = [0.0] * length
    for number, (width, gain) in enumerate(zip(FORMANT_WIDTHS, FORMANT_GAINS)):
        frequency = [(t, VOWELS[name][number] * size) for t, name in vowels]
        for i, value in enumerate(resonance(source, frequency, width * size)):
            result[i] += value * gain
    return shaped(result, loudness)


def bell(seconds, frequency, partials=((1, 1.0, 1.0), (2.76, 0.5, 0.6), (5.40, 0.25, 0.35), (8.93, 0.12, 0.2)),
         decay=0.35):
    """partials: ratio, loudness, part of the decay time (seconds until 1/e)."""
    result = [0.0] * count(seconds)
    for ratio, loudness, lasting in partials:
        f = frequency * ratio
        if f > RATE * 0.45:
            continue
        turn, fall = 2 * math.pi * f / RATE, 1 / (decay * lasting * RATE)
        for i in range(len(result)):
            result[i] += loudness * math.sin(turn * i) * math.exp(-i * fall)
    return shaped(result, [(0, 0), (0.002, 1), (max(0.003, seconds - 0.03), 1), (seconds, 0)])


def pluck(seconds, frequency, rng, bright=0.5, hold=0.996):
    """A plucked string: a burst of noise that runs round a line and is smoothed at each turn."""
    period = RATE / frequency
    line = lowPass([rng.uniform(-1, 1) for _ in range(int(period))], 2000 + 6000 * bright)
    result = []
    index, size = 0, len(line)
    for _ in range(count(seconds)):
        now, following = line[index], line[(index + 1) % size]
        result.append(now)
        line[index] = hold * (0.5 * now + 0.5 * following)
        index = (index + 1) % size
    return shaped(result, [(0, 1), (seconds * 0.7, 0.8), (seconds, 0)])


def horn(seconds, frequency, bright=1.0, vibrato=0.006):
    """A brass-like tone: the upper partials come with the loudness."""
    length = count(seconds)
    f0 = curve(frequency, length)
    rise = curve([(0, 0), (0.05, 1), (max(0.06, seconds * 0.6), 0.8), (seconds, 0)], length)
    phase, result = 0.0, []
    for i in range(length):
        phase += 2 * math.pi * f0[i] * (1 + vibrato * math.sin(2 * math.pi * 5.5 * i / RATE)) / RATE
        level = rise[i] * bright
        result.append(rise[i] * (math.sin(phase) + 0.7 * level * math.sin(2 * phase) +
                                 0.5 * level ** 1.5 * math.sin(3 * phase) +
                                 0.32 * level ** 2 * math.sin(4 * phase) + 0.2 * level ** 2.5 * math.sin(5 * phase)))
    return result


def thump(seconds, start, end, decay):
    """A drum-like blow: a sine that sinks and fades."""
    length = count(seconds)
    return [s * math.exp(-i / (decay * RATE)) * min(1, i / 40) for i, s in
            enumerate(sine(seconds, [(0, start), (seconds * 0.4, end), (seconds, end)])[:length])]


def burst(seconds, decay, frequency, width, rng):
    """A short blow of noise about a frequency."""
    sound = resonance(noise(seconds, rng), frequency, width)
    return [s * math.exp(-i / (decay * RATE)) for i, s in enumerate(sound)]


def bubble(seconds, start, end, loudness=1.0):
    return shaped(sine(seconds, [(0, start), (seconds, end)]), [(0, 0), (seconds * 0.15, loudness), (seconds, 0)])


def echoed(sound, seconds, gain, tail=0.5):
    """A small room: echoes that grow weaker and duller."""
    result = sound + silence(tail)
    for number, spread in enumerate((1.0, 1.37, 1.83, 2.41), 1):
        at, level = count(seconds * spread), gain ** number
        for i, value in enumerate(lowPass(sound, 5000 / number)):
            if i + at < len(result):
                result[i + at] += value * level
    return result


def loudestPart(sound):
    """The root mean square of the loudest 0.3 seconds."""
    size = min(len(sound), count(0.3))
    energy = most = sum(s * s for s in sound[:size])
    for leaving, entering in zip(sound, sound[size:]):
        energy += entering * entering - leaving * leaving
        most = max(most, energy)
    return math.sqrt(most / size)


def finished(sound, level=0.24, peak=0.84):
    """Without a constant part, faded at both ends so that nothing clicks, and as loud as all others: at most twice
    peak before a soft limit at peak rounds off what goes beyond it."""
    sound = highPass(sound, 25)
    edge_in, edge_out = min(60, len(sound) // 4), min(500, len(sound) // 4)
    for i in range(edge_in):
        sound[i] *= i / edge_in
    for i in range(edge_out):
        sound[-1 - i] *= i / edge_out
    gain = min(level / loudestPart(sound), 2 * peak / max(abs(s) for s in sound))
    return [peak * math.tanh(s * gain / peak) for s in sound]


def note(name):
    """The frequency of a note such as "C5", "F#4" or "Bb3"."""
    steps = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}[name[0]]
    steps += name.count("#") - name[1:].count("b")
    return 440.0 * 2 ** ((steps - 9 + 12 * (int(name[-1]) - 4)) / 12)
