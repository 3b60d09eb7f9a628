#!/usr/bin/env node
// draw-example.mjs BAKED PICTURE.svg SECONDS... [--from X,Y,Z] [--width PIXELS] [--columns N] [--trail NODE@X,Y,Z]
// Draws a baked scene at some times, side by side, each so wide. It is seen from the direction --from, without
// perspective. A trail is the way of a point of a node (in the node's own axes) up to the time of the picture.
import { writeFileSync } from 'node:fs';
import { basename } from 'node:path';
import { parseArgs } from 'node:util';
// The tests' own three.js, so that there is one copy of it.
import { Matrix4, Vector3 } from '../tests/validator/node_modules/three/build/three.module.js';
import { FindNode, Load, Play } from '../tests/validator/player.mjs';
import { FindPointer, LoadDocument } from '../tests/validator/pointers.mjs';
import { dot, keepSeen, merge, normalOf, sortBackToFront } from './drawing/polygons.mjs';

// Units of the picture: tenths of a pixel, so that whole numbers are fine enough.
const pixel = 10;
const captionHeight = 24 * pixel;
const margin = 6 * pixel;
const trailStep = 1 / 48; // seconds

// ---- the scene at a time ----------------------------------------------------------------------------------------

function showAt({ scene, document, pointers }, time) {
  Play(scene, 0); // again each time, as an animation that has ended does not go back
  scene.mixer.setTime(time);
  scene.gltf.scene.updateMatrixWorld(true);
  for (const { pointer, valueAt } of pointers) {
    setAt(document.json, pointer, valueAt(time));
  }
}

// three.js does not play what goes by JSON pointers: those values are put into the document, and read from there.
function setAt(json, pointer, value) {
  const path = pointer.slice(1).split('/');
  const owner = path.slice(0, -1).reduce((object, part) => object[part], json);
  owner[path.at(-1)] = Array.isArray(owner[path.at(-1)]) ? value : value[0];
}

async function open(file) {
  const document = await LoadDocument(file);
  const channels = document.json.animations?.[0]?.channels ?? [];
  const pointers = channels.map(({ target }) => target.extensions?.KHR_animation_pointer?.pointer).filter(Boolean)
    .map((pointer) => ({ pointer, valueAt: FindPointer(document, pointer) }));
  return { scene: await Load(file), document, pointers };
}

const emission = ({ emissiveFactor = [0, 0, 0], extensions }) =>
  emissiveFactor.map((part) => part * (extensions?.KHR_materials_emissive_strength?.emissiveStrength ?? 1));

function lightsOf({ scene, document }, toView) {
  return document.json.nodes.flatMap(({ extensions }, i) => {
    const light = document.json.extensions?.KHR_lights_punctual?.lights[extensions?.KHR_lights_punctual?.light];
    const place = light && scene.objects[i].getWorldPosition(new Vector3()).applyMatrix4(toView).toArray();
    return light ? [{ place, colour: light.color ?? [1, 1, 1], intensity: light.intensity ?? 1 }] : [];
  });
}

// ---- polygons, in the viewer's axes -----------------------------------------------------------------------------

function* trianglesOf(mesh, toView) {
  const { index, attributes } = mesh.geometry;
  const points = [...Array(attributes.position.count).keys()].map((i) => // where morph targets and the node bring it
    mesh.getVertexPosition(i, new Vector3()).applyMatrix4(mesh.matrixWorld).applyMatrix4(toView).toArray());
  for (let i = 0; i < (index?.count ?? points.length); i += 3) {
    yield [0, 1, 2].map((k) => points[index ? index.getX(i + k) : i + k]);
  }
}

const plain = {}; // the material of a mesh that has none

// The polygons of all meshes that face the viewer, each with its material in place of a colour.
function polygonsOf({ scene, document }, toView) {
  const polygons = [];
  scene.gltf.scene.traverse((object) => {
    if (object.isMesh) {
      const number = scene.gltf.parser.associations.get(object.material)?.materials;
      const colour = document.json.materials?.[number] ?? plain;
      const all = [...trianglesOf(object, toView)].map((points) => ({ points, normal: normalOf(points), colour }));
      polygons.push(...merge(all.filter(({ normal }) => normal?.[2] > 1e-3)));
    }
  });
  return polygons;
}

