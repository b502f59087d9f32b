// The keys and signatures of releases.
import { spawnSync } from 'node:child_process';
import { createHash, createPrivateKey, createPublicKey, generateKeyPairSync, sign } from 'node:crypto';
import { existsSync, readFileSync, statSync, writeFileSync } from 'node:fs';
import { Refusal } from './refusal.mjs';

const domain = 'tarnik-node-release\n';
const readableByOthers = 0o077;

export class ReleaseKey {
  #privateKey;

  constructor(privateKey) {
    this.#privateKey = privateKey;
    // A JSON web key has the 32 raw bytes as base64url. The settings of a build use the same form.
    this.publicKey = createPublicKey(privateKey).export({ format: 'jwk' }).x;
    const raw = Buffer.from(this.publicKey, 'base64url');
    this.keyId = createHash('sha256').update(raw).digest('hex').slice(0, 16);
  }

  signature(manifest) {
    return sign(null, Buffer.from(domain + manifest), this.#privateKey).toString('base64url');
  }

  // Returns the private key in PEM, encrypted if there is a passphrase. openssl derives the key of the encryption with
  // scrypt; Node.js can only use a fast derivation, which is weak for a passphrase.
  toPem(passphrase) {
    const plain = this.#privateKey.export({ type: 'pkcs8', format: 'pem' });
    if (passphrase === undefined) return plain;
    const { status, stdout, error } = spawnSync('openssl', ['pkcs8', '-topk8', '-scrypt', '-passout', 'env:PASSPHRASE'], {
      input: plain, encoding: 'utf8', env: { PATH: process.env.PATH, PASSPHRASE: passphrase },
    });
    if (error || status !== 0) throw new Refusal('openssl could not encrypt the private key.');
    return stdout;
  }
}

// The public key doesn't begin with a hyphen, so that it is never mistaken for an option.
export function freshKey() {
  for (;;) {
    const key = new ReleaseKey(generateKeyPairSync('ed25519').privateKey);
    if (!key.publicKey.startsWith('-')) return key;
  }
}

export function isEncrypted(pem) {
  return pem.includes('ENCRYPTED PRIVATE KEY');
}

// Returns the key in `file`. Calls `askPassphrase` if the key is encrypted.
export async function readKey(file, askPassphrase) {
  const found = statSync(file, { throwIfNoEntry: false });
  if (!found?.isFile()) throw new Refusal(`The private key ${file} doesn't exist; make it with keygen.`);
  if (found.mode & readableByOthers) {
    throw new Refusal(`Other users may read the private key ${file}; use: chmod 600 ${file}`);
  }
  const pem = readFileSync(file, 'utf8');
  const passphrase = isEncrypted(pem) ? await askPassphrase() : undefined;
  let privateKey;
  try {
    privateKey = createPrivateKey({ key: pem, passphrase });
  } catch {
    throw new Refusal(passphrase === undefined ? `${file} has no private key.` : `The passphrase of ${file} is wrong.`);
  }
  if (privateKey.asymmetricKeyType !== 'ed25519') throw new Refusal(`The private key ${file} is not an Ed25519 key.`);
  return new ReleaseKey(privateKey);
}

// Returns the key in `file`. Creates the file with a new key if it doesn't exist.
export async function keyInFile(file) {
  if (existsSync(file)) return readKey(file);
  const key = freshKey();
  writeFileSync(file, key.toPem(), { mode: 0o600, flag: 'wx' });
  return key;
}
