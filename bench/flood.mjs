// What a connect command costs the program that floods its terminal: how late it answers meanwhile, and how much
// memory it takes. In a terminal it is asked for its state, in a window by a second start.
//
//     node bench/flood.mjs PROGRAM [MIB]
//
// Linux only; reads /proc. Exits 1 when a limit is broken.
import { readFileSync } from 'node:fs';
import path from 'node:path';
import { setTimeout as pause } from 'node:timers/promises';
import { ConsoleRun } from '../devkit/journey/consoleRun.mjs';
import { layOut } from '../devkit/journey/layout.mjs';
import { installHelper } from '../devkit/window/prepared.mjs';
import { Desktop } from '../devkit/window/desktop.mjs';

const slowestAnswerMs = 500;
const mostGrowthMiB = 8;
const settlingMs = 2000;
const limitMs = 120_000;
const betweenLooksMs = 20;
const [program, mib = '64'] = process.argv.slice(2);

const residentMiB = (pid) => Number(/VmRSS:\s+(\d+)/.exec(readFileSync(`/proc/${pid}/status`, 'utf8'))[1]) / 1024;

// Asks over and over until the command has printed everything, and tells the worst of it.
async function measure(face, pid, { begin, answer, isOver }) {
  const rest = residentMiB(pid);
  await begin();
  const from = Date.now();
  let most = rest;
  let slowest = 0;
  let answers = 0;
  while (!isOver()) {
    if (Date.now() - from > limitMs) throw new Error(`${face}: the flood does not end`);
    const asked = performance.now();
    await answer();
    slowest = Math.max(slowest, performance.now() - asked);
    answers += 1;
    most = Math.max(most, residentMiB(pid));
    await pause(betweenLooksMs);
  }
  const tooMuch = slowest > slowestAnswerMs || most - rest > mostGrowthMiB;
  if (tooMuch) process.exitCode = 1;
  console.log(`${face}: ${mib} MiB printed in ${((Date.now() - from) / 1000).toFixed(1)} s, ${answers} answers within `
    + `${Math.round(slowest)} ms, ${(most - rest).toFixed(1)} MiB more than the ${rest.toFixed(1)} MiB at rest`
    + `${tooMuch ? '   TOO MUCH' : ''}`);
}

// The command asks the service about its link once it has printed everything.
function handOut({ service }) {
  const { code, link } = service.links.handOut();
  const from = service.requests.length;
  return { link, isOver: () => service.requests.slice(from).includes(`GET /c/${code}`) };
}

async function inTerminal(place) {
  const run = new ConsoleRun(program, place);
  run.allow(limitMs);
  try {
    const { pid } = run.launch();
    await run.expect('state', 'waitingForLink', 0);
    await pause(settlingMs);
    const { link, isOver } = handOut(place);
    await measure('in a terminal', pid, { begin: () => run.console.send(link), answer: () => run.status(), isOver });
    await run.quit();
  } finally {
    await run.end();
  }
}

async function inWindow(place) {
  const built = path.resolve(path.dirname(program), '..');
  const desktop = await Desktop.open(place.root, path.join(built, 'devkit', 'window'));
  try {
    const window = desktop.start(path.resolve(program), place.words, place.environment);
    await desktop.windows.expect(new RegExp(`"pid":${window.pid},"title":"tarnik"`), 0, Date.now() + limitMs);
    await pause(settlingMs);
    const { link, isOver } = handOut(place);
    const ask = (operation, ...words) => desktop.call(
      'com.tarnik.node', '/com/tarnik/node', `org.freedesktop.Application.${operation}`, ...words, '{}');
    await measure('in a window', window.pid,
      { begin: () => ask('Open', `['${link}']`), answer: () => ask('Activate'), isOver });
    window.kill('SIGTERM');
    await window.expectExit(Date.now() + limitMs);
  } finally {
    await desktop.close();
  }
}

const place = await layOut({ runtime: 'tiny' });
place.environment = { ...place.environment, TARNIK_STANDIN_ONLY: 'connect', TARNIK_STANDIN_FLOOD: mib };
try {
  await installHelper({ program, place });
  await inTerminal(place);
  await inWindow(place);
} finally {
  await place.service.close();
  place.remove();
}
