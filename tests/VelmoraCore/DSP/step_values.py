"""Writes StepValues.inc and DrumValues.inc: the steps of the DSP units and of the drums, computed a second time and independently, in double precision
rounded to single after every operation. Run it again only to add rows:
python3 step_values.py units > StepValues.inc; python3 step_values.py drums > ../Instruments/DrumValues.inc"""

import math
import struct
import sys


def f(x):
    return struct.unpack("f", struct.pack("f", x))[0]


def envelope(rate, steps):
    attack, decay, sustain, release = f(0.003), f(0.2), f(0.7), f(0.05)

    def segment(curve, seconds):
        return f(math.exp(curve / (seconds * rate)))

    ca, cd, cr = (segment(math.log(0.3 / 1.3), attack), segment(-math.log(10001), decay),
                  segment(-math.log(10001), release))
    ba, bd, br = (f(f(1 - ca) * f(1.3)), f(f(sustain + f(-0.0001)) * f(1 - cd)), f(f(1 - cr) * f(-0.0001)))
    level, stage, out = 0.0, "attack", []
    for n in range(steps):
        if n == steps * 3 // 4:
            stage = "release"
        if stage == "attack":
            level = f(ba + f(level * ca))
            if level >= 1:
                level, stage = 1.0, "decay"
        elif stage == "decay":
            level = f(bd + f(level * cd))
            if level <= sustain:
                level, stage = sustain, "sustain"
        elif stage == "sustain":
            level = f(level + f(f(sustain - level) * f(0.002)))
        elif stage == "release":
            level = f(br + f(level * cr))
            if level <= 0:
                level, stage = 0.0, "idle"
        out.append(level)
    return out


def filtered(kind, cutoff, q, rate, steps, signal=None):
    cutoff, q = min(rate * 0.499, f(cutoff)), f(q)
    w = cutoff * 6.283185307179586 / rate
    alpha, c = math.sin(w) / (q + q), math.cos(w)
    inv = 1 / (alpha + 1)
    b = {
        "lowPass": ((1 - c) * 0.5 * inv, (1 - c) * inv, (1 - c) * 0.5 * inv),
        "highPass": ((1 + c) * 0.5 * inv, -(1 + c) * inv, (1 + c) * 0.5 * inv),
        "bandPass": (alpha * inv, 0, -alpha * inv),
    }[kind]
    b0, b1, b2 = map(f, b)
    a1, a2 = f(c * -2 * inv), f((1 - alpha) * inv)
    z1 = z2 = 0.0
    out = []
    for n in range(steps):
        x = signal[n] if signal else 1.0 if n == 0 else 0.0
        y = f(f(x * b0) + z1)
        z1 = f(z2 + f(f(x * b1) - f(y * a1)))
        z2 = f(f(x * b2) - f(y * a2))
        out.append(y)
    return out


def oscillated(shape, frequency, rate, steps):
    d, p, out = f(f(frequency) / rate), 0.0, []
    turn = struct.unpack("f", struct.pack("I", 0x40C90FDA))[0]

    def blep(p):
        if p < d:
            t = f(p / d)
            return f(f(f(t + t) - f(t * t)) + -1)
        if p > f(1 - d):
            t = f(f(p + -1) / d)
            return f(f(t + f(t + f(t * t))) + 1)
        return 0.0

    for _ in range(steps):
        half = f(p + 0.5)
        q = f(half - 1) if half >= 1 else half
        out.append({
            "sine": lambda: f(math.sin(f(p * turn))),
            "triangle": lambda: f(f(p * 4) + -1) if p < 0.5 else f(3 - f(p * 4)),
            "saw": lambda: f(f(f(p + p) + -1) - blep(p)),
            "square": lambda: f(f((1 if p < 0.5 else -1) + blep(p)) - blep(q)),
        }[shape]())
        p = f(p + d)
        if p >= 1:
            p = f(p + -1)
    return out


def noise(seed, steps):
    out = []
    for _ in range(steps):
        seed ^= seed << 13 & 0xFFFFFFFF
        seed ^= seed >> 17
        seed ^= seed << 5 & 0xFFFFFFFF
        signed = seed - 2**32 if seed >= 2**31 else seed
        out.append(f(f(signed) * 2.0**-31))
    return out


