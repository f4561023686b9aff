"""The scheme "toy box": puppets' voices, and all the rest as toys would do it, of wood, tin and rubber."""

from instruments import (MARIMBA, MUSIC_BOX, TIN, TOY_PIANO, WOOD_BLOCK, XYLOPHONE, blown, boing, bubble, burst,
                         clattering, kazoo, panPipe, reedPipe, ringing, slideWhistle, squeaker, struck, thump)
from scheme import scheme
from synthesis import (driven, echoed, formant, highPass, hiss, joined, lowPass, mixed, noise, note, resonance,
                       scaled, shaped, silence)
from voices import breathOf, smack, sniffed, voice

SOUNDS, sound = scheme()

PUPPET, DOLL, BEAR = 1.42, 1.55, 1.05  # how much smaller than a man's their heads are


# Toys that are heard in more than one of the sounds.

def wood(frequency, rng, seconds=0.25, decay=0.035):
    return struck(seconds, frequency, WOOD_BLOCK, decay, rng, 0.5)


def bar(name, rng, seconds=0.8, decay=0.22):
    return struck(seconds, note(name), MARIMBA if note(name) < 700 else XYLOPHONE, decay, rng, 0.25)


def comb(name, seconds=1.2, decay=0.45):
    return ringing(seconds, note(name), MUSIC_BOX, decay)


def toyPiano(name, rng, seconds=0.8, decay=0.25):
    return mixed(struck(seconds, note(name), TOY_PIANO, decay, rng, 0.15), (0.0, wood(420, rng, 0.08, 0.012), 0.12))


def pawl(rng, frequency=1900):
    """One tooth of a wooden ratchet."""
    return mixed(wood(frequency, rng, 0.05, 0.008), (0.0, burst(0.03, 0.004, 4200, 3000, rng), 0.5))


def pop(rng):
    """The cork of a pop gun."""
    return mixed(thump(0.16, 620, 190, 0.03), (0.0, formant(burst(0.1, 0.012, 900, 1200, rng), 700, 200), 0.5))


def tinLid(frequency, rng, seconds=0.5, decay=0.09):
    return struck(seconds, frequency, TIN, decay, rng, 0.5)


def tune(instrument, rng, notes, **manner):
    """notes: (name, seconds, gain)."""
    return mixed(*[(at, instrument(name, rng, **manner), gain) for name, at, gain in notes])


# The voices.

@sound("laugh")
def laugh(rng):
    """A giggle that runs ever faster up to a squeak, air, and a "hoo" after it."""
    pitch, breath, loudness, t = [], [], [], 0.0
    for number in range(9):
        length = 0.165 - 0.008 * number
        top = (470, 500, 520, 545, 565, 590, 620, 655, 700)[number]
        pitch += [(t, top * 0.95), (t + 0.5 * length, top * 1.06), (t + 0.97 * length, top * 0.88)]
        breath += [(t, 0.9), (t + 0.25 * length, 0.5), (t + 0.4 * length, 0.08), (t + 0.8 * length, 0.15),
                   (t + 0.97 * length, 0.9)]
        loudness += [(t, 0.05), (t + 0.25 * length, 0.3), (t + 0.45 * length, 1.0), (t + 0.7 * length, 0.7),
                     (t + 0.97 * length, 0.05)]
        t += length
    giggle = voice(t, pitch, [(0, "e"), (t * 0.5, "i"), (t, "i")], rng, breath=breath, loudness=[*loudness, (t, 0)],
                   size=PUPPET, tension=0.55, jitter=0.02, shimmer=0.15)
    hoo = voice(0.5, [(0, 640), (0.08, 690), (0.5, 330)], [(0, "u"), (0.5, "u")], rng, size=PUPPET, tension=0.5,
                breath=[(0, 0.8), (0.07, 0.15), (0.3, 0.25), (0.5, 0.9)], loudness=[(0, 0), (0.08, 0.9), (0.5, 0)])
    inward = voice(0.2, [(0, 420), (0.2, 610)], [(0, "uh"), (0.2, "i")], rng, size=PUPPET,
                   breath=[(0, 1.0), (0.1, 0.8), (0.2, 1.0)], loudness=[(0, 0), (0.14, 0.3), (0.2, 0)])
    return joined(giggle, silence(0.02), inward, hoo)


@sound("cry")
def cry(rng):
    """A baby doll: short wails, faster and faster, with a squeak of air before each."""
    parts = []
    for length, top in ((0.52, 500), (0.44, 545), (0.38, 580), (0.34, 600), (0.5, 560)):
        parts.append(voice(0.1, [(0, 700), (0.1, 980)], "ae", rng, size=DOLL, breath=0.75,
                           loudness=[(0, 0), (0.07, 0.22), (0.1, 0)]))
        parts.append(voice(length,
                           [(0, top * 0.8), (length * 0.15, top * 1.08), (length * 0.7, top), (length, top * 0.72)],
                           [(0, "u"), (length * 0.12, "ae"), (length * 0.7, "ae"), (length, "uh")], rng,
                           size=DOLL, nose=0.35, tension=[(0, 0.5), (length * 0.2, 0.95), (length, 0.5)],
                           jitter=0.015, shimmer=0.15, vibrato=([(0, 0.0), (length, 0.05)], 10.5),
                           rough=[(0, 0), (length * 0.5, 0.05), (length, 0.5)],
                           breath=[(0, 0.4), (length * 0.12, 0.05), (length * 0.8, 0.1), (length, 0.7)],
                           loudness=[(0, 0), (length * 0.12, 1), (length * 0.7, 0.9), (length, 0)]))
    return joined(*parts)


