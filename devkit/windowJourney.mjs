// Drives the program's window through all its states with mouse and keyboard, against the stand-ins:
//
//     node devkit/windowJourney.mjs --program PATH [--stand-ins DIR]
import { existsSync, readFileSync } from 'node:fs';
import path from 'node:path';
import { driverFolders } from './journey/driverProof.mjs';
import { inspect, isRunning } from './journey/processes.mjs';
import { demand, exactly, installedHelper, politeStopMs } from './journey/proof.mjs';
import { processesOf } from './window/leftovers.mjs';
import { play } from './window/play.mjs';
import { find, is } from './window/screen.mjs';

const linkField = 'Link from tarnik';
const connected = /^This Mac is connected/;
const prompt = 'Connect this Mac?';

// Waits until the pairing command shows its prompt. Records the command's pid, so that a failed run can end the command.
async function atThePrompt(run) {
  await run.seesText(prompt);
  const { text } = await run.seesText(/connect pid \d+/, 'text');
  const pid = Number(text.match(/connect pid (\d+)/)[1]);
  run.connectPids.push(pid);
  await run.sees((tree) => is(find(tree, 'Connect', 'push button') ?? { states: [] }, 'enabled'), 'no Connect');
  return { pid, text };
}

async function secondStart(run, link) {
  return `the second start: ${await run.exits(run.another(link))}`;
}

async function helperRuns(run) {
  const running = () => run.startsInLog().find(({ pid }) => isRunning(pid, run.place.entry));
  return (await run.until(running, 'no helper runs')).pid;
}

