"""The default sound scheme: one function a sound, in SOUNDS under the name of its file."""

import math

from synthesis import (RATE, bell, bubble, burst, echoed, glottis, highPass, horn, joined, lowPass, mixed, noise, note,
                       pluck, resonance, scaled, shaped, silence, sine, thump, voice)

SOUNDS = {}


def sound(name):
    def keep(function):
        SOUNDS[name] = function
        return function
    return keep


def syllable(rng, length, start, end, vowel="a", size=1.0, breath=0.05):
    """One "ha" of a laugh: breath, then voice."""
    return voice(length, [(0, start), (length, end)], vowel, rng, size=size,
                 breath=[(0, 0.9), (length * 0.18, 0.5), (length * 0.3, breath), (length * 0.8, breath), (length, 0.5)],
                 loudness=[(0, 0), (length * 0.12, 0.35), (length * 0.32, 1), (length * 0.6, 0.7), (length, 0)])


@sound("laugh")
def laugh(rng):
    parts, at = [], 0.0
    for number in range(7):
        pitch = (285, 310, 290, 268, 246, 222, 196)[number]
        length = 0.17 + 0.012 * number
        parts.append((at, syllable(rng, length, pitch * 1.06, pitch * 0.88, size=1.1), 1.0 - 0.08 * number))
        at += length + 0.012
    return mixed(*parts)


@sound("evil-laugh")
def evilLaugh(rng):
    parts, at = [(0.0, voice(0.34, [(0, 84), (0.34, 118)], [(0, "m"), (0.12, "u"), (0.34, "a")], rng, size=0.86,
                             jitter=0.03, loudness=[(0, 0), (0.1, 0.7), (0.26, 1), (0.34, 0)]))], 0.36
    for number in range(5):
        pitch = (128, 120, 112, 102, 90)[number]
        length = 0.23 + 0.03 * number
        parts.append((at, syllable(rng, length, pitch * 1.08, pitch * 0.84, size=0.86)))
        at += length + 0.02
    return echoed(mixed(*parts), 0.13, 0.5, 0.45)


@sound("haa")
def haa(rng):
    return voice(1.15, [(0, 170), (0.2, 225), (1.15, 130)], [(0, "uh"), (0.15, "a"), (1.15, "a")], rng, size=1.05,
                 breath=[(0, 1.0), (0.14, 0.6), (0.24, 0.06), (0.75, 0.12), (1.15, 0.8)],
                 loudness=[(0, 0), (0.08, 0.4), (0.24, 1), (0.7, 0.7), (1.15, 0)])


@sound("ohhh")
def ohhh(rng):
    return voice(1.35, [(0, 190), (0.3, 265), (0.7, 240), (1.35, 150)],
                 [(0, "uh"), (0.2, "o"), (1.0, "o"), (1.35, "u")], rng,
                 size=1.1, vibrato=(0.012, 5.2), loudness=[(0, 0), (0.18, 0.9), (0.6, 1), (1.35, 0)])


@sound("gasp")
def gasp(rng):
    air = voice(0.55, 200, [(0, "uh"), (0.3, "a"), (0.55, "ae")], rng, size=1.15, breath=1.0,
                loudness=[(0, 0), (0.22, 0.5), (0.42, 1), (0.5, 0.25), (0.55, 0)])
    tone = voice(0.5, [(0, 300), (0.5, 470)], [(0, "uh"), (0.5, "a")], rng, size=1.15, breath=0.35,
                 loudness=[(0, 0), (0.3, 0.35), (0.42, 0.5), (0.5, 0)])
    return mixed(scaled(air, 2.2), (0.03, tone, 0.5))


@sound("sigh")
def sigh(rng):
    inward = voice(0.45, 180, [(0, "u"), (0.45, "uh")], rng, breath=1.0, loudness=[(0, 0), (0.3, 0.35), (0.45, 0)])
    out = voice(1.3, [(0, 210), (0.3, 185), (1.3, 120)], [(0, "a"), (0.5, "uh"), (1.3, "u")], rng, size=1.05,
                breath=[(0, 0.8), (0.15, 0.35), (0.5, 0.5), (1.3, 0.95)],
                loudness=[(0, 0), (0.12, 1), (0.5, 0.6), (1.3, 0)])
    return joined(inward, silence(0.06), out)


