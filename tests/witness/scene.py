"""A scene as a link sees it: elements whose values have places with text paths, and the glTF file that holds them.

Values are in scene units here (inches, radians); the file has metres and quaternions. Every key of a file stands on a
frame, so that a value is interpolated only where a link deleted keys.
"""
import base64
import json
import math
import struct

from chain import GLOBAL_KEYS, POSITIONS, ROTATIONS, SCALES, UNIFORM_SCALE
from curve import Curve
from floats import f32, frame_time, same_bits

INCHES_IN_METRE = 39.3700787
FLOAT, ARRAY_BUFFER = 5126, 34962


class Slot:
    """A number of the scene: its value before modifiers on each frame, and the evaluated one."""

    def __init__(self, column, values, is_bool=False, is_pose=False, is_rounded=False):
        self.column, self.values, self.is_bool = column, values, is_bool  # one value when it has no keys
        self.is_pose, self.is_rounded = is_pose, is_rounded  # rounded: was a quaternion in the file
        self.curve = None  # as links that write keys leave it
        self.made = None  # what a link makes of it on each frame
        self.value = None
        self.reach = self.size = 0.0  # see chain.py
        self.kept_reach = 0.0  # of the keys that links set

    def before(self, frame):
        return self.values[frame if len(self.values) > 1 else 0]

    def begin(self, scene):
        self.value = self.made[scene.frame] if self.made else self.animated(scene)
        self.reach = max(1.0 if self.is_rounded else 0.0, self.kept_reach)  # a rotation's elements are about 1
        self.size = 0.0

    def animated(self, scene):
        return self.curve.at(scene.now) if self.curve else self.before(scene.frame)

    def start_curve(self, times):
        """None for a slot whose keys nobody changes."""
        self.kept_reach = 0.0
        keys = list(zip(times or (), self.values)) if len(self.values) > 1 else ()
        self.curve = None if times is None else Curve(self.values[0], keys)

    def set_key(self, time):
        self.curve.set(time, self.value)
        self.kept_reach = max(self.kept_reach, self.reach)

    def differ(self, a, b):
        """To the host zeros of two signs differ in an element's pose, and in other values they do not."""
        return a != b or self.is_pose and not same_bits(a, b)

    def write(self, value, reach=0.0, size=0.0):
        self.value, self.reach, self.size = float(value != 0.0) if self.is_bool else value, reach, size


class Place:
    """A slot under a path. `key` is that of the value: of a part of a colour, it is the colour's."""

    def __init__(self, scene, slot, path, key=None, reads_keys=True):
        self.scene, self.slot, self.path = scene, slot, path
        self.key, self.reads_keys = key or path[-4:], reads_keys
        self.can_have_keys = self.key not in GLOBAL_KEYS
        self.write = slot.write
        self.slots = (slot,)

    def live(self):
        return self.slot.value

    def animated(self):
        return self.slot.animated(self.scene)

    def reach(self):
        return self.slot.reach


class GlobalPlace(Place):
    """A place in the scene of an element below another one: it goes through that one's matrix, here in 64 bits."""

    def __init__(self, scene, slots, path, parent):
        axis = 'XYZ'.index(path[-1])
        super().__init__(scene, slots[axis], path, reads_keys=False)
        self.axis, self.slots, self.parent, self.write = axis, slots, parent, self.place

    def in_scene(self):
        return self.parent.to_scene([slot.value for slot in self.slots])

    def live(self):
        return f32(self.in_scene()[self.axis])

    def reach(self):
        local = [max(abs(slot.value), slot.reach) for slot in self.slots]
        return max(map(abs, self.parent.offset)) + sum(local) * self.parent.most

    def place(self, value, reach, size):
        point, reach = self.in_scene(), max(reach, self.reach())
        if f32(point[self.axis]) != value:
            point[self.axis] = value
            for slot, number in zip(self.slots, self.parent.from_scene(point)):
                slot.write(f32(number), reach / self.parent.least, size / self.parent.least)