const cases = [
  {
    name: 'without a tray the window opens at once and shows the install',
    reach: async (run) => {
      run.place.misbehave('runtime', 'slow');  // so that the progress is visible
      run.launch('--connected-after', '1');
      const appeared = await run.windowAppears();
      const [x, y, width, height] = run.window.bounds;
      demand(width === 460 && height === 560, `it is ${width} by ${height}`);
      demand(x === (1280 - width) / 2 && Math.abs(y - (1024 - height) / 2) <= 1, `its position is ${x},${y}`);
      const { runtime } = run.place.release;
      const { name } = await run.seesText(new RegExp(exactly(`Downloading Node.js ${runtime.version}…`)));
      const bar = await run.seesText(/./, 'progress bar');
      return [appeared, name, `${bar.role} "${bar.name}"`];
    },
  },
  {
    name: 'then it asks for a link',
    reach: async (run) => {
      const { name } = await run.seesText(/^Connect this/);
      await run.sees((tree) => is(find(tree, linkField, 'text') ?? { states: [] }, 'enabled'), 'no field');
      return [name, ...installedHelper(run.place)];
    },
  },
  {
    name: 'a text that is not a link is refused and stays in the field',
    reach: async (run) => {
      const wrong = `https://elsewhere.example.invalid/c/${run.place.service.links.handOut().code}`;
      await run.fill(linkField, wrong);
      await run.press('Return');
      const { name } = await run.seesText(/^That doesn't look like a link/);
      const { text } = await run.seesText(linkField, 'text');
      demand(text === wrong, `the field holds ${text}`);
      return [name, text];
    },
  },
  {
    name: 'a link starts the pairing command on its terminal',
    reach: async (run) => {
      run.offer = run.place.service.links.handOut();
      await run.fill(linkField, run.offer.link);
      await run.click('Continue', 'push button');
      const { pid, text } = await atThePrompt(run);
      demand(isRunning(pid, run.place.entry), `there is no process ${pid}`);
      demand(text.includes('standard input is a terminal of 24x100'), text);
      return text.trim().split('\n');
    },
  },
  {
    name: 'Connect connects',
    reach: async (run) => {
      await run.click('Connect', 'push button');
      const { name } = await run.seesText(/^Connected\./);
      demand(!run.place.service.links.isFresh(run.offer.code), 'the link would join another machine');
      demand(existsSync(run.place.joinRecord), 'there is no join record');
      return [name];
    },
  },
  {
    name: 'Done shows the connection, and the normal run follows',
    reach: async (run) => {
      await run.click('Done', 'push button');
      const { name } = await run.seesText(connected);
      process.kill(run.connectPids[0], 'SIGTERM');
      const { name: again } = await run.seesText(/^Reconnecting/);
      await run.seesText(connected);
      return [name, again, `helper ${await helperRuns(run)}`];
    },
  },
  {
    name: 'a link on a connected machine is an offer, which can be declined',
    reach: async (run) => {
      const before = await helperRuns(run);
      run.offer = run.place.service.links.handOut();
      const second = await secondStart(run, run.offer.appLink);
      const { name } = await run.seesText(/^This Mac is already connected/);
      await run.click('Keep the current one', 'push button');
      await run.seesText(connected);
      demand(isRunning(before, run.place.entry), `helper ${before} was disturbed`);
      demand(run.place.service.links.isFresh(run.offer.code), 'the link was used up');
      return [second, name, `helper ${before} still runs`];
    },
  },
  {
    name: 'the offer can be accepted, and the pairing finished by keyboard',
    reach: async (run) => {
      const before = await helperRuns(run);
      const second = await secondStart(run, run.offer.link);
      await run.click('Connect to the new account', 'push button');
      const { pid } = await atThePrompt(run);
      demand(!isRunning(before, run.place.entry), `helper ${before} still runs`);
      await run.answer('Return');
      await run.sees((tree) => find(tree, 'Done', 'push button'), 'it did not connect');
      await run.answer('Return');
      await run.seesText(connected);
      process.kill(pid, 'SIGTERM');
      const helper = await run.until(
        () => run.startsInLog().find((start) => start.pid !== before && isRunning(start.pid, run.place.entry)),
        'no helper runs');
      return [second, `helper ${before}, then ${helper.pid}`];
    },
  },
  {
    name: 'one switch is on, a click turns on the other, and the driver starts',
    reach: async (run) => {
      const on = await run.seesText('Screen Recording is on');
      const off = await run.seesText('Accessibility is off');
      demand(driverFolders(run.place).length === 0, 'there is a driver already');
      await run.click('Turn on Accessibility', 'push button');
      await run.seesText('Accessibility is on');
      const answer = await run.logged(/^.*desktop driver answered: .* pid (\d+), .*$/m);
      run.driverPid = Number(answer.match(/ pid (\d+),/)[1]);
      demand(inspect(run.driverPid)?.command.startsWith(run.place.driver), `process ${run.driverPid} is no driver`);
      const [folder] = driverFolders(run.place);
      demand(Number(readFileSync(path.join(folder, 'cua.pid'), 'utf8')) === run.driverPid, `${folder} belongs to another process`);
      return [on.name, off.name, answer];
    },
  },
  {
    name: 'the driver ends when a switch is turned off elsewhere',
    reach: async (run) => {
      await run.desktop.setAccessibility(false);
      await run.seesText('Turn on Accessibility', 'push button');
      await run.until(() => !isRunning(run.driverPid, run.place.driver), `driver ${run.driverPid} still exists`);
      await run.until(() => driverFolders(run.place).length === 0, 'its folder still exists');
      return [`driver ${run.driverPid} is gone`];
    },
  },
  {
    name: 'closing the window quits, and leaves nothing behind',
    reach: async (run) => {
      const helper = await helperRuns(run);
      const asked = performance.now();
      run.closeWindow();
      const ended = await run.exits();
      const tookMs = Math.round(performance.now() - asked);
      demand(tookMs < politeStopMs, `it took ${tookMs} ms: the helper ignored the end of its input`);
      const { program, place } = run;
      const ours = processesOf(place.root).filter(({ command }) =>
        [program, place.home, place.driver, place.keepAwake].some((name) => command.includes(name)));
      demand(ours.length === 0, `left: ${ours.map(({ pid, command }) => `${pid} ${command}`).join(', ')}`);
      return [`${ended} after ${tookMs} ms`, `helper ${helper} is gone`];
    },
  },
];

await play('windowJourney.mjs', cases);
