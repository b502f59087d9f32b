// The stages of the journey, in order. Each waits for its proof and returns the lines to quote; a stage
// that throws was not reached.
import { readFileSync, statSync } from 'node:fs';
import { inspect, isRunning } from './processes.mjs';

const goodLink = 'https://join.example.invalid/j/abc';
const expiredLink = `${goodLink}?expired=1`;
const orphanLimitMs = 2000;
// A helper that does not leave when its input ends is signalled only after 10 s.
const politeStopMs = 5000;

function demand(condition, complaint) {
  if (!condition) throw new Error(complaint);
}

async function refuses(walk, words, named) {
  const program = walk.launch(...words);
  const { code } = await program.expectExit(walk.deadline);
  demand(code === 2, `${words.join(' ')}: ${program.describeExit()}, not exit 2`);
  const texts = program.lines.map((line) => line.text);
  demand(texts.length === 1, `${words.join(' ')}: ${texts.length} lines of output, not one`);
  demand(texts[0].includes(named), `the message does not name ${named}: ${texts[0]}`);
  return texts[0];
}

// The normal run's process, once its status says so and the system agrees.
async function runningHelper(walk) {
  const { line, state, pid } = await walk.status();
  demand(state === 'running' && pid, `the status is not that of a running helper: ${line}`);
  const found = inspect(pid);
  demand(found, `there is no process ${pid}`);
  const { command, executable } = found;
  demand(command.includes(`${walk.place.entry} node run --parent-stdin`), `process ${pid} runs: ${command}`);
  demand(!executable || executable === process.execPath, `process ${pid} is ${executable}`);
  return { pid, quotes: [line, `process ${pid}: ${command}`] };
}

function logShowsStart(walk, pid) {
  const look = () => walk.startsInLog().find((start) => start.pid === pid)?.line;
  return walk.until(look, `the node log has no start of process ${pid}`);
}

function privateFile(file) {
  const modeOf = (name) => (statSync(name).mode & 0o777).toString(8);
  const [fileMode, folderMode] = [modeOf(file), modeOf(file.slice(0, file.lastIndexOf('/')))];
  const isPrivate = fileMode === '600' && folderMode === '700';
  demand(isPrivate, `modes are ${fileMode} in ${folderMode}, not 600 in 700`);
  return `${file} (${fileMode}) ${readFileSync(file, 'utf8').trim()}`;
}

