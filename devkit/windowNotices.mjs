// Tests the picture of the status item and the notices outside of the window, with a private tray and notification
// service:
//
//     node devkit/windowNotices.mjs --program PATH [--stand-ins DIR]
import { readFileSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { setTimeout } from 'node:timers/promises';
import { isRunning } from './journey/processes.mjs';
import { demand } from './journey/proof.mjs';
import { installHelper, join } from './window/prepared.mjs';
import { play } from './window/play.mjs';

const awayAfter = ['--away-after', '2'];
const lookAgainMs = 100;

// Returns the status that a picture shows. The ring has a hole at the centre of the dot, and only the exclamation mark
// has a point below it.
function statusOf(picture) {
  if (picture.length !== 16) return 'no picture';
  if (picture[10][12] === '#') return 'needs you';
  return picture[2][12] === '#' ? 'connected' : 'working';
}

// Waits until the status item shows this status. Returns its picture.
async function seesPicture(run, wanted) {
  for (;;) {
    const from = run.tray.mark;
    run.tray.send('picture');
    const { picture } = JSON.parse(await run.tray.expect(/"picture"/, from, run.deadline));
    if (statusOf(picture) === wanted) return `the picture shows "${wanted}"`;
    demand(Date.now() < run.deadline, `the picture does not show "${wanted}":\n${picture.join('\n')}`);
    await setTimeout(lookAgainMs);
  }
}

async function seesNotice(run, title, from = 0) {
  const line = await run.notices.expect(new RegExp(`"title":"${title}"`), from, run.deadline);
  return { line, number: JSON.parse(line).notice };
}

function isWithdrawn(run, { number }, from = 0) {
  return run.notices.expect(new RegExp(`"closed":${number}\\b`), from, run.deadline);
}

async function closesWindow(run) {
  const from = run.windowMark;
  run.closeWindow();
  return run.windowGoes(from);
}

async function clicksOnItem(run) {
  const from = run.windowMark;
  run.tray.send('click');
  return run.windowAppears(from);
}

async function killHelper(run) {
  const isAlive = ({ pid }) => isRunning(pid, run.place.entry);
  const { pid } = await run.until(() => run.startsInLog().find(isAlive), 'no helper runs');
  process.kill(pid, 'SIGKILL');
}

const cases = [
  {
    name: 'without an account the picture asks for the user',
    reach: async (run) => {
      run.tray = await run.desktop.startTray();
      run.notices = await run.desktop.startNotifications();
      run.launch(...awayAfter);
      await run.windowAppears();
      return [await seesPicture(run, 'needs you')];
    },
  },
  {
    name: 'the first close of the window is explained, until the window is open again',
    reach: async (run) => {
      await closesWindow(run);
      const notice = await seesNotice(run, 'tarnik is still running');
      await clicksOnItem(run);
      return [notice.line, await isWithdrawn(run, notice)];
    },
  },
  {
    name: 'later closes are not explained',
    reach: async (run) => {
      const from = run.notices.mark;
      await closesWindow(run);
      await clicksOnItem(run);
      run.console.kill('SIGTERM');
      const ended = await run.exits();
      demand(!run.notices.find(/"notice"/, from), 'the second close was explained');
      return [ended];
    },
  },
  {
    name: 'a connected machine has its own picture',
    reach: async (run) => {
      join(run.place);
      run.launch(...awayAfter);
      await run.windowAppears();
      const connected = await seesPicture(run, 'connected');
      return [connected, await closesWindow(run)];
    },
  },
  {
    name: 'a short restart changes only the picture',
    reach: async (run) => {
      const from = run.notices.mark;
      await killHelper(run);
      const working = await seesPicture(run, 'working');
      const connected = await seesPicture(run, 'connected');
      demand(!run.notices.find(/"notice"/, from), 'the restart has a notice');
      return [working, connected];
    },
  },
  {
    name: 'a helper that stays away has a notice until it runs again',
    reach: async (run) => {
      const { entry } = run.place;
      const good = readFileSync(entry);
      await killHelper(run);
      writeFileSync(entry, 'process.exit(3);\n');  // before the restart, which is a second later
      const notice = await seesNotice(run, 'tarnik is not connected');
      const asks = await seesPicture(run, 'needs you');
      writeFileSync(entry, good);
      const withdrawn = await isWithdrawn(run, notice);
      const connected = await seesPicture(run, 'connected');
      run.console.kill('SIGTERM');
      return [notice.line, asks, withdrawn, connected, await run.exits()];
    },
  },
  {
    name: 'an install that fails after the window was closed has a notice, and a click on it opens the window',
    reach: async (run) => {
      run.place.misbehave('runtime', 'slow');  // so that the window can be closed before the failure
      run.place.misbehave('helper', '404');
      run.launch('--node-home', path.join(run.place.root, 'other'));
      await run.windowAppears();
      const working = await seesPicture(run, 'working');
      await closesWindow(run);
      const from = run.windowMark;
      const notice = await seesNotice(run, "tarnik couldn't install its helper");
      const asks = await seesPicture(run, 'needs you');
      demand(!run.desktop.windows.find(/"mapped"/, from), 'the window opened by itself');
      run.notices.send(`click ${notice.number}`);
      const opened = await run.windowAppears(from);
      const withdrawn = await isWithdrawn(run, notice);
      const { name } = await run.seesText("tarnik couldn't install its helper.");
      return [working, notice.line, asks, opened, withdrawn, name];
    },
  },
];

await play('windowNotices.mjs', cases, { layout: { runtime: 'tiny' }, prepare: installHelper });
