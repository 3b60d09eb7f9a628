#!/usr/bin/env python3
"""witness.py QLX [--links N] [--seed N] [--keep FOLDER] - random links baked by the program, and computed here.

Scenes of several frame rates with N links in all (default 2000) are baked over 60 frames; each value of the table must be
the one that `chain.py` computes: to the last bit, and within 1e-6 of its size where a link has a sine. The scenes as the
program saves them must bake alike. Prints one line, or the first differences with all fields of their links; ends with 1
when something differs. With --spoil the scenes get other numbers than the computation: then it must find differences.
"""
import argparse
import csv
import json
import math
import random
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True  # before our own modules: a source tree is no place for it

from chain import GLOBAL_KEYS, Link
from floats import f32
from random_links import CUSTOM_TARGET, OWN_VALUE, Random, modifier_json, random_link
from scene import POSITIONS, Scene

FRAMES = 60
RATES = (24, 30, 29.97, 12.5)
CONTROLLERS = 12
TOLERANCE = 1e-6
MOST_SHOWN = 5


class Case:
    """A link on an element of its own: what it must make of its target on each frame."""

    def __init__(self, element, fields):
        self.element, self.fields = element, fields
        self.slot = element.find(fields['fTargetPath']).slot if element.find(fields['fTargetPath']) else None
        self.has_sine = bool(fields['fOscillateOn'] and (fields['fOscillatorSine'] or fields['fOscillatorCosine']))
        self.expected, self.sizes = [], []

    def may_lose_sign(self, zero, frame):
        """To the host a zero of the other sign is no change, and a matrix has no negative one."""
        return same_bits(zero, self.slot.before(frame)) or self.fields['fTargetPath'][-4:] in GLOBAL_KEYS


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
        element.add_transform([random_place(random_)], scale)
    if path.startswith('shdr'):
        element.add_material([f32(random_.rng.random()) for _ in range(4)], f32(random_.rng.random()))
    return element


def compute(scene, case):
    """Fills what is expected; false where a value is no number, which no scene may have."""
    link = Link(case.fields)
    case.expected, case.sizes = [], []
    source = link.find_element(scene, case.element)
    places = [source.find(link.fControllerPath), case.element.find(link.fTargetPath)]
    slots = {place.slot for place in places if place}
    for frame in range(FRAMES):
        scene.begin(frame)
        for slot in slots:
            slot.value = slot.made[frame] if slot.made else slot.before(frame)
        link.evaluate(scene, case.element)
        if case.slot:
            case.expected.append(case.slot.value)
            case.sizes.append(max(abs(case.slot.value), link.size))
    return all(math.isfinite(value) for value in case.expected)


def build(rng, rate, count, first, spoil):
    """A scene with so many links, and what they make."""
    random_ = Random(rng)
    scene = Scene(rate, FRAMES)
    sources = add_controllers(scene, random_)
    cases, refused = [], 0
    while len(cases) < count:
        fields = random_link(random_, FRAMES, sources)
        element = add_follower(scene, random_, first + len(cases), fields['fTargetPath'])
        case = Case(element, fields)
        while not compute(scene, case):
            refused += 1
            case = Case(element, random_link(random_, FRAMES, sources) | {'fTargetPath': fields['fTargetPath']})
        spoiled = {'fModifyValue': case.fields['fModifyValue'] + 1} if spoil else {}
        element.links.append(modifier_json(case.fields | spoiled))
        cases.append(case)
        if case.slot and not case.has_sine and case.fields['fTargetPath'] == CUSTOM_TARGET and random_.chance(0.1):
            case.slot.made = case.expected  # links that follow links
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


def same_bits(a, b):
    return struct.pack('<f', a) == struct.pack('<f', b)


def check_others(scene, cases, baked):
    """What no link writes stays as it was: the other parts of a colour have columns beside the one that changed."""
    targets = {id(case.slot) for case in cases}
    for slot in (slot for element in scene.elements for slot in element.slots if id(slot) not in targets):
        for frame, found in enumerate(baked.get(slot.column, ())):
            if not same_bits(found, slot.before(frame)):
                sys.exit(f'witness: {slot.column} should not change, frame {frame}')


class Verdict:
    def __init__(self):
        self.values = self.changed = self.sines = self.exact_sines = 0
        self.worst = 0.0
        self.failures = []

    def compare(self, case, baked):
        if not case.slot:
            return
        column = baked.get(case.slot.column)  # none where nothing changed
        before = [case.slot.before(frame) for frame in range(FRAMES)]
        self.changed += column is not None
        for frame, found in enumerate(column or before):
            self.values += 1
            expected = case.expected[frame]
            exact = same_bits(found, expected) or found == expected == 0.0 and case.may_lose_sign(found, frame)
            if case.has_sine:
                self.sines += 1
                self.exact_sines += exact
                size = case.sizes[frame]
                gap = abs(found - expected) / size if size else abs(found - expected)
                self.worst = gap if not gap <= self.worst else self.worst
                exact = gap <= TOLERANCE
            if not exact:
                self.failures.append((case, frame, found, expected))
                return

    def show(self):
        for case, frame, found, expected in self.failures[:MOST_SHOWN]:
            print(f'FAIL {case.element.name}, {case.slot.column}, frame {frame}: baked {found!r}, expected {expected!r}')
            print(f'  before: {case.slot.before(frame)!r}; {json.dumps(case.fields)}')
        print(f'{"FAIL" if self.failures else "OK"} {len(self.failures)} links differ in {self.values} values; '
              f'{self.changed} links change something; with sines {self.exact_sines} of {self.sines} values are equal '
              f'to the last bit, the worst is {self.worst:.2e} away')


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
    print(f'{links} links of seed {options.seed}, {FRAMES} frames, {len(RATES)} rates; {refused} more made something that is '
          'no number and were left out')
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
