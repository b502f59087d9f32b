// Finds and ends processes that nobody else ends.
import { readFileSync, readdirSync } from 'node:fs';
import { setTimeout as pause } from 'node:timers/promises';
import { inspect } from '../journey/processes.mjs';

const politeMs = 2000;
const lookMs = 10;

function mentions(pid, text) {
  try {
    return ['cmdline', 'environ'].some((file) => readFileSync(`/proc/${pid}/${file}`, 'utf8').includes(text));
  } catch {
    return false;  // gone, or of somebody else
  }
}

// Every process that was started for this folder: it is in its words or its environment.
export function processesOf(folder) {
  return readdirSync('/proc')
    .filter((name) => /^\d+$/.test(name) && Number(name) !== process.pid && mentions(name, folder))
    .map((name) => ({ pid: Number(name), command: inspect(Number(name))?.command }))
    .filter(({ command }) => command);
}

function signal(pid, which) {
  try {
    process.kill(pid, which);
  } catch {
    // It went by itself just now.
  }
}

// Asks each to end, in this order, and sees to it that it does.
export async function endAll(processes) {
  for (const { pid } of processes) {
    signal(pid, 'SIGTERM');
    for (const end = Date.now() + politeMs; inspect(pid) && Date.now() < end;) await pause(lookMs);
    if (inspect(pid)) signal(pid, 'SIGKILL');
  }
}
