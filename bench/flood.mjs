// Measures the program while a connect command floods its terminal: its slowest answer and its memory growth. The
// console is asked for its state, the window is activated by a second start.
//
//     node bench/flood.mjs PROGRAM [MIB]
//
// Linux only; reads /proc. Exits with 1 if a limit is exceeded.
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

// Asks in a loop until the command has printed everything, and prints the worst values.
async function measure(face, pid, { warmUp, begin, answer, isOver }) {
  await warmUp();
  await pause(settlingMs);
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

// The flood is over when the command asks the service about its link. The first link is refused: its check maps the
// libraries for transfers, 7 MiB that are not the flood's.
function handOut({ service }) {
  const { code, link } = service.links.handOut();
  const from = service.requests.length;
  return {
    link,
    refusedLink: link.replace(code, 'x'.repeat(code.length)),
    isOver: () => service.requests.slice(from).includes(`GET /c/${code}`),
  };
}

async function inTerminal(place) {
  const run = new ConsoleRun(program, place);
  run.allow(limitMs);
  try {
    const { pid } = run.launch();
    await run.expect('state', 'waitingForLink', 0);
    const { link, refusedLink, isOver } = handOut(place);
    const send = (text) => run.console.send(text);
    await measure('in a terminal', pid,
      { warmUp: () => send(refusedLink), begin: () => send(link), answer: () => run.status(), isOver });
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
    const { link, refusedLink, isOver } = handOut(place);
    const ask = (operation, ...words) => desktop.call(
      'com.tarnik.node', '/com/tarnik/node', `org.freedesktop.Application.${operation}`, ...words, '{}');
    const open = (text) => ask('Open', `['${text}']`);
    await measure('in a window', window.pid,
      { warmUp: () => open(refusedLink), begin: () => open(link), answer: () => ask('Activate'), isOver });
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
