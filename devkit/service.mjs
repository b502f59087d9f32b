// Runs the service stand-in until its standard input ends or a signal comes:
//
//     node devkit/service.mjs --folder DIR [--port N] [--misbehave PATH=HOW]...
//
// Once it listens it prints one JSON line with its origin.
import path from 'node:path';
import { parseArgs } from 'node:util';
import { startService } from './service/startService.mjs';

const usage = 'usage: node devkit/service.mjs --folder DIR [--port N] [--misbehave PATH=HOW]...';
const wrongUsage = 2;
const options = {
  folder: { type: 'string' },
  port: { type: 'string', default: '0' },
  misbehave: { type: 'string', multiple: true, default: [] },
};

function refuse(message) {
  console.error(`${message}; ${usage}`);
  process.exit(wrongUsage);
}

function readArguments() {
  try {
    const { values } = parseArgs({ options });
    if (!values.folder) refuse('--folder is missing');
    if (!/^\d{1,5}$/.test(values.port) || Number(values.port) > 65535) refuse('--port must be a port');
    return values;
  } catch (error) {
    return refuse(error.message);
  }
}

async function start({ folder, port, misbehave }) {
  try {
    const service = await startService({ folder: path.resolve(folder), port: Number(port) });
    for (const [, of, how] of misbehave.map((text) => text.match(/^(.*)=(.*)$/) ?? ['', text])) {
      service.misbehave(of, how ?? '');
    }
    return service;
  } catch (error) {
    return refuse(error.message);
  }
}

const values = readArguments();
const service = await start(values);
const end = () => service.close().finally(() => process.exit(0));
for (const signal of ['SIGINT', 'SIGTERM', 'SIGHUP']) process.once(signal, end);
process.stdin.on('end', end).on('error', end).resume();
console.log(JSON.stringify({ origin: service.origin, folder: path.resolve(values.folder) }));
