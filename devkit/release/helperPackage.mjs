// The members of the helper package: the files of the stand-in in one folder, with the version of the release.
import { randomBytes } from 'node:crypto';
import { readFileSync, readdirSync, statSync } from 'node:fs';
import path from 'node:path';
import { fileURLToPath } from 'node:url';
import { file, folder } from './tarball.mjs';

const app = fileURLToPath(new URL('../helper/app', import.meta.url));
const leading = 'tarnik-node';
const openclaw = 'lib/node_modules/openclaw';
const description = `${openclaw}/tarnik-node.json`;
const paddingBytes = 64 * 1024;

export const wrapper = `${leading}/bin/tarnik-node`;
export const entry = `${leading}/${openclaw}/openclaw.mjs`;

function filesBelow(root) {
  return readdirSync(root, { recursive: true })
    .map((name) => name.split(path.sep).join('/'))
    .filter((name) => statSync(path.join(root, name)).isFile())
    .sort();
}

function packed(name, version) {
  const source = path.join(app, name);
  const body = readFileSync(source);
  if (name !== description) return file(`${leading}/${name}`, body, statSync(source).mode & 0o755);
  const text = `${JSON.stringify({ ...JSON.parse(body), version }, undefined, 2)}\n`;
  return file(`${leading}/${name}`, Buffer.from(text));
}

// Many small files of random bytes: a real package has many files and compresses little.
function padding(sizeMiB) {
  const count = Math.ceil((sizeMiB * 2 ** 20) / paddingBytes);
  return Array.from({ length: count }, (_, index) => ({
    ...file(`${leading}/${openclaw}/padding/${index}.bin`, { length: paddingBytes }),
    open: () => [randomBytes(paddingBytes)],
  }));
}

export function helperMembers({ version, sizeMiB }) {
  return [
    folder(leading),
    ...filesBelow(app).map((name) => packed(name, version)),
    ...padding(sizeMiB),
  ];
}
