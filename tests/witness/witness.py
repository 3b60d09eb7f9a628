#!/usr/bin/env python3
"""witness.py QLX [--links N] [--seed N] [--keep FOLDER] - random links baked by the program, and computed here.

Scenes of several frame rates with N links in all (default 2000) are baked over 60 frames; each value of the table
must be the one that `chain.py` computes: to the last bit, and within 1e-6 of its size where a link has a sine, or
where it went through a matrix or was a quaternion. One link in eight is in object mode, one in five writes keys. The
scenes as the program saves them must bake alike. Prints one line, or the first differences with all fields of their
links; ends with 1 when something differs. With --spoil the scenes get other numbers than the computation: then it
must find differences.
"""
import argparse
import csv
import itertools
import json
import math
import random
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True  # before our own modules: a source tree is no place for it

from chain import DEFAULTS, GLOBAL_KEYS, POSITIONS, ROTATIONS, SCALES, UNIFORM_SCALE, Link
from floats import f32, same_bits
from random_links import CUSTOM_TARGET, OWN_VALUE, Random, has_sine, modifier_json, random_link, random_mirror
from scene import Scene, Slot

FRAMES = 60
RATES = (24, 30, 29.97, 12.5)
CONTROLLERS = 12
SOURCES = 8
# Two libraries' sines differ in the last bit; 32-bit matrices and decompositions round where 64-bit ones here do not.
TOLERANCE = 1e-6
MOST_SHOWN = 5


class Case:
    """A link on an element of its own: what it must make of its targets on each frame."""

    def __init__(self, element, fields, source=None):
        self.element, self.fields = element, fields
        self.link = Link(fields)
        self.is_mirror = self.link.fMirrorTransform
        paths = list(self.link.mirrored_paths()) if self.is_mirror else [fields['fTargetPath']]
        places = [element.find(path) for path in paths]
        self.slots = list(dict.fromkeys(slot for place in places if place for slot in place.slots))
        self.has_sine = has_sine(fields)
        self.placed = {slot for place in places if place and place.key in GLOBAL_KEYS for slot in place.slots}

    def may_lose_sign(self, slot, zero, frame):
        """To the host a zero of the other sign is no change, and a matrix has no negative one."""
        return same_bits(zero, self.before[slot][frame]) or slot in self.placed

    def compute(self, scene):
        """Fills what is expected; false where a value is no number, which no scene may have."""
        link = self.link = Link(self.fields)
        self.expected, self.before, self.sizes, self.reaches = ({slot: [] for slot in self.slots} for _ in range(4))
        is_changed = False
        for slot in self.slots:
            slot.start_curve(scene.times if link.fBakeKeyframes else None)
        slots = {*self.slots, *self.element.slots, *self.source(scene).slots}
        for frame in range(FRAMES):
            scene.begin(frame)
            for slot in slots:
                slot.begin(scene)
            before = [slot.value for slot in self.slots]
            link.evaluate(scene, self.element)
            after = [slot.value for slot in self.slots]
            if not is_changed and any(map(Slot.differ, self.slots, before, after)):
                is_changed = True
                self.see_keys(scene, frame)
            for slot, value in zip(self.slots, before):
                self.before[slot].append(value)
                self.expected[slot].append(slot.value)
                self.sizes[slot].append(max(abs(slot.value), slot.size, slot.reach))
                self.reaches[slot].append(slot.reach)
        return all(math.isfinite(value) for values in self.expected.values() for value in values)

    def see_keys(self, scene, count):
        """The table of an element begins with its first change: the frames before are what its keys give by then."""
        for slot in (slot for slot in self.slots if slot.curve):
            self.before[slot] = [slot.curve.at(time) for time in scene.times[:count]]
            self.expected[slot] = list(self.before[slot])
            self.reaches[slot] = [max(slot.reach, slot.kept_reach)] * count
            self.sizes[slot] = [max(abs(value), slot.reach, slot.kept_reach) for value in self.before[slot]]

    def source(self, scene):
        link = self.link
        name, reference = (link.fSourceName, link.source) if self.is_mirror else (link.fControllerName, link.controller)
        return link.find_element(scene, self.element, name, reference)


def random_keys(random_, frames):
    """Keys that jump, drift or hold."""
    value, keys = random_.real(30.0), []
    for _ in range(frames):
        keys.append(value)
        value = value if random_.chance(0.3) else random_.real(30.0)
    return keys


def random_place(random_):
    """Metres, without a negative zero, which matrices do not keep."""
    return [random_.real(2.0) + 0.0 for _ in range(3)]


def add_controllers(scene, random_):
    sources = []
    for i in range(CONTROLLERS):
        element = scene.add_element(f'Controller{i}')
        element.add_custom('keys', random_keys(random_, FRAMES))
        element.add_custom('stat', [random_.real()])
        element.add_custom('flag', [random_.chance(0.5)])
        element.add_transform([random_place(random_) for _ in range(FRAMES)])
        axis = 'XYZ'[i % 3]
        paths = ['self,cust,keys', 'self,cust,keys', 'self,cust,stat', 'self,cust,flag', f'{POSITIONS}{axis}COO',
                 f'{POSITIONS}Glb{axis}']
        sources += [(element.name, i, path) for path in paths]
    return sources


