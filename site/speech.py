"""What is said on the pages, by espeak-ng with the characters' voices, and the mixing of it with sounds."""

import array
import io
import math
import subprocess
import wave

from cast import CAST

RATE = 22050

# The voice that the characters' own server asks of espeak-ng: its middle pitch in hertz, settings an octave, variant.
MIDDLE_HERTZ = {"male": 99, "female": 188}
OCTAVE_STEPS = 70
DIALECT = {0x0409: "en-us", 0x0809: "en-gb"}
VARIANT = {"male": "+m3", "female": "+f2"}
LOUDEST = 0.8  # of full scale, for what is said


def seconds(samples):
    return len(samples) / RATE


def silence(length):
    return array.array("h", bytes(2 * int(length * RATE)))


def read_wave(data):
    """The samples of a sound. espeak-ng cannot tell its length when it begins to write one: what is there counts."""
    at = data.index(b"data") + 8
    with wave.open(io.BytesIO(data[:at])) as header:
        kind = (header.getframerate(), header.getnchannels(), header.getsampwidth())
    if kind != (RATE, 1, 2):
        raise ValueError(f"a sound of another kind: {kind}")
    return array.array("h", data[at:at + (len(data) - at) // 2 * 2])


def write_wave(path, samples):
    with wave.open(str(path), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(samples.tobytes())


def levelled(samples):
    loudest = max(map(abs, samples), default=0)
    factor = LOUDEST * 32767 / loudest if loudest else 1
    return array.array("h", (round(sample * factor) for sample in samples))


def said(text, voice, speed=None, pitch=None):
    arguments = ["espeak-ng", "-v", voice, "-b", "1", "-z", "--stdin", "--stdout"]
    arguments += ["-s", str(speed)] if speed else []
    arguments += ["-p", str(pitch)] if pitch is not None else []
    answer = subprocess.run(arguments, input=text.encode(), capture_output=True, check=True)
    samples = read_wave(answer.stdout)
    if not any(samples):
        raise ValueError(f"espeak-ng says nothing of {text!r} with the voice {voice}")
    return levelled(samples)


def said_by(character, text):
    voice = CAST[character].voice
    gender = voice["gender"]
    pitch = round(50 + math.log2(voice["pitch"] / MIDDLE_HERTZ[gender]) * OCTAVE_STEPS)
    return said(text, DIALECT[voice.get("language", 0x0409)] + VARIANT[gender], voice["speed"], max(0, min(99, pitch)))
