// Runs all stages, prints each result, and prints a table at the end.
import { printOutput, printPassed, seconds } from '../commandLine.mjs';
import { ConsoleRun } from './consoleRun.mjs';
import { stages } from './stages.mjs';

const stageLimitMs = 20_000;
const lastLines = 20;

async function reach(stage, walk) {
  walk.allow(stageLimitMs);
  const start = performance.now();
  try {
    const quotes = await stage.reach(walk);
    return { took: performance.now() - start, quotes };
  } catch (error) {
    return { took: performance.now() - start, quotes: [], problem: error.message };
  }
}

function printMissed({ problem }, stage, program) {
  console.log(`NOT REACHED  ${stage.name}: ${problem}`);
  if (!program?.lines.length) return;
  console.log('the last output of the program:');
  printOutput(program.lines.slice(-lastLines));
}

function printTable(results) {
  console.log('\nstage                                                            took');
  stages.forEach((stage, index) => {
    const result = results[index];
    const word = result ? (result.problem ? ' NOT REACHED' : seconds(result.took)) : '   not run';
    console.log(`${stage.name.padEnd(60)} ${word}`);
  });
}

// Returns the exit status: 0 only if every stage was reached.
export async function walk(program, place) {
  const under = new ConsoleRun(program, place);
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
      printPassed(stage.name, result.took, result.quotes);
    }
  } finally {
    await under.end();
  }
  printTable(results);
  const missed = results.findIndex((result) => result.problem);
  if (missed >= 0) console.log(`\nFailed: "${stages[missed].name}" was not reached.`);
  else console.log('\nAll stages were reached.');
  return missed >= 0 ? 1 : 0;
}
