"""Measures how loud a short sound seems, and sets it to a wanted loudness.

The measure is that of ITU-R BS.1770: the sound passes two filters that stand
for the ear, and the mean power of what is left counts. A short sound is judged
by its loudest tenth of a second. Samples are floats, 1.0 being full scale.
"""

import math

WINDOW_SECONDS = 0.1


def set_loudness(samples, rate, decibels):
    """Returns samples scaled so that their loudest window has that loudness."""
    gain = 10 ** ((decibels - loudness(samples, rate)) / 20)
    return [sample * gain for sample in samples]


def loudness(samples, rate):
    """Returns the loudness of the loudest window in decibels below full scale."""
    heard = _biquad(_biquad(samples, *_treble_shelf(rate)), *_bass_cut(rate))
    length = min(len(heard), int(WINDOW_SECONDS * rate))
    power = energy = sum(sample * sample for sample in heard[:length])
    for new, old in zip(heard[length:], heard):
        energy += new * new - old * old
        power = max(power, energy)
    return 10 * math.log10(power / length) - 0.691


def _treble_shelf(rate):
    """Four decibels more above 1500 Hz: what a head does to sound."""
    gain = 10 ** (4 / 40)
    turn = 2 * math.pi * 1500 / rate
    cosine = math.cos(turn)
    width = 2 * math.sqrt(gain) * math.sin(turn) / math.sqrt(2)
    up, down = gain + 1, gain - 1
    return (
        [gain * (up + down * cosine + width),
         -2 * gain * (down + up * cosine),
         gain * (up + down * cosine - width)],
        [up - down * cosine + width,
         2 * (down - up * cosine),
         up - down * cosine - width],
    )


def _bass_cut(rate):
    """Less and less below 38 Hz, which the ear hardly hears."""
    turn = 2 * math.pi * 38 / rate
    cosine, width = math.cos(turn), math.sin(turn)
    return (
        [(1 + cosine) / 2, -(1 + cosine), (1 + cosine) / 2],
        [1 + width, -2 * cosine, 1 - width],
    )


def _biquad(samples, forward, back):
    """Filters with two samples of memory; forward and back are coefficients."""
    f0, f1, f2 = (value / back[0] for value in forward)
    b1, b2 = back[1] / back[0], back[2] / back[0]
    x1 = x2 = y1 = y2 = 0.0
    result = []
    for x in samples:
        y = f0 * x + f1 * x1 + f2 * x2 - b1 * y1 - b2 * y2
        x1, x2, y1, y2 = x, x1, y, y1
        result.append(y)
    return result
