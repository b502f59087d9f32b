// Makes a release folder: the helper package, the runtime archive and the signed release file.
import { createHash } from 'node:crypto';
import { mkdirSync, statSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { fileURLToPath } from 'node:url';
import { digestOf } from '../../tools/release/digest.mjs';
import { manifestOf, signed } from '../../tools/release/releaseFile.mjs';
import { freshKey } from '../../tools/release/signing.mjs';
import { faults } from './faults.mjs';
import { helperMembers } from './helperPackage.mjs';
import { packRuntime } from './runtimePackage.mjs';
import { writeTarball } from './tarball.mjs';

export const machinePlatform = `${process.platform}-${process.arch}`;
export const defaultVersion = '2026.1.1';
export const runtimeCache = fileURLToPath(new URL('../../build/devkit/runtime', import.meta.url));

const same = (value) => value;

// Makes a folder that must not change when a package is unpacked.
function makeOutside(folder) {
  const outside = path.join(folder, 'outside');
  mkdirSync(outside, { recursive: true });
  writeFileSync(path.join(outside, 'precious'), 'precious\n');
  return outside;
}

async function packHelper({ folder, version, platform, sizeMiB, fault }) {
  const name = `tarnik-node-${version}-${platform}.tar.gz`;
  const target = path.join(folder, name);
  const members = helperMembers({ version, sizeMiB });
  await writeTarball(target, fault.members ? fault.members(members, makeOutside(folder)) : members);
  fault.package?.(target);
  return { path: name, sha256: await digestOf(target), size: statSync(target).size };
}

function releaseFile(manifest, key, fault) {
  const file = (fault.signing ?? same)(signed((fault.manifest ?? same)(manifest), key));
  return typeof file === 'string' ? file : `${JSON.stringify(file)}\n`;
}

// Makes the archives of the helper and of the runtime without a release file.
export async function makeArchives({ folder, version, platform = machinePlatform }) {
  mkdirSync(folder, { recursive: true });
  const helper = await packHelper({ folder, version, platform, sizeMiB: 0, fault: {} });
  const name = await packRuntime({ into: folder, platform, tiny: false, cache: runtimeCache });
  return { platform, helper, runtime: { file: name, sha256: await digestOf(path.join(folder, name)) } };
}

// `fault` is a name of faults.mjs. `runtime` is 'real', 'tiny' or 'none'. `cache` keeps the archive of the real runtime.
export async function makeRelease({
  folder, version: asked = defaultVersion, platform = machinePlatform, channel = 'stable',
  key = freshKey(), helperSizeMiB = 0, runtime = 'real', cache, fault: faultName,
}) {
  const fault = faultName === undefined ? {} : faults[faultName];
  const version = fault.version?.() ?? asked;
  mkdirSync(folder, { recursive: true });

  const helper = await packHelper({ folder, version, platform, sizeMiB: helperSizeMiB, fault });
  const commit = createHash('sha1').update(version).digest('hex');
  const manifest = manifestOf({ channel, version, upstream: { commit }, artifacts: { [platform]: helper } });
  writeFileSync(path.join(folder, 'stable.json'), releaseFile(manifest, key, fault));

  const release = { folder, publicKey: key.publicKey, keyId: key.keyId, version, platform, helper };
  if (runtime === 'none') return release;
  const name = await packRuntime({ into: folder, platform, tiny: runtime === 'tiny', cache });
  const sha256 = await digestOf(path.join(folder, name));
  return { ...release, runtime: { version: process.version, file: name, sha256 } };
}
