// Writes a bundle with the settings of a development build.
import { mkdirSync, writeFileSync } from 'node:fs';
import path from 'node:path';

export const minimumVersion = '2026.1.0';

export function settingsFor(origin, release) {
  return {
    TKWebOrigin: origin,
    TKNodeReleaseBase: origin,
    TKNodeReleasePublicKey: release.publicKey,
    TKNodeMinVersion: minimumVersion,
    TKNodeRuntimePlatform: release.platform,
    TKNodeRuntimeVersion: release.runtime.version,
    TKNodeRuntimeBase: `${origin}/`,
    TKNodeRuntimeFile: release.runtime.file,
    TKNodeRuntimeSHA256: release.runtime.sha256,
  };
}

const escaped = (text) => text.replace(/&/g, '&amp;').replace(/</g, '&lt;').replace(/>/g, '&gt;');

export function writeSettings(bundle, settings) {
  const items = Object.entries(settings)
    .filter(([, value]) => value !== undefined)
    .map(([key, value]) => `  <key>${escaped(key)}</key>\n  <string>${escaped(value)}</string>\n`);
  const contents = path.join(bundle, 'Contents');
  mkdirSync(path.join(contents, 'Resources'), { recursive: true });
  writeFileSync(path.join(contents, 'Info.plist'), [
    '<?xml version="1.0" encoding="UTF-8"?>\n',
    '<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN"',
    ' "http://www.apple.com/DTDs/PropertyList-1.0.dtd">\n',
    '<plist version="1.0">\n<dict>\n',
    ...items,
    '</dict>\n</plist>\n',
  ].join(''));
}
