// A glTF scene, built piece by piece: what the scripts of the example scenes share. Metres, Y up. The same calls give the
// same bytes.
import { writeFileSync } from 'node:fs';

export const inchesInMetre = 39.3700787;

const floatType = 5126;
const shortType = 5123;
const arrayBuffer = 34962;
const elementBuffer = 34963;

export class SceneBuilder {
  constructor(name, rate = 24) {
    this.name = name;
    this.rate = rate; // frames and keys a second
    this.nodes = [];
    this.meshes = [];
    this.skins = [];
    this.materials = [];
    this.channels = [];
    this.samplers = [];
    this.accessors = [];
    this.bufferViews = [];
    this.chunks = [];
    this.size = 0;
    this.times = new Map(); // accessors of key times, by their frames
    this.used = new Set(); // extensions
    this.extensions = undefined;
  }

  // ---- one buffer, filled piece by piece ----------------------------------------------------------------------

  // Adds numbers as an accessor and answers its index. All rows have one width; every view begins at a multiple of 4.
  addAccessor(rows, componentType, target, withBounds) {
    const numbers = componentType === floatType ? Float32Array.from(rows.flat()) : Uint16Array.from(rows.flat());
    const bytes = Buffer.from(numbers.buffer);
    const width = rows[0].length;
    const column = (i) => rows.map((row) => Math.fround(row[i]));
    const columns = [...Array(width).keys()];
    this.bufferViews.push({ buffer: 0, byteOffset: this.size, byteLength: bytes.length, ...(target && { target }) });
    this.accessors.push({
      bufferView: this.bufferViews.length - 1,
      componentType,
      count: rows.length,
      type: width === 16 ? 'MAT4' : ['SCALAR', 'VEC2', 'VEC3', 'VEC4'][width - 1],
      ...(withBounds && {
        min: columns.map((i) => Math.min(...column(i))),
        max: columns.map((i) => Math.max(...column(i))),
      }),
    });
    const padding = Buffer.alloc((4 - (bytes.length % 4)) % 4);
    this.chunks.push(bytes, padding);
    this.size += bytes.length + padding.length;
    return this.accessors.length - 1;
  }

  // ---- meshes -------------------------------------------------------------------------------------------------

  // Answers its index. `more` are further members of the material.
  addMaterial(name, colour, more = {}) {
    this.materials.push({
      name,
      pbrMetallicRoughness: { baseColorFactor: [...colour, 1], metallicFactor: 0, roughnessFactor: 0.8 },
      ...more,
    });
    return this.materials.length - 1;
  }

  // A skinned shape has also, for each vertex, the numbers of its four joints in the skin, and their weights.
  addPrimitive({ positions, normals, indices, joints, weights }, material) {
    return {
      attributes: {
        POSITION: this.addAccessor(positions, floatType, arrayBuffer, true),
        NORMAL: this.addAccessor(normals, floatType, arrayBuffer, false),
        ...(joints && {
          JOINTS_0: this.addAccessor(joints, shortType, arrayBuffer, false),
          WEIGHTS_0: this.addAccessor(weights, floatType, arrayBuffer, false),
        }),
      },
      indices: this.addAccessor(indices.map((i) => [i]), shortType, elementBuffer, false),
      material,
    };
  }

  // A shape of `shapes.mjs` as a mesh. `targets` are morph targets: a name, and how far each vertex moves.
  addMesh(name, shape, material, targets = []) {
    const primitive = this.addPrimitive(shape, material);
    if (targets.length) {
      primitive.targets = targets.map(({ moves }) => ({
        POSITION: this.addAccessor(moves, floatType, arrayBuffer, true),
      }));
    }
    this.meshes.push({
      name,
      primitives: [primitive],
      ...(targets.length && { weights: targets.map(() => 0), extras: { targetNames: targets.map((each) => each.name) } }),
    });
    return this.meshes.length - 1;
  }

  // Another shape in a mesh that has no morph targets.
  addToMesh(mesh, shape, material) {
    this.meshes[mesh].primitives.push(this.addPrimitive(shape, material));
  }

  // ---- nodes and their animation ------------------------------------------------------------------------------

  // Answers its index; `parent` is that of another node.
  addNode({ parent, ...node }) {
    this.nodes.push(node);
    const index = this.nodes.length - 1;
    if (parent !== undefined) {
      (this.nodes[parent].children ??= []).push(index);
    }
    return index;
  }

  // A node with a mesh and a material of the same name.
  addShape(name, shape, colour, node = {}) {
    return this.addNode({ name, mesh: this.addMesh(name, shape, this.addMaterial(name, colour)), ...node });
  }

  // A skin of joints that stand unturned at their places in the scene. Answers its index.
  addSkin(joints, places) {
    const rows = places.map(([x, y, z]) => [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -x, -y, -z, 1]);
    this.skins.push({ joints, inverseBindMatrices: this.addAccessor(rows, floatType, undefined, false) });
    return this.skins.length - 1;
  }

  addModifier(node, modifier) {
    this.used.add('QLX_modifiers');
    const extensions = (this.nodes[node].extensions ??= {});
    (extensions.QLX_modifiers ??= { modifiers: [] }).modifiers.push(modifier);
  }

  // Keys of a node's property at frames.
  addKeys(node, path, frames, rows, interpolation = 'LINEAR') {
    const name = frames.join();
    if (!this.times.has(name)) {
      this.times.set(name, this.addAccessor(frames.map((frame) => [frame / this.rate]), floatType, undefined, true));
    }
    this.samplers.push({
      input: this.times.get(name),
      output: this.addAccessor(rows, floatType, undefined, false),
      interpolation,
    });
    this.channels.push({ sampler: this.samplers.length - 1, target: { node, path } });
  }

  // ---- the file -----------------------------------------------------------------------------------------------

  write(file, clip) {
    const scene = {
      asset: { version: '2.0', generator: 'tools/make-examples.mjs' },
      ...(this.used.size && { extensionsUsed: [...this.used] }),
      ...(this.extensions && { extensions: this.extensions }),
      scene: 0,
      scenes: [{ name: this.name, nodes: this.findRoots() }],
      nodes: this.nodes,
      meshes: this.meshes,
      ...(this.skins.length && { skins: this.skins }),
      materials: this.materials,
      animations: [{ name: clip, channels: this.channels, samplers: this.samplers }],
      accessors: this.accessors,
      bufferViews: this.bufferViews,
      buffers: [
        {
          byteLength: this.size,
          uri: `data:application/octet-stream;base64,${Buffer.concat(this.chunks).toString('base64')}`,
        },
      ],
    };
    // One line for each row of numbers: easier to read by hand.
    const text = JSON.stringify(scene, null, 2)
      .replace(/\[\s+([-\d.,\se]+?)\s+\]/g, (_, row) => `[${row.replace(/\s+/g, ' ')}]`);
    writeFileSync(file, `${text}\n`);
  }

  findRoots() {
    const children = new Set(this.nodes.flatMap((node) => node.children ?? []));
    return [...this.nodes.keys()].filter((node) => !children.has(node));
  }
}

// The frames from 0 to `last`, every `step`.
export const framesTo = (last, step = 1) => [...Array(Math.floor(last / step) + 1).keys()].map((i) => i * step);

// A turn about an axis as a quaternion.
export const turn = (axis, angle) => [...axis.map((part) => part * Math.sin(angle / 2)), Math.cos(angle / 2)];