@sound("sniff")
def sniff(rng):
    """A small nose, many times, and a questioning whine."""
    parts, t = [], 0.0
    for length, level in ((0.11, 0.6), (0.11, 0.7), (0.12, 0.8), (0.28, 1.0)):
        parts.append((t, sniffed(length, rng, [(0, 0), (length * 0.5, 0.6 * level), (length * 0.9, level), (length, 0)],
                                 1.45, 0.15)))
        t += length + 0.07
    whine = voice(0.62, [(0, 470), (0.2, 440), (0.62, 700)], [(0, "m"), (0.15, "i"), (0.45, "i"), (0.62, "m")],
                  rng, size=DOLL, nose=0.25, tension=0.75, vibrato=([(0, 0), (0.62, 0.03)], 8.5),
                  breath=[(0, 0.5), (0.1, 0.15), (0.45, 0.2), (0.62, 0.7)],
                  loudness=[(0, 0), (0.1, 0.8), (0.4, 1), (0.62, 0)])
    return mixed(*parts, (t + 0.04, whine, 0.9))


@sound("sigh")
def sigh(rng):
    """"Heigh-ho": up and down once, and further down."""
    inward = breathOf(0.3, [(0, "uh"), (0.3, "ae")], rng, [(0, 0), (0.22, 0.5), (0.3, 0)], PUPPET)
    heigh = voice(0.55, [(0, 430), (0.14, 560), (0.55, 400)], [(0, "ae"), (0.2, "ae"), (0.45, "i"), (0.55, "i")],
                  rng, size=PUPPET, tension=[(0, 0.6), (0.55, 0.3)], jitter=0.012,
                  breath=[(0, 0.95), (0.1, 0.25), (0.35, 0.2), (0.55, 0.8)],
                  loudness=[(0, 0), (0.07, 0.35), (0.15, 1), (0.35, 0.8), (0.55, 0)])
    ho = voice(1.05, [(0, 400), (0.15, 410), (0.6, 255), (1.05, 195)], [(0, "o"), (0.5, "o"), (1.05, "u")], rng,
               size=PUPPET, tension=[(0, 0.5), (1.05, 0.05)], vibrato=([(0, 0), (0.3, 0.02), (0.8, 0.06)], 4.5),
               jitter=0.015, breath=[(0, 0.97), (0.14, 0.4), (0.4, 0.4), (0.65, 0.75), (0.8, 1.0), (1.05, 1.0)],
               loudness=[(0, 0), (0.1, 0.4), (0.18, 1), (0.5, 0.7), (0.8, 0.5), (1.05, 0)])
    return joined(inward, silence(0.03), heigh, silence(0.12), ho)


@sound("yawn")
def yawn(rng):
    """A hand pats the open mouth; the lips smack at the end."""
    pats = [(0, "uh"), (0.45, "a"), (0.62, "a")]
    open_mouth = [(0, 0), (0.35, 0.35), (0.55, 1.0), (0.62, 1.0)]
    for number in range(5):
        t = 0.70 + 0.17 * number
        pats += [(t, "u"), (t + 0.08, "a")]
        open_mouth += [(t, 0.35), (t + 0.08, 1.0 - 0.08 * number)]
    pats += [(1.75, "o"), (2.05, "m")]
    open_mouth += [(1.75, 0.5), (2.05, 0)]
    long = voice(2.05, [(0, 260), (0.4, 350), (0.8, 470), (1.3, 400), (1.75, 280), (2.05, 205)], pats, rng, size=PUPPET,
                 tension=[(0, 0.2), (0.7, 0.55), (2.05, 0.15)], jitter=0.015, loudness=open_mouth,
                 breath=[(0, 1.0), (0.32, 0.95), (0.5, 0.25), (1.5, 0.2), (2.05, 0.8)])
    lips = burst(0.05, 0.008, 1500, 900, rng)
    return mixed(long, (2.1, lips, 0.5), (2.24, lips, 0.45))


@sound("burp")
def burp(rng):
    """A small one that is held back, and the rest of it that is not."""
    def ragged(length, start, end):
        pitch = [(length * i / 12, start + (end - start) * i / 12 + rng.uniform(-11, 11)) for i in range(13)]
        return driven(voice(length, pitch, [(0, "u"), (length * 0.2, "er"), (length * 0.6, "ae"), (length, "e")],
                            rng, size=1.22, jitter=0.09, shimmer=0.45, rough=0.6, tension=0.65,
                            breath=[(0, 0.4), (length * 0.15, 0.2), (length, 0.5)],
                            loudness=[(0, 0), (length * 0.08, 0.9), (length * 0.6, 1), (length * 0.9, 0.6),
                                      (length, 0)]), 1.2)
    return joined(scaled(ragged(0.16, 150, 120), 0.6), silence(0.12), ragged(0.5, 96, 158), silence(0.02),
                  scaled(bubble(0.09, 420, 900), 0.35))


@sound("gasp")
def gasp(rng):
    """Two of them, the second higher, and a squeak."""
    def one(length, start, end, level):
        return voice(length, [(0, start), (length, end)], [(0, "uh"), (length * 0.5, "a"), (length, "ae")],
                     rng, size=PUPPET, tension=0.5, jitter=0.03, shimmer=0.15,
                     breath=[(0, 1.0), (length * 0.3, 0.85), (length * 0.8, 0.5), (length, 0.9)],
                     loudness=[(0, 0), (length * 0.4, 0.55 * level), (length * 0.85, level), (length, 0)])
    squeak = voice(0.26, [(0, 690), (0.1, 880), (0.26, 760)], "i", rng, size=PUPPET, tension=0.7, vibrato=(0.03, 9),
                   breath=[(0, 0.3), (0.1, 0.1), (0.26, 0.6)], loudness=[(0, 0), (0.06, 0.6), (0.26, 0)])
    return joined(one(0.24, 380, 560, 0.8), silence(0.07), one(0.42, 420, 740, 1.0), silence(0.10), squeak)


