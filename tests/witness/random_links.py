"""Random links, seeded, and their text in a scene file."""
import struct

from chain import POSITIONS, ROTATIONS, SCALES, UNIFORM_SCALE
from floats import INT_MAX, INT_MIN, f32

GROUPS = {
    'combine': ('fCombineReplace', 'fCombineSelf', 'fCombineAdd', 'fCombineSubtract', 'fCombineMultiply',
                'fCombineDivide'),
    'modify': ('fModifyAdd', 'fModifySubtract', 'fModifyMultiply', 'fModifyDivide', 'fModifySet'),
    'decay': ('fDecayLinear', 'fDecayQuadratic', 'fDecayCubic', 'fDecayQuadraticOnly', 'fDecayCubicOnly'),
    'grow': ('fGrowLinear', 'fGrowQuadratic', 'fGrowCubic', 'fGrowQuadraticOnly', 'fGrowCubicOnly'),
    'wave': ('fOscillatorSine', 'fOscillatorCosine'),
}
# Key, token and the fields of each block of the private text, in the order in which it is written.
BLOCKS = (
    ('decy', (('dlin', 'fDecayLinear'), ('dqua', 'fDecayQuadratic'), ('dcub', 'fDecayCubic'),
              ('dqut', 'fDecayQuadraticOnly'), ('dcut', 'fDecayCubicOnly'), ('dmax', 'fDecayMax'),
              ('dmin', 'fDecayMin'))),
    ('grow', (('glin', 'fGrowLinear'), ('gqua', 'fGrowQuadratic'), ('gcub', 'fGrowCubic'),
              ('gqut', 'fGrowQuadraticOnly'), ('gcut', 'fGrowCubicOnly'), ('gmax', 'fGrowMax'),
              ('gmin', 'fGrowMin'))),
    ('oscl', (('osin', 'fOscillatorSine'), ('ocos', 'fOscillatorCosine'), ('opho', 'fOscillatorPhase'),
              ('osca', 'fOscillatorScale'), ('omax', 'fOscillatorMax'), ('omin', 'fOscillatorMin'),
              ('ospd', 'fOscillatorSpeed'))),
)
PRIVATE = {field for _, rows in BLOCKS for _, field in rows} | {
    'fTargetPath', 'fTargetPathSet', 'fControllerPath', 'fControllerPathSet', 'controller', 'source'}


def token_number(value):
    """As the token format keeps a number: six decimals, no exponent."""
    return f'{value:.6f}'.rstrip('0').rstrip('.')


def reference(index):
    """The bytes of an element's id, which is two more than the index of its node."""
    return '' if index is None else struct.pack('<I', index + 2).hex()


def private_text(fields):
    """What the modifier's own persistence writes."""
    rows = [f'pset {int(fields["fTargetPathSet"])}', f'cpsl "{fields["fTargetPath"]}"',
            f'sobj "{reference(fields.get("controller"))}"', f'bobj "{reference(fields.get("source"))}"',
            f'cpst {int(fields["fControllerPathSet"])}', f'spar "{fields["fControllerPath"]}"']
    for block, tokens in BLOCKS:
        rows.append(f'{block} {{')
        for token, field in tokens:
            value = fields[field]
            rows.append(f'{token} {int(value) if isinstance(value, bool) else token_number(value)}')
        rows.append('}')
    return ''.join(f'{row}\r\n' for row in rows)


def modifier_json(fields):
    return {'class': 'fQLX', 'parameters': {name: value for name, value in fields.items() if name not in PRIVATE},
            'private': private_text(fields)}