@sound("sniff")
def sniff(rng):
    def one(length, top):
        hiss = resonance(noise(length, rng), [(0, 1500), (length, top)], 700)
        nose = resonance(noise(length, rng), [(0, 900), (length, 1300)], 250)
        return shaped(mixed(hiss, scaled(nose, 0.6)), [(0, 0), (length * 0.25, 0.5), (length * 0.85, 1), (length, 0)])
    return joined(one(0.22, 3000), silence(0.14), one(0.2, 3200), silence(0.2), one(0.34, 3600))


@sound("yawn")
def yawn(rng):
    return voice(2.1, [(0, 150), (0.5, 220), (0.9, 260), (1.5, 180), (2.1, 95)],
                 [(0, "uh"), (0.5, "a"), (1.1, "a"), (1.6, "o"), (2.1, "m")], rng, jitter=0.02,
                 breath=[(0, 0.95), (0.35, 0.6), (0.7, 0.15), (1.5, 0.2), (2.1, 0.8)],
                 loudness=[(0, 0), (0.4, 0.4), (0.8, 1), (1.4, 0.8), (2.1, 0)])


@sound("cry")
def cry(rng):
    parts, at = [], 0.0
    for length, top, level in ((0.55, 520, 1.0), (0.5, 500, 0.9), (0.62, 470, 0.85)):
        parts.append((at, voice(length, [(0, top * 0.72), (length * 0.3, top), (length, top * 0.62)],
                                [(0, "u"), (length * 0.25, "ae"), (length * 0.7, "a"), (length, "uh")], rng, size=1.3,
                                vibrato=(0.035, 8.5), jitter=0.02,
                                loudness=[(0, 0), (length * 0.2, 1), (length * 0.7, 0.7), (length, 0)]), level))
        at += length
        for _ in range(2):
            parts.append((at, shaped(resonance(noise(0.09, rng), [(0, 1400), (0.09, 2300)], 500),
                                     [(0, 0), (0.07, 1), (0.09, 0)]),
                          0.5))
            at += 0.1
    return mixed(*parts)


@sound("angry")
def angry(rng):
    length = 1.15
    growl = voice(length, [(0, 92), (0.5, 118), (length, 84)], [(0, "er"), (0.7, "er"), (length, "a")], rng, size=0.95,
                  jitter=0.12,
                  breath=0.15, loudness=[(0, 0), (0.12, 0.8), (0.75, 1), (length, 0)])
    rough = [0.55 + 0.45 * math.copysign(abs(math.sin(math.pi * 27 * i / RATE)) ** 0.6,
                                         math.sin(2 * math.pi * 27 * i / RATE))
             for i in range(len(growl))]
    return [g * r for g, r in zip(growl, rough)]


@sound("yehaa")
def yehaa(rng):
    first = voice(0.36, [(0, 290), (0.36, 430)], [(0, "i"), (0.36, "i")], rng, size=1.1,
                  loudness=[(0, 0), (0.06, 0.8), (0.3, 0.9), (0.36, 0.3)])
    second = voice(1.0, [(0, 470), (0.12, 610), (0.45, 560), (1.0, 300)], [(0, "e"), (0.12, "a"), (1.0, "a")], rng,
                   size=1.1,
                   breath=[(0, 0.7), (0.08, 0.06), (1.0, 0.1)], vibrato=(0.01, 6),
                   loudness=[(0, 0.2), (0.1, 1), (0.5, 0.9), (1.0, 0)])
    return echoed(joined(first, second), 0.09, 0.25, 0.25)


@sound("boo")
def boo(rng):
    lips = shaped(sine(0.07, 120), [(0, 0), (0.02, 0.5), (0.07, 0.2)])
    ghost = voice(1.35, [(0, 200), (0.25, 330), (0.8, 280), (1.35, 170)], [(0, "u"), (1.35, "u")], rng, size=1.05,
                  breath=0.12,
                  vibrato=(0.045, 6.2), loudness=[(0, 0.7), (0.1, 1), (0.8, 0.8), (1.35, 0)])
    return echoed(joined(lips, ghost), 0.17, 0.5, 0.6)


