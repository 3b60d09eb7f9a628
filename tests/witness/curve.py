"""The keys of a number over time, as a link that writes keys changes them."""
from bisect import bisect_left, bisect_right

from floats import f32


class Curve:
    """Keys of files are joined by straight lines; those that a link sets hold their value up to the next key."""

    def __init__(self, base, keys=()):
        self.base = base  # where there is no key
        self.times = [time for time, _ in keys]
        self.keys = {time: (value, False) for time, value in keys}  # value, and whether it is held

    def at(self, time):
        after = bisect_right(self.times, time)
        if not self.times or after == 0:
            return self.keys[self.times[0]][0] if self.times else self.base
        value, is_held = self.keys[self.times[after - 1]]
        if is_held or after == len(self.times) or self.times[after - 1] == time:
            return value
        first, last = self.times[after - 1], self.times[after]
        return f32(value + (time - first) / (last - first) * (self.keys[last][0] - value))

    def set(self, time, value):
        if time not in self.keys:
            self.times.insert(bisect_left(self.times, time), time)
        self.keys[time] = (value, True)

    def delete(self, first, last, step):
        """The keys at each step from the first time to the last."""
        gone = {time for time in self.times if first <= time <= last and (time - first) % step == 0}
        self.times = [time for time in self.times if time not in gone]
        for time in gone:
            del self.keys[time]
