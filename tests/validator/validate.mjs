#!/usr/bin/env node
// validate.mjs FILE... - what the Khronos validator says of glTF files, one line of JSON a file:
//   {"file": "a.glb", "errors": 1, "warnings": 0, "messages": ["ACCESSOR_MIN_MISMATCH /accessors/3/min/0: ..."]}
// Messages are the errors alone, twenty at most. Ends with 1 when a file has errors or cannot be read.
import {Validate} from './validation.mjs';

const files = process.argv.slice(2);
if (files.length === 0) {
  console.error('usage: validate.mjs FILE...');
  process.exit(2);
}
for (const file of files) {
  const result = await Validate(file).catch(error => ({file, errors: 1, warnings: 0, messages: [String(error.message ?? error)]}));
  console.log(JSON.stringify(result));
  if (result.errors > 0) {
    process.exitCode = 1;
  }
}
