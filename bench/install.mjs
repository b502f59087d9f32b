// Measures the install of a 50 MB package over loopback: its time, compared with curl, openssl and tar; the program's
// time after the last byte; its peak memory. Linux only; reads /proc.
//
//     node bench/install.mjs PROGRAM [ROUNDS]
import { execFile } from 'node:child_process';
import { mkdirSync, readFileSync, rmSync } from 'node:fs';
import path from 'node:path';
import { promisify } from 'node:util';
import { ConsoleRun } from '../devkit/journey/consoleRun.mjs';
import { layOut } from '../devkit/journey/layout.mjs';

const limitMs = 60_000;
const runTool = promisify(execFile);  // asynchronous, because the service runs in this process
const [program, rounds = '7'] = process.argv.slice(2);

const seconds = (from) => (performance.now() - from) / 1000;
const median = (numbers) => [...numbers].sort((a, b) => a - b)[Math.floor(numbers.length / 2)];

function memory(pid, field) {
  return Number(new RegExp(`${field}:\\s+(\\d+)`).exec(readFileSync(`/proc/${pid}/status`, 'utf8'))[1]) / 1024;
}

// Returns the time until the program reports success. `unpacked` is the part of it after the last byte.
async function install(place) {
  rmSync(place.nodeHome, { recursive: true, force: true });
  const run = new ConsoleRun(program, place);
  run.allow(limitMs);
  const start = performance.now();
  const console = run.launch();
  await run.expect('install', "Downloading tarnik's helper…", 0);
  const lastByte = run.expect('install', String.raw`(\d+\.\d) MB of \1 MB`, 0).then(() => performance.now());
  await run.expect('install', `done .*`, 0);
  const took = seconds(start);
  const peak = memory(console.pid, 'VmHWM');
  await run.expect('state', '.*', 0);
  const unpacked = took - ((await lastByte) - start) / 1000;
  await run.quit();
  return { took, peak, unpacked };
}

// Returns the program's memory if there is nothing to install.
async function idleMemory(place) {
  const run = new ConsoleRun(program, place);
  run.allow(limitMs);
  const console = run.launch();
  await run.expect('state', '.*', 0);
  const idle = memory(console.pid, 'VmRSS');
  await run.quit();
  return idle;
}

// Does the same steps without the program: fetch, digest and unpack.
async function byHand(place) {
  const folder = path.join(place.root, 'by-hand');
  rmSync(folder, { recursive: true, force: true });
  const start = performance.now();
  let unpacking = 0;
  const quiet = { env: place.environment, timeout: limitMs };
  mkdirSync(folder);
  await runTool('curl', ['-sf', '-o', `${folder}/stable.json`, `${place.service.origin}/stable.json`], quiet);
  for (const file of [place.release.runtime.file, place.release.helper.path]) {
    const archive = path.join(folder, file);
    const into = `${archive}.d`;
    await runTool('curl', ['-sf', '-o', archive, `${place.service.origin}/${file}`], quiet);
    const after = performance.now();
    await runTool('openssl', ['dgst', '-sha256', archive], quiet);
    mkdirSync(into);
    await runTool('/usr/bin/tar', ['-xzf', archive, '-C', into, '--strip-components=1'], quiet);
    unpacking = seconds(after);
  }
  return { took: seconds(start), unpacking };
}

const place = await layOut({ runtime: 'tiny', helperSizeMiB: 50 });
try {
  const ours = [];
  const hand = [];
  for (let round = 0; round < Number(rounds); ++round) {
    ours.push(await install(place));
    hand.push(await byHand(place));
  }
  const ratio = median(ours.map((one, i) => one.took / hand[i].took));
  const share = median(ours.map((one, i) => one.unpacked - hand[i].unpacking));
  const show = (numbers, digits = 3) => median(numbers).toFixed(digits);
  console.log(`install of 50 MB: ${show(ours.map((one) => one.took))} s, by hand ${show(hand.map((one) => one.took))} s, ` +
    `ratio ${ratio.toFixed(2)}`);
  console.log(`after the last byte: ${show(ours.map((one) => one.unpacked))} s, of it our own ${share.toFixed(3)} s`);
  const idle = await idleMemory(place);
  console.log(`peak memory: ${show(ours.map((one) => one.peak), 1)} MiB, ` +
    `${show(ours.map((one) => one.peak - idle), 1)} MiB above idle`);
} finally {
  await place.service.close();
  place.remove();
}
