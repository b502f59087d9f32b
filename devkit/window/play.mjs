// Plays the cases of one test on a desktop of its own: each prints what proved it. The first that fails ends the
// play, shows what was on the screen and keeps a picture of it.
import { existsSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { parseArgs } from 'node:util';
import { layOut } from '../journey/layout.mjs';
import { Desktop } from './desktop.mjs';
import { WindowRun } from './windowRun.mjs';

const caseLimitMs = 30_000;
const wrongUsage = 2;

function readArguments(script) {
  const usage = `usage: node devkit/${script} --program PATH [--stand-ins DIR]`;
  try {
    const { values } = parseArgs({ options: { program: { type: 'string' }, 'stand-ins': { type: 'string' } } });
    if (values.program) {
      const program = path.resolve(values.program);
      const standIns = path.resolve(values['stand-ins'] ?? path.join(path.dirname(program), '..', 'devkit'));
      if (existsSync(path.join(standIns, 'window'))) return { program, standIns };
      console.error(`${standIns} has no folder "window"; ${usage}`);
    } else {
      console.error(usage);
    }
  } catch (error) {
    console.error(`${error.message}; ${usage}`);
  }
  return process.exit(wrongUsage);
}

async function playOne(one, run) {
  run.allow(one.limitMs ?? caseLimitMs);
  const start = performance.now();
  const quotes = await one.reach(run);
  console.log(`${((performance.now() - start) / 1000).toFixed(2).padStart(6)} s  ${one.name}`);
  for (const quote of quotes) console.log(`            | ${quote}`);
}

async function explain(error, one, run) {
  console.log(`NOT REACHED  ${one.name}: ${error.message}`);
  run.allow(caseLimitMs);
  console.log(await run.describe(path.join(tmpdir(), `tarnik-window-${process.pid}.png`)));
}

// `layout` is for the place, `prepare` may do more to it. Sets the exit status: 0 only if all was reached.
export async function play(script, cases, { layout = {}, prepare } = {}) {
  const { program, standIns } = readArguments(script);
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
  console.log(`\n${reached} of ${cases.length} were reached.`);
  process.exitCode = reached === cases.length ? 0 : 1;
}
