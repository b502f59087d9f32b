// The faults that the installer must refuse, and the faults that it must tolerate.
//
//     misbehave   [what, how]: how the service answers for 'release', 'runtime' or 'helper'
//     fault       the fault of the release
//     settings    replaces default settings; undefined removes a setting
//     prepare     writes files into the home before the program starts
//     outcome     'refused' (the default), 'installed', or 'either' if only the files matter
//     sentence    the printed sentence: its whole text, or a pattern
//     cause       a pattern for the line below it
//     leaves      the new files that are allowed: 'nothing', 'claim', 'runtime' or 'all'
//     patient     the case takes minutes or half a gigabyte
import { mkdirSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { minimumVersion } from '../journey/settings.mjs';

// Our sentence, followed by libcurl's message.
const notDownloaded = /^tarnik couldn't download its helper\. Check your connection and try again\. \([A-Z][^\n]{8,300}\.\)$/;
const notUsed = 'Nothing was installed.';

const notLoaded = (what) => ({ service, release }) => {
  const name = { release: 'stable.json', runtime: release.runtime.file, helper: release.helper.path }[what];
  return `Couldn't download ${service.origin}/${name}. Check your connection and try again.`;
};
const notPublished = (platform = '') => `tarnik's helper isn't published for this Mac${platform} yet.`;
const tooOld = (version) => `tarnik's helper ${version} is older than this Mac may install. ${notUsed}`;
const mentions = (text) => new RegExp(`^[^\n]*${text}[^\n]*$`);

function writeBelow(folder, name, text) {
  const file = path.join(folder, name);
  mkdirSync(path.dirname(file), { recursive: true, mode: 0o700 });
  writeFileSync(file, text);
}

function claimByHand({ marker }) {
  writeBelow(path.dirname(marker), path.basename(marker), 'claimed\n');
}

const release = [
  ['404', notLoaded('release')],
  ['407', notLoaded('release'), /requires a name and a password/],
  ['portal', mentions('the release file is not JSON'), /require a sign-in/],
  ['cut-off', notDownloaded],
  ['endless', notDownloaded],
  ['redirect-to-file', notDownloaded],
  ['redirect-loop', notDownloaded],
  ['stall', notDownloaded],
  ['drip', notDownloaded],
].map(([how, sentence, cause]) => ({ misbehave: ['release', how], sentence, cause, leaves: 'nothing' }));

const runtime = [
  ['404', notLoaded('runtime')],
  ['cut-off', notDownloaded],
  ['altered', `Node.js didn't match its signed release. ${notUsed}`],
  ['redirect-to-file', notDownloaded],
  ['redirect-loop', notDownloaded],
].map(([how, sentence]) => ({ misbehave: ['runtime', how], sentence, leaves: 'claim' }));

const helper = [
  ['404', notLoaded('helper')],
  ['cut-off', notDownloaded],
  ['altered', `tarnik's helper didn't match its signed release. ${notUsed}`],
  ['redirect-to-file', notDownloaded],
  ['redirect-loop', notDownloaded],
  ['endless', notDownloaded, { patient: true }],
  ['stall', notDownloaded, { patient: true }],
  ['drip', notDownloaded, { patient: true }],
].map(([how, sentence, more]) => ({ misbehave: ['helper', how], sentence, leaves: 'runtime', ...more }));

// A slow answer and a redirect are not faults.
const tolerated = ['release', 'runtime', 'helper'].flatMap((what) => ['slow', 'redirect'].map((how) => ({
  misbehave: [what, how], outcome: 'installed', leaves: 'all',
})));

const signed = [
  ['wrong-key', mentions("the release is signed with key [0-9a-f]{16}, not this build's")],
  ['bad-signature', mentions('the release signature does not verify')],
  ['older-version', tooOld('2025.1.1')],
  ['no-artifact', ({ release: { platform } }) => notPublished(` (${platform})`)],
].map(([fault, sentence]) => ({ fault, sentence, leaves: 'nothing' }));

const unpacked = [
  ['missing-wrapper', `tarnik's helper is missing a file. ${notUsed}`],
  ['locked-folder', `tarnik's helper is missing a file. ${notUsed}`],
  ['not-a-tar', /^The downloaded file is damaged[^\n]+\(Couldn't unpack tarnik's helper \([^\n]+\)\. Nothing was installed\.\)$/],
].map(([fault, sentence]) => ({ fault, sentence, leaves: 'runtime' }));

// The tar of the system determines which of these packages are refused.
const hostile = ['dot-dot-member', 'absolute-member', 'through-a-link', 'hard-link-out'].map((fault) => ({
  fault, outcome: 'either', leaves: 'all',
}));

const built = [
  ['no release base', { TKNodeReleaseBase: undefined }, notPublished()],
  ['a minimum that is no version', { TKNodeMinVersion: `v${minimumVersion}` }, tooOld('2026.1.1')],
].map(([name, settings, sentence]) => ({ name, settings, sentence, leaves: 'nothing' }));

const before = [
  {
    name: 'other files in the node home',
    prepare: ({ nodeHome }) => writeBelow(nodeHome, 'notes.txt', 'mine\n'),
    sentence: ({ nodeHome }) => (
      `${nodeHome} already holds files tarnik didn't put there. Move them out, then try again. ${notUsed}`
    ),
    leaves: 'nothing',
  },
  {
    name: 'a newer helper that was there',
    prepare: (place) => {
      claimByHand(place);
      writeBelow(path.dirname(place.description), path.basename(place.description), '{"version":"2027.1.1"}');
    },
    sentence: tooOld('2026.1.1'),
    leaves: 'nothing',
  },
];

// The slow cases are first, so that the other cases run beside them.
export const cases = [
  ...release.reverse(), ...helper.reverse(), ...tolerated, ...runtime,
  ...signed, ...unpacked, ...hostile, ...built, ...before,
].map((one) => ({ outcome: 'refused', name: one.name ?? one.fault ?? one.misbehave.join(' '), ...one }));
