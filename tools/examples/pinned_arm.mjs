// An arm of three segments that waves, and a hand at its end that is pinned in the scene. The arm stands straight up at
// the start, so that the pinned place is easily told: the wrist's.
import { SceneBuilder, framesTo, inchesInMetre, turn } from './builder.mjs';
import { box } from './shapes.mjs';

const lastFrame = 72;

// Each hangs on the one before: height of the box above its joint, thickness, colour.
const parts = [
  { name: 'Base', height: 0.3, width: 0.3, colour: [0.25, 0.27, 0.3] },
  { name: 'UpperArm', height: 0.5, width: 0.12, colour: [0.2, 0.45, 0.7] },
  { name: 'Forearm', height: 0.4, width: 0.09, colour: [0.35, 0.65, 0.85] },
  { name: 'Hand', height: 0.16, width: 0.14, colour: [0.9, 0.5, 0.15] },
];

// Angles over the clip, u from 0 to 1: each begins and ends at 0, so that the clip loops.
const wave = (degrees, turns) => (u) => (degrees * Math.PI / 180) * Math.sin(2 * Math.PI * turns * u);
const motions = [
  { axis: [0, 1, 0], angle: wave(40, 1) },
  { axis: [0, 0, 1], angle: wave(35, 1) },
  { axis: [0, 0, 1], angle: wave(50, 2) },
];

export function make(file) {
  const scene = new SceneBuilder('PinnedArm');
  parts.forEach(({ name, height, width, colour }, i) => {
    const place = i > 0 ? { parent: i - 1, translation: [0, parts[i - 1].height, 0] } : {};
    scene.addShape(name, box([width, height, width], [0, height / 2, 0]), colour, place);
  });
  // The wrist at the start, in scene units (inches): there the hand stays.
  const wrist = parts.slice(0, -1).reduce((sum, part) => sum + part.height, 0);
  scene.addModifier(parts.length - 1, {
    class: 'fPIN',
    enabled: true,
    parameters: {
      fPositionSet: true,
      fActive: true,
      fGlobal: true,
      fPosition: [0, Number((wrist * inchesInMetre).toFixed(4)), 0],
    },
  });
  const frames = framesTo(lastFrame);
  motions.forEach(({ axis, angle }, node) => {
    scene.addKeys(node, 'rotation', frames, frames.map((frame) => turn(axis, angle(frame / lastFrame))));
  });
  scene.write(file, 'Wave');
}
