// Runs the commands of `./dev release` with good and bad input, and checks what they publish.
//
//     node devkit/releaseKit.mjs --program PATH
//
// PATH is the program; the release check that was built with it is used.
import { execFileSync, spawnSync } from 'node:child_process';
import { existsSync, mkdirSync, mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { fileURLToPath } from 'node:url';
import { readArguments } from './commandLine.mjs';
import { demand, modeOf } from './journey/proof.mjs';
import { compare, snapshot } from './refusals/disk.mjs';
import { makeRelease } from './release/makeRelease.mjs';

const kit = fileURLToPath(new URL('../tools/release/main.mjs', import.meta.url));
const { program } = readArguments('usage: node devkit/releaseKit.mjs --program PATH', { program: { type: 'string' } },
  (values) => (values.program ? undefined : '--program is missing'));
const checker = path.resolve(path.dirname(program), '..', 'tools', 'release', 'tarnik_release_check');
const root = mkdtempSync(path.join(tmpdir(), 'tarnik-kit-'));
const at = (...names) => path.join(root, ...names);
const secret = 'a long passphrase';

function run(words, { input = '', env = {} } = {}) {
  const { status, stdout, stderr } = spawnSync(process.execPath, [kit, ...words], {
    input, encoding: 'utf8', env: { ...process.env, TARNIK_RELEASE_CHECK: checker, http_proxy: 'http://127.0.0.1:9', ...env },
  });
  return { status, stdout, stderr };
}

function succeeds(words, text, how) {
  const { status, stdout, stderr } = run(words, how);
  demand(status === 0 && stdout.includes(text), `${words.join(' ')} printed: ${stdout}${stderr}`);
  return stdout;
}

// A refusal is one sentence, and changes no file.
function refuses(words, text, { status: wanted = 1, ...how } = {}) {
  const before = snapshot(root);
  const { status, stderr } = run(words, how);
  const isOne = status !== 1 || /^[^\n]+[.)]\n$/.test(stderr) || stderr.endsWith('.pem\n');
  demand(status === wanted && isOne && stderr.includes(text), `${words.join(' ')} ended with ${status}: ${stderr}`);
  compare(before, snapshot(root), 'nothing');
}

const publicKeyIn = (folder) => readFileSync(at(folder, 'release-key.pub'), 'utf8').trim();
const keyOf = (folder) => at(folder, 'release-key.pem');
const makeWords = (folder, version, archive, key = 'old') => (
  ['make', '--folder', at(folder), '--version', version, '--key', keyOf(key), archive]
);

