"""The links of a QLX modifier, computed a second time: what the modifier makes of its targets, frame by frame, written
apart from the plug-in so that neither can copy the other's faults.

A link is a dictionary of the modifier's fields, public and private, by name; missing ones have their defaults.
Places are what it reads and writes: see `scene.py`. All arithmetic is that of 32-bit reals, in the order in which the
modifier does it, except where it is said to be wider.

A value that went through a matrix or angles that were a quaternion before is not the same to the last bit in two ways
of computing it: beside each such value stands its reach, the size of the largest number that it was made of, scaled as
it was. What two ways differ by is in proportion to that. The reach of all other values is 0.
"""
import math
from collections import deque

from floats import div, f32, frame_ticks, frame_time, quotient, saturated, sine_of

OFF = (
    'fAttributeMode', 'fTargetPathSet', 'fControllerPathSet', 'fFindControllerByName', 'fFindSourceByName', 'fStartOn',
    'fEndOn', 'fDelayOn', 'fRelative', 'fRangeOn', 'fLowerLimitOn', 'fUpperLimitOn', 'fCombineSelf', 'fCombineAdd',
    'fCombineSubtract', 'fCombineMultiply', 'fCombineDivide', 'fModifySubtract', 'fModifyMultiply', 'fModifyDivide',
    'fModifySet', 'fOscillateOn', 'fOscillatorCosine', 'fDecayOn', 'fDecayQuadratic', 'fDecayCubic',
    'fDecayQuadraticOnly', 'fDecayCubicOnly', 'fGrowOn', 'fGrowQuadratic', 'fGrowCubic', 'fGrowQuadraticOnly',
    'fGrowCubicOnly', 'fMirrorTransform', 'fBakeKeyframes', 'fScaleUniform', 'fScaleX', 'fScaleY', 'fScaleZ',
) + tuple(f'f{kind}{flag}' for kind in ('Position', 'Rotation') for flag in (
    'All', 'Custom', 'X', 'Y', 'Z', 'InvertX', 'InvertY', 'InvertZ'))
ON = ('fCombineReplace', 'fModifyAdd', 'fDecayLinear', 'fGrowLinear', 'fOscillatorSine')
DEFAULTS = dict.fromkeys(OFF, False) | dict.fromkeys(ON, True) | {
    'fModifyValue': 0.0, 'fStartFrame': 0, 'fEndFrame': 0, 'fDelayFrames': 0, 'fModifyUnit': -1, 'fLimitUnit': -1,
    'fLowerLimit': 0.0, 'fUpperLimit': 0.0, 'fRangeMin': 0.0, 'fRangeMax': 0.0, 'fControllerName': '',
    'fSourceName': '',
    'fDecayMax': 1.0, 'fDecayMin': 0.0, 'fGrowMax': 1.0, 'fGrowMin': 0.0, 'fOscillatorPhase': 0.0,
    'fOscillatorScale': 1.0, 'fOscillatorMax': 1.0, 'fOscillatorMin': -1.0, 'fOscillatorSpeed': 1.0,
    'fTargetPath': '', 'fControllerPath': '',
    'controller': None, 'source': None,  # the stored references, as the index of an element
}

GLOBAL_KEYS = ('GlbX', 'GlbY', 'GlbZ')
ROTATION_KEYS = ('RotX', 'RotY', 'RotZ')
POSITIONS = 'self,amet,TRAN,OFFS,'
ROTATIONS = 'self,amet,TRAN,ROTA,'
SCALES = 'self,amet,TRAN,XYZ ,'
UNIFORM_SCALE = 'self,amet,TRAN,SCAL'
LENGTH_KEYS = GLOBAL_KEYS + ('XCOO', 'YCOO', 'ZCOO')
CHANNELS = {key: 1 + i for i, key in enumerate(GLOBAL_KEYS + ROTATION_KEYS + ('SCAL', 'ScaX', 'ScaY', 'ScaZ'))}


def converted(value, unit, key):
    """A value that was entered in a unit, in the scene's own."""
    if unit == 7:
        return f32(value * f32(0.01))
    if key in ROTATION_KEYS and unit == 5:
        return div(f32(value * f32(3.1415927)), 180.0)
    if key in LENGTH_KEYS:
        if unit == 1:
            return f32(value * f32(0.3937))
        if unit == 3:
            return div(value, 12.0)
        if unit == 4:
            return f32(value * f32(39.37))
    return value


class Channel:
    """What a link remembers of one channel."""

    def __init__(self):
        self.baseline = self.target_start = self.target_last = 0.0
        self.baseline_pending = self.target_start_pending = self.target_last_pending = True


