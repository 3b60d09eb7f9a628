// Four plants that grow from frame 24 to frame 96, each by another curve. Outside its window a link writes nothing, and
// what shows is the plant's own scale: keys hold it small before the window and full after it.
import { SceneBuilder, inchesInMetre } from './builder.mjs';
import { link, modify, paths } from './link.mjs';
import { ball, box, joined, moved } from './shapes.mjs';

const lastFrame = 120;
const [start, end] = [24, 96];
const small = 0.05;

const curves = [
  { name: 'Linear', flag: 'glin' }, // p, the part of the window that has passed
  { name: 'Square', flag: 'gqut' }, // p^2
  { name: 'Cube', flag: 'gcut' }, // p^3
  { name: 'Sum', flag: 'gqua' }, // p^2 + p, which reaches the top early and stays there
];

const leaf = (x, y) => box([0.24, 0.03, 0.08], [x, y, 0]);
const stem = () => joined(box([0.05, 1, 0.05], [0, 0.5, 0]), leaf(0.1, 0.5), leaf(-0.1, 0.35));

const blossom = () => {
  const petals = [...Array(6).keys()].map((i) => [Math.cos(Math.PI * i / 3) * 0.1, 0, Math.sin(Math.PI * i / 3) * 0.1]);
  return joined(ball([0.06, 0.06, 0.06], [0, 0, 0], 6, 8), ...petals.map((at) => moved(box([0.08, 0.03, 0.08]), at)));
};

export function make(file) {
  const scene = new SceneBuilder('Growth');
  scene.addShape('Bed', box([2.6, 0.06, 0.6], [0, -0.03, 0]), [0.35, 0.25, 0.15]);
  const stemMesh = scene.addMesh('Stem', stem(), scene.addMaterial('Stem', [0.25, 0.55, 0.2]));
  const blossomMesh = scene.addMesh('Blossom', blossom(), scene.addMaterial('Blossom', [0.85, 0.35, 0.55]));
  curves.forEach(({ name, flag }, i) => {
    const x = 0.6 * i - 0.9;
    const plant = scene.addNode({ name: `${name}Stem`, mesh: stemMesh, translation: [x, 0, 0], scale: [1, small, 1] });
    scene.addModifier(plant, link({
      name: 'Grow',
      target: paths.scaleY,
      fields: { ...modify('Set', 1), fGrowOn: true, fStartOn: true, fStartFrame: start, fEndOn: true, fEndFrame: end },
      tokens: { glin: false, [flag]: true, gmin: small },
    }));
    scene.addKeys(plant, 'scale', [0, end + 1, lastFrame], [[1, small, 1], [1, 1, 1], [1, 1, 1]], 'STEP');
    const top = scene.addNode({ name: `${name}Blossom`, mesh: blossomMesh, translation: [x, small, 0] });
    scene.addModifier(top, link({
      name: 'Stay on top', target: paths.y, from: `${name}Stem`, source: paths.scaleY,
      fields: modify('Multiply', Number(inchesInMetre.toFixed(6))), // a stem is 1 m high
    }));
  });
  scene.write(file, 'Spring');
}
