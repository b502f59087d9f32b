// Sends an answer, correctly or with one of the faults that servers and networks have.
import { Readable } from 'node:stream';
import { pipeline } from 'node:stream/promises';
import { setTimeout as pause } from 'node:timers/promises';
import { json } from './answers.mjs';

const slowPieces = 40;
const slowPauseMs = 75;
const dripPauseMs = 1000;
const blockOfNoise = Buffer.alloc(64 * 1024, 'endless ');
export const movedTo = '/devkit/moved';

function start(response, { status, type, length, cache }, headers = {}) {
  const size = length === undefined ? {} : { 'content-length': length };
  const caching = cache === undefined ? {} : { 'cache-control': cache };
  response.writeHead(status, { 'content-type': type, ...size, ...caching, ...headers });
}

export async function deliver(response, answer) {
  start(response, answer);
  await pipeline(answer.open(), response);
}

async function* piecewise(body, pieceLength, pauseMs) {
  for (let at = 0; at < body.length; at += pieceLength) {
    yield body.subarray(at, at + pieceLength);
    await pause(pauseMs);
  }
}

async function* endlessly(body) {
  yield body;
  for (;;) yield blockOfNoise;
}

async function inPieces(response, answer, pieces, pauseMs) {
  start(response, answer);
  const pieceLength = Math.ceil(answer.length / pieces);
  await pipeline(Readable.from(piecewise(answer.whole(), pieceLength, pauseMs)), response);
}

function failWith(status) {
  return (response) => deliver(response, json(status, { v: 1, error: `status ${status}, as requested` }));
}

function redirect(response, location) {
  start(response, { status: 302, type: 'text/plain', length: 0 }, { location });
  response.end();
}

// Each function gets the response, the correct answer, and the requested path.
export const misbehaviours = {
  404: failWith(404),
  407: failWith(407),
  500: failWith(500),
  // The body takes three seconds, regardless of its length.
  slow: (response, answer) => inPieces(response, answer, slowPieces, slowPauseMs),
  drip: (response, answer) => inPieces(response, answer, answer.length, dripPauseMs),
  'cut-off': (response, answer) => {
    start(response, answer);
    const body = answer.whole();
    response.write(body.subarray(0, body.length / 2), () => response.destroy());
  },
  endless: async (response, answer) => {
    start(response, { ...answer, length: undefined });
    await pipeline(Readable.from(endlessly(answer.whole())), response);
  },
  redirect: (response, answer, path) => redirect(response, movedTo + path),
  'redirect-to-file': (response) => redirect(response, 'file:///etc/hosts'),
  'redirect-loop': (response, answer, path) => redirect(response, path),
  altered: (response, answer) => {
    const body = Buffer.from(answer.whole());
    body[body.length >> 1] ^= 1;
    start(response, answer);
    response.end(body);
  },
  // As of a network that requires a sign-in.
  portal: (response) => {
    start(response, { status: 200, type: 'text/html' });
    response.end('<html><body>Sign in to use this network.</body></html>\n');
  },
  // The right answer from a server whose clock is a day behind.
  yesterday: (response, answer) => {
    start(response, answer, { date: new Date(Date.now() - 24 * 3600 * 1000).toUTCString() });
    response.end(answer.whole());
  },
  stall: (response, answer) => {
    start(response, answer);
    response.flushHeaders();
  },
};
