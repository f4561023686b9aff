"""The scheme "default": people's voices, and things as they sound."""

import math

from instruments import (BELL, SOFT_BELL, TIN, WOOD_BLOCK, bell, blown, bubble, burst, horn, pluck, struck, thump)
from scheme import scheme
from synthesis import (RATE, curve, driven, echoed, highPass, hiss, joined, lowPass, mixed, noise, note, resonance,
                       scaled, shaped, silence, sine)
from voices import breathOf, smack, sniffed, voice

SOUNDS, sound = scheme()

MAN, WOMAN, CHILD = 1.0, 1.17, 1.28  # how much higher the formants of smaller heads lie


def laughing(rng, syllables, vowel, size, tension, end=0.0, echo=0.16):
    """A row of "ha": of each breath, then voice that falls; syllables are (seconds, pitch, loudness)."""
    pitch, breath, loudness, vowels, tensions, t = [], [], [], [], [], 0.0
    for length, top, level in syllables:
        pitch += [(t, top * 1.02), (t + 0.4 * length, top * 1.10), (t + length * 0.98, top * 0.80)]
        breath += [(t, 0.97), (t + 0.26 * length, 0.6), (t + 0.40 * length, 0.06), (t + 0.72 * length, 0.12),
                   (t + length * 0.98, 0.97)]
        loudness += [(t, 0.22 * level), (t + 0.22 * length, 0.55 * level), (t + 0.45 * length, level),
                     (t + 0.68 * length, 0.7 * level), (t + length * 0.98, echo * level)]
        vowels += [(t, "uh"), (t + 0.4 * length, vowel), (t + 0.8 * length, vowel)]
        tensions += [(t, tension * 0.6), (t + 0.45 * length, tension), (t + length * 0.95, tension * 0.3)]
        t += length
    loudness[-1] = (t, end)
    return voice(t, pitch, vowels, rng, breath=breath, loudness=loudness, size=size, tension=tensions, jitter=0.012,
                 shimmer=0.1)


@sound("laugh")
def laugh(rng):
    out = laughing(rng, [(0.20, 330, 1.0), (0.18, 345, 0.95), (0.18, 322, 0.85), (0.18, 298, 0.75), (0.19, 272, 0.65),
                         (0.20, 248, 0.55), (0.23, 222, 0.42)], "a", WOMAN, 0.6)
    # And air for the next one.
    inward = voice(0.34, [(0, 330), (0.34, 420)], [(0, "uh"), (0.34, "ae")], rng, size=WOMAN,
                   breath=[(0, 1.0), (0.15, 0.85), (0.34, 0.95)],
                   loudness=[(0, 0), (0.2, 0.6), (0.3, 0.45), (0.34, 0)])
    return joined(out, silence(0.03), scaled(inward, 0.45))


@sound("evil-laugh")
def evilLaugh(rng):
    first = voice(0.36, [(0, 82), (0.36, 132)], [(0, "m"), (0.10, "u"), (0.36, "a")], rng, size=0.88, tension=0.7,
                  rough=0.25, loudness=[(0, 0), (0.1, 0.6), (0.28, 1), (0.36, 0)])
    rest = laughing(rng, [(0.27, 138, 1.0), (0.28, 130, 1.0), (0.30, 121, 0.95), (0.33, 110, 0.9), (0.44, 96, 0.85)],
                    "a", 0.88, 0.8)
    return echoed(joined(first, rest), 0.13, 0.42, 0.45)


@sound("haa")
def haa(rng):
    return voice(1.25, [(0, 175), (0.25, 235), (0.5, 215), (1.25, 125)], [(0, "uh"), (0.2, "a"), (1.25, "a")], rng,
                 size=1.05, tension=[(0, 0.3), (0.3, 0.7), (1.25, 0.2)],
                 breath=[(0, 1.0), (0.16, 0.7), (0.26, 0.06), (0.75, 0.15), (1.25, 0.9)],
                 loudness=[(0, 0), (0.08, 0.4), (0.26, 1), (0.7, 0.7), (1.25, 0)])


@sound("ohhh")
def ohhh(rng):
    return voice(1.45, [(0, 190), (0.3, 285), (0.7, 250), (1.45, 150)],
                 [(0, "uh"), (0.18, "o"), (1.0, "o"), (1.45, "u")], rng, size=1.12,
                 tension=[(0, 0.4), (0.3, 0.6), (1.45, 0.2)], breath=[(0, 0.3), (0.2, 0.05), (0.9, 0.08), (1.45, 0.5)],
                 vibrato=([(0, 0), (0.5, 0.005), (1.45, 0.015)], 5.2),
                 loudness=[(0, 0), (0.16, 0.9), (0.6, 1), (1.45, 0)])


