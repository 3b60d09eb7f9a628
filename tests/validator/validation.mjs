// What the Khronos validator says of a glTF file.
import {readFile} from 'node:fs/promises';
import {basename, dirname, resolve} from 'node:path';
import validator from 'gltf-validator';

const kError = 0;  // severity of a message
const kMostMessages = 20;

// Counts of errors and warnings; `messages` are the errors alone.
export async function Validate(file) {
  const bytes = new Uint8Array(await readFile(file));
  const report = await validator.validateBytes(bytes, {
    uri: basename(file),
    maxIssues: 0,
    externalResourceFunction: async uri => new Uint8Array(await readFile(resolve(dirname(file), decodeURIComponent(uri)))),
  });
  const errors = report.issues.messages.filter(message => message.severity === kError);
  return {
    file,
    errors: report.issues.numErrors,
    warnings: report.issues.numWarnings,
    messages: errors.slice(0, kMostMessages).map(error => `${error.code} ${error.pointer ?? ''}: ${error.message}`),
  };
}
