"""Sound from numbers: curves, sources, filters and mixing. A sound is a list of floats at RATE samples a second.

A curve is a number, or a list of (seconds, value) points in their order, joined by straight lines; before the first and
after the last it stays.
"""

import math

RATE = 22050
CONTROL = 32  # samples for which a moving filter keeps its coefficients


def count(seconds):
    return max(0, round(seconds * RATE))


def curve(points, length, step=1):
    """The curve's value at each of `length` moments, `step` samples apart."""
    if isinstance(points, (int, float)):
        return [float(points)] * length
    values = [float(points[0][1])] * min(length, math.ceil(count(points[0][0]) / step))
    for (t0, v0), (t1, v1) in zip(points, points[1:]):
        first, last = count(t0), count(t1)
        if last > first:
            slope = (v1 - v0) / (last - first)
            end = min(length, math.ceil(last / step))
            values.extend([v0 + slope * (i * step - first) for i in range(len(values), end)])
    values.extend([float(points[-1][1])] * (length - len(values)))
    return values[:length]


def times(points, factor):
    """The curve with its values multiplied."""
    if isinstance(points, (int, float)):
        return points * factor
    return [(t, v * factor) for t, v in points]


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
        end = at + len(sound)
        result[at:end] = [a + b * gain for a, b in zip(result[at:end], sound)]
    return result


def joined(*sounds):
    return [value for sound in sounds for value in sound]


def silence(seconds):
    return [0.0] * count(seconds)


def noise(seconds, rng):
    draw = rng.random
    return [draw() * 2 - 1 for _ in range(count(seconds))]


def sine(seconds, frequency, phase=0.0):
    length = count(seconds)
    turn, sin = 2 * math.pi / RATE, math.sin
    if isinstance(frequency, (int, float)):
        return [sin(phase + frequency * turn * i) for i in range(length)]
    result = []
    for f in curve(frequency, length):
        result.append(sin(phase))
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


def resonators(frequency, width, length):
    """A two-pole resonance's b and c in y = x + b y1 + c y2 for each stretch of CONTROL samples, with its frequency."""
    stretches = -(-length // CONTROL)
    for f, w in zip(curve(frequency, stretches, CONTROL), curve(width, stretches, CONTROL)):
        f = min(f, RATE * 0.45)
        r = math.exp(-math.pi * w / RATE)
        yield 2 * r * math.cos(2 * math.pi * f / RATE), -r * r, f


def resonance(sound, frequency, width):
    """A band about the (moving) frequency: a tone there comes through as it is."""
    y1 = y2 = x1 = x2 = 0.0
    result = []
    for number, (b, c, _) in enumerate(resonators(frequency, width, len(sound))):
        gain = (1 + c) / 2
        for x in sound[number * CONTROL:(number + 1) * CONTROL]:
            y = gain * (x - x2) + b * y1 + c * y2
            x2, x1, y2, y1 = x1, x, y1, y
            result.append(y)
    return result


def formant(sound, frequency, width):
    """A resonance as one of those of a tube: what is far below it comes through as it is."""
    y1 = y2 = 0.0
    result = []
    for number, (b, c, _) in enumerate(resonators(frequency, width, len(sound))):
        gain = 1 - b - c
        for x in sound[number * CONTROL:(number + 1) * CONTROL]:
            y = gain * x + b * y1 + c * y2
            y2, y1 = y1, y
            result.append(y)
    return result


def notch(sound, frequency, width):
    """The opposite of a formant."""
    x1 = x2 = 0.0
    result = []
    for number, (b, c, _) in enumerate(resonators(frequency, width, len(sound))):
        gain = 1 / (1 - b - c)
        for x in sound[number * CONTROL:(number + 1) * CONTROL]:
            result.append(gain * (x - b * x1 - c * x2))
            x2, x1 = x1, x
    return result


def hiss(seconds, frequency, width, rng, loudness=1.0):
    """Noise about a (moving) frequency, about as loud at any width."""
    sound = resonance(noise(seconds, rng), frequency, width)
    strength = 1 / max(1e-9, math.sqrt(sum(s * s for s in sound) / max(1, len(sound))))
    return shaped(scaled(sound, 0.35 * strength), loudness)


def partial(length, frequency, loudness, decay):
    """A fading sine (decay: seconds until 1/e)."""
    r = math.exp(-1 / (decay * RATE))
    w = 2 * math.pi * frequency / RATE
    b, c = 2 * r * math.cos(w), -r * r
    y1, y2 = 0.0, -loudness * math.sin(w) / r
    result = []
    for _ in range(length):
        result.append(y1)
        y1, y2 = b * y1 + c * y2, y1
    return result


def ringing(seconds, frequency, partials, decay):
    """What is struck: partials are (ratio, loudness, part of the decay time); above what the rate can hold they are left
    out."""
    length = count(seconds)
    result = [0.0] * length
    for ratio, loudness, lasting in partials:
        if frequency * ratio < RATE * 0.45:
            for_this = min(length, count(decay * lasting * 9))
            result[:for_this] = [a + b for a, b in
                                 zip(result, partial(for_this, frequency * ratio, loudness, decay * lasting))]
    return shaped(result, [(0, 0), (0.0015, 1), (max(0.002, seconds - 0.03), 1), (seconds, 0)])


def decayed(sound, decay):
    r, level, result = math.exp(-1 / (decay * RATE)), 1.0, []
    for s in sound:
        result.append(s * level)
        level *= r
    return result


def driven(sound, drive):
    """Rounded off at full scale after being made louder: denser, and with more overtones."""
    tanh = math.tanh
    return [tanh(drive * s) for s in sound]


def echoed(sound, seconds, gain, tail=0.5):
    """A small room: echoes that grow weaker and duller."""
    result = sound + silence(tail)
    for number, spread in enumerate((1.0, 1.37, 1.83, 2.41), 1):
        at, level = count(seconds * spread), gain ** number
        end = min(len(result), at + len(sound))
        result[at:end] = [a + b * level for a, b in zip(result[at:end], lowPass(sound, 5000 / number))]
    return result


def note(name):
    """The frequency of a note such as "C5", "F#4" or "Bb3"."""
    steps = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}[name[0]]
    steps += name.count("#") - name[1:].count("b")
    return 440.0 * 2 ** ((steps - 9 + 12 * (int(name[-1]) - 4)) / 12)
