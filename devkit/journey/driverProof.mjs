// Checks of the desktop driver and its private folder. Each returns lines to print, and throws if it fails.
import { existsSync, lstatSync, readFileSync, readdirSync } from 'node:fs';
import path from 'node:path';
import { inspect, isRunning } from './processes.mjs';
import { demand, modeOf } from './proof.mjs';

// Returns the folders of all drivers, including those of earlier runs.
export function driverFolders({ driverRoot }) {
  return existsSync(driverRoot) ? readdirSync(driverRoot).map((name) => path.join(driverRoot, name)) : [];
}

// Waits until a driver that started after `from` is ready, its endpoint is published, and a helper that was started with
// that endpoint has greeted the driver.
export async function driverComesUp(walk, from) {
  const ready = await walk.console.expect(/ desktop driver ready$/, from, walk.deadline);
  const published = await walk.expect('endpoint', '/.*', from);
  const { line, fields } = await walk.status();
  const pid = Number(fields.driver);
  demand(inspect(pid)?.command.startsWith(walk.place.driver), `process ${pid} is not a driver: ${line}`);
  const socket = published.slice(published.indexOf('/'));
  const answer = await walk.logged(new RegExp(`^.*desktop driver answered: .* pid ${pid}, .*$`, 'm'));
  return { pid, socket, folder: path.dirname(socket), quotes: [ready, published, answer] };
}

// Checks that only this user can reach the driver, and that the next run could find it.
export function privateEndpoint({ pid, socket, folder }) {
  const pidFile = path.join(folder, 'cua.pid');
  demand(lstatSync(folder).isDirectory() && modeOf(folder) === '700', `${folder} is ${modeOf(folder)}`);
  demand(lstatSync(socket).isSocket() && modeOf(socket) === '600', `${socket} is ${modeOf(socket)}`);
  demand(modeOf(pidFile) === '600', `${pidFile} is ${modeOf(pidFile)}`);
  const text = readFileSync(pidFile, 'utf8').trim();
  demand(text === `${pid}`, `${pidFile} holds ${text}, not ${pid}`);
  return [`${socket} (600 in 700)`, `${pidFile} (600): ${text}`];
}

// Checks that the driver has ended, that its files are removed, and that the status doesn't mention it.
export async function driverIsGone(walk, { pid, folder }) {
  const { line, fields } = await walk.status();
  demand(fields.driver === 'none' && fields.endpoint === 'none', `there is still a driver: ${line}`);
  demand(!isRunning(pid, walk.place.driver), `driver ${pid} still exists`);
  demand(!existsSync(folder), `${folder} still exists`);
  return line;
}
