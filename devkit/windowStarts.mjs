// Tests starts, second starts, links and calls over the session bus. Some arrive before the program runs and some while
// it runs. Each link must be used exactly once:
//
//     node devkit/windowStarts.mjs --program PATH [--stand-ins DIR]
import { existsSync, mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { demand } from './journey/proof.mjs';
import { processesOf } from './window/leftovers.mjs';
import { forgetJoin, join } from './window/prepared.mjs';
import { play } from './window/play.mjs';

const prompt = 'Connect this Mac?';
const offer = /^This Mac is already connected/;
const service = ['com.tarnik.node', '/com/tarnik/node'];
// Makes the helper ignore the end of its input, so that a stop takes 10 s.
const stubborn = { TARNIK_STANDIN_IGNORE: 'end', TARNIK_STANDIN_ONLY: 'run' };

function requestsFor(run, { code }) {
  return run.place.service.requests.filter((request) => request === `GET /c/${code}/app`).length;
}

function requestedOnce(run, link) {
  const times = requestsFor(run, link);
  demand(times === 1, `the service was asked ${times} times`);
}

async function handsOver(run, program) {
  return `process ${program.pid}: ${await run.exits(program)}`;
}

async function quits(run) {
  run.console.kill('SIGTERM');
  await run.exits();
}

async function cancels(run) {
  await run.press('Escape');
  await run.seesText('Connect this Mac');
}

const open = (run, links) => run.desktop.call(
  ...service, 'org.freedesktop.Application.Open', JSON.stringify(links).replaceAll('"', "'"), '{}');

// Returns the pids of all message buses that were started here, including the desktop's own.
function buses(run) {
  const isBus = ({ command }) => command.includes('dbus-');
  return processesOf(run.place.root).filter(isBus).map(({ pid }) => pid).sort().join();
}

// Returns environment changes and a function. With the changes a program assumes GNOME on Wayland but draws on X11. The
// function returns the settings page that was opened.
function wayland({ root, environment }) {
  const file = path.join(root, 'opened');
  const folder = path.join(root, 'settings');
  mkdirSync(folder);
  writeFileSync(path.join(folder, 'gnome-control-center'), `#!/bin/sh\necho "$@" >'${file}'\n`, { mode: 0o755 });
  const PATH = `${folder}:${environment.PATH}`;
  return {
    changes: { WAYLAND_DISPLAY: 'wayland-none', XDG_CURRENT_DESKTOP: 'GNOME', PATH },
    opened: () => existsSync(file) && readFileSync(file, 'utf8'),
  };
}

// Waits until only one of several simultaneous starts still runs. Checks that the others handed over to it.
async function oneRemains(run, programs) {
  const isLast = () => programs.filter((program) => !program.exit).length === 1;
  await run.until(isLast, 'several copies run, or none');
  run.console = programs.find((program) => !program.exit);
  const others = programs.filter((program) => program.exit);
  return Promise.all(others.map((other) => handsOver(run, other)));
}

const cases = [
  {
    name: 'a link during the install is refused, and one key press connects with it afterwards',
    reach: async (run) => {
      run.place.misbehave('runtime', 'slow');
      const link = run.place.service.links.handOut();
      run.launch(link.appLink);
      await run.windowAppears();
      const { name } = await run.seesText("tarnik's helper is still installing. Try again in a moment.");
      await run.seesText('Connect this Mac');
      await run.seesNo(name);
      demand(requestsFor(run, link) === 0, 'the service was asked');
      run.place.misbehave('runtime');
      await run.answer('Return');
      await run.seesText(prompt);
      requestedOnce(run, link);
      await cancels(run);
      await quits(run);
      return [name];
    },
  },
  {
    name: 'a cold start with a link pairs with it',
    reach: async (run) => {
      const link = run.place.service.links.handOut();
      run.launch(link.appLink);
      const appeared = await run.windowAppears();
      await run.seesText(prompt);
      requestedOnce(run, link);
      await cancels(run);
      return [appeared];
    },
  },
  {
    name: 'a second start hands over its link and ends',
    reach: async (run) => {
      const link = run.place.service.links.handOut();
      const ended = await handsOver(run, run.another(link.link));
      await run.seesText(prompt);
      requestedOnce(run, link);
      await cancels(run);
      return [ended];
    },
  },
  {
    name: 'a link of another kind is handed over and ignored',
    reach: async (run) => {
      const before = run.place.service.requests.length;
      const ended = await handsOver(run, run.another('tarnik://elsewhere?code=1'));
      await open(run, ['file:///etc/passwd', '', 'x'.repeat(1000)]);
      await run.seesText('Connect this Mac');
      demand(run.place.service.requests.length === before, 'the service was asked');
      return [ended];
    },
  },
  {
    name: 'Open accepts a link and shows the window',
    reach: async (run) => {
      run.tray = await run.desktop.startTray();
      await run.tray.expect(/"registered"/, 0, run.deadline);
      let from = run.windowMark;
      await run.windowAppears();
      run.closeWindow();
      await run.windowGoes(from);
      const link = run.place.service.links.handOut();
      from = run.windowMark;
      await open(run, [link.appLink]);
      const appeared = await run.windowAppears(from);
      await run.seesText(prompt);
      requestedOnce(run, link);
      await cancels(run);
      return [appeared];
    },
  },
  {
    name: 'Activate and a second start show the closed window',
    reach: async (run) => {
      const quotes = [];
      const ways = [
        () => run.desktop.call(...service, 'org.freedesktop.Application.Activate', '{}'),
        () => handsOver(run, run.another()),
      ];
      for (const way of ways) {
        const from = run.windowMark;
        run.closeWindow();
        await run.windowGoes(from);
        const answer = await way();
        quotes.push(`${answer}: ${await run.windowAppears(from)}`);
      }
      return quotes;
    },
  },
  {
    name: 'a start at login beside a running copy ends and shows no window',
    reach: async (run) => {
      const from = run.windowMark;
      run.closeWindow();
      await run.windowGoes(from);
      const ended = await handsOver(run, run.another('--at-login'));
      const { children } = await run.read();
      demand(children.length === 0, `the window opened: ${JSON.stringify(children)}`);
      await quits(run);
      return [ended];
    },
  },
  {
    name: 'one of several simultaneous starts remains, and the link is used once',
    reach: async (run) => {
      const quotes = [];
      for (const words of [['', ''], ['', 'link'], ['link', ''], ['link', 'link'], ['', '', 'link', '']]) {
        const link = run.place.service.links.handOut();
        const programs = words.map((word) => run.another(...(word ? [link.appLink] : [])));
        quotes.push(...await oneRemains(run, programs));
        if (words.includes('link')) {
          await run.seesText(prompt);
          requestedOnce(run, link);
        } else {
          await run.seesText('Connect this Mac');
        }
        await quits(run);
      }
      return quotes;
    },
  },
  {
    name: 'a link on a connected machine is an offer first',
    reach: async (run) => {
      join(run.place);
      const link = run.place.service.links.handOut();
      run.launch(link.link);
      await run.windowAppears();
      const { name } = await run.seesText(offer);
      demand(requestsFor(run, link) === 0, 'the service was asked');
      await quits(run);
      return [name];
    },
  },
  {
    name: 'a start while another copy quits waits for its end',
    limitMs: 60_000,
    reach: async (run) => {
      Object.assign(run.place.environment, stubborn);
      const before = run.launch();
      await run.logged(/^.*helper \S+ started, pid \d+$/m, run.logLength());
      for (const name of Object.keys(stubborn)) delete run.place.environment[name];
      before.kill('SIGTERM');
      const start = performance.now();
      await run.sees((tree) => JSON.stringify(tree).includes('Stopping…'), 'the window does not show the stop');
      const link = run.place.service.links.handOut();
      const second = run.launch(link.link);
      await run.windowAppears();
      const tookMs = performance.now() - start;
      demand(before.exit, 'both run');
      await run.seesText(offer);
      await quits(run);
      return [before.describeExit(), `the second showed its window after ${(tookMs / 1000).toFixed(1)} s: ${second.pid}`];
    },
  },
  {
    name: 'without a screenshot portal Screen Recording is off, and its button opens the settings',
    reach: async (run) => {
      forgetJoin(run.place);
      const { changes, opened } = wayland(run.place);
      run.console = run.desktop.start(run.program, run.place.words, run.place.environment, changes);
      await run.windowAppears();
      const { name } = await run.seesText('Screen Recording is off');
      await run.click('Turn on Screen Recording', 'push button');
      const page = await run.until(opened, 'no settings were opened');
      demand(page === 'applications\n', `the page was ${page}`);
      await quits(run);
      return [name, page.trim()];
    },
  },
  {
    name: 'without a session bus it prints that and works alone',
    reach: async (run) => {
      const quotes = [];
      for (const DBUS_SESSION_BUS_ADDRESS of ['unix:path=/nowhere/at/all', undefined]) {
        const before = buses(run);
        const alone = run.desktop.start(run.program, run.place.words, run.place.environment, {
          DBUS_SESSION_BUS_ADDRESS, XDG_RUNTIME_DIR: run.place.runtimeFolder });
        run.console = alone;
        const said = await alone.expect(/no session bus/, 0, run.deadline);
        quotes.push(said, await run.windowAppears());
        await quits(run);
        demand(buses(run) === before && !existsSync(path.join(run.place.home, '.dbus')), 'it started a bus');
      }
      return quotes;
    },
  },
  {
    name: 'a second program on the same home names the first, and ends',
    reach: async (run) => {
      const loneBus = { DBUS_SESSION_BUS_ADDRESS: 'unix:path=/nowhere/at/all', XDG_RUNTIME_DIR: run.place.runtimeFolder };
      const first = run.launch();
      await run.windowAppears();
      const who = new RegExp(`process ${first.pid}, with a window.* uses the helper's folder ${run.place.nodeHome}`);
      const second = run.desktop.start(run.program, run.place.words, run.place.environment, loneBus);
      const quotes = [await second.expect(who, 0, run.deadline)];
      run.console = second;
      await run.windowAppears();  // the alert; screen_reader can't read it
      await run.answer('Return');
      const silent = run.desktop.start(
        run.program, [...run.place.words, '--at-login'], run.place.environment, loneBus);
      for (const program of [second, silent, run.another('--console')]) {
        await run.exits(program, 5);
      }
      run.console = first;
      await quits(run);
      return quotes;
    },
  },
  {
    name: 'without a display it prints that and ends',
    reach: async (run) => {
      const blind = run.desktop.start(run.program, run.place.words, run.place.environment, { DISPLAY: ':nothing' });
      await run.exits(blind, 1);
      return blind.lines.map(({ text }) => text);
    },
  },
];

await play('windowStarts.mjs', cases, { layout: { runtime: 'tiny' } });
