// The correct answers of the service. delivery.mjs sends them, with or without a fault.
import { createReadStream, readFileSync, statSync } from 'node:fs';
import path from 'node:path';
import { Readable } from 'node:stream';

const releaseFileName = /^([A-Za-z0-9_-][A-Za-z0-9._-]{0,199}(\/(?!$)|$)){1,4}$/;
// The release file changes with each release. An archive never changes.
const cacheRules = { '.json': 'max-age=300', '.gz': 'max-age=31536000, immutable' };

export function json(status, value) {
  const body = Buffer.from(`${JSON.stringify(value)}\n`);
  return {
    status,
    type: 'application/json',
    length: body.length,
    open: () => Readable.from([body]),
    whole: () => body,
  };
}

export const notFound = json(404, { v: 1, error: 'there is nothing here' });

export function releaseFile(folder, name) {
  const target = path.join(folder, name);
  const found = releaseFileName.test(name) && statSync(target, { throwIfNoEntry: false });
  if (!found || !found.isFile()) return notFound;
  return {
    status: 200,
    type: name.endsWith('.json') ? 'application/json' : 'application/gzip',
    length: found.size,
    cache: cacheRules[path.extname(name)],
    open: () => createReadStream(target),
    whole: () => readFileSync(target),
  };
}
