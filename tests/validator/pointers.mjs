// Animations that go by a JSON pointer (KHR_animation_pointer), read without any code of ours.
import {readFile} from 'node:fs/promises';

const kWidths = {SCALAR: 1, VEC2: 2, VEC3: 3, VEC4: 4};
const kGlbJson = 0x4E4F534A;
const kGlbMagic = 0x46546C67;

// The document of a self-contained file, with its buffers.
export async function LoadDocument(file) {
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

const Follow = (json, pointer) => pointer.slice(1).split('/')
    .map(part => part.replaceAll('~1', '/').replaceAll('~0', '~')).reduce((object, part) => object?.[part], json);

function Sample(times, values, interpolation, time) {
  const after = times.findIndex(([each]) => each > time);
  if (after <= 0 || interpolation === 'STEP') {
    return values.at(after < 0 ? -1 : Math.max(after - 1, 0));
  }
  const part = (time - times[after - 1][0]) / (times[after][0] - times[after - 1][0]);
  return values[after].map((value, i) => values[after - 1][i] + part * (value - values[after - 1][i]));
}

// What the first animation gives the property that a pointer names, which must be in the document: numbers by time.
export function FindPointer(document, pointer) {
  const {json} = document;
  const clip = json.animations[0];
  const channel = clip.channels.find(({target}) => target.extensions?.KHR_animation_pointer?.pointer === pointer);
  if (!channel || channel.target.path !== 'pointer' || 'node' in channel.target) {
    throw new Error(`no channel goes by ${pointer}`);
  }
  if (!json.extensionsUsed?.includes('KHR_animation_pointer')) {
    throw new Error('KHR_animation_pointer is not listed');
  }
  if (Follow(json, pointer) === undefined) {
    throw new Error(`${pointer} leads to nothing`);
  }
  const {input, output, interpolation = 'LINEAR'} = clip.samplers[channel.sampler];
  const times = ReadAccessor(document, input);
  const values = ReadAccessor(document, output);
  return time => Sample(times, values, interpolation, time);
}