def add_follower(scene, random_, number, path):
    """An element with what a link on it reads and writes."""
    element = scene.add_element(f'Follower{number}')
    kind = random_.rng.randrange(12)
    values = [random_.chance(0.5)] if kind == 0 else random_keys(random_, FRAMES) if kind < 6 else [random_.real()]
    element.add_custom('targ', values)
    element.add_custom('ownv', random_keys(random_, FRAMES) if kind == 6 else [random_.real()])
    if path.startswith('self,amet'):
        # A place in the scene goes through a matrix: it needs a scale that can be undone.
        scale = [1.0, 1.0, 1.0] if path[-4:] in GLOBAL_KEYS else [random_.real(3.0) for _ in range(3)]
        element.add_transform([random_place(random_)], [scale])
    if path.startswith('shdr'):
        element.add_material([f32(random_.rng.random()) for _ in range(4)], f32(random_.rng.random()))
    return element


def random_angles(random_):
    """No Euler angles are near enough to a quarter turn to be ambiguous."""
    return [f32(random_.rng.uniform(-1.0, 1.0)) for _ in range(3)]


def random_parent(random_, element):
    scale = [f32(random_.rng.uniform(0.5, 2.0)) for _ in range(3)]
    return element.put_below(f'Above{element.name}', random_angles(random_), random_place(random_), scale)


def drive(element, path):
    """A link from the element's own keys: the last bit of what it makes is known, as it is not of a quaternion."""
    fields = {'fAttributeMode': True, 'fTargetPath': path, 'fTargetPathSet': True, 'fControllerPath': OWN_VALUE,
              'fControllerPathSet': True}
    element.links.append(modifier_json(DEFAULTS | fields))
    keys, slot = element.find(OWN_VALUE).slot, element.find(path).slot
    slot.made = [f32(0.0 + value) for value in keys.values]  # what it adds has no negative zero


def add_sources(scene, random_):
    """What object mode reads."""
    sources = []
    for i in range(SOURCES):
        element = scene.add_element(f'Source{i}')
        element.add_custom('ownv', random_keys(random_, FRAMES))
        parent = random_parent(random_, element) if i % 4 == 3 else None
        angles = [random_angles(random_) for _ in range(FRAMES)] if i % 4 == 2 else None
        scales = [[random_.real(3.0) for _ in range(3)] for _ in range(FRAMES if i % 2 else 1)]
        element.add_transform([random_place(random_) for _ in range(FRAMES)], scales, angles, parent)
        for path in [UNIFORM_SCALE] + ([] if angles else [f'{ROTATIONS}Rot{axis}' for axis in 'XYZ']):
            drive(element, path)
        sources.append((element.name, scene.elements.index(element)))
    return sources


def add_mirror_follower(scene, random_, number):
    """An element for a link in object mode, and whether something of it is rounded."""
    element = scene.add_element(f'Follower{number}')
    parent = random_parent(random_, element) if random_.chance(0.2) else None
    is_turned = random_.chance(0.3)
    element.add_transform([random_place(random_)], [[f32(random_.rng.uniform(0.5, 2.0)) for _ in range(3)]],
                          [random_angles(random_)] if is_turned else None, parent)
    return element, bool(parent) or is_turned


def random_case(scene, random_, number, sources, mirrored):
    """A link that works, and how many others made something that is no number."""
    if random_.chance(0.125):
        element, is_rounded = add_mirror_follower(scene, random_, number)
        again = lambda: random_mirror(random_, FRAMES, mirrored, is_rounded)
        fields = again()
    else:
        fields = random_link(random_, FRAMES, sources)
        path = fields['fTargetPath']
        element = add_follower(scene, random_, number, path)
        again = lambda: random_link(random_, FRAMES, sources) | {'fTargetPath': path}
    for refused in itertools.count():
        case = Case(element, fields)
        if case.compute(scene):
            return case, refused
        fields = again()


def build(rng, rate, count, first, spoil):
    """A scene with so many links, and what they make."""
    random_ = Random(rng)
    scene = Scene(rate, FRAMES)
    sources, mirrored = add_controllers(scene, random_), add_sources(scene, random_)
    cases, refused = [], 0
    while len(cases) < count:
        case, again = random_case(scene, random_, first + len(cases), sources, mirrored)
        element, refused = case.element, refused + again
        spoiled = {'fModifyValue': case.fields['fModifyValue'] + 1} if spoil else {}
        element.links.append(modifier_json(case.fields | spoiled))
        cases.append(case)
        may_be_followed = not (case.is_mirror or case.has_sine or case.link.fBakeKeyframes)
        if may_be_followed and case.slots and case.fields['fTargetPath'] == CUSTOM_TARGET and random_.chance(0.1):
            slot, = case.slots
            slot.made = case.expected[slot]  # links that follow links
            sources.append((element.name, scene.elements.index(element), CUSTOM_TARGET))
    return scene, cases, refused


