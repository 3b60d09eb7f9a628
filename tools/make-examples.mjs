#!/usr/bin/env node
// make-examples.mjs [NAME...] - writes the scenes in examples/, or those named. Run it again after a change to
// tools/examples: the same scripts give the same bytes.
import { readdir } from 'node:fs/promises';

const folder = new URL('examples/', import.meta.url);
// Each of these modules makes a scene of its own name; the others are what they share.
const shared = ['builder.mjs', 'link.mjs', 'shapes.mjs'];
const all = (await readdir(folder)).filter((name) => !shared.includes(name)).map((name) => name.replace('.mjs', ''));
const names = process.argv.slice(2);

for (const name of names.length ? names : all.sort()) {
  if (!all.includes(name)) {
    console.error(`make-examples.mjs: there is no example "${name}", but ${all.join(', ')}`);
    process.exit(2);
  }
  const { make } = await import(new URL(`${name}.mjs`, folder));
  make(new URL(`../examples/${name}.gltf`, import.meta.url));
}
