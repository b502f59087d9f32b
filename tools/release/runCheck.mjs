// Runs tarnik_release_check, which is linked with the installer of the program, against a release at an address.
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { passphraseVariable } from './passphrase.mjs';
import { Refusal } from './refusal.mjs';

// ./dev sets this variable after it has built the program.
const program = () => process.env.TARNIK_RELEASE_CHECK ?? 'tarnik_release_check';

// The release of a folder is served at 127.0.0.1, which no proxy of the environment reaches.
function environment() {
  const { [passphraseVariable]: _, NO_PROXY, no_proxy: exempt = NO_PROXY, ...inherited } = process.env;
  return { ...inherited, no_proxy: exempt === '*' ? '*' : [exempt, '127.0.0.1'].filter(Boolean).join(',') };
}

// Returns the printed sentences. Throws a Refusal with the first problem. The archives are unpacked in a temporary folder.
// `options` are those of the program, without --folder.
export async function runCheck(options) {
  const folder = mkdtempSync(path.join(tmpdir(), 'tarnik-check-'));
  const words = Object.entries({ ...options, folder })
    .filter(([, value]) => value !== undefined).flatMap(([name, value]) => [`--${name}`, value]);
  try {
    const child = spawn(program(), words, { stdio: ['ignore', 'pipe', 'pipe'], env: environment() });
    const output = { stdout: '', stderr: '' };
    for (const name of ['stdout', 'stderr']) {
      child[name].setEncoding('utf8').on('data', (text) => { output[name] += text; });
    }
    const [code] = await once(child, 'close');
    const sentences = output.stdout.trim().split('\n').filter(Boolean);
    if (code !== 0) throw Object.assign(new Refusal(output.stderr.trim() || 'The check ended early.'), { sentences });
    return sentences;
  } catch (error) {
    if (error.code === 'ENOENT') throw new Refusal(`${program()} is missing; use ./dev release.`);
    throw error;
  } finally {
    rmSync(folder, { recursive: true, force: true });
  }
}