// What the picture of one time needs. Materials and lights are copied: the next time changes them.
function take(example, time, toView) {
  showAt(example, time);
  const polygons = polygonsOf(example, toView);
  const copies = new Map(polygons.map(({ colour }) => [colour, structuredClone(colour)]));
  return {
    time,
    polygons: polygons.map((polygon) => ({ ...polygon, colour: copies.get(polygon.colour) })),
    lights: lightsOf(example, toView),
  };
}

function takeTrail(example, text, until, toView) {
  const [name, place] = text.split('@');
  const points = [];
  for (let time = 0; time < until + trailStep / 2; time += trailStep) {
    showAt(example, time);
    const point = new Vector3(...place.split(',').map(Number));
    points.push(FindNode(example.scene, name).localToWorld(point).applyMatrix4(toView).toArray());
  }
  return points;
}

// ---- colours ----------------------------------------------------------------------------------------------------

const unit = (vector) => vector.map((each) => each / Math.hypot(...vector));
const sun = unit([-0.4, 0.7, 0.6]); // over the viewer's left shoulder

// From linear light, as glTF has it, to what a screen shows.
function toScreen(colour) {
  const encode = (part) => (part <= 0.0031308 ? 12.92 * part : 1.055 * part ** (1 / 2.4) - 0.055);
  return `#${colour.map((part) => Math.round(255 * encode(Math.min(part, 1))).toString(16).padStart(2, '0')).join('')}`;
}

function lit(normal, points, { place, colour, intensity }, exposure) {
  const way = place.map((each, i) => each - points[0][i]);
  const share = (exposure.light * intensity * Math.max(0, dot(normal, unit(way)))) / (0.5 + dot(way, way));
  return colour.map((part) => part * share);
}

// Where a scene has lights of its own it is night, so that they show.
function shade({ normal, points, colour: material }, lights, exposure) {
  const base = material.pbrMetallicRoughness?.baseColorFactor ?? [1, 1, 1];
  const day = (0.4 + 0.6 * Math.max(0, dot(normal, sun))) * (lights.length ? 0.15 : 1);
  const fromLights = lights.map((light) => lit(normal, points, light, exposure));
  return toScreen(emission(material).map((own, i) =>
    base[i] * fromLights.reduce((sum, light) => sum + light[i], day) + own * exposure.emission));
}

// The strongest light over all times is the brightest that a picture can show.
function exposureOf(shots) {
  const strongest = (values, least) => 1 / Math.max(least, ...values);
  return {
    emission: strongest(shots.flatMap(({ polygons }) => polygons.flatMap(({ colour }) => emission(colour))), 1),
    light: strongest(shots.flatMap(({ lights }) => lights.map(({ intensity }) => intensity)), 1e-3),
  };
}

// ---- the picture ------------------------------------------------------------------------------------------------

// One scale and place for all times.
function fit(shots, width) {
  const points = shots.flatMap(({ polygons, trails }) => [...polygons.map((each) => each.points), ...trails].flat());
  const [left, bottom] = [0, 1].map((i) => points.reduce((least, point) => Math.min(least, point[i]), Infinity));
  const [right, top] = [0, 1].map((i) => points.reduce((most, point) => Math.max(most, point[i]), -Infinity));
  const scale = (width - 2 * margin) / (right - left);
  const place = ([x, y]) => [Math.round(margin + (x - left) * scale), Math.round(margin + (top - y) * scale)];
  return { place, scale, width, height: Math.round(2 * margin + (top - bottom) * scale) };
}

const steps = (places) => places.slice(1).map(([x, y], i) => `${x - places[i][0]} ${y - places[i][1]}`).join(' ');
const line = (places) => `M${places[0].join(' ')}l${steps(places)}`.replaceAll(' -', '-');

// Polygons of one colour that follow each other are one path.
function paths(polygons, { place, scale }, colourOf) {
  const runs = [];
  for (const polygon of keepSeen(sortBackToFront(polygons), 0.4 * pixel / scale)) {
    const colour = colourOf(polygon);
    if (runs.at(-1)?.colour !== colour) {
      runs.push({ colour, outline: '' });
    }
    runs.at(-1).outline += `${line(polygon.points.map(place))}z`;
  }
  return runs.map(({ colour, outline }) => `<path color="${colour}" d="${outline}"/>`).join('\n');
}

