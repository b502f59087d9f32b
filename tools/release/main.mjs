// The commands of `./dev release`. A command that does nothing prints one sentence and exits with status 1; a wrong
// command line exits with status 2.
import { parseArgs } from 'node:util';
import { check } from './check.mjs';
import { keygen } from './keygen.mjs';
import { make } from './make.mjs';
import { pins } from './pins.mjs';
import { Refusal } from './refusal.mjs';
import { sample } from './sample.mjs';
import { serve } from './serve.mjs';

const commands = { keygen, make, check, serve, pins, sample };
const wrongUse = 2;

function refuseUsage(sentence, usages) {
  console.error(sentence);
  for (const usage of usages) console.error(`usage: ./dev release ${usage}`);
  process.exit(wrongUse);
}

const [name, ...words] = process.argv.slice(2);
if (!Object.hasOwn(commands, name ?? '')) {
  refuseUsage(name === undefined ? 'release needs a command.' : `release has no command ${name}.`, Object.values(commands).map((one) => one.usage));
}
const { usage, options, run } = commands[name];
let parsed;
try {
  parsed = parseArgs({ args: words, options, allowPositionals: true });
} catch (error) {
  refuseUsage(`${error.message.split('\n')[0]}.`.replace('..', '.'), [usage]);
}
const { values, positionals } = parsed;
if (name !== 'make' && positionals.length !== 1) refuseUsage(`${name} needs exactly one place.`, [usage]);
try {
  await run(positionals, values);
} catch (error) {
  console.error(error instanceof Refusal || error.code ? error.message : error);
  process.exitCode = 1;
}
