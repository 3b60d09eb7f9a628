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

// The tentacle's first bone has keys on every second frame; a turn about one axis goes evenly from key to key.
const SwingKey = frame => 13 * Math.PI / 180 * Math.sin(2 * Math.PI * frame / 60);
const Swing = frame => (SwingKey(Math.floor(frame / 2) * 2) + SwingKey(Math.ceil(frame / 2) * 2)) / 2;

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
  tentacle: {last: 120, columns: Array.from({length: 11}, (_, i) =>
    [`Tentacle${i + 2} RotZ (radians)`, f => Swing(Math.max(f - 3 * (i + 1), 0))])},
  pendulum: {last: 240, columns: [
    ['Pendulum RotZ (radians)', f => 40 * Math.PI / 180 * Math.cos(0.1309 * f) * (1 - f / 240)],
  ]},
  lamp: {last: 96, columns: [
    ['shader "Bulb" Emissive strength', f => Math.max(10 - Clamp(0.08 * MothDistance(f), 2, 8), 3),
      FromPointer('/materials/0/extensions/KHR_materials_emissive_strength/emissiveStrength', 0)],
    ['shader "Bulb" Emissive colour blue', f => Math.max(1 - 0.01 * MothDistance(f), 0.1),
      FromPointer('/materials/0/emissiveFactor', 2)],
    ['light "Bulb" Intensity', f => Math.max(40 - 0.4 * MothDistance(f), 5),
      FromPointer('/extensions/KHR_lights_punctual/lights/0/intensity', 0)],
    ['light "Bulb" Colour blue', f => Math.max(1 - 0.01 * MothDistance(f), 0.1),
      FromPointer('/extensions/KHR_lights_punctual/lights/0/color', 2)],
  ]},
  face: {last: 96, columns: [
    ['object "Mouth" Open', f => Clamp((0.3 - 0.4 * Math.cos(4 * Math.PI * f / 96)) / 0.5, 0, 1), FromWeights('Mouth', 0)],
    ['object "Mouth" Smile', f => 0.5 - 0.5 * Math.cos(2 * Math.PI * f / 96), FromWeights('Mouth', 1)],
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

// What the table has beside the columns of links may be the other parts of a colour, which do not change.
function CheckTable({titles, columns}, wanted, frames) {
  const stray = titles.slice(2).filter(title => !wanted.includes(title) && new Set(columns.get(title)).size > 1);
  const missing = wanted.filter(title => columns.get(title)?.length !== frames);
  return [...stray.map(title => `"${title}" should not change`), ...missing.map(title => `"${title}" is not whole`)];
}

// Plays the file once, from its first frame to its last: the largest gap as a part of the range, and where it is.
async function Compare({last, columns}, table, baked) {
  const file = {scene: await Load(baked), document: await LoadDocument(baked)};
  const expected = columns.map(([, Value]) => Array.from({length: last + 1}, (_, frame) => Value(frame)));
  const ranges = expected.map(values => Math.max(...values) - Math.min(...values));
  let worst = {gap: 0};
  Play(file.scene, 0);
  for (let frame = 0; frame <= last; ++frame) {
    file.scene.mixer.setTime(frame / kRate);
    columns.forEach(([column, , place], i) => {
      const value = expected[i][frame];
      const found = table.columns.get(column)[frame];
      const fileGap = FileGap(file, column, place, frame / kRate, value);
      const gap = Math.max(Math.abs(found - value), fileGap) / ranges[i];
      if (!(gap <= worst.gap)) {  // and NaN
        worst = {gap, text: `"${column}" on frame ${frame} is ${found} and not ${value}, in the file ${fileGap} away`};
      }
    });
  }
  return worst;
}

async function Check(qlx, folder, temporary, name) {
  const example = kExamples[name];
  const [scene, baked, csv] = [join(folder, `${name}.gltf`), join(temporary, `${name}.glb`), join(temporary, `${name}.csv`)];
  const run = spawnSync(qlx, ['bake', scene, '-o', baked, '--csv', csv], {encoding: 'utf8'});
  if (run.status !== 0) {
    console.log(`FAIL ${name}: ${run.stderr.trim()}`);
    return false;
  }
  const table = ReadTable(csv);
  const problems = (await Promise.all([scene, baked].map(Validate)))
      .filter(({errors, warnings}) => errors + warnings > 0).map(({file, messages}) => `${file}: ${messages.join('; ')}`);
  problems.push(...CheckTable(table, example.columns.map(([column]) => column), example.last + 1));
  const worst = problems.length ? {gap: NaN} : await Compare(example, table, baked);
  const good = worst.gap <= kTolerance;
  console.log(`${good ? 'OK' : 'FAIL'} ${name}: ${example.columns.length} values on ${example.last + 1} frames, at most ` +
              `${worst.gap.toExponential(2)} of their range away`);
  [...problems, ...(good || !worst.text ? [] : [worst.text])].forEach(problem => console.log(`  ${problem}`));
  return good;
}

const [qlx, folder, ...names] = process.argv.slice(2);
if (!folder || names.some(name => !kExamples[name])) {
  console.error(`usage: examples.mjs QLX FOLDER [${Object.keys(kExamples).join('|')}]...`);
  process.exit(2);
}
const temporary = mkdtempSync(join(tmpdir(), 'qlx-examples-'));
try {
  for (const name of names.length ? names : Object.keys(kExamples)) {
    const good = await Check(qlx, folder, temporary, name)
        .catch(error => (console.log(`FAIL ${name}: ${error.message}`), false));
    process.exitCode = good ? process.exitCode : 1;
  }
} finally {
  rmSync(temporary, {recursive: true});
}