@sound("gasp")
def gasp(rng):
    """Air drawn in fast, with some voice to it at the height of the fright, then held."""
    inward = voice(0.62, [(0, 250), (0.3, 330), (0.55, 520), (0.62, 560)],
                   [(0, "uh"), (0.25, "uh"), (0.5, "a"), (0.62, "ae")], rng,
                   size=[(0, WOMAN), (0.62, WOMAN * 1.08)], tension=0.45, jitter=0.03, shimmer=0.15,
                   breath=[(0, 1.0), (0.22, 0.95), (0.42, 0.62), (0.55, 0.55), (0.6, 0.9), (0.62, 1.0)],
                   loudness=[(0, 0), (0.2, 0.4), (0.42, 0.9), (0.56, 1), (0.6, 0.35), (0.62, 0)])
    let_go = voice(0.4, [(0, 290), (0.1, 320), (0.4, 215)], [(0, "a"), (0.4, "uh")], rng, size=WOMAN, tension=0.25,
                   breath=[(0, 0.9), (0.08, 0.35), (0.25, 0.6), (0.4, 1)],
                   loudness=[(0, 0), (0.07, 0.45), (0.2, 0.3), (0.4, 0)])
    return joined(inward, silence(0.16), let_go)


@sound("sigh")
def sigh(rng):
    inward = breathOf(0.5, [(0, "u"), (0.5, "uh")], rng, [(0, 0), (0.35, 0.55), (0.46, 0.4), (0.5, 0)], WOMAN)
    out = voice(1.6, [(0, 265), (0.16, 285), (0.5, 225), (1.0, 178), (1.6, 150)],
                [(0, "a"), (0.35, "a"), (0.9, "uh"), (1.6, "u")], rng, size=WOMAN, jitter=0.012,
                tension=[(0, 0.45), (0.5, 0.15), (1.6, 0.0)],
                breath=[(0, 0.95), (0.12, 0.30), (0.45, 0.40), (0.85, 0.75), (1.15, 1.0), (1.6, 1.0)],
                loudness=[(0, 0), (0.14, 1), (0.5, 0.75), (1.0, 0.5), (1.6, 0)])
    return joined(inward, silence(0.05), out)


@sound("sniff")
def sniff(rng):
    def one(length, level, wet):
        return sniffed(length, rng, [(0, 0), (length * 0.35, 0.45 * level), (length * 0.88, level), (length, 0)], WOMAN,
                       wet)
    whimper = voice(0.5, [(0, 300), (0.12, 365), (0.3, 320), (0.5, 235)],
                    [(0, "m"), (0.12, "uh"), (0.32, "uh"), (0.42, "m")], rng, size=WOMAN, nose=0.6, tension=0.6,
                    jitter=0.02, vibrato=(0.03, 7.5), breath=[(0, 0.6), (0.1, 0.2), (0.35, 0.3), (0.5, 0.9)],
                    loudness=[(0, 0), (0.12, 1), (0.3, 0.7), (0.5, 0)])
    return joined(one(0.20, 0.8, 0.2), silence(0.09), one(0.18, 0.85, 0.3), silence(0.10), one(0.42, 1.0, 0.5),
                  silence(0.08), scaled(whimper, 0.9))


@sound("yawn")
def yawn(rng):
    """The mouth opens wide over drawn-in air, a long voice follows that rises and sinks, and the lips close."""
    inward = voice(0.75, [(0, 140), (0.75, 210)], [(0, "u"), (0.3, "uh"), (0.75, "a")], rng,
                   size=[(0, 1.0), (0.75, 1.08)], breath=[(0, 1.0), (0.55, 0.97), (0.75, 0.8)], tension=0.2,
                   loudness=[(0, 0), (0.3, 0.3), (0.7, 0.55), (0.75, 0.5)])
    out = voice(1.85, [(0, 180), (0.3, 258), (0.6, 236), (1.1, 165), (1.6, 104), (1.85, 90)],
                [(0, "a"), (0.7, "a"), (1.15, "o"), (1.5, "uh"), (1.7, "m"), (1.85, "m")],
                rng, size=[(0, 1.08), (0.7, 1.08), (1.3, 0.98), (1.85, 0.98)],
                jitter=0.012, tension=[(0, 0.3), (0.3, 0.55), (1.2, 0.3), (1.85, 0.1)],
                vibrato=([(0, 0), (0.4, 0.012), (1.85, 0.012)], 4.3),
                breath=[(0, 0.75), (0.2, 0.22), (1.0, 0.22), (1.5, 0.45), (1.85, 0.7)],
                nose=[(0, 0.1), (1.4, 0.3), (1.7, 0.9), (1.85, 0.9)],
                loudness=[(0, 0.5), (0.25, 1), (0.8, 0.95), (1.3, 0.7), (1.7, 0.3), (1.85, 0)])
    return joined(inward, out)


