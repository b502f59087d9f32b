// The stages of the walk, in order. Each waits for its proof and returns the lines to print. A stage that throws was not
// reached.
import { readFileSync, rmSync } from 'node:fs';
import { driverFolders } from './driverProof.mjs';
import { driverStages } from './driverStages.mjs';
import { isRunning } from './processes.mjs';
import {
  demand, exactly, installedHelper, logShowsStart, modeOf, nothingStaged, onlyPlainRequests, politeStopMs, runningHelper,
} from './proof.mjs';

const noLink = "That doesn't look like a link from tarnik. "
  + 'Copy the whole link from your chat and paste it here.';
const noLongerGood = 'This link has expired or was already used. Ask tarnik for a new one.';
const alreadyConnecting = 'This Mac is already connecting with another link. '
  + 'Finish or cancel that one first.';
const amount = String.raw`\d+(\.\d+)? [kMG]?B`;
const orphanLimitMs = 2000;

async function refuses(walk, words, named) {
  const program = walk.launch(...words);
  const { code } = await program.expectExit(walk.deadline);
  demand(code === 2, `${words.join(' ')}: ${program.describeExit()}, not exit 2`);
  const texts = program.lines.map((line) => line.text);
  demand(texts.length === 1, `${words.join(' ')}: ${texts.length} lines of output, not one`);
  demand(texts[0].includes(named), `the message does not name ${named}: ${texts[0]}`);
  return texts[0];
}

function privateFile(file) {
  const [fileMode, folderMode] = [modeOf(file), modeOf(file.slice(0, file.lastIndexOf('/')))];
  const isPrivate = fileMode === '600' && folderMode === '700';
  demand(isPrivate, `modes are ${fileMode} in ${folderMode}, not 600 in 700`);
  return `${file} (${fileMode}) ${readFileSync(file, 'utf8').trim()}`;
}

// Checks that each link is refused with this sentence, and that the program still waits for a link.
async function refusesLinks(walk, links, sentence) {
  const quotes = [];
  for (const link of links) {
    const from = walk.console.mark;
    walk.console.send(link);
    quotes.push(await walk.expect('error', exactly(sentence), from));
  }
  const { line, state, pairing } = await walk.status();
  demand(state === 'waitingForLink' && pairing === 'none', `it no longer waits: ${line}`);
  return [...quotes, line];
}

