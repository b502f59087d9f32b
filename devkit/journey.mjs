// Runs the program against the stand-ins, from an empty home in a private folder that is removed afterwards:
//
//     node devkit/journey.mjs --program PATH [--face NAME] [--keep] [--misbehave WHAT=HOW] [--fault NAME]
//                             [--stand-ins DIR]
//
// The stand-ins are those built with the program, unless DIR has others.
//
// The face is the window, the console, or walk: on the console it then goes through the whole life of a helper by
// itself and exits 0 only if every stage was really reached. Unless one is named it is the window where there is
// a display, else the console where there is a terminal.
import { existsSync } from 'node:fs';
import path from 'node:path';
import { parseArgs } from 'node:util';
import { layOut } from './journey/layout.mjs';
import { playInTerminal, playInWindow } from './journey/interactive.mjs';
import { walk } from './journey/walk.mjs';
import { faults } from './release/faults.mjs';
import { misbehaviours } from './service/delivery.mjs';

const usage = 'usage: node devkit/journey.mjs --program PATH [--face window|console|walk] [--keep]'
  + ' [--misbehave WHAT=HOW] [--fault NAME] [--stand-ins DIR]';
const wrongUsage = 2;
const served = ['release', 'runtime', 'helper'];
const faces = { window: playInWindow, console: playInTerminal, walk };

function usualFace() {
  const { DISPLAY, WAYLAND_DISPLAY } = process.env;
  if (process.platform === 'darwin' || DISPLAY || WAYLAND_DISPLAY) return 'window';
  return process.stdin.isTTY ? 'console' : 'walk';
}

function whatIsWrong(options) {
  const { program, face, misbehave, fault } = options;
  if (!program) return '--program is missing';
  if (!Object.hasOwn(faces, face)) return `--face is one of ${Object.keys(faces).join(', ')}`;
  const standIns = standInsFor(options);
  if (!existsSync(path.join(standIns, 'cua-driver'))) return `${standIns} has no cua-driver`;
  const [what, how] = misbehave?.split('=') ?? ['release', '404'];
  if (!served.includes(what)) return `--misbehave is of one of ${served.join(', ')}`;
  if (!Object.hasOwn(misbehaviours, how)) return `HOW is one of ${Object.keys(misbehaviours).join(', ')}`;
  if (fault && !Object.hasOwn(faults, fault)) return `--fault is one of ${Object.keys(faults).join(', ')}`;
  return undefined;
}

function standInsFor({ program, 'stand-ins': chosen }) {
  return path.resolve(chosen ?? path.join(path.dirname(program), '..', 'devkit', 'driver'));
}

function readArguments() {
  const options = {
    program: { type: 'string' },
    face: { type: 'string', default: usualFace() },
    keep: { type: 'boolean', default: false },
    misbehave: { type: 'string' },
    fault: { type: 'string' },
    'stand-ins': { type: 'string' },
  };
  try {
    const { values } = parseArgs({ options });
    const wrong = whatIsWrong(values);
    if (!wrong) return values;
    console.error(`${wrong}; ${usage}`);
  } catch (error) {
    console.error(`${error.message}; ${usage}`);
  }
  return process.exit(wrongUsage);
}

const options = readArguments();
const program = path.resolve(options.program);
const place = await layOut({ fault: options.fault, standIns: standInsFor(options) });
place.misbehave('runtime', 'slow');  // so that there is progress to see
if (options.misbehave) place.misbehave(...options.misbehave.split('='));
try {
  process.exitCode = await faces[options.face](program, place);
} finally {
  await place.service.close();
  if (options.keep) console.log(`kept: ${place.root}`);
  else place.remove();
}