@sound("cry")
def cry(rng):
    """Three wails that break, and between them air drawn in by jerks."""
    def wail(length, top, level):
        return scaled(voice(length, [(0, top * 0.70), (length * 0.22, top), (length * 0.5, top * 0.95),
                                     (length * 0.8, top * 0.76), (length, top * 0.60)],
                            [(0, "u"), (length * 0.2, "ae"), (length * 0.65, "a"), (length, "uh")], rng,
                            size=CHILD, vibrato=([(0, 0.01), (length * 0.5, 0.03), (length, 0.045)], 7.2),
                            jitter=0.018, shimmer=0.14, tension=[(0, 0.4), (length * 0.3, 0.85), (length, 0.4)],
                            rough=[(0, 0), (length * 0.55, 0.1), (length * 0.8, 0.5), (length, 0.3)], nose=0.25,
                            breath=[(0, 0.5), (length * 0.15, 0.08), (length * 0.7, 0.12), (length, 0.8)],
                            loudness=[(0, 0), (length * 0.2, 0.95), (length * 0.5, 1), (length * 0.8, 0.6),
                                      (length, 0)]), level)

    def sob(pitch):
        return voice(0.13, [(0, pitch), (0.13, pitch * 1.3)], [(0, "uh"), (0.13, "ae")], rng, size=CHILD,
                     breath=[(0, 1.0), (0.06, 0.7), (0.13, 1.0)], loudness=[(0, 0), (0.08, 0.3), (0.13, 0)])
    return joined(wail(0.72, 470, 1.0), sob(390), silence(0.02), sob(420), wail(0.62, 450, 0.9), sob(380),
                  silence(0.02), sob(400), silence(0.02), wail(0.66, 405, 0.75))


@sound("angry")
def angry(rng):
    return driven(voice(1.3, [(0, 96), (0.3, 128), (0.8, 118), (1.3, 86)],
                        [(0, "er"), (0.5, "er"), (0.9, "a"), (1.3, "uh")], rng, size=0.95, tension=0.95, rough=0.7,
                        jitter=0.03, shimmer=0.2, breath=[(0, 0.35), (0.2, 0.12), (1.0, 0.15), (1.3, 0.6)],
                        loudness=[(0, 0), (0.12, 0.7), (0.75, 1), (1.3, 0)]), 1.0)


@sound("yehaa")
def yehaa(rng):
    return echoed(voice(1.45, [(0, 300), (0.30, 440), (0.42, 470), (0.56, 640), (0.9, 590), (1.45, 300)],
                        [(0, "i"), (0.20, "i"), (0.34, "e"), (0.46, "ae"), (0.6, "a"), (1.45, "a")], rng,
                        size=1.12, tension=0.85, breath=[(0, 0.2), (0.05, 0.05), (0.34, 0.1), (0.41, 0.65),
                                                         (0.48, 0.08), (1.1, 0.1), (1.45, 0.6)],
                        vibrato=([(0, 0), (0.6, 0.004), (1.2, 0.015)], 6),
                        loudness=[(0, 0), (0.06, 0.7), (0.3, 0.8), (0.40, 0.35), (0.55, 1), (1.0, 0.85), (1.45, 0)]),
                  0.09, 0.22, 0.25)


@sound("boo")
def boo(rng):
    ghost = voice(1.5, [(0, 170), (0.3, 330), (0.8, 290), (1.5, 165)], [(0, "m"), (0.06, "u"), (1.5, "u")],
                  rng, size=1.08, tension=0.55, breath=[(0, 0.1), (0.3, 0.15), (1.5, 0.6)],
                  vibrato=([(0, 0), (0.3, 0.03), (1.5, 0.05)], 6.2),
                  loudness=[(0, 0), (0.05, 0.5), (0.12, 0.9), (0.4, 1), (0.9, 0.8), (1.5, 0)])
    return echoed(ghost, 0.17, 0.45, 0.6)


@sound("burp")
def burp(rng):
    """The gullet's slack fold: slow, ragged pulses."""
    length = 0.95
    pitch = [(0.05 * i, 82 - 26 * (i / 19) + rng.uniform(-9, 9)) for i in range(20)]
    return driven(voice(length, pitch, [(0, "uh"), (0.12, "o"), (0.35, "a"), (0.6, "er"), (length, "o")], rng,
                        size=0.95, jitter=0.10, shimmer=0.5, rough=[(0, 0.3), (0.4, 0.6), (length, 0.9)],
                        tension=0.55, breath=[(0, 0.5), (0.05, 0.25), (0.6, 0.3), (length, 0.6)],
                        loudness=[(0, 0), (0.025, 0.9), (0.15, 1), (0.4, 0.75), (0.55, 0.95), (0.75, 0.6),
                                  (length, 0)]), 1.2)


