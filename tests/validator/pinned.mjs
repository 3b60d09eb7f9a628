#!/usr/bin/env node
// pinned.mjs FILE NODE X,Y,Z FRAMES RATE [--local] [--moves OTHER] - plays a baked scene with three.js, a reader that is
// not ours, and checks that a node stands at a position (inches) on every frame from 0 to FRAMES, in the scene or, with
// --local, relative to its parent. With --moves another node must move meanwhile: a scene that stands still shows
// nothing. The file must be self-contained. Prints one line; ends with 1 when something is not as it should be.
import {Vector3} from 'three';
import {FindNode, Load, Play} from './player.mjs';

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

const PositionOf = (object, local) =>
  (local ? object.position.clone() : object.getWorldPosition(new Vector3())).multiplyScalar(kInchesInMetre);

async function Check() {
  const scene = await Load(file);
  const node = FindNode(scene, nodeName);
  const other = mover === undefined ? undefined : FindNode(scene, mover);
  Play(scene, 0);
  let worst = 0;
  let moved = 0;
  let start;
  for (let frame = 0; frame <= lastFrame; ++frame) {
    scene.mixer.setTime(frame / rate);
    scene.gltf.scene.updateMatrixWorld(true);
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