async function connectStarts(walk, from) {
  const started = await walk.expect('terminal', String.raw`.*connect pid \d+`, from);
  walk.connectPids.push(Number(started.match(/\d+$/)[0]));
  return started;
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
    name: 'an empty home gets the helper over HTTP',
    reach: async (walk) => {
      const { place } = walk;
      const { runtime, version } = place.release;
      walk.launch('--connected-after', '1');
      const quotes = [
        await walk.expect('install', exactly(`Downloading Node.js ${runtime.version}…`), 0),
        await walk.expect('install', `${amount} of ${amount}`, 0),
        await walk.expect('install', "Downloading tarnik's helper…", 0),
        await walk.expect('install', exactly(`done ${version}`), 0),
      ];
      nothingStaged(place);
      return [...quotes, ...installedHelper(place)];
    },
  },
  {
    name: 'waiting for a link',
    reach: async (walk) => [await walk.expect('state', 'waitingForLink', 0)],
  },
  {
    name: 'a second program on the same home names the first, and ends',
    reach: async (walk) => {
      const first = walk.console;
      const second = walk.launch();
      walk.console = first;
      const { code } = await second.expectExit(walk.deadline);
      const texts = second.lines.map((line) => line.text);
      demand(code === 5 && texts.length === 1, `${second.describeExit()}: ${texts.join(' / ')}`);
      demand(texts[0].includes(`process ${first.pid}, in a terminal`), texts[0]);
      const { line, state } = await walk.status();
      demand(state === 'waitingForLink', `the first no longer waits: ${line}`);
      return [texts[0], line];
    },
  },
  {
    name: 'a text that is not a link is refused',
    reach: async (walk) => {
      const { origin, links } = walk.place.service;
      const { code } = links.handOut();
      const elsewhere = `https://elsewhere.example.invalid/c/${code}`;
      return refusesLinks(walk, [`${origin}/c/short`, elsewhere, `${origin}/j/${code}`], noLink);
    },
  },
  {
    name: 'a used link is refused in every form',
    reach: async (walk) => {
      const { links } = walk.place.service;
      const { code, link, appLink } = links.handOut();
      links.use(code);
      return refusesLinks(walk, [link, appLink, code], noLongerGood);
    },
  },
  {
    name: 'the helper runs on a real terminal',
    reach: async (walk) => {
      walk.offer = walk.place.service.links.handOut();
      walk.linkSent = walk.console.mark;
      walk.console.send(walk.offer.link);
      const started = await connectStarts(walk, walk.linkSent);
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
    name: 'a second link is refused during a pairing',
    reach: async (walk) => {
      const from = walk.console.mark;
      walk.console.send(walk.place.service.links.handOut().link);
      const refused = await walk.expect('error', exactly(alreadyConnecting), from);
      const { line, pairing } = await walk.status();
      demand(pairing === 'waitingForYes', `the first is gone: ${line}`);
      return [refused, line];
    },
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
    name: 'the link is used and the join record is written',
    reach: async (walk) => {
      const { service, joinRecord } = walk.place;
      demand(!service.links.isFresh(walk.offer.code), 'the link would join another machine');
      const { origin } = JSON.parse(readFileSync(joinRecord, 'utf8'));
      demand(origin === service.origin, `the join record is of ${origin}`);
      return [privateFile(joinRecord)];
    },
  },
  {
    name: 'the normal run follows the pairing run',
    reach: async (walk) => {
      const from = walk.console.mark;
      process.kill(walk.connectPids[0], 'SIGTERM');
      const quotes = [
        await walk.console.expect(/the node stopped \(signal 15\)/, from, walk.deadline),
        await walk.expect('state', 'restarting 1s', from),
        await walk.expect('state', 'running', from),
      ];
      const helper = await runningHelper(walk, walk.place.runtime);
      walk.firstPid = helper.pid;
      return [...quotes, ...helper.quotes, await logShowsStart(walk, helper.pid)];
    },
  },
  {
    // The pairing run was also short. This run is the second short run in a row, so it has the longer delay.
    name: 'a killed helper is restarted',
    reach: async (walk) => {
      const from = walk.console.mark;
      process.kill(walk.firstPid, 'SIGKILL');
      const quotes = [
        await walk.console.expect(/the node stopped \(signal 9\)/, from, walk.deadline),
        await walk.expect('state', 'restarting 2s', from),
        await walk.expect('state', 'running', from),
      ];
      const helper = await runningHelper(walk, walk.place.runtime);
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
      const ended = await walk.exits();
      demand(!isRunning(walk.secondPid, walk.place.entry), `helper ${walk.secondPid} still exists`);
      const tookMs = Math.round(performance.now() - asked);
      demand(tookMs < politeStopMs, `it took ${tookMs} ms: the helper ignored the end of its input`);
      return [stopped, ended, `helper ${walk.secondPid} is gone`];
    },
  },
  {
    name: 'the service starts the helper, and SIGTERM ends it',
    reach: async (walk) => {
      const service = walk.serve();
      const started = await service.expect(/The helper .*started/, 0, walk.deadline);
      service.kill('SIGTERM');
      const exit = await walk.exits(service);
      return [started, await service.expect(/tarnik ended with exit status 0/, 0, walk.deadline), exit];
    },
  },
  {
    name: 'a machine that has joined starts the helper at once',
    reach: async (walk) => {
      walk.launch();
      const running = await walk.expect('state', 'running', 0);
      demand(!walk.console.find(/ state waitingForLink$/), 'it waited for a link first');
      demand(!walk.console.find(/ install /), 'it installed the helper again');
      const helper = await runningHelper(walk, walk.place.runtime);
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
      await walk.until(gone, `helper ${walk.thirdPid} still exists`, orphanLimitMs);
      const tookMs = Math.round(performance.now() - killed);
      const { signal } = await walk.console.expectExit(walk.deadline);
      demand(signal === 'SIGKILL', walk.console.describeExit());
      return [walk.console.describeExit(), `helper ${walk.thirdPid} was gone ${tookMs} ms after the kill`];
    },
  },
  ...driverStages,
  {
    name: 'a link on a connected machine is an offer first',
    reach: async (walk) => {
      walk.launch();
      await walk.expect('state', 'running', 0);
      const { pid } = await walk.status();
      const { code, link } = walk.place.service.links.handOut();
      let from = walk.console.mark;
      walk.console.send(link);
      const quotes = [await walk.expect('offer', 'This Mac is already connected to an tarnik account.', from)];
      walk.console.send('keep');
      const kept = await walk.status();
      demand(kept.pid === pid, `the helper was disturbed: ${kept.line}`);
      from = walk.console.mark;
      walk.console.send(link);
      await walk.expect('offer', '.*', from);
      walk.console.send('replace');
      await connectStarts(walk, from);
      quotes.push(kept.line, await walk.expect('pairing', 'waitingForYes', from));
      walk.console.send('cancel');
      quotes.push(await walk.expect('state', 'running', from));
      demand(walk.place.service.links.isFresh(code), 'the link was used up');
      await walk.quit();
      return quotes;
    },
  },
  {
    name: 'a link on the command line starts a pairing, which can be cancelled',
    reach: async (walk) => {
      rmSync(walk.place.joinRecord);
      const { links } = walk.place.service;
      const { code, appLink } = links.handOut();
      walk.launch('--link', appLink);
      const quotes = [await connectStarts(walk, 0), await walk.expect('pairing', 'waitingForYes', 0)];
      const from = walk.console.mark;
      walk.console.send('cancel');
      quotes.push(await walk.expect('pairing', 'none', from), await walk.expect('state', 'waitingForLink', from));
      await walk.quit();
      demand(links.isFresh(code), 'the link was used up without an Enter');
      return [...quotes, walk.console.describeExit()];
    },
  },
  {
    name: 'quitting is clean at every moment of a pairing',
    reach: async (walk) => {
      const { links } = walk.place.service;
      const moments = {
        'at once': () => {},
        'while a link is checked': () => walk.expect('link', '.*', 0),
        'while the command begins': () => walk.expect('state', 'pairing', 0),
        'at the prompt': () => walk.expect('pairing', 'waitingForYes', 0),
        'while it connects': async () => {
          await walk.expect('pairing', 'waitingForYes', 0);
          walk.console.send('');
          await walk.expect('pairing', 'connecting', 0);
        },
      };
      const quotes = [];
      for (const [moment, reached] of Object.entries(moments)) {
        rmSync(walk.place.joinRecord, { force: true });
        walk.launch('--switches', 'on', '--link', links.handOut().link);
        await reached();
        const asked = performance.now();
        const ended = await walk.quit();
        const tookMs = Math.round(performance.now() - asked);
        demand(tookMs < politeStopMs, `${moment} it took ${tookMs} ms`);
        const pid = walk.console.find(/ terminal .*connect pid \d+$/)?.match(/\d+$/)[0];
        demand(!pid || !isRunning(Number(pid), walk.place.entry), `${moment}: process ${pid} still exists`);
        demand(driverFolders(walk.place).length === 0, `${moment}: a driver still exists`);
        quotes.push(`${moment}: ${ended} after ${tookMs} ms`);
      }
      return quotes;
    },
  },
  {
    name: 'the doctor asks the two servers',
    reach: async (walk) => {
      const { requests } = walk.place.service;
      const before = requests.length;
      await walk.command('doctor').expectExit(walk.deadline);
      const asked = requests.slice(before).sort().join(', ');
      demand(asked === 'GET /, GET /stable.json', `it sent ${asked}`);
      return [asked];
    },
  },
  {
    name: 'no request has more than the protocol needs',
    reach: ({ place: { service } }) => {
      onlyPlainRequests(service);
      return [`${service.requests.length} requests`];
    },
  },
];
