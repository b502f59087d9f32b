// Reads the passphrase of a private key: from TARNIK_RELEASE_PASSPHRASE, from the terminal without echo, or from the first
// line of standard input. A passphrase is never an argument, because every user can read the arguments of a program.
import { createInterface } from 'node:readline';
import { Writable } from 'node:stream';
import { refuseIf } from './refusal.mjs';

export const passphraseVariable = 'TARNIK_RELEASE_PASSPHRASE';
const shortest = 8;

async function readLine(prompt) {
  const terminal = process.stdin.isTTY === true;
  const silent = new Writable({ write: (chunk, encoding, done) => done() });
  const lines = createInterface({ input: process.stdin, output: silent, terminal });
  if (terminal) process.stderr.write(prompt);
  try {
    return await new Promise((resolve) => {
      lines.once('line', resolve);
      lines.once('close', () => resolve(''));
    });
  } finally {
    lines.close();
    if (terminal) process.stderr.write('\n');
  }
}

export async function askPassphrase() {
  const given = process.env[passphraseVariable] ?? await readLine('Passphrase: ');
  refuseIf(given === '', `The private key has a passphrase; type it, or set ${passphraseVariable}.`);
  return given;
}

export async function newPassphrase() {
  const given = process.env[passphraseVariable] ?? await readLine('New passphrase: ');
  refuseIf(given.length < shortest, `The passphrase must have at least ${shortest} characters.`);
  if (process.env[passphraseVariable] === undefined && process.stdin.isTTY) {
    refuseIf(await readLine('The same again: ') !== given, 'The two passphrases differ.');
  }
  return given;
}
