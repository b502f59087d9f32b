// make: checks the archives of a release, and publishes them with a signed release file in a folder.
//
// The release is made in the folder's .staging, checked there as a program would check it, and then moved into place: the
// archives first, the release file last. So a reader of the folder sees the old release or the whole new one.
import {
  chmodSync, closeSync, copyFileSync, existsSync, fsyncSync, mkdirSync, openSync, readFileSync, renameSync, rmdirSync, rmSync,
  statSync, writeFileSync,
} from 'node:fs';
import path from 'node:path';
import { startService } from '../../devkit/service/startService.mjs';
import { checkMembers } from './archiveMembers.mjs';
import { digestOf } from './digest.mjs';
import { askPassphrase } from './passphrase.mjs';
import { refuseIf } from './refusal.mjs';
import {
  channels, compareVersions, isFileName, isVersion, largestArchive, manifestOf, platforms, signed,
} from './releaseFile.mjs';
import { runCheck } from './runCheck.mjs';
import { freshKey, readKey } from './signing.mjs';

function platformOf(file) {
  const name = path.basename(file);
  refuseIf(!isFileName(name), `${file} must have a name of at most 200 letters, digits, points, hyphens and underscores.`);
  const platform = platforms.find((one) => name.endsWith(`-${one}.tar.gz`));
  refuseIf(!platform, `The name of ${file} must end in -PLATFORM.tar.gz, with one of: ${platforms.join(', ')}.`);
  return platform;
}

async function artifactsOf(archives) {
  const artifacts = {};
  for (const file of archives) {
    const platform = platformOf(file);
    const found = statSync(file, { throwIfNoEntry: false });
    refuseIf(!found?.isFile(), `The archive ${file} is missing.`);
    refuseIf(found.size === 0 || found.size > largestArchive, `${file} must have between 1 byte and 512 MiB.`);
    refuseIf(artifacts[platform], `There are two archives for ${platform}.`);
    await checkMembers(file);
    artifacts[platform] = { path: path.basename(file), sha256: await digestOf(file), size: found.size };
  }
  return artifacts;
}

function publishedIn(releaseFile) {
  if (!existsSync(releaseFile)) return undefined;
  let published;
  try {
    const { manifest, keyId } = JSON.parse(readFileSync(releaseFile, 'utf8'));
    published = { ...JSON.parse(manifest), keyId };
  } catch {
    published = {};
  }
  const isWhole = isVersion(published.version) && published.artifacts;
  refuseIf(!isWhole, `${releaseFile} is damaged; restore it or use another folder.`);
  return published;
}

// Refuses a release that programs with the published one would refuse.
function checkAgainst(published, manifest, key) {
  if (!published) return;
  const { version, artifacts } = published;
  refuseIf(published.keyId !== key.keyId,
    `The folder's release is signed with key ${published.keyId}, not ${key.keyId}; each key needs its own folder.`);
  const order = compareVersions(manifest.version, version);
  refuseIf(order < 0, `The folder has release ${version}, and programs refuse an older one; use a higher version.`);
  const lost = Object.keys(artifacts).filter((name) => !manifest.artifacts[name]);
  if (order > 0 && lost.length > 0) {
    console.log(`Unlike release ${version}, this one has no archive for ${lost.join(', ')}: computers of that kind can't install it.`);
  }
  if (order > 0) return;
  const changed = Object.keys(artifacts).find((name) => artifacts[name].sha256 !== manifest.artifacts[name]?.sha256);
  refuseIf(changed, `Release ${version} is published with another archive for ${changed}; use a higher version.`);
}

function flush(file) {
  const descriptor = openSync(file, 'r');
  fsyncSync(descriptor);
  closeSync(descriptor);
}

// The server may run as another user, so everybody may read the files.
function moveInto(folder, staging, names) {
  for (const name of names) {
    chmodSync(path.join(staging, name), 0o644);
    flush(path.join(staging, name));
    renameSync(path.join(staging, name), path.join(folder, name));
  }
  flush(folder);
}

