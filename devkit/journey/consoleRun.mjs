// Runs the console program in its folders: starts it, sends commands, waits, and ends all processes that it started.
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
    // It has ended.
  }
}

function readOr(file, fallback) {
  try {
    return readFileSync(file, 'utf8');
  } catch {
    return fallback;
  }
}

export class ConsoleRun {
  deadline = 0;  // of the current wait, in milliseconds since the epoch
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

  serve() {
    return new ConsoleProgram(this.program, ['serve', ...this.place.words], this.place.environment);
  }

  command(name) {
    const [option, bundle] = this.place.words;
    return new ConsoleProgram(this.program, [name, option, bundle], this.place.environment);
  }

  expect(word, rest, from) {
    return this.console.expect(event(word, rest), from, this.deadline);
  }

  // Polls for a change that no output line reports, such as a new file. Returns the first true value of `check`.
  async until(check, complaint, limitMs = Infinity) {
    const end = Math.min(this.deadline, Date.now() + limitMs);
    for (;;) {
      const found = check();
      if (found) return found;
      if (Date.now() > end) throw new Error(complaint);
      await pause(10);
    }
  }

  // Sends a command. Returns the line that it prints, and the line's fields as texts.
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

  // Returns the node log, or an empty text if it doesn't exist.
  #log() {
    return readOr(this.place.nodeLog, '');
  }

  logLength() {
    return this.#log().length;
  }

  // Waits for a match in the node log, after its first `from` characters.
  logged(pattern, from = 0) {
    return this.until(() => this.#log().slice(from).match(pattern)?.[0], `the node log has no ${pattern}`);
  }

  // Returns all starts of normal runs in the node log.
  startsInLog() {
    const found = this.#log().matchAll(/.*helper \S+ started, pid (\d+)$/gm);
    return [...found].map(([line, pid]) => ({ line, pid: Number(pid) }));
  }

  async quit() {
    this.console.send('quit');
    return this.exits();
  }

  // Waits until the program ends, and requires this exit status. Returns a description.
  async exits(program = this.console, status = 0) {
    const { code } = await program.expectExit(this.deadline);
    demand(code === status, program.describeExit());
    return program.describeExit();
  }

  async killProgram() {
    if (!this.console || this.console.exit) return;
    this.console.kill('SIGKILL');
    await this.console.expectExit(Date.now() + killLimitMs).catch(() => {});
  }

  #driverPids() {
    return driverFolders(this.place).map((folder) => Number(readOr(path.join(folder, 'cua.pid'), '')) || 0);
  }

  // Kills the program and every helper and driver that it may have left.
  async end() {
    await this.killProgram();
    const pids = [...this.connectPids, ...this.startsInLog().map((start) => start.pid)];
    for (const pid of pids) if (isRunning(pid, this.place.entry)) kill(pid);
    for (const pid of this.#driverPids()) if (isRunning(pid, this.place.driver)) kill(pid);
  }
}
