// Prepares a home for a case.
import { mkdirSync, rmSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { ConsoleRun } from '../journey/consoleRun.mjs';

const installLimitMs = 30_000;

// Installs the helper with the program's console.
export async function installHelper({ program, place }) {
  const run = new ConsoleRun(program, place);
  run.allow(installLimitMs);
  try {
    run.launch();
    await run.expect('state', 'waitingForLink', 0);
    await run.quit();
  } finally {
    await run.end();
  }
}

export function join({ joinRecord }) {
  mkdirSync(path.dirname(joinRecord), { recursive: true, mode: 0o700 });
  writeFileSync(joinRecord, '{}', { mode: 0o600 });
}

export function forgetJoin({ joinRecord }) {
  rmSync(joinRecord, { force: true });
}
