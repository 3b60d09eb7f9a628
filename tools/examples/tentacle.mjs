// A tentacle of twelve bones in one skin. The first bone swings; each of the others turns as the one before it did three
// frames ago, so that the swing runs up to the tip as a wave.
import { SceneBuilder, framesTo, turn } from './builder.mjs';
import { mirror } from './link.mjs';
import { ball } from './shapes.mjs';

const lastFrame = 120;
const bones = 12;
const boneLength = 0.16;
const delay = 3; // frames
const ringsInBone = 2;
const sides = 8;

// It begins and ends at rest, so that the clip loops but for the wave that is still under way.
const swing = (frame) => (13 * Math.PI / 180) * Math.sin(2 * Math.PI * frame / 60);
const width = (along) => 0.13 * (1 - along) + 0.015;

// A tube that gets thinner, along Y. Between the middles of two bones a ring goes over from the one to the other.
function tube() {
  const shape = { positions: [], normals: [], indices: [], joints: [], weights: [] };
  const rings = bones * ringsInBone;
  for (let ring = 0; ring <= rings; ++ring) {
    const place = Math.min(Math.max(ring / ringsInBone - 0.5, 0), bones - 1);
    const joint = Math.min(Math.floor(place), bones - 2);
    for (let side = 0; side <= sides; ++side) {
      const round = 2 * Math.PI * side / sides;
      const [x, z] = [Math.sin(round), Math.cos(round)];
      const radius = width(ring / rings);
      shape.positions.push([x * radius, ring * boneLength / ringsInBone, z * radius]);
      shape.normals.push([x, 0, z]);
      const weights = [1 - (place - joint), place - joint, 0, 0];
      shape.weights.push(weights);
      shape.joints.push(weights.map((weight, i) => (weight > 0 ? joint + i : 0)));
      if (ring < rings && side < sides) {
        const [here, above] = [ring * (sides + 1) + side, (ring + 1) * (sides + 1) + side];
        shape.indices.push(here, here + 1, above + 1, here, above + 1, above);
      }
    }
  }
  return shape;
}

export function make(file) {
  const scene = new SceneBuilder('Tentacle');
  scene.addShape('Rock', ball([0.4, 0.16, 0.35], [0, -0.06, 0], 8, 14), [0.35, 0.33, 0.3]);
  const joints = [];
  for (let i = 1; i <= bones; ++i) {
    joints.push(scene.addNode({
      name: `Tentacle${i}`,
      ...(i > 1 ? { parent: joints.at(-1), translation: [0, boneLength, 0] } : {}),
    }));
  }
  const skin = scene.addSkin(joints, joints.map((_, i) => [0, i * boneLength, 0]));
  scene.addShape('Skin', tube(), [0.6, 0.25, 0.35], { skin });
  joints.forEach((node, i) => scene.addModifier(node, i === 0 ? mirror({}) : mirror({
    from: `Tentacle${i}`,
    fields: { fRotationNone: false, fRotationAll: true, fDelayOn: true, fDelayFrames: delay },
  })));
  const frames = framesTo(lastFrame, 2);
  scene.addKeys(joints[0], 'rotation', frames, frames.map((frame) => turn([0, 0, 1], swing(frame))));
  scene.write(file, 'Wave');
}