@sound("kiss")
def kiss(rng):
    hum = voice(0.34, [(0, 215), (0.34, 330)], "m", rng, size=WOMAN, nose=0.7, tension=0.7,
                loudness=[(0, 0), (0.12, 0.75), (0.3, 0.9), (0.34, 0.1)])
    after = voice(0.42, [(0, 345), (0.1, 330), (0.42, 215)], [(0, "u"), (0.12, "a"), (0.42, "uh")],
                  rng, size=WOMAN, tension=0.3, breath=[(0, 0.25), (0.15, 0.25), (0.42, 0.95)],
                  loudness=[(0, 0), (0.06, 0.9), (0.16, 0.8), (0.42, 0)])
    return mixed((0.0, hum, 0.55), (0.28, smack(rng, WOMAN), 0.9), (0.47, after, 0.6))


def hugged(rng, low, high, size):
    cloth = hiss(0.6, [(0, 900), (0.6, 1800)], 1600, rng, [(0, 0), (0.2, 0.35), (0.42, 0.2), (0.6, 0)])
    hum = voice(1.1, [(0, low), (0.4, high), (1.1, low * 0.85)], [(0, "m"), (0.75, "m"), (0.9, "uh"), (1.1, "uh")], rng,
                size=size, nose=[(0, 0.7), (0.75, 0.7), (0.9, 0.3), (1.1, 0.3)], tension=0.75, vibrato=(0.01, 5),
                breath=[(0, 0.1), (0.7, 0.1), (1.1, 0.9)],
                loudness=[(0, 0), (0.2, 0.8), (0.5, 1), (1.1, 0)])
    squeeze = voice(0.2, [(0, high), (0.2, high * 1.25)], [(0, "uh"), (0.2, "m")], rng, size=size, tension=0.8,
                    rough=0.3, loudness=[(0, 0), (0.1, 0.5), (0.2, 0)])
    return mixed((0.0, cloth, 0.6), (0.16, hum, 1.0), (0.1, squeeze, 0.6))


@sound("boy_hug")
def boyHug(rng):
    return mixed(hugged(rng, 112, 150, MAN), (0.8, bell(0.6, note("G4"), SOFT_BELL, 0.2), 0.20))


@sound("girl_hug")
def girlHug(rng):
    return mixed(hugged(rng, 215, 310, WOMAN), (0.8, bell(0.6, note("G5"), SOFT_BELL, 0.2), 0.20))


@sound("cat")
def cat(rng):
    return voice(0.95, [(0, 450), (0.18, 640), (0.45, 680), (0.95, 410)],
                 [(0, "m"), (0.10, "i"), (0.35, "ae"), (0.6, "a"), (0.95, "u")], rng, size=1.45, tension=0.8,
                 breath=[(0, 0.1), (0.6, 0.08), (0.95, 0.5)], vibrato=([(0, 0), (0.95, 0.015)], 7), rough=0.08,
                 nose=[(0, 0.9), (0.12, 0.5), (0.95, 0.3)],
                 loudness=[(0, 0), (0.08, 0.45), (0.3, 1), (0.6, 0.85), (0.95, 0)])


@sound("dog")
def dog(rng):
    def bark(pitch, level):
        return scaled(driven(voice(0.24, [(0, pitch * 0.7), (0.05, pitch * 1.3), (0.12, pitch * 1.1),
                                          (0.24, pitch * 0.5)], [(0, "u"), (0.05, "a"), (0.14, "a"), (0.24, "u")],
                                   rng, size=0.92, tension=0.9, rough=0.45, jitter=0.05, shimmer=0.2,
                                   breath=[(0, 0.6), (0.03, 0.25), (0.12, 0.3), (0.24, 0.8)],
                                   loudness=[(0, 0), (0.025, 1), (0.12, 0.75), (0.24, 0)]), 1.6), level)
    return echoed(joined(bark(290, 1.0), silence(0.1), bark(310, 1.0), silence(0.16), bark(275, 0.95)), 0.05, 0.25,
                  0.15)


