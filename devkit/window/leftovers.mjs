// Finds and ends processes that outlived their parent.
import { readFileSync, readdirSync } from 'node:fs';
import { setTimeout as pause } from 'node:timers/promises';
import { inspect } from '../journey/processes.mjs';

const politeMs = 2000;
const pollMs = 10;

function mentions(pid, text) {
  try {
    return ['cmdline', 'environ'].some((file) => readFileSync(`/proc/${pid}/${file}`, 'utf8').includes(text));
  } catch {
    return false;  // it has ended or is another user's
  }
}

// Returns all processes with this folder in their arguments or environment.
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
    // It has ended.
  }
}

// Ends the processes with SIGTERM, and with SIGKILL if they still run.
export async function endAll(processes) {
  for (const { pid } of processes) {
    signal(pid, 'SIGTERM');
    for (const end = Date.now() + politeMs; inspect(pid) && Date.now() < end;) await pause(pollMs);
    if (inspect(pid)) signal(pid, 'SIGKILL');
  }
}