class Link:
    def __init__(self, fields):
        vars(self).update(DEFAULTS | fields)
        self.queue = deque()
        self.last_time = 0
        self.channels = {}
        self.is_shader = False
        self.size = 0.0  # of the largest number that the last result was added up from: what a tolerance goes by
        self.reach = 0.0  # of the value that is on its way

    def channel(self, key):
        return self.channels.setdefault(CHANNELS.get(key, 0), Channel())

    # ---- one evaluation ----------------------------------------------------------------------------------------

    def evaluate(self, scene, element):
        """The modifier on `element` at the scene's present time."""
        self.now, self.ticks = scene.now, frame_ticks(scene.rate)
        if self.ticks == 0:
            return
        self.start = frame_time(self.fStartFrame, scene.rate) if self.fStartOn else scene.start
        if self.fStartOn and self.start > self.now:
            return
        if self.fMirrorTransform:
            self.object_mode(scene, element)
        elif self.fAttributeMode and not self.attribute_mode(scene, element):
            return
        self.last_time = self.now

    def object_mode(self, scene, element):
        """Up to ten links, one after the other, with one delay queue for all."""
        self.is_shader = False
        if self.now == self.start:
            self.queue.clear()
        self.same_frame = self.now == self.last_time
        source = self.find_element(scene, element, self.fSourceName, self.source)
        for path in self.mirrored_paths():
            self.run(scene, element.find(path), source.find(path))

    def mirrored_paths(self):
        field = vars(self)
        for kind, folder, key in (('Position', POSITIONS, 'Glb'), ('Rotation', ROTATIONS, 'Rot')):
            for axis in 'XYZ':
                if field[f'f{kind}All'] or field[f'f{kind}Custom'] and field[f'f{kind}{axis}']:
                    yield f'{folder}{key}{axis}'
        if self.fScaleUniform:
            yield UNIFORM_SCALE
        for axis in 'XYZ':
            if field[f'fScale{axis}']:
                yield f'{SCALES}Sca{axis}'

    def attribute_mode(self, scene, element):
        """False when the evaluation ends without its closing steps."""
        if not self.fTargetPathSet:
            return False
        self.same_frame = self.now == self.last_time
        target = element.find(self.fTargetPath)
        if target is None:
            return False
        self.is_shader = self.fTargetPath.startswith('shdr') and target.key not in GLOBAL_KEYS
        if self.fControllerPathSet:
            found = self.find_element(scene, element, self.fControllerName, self.controller)
            controller = found.find(self.fControllerPath)
            if controller is not None:
                self.run(scene, target, controller)
        elif self.fCombineSelf or self.fModifySet:
            self.run(scene, target, None)
        return True

    def find_element(self, scene, element, name, reference):
        found = None
        if self.fFindControllerByName or self.fFindSourceByName:
            found = scene.by_name(name)
        elif reference is not None:
            found = scene.by_index(reference)
        return element if found is None else found

    def run(self, scene, target, controller):
        self.end = frame_time(self.fEndFrame, scene.rate) if self.fEndOn else scene.end
        if self.fEndOn and self.end < self.now:
            return
        is_baked = self.fBakeKeyframes and target.can_have_keys
        if self.now == self.start and self.fAttributeMode:
            self.queue.clear()
        if self.now == self.start and is_baked:
            target.slot.curve.delete(self.now, self.end, self.ticks)
        value = self.filtered(target.key, self.read(target))
        self.size, self.reach = 0.0, target.reach()
        result = self.driven(value, target, controller)
        if result is None:
            return
        result = self.limited(result, target.path[-4:])
        target.write(result, self.reach, self.size)
        if is_baked and (self.now == self.start or target.slot.curve.at(self.now - self.ticks) != result):
            target.slot.set_key(self.now)

    def read(self, place):
        """Relative links read keys and not what other modifiers made of them, where there can be keys."""
        return place.animated() if self.fRelative and place.reads_keys else place.live()

    def driven(self, value, target, controller):
        """The target's new value before its limits; nothing while a delay fills."""
        key = '0000' if self.is_shader else target.key
        own_reach = self.reach
        if self.fModifySet:
            mapped, _ = self.map_value(key, 0.0)
            return self.combined(value, self.ranged(mapped), own_reach)
        if self.fCombineSelf:
            mapped, delta = self.map_value(key, value)
            if self.same_frame and delta == 0.0:
                return value
            mapped = self.delayed(mapped)
            return None if mapped is None else self.ranged(mapped)
        read = self.read(controller)
        self.reach = controller.reach()
        mapped, _ = self.map_value(key, read)
        mapped = self.delayed(mapped)
        return None if mapped is None else self.combined(value, self.ranged(mapped), own_reach)

    # ---- its steps ---------------------------------------------------------------------------------------------

    def filtered(self, key, value):
        channel = self.channel(key)
        if self.now == self.start and channel.target_start_pending:
            channel.target_start, channel.target_start_pending = value, False
        if self.same_frame:
            return channel.target_start if self.now == self.start else channel.target_last
        if channel.target_last_pending:
            channel.target_last, channel.target_last_pending = value, False
        return value

    def map_value(self, key, value):
        channel = self.channel(key)
        if self.now == self.start and channel.baseline_pending:
            channel.baseline, channel.baseline_pending = value, False
        delta = f32(value - channel.baseline)
        if self.fRelative:
            value = delta
            self.widen(channel.baseline)
        if self.fMirrorTransform and self.is_inverted(key):
            value = -value
        value = self.modified(value, converted(self.fModifyValue, self.fModifyUnit, key))
        for factor in ([self.oscillator()] if self.fOscillateOn else []) + [self.curve()]:
            value = f32(value * factor)
            self.reach *= abs(factor)
        return value, delta

    def is_inverted(self, key):
        if key in GLOBAL_KEYS:
            return vars(self)[f'fPositionInvert{key[-1]}']
        return key in ROTATION_KEYS and vars(self)[f'fRotationInvert{key[-1]}']

    def widen(self, number):
        self.reach = self.reach and max(self.reach, abs(number))

    def modified(self, value, operand):
        if self.fModifyAdd or self.fModifySubtract:
            self.widen(operand)
        if self.fModifyAdd:
            return f32(operand + value)
        if self.fModifySubtract:
            return f32(value - operand)  # computed in 64 bits
        if self.fModifyMultiply:
            self.reach *= abs(operand)
            return f32(operand * value)
        if self.fModifyDivide:
            self.reach /= abs(operand) or 1.0
            return value if operand == 0.0 else div(value, operand)
        return operand if self.fModifySet else value

    def oscillator(self):
        passed = quotient(saturated(self.now - self.start), self.ticks)
        wave = f32(f32(f32(passed) * self.fOscillatorSpeed) + self.fOscillatorPhase)
        if self.fOscillatorSine:
            wave = sine_of(math.sin, wave)
        elif self.fOscillatorCosine:
            wave = sine_of(math.cos, wave)
        wave = f32(self.fOscillatorScale * wave)
        if wave > self.fOscillatorMax:
            return self.fOscillatorMax
        return self.fOscillatorMin if wave < self.fOscillatorMin else wave

    def curve(self):
        """The factor of decay, else that of growth."""
        if self.fDecayOn:
            return self.decay()
        return self.growth() if self.fGrowOn else 1.0

    def parts(self, span):
        """The way through the window, its square and its cube, each times `span`."""
        d = f32(saturated(self.now - self.start))
        n = f32(saturated(self.end - self.start))
        d2, n2 = f32(d * d), f32(n * n)
        return (f32(div(d, n) * span), f32(div(d2, n2) * span), f32(div(f32(d2 * d), f32(n2 * n)) * span))

    def decay(self):
        p, q, r = self.parts(f32(self.fDecayMax - self.fDecayMin))
        most = self.fDecayMax
        if self.fDecayLinear:
            factor = f32(most - p)
        elif self.fDecayQuadraticOnly:
            factor = f32(most - q)
        elif self.fDecayCubicOnly:
            factor = f32(most - r)
        elif self.fDecayQuadratic:
            factor = f32(f32(most - q) - p)
        elif self.fDecayCubic:
            factor = f32(f32(f32(most - r) - q) - p)
        else:
            return 1.0
        return self.fDecayMin if factor < self.fDecayMin else factor

    def growth(self):
        p, q, r = self.parts(f32(self.fGrowMax - self.fGrowMin))
        least = self.fGrowMin
        if self.fGrowLinear:
            factor = f32(p + least)
        elif self.fGrowQuadraticOnly:
            factor = f32(q + least)
        elif self.fGrowCubicOnly:
            factor = f32(r + least)
        elif self.fGrowQuadratic:
            factor = f32(f32(least + q) + p)
        elif self.fGrowCubic:
            factor = f32(f32(f32(least + r) + q) + p)
        else:
            return 1.0
        return self.fGrowMax if factor > self.fGrowMax else factor

    def delayed(self, value):
        if not self.fDelayOn:
            return value
        self.queue.append((value, self.reach))
        if self.now < saturated(self.start + self.fDelayFrames * self.ticks):
            return None
        value, self.reach = self.queue.popleft()
        return value

    def ranged(self, value):
        if self.fRangeOn:
            value = self.fRangeMax if value > self.fRangeMax else value
            value = self.fRangeMin if value < self.fRangeMin else value
        return value

    def combined(self, target, value, target_reach):
        reach, self.reach = self.reach, target_reach
        if self.fCombineReplace:
            self.reach = reach
            return value
        if self.fCombineAdd or self.fCombineSubtract:
            self.size = max(abs(target), abs(value))
            self.reach = max(reach, target_reach) and max(reach, target_reach, self.size)
            return f32(value + target) if self.fCombineAdd else f32(target - value)
        if self.fCombineMultiply:
            self.reach = max(reach * abs(target), abs(value) * target_reach)
            return f32(value * target)
        if self.fCombineDivide:
            if value == 0.0:
                return target
            self.reach = target_reach / abs(value) + abs(target) / value**2 * reach if reach or target_reach else 0.0
            return div(target, value)
        return target

    def limited(self, value, key):
        if self.fLowerLimitOn:
            lower = converted(self.fLowerLimit, self.fLimitUnit, key)
            value = lower if value < lower else value
        if self.fUpperLimitOn:
            upper = converted(self.fUpperLimit, self.fLimitUnit, key)
            value = upper if value > upper else value
        return value