@sound("snore")
def snore(rng):
    flutter = voice(1.15, [(0, 24), (0.3, 31), (1.15, 37)], [(0, "er"), (0.6, "uh"), (1.15, "er")],
                    rng, size=0.9, nose=0.6, breath=0.62, tension=0.7, jitter=0.06, shimmer=0.4,
                    loudness=[(0, 0), (0.3, 0.6), (1.0, 1), (1.15, 0)])
    rattle = curve([(0, 0), (0.2, 1), (1.15, 1)], len(flutter))
    air = hiss(1.15, [(0, 700), (1.15, 1250)], 600, rng, [(0, 0), (0.35, 0.5), (1.0, 1), (1.15, 0)])
    air = [a * (1 - 0.85 * r * (0.5 + 0.5 * math.cos(2 * math.pi * (29 + 3 * i / RATE) * i / RATE)))
           for i, (a, r) in enumerate(zip(air, rattle))]
    out = mixed((0.0, breathOf(1.0, [(0, "u"), (1.0, "u")], rng, [(0, 0), (0.2, 1), (0.5, 0.7), (1.0, 0)], 1.0), 1.0),
                (0.0, hiss(1.0, [(0, 1250), (1.0, 800)], 90, rng, [(0, 0), (0.2, 1), (0.5, 0.6), (1.0, 0)]), 0.3))
    return joined(mixed((0.0, flutter, 0.8), (0.0, air, 0.8)), silence(0.08), scaled(out, 0.8))


@sound("whistle")
def whistle(rng):
    def blow(length, points):
        tone = sine(length, points)
        air = hiss(length, points, 260, rng)
        return shaped(mixed(tone, (0.0, air, 0.25), (0.0, hiss(length, 6000, 3500, rng), 0.05)),
                      [(0, 0), (0.05, 1), (length - 0.07, 0.85), (length, 0)])
    return joined(blow(0.42, [(0, 900), (0.3, 2200), (0.42, 2300)]), silence(0.07),
                  blow(0.62, [(0, 1000), (0.2, 1900), (0.62, 820)]))


@sound("slap")
def slap(rng):
    smacked = mixed(burst(0.25, 0.016, 1500, 1800, rng), (0.0, burst(0.25, 0.035, 700, 600, rng), 0.9),
                    (0.0, burst(0.1, 0.006, 4200, 3500, rng), 0.8), (0.0, thump(0.2, 220, 130, 0.03), 0.25))
    swish = hiss(0.14, [(0, 700), (0.14, 2600)], 900, rng, [(0, 0), (0.12, 0.22), (0.14, 0)])
    room = shaped(lowPass(noise(0.3, rng), 2500), [(0, 0.3), (0.06, 0.12), (0.3, 0)])
    return echoed(driven(mixed(scaled(swish, 0.5), (0.14, smacked, 2.2), (0.145, room, 0.7)), 1.6), 0.035, 0.35, 0.15)


@sound("run")
def run(rng):
    parts, at, step = [], 0.0, 0.165
    for number in range(10):
        heavy = 1.0 if number % 2 == 0 else 0.85
        sole = mixed(thump(0.12, 190 if number % 2 else 165, 85, 0.035),
                     (0.0, burst(0.12, 0.022, 1000 + 150 * (number % 2), 900, rng), 0.9),
                     (0.012, burst(0.1, 0.02, 2600, 1800, rng), 0.35))
        parts.append((at, driven(sole, 1.8), heavy * (1 - 0.05 * number)))
        at += step
        step *= 0.955
    pant = [(0.02 + 0.31 * i, breathOf(0.2, [(0, "uh"), (0.2, "a")], rng, [(0, 0), (0.08, 1), (0.2, 0)]), 0.12)
            for i in range(4)]
    return mixed(*parts, *pant)


@sound("ting")
def ting(rng):
    return mixed(bell(1.3, 2350, BELL, 0.38), (0.0, bell(1.3, 2357, BELL, 0.36), 0.6),
                 (0.0, burst(0.02, 0.003, 6000, 4000, rng), 0.3))


@sound("chock")
def chock(rng):
    knock = mixed(burst(0.14, 0.022, 950, 180, rng), (0.0, burst(0.14, 0.018, 1900, 260, rng), 0.6),
                  (0.0, thump(0.14, 260, 180, 0.03), 0.4))
    stab = mixed(horn(0.8, note("C3")), (0.0, horn(0.8, note("F#3")), 0.9), (0.0, horn(0.8, note("C4")), 0.5))
    return echoed(mixed((0.0, knock, 2.4), (0.16, knock, 2.4), (0.36, stab, 0.5),
                        (0.36, thump(0.5, 120, 60, 0.12), 0.8)), 0.07, 0.25, 0.2)


def heartbeat():
    """Two soft blows; the part above 100 Hz is what a small loudspeaker lets through."""
    def blow(start, end, decay):
        return mixed(thump(0.26, start, end, decay), (0.0, thump(0.26, start * 2.1, end * 2.2, decay * 0.8), 0.8),
                     (0.0, thump(0.26, start * 3.3, end * 3.2, decay * 0.6), 0.4))
    return lowPass(driven(mixed(blow(100, 58, 0.07), (0.2, blow(84, 50, 0.06), 0.8)), 1.8), 900)


