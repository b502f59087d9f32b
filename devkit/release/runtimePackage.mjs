// The archive of the runtime, made from the machine's own Node.js.
import {
  copyFileSync, existsSync, linkSync, mkdirSync, readdirSync, realpathSync, rmSync, statSync,
} from 'node:fs';
import path from 'node:path';
import { file, fileFrom, folder, writeTarball } from './tarball.mjs';

const executable = realpathSync(process.execPath);

// Some builds of Node.js keep most of themselves in a library beside the executable.
function libraries(leading) {
  const lib = path.join(path.dirname(executable), '..', 'lib');
  const names = existsSync(lib) ? readdirSync(lib).filter((name) => /^libnode\..*(so|dylib)/.test(name)) : [];
  return names.map((name) => fileFrom(`${leading}/lib/${name}`, path.join(lib, name), 0o755));
}

function place(cached, target) {
  rmSync(target, { force: true });
  try {
    linkSync(cached, target);
  } catch {
    copyFileSync(cached, target);  // the cache lies on another volume
  }
}

// Packing takes seconds, so the archive is kept in the cache under what it was made from.
async function packReal(target, leading, cache) {
  mkdirSync(cache, { recursive: true });
  const cached = path.join(cache, `${leading}-${statSync(executable).size}.tar.gz`);
  if (!existsSync(cached)) {
    const node = fileFrom(`${leading}/bin/node`, executable, 0o755);
    await writeTarball(cached, [folder(leading), node, ...libraries(leading)]);
  }
  place(cached, target);
}

// Hands everything on to the machine's Node.js: as good as the real one, and a thousandth of its size.
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
