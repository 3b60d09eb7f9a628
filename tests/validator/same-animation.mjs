#!/usr/bin/env node
// same-animation.mjs FILE OTHER [--except NODE]... [--rate R] - plays all animations of two glTF scenes with three.js, a
// reader that is not ours, and checks that each node has the same local transform and morph weights in both, R times a
// second (default 60). Nodes named (or numbered "#3") by --except are left out. Both files must be self-contained.
// Prints one line; ends with 1 when they differ.
import {Load, Play, QuaternionGap} from './player.mjs';

// Metres, parts of a quaternion, factors: what 32-bit keys and their way through inches leave.
const kTolerance = 1e-6;

const words = process.argv.slice(2);
const TakeOption = name => {
  const place = words.indexOf(name);
  return place < 0 ? undefined : words.splice(place, 2)[1];
};
const rate = Number(TakeOption('--rate') ?? 60);
const exceptions = [];
for (let name = TakeOption('--except'); name !== undefined; name = TakeOption('--except')) {
  exceptions.push(name);
}
if (words.length !== 2) {
  console.error('usage: same-animation.mjs FILE OTHER [--except NODE]... [--rate R]');
  process.exit(2);
}

const Gap = (a, b) => Math.max(...a.map((part, i) => Math.abs(part - b[i])));

const ObjectGap = (a, b) => Math.max(
    Gap(a.position.toArray(), b.position.toArray()), QuaternionGap(a.quaternion, b.quaternion),
    Gap(a.scale.toArray(), b.scale.toArray()),
    a.morphTargetInfluences ? Gap(a.morphTargetInfluences, b.morphTargetInfluences) : 0);

async function Compare() {
  const [one, other] = await Promise.all(words.map(Load));
  if (one.objects.length !== other.objects.length || one.gltf.animations.length !== other.gltf.animations.length) {
    throw new Error('they have different numbers of nodes or animations');
  }
  let worst = {gap: 0};
  let poses = 0;
  one.gltf.animations.forEach((clip, index) => {
    [one, other].forEach(scene => Play(scene, index));
    for (let step = 0; step <= Math.ceil(clip.duration * rate); ++step, ++poses) {
      [one, other].forEach(({mixer}) => mixer.setTime(step / rate));
      one.objects.forEach((object, node) => {
        if (exceptions.includes(one.names[node]) || exceptions.includes(`#${node}`)) {
          return;
        }
        const gap = ObjectGap(object, other.objects[node]);
        if (!(gap <= worst.gap)) {
          worst = {gap, node, clip: index, time: step / rate};
        }
      });
    }
  });
  const same = worst.gap <= kTolerance;
  const where = worst.gap > 0 ? ` (node ${worst.node}, animation ${worst.clip}, ${worst.time.toFixed(3)} s)` : '';
  console.log(`${same ? 'OK' : 'FAIL'} ${words.join(' and ')}: at most ${worst.gap.toExponential(2)} apart in ${poses} poses${where}`);
  return same;
}

process.exitCode = await Compare().then(good => good ? 0 : 1, error => (console.error(`same-animation.mjs: ${error.message}`), 1));
