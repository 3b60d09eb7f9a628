// A face whose mouth is two morph targets: it opens as the jaw bone turns, and smiles as the cheek bone rises.
import { SceneBuilder, framesTo, inchesInMetre, turn } from './builder.mjs';
import { link, modify, paths } from './link.mjs';
import { ball, box, joined, wheel } from './shapes.mjs';

const lastFrame = 96;
const openAngle = 0.5; // radians: the mouth is open

const jaw = (u) => 0.3 - 0.4 * Math.cos(4 * Math.PI * u); // goes past both ends of what the mouth can do
const smile = (u) => 0.5 - 0.5 * Math.cos(2 * Math.PI * u); // inches

function mouth() {
  const shape = wheel(1, 0.04);
  shape.positions = shape.positions.map(([x, y, z]) => [0.22 * x, 0.03 * y, z]);
  return shape;
}

const limits = { fLowerLimitOn: true, fLowerLimit: 0, fUpperLimitOn: true, fUpperLimit: 1 };

export function make(file) {
  const scene = new SceneBuilder('Face');
  const head = scene.addShape('Head', ball([0.5, 0.6, 0.5]), [0.9, 0.7, 0.55]);
  const eye = (x) => ball([0.06, 0.08, 0.04], [x, 0.12, 0.45], 6, 10);
  scene.addShape('Eyes', joined(eye(-0.18), eye(0.18)), [0.12, 0.12, 0.15], { parent: head });
  const jawBone = scene.addShape('JawBone', box([0.3, 0.08, 0.16], [0, -0.5, 0.3]), [0.85, 0.62, 0.48], { parent: head });
  const cheek = (x) => box([0.1, 0.06, 0.06], [x, -0.05, 0.4]);
  const cheekBone = scene.addShape('CheekBone', joined(cheek(-0.3), cheek(0.3)), [0.95, 0.55, 0.5], { parent: head });

  const shape = mouth();
  const mesh = scene.addMesh('Mouth', shape, scene.addMaterial('Mouth', [0.5, 0.1, 0.12]), [
    { name: 'Open', moves: shape.positions.map(([, y]) => [0, 4 * y - 0.02, 0]) },
    { name: 'Smile', moves: shape.positions.map(([x]) => [0.2 * x, 2 * x * x, 0]) },
  ]);
  const node = scene.addNode({ name: 'Mouth', mesh, translation: [0, -0.22, 0.49], parent: head });
  scene.addModifier(node, link({
    name: 'Open', target: 'RMPH,0,0', from: 'JawBone', source: paths.turnX,
    fields: { ...modify('Divide', openAngle), ...limits },
  }));
  scene.addModifier(node, link({ name: 'Smile', target: 'RMPH,0,1', from: 'CheekBone', source: paths.y, fields: limits }));

  const frames = framesTo(lastFrame);
  scene.addKeys(jawBone, 'rotation', frames, frames.map((frame) => turn([1, 0, 0], jaw(frame / lastFrame))));
  scene.addKeys(cheekBone, 'translation', frames, frames.map((frame) => [0, smile(frame / lastFrame) / inchesInMetre, 0]));
  scene.write(file, 'Talk');
}
