// Reads the command line of the scripts in this folder, and prints their results.
import { parseArgs } from 'node:util';

const wrongUsage = 2;

export function refuse(message, usage) {
  console.error(`${message}; ${usage}`);
  return process.exit(wrongUsage);
}

// Returns the values of `options`, as parseArgs describes them. Exits with status 2 if an argument is unknown or
// `problemOf` returns a message.
export function readArguments(usage, options, problemOf) {
  let values;
  try {
    ({ values } = parseArgs({ options }));
  } catch (error) {
    return refuse(error.message, usage);
  }
  const problem = problemOf(values);
  return problem ? refuse(problem, usage) : values;
}

export const seconds = (ms) => `${(ms / 1000).toFixed(2).padStart(6)} s`;

export function printPassed(name, tookMs, quotes) {
  console.log(`${seconds(tookMs)}  ${name}`);
  for (const quote of quotes) console.log(`            | ${quote}`);
}

export function printOutput(lines) {
  for (const { from, text } of lines) console.log(`        ${from} | ${text}`);
}
