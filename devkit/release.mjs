// Makes a release for the service stand-in, and prints one JSON line that describes it.
//
//     node devkit/release.mjs --folder DIR [--key FILE] [--version V] [--platform KEY] [--channel NAME]
//                             [--helper-size MIB] [--runtime real|tiny|none] [--cache DIR] [--fault NAME]
//
// Without --key, signs the release with a new key and doesn't store the key.
import path from 'node:path';
import { readArguments } from './commandLine.mjs';
import { faults } from './release/faults.mjs';
import { defaultVersion, machinePlatform, makeRelease, runtimeCache } from './release/makeRelease.mjs';
import { isVersion } from '../tools/release/releaseFile.mjs';
import { freshKey, keyInFile } from '../tools/release/signing.mjs';

const usage = 'usage: node devkit/release.mjs --folder DIR [--key FILE] [--version V] [--platform KEY]'
  + ' [--channel NAME] [--helper-size MIB] [--runtime real|tiny|none] [--cache DIR] [--fault NAME]';
const options = {
  folder: { type: 'string' },
  key: { type: 'string' },
  version: { type: 'string', default: defaultVersion },
  platform: { type: 'string', default: machinePlatform },
  channel: { type: 'string', default: 'stable' },
  'helper-size': { type: 'string', default: '0' },
  runtime: { type: 'string', default: 'real' },
  cache: { type: 'string', default: runtimeCache },
  fault: { type: 'string' },
};

const rules = [
  ['folder', (value) => value, 'a folder for the release'],
  ['version', (value) => isVersion(value), 'a version such as 2026.1.1'],
  ['channel', (value) => ['stable', 'beta'].includes(value), 'stable or beta'],
  ['helper-size', (value) => /^\d{1,3}$/.test(value), 'a number of MiB'],
  ['runtime', (value) => ['real', 'tiny', 'none'].includes(value), 'real, tiny or none'],
  ['fault', (value) => value === undefined || Object.hasOwn(faults, value),
    `one of ${Object.keys(faults).join(', ')}`],
];

function problemOf(values) {
  const [name, , wanted] = rules.find(([option, isGood]) => !isGood(values[option])) ?? [];
  return name && `--${name} must be ${wanted}`;
}

const values = readArguments(usage, options, problemOf);
const release = await makeRelease({
  folder: path.resolve(values.folder),
  key: values.key === undefined ? freshKey() : await keyInFile(values.key),
  version: values.version,
  platform: values.platform,
  channel: values.channel,
  helperSizeMiB: Number(values['helper-size']),
  runtime: values.runtime,
  cache: path.resolve(values.cache),
  fault: values.fault,
});
console.log(JSON.stringify(release));
