// A lamp that gets brighter and whiter as a moth comes near along Z: the emission of its material and its light follow.
import { SceneBuilder, framesTo } from './builder.mjs';
import { combine, link, modify, paths } from './link.mjs';
import { ball, box, joined, wheel } from './shapes.mjs';

const lastFrame = 96;
const height = 1.2;

// 3 m away, 0.3 m near, and back.
const distance = (u) => 1.65 + 1.35 * Math.cos(2 * Math.PI * u);

// Each takes a part of the distance (inches) from the value that the lamp has by itself, down to a least one.
const range = { fRangeOn: true, fRangeMin: 2, fRangeMax: 8 }; // what is taken
const links = [
  { name: 'Strength', target: 'shdr,0000,EmSt', factor: 0.08, least: 3, more: range },
  { name: 'Blue', target: 'shdr,0000,Emis,bluV', factor: 0.01, least: 0.1 },
  { name: 'Light', target: 'self,ligh,Inte', factor: 0.4, least: 5 },
  { name: 'Blue light', target: 'self,ligh,Colr,bluV', factor: 0.01, least: 0.1 },
];

export function make(file) {
  const scene = new SceneBuilder('Lamp');
  scene.used.add('KHR_materials_emissive_strength').add('KHR_lights_punctual');
  const bulb = { name: 'Bulb', type: 'point', color: [1, 0.85, 1], intensity: 40 };
  scene.extensions = { KHR_lights_punctual: { lights: [bulb] } };
  const glowing = scene.addMaterial('Bulb', [0.1, 0.1, 0.1], {
    emissiveFactor: [1, 0.85, 1],
    extensions: { KHR_materials_emissive_strength: { emissiveStrength: 10 } },
  });
  const post = joined(box([0.06, height, 0.06], [0, height / 2, 0]), box([0.4, 0.04, 0.4], [0, 0.02, 0]));
  scene.addShape('Post', post, [0.25, 0.25, 0.28]);
  const lamp = scene.addNode({
    name: 'Lamp',
    mesh: scene.addMesh('Bulb', ball([0.15, 0.18, 0.15]), glowing),
    translation: [0, height, 0],
    extensions: { KHR_lights_punctual: { light: 0 } },
  });
  const wings = joined(ball([0.03, 0.03, 0.08], [0, 0, 0], 6, 8), box([0.2, 0.01, 0.08]));
  const moth = scene.addShape('Moth', wings, [0.7, 0.65, 0.55], { translation: [0, height, distance(0)] });
  for (const { name, target, factor, least, more } of links) {
    const limits = { fLowerLimitOn: true, fLowerLimit: least };
    const fields = { ...modify('Multiply', factor), ...combine('Subtract'), ...more, ...limits };
    scene.addModifier(lamp, link({ name, target, from: 'Moth', source: paths.globalZ, fields }));
  }
  const frames = framesTo(lastFrame, 2);
  scene.addKeys(moth, 'translation', frames, frames.map((frame) => [0, height, distance(frame / lastFrame)]));
  scene.write(file, 'Visit');
}
