// Runs a program on pipes, and waits for lines of its output.
import { spawn } from 'node:child_process';
import { EventEmitter } from 'node:events';
import { createInterface } from 'node:readline';

const time = String.raw`^\d\d:\d\d:\d\d\.\d{3} `;

// Returns a pattern for the console's event lines: the event `word`, then text that matches `rest` completely.
export function event(word, rest) {
  return new RegExp(`${time}${word} ${rest}$`);
}

export class ConsoleProgram {
  lines = [];
  exit = undefined;  // { code, signal } when the program has ended and all its output was read

  #child;
  #changed = new EventEmitter();

  constructor(program, words, environment) {
    this.#child = spawn(program, words, { env: environment });
    this.#child.stdin.on('error', () => {});
    this.#child.on('error', (error) => this.#ended({ failure: error.message }));
    this.#child.on('close', (code, signal) => this.#ended({ code, signal }));
    this.#collect(this.#child.stdout, 'out');
    this.#collect(this.#child.stderr, 'err');
  }

  #collect(stream, from) {
    createInterface({ input: stream, crlfDelay: Infinity }).on('line', (text) => {
      this.lines.push({ from, text });
      this.#changed.emit('change');
    });
  }

  #ended(exit) {
    this.exit ??= exit;
    this.#changed.emit('change');
  }

  // The number of lines so far, for `from` of the other operations.
  get mark() {
    return this.lines.length;
  }

  get pid() {
    return this.#child.pid;
  }

  send(line) {
    this.#child.stdin.write(`${line}\n`);
  }

  kill(signal) {
    this.#child.kill(signal);
  }

  find(pattern, from = 0) {
    return this.lines.slice(from).find((line) => pattern.test(line.text))?.text;
  }

  // Waits for a matching line at or after `from`. Returns the first matching line.
  expect(pattern, from, deadline) {
    return this.#until(() => this.find(pattern, from), `no line like ${pattern}`, deadline);
  }

  async expectExit(deadline) {
    return this.#until(() => this.exit, 'the program did not end', deadline, { endIsFine: true });
  }

  #until(check, complaint, deadline, { endIsFine = false } = {}) {
    return new Promise((resolve, reject) => {
      const settle = (finish, value) => {
        clearTimeout(timer);
        this.#changed.off('change', attempt);
        finish(value);
      };
      const attempt = () => {
        const found = check();
        if (found !== undefined) settle(resolve, found);
        else if (this.exit && !endIsFine) fail(`${complaint}: ${this.describeExit()}`);
      };
      const fail = (text) => settle(reject, new Error(text));
      const timer = setTimeout(fail, deadline - Date.now(), `${complaint} in time`);
      this.#changed.on('change', attempt);
      attempt();
    });
  }

  describeExit() {
    const { failure, code, signal } = this.exit;
    if (failure) return `the program could not be run (${failure})`;
    return `the program ended (${signal ?? `exit ${code}`})`;
  }
}
