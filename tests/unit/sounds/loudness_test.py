"""The loudness meter reads what ITU-R BS.1770 and EBU R 128 say that it reads; the limiter keeps what it promises."""

import faulthandler
import math
import random
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "assets" / "sounds"))

import loudness  # noqa: E402
import mastering  # noqa: E402

WATCHDOG_SECONDS = 280


def sine(frequency, seconds, level, rate=48000, phase=0.0):
    """level: of its peak, in dBFS; phase in degrees."""
    amplitude, start = 10 ** (level / 20), math.radians(phase)
    return [amplitude * math.sin(2 * math.pi * frequency * i / rate + start) for i in range(round(seconds * rate))]


def swelling(sound, edge=400):
    """Without the jumps at both ends, which have overtones of their own."""
    share = [min(1.0, i / edge, (len(sound) - 1 - i) / edge) for i in range(len(sound))]
    return [s * (0.5 - 0.5 * math.cos(math.pi * part)) for s, part in zip(sound, share)]


class Integrated(unittest.TestCase):
    def test_a_sine_in_one_channel_and_in_two(self):
        # A channel counts once: the sine at full scale reads -3.01 in one, and 0.0 in both.
        for level, one, two in ((0, -3.01, 0.0), (-20, -23.01, -20.0), (-23, -26.01, -23.0), (-33, -36.01, -33.0)):
            tone = sine(997, 1, level)
            with self.subTest(level=level):
                self.assertAlmostEqual(loudness.integrated([tone], 48000), one, delta=0.02)
                self.assertAlmostEqual(loudness.integrated([tone, tone], 48000), two, delta=0.02)
                self.assertAlmostEqual(loudness.integrated([tone, [0.0] * len(tone)], 48000), one, delta=0.02)

    def test_at_every_rate(self):
        for rate in (22050, 32000, 44100, 48000, 96000):
            with self.subTest(rate=rate):
                self.assertAlmostEqual(loudness.integrated([sine(997, 1, -20, rate)], rate), -23.01, delta=0.05)

    def test_the_weighting(self):
        # In decibels, worked out from the coefficients that the standard gives for 48 kHz.
        for frequency, gain in ((25, -10.39), (38, -6.06), (100, -1.13), (997, 0.69), (2000, 3.07), (10000, 4.04)):
            for rate in (22050, 48000):
                with self.subTest(frequency=frequency, rate=rate):
                    read = loudness.integrated([sine(frequency, 2, -20, rate)], rate)
                    self.assertAlmostEqual(read, -23.01 - 0.69 + gain, delta=0.1)

    def test_quiet_blocks_are_left_out(self):
        # The programmes with which EBU Tech 3341 tries a meter's gates, in both channels.
        rate = 22050
        for parts, expected in (
                (((10, -36), (30, -23), (10, -36)), -23.0),
                (((5, -72), (5, -36), (30, -23), (5, -36), (5, -72)), -23.0),
                (((20, -26), (20.1, -20), (20, -26)), -23.0)):
            with self.subTest(parts=parts):
                programme = [sample for seconds, level in parts for sample in sine(1000, seconds, level, rate)]
                self.assertAlmostEqual(loudness.integrated([programme, programme], rate), expected, delta=0.1)

    def test_the_absolute_gate(self):
        rate = 22050
        faint = sine(997, 1, -68, rate)  # -71 LUFS
        self.assertEqual(loudness.integrated([faint], rate), -math.inf)
        self.assertAlmostEqual(loudness.integrated([faint, faint], rate), -68.0, delta=0.05)

    def test_silence_has_no_loudness(self):
        for seconds in (0, 0.1, 0.4, 2):
            self.assertEqual(loudness.integrated([[0.0] * round(seconds * 22050)], 22050), -math.inf)

    def test_what_is_shorter_than_a_block_is_measured_as_one_block(self):
        # Half a block, and half of it sounds: half its power.
        for seconds, expected in ((0.4, -3.01), (0.2, -6.02), (0.1, -9.03), (0.04, -13.01)):
            with self.subTest(seconds=seconds):
                self.assertAlmostEqual(loudness.integrated([sine(997, seconds, 0)], 48000), expected, delta=0.1)

    def test_only_whole_blocks_count(self):
        rate = 48000
        tone, loud = sine(997, 0.4, -20), sine(997, 0.09, 0)
        self.assertAlmostEqual(loudness.integrated([tone + loud], rate), -23.01, delta=0.1)


