// What the window costs, beside a bare window with a tray icon in the same run: the time from its start until it
// is on the screen, memory, wake-ups while nothing happens, and how soon it answers in a storm of states.
//
//     node bench/window.mjs PROGRAM [SECONDS]
//
// Linux only. The bare window and the storm are those built with the program. Exits 1 when a limit is broken.
import { existsSync, mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync } from 'node:fs';
import path from 'node:path';
import { setTimeout as pause } from 'node:timers/promises';
import { layOutJoined } from './joinedHome.mjs';
import { Desktop } from '../devkit/window/desktop.mjs';

const pairs = 15;
const mostTimes = 1.3;  // of what the bare window takes
const lookAtSwitches = 2;  // seconds from one to the next, the only reason to wake
const mostLateMs = 16;  // one frame, for 99 of 100
const leastTaken = 0.95;  // of the states, in time
const settlingMs = 2000;
const limitMs = 20_000;
const [program, seconds = '10'] = process.argv.slice(2);
const built = path.resolve(path.dirname(program), '..');
const programs = {
  tarnik: path.resolve(program),
  bare: path.join(built, 'bench', 'bare_window'),
  storm: path.join(built, 'bench', 'state_storm'),
};
for (const file of Object.values(programs)) if (!existsSync(file)) throw new Error(`${file} was not built`);

const median = (numbers) => [...numbers].sort((a, b) => a - b)[Math.floor(numbers.length / 2)];
let broken = 0;

function report(what, ours, floor, unit, { most = mostTimes } = {}) {
  const ratio = ours / floor;
  const verdict = ratio <= most ? '' : `   MORE THAN ${most}`;
  if (verdict) broken += 1;
  console.log(`${what.padEnd(28)} ${ours.toFixed(1).padStart(8)} ${unit.padEnd(4)} bare ${floor.toFixed(1).padStart(8)} `
    + `${unit.padEnd(4)} ${ratio.toFixed(2)} times${verdict}`);
}

// Nobody reads the screen aloud in these runs.
const quiet = { QT_LINUX_ACCESSIBILITY_ALWAYS_ON: undefined };

async function start(desktop, environment, name) {
  const from = desktop.windows.mark;
  const before = Number(process.hrtime.bigint()) / 1e6;  // the clock of whoever watches the windows
  const started = desktop.start(programs[name], [], environment, quiet);
  const line = await desktop.windows.expect(new RegExp(`"pid":${started.pid},"title":"(tarnik|bare)"`), from,
    Date.now() + limitMs);
  return { started, tookMs: JSON.parse(line).at - before };
}

async function end({ started }) {
  started.kill('SIGTERM');
  await started.expectExit(Date.now() + limitMs);
}

function memory(pid) {
  const text = readFileSync(`/proc/${pid}/smaps_rollup`, 'utf8');
  const mib = (name) => Number(text.match(new RegExp(`^${name}:\\s+(\\d+)`, 'm'))[1]) / 1024;
  return { rss: mib('Rss'), pss: mib('Pss'), own: mib('Private_Dirty') + mib('Private_Clean') };
}

function wakeUps(pid) {
  const count = (text) => Number(text.match(/^voluntary_ctxt_switches:\s+(\d+)/m)[1]);
  const threads = readdirSync(`/proc/${pid}/task`);
  return threads.reduce((sum, thread) => sum + count(readFileSync(`/proc/${pid}/task/${thread}/status`, 'utf8')), 0);
}

async function measureStart(desktop, environment) {
  const took = { tarnik: [], bare: [] };
  for (let pair = 0; pair <= pairs; pair += 1) {
    for (const name of pair % 2 ? ['tarnik', 'bare'] : ['bare', 'tarnik']) {
      const run = await start(desktop, environment, name);
      if (pair > 0) took[name].push(run.tookMs);  // the first one warms the caches
      await end(run);
    }
  }
  report(`start, ${pairs} pairs`, median(took.tarnik), median(took.bare), 'ms');
}

async function measureRest(desktop, environment) {
  const runs = { tarnik: await start(desktop, environment, 'tarnik'), bare: await start(desktop, environment, 'bare') };
  const [tarnik, bare] = [runs.tarnik.started.pid, runs.bare.started.pid];
  await pause(settlingMs);
  const before = [wakeUps(tarnik), wakeUps(bare)];
  await pause(Number(seconds) * 1000);
  const woke = [wakeUps(tarnik) - before[0], wakeUps(bare) - before[1]];
  const [ours, floor] = [memory(tarnik), memory(bare)];
  report('resident memory', ours.rss, floor.rss, 'MiB');
  report('its share of it', ours.pss, floor.pss, 'MiB');
  report('its own of it', ours.own, floor.own, 'MiB', { most: Infinity });
  const most = Math.ceil(Number(seconds) / lookAtSwitches) + 1;  // one on the edge
  if (woke[0] > most) broken += 1;
  console.log(`idle for ${seconds} s: ${woke[0]} wake-ups, bare ${woke[1]}${woke[0] > most ? `   MORE THAN ${most}` : ''}`);
  await end(runs.tarnik);
  await end(runs.bare);
}

async function measureStorm(desktop, environment) {
  const storm = desktop.start(programs.storm, [], environment, quiet);
  const kinds = JSON.parse(await storm.expect(/^\[/, 0, Date.now() + limitMs));
  await storm.expectExit(Date.now() + limitMs);
  for (const { name, taken, drawn, seconds: lasted, half, most, worst } of kinds) {
    const wanted = name === 'nothing' ? 0 : lasted * 1000 * leastTaken;
    const bad = most > mostLateMs || taken < wanted;
    if (bad) broken += 1;
    console.log(`storm of ${name.padEnd(22)} ${String(Math.round(taken / lasted)).padStart(5)} states/s, ${String(Math.round(drawn / lasted)).padStart(5)} drawn; the window answers after `
      + `${half} ms, 99 of 100 within ${most} ms, all within ${worst} ms${bad ? '   TOO MUCH' : ''}`);
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
  await measureStorm(desktop, environment);
} finally {
  await desktop?.close();
  rmSync(root, { recursive: true, force: true, maxRetries: 5 });
}
if (broken > 0) process.exitCode = 1;
