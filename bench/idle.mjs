// Measures the idle program with a running helper: the wake-ups of its threads and its memory. Linux only; reads /proc.
//
//     node bench/idle.mjs PROGRAM [SECONDS]
import { spawn } from 'node:child_process';
import { mkdtempSync, readFileSync, readdirSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { createInterface } from 'node:readline';
import { setTimeout as pause } from 'node:timers/promises';
import { layOutJoined } from './joinedHome.mjs';

const mostResidentKiB = 12 * 1024;
const lookAtSwitches = 2;  // seconds between two reads of the switches, the only reason to wake
const settling = 2000;  // milliseconds until a started program is idle
const [program, seconds = '10'] = process.argv.slice(2);

function switches(pid) {
  const count = (text) => Number(/^voluntary_ctxt_switches:\s+(\d+)/m.exec(text)[1]);
  const threads = readdirSync(`/proc/${pid}/task`);
  return threads.reduce((sum, thread) => sum + count(readFileSync(`/proc/${pid}/task/${thread}/status`, 'utf8')), 0);
}

function residentKiB(pid) {
  return Number(/VmRSS:\s+(\d+)/.exec(readFileSync(`/proc/${pid}/status`, 'utf8'))[1]);
}

async function firstLine(child, word) {
  for await (const line of createInterface({ input: child.stdout })) if (line.includes(word)) return;
  throw new Error(`the program ended without saying "${word}"`);
}

const root = mkdtempSync(path.join(tmpdir(), 'tarnik-idle-'));
layOutJoined(root);
const child = spawn(program, ['--console'], { env: { ...process.env, HOME: root }, stdio: ['pipe', 'pipe', 'inherit'] });
try {
  await firstLine(child, 'state running');
  await pause(settling);
  const before = switches(child.pid);
  await pause(Number(seconds) * 1000);
  const woke = switches(child.pid) - before;
  const resident = residentKiB(child.pid);
  const threads = readdirSync(`/proc/${child.pid}/task`).length;
  console.log(`idle for ${seconds} s: ${woke} wake-ups, ${(resident / 1024).toFixed(1)} MiB resident, ${threads} threads`);
  const mostWakeUps = Math.ceil(Number(seconds) / lookAtSwitches) + 1;  // one more at the end of the interval
  if (woke > mostWakeUps || resident > mostResidentKiB) process.exitCode = 1;
} finally {
  child.stdin.end();
  await new Promise((resolve) => child.once('exit', resolve));
  rmSync(root, { recursive: true, force: true, maxRetries: 5 });
}