@sound("heart")
def heart(rng):
    return joined(heartbeat(), silence(0.26), heartbeat(), silence(0.26), heartbeat())


@sound("broken_heart")
def brokenHeart(rng):
    shards = [(0.58 + abs(rng.gauss(0, 0.14)), bell(0.4, rng.uniform(1900, 5200), BELL, 0.09),
               rng.uniform(0.05, 0.2)) for _ in range(24)]
    crack = mixed(burst(0.25, 0.03, 3000, 3000, rng), (0.03, burst(0.25, 0.04, 4800, 3500, rng), 0.8))
    fall = shaped(blown(0.9, [(0, 520), (0.9, 170)], (0.3, 0.15), (0.01, 5)), [(0, 0), (0.05, 0.28), (0.9, 0)])
    return mixed((0.0, heartbeat(), 1.0), (0.58, crack, 0.8), (0.75, fall), *shards)


@sound("angel")
def angel(rng):
    choir = []
    for name, size in (("C4", 1.05), ("E4", 1.12), ("G4", 1.16), ("C5", 1.22)):
        for detune in (0.996, 1.004):
            choir.append((0.0, voice(1.9, note(name) * detune, [(0, "u"), (0.4, "a"), (1.9, "a")],
                                     rng, size=size, breath=0.10, tension=0.3,
                                     vibrato=([(0, 0), (0.5, 0.008), (1.9, 0.011)], 5 + rng.random()),
                                     loudness=[(0, 0), (0.5, 1), (1.2, 0.9), (1.9, 0)]), 0.3))
    harp = [(0.08 * i, pluck(1.2, note(name), rng, 0.4), 0.22)
            for i, name in enumerate(("C5", "E5", "G5", "B5", "C6", "E6", "G6"))]
    return echoed(mixed(*choir, *harp), 0.11, 0.35, 0.4)


@sound("devil")
def devil(rng):
    chord = mixed(*[(0.0, horn(1.6, note(name), 1.0, 0.012), 0.4) for name in ("C2", "F#2", "C3", "Eb3")])
    rumble = shaped(lowPass(noise(1.8, rng), 130), [(0, 0), (0.3, 2), (1.8, 0)])
    fire = [(rng.uniform(0, 1.7), burst(0.05, 0.006, rng.uniform(1500, 4500), 2000, rng),
             rng.uniform(0.1, 0.4)) for _ in range(45)]
    growl = laughing(rng, [(0.3, 84, 1.0), (0.32, 78, 1.0), (0.5, 68, 0.9)], "o", 0.78, 0.95)
    return mixed(chord, (0.0, rumble, 0.5), (0.35, driven(growl, 1.5), 0.9), *fire)


@sound("drink")
def drink(rng):
    parts, at = [], 0.0
    for number in range(4):
        top = 520 + 70 * number
        parts.append((at, bubble(0.11, 260, top)))
        parts.append((at + 0.08, bubble(0.09, top * 0.8, top * 1.25, 0.7)))
        parts.append((at, hiss(0.16, 620, 320, rng, [(0, 0), (0.05, 0.6), (0.16, 0)])))
        at += 0.24
    parts.append((at + 0.05, voice(0.62, [(0, 190), (0.12, 215), (0.62, 130)], [(0, "a"), (0.62, "uh")], rng, size=1.05,
                                   breath=[(0, 0.9), (0.1, 0.35), (0.3, 0.55), (0.62, 1)], tension=0.3,
                                   loudness=[(0, 0), (0.1, 0.8), (0.62, 0)])))
    return mixed(*parts)


@sound("coffee")
def coffee(rng):
    length = 1.35
    stream = shaped(mixed(hiss(length, [(0, 620), (length, 1500)], 420, rng),
                          (0.0, hiss(length, [(0, 1900), (length, 3300)], 1200, rng), 0.5)),
                    [(0, 0), (0.1, 0.8), (length - 0.15, 0.9), (length, 0)])
    drops = []
    for _ in range(34):
        at = rng.uniform(0.05, length - 0.1)
        base = 500 + 700 * at / length + rng.uniform(-120, 200)
        drops.append((at, bubble(0.05, base, base * 1.5), rng.uniform(0.1, 0.35)))
    clink = mixed(bell(0.5, 2900, decay=0.09), (0.0, bell(0.5, 3730, decay=0.07), 0.7))
    return mixed(stream, *drops, (length + 0.12, clink, 0.6), (length + 0.3, clink, 0.35))