export const stages = [
  {
    name: 'wrong arguments are refused',
    reach: async (walk) => [
      await refuses(walk, ['--no-such-thing'], '--no-such-thing'),
      await refuses(walk, ['--node-home', 'not/a/full/path'], 'not/a/full/path'),
    ],
  },
  {
    name: 'waiting for a link',
    reach: async (walk) => {
      walk.launch('--connected-after', '1');
      return [await walk.expect('state', 'waitingForLink', 0)];
    },
  },
  {
    name: 'an expired link is refused',
    reach: async (walk) => {
      const from = walk.console.mark;
      walk.console.send(expiredLink);
      return [
        await walk.expect('terminal', '.*link has expired.*', from),
        await walk.expect('pairing', String.raw`ended \(exit 1\)`, from),
        await walk.expect('state', 'waitingForLink', from),
      ];
    },
  },
  {
    name: 'the helper runs on a real terminal',
    reach: async (walk) => {
      walk.linkSent = walk.console.mark;
      walk.console.send(goodLink);
      const started = await walk.expect('terminal', String.raw`.*connect pid \d+`, walk.linkSent);
      walk.connectPid = Number(started.match(/\d+$/)[0]);
      return [
        await walk.expect('state', 'pairing', walk.linkSent),
        started,
        await walk.expect('terminal', 'standard input is a terminal of 24x100', walk.linkSent),
      ];
    },
  },
  {
    name: 'the prompt is seen',
    reach: async (walk) => [await walk.expect('pairing', 'waitingForYes', walk.linkSent)],
  },
  {
    name: 'Enter is passed on',
    reach: async (walk) => {
      walk.console.send('');
      return [
        await walk.expect('pairing', 'connecting', walk.linkSent),
        await walk.expect('terminal', '.*Press Enter to connect it.*', walk.linkSent),
        await walk.expect('terminal', String.raw`.*Connected\.`, walk.linkSent),
      ];
    },
  },
  {
    name: 'connected',
    reach: async (walk) => {
      const quotes = [
        await walk.expect('pairing', 'connected', walk.linkSent),
        await walk.expect('state', 'running', walk.linkSent),
      ];
      const { line, state, pid, pairing } = await walk.status();
      demand(state === 'running' && !pid && pairing === 'connected', `unexpected status: ${line}`);
      return [...quotes, line];
    },
  },
  {
    name: 'the join record is written',
    reach: async (walk) => [privateFile(walk.place.joinRecord)],
  },
  {
    name: 'the normal run follows the pairing run',
    reach: async (walk) => {
      const from = walk.console.mark;
      process.kill(walk.connectPid, 'SIGTERM');
      const quotes = [
        await walk.console.expect(/the node stopped \(signal 15\)/, from, walk.deadline),
        await walk.expect('state', 'restarting 1s', from),
        await walk.expect('state', 'running', from),
      ];
      const helper = await runningHelper(walk);
      walk.firstPid = helper.pid;
      return [...quotes, ...helper.quotes, await logShowsStart(walk, helper.pid)];
    },
  },
  {
    // The pairing run counted as a short one, so this second short run waits longer.
    name: 'a killed helper is started again',
    reach: async (walk) => {
      const from = walk.console.mark;
      process.kill(walk.firstPid, 'SIGKILL');
      const quotes = [
        await walk.console.expect(/the node stopped \(signal 9\)/, from, walk.deadline),
        await walk.expect('state', 'restarting 2s', from),
        await walk.expect('state', 'running', from),
      ];
      const helper = await runningHelper(walk);
      demand(helper.pid !== walk.firstPid, `still process ${helper.pid}`);
      walk.secondPid = helper.pid;
      return [...quotes, ...helper.quotes];
    },
  },
  {
    name: 'the node log holds both starts',
    reach: async (walk) => [
      await logShowsStart(walk, walk.firstPid),
      await logShowsStart(walk, walk.secondPid),
    ],
  },
  {
    name: 'quit stops the helper, then the program',
    reach: async (walk) => {
      const from = walk.console.mark;
      const asked = performance.now();
      walk.console.send('quit');
      const stopped = await walk.expect('state', 'stopped', from);
      const { code } = await walk.console.expectExit(walk.deadline);
      demand(!isRunning(walk.secondPid, walk.place.entry), `helper ${walk.secondPid} is still there`);
      demand(code === 0, walk.console.describeExit());
      const tookMs = Math.round(performance.now() - asked);
      demand(tookMs < politeStopMs, `it took ${tookMs} ms: the helper did not leave by itself`);
      return [stopped, walk.console.describeExit(), `helper ${walk.secondPid} is gone`];
    },
  },
  {
    name: 'a machine that has joined starts right away',
    reach: async (walk) => {
      walk.launch();
      const running = await walk.expect('state', 'running', 0);
      demand(!walk.console.find(/ state waitingForLink$/), 'it waited for a link first');
      const helper = await runningHelper(walk);
      walk.thirdPid = helper.pid;
      return [running, ...helper.quotes, await logShowsStart(walk, helper.pid)];
    },
  },
  {
    name: 'the helper does not outlive a killed program',
    reach: async (walk) => {
      const killed = performance.now();
      walk.console.kill('SIGKILL');
      const gone = () => !isRunning(walk.thirdPid, walk.place.entry);
      await walk.until(gone, `helper ${walk.thirdPid} is still there`, orphanLimitMs);
      const tookMs = Math.round(performance.now() - killed);
      const { signal } = await walk.console.expectExit(walk.deadline);
      demand(signal === 'SIGKILL', walk.console.describeExit());
      return [walk.console.describeExit(), `helper ${walk.thirdPid} was gone ${tookMs} ms after the kill`];
    },
  },
];
