// Scenes in three.js, a reader that is not ours: loads a self-contained glTF file and plays its animations.
import {readFile} from 'node:fs/promises';
import {AnimationMixer, LoopOnce} from 'three';
import {GLTFLoader} from 'three/examples/jsm/loaders/GLTFLoader.js';

// What the loader asks of a browser. Each picture is loaded at once and empty: motion needs none. Not before it is needed:
// other libraries take these for a browser.
function BeABrowser() {
  globalThis.self = globalThis;
  globalThis.ProgressEvent ??= class {};
  globalThis.document = {
    createElementNS: () => ({
      addEventListener: (event, loaded) => event === 'load' && setTimeout(loaded),
      removeEventListener() {},
    }),
  };
}

// three.js plays keys that stand apart in their buffer without end. glTF does not allow them, but some files have them.
function RefuseStrides({animations = [], accessors, bufferViews}) {
  for (const {input, output} of animations.flatMap(animation => animation.samplers)) {
    if ([input, output].some(index => bufferViews[accessors[index].bufferView]?.byteStride)) {
      throw new Error('keys have a byteStride: three.js cannot play them');
    }
  }
}

// The scene with its objects in the order of the file's nodes, and with the names that these have there: three.js changes
// some.
export async function Load(file) {
  BeABrowser();
  const bytes = await readFile(file);
  const gltf = await new GLTFLoader().parseAsync(bytes.buffer.slice(bytes.byteOffset, bytes.byteOffset + bytes.length), '');
  RefuseStrides(gltf.parser.json);
  const objects = [];
  for (const scene of gltf.scenes) {
    scene.traverse(object => {
      const node = gltf.parser.associations.get(object)?.nodes;
      if (node !== undefined) {
        objects[node] ??= object;
      }
    });
  }
  return {gltf, objects, mixer: new AnimationMixer(gltf.scene), names: (gltf.parser.json.nodes ?? []).map(node => node.name)};
}

// Makes one animation the one that the scene's mixer plays, up to its end. Nothing where there is none.
export function Play({gltf, mixer}, clip) {
  mixer.stopAllAction();
  if (gltf.animations[clip]) {
    const action = mixer.clipAction(gltf.animations[clip]).setLoop(LoopOnce);
    action.clampWhenFinished = true;
    action.play();
  }
}

// By name, or by number: "#13".
export function FindNode({objects, names}, name) {
  const found = objects[name.startsWith('#') ? Number(name.slice(1)) : names.indexOf(name)];
  if (!found) {
    throw new Error(`there is no node "${name}"`);
  }
  return found;
}

// Of two rotations; q and -q are one.
export function QuaternionGap(a, b) {
  const sign = Math.sign(a.dot(b)) || 1;
  return Math.max(...a.toArray().map((part, i) => Math.abs(part - sign * b.toArray()[i])));
}