@sound("burp")
def burp(rng):
    length = 0.85
    pitch = [(i * 0.04, 78 + 26 * math.sin(i * 1.3) - i * 1.2 + rng.uniform(-9, 9)) for i in range(23)]
    return voice(length, pitch, [(0, "o"), (0.15, "er"), (0.5, "a"), (length, "o")], rng, size=0.92, jitter=0.22,
                 breath=0.1,
                 loudness=[(0, 0), (0.03, 1), (0.5, 0.9), (0.7, 0.5), (length, 0)])


@sound("kiss")
def kiss(rng):
    suck = shaped(resonance(noise(0.22, rng), [(0, 1800), (0.22, 3400)], 500), [(0, 0), (0.19, 0.4), (0.22, 0.6)])
    squeak = shaped(sine(0.12, [(0, 700), (0.12, 1900)]), [(0, 0), (0.1, 0.28), (0.12, 0.1)])
    pop = mixed(thump(0.12, 900, 260, 0.02), burst(0.1, 0.012, 2600, 1500, rng))
    return mixed(suck, (0.1, squeak), (0.215, pop, 1.3), (0.3, silence(0.1)))


def hugged(rng, low, high, size):
    cloth = shaped(resonance(noise(0.55, rng), [(0, 900), (0.55, 1800)], 1400),
                   [(0, 0), (0.2, 0.16), (0.4, 0.1), (0.55, 0)])
    hum = voice(0.95, [(0, low), (0.35, high), (0.95, low * 0.88)], [(0, "m"), (0.95, "m")], rng, size=size,
                vibrato=(0.01, 5),
                loudness=[(0, 0), (0.2, 0.8), (0.45, 1), (0.95, 0)])
    return mixed(cloth, (0.18, hum, 1.0), (0.75, silence(0.5)))


@sound("boy_hug")
def boyHug(rng):
    return mixed(hugged(rng, 112, 148, 1.0), (0.7, bell(0.6, note("G4"), decay=0.2), 0.10))


@sound("girl_hug")
def girlHug(rng):
    return mixed(hugged(rng, 215, 300, 1.18), (0.7, bell(0.6, note("G5"), decay=0.2), 0.10))


@sound("cat")
def cat(rng):
    return voice(0.95, [(0, 430), (0.18, 640), (0.45, 690), (0.95, 400)],
                 [(0, "m"), (0.08, "i"), (0.35, "ae"), (0.6, "a"), (0.95, "u")], rng, size=1.32, breath=0.06,
                 vibrato=(0.012, 7),
                 loudness=[(0, 0), (0.06, 0.4), (0.3, 1), (0.6, 0.85), (0.95, 0)])


@sound("dog")
def dog(rng):
    def bark(pitch):
        tone = voice(0.2, [(0, pitch * 0.7), (0.05, pitch * 1.25), (0.2, pitch * 0.55)],
                     [(0, "u"), (0.05, "a"), (0.2, "o")], rng,
                     size=0.98, breath=0.25, jitter=0.1, loudness=[(0, 0), (0.02, 1), (0.1, 0.7), (0.2, 0)])
        return mixed(tone, (0.0, burst(0.12, 0.02, 900, 700, rng), 0.5))
    return echoed(joined(bark(300), silence(0.16), bark(320), silence(0.22), bark(285)), 0.05, 0.2, 0.15)


@sound("snore")
def snore(rng):
    length = 1.05
    inward = resonance(noise(length, rng), [(0, 260), (length, 420)], 180)
    upper = resonance(noise(length, rng), [(0, 1000), (length, 1500)], 400)
    flap = [max(0.0, math.sin(2 * math.pi * 31 * i / RATE)) ** 2 for i in range(len(inward))]
    inward = shaped([(a + 0.4 * b) * f for a, b, f in zip(inward, upper, flap)],
                    [(0, 0), (0.35, 0.6), (0.95, 1), (length, 0)])
    out = shaped(mixed(scaled(resonance(noise(0.95, rng), [(0, 1150), (0.95, 760)], 60), 0.5),
                       scaled(sine(0.95, [(0, 1150), (0.95, 760)]), 0.05)), [(0, 0), (0.2, 1), (0.5, 0.7), (0.95, 0)])
    return joined(scaled(inward, 1.6), silence(0.12), out)


