// Tries what comes to the program from outside, cold and running: starts, a second one, links and calls over the
// session bus. Each link is to be worked on once:
//
//     node devkit/windowStarts.mjs --program PATH [--stand-ins DIR]
import { existsSync, mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { demand } from './journey/proof.mjs';
import { processesOf } from './window/leftovers.mjs';
import { forgetJoin, join } from './window/prepared.mjs';
import { play } from './window/play.mjs';

const prompt = /Press Enter to connect it/;
const offer = /^This Mac is already connected/;
const service = ['com.tarnik.node', '/com/tarnik/node'];
// A helper that does not leave when its input ends is signalled after 10 s.
const stubborn = { TARNIK_STANDIN_IGNORE: 'end', TARNIK_STANDIN_ONLY: 'run' };

function asked(run, { code }) {
  return run.place.service.requests.filter((request) => request === `GET /c/${code}/app`).length;
}

function askedOnce(run, link) {
  const times = asked(run, link);
  demand(times === 1, `the service was asked ${times} times`);
}

async function handsOver(run, program) {
  const { code } = await program.expectExit(run.deadline);
  demand(code === 0, program.describeExit());
  return `process ${program.pid}: ${program.describeExit()}`;
}

async function quits(run) {
  run.console.kill('SIGTERM');
  const { code } = await run.console.expectExit(run.deadline);
  demand(code === 0, run.console.describeExit());
}

async function cancels(run) {
  await run.press('Escape');
  await run.seesText('Connect this Mac');
}

const open = (run, links) => run.desktop.call(
  ...service, 'org.freedesktop.Application.Open', JSON.stringify(links).replaceAll('"', "'"), '{}');

// The message buses that were started here, the desktop's own among them.
function buses(run) {
  const isBus = ({ command }) => command.includes('dbus-');
  return processesOf(run.place.root).filter(isBus).map(({ pid }) => pid).sort().join();
}

// What makes a program take this for GNOME on Wayland, though it draws elsewhere; and the page of the settings
// that was opened.
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

// The program with the window, of several that began together, and the others.
async function oneStays(run, programs) {
  const isLast = () => programs.filter((program) => !program.exit).length === 1;
  await run.until(isLast, 'several copies run, or none');
  run.console = programs.find((program) => !program.exit);
  const others = programs.filter((program) => program.exit);
  return Promise.all(others.map((other) => handsOver(run, other)));
}

const cases = [
  {
    name: 'a link while there is no helper yet is answered with that, and is one press away once there is',
    reach: async (run) => {
      run.place.misbehave('runtime', 'slow');
      const link = run.place.service.links.handOut();
      run.launch(link.appLink);
      await run.windowAppears();
      const { name } = await run.seesText("tarnik's helper is still installing. Try again in a moment.");
      await run.seesText('Connect this Mac');
      await run.seesNo(name);
      demand(asked(run, link) === 0, 'the service was asked');
      run.place.misbehave('runtime');
      await run.answer('Return');
      await run.seesText(prompt, 'text');
      askedOnce(run, link);
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
      await run.seesText(prompt, 'text');
      askedOnce(run, link);
      await cancels(run);
      return [appeared];
    },
  },
  {
    name: 'a second start hands its link over and ends',
    reach: async (run) => {
      const link = run.place.service.links.handOut();
      const ended = await handsOver(run, run.another(link.link));
      await run.seesText(prompt, 'text');
      askedOnce(run, link);
      await cancels(run);
      return [ended];
    },
  },
  {
    name: 'what is no link of ours is handed over, and ignored',
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
    name: 'Open takes a link, and shows the window',
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
      await run.seesText(prompt, 'text');
      askedOnce(run, link);
      await cancels(run);
      return [appeared];
    },
  },
  {
    name: 'Activate and a second start show the window that was closed',
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
    name: 'a start by the system beside a running copy ends, and brings up nothing',
    reach: async (run) => {
      const from = run.windowMark;
      run.closeWindow();
      await run.windowGoes(from);
      const ended = await handsOver(run, run.another('--at-login'));
      const { children } = await run.look();
      demand(children.length === 0, `the window came up: ${JSON.stringify(children)}`);
      await quits(run);
      return [ended];
    },
  },
  {
    name: 'of starts at the same moment one stays, and the link is worked on once',
    reach: async (run) => {
      const quotes = [];
      for (const words of [['', ''], ['', 'link'], ['link', ''], ['link', 'link'], ['', '', 'link', '']]) {
        const link = run.place.service.links.handOut();
        const programs = words.map((word) => run.another(...(word ? [link.appLink] : [])));
        quotes.push(...await oneStays(run, programs));
        if (words.includes('link')) {
          await run.seesText(prompt, 'text');
          askedOnce(run, link);
        } else {
          await run.seesText('Connect this Mac');
        }
        await quits(run);
      }
      return quotes;
    },
  },
  {
    name: 'a link for a machine that has joined is an offer first',
    reach: async (run) => {
      join(run.place);
      const link = run.place.service.links.handOut();
      run.launch(link.link);
      await run.windowAppears();
      const { name } = await run.seesText(offer);
      demand(asked(run, link) === 0, 'the service was asked');
      await quits(run);
      return [name];
    },
  },
  {
    name: 'a start while another copy quits waits for it, and then works',
    limitMs: 60_000,
    reach: async (run) => {
      Object.assign(run.place.environment, stubborn);
      const before = run.launch();
      await run.logged(/^.*helper \S+ started, pid \d+$/m, run.logLength());
      for (const name of Object.keys(stubborn)) delete run.place.environment[name];
      before.kill('SIGTERM');
      const start = performance.now();
      await run.sees((tree) => JSON.stringify(tree).includes('Stopping…'), 'it does not stop');
      const link = run.place.service.links.handOut();
      const second = run.launch(link.link);
      await run.windowAppears();
      const tookMs = performance.now() - start;
      demand(before.exit, 'both run');
      await run.seesText(offer);
      await quits(run);
      return [before.describeExit(), `the second had its window after ${(tookMs / 1000).toFixed(1)} s: ${second.pid}`];
    },
  },
  {
    name: 'where no portal lets anybody look, the screen is off, and its button leads to the settings',
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
    name: 'without a session bus it says so, and works alone',
    reach: async (run) => {
      const quotes = [];
      for (const DBUS_SESSION_BUS_ADDRESS of ['unix:path=/nowhere/at/all', undefined]) {
        const before = buses(run);
        const alone = run.desktop.start(run.program, run.place.words, run.place.environment, {
          DBUS_SESSION_BUS_ADDRESS, XDG_RUNTIME_DIR: undefined });
        run.console = alone;
        const said = await alone.expect(/no session bus/, 0, run.deadline);
        quotes.push(said, await run.windowAppears());
        await quits(run);
        demand(buses(run) === before && !existsSync(path.join(run.place.home, '.dbus')), 'it has started a bus');
      }
      return quotes;
    },
  },
  {
    name: 'a second program on the same home says who has it, and ends',
    reach: async (run) => {
      const loneBus = { DBUS_SESSION_BUS_ADDRESS: 'unix:path=/nowhere/at/all', XDG_RUNTIME_DIR: undefined };
      const first = run.launch();
      await run.windowAppears();
      const who = new RegExp(`process ${first.pid}, with a window.* uses the node folder ${run.place.nodeHome}`);
      const second = run.desktop.start(run.program, run.place.words, run.place.environment, loneBus);
      const quotes = [await second.expect(who, 0, run.deadline)];
      run.console = second;
      await run.windowAppears();  // the alert, out of the screen reader's sight
      await run.answer('Return');
      const silent = run.desktop.start(
        run.program, [...run.place.words, '--at-login'], run.place.environment, loneBus);
      for (const program of [second, silent, run.another('--console')]) {
        const { code } = await program.expectExit(run.deadline);
        demand(code === 5, program.describeExit());
      }
      run.console = first;
      await quits(run);
      return quotes;
    },
  },
  {
    name: 'without a display it says so, and ends',
    reach: async (run) => {
      const blind = run.desktop.start(run.program, run.place.words, run.place.environment, { DISPLAY: ':nothing' });
      const { code } = await blind.expectExit(run.deadline);
      demand(code === 1, blind.describeExit());
      return blind.lines.map(({ text }) => text);
    },
  },
];

await play('windowStarts.mjs', cases, { layout: { runtime: 'tiny' } });
