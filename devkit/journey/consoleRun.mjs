// The console program in the place laid out for it: what stages and checks ask of it, and the pids that
// they learned on the way.
import { readFileSync } from 'node:fs';
import { setTimeout as pause } from 'node:timers/promises';
import { ConsoleProgram, event } from './consoleProgram.mjs';
import { isRunning } from './processes.mjs';
import { demand } from './proof.mjs';

const killLimitMs = 2000;

function kill(pid) {
  try {
    process.kill(pid, 'SIGKILL');
  } catch {
    // It went by itself just now.
  }
}

export class ConsoleRun {
  deadline = 0;  // of whatever is being waited for
  console = undefined;
  connectPids = [];

  constructor(program, place) {
    this.program = program;
    this.place = place;
  }

  allow(limitMs) {
    this.deadline = Date.now() + limitMs;
  }

  launch(...words) {
    this.console = new ConsoleProgram(this.program, [...this.place.words, ...words], this.place.environment);
    return this.console;
  }

  expect(word, rest, from) {
    return this.console.expect(event(word, rest), from, this.deadline);
  }

  // For what announces itself by no line: files and processes.
  async until(look, complaint, limitMs = Infinity) {
    const end = Math.min(this.deadline, Date.now() + limitMs);
    for (;;) {
      const found = look();
      if (found) return found;
      if (Date.now() > end) throw new Error(complaint);
      await pause(10);
    }
  }

  async status() {
    const from = this.console.mark;
    this.console.send('status');
    const line = await this.expect('status', '.*', from);
    const [, state, pid, pairing] = line.match(/ state=(\w+).* pid=(\d+|none) pairing=(\w+)/) ?? [];
    return { line, state, pid: Number(pid) || undefined, pairing };
  }

  // Every start of a normal run that has reached the node log.
  startsInLog() {
    try {
      const text = readFileSync(this.place.nodeLog, 'utf8');
      const found = text.matchAll(/.*helper \S+ started, pid (\d+)$/gm);
      return [...found].map(([line, pid]) => ({ line, pid: Number(pid) }));
    } catch {
      return [];  // no log yet
    }
  }

  async quit() {
    this.console.send('quit');
    const { code } = await this.console.expectExit(this.deadline);
    demand(code === 0, this.console.describeExit());
  }

  async killProgram() {
    if (!this.console || this.console.exit) return;
    this.console.kill('SIGKILL');
    await this.console.expectExit(Date.now() + killLimitMs).catch(() => {});
  }

  // Nothing may outlive a run, not even helpers that misbehave under a program that failed.
  async end() {
    await this.killProgram();
    const pids = [...this.connectPids, ...this.startsInLog().map((start) => start.pid)];
    for (const pid of pids) if (isRunning(pid, this.place.entry)) kill(pid);
  }
}