@sound("kiss")
def kiss(rng):
    """Two pecks, and a big one with a voice before and after."""
    hum = voice(0.3, [(0, 380), (0.3, 590)], "m", rng, size=PUPPET, nose=0.6, tension=0.8,
                loudness=[(0, 0), (0.1, 0.8), (0.27, 0.9), (0.3, 0.1)])
    after = voice(0.34, [(0, 640), (0.34, 400)], [(0, "u"), (0.07, "a"), (0.34, "a")], rng, size=PUPPET, tension=0.6,
                  breath=[(0, 0.2), (0.12, 0.15), (0.34, 0.9)], loudness=[(0, 0), (0.04, 0.9), (0.15, 0.8), (0.34, 0)])
    peck = smack(rng, 1.5)
    return mixed((0.0, peck, 0.6), (0.2, peck, 0.65), (0.42, hum, 0.5), (0.66, smack(rng, PUPPET), 0.9),
                 (0.84, after, 0.6), (0.9, bar("E7", rng, 0.5, 0.12), 0.10))


@sound("evil-laugh")
def evilLaugh(rng):
    """A puppet villain's "nyeh-heh-heh", and the creak of the hinges of its jaw."""
    pitch, breath = [(0, 200), (0.28, 330)], [(0, 0.1), (0.28, 0.1)]
    loudness, vowels = [(0, 0), (0.08, 0.7), (0.24, 1), (0.28, 0.2)], [(0, "i"), (0.1, "i"), (0.2, "ae"), (0.28, "e")]
    t = 0.3
    for top in (330, 310, 290, 270, 250, 225):
        pitch += [(t, top * 1.05), (t + 0.18, top * 0.9)]
        breath += [(t, 0.9), (t + 0.06, 0.15), (t + 0.14, 0.2), (t + 0.18, 0.9)]
        loudness += [(t, 0.06), (t + 0.07, 1), (t + 0.12, 0.7), (t + 0.18, 0.04)]
        vowels += [(t, "e")]
        t += 0.19
    cackle = voice(t + 0.02, pitch, vowels, rng, size=1.28, nose=0.6, tension=0.95, rough=0.35, jitter=0.02,
                   breath=breath, loudness=[*loudness, (t + 0.02, 0)])
    creak = clattering(0.6, pawl(rng, 1300), [(0, 18), (0.3, 42), (0.6, 15)], rng, [(0, 0), (0.2, 1), (0.6, 0)])
    return mixed(cackle, (t - 0.1, creak, 0.25))


@sound("haa")
def haa(rng):
    """"Ha-haa!", as one who has found what was hidden, with a toy trumpet."""
    cry_out = voice(0.95, [(0, 340), (0.14, 400), (0.26, 430), (0.4, 600), (0.65, 560), (0.95, 380)],
                    [(0, "uh"), (0.06, "a"), (0.95, "a")], rng, size=PUPPET, tension=0.75,
                    breath=[(0, 0.9), (0.06, 0.1), (0.16, 0.2), (0.23, 0.9), (0.31, 0.1), (0.7, 0.1), (0.95, 0.8)],
                    loudness=[(0, 0.1), (0.07, 0.8), (0.15, 0.6), (0.21, 0.2), (0.32, 1), (0.65, 0.85), (0.95, 0)])
    return mixed(cry_out, (0.28, kazoo(0.6, note("C5"), rng, [(0, 0), (0.04, 1), (0.45, 0.8), (0.6, 0)]), 0.16),
                 (0.28, kazoo(0.6, note("E5"), rng, [(0, 0), (0.04, 1), (0.45, 0.8), (0.6, 0)]), 0.13))


@sound("ohhh")
def ohhh(rng):
    """A row of dolls, one after another, and a slide whistle that goes down with them."""
    dolls = [(0.05 * i,
              voice(1.2, [(0, f), (0.25, f * 1.16), (1.2, f * 0.72)], [(0, "uh"), (0.12, "o"), (0.9, "o"), (1.2, "u")],
                    rng, size=size, tension=0.5, breath=[(0, 0.4), (0.15, 0.08), (1.2, 0.5)],
                    vibrato=(0.01, 5 + i), loudness=[(0, 0), (0.15, 1), (0.7, 0.8), (1.2, 0)]), 0.5)
             for i, (f, size) in enumerate(((300, 1.25), (380, 1.4), (455, 1.55)))]
    slide = slideWhistle(0.9, [(0, 1350), (0.9, 620)], rng, [(0, 0), (0.1, 1), (0.8, 0.7), (0.9, 0)], (0.012, 6))
    return mixed(*dolls, (0.35, slide, 0.09))


