// Faulty releases. Each fault replaces one of these steps:
//
//     version    returns the version of the release
//     members    changes the members of the helper package; `outside` is a folder that they may try to reach
//     package    overwrites the finished helper package
//     manifest   changes the manifest before it is signed
//     signing    changes the signed release file
import { writeFileSync } from 'node:fs';
import { entry, wrapper } from './helperPackage.mjs';
import { freshKey } from '../../tools/release/signing.mjs';
import { file, folder, hardLink, link } from './tarball.mjs';

const escaped = Buffer.from('escaped\n');
const inside = (name) => `tarnik-node/${name}`;
const without = (name) => (members) => members.filter((member) => member.name !== name);

export const faults = {
  'older-version': { version: () => '2025.1.1' },
  'beta-channel': { manifest: (manifest) => ({ ...manifest, channel: 'beta' }) },
  'no-artifact': { manifest: (manifest) => ({ ...manifest, artifacts: {} }) },
  'wrong-shape': { manifest: ({ upstream, ...manifest }) => manifest },
  'wrong-key': {
    signing: (release) => {
      const other = freshKey();
      return { ...release, keyId: other.keyId, sig: other.signature(release.manifest) };
    },
  },
  'bad-signature': { signing: (release) => ({ ...release, sig: freshKey().signature(release.manifest) }) },
  'not-json': { signing: () => 'moved to another address' },

  'missing-wrapper': { members: without(wrapper) },
  'missing-entry': { members: without(entry) },
  'not-a-tar': { package: (target) => writeFileSync(target, 'this is no archive\n') },

  // Members that try to write outside the folder in which they are unpacked.
  'dot-dot-member': { members: (members) => [...members, file(inside('../../../../../escaped'), escaped)] },
  'absolute-member': { members: (members, outside) => [...members, file(`${outside}/escaped`, escaped)] },
  'through-a-link': {
    members: (members, outside) => [
      ...members, link(inside('way-out'), outside), file(inside('way-out/escaped'), escaped),
    ],
  },
  'hard-link-out': {
    members: (members, outside) => [
      ...members, hardLink(inside('shared'), `${outside}/precious`), file(inside('shared'), escaped),
    ],
  },
  // Each name is inside the package, and the place is not.
  'around-a-link': {
    members: (members) => [...members, link(inside('bin/up'), '../lib'), link(inside('way-out'), 'bin/up/../../..')],
  },
  'behind-a-link': { members: (members) => [...members, link(inside('short'), 'lib'), file(inside('./short/file'), escaped)] },
  // A refused package contains a folder that can't be listed. The installer must still remove that folder.
  'locked-folder': {
    members: (members) => [
      ...without(wrapper)(members), file(inside('locked/file'), escaped), folder(inside('locked'), 0),
    ],
  },
};
