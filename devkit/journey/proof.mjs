// Checks that several scripts share. Each returns lines to print, and throws if it fails.
import { execFileSync } from 'node:child_process';
import { lstatSync, readFileSync, readdirSync, statSync } from 'node:fs';
import { inspect } from './processes.mjs';

const markerText = "This folder is tarnik-node's own. `tarnik-node uninstall` removes it whole.\n";
const versionLimitMs = 10_000;
// If a stop takes longer, the helper has ignored the end of its input. The program signals such a helper after 10 s.
export const politeStopMs = 5000;

export function demand(condition, complaint) {
  if (!condition) throw new Error(complaint);
}

// Returns a pattern that matches `text` literally.
export function exactly(text) {
  return text.replace(/[.*+?^${}()|[\]\\]/g, '\\$&');
}

export const modeOf = (name) => (statSync(name).mode & 0o777).toString(8);

function runtimeVersion(runtime) {
  return execFileSync(runtime, ['--version'], { encoding: 'utf8', env: {}, timeout: versionLimitMs }).trim();
}

export function onlyPlainRequests({ surplus }) {
  demand(surplus.length === 0, surplus.join('; '));
}

// Checks that runtime and helper are installed in a claimed node home.
export function installedHelper({ nodeHome, marker, staging, runtime, entry, description, release }) {
  demand(lstatSync(marker).isFile(), `${marker} is not a file`);
  // A program that was killed while it wrote the marker leaves a part of the text. Only the file's existence counts.
  demand(markerText.startsWith(readFileSync(marker, 'utf8')), `${marker} holds another text`);
  demand(modeOf(nodeHome) === '700', `the mode of ${nodeHome} is ${modeOf(nodeHome)}`);
  const found = runtimeVersion(runtime);
  demand(found === release.runtime.version, `the runtime is ${found}, not ${release.runtime.version}`);
  const { version } = JSON.parse(readFileSync(description, 'utf8'));
  demand(version === release.version, `the helper is ${version}, not ${release.version}`);
  demand(statSync(entry).isFile(), `${entry} is not a file`);
  return [`${marker} (in 700)`, `${runtime}: ${found}`, `${description}: ${version}`];
}

export function nothingStaged({ staging }) {
  const left = readdirSync(staging);
  demand(left.length === 0, `${staging} still holds ${left.join(', ')}`);
}

// Returns the process of the normal run. Both the program's status and the system must report it.
export async function runningHelper(run, runtime) {
  const { line, state, pid } = await run.status();
  demand(state === 'running' && pid, `the status is not that of a running helper: ${line}`);
  // During exec a process has no command line for a moment.
  const named = () => (inspect(pid)?.command ? inspect(pid) : undefined);
  const { command, executable } = await run.until(named, `there is no process ${pid}`);
  demand(command.includes(`${run.place.entry} node run --parent-stdin`), `process ${pid} runs: ${command}`);
  demand(!executable || executable === runtime, `process ${pid} is ${executable}`);
  return { pid, quotes: [line, `process ${pid}: ${command}`] };
}

export function logShowsStart(run, pid) {
  const look = () => run.startsInLog().find((start) => start.pid === pid)?.line;
  return run.until(look, `the node log has no start of process ${pid}`);
}