@sound("angry")
def angry(rng):
    """A puppet grumbles, and the kettle on its head comes to the boil."""
    grumble = driven(voice(1.35, [(0, 170), (0.5, 215), (1.0, 250), (1.35, 180)],
                           [(0, "er"), (0.35, "uh"), (0.5, "er"), (0.75, "ae"), (0.9, "er"), (1.35, "ae")],
                           rng, size=1.25, tension=0.95, rough=0.7, shimmer=0.25,
                           jitter=0.03, breath=[(0, 0.3), (0.2, 0.1), (1.35, 0.4)],
                           loudness=[(0, 0), (0.1, 0.7), (0.33, 0.9), (0.42, 0.4), (0.6, 1), (0.85, 0.5), (1.1, 1),
                                     (1.35, 0)]), 1.2)
    kettle = mixed((0.0, slideWhistle(1.0, [(0, 1500), (0.5, 2300), (1.0, 2500)], rng,
                                      [(0, 0), (0.5, 0.6), (0.85, 1), (1.0, 0)], (0.02, 13)), 0.8),
                   (0.0, hiss(1.0, [(0, 3000), (1.0, 6500)], 3000, rng, [(0, 0), (0.7, 0.7), (1.0, 0)]), 0.4))
    lid = clattering(1.0, tinLid(1350, rng, 0.12, 0.02), [(0, 6), (1.0, 24)], rng, [(0, 0.2), (0.8, 1), (1.0, 0)])
    return mixed(grumble, (0.35, kettle, 0.12), (0.35, lid, 0.10))


@sound("yehaa")
def yehaa(rng):
    """A cowboy on a hobby horse."""
    call = voice(1.1, [(0, 430), (0.28, 620), (0.40, 560), (0.52, 760), (0.75, 700), (1.1, 420)],
                 [(0, "i"), (0.26, "i"), (0.42, "e"), (0.55, "a"), (1.1, "o")], rng, size=PUPPET, tension=0.85,
                 breath=[(0, 0.2), (0.05, 0.05), (0.30, 0.1), (0.38, 0.6), (0.46, 0.08), (1.1, 0.5)],
                 vibrato=([(0, 0), (0.6, 0), (0.8, 0.03), (1.1, 0.04)], 7),
                 loudness=[(0, 0), (0.05, 0.7), (0.28, 0.8), (0.38, 0.35), (0.52, 1), (0.8, 0.85), (1.1, 0)])
    hooves = [(0.62 + at, wood(f, rng), 0.5 + 0.02 * i) for i, (at, f) in enumerate(
        (at + beat * 0.33, f) for beat in range(3) for at, f in ((0.0, 620), (0.1, 780), (0.2, 620)))]
    return mixed(call, *hooves)


@sound("boo")
def boo(rng):
    """A sheet with a singing saw below it."""
    saw = blown(1.5, [(0, 360), (0.3, 700), (0.8, 610), (1.5, 330)], (0.08, 0.03),
                ([(0, 0.01), (0.4, 0.035), (1.5, 0.05)], 5.6), [(0, 0), (0.25, 0.8), (0.9, 0.8), (1.5, 0)])
    call = voice(1.0, [(0, 330), (0.2, 520), (1.0, 390)], [(0, "m"), (0.05, "u"), (1.0, "u")],
                 rng, size=PUPPET, tension=0.65, breath=[(0, 0.1), (0.3, 0.12), (1.0, 0.6)],
                 vibrato=([(0, 0), (0.3, 0.03), (1.0, 0.05)], 6.6),
                 loudness=[(0, 0), (0.04, 0.9), (0.5, 0.9), (1.0, 0)])
    return echoed(mixed((0.0, saw, 0.30), (0.15, call, 0.9)), 0.14, 0.4, 0.4)


@sound("boy_hug")
def boyHug(rng):
    """A teddy bear that growls when it is pressed."""
    growl = voice(0.95, [(0, 118), (0.25, 165), (0.95, 100)],
                  [(0, "m"), (0.2, "uh"), (0.45, "a"), (0.75, "uh"), (0.95, "m")], rng, size=BEAR, nose=0.5,
                  tension=0.7, rough=0.12, loudness=[(0, 0), (0.15, 0.8), (0.4, 1), (0.95, 0)])
    plush = hiss(0.45, [(0, 700), (0.45, 1500)], 1400, rng, [(0, 0), (0.2, 0.5), (0.45, 0)])
    return mixed((0.0, plush, 0.5), (0.16, growl, 1.0), (0.95, bar("C4", rng, 0.6, 0.16), 0.22),
                 (1.07, bar("G4", rng, 0.6, 0.16), 0.22))


@sound("girl_hug")
def girlHug(rng):
    """A doll that says "aww", and the rubber duck between the two."""
    aww = voice(0.95, [(0, 420), (0.25, 560), (0.95, 360)], [(0, "uh"), (0.2, "o"), (0.6, "a"), (0.95, "o")], rng,
                size=DOLL, tension=0.55, vibrato=(0.01, 5.5), breath=[(0, 0.4), (0.12, 0.1), (0.7, 0.15), (0.95, 0.7)],
                loudness=[(0, 0), (0.15, 0.9), (0.5, 1), (0.95, 0)])
    duck = squeaker(0.22, [(0, 700), (0.1, 1050), (0.22, 820)], rng, [(0, 0), (0.04, 1), (0.16, 0.7), (0.22, 0)])
    return mixed((0.0, duck, 0.35), (0.2, aww, 0.9), (0.95, bar("E6", rng, 0.5, 0.14), 0.14),
                 (1.07, bar("G6", rng, 0.5, 0.14), 0.14))


@sound("cat")
def cat(rng):
    """A box that mews when it is turned over, twice, with the bellows' wheeze."""
    def mew(length, top):
        return voice(length, [(0, top * 0.92), (length * 0.3, top), (length, top * 0.62)],
                     [(0, "i"), (length * 0.3, "i"), (length * 0.65, "ae"), (length, "u")],
                     rng, size=1.75, tension=0.95, nose=0.3, jitter=0.003, shimmer=0.02,
                     breath=[(0, 0.2), (length * 0.2, 0.05), (length, 0.3)],
                     loudness=[(0, 0), (length * 0.12, 0.9), (length * 0.6, 0.9), (length, 0)])
    wheeze = hiss(0.25, 2600, 1800, rng, [(0, 0), (0.15, 0.5), (0.25, 0)])
    return joined(mew(0.42, 820), scaled(wheeze, 0.35), mew(0.56, 790), scaled(wood(540, rng, 0.12, 0.02), 0.5))


