// Compares the window with a bare window in the same run: the time until it is mapped and until it has contents,
// memory, wake-ups while idle, and its reactions during a storm of states.
//
//     node bench/window.mjs PROGRAM [SECONDS]
//
// Linux only. The bare window and the storm are built with the program. Exits with 1 if a limit is exceeded.
import { existsSync, mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync } from 'node:fs';
import path from 'node:path';
import { setTimeout as pause } from 'node:timers/promises';
import { layOutJoined } from './joinedHome.mjs';
import { Desktop } from '../devkit/window/desktop.mjs';

const rounds = 15;
const mostTimes = 1.3;  // relative to the bare window with one word
const lookAtSwitches = 2;  // seconds between two reads of the switches, the only reason to wake
const mostLateMs = 2;  // the 99th percentile
const leastTaken = 0.95;  // the share of the states that were accepted
const settlingMs = 2000;
const caretRestsMs = 12_000;  // a little more than the time after which the caret stops
const limitMs = 20_000;
const [program, seconds = '10'] = process.argv.slice(2);
const built = path.resolve(path.dirname(program), '..');
const bare = path.join(built, 'bench', 'bare_window');
const programs = {
  tarnik: [path.resolve(program)],
  bare: [bare],
  word: [bare, 'tarnik'],  // the same window with one word
  storm: [path.join(built, 'bench', 'state_storm')],
};
for (const [file] of Object.values(programs)) if (!existsSync(file)) throw new Error(`${file} was not built`);

const median = (numbers) => [...numbers].sort((a, b) => a - b)[Math.floor(numbers.length / 2)];
let broken = 0;

// The limit is relative to the bare window with a word, because every window has a font.
function report(what, unit, { tarnik, bare: floor, word }, { most = mostTimes } = {}) {
  const ratio = tarnik / word;
  const verdict = ratio <= most ? '' : `   MORE THAN ${most}`;
  if (verdict) broken += 1;
  console.log(`${what.padEnd(26)} ${tarnik.toFixed(1).padStart(6)} ${unit}, ${(tarnik / floor).toFixed(2)} times the bare window's `
    + `${floor.toFixed(1)}, ${ratio.toFixed(2)} times that with a word, ${word.toFixed(1)}${verdict}`);
}

// Screen readers are off in these runs.
const quiet = { QT_LINUX_ACCESSIBILITY_ALWAYS_ON: undefined };

async function start(desktop, environment, name) {
  const from = desktop.windows.mark;
  const before = Number(process.hrtime.bigint()) / 1e6;  // the clock of the program that watches the windows
  const started = desktop.start(programs[name][0], programs[name].slice(1), environment, quiet);
  const line = await desktop.windows.expect(new RegExp(`"pid":${started.pid},"title":"(tarnik|bare)"`), from,
    Date.now() + limitMs);
  const window = JSON.parse(line);
  const shows = name === 'bare' ? 'ground' : 'content';  // it has no contents
  return {
    started,
    mappedMs: window.at - before,
    shownMs: async () => {
      const look = await desktop.windows.expect(new RegExp(`"${shows}":${window.mapped}\\b`), from, Date.now() + limitMs);
      return JSON.parse(look).at - before;
    },
  };
}

async function end({ started }) {
  started.kill('SIGTERM');
  await started.expectExit(Date.now() + limitMs);
}

function memory(pid) {
  const text = readFileSync(`/proc/${pid}/smaps_rollup`, 'utf8');
  const mib = (name) => Number(text.match(new RegExp(`^${name}:\\s+(\\d+)`, 'm'))[1]) / 1024;
  return { rss: mib('Rss'), pss: mib('Pss') };
}

function wakeUps(pid) {
  const count = (text) => Number(text.match(/^voluntary_ctxt_switches:\s+(\d+)/m)[1]);
  const threads = readdirSync(`/proc/${pid}/task`);
  return threads.reduce((sum, thread) => sum + count(readFileSync(`/proc/${pid}/task/${thread}/status`, 'utf8')), 0);
}

const joinRecord = (home) => path.join(home, '.tarnik', 'node', 'trust', 'web-key.json');
const each = (names, value) => Object.fromEntries(names.map((name) => [name, value(name)]));

