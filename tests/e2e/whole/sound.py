"""What is heard: recordings taken apart, and compared with how the speech engine alone says a text."""

import array
import io
import math
import subprocess
import wave

QUIET = 500          # of 32,767: what is below is not heard
PAUSE_SECONDS = 0.5  # longer than any within an utterance
PARTS = 100          # in which loudness is given


def read(data):
    """The samples of a .wav file of one channel and 16 bits, and their rate in hertz."""
    with wave.open(io.BytesIO(data)) as file:
        return array.array("h", file.readframes(file.getnframes())), file.getframerate()


def utterances(samples, rate):
    """The parts of a recording with a pause after them."""
    found, begin, last = [], None, None
    for at, value in enumerate(samples):
        if abs(value) > QUIET:
            begin, last = at if begin is None else begin, at
        elif begin is not None and at - last > PAUSE_SECONDS * rate:
            found.append(samples[begin:last + 1])
            begin = None
    return found


def loudness(samples):
    """How loud it is in each of as many equal parts, from its first sound to its last, however fast it goes."""
    heard = [at for at, value in enumerate(samples) if abs(value) > QUIET]
    samples = samples[heard[0]:heard[-1] + 1]
    step = len(samples) / PARTS
    return [math.sqrt(sum(value * value for value in samples[int(part * step):int((part + 1) * step)]) / step)
            for part in range(PARTS)]


def likeness(one, other):
    """The correlation of two loudnesses: 1 where they go alike, near 0 where they have nothing to do with each other."""
    one, other = ([value - sum(values) / len(values) for value in values] for values in (one, other))
    both = sum(a * b for a, b in zip(one, other, strict=True))
    return both / math.sqrt(sum(a * a for a in one) * sum(b * b for b in other))


def spoken_alone(language, text):
    """What the speech engine says by itself; as `read` gives it."""
    return read(subprocess.run(["espeak-ng", "-v", language, "-z", "--stdin", "--stdout"], input=text.encode() + b"\n",
                               stdout=subprocess.PIPE, check=True).stdout)
