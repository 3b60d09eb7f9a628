"""A scene as a link sees it: elements whose values have places with text paths, and the glTF file that holds them.

Values are in scene units here (inches, radians); the file has metres. Every key stands on a frame, so that no value is
ever interpolated.
"""
import base64
import json
import struct

from floats import f32, frame_time

INCHES_IN_METRE = 39.3700787
POSITIONS = 'self,amet,TRAN,OFFS,'
ROTATIONS = 'self,amet,TRAN,ROTA,'
FLOAT, ARRAY_BUFFER = 5126, 34962


class Slot:
    """A number of the scene: its value before modifiers on each frame, and the evaluated one."""

    def __init__(self, column, values, is_bool=False):
        self.column, self.values, self.is_bool = column, values, is_bool  # one value when it has no keys
        self.made = None  # what a link makes of it on each frame
        self.value = None

    def before(self, frame):
        return self.values[frame if len(self.values) > 1 else 0]

    def write(self, value):
        self.value = float(value != 0.0) if self.is_bool else value


class Place:
    """A slot under a path. `key` is that of the value: of a part of a colour, it is the colour's."""

    def __init__(self, scene, slot, path, key=None, has_holder=True):
        self.scene, self.slot, self.path = scene, slot, path
        self.key, self.has_holder = key or path[-4:], has_holder
        self.write = slot.write

    def live(self):
        return self.slot.value

    def animated(self):
        return self.slot.before(self.scene.frame)


class Element:
    def __init__(self, scene, name):
        self.scene, self.name = scene, name
        self.places, self.slots, self.links = {}, [], []
        self.node = {'name': name}

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

    def add_transform(self, metres, scale=(1.0, 1.0, 1.0)):
        """`metres` is one translation, or one a frame."""
        for i, axis in enumerate('XYZ'):
            inches = [f32(row[i] * INCHES_IN_METRE) for row in metres]
            self.add(Slot(f'{self.name} {axis}COO (inches)', inches), f'{POSITIONS}{axis}COO', f'{POSITIONS}Glb{axis}',
                     has_holder=False)
            self.add(Slot(f'{self.name} Rot{axis} (radians)', [0.0]), f'{ROTATIONS}Rot{axis}')
            self.add(Slot(f'{self.name} Sca{axis} (factor)', [f32(scale[i])]), f'self,amet,TRAN,XYZ ,Sca{axis}')
        self.add(Slot(f'{self.name} SCAL (factor)', [1.0]), 'self,amet,TRAN,SCAL')
        self.node |= {'translation': metres[0], 'scale': scale}
        if len(metres) > 1:
            self.scene.animate({'node': self.scene.elements.index(self), 'path': 'translation'}, metres)

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
                    'type': ('SCALAR', 'VEC2', 'VEC3')[width - 1]}
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
            'scenes': [{'nodes': list(range(len(self.elements)))}],
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
