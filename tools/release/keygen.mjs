// keygen DIR: makes a key pair in the folder.
import { existsSync, mkdirSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { newPassphrase } from './passphrase.mjs';
import { refuseIf } from './refusal.mjs';
import { freshKey } from './signing.mjs';

export const keygen = {
  usage: 'keygen DIR [--passphrase]',
  options: { passphrase: { type: 'boolean', default: false } },

  async run([folder], { passphrase }) {
    // The public key of a private key that is kept elsewhere must not be lost either.
    const [file, publicFile] = ['release-key.pem', 'release-key.pub'].map((name) => path.join(folder, name));
    const old = [file, publicFile].find((one) => existsSync(one));
    refuseIf(old, `${old} exists, and a key is never overwritten; use another folder.`);
    const key = freshKey();
    const pem = key.toPem(passphrase ? await newPassphrase() : undefined);
    mkdirSync(folder, { recursive: true, mode: 0o700 });
    writeFileSync(file, pem, { mode: 0o600, flag: 'wx' });
    writeFileSync(publicFile, `${key.publicKey}\n`, { flag: 'wx' });
    console.log(`private key  ${file}`);
    console.log(`public key   ${key.publicKey}`);
    console.log(`key id       ${key.keyId}`);
    console.log(`setting      -DTARNIK_NODE_RELEASE_PUBLIC_KEY=${key.publicKey}`);
  },
};
