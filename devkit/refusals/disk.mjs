// Snapshots of a folder, and the changes that a case may make.
import { lstatSync, readFileSync, readdirSync, readlinkSync } from 'node:fs';
import path from 'node:path';
import { demand } from '../journey/proof.mjs';

// Every case writes logs.
const ignored = /^Library(\/|$)/;
// The program creates the node home for its lock before it can refuse a release.
const nothing = [/^\.tarnik(\/node)?$/];
const claim = [...nothing, /^\.tarnik\/node\/(\.tarnik-node-home|runtime|tmp)$/];
const runtime = [...claim, /^\.tarnik\/node\/(runtime\/node(\/|$)|provenance\.json$)/];
const all = [...runtime, /^\.tarnik\/node\/app(\/|$)/];
const allowed = { nothing, claim, runtime, all };

function describe(file) {
  const entry = lstatSync(file);
  const mode = entry.mode.toString(8);
  if (entry.isSymbolicLink()) return `${mode} ${readlinkSync(file)}`;
  return entry.isFile() ? `${mode} ${readFileSync(file, 'base64')}` : mode;
}

export function snapshot(root) {
  const names = readdirSync(root, { recursive: true }).filter((name) => !ignored.test(name));
  return new Map(names.map((name) => [name, describe(path.join(root, name))]));
}

// Fails if a file of `then` changed, or if `now` has a new file that `leaves` doesn't allow.
export function compare(then, now, leaves) {
  for (const [name, content] of then) demand(now.get(name) === content, `${name} was changed`);
  const fresh = [...now.keys()].filter((name) => !then.has(name));
  const over = fresh.filter((name) => !allowed[leaves].some((pattern) => pattern.test(name)));
  demand(over.length === 0, `left behind: ${over.join(', ')}`);
}
