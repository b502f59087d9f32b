// Goes through the stages on its own, prints each as it is reached, and a table at the end.
import { readFileSync } from 'node:fs';
import { setTimeout as pause } from 'node:timers/promises';
import { ConsoleProgram, event } from './consoleProgram.mjs';
import { isRunning } from './processes.mjs';
import { stages } from './stages.mjs';

const stageLimitMs = 20_000;
const lastLines = 20;

function kill(pid) {
  try {
    process.kill(pid, 'SIGKILL');
  } catch {
    // It went by itself just now.
  }
}

const seconds = (ms) => `${(ms / 1000).toFixed(2).padStart(6)} s`;

// What the stages share: the program under way, the limit of the current stage, and the pids that
// they learned on the way.
class Walk {
  deadline = 0;
  console = undefined;

  constructor(program, place) {
    this.program = program;
    this.place = place;
  }

  launch(...words) {
    this.console = new ConsoleProgram(this.program, words, this.place.environment);
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

  // Nothing may outlive a walk, not even helpers that misbehave under a program that failed.
  async end() {
    if (this.console && !this.console.exit) {
      this.console.kill('SIGKILL');
      await this.console.expectExit(Date.now() + 2000).catch(() => {});
    }
    const pids = [this.connectPid, ...this.startsInLog().map((start) => start.pid)];
    for (const pid of pids) if (pid && isRunning(pid, this.place.entry)) kill(pid);
  }
}

async function reach(stage, walk) {
  walk.deadline = Date.now() + stageLimitMs;
  const start = performance.now();
  try {
    const quotes = await stage.reach(walk);
    return { took: performance.now() - start, quotes };
  } catch (error) {
    return { took: performance.now() - start, quotes: [], problem: error.message };
  }
}

function printReached({ took, quotes }, stage) {
  console.log(`${seconds(took)}  ${stage.name}`);
  for (const quote of quotes) console.log(`            | ${quote}`);
}

function printMissed({ problem }, stage, program) {
  console.log(`NOT REACHED  ${stage.name}: ${problem}`);
  if (!program?.lines.length) return;
  console.log('the last output of the program:');
  for (const { from, text } of program.lines.slice(-lastLines)) console.log(`        ${from} | ${text}`);
}

function printTable(results) {
  console.log('\nstage                                                            took');
  stages.forEach((stage, index) => {
    const result = results[index];
    const word = result ? (result.problem ? ' NOT REACHED' : seconds(result.took)) : '   not tried';
    console.log(`${stage.name.padEnd(60)} ${word}`);
  });
}

// Returns the exit code: 0 only if every stage was reached.
export async function walk(program, place) {
  const under = new Walk(program, place);
  const stop = (signal, number) => under.end().finally(() => {
    place.remove();
    process.exit(128 + number);
  });
  for (const signal of ['SIGINT', 'SIGTERM', 'SIGHUP']) process.once(signal, stop);

  const results = [];
  try {
    for (const stage of stages) {
      const result = await reach(stage, under);
      results.push(result);
      if (result.problem) {
        printMissed(result, stage, under.console);
        break;
      }
      printReached(result, stage);
    }
  } finally {
    await under.end();
  }
  printTable(results);
  const missed = results.findIndex((result) => result.problem);
  if (missed >= 0) console.log(`\nThe journey ended early: "${stages[missed].name}" was not reached.`);
  else console.log('\nThe whole journey was made.');
  return missed >= 0 ? 1 : 0;
}
