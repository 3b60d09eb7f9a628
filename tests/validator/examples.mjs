#!/usr/bin/env node
// examples.mjs QLX FOLDER [NAME...] - bakes the example scenes with links and compares what comes out with what each link
// means, written as a formula: the table, the baked file played by three.js, and what goes by JSON pointers. Prints one
// line an example; ends with 1 when something is not as it should be.
import {spawnSync} from 'node:child_process';
import {mkdtempSync, readFileSync, rmSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {Quaternion} from 'three';
import {FindNode, Load, Play, QuaternionGap} from './player.mjs';
import {FindPointer, LoadDocument} from './pointers.mjs';
import {Validate} from './validation.mjs';

const kTolerance = 1e-5;  // of the range of the values
const kInchesInMetre = 39.3700787;
const kRate = 24;

const Clamp = (value, least, most) => Math.min(Math.max(value, least), most);

// ---- what a column of the table is in the file: an object's property, in glTF's units ---------------------------

const kAxes = {X: 0, Y: 1, Z: 2};
const kAxisVectors = [[1, 0, 0], [0, 1, 0], [0, 0, 1]];

// How far three.js is from a value (scene units) for "NAME XCOO", "NAME RotZ" or "NAME ScaY".
function PlayedGap(scene, column, expected) {
  const [, name, id] = column.match(/^(\S+) (\S+) \(/);
  const object = FindNode(scene, name);
  if (id.endsWith('COO')) {
    return Math.abs(object.position.getComponent(kAxes[id[0]]) * kInchesInMetre - expected);
  }
  const axis = kAxes[id[3]];
  if (id.startsWith('Sca')) {
    return Math.abs(object.scale.getComponent(axis) - expected);
  }
  const [x, y, z] = kAxisVectors[axis].map(part => part * Math.sin(expected / 2));
  return 2 * QuaternionGap(object.quaternion, new Quaternion(x, y, z, Math.cos(expected / 2)));
}

const FromPointer = (pointer, part) => ({pointer, part});
const FromWeights = (name, index) => ({weights: name, index});

// ---- the examples: by column, the value on a frame, and where else than in a transform it stands in the file -----

const CartPlace = frame => -2 + 4 * (frame / 96 - Math.sin(2 * Math.PI * frame / 96) / (2 * Math.PI));

// The duck's keys stand on every second frame.
const DuckKey = frame => [-2 + 4 * frame / 120, 0.8 * Math.sin(3 * Math.PI * frame / 120)];
const DuckPlace = (frame, axis) => (DuckKey(Math.floor(frame / 2) * 2)[axis] + DuckKey(Math.ceil(frame / 2) * 2)[axis]) / 2;

const MothKey = frame => 1.65 + 1.35 * Math.cos(2 * Math.PI * frame / 96);
const MothDistance = frame => (MothKey(Math.floor(frame / 2) * 2) + MothKey(Math.ceil(frame / 2) * 2)) / 2 * kInchesInMetre;

const Grown = Curve => frame => frame < 24 ? 0.05 : frame > 96 ? 1 : Clamp(0.05 + 0.95 * Curve((frame - 24) / 72), 0, 1);
const kCurves = {Linear: p => p, Square: p => p ** 2, Cube: p => p ** 3, Sum: p => p ** 2 + p};

const kExamples = {
  clock: {last: 240, columns: [
    ['HourHand RotZ (radians)', f => -6 * Math.PI * f / 240 / 12],
    ['DayHand RotZ (radians)', f => -6 * Math.PI * f / 240 / 24],
  ]},
  cart: {last: 96, columns: [['Front', 0.25], ['Back', 0.4]].flatMap(([axle, radius]) => ['Left', 'Right'].map(side =>
    [`${axle}${side}Wheel RotZ (radians)`, f => -CartPlace(f) / radius]))},
  followers: {last: 120, columns: [1, 2, 3, 4, 5].flatMap(i => ['XCOO', 'ZCOO'].map((id, axis) =>
    [`Follower${i} ${id} (inches)`, f => DuckPlace(Math.max(f - 5 * i, 0), axis) * kInchesInMetre]))},
  pendulum: {last: 240, columns: [
    ['Pendulum RotZ (radians)', f => 40 * Math.PI / 180 * Math.cos(0.1309 * f) * (1 - f / 240)],
  ]},
  lamp: {last: 96, columns: [
    ['material "Bulb" Emissive strength', f => Math.max(10 - Clamp(0.08 * MothDistance(f), 2, 8), 3),
      FromPointer('/materials/1/extensions/KHR_materials_emissive_strength/emissiveStrength', 0)],
    ['material "Bulb" Emissive colour blue', f => Math.max(1 - 0.01 * MothDistance(f), 0.1),
      FromPointer('/materials/1/emissiveFactor', 2)],
    ['light "Bulb" Intensity', f => Math.max(40 - 0.4 * MothDistance(f), 5),
      FromPointer('/extensions/KHR_lights_punctual/lights/0/intensity', 0)],
    ['light "Bulb" Colour blue', f => Math.max(1 - 0.01 * MothDistance(f), 0.1),
      FromPointer('/extensions/KHR_lights_punctual/lights/0/color', 2)],
  ]},
  face: {last: 96, columns: [
    ['element "Mouth" Open', f => Clamp((0.3 - 0.4 * Math.cos(4 * Math.PI * f / 96)) / 0.5, 0, 1), FromWeights('Mouth', 0)],
    ['element "Mouth" Smile', f => 0.5 - 0.5 * Math.cos(2 * Math.PI * f / 96), FromWeights('Mouth', 1)],
  ]},
  growth: {last: 120, columns: Object.entries(kCurves).flatMap(([name, Curve]) => [
    [`${name}Stem ScaY (factor)`, Grown(Curve)],
    [`${name}Blossom YCOO (inches)`, f => Grown(Curve)(f) * kInchesInMetre],
  ])},
};

// ---- the checks -------------------------------------------------------------------------------------------------

function ReadTable(file) {
  const rows = readFileSync(file, 'utf8').trim().split('\n')
      .map(line => line.match(/("([^"]|"")*"|[^,]+)/g).map(field => field.replace(/^"|"$/g, '').replaceAll('""', '"')));
  const titles = rows.shift();
  return {titles, columns: new Map(titles.map((title, i) => [title, rows.map(row => Number(row[i]))]))};
}

// How far a value is from what a frame of the file has.
function FileGap({scene, document}, column, place, time, expected) {
  if (place?.pointer) {
    return Math.abs(FindPointer(document, place.pointer)(time)[place.part] - expected);
  }
  if (place?.weights) {
    return Math.abs(FindNode(scene, place.weights).morphTargetInfluences[place.index] - expected);
  }
  return PlayedGap(scene, column, expected);
}

async function Check(qlx, folder, temporary, name) {
  const {last, columns} = kExamples[name];
  const [baked, csv] = [join(temporary, `${name}.glb`), join(temporary, `${name}.csv`)];
  const run = spawnSync(qlx, ['bake', join(folder, `${name}.gltf`), '-o', baked, '--csv', csv], {encoding: 'utf8'});
  if (run.status !== 0) {
    console.log(`FAIL ${name}: ${run.stderr.trim()}`);
    return false;
  }
  const problems = (await Promise.all([join(folder, `${name}.gltf`), baked].map(Validate)))
      .filter(({errors, warnings}) => errors + warnings > 0).map(({file, messages}) => `${file}: ${messages.join('; ')}`);
  const table = ReadTable(csv);
  const wanted = columns.map(([column]) => column);
  const stray = table.titles.slice(2).filter(title => !wanted.includes(title));
  problems.push(...stray.map(title => `"${title}" should not change`));
  const file = {scene: await Load(baked), document: await LoadDocument(baked)};
  Play(file.scene, 0);
  let worst = 0;
  for (const [column, Value, place] of columns) {
    const values = Array.from({length: last + 1}, (_, frame) => Value(frame));
    const range = Math.max(...values) - Math.min(...values);
    const found = table.columns.get(column);
    if (found?.length !== last + 1) {
      problems.push(`"${column}" has ${found?.length ?? 'no'} frames`);
      continue;
    }
    for (let frame = 0; frame <= last; ++frame) {
      file.scene.mixer.setTime(frame / kRate);
      const gap = Math.max(Math.abs(found[frame] - values[frame]),
                           FileGap(file, column, place, frame / kRate, values[frame])) / range;
      worst = gap <= worst ? worst : gap;  // and NaN
      if (!(gap <= kTolerance)) {
        problems.push(`"${column}" on frame ${frame} is ${found[frame]} and not ${values[frame]} (${gap.toExponential(2)})`);
        break;
      }
    }
  }
  console.log(`${problems.length ? 'FAIL' : 'OK'} ${name}: ${columns.length} values on ${last + 1} frames, at most ` +
              `${worst.toExponential(2)} of their range away`);
  problems.forEach(problem => console.log(`  ${problem}`));
  return problems.length === 0;
}

const [qlx, folder, ...names] = process.argv.slice(2);
if (!folder || names.some(name => !kExamples[name])) {
  console.error(`usage: examples.mjs QLX FOLDER [${Object.keys(kExamples).join('|')}]...`);
  process.exit(2);
}
const temporary = mkdtempSync(join(tmpdir(), 'qlx-examples-'));
try {
  for (const name of names.length ? names : Object.keys(kExamples)) {
    if (!await Check(qlx, folder, temporary, name)) {
      process.exitCode = 1;
    }
  }
} finally {
  rmSync(temporary, {recursive: true});
}