@sound("gift")
def gift(rng):
    rustle = [(rng.uniform(0, 0.55), burst(0.06, 0.012, rng.uniform(2500, 6500), 3000, rng),
               rng.uniform(0.15, 0.6)) for _ in range(40)]
    fanfare = [(0.72, horn(0.16, note("G4")), 0.3)]
    fanfare += [(0.9, horn(0.75, note(name)), 0.26) for name in ("C4", "E4", "G4", "C5")]
    glitter = [(0.92 + 0.05 * i, bell(0.6, note(name), decay=0.15), 0.13)
               for i, name in enumerate(("C6", "E6", "G6", "C7", "E7"))]
    return mixed(*rustle, *fanfare, *glitter)


@sound("flower")
def flower(rng):
    harp = [(0.09 * i, pluck(1.1, note(name), rng, 0.35), 0.6 - 0.03 * i)
            for i, name in enumerate(("F4", "A4", "C5", "E5", "F5", "A5", "C6"))]
    return echoed(mixed(*harp, (0.66, bell(0.9, note("F6"), decay=0.25), 0.16)), 0.09, 0.3, 0.3)


@sound("wilted-flower")
def wiltedFlower(rng):
    parts, at = [], 0.0
    for name, length in (("A4", 0.28), ("G4", 0.28), ("F4", 0.3), ("D4", 0.85)):
        f = note(name)
        bend = [(0, f), (length * 0.5, f), (length, f * (0.80 if name == "D4" else 0.97))]
        tone = horn(length, bend, 0.8, 0.02 if name == "D4" else 0.006)
        parts.append((at, resonance(tone, [(0, 500), (length * 0.4, 1100), (length, 450)], 700)))
        at += length * 0.98
    return mixed(*parts)


@sound("birthday")
def birthday(rng):
    parts = []
    tune = (("G4", 0.0, 0.16), ("C5", 0.18, 0.16), ("E5", 0.36, 0.16), ("D5", 0.54, 0.16), ("F5", 0.72, 0.30),
            ("E5", 1.05, 0.14), ("G5", 1.2, 0.75))
    for name, at, length in tune:
        parts.append((at, horn(length, note(name)), 0.4))
        parts.append((at, bell(0.5, note(name) * 2, decay=0.12), 0.18))
    parts += [(1.2, horn(0.75, note(name), 0.8), 0.22) for name in ("C4", "E4", "C5")]
    blower = shaped(horn(0.55, [(0, 330), (0.12, 470), (0.4, 470), (0.55, 300)], 1.4), [(0, 0), (0.05, 1), (0.55, 0)])
    parts.append((1.55, blower, 0.22))
    parts += [(rng.uniform(1.2, 2.0), burst(0.06, 0.008, rng.uniform(3000, 7000), 3000, rng), 0.2) for _ in range(20)]
    return mixed(*parts)


@sound("email")
def email(rng):
    swish = hiss(0.34, [(0, 900), (0.2, 4200), (0.34, 2600)], 1200, rng, [(0, 0), (0.18, 0.9), (0.34, 0)])
    return mixed((0.0, swish, 0.7), (0.3, bell(0.7, note("E5"), decay=0.2), 0.5),
                 (0.46, bell(0.9, note("B5"), decay=0.28), 0.5))


@sound("MSN")
def messenger(rng):
    return echoed(mixed((0.0, bell(0.5, note("D5"), SOFT_BELL, 0.2), 0.8),
                        (0.13, bell(0.5, note("A5"), SOFT_BELL, 0.2), 0.8),
                        (0.26, bell(0.9, note("F#5"), SOFT_BELL, 0.3), 0.9)), 0.08, 0.25, 0.2)


@sound("ring")
def ring(rng):
    def burr(length):
        blow = mixed(bell(0.12, 1180, decay=0.06), (0.0, bell(0.12, 1490, decay=0.06), 0.8))
        strokes = [(i / 24, blow, 0.8 + 0.2 * (i % 2)) for i in range(int(length * 24))]
        return mixed(*strokes,
                     (length, mixed(bell(0.4, 1180, decay=0.13), (0.0, bell(0.4, 1490, decay=0.11), 0.8)), 0.8))
    return joined(burr(0.55), silence(0.05), burr(0.55))


