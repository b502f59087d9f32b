// The console program in the place laid out for it: what stages and checks ask of it, and the pids that
// they learned on the way.
import { readFileSync } from 'node:fs';
import path from 'node:path';
import { setTimeout as pause } from 'node:timers/promises';
import { ConsoleProgram, event } from './consoleProgram.mjs';
import { driverFolders } from './driverProof.mjs';
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

function readOr(file, otherwise) {
  try {
    return readFileSync(file, 'utf8');
  } catch {
    return otherwise;
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
    this.console = new ConsoleProgram(this.program, ['--console', ...this.place.words, ...words], this.place.environment);
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

  // The line that this command prints, and its fields as texts.
  async #ask(command) {
    const from = this.console.mark;
    this.console.send(command);
    const line = await this.expect(command, '.*', from);
    const found = line.matchAll(/ (\w+)=(.*?)(?= \w+=|$)/g);
    return { line, fields: Object.fromEntries([...found].map(([, name, value]) => [name, value])) };
  }

  async status() {
    const { line, fields } = await this.#ask('status');
    const [state] = fields.state.split(' ');
    return { line, fields, state, pid: Number(fields.pid) || undefined, pairing: fields.pairing };
  }

  sample() {
    return this.#ask('sample');
  }

  // The node log, empty before there is one.
  #log() {
    return readOr(this.place.nodeLog, '');
  }

  logLength() {
    return this.#log().length;
  }

  // The first match in the node log, from this length of it on.
  logged(pattern, from = 0) {
    return this.until(() => this.#log().slice(from).match(pattern)?.[0], `the node log has no ${pattern}`);
  }

  // Every start of a normal run that has reached the node log.
  startsInLog() {
    const found = this.#log().matchAll(/.*helper \S+ started, pid (\d+)$/gm);
    return [...found].map(([line, pid]) => ({ line, pid: Number(pid) }));
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

  #driverPids() {
    return driverFolders(this.place).map((folder) => Number(readOr(path.join(folder, 'cua.pid'), '')) || 0);
  }

  // Nothing may outlive a run, not even a helper or driver that misbehaves under a program that failed.
  async end() {
    await this.killProgram();
    const pids = [...this.connectPids, ...this.startsInLog().map((start) => start.pid)];
    for (const pid of pids) if (isRunning(pid, this.place.entry)) kill(pid);
    for (const pid of this.#driverPids()) if (isRunning(pid, this.place.driver)) kill(pid);
  }
}
