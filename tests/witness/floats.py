"""32-bit reals and ticks in Python: every operation rounds once, as the hardware does."""
import math
import struct
from ctypes import c_float

INT_MAX = 2**31 - 1
INT_MIN = -(2**31)
TICKS_PER_SECOND = 180000


def f32(value):
    """The nearest 32-bit real; what is too large is infinite."""
    return c_float(value).value


def same_bits(a, b):
    return struct.pack('<f', a) == struct.pack('<f', b)


def div(a, b):
    """a/b as a floating-point unit gives it, also where b is 0."""
    if b == 0.0:
        if a == 0.0 or math.isnan(a):
            return math.nan
        return math.copysign(math.inf, a) * math.copysign(1.0, b)
    return f32(a / b)


def sine_of(wave, angle):
    """A wave of an infinite angle is no number."""
    return f32(wave(angle)) if math.isfinite(angle) else math.nan


def saturated(ticks):
    return max(INT_MIN, min(INT_MAX, ticks))


def quotient(a, b):
    """The whole part of a/b, towards zero."""
    return abs(a) // abs(b) * (1 if (a < 0) == (b < 0) else -1)


def frame_time(frame, rate):
    """The tick of a frame: the frame times 180000 as a 32-bit real, over the rate, truncated."""
    return saturated(int(div(f32(f32(frame) * TICKS_PER_SECOND), rate)))


def frame_ticks(rate):
    return int(TICKS_PER_SECOND / rate)
