// Tests what a person can do in the window about a failure: try an install again, see why the helper fails, try it at
// once, open its log, and copy the details after a preview:
//
//     node devkit/windowTrouble.mjs --program PATH [--stand-ins DIR]
import { existsSync, mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { demand } from './journey/proof.mjs';
import { forgetJoin, join } from './window/prepared.mjs';
import { play } from './window/play.mjs';

// Less than the shortest delay that is left when the button is pressed.
const atOnceMs = 2500;
const dying = { TARNIK_STANDIN_EXIT_AFTER: '0.2', TARNIK_STANDIN_EXIT_CODE: '3', TARNIK_STANDIN_ONLY: 'run' };

// Puts a program into the search path that records what it should open. Returns a function for that record.
function recordsOpened({ root, environment }) {
  const file = path.join(root, 'opened');
  const folder = path.join(root, 'programs');
  mkdirSync(folder);
  writeFileSync(path.join(folder, 'xdg-open'), `#!/bin/sh\necho "$@" >'${file}'\n`, { mode: 0o755 });
  environment.PATH = `${folder}:${environment.PATH}`;
  return () => existsSync(file) && readFileSync(file, 'utf8').trim();
}

const cases = [
  {
    name: 'a failed install names its cause, and "Try Again" installs without a new start',
    reach: async (run) => {
      run.opened = recordsOpened(run.place);
      run.place.misbehave('release', '404');
      run.launch();
      await run.windowAppears();
      const failed = await run.seesText("tarnik couldn't install its helper.");
      run.place.misbehave('release');
      await run.click('Try Again', 'push button');
      const { name } = await run.seesText(/^Connect this/);
      run.console.kill('SIGTERM');
      await run.exits();
      return [failed.name, name];
    },
  },
  {
    name: 'a helper that fails again and again is explained with its last lines',
    reach: async (run) => {
      join(run.place);
      Object.assign(run.place.environment, dying);
      run.launch();
      await run.windowAppears();
      const { name } = await run.seesText(/^The helper stopped [2-9] times in a row, last with exit 3/);
      demand(/Next try in|It is starting/.test(name), name);
      const { text } = await run.seesText(/started|helper/, 'text');
      return [name, text.trim().split('\n').at(-1)];
    },
  },
  {
    name: '"Show Log" opens the helper\'s log',
    reach: async (run) => {
      await run.click('Show Log', 'push button');
      const opened = await run.until(run.opened, 'nothing was opened');
      demand(opened.endsWith('node.log'), opened);
      return [path.basename(opened)];
    },
  },
  {
    name: '"Copy Details" shows the redacted report before it is copied',
    reach: async (run) => {
      await run.click('Copy Details', 'push button');
      const { name } = await run.seesText(/^This is what will be copied/);
      const { text } = await run.seesText(/tarnik/, 'text');
      demand(!text.includes(run.place.environment.HOME), 'the report names the home folder');
      await run.click('Copy', 'push button');
      const copied = await run.seesText(/^The details are copied/);
      await run.click('Close', 'push button');
      await run.seesNo(/^The details are copied/);
      return [name, copied.name];
    },
  },
  {
    name: '"Try Now" starts the helper at once',
    reach: async (run) => {
      const { name } = await run.seesText(/Next try in [4-8] s\.$/);
      const before = run.startsInLog().length;
      const start = performance.now();
      await run.click('Try Now', 'push button');
      await run.until(() => run.startsInLog().length > before, 'the helper was not started');
      const tookMs = performance.now() - start;
      demand(tookMs < atOnceMs, `the helper was started after ${tookMs} ms`);
      forgetJoin(run.place);
      run.console.kill('SIGTERM');
      return [name, await run.exits()];
    },
  },
];

await play('windowTrouble.mjs', cases);
