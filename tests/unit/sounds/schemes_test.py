"""The sound schemes as they were built: complete, in form, equally loud, clean, unlike one another; voices are voices."""

import array
import faulthandler
import functools
import itertools
import math
import operator
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import wave
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "assets" / "sounds"))

import loudness  # noqa: E402

WATCHDOG_SECONDS = 280
SOUNDS = Path(os.environ["MURMELIX_ASSETS"]) / "sounds"
SCHEMES = ("default", "toy box")

# What the emoticons play, letter for letter.
NAMES = ("laugh", "run", "whistle", "haa", "ohhh", "slap", "sniff", "sigh", "ting", "evil-laugh", "yawn", "cry",
         "chock", "gasp", "angry", "angel", "heart", "broken_heart", "boy_hug", "girl_hug", "drink", "gift", "flower",
         "wilted-flower", "yehaa", "boo", "burp", "birthday", "email", "kiss", "cat", "dog", "coffee", "ring", "camera",
         "snore", "MSN", "clock", "star", "light", "bat", "music-note", "devil", "film_strip", )
VOICES = ("laugh", "cry", "sniff", "sigh", "yawn", "burp", "gasp", "kiss")

RATE = 22050
FULL = 32768
SHORTEST = 7  # period that is looked for, in quarters of the rate: 787 Hz


@functools.cache
def read(scheme, name):
    with wave.open(str(SOUNDS / scheme / f"{name}.wav")) as file:
        form = (file.getnchannels(), file.getsampwidth(), file.getframerate(), file.getcomptype())
        samples = array.array("h", file.readframes(file.getnframes()))
    if sys.byteorder == "big":
        samples.byteswap()
    return form, samples


def power(samples):
    return sum(map(operator.mul, samples, samples)) / max(1, len(samples))


def contour(samples, steps=24):
    """How loud it is in each of as many equal parts from start to end, in dB below the loudest, down to -40."""
    last = max(i for i, s in enumerate(samples) if abs(s) > 100)
    size = last / steps
    parts = [power(samples[round(i * size):round((i + 1) * size)]) for i in range(steps)]
    return [max(-40.0, 10 * math.log10(part / max(parts)) if part else -40.0) for part in parts]


def bands(samples):
    """The share of the power in each of four bands."""
    edges, rest, powers = (300, 1100, 3500), [float(s) for s in samples], []
    for edge in edges:
        a, y, low = 1 - math.exp(-2 * math.pi * edge / RATE), 0.0, []
        for x in rest:
            y += a * (x - y)
            low.append(y)
        powers.append(power(low))
        rest = [x - y for x, y in zip(rest, low)]
    powers.append(power(rest))
    return [10 * math.log10(part / sum(powers)) for part in powers]


def pitches(samples):
    """Every 20 ms, where it sounds at all, (pitch in hertz, how periodic it is from 0 to 1)."""
    quarter = [sum(samples[i:i + 4]) / 4 for i in range(0, len(samples) - 3, 4)]
    rate, size, found = RATE / 4, 240, []
    powers = [power(quarter[at:at + size]) for at in range(0, len(quarter) - size, 110)]
    for number, at in enumerate(range(0, len(quarter) - size, 110)):
        if powers[number] < max(powers) * 0.004:
            continue
        frame = quarter[at:at + size]
        middle = sum(frame) / size
        frame = [s - middle for s in frame]
        energy = list(itertools.accumulate((s * s for s in frame), initial=0.0))
        likeness = []
        for lag in range(SHORTEST, 110):
            strength = math.sqrt(energy[size - lag] * (energy[size] - energy[lag])) or 1.0
            likeness.append(sum(map(operator.mul, frame, frame[lag:])) / strength)
        best = max(likeness)
        # The shortest period that is nearly as good as the best: its multiples are as good.
        lag = next(i for i, value in enumerate(likeness)
                   if value > 0.93 * best and value == max(likeness[max(0, i - 2):i + 3])) + SHORTEST
        found.append((rate / lag, best))
    return found


class Schemes(unittest.TestCase):
    def forEachSound(self, check):
        for scheme in SCHEMES:
            for name in NAMES:
                with self.subTest(scheme=scheme, name=name):
                    check(scheme, name)

    def test_the_schemes_are_complete_and_hold_nothing_else(self):
        self.assertEqual(sorted(entry.name for entry in SOUNDS.iterdir()), sorted(SCHEMES))
        self.assertEqual(len(set(NAMES)), 44)
        for scheme in SCHEMES:
            self.assertEqual(sorted(entry.name for entry in (SOUNDS / scheme).iterdir()),
                             sorted(f"{name}.wav" for name in NAMES))

    def test_form_and_length(self):
        def check(scheme, name):
            form, samples = read(scheme, name)
            self.assertEqual(form, (1, 2, 22050, "NONE"))
            self.assertGreaterEqual(len(samples), 0.3 * RATE)
            self.assertLessEqual(len(samples), 3 * RATE)
            # Nothing follows the samples, and the header says how many they are.
            self.assertEqual((SOUNDS / scheme / f"{name}.wav").stat().st_size, 44 + 2 * len(samples))
        self.forEachSound(check)

    def test_loudness_and_peak(self):
        def check(scheme, name):
            samples = [s / FULL for s in read(scheme, name)[1]]
            self.assertAlmostEqual(loudness.integrated([samples], RATE), -18.0, delta=1.0)
            self.assertLess(loudness.decibels(loudness.truePeak(samples)), -1.0)
        self.forEachSound(check)

    def test_no_clicks_no_holes_no_constant_part(self):
        def check(scheme, name):
            samples = read(scheme, name)[1]
            self.assertLess(abs(sum(samples) / len(samples)), 2, "a constant part")
            for edge in (samples[:3], samples[-3:]):
                self.assertLess(max(map(abs, edge)), 60, "a click")
            loudest = max(map(abs, samples))
            first = next(i for i, s in enumerate(samples) if abs(s) > 0.05 * loudest)
            self.assertLess(first, 0.2 * RATE, "late")
            longest = begin = 0
            for i, s in enumerate(samples):
                if abs(s) > 30:
                    longest, begin = max(longest, i - begin), i
            self.assertLess(longest, 0.4 * RATE, "a hole")
        self.forEachSound(check)

    def test_the_schemes_are_two(self):
        """Of no sound is one scheme's a copy of the other's, higher, lower, faster or slower: its course is another, or
        what it consists of."""
        for name in NAMES:
            one, other = (read(scheme, name)[1] for scheme in SCHEMES)
            course = sum(abs(a - b) for a, b in zip(contour(one), contour(other))) / 24
            colour = sum(abs(a - b) for a, b in zip(bands(one), bands(other))) / 4
            with self.subTest(name=name, course=round(course, 1), colour=round(colour, 1)):
                self.assertGreater(course + colour, 4.0)