class Frame:
    """The matrix of a parent: a turn, then a move, of what is scaled."""

    def __init__(self, angles, offset, scale):
        self.turn, self.offset, self.scale = turn_of(angles), offset, scale
        self.most, self.least = max(scale), min(scale)

    def to_scene(self, point):
        scaled = [a * b for a, b in zip(point, self.scale)]
        return [sum(a * b for a, b in zip(row, scaled)) + move for row, move in zip(self.turn, self.offset)]

    def from_scene(self, point):
        moved = [a - b for a, b in zip(point, self.offset)]
        return [sum(row[i] * number for row, number in zip(self.turn, moved)) / self.scale[i] for i in range(3)]


def turn_of(angles):
    """About X, then Y, then Z, as rows."""
    (a, b, c), (p, q, r) = map(math.cos, angles), map(math.sin, angles)
    return ((c * b, c * q * p - r * a, c * q * a + r * p), (r * b, r * q * p + c * a, r * q * a - c * p),
            (-q, b * p, b * a))


def quaternion_of(angles):
    """The same, as x, y, z, w."""
    (a, b, c), (p, q, r) = (map(wave, (angle / 2 for angle in angles)) for wave in (math.cos, math.sin))
    return [p * b * c - a * q * r, a * q * c + p * b * r, a * b * r - p * q * c, a * b * c + p * q * r]


class Element:
    def __init__(self, scene, name):
        self.scene, self.name = scene, name
        self.places, self.slots, self.links = {}, [], []
        self.node = {'name': name}
        self.is_below = False

    def find(self, path):
        return self.places.get(path)

    def add(self, slot, *paths, **rest):
        self.slots.append(slot)
        for path in paths:
            self.places[path] = Place(self.scene, slot, path, **rest)

    def add_custom(self, name, values):
        """A number or a truth value in the node's extras, with keys where there are several values."""
        base = values[0]
        is_bool = isinstance(base, bool)
        slot = Slot(f'element "{self.name}" {name}', [float(value) for value in values], is_bool)
        self.add(slot, f'self,cust,{name}')
        self.node.setdefault('extras', {})[name] = base
        if len(values) > 1:
            pointer = f'/nodes/{self.scene.elements.index(self)}/extras/{name}'
            self.scene.animate({'path': 'pointer', 'extensions': {'KHR_animation_pointer': {'pointer': pointer}}},
                               [[value] for value in values])

    def add_transform(self, metres, scales=((1.0, 1.0, 1.0),), angles=None, parent=None):
        """`metres` is one translation, or one a frame; so are the others. Without angles nothing turns. The parent has
        neither modifiers nor keys.
        """
        self.node |= {'translation': metres[0], 'scale': scales[0]}
        self.animate('translation', metres)
        self.animate('scale', scales)
        if angles:
            turns = [quaternion_of(row) for row in angles]
            self.node['rotation'] = turns[0]
            self.animate('rotation', turns)
        positions = []
        for i, axis in enumerate('XYZ'):
            path = f'{POSITIONS}{axis}COO'
            inches = [f32(row[i] * INCHES_IN_METRE) for row in metres]
            self.add(Slot(f'{self.name} {axis}COO (inches)', inches, is_pose=True), path, reads_keys=False)
            positions.append(self.places[path].slot)
            turn = [f32(row[i]) for row in angles or [(0.0, 0.0, 0.0)]]
            self.add(Slot(f'{self.name} Rot{axis} (radians)', turn, is_pose=True, is_rounded=bool(angles)),
                     f'{ROTATIONS}Rot{axis}')
            scale = [f32(row[i]) for row in scales]
            self.add(Slot(f'{self.name} Sca{axis} (factor)', scale, is_pose=True), f'{SCALES}Sca{axis}')
        self.add(Slot(f'{self.name} SCAL (factor)', [1.0], is_pose=True), UNIFORM_SCALE)
        for axis, slot in zip('XYZ', positions):
            path = f'{POSITIONS}Glb{axis}'
            self.places[path] = (GlobalPlace(self.scene, positions, path, parent) if parent
                                 else Place(self.scene, slot, path, reads_keys=False))

    def animate(self, path, rows):
        if len(rows) > 1:
            self.scene.animate({'node': self.scene.elements.index(self), 'path': path}, rows)

    def put_below(self, name, angles, metres, scale):
        """Makes an element for it to stand below, and answers that one's matrix."""
        parent = self.scene.add_element(name)
        parent.node |= {'translation': metres, 'rotation': quaternion_of(angles), 'scale': scale,
                        'children': [self.scene.elements.index(self)]}
        self.is_below = True
        return Frame(angles, [f32(number * INCHES_IN_METRE) for number in metres], scale)

    def add_material(self, colour, roughness):
        for i, part in enumerate(('red', 'grn', 'blu', 'alp')):
            name = ('red', 'green', 'blue', 'alpha')[i]
            self.add(Slot(f'shader "{self.name}" Base colour {name}', [colour[i]]), f'shdr,0000,BCol,{part}V',
                     key='BCol')
        self.add(Slot(f'shader "{self.name}" Roughness', [roughness]), 'shdr,0000,Roug')
        self.node['mesh'] = self.scene.add_mesh(self.name, colour, roughness)


