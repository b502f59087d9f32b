// The stages with the desktop driver. The machine has joined.
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { existsSync, mkdirSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { driverComesUp, driverFolders, driverIsGone, privateEndpoint } from './driverProof.mjs';
import { hasNumber, inspect, isRunning } from './processes.mjs';
import { demand, runningHelper } from './proof.mjs';

const orphanLimitMs = 2000;
const restartDelayMs = 1000;
const clockSlackMs = 50;
const mostCpuSeconds = 5;

async function switchTo(walk, words, { accessibility, screen }) {
  const from = walk.console.mark;
  walk.console.send(`switch ${words}`);
  return walk.expect('switches', `accessibility=${accessibility} screenRecording=${screen}`, from);
}

async function startsHolder(walk) {
  process.kill(walk.helper.pid, 'SIGUSR1');
  const started = /^.*keep-awake (\d+) started$/m;
  const line = await walk.logged(started, walk.holderMark);
  return { pid: Number(line.match(started)[1]), line };
}

async function sampleShows(walk, wanted) {
  const { line, fields } = await walk.sample();
  for (const [name, value] of Object.entries(wanted)) {
    demand(fields[name] === `${value}`, `${name} is not ${value}: ${line}`);
  }
  return { line, fields };
}

async function isGone(walk, pid, program) {
  await walk.until(() => !isRunning(pid, program), `process ${pid} still exists`, orphanLimitMs);
}

export const driverStages = [
  {
    name: 'one switch alone starts no driver',
    reach: async (walk) => {
      walk.launch('--driver-output');
      await walk.expect('state', 'running', 0);
      walk.helper = await runningHelper(walk, walk.place.runtime);
      const switched = await switchTo(walk, 'accessibility on', { accessibility: 'on', screen: 'off' });
      const { line, fields } = await walk.status();
      demand(fields.switches === 'accessibility:on,screen:off', `unexpected switches: ${line}`);
      demand(fields.driver === 'none' && fields.endpoint === 'none', `there is a driver: ${line}`);
      return [switched, line];
    },
  },
  {
    name: 'with both on the helper talks to the driver',
    reach: async (walk) => {
      const from = walk.console.mark;
      const switched = await switchTo(walk, 'screen on', { accessibility: 'on', screen: 'on' });
      walk.driver = await driverComesUp(walk, from);
      const before = walk.helper.pid;
      walk.helper = await runningHelper(walk, walk.place.runtime);
      demand(walk.helper.pid !== before, `helper ${before} was not started again`);
      const output = await walk.expect('driver', 'listening on /.*', from);
      return [switched, ...walk.driver.quotes, ...walk.helper.quotes, output];
    },
  },
  {
    name: 'only this user can reach the driver',
    reach: async (walk) => privateEndpoint(walk.driver),
  },
  {
    name: 'a sample shows both, and the process that keeps the machine awake',
    reach: async (walk) => {
      const quiet = { nodePID: walk.helper.pid, driverPID: walk.driver.pid, nodeHoldsAwake: 'no', holders: 0 };
      const first = await sampleShows(walk, { ...quiet, settingUp: 'no', windowInUse: 'no' });
      const cpuSeconds = Number(first.fields.driverCPUSeconds);
      demand(cpuSeconds >= 0 && cpuSeconds < mostCpuSeconds, `no processor time: ${first.line}`);

      walk.holderMark = walk.logLength();
      const holder = await startsHolder(walk);
      const held = await sampleShows(walk, { ...quiet, nodeHoldsAwake: 'yes', holders: 1 });
      process.kill(walk.helper.pid, 'SIGUSR2');
      const ended = await walk.logged(new RegExp(`^.*keep-awake ${holder.pid} ended .*$`, 'm'));
      const last = await sampleShows(walk, quiet);
      return [first.line, holder.line, held.line, ended, last.line];
    },
  },
  {
    name: 'a killed driver is restarted after a second',
    reach: async (walk) => {
      const from = walk.console.mark;
      const { pid, folder } = walk.driver;
      process.kill(pid, 'SIGKILL');
      const stopped = await walk.console.expect(
        / the desktop driver stopped unexpectedly \(signal 9\)$/, from, walk.deadline);
      const stoppedAt = performance.now();
      const withdrawn = await walk.expect('endpoint', 'none', from);
      await walk.console.expect(/ desktop driver ready$/, from, walk.deadline);
      const tookMs = Math.round(performance.now() - stoppedAt);
      demand(tookMs >= restartDelayMs - clockSlackMs, `it was restarted after only ${tookMs} ms`);

      walk.driver = await driverComesUp(walk, from);
      demand(walk.driver.pid !== pid, `still process ${pid}`);
      demand(!existsSync(folder), `${folder} still exists`);
      walk.helper = await runningHelper(walk, walk.place.runtime);
      const { line, fields } = await walk.status();
      demand(fields.driverRestarts === '1', `not one restart: ${line}`);
      return [stopped, withdrawn, ...walk.driver.quotes, `it was restarted after ${tookMs} ms`, line];
    },
  },
  {
    name: 'turning a switch off stops the driver',
    reach: async (walk) => {
      const from = walk.console.mark;
      const switched = await switchTo(walk, 'accessibility off', { accessibility: 'off', screen: 'on' });
      const withdrawn = await walk.expect('endpoint', 'none', from);
      const gone = await driverIsGone(walk, walk.driver);
      const left = driverFolders(walk.place);
      demand(left.length === 0, `there is still ${left.join(', ')}`);
      return [switched, withdrawn, gone];
    },
  },
  {
    name: 'turning it on again starts another driver',
    reach: async (walk) => {
      const from = walk.console.mark;
      const { pid } = walk.driver;
      const switched = await switchTo(walk, 'accessibility on', { accessibility: 'on', screen: 'on' });
      walk.driver = await driverComesUp(walk, from);
      demand(walk.driver.pid !== pid, `still process ${pid}`);
      walk.helper = await runningHelper(walk, walk.place.runtime);
      return [switched, ...walk.driver.quotes];
    },
  },
  {
    name: 'neither helper nor driver outlives a killed program',
    reach: async (walk) => {
      walk.holderMark = walk.logLength();
      const holder = await startsHolder(walk);
      const killed = performance.now();
      walk.console.kill('SIGKILL');
      await isGone(walk, walk.driver.pid, walk.place.driver);
      await isGone(walk, walk.helper.pid, walk.place.entry);
      await isGone(walk, holder.pid, walk.place.keepAwake);
      const tookMs = Math.round(performance.now() - killed);
      demand(tookMs <= orphanLimitMs, `they were there for ${tookMs} ms`);
      demand(existsSync(walk.driver.folder), `${walk.driver.folder} is gone`);
      return [
        `driver ${walk.driver.pid}, helper ${walk.helper.pid} and keep-awake ${holder.pid} were gone after ${tookMs} ms`,
        `left behind: ${walk.driver.folder}`,
      ];
    },
  },
  {
    name: 'the next start removes leftovers',
    reach: async (walk) => {
      const { pid, folder } = walk.driver;
      await walk.until(() => !hasNumber(pid), `process ${pid} is not reaped`);
      walk.launch('--switches', 'on', '--driver-output');
      walk.driver = await driverComesUp(walk, 0);
      const left = driverFolders(walk.place);
      const onlyItsOwn = left.length === 1 && left[0] === walk.driver.folder && left[0] !== folder;
      demand(onlyItsOwn, `the driver folders are ${left.join(', ')}`);
      const quotes = [...walk.driver.quotes, `${folder} is gone`, ...privateEndpoint(walk.driver)];
      const ended = await walk.quit();
      demand(!isRunning(walk.driver.pid, walk.place.driver), `driver ${walk.driver.pid} still exists`);
      demand(driverFolders(walk.place).length === 0, `${walk.driver.folder} outlived the program`);
      return [...quotes, ended];
    },
  },
  {
    name: 'a process that is not ours is not ended',
    reach: async (walk) => {
      const sleeper = spawn('sleep', ['60'], { stdio: 'ignore' });
      const ended = once(sleeper, 'exit');
      try {
        const folder = path.join(walk.place.driverRoot, '0123456789abcdef');
        mkdirSync(folder, { mode: 0o700 });
        writeFileSync(path.join(folder, 'cua.pid'), `${sleeper.pid}\n`, { mode: 0o600 });
        walk.launch('--switches', 'on');
        const { quotes } = await driverComesUp(walk, 0);
        const found = inspect(sleeper.pid);
        demand(found, `process ${sleeper.pid} is gone`);
        demand(existsSync(folder), `${folder} is gone`);

        sleeper.kill();
        await ended;
        const from = walk.console.mark;
        await switchTo(walk, 'screen off', { accessibility: 'on', screen: 'off' });
        await switchTo(walk, 'screen on', { accessibility: 'on', screen: 'on' });
        await driverComesUp(walk, from);
        demand(!existsSync(folder), `${folder} still exists although its process has ended`);
        await walk.quit();
        return [...quotes, `process ${sleeper.pid} still ran: ${found.command}`, `${folder} was removed after its end`];
      } finally {
        sleeper.kill();
      }
    },
  },
];
