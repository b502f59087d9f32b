// keygen DIR: makes a key pair in the folder.
import { mkdirSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { newPassphrase } from './passphrase.mjs';
import { Refusal } from './refusal.mjs';
import { freshKey } from './signing.mjs';

export const keygen = {
  usage: 'keygen DIR [--passphrase]',
  options: { passphrase: { type: 'boolean', default: false } },

  async run([folder], { passphrase }) {
    const key = freshKey();
    const pem = key.toPem(passphrase ? await newPassphrase() : undefined);
    mkdirSync(folder, { recursive: true, mode: 0o700 });
    const file = path.join(folder, 'release-key.pem');
    try {
      writeFileSync(file, pem, { mode: 0o600, flag: 'wx' });
    } catch (error) {
      if (error.code !== 'EEXIST') throw error;
      throw new Refusal(`${file} exists, and a key is never overwritten; use another folder.`);
    }
    writeFileSync(path.join(folder, 'release-key.pub'), `${key.publicKey}\n`);
    console.log(`private key  ${file}`);
    console.log(`public key   ${key.publicKey}`);
    console.log(`key id       ${key.keyId}`);
    console.log(`setting      -DTARNIK_NODE_RELEASE_PUBLIC_KEY=${key.publicKey}`);
  },
};
