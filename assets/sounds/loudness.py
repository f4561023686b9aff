"""How loud a sound is: loudness after ITU-R BS.1770 and EBU R 128, and its true peak.

Full scale is 1.0; loudness is in LUFS, peaks are in dBTP. A sound is a list of channels, each a list of samples; the
channels are front ones (one: mono, two: left and right), which all count once. So a sine of 997 Hz at full scale reads
-3.01 LUFS in one channel and 0.0 LUFS in two.

The standard averages over blocks of 400 ms, one begun every 100 ms, and leaves out those below -70 LUFS and then those
more than 10 LU below the mean of the rest. Only whole blocks count. A sound shorter than one block has no loudness by the
standard: here it is measured as one block, as if silence followed.
"""

import math

HOP_SECONDS = 0.1
HOPS_A_BLOCK = 4
OFFSET = -0.691        # so that the weighting's gain at 997 Hz cancels out
ABSOLUTE_GATE = -70.0  # LUFS
RELATIVE_GATE = -10.0  # LU

# The two stages of the K weighting at 48 kHz as the standard gives them (numerator, denominator without its leading 1),
# with the frequency at which each of them bends.
STANDARD_RATE = 48000
SHELF = ((1.53512485958697, -2.69169618940638, 1.19839281085285), (-1.69065929318241, 0.73248077421585), 1681.97)
HIGH_PASS = ((1.0, -2.0, 1.0), (-1.99004745483398, 0.99007225036621), 38.14)

OVERSAMPLING = 4
TAPS = 16  # of the interpolation at each of the places between two samples
BETA = 7.0  # of the Kaiser window over it
PEAK_BLOCK = 64


def decibels(ratio):
    return 20 * math.log10(ratio) if ratio > 0 else -math.inf


def atRate(stage, rate):
    """The stage at another rate: back to the analogue filter and on to the new rate by bilinear transforms, equal where
    it bends."""
    numerator, denominator, bend = stage
    k = math.tan(math.pi * bend / STANDARD_RATE) / math.tan(math.pi * bend / rate)

    def moved(a, b, c):
        # a + b/z + c/z2 with 1/z = (1 - s) / (1 + s), then s replaced by k s, then s = (1 - 1/z) / (1 + 1/z).
        constant, linear, square = a + b + c, 2 * (a - c) * k, (a - b + c) * k * k
        return constant + linear + square, 2 * (constant - square), constant - linear + square

    b0, b1, b2 = moved(*numerator)
    a0, a1, a2 = moved(1.0, *denominator)
    return b0 / a0, b1 / a0, b2 / a0, a1 / a0, a2 / a0


def hopEnergies(samples, rate):
    """The sum of squares of the weighted samples in each whole hop."""
    b0, b1, b2, a1, a2 = atRate(SHELF, rate)
    c0, c1, c2, d1, d2 = atRate(HIGH_PASS, rate)
    hop = round(rate * HOP_SECONDS)
    s1 = s2 = t1 = t2 = 0.0
    energies = []
    for begin in range(0, len(samples) - hop + 1, hop):
        energy = 0.0
        for x in samples[begin:begin + hop]:
            y = b0 * x + s1
            s1 = b1 * x - a1 * y + s2
            s2 = b2 * x - a2 * y
            z = c0 * y + t1
            t1 = c1 * y - d1 * z + t2
            t2 = c2 * y - d2 * z
            energy += z * z
        energies.append(energy)
    return energies


def blockPowers(channels, rate):
    hop = round(rate * HOP_SECONDS)
    size = hop * HOPS_A_BLOCK
    hops = None
    for samples in channels:
        if len(samples) < size:
            samples = [*samples, *[0.0] * (size - len(samples))]
        energies = hopEnergies(samples, rate)
        hops = energies if hops is None else [a + b for a, b in zip(hops, energies)]
    return [sum(hops[i:i + HOPS_A_BLOCK]) / size for i in range(len(hops) - HOPS_A_BLOCK + 1)]


def loudnessOf(power):
    return OFFSET + 10 * math.log10(power) if power > 0 else -math.inf


def integrated(channels, rate):
    """The integrated loudness in LUFS; minus infinity for silence."""
    powers = [power for power in blockPowers(channels, rate) if loudnessOf(power) > ABSOLUTE_GATE]
    if not powers:
        return -math.inf
    gate = loudnessOf(sum(powers) / len(powers)) + RELATIVE_GATE
    powers = [power for power in powers if loudnessOf(power) > gate]
    return loudnessOf(sum(powers) / len(powers))


def bessel(x):
    """The modified Bessel function of order 0."""
    term = total = 1.0
    number = 1
    while term > total * 1e-12:
        term *= (x / 2 / number) ** 2
        total += term
        number += 1
    return total


def interpolator(place):
    """What TAPS samples weigh in the value at this place (0 to 1) between the middle two of them."""
    weights = []
    for tap in range(TAPS):
        distance = tap - (TAPS // 2 - 1) - place
        window = bessel(BETA * math.sqrt(max(0.0, 1 - (distance / (TAPS / 2)) ** 2))) / bessel(BETA)
        weights.append(window * math.sin(math.pi * distance) / (math.pi * distance))
    total = sum(weights)
    return [weight / total for weight in weights]


INTERPOLATORS = [interpolator(place / OVERSAMPLING) for place in range(1, OVERSAMPLING)]
MOST_GAIN = max(sum(abs(weight) for weight in weights) for weights in INTERPOLATORS)


def truePeak(samples):
    """The highest of the samples and of what lies between them, full scale being 1."""
    peak = max((abs(sample) for sample in samples), default=0.0)
    padded = [*[0.0] * TAPS, *samples, *[0.0] * TAPS]
    blocks = []
    for begin in range(0, len(padded) - TAPS, PEAK_BLOCK):
        part = padded[begin:begin + PEAK_BLOCK + TAPS]
        blocks.append((max(max(part), -min(part)), begin))
    # From the loudest on, until nothing between lower samples can be higher than what was found.
    for highest, begin in sorted(blocks, reverse=True):
        if highest * MOST_GAIN <= peak:
            break
        for at in range(begin, min(begin + PEAK_BLOCK, len(padded) - TAPS)):
            part = padded[at:at + TAPS]
            if max(max(part), -min(part)) * MOST_GAIN > peak:
                for weights in INTERPOLATORS:
                    value = abs(sum([a * b for a, b in zip(part, weights)]))
                    if value > peak:
                        peak = value
    return peak
