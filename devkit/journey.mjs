// Runs the console program against the stand-ins, in a private folder that is removed afterwards:
//
//     node devkit/journey.mjs --program PATH [--walk] [--keep]
//
// With a terminal on standard input the user drives it; otherwise, or with --walk, it goes through the
// whole life of a helper by itself and exits 0 only if every stage was really reached.
import path from 'node:path';
import { parseArgs } from 'node:util';
import { layOut } from './journey/layout.mjs';
import { playTogether } from './journey/interactive.mjs';
import { walk } from './journey/walk.mjs';

const usage = 'usage: node devkit/journey.mjs --program PATH [--walk] [--keep]';
const wrongUsage = 2;

function readArguments() {
  const options = {
    program: { type: 'string' },
    walk: { type: 'boolean', default: false },
    keep: { type: 'boolean', default: false },
  };
  try {
    const { values } = parseArgs({ options });
    if (values.program) return values;
    console.error(`--program is missing; ${usage}`);
  } catch (error) {
    console.error(`${error.message}; ${usage}`);
  }
  return process.exit(wrongUsage);
}

const options = readArguments();
const program = path.resolve(options.program);
const place = layOut();
try {
  const play = process.stdin.isTTY && !options.walk ? playTogether : walk;
  process.exitCode = await play(program, place);
} finally {
  if (options.keep) console.log(`kept: ${place.root}`);
  else place.remove();
}