@sound("camera")
def camera(rng):
    """The mirror goes up, the curtain runs, the mirror comes down, and the motor takes the film on."""
    def clack(bright, body):
        return mixed(burst(0.08, 0.007, bright, 2500, rng), (0.0, burst(0.08, 0.016, 900, 500, rng), 0.9),
                     (0.0, struck(0.08, body, TIN, 0.014, rng), 0.25))
    motor = mixed((0.0, blown(0.55, [(0, 150), (0.12, 330), (0.48, 315), (0.55, 210)],
                              (0.8, 0.6, 0.5, 0.4, 0.3, 0.25, 0.2)), 0.22),
                  (0.0, blown(0.55, [(0, 900), (0.12, 1990), (0.48, 1890), (0.55, 1260)], (0.4, 0.2)), 0.07),
                  (0.0, highPass(noise(0.55, rng), 2500), 0.08))
    motor = shaped(motor, [(0, 0), (0.06, 1), (0.48, 1), (0.55, 0)])
    shutter = driven(mixed((0.0, clack(3800, 700), 1.4), (0.05, clack(2600, 520), 1.7), (0.10, clack(4800, 830), 1.0)),
                     1.5)
    return mixed((0.0, shutter, 0.9), (0.2, motor, 0.55), (0.75, clack(2200, 600), 0.6), (0.81, silence(0.05)))


@sound("clock")
def clock(rng):
    def tick(frequency):
        return mixed(struck(0.2, frequency, WOOD_BLOCK, 0.022, rng, 0.8),
                     (0.0, burst(0.2, 0.035, frequency * 0.42, 120, rng), 1.2),
                     (0.0, burst(0.03, 0.003, 5200, 3000, rng), 0.6))
    beats = [(0.3 * i, driven(tick(1850 if i % 2 == 0 else 1380), 1.4), 1.0) for i in range(6)]
    return echoed(mixed(*beats), 0.03, 0.3, 0.15)


@sound("star")
def star(rng):
    tones = [(0.065 * i, bell(0.9, note(name), decay=0.2), 0.4 + 0.03 * i)
             for i, name in enumerate(("C6", "D6", "E6", "G6", "A6", "C7", "D7", "E7"))]
    glitter = [(0.4 + rng.uniform(0, 0.8), bell(0.4, rng.uniform(4000, 7500), decay=0.08),
                rng.uniform(0.04, 0.12)) for _ in range(16)]
    return mixed(*tones, *glitter)


@sound("light")
def light(rng):
    click = mixed(burst(0.05, 0.003, 2900, 2000, rng), (0.0, burst(0.06, 0.010, 1200, 400, rng), 0.8))
    glow = mixed(*[(0.0, shaped(sine(1.0, note(name)), [(0, 0), (0.25, 1), (0.5, 0.6), (1.0, 0)]), 0.12)
                   for name in ("E5", "G#5", "B5")])
    return mixed((0.0, click, 1.8), (0.08, click, 1.0), (0.12, glow), (0.16, bell(1.0, note("E6"), decay=0.3), 0.4))


@sound("bat")
def bat(rng):
    parts = []
    for number in range(13):
        flap = shaped(lowPass(noise(0.085, rng), 700), [(0, 0), (0.025, 1), (0.085, 0)])
        parts.append((number * 0.1 + rng.uniform(0, 0.01), flap, 2.2 * (1 - abs(number - 6) / 10)))
    for at in (0.22, 0.33, 0.62, 0.72, 0.80, 1.08):
        top = rng.uniform(5200, 6800)
        parts.append((at, shaped(sine(0.06, [(0, top * 0.75), (0.02, top), (0.06, top * 0.7)]),
                                 [(0, 0), (0.01, 1), (0.06, 0)]), 0.4))
    return mixed(*parts)


@sound("music-note")
def musicNote(rng):
    tones = (("G4", 0.0), ("B4", 0.17), ("D5", 0.34), ("E5", 0.51), ("D5", 0.77), ("G5", 0.94))
    return echoed(mixed(*[(at, pluck(1.0, note(name), rng, 0.7, 0.997), 0.7) for name, at in tones],
                        (0.0, pluck(1.4, note("G3"), rng, 0.5, 0.998), 0.6),
                        (0.94, pluck(1.0, note("D4"), rng, 0.5), 0.4)), 0.06, 0.2, 0.15)


@sound("film_strip")
def filmStrip(rng):
    parts = []
    for number in range(28):
        click = mixed(burst(0.05, 0.006, 3300, 2500, rng), (0.012, burst(0.05, 0.010, 1300, 600, rng), 0.9))
        parts.append((number / 18, click, 0.9 + 0.1 * rng.random()))
    whirr = mixed((0.0, blown(1.65, [(0, 60), (0.25, 118), (1.65, 118)], (0.9, 0.8, 0.7, 0.6, 0.5, 0.4, 0.3)), 0.05),
                  (0.0, highPass(noise(1.65, rng), 1800), 0.06))
    return mixed(shaped(whirr, [(0, 0), (0.25, 1), (1.4, 1), (1.65, 0)]), *parts)
