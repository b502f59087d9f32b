// Measures the control socket: how long `tarnik status` takes beside a program that only connects, what 1,000 of them
// cost the running program, and what the idle server costs. Linux only; reads /proc.
//
//     node bench/control.mjs PROGRAM
import { execFileSync, spawn, spawnSync } from 'node:child_process';
import { mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { createInterface } from 'node:readline';
import { setTimeout as pause } from 'node:timers/promises';
import { layOutJoined } from './joinedHome.mjs';

const most = { statusMs: 5, processorMs: 1000, growthKiB: 256, serverKiB: 256 };
const rounds = 101;
const settling = 3000;  // milliseconds until a started program is idle
const tick = 1000 / Number(execFileSync('getconf', ['CLK_TCK'], { encoding: 'utf8' }));
const program = process.argv[2];
const connectOnly = path.join(path.dirname(program), '../bench/connect_only');

function processorMs(pid) {
  const fields = readFileSync(`/proc/${pid}/stat`, 'utf8').split(') ')[1].split(' ');
  return (Number(fields[11]) + Number(fields[12])) * tick;
}

// Private memory, because two programs share the pages of their files.
function privateKiB(pid) {
  const rollup = readFileSync(`/proc/${pid}/smaps_rollup`, 'utf8');
  return [...rollup.matchAll(/^Private_\w+:\s+(\d+) kB/gm)].reduce((sum, [, size]) => sum + Number(size), 0);
}

function wakeUps(pid) {
  const count = (text) => Number(/^voluntary_ctxt_switches:\s+(\d+)/m.exec(text)[1]);
  return readdirSync(`/proc/${pid}/task`)
    .reduce((sum, thread) => sum + count(readFileSync(`/proc/${pid}/task/${thread}/status`, 'utf8')), 0);
}

function milliseconds(file, args, env) {
  const start = process.hrtime.bigint();
  const { status, stderr } = spawnSync(file, args, { env });
  if (status !== 0) throw new Error(`${file} ended with ${status}: ${stderr}`);
  return Number(process.hrtime.bigint() - start) / 1e6;
}

const median = (numbers) => [...numbers].sort((a, b) => a - b)[numbers.length >> 1];

// Starts the program, waits until it is idle, calls `measure`, and ends it.
async function whileRunning(prepare, errors, measure) {
  const root = mkdtempSync(path.join(tmpdir(), 'tarnik-control-'));
  const runtime = path.join(root, 'run');
  mkdirSync(runtime, { mode: 0o700 });
  layOutJoined(root);
  prepare(root, runtime);
  const env = { PATH: process.env.PATH, HOME: root, XDG_RUNTIME_DIR: runtime };
  const child = spawn(program, ['--console'], { env, stdio: ['pipe', 'pipe', errors] });
  try {
    for await (const line of createInterface({ input: child.stdout })) if (line.includes('state running')) break;
    await pause(settling);
    return await measure(child.pid, path.join(runtime, 'tarnik/control.sock'), env);
  } finally {
    child.stdin.end();
    await new Promise((resolve) => child.once('exit', resolve));
    rmSync(root, { recursive: true, force: true, maxRetries: 5 });
  }
}

async function idle(pid) {
  const before = wakeUps(pid);
  await pause(10_000);
  return { kiB: privateKiB(pid), wakeUps: wakeUps(pid) - before };
}

// A file in the place of the socket keeps the server from starting.
function withoutServer(root, runtime) {
  for (const folder of [path.join(runtime, 'tarnik'), path.join(root, '.local/share/tarnik')]) {
    mkdirSync(folder, { recursive: true });
    writeFileSync(path.join(folder, 'control.sock'), '');
  }
}

let tooMuch = false;
function report(text, value, limit) {
  tooMuch ||= value > limit;
  console.log(`${text}${value > limit ? `, more than ${limit}` : ''}`);
}

const bare = await whileRunning(withoutServer, 'ignore', idle);
await whileRunning(() => {}, 'inherit', async (pid, socket, env) => {
  const served = await idle(pid);
  report(`idle: ${served.kiB - bare.kiB} KiB more with the server`, served.kiB - bare.kiB, most.serverKiB);
  report(`idle: ${served.wakeUps} wake-ups in 10 s with the server, ${bare.wakeUps} without`, served.wakeUps, bare.wakeUps + 1);

  const times = { status: [], connect: [] };
  for (let i = 0; i < rounds; ++i) {
    times.status.push(milliseconds(program, ['status'], env));
    times.connect.push(milliseconds(connectOnly, [socket], env));
  }
  const [status, connect] = [median(times.status), median(times.connect)];
  report(`status: ${status.toFixed(2)} ms, a program that only connects ${connect.toFixed(2)} ms`, status - connect, most.statusMs);

  const before = { processor: processorMs(pid), memory: privateKiB(pid) };
  for (let i = 0; i < 1000; ++i) milliseconds(program, ['status'], env);
  const cost = processorMs(pid) - before.processor;
  const growth = privateKiB(pid) - before.memory;
  report(`1000 status: ${cost} ms of processor time in the running program`, cost, most.processorMs);
  report(`1000 status: ${growth} KiB of growth`, growth, most.growthKiB);
});
if (tooMuch) process.exitCode = 1;
