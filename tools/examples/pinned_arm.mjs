#!/usr/bin/env node
// Writes examples/pinned_arm.gltf: an arm of three segments that waves, and a hand at its end that is pinned in the
// scene. Run it again after a change: `node tools/make-pinned-arm.mjs`. The same script gives the same bytes.
//
// Metres, Y up. The arm stands straight up at the start, so that the pinned place is easily told: the wrist's.
import { writeFileSync } from 'node:fs';

const file = new URL('../examples/pinned_arm.gltf', import.meta.url);
const seconds = 3;
const rate = 24; // frames and keys a second
const inchesInMetre = 39.3700787;

// name, height of the box above its joint, thickness, colour, node it hangs on
const parts = [
  { name: 'Base', height: 0.3, width: 0.3, colour: [0.25, 0.27, 0.3] },
  { name: 'UpperArm', height: 0.5, width: 0.12, colour: [0.2, 0.45, 0.7] },
  { name: 'Forearm', height: 0.4, width: 0.09, colour: [0.35, 0.65, 0.85] },
  { name: 'Hand', height: 0.16, width: 0.14, colour: [0.9, 0.5, 0.15] },
];

// Angles over the clip, u from 0 to 1: each begins and ends at 0, so that the clip loops.
const wave = (degrees, turns) => (u) => (degrees * Math.PI / 180) * Math.sin(2 * Math.PI * turns * u);
const motions = [
  { name: 'Base', axis: [0, 1, 0], angle: wave(40, 1) },
  { name: 'UpperArm', axis: [0, 0, 1], angle: wave(35, 1) },
  { name: 'Forearm', axis: [0, 0, 1], angle: wave(50, 2) },
];

// ---- one buffer, filled piece by piece -------------------------------------------------------------------------

const floatType = 5126;
const shortType = 5123;
const chunks = [];
const bufferViews = [];
const accessors = [];
let size = 0;

// Adds numbers as an accessor and answers its index. All rows have one width; every view begins at a multiple of 4.
function addAccessor(rows, componentType, target, withBounds) {
  const numbers = componentType === floatType ? Float32Array.from(rows.flat()) : Uint16Array.from(rows.flat());
  const bytes = Buffer.from(numbers.buffer);
  const width = rows[0].length;
  const column = (i) => rows.map((row) => Math.fround(row[i]));
  const columns = [...Array(width).keys()];
  bufferViews.push({ buffer: 0, byteOffset: size, byteLength: bytes.length, ...(target && { target }) });
  accessors.push({
    bufferView: bufferViews.length - 1,
    componentType,
    count: rows.length,
    type: ['SCALAR', 'VEC2', 'VEC3', 'VEC4'][width - 1],
    ...(withBounds && {
      min: columns.map((i) => Math.min(...column(i))),
      max: columns.map((i) => Math.max(...column(i))),
    }),
  });
  const padding = Buffer.alloc((4 - (bytes.length % 4)) % 4);
  chunks.push(bytes, padding);
  size += bytes.length + padding.length;
  return accessors.length - 1;
}

// ---- geometry: a box that stands on its joint -------------------------------------------------------------------

function addBox(width, height, material) {
  const positions = [];
  const normals = [];
  const indices = [];
  for (let axis = 0; axis < 3; ++axis) {
    for (const side of [-1, 1]) {
      const first = positions.length;
      const normal = [0, 0, 0];
      normal[axis] = side;
      for (const [a, b] of [[-1, -1], [1, -1], [1, 1], [-1, 1]]) {
        const corner = [0, 0, 0];
        corner[axis] = side;
        corner[(axis + 1) % 3] = a * side; // keeps the winding outward on both sides
        corner[(axis + 2) % 3] = b;
        positions.push([corner[0] * width / 2, (corner[1] + 1) * height / 2, corner[2] * width / 2]);
        normals.push(normal);
      }
      indices.push(...[0, 1, 2, 0, 2, 3].map((i) => [first + i]));
    }
  }
  const arrayBuffer = 34962;
  const elementBuffer = 34963;
  const attributes = {
    POSITION: addAccessor(positions, floatType, arrayBuffer, true),
    NORMAL: addAccessor(normals, floatType, arrayBuffer, false),
  };
  return { attributes, indices: addAccessor(indices, shortType, elementBuffer, false), material };
}

const materials = parts.map((part) => ({
  name: part.name,
  pbrMetallicRoughness: { baseColorFactor: [...part.colour, 1], metallicFactor: 0, roughnessFactor: 0.8 },
}));
const meshes = parts.map((part, i) => ({ name: part.name, primitives: [addBox(part.width, part.height, i)] }));

// ---- the chain of nodes, each standing at the top of the one before --------------------------------------------

const nodes = parts.map((part, i) => ({
  name: part.name,
  mesh: i,
  ...(i > 0 && { translation: [0, parts[i - 1].height, 0] }),
  ...(i + 1 < parts.length && { children: [i + 1] }),
}));

// The wrist at the start, in scene units (inches): there the hand stays.
const wrist = parts.slice(0, -1).reduce((sum, part) => sum + part.height, 0);
nodes.at(-1).extensions = {
  QLX_modifiers: {
    modifiers: [
      {
        class: 'fPIN',
        enabled: true,
        parameters: {
          fPositionSet: true,
          fActive: true,
          fGlobal: true,
          fPosition: [0, Number((wrist * inchesInMetre).toFixed(4)), 0],
        },
      },
    ],
  },
};

// ---- the clip ---------------------------------------------------------------------------------------------------

const frames = [...Array(seconds * rate + 1).keys()];
const times = addAccessor(frames.map((frame) => [frame / rate]), floatType, undefined, true);
const samplers = motions.map(({ axis, angle }) => {
  const rotations = frames.map((frame) => {
    const half = angle(frame / (seconds * rate)) / 2;
    return [...axis.map((part) => part * Math.sin(half)), Math.cos(half)];
  });
  return { input: times, output: addAccessor(rotations, floatType, undefined, false), interpolation: 'LINEAR' };
});
const channels = motions.map(({ name }, i) => ({
  sampler: i,
  target: { node: parts.findIndex((part) => part.name === name), path: 'rotation' },
}));

const scene = {
  asset: { version: '2.0', generator: 'tools/make-pinned-arm.mjs' },
  extensionsUsed: ['QLX_modifiers'],
  scene: 0,
  scenes: [{ name: 'PinnedArm', nodes: [0] }],
  nodes,
  meshes,
  materials,
  animations: [{ name: 'Wave', channels, samplers }],
  accessors,
  bufferViews,
  buffers: [
    { byteLength: size, uri: `data:application/octet-stream;base64,${Buffer.concat(chunks).toString('base64')}` },
  ],
};

// One line for each row of numbers: easier to read by hand.
const text = JSON.stringify(scene, null, 2).replace(/\[\s+([-\d.,\se]+?)\s+\]/g, (_, row) => `[${row.replace(/\s+/g, ' ')}]`);
writeFileSync(file, `${text}\n`);