@sound("whistle")
def whistle(rng):
    def blow(length, points):
        tone = sine(length, points)
        air = resonance(noise(length, rng), points, 160)
        return shaped(mixed(tone, scaled(air, 0.35)), [(0, 0), (0.05, 1), (length - 0.07, 0.85), (length, 0)])
    return joined(blow(0.42, [(0, 900), (0.3, 2200), (0.42, 2300)]), silence(0.07),
                  blow(0.62, [(0, 1000), (0.2, 1900), (0.62, 820)]))


@sound("slap")
def slap(rng):
    smack = mixed(burst(0.18, 0.010, 1500, 1600, rng), (0.0, burst(0.18, 0.022, 700, 500, rng), 0.7),
                  (0.0, burst(0.1, 0.004, 4200, 3500, rng), 0.9))
    swish = shaped(resonance(noise(0.16, rng), [(0, 600), (0.16, 2400)], 800), [(0, 0), (0.14, 0.16), (0.16, 0)])
    return echoed(mixed(swish, (0.16, smack, 1.0)), 0.035, 0.3, 0.2)


@sound("run")
def run(rng):
    parts, at, step = [], 0.0, 0.17
    for number in range(10):
        heavy = 1.0 if number % 2 == 0 else 0.8
        parts.append((at, mixed(thump(0.12, 150 if number % 2 else 175, 70, 0.03),
                                (0.0, burst(0.08, 0.012, 1100, 900, rng), 0.5)),
                      heavy * (1 - 0.06 * number)))
        at += step
        step *= 0.955
    return mixed(*parts)


@sound("ting")
def ting(rng):
    return bell(0.9, 2350, decay=0.22)


@sound("chock")
def chock(rng):
    knock = mixed(burst(0.12, 0.014, 950, 120, rng), (0.0, burst(0.12, 0.012, 1900, 200, rng), 0.6))
    stab = mixed(horn(0.8, note("C3")), (0.0, horn(0.8, note("F#3")), 0.9), (0.0, horn(0.8, note("C4")), 0.5))
    return echoed(mixed((0.0, knock, 2.5), (0.16, knock, 2.5), (0.36, stab, 0.55),
                        (0.36, thump(0.5, 120, 50, 0.12), 1.2)), 0.07, 0.25, 0.2)


def heartbeat():
    """Two soft blows; the part above 100 Hz is what a small loudspeaker lets through."""
    def blow(start, end, decay):
        return mixed(thump(0.24, start, end, decay), (0.0, thump(0.24, start * 2.1, end * 2.2, decay * 0.7), 0.5))
    return lowPass(mixed(blow(96, 52, 0.06), (0.19, blow(80, 46, 0.05), 0.75)), 700)


@sound("heart")
def heart(rng):
    return joined(heartbeat(), silence(0.32), heartbeat(), silence(0.32), heartbeat())


@sound("broken_heart")
def brokenHeart(rng):
    shards = [(0.58 + abs(rng.gauss(0, 0.12)), bell(0.35, rng.uniform(1900, 5200), decay=0.07),
               rng.uniform(0.05, 0.2)) for _ in range(22)]
    crack = mixed(burst(0.2, 0.02, 3200, 3000, rng), (0.03, burst(0.2, 0.03, 5200, 3500, rng), 0.8))
    fall = shaped(sine(0.7, [(0, 520), (0.7, 180)]), [(0, 0), (0.05, 0.22), (0.7, 0)])
    return mixed((0.0, heartbeat(), 1.3), (0.58, crack, 0.8), (0.8, fall), *shards)


