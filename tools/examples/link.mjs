// A link (class `fQLX`) as it stands in the QLX_modifiers block of a node.

const path = (name) => `self,amet,TRAN,${name}`;

// Text paths of an element's transform.
export const paths = {
  x: path('OFFS,XCOO'), y: path('OFFS,YCOO'), z: path('OFFS,ZCOO'),
  globalX: path('OFFS,GlbX'), globalZ: path('OFFS,GlbZ'),
  turnX: path('ROTA,RotX'), turnZ: path('ROTA,RotZ'),
  scaleY: path('XYZ ,ScaY'),
};

const curve = (letter) => [
  [`${letter}lin`, true], [`${letter}qua`, false], [`${letter}cub`, false], [`${letter}qut`, false],
  [`${letter}cut`, false], [`${letter}max`, 1], [`${letter}min`, 0],
];
const blocks = {
  decy: curve('d'),
  grow: curve('g'),
  oscl: [['osin', true], ['ocos', false], ['opho', 0], ['osca', 1], ['omax', 1], ['omin', -1], ['ospd', 1]],
};

// The tokens of the modifier's private fields. `changed` has, by token, those that are not their defaults.
function privateText(target, source, changed) {
  const value = (each) => (typeof each === 'boolean' ? Number(each) : each);
  const rows = ['pset 1', `cpsl "${target}"`, `cpst ${source ? 1 : 0}`, `spar "${source ?? ''}"`];
  for (const [name, tokens] of Object.entries(blocks)) {
    rows.push(`${name} {`, ...tokens.map(([token, usual]) => `${token} ${value(changed[token] ?? usual)}`), '}');
  }
  return rows.map((row) => `${row}\r\n`).join('');
}

// `target` is a path on the element itself, `source` one on the element named `from`; without them the link makes its
// value by itself. `fields` are those of the parameter block that are not their defaults, `tokens` private ones.
export function link({ name, target, from, source, tokens = {}, fields = {} }) {
  return {
    class: 'fQLX',
    enabled: true,
    parameters: {
      fName: name,
      fAttributeMode: true,
      ...(from && { fControllerName: from, fFindControllerByName: true }),
      ...fields,
    },
    private: privateText(target, source, tokens),
  };
}

// A link of whole transforms, as a chain has them: it takes what `fields` turn on (`fRotationAll`) from the transform of
// the element named `from`; without it there is nothing to follow.
export function mirror({ from, fields = {} }) {
  return {
    class: 'fQLX',
    enabled: true,
    parameters: { fMirrorTransform: true, ...(from && { fSourceName: from, fFindSourceByName: true }), ...fields },
  };
}

// One of a group of flags of which another is on in a new link.
export const modify = (flag, value) => ({ fModifyAdd: false, [`fModify${flag}`]: true, fModifyValue: value });
export const combine = (flag) => ({ fCombineReplace: false, [`fCombine${flag}`]: true });