@sound("dog")
def dog(rng):
    """A clockwork puppy: three yaps over its works."""
    def yap(pitch):
        return voice(0.15, [(0, pitch * 0.75), (0.04, pitch * 1.25), (0.15, pitch * 0.7)],
                     [(0, "u"), (0.035, "ae"), (0.1, "a"), (0.15, "u")], rng, size=1.45, tension=0.95, rough=0.2,
                     breath=[(0, 0.5), (0.02, 0.12), (0.15, 0.5)], loudness=[(0, 0), (0.02, 1), (0.09, 0.8), (0.15, 0)])
    works = clattering(1.15, pawl(rng, 2400), 26, rng, [(0, 0.6), (1.0, 0.8), (1.15, 0)])
    return mixed((0.0, works, 0.16), (0.12, yap(520), 1.0), (0.40, yap(560), 1.0), (0.68, yap(535), 0.95),
                 (0.95, wood(700, rng, 0.12, 0.02), 0.3))


@sound("snore")
def snore(rng):
    """A kazoo draws in, a slide whistle lets go."""
    inward = voice(0.95, [(0, 46), (0.4, 58), (0.95, 72)], [(0, "uh"), (0.6, "er"), (0.95, "ae")],
                   rng, size=1.3, nose=0.6, breath=0.4, tension=0.8, jitter=0.05, shimmer=0.35,
                   loudness=[(0, 0), (0.3, 0.6), (0.85, 1), (0.95, 0)])
    buzz = kazoo(0.95, [(0, 92), (0.95, 144)], rng, [(0, 0), (0.3, 0.5), (0.85, 1), (0.95, 0)], (0.03, 9))
    out = slideWhistle(1.0, [(0, 1500), (0.7, 850), (1.0, 620)], rng, [(0, 0), (0.12, 1), (0.7, 0.7), (1.0, 0)],
                       (0.025, 6.5))
    blow = breathOf(1.0, "u", rng, [(0, 0), (0.12, 0.8), (1.0, 0)], PUPPET)
    return joined(mixed((0.0, inward, 0.9), (0.0, buzz, 0.3)), silence(0.1), mixed((0.0, out, 0.22), (0.0, blow, 0.5)))


# The toys.

@sound("slap")
def slap(rng):
    """Two boards on a hinge, and a tin lid that was in the way."""
    boards = mixed(burst(0.2, 0.014, 1900, 2200, rng), (0.0, wood(880, rng, 0.3, 0.03), 0.9),
                   (0.004, wood(1310, rng, 0.3, 0.022), 0.7))
    return mixed((0.0, driven(boards, 1.8), 1.0), (0.09, tinLid(690, rng, 0.7, 0.13), 0.22),
                 (0.30, tinLid(720, rng, 0.4, 0.06), 0.10))


@sound("run")
def run(rng):
    """Wooden legs on the spot, then off."""
    parts, t, gap = [], 0.0, 0.115
    for number in range(15):
        parts.append((t, mixed(thump(0.12, 330 if number % 2 else 262, 200, 0.035),
                               (0.0, wood(520 if number % 2 else 430, rng, 0.1, 0.016), 0.6)), 0.7 + 0.02 * number))
        t += gap
        gap *= 0.95
    whizz = mixed((0.0, slideWhistle(0.3, [(0, 700), (0.3, 2400)], rng, [(0, 0), (0.1, 1), (0.3, 0)]), 0.3),
                  (0.0, hiss(0.3, [(0, 1200), (0.3, 5000)], 1500, rng, [(0, 0), (0.15, 1), (0.3, 0)]), 0.3))
    return mixed(*parts, (t, whizz, 0.7))


@sound("whistle")
def whistle(rng):
    """A wooden train's: three pipes at once."""
    def toot(length):
        level = [(0, 0), (0.05, 1), (length - 0.08, 0.9), (length, 0)]
        bend = lambda f: [(0, f * 0.97), (0.06, f), (length - 0.08, f), (length, f * 0.95)]
        return mixed(*[(0.0, panPipe(length, bend(note(name)), rng, level), 0.35) for name in ("A4", "C#5", "E5")])
    return echoed(joined(toot(0.28), silence(0.1), toot(0.72)), 0.12, 0.25, 0.2)


@sound("ting")
def ting(rng):
    """A triangle, struck twice."""
    def stroke(seconds, firmness):
        modes = ((1520, 0.3, 0.5), (1526, 0.3, 0.45), (3640, 1.0, 0.34), (3652, 0.8, 0.30), (5230, 0.8, 0.26),
                 (7110, 0.5, 0.2), (8820, 0.3, 0.14))
        return mixed(*[(0.0, ringing(seconds, f, ((1, 1.0, 1.0),), decay * firmness), gain)
                       for f, gain, decay in modes], (0.0, burst(0.02, 0.002, 7500, 5000, rng), 0.5))
    return mixed((0.0, stroke(0.3, 0.3), 0.6), (0.22, stroke(1.2, 1.0), 1.0))


@sound("chock")
def chock(rng):
    """A jack leaps out of its box."""
    crank = clattering(0.42, pawl(rng, 1700), [(0, 14), (0.42, 34)], rng)
    cluster = mixed(*[(0.012 * i, bar(name, rng, 0.7, 0.2), 0.3)
                      for i, name in enumerate(("F#5", "G5", "C6", "C#6", "F#6"))])
    return mixed((0.0, crank, 0.5), (0.44, pop(rng), 0.9), (0.47, boing(1.0, 190, rng, 0.45), 0.6),
                 (0.47, cluster, 0.6), (0.5, tinLid(830, rng, 0.6, 0.12), 0.22))


