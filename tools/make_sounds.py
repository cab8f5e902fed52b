"""Synthesises the game's sounds: a landed punch, a missed one and the end bell.

The files are mono, 44100 Hz, 16 bits. All three are equally loud, start and end in silence and lie evenly around
zero. Samples are floats, 1.0 being full scale, until they are written.
"""

import array
import math
import operator
import wave

RATE = 44100  # samples per second
FULL_SCALE = 32767


def _thud():
    """A fist on padding: a falling low tone under a short muffled slap."""
    slap = _band(_noise(1, 0.22), lambda time: 380)
    phase = 0.0
    samples = []
    for i, noise in enumerate(slap):
        time = i / RATE
        phase += 2 * math.pi * (85 + 170 * math.exp(-time / 0.03)) / RATE
        tone = math.sin(phase) + 0.35 * math.sin(2 * phase)
        samples.append(tone * math.exp(-time / 0.055) + 1.6 * noise * math.exp(-time / 0.025))
    return _fade(samples, 0.002, 0.06)


def _swish():
    """A fist through air: noise that swells, brightens and passes."""
    length = 0.22

    def pitch(time):
        return 500 + 1300 * math.sin(math.pi * time / length) ** 2

    air = _band(_noise(2, length), pitch)
    return [sample * math.sin(math.pi * (i / len(air)) ** 0.8) ** 2 for i, sample in enumerate(air)]


# Partials of the bell: frequency in Hz, strength, and seconds to fall to a third. Pairs a few Hz apart make it
# shimmer, as a cast bell does.
BELL = [
    (392.0, 0.30, 0.90), (784.0, 0.70, 0.75), (786.1, 0.45, 0.75),
    (938.0, 0.55, 0.55), (1176.0, 0.30, 0.40), (1568.0, 0.80, 0.50),
    (1571.3, 0.40, 0.50), (2093.0, 0.35, 0.28), (2370.0, 0.35, 0.24),
    (3271.0, 0.30, 0.15), (4210.0, 0.22, 0.09), (5480.0, 0.15, 0.05),
]


def _bell():
    """The bell of the ring: struck once, left to ring out."""
    samples = [0.0] * int(2.2 * RATE)
    for frequency, strength, decay in BELL:
        step = 2 * math.pi * frequency / RATE
        for i in range(len(samples)):
            samples[i] += strength * math.sin(step * i) * math.exp(-i / RATE / decay)
    return _fade(samples, 0.002, 0.6)


def _noise(seed, seconds):
    """White noise, the same for the same seed everywhere."""
    state = seed
    samples = []
    for _ in range(int(seconds * RATE)):
        state = (state * 1664525 + 1013904223) % 2**32
        samples.append(state / 2**31 - 1)
    return samples


def _band(samples, pitch):
    """Lets the band around pitch(time in seconds) Hz pass; steep, of two filters."""
    first_low = first = second_low = second = 0.0
    result = []
    for i, sample in enumerate(samples):
        turn = 2 * math.sin(math.pi * pitch(i / RATE) / RATE)
        first_low += turn * first
        first += turn * (sample - first_low - first)
        second_low += turn * second
        second += turn * (first - second_low - second)
        result.append(second)
    return result


def _fade(samples, rise, fall):
    """Fades in and out over that many seconds, without a corner."""
    last = len(samples) - 1
    return [sample * _ease(i / RATE / rise) * _ease((last - i) / RATE / fall) for i, sample in enumerate(samples)]


def _ease(part):
    return 0.5 - 0.5 * math.cos(math.pi * min(part, 1))


def _finish(samples, gain):
    """Silences the ends, centres the sound on zero and scales it to whole samples."""
    window = _fade([1.0] * len(samples), 0.001, 0.005)
    offset = sum(map(operator.mul, samples, window)) / sum(window)
    centred = [(sample - offset) * part for sample, part in zip(samples, window)]
    return array.array("h", [round(sample * gain * FULL_SCALE) for sample in centred])


# The sounds by file, and the gains that make them equally loud: as ITU-R BS.1770 weighs frequencies, the loudest
# tenth of a second of each lies 17 decibels below full scale. Measure again after a change of a sound.
SOUNDS = {"hit.wav": (_thud, 0.42287981), "miss.wav": (_swish, 0.897269), "end.wav": (_bell, 0.11508747)}


def make_sounds(folder):
    for name, (sound, gain) in SOUNDS.items():
        with wave.open(str(folder / name), "wb") as file:
            file.setparams((1, 2, RATE, 0, "NONE", ""))  # one channel of two bytes
            file.writeframes(_finish(sound(), gain).tobytes())
