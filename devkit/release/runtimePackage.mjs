// Makes the archive of the runtime from the machine's own Node.js.
import { copyFileSync, existsSync, linkSync, mkdirSync, realpathSync, rmSync, statSync } from 'node:fs';
import path from 'node:path';
import { file, fileFrom, folder, writeTarball } from './tarball.mjs';

const executable = realpathSync(process.execPath);

// Some builds of Node.js keep most of their code in a library, beside the executable or in a folder of the system.
const libraries = process.report.getReport().sharedObjects.filter((name) => path.basename(name).startsWith('libnode.'));

function place(cached, target) {
  rmSync(target, { force: true });
  try {
    linkSync(cached, target);
  } catch {
    copyFileSync(cached, target);  // the cache is on another volume
  }
}

// Packing takes seconds, so the cache keeps the archive. The archive's name has the version and the size of its sources.
async function packReal(target, leading, cache) {
  mkdirSync(cache, { recursive: true });
  const size = [executable, ...libraries].reduce((sum, name) => sum + statSync(name).size, 0);
  const cached = path.join(cache, `${leading}-${size}.tar.gz`);
  if (!existsSync(cached)) {
    const node = fileFrom(`${leading}/bin/node`, executable, 0o755);
    const beside = libraries.map((name) => fileFrom(`${leading}/lib/${path.basename(name)}`, name, 0o755));
    await writeTarball(cached, [folder(leading), node, ...beside]);
  }
  place(cached, target);
}

// Packs a shell script that executes the machine's Node.js. It has a thousandth of the real runtime's size.
async function packTiny(target, leading) {
  const script = `#!/bin/sh\nexec '${executable}' "$@"\n`;
  await writeTarball(target, [folder(leading), file(`${leading}/bin/node`, Buffer.from(script), 0o755)]);
}

// Returns the archive's file name.
export async function packRuntime({ into, platform, tiny, cache }) {
  const leading = `node-${process.version}-${platform}`;
  const name = `${leading}.tar.gz`;
  const target = path.join(into, name);
  if (tiny) await packTiny(target, leading);
  else await packReal(target, leading, cache);
  return name;
}
