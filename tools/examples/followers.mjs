// A duck walks, and five ducklings come out of the nest behind it: each does what the one before it did five frames ago.
import { SceneBuilder, framesTo } from './builder.mjs';
import { link, paths } from './link.mjs';
import { ball, box, joined } from './shapes.mjs';

const lastFrame = 120;
const followers = 5;
const delay = 5; // frames

const way = (u) => [-2 + 4 * u, 0, 0.8 * Math.sin(3 * Math.PI * u)];

const duck = (size) => joined(
  ball([0.2 * size, 0.13 * size, 0.13 * size], [0, 0.13 * size, 0], 6, 10),
  ball([0.09 * size, 0.09 * size, 0.09 * size], [0.16 * size, 0.3 * size, 0], 6, 10),
  box([0.1 * size, 0.02 * size, 0.06 * size], [0.28 * size, 0.29 * size, 0]),
);

export function make(file) {
  const scene = new SceneBuilder('Followers');
  const nest = joined(box([0.7, 0.1, 0.6], [0, 0.05, 0]), box([0.7, 0.3, 0.05], [0, 0.15, -0.3]));
  scene.addShape('Nest', nest, [0.4, 0.3, 0.2], { translation: [-2.1, 0, 0] });
  const leader = scene.addShape('Leader', duck(1.2), [0.55, 0.42, 0.25], { translation: way(0) });
  const mesh = scene.addMesh('Duckling', duck(0.7), scene.addMaterial('Duckling', [0.95, 0.8, 0.2]));
  for (let i = 1, from = 'Leader'; i <= followers; from = `Follower${i++}`) {
    const node = scene.addNode({ name: `Follower${i}`, mesh, translation: way(0) });
    for (const axis of ['x', 'z']) {
      scene.addModifier(node, link({
        name: `Follow ${axis.toUpperCase()}`, target: paths[axis], from, source: paths[axis],
        fields: { fDelayOn: true, fDelayFrames: delay },
      }));
    }
  }
  const frames = framesTo(lastFrame, 2);
  scene.addKeys(leader, 'translation', frames, frames.map((frame) => way(frame / lastFrame)));
  scene.write(file, 'Walk');
}
