// Reads the members of a gzip-compressed tar archive without unpacking it, and refuses what must not be in a package. The
// installer's tar refuses or ignores most of that, each version in its own way.
import { createReadStream } from 'node:fs';
import { pipeline } from 'node:stream/promises';
import { createGunzip } from 'node:zlib';
import { Refusal, refuseIf } from './refusal.mjs';

const blockSize = 512;
const longestName = 64 * 1024;
const mostMembers = 100_000;  // as in core/node/TreeListing.h
const kinds = new Map([['0', 'file'], ['\0', 'file'], ['7', 'file'], ['1', 'hard link'], ['2', 'link'], ['5', 'folder']]);

function textAt(block, at, length) {
  const bytes = block.subarray(at, at + length);
  const end = bytes.indexOf(0);
  return bytes.toString('latin1', 0, end < 0 ? length : end);
}

function sizeIn(block) {
  const text = textAt(block, 124, 12).trim();
  refuseIf(!/^[0-7]*$/.test(text), 'the archive has a member whose size is malformed.');
  return parseInt(text || '0', 8);
}

function checkSum(block) {
  const sum = block.reduce((total, byte, at) => total + (at >= 148 && at < 156 ? 32 : byte), 0);
  refuseIf(parseInt(textAt(block, 148, 8).trim(), 8) !== sum, 'the archive is not a tar archive, or is damaged.');
}

// Returns the values of an extended header: lines of "LENGTH KEY=VALUE".
function extendedValues(body) {
  const values = {};
  for (let at = 0; at < body.length;) {
    const space = body.indexOf(0x20, at);
    const length = Number(body.toString('latin1', at, space));
    refuseIf(!(length > space - at), 'the archive has a malformed extended header.');
    const [, key, value] = /^([^=]*)=([^]*)\n$/.exec(body.toString('latin1', space + 1, at + length)) ?? [];
    const isMalformed = key === 'size' && !/^\d+$/.test(value);
    refuseIf(isMalformed || key?.startsWith('GNU.sparse.'), `the archive has an extended header with ${key}=${value}.`);
    if (key !== undefined) values[key] = value;
    at += length;
  }
  return values;
}

// Consumes the bytes of a tar archive piece by piece and calls `onMember` with { kind, name, to } of each member.
class TarReader {
  #rest = Buffer.alloc(0);
  #skip = 0;
  #next = {};  // values for the next member, from the members before it
  #count = 0;
  #onMember;

  constructor(onMember) {
    this.#onMember = onMember;
  }

