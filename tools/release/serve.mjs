// serve DIR: serves a release at 127.0.0.1 with the stand-in for the service, which also hands out pairing links.
import { statSync } from 'node:fs';
import path from 'node:path';
import { misbehaviours } from '../../devkit/service/delivery.mjs';
import { startService } from '../../devkit/service/startService.mjs';
import { Refusal, refuseIf } from './refusal.mjs';

async function start(folder, port) {
  try {
    return await startService({ folder: path.resolve(folder), port });
  } catch (error) {
    throw new Refusal(error.code === 'EADDRINUSE' ? `Port ${port} is in use.` : `The server can't start: ${error.message}.`);
  }
}

export const serve = {
  usage: 'serve DIR [--port N] [--misbehave PATH=HOW]...',
  options: {
    port: { type: 'string', default: '0' },
    misbehave: { type: 'string', multiple: true, default: [] },
  },

  async run([folder], { port, misbehave }) {
    refuseIf(!statSync(folder, { throwIfNoEntry: false })?.isDirectory(), `${folder} is not a folder.`);
    refuseIf(!/^\d{1,5}$/.test(port) || Number(port) > 65535, `--port must be a number up to 65535, not ${port}.`);
    const faults = misbehave.map((text) => /^(.*)=(.*)$/.exec(text) ?? ['', text, '']);
    const unknown = faults.find(([, , how]) => !Object.hasOwn(misbehaviours, how));
    refuseIf(unknown, `--misbehave must be PATH=HOW, with one of: ${Object.keys(misbehaviours).join(', ')}.`);

    const service = await start(folder, Number(port));
    for (const [, of, how] of faults) service.misbehave(of, how);
    console.log(`Serving ${folder} at ${service.origin} until Ctrl-C.`);
    console.log(`A pairing link: ${service.links.handOut().link}`);
    console.log(`More links:     curl -X POST ${service.origin}/devkit/links`);
    await new Promise((resolve) => {
      for (const signal of ['SIGINT', 'SIGTERM', 'SIGHUP']) process.once(signal, resolve);
    });
    await service.close();
  },
};
