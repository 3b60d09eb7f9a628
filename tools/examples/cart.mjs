// A cart that drives along X. Its wheels turn by the way that it went over their radius, whatever its keys are: they roll
// without slipping.
import { SceneBuilder, framesTo, inchesInMetre } from './builder.mjs';
import { link, modify, paths } from './link.mjs';
import { box, joined, wheel } from './shapes.mjs';

const lastFrame = 96;
const axles = [{ name: 'Front', x: 0.7, radius: 0.25 }, { name: 'Back', x: -0.5, radius: 0.4 }];
const sides = [{ name: 'Left', z: -0.45 }, { name: 'Right', z: 0.45 }];

// From -2 m to 2 m, without a jerk at either end.
const way = (u) => -2 + 4 * (u - Math.sin(2 * Math.PI * u) / (2 * Math.PI));

// They stand out on both faces, so that the turning is seen.
const spokes = (radius) => joined(box([1.7 * radius, 0.05, 0.12]), box([0.05, 1.7 * radius, 0.12]));

export function make(file) {
  const scene = new SceneBuilder('Cart');
  scene.addShape('Road', box([6, 0.05, 1.6], [0, -0.025, 0]), [0.45, 0.45, 0.42]);
  const body = joined(box([1.7, 0.3, 0.7], [0.1, 0.55, 0]), box([0.6, 0.4, 0.6], [-0.3, 0.9, 0]));
  const cart = scene.addShape('Cart', body, [0.75, 0.25, 0.15]);
  const tyre = scene.addMaterial('Tyre', [0.2, 0.2, 0.22]);
  const spoke = scene.addMaterial('Spoke', [0.85, 0.75, 0.5]);
  for (const axle of axles) {
    const mesh = scene.addMesh(`${axle.name}Wheel`, wheel(axle.radius, 0.08), tyre);
    scene.addToMesh(mesh, spokes(axle.radius), spoke);
    for (const side of sides) {
      const name = `${axle.name}${side.name}Wheel`;
      const node = scene.addNode({ name, mesh, translation: [axle.x, axle.radius, side.z], parent: cart });
      // Inches over inches are radians; driving along +X turns a wheel backwards about +Z.
      const radius = Number((axle.radius * inchesInMetre).toFixed(6));
      scene.addModifier(node, link({
        name: 'Roll', target: paths.turnZ, from: 'Cart', source: paths.globalX, fields: modify('Divide', -radius),
      }));
    }
  }
  const frames = framesTo(lastFrame);
  scene.addKeys(cart, 'translation', frames, frames.map((frame) => [way(frame / lastFrame), 0, 0]));
  scene.write(file, 'Drive');
}
