// The keys and signatures of releases.
import { createHash, createPrivateKey, createPublicKey, generateKeyPairSync, sign } from 'node:crypto';
import { existsSync, readFileSync, writeFileSync } from 'node:fs';

const domain = 'tarnik-node-release\n';

class ReleaseKey {
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

  toPem() {
    return this.#privateKey.export({ type: 'pkcs8', format: 'pem' });
  }
}

export function freshKey() {
  return new ReleaseKey(generateKeyPairSync('ed25519').privateKey);
}

// Returns the key in `file`. Creates the file with a new key if it doesn't exist.
export function keyInFile(file) {
  if (existsSync(file)) {
    const privateKey = createPrivateKey(readFileSync(file));
    if (privateKey.asymmetricKeyType !== 'ed25519') throw new Error(`${file} holds no Ed25519 key`);
    return new ReleaseKey(privateKey);
  }
  const key = freshKey();
  writeFileSync(file, key.toPem(), { mode: 0o600, flag: 'wx' });
  return key;
}
