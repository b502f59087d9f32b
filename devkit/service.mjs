// Runs the service stand-in until its standard input ends or it receives a signal.
//
//     node devkit/service.mjs --folder DIR [--port N] [--misbehave PATH=HOW]...
//
// When the stand-in listens, prints one JSON line with its origin.
import path from 'node:path';
import { readArguments, refuse } from './commandLine.mjs';
import { startService } from './service/startService.mjs';

const usage = 'usage: node devkit/service.mjs --folder DIR [--port N] [--misbehave PATH=HOW]...';
const options = {
  folder: { type: 'string' },
  port: { type: 'string', default: '0' },
  misbehave: { type: 'string', multiple: true, default: [] },
};

function problemOf({ folder, port }) {
  if (!folder) return '--folder is missing';
  return /^\d{1,5}$/.test(port) && Number(port) <= 65535 ? undefined : '--port must be a port';
}

async function start({ folder, port, misbehave }) {
  try {
    const service = await startService({ folder: path.resolve(folder), port: Number(port) });
    for (const [, of, how] of misbehave.map((text) => text.match(/^(.*)=(.*)$/) ?? ['', text])) {
      service.misbehave(of, how ?? '');
    }
    return service;
  } catch (error) {
    return refuse(error.message, usage);
  }
}

const values = readArguments(usage, options, problemOf);
const service = await start(values);
const end = () => service.close().finally(() => process.exit(0));
for (const signal of ['SIGINT', 'SIGTERM', 'SIGHUP']) process.once(signal, end);
process.stdin.on('end', end).on('error', end).resume();
console.log(JSON.stringify({ origin: service.origin, folder: path.resolve(values.folder) }));
