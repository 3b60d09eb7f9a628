#!/usr/bin/env node
// pinned.mjs FILE NODE X,Y,Z FRAMES RATE [--local] [--moves OTHER] - plays a baked scene with three.js, a reader that is
// not ours, and checks that a node stands at a position (inches) on every frame from 0 to FRAMES, in the scene or, with
// --local, relative to its parent. With --moves another node must move meanwhile: a scene that stands still shows
// nothing. The file must be self-contained. Prints one line; ends with 1 when something is not as it should be.
import {readFile} from 'node:fs/promises';
import {AnimationMixer, LoopOnce, Vector3} from 'three';
import {GLTFLoader} from 'three/examples/jsm/loaders/GLTFLoader.js';

const kInchesInMetre = 39.3700787;
// The host turns elements by 32-bit angles: half a unit in the last place at each of six joints moves what hangs fifty
// inches away by 1e-4.
const kTolerance = 2e-4;
// What counts as moving.
const kMotion = 1;

const words = process.argv.slice(2);
const TakeOption = (name, hasValue) => {
  const place = words.indexOf(name);
  return place < 0 ? undefined : words.splice(place, hasValue ? 2 : 1).at(-1);
};
const isLocal = TakeOption('--local', false) !== undefined;
const mover = TakeOption('--moves', true);
if (words.length !== 5) {
  console.error('usage: pinned.mjs FILE NODE X,Y,Z FRAMES RATE [--local] [--moves OTHER]');
  process.exit(2);
}
const [file, nodeName] = words;
const expected = new Vector3(...words[2].split(',').map(Number));
const lastFrame = Number(words[3]);
const rate = Number(words[4]);

// What the loader asks of a browser. Each picture is loaded at once and empty: positions need none.
globalThis.self = globalThis;
globalThis.ProgressEvent ??= class {};
globalThis.document = {
  createElementNS: () => ({
    addEventListener: (event, loaded) => event === 'load' && setTimeout(loaded),
    removeEventListener() {},
  }),
};

async function Load() {
  const bytes = await readFile(file);
  const loader = new GLTFLoader();
  return loader.parseAsync(bytes.buffer.slice(bytes.byteOffset, bytes.byteOffset + bytes.byteLength), '');
}

// By name as the file has it (three.js changes some), or by number: "#13".
function FindNode(gltf, name) {
  const nodes = gltf.parser.json.nodes ?? [];
  const index = name.startsWith('#') ? Number(name.slice(1)) : nodes.findIndex(node => node.name === name);
  let found;
  gltf.scene.traverse(object => {
    found ??= gltf.parser.associations.get(object)?.nodes === index ? object : undefined;
  });
  if (!found) {
    throw new Error(`there is no node "${name}"`);
  }
  return found;
}

const PositionOf = (object, local) =>
  (local ? object.position.clone() : object.getWorldPosition(new Vector3())).multiplyScalar(kInchesInMetre);

async function Check() {
  const gltf = await Load();
  const node = FindNode(gltf, nodeName);
  const other = mover === undefined ? undefined : FindNode(gltf, mover);
  const mixer = new AnimationMixer(gltf.scene);
  for (const clip of gltf.animations.slice(0, 1)) {
    const action = mixer.clipAction(clip).setLoop(LoopOnce);
    action.clampWhenFinished = true;
    action.play();
  }
  let worst = 0;
  let moved = 0;
  let start;
  for (let frame = 0; frame <= lastFrame; ++frame) {
    mixer.setTime(frame / rate);
    gltf.scene.updateMatrixWorld(true);
    const away = PositionOf(node, isLocal).distanceTo(expected);
    worst = away <= worst ? worst : away;  // and NaN
    if (other) {
      start ??= PositionOf(other, false);
      moved = Math.max(moved, PositionOf(other, false).distanceTo(start));
    }
  }
  const holds = worst <= kTolerance;
  const moves = !other || moved >= kMotion;
  const motion = other ? `, while ${mover} moves ${moved.toFixed(3)}` : '';
  console.log(`${holds && moves ? 'OK' : 'FAIL'} ${nodeName} is at most ${worst.toExponential(2)} inches away from its ` +
              `place on ${lastFrame + 1} frames${motion}`);
  return holds && moves;
}

process.exitCode = await Check().then(good => good ? 0 : 1, error => (console.error(`pinned.mjs: ${error.message}`), 1));