def run(program, *arguments):
    done = subprocess.run([program, *arguments], capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f'witness: qlx {" ".join(map(str, arguments))}: {done.stderr.strip()}')


def bake_to_table(program, scene, file):
    table = file.with_suffix('.csv')
    run(program, 'bake', file, '-o', file.with_suffix('.glb'), '--csv', table, '--fps', str(scene.rate), '--from', '0',
        '--to', str(FRAMES - 1))
    return table


def bake(program, scene, folder, name):
    file, saved = folder / f'{name}.gltf', folder / f'{name}.saved.gltf'
    scene.write(file)
    table = bake_to_table(program, scene, file)
    # Saving changes nothing: a value that is set to what it is, and all links written by the program itself.
    flag = scene.by_name('Controller0').find('self,cust,flag').animated() != 0.0
    run(program, 'set', file, '--element', 'Controller0', '--path', 'self,cust,flag', str(flag).lower(), '-o', saved)
    if bake_to_table(program, scene, saved).read_bytes() != table.read_bytes():
        sys.exit(f'witness: {saved} does not bake as {file}')
    with open(table, newline='') as stream:
        titles, *rows = csv.reader(stream)
    return {title: [f32(float(row[i])) for row in rows] for i, title in enumerate(titles)}


def check_others(scene, cases, baked):
    """What no random link writes is as it was: the other parts of a colour have columns beside the one that changed."""
    targets = {id(slot) for case in cases for slot in case.slots}
    for slot in (slot for element in scene.elements for slot in element.slots if id(slot) not in targets):
        for frame, found in enumerate(baked.get(slot.column, ())):
            expected = slot.made[frame] if slot.made else slot.before(frame)
            if not same_bits(found, expected) and not slot.is_rounded:
                sys.exit(f'witness: {slot.column} should be {expected!r}, frame {frame}')


class Verdict:
    def __init__(self):
        self.values = self.changed = self.mirrored = self.with_keys = 0
        self.rounded = self.exact_rounded = 0
        self.worst = 0.0
        self.failures = []

    def compare(self, case, baked):
        for slot in case.slots:
            self.compare_slot(case, slot, baked.get(slot.column))

    def compare_slot(self, case, slot, column):
        """There is no column where nothing changed."""
        self.changed += column is not None
        self.mirrored += case.is_mirror
        self.with_keys += slot.curve is not None
        for frame, found in enumerate(column or case.before[slot]):
            self.values += 1
            expected = case.expected[slot][frame]
            exact = same_bits(found, expected) or found == expected == 0.0 and case.may_lose_sign(slot, found, frame)
            if case.has_sine or case.reaches[slot][frame]:
                self.rounded += 1
                self.exact_rounded += exact
                size = case.sizes[slot][frame]
                gap = abs(found - expected) / size if size else abs(found - expected)
                self.worst = gap if not gap <= self.worst else self.worst
                exact = gap <= TOLERANCE
            if not exact:
                self.failures.append((case, slot, frame, found))
                return

    def show(self):
        for case, slot, frame, found in self.failures[:MOST_SHOWN]:
            expected = case.expected[slot][frame]
            print(f'FAIL {case.element.name}, {slot.column}, frame {frame}: baked {found!r}, expected {expected!r}')
            print(f'  before: {case.before[slot][frame]!r}; {json.dumps(case.fields)}')
        links = len({id(failure[0]) for failure in self.failures})
        print(f'{"FAIL" if self.failures else "OK"} {links} links differ in {self.values} values; {self.changed} '
              f'targets change, {self.mirrored} are of object mode, {self.with_keys} get keys; of {self.rounded} '
              f'values with sines, matrices or quaternions {self.exact_rounded} are equal to the last bit, the worst is '
              f'{self.worst:.2e} away')


def check(options, folder):
    verdict, refused, started = Verdict(), 0, 0
    links, rng = options.links, random.Random(options.seed)
    for number, rate in enumerate(RATES):
        share = links // len(RATES) + (number < links % len(RATES))
        scene, cases, again = build(rng, rate, share, started, options.spoil)
        started, refused = started + share, refused + again
        baked = bake(options.program, scene, folder, f'rate{number}')
        check_others(scene, cases, baked)
        for case in cases:
            verdict.compare(case, baked)
    verdict.show()
    print(f'{links} links of seed {options.seed}, {FRAMES} frames, {len(RATES)} rates; {refused} more made '
          'something that is no number and were left out')
    return not verdict.failures


def main():
    parser = argparse.ArgumentParser(description='Random links, baked and computed.')
    parser.add_argument('program')
    parser.add_argument('--links', type=int, default=2000)
    parser.add_argument('--seed', type=int, default=1)
    parser.add_argument('--keep', type=Path, help='leave the scenes and tables in this folder')
    parser.add_argument('--spoil', action='store_true')
    options = parser.parse_args()
    if options.keep:
        options.keep.mkdir(parents=True, exist_ok=True)
        return check(options, options.keep)
    with tempfile.TemporaryDirectory() as folder:
        return check(options, Path(folder))


if __name__ == '__main__':
    sys.exit(0 if main() else 1)
