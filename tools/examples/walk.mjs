// A figure that walks, recorded as a machine records: every joint has a place, a turn and a scale on every frame, though
// most of them never change.
import { SceneBuilder, framesTo, turn } from './builder.mjs';
import { ball, box, moved } from './shapes.mjs';

const lastFrame = 24; // one stride

const wave = (degrees, shift = 0) => (stride) => (degrees * Math.PI / 180) * Math.sin(2 * Math.PI * (stride + shift));
// Knees and elbows bend one way.
const bend = (degrees, shift) => (stride) => (degrees * Math.PI / 180) * Math.max(0, Math.sin(2 * Math.PI * (stride + shift)));

const limb = (length, width) => moved(box([width, length, width]), [0, -length / 2, 0]);
const skin = [0.85, 0.65, 0.5];
const cloth = [0.2, 0.4, 0.6];

// Each hangs on the one named. The figure looks along X, so that a turn about Z swings a limb.
const joints = [
  { name: 'Spine', on: 'Hips', place: [0, 0.06, 0], shape: moved(box([0.16, 0.4, 0.28]), [0, 0.2, 0]), colour: cloth },
  { name: 'Head', on: 'Spine', place: [0, 0.42, 0], shape: ball([0.1, 0.13, 0.1], [0, 0.15, 0], 6, 10), colour: skin },
  ...[['Left', 1, 0], ['Right', -1, 0.5]].flatMap(([side, z, half]) => [
    { name: `${side}Arm`, on: 'Spine', place: [0, 0.38, 0.18 * z], shape: limb(0.28, 0.08), colour: cloth,
      angle: wave(28, half) },
    { name: `${side}Forearm`, on: `${side}Arm`, place: [0, -0.28, 0], shape: limb(0.26, 0.07), colour: skin,
      angle: bend(30, half) },
    { name: `${side}Thigh`, on: 'Hips', place: [0, -0.04, 0.08 * z], shape: limb(0.42, 0.12), colour: [0.25, 0.25, 0.3],
      angle: wave(26, half + 0.5) },
    { name: `${side}Shin`, on: `${side}Thigh`, place: [0, -0.42, 0], shape: limb(0.42, 0.1), colour: [0.25, 0.25, 0.3],
      angle: (stride) => -bend(50, half + 0.75)(stride) },
    { name: `${side}Foot`, on: `${side}Shin`, place: [0, -0.42, 0], shape: moved(box([0.24, 0.06, 0.1]), [0.06, 0, 0]),
      colour: [0.15, 0.12, 0.1] },
  ]),
];

export function make(file) {
  const scene = new SceneBuilder('Walk');
  const frames = framesTo(lastFrame);
  const strides = frames.map((frame) => frame / lastFrame);
  const nodes = { Hips: scene.addShape('Hips', box([0.15, 0.14, 0.26]), [0.25, 0.25, 0.3]) };
  const record = (node, places, angle = () => 0) => {
    scene.addKeys(node, 'translation', frames, places);
    scene.addKeys(node, 'rotation', frames, strides.map((stride) => turn([0, 0, 1], angle(stride))));
    scene.addKeys(node, 'scale', frames, frames.map(() => [1, 1, 1]));
  };
  // The hips come down twice a stride, when the legs are apart.
  record(nodes.Hips, strides.map((stride) => [1.1 * stride - 0.55, 0.92 - 0.025 * Math.sin(2 * Math.PI * stride) ** 2, 0]));
  for (const { name, on, place, shape, colour, angle } of joints) {
    nodes[name] = scene.addShape(name, shape, colour, { parent: nodes[on], translation: place });
    record(nodes[name], frames.map(() => place), angle);
  }
  scene.write(file, 'Walk');
}
