// Runs the program against the stand-ins. The home is empty, in a private folder that is removed at the end.
//
//     node devkit/journey.mjs --program PATH [--face NAME] [--keep] [--misbehave WHAT=HOW] [--fault NAME]
//                             [--stand-ins DIR]
//
// DIR contains the compiled stand-ins. The default is the folder that was built with the program.
//
// NAME is window, console, serve or walk. walk drives the console through all stages without a user. It exits with
// status 0 only if it reached every stage. The default is window on a display, console in a terminal without a display, and walk
// otherwise.
import { existsSync } from 'node:fs';
import path from 'node:path';
import { readArguments } from './commandLine.mjs';
import { layOut } from './journey/layout.mjs';
import { playAsService, playInTerminal, playInWindow } from './journey/interactive.mjs';
import { walk } from './journey/walk.mjs';
import { faults } from './release/faults.mjs';
import { misbehaviours } from './service/delivery.mjs';

const usage = 'usage: node devkit/journey.mjs --program PATH [--face window|console|serve|walk] [--keep]'
  + ' [--misbehave WHAT=HOW] [--fault NAME] [--stand-ins DIR]';
const served = ['release', 'runtime', 'helper'];
const faces = { window: playInWindow, console: playInTerminal, serve: playAsService, walk };

function defaultFace() {
  const { DISPLAY, WAYLAND_DISPLAY } = process.env;
  if (process.platform === 'darwin' || DISPLAY || WAYLAND_DISPLAY) return 'window';
  return process.stdin.isTTY ? 'console' : 'walk';
}

function problemOf(options) {
  const { program, face, misbehave, fault } = options;
  if (!program) return '--program is missing';
  if (!Object.hasOwn(faces, face)) return `--face must be one of ${Object.keys(faces).join(', ')}`;
  const standIns = standInsFor(options);
  if (!existsSync(path.join(standIns, 'cua-driver'))) return `${standIns} has no cua-driver`;
  const [what, how] = misbehave?.split('=') ?? ['release', '404'];
  if (!served.includes(what)) return `WHAT must be one of ${served.join(', ')}`;
  if (!Object.hasOwn(misbehaviours, how)) return `HOW must be one of ${Object.keys(misbehaviours).join(', ')}`;
  if (fault && !Object.hasOwn(faults, fault)) return `--fault must be one of ${Object.keys(faults).join(', ')}`;
  return undefined;
}

function standInsFor({ program, 'stand-ins': chosen }) {
  return path.resolve(chosen ?? path.join(path.dirname(program), '..', 'devkit', 'driver'));
}

const options = readArguments(usage, {
  program: { type: 'string' },
  face: { type: 'string', default: defaultFace() },
  keep: { type: 'boolean', default: false },
  misbehave: { type: 'string' },
  fault: { type: 'string' },
  'stand-ins': { type: 'string' },
}, problemOf);
const program = path.resolve(options.program);
const place = await layOut({ fault: options.fault, standIns: standInsFor(options) });
place.misbehave('runtime', 'slow');  // so that the progress is visible
if (options.misbehave) place.misbehave(...options.misbehave.split('='));
try {
  process.exitCode = await faces[options.face](program, place);
} finally {
  await place.service.close();
  if (options.keep) console.log(`kept: ${place.root}`);
  else place.remove();
}
