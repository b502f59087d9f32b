// Makes a release folder: the helper package, the runtime archive and the signed release file.
import { createHash } from 'node:crypto';
import { createReadStream, mkdirSync, statSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { pipeline } from 'node:stream/promises';
import { faults } from './faults.mjs';
import { helperMembers } from './helperPackage.mjs';
import { packRuntime } from './runtimePackage.mjs';
import { freshKey } from './signing.mjs';
import { writeTarball } from './tarball.mjs';

export const machinePlatform = `${process.platform}-${process.arch}`;
export const defaultVersion = '2026.1.1';

const same = (value) => value;

async function digest(target) {
  const hash = createHash('sha256');
  await pipeline(createReadStream(target), hash);
  return hash.digest('hex');
}

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
  return { path: name, sha256: await digest(target), size: statSync(target).size };
}

function makeManifest({ version, channel, platform, helper }) {
  return {
    v: 1,
    channel,
    version,
    publishedAtMs: Date.now(),
    minNodeVersion: '20.0.0',
    upstream: { version, commit: createHash('sha1').update(version).digest('hex') },
    artifacts: { [platform]: helper },
  };
}

function releaseFile(manifest, key, fault) {
  const text = JSON.stringify((fault.manifest ?? same)(manifest));
  const release = { v: 1, manifest: text, keyId: key.keyId, sig: key.signature(text) };
  const signed = (fault.signing ?? same)(release);
  return typeof signed === 'string' ? signed : `${JSON.stringify(signed)}\n`;
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
  const manifest = makeManifest({ version, channel, platform, helper });
  writeFileSync(path.join(folder, 'stable.json'), releaseFile(manifest, key, fault));

  const release = { folder, publicKey: key.publicKey, keyId: key.keyId, version, platform, helper };
  if (runtime === 'none') return release;
  const name = await packRuntime({ into: folder, platform, tiny: runtime === 'tiny', cache });
  const sha256 = await digest(path.join(folder, name));
  return { ...release, runtime: { version: process.version, file: name, sha256 } };
}