class TruePeak(unittest.TestCase):
    def test_a_sine_that_is_never_sampled_at_its_highest(self):
        # The tones with which EBU Tech 3341 tries a meter: half of full scale, read as -6.0 +0.2/-0.4 dBTP.
        for part, phase in ((4, 0), (4, 45), (6, 60), (8, 67.5)):
            with self.subTest(part=part, phase=phase):
                tone = swelling(sine(48000 / part, 0.1, -6.02, phase=phase))
                read = loudness.decibels(loudness.truePeak(tone))
                self.assertLess(read, -5.8)
                self.assertGreater(read, -6.4)
        sampled = max(abs(s) for s in sine(12000, 0.1, -6.02, phase=45))
        self.assertAlmostEqual(loudness.decibels(sampled), -9.03, delta=0.01)

    def test_reads_between_samples(self):
        tone = [math.sin(0.7 * i) for i in range(loudness.TAPS)]
        middle = loudness.TAPS // 2 - 1
        for place, weights in zip((0.25, 0.5, 0.75), loudness.INTERPOLATORS):
            value = sum(a * b for a, b in zip(tone, weights))
            self.assertAlmostEqual(value, math.sin(0.7 * (middle + place)), delta=0.002)

    def test_is_not_below_any_sample(self):
        rng = random.Random(1)
        for length in (0, 1, 5, 70, 500):
            samples = [rng.uniform(-1, 1) for _ in range(length)]
            self.assertGreaterEqual(loudness.truePeak(samples), max((abs(s) for s in samples), default=0.0))

    def test_finds_what_looking_everywhere_finds(self):
        rng = random.Random(2)
        samples = [rng.gauss(0, 0.1) for _ in range(600)]
        padded = [0.0] * loudness.TAPS + samples + [0.0] * loudness.TAPS
        everywhere = max(abs(sum(a * b for a, b in zip(padded[at:], weights)))
                         for at in range(len(padded) - loudness.TAPS) for weights in loudness.INTERPOLATORS)
        self.assertAlmostEqual(loudness.truePeak(samples), max(everywhere, max(map(abs, samples))), delta=1e-12)


class Mastering(unittest.TestCase):
    def loudnessAndPeak(self, sound):
        samples = [s / 32768 for s in mastering.mastered(sound)[0]]
        self.assertEqual(len(samples) % 2205, 0)
        return loudness.integrated([samples], 22050), loudness.decibels(loudness.truePeak(samples))

    def test_makes_everything_as_loud(self):
        for level in (-60, -20, 0, 12):
            read, peak = self.loudnessAndPeak(sine(440, 0.73, level, 22050))
            self.assertAlmostEqual(read, -18.0, delta=0.15)
            self.assertLess(peak, -1.0)

    def test_limits_peaks(self):
        sound = sine(440, 0.8, -20, 22050)
        for at in range(0, len(sound), 2205):
            for i in range(at, at + 30):
                sound[i] *= 6
        read, peak = self.loudnessAndPeak(sound)
        self.assertAlmostEqual(read, -18.0, delta=0.15)
        self.assertLess(peak, -1.0)

    def test_refuses_what_cannot_be_made_as_loud(self):
        clicks = [0.0] * 22050
        for at in range(100, 22050, 4410):
            clicks[at] = 1.0
        with self.assertRaisesRegex(ValueError, "too sharp"):
            mastering.mastered(clicks)
        with self.assertRaisesRegex(ValueError, "lasts 3.1"):
            mastering.mastered(sine(440, 3.05, -20, 22050))


if __name__ == "__main__":
    faulthandler.dump_traceback_later(WATCHDOG_SECONDS, exit=True)
    unittest.main(verbosity=2)
