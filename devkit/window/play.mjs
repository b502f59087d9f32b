// Runs the cases of one script on a private desktop. Each case prints its proof. The first failure ends the run, prints
// what the window showed, and saves a picture of the screen.
import { existsSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { printPassed, readArguments } from '../commandLine.mjs';
import { layOut } from '../journey/layout.mjs';
import { onlyPlainRequests } from '../journey/proof.mjs';
import { Desktop } from './desktop.mjs';
import { WindowRun } from './windowRun.mjs';

const caseLimitMs = 30_000;

const options = { program: { type: 'string' }, 'stand-ins': { type: 'string' } };

// The default is the folder that was built with the program.
function standInsFor({ program, 'stand-ins': chosen }) {
  return path.resolve(chosen ?? path.join(path.dirname(program), '..', 'devkit'));
}

function problemOf(values) {
  if (!values.program) return '--program is missing';
  const standIns = standInsFor(values);
  return existsSync(path.join(standIns, 'window')) ? undefined : `${standIns} has no folder "window"`;
}

async function playOne(one, run) {
  run.allow(one.limitMs ?? caseLimitMs);
  const start = performance.now();
  const quotes = await one.reach(run);
  onlyPlainRequests(run.place.service);
  printPassed(one.name, performance.now() - start, quotes);
}

async function explain(error, one, run) {
  console.log(`NOT REACHED  ${one.name}: ${error.message}`);
  run.allow(caseLimitMs);
  console.log(await run.describe(path.join(tmpdir(), `tarnik-window-${process.pid}.png`)));
}

// `layout` has the options of layOut(). `prepare` runs before the first case. Sets the exit status to 0 only if every case
// passed.
export async function play(script, cases, { layout = {}, prepare } = {}) {
  const values = readArguments(`usage: node devkit/${script} --program PATH [--stand-ins DIR]`, options, problemOf);
  const program = path.resolve(values.program);
  const standIns = standInsFor(values);
  const place = await layOut({ ...layout, standIns: path.join(standIns, 'driver') });
  let desktop;
  let run;
  const end = async () => {
    await run?.end();
    await desktop?.close();
    await place.service.close();
    place.remove();
  };
  const endAtOnce = (status) => end().finally(() => process.exit(status));
  for (const [signal, number] of [['SIGINT', 2], ['SIGTERM', 15], ['SIGHUP', 1]]) {
    process.once(signal, () => endAtOnce(128 + number));
  }
  process.once('uncaughtException', (error) => {
    console.error(error);
    endAtOnce(1);
  });
  let reached = 0;
  try {
    desktop = await Desktop.open(place.root, path.join(standIns, 'window'));
    run = new WindowRun(program, place, desktop);
    await prepare?.(run);
    for (const one of cases) {
      try {
        await playOne(one, run);
      } catch (error) {
        await explain(error, one, run);
        break;
      }
      reached += 1;
    }
  } finally {
    await end();
  }
  console.log(`\n${reached} of ${cases.length} cases passed.`);
  process.exitCode = reached === cases.length ? 0 : 1;
}
