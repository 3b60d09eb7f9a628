// A clock of which only the minute hand has keys: the hour hand follows it, and the hand of the small dial of 24 hours
// follows the hour hand.
import { SceneBuilder, framesTo, turn } from './builder.mjs';
import { link, modify, paths } from './link.mjs';
import { box, joined, moved, wheel } from './shapes.mjs';

const lastFrame = 240;
const hours = 3;

const hand = (length, width, z) =>
  joined(box([width, length, 0.02], [0, length / 2 - 0.05, z]), moved(wheel(width, 0.02, 12), [0, 0, z]));

function marks(count, radius, size) {
  const places = [...Array(count).keys()].map((i) => 2 * Math.PI * i / count);
  const mark = (angle) => box([size, size, 0.02], [radius * Math.sin(angle), radius * Math.cos(angle), 0.03]);
  return joined(...places.map(mark));
}

export function make(file) {
  const scene = new SceneBuilder('Clock');
  const dial = scene.addShape('Dial', wheel(1, 0.04, 36), [0.93, 0.91, 0.86]);
  scene.addShape('Hours', marks(12, 0.88, 0.07), [0.15, 0.15, 0.18], { parent: dial });
  const minuteHand = scene.addShape('MinuteHand', hand(0.85, 0.05, 0.08), [0.1, 0.1, 0.12], { parent: dial });
  const hourHand = scene.addShape('HourHand', hand(0.6, 0.08, 0.06), [0.75, 0.2, 0.15], { parent: dial });
  const place = { parent: dial, translation: [0, -0.45, 0.02] };
  const small = scene.addShape('SmallDial', wheel(0.22, 0.02, 24), [0.8, 0.84, 0.88], place);
  const dayHand = scene.addShape('DayHand', hand(0.22, 0.03, 0.03), [0.2, 0.45, 0.7], { parent: small });

  const turns = { target: paths.turnZ, source: paths.turnZ };
  const follow = (name, from, divisor) => link({ name, ...turns, from, fields: modify('Divide', divisor) });
  scene.addModifier(hourHand, follow('A twelfth of the minute hand', 'MinuteHand', 12));
  scene.addModifier(dayHand, follow('Half of the hour hand', 'HourHand', 2));

  const frames = framesTo(lastFrame, 15);
  const clockwise = (frame) => turn([0, 0, 1], -2 * Math.PI * hours * frame / lastFrame);
  scene.addKeys(minuteHand, 'rotation', frames, frames.map(clockwise));
  scene.write(file, 'ThreeHours');
}