const cases = {
  'a key is private, is never overwritten, and may have a passphrase': () => {
    succeeds(['keygen', at('old')], 'key id');
    demand(modeOf(keyOf('old')) === '600', 'others may read the key');
    refuses(['keygen', at('old')], 'never overwritten');
    mkdirSync(at('apart'));
    writeFileSync(at('apart', 'release-key.pub'), 'of a key that is kept elsewhere');
    refuses(['keygen', at('apart')], 'never overwritten');
    succeeds(['keygen', at('new'), '--passphrase'], 'key id', { input: `${secret}\n` });
    demand(readFileSync(keyOf('new'), 'utf8').includes('ENCRYPTED'), 'the key is not encrypted');
    refuses(['keygen', at('short'), '--passphrase'], 'at least 8', { input: 'short\n' });
  },

  'a release is published whole, and only a newer one after it': () => {
    for (const version of ['2026.1.1', '2026.1.2']) succeeds(['sample', at(version), '--version', version], 'helper');
    const [first, second] = ['2026.1.1', '2026.1.2'].map((version) => (
      at(version, `tarnik-node-${version}-${process.platform}-${process.arch}.tar.gz`)));
    refuses(makeWords('site', '2026.1.1', second), 'has the helper 2026.1.2');
    succeeds(makeWords('site', '2026.1.1', first), 'Published 2026.1.1');
    succeeds(makeWords('site', '2026.1.2', second), 'Published 2026.1.2');
    demand(existsSync(at('site', path.basename(first))), 'the first archive is gone');
    refuses(makeWords('site', '2026.1.1', first), 'programs refuse an older one');
    refuses(makeWords('site', '2026.1.3', second, 'new'), 'each key needs its own folder', { input: `${secret}\n` });
    refuses(makeWords('site', '2026.1.3', second, 'new'), 'is wrong', { input: 'another one\n' });
  },

  'the check says what a program would do': () => {
    const words = ['check', at('site'), '--public-key', publicKeyIn('old')];
    succeeds(words, 'A computer without a helper installs it.');
    succeeds([...words, '--have', '2026.1.1'], 'installs it when');
    succeeds([...words, '--have', '2026.1.2'], 'already has it');
    refuses([...words, '--have', '2026.1.3'], "tarnik's helper 2026.1.2 is older");
    refuses([...words, '--minimum', '2026.2.1'], "tarnik's helper 2026.1.2 is older");
    refuses(['check', at('absent'), '--public-key', publicKeyIn('old')], 'neither');
  },

  // Two bases on one host, each with the release file of one key.
  'programs with the old and with the new key are served from one place': () => {
    const archive = at('2026.1.2', `tarnik-node-2026.1.2-${process.platform}-${process.arch}.tar.gz`);
    succeeds(makeWords('host/k1', '2026.1.2', archive), 'Published');
    succeeds(makeWords('host/k2', '2026.1.2', archive, 'new'), 'Published', { env: { TARNIK_RELEASE_PASSPHRASE: secret } });
    for (const [folder, key] of [['host/k1', 'old'], ['host/k2', 'new']]) {
      succeeds(['check', at(folder), '--public-key', publicKeyIn(key)], 'installs it');
    }
    refuses(['check', at('host/k1'), '--public-key', publicKeyIn('new')], "not this build's");
  },

  'an archive that could do harm is not published': async () => {
    const sentences = {
      'dot-dot-member': 'is outside the package', 'absolute-member': 'is outside the package',
      'through-a-link': 'is a link to a place outside', 'hard-link-out': 'is a link to a place outside',
      'around-a-link': 'is a link to a place outside', 'behind-a-link': 'is not in its shortest form',
      'not-a-tar': 'not compressed with gzip', 'missing-wrapper': 'missing a file', 'missing-entry': 'missing a file',
    };
    for (const [fault, sentence] of Object.entries(sentences)) {
      const { helper } = await makeRelease({ folder: at(fault), version: '2026.1.3', runtime: 'none', fault });
      refuses(makeWords('site', '2026.1.3', at(fault, helper.path)), sentence);
    }
  },

  'the pins are those of a signed list': () => {
    const home = at('gnupg');
    mkdirSync(home, { mode: 0o700 });
    const gpg = (...words) => execFileSync('gpg', ['--homedir', home, '--batch', '--quiet', '--passphrase', '', ...words]);
    gpg('--quick-generate-key', 'release@node.example', 'ed25519', 'sign', 'never');
    writeFileSync(at('keys.gpg'), gpg('--export'));
    writeFileSync(at('other.gpg'), '');
    const digests = ['linux-x64', 'linux-arm64', 'darwin-x64'].map((platform, index) => (
      `${String(index).repeat(64)}  node-v24.22.1-${platform}.tar.gz`));
    writeFileSync(at('list'), `${digests.join('\n')}\n`);
    gpg('--clearsign', '--output', at('list.asc'), at('list'));
    const [revocation] = readdirSync(path.join(home, 'openpgp-revocs.d'));
    const certificate = readFileSync(path.join(home, 'openpgp-revocs.d', revocation), 'utf8');
    writeFileSync(at('revocation'), certificate.replace(/^:-/m, '-'));
    gpg('--import', at('revocation'));
    const revoked = gpg('--export');
    spawnSync('gpgconf', ['--homedir', home, '--kill', 'all']);
    const words = ['pins', at('list.asc'), '--keyring', at('keys.gpg')];
    succeeds(words, `=linux-x64=node-v24.22.1-linux-x64.tar.gz=${'0'.repeat(64)},linux-arm64=`);
    refuses(['pins', at('list.asc'), '--keyring', at('other.gpg')], "isn't signed");
    writeFileSync(at('revoked.gpg'), revoked);
    refuses(['pins', at('list.asc'), '--keyring', at('revoked.gpg')], 'is revoked');
    writeFileSync(at('list.asc'), readFileSync(at('list.asc'), 'utf8').replace('000', '001'));
    refuses(words, "isn't signed");
  },
};

let failed = 0;
try {
  for (const [name, test] of Object.entries(cases)) {
    try {
      await test();
      console.log(`ok      ${name}`);
    } catch (error) {
      failed += 1;
      console.log(`FAILED  ${name}: ${error.message}`);
    }
  }
} finally {
  rmSync(root, { recursive: true, force: true });
}
process.exitCode = failed === 0 ? 0 : 1;
