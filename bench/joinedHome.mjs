// Makes a home directory with an installed helper that has joined, so that the program starts it.
import { cpSync, mkdirSync, symlinkSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

const helper = fileURLToPath(new URL('../devkit/helper/app', import.meta.url));

export function layOutJoined(home) {
  const nodeHome = path.join(home, '.tarnik', 'node');
  for (const folder of ['runtime/node/bin', 'trust']) mkdirSync(path.join(nodeHome, folder), { recursive: true });
  symlinkSync(process.execPath, path.join(nodeHome, 'runtime/node/bin/node'));
  writeFileSync(path.join(nodeHome, 'trust/web-key.json'), '{}');
  cpSync(helper, path.join(nodeHome, 'app'), { recursive: true });
}