@sound("angel")
def angel(rng):
    """A music box."""
    notes = (("C6", 0.0), ("G5", 0.16), ("E6", 0.32), ("C6", 0.48), ("G6", 0.64), ("E6", 0.80), ("C7", 1.0))
    tines = [(at, comb(name, 1.3, 0.5), 0.4) for name, at in notes]
    low = [(0.0, comb("C5", 1.6, 0.6), 0.35), (0.64, comb("C5", 1.3, 0.5), 0.3), (1.0, comb("E5", 1.2, 0.5), 0.25),
           (1.0, comb("G5", 1.2, 0.5), 0.25)]
    works = clattering(1.2, burst(0.02, 0.003, 3200, 2000, rng), 12, rng, [(0, 1), (1.2, 0)])
    return echoed(mixed(*tines, *low, (0.0, works, 0.04)), 0.08, 0.25, 0.25)


@sound("devil")
def devil(rng):
    """A kazoo in the low register, a tin drum, and a puppet that has been practising."""
    motif = [(at, kazoo(length, note(name), rng, [(0, 0), (0.03, 1), (length * 0.7, 0.9), (length, 0)]), 0.5)
             for name, at, length in (("C3", 0.0, 0.26), ("F#3", 0.28, 0.26), ("C3", 0.56, 0.22), ("Eb3", 0.80, 0.8))]
    cluster = mixed(*[(0.0, toyPiano(name, rng, 1.0, 0.35), 0.25) for name in ("C3", "F#3", "A3", "C4")])
    roll = clattering(0.9, mixed(thump(0.08, 150, 95, 0.025), (0.0, burst(0.06, 0.015, 3600, 3500, rng), 0.5)), 22, rng,
                      [(0, 0.2), (0.8, 1), (0.9, 0)])
    growl = voice(0.8, [(0, 150), (0.3, 190), (0.8, 105)], [(0, "er"), (0.4, "a"), (0.8, "er")], rng, size=1.2,
                  tension=0.95, rough=0.75, nose=0.4, loudness=[(0, 0), (0.2, 1), (0.8, 0)])
    return mixed(*motif, (0.0, roll, 0.35), (0.82, cluster, 0.9), (0.85, driven(growl, 1.3), 0.45))


def logDrum(frequency, rng):
    return mixed(struck(0.4, frequency, ((1, 1.0, 1.0), (2.7, 0.35, 0.4), (5.1, 0.15, 0.2)), 0.085, rng, 0.25),
                 (0.0, thump(0.3, frequency * 0.8, frequency * 0.5, 0.06), 0.5))


@sound("heart")
def heart(rng):
    """A hollow log beats; a bar rings with the last."""
    beats = []
    for number in range(3):
        beats += [(0.62 * number, logDrum(165, rng), 1.0), (0.62 * number + 0.2, logDrum(130, rng), 0.8)]
    return mixed(*beats, (1.24, bar("A5", rng, 0.6, 0.2), 0.2), (1.44, bar("C#6", rng, 0.6, 0.2), 0.2))


@sound("broken_heart")
def brokenHeart(rng):
    """A music box slows down, its spring breaks, and the pieces fall on the floor."""
    tines = [(at, comb(name, 0.9, 0.35), 0.4) for name, at in (("E6", 0.0), ("D6", 0.17), ("C6", 0.38), ("B5", 0.66))]
    pieces = [(1.12 + 0.75 * (i / 12) ** 1.3, wood(rng.uniform(600, 1900), rng, 0.15, 0.02), 0.5 - 0.03 * i)
              for i in range(12)]
    return mixed(*tines, (0.9, boing(0.8, 240, rng, 0.6, 13), 0.5), (0.9, burst(0.1, 0.01, 3000, 2500, rng), 0.8),
                 *pieces)


@sound("drink")
def drink(rng):
    """Glug by glug from a tin cup, the last drops through a straw, and "ah"."""
    parts = [(0.21 * i, mixed(bubble(0.11, 300 + 45 * i, 640 + 60 * i),
                              (0.0, wood(380 + 40 * i, rng, 0.1, 0.02), 0.35)), 0.8) for i in range(4)]
    straw = [a * b for a, b in zip(hiss(0.45, [(0, 900), (0.45, 2300)], 900, rng),
                                   clattering(0.45, shaped([1.0] * 900, [(0, 0), (0.01, 1), (0.04, 0)]),
                                              [(0, 20), (0.45, 31)], rng))]
    ah = voice(0.42, [(0, 400), (0.1, 470), (0.42, 330)], [(0, "a"), (0.42, "a")], rng, size=PUPPET, tension=0.45,
               breath=[(0, 0.9), (0.08, 0.2), (0.42, 0.9)], loudness=[(0, 0), (0.08, 0.9), (0.42, 0)])
    return mixed(*parts, (0.88, straw, 0.7), (1.42, ah, 0.6))


@sound("coffee")
def coffee(rng):
    """Beans in a wooden mill, a cup, a spoon."""
    crunch = mixed(*[(rng.uniform(0, 0.95), burst(0.04, 0.006, rng.uniform(700, 3800), 1500, rng),
                      rng.uniform(0.2, 0.8)) for _ in range(110)])
    turns = [(0.0, 0.4)]
    for turn in range(5):
        turns += [(0.19 * turn + 0.06, 1.0), (0.19 * turn + 0.15, 0.4)]
    mill = mixed((0.0, shaped(crunch, turns + [(1.0, 0)]), 0.9),
                 (0.0, clattering(1.0, wood(310, rng, 0.1, 0.015), 10.5, rng, [(0, 1), (0.95, 1), (1.0, 0)]), 0.5))
    spoon = [(1.35 + 0.14 * i, struck(0.4, f, TOY_PIANO, 0.08, rng, 0.3), 0.28)
             for i, f in enumerate((2480, 2890, 2480, 2890))]
    pour = mixed(*[(1.0 + 0.035 * i, bubble(0.05, 480 + 40 * i, 800 + 60 * i), 0.3) for i in range(11)])
    return mixed(mill, pour, *spoon)