function glow({ place: at, colour, intensity }, { place, scale }, exposure, id) {
  const [x, y] = place(at);
  const strength = (intensity * exposure.light).toFixed(2);
  return `<radialGradient id="${id}"><stop stop-color="${toScreen(colour)}" stop-opacity="${strength}"/>` +
    `<stop offset="1" stop-color="${toScreen(colour)}" stop-opacity="0"/></radialGradient>` +
    `<circle cx="${x}" cy="${y}" r="${Math.round(0.6 * scale)}" fill="url(#${id})"/>`;
}

function panel({ time, polygons, lights, trails }, number, view, exposure, columns) {
  const { width, height } = view;
  const [x, y] = [(number % columns) * width, Math.floor(number / columns) * (height + captionHeight)];
  return [
    `<svg x="${x}" y="${y}" width="${width}" height="${height}">`,
    ...(lights.length ? [`<rect x="20" width="${width - 40}" height="${height}" fill="#181c28"/>`] : []),
    ...lights.map((light, i) => glow(light, view, exposure, `glow${number}-${i}`)),
    paths(polygons, view, (polygon) => shade(polygon, lights, exposure)),
    ...trails.map((points) => `<path class="trail" d="${line(points.map(view.place))}"/>`),
    '</svg>',
    `<text x="${x + width / 2}" y="${y + height + 15 * pixel}">${time} s</text>`,
  ].join('\n');
}

const escape = (text) => text.replace(/[&<]/g, (each) => `&#${each.charCodeAt()};`);

function draw(shots, panelWidth, columns, about) {
  const [view, exposure] = [fit(shots, panelWidth), exposureOf(shots)];
  const [width, height] = [columns * panelWidth, Math.ceil(shots.length / columns) * (view.height + captionHeight)];
  return [
    '<svg xmlns="http://www.w3.org/2000/svg" role="img" ' +
      `width="${width / pixel}" height="${height / pixel}" viewBox="0 0 ${width} ${height}">`,
    ...Object.entries(about).map(([name, text]) => `<${name}>${escape(text)}</${name}>`),
    // A line of the same colour closes the gaps that smoothing leaves between neighbours.
    '<style>text{font:130px "DejaVu Sans","Segoe UI",Helvetica,Arial,sans-serif;fill:#333;text-anchor:middle}' +
      'path{fill:currentColor;stroke:currentColor;stroke-width:8;stroke-linejoin:round}' +
      '.trail{fill:none;stroke:#1668b8;stroke-width:18}</style>',
    `<rect width="${width}" height="${height}" fill="#fff"/>`,
    ...shots.map((shot, i) => panel(shot, i, view, exposure, columns)),
    '</svg>\n',
  ].join('\n');
}

const { values: options, positionals: [file, picture, ...times] } = parseArgs({
  allowPositionals: true,
  options: {
    from: { type: 'string', default: '0.5,0.5,1' },
    width: { type: 'string', default: '200' },
    columns: { type: 'string' },
    trail: { type: 'string', multiple: true, default: [] },
  },
});
if (!times.length || !times.every((time) => Number(time) >= 0)) {
  console.error('draw-example.mjs BAKED PICTURE.svg SECONDS... [--from X,Y,Z] [--width PIXELS] [--columns N] ' +
    '[--trail NODE@X,Y,Z]');
  process.exit(2);
}
const eye = new Vector3(...options.from.split(',').map(Number));
const toView = new Matrix4().lookAt(eye, new Vector3(), new Vector3(0, 1, 0)).invert();
const example = await open(file);
const shots = times.map(Number).map((time) => ({
  ...take(example, time, toView),
  trails: options.trail.map((trail) => takeTrail(example, trail, time, toView)),
}));
const about = {
  title: `${basename(file)} at ${times.join(', ')} s`,
  desc: ['draw-example.mjs', ...process.argv.slice(2).map((each) => basename(each))].join(' '), // how to make it again
};
writeFileSync(picture, draw(shots, Number(options.width) * pixel, Number(options.columns ?? times.length), about));