class Random:
    """Numbers that are apt to show faults: round ones, zero and crossed bounds as often as any others."""

    def __init__(self, rng):
        self.rng = rng

    def chance(self, part):
        return self.rng.random() < part

    def real(self, most=100.0):
        kind = self.rng.randrange(4)
        if kind == 0:
            return f32(self.rng.choice((0.0, 0.0, 1.0, -1.0, 0.5, 2.0, -0.0, 1e-3, 3.0)))
        if kind == 1:
            return f32(round(self.rng.uniform(-most, most)))
        return f32(self.rng.uniform(-most, most) * (1e-3 if kind == 2 else 1.0))

    def plain(self, most=4.0):
        """A number that six decimals hold."""
        return f32(round(self.rng.uniform(-most, most), self.rng.randrange(5))) + 0.0  # no negative zero

    def group(self, name):
        flags = GROUPS[name]
        if self.chance(0.1):  # what no panel makes: any of them, or none
            return {flag: self.chance(0.4) for flag in flags}
        chosen = self.rng.choice(flags)
        return {flag: flag == chosen for flag in flags}

    def frame(self, frames):
        if self.chance(0.03):
            return self.rng.choice((INT_MAX, INT_MIN))
        return self.rng.randint(-10, frames + 10)


def random_window(random, frames):
    fields = {'fStartOn': random.chance(0.4), 'fEndOn': random.chance(0.4)}
    fields |= {'fStartFrame': random.rng.randint(-10, frames + 2), 'fEndFrame': random.frame(frames)}
    if fields['fStartOn'] and random.chance(0.6):  # mostly one that works
        fields['fStartFrame'] = random.rng.randint(0, frames // 2)
        fields['fEndFrame'] = fields['fStartFrame'] + random.rng.randint(0, frames)
    return fields


def random_delay(random):
    on = random.chance(0.25)
    odd = random.chance(0.05)
    frames = random.rng.choice((INT_MAX, INT_MIN)) if odd else random.rng.randint(-3, 20)
    return {'fDelayOn': on, 'fDelayFrames': frames}


def random_mapping(random):
    unit = random.rng.choice((-1, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8))
    return random.group('combine') | random.group('modify') | {
        'fModifyValue': random.real(), 'fModifyUnit': unit, 'fRelative': random.chance(0.3),
        'fAbsolute': random.chance(0.6), 'fRangeOn': random.chance(0.25), 'fRangeMin': random.real(20.0),
        'fRangeMax': random.real(20.0), 'fLowerLimitOn': random.chance(0.2), 'fUpperLimitOn': random.chance(0.2),
        'fLowerLimit': random.real(20.0), 'fUpperLimit': random.real(20.0),
        'fLimitUnit': random.rng.choice((-1, 0, 1, 2, 3, 4, 5, 6, 7)),
    }


def random_curves(random):
    return random.group('decay') | random.group('grow') | random.group('wave') | {
        'fDecayOn': random.chance(0.2), 'fGrowOn': random.chance(0.2), 'fOscillateOn': random.chance(0.2),
        'fDecayMax': random.plain(), 'fDecayMin': random.plain(), 'fGrowMax': random.plain(),
        'fGrowMin': random.plain(), 'fOscillatorPhase': random.plain(), 'fOscillatorScale': random.plain(),
        'fOscillatorMax': abs(random.plain()), 'fOscillatorMin': random.plain(2.0),
        'fOscillatorSpeed': random.plain(1.0),
    }


CUSTOM_TARGET = 'self,cust,targ'
OWN_VALUE = 'self,cust,ownv'


def random_target(random):
    kind = random.rng.randrange(20)
    if kind < 11:
        return CUSTOM_TARGET
    if kind < 14:
        return f'{POSITIONS}{random.rng.choice(("XCOO", "YCOO", "ZCOO"))}'
    if kind < 16:
        return f'{POSITIONS}Glb{random.rng.choice("XYZ")}'
    if kind < 17:
        return f'{ROTATIONS}Rot{random.rng.choice("XYZ")}'
    if kind < 18:
        return random.rng.choice((UNIFORM_SCALE, f'{SCALES}ScaY'))
    return random.rng.choice(('shdr,0000,Roug', 'shdr,0000,BCol,grnV', 'shdr,0000,BCol,alpV'))


def random_link(random, frames, sources):
    """The fields of a link. `sources` are elements, by name and index, and a path."""
    name, index, path = random.rng.choice(sources)
    fields = {
        'fAttributeMode': not random.chance(0.01), 'fTargetPath': random_target(random),
        'fTargetPathSet': not random.chance(0.01), 'fControllerPath': path, 'fControllerPathSet': True,
        'fControllerName': name, 'fFindControllerByName': True, 'fFindSourceByName': random.chance(0.1),
    }
    if random.chance(0.05):  # by the other flag
        fields |= {'fFindControllerByName': False, 'fFindSourceByName': True}
    if random.chance(0.3):  # by reference
        fields |= {'controller': index, 'fFindControllerByName': False, 'fFindSourceByName': False}
    if random.chance(0.05):  # it reads from its own element: there is no other of that name or id
        fields |= {'fControllerName': 'Nobody', 'fControllerPath': OWN_VALUE}
        if 'controller' in fields:
            fields['controller'] = random.rng.choice((None, 10**6))
    if random.chance(0.02):
        fields['fControllerPath'] = random.rng.choice(('self,cust,none', 'self'))
    if random.chance(0.01):
        fields['fTargetPath'] = 'self,cust,none'
    fields |= random_window(random, frames) | random_delay(random) | random_mapping(random) | random_curves(random)
    if (fields['fModifySet'] or fields['fCombineSelf']) and random.chance(0.5):
        fields['fControllerPathSet'] = False
    return random_baking(random, fields, is_rounded=False)


def random_baking(random, fields, is_rounded):
    """What a link wrote comes back to it in its own keys: then a rounding would grow from frame to frame."""
    fields['fBakeKeyframes'] = random.chance(0.2)
    if fields['fBakeKeyframes'] and (is_rounded or has_sine(fields)):
        fields |= {'fCombineReplace': True, 'fCombineSelf': False}
    return fields


def has_sine(fields):
    return bool(fields['fOscillateOn'] and (fields['fOscillatorSine'] or fields['fOscillatorCosine']))


def random_axes(random, kind):
    on = {name: random.chance(0.5) for name in 'XYZ'} | {f'Invert{name}': random.chance(0.3) for name in 'XYZ'}
    chosen = random.rng.choice(('All', 'None', 'Custom', 'Custom'))
    on |= {name: name == chosen or random.chance(0.03) for name in ('All', 'None', 'Custom')}
    return {f'f{kind}{name}': is_on for name, is_on in on.items()}


def random_mirror(random, frames, sources, is_rounded):
    """The fields of a link in object mode. `sources` are elements, by name and index."""
    name, index = random.rng.choice(sources)
    fields = {
        'fMirrorTransform': True, 'fAttributeMode': random.chance(0.2), 'fSourceName': name,
        'fControllerName': 'Nobody',
        'fFindSourceByName': True, 'fFindControllerByName': random.chance(0.1),
        'fTargetPath': random.rng.choice(('', CUSTOM_TARGET, 'shdr,0000,BCol,grnV')), 'fControllerPath': OWN_VALUE,
        'fTargetPathSet': random.chance(0.3), 'fControllerPathSet': random.chance(0.3),
    }
    if random.chance(0.1):  # by the other flag
        fields |= {'fFindControllerByName': True, 'fFindSourceByName': False}
    if random.chance(0.4):  # by reference
        fields |= {'source': index, 'fFindControllerByName': False, 'fFindSourceByName': False}
    if random.chance(0.1):  # of its own element
        fields |= {'fSourceName': 'Nobody', 'source': random.rng.choice((None, 10**6))}
    for kind in ('Position', 'Rotation'):
        fields |= random_axes(random, kind)
    fields |= {flag: random.chance(0.3) for flag in ('fScaleUniform', 'fScaleX', 'fScaleY', 'fScaleZ')}
    fields |= random_window(random, frames) | random_delay(random) | random_mapping(random) | random_curves(random)
    return random_baking(random, fields, is_rounded)
