// A pendulum that nothing drives: a swing of 40 degrees, times a wave, times a decay. Paper moves below it, as in a
// recorder; its keys give the clip its length.
import { SceneBuilder } from './builder.mjs';
import { link, modify, paths } from './link.mjs';
import { ball, box, joined } from './shapes.mjs';

const lastFrame = 240;
const degrees = 5; // the code of a unit

export function make(file) {
  const scene = new SceneBuilder('Pendulum');
  const stand = joined(box([0.1, 1.6, 0.1], [0, 0.8, -0.4]), box([0.1, 0.1, 0.5], [0, 1.55, -0.2]));
  scene.addShape('Stand', stand, [0.3, 0.32, 0.36]);
  const paper = scene.addShape('Paper', box([1.6, 0.02, 3], [0, 0.01, 0]), [0.92, 0.92, 0.88]);
  const bob = joined(box([0.04, 1.2, 0.04], [0, -0.6, 0]), ball([0.14, 0.14, 0.14], [0, -1.25, 0]));
  const pendulum = scene.addShape('Pendulum', bob, [0.75, 0.55, 0.2], { translation: [0, 1.55, 0] });
  scene.addModifier(pendulum, link({
    name: 'Swing',
    target: paths.turnZ,
    fields: { ...modify('Set', 40), fModifyUnit: degrees, fOscillateOn: true, fDecayOn: true },
    tokens: { osin: false, ocos: true, ospd: 0.1309 }, // radians a frame: 48 frames a swing
  }));
  scene.addKeys(paper, 'translation', [0, lastFrame], [[0, 0, 1], [0, 0, -1]]);
  scene.write(file, 'Swing');
}
