// Tests the status item and its menu on a private tray, and the window's behaviour with and without a tray:
//
//     node devkit/windowTray.mjs --program PATH [--stand-ins DIR]
import path from 'node:path';
import { demand } from './journey/proof.mjs';
import { installHelper, join } from './window/prepared.mjs';
import { play } from './window/play.mjs';

// Less than the 20 s that a start at login waits for a tray.
const patienceMs = 15_000;

async function registered(run, tray, from = 0) {
  return tray.expect(new RegExp(`"pid":${run.console.pid},"registered"`), from, run.deadline);
}

async function shown(run, tray) {
  const from = tray.mark;
  tray.send('show');
  return JSON.parse(await tray.expect(/"menu"/, from, run.deadline));
}

async function choose(run, tray, label) {
  const { menu } = await shown(run, tray);
  tray.send(`choose ${menu.find((entry) => entry.label === label).id}`);
}

function wasNotMapped(run) {
  const mapped = run.desktop.windows.find(new RegExp(`"mapped".*"pid":${run.console.pid},`));
  demand(!mapped, `a window opened: ${mapped}`);
}

async function endTray(run, tray) {
  tray.kill('SIGTERM');
  await tray.expectExit(run.deadline);
}

const cases = [
  {
    name: 'a start at login with both switches on shows the window when the install has failed',
    reach: async (run) => {
      await run.desktop.setAccessibility(true);
      run.place.misbehave('release', '404');
      const tray = await run.desktop.startTray();
      run.launch('--at-login', '--node-home', path.join(run.place.root, 'other'));
      const came = await run.windowAppears();
      const { name } = await run.seesText("tarnik couldn't install its helper.");
      run.place.misbehave('release');
      run.console.kill('SIGTERM');
      await run.exits();
      await endTray(run, tray);
      return [came, name];
    },
  },
  {
    name: 'a start at login waits for the tray, and opens no window if none is needed',
    reach: async (run) => {
      join(run.place);
      await run.desktop.setAccessibility(true);
      run.launch('--at-login');
      const started = await run.logged(/^.*helper \S+ started, pid \d+$/m);
      const tray = await run.desktop.startTray();
      run.tray = tray;
      const came = await registered(run, tray);
      wasNotMapped(run);
      return [started, came];
    },
  },
  {
    name: 'the status item has its icon, tooltip and menu',
    reach: async (run) => {
      const item = await shown(run, run.tray);
      const entries = item.menu.map(({ label, type, enabled, visible }) =>
        (enabled && visible ? (type === 'separator' ? '-' : label) : `(${label})`));
      const text = entries.join(' | ');
      demand(text === 'Open tarnik | - | Quit tarnik', text);
      demand(item.tooltip === 'tarnik', `the tooltip is ${item.tooltip}`);
      demand(item.icons.length > 0, 'it has no icon');
      demand(item.status === 'Active', `it is ${item.status}`);
      return [text, `icons of ${item.icons.join(', ')}`];
    },
  },
  {
    name: 'the menu opens the window, and again at its last position',
    reach: async (run) => {
      await choose(run, run.tray, 'Open tarnik');
      const first = await run.windowAppears();
      await run.desktop.act('windowmove', '--sync', run.window.mapped, 40, 60);
      let from = run.windowMark;
      run.closeWindow();
      await run.windowGoes(from);
      from = run.windowMark;
      await choose(run, run.tray, 'Open tarnik');
      const second = await run.windowAppears(from);
      demand(`${run.window.bounds}` === '40,60,460,560', `it is at ${run.window.bounds}`);
      return [first, second];
    },
  },
  {
    name: 'the menu quits the program',
    reach: async (run) => {
      await choose(run, run.tray, 'Quit tarnik');
      const ended = await run.exits();
      const gone = await run.tray.expect(/"gone"/, 0, run.deadline);
      await endTray(run, run.tray);
      return [ended, gone];
    },
  },
  {
    name: 'a tray that starts later is used, and closing the window no longer quits',
    reach: async (run) => {
      run.launch();
      await run.windowAppears();
      run.tray = await run.desktop.startTray();
      const came = await registered(run, run.tray);
      const from = run.windowMark;
      run.closeWindow();
      await run.windowGoes(from);
      await choose(run, run.tray, 'Open tarnik');
      return [came, await run.windowAppears(from)];
    },
  },
  {
    name: 'when the tray ends the window opens, and closing it quits',
    reach: async (run) => {
      let from = run.windowMark;
      run.closeWindow();
      await run.windowGoes(from);
      from = run.windowMark;
      await endTray(run, run.tray);
      const back = await run.windowAppears(from);
      run.closeWindow();
      return [back, await run.exits()];
    },
  },
  {
    name: 'a start at login without a tray opens the window at last; Ctrl+Q quits',
    reach: async (run) => {
      run.launch('--at-login');
      const from = performance.now();
      await run.windowAppears();
      const tookMs = performance.now() - from;
      demand(tookMs > patienceMs, `the window opened after ${Math.round(tookMs)} ms`);
      await run.answer('ctrl+q');
      return [`after ${(tookMs / 1000).toFixed(1)} s`, await run.exits()];
    },
  },
];

await play('windowTray.mjs', cases, { layout: { runtime: 'tiny' }, prepare: installHelper });
