#!/usr/bin/env node
// pointer-values.mjs FILE POINTER TIME=NUMBER[,NUMBER...]... - what the first animation of a glTF file gives the property
// that a JSON pointer names (KHR_animation_pointer), read without any code of ours: at each time (seconds) it must have
// these numbers. The property itself must be in the document. Prints one line; ends with 1 when something differs.
import {readFile} from 'node:fs/promises';

const kTolerance = 1e-6;
const kWidths = {SCALAR: 1, VEC2: 2, VEC3: 3, VEC4: 4};
const kGlbJson = 0x4E4F534A;
const kGlbMagic = 0x46546C67;

const [file, pointer, ...expectations] = process.argv.slice(2);
if (!expectations.length) {
  console.error('usage: pointer-values.mjs FILE POINTER TIME=NUMBER[,NUMBER...]...');
  process.exit(2);
}

async function Load() {
  const bytes = await readFile(file);
  if (bytes.readUInt32LE(0) !== kGlbMagic) {
    const json = JSON.parse(bytes.toString());
    return {json, buffers: json.buffers.map(({uri}) => Buffer.from(uri.split(',')[1], 'base64'))};
  }
  const length = bytes.readUInt32LE(12);
  if (bytes.readUInt32LE(16) !== kGlbJson) {
    throw new Error('the first chunk is no JSON');
  }
  return {json: JSON.parse(bytes.subarray(20, 20 + length).toString()), buffers: [bytes.subarray(20 + length + 8)]};
}

function ReadAccessor({json, buffers}, index) {
  const {bufferView, byteOffset = 0, componentType, count, type} = json.accessors[index];
  const view = json.bufferViews[bufferView];
  const start = (view.byteOffset ?? 0) + byteOffset;
  const read = {5126: at => buffers[view.buffer].readFloatLE(start + 4 * at),
                5121: at => buffers[view.buffer].readUInt8(start + at)}[componentType];
  return Array.from({length: count}, (_, i) => Array.from({length: kWidths[type]}, (_, k) => read(i * kWidths[type] + k)));
}

const Follow = json => pointer.slice(1).split('/').map(part => part.replaceAll('~1', '/').replaceAll('~0', '~'))
    .reduce((object, part) => object?.[part], json);

function Sample(times, values, interpolation, time) {
  const after = times.findIndex(([each]) => each > time);
  if (after <= 0 || interpolation === 'STEP') {
    return values.at(after < 0 ? -1 : Math.max(after - 1, 0));
  }
  const part = (time - times[after - 1][0]) / (times[after][0] - times[after - 1][0]);
  return values[after].map((value, i) => values[after - 1][i] + part * (value - values[after - 1][i]));
}

async function Check() {
  const gltf = await Load();
  const clip = gltf.json.animations[0];
  const channel = clip.channels.find(({target}) => target.extensions?.KHR_animation_pointer?.pointer === pointer);
  if (!channel || channel.target.path !== 'pointer' || 'node' in channel.target) {
    throw new Error(`no channel goes by ${pointer}`);
  }
  if (!gltf.json.extensionsUsed?.includes('KHR_animation_pointer')) {
    throw new Error('KHR_animation_pointer is not listed');
  }
  if (Follow(gltf.json) === undefined) {
    throw new Error(`${pointer} leads to nothing`);
  }
  const {input, output, interpolation = 'LINEAR'} = clip.samplers[channel.sampler];
  const times = ReadAccessor(gltf, input);
  const values = ReadAccessor(gltf, output);
  let worst = 0;
  for (const expectation of expectations) {
    const [time, numbers] = expectation.split('=');
    const found = Sample(times, values, interpolation, Number(time));
    const wanted = numbers.split(',').map(Number);
    const gap = wanted.length === found.length ? Math.max(...wanted.map((each, i) => Math.abs(each - found[i]))) : NaN;
    worst = gap <= worst ? worst : gap;  // and NaN
  }
  console.log(`${worst <= kTolerance ? 'OK' : 'FAIL'} ${pointer}: at most ${worst.toExponential(2)} away at ` +
              `${expectations.length} times`);
  return worst <= kTolerance;
}

process.exitCode = await Check().then(good => good ? 0 : 1, error => (console.error(`pointer-values.mjs: ${error.message}`), 1));