@sound("angel")
def angel(rng):
    choir = []
    for name, size in (("C4", 1.0), ("E4", 1.08), ("G4", 1.12), ("C5", 1.18)):
        for detune in (0.996, 1.004):
            choir.append((0.0, voice(1.9, note(name) * detune, [(0, "u"), (0.4, "a"), (1.9, "a")], rng, size=size,
                                     breath=0.08,
                                     vibrato=(0.008, 5 + rng.random()),
                                     loudness=[(0, 0), (0.5, 1), (1.2, 0.9), (1.9, 0)]), 0.3))
    harp = [(0.08 * i, pluck(1.2, note(name), rng, 0.4), 0.28) for i, name in enumerate(("C5", "E5", "G5", "B5", "C6",
                                                                                         "E6", "G6"))]
    return echoed(mixed(*choir, *harp), 0.11, 0.35, 0.4)


@sound("devil")
def devil(rng):
    chord = mixed(*[(0.0, horn(1.5, note(name), 1.0, 0.012), 0.5) for name in ("C2", "F#2", "C3", "Eb3")])
    rumble = shaped(lowPass(noise(1.7, rng), 130), [(0, 0), (0.3, 3), (1.7, 0)])
    fire = [(rng.uniform(0, 1.6), burst(0.05, 0.006, rng.uniform(1500, 4500), 2000, rng),
             rng.uniform(0.1, 0.4)) for _ in range(45)]
    growl = voice(1.2, [(0, 70), (0.6, 82), (1.2, 58)], [(0, "er"), (1.2, "o")], rng, size=0.8, jitter=0.15,
                  loudness=[(0, 0), (0.3, 0.6), (1.2, 0)])
    return mixed(chord, (0.0, rumble, 0.6), (0.25, growl, 1.2), *fire)


@sound("drink")
def drink(rng):
    parts, at = [], 0.0
    for number in range(4):
        top = 520 + 70 * number
        parts.append((at, bubble(0.09, 260, top)))
        parts.append((at + 0.07, bubble(0.07, top * 0.8, top * 1.25, 0.6)))
        parts.append((at, shaped(resonance(noise(0.12, rng), 600, 300), [(0, 0), (0.04, 0.3), (0.12, 0)])))
        at += 0.25
    parts.append((at + 0.06, voice(0.6, [(0, 210), (0.6, 140)], [(0, "a"), (0.6, "a")], rng, size=1.05,
                                   breath=[(0, 0.4), (0.1, 0.25), (0.6, 0.95)],
                                   loudness=[(0, 0), (0.08, 1), (0.6, 0)])))
    return mixed(*parts)


@sound("coffee")
def coffee(rng):
    length = 1.35
    stream = resonance(noise(length, rng), [(0, 620), (length, 1500)], 350)
    stream = shaped(mixed(stream, scaled(resonance(noise(length, rng), [(0, 1900), (length, 3300)], 900), 0.5)),
                    [(0, 0), (0.1, 0.5), (length - 0.15, 0.6), (length, 0)])
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
    glitter = [(0.92 + 0.05 * i, bell(0.6, note(name), decay=0.15), 0.13) for i,
               name in enumerate(("C6", "E6", "G6", "C7", "E7"))]
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
        parts.append((at, resonance(tone, [(0, 500), (length * 0.4, 1100), (length, 450)], 500)))
        at += length * 0.98
    return mixed(*parts)


@sound("birthday")
def birthday(rng):
    parts = []
    tune = (("G4", 0.0, 0.16), ("C5", 0.18, 0.16), ("E5", 0.36, 0.16), ("D5", 0.54, 0.16), ("F5", 0.72, 0.30),
            ("E5", 1.05, 0.14),
            ("G5", 1.2, 0.75))
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
    swish = shaped(resonance(noise(0.34, rng), [(0, 900), (0.2, 4200), (0.34, 2600)], 1200),
                   [(0, 0), (0.18, 0.9), (0.34, 0)])
    return mixed(swish, (0.3, bell(0.7, note("E5"), decay=0.2), 0.5), (0.46, bell(0.9, note("B5"), decay=0.28), 0.5))


@sound("MSN")
def messenger(rng):
    soft = ((1, 1.0, 1.0), (2, 0.35, 0.7), (3, 0.12, 0.5), (4.2, 0.08, 0.3))
    return echoed(mixed((0.0, bell(0.5, note("D5"), soft, 0.2), 0.8), (0.13, bell(0.5, note("A5"), soft, 0.2), 0.8),
                        (0.26, bell(0.9, note("F#5"), soft, 0.3), 0.9)), 0.08, 0.25, 0.2)