def drum(sound, index, rate, steps):
    """One hit at velocity 90 on a fresh kit."""
    times = {"kick": (0.07, 0.0015, 0.02), "rim": (0.012, 0.002, 0), "snare": (0.03, 0.035, 0),
             "clap": (0.004, 0.055, 0), "closedHat": (0.012, 0, 0), "lowTom": (0.06, 0, 0.06), "openHat": (0.07, 0, 0),
             "perc": (0.028, 0, 0)}[sound]
    c1, c2, cp = (f(math.exp(-1 / (rate * f(t)))) if t else 0.0 for t in times)
    filters = {"snare": ("highPass", 1200, 0.7), "clap": ("bandPass", 1400, 0.8), "closedHat": ("bandPass", 8000, 1),
               "openHat": ("bandPass", 8000, 1)}
    hiss = noise((index + 1) * 0x9E3779B9 & 0xFFFFFFFF, steps)
    if sound in filters:
        hiss = filtered(*filters[sound], rate, steps, hiss)
    turn = struct.unpack("f", struct.pack("I", 0x40C90FDA))[0]
    v = f(90 / 127)
    gain = f(v * f(f(v * f(0.6)) + f(0.4)))
    e1 = e2 = pe = 1.0
    p1 = p2 = 0.0
    out = []

    def sine(p):
        return f(math.sin(f(p * turn)))

    def advanced(p, increment):
        p = f(p + increment)
        return f(p - 1) if p >= 1 else p

    def m(*factors):
        product = factors[0]
        for factor in factors[1:]:
            product = f(product * f(factor))
        return product

    for n in range(steps):
        s1, s2, y = sine(p1), sine(p2), hiss[n]
        if sound == "kick":
            p1 = advanced(p1, f(f(m(pe, 100) + 50) / rate))
            x = f(m(e1, m(s1, 0.75)) + m(e2, m(y, 0.2)))
        elif sound == "rim":
            p1, p2 = advanced(p1, f(1000 / rate)), advanced(p2, f(2500 / rate))
            x = f(m(e1, f(m(s1, 0.45) + m(s2, 0.3))) + m(e2, m(y, 0.15)))
        elif sound == "snare":
            p1 = advanced(p1, f(180 / rate))
            x = f(m(s1, 0.45, e1) + m(y, 0.4, e2))
        elif sound == "clap":
            burst = int(f(rate * f(0.01)))
            e = 1.0 if n in (burst, 2 * burst) else e1
            x = m(y, f(m(e, 1.2) + m(e2, 0.7)))
            e1 = e
        elif sound in ("closedHat", "openHat"):
            x = m(y, 0.8, e1)
        elif sound == "lowTom":
            p1 = advanced(p1, f(f(m(pe, 30) + 80) / rate))
            x = m(e1, m(s1, 0.75))
        elif sound == "perc":
            p1, p2 = advanced(p1, f(600 / rate)), advanced(p2, f(613 / rate))
            x = m(e1, f(m(s1, 0.4) + m(s2, 0.4)))
        e1, e2, pe = m(e1, c1), m(e2, c2), m(pe, cp)
        out.append(m(x, gain))
    return out


def row(name, values, at):
    print(f'{{"{name}", {{' + ", ".join(f"{{{n}, {values[n].hex()}F}}" for n in at) + "}},")


if sys.argv[1] == "units":
    for rate in (44100, 48000, 96000):
        row(f"envelope {rate}", envelope(rate, 40000), (0, 1, 100, 131, 132, 133, 5000, 20000, 29999, 30000, 30500, 39999))
        for kind, cutoff, q in (("lowPass", 1000, 1.2), ("highPass", 1200, 0.7), ("bandPass", 8000, 1), ("lowPass", 99999, 0.1)):
            row(f"{kind} {cutoff} {rate}", filtered(kind, cutoff, q, rate, 60), (0, 1, 2, 3, 20, 59))
        for shape in ("sine", "triangle", "saw", "square"):
            row(f"{shape} {rate}", oscillated(shape, 440, rate, 400), (0, 1, 49, 50, 51, 54, 55, 99, 100, 101, 108, 109, 110, 218, 219, 399))
    row("noise 0", noise(625341585, 1000), (0, 1, 2, 999))
    row("noise 7", noise(7, 1000), (0, 1, 2, 999))
else:
    sounds = ("kick", "rim", "snare", "clap", "closedHat", "lowTom", "openHat", "perc")
    for rate in (44100, 48000, 96000):
        for index, sound in enumerate(sounds):
            row(f"{sound} {rate}", drum(sound, index, rate, 3000),
                (0, 1, 2, 50, 440, 441, 480, 481, 882, 960, 1920, 2500, 2999))