@sound("gift")
def gift(rng):
    """The ribbon comes off, a handle is turned, and the lid flies up."""
    ribbon = hiss(0.26, [(0, 1800), (0.26, 5600)], 1600, rng, [(0, 0), (0.2, 1), (0.26, 0)])
    handle = [(0.28 + 0.13 * i, comb(name, 0.5, 0.2), 0.35) for i, name in enumerate(("G5", "A5", "B5", "C6", "D6"))]
    cheer = [(1.04 + 0.05 * i, bar(name, rng, 0.6, 0.2), 0.25) for i, name in enumerate(("G5", "B5", "D6", "G6"))]
    return mixed((0.0, ribbon, 0.5), *handle, (0.98, pop(rng), 0.9), *cheer,
                 (1.06, reedPipe(0.45, [(0, 380), (0.08, 520), (0.35, 520), (0.45, 400)], rng,
                                 [(0, 0), (0.04, 1), (0.35, 0.9), (0.45, 0)]), 0.16))


@sound("flower")
def flower(rng):
    """A slide whistle grows, a bud pops, and bars are its leaves."""
    grow = slideWhistle(0.75, [(0, 480), (0.7, 1250), (0.75, 1250)], rng, [(0, 0), (0.2, 0.6), (0.7, 1), (0.75, 0)])
    leaves = [(0.84 + 0.07 * i, bar(name, rng, 0.8, 0.28), 0.4)
              for i, name in enumerate(("D5", "F#5", "A5", "B5", "D6"))]
    return mixed((0.0, grow, 0.16), (0.77, pop(rng), 0.7), *leaves, (1.2, comb("A6", 0.7, 0.25), 0.2))


@sound("wilted-flower")
def wiltedFlower(rng):
    """A slide whistle hangs its head, further and further, and petals fall."""
    droop = slideWhistle(1.35, [(0, 1180), (0.15, 1180), (0.5, 840), (0.62, 880), (0.95, 560), (1.05, 590),
                                (1.35, 330)], rng, [(0, 0), (0.06, 1), (0.5, 0.9), (0.62, 0.6), (1.0, 0.7), (1.35, 0)],
                         ([(0, 0.0), (0.3, 0.02), (1.35, 0.05)], 6.5))
    petals = [(1.36 + 0.14 * i, wood(f, rng, 0.2, 0.03), 0.30 - 0.06 * i) for i, f in enumerate((420, 350, 290))]
    return mixed((0.0, droop, 0.4), *petals)


@sound("birthday")
def birthday(rng):
    """A toy piano and wood blocks at a party, and a blower."""
    melody = (("C5", 0.0, 0.5), ("E5", 0.16, 0.5), ("G5", 0.32, 0.5), ("A5", 0.48, 0.5), ("G5", 0.64, 0.5),
              ("C6", 0.96, 0.6))
    bass = (("C4", 0.0, 0.35), ("F4", 0.48, 0.35), ("C4", 0.96, 0.35), ("E4", 0.96, 0.3))
    blocks = [(0.16 * i + 0.08, wood(900 if i % 2 else 1200, rng, 0.1, 0.015), 0.25) for i in range(6)]
    blower = [(at, reedPipe(length, [(0, 300), (0.1, f), (length * 0.8, f), (length, f * 0.7)], rng,
                            [(0, 0), (0.05, 1), (length * 0.8, 0.9), (length, 0)]), 0.22)
              for at, length, f in ((1.2, 0.25, 470), (1.5, 0.5, 540))]
    return mixed((0.0, tune(toyPiano, rng, melody + bass), 1.0), *blocks, *blower)


@sound("email")
def email(rng):
    """The postman's bicycle bell, and a letter through the slot."""
    trill = [(0.055 * i, struck(0.5, 2050 if i % 2 else 2110, TIN, 0.11, rng, 0.1), 0.22) for i in range(6)]
    trill += [(0.48 + at, part, gain) for at, part, gain in trill]
    paper = hiss(0.2, [(0, 1500), (0.2, 3800)], 2000, rng, [(0, 0), (0.15, 0.8), (0.2, 0)])
    return mixed(*trill, (0.98, paper, 0.4),
                 (1.16, mixed(wood(330, rng, 0.3, 0.04), (0.0, tinLid(980, rng, 0.2, 0.03), 0.4)), 0.8),
                 (1.27, wood(350, rng, 0.2, 0.03), 0.35))


@sound("MSN")
def messenger(rng):
    """A knock and three bars of a marimba."""
    knock = wood(760, rng)
    return mixed((0.0, knock, 0.6), (0.11, knock, 0.5), (0.26, bar("G4", rng, 0.6, 0.25), 0.8),
                 (0.40, bar("C5", rng, 0.6, 0.25), 0.8), (0.54, bar("E5", rng, 0.9, 0.3), 0.9),
                 (0.54, bar("C4", rng, 0.9, 0.3), 0.5))


