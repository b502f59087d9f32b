// sample DIR: makes the archive of the stand-in helper and, from this machine's Node.js, that of a runtime, to try out the
// other commands.
import { mkdirSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { defaultVersion, makeArchives } from '../../devkit/release/makeRelease.mjs';
import { refuseIf } from './refusal.mjs';
import { isVersion } from './releaseFile.mjs';

export const sample = {
  usage: 'sample DIR [--version V]',
  options: { version: { type: 'string', default: defaultVersion } },

  async run([folder], { version }) {
    refuseIf(!isVersion(version), `--version must be a version such as 2026.3.1, not ${version}.`);
    mkdirSync(folder, { recursive: true });
    const { helper, runtime, platform } = await makeArchives({ folder, version });
    console.log(`helper   ${path.join(folder, helper.path)}`);
    console.log(`runtime  ${path.join(folder, runtime.file)}`);
    const setting = `-DTARNIK_NODE_RUNTIMES=${platform}=${runtime.file}=${runtime.sha256}`;
    writeFileSync(path.join(folder, 'runtime.setting'), `${setting}\n`);
    console.log(`setting  ${setting}`);
  },
};