// Removes the empty folders from `folder` up to `top`. Another release may be in one of them by now.
function removeEmpty(folder, top) {
  try {
    for (let at = path.resolve(folder); at.startsWith(path.resolve(top)); at = path.dirname(at)) rmdirSync(at);
  } catch (error) {
    if (error.code !== 'ENOTEMPTY') throw error;
  }
}

async function checkStaged(staging, key) {
  const service = await startService({ folder: staging });
  try {
    return await runCheck({ base: service.origin, 'public-key': key.publicKey });
  } finally {
    await service.close();
  }
}

async function publish({ folder, staging, manifest, key, archives, channel }) {
  const fresh = [];
  for (const file of archives) {
    const name = path.basename(file);
    const digest = Object.values(manifest.artifacts).find((one) => one.path === name).sha256;
    const published = path.join(folder, name);
    const isThere = existsSync(published);
    refuseIf(isThere && await digestOf(published) !== digest,
      `${published} has other contents, and a published archive never changes; use another name.`);
    copyFileSync(file, path.join(staging, name));
    refuseIf(await digestOf(path.join(staging, name)) !== digest, `${file} changed while it was read.`);
    if (!isThere) fresh.push(name);
  }
  const text = `${JSON.stringify(signed(manifest, key))}\n`;
  writeFileSync(path.join(staging, `manifest-${manifest.version}.json`), `${JSON.stringify(manifest, undefined, 2)}\n`);
  // Programs read the stable channel only, so a beta is checked as a stable release of a key that isn't kept.
  const checkKey = channel === 'stable' ? key : freshKey();
  const checked = { ...manifest, channel: 'stable' };
  writeFileSync(path.join(staging, 'stable.json'), `${JSON.stringify(signed(checked, checkKey))}\n`);
  for (const sentence of await checkStaged(staging, checkKey)) console.log(sentence);

  writeFileSync(path.join(staging, `${channel}.json`), text);
  moveInto(folder, staging, [...fresh, `manifest-${manifest.version}.json`]);
  moveInto(folder, staging, [`${channel}.json`]);
}

export const make = {
  usage: 'make --folder DIR --version V --key FILE [--channel stable|beta] [--min-node V] [--commit SHA1] ARCHIVE...',
  options: {
    folder: { type: 'string' },
    version: { type: 'string' },
    key: { type: 'string' },
    channel: { type: 'string', default: 'stable' },
    'min-node': { type: 'string', default: '20.0.0' },
    commit: { type: 'string' },
  },

  async run(archives, { folder, version, key: keyFile, channel, 'min-node': minNodeVersion, commit }) {
    refuseIf(!folder || !version || !keyFile, 'make needs --folder, --version and --key.');
    refuseIf(!isVersion(version), `--version must be a version such as 2026.3.1 or 2026.3.1-2, not ${version}.`);
    refuseIf(!channels.includes(channel), `--channel must be stable or beta, not ${channel}.`);
    refuseIf(!/^\d+\.\d+\.\d+$/.test(minNodeVersion), `--min-node must be a version such as 20.0.0, not ${minNodeVersion}.`);
    refuseIf(commit !== undefined && !/^[0-9a-f]{40}$/.test(commit), '--commit must have 40 lower-case hexadecimal digits.');
    refuseIf(archives.length === 0, 'make needs an archive.');
    const key = await readKey(keyFile, askPassphrase);
    const artifacts = await artifactsOf(archives);
    const manifest = manifestOf({ channel, version, minNodeVersion, upstream: commit && { commit }, artifacts });

    const created = mkdirSync(folder, { recursive: true });
    const staging = path.join(folder, '.staging');
    try {
      mkdirSync(staging, { mode: 0o700 });
    } catch (error) {
      refuseIf(error.code === 'EEXIST', `${staging} exists: another make runs, or one was interrupted; then remove it.`);
      throw error;
    }
    let isPublished = false;
    try {
      checkAgainst(publishedIn(path.join(folder, `${channel}.json`)), manifest, key);
      await publish({ folder, staging, manifest, key, archives, channel });
      isPublished = true;
    } finally {
      rmSync(staging, { recursive: true, force: true });
      if (created && !isPublished) removeEmpty(folder, created);
    }
    console.log(`Published ${version} in ${folder}, signed with key ${key.keyId}.`);
  },
};
