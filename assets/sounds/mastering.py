"""What is done to every sound in the end: as loud as all others, and nothing in it that clicks."""

import array
import math

import loudness
from synthesis import RATE, count, highPass

TARGET = -18.0     # LUFS
NEAR_ENOUGH = 0.1  # LU
CEILING = -1.5     # dBTP
# What the limiter may take away. A sound that needs more is too sharp for its loudness: it has to be made denser.
MOST_LIMITED = 6.0  # dB
LEAST_SECONDS, MOST_SECONDS = 0.4, 3.0
QUIET = 0.003      # of the peak: what is lower at the start and the end is cut off
STRETCH = 32       # samples in which the limiter's gain moves along a straight line
RELEASE = 1.12     # by which it may grow from one stretch to the next


def trimmed(sound):
    least = QUIET * max(abs(s) for s in sound)
    first = next(i for i, s in enumerate(sound) if abs(s) > least)
    last = next(i for i in range(len(sound) - 1, 0, -1) if abs(sound[i]) > least)
    return sound[max(0, first - count(0.004)):last + count(0.02)]


def faded(sound):
    for edge, seconds, order in ((0, 0.003, 1), (-1, 0.02, -1)):
        length = count(seconds)
        for i in range(length):
            sound[edge + order * i] *= 0.5 - 0.5 * math.cos(math.pi * i / length)
    return sound


def wholeHops(sound):
    """With silence up to whole tenths of a second, so that all of it lies in blocks of which the loudness is measured."""
    hop = round(RATE * loudness.HOP_SECONDS)
    length = max(count(LEAST_SECONDS), -(-len(sound) // hop) * hop)
    return sound + [0.0] * (length - len(sound))


def limited(sound, gain, ceiling):
    """The sound times the gain, nowhere above the ceiling; and the least that was left of the gain."""
    starts = range(0, len(sound), STRETCH)
    peaks = [max(max(part), -min(part)) * gain for part in (sound[at:at + STRETCH] for at in starts)]
    if max(peaks) <= ceiling:
        return [s * gain for s in sound], 1.0
    shares = [min(1.0, ceiling / peak) if peak > 0 else 1.0 for peak in peaks]
    # At the border of two stretches the gain suits both of them, so along the line between it suits each.
    borders = [min(a, b) for a, b in zip([shares[0], *shares], [*shares, shares[-1]])]
    for i in range(1, len(borders)):
        borders[i] = min(borders[i], borders[i - 1] * RELEASE)
    result = []
    for at, start, end in zip(starts, borders, borders[1:]):
        g, step = start * gain, (end - start) * gain / STRETCH
        for s in sound[at:at + STRETCH]:
            result.append(s * g)
            g += step
    return result, min(borders)


def mastered(sound):
    """The sound at TARGET, its true peak below CEILING, as 16-bit samples."""
    sound = wholeHops(faded(trimmed(highPass(sound, 22))))
    if len(sound) > count(MOST_SECONDS):
        raise ValueError(f"lasts {len(sound) / RATE:.2f} s")
    ceiling = 10 ** (CEILING / 20)
    gain = 10 ** ((TARGET - loudness.integrated([sound], RATE)) / 20)
    for _ in range(20):
        result, least = limited(sound, gain, ceiling)
        off = TARGET - loudness.integrated([result], RATE)
        if abs(off) > NEAR_ENOUGH:
            gain *= 10 ** (off * (1.0 if least == 1.0 else 1.4) / 20)
            continue
        over = loudness.truePeak(result) / 10 ** (CEILING / 20)
        if over > 1:
            ceiling /= over * 1.005
            continue
        if -loudness.decibels(least) > MOST_LIMITED:
            break
        middle = sum(result) / len(result)
        return array.array("h", [round((s - middle * (s != 0)) * 32767) for s in result]), -loudness.decibels(least)
    raise ValueError(f"is too sharp: {-loudness.decibels(least):.1f} dB are limited, {off:+.1f} LU are missing")