class Scene:
    def __init__(self, rate, frames):
        self.rate = f32(rate)
        self.times = [frame_time(frame, self.rate) for frame in range(frames)]
        self.start, self.end = self.times[0], self.times[-1]
        self.elements, self.names = [], {}
        self.now = self.frame = 0
        self.samplers, self.channels, self.accessors, self.views, self.data = [], [], [], [], bytearray()
        self.meshes, self.materials = [], []
        self.add_accessor([[time / 180000] for time in self.times], has_bounds=True)

    def add_element(self, name):
        element = Element(self, name)
        self.elements.append(element)
        self.names.setdefault(name, element)
        return element

    def by_name(self, name):
        return self.names.get(name)

    def by_index(self, index):
        return self.elements[index] if index < len(self.elements) else None

    def begin(self, frame):
        self.frame, self.now = frame, self.times[frame]

    # ---- the file ----------------------------------------------------------------------------------------------

    def add_accessor(self, rows, has_bounds=False, target=None):
        width = len(rows[0])
        flat = [value for row in rows for value in row]
        view = {'buffer': 0, 'byteOffset': len(self.data), 'byteLength': 4 * len(flat)}
        self.views.append(view | ({'target': target} if target else {}))
        self.data += struct.pack(f'<{len(flat)}f', *flat)
        accessor = {'bufferView': len(self.views) - 1, 'componentType': FLOAT, 'count': len(rows),
                    'type': ('SCALAR', 'VEC2', 'VEC3', 'VEC4')[width - 1]}
        if has_bounds:
            columns = [[f32(row[i]) for row in rows] for i in range(width)]
            accessor |= {'min': [min(column) for column in columns], 'max': [max(column) for column in columns]}
        self.accessors.append(accessor)
        return len(self.accessors) - 1

    def animate(self, target, rows):
        self.samplers.append({'input': 0, 'output': self.add_accessor(rows)})
        self.channels.append({'sampler': len(self.samplers) - 1, 'target': target})

    def add_mesh(self, name, colour, roughness):
        if not self.meshes:
            corners = [[0.0, 0.0, 0.0], [0.1, 0.0, 0.0], [0.0, 0.1, 0.0]]
            self.triangle = self.add_accessor(corners, has_bounds=True, target=ARRAY_BUFFER)
        self.materials.append({'name': name, 'pbrMetallicRoughness': {'baseColorFactor': colour,
                                                                      'roughnessFactor': roughness}})
        self.meshes.append({'primitives': [{'attributes': {'POSITION': self.triangle},
                                            'material': len(self.materials) - 1}]})
        return len(self.meshes) - 1

    def write(self, file):
        for element in self.elements:
            if element.links:
                element.node.setdefault('extensions', {})['QLX_modifiers'] = {'modifiers': element.links}
        scene = {
            'asset': {'version': '2.0', 'generator': 'tests/witness'},
            'extensionsUsed': ['QLX_modifiers', 'KHR_animation_pointer'],
            'scene': 0,
            'scenes': [{'nodes': [i for i, element in enumerate(self.elements) if not element.is_below]}],
            'nodes': [element.node for element in self.elements],
            'meshes': self.meshes,
            'materials': self.materials,
            'animations': [{'channels': self.channels, 'samplers': self.samplers}],
            'accessors': self.accessors,
            'bufferViews': self.views,
            'buffers': [{'byteLength': len(self.data), 'uri': 'data:application/octet-stream;base64,'
                         + base64.b64encode(self.data).decode()}],
        }
        file.write_text(json.dumps({name: part for name, part in scene.items() if part}))