async function measureStart(desktop, environment) {
  const names = ['tarnik', 'bare', 'word'];
  const mapped = each(names, () => []);
  const shown = each(names, () => []);
  for (let round = 0; round <= rounds; round += 1) {
    names.push(names.shift());  // rotates the order
    for (const name of names) {
      const run = await start(desktop, environment, name);
      const shownMs = await run.shownMs();
      if (round > 0) {  // the first warms the caches
        mapped[name].push(run.mappedMs);
        shown[name].push(shownMs);
      }
      await end(run);
    }
  }
  report(`start (of ${rounds} the middle)`, 'ms', each(names, (name) => median(mapped[name])));
  report('until something is in it', 'ms', each(names, (name) => median(shown[name])));
}

// Measures the wake-ups of each program while idle.
async function wokeAtRest(pids) {
  const names = Object.keys(pids);
  const before = each(names, (name) => wakeUps(pids[name]));
  await pause(Number(seconds) * 1000);
  const woke = each(names, (name) => wakeUps(pids[name]) - before[name]);
  const most = Math.ceil(Number(seconds) / lookAtSwitches) + 1;  // one more at the end of the interval
  if (woke.tarnik > most) broken += 1;
  const verdict = woke.tarnik > most ? `   MORE THAN ${most}` : '';
  return names.map((name) => `${name} ${woke[name]}`).join(', ') + verdict;
}

async function measureRest(desktop, environment) {
  const names = ['tarnik', 'bare', 'word'];
  const runs = {};
  for (const name of names) runs[name] = await start(desktop, environment, name);
  const pids = each(names, (name) => runs[name].started.pid);
  await pause(settlingMs);
  const woke = await wokeAtRest(pids);
  const held = each(names, (name) => memory(pids[name]));
  report('resident memory', 'MiB', each(names, (name) => held[name].rss));
  report('the same, shared out', 'MiB', each(names, (name) => held[name].pss), { most: Infinity });
  console.log(`wake-ups in ${seconds} s of rest: ${woke}`);
  for (const name of names) await end(runs[name]);
}

// The link field has the focus, so its caret blinks at first.
async function measureRestOfLinkPage(desktop, environment) {
  rmSync(joinRecord(environment.HOME));
  const run = await start(desktop, environment, 'tarnik');
  await pause(caretRestsMs);
  console.log(`the same, asking for a link: ${await wokeAtRest({ tarnik: run.started.pid })}`);
  await end(run);
}

async function measureStorm(desktop, environment) {
  const storm = desktop.start(programs.storm[0], [], environment, quiet);
  const kinds = JSON.parse(await storm.expect(/^\[/, 0, Date.now() + limitMs));
  await storm.expectExit(Date.now() + limitMs);
  const [nothing, ...storms] = kinds;
  console.log(`no storm: the window answers after ${nothing.half} ms, 99 of 100 within ${nothing.most} ms`);
  for (const { name, seconds: lasted, taken, drawn, used, half, most, worst, own, longest } of storms) {
    const late = most - nothing.most;  // excludes the load of other programs
    const bad = late > mostLateMs || taken < lasted * 1000 * leastTaken;
    if (bad) broken += 1;
    console.log(`storm of ${name}: ${Math.round(taken / lasted)} states a second, ${Math.round(drawn / lasted)} drawn, `
      + `${(used / drawn).toFixed(2)} ms of processor time each; the window answers after ${half} ms, `
      + `99 of 100 within ${most} ms, all within ${worst} ms; `
      + `its own work delays 99 of 100 by at most ${own} ms, all by at most ${longest} ms${bad ? '   TOO LATE' : ''}`);
  }
}

const root = mkdtempSync('/tmp/tarnik-');
let desktop;
try {
  const home = path.join(root, 'home');
  mkdirSync(home);
  layOutJoined(home);
  const folders = { HOME: home, XDG_DATA_HOME: `${root}/data`, XDG_STATE_HOME: `${root}/state`, XDG_CONFIG_HOME: `${root}/config` };
  desktop = await Desktop.open(root, path.join(built, 'devkit', 'window'));
  await desktop.startTray();
  const environment = { ...process.env, ...folders };
  await measureStart(desktop, environment);
  await measureRest(desktop, environment);
  await measureRestOfLinkPage(desktop, environment);
  await measureStorm(desktop, environment);
} finally {
  await desktop?.close();
  rmSync(root, { recursive: true, force: true, maxRetries: 5 });
}
if (broken > 0) process.exitCode = 1;
