// Kills the program at random moments of its first install and starts it again. Each second start must result in a
// working helper.
//
//     node devkit/interruptions.mjs --program PATH [--times N] [--seed N]
//
// Prints the seed, which selects the same moments again.
import { mkdirSync, readdirSync, realpathSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { setTimeout as pause } from 'node:timers/promises';
import { printOutput, readArguments } from './commandLine.mjs';
import { ConsoleRun } from './journey/consoleRun.mjs';
import { layOut } from './journey/layout.mjs';
import { demand, exactly, installedHelper, logShowsStart, runningHelper } from './journey/proof.mjs';

const usage = 'usage: node devkit/interruptions.mjs --program PATH [--times N] [--seed N]';
const installLimitMs = 30_000;
const helperSizeMiB = 8;  // large enough that every step takes measurable time
const beyondTheEnd = 1.1;
const machineNode = realpathSync(process.execPath);

function problemOf({ program, times, seed }) {
  if (!program) return '--program is missing';
  const areNumbers = [times, seed].every((value) => /^\d{1,6}$/.test(value));
  return areNumbers ? undefined : '--times and --seed must be numbers';
}

// Generates numbers from 0 to 1. The same seed generates the same numbers on every machine.
function* randomNumbers(seed) {
  for (let state = seed; ;) {
    state = (state + 0x6d2b79f5) | 0;
    let mixed = Math.imul(state ^ (state >>> 15), 1 | state);
    mixed = (mixed + Math.imul(mixed ^ (mixed >>> 7), 61 | mixed)) ^ mixed;
    yield ((mixed ^ (mixed >>> 14)) >>> 0) / 2 ** 32;
  }
}

async function install(run) {
  run.allow(installLimitMs);
  run.launch();
  await run.expect('state', 'waitingForLink', 0);
}

// Proves that the helper works: the program starts the helper if a join record exists.
async function helperWorks(run) {
  const { joinRecord, home } = run.place;
  installedHelper(run.place);
  const others = readdirSync(home).filter((name) => name !== '.tarnik' && name !== 'Library');
  demand(others.length === 0, `the home has other files: ${others.join(', ')}`);

  mkdirSync(path.dirname(joinRecord), { mode: 0o700 });
  writeFileSync(joinRecord, '{"v":1}\n', { mode: 0o600 });
  run.allow(installLimitMs);
  run.launch();
  await run.expect('state', 'running', 0);
  // The tiny runtime is a shell that executes Node.js; the log line shows that it has done so.
  await logShowsStart(run, (await run.status()).pid);
  await runningHelper(run, machineNode);
  await run.quit();
}

async function inAPlace(program, play) {
  const place = await layOut({ runtime: 'tiny', helperSizeMiB });
  const run = new ConsoleRun(program, place);
  try {
    return await play(run);
  } finally {
    await run.end();
    await place.service.close();
    place.remove();
  }
}

// Returns the milliseconds that an uninterrupted install takes.
function timeOneInstall(program) {
  return inAPlace(program, async (run) => {
    const start = performance.now();
    run.allow(installLimitMs);
    run.launch();
    await run.expect('install', exactly(`done ${run.place.release.version}`), 0);
    const took = performance.now() - start;
    await run.expect('state', 'waitingForLink', 0);
    await run.quit();
    await helperWorks(run);
    return took;
  });
}

function interrupt(program, afterMs) {
  return inAPlace(program, async (run) => {
    run.launch();
    await pause(afterMs);
    await run.killProgram();
    const reached = run.console.lines.at(-1)?.text ?? 'before any output';
    try {
      await install(run);
      await run.quit();
      await helperWorks(run);
      return { reached };
    } catch (error) {
      return { reached, problem: error.message, lines: run.console.lines };
    }
  });
}

function report(afterMs, { reached, problem, lines }) {
  const word = problem ? 'FAILED' : 'ok    ';
  console.log(`${word} killed after ${afterMs.toFixed(1).padStart(6)} ms (${reached})`);
  if (!problem) return;
  console.log(`        ${problem}`);
  printOutput(lines);
}

async function interruptAll(program, times, seed) {
  const whole = await timeOneInstall(program);
  console.log(`an install takes ${whole.toFixed(0)} ms; ${times} interruptions with --seed ${seed}`);
  const random = randomNumbers(seed);
  let failed = 0;
  for (let i = 0; i < times; ++i) {
    const afterMs = random.next().value * whole * beyondTheEnd;
    const result = await interrupt(program, afterMs);
    report(afterMs, result);
    if (result.problem) failed += 1;
  }
  console.log(`\n${times - failed} of ${times} interrupted installs ended in a working helper.`);
  return failed;
}

const options = readArguments(usage, {
  program: { type: 'string' },
  times: { type: 'string', default: '20' },
  seed: { type: 'string', default: `${Date.now() % 1_000_000}` },
}, problemOf);
try {
  const program = path.resolve(options.program);
  const failed = await interruptAll(program, Number(options.times), Number(options.seed));
  process.exitCode = failed === 0 ? 0 : 1;
} catch (error) {
  console.log(`FAILED without an interruption: ${error.message}`);
  process.exitCode = 1;
}
