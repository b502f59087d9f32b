// pins: reads the signed list of digests of a Node.js release, and prints the build settings for its Linux runtimes.
//
// The list is SHASUMS256.txt.asc beside the archives. gpgv verifies it with the given keyrings of the Node.js project. It
// accepts revoked and expired keys too, so its report of each signature is read.
import { spawnSync } from 'node:child_process';
import { readFileSync, statSync } from 'node:fs';
import { Refusal, refuseIf } from './refusal.mjs';

const largestList = 256 * 1024;
const pinned = ['linux-x64', 'linux-arm64'];

// Returns the text that the signature covers.
function verifiedText(list, keyrings) {
  const rings = keyrings.flatMap((name) => ['--keyring', name]);
  const { status, stdout, output, error } = spawnSync('gpgv', [...rings, '--status-fd', '3', '--output', '-', '--', list], {
    encoding: 'utf8', maxBuffer: largestList, stdio: ['ignore', 'pipe', 'pipe', 'pipe'],
  });
  if (error) throw new Refusal("gpgv can't be run; install the package gpgv.");
  refuseIf(status !== 0, `${list} isn't signed with a key of ${keyrings.join(' or ')}, or that isn't a keyring as gpg --export writes it.`);
  const [, fault] = /^\[GNUPG:\] (REVKEYSIG|EXPKEYSIG|EXPSIG) /m.exec(output[3]) ?? [];
  refuseIf(fault === 'REVKEYSIG', `The key that signed ${list} is revoked.`);
  refuseIf(fault !== undefined || !/^\[GNUPG:\] GOODSIG /m.test(output[3]), `The signature of ${list}, or its key, has expired.`);
  return stdout;
}

export function pinsIn(text) {
  const found = new Map();
  for (const line of text.split('\n')) {
    const [, digest, file, version, platform] = /^([0-9a-f]{64}) [ *](node-(v\d+\.\d+\.\d+)-([a-z0-9-]+)\.tar\.gz)$/.exec(line.trimEnd()) ?? [];
    if (!pinned.includes(platform)) continue;
    refuseIf(found.has(platform), `The list has two archives for ${platform}.`);
    found.set(platform, { version, pin: `${platform}=${file}=${digest}` });
  }
  return found;
}

export const pins = {
  usage: 'pins LIST --keyring FILE...',
  options: { keyring: { type: 'string', multiple: true, default: [] } },

  run([list], { keyring }) {
    refuseIf(keyring.length === 0, 'pins needs --keyring with the public keys of the Node.js project.');
    for (const file of [list, ...keyring]) {
      refuseIf(!statSync(file, { throwIfNoEntry: false })?.isFile(), `${file} doesn't exist.`);
    }
    refuseIf(statSync(list).size > largestList, `${list} is too large for a list of digests.`);
    const rings = keyring.map((file) => (file.includes('/') ? file : `./${file}`));
    const found = pinsIn(verifiedText(list, rings));
    const missing = pinned.find((platform) => !found.has(platform));
    refuseIf(missing, `${list} has no archive for ${missing}.`);
    const [fixed] = /version = "(v[\d.]+)"/.exec(readFileSync(new URL('../../core/node/NodeRuntime.h', import.meta.url), 'utf8')).slice(1);
    const [{ version }] = found.values();
    console.log(`-DTARNIK_NODE_RUNTIMES=${[...found.values()].map(({ pin }) => pin).join(',')}`);
    if (version !== fixed) {
      console.error(`This program uses Node.js ${fixed} on macOS. For ${version} on Linux, set TARNIK_NODE_RUNTIME_BASE too.`);
    }
  },
};
