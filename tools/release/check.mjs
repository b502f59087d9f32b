// check: does with a release what an installed program would do, short of installing it.
import { statSync } from 'node:fs';
import { startService } from '../../devkit/service/startService.mjs';
import { refuseIf } from './refusal.mjs';
import { isVersion } from './releaseFile.mjs';
import { runCheck } from './runCheck.mjs';

export const check = {
  usage: 'check URL|DIR --public-key KEY [--have V] [--minimum V] [--runtime PIN [--runtime-base URL]]',
  options: {
    'public-key': { type: 'string' },
    have: { type: 'string' },
    minimum: { type: 'string' },
    runtime: { type: 'string' },
    'runtime-base': { type: 'string' },
  },

  async run([place], options) {
    const key = options['public-key'];
    refuseIf(!key, 'check needs --public-key.');
    refuseIf(!/^[A-Za-z0-9_-]{43}=?$/.test(key), '--public-key must have the 43 characters that keygen prints.');
    for (const name of ['have', 'minimum']) {
      const value = options[name];
      refuseIf(value !== undefined && !isVersion(value), `--${name} must be a version such as 2026.3.1, not ${value}.`);
    }
    const pin = options.runtime;
    refuseIf(pin !== undefined && !/^[^=]+=node-v[\d.]+-[^=/]+=[0-9a-f]{64}$/.test(pin),
      '--runtime must be PLATFORM=ARCHIVE=SHA256, as pins prints it.');

    const isAddress = /^https?:\/\//.test(place);
    refuseIf(!isAddress && !statSync(place, { throwIfNoEntry: false })?.isDirectory(),
      `${place} is neither an http or https address nor a folder.`);
    const service = isAddress ? undefined : await startService({ folder: place });
    try {
      for (const sentence of await runCheck({ base: service?.origin ?? place, ...options })) console.log(sentence);
    } catch (error) {
      for (const sentence of error.sentences ?? []) console.log(sentence);
      throw error;
    } finally {
      await service?.close();
    }
  },
};
