// Writes gzip-compressed tar archives, including hostile ones that no ordinary tool would write.
import { createReadStream, createWriteStream, renameSync, rmSync, statSync } from 'node:fs';
import { Readable } from 'node:stream';
import { pipeline } from 'node:stream/promises';
import { createGzip } from 'node:zlib';

const blockSize = 512;
const types = { file: '0', hardLink: '1', link: '2', folder: '5' };
// All members have one date, so that the same input results in the same archive.
const modified = Date.UTC(2026, 0, 1) / 1000;

export function file(name, body, mode = 0o644) {
  return { type: 'file', name, mode, size: body.length, open: () => [body] };
}

export function fileFrom(name, source, mode = 0o644) {
  return { type: 'file', name, mode, size: statSync(source).size, open: () => createReadStream(source) };
}

export function folder(name, mode = 0o755) {
  return { type: 'folder', name: `${name}/`, mode, size: 0 };
}

export function link(name, to) {
  return { type: 'link', name, to, mode: 0o777, size: 0 };
}

export function hardLink(name, to) {
  return { type: 'hardLink', name, to, mode: 0o644, size: 0 };
}

function header({ type, name, to = '', mode, size }) {
  const block = Buffer.alloc(blockSize);
  const text = (value, at, length) => {
    const bytes = Buffer.from(value);
    if (bytes.length > length) throw new Error(`too long for a member of this archive: ${value}`);
    bytes.copy(block, at);
  };
  const octal = (value, at, length) => text(value.toString(8).padStart(length - 1, '0'), at, length);
  text(name, 0, 100);
  octal(mode, 100, 8);
  octal(0, 108, 8);
  octal(0, 116, 8);
  octal(size, 124, 12);
  octal(modified, 136, 12);
  text(' '.repeat(8), 148, 8);
  text(types[type], 156, 1);
  text(to, 157, 100);
  text('ustar\x0000', 257, 8);
  const sum = block.reduce((total, byte) => total + byte, 0);
  text(`${sum.toString(8).padStart(6, '0')}\0 `, 148, 8);
  return block;
}

async function* blocks(members) {
  for (const member of members) {
    yield header(member);
    if (member.size === 0) continue;
    yield* member.open();
    const rest = member.size % blockSize;
    if (rest > 0) yield Buffer.alloc(blockSize - rest);
  }
  yield Buffer.alloc(2 * blockSize);
}

// Writes a temporary file and renames it, so that `target` is complete or absent.
export async function writeTarball(target, members) {
  const fresh = `${target}.${process.pid}`;
  try {
    await pipeline(Readable.from(blocks(members)), createGzip({ level: 1 }), createWriteStream(fresh));
    renameSync(fresh, target);
  } finally {
    rmSync(fresh, { force: true });
  }
}