  take(piece) {
    this.#rest = this.#rest.length > 0 ? Buffer.concat([this.#rest, piece]) : piece;
    for (;;) {
      const skipped = Math.min(this.#skip, this.#rest.length);
      this.#rest = this.#rest.subarray(skipped);
      this.#skip -= skipped;
      if (this.#skip > 0 || this.#rest.length < blockSize) return;
      const used = this.#header(this.#rest.subarray(0, blockSize));
      if (used === undefined) return;
      this.#rest = this.#rest.subarray(used);
    }
  }

  end() {
    refuseIf(this.#skip > 0 || this.#count === 0, 'the archive ends too early.');
  }

  // Returns the number of bytes that are used, or undefined if more are needed.
  #header(block) {
    if (block.every((byte) => byte === 0)) return blockSize;
    checkSum(block);
    const type = String.fromCharCode(block[156]);
    const size = sizeIn(block);
    const whole = Math.ceil(size / blockSize) * blockSize;
    if (!'xgLK'.includes(type)) {
      this.#member(block, type);
      this.#skip = this.#next.size === undefined ? whole : Math.ceil(Number(this.#next.size) / blockSize) * blockSize;
      this.#next = {};
      return blockSize;
    }
    refuseIf(size > longestName, 'the archive has a name that is too long.');
    if (this.#rest.length < blockSize + whole) return undefined;
    const body = this.#rest.subarray(blockSize, blockSize + size);
    // Some programs apply a global header to all members, and others ignore it.
    const global = type === 'g' ? extendedValues(body) : {};
    const renames = ['path', 'linkpath', 'size'].find((key) => Object.hasOwn(global, key));
    refuseIf(renames, `the archive has a global header with ${renames}.`);
    if (type === 'x') Object.assign(this.#next, extendedValues(body));
    if (type === 'L') this.#next.path = textAt(body, 0, size);
    if (type === 'K') this.#next.linkpath = textAt(body, 0, size);
    return blockSize + whole;
  }

  #member(block, type) {
    this.#count += 1;
    refuseIf(this.#count > mostMembers, `the archive has more than ${mostMembers} members.`);
    const prefix = textAt(block, 257, 6) === 'ustar' ? textAt(block, 345, 155) : '';
    const short = textAt(block, 0, 100);
    const name = this.#next.path ?? (prefix ? `${prefix}/${short}` : short);
    this.#onMember({ kind: kinds.get(type), name, to: this.#next.linkpath ?? textAt(block, 157, 100) });
  }
}

// Returns false if a link that is `depth` folders below the package's top can lead to a place above it. Only the first parts
// may be "..": a name may be another link, whose parent is elsewhere.
function isInside(depth, parts) {
  const names = parts.findIndex((part) => part !== '..' && part !== '.' && part !== '');
  const rising = names < 0 ? parts : parts.slice(0, names);
  return rising.filter((part) => part === '..').length <= depth && !parts.slice(rising.length).includes('..');
}

function problemOf({ kind, name, to }, top) {
  const parts = name.replace(/\/+$/, '').split('/');
  if (kind === undefined) return 'is neither a file, a folder nor a link';
  if (!/^[ -~]+$/.test(name)) return 'has a name that is not plain ASCII';
  if (name.startsWith('/') || parts.includes('..')) return 'is outside the package';
  if (parts.includes('.') || parts.includes('')) return 'has a name that is not in its shortest form';
  if (parts[0] !== top) return `is not in the archive's folder ${top}`;
  if (kind.endsWith('link') && !/^[ -~]*$/.test(to)) return 'is a link to a name that is not plain ASCII';
  const depth = kind === 'link' ? parts.length - 2 : 0;
  const target = kind === 'hard link' ? to.split('/').slice(1) : to.split('/');
  const isForeign = to.startsWith('/') || to === '' || !isInside(depth, target);
  if (kind.endsWith('link') && isForeign) return `is a link to a place outside the package: ${to}`;
  if (kind === 'hard link' && to.split('/')[0] !== top) return `is a link to a place outside the package: ${to}`;
  return undefined;
}

// Refuses an archive that is damaged, has more than one top folder, or has a member that could reach another place.
export async function checkMembers(file) {
  let top;
  const links = new Set();
  const reader = new TarReader((member) => {
    const parts = member.name.replace(/\/+$/, '').split('/');
    top ??= parts[0] === '.' || parts[0] === '' ? undefined : parts[0];
    refuseIf(top === undefined, 'the archive must have one folder at its top.');
    const problem = problemOf(member, top);
    refuseIf(problem, `the archive's member ${JSON.stringify(member.name)} ${problem}.`);
    const through = parts.map((_, index) => parts.slice(0, index).join('/')).find((name) => links.has(name));
    refuseIf(through, `the archive's member ${JSON.stringify(member.name)} is behind the link ${through}.`);
    if (member.kind === 'link') links.add(parts.join('/'));
  });
  let cause;  // the pipeline may report its own end instead
  try {
    await pipeline(createReadStream(file), createGunzip(), async (source) => {
      try {
        for await (const piece of source) reader.take(piece);
        reader.end();
      } catch (error) {
        cause = error;
        throw error;
      }
    });
  } catch (error) {
    cause ??= error;
    if (cause instanceof Refusal) throw new Refusal(`${file}: ${cause.message}`);
    throw new Refusal(`${file}: the archive is not compressed with gzip, or is damaged.`);
  }
}
