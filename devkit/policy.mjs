// Runs the program under the settings of an organisation, one key after the other, and compares what can be observed with
// a run without settings. Each key must change exactly what it is for.
//
//     node devkit/policy.mjs --program PATH [--only NAME]
//
// NAME is a part of a case's name.
import { execFile } from 'node:child_process';
import { chmodSync, existsSync, mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { promisify } from 'node:util';
import { printOutput, readArguments } from './commandLine.mjs';
import { event } from './journey/consoleProgram.mjs';
import { ConsoleRun } from './journey/consoleRun.mjs';
import { layOut } from './journey/layout.mjs';
import { demand } from './journey/proof.mjs';

const usage = 'usage: node devkit/policy.mjs --program PATH [--only NAME]';
const caseLimitMs = 60_000;
const atOnce = 2;
const oldLog = 'an old line\n'.repeat(6000);  // above the least size of a log

const release = (other) => ({ releaseBase: other.service.origin, releaseKey: other.release.publicKey });
const damage = 'unknown key "allowparing"';

// `forced` are the forced settings, or a function of the second release's place that returns them. `changes` names the
// observations that differ from a run without settings. `warns` is a part of a sentence in the log.
const cases = [
  { name: 'releaseBase and releaseKey', forced: release, changes: ['release'] },
  { name: 'minimumHelper below the release', forced: { minimumHelper: '2025.1.1' }, changes: [] },
  { name: 'minimumHelper above the release', forced: { minimumHelper: '2999.1.1' }, changes: ['install'] },
  { name: 'updates', forced: { updates: 'never' }, changes: [] },  // the system installs them
  { name: 'startAtLogin', forced: { startAtLogin: true }, changes: [] },  // a program in a terminal isn't on the list
  { name: 'hideSwitches', forced: { hideSwitches: true }, changes: ['switches'] },
  { name: 'proxy', forced: ({ service }) => ({ proxy: service.origin }), changes: ['install', 'release'] },
  { name: 'helperLogBytes', forced: { helperLogBytes: 65536 }, changes: ['helperLog'] },
  { name: 'programLogBytes', forced: { programLogBytes: 65536 }, changes: ['programLog'] },
  { name: 'allowPairing', forced: { allowPairing: false }, changes: ['field', 'link', 'command'] },
  { name: 'allowReplacing', forced: { allowReplacing: false }, changes: ['replacing'] },
  { name: 'a damaged policy', forced: { allowPairing: false, allowparing: false }, changes: [], warns: damage },
  { name: 'an open file', forced: { allowPairing: false }, mode: 0o666, changes: [], warns: 'is ignored' },
  {
    name: 'a build that fixes its releases', forced: release, settings: { TKPolicyMaySetReleases: undefined },
    changes: [], warns: "this build doesn't accept",
  },
];

function writePolicy(place, forced, mode = 0o644) {
  const folder = path.join(place.root, 'policy');
  mkdirSync(folder, { mode: 0o755 });
  const file = path.join(folder, 'policy.json');
  writeFileSync(file, JSON.stringify({ forced }));
  chmodSync(file, mode);
  place.environment.TARNIK_POLICY_FOLDER = folder;
}

function writeOldLogs({ nodeLog }) {
  const folder = path.dirname(nodeLog);
  mkdirSync(folder, { recursive: true, mode: 0o700 });
  for (const name of ['node.log', 'tarnik.log'])
    writeFileSync(path.join(folder, name), oldLog, { mode: 0o600 });
}

async function command(run, ...words) {
  const { environment } = run.place;
  const { stdout, stderr } = await promisify(execFile)(run.program, words, { env: environment })
    .catch((error) => error);
  return stdout + stderr;
}

// Gives a link to the console. Returns the first line about it, without its time.
async function answerTo(run) {
  const from = run.console.mark;
  run.console.send(run.place.service.links.handOut().link);
  const line = await run.console.expect(event('(link|error|offer)', '.*'), from, run.deadline);
  return line.replace(/^\S+ /, '');
}

async function pair(run) {
  const from = run.console.mark;
  const link = await answerTo(run);
  if (link.startsWith('error')) return link;
  await run.console.expect(/Press Enter to connect it/, from, run.deadline);
  return link;
}

async function windowText(run) {
  const from = run.console.mark;
  run.console.send('window');
  await run.console.expect(event('window', String.raw`.*\[Continue\].*`), from, run.deadline);
  await run.status();  // its line follows those of the window
  return run.console.lines.slice(from).map((line) => line.text).filter((text) => / window /.test(text)).join('\n');
}

// Uses the program as a person would. Returns what can be seen, and the settings that the status reports.
async function observe(run, place, other) {
  const program = run.launch();
  const decided = await program.expect(event('(error|state)', '.*'), 0, run.deadline);
  const seen = { install: decided.replace(/^\S+ /, '') };
  seen.release = [place, other].map(({ service }) => service.requests.includes('GET /stable.json')).join();
  if (seen.install.startsWith('error')) return { seen };

  const { policy } = JSON.parse(await command(run, 'status', '--json'));
  const text = await windowText(run);
  seen.switches = text.includes('Accessibility');
  seen.field = text.includes('(not now)');
  seen.command = (await command(run, 'connect', '--yes', 'https://nowhere.invalid/c')).trim();
  seen.link = await pair(run);
  mkdirSync(path.dirname(place.joinRecord), { recursive: true, mode: 0o700 });
  writeFileSync(place.joinRecord, '{}');
  if (!seen.link.startsWith('error')) {
    const from = run.console.mark;
    run.console.send('cancel');
    await run.expect('state', 'running.*', from);
    await run.logged(/helper \S+ started/);
    seen.replacing = (await command(run, 'connect', '--yes', place.service.links.handOut().link)).trim();
  }
  await run.quit();
  const logs = path.dirname(place.nodeLog);
  seen.helperLog = existsSync(path.join(logs, 'node.log.1'));
  seen.programLog = existsSync(path.join(logs, 'tarnik.log.1'));
  return { seen, policy };
}

async function tryOne(program, one) {
  const place = await layOut({ runtime: 'tiny', settings: { TKPolicyMaySetReleases: 'yes', ...one.settings } });
  const other = await layOut({ runtime: 'tiny' });
  const run = new ConsoleRun(program, place);
  run.allow(caseLimitMs);
  try {
    writeOldLogs(place);
    const forced = typeof one.forced === 'function' ? one.forced(other) : one.forced;
    if (forced) writePolicy(place, forced, one.mode);
    const { seen, policy } = await observe(run, place, other);
    if (policy && !one.warns) {
      const shown = Object.fromEntries(policy.settings.map(({ key, value }) => [key, value]));
      for (const [key, value] of Object.entries(forced)) demand(shown[key] === `${value}`, `the status lacks ${key}`);
    }
    if (one.warns) {
      const log = readFileSync(path.join(path.dirname(place.nodeLog), 'tarnik.log'), 'utf8');
      demand(policy.sentence.includes(one.warns), `the status says: ${policy.sentence}`);
      demand(log.replaceAll('\\"', '"').includes(one.warns), 'the log has no warning');
    }
    return { seen };
  } catch (error) {
    return { problem: error.message, lines: run.console?.lines ?? [] };
  } finally {
    await run.end();
    for (const each of [place, other]) {
      await each.service.close();
      each.remove();
    }
  }
}

// Returns the names of the observations that differ. A refused install or link prevents the later ones.
function differences(usual, seen) {
  return Object.keys(seen).filter((name) => seen[name] !== usual[name]);
}

function report(one, usual, { seen, problem, lines }) {
  const changed = seen && differences(usual, seen);
  const fits = changed && `${changed}` === `${Object.keys(usual).filter((name) => one.changes.includes(name))}`;
  if (fits) {
    console.log(`ok      ${one.name}: changes ${changed.join(', ') || 'nothing'}`);
    for (const name of changed) console.log(`            | ${name}: ${seen[name]}`);
    return true;
  }
  console.log(`FAILED  ${one.name}: ${problem ?? `changes ${changed.join(', ') || 'nothing'}, not ${one.changes}`}`);
  for (const name of changed ?? []) console.log(`            | ${name}: ${seen[name]}, usually ${usual[name]}`);
  printOutput(lines ?? []);
  return false;
}

const options = readArguments(usage, { program: { type: 'string' }, only: { type: 'string', default: '' } },
  ({ program }) => (program ? undefined : '--program is missing'));
const program = path.resolve(options.program);
const usual = await tryOne(program, { name: 'no settings' });
demand(usual.seen, `the run without settings failed: ${usual.problem}\n${usual.lines?.map((line) => line.text).join('\n')}`);
const waiting = cases.filter((one) => one.name.includes(options.only));
let failed = waiting.length === 0;
await Promise.all(Array.from({ length: atOnce }, async () => {
  for (let one = waiting.shift(); one; one = waiting.shift())
    if (!report(one, usual.seen, await tryOne(program, one))) failed = true;
}));
process.exitCode = failed ? 1 : 0;
