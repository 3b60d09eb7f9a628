#!/usr/bin/env node
// pointer-values.mjs FILE POINTER TIME=NUMBER[,NUMBER...]... - what the first animation of a glTF file gives the property
// that a JSON pointer names (KHR_animation_pointer): at each time (seconds) it must have these numbers. The property
// itself must be in the document. Prints one line; ends with 1 when something differs.
import {FindPointer, LoadDocument} from './pointers.mjs';

const kTolerance = 1e-6;

const [file, pointer, ...expectations] = process.argv.slice(2);
if (!expectations.length) {
  console.error('usage: pointer-values.mjs FILE POINTER TIME=NUMBER[,NUMBER...]...');
  process.exit(2);
}

async function Check() {
  const valueAt = FindPointer(await LoadDocument(file), pointer);
  let worst = 0;
  for (const expectation of expectations) {
    const [time, numbers] = expectation.split('=');
    const found = valueAt(Number(time));
    const wanted = numbers.split(',').map(Number);
    const gap = wanted.length === found.length ? Math.max(...wanted.map((each, i) => Math.abs(each - found[i]))) : NaN;
    worst = gap <= worst ? worst : gap;  // and NaN
  }
  console.log(`${worst <= kTolerance ? 'OK' : 'FAIL'} ${pointer}: at most ${worst.toExponential(2)} away at ` +
              `${expectations.length} times`);
  return worst <= kTolerance;
}

process.exitCode = await Check().then(good => good ? 0 : 1, error => (console.error(`pointer-values.mjs: ${error.message}`), 1));