@sound("ring")
def ring(rng):
    def burr(length):
        blow = mixed(bell(0.12, 1180, decay=0.06), (0.0, bell(0.12, 1490, decay=0.06), 0.8))
        strokes = [(i / 24, blow, 0.8 + 0.2 * (i % 2)) for i in range(int(length * 24))]
        return mixed(*strokes, (length, mixed(bell(0.4, 1180, decay=0.13), (0.0, bell(0.4, 1490, decay=0.11), 0.8)),
                                0.8))
    return joined(burr(0.55), silence(0.05), burr(0.55))


@sound("camera")
def camera(rng):
    def click(bright):
        return mixed(burst(0.05, 0.003, bright, 2500, rng), (0.0, burst(0.05, 0.008, 900, 400, rng), 0.7))
    motor = shaped(resonance(glottis(0.5, [(0, 90), (0.12, 165), (0.5, 150)], rng, 0.02), 1500, 900),
                   [(0, 0), (0.08, 0.5), (0.42, 0.5), (0.5, 0)])
    hiss = shaped(highPass(noise(0.5, rng), 2500), [(0, 0), (0.08, 0.05), (0.42, 0.05), (0.5, 0)])
    return mixed((0.0, click(3800), 1.4), (0.055, click(2600), 1.6), (0.11, click(4800), 0.9), (0.22, motor, 0.25),
                 (0.22, hiss),
                 (0.7, click(2200), 0.5), (0.76, silence(0.05)))


@sound("clock")
def clock(rng):
    def tick(frequency):
        return mixed(burst(0.09, 0.007, frequency, 250, rng), (0.0, burst(0.05, 0.002, 5200, 3000, rng), 0.6),
                     (0.0, burst(0.09, 0.015, frequency * 0.42, 120, rng), 0.5))
    beats = [(0.4 * i, tick(2300 if i % 2 == 0 else 1650), 1.0) for i in range(5)]
    return echoed(mixed(*beats), 0.03, 0.25, 0.2)


@sound("star")
def star(rng):
    tones = [(0.065 * i, bell(0.9, note(name), decay=0.2), 0.4 + 0.03 * i)
             for i, name in enumerate(("C6", "D6", "E6", "G6", "A6", "C7", "D7", "E7"))]
    glitter = [(0.4 + rng.uniform(0, 0.8), bell(0.4, rng.uniform(4000, 7500), decay=0.08),
                rng.uniform(0.04, 0.12)) for _ in range(16)]
    return mixed(*tones, *glitter)


@sound("light")
def light(rng):
    click = mixed(burst(0.05, 0.003, 2900, 2000, rng), (0.0, burst(0.06, 0.008, 1200, 300, rng), 0.8))
    glow = mixed(*[(0.0, shaped(sine(1.0, note(name)), [(0, 0), (0.25, 1), (0.5, 0.6), (1.0, 0)]),
                    0.12) for name in ("E5", "G#5", "B5")])
    return mixed((0.0, click, 1.6), (0.08, click, 0.8), (0.12, glow), (0.16, bell(1.0, note("E6"), decay=0.3), 0.4))


@sound("bat")
def bat(rng):
    parts = []
    for number in range(13):
        flap = shaped(lowPass(noise(0.075, rng), 700), [(0, 0), (0.025, 1), (0.075, 0)])
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
        click = mixed(burst(0.04, 0.003, 3300, 2500, rng), (0.012, burst(0.04, 0.006, 1300, 500, rng), 0.7))
        parts.append((number / 18, click, 0.9 + 0.1 * rng.random()))
    whirr = shaped(resonance(glottis(1.65, [(0, 60), (0.25, 118), (1.65, 118)], rng, 0.01), 800, 600),
                   [(0, 0), (0.25, 0.12), (1.4, 0.12), (1.65, 0)])
    air = shaped(highPass(noise(1.65, rng), 1800), [(0, 0), (0.25, 0.03), (1.4, 0.03), (1.65, 0)])
    return mixed(whirr, air, *parts)