@sound("ring")
def ring(rng):
    """A toy telephone: its dial runs back, and it rings by itself."""
    dial = clattering(0.34, pawl(rng, 1500), 27, rng)
    trill = mixed(*[(i / 15, ringing(0.35, note("E6" if i % 2 else "B5"), XYLOPHONE, 0.07), 0.4) for i in range(9)])
    return mixed((0.0, dial, 0.45), (0.42, trill, 0.9), (1.18, trill, 0.9))


@sound("camera")
def camera(rng):
    """A thumb winds it, a wooden shutter falls, and the flash goes off."""
    wind = clattering(0.36, pawl(rng, 2300), [(0, 28), (0.36, 44)], rng)
    shutter = mixed(wood(640, rng, 0.2, 0.03), (0.035, wood(1050, rng, 0.2, 0.02), 0.9),
                    (0.0, burst(0.1, 0.01, 3200, 2500, rng), 0.8))
    flash = mixed((0.0, hiss(0.35, [(0, 5200), (0.35, 1500)], 3500, rng, [(0, 1), (0.05, 0.6), (0.35, 0)]), 0.45),
                  (0.0, thump(0.2, 240, 90, 0.05), 0.6))
    return mixed((0.0, wind, 0.5), (0.46, shutter, 0.9), (0.56, flash, 0.7), (0.58, bar("B6", rng, 0.5, 0.12), 0.14))


@sound("clock")
def clock(rng):
    """A cuckoo."""
    ticks = [(0.28 * i, wood(1150 if i % 2 == 0 else 860, rng, 0.15, 0.022), 0.5) for i in range(7)]
    def call(name, length):
        return panPipe(length, note(name), rng, [(0, 0), (0.03, 1), (length - 0.08, 0.8), (length, 0)])
    cuckoo = [(0.5, call("G5", 0.2), 0.5), (0.74, call("Eb5", 0.34), 0.5), (1.22, call("G5", 0.2), 0.45),
              (1.46, call("Eb5", 0.36), 0.45)]
    return mixed(*ticks, (0.44, wood(420, rng, 0.15, 0.02), 0.5), *cuckoo)


@sound("star")
def star(rng):
    """A row of little bells is stroked downwards, and one of them answers."""
    bells = [(0.028 * i, ringing(0.7, 7600 * 0.945 ** i, ((1, 1.0, 1.0), (1.51, 0.4, 0.7)), 0.16), 0.22 + 0.004 * i)
             for i in range(26)]
    return mixed(*bells, (0.84, comb("G6", 0.9, 0.35), 0.4), (0.98, comb("D7", 0.9, 0.35), 0.4))


@sound("light")
def light(rng):
    """A cord is pulled, and an idea rings."""
    cord = mixed((0.0, pawl(rng, 1500), 0.8), (0.07, wood(950, rng, 0.15, 0.025), 0.9), (0.13, pawl(rng, 1200), 0.4))
    idea = mixed(*[(0.03 * i, bar(name, rng, 0.9, 0.32), 0.4) for i, name in enumerate(("C6", "E6", "G6"))])
    return mixed((0.0, cord, 0.8), (0.26, idea, 0.9), (0.26, tinLid(3100, rng, 0.4, 0.07), 0.06))


@sound("bat")
def bat(rng):
    """Paper wings on a rubber band, and a squeaker."""
    wing = mixed(shaped(highPass(noise(0.05, rng), 900), [(0, 0), (0.008, 1), (0.05, 0)]),
                 (0.0, wood(290, rng, 0.06, 0.012), 0.5))
    flutter = clattering(1.3, scaled(lowPass(wing, 2500), 0.5), [(0, 11), (0.4, 17), (0.9, 13), (1.3, 18)], rng,
                         [(0, 0.3), (0.5, 1), (1.3, 0.1)])
    squeaks = [(at, squeaker(0.09, [(0, f * 0.8), (0.03, f), (0.09, f * 0.7)], rng, [(0, 0), (0.015, 1), (0.09, 0)]),
                0.6) for at, f in ((0.2, 2300), (0.32, 2600), (0.66, 2450), (0.78, 2750), (0.89, 2300), (1.12, 2600))]
    return mixed((0.0, flutter, 0.9), *squeaks)


@sound("music-note")
def musicNote(rng):
    """A toy piano that knows one tune."""
    melody = (("E5", 0.0, 0.5), ("G5", 0.18, 0.5), ("A5", 0.36, 0.5), ("C6", 0.54, 0.55), ("A5", 0.72, 0.5),
              ("G5", 0.90, 0.5), ("C6", 1.17, 0.6))
    bass = (("C4", 0.0, 0.4), ("F4", 0.36, 0.4), ("G4", 0.90, 0.4), ("C4", 1.17, 0.4), ("E4", 1.17, 0.3))
    return tune(toyPiano, rng, melody + bass, seconds=0.9, decay=0.3)


@sound("film_strip")
def filmStrip(rng):
    """A crank is turned, and a toy piano plays to it."""
    gears = clattering(1.65, mixed(pawl(rng, 1250), (0.01, wood(520, rng, 0.06, 0.01), 0.6)),
                       [(0, 6), (0.35, 17), (1.35, 17), (1.65, 9)], rng, [(0, 0.7), (0.3, 1), (1.5, 1), (1.65, 0)])
    rag = (("C4", 0.45, 0.3), ("E5", 0.45, 0.3), ("G5", 0.60, 0.3), ("G4", 0.67, 0.3), ("A5", 0.75, 0.3),
           ("C4", 0.90, 0.3), ("G5", 0.97, 0.3), ("E5", 1.12, 0.3), ("G4", 1.12, 0.3), ("C5", 1.28, 0.35))
    return mixed((0.0, gears, 0.8), (0.0, tune(toyPiano, rng, rag, seconds=0.5, decay=0.14), 0.8))