class CheckScheme(unittest.TestCase):
    def check(self, folder):
        run = subprocess.run([sys.executable, "-B", str(ROOT / "assets" / "sounds" / "check_scheme.py"), str(folder)],
                             capture_output=True, text=True, timeout=WATCHDOG_SECONDS, check=False)
        rows = {line[:14].strip(): line[14:].strip() for line in run.stdout.splitlines()}
        return run.returncode, rows, run.stderr

    def test_finds_nothing_in_a_good_one(self):
        status, rows, errors = self.check(SOUNDS / "toy box")
        self.assertEqual((status, errors), (0, ""))
        self.assertEqual(sorted(rows), sorted(NAMES))
        self.assertRegex(rows["clock"], r"^\d\.\d\d s   22050 Hz   -18\.0 LUFS +-\d+\.\d dBTP$")

    def test_tells_what_is_wrong(self):
        def put(name, channels, width, rate, frame, seconds):
            with wave.open(str(folder / f"{name}.wav"), "wb") as file:
                file.setnchannels(channels)
                file.setsampwidth(width)
                file.setframerate(rate)
                file.writeframes(b"".join(frame(i) for i in range(int(rate * seconds))))

        def tone(amplitude, rate):
            return lambda i: struct.pack("<h", round(amplitude * math.sin(2 * math.pi * 997 / rate * i)))
        with tempfile.TemporaryDirectory() as directory:
            folder = Path(directory)
            shutil.copy(SOUNDS / "default" / "MSN.wav", folder / "msn.WAV")
            put("cat", 1, 2, 44100, tone(5827, 44100), 1)       # -15 dBFS
            put("dog", 2, 2, 48000, lambda i: 2 * tone(30000, 48000)(i), 0.5)  # -0.8 dBFS in both
            put("bat", 1, 1, 11025, lambda i: bytes([128 + round(29 * math.sin(i))]), 3.5)
            put("star", 1, 3, 24000, lambda i: tone(5827, 24000)(i).rjust(3, b"\0"), 0.4)
            put("moo", 1, 2, 22050, tone(5827, 22050), 0.5)
            put("kiss", 1, 2, 100, tone(5827, 100), 0.5)
            (folder / "ring.wav").write_bytes(b"RIFF")
            (folder / "heart.wav").write_bytes(b"")
            (folder / "clock.wav").write_bytes((SOUNDS / "default" / "clock.wav").read_bytes()[:50])
            status, rows, errors = self.check(folder)
        self.assertEqual((status, errors), (1, ""))
        self.assertRegex(rows["MSN"], "dBTP$")
        self.assertEqual(rows["cat"], "1.00 s   44100 Hz   -18.0 LUFS   -15.0 dBTP")
        self.assertEqual(rows["dog"],
                         "0.50 s   48000 Hz    -0.8 LUFS    -0.8 dBTP  is 17.2 LU too loud, has peaks above -1.0 dBTP")
        self.assertIn("is not 0.3 to 3.0 s long, has less than 22050 samples a second", rows["bat"])
        self.assertRegex(rows["star"], r"^0.40 s   24000 Hz   -18\.0 LUFS .* dBTP$")
        self.assertIn("is played by no emoticon", rows["moo"])
        self.assertEqual(rows["kiss"], "has 100 samples a second")
        self.assertIn("cannot be read", rows["ring"])
        self.assertIn("cannot be read", rows["heart"])
        self.assertIn("is not 0.3 to 3.0 s long", rows["clock"])
        self.assertEqual(rows["laugh"], "is missing")


class Voices(unittest.TestCase):
    def test_have_a_pitch_that_moves_and_breath(self):
        for scheme in SCHEMES:
            for name in VOICES:
                found = pitches(read(scheme, name)[1])
                voiced = sorted(pitch for pitch, periodic in found if periodic > 0.6)
                breath = sum(1 for _, periodic in found if periodic < 0.5)
                with self.subTest(scheme=scheme, name=name, voiced=len(voiced), breath=breath):
                    self.assertGreaterEqual(len(voiced), 6)
                    low, high = voiced[len(voiced) // 10], voiced[-1 - len(voiced) // 10]
                    self.assertGreater(low, 45)
                    self.assertGreater(12 * math.log2(high / low), 2.5, f"{low:.0f} to {high:.0f} Hz")
                    self.assertGreaterEqual(breath, 3)


if __name__ == "__main__":
    faulthandler.dump_traceback_later(WATCHDOG_SECONDS, exit=True)
    unittest.main(verbosity=2)
